"""bash completes the commands and options that the program has, and names that the catalogue knows."""

import os
import pathlib
import re
import shutil
import subprocess
import sys

source, build = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
program = build / "bin/tuvo"
if not program.exists() or shutil.which("bash") is None:
    print("no bash for this program")
    sys.exit(77)

SCRIPT = """
source "$1"; shift
COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
_tuvo && for reply in "${COMPREPLY[@]}"; do printf '%s\\n' "$reply"; done
"""


def completed(*words):
    settings = {name: value for name, value in os.environ.items() if name != "TUVO_CATALOGUE"}
    run = subprocess.run(["bash", "-euc", SCRIPT, "bash", source / "tools/completion/tuvo.bash", program, *words], check=True,
                         env=settings, text=True, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)
    return run.stdout.splitlines()


def said(*arguments):
    return subprocess.run([program, *arguments], check=True, text=True, stdout=subprocess.PIPE).stdout


commands = re.findall(r"^  (\w\S*) ", re.search(r"^Subcommands:\n((?:  .*\n)+)", said("--help"), re.M)[1], re.M)
problems = []
for words, wanted in [
    (("",), commands),
    (("con",), ["convert"]),
    (("--v",), ["--version"]),
    (("convert", "--t"), ["--type", "--to-type", "--to"]),
    (("leaks", "--a"), ["--against"]),
    (("convert", "--type", "Press"), ["Pressure", "Pressure\\ Gradient"]),
    (("convert", "--type", "=", "Kinem"), ["Kinematic\\ Viscosity"]),
    (("convert", "--type", "Young"), ["Young\\'s\\ Modulus"]),
    (("convert", "--type", '"Young'), ["Young's Modulus"]),
    (("convert", "--type", "'Young"), ["Young'\\''s Modulus"]),
    (("convert", "2", "--from", "mm-ton-sec-k"), ["mm-ton-sec-kelvin"]),
    (("checksum", "read"), []),
]:
    found = completed(*words)
    if found != wanted:
        problems.append(f"{words}: {found} in place of {wanted}")
for command in commands:
    for option in re.findall(r"--[a-z][\w-]*", said(command, "--help").split("Examples:")[0].split("Options:")[1].split("\n\n")[0]):
        if option not in completed(command, option[:3]):
            problems.append(f"{command} {option[:3]}: {option} is missing")

print("\n".join(problems) or f"{len(commands)} commands completed")
sys.exit(bool(problems))
