"""The guide has a chapter for every example, which shows code of it and its output as they are."""

import pathlib
import subprocess
import sys

source = pathlib.Path(sys.argv[1]).resolve()
guide = source / "docs/guide"
index = (guide / "README.md").read_text(encoding="utf-8")

failures = 0
examples = sorted((source / "examples").glob("*.cpp"))
for example in examples:
    chapter = guide / f"{example.stem}.md"
    text = chapter.read_text(encoding="utf-8") if chapter.exists() else ""
    for wanted, place in ((f"<!-- examples/{example.name}", text), (f"<!-- examples/{example.stem}.txt -->", text),
                          (f"({chapter.name})", index)):
        if wanted not in place:
            print(f"{example.name}: the guide lacks {wanted}")
            failures += 1

quotes = subprocess.run([sys.executable, guide / "quote.py", "--check"])
print(f"{len(examples)} examples")
sys.exit(failures > 0 or quotes.returncode != 0 or not examples)
