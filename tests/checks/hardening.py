"""The built binaries are named, versioned and hardened as they should be."""

import os
import pathlib
import re
import subprocess
import sys

source, build = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
binaries = build / "bin"
settings = dict(re.findall(r"^(\w+):\w+=(.*)$", (build / "CMakeCache.txt").read_text(encoding="utf-8"), re.M))
problems = []


def output(*command):
    return subprocess.run(command, check=True, text=True, stdout=subprocess.PIPE).stdout


def expect(holds, name, what):
    if not holds:
        problems.append(f"{name}: {what}")


def check_image(name):
    """Windows: addresses are chosen at random, in all 64 bits, and data is not run."""
    flags = re.search(r"^DllCharacteristics\t\w+\n((?:\t+\w+\n)+)", output(os.environ.get("OBJDUMP", "objdump"), "-p", binaries / name), re.M)
    for flag in ("HIGH_ENTROPY_VA", "DYNAMIC_BASE", "NX_COMPAT"):
        expect(flags and flag in flags[1].split(), name, f"not {flag}")


def check_object(name, soname, node):
    about = output("readelf", "-hldW", binaries / name)
    symbols = re.findall(r"^ *\d+: +[0-9a-f]+ +\w+ +(\w+) +\w+ +\w+ +(\S+) (\S+)", output("readelf", "--dyn-syms", "-W", binaries / name), re.M)
    expect(re.search(r"GNU_RELRO", about) and re.search(r"FLAGS.*\bNOW\b", about), name, "its tables stay writable")
    expect(re.search(r"GNU_STACK .* RW +0x", about), name, "its stack may be run")
    expect("TEXTREL" not in about, name, "its code is written to when it is loaded")
    expect(any(symbol.startswith("__stack_chk_fail") for _, _, symbol in symbols), name, "no guard of the stack")
    if soname is None:
        expect(re.search(r"Type: +DYN", about) and "PIE" in about, name, "it is loaded at one fixed address")
        return symbols
    expect(f"soname: [{soname}]" in about, name, f"it is not called {soname}")
    exported = [symbol for _, section, symbol in symbols if section not in ("UND", "ABS")]
    plain = [symbol for symbol in exported if not symbol.endswith(f"@@{node}")]
    expect(exported and not plain, name, f"names without the version {node}: {plain[:5]}")
    return symbols


if (binaries / "TuvoUtil.dll").exists():
    for image in ("TuvoUtil.dll", "basutl.dll", "tuvo.exe"):
        check_image(image)
else:
    objects = (("libTuvoUtil.so", "libTuvoUtil.so.24", "TUVOUTIL_24"), ("libbasutl.so", "libbasutl.so.1", "BASUTL_1"), ("tuvo", None, None))
    needed = [symbol for entry in objects for _, _, symbol in check_object(*entry)]
    if settings["CMAKE_BUILD_TYPE"] != "Debug":
        expect(any(re.match(r"__\w+_chk(@|$)", symbol) for symbol in needed), "all", "no checked form of a C function")

print("\n".join(problems) or "all binaries are as they should be")
sys.exit(bool(problems))
