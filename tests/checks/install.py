"""What is installed can be moved, also to a folder with a blank in its name, and somebody else's project builds and runs
with it, by CMake and by pkg-config.

For Windows the project is built with the same cross compiler and runs under Wine.
"""

import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

source, build = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
settings = dict(re.findall(r"^(\w+):\w+=(.*)$", (build / "CMakeCache.txt").read_text(encoding="utf-8"), re.M))
emulator = os.environ.get("EMULATOR", "").split()
on_windows = (build / "bin/TuvoUtil.dll").exists()
ending = ".exe" if on_windows else ""

if settings.get("TUVO_SANITIZE"):
    print("libraries with sanitizers are not installed")
    sys.exit(77)


def run(*command, succeeds=True, **variables):
    """The output of a command, which has to succeed, or to fail."""
    done = subprocess.run([str(part) for part in command], text=True, env=os.environ | variables, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    if (done.returncode == 0) != succeeds:
        sys.exit(f"exit code {done.returncode}: {' '.join(map(str, command))}\n{done.stdout}")
    return done.stdout


def expect(found, wanted, what):
    if found != wanted:
        sys.exit(f"{what}: {found!r} in place of {wanted!r}")


with tempfile.TemporaryDirectory() as name:
    folder = pathlib.Path(name)
    run("cmake", "--install", build, "--prefix", folder / "first")
    tree = (folder / "first").rename(folder / "moved here")
    library = next(tree.rglob("TuvoUtilConfig.cmake")).parents[2]
    data = tree / "share/tuvoutil"
    running = {"WINEPATH": str(tree / "bin")} if on_windows else {"LD_LIBRARY_PATH": str(library)}

    # All headers and nothing else, and no word of where they come from.
    headers = {path.relative_to(source / "include") for path in (source / "include").rglob("*.h")}
    expect({path.relative_to(tree / "include") for path in (tree / "include").rglob("*") if path.is_file()}, headers, "headers")
    for path in [*library.rglob("*.cmake"), *library.rglob("*.pc")]:
        for place in (str(source), str(build), name):
            expect(place in path.read_text(encoding="utf-8"), False, f"{place} in {path}")

    # Nothing but our own targets is asked of those who use the library.
    targets = {target for path in library.rglob("TuvoUtilTargets*.cmake")
               for target in re.findall(r"(?<!_for_)\b(?!_)\w+::\w+", path.read_text(encoding="utf-8"))}
    expect(targets, {"TuvoUtil::TuvoUtil", "TuvoUtil::basutl"}, "targets")

    # The pages find what they show, and the notices of what the binaries hold are there.
    pages = next(tree.rglob("README.md")).parent
    run(sys.executable, source / "tests/checks/links.py", pages)
    notices = set(re.findall(r"^======== ([\w-]+)", (pages / "copyright").read_text(encoding="utf-8"), re.M))
    expect(notices, {"CLI11", "stb_image"} | ({"pugixml", "mingw-w64"} if on_windows else {"libbacktrace"}), "notices")

    # The program finds its library and its catalogue from any folder.
    for arguments, wanted in ((["eval", "6*7"], "42"), (["convert", "2", "--type", "Length", "--from", "m,kg,sec", "--to", "mm,kg,sec", "--plain"], "2000")):
        expect(run(*emulator, tree / f"bin/tuvo{ending}", *arguments).strip(), wanted, f"tuvo {arguments[0]}")

    # CMake.
    compiler = [f"-D{key}={settings[key]}" for key in ("CMAKE_TOOLCHAIN_FILE", "CMAKE_CXX_COMPILER") if settings.get(key)]
    configure = ["cmake", "-G", "Ninja", "-S", source / "tests/consumer", *compiler,
                 f"-DCMAKE_FIND_ROOT_PATH={tree}", f"-DCMAKE_PREFIX_PATH={tree}"]
    for version in ("23", "25"):
        if "compatible" not in run(*configure, "-B", folder / version, f"-DWANTED_VERSION={version}", succeeds=False):
            sys.exit(f"version {version} was refused for another reason")
    run(*configure, "-B", folder / "cmake")
    run("cmake", "--build", folder / "cmake")
    answer = "210000 MPa are 2.1e+11 Pa, 0"
    catalogue = str(data) if not on_windows else "Z:" + str(data)
    expect(run(*emulator, folder / f"cmake/consumer{ending}", catalogue, **running).strip(), answer, "consumer by CMake")
    expect(run(*emulator, folder / f"cmake/strings{ending}", **running).strip(), "bolts: 3", "strings by CMake")

    # gdb reads the printers that stand beside the library, when it may.
    if list(library.glob("libbasutl.so.*-gdb.py")) and shutil.which("gdb"):
        printers = run("gdb", "-nx", "-q", "-batch", "-iex", "set debuginfod enabled off", "-iex", f"add-auto-load-safe-path {library}",
                       "-ex", "start", "-ex", "info pretty-printer .*basutl TuvoUtil", folder / "cmake/strings", **running)
        expect("BuString" in printers, True, f"printers in gdb\n{printers}\n")

    # pkg-config.
    packages = {"PKG_CONFIG_LIBDIR": str(library / "pkgconfig")}
    expect(run("pkg-config", "--modversion", "TuvoUtil", **packages).split(".")[0], "24", "version")
    found, = shlex.split(run("pkg-config", "--variable=datadir", "TuvoUtil", **packages))
    expect(pathlib.Path(found).resolve(), data, "datadir")
    cxx = settings["CMAKE_CXX_COMPILER"] if "CMAKE_CXX_COMPILER" in settings else "x86_64-w64-mingw32-g++-posix"
    for package, stem, wanted in (("TuvoUtil", "Main", answer), ("basutl", "Strings", "bolts: 3")):
        flags = shlex.split(run("pkg-config", "--cflags", "--libs", package, **packages))
        program = folder / f"{stem}{ending}"
        if on_windows:  # the compiler's own libraries go into the program
            flags = ["-static", "-Wl,-Bdynamic", *flags, "-Wl,-Bstatic"]
        run(cxx, "-std=c++20", source / f"tests/consumer/{stem}.cpp", *flags, "-o", program)
        arguments = [catalogue] if stem == "Main" else []
        expect(run(*emulator, program, *arguments, **running).strip(), wanted, f"{stem} by pkg-config")

print(f"{len(headers)} headers installed, 4 programs built with them and run")
