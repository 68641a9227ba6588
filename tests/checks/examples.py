"""Every example writes the text that stands beside its source."""

import os
import pathlib
import subprocess
import sys

source, binaries = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
binaries /= "bin"
emulator = os.environ.get("EMULATOR", "").split()

failures = 0
examples = sorted((source / "examples").glob("*.cpp"))
for example in examples:
    program = next(path for path in (binaries / f"example_{example.stem}", binaries / f"example_{example.stem}.exe")
                   if path.exists())
    # The working directory is that of unit.xml, for the example that wants to know.
    # One of them leaks on purpose, which is no business of a sanitizer.
    settings = os.environ | ({"ASAN_OPTIONS": "detect_leaks=0"} if example.stem == "LeakChecker" else {})
    run = subprocess.run([*emulator, program, "."], cwd=binaries, env=settings, text=True, stdout=subprocess.PIPE)
    if run.returncode != 0 or run.stdout != example.with_suffix(".txt").read_text(encoding="utf-8"):
        print(f"{example.name}: exit code {run.returncode}, it wrote:\n{run.stdout}")
        failures += 1

print(f"{len(examples)} examples run")
sys.exit(failures > 0 or not examples)
