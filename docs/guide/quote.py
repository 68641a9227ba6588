"""Puts the code and the output of the examples into the pages that quote them.

usage: quote.py [--check]     with --check nothing is written: the exit code is 1 when a page is not as it has to be

A page quotes with a comment in front of a block of code, which is then filled in:

    <!-- examples/Units.cpp: Quantity, main -->     the definitions of these names, in this order
    <!-- examples/Units.txt -->                     a whole file
"""

import pathlib
import re
import sys

source = pathlib.Path(__file__).resolve().parents[2]
QUOTE = re.compile(r"<!-- ([\w/.-]+\.(\w+))(?:: ([\w, ]+))? -->\n```\w*\n.*?^```$", re.M | re.S)
LANGUAGE = {"cpp": "cpp", "xml": "xml"}


def definition(lines, name):
    """A definition that is not indented, with the comment in front of it."""
    start = next((i for i, line in enumerate(lines) if re.match(rf"[\w\[].*\b{name}\b", line)), None)
    if start is None:
        raise ValueError(f"nothing is named {name}")
    end = start
    while not (lines[end].startswith("}") or (end == start and lines[end].endswith(";"))):
        end += 1
    while start > 0 and lines[start - 1].startswith("//"):
        start -= 1
    return lines[start:end + 1]


def quoted(match):
    path, suffix, names = match.groups()
    lines = (source / path).read_text(encoding="utf-8").splitlines()
    if names:
        parts = [definition(lines, name.strip()) for name in names.split(",")]
        lines = "\n\n".join("\n".join(part) for part in parts).split("\n")
    opening = match[0].split("\n")[0]
    return "\n".join([opening, "```" + LANGUAGE.get(suffix, "text"), *lines, "```"])


stale = 0
for page in [source / "README.md", *sorted((source / "docs").rglob("*.md"))]:
    text = page.read_text(encoding="utf-8")
    try:
        current = QUOTE.sub(quoted, text)
    except (OSError, ValueError) as error:
        sys.exit(f"{page.relative_to(source)}: {error}")
    if current != text:
        stale += 1
        print(f"{page.relative_to(source)} {'is not as its examples are' if '--check' in sys.argv else 'changed'}")
        if "--check" not in sys.argv:
            page.write_text(current, encoding="utf-8")
sys.exit("--check" in sys.argv and stale > 0)
