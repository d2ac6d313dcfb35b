#!/usr/bin/env python3
"""Writes bench/report/README.md and its plots from Google Benchmark JSON runs.

    make_report.py OUT_DIR MACHINE_FILE RUN.json...

Each RUN.json is the output of one benchmark program bench_<family>
(--benchmark_out_format=json). Benchmarks are named CASE:WHO/ARG, WHO being
`ryx` for this library and any other word for a peer. For every case, size
and peer the report gives ratio = ryxcore time / peer time (below 1: ryxcore
is faster), from the fastest repetition of each. Per family it draws one
log-log chart of time per element against size, ryxcore solid and peers
dashed, and one bar chart of all ratios.
"""
import json
import os
import sys
from collections import defaultdict

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402

UNIT_NS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}
# cpu_time (default) or real_time: on a shared machine the CPU time of the
# single benchmark thread is the less disturbed of the two.
TIME_FIELD = os.environ.get("RYX_BENCH_TIME", "cpu") + "_time"

# How the benchmark argument reads for each family: the value on the x
# axis, what it is called, and how many elements one call handles.
FAMILIES = {
    "vector": dict(title="Elementwise arithmetic (float, complex, 16-bit)", xlabel="elements n",
                   x=lambda a: a, elements=lambda a: a),
    "transform": dict(title="FFT (complex, real)", xlabel="length N = 2^order",
                      x=lambda a: 2 ** a, elements=lambda a: 2 ** a),
    "fir": dict(title="FIR filters (blocks of 4096 input samples)", xlabel="taps",
                x=lambda a: a, elements=lambda a: 4096),
}
DEFAULT_FAMILY = dict(title=None, xlabel="benchmark argument", x=lambda a: a, elements=None)


def load(path):
    """(case, who, arg) -> ns per call, the fastest repetition."""
    data = json.load(open(path))
    best = {}
    for r in data.get("benchmarks", []):
        if r.get("run_type") == "aggregate" and r.get("aggregate_name") != "min":
            continue
        if r.get("error_occurred"):
            continue
        name = r.get("run_name", r["name"])
        parts = [p for p in name.split("/") if not p.startswith(("repeats:", "min_time:", "real_time"))]
        head, args = parts[0], parts[1:]
        case, _, who = head.partition(":")
        if not who or not args or not args[0].lstrip("-").isdigit():
            continue
        arg = int(args[0])
        ns = r[TIME_FIELD] * UNIT_NS.get(r.get("time_unit", "ns"), 1.0)
        key = (case, who, arg)
        if key not in best or ns < best[key]:
            best[key] = ns
    return best


def per_element(fam, arg, ns):
    if fam["elements"] is not None:
        return ns / fam["elements"](arg)
    return ns


def family_section(name, runs, out_dir):
    fam = FAMILIES.get(name, DEFAULT_FAMILY)
    title = fam["title"] or name
    cases = defaultdict(lambda: defaultdict(dict))  # case -> who -> arg -> (ns, per)
    for (case, who, arg), ns in runs.items():
        cases[case][who][arg] = (ns, per_element(fam, arg, ns))
    rows = []
    for case in sorted(cases):
        by = cases[case]
        if "ryx" not in by:
            continue
        for who in sorted(w for w in by if w != "ryx"):
            for arg in sorted(set(by["ryx"]) & set(by[who])):
                a, b = by["ryx"][arg][0], by[who][arg][0]
                rows.append((case, arg, who, a, b, a / b))
    lines = [f"## {title} (`bench_{name}`)", ""]
    peers = sorted({r[2] for r in rows})
    if not rows:
        lines += ["No peer ran in this family (peer library not installed?): ryxcore times only.", ""]
    else:
        lines += [f"Peers: {', '.join('`' + p + '`' for p in peers)}.", ""]

    # Chart 1: time per element against size, one line per case and implementation.
    fig, ax = plt.subplots(figsize=(11, 5.5))
    colours = plt.get_cmap("tab20").colors if len(cases) > 10 else plt.rcParams["axes.prop_cycle"].by_key()["color"]
    for i, case in enumerate(sorted(cases)):
        colour = colours[i % len(colours)]
        for who in sorted(cases[case], key=lambda w: (w != "ryx", w)):
            pts = sorted(cases[case][who].items())
            xs = [fam["x"](a) for a, _ in pts]
            ys = [v[1] for _, v in pts]
            style = "-" if who == "ryx" else "--"
            marker = "o" if who == "ryx" else "x"
            ax.plot(xs, ys, style, marker=marker, color=colour, label=f"{case} {who}")
    ax.set_xscale("log", base=2)
    ax.set_yscale("log")
    ax.set_xlabel(fam["xlabel"])
    ax.set_ylabel(f"{TIME_FIELD.replace('_', ' ')}, ns per element" if fam["elements"] is not None
                  else f"{TIME_FIELD.replace('_', ' ')}, ns per call")
    ax.set_title(f"{title}: ryxcore (solid) and peers (dashed)")
    ax.grid(True, which="both", alpha=0.3)
    ax.legend(fontsize=7, ncol=1 + len(cases) // 9, bbox_to_anchor=(1.01, 1), loc="upper left")
    fig.tight_layout()
    chart = f"{name}_time.png"
    fig.savefig(os.path.join(out_dir, chart), dpi=110)
    plt.close(fig)
    lines += [f"![{title}: time per element]({chart})", ""]

    if rows:
        # Chart 2: every ratio as a bar; the line at 1 is parity.
        fig, ax = plt.subplots(figsize=(8, max(3, 0.22 * len(rows) + 1)))
        labels = [f"{c} {fam['x'](a)} vs {w}" for c, a, w, *_ in rows]
        ratios = [r[5] for r in rows]
        ax.barh(range(len(rows)), ratios, color=["tab:green" if r <= 1 else "tab:red" for r in ratios])
        ax.axvline(1.0, color="black", linewidth=0.8)
        ax.set_yticks(range(len(rows)))
        ax.set_yticklabels(labels, fontsize=7)
        ax.invert_yaxis()
        ax.set_xscale("log", base=2)
        ax.set_xlabel("ryxcore time / peer time (below 1: ryxcore faster)")
        ax.set_title(f"{title}: ratios")
        fig.tight_layout()
        bars = f"{name}_ratios.png"
        fig.savefig(os.path.join(out_dir, bars), dpi=110)
        plt.close(fig)
        lines += [f"![{title}: ratios]({bars})", ""]
        lines += ["| case | size | peer | ryxcore ns | peer ns | ratio |", "|---|---|---|---|---|---|"]
        for case, arg, who, a, b, r in rows:
            lines.append(f"| {case} | {fam['x'](arg)} | {who} | {a:.1f} | {b:.1f} | {r:.2f} |")
        lines.append("")
    return lines, rows


def main(out_dir, machine_file, paths):
    os.makedirs(out_dir, exist_ok=True)
    machine = open(machine_file).read().strip()
    body, all_rows = [], []
    for path in paths:
        name = os.path.basename(path).removeprefix("bench_").removesuffix(".json")
        lines, rows = family_section(name, load(path), out_dir)
        body += lines
        all_rows += [(name,) + r for r in rows]
    head = [
        "# Benchmark report",
        "",
        "Generated by `scripts/bench-report.sh`: every benchmark program built at",
        "-O3 with the library, run with its cases in random interleaving; for each",
        f"case the fastest repetition counts, by its {TIME_FIELD.replace('_', ' ')}.",
        "**ratio = ryxcore time / peer time**: below 1.0 ryxcore is faster. Peers",
        "are benchmark-only dependencies. Sizes: elements for the vector family,",
        "transform length N for the FFTs, taps for the FIR filters (4096 samples",
        "per call).",
        "",
        "## Machine",
        "",
        machine,
        "",
        "## Summary",
        "",
        "| family | comparisons | ryxcore faster | median ratio | best | worst |",
        "|---|---|---|---|---|---|",
    ]
    for name in [os.path.basename(p).removeprefix("bench_").removesuffix(".json") for p in paths]:
        rs = sorted(r[6] for r in all_rows if r[0] == name)
        if rs:
            med = rs[len(rs) // 2] if len(rs) % 2 else 0.5 * (rs[len(rs) // 2 - 1] + rs[len(rs) // 2])
            faster = sum(1 for r in rs if r < 1.0)
            head.append(f"| {name} | {len(rs)} | {faster} | {med:.2f} | {rs[0]:.2f} | {rs[-1]:.2f} |")
        else:
            head.append(f"| {name} | 0 | | | | |")
    head.append("")
    with open(os.path.join(out_dir, "README.md"), "w") as f:
        f.write("\n".join(head + body))


if __name__ == "__main__":
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2], sys.argv[3:])
