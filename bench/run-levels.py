#!/usr/bin/env python3
"""Runs the benchmark program once per processor level (through VSPS_CPU_MASK)
and prints one table: median ns per call at each level and its ratio to
level 0 (speed-up: level-0 time / level time).

usage: bench/run-levels.py [--bench build/bench/vsps_bench] [--repetitions 5]
                           [--min-time 0.1] [--filter REGEX] [--smoke] [--markdown FILE]
"""
import argparse
import json
import os
import subprocess
import sys

# VSPS_CPU_MASK value that selects each level on a processor that has it.
LEVEL_MASKS = [("mx", "0"), ("m7", "0xF"), ("u8", "0x1F"), ("n8", "0x3F"), ("y8", "0x80CDF"),
               ("e9", "0x86FDF"), ("l9", None)]


def run(bench, mask, args):
    env = dict(os.environ)
    env.pop("VSPS_CPU_MASK", None)
    if mask is not None:
        env["VSPS_CPU_MASK"] = mask
    cmd = [bench, "--benchmark_format=json"]
    if args.smoke:
        cmd += ["--benchmark_min_time=0.001"]
    else:
        cmd += ["--benchmark_repetitions=%d" % args.repetitions, "--benchmark_report_aggregates_only=true",
                "--benchmark_min_time=%g" % args.min_time]
    if args.filter:
        cmd.append("--benchmark_filter=" + args.filter)
    out = subprocess.run(cmd, env=env, check=True, stdout=subprocess.PIPE).stdout
    data = json.loads(out)
    level = data["context"].get("vsps level", "?")
    times = {}
    for b in data["benchmarks"]:
        if b.get("run_type") == "aggregate" and b.get("aggregate_name") != "median":
            continue
        name = b.get("run_name", b["name"])
        scale = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[b.get("time_unit", "ns")]
        times[name] = b["cpu_time"] * scale
    return level, times, data["context"]


def main():
    p = argparse.ArgumentParser()
    p.add_argument("--bench", default="build/bench/vsps_bench")
    p.add_argument("--repetitions", type=int, default=5)
    p.add_argument("--min-time", type=float, default=0.1)
    p.add_argument("--filter", default="")
    p.add_argument("--smoke", action="store_true", help="a few iterations, no statistics (CI)")
    p.add_argument("--markdown", default="", help="also write the table to this file")
    args = p.parse_args()

    results = []
    context = None
    for code, mask in LEVEL_MASKS:
        level, times, ctx = run(args.bench, mask, args)
        context = context or ctx
        if not level.endswith("(%s)" % code) and "(%s)+" % code not in level:
            print("level %s not available here (got %s); stopping" % (code, level), file=sys.stderr)
            break
        results.append((code, times))

    names = list(results[0][1].keys())
    head = "| benchmark | " + " | ".join("%s ns" % c for c, _ in results) + " | " + \
           " | ".join("%s/mx" % c for c, _ in results[1:]) + " |"
    lines = [head, "|" + "---|" * (1 + 2 * len(results) - 1)]
    for n in names:
        base = results[0][1].get(n)
        cells = ["%.1f" % t.get(n, float("nan")) for _, t in results]
        ratios = ["%.2fx" % (base / t[n]) if base and t.get(n) else "-" for _, t in results[1:]]
        lines.append("| %s | %s | %s |" % (n, " | ".join(cells), " | ".join(ratios)))
    table = "\n".join(lines)
    print("machine: %s, %d cpus at %s MHz; medians of %s" % (
        context.get("host_name", "?"), context.get("num_cpus", 0), context.get("mhz_per_cpu", "?"),
        "1 run (smoke)" if args.smoke else "%d repetitions" % args.repetitions))
    print(table)
    if args.markdown:
        with open(args.markdown, "w") as f:
            f.write(table + "\n")


if __name__ == "__main__":
    main()
