"""What becomes of the files of tuvo model when the disk is full or the run is interrupted: nothing half-written stays.

Full disks are played by a limit on the size of files and by /dev/full, interruptions by signals: skipped on Windows.
"""

import gzip
import pathlib
import signal
import subprocess
import sys
import tempfile

SKIPPED = 77
OPTIONS = {"--report": "report.txt", "--write": "model.bin", "--html": "page.html"}

source, binaries = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
program = binaries / "bin/tuvo"
if not program.exists():
    print("skipped: this system has neither such limits nor such signals")
    sys.exit(SKIPPED)

failures = []


def check(what, run, code, message, folder, names):
    errors = run.stderr if isinstance(run.stderr, str) else run.communicate()[1]
    found = sorted(path.name for path in folder.iterdir())
    if run.returncode != code or message not in errors or found != sorted(names):
        failures.append(f"{what}: exit code {run.returncode}, files {found}, messages:\n{errors}")


with tempfile.TemporaryDirectory() as path:
    folder = pathlib.Path(path)
    deck = folder / "deck.inp"
    names = [deck.name, "page.html"]
    (folder / "page.html").write_text("old")
    with deck.open("w") as stream:
        subprocess.run([sys.executable, source / "tools/bracket.py", "2"], stdout=stream, check=True)

    for option, name in OPTIONS.items():
        # The report is small: the limit is below all three files.
        limited = subprocess.run(["sh", "-c", 'trap "" XFSZ; ulimit -f 1; exec "$@"', "sh", program, "model", deck, option, name],
                                 cwd=folder, text=True, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        if option != "--report":
            check(f"{option} beyond the limit", limited, 1, f"cannot write {name}: ", folder, names)
        full = subprocess.run([program, "model", deck, option, "/dev/full"], cwd=folder, text=True, stdout=subprocess.DEVNULL,
                              stderr=subprocess.PIPE)
        check(f"{option} /dev/full", full, 1, "cannot write /dev/full: ", folder, names)
    for path in folder.glob("report.txt"):
        path.unlink()

    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        run = subprocess.Popen([program, "model", deck, *(word for pair in OPTIONS.items() for word in pair)], cwd=folder, text=True,
                               stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        while run.poll() is None and not list(folder.glob("page.html.part-*")):
            pass  # the files are opened in the order of the options
        run.send_signal(number)
        check(f"{number.name}", run, 128 + number, "tuvo: error: interrupted", folder, names)

    packed = folder / f"tuvo_interrupted_{folder.name}.inp.gz"
    packed.write_bytes(gzip.compress(b"*NODE\n" + b"1, 2., 3., 4.\n" * 3_000_000, 1))
    run = subprocess.Popen([program, "model", packed], text=True, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    while run.poll() is None and not list(pathlib.Path("/tmp").glob(packed.stem + "*")):
        pass
    run.send_signal(signal.SIGTERM)
    check("while a deck is unpacked", run, 128 + signal.SIGTERM, "tuvo: error: interrupted", folder, [*names, packed.name])
    if left := list(pathlib.Path("/tmp").glob(packed.stem + "*")):
        failures.append(f"what was unpacked is still there: {left}")
    if (folder / "page.html").read_text() != "old":
        failures.append("page.html was replaced")

print("\n".join(failures) or "nothing half-written stays")
sys.exit(len(failures) > 0)
