"""The libraries export the listed public names of every header that exists, and nothing else.

Compiler-made symbols are set aside: type information, and constructors, destructors and assignments of listed classes.
exports.tsv holds header, kind, name and signature of each public name.
"""

import os
import pathlib
import re
import subprocess
import sys

source = pathlib.Path(sys.argv[1])
binaries = pathlib.Path(sys.argv[2]) / "bin"
on_windows = (binaries / "TuvoUtil.dll").exists()


def run(*command, **options):
    return subprocess.run(command, check=True, text=True, stdout=subprocess.PIPE, **options).stdout


def exported_symbols(library):
    if on_windows:
        table = run(os.environ.get("OBJDUMP", "objdump"), "-p", binaries / f"{library}.dll")
        names = re.findall(r"^\s*\[\s*\d+\]\s+(?:\+base\[\s*\d+\]\s+[0-9a-f]+\s+)?(\S+)$",
                           table.split("[Ordinal/Name Pointer] Table")[1], re.M)
    else:
        table = run(os.environ.get("NM", "nm"), "-D", "--defined-only", binaries / f"lib{library}.so")
        names = [line.split()[-1].split("@")[0] for line in table.splitlines() if " A " not in line]  # A: the version itself
    names = [name for name in names if not re.match(r"_ZN?K?(St|9__gnu_cxx)", name)]  # standard templates are no exports of ours
    return run("c++filt", input="\n".join(names)).splitlines()


def plain_name(symbol):
    """The qualified name without parameters, template arguments and function-local parts."""
    name = re.sub(r"\[abi:\w+\]", "", symbol)
    if "operator" not in name:
        while re.search(r"<[^<>]*>", name):
            name = re.sub(r"<[^<>]*>", "", name)
    return name.split("(")[0].split(" ")[-1] if "operator" not in name else name.split("(")[0]


def is_compiler_made(symbol, classes):
    if symbol.startswith(("__odr_asan", "__asan", "__ubsan")):
        return True
    if re.match(r"(vtable|typeinfo|typeinfo name|VTT|guard variable|non-virtual thunk|virtual thunk)\b", symbol):
        return True
    if re.match(r"(.* )?(std|__gnu_cxx|__cxxabiv1)::", symbol.split("(")[0]) or symbol.startswith(("std::", "_ZNSt")):
        return True
    scope, _, last = plain_name(symbol).rpartition("::")
    return scope in classes and (last.lstrip("~") == scope.split("::")[-1] or last == "operator=")


def report(title, names):
    if names:
        print(f"{title}:\n  " + "\n  ".join(sorted(names)))
    return len(names)


rows = [line.rstrip("\n").split("\t") for line in open(source / "tests/exports.tsv", encoding="utf-8")]
rows = [row for row in rows if (source / "include/TuvoUtil" / row[0]).exists()]
headers = {row[0]: (source / "include/TuvoUtil" / row[0]).read_text(encoding="utf-8") for row in rows}
classes = {name for _, kind, name, _ in rows if kind in ("class", "struct")}
wanted = {name for _, kind, name, _ in rows if kind in ("function", "method", "global")}
pure = {name for header, kind, name, _ in rows if kind == "method" and
        re.search(r"\b" + re.escape(name.split("::")[-1]) + r"\([^;{]*\)[^;{]*= 0;", headers[header])}

symbols = exported_symbols("TuvoUtil")
found = {plain_name(symbol) for symbol in symbols}
listed = wanted | {name.replace("~", "") for name in wanted}
extra = {symbol for symbol in symbols
         if plain_name(symbol) not in listed and not is_compiler_made(symbol, classes) and symbol != "DllMain"}
foreign = {symbol for symbol in exported_symbols("basutl")
           if not re.match(r"(.*\b)?Bu[A-Z]", plain_name(symbol)) and not is_compiler_made(symbol, set())
           and "BuString" not in symbol}

print(f"{len(wanted)} listed names, {len(symbols)} symbols of TuvoUtil")
sys.exit(report("listed but not exported", wanted - pure - found) + report("exported but not listed", extra) +
         report("basutl exports foreign names", foreign) > 0 or len(wanted) == 0)
