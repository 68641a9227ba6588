#!/usr/bin/env bash
# Unpacks the .zip of a folder and runs its program from another folder, with nothing else on the path:
#   windows.sh FOLDER
set -euo pipefail
packages=$(realpath "$1")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

mkdir "$scratch/a folder" "$scratch/elsewhere"
unzip -q "$packages"/*.zip -d "$scratch/a folder"
program=$(echo "$scratch/a folder"/*/bin/tuvo.exe)
cd "$scratch/elsewhere"

said() {
    wine "$program" "$@" </dev/null 2>&1 | tr -d '\r'
}

[ "$(said eval '6*7')" = 42 ]
[ "$(said convert 210000 --type Pressure --from mm,ton,sec --to m,kg,sec --plain)" = 2.1e+11 ]
said units --check >checked
said info | grep -q 'Unit catalogue .*share.tuvoutil.unit.xml'

# What it needs is in the archive or in Windows itself.
for image in "$(dirname "$program")"/*.{dll,exe}; do
    x86_64-w64-mingw32-objdump -p "$image" | sed -n 's/^\s*DLL Name: //p'
done | sort -u | grep -viE '^(TuvoUtil|basutl|KERNEL32|msvcrt|USER32|SHELL32|ADVAPI32|ole32|dbghelp|SHLWAPI|PSAPI|WS2_32)\.dll$' &&
    { echo "windows.sh: these libraries are missing" >&2 && exit 1; }
for part in bin/basutl.dll-gdb.py include/TuvoUtil/Units.h lib/libTuvoUtil.dll.a lib/cmake/TuvoUtil/TuvoUtilConfig.cmake \
    share/tuvoutil/unit.xml share/doc/TuvoUtil/copyright; do
    [ -f "$(dirname "$program")/../$part" ] || { echo "windows.sh: no $part" >&2 && exit 1; }
done
echo "unpacked and run: $(basename "$packages"/*.zip)"
