"""tuvo model takes at most twice the memory of the arrays that hold the model.

Of a build with sanitizers, and under an emulator, the memory tells nothing: the test is skipped.
"""

import os
import pathlib
import subprocess
import sys
import tempfile

source, binaries = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
program = binaries / "bin/tuvo"
if not program.exists() or b"__asan_init" in program.read_bytes():
    print("skipped: the memory of this build tells nothing")
    sys.exit(77)


def plate(along, layers=10):
    """A plate of hexahedra, and the bytes of its arrays: ids and coordinates of nodes, ids and nodes of elements, sets."""
    row = along + 1
    nodes = row * row * (layers + 1)
    yield "*NODE, NSET=Nall\n"
    for i in range(nodes):
        yield f"{i + 1}, {i % row * 0.731234:.7g}, {i // row % row * 0.291571:.7g}, {i // row // row * 1.5:.7g}\n"
    yield "*ELEMENT, TYPE=C3D8, ELSET=Eall\n"
    for i in range(along * along * layers):
        a = i // along // along * row * row + i // along % along * row + i % along + 1
        b = a + row * row
        yield f"{i + 1}, {a}, {a + 1}, {a + 1 + row}, {a + row}, {b}, {b + 1}, {b + 1 + row}, {b + row}\n"


def array_bytes(along, layers=10):
    nodes, elements = (along + 1) ** 2 * (layers + 1), along * along * layers
    return nodes * (4 + 3 * 8) + elements * (4 + 8 * 4) + (nodes + elements) * 4


def peak_bytes(along):
    with tempfile.NamedTemporaryFile("w", suffix=".inp") as deck:
        deck.writelines(plate(along))
        deck.flush()
        process = subprocess.Popen([program, "model", deck.name], stdout=subprocess.DEVNULL)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        assert process.returncode == 0
    return usage.ru_maxrss * 1024


ALONG = 250
peak, arrays = peak_bytes(ALONG), array_bytes(ALONG)
print(f"{arrays / 1e6:.1f} MB of arrays, {peak / 1e6:.1f} MB at the peak, the program itself included")
sys.exit(0 if peak <= 2 * arrays else 1)
