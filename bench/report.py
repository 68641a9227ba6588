"""Runs the benchmark programs and prints ours against the best peer and the goal, one line a goal.

usage: report.py FOLDER [FAMILY ...]     FOLDER holds the built programs; without families all are run

Exits 0 only when every goal is met with 10 % slack for noise. README.md says how names and goals are read.
"""

import json
import pathlib
import statistics
import subprocess
import sys
import tempfile

SLACK = 1.10
NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def run(program):
    """Median time in nanoseconds of each benchmark of a program, by name."""
    with tempfile.NamedTemporaryFile(suffix=".json") as output:
        subprocess.run([program, "--benchmark_repetitions=7", "--benchmark_min_time=0.05",
                        "--benchmark_enable_random_interleaving=true",
                        f"--benchmark_out={output.name}", "--benchmark_out_format=json"],
                       check=True, stdout=subprocess.DEVNULL)
        results = json.load(open(output.name, encoding="utf-8"))
    if results["context"]["library_build_type"] != "release":
        print("note: the benchmark library itself was built without optimisation", file=sys.stderr)
    times = {}
    for result in results["benchmarks"]:
        if result.get("error_occurred"):
            sys.exit(f"{program.name}: {result['name']}: {result['error_message']}")
        if result["run_type"] == "iteration":
            name = "/".join(result["run_name"].split("/")[:3])
            times.setdefault(name, []).append(result["real_time"] * NANOSECONDS[result["time_unit"]])
    return {name: statistics.median(values) for name, values in times.items()}


def read_goals(family):
    path = pathlib.Path(__file__).parent / "goals" / f"{family}.tsv"
    for line in open(path, encoding="utf-8"):
        if line.strip() and not line.startswith("#"):
            work, kind, against, limit = line.rstrip("\n").split("\t")
            yield work, kind, [] if against == "-" else against.split(","), None if limit == "-" else float(limit)


def measure(work, kind, against, times):
    """Our time, what it is compared with (name and time), and the value that the goal limits."""
    if kind == "growth":
        small, large = times[f"{work}/1x"], times[f"{work}/100x"]
        return large, "1x", small, large / small
    ours = times[f"{work}/ours"]
    if kind == "time":
        return ours, "", None, ours
    peers = {peer: times[f"{work}/{peer}"] for peer in against if f"{work}/{peer}" in times}
    if not peers:
        sys.exit(f"{work}: none of the peers {', '.join(against)} was measured")
    best = min(peers, key=peers.get)
    return ours, best, peers[best], ours / peers[best]


def show(nanoseconds):
    if nanoseconds is None:
        return ""
    for unit, size in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def show_value(kind, value):
    return show(value) if kind == "time" else f"{value:.2f}x"


def main():
    folder = pathlib.Path(sys.argv[1])
    families = sys.argv[2:] or sorted(path.stem for path in (pathlib.Path(__file__).parent / "goals").glob("*.tsv"))
    print(f"{'work':40} {'ours':>9} {'peer':>14} {'its time':>9} {'value':>9} {'goal':>9}  met")
    missed = 0
    for family in families:
        times = run(folder / f"{family}Bench")
        for work, kind, against, limit in read_goals(family):
            ours, peer, peer_time, value = measure(work, kind, against, times)
            met = limit is None or value <= limit * SLACK
            missed += not met
            goal, verdict = ("-", "-") if limit is None else (show_value(kind, limit), "yes" if met else "NO")
            print(f"{work:40} {show(ours):>9} {peer:>14} {show(peer_time):>9} {show_value(kind, value):>9} "
                  f"{goal:>9}  {verdict}", flush=True)
    print(f"{missed} goals missed" if missed else "all goals met")
    return missed > 0


sys.exit(main())
