"""Every example is shown on a page, code and output, as they are; the guide lists all its chapters."""

import pathlib
import subprocess
import sys

source = pathlib.Path(sys.argv[1]).resolve()
pages = {page: page.read_text(encoding="utf-8") for page in [source / "README.md", *sorted((source / "docs").rglob("*.md"))]}
index = pages[source / "docs/guide.md"]

failures = []
examples = sorted((source / "examples").glob("*.cpp"))
for example in examples:
    code, output = f"<!-- examples/{example.name}", f"<!-- examples/{example.stem}.txt -->"
    if not any(code in text and output in text for text in pages.values()):
        failures.append(f"no page shows {example.name} and what it writes")
for page in pages:
    if page.parent.name == "guide" and f"(guide/{page.name})" not in index:
        failures.append(f"docs/guide.md does not list {page.name}")

print("\n".join([*failures, f"{len(examples)} examples"]), flush=True)
quotes = subprocess.run([sys.executable, source / "docs/guide/quote.py", "--check"])
sys.exit(bool(failures) or quotes.returncode != 0 or not examples)
