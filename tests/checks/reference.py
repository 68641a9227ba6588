"""Doxygen takes all that is public for documented, without a complaint. Skipped where it is not installed."""

import os
import pathlib
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


with tempfile.TemporaryDirectory() as folder:
    run = subprocess.run(["doxygen", "docs/reference/Doxyfile"], cwd=source, env=os.environ | {"TUVO_REFERENCE": folder},
                         text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    print(run.stdout, end="")
    tags = xml.etree.ElementTree.parse(pathlib.Path(folder) / "names.xml")
    shown = {name.text.split("::")[-1] for name in tags.iter("name")}

missing = sorted(set(exported_names()) - shown)
print(f"{len(shown)} names in the reference; missing: {missing}")
sys.exit(run.returncode != 0 or bool(missing))
