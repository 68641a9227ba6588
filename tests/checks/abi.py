"""Programs built against the last released libraries run with these: no function is gone, no public type has another layout.

Additions are welcome. The released interfaces are kept in tests/abi as abidw writes them, compressed; `./dev abi-release`
writes them anew when a release may break programs, and then the major version changes too.
"""

import lzma
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

source, build = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
settings = dict(re.findall(r"^(\w+):\w+=(.*)$", (build / "CMakeCache.txt").read_text(encoding="utf-8"), re.M))
NARROWED = ["--no-corpus-path", "--no-comp-dir-path", "--no-show-locs", "--drop-private-types", "--exported-interfaces-only",
            "--type-id-style", "hash", "--headers-dir", source / "include"]

if not (build / "bin/libTuvoUtil.so").exists() or settings.get("TUVO_SANITIZE") or "clang" in settings["CMAKE_CXX_COMPILER"] \
        or shutil.which("abidiff") is None:
    print("these libraries are not compared, they are not built by gcc as the released ones, or there is no abidiff")
    sys.exit(77)



def interface(library):
    """What of a library programs can see, as text."""
    return subprocess.run(["abidw", *NARROWED, library], check=True, stdout=subprocess.PIPE).stdout


failures = 0
for name in ("TuvoUtil", "basutl"):
    present, released = interface(build / f"bin/lib{name}.so"), source / f"tests/abi/{name}.abi.xz"
    if sys.argv[3:] == ["--release"]:
        released.write_bytes(lzma.compress(present, preset=9))
        continue
    with tempfile.TemporaryDirectory() as folder:
        files = [pathlib.Path(folder) / f"{when}.abi" for when in ("released", "present")]
        for file, dump in zip(files, (lzma.decompress(released.read_bytes()), present)):
            file.write_bytes(dump)
        run = subprocess.run(["abidiff", "--no-added-syms", *files], text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    if run.returncode != 0:
        print(f"lib{name}.so: exit code {run.returncode}\n{run.stdout}")
        failures += 1
print("nothing that programs rely on has changed" if failures == 0 else "programs have to be built anew")
sys.exit(failures > 0)
