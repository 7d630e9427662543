"""Prints Google Benchmark results as a table: our time, each peer's, and the ratio.

A case is named "<workload>/<who>[/<size>]", where <who> is "ours", a variant of it ("ours-avx2"),
or a peer. Cases of one workload and size stand together; a ratio is our median time over the
peer's, so below 1 we are ahead. The spread is (max - min) / median over the repetitions.
"""

import collections
import json
import statistics
import sys

SCALE = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def read(path):
    """{(workload, size): {who: [ns, ...]}}, in the order of the file."""
    groups = collections.OrderedDict()
    with open(path) as file:
        runs = json.load(file)["benchmarks"]
    # Interleaving mixes the order of the runs; the family index is the order of registration.
    for run in sorted(runs, key=lambda r: (r.get("family_index", 0),
                                           r.get("per_family_instance_index", 0))):
        if run.get("run_type") != "iteration":
            continue
        if run.get("error_occurred"):
            sys.exit(f"{run['name']}: {run['error_message']}")
        workload, _, rest = run["run_name"].partition("/")
        who, _, size = rest.partition("/")
        time = run["real_time"] * SCALE[run["time_unit"]]
        groups.setdefault((workload, size), {}).setdefault(who, []).append(time)
    return groups


def text(ns):
    for unit, scale in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if ns >= scale:
            return f"{ns / scale:.4g} {unit}"
    return f"{ns:.3g} ns"


def main(paths):
    for path in paths:
        for (workload, size), times in read(path).items():
            print(f"{workload}{', ' + size if size else ''}")
            median = {who: statistics.median(values) for who, values in times.items()}
            ours = median.get("ours")
            for who, values in times.items():
                spread = (max(values) - min(values)) / median[who]
                ratio = "" if who == "ours" or ours is None else f"ratio {ours / median[who]:7.3f}"
                print(f"    {who:<24}{text(median[who]):>12}   spread {spread:4.0%}   {ratio}"
                      .rstrip())


if __name__ == "__main__":
    main(sys.argv[1:])
