"""gdb shows strings, containers and unit records as the printers say, and every member that a debugger's file names exists."""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import xml.etree.ElementTree

source, build = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])

SHOWN = {
    "values.empty": 'L""',
    "values.text": 'L"Länge \\"quoted\\""',
    "values.longText": 'L"' + 100 * "-=" + '"...',
    "values.path": 'L"folder/name"',
    "values.none": "BuArrayTempl<int> with 0 of 0 items",
    "values.numbers": "BuArrayTempl<int> with 3 of 4 items = {0, 10, 20}",
    "values.words": 'BuObjectArrayTempl<BuString> with 2 of 4 items = {L"bolts", L""}',
    "values.halves": "BuTemplateArray<double> with 1 of 4 items = {0.5}",
    "values.tree": "BuTreeItemTempl<int, BuCRTAllocator> with 2 children = {data = 1, "
                   "[0] = BuTreeItemTempl<int, BuCRTAllocator> with 1 children = {data = 2, "
                   "[0] = BuTreeItemTempl<int, BuCRTAllocator> with 0 children = {data = 3}}, "
                   "[1] = BuTreeItemTempl<int, BuCRTAllocator> with 0 children = {data = 4}}",
    "values.plain": 'plain = {message = L""}',
    "values.warning": 'warning 11 = {message = L"Action cancelled"}',
    "*values.baseUnit": "degF (7): heat, 1.8 of it make one reference unit, offset -459.67",
    "*values.system": "mm-ton (5): base units 12, 31, 44, -1",
    "*values.dataType": "Pressure (20): length^-1 mass^1 time^-2 = {[0] = MPa in system 5, [1] = Pa in system 0}",
    "values.catalogue": "0 baseUnits, 0 systems, 0 dataTypes, current system 0",
    "*(BuString*)values.damaged": "<error reading variable: no text: damaged, or not constructed yet>",
    "*('BuArrayTempl<int>'*)values.damaged": "BuArrayTempl<int> with 303174162 of 303174162 items = {<Cannot access memory at address 0x1212121212121212>}",
    "*('BuTreeItemTempl<int, BuCRTAllocator>'*)values.damaged":
        "BuTreeItemTempl<int, BuCRTAllocator> with 303174162 children = {data = 303174162, damaged = <Cannot access memory at address 0x1212121212121222>}",
    "*(_UnitBaseTypeStr*)values.damaged": "<error reading variable: Cannot access memory at address 0x1212121212121212>",
}


def gdb_output():
    commands = ["set print pretty off", "set debuginfod enabled off", "source " + str(source / "tools/debugger/printers.py"),
                "break ShowAll", "run"]
    for expression in SHOWN:
        commands += [f"echo @@{expression}@", f"print {expression}"]
    commands.append("echo @@")
    arguments = [argument for command in commands for argument in ("-ex", command)]
    settings = os.environ | {"LC_ALL": "C.UTF-8", "ASAN_OPTIONS": "detect_leaks=0"}
    return subprocess.run(["gdb", "-nx", "-q", "-batch", *arguments, build / "bin/debugger_values"], text=True, env=settings,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT).stdout


def natvis_problems():
    tree = xml.etree.ElementTree.parse(source / "tools/debugger/TuvoUtil.natvis")
    headers = "\n".join(path.read_text(encoding="utf-8") for path in (source / "include").rglob("*.h"))
    types = [node for node in tree.iter() if node.tag.endswith("}Type")]
    for node in types:
        name = node.get("Name").split("<")[0]
        body = re.search(r"^(?:class|struct)(?: \w+_API)? " + name + r"\b[^;]*\n\{\n(.*?)\n\};", headers, re.M | re.S)
        if body is None:
            yield f"there is no type {name}"
            continue
        for part in node.iter():
            text = part.text or ""
            used = re.findall(r"\{(\w+)", text) if part.tag.endswith("DisplayString") else re.findall(r"\b[a-z]\w*", text)
            used += re.findall(r"^\w+", part.get("Condition", ""))
            yield from (f"{name} has no member {member}" for member in used if not re.search(rf"\b{member}\b", body[1]))
    if len(types) < 8:
        yield "types are missing"


problems = list(natvis_problems())
if not (build / "bin/debugger_values").exists() or shutil.which("gdb") is None:
    print("no gdb for these binaries")
    sys.exit(1 if problems else 77)

output = gdb_output()
for expression, wanted in SHOWN.items():
    found = re.search("@" + re.escape(f"@{expression}@") + r"\$\d+ = (.*?)\n?(?=@@|\Z)", output, re.S)
    if found is None or found[1].rstrip("\n") != wanted:
        problems.append(f"{expression}: {found[1] if found else 'nothing'}\n  in place of {wanted}")
if problems:
    print("\n".join(problems) + "\n" + output)
print(f"{len(SHOWN)} values shown")
sys.exit(bool(problems))
