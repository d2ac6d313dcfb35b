#!/usr/bin/env python3
"""Turns a Google Benchmark JSON run into ryxcore/peer time ratios.

Benchmarks are named CASE:WHO/ARGS, where WHO is `ryx` for this library and
any other word for a peer (`loop`, `memcpy`, `fftw`, `liquid`, ...). For each
CASE and ARGS the ratio ryx time / peer time is printed as a Markdown table;
below 1.0 means ryxcore is faster.

    build/bench/bench_vector --benchmark_format=json > run.json
    bench/ratios.py run.json
"""
import json
import sys
from collections import defaultdict


def main(path):
    runs = json.load(open(path))["benchmarks"]
    times = defaultdict(dict)  # (case, args) -> who -> time
    for r in runs:
        # Prefer the fastest repetition ("min" statistic) where a benchmark
        # reports one: on a shared machine it is the least disturbed figure.
        if r.get("run_type") == "aggregate" and r.get("aggregate_name") not in ("min", "median"):
            continue
        if r.get("aggregate_name") == "median" and any(
                x.get("aggregate_name") == "min" and x.get("run_name") == r.get("run_name") for x in runs):
            continue
        name = r.get("run_name", r["name"])
        name = "/".join(p for p in name.split("/") if not p.startswith(("repeats:", "min_time:")))
        head, _, args = name.partition("/")
        case, _, who = head.partition(":")
        times[(case, args)][who] = r["real_time"]
    rows = []
    for (case, args), by in sorted(times.items(), key=lambda kv: (kv[0][0], int(kv[0][1].split("/")[0] or 0) if kv[0][1].split("/")[0].isdigit() else kv[0][1])):
        if "ryx" not in by:
            continue
        for who, t in sorted(by.items()):
            if who == "ryx":
                continue
            rows.append((case, args, who, by["ryx"], t, by["ryx"] / t))
    print("| case | size | peer | ryxcore ns | peer ns | ratio |")
    print("|---|---|---|---|---|---|")
    for case, args, who, a, b, r in rows:
        print(f"| {case} | {args} | {who} | {a:.1f} | {b:.1f} | {r:.2f} |")


if __name__ == "__main__":
    main(sys.argv[1])
