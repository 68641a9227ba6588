"""tuvo info counts the processors where the kernel does not show them, as in a container without /sys, and says nothing.

An empty folder is laid over /sys for the program alone; where nobody may do that, the test is skipped.
"""

import os
import pathlib
import re
import subprocess
import sys

binaries = pathlib.Path(sys.argv[2]).resolve()
program = binaries / "bin/tuvo"
without_sys = ["unshare", "--user", "--map-root-user", "--mount", "sh", "-c", 'mount -t tmpfs none /sys && exec "$@"', "sh"]
if not program.exists() or subprocess.run([*without_sys, "true"], capture_output=True).returncode != 0:
    print("skipped: nothing can be laid over /sys")
    sys.exit(77)

run = subprocess.run([*without_sys, program, "info"], capture_output=True, text=True)
processors = re.search(r"^Processors +(\d+) usable of (\d+) logical processors", run.stdout, re.MULTILINE)
print(run.stdout, run.stderr)
sys.exit(0 if run.stderr == "" and processors and int(processors[1]) == len(os.sched_getaffinity(0)) else 1)
