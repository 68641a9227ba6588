"""The manual page is one that man can show, and holds every word of the program's help."""

import os
import pathlib
import re
import shutil
import subprocess
import sys

build = pathlib.Path(sys.argv[2]).resolve()
program, page = build / "bin/tuvo", build / "tuvo.1"
if not page.exists() or shutil.which("groff") is None:
    print("no manual page, or no groff to read it")
    sys.exit(77)


def output(*command):
    run = subprocess.run(command, check=True, text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    if run.stderr:
        sys.exit(f"{command[0]}: {run.stderr}")
    return run.stdout


def words(text):
    return re.findall(r"\S+", text)


shown = output("groff", "-ww", "-man", "-Tascii", "-P-cbou", "-rLL=1000n", "-rHY=0", page)
commands = re.findall(r"^  (\w\S*) ", re.search(r"^Subcommands:\n((?:  .*\n)+)", output(program, "--help"), re.M)[1], re.M)
missing = set()
for command in ([], *([name] for name in commands)):
    missing |= set(words(output(program, *command, "--help"))) - set(words(shown)) - {"Usage:", "Subcommands:", "Positionals:", "Options:"}
print(f"missing in the page: {sorted(missing)}" if missing else f"{len(commands)} commands in the page")
sys.exit(bool(missing) or not commands)
