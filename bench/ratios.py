"""Prints the table of ratios from the JSON results of the benchmark programs.

Benchmarks are named "subject/variant"; the variant "baseline" of each subject is what the others
are measured against. The fastest repetition counts: whatever else the machine did only adds time.
A counter "limit" of a variant is the largest ratio that is still good; its "allocations/frame" may
not exceed the baseline's.
"""

import json
import sys

SKIPPED = ("real_time", "process_time", "manual_time", "iterations:1", "repeats:1")


def collect(paths):
    """{(subject, variant): {"time": fastest seconds, counters...}} of all runs."""
    units = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}
    known = {
        "name", "family_index", "per_family_instance_index", "run_name", "run_type", "repetitions",
        "repetition_index", "threads", "iterations", "real_time", "cpu_time", "time_unit",
    }
    results = {}
    for path in paths:
        with open(path, encoding="utf-8") as file:
            for run in json.load(file)["benchmarks"]:
                if run["run_type"] != "iteration":
                    continue
                parts = [p for p in run["run_name"].split("/") if p not in SKIPPED]
                key = (parts[0], "/".join(parts[1:]))
                time = run["real_time"] * units[run["time_unit"]]
                entry = results.setdefault(key, {"time": time})
                entry["time"] = min(entry["time"], time)
                entry.update({k: v for k, v in run.items() if k not in known})
    return results


def main(paths):
    results = collect(paths)
    print(f"{'subject':<22}{'variant':<20}{'time':>12}{'ratio':>8}{'limit':>8}  {'':<10}"
          "further counters")
    exceeded = 0
    for (subject, variant), entry in sorted(results.items()):
        baseline = results.get((subject, "baseline"))
        ratio = entry["time"] / baseline["time"] if baseline else float("nan")
        limit = entry.get("limit")
        allocations = "allocations/frame"
        too_slow = limit is not None and ratio > limit
        too_many = baseline and entry.get(allocations, 0) > baseline.get(allocations, 0)
        exceeded += bool(too_slow or too_many)
        bounded = limit is not None or (baseline and allocations in baseline)
        verdict = "EXCEEDED" if too_slow or too_many else "met" if bounded else ""
        rest = ", ".join(f"{k} {v:g}" for k, v in entry.items() if k not in ("time", "limit"))
        print(f"{subject:<22}{variant:<20}{entry['time'] * 1e3:>9.3f} ms{ratio:>8.2f}"
              f"{'' if limit is None else format(limit, '.2f'):>8}  {verdict:<10}{rest}")
    return 1 if exceeded else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
