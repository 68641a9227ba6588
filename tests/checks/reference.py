"""Doxygen takes all that is public for documented, without a complaint, and no link of its pages is dead. Skipped where it
is not installed."""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

source = pathlib.Path(sys.argv[1])
if shutil.which("doxygen") is None:
    print("doxygen is not installed")
    sys.exit(77)


def exported_names():
    """The functions and types that no class holds of the headers that exist. (The complaints are about members.)"""
    for line in (source / "tests/exports.tsv").read_text(encoding="utf-8").splitlines():
        header, kind, name, _ = line.split("\t")
        if kind in ("function", "struct", "enum") and (source / "include/TuvoUtil" / header).exists():
            yield name.split("::")[-1]


def dead_links(folder):
    """The links from page to page that lead nowhere."""
    pages = {path.name: path.read_text(encoding="utf-8") for path in folder.glob("*.html")}
    names = {page: set(re.findall(r'\b(?:id|name)="([^"]*)"', text)) for page, text in pages.items()}
    for page, text in pages.items():
        for file, place in re.findall(r'\bhref="(?!\w+:)([^"#]*)#?([^"]*)"', text):
            target = file or page
            if not (folder / target).exists() or (place and place not in names.get(target, {place})):
                yield f"{page}: {file}#{place}"


def silent_types(folder):
    """The types that the list of all types says nothing about."""
    page = (folder / "annotated.html").read_text(encoding="utf-8")
    rows = re.findall(r'class="icon">C<.*?<a [^>]*>(.*?)</a>.*?<td class="desc">(.*?)</td>', page)
    return [name for name, text in rows if not re.match(r"\w", re.sub(r"<[^>]*>", "", text))]


with tempfile.TemporaryDirectory() as folder:
    run = subprocess.run(["doxygen", "docs/reference/Doxyfile"], cwd=source, env=os.environ | {"TUVO_REFERENCE": folder},
                         text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    print(run.stdout, end="")
    tags = xml.etree.ElementTree.parse(pathlib.Path(folder) / "names.xml")
    shown = {name.text.split("::")[-1] for name in tags.iter("name")}
    dead = sorted(dead_links(pathlib.Path(folder)))
    silent = silent_types(pathlib.Path(folder))

missing = sorted(set(exported_names()) - shown)
print(f"{len(shown)} names in the reference; missing: {missing}; types without a word: {silent}; dead links: {dead}")
sys.exit(run.returncode != 0 or bool(missing or silent or dead))
