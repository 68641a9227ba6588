"""A browser shows the page of tuvo model: the picture is there, in its colours, names stay text, and nothing is complained of.

Skipped where there is no Chromium.
"""

import os
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import zlib

SKIPPED = 77
DECK = """*HEADING
<script>document.title='run'</script><img src=x onerror="console.error('run')">
*NODE
1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,0,0,1\n6,1,0,1\n7,1,1,1\n8,0,1,1
*ELEMENT,TYPE=C3D8,ELSET="</title><script>alert(1)</script>"
1,1,2,3,4,5,6,7,8
"""

source, binaries = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
program = next(path for path in (binaries / "bin/tuvo", binaries / "bin/tuvo.exe") if path.exists())
browser = shutil.which("chromium") or shutil.which("chromium-browser")
if browser is None:
    print("skipped: there is no Chromium")
    sys.exit(SKIPPED)


def browse(folder, *arguments):
    run = subprocess.run([browser, "--headless", "--no-sandbox", "--disable-gpu", "--hide-scrollbars", "--enable-logging=stderr",
                          f"--user-data-dir={folder}/profile", "--window-size=800,900", *arguments, f"file://{folder}/page.html"],
                         cwd=folder, text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    return run.stdout, [line for line in run.stderr.splitlines() if "CONSOLE" in line]


def pixels(path):
    """The pixels of a PNG of 8-bit RGB or RGBA, without those of its last byte of opacity."""
    data = path.read_bytes()
    at, packed = 8, b""
    while at < len(data):
        size, kind = struct.unpack(">I4s", data[at:at + 8])
        if kind == b"IHDR":
            width, height, depth, colours = struct.unpack(">IIBB", data[at + 8:at + 18])
        elif kind == b"IDAT":
            packed += data[at + 8:at + 8 + size]
        at += size + 12
    assert depth == 8 and colours in (2, 6)
    step = 3 if colours == 2 else 4
    rows, before = zlib.decompress(packed), bytearray(width * step)
    for y in range(height):
        start = y * (width * step + 1)
        method, row = rows[start], bytearray(rows[start + 1:start + 1 + width * step])
        for i in range(len(row)):
            left = row[i - step] if i >= step else 0
            up, corner = before[i], before[i - step] if i >= step else 0
            if method == 1:
                row[i] = (row[i] + left) & 255
            elif method == 2:
                row[i] = (row[i] + up) & 255
            elif method == 3:
                row[i] = (row[i] + (left + up) // 2) & 255
            elif method == 4:
                guess = left + up - corner
                nearest = min((abs(guess - left), 0, left), (abs(guess - up), 1, up), (abs(guess - corner), 2, corner))
                row[i] = (row[i] + nearest[2]) & 255
        yield from (tuple(row[i:i + 3]) for i in range(0, len(row), step))
        before = row


with tempfile.TemporaryDirectory() as folder:
    folder = pathlib.Path(folder)
    (folder / "deck.inp").write_text(DECK, encoding="utf-8")
    emulator = os.environ.get("EMULATOR", "").split()
    subprocess.run([*emulator, program, "model", "deck.inp", "--html", "page.html", "--colour-sets"], cwd=folder, check=True,
                   stdout=subprocess.DEVNULL)
    dom, complaints = browse(folder, "--dump-dom")
    _, more = browse(folder, f"--screenshot={folder}/page.png")
    faces = {tuple(bytes.fromhex(colour)) for colour in re.findall(r"^\.g0-\d\{fill:#(\w{6})", dom, re.M)}
    seen = {}
    for pixel in pixels(folder / "page.png"):
        seen[pixel] = seen.get(pixel, 0) + 1

    failures = [f"the console says: {line}" for line in complaints + more]
    shown = [colour for colour in faces if seen.get(colour, 0) > 10_000]
    if len(shown) != 3:
        failures.append(f"a cube shows three faces in three shades, not {len(shown)}; the most frequent colours are "
                        f"{sorted(seen.items(), key=lambda entry: -entry[1])[:6]}")
    if "<script" in dom or "<img" in dom or "<title>deck.inp</title>" not in dom:
        failures.append(f"a name has become a part of the page:\n{dom}")
    if "&lt;/title&gt;&lt;script&gt;alert(1)&lt;/script&gt;" not in dom:
        failures.append(f"the name of the set is not shown:\n{dom}")

print("\n".join(failures) or "the page is shown as it should be")
sys.exit(len(failures) > 0)
