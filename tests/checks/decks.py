"""tuvo model reads the decks that other programs are tested with, and counts what an awk program counts in them.

They come with the packages calculix-ccx-test and z88-data. Without these the test is skipped.
"""

import collections
import gzip
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

source, binaries = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
program = next(path for path in (binaries / "bin/tuvo", binaries / "bin/tuvo.exe") if path.exists())
command = [*os.environ.get("EMULATOR", "").split(), str(program), "model"]
on_windows = program.suffix == ".exe"
BULK_COUNTS = r'{ sub(/\r$/, "") } /^GRID,/ { ++n } /^C[A-Z]+[0-9]?,/ { ++t[$1] } END { print "nodes", n; for (c in t) print c, t[c] }'

keyword_decks = sorted(pathlib.Path("/usr/share/doc/calculix-ccx-test/examples/test").glob("*.inp*"))
bulk_decks = sorted(pathlib.Path("/usr/share/z88").glob("*.nas"))
if not keyword_decks or not bulk_decks:
    print("skipped: calculix-ccx-test or z88-data is not installed")
    sys.exit(77)
if on_windows:  # a sample: to start a program takes long there
    keyword_decks = keyword_decks[::10]


def counts_of(lines):
    return {name: int(count) for name, count in (line.split() for line in lines)}


def shown_counts(output):
    """{"nodes": 8, "C3D8": 1} of what tuvo shows; several types may share a name."""
    counts = collections.Counter()
    for count, name in re.findall(r"^ *(\d+)  (?:  )?(nodes|\w+(?= \(\d+ node))", output, re.M):
        counts[name] += int(count)
    return counts


def awk(arguments, text):
    run = subprocess.run(["awk", *arguments], input=text, stdout=subprocess.PIPE, check=True, env={"LC_ALL": "C", **os.environ})
    return counts_of(run.stdout.decode().splitlines())


def problem(deck, shown_as, expected):
    run = subprocess.run([*command, shown_as], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    if run.returncode != 0:
        return f"{deck.name}: {run.returncode}, {run.stderr.decode(errors='replace')[:300]}"
    shown = shown_counts(run.stdout.decode(errors="replace"))
    return None if shown == expected else f"{deck.name}: {dict(shown)}, not {expected}"


problems = []
with tempfile.TemporaryDirectory() as folder:
    for deck in keyword_decks:
        is_packed = deck.suffix == ".gz"
        text = gzip.decompress(deck.read_bytes()) if is_packed else deck.read_bytes()
        # What is unpacked goes where everybody's does: no other run may have a deck of the name there.
        copy = pathlib.Path(folder) / f"{os.getpid()}_{deck.name}"
        if is_packed and on_windows:
            copy = copy.with_suffix("")
            copy.write_bytes(text)
        else:
            shutil.copy(deck, copy)
        problems.append(problem(deck, copy, awk(["-f", source / "tests/checks/deck_counts.awk"], text)))
    for deck in bulk_decks:
        problems.append(problem(deck, deck, awk(["-F,", BULK_COUNTS], deck.read_bytes())))
problems = [text for text in problems if text]
print("\n".join(problems + [f"{len(keyword_decks)} decks of CalculiX, {len(bulk_decks)} of NASTRAN, {len(problems)} wrong"]))
sys.exit(1 if problems else 0)
