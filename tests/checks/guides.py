"""Every console block of the guides that runs tuvo or an example shows what it writes, and the tour of tuvo runs through.

A line "$ COMMAND" is run by the shell in a folder with the sources' data, docs and tools; what follows, up to the next command or
the end of the block, is its output and its messages. "..." stands for any text in a line, alone in a line for any lines.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

source, binaries = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
program = next(path for path in (binaries / "bin/tuvo", binaries / "bin/tuvo.exe") if path.exists())
examples = [path for path in (binaries / "bin").glob("example_*") if path.suffix in ("", ".exe")]


def commands(guide):
    for block in re.findall(r"^```console\n(.*?)^```$", guide.read_text(encoding="utf-8"), re.M | re.S):
        for command, output in re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", block, re.M):
            if re.search(r"\b(tuvo|example_\w+|cat|head)\b", command):
                yield command, output


def matches(output, expected):
    """Line by line: `ends` holds how many lines of the output the expected ones so far may stand for."""
    lines, ends = output.splitlines(), {0}
    for wanted in expected.splitlines():
        if wanted == "...":
            ends = set(range(min(ends, default=len(lines) + 1), len(lines) + 1))
        else:
            line = re.compile(re.escape(wanted).replace(r"\.\.\.", ".*"))
            ends = {end + 1 for end in ends if end < len(lines) and line.fullmatch(lines[end])}
    return len(lines) in ends


with tempfile.TemporaryDirectory() as folder:
    for name in ("data", "docs", "tools"):
        os.symlink(source / name, pathlib.Path(folder) / name)
    for path in [program, *examples]:
        wrapper = pathlib.Path(folder) / path.stem
        wrapper.write_text(f'#!/bin/sh\nexec {os.environ.get("EMULATOR", "")} "{path}" "$@"\n', encoding="utf-8")
        wrapper.chmod(0o755)
    wrapper = pathlib.Path(folder) / "tuvo"
    settings = {name: value for name, value in os.environ.items() if name not in ("TUVO_CATALOGUE", "BU_LOG_LEVEL", "MOVRA_MEM_DEBUG")}
    settings["PATH"] = folder + os.pathsep + settings["PATH"]

    count = failures = 0
    for guide in [source / "README.md", *sorted((source / "docs").rglob("*.md"))]:
        for command, expected in commands(guide):
            # The guide to leaks leaks on purpose, which is no business of a sanitizer.
            settings["ASAN_OPTIONS"] = "detect_leaks=0" if "example_LeakChecker" in command else ""
            run = subprocess.run(["sh", "-c", command], cwd=folder, env=settings, text=True, stdin=subprocess.DEVNULL,
                                 stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
            count += 1
            output = run.stdout
            if program.suffix:  # Windows has other separators
                output, expected = output.replace("\\", "/"), expected.replace("\\", "/")
            if not matches(output, expected):
                print(f"{guide.name}: $ {command}\n{output}")
                failures += 1

    tour = subprocess.run(["sh", source / "tools/demo.sh", wrapper, pathlib.Path(folder) / "results"], env=settings, text=True, stdout=subprocess.PIPE)
    page = pathlib.Path(folder) / "results/bracket.html"
    if tour.returncode != 0 or "(see tuvo" in tour.stdout or "What to try next" not in tour.stdout or not page.exists():
        print(f"tools/demo.sh: exit code {tour.returncode}, it wrote:\n{tour.stdout}")
        failures += 1

print(f"{count} commands run")
sys.exit(failures > 0 or count == 0)
