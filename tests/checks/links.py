"""Every link from one page to another, to a file or to a heading leads somewhere."""

import pathlib
import re
import sys

source = pathlib.Path(sys.argv[1]).resolve()
LINK = re.compile(r"\]\((?!\w+:)([^)#]*)(?:#([^)]*))?\)")


def prose(page):
    """The text of a page without its blocks of code."""
    return re.sub(r"^```.*?^```$", "", page.read_text(encoding="utf-8"), flags=re.M | re.S)


def headings(page):
    """The names that links call the headings of a page by."""
    for heading in re.findall(r"^#+ (.*)$", prose(page), re.M):
        yield re.sub(r"[^\w\- ]", "", heading.lower()).strip().replace(" ", "-")


count, failures = 0, []
for page in [*source.glob("*.md"), *sorted((source / "docs").rglob("*.md"))]:
    for file, heading in LINK.findall(prose(page)):
        target = page.parent / file if file else page
        count += 1
        if not target.exists() or (heading and heading not in headings(target)):
            failures.append(f"{page.relative_to(source)}: nothing is at {file}{'#' + heading if heading else ''}")

print("\n".join([*failures, f"{count} links"]))
sys.exit(bool(failures) or count == 0)
