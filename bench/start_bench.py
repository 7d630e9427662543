"""Times the start of programs: whole processes, interleaved, medians of many runs.

usage: start_bench.py <folder of the programs> [<caehost>]

Instructions are counted by `perf stat` where the machine allows it. caehost is set beside the
system's Python, both running `pass`.
"""

import os
import shutil
import statistics
import subprocess
import sys
import time

RUNS = 200


def seconds(command):
    start = time.perf_counter()
    process = os.posix_spawn(command[0], command, os.environ)
    _, status = os.waitpid(process, 0)
    if status != 0:
        sys.exit(f"{command[0]} failed with status {status}")
    return time.perf_counter() - start


def instructions(command):
    """User-mode instructions of one run, or None where they cannot be counted."""
    if not shutil.which("perf"):
        return None
    result = subprocess.run(["perf", "stat", "-x,", "-e", "instructions:u"] + command,
                            capture_output=True, text=True, check=False)
    first = result.stderr.split(",")[0].strip()
    return int(first) if first.isdigit() else None


def compare(title, commands, runs=RUNS):
    times = {who: [] for who in commands}
    for _ in range(runs):
        for who, command in commands.items():
            times[who].append(seconds(command))
    base = statistics.median(next(iter(times.values())))
    print(title)
    for who, command in commands.items():
        median = statistics.median(times[who])
        count = instructions(command)
        counted = f"{count / 1e6:8.2f} M instructions" if count is not None else ""
        print(f"  {who:<12}{median * 1e3:8.3f} ms  {(median - base) * 1e3:+8.3f} ms"
              f"  {median / base:6.2f} x  {counted}")


def main():
    folder = sys.argv[1]
    names = {"empty": "start_empty", "ours": "start_ours", "Qt Core": "start_qt"}
    compare("start and stop, beside an empty program",
            {who: [os.path.join(folder, name)] for who, name in names.items()
             if os.path.exists(os.path.join(folder, name))})
    if len(sys.argv) > 2 and os.path.exists(sys.argv[2]):
        compare("an interpreter that does nothing",
                {"python3": ["/usr/bin/python3", "-c", "pass"],
                 "caehost": [sys.argv[2], "-c", "pass"]}, RUNS // 4)


if __name__ == "__main__":
    main()
