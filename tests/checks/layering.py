"""Lower modules never include upper ones, and the system is asked behind the seam alone.

Each module may include itself, what is listed for it here, and whatever those may include.
"""

import pathlib
import re
import sys

source = pathlib.Path(sys.argv[1])

MAY_INCLUDE = {
    "platform": [],
    "basutl": ["platform"],
    "Diagnostics": ["basutl", "platform"],
    "VFixedHeap": ["basutl"],
    "TuvoMemory": ["VFixedHeap", "Diagnostics"],
    "VUnit": ["TuvoMemory", "Kernels"],
    "VUnitUtil": ["VUnit"],
    "VUtlStr": ["TuvoMemory", "Kernels"],
    "VUtlGen": ["VUtlStr", "Kernels"],
    "VUtlMisc": ["VUtlStr"],
    "Filer": ["TuvoMemory", "Kernels"],
    "QDDebugUtl": ["TuvoMemory"],
    "CallStack": ["TuvoMemory"],
    "Benchmark": ["TuvoMemory"],
    "Evaluator": ["TuvoMemory"],
    "VSysInfoUtl": ["TuvoMemory"],
    "Progress": ["TuvoMemory"],
    "Image": ["TuvoMemory"],
    "IntegrityCheck": ["TuvoMemory"],
    "Kernels": [],
    "tools": ["basutl"],  # and every public header
    "examples": ["basutl"],
}

# The module that a public header belongs to.
PUBLIC_HEADERS = {
    "Export.h": None, "Types.h": None,
    "Messages.h": "Diagnostics", "Environment.h": "Diagnostics", "TrackedFile.h": "Diagnostics",
    "FixedHeap.h": "VFixedHeap", "Memory.h": "TuvoMemory", "LeakChecker.h": "TuvoMemory", "CallStack.h": "CallStack",
    "Units.h": "VUnit", "EquationEvaluator.h": "Evaluator", "IntegrityCheck.h": "IntegrityCheck",
    "Benchmark.h": "Benchmark",
    "StringBreak.h": "VUtlStr", "IdList.h": "VUtlStr", "StringMatch.h": "VUtlStr", "StringClean.h": "VUtlStr",
    "NumberText.h": "VUtlStr", "BinaryRead.h": "VUtlGen", "BulletinTable.h": "VUtlGen",
    "Checksum.h": "Filer", "WriteStream.h": "Filer", "DebugConfig.h": "QDDebugUtl", "Progress.h": "Progress",
    "ArrayHelpers.h": "VUtlGen", "Color.h": "VUtlGen",
    "FileName.h": "VUtlMisc", "FileSystem.h": "VUtlMisc", "CompressedFile.h": "VUtlMisc",
    "SystemInfo.h": "VSysInfoUtl", "Image.h": "Image",
}

SYSTEM_CONDITIONAL = re.compile(r"^\s*#\s*(?:el)?if.*(_WIN32|_WIN64|__linux__|__unix__|__MINGW|__APPLE__|_MSC_VER)")
SYSTEM_HEADER = re.compile(r"#\s*include\s*<(windows|unistd|fcntl|dlfcn|dirent|spawn|pthread|sys/|dbghelp|hwloc|backtrace)")
INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]([^">]+)[">]', re.M)


def allowed(module):
    reached, pending = set(), [module]
    while pending:
        name = pending.pop()
        if name not in reached:
            reached.add(name)
            pending += MAY_INCLUDE.get(name, [])
    return reached


def module_of_file(path):
    parts = path.relative_to(source).parts
    if parts[0] == "Implementation":
        return parts[1]
    if parts[0] == "include":
        return "basutl" if parts[1] == "basutl" else PUBLIC_HEADERS.get(parts[2])
    return parts[0]


def module_of_include(name):
    parts = name.split("/")
    if parts[0] == "TuvoUtil":
        return PUBLIC_HEADERS.get(parts[1], "unlisted public header")
    return parts[0] if parts[0] in MAY_INCLUDE and len(parts) > 1 else None


def faults(path):
    module = module_of_file(path)
    text = path.read_text(encoding="utf-8")
    reach = allowed(module)
    for name in INCLUDE.findall(text) if module in MAY_INCLUDE else []:
        target = module_of_include(name)
        if target and target not in reach and not (module in ("tools", "examples") and name.startswith("TuvoUtil/")):
            yield f"includes {name}, which {module} may not know"
    for line in text.splitlines():
        if SYSTEM_CONDITIONAL.search(line) and path.name != "Export.h":
            yield f"asks for the system: {line.strip()}"
        if SYSTEM_HEADER.search(line) and module not in ("platform", "tests", "bench"):
            yield f"includes a header of the system: {line.strip()}"


files = [path for folder in ("include", "platform", "basutl", "Implementation", "tools", "examples", "tests", "bench")
         for path in sorted((source / folder).rglob("*")) if path.suffix in (".h", ".cpp")]
found = [f"{path.relative_to(source)} {fault}" for path in files for fault in faults(path)]
print(f"{len(files)} files read")
print("\n".join(found))
sys.exit(len(found) > 0 or not files)
