#!/usr/bin/env python3
"""Runs the benchmark program once per processor level (through VSPS_CPU_MASK)
and prints the tables of docs/performance.md:

The levels run one process each, in turn, and the round is repeated
(--repetitions); every figure is the median over the rounds.

1. every benchmark: median ns per call at each level and the speed-up of each
   level over level 0 (level-0 time / level time);
2. the plain scalar model (benchmarks named BM_Model_X are the model of BM_X):
   the model's time and its ratio to ours at each level (model time / our time
   in the same run);
3. the peers measured on the same work (benchmarks named BM_Peer_<Peer>_X
   run the peer's code on the input of BM_X): the peer's time and its ratio
   to ours at each level (peer time / our time in the same run);
4. the frame benchmarks (counter frame_ms): channels per core in real time
   (frame duration / time per frame) at each level.

usage: bench/run-levels.py [--bench build/bench/vsps_bench] [--repetitions 5]
                           [--min-time 0.1] [--filter REGEX] [--smoke] [--markdown FILE]
"""
import argparse
import json
import os
import statistics
import tempfile
import subprocess
import sys

# VSPS_CPU_MASK value that selects each level on a processor that has it.
LEVEL_MASKS = [("mx", "0"), ("m7", "0xF"), ("u8", "0x1F"), ("n8", "0x3F"), ("y8", "0x80CDF"),
               ("e9", "0x86FDF"), ("l9", None)]
MODEL_PREFIX = "BM_Model_"
PEER_PREFIX = "BM_Peer_"
# Peers whose rows stand beside ours under the same name (BM_Peer_SpanDsp_X is X).
PEERS = ("SpanDsp",)
# Level-independent results reported by some benchmarks (identical bits at
# every level): echo-return-loss enhancement on the echo scenario, and
# whether a tone detector reported the answer tone.
QUALITY_COUNTERS = ("erle_db", "detected")
quality = {}


def run(bench, mask, args):
    env = dict(os.environ)
    env.pop("VSPS_CPU_MASK", None)
    if mask is not None:
        env["VSPS_CPU_MASK"] = mask
    # JSON through a file: peers may print to standard output.
    fd, path = tempfile.mkstemp(suffix=".json")
    os.close(fd)
    cmd = [bench, "--benchmark_out=" + path, "--benchmark_out_format=json"]
    cmd += ["--benchmark_min_time=%g" % (0.0001 if args.smoke else args.min_time)]
    if args.filter:
        cmd.append("--benchmark_filter=" + args.filter)
    subprocess.run(cmd, env=env, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    with open(path) as f:
        data = json.load(f)
    os.unlink(path)
    level = data["context"].get("vsps level", "?")
    times, frames, errors = {}, {}, []
    for b in data["benchmarks"]:
        name = b.get("run_name", b["name"])
        if b.get("error_occurred"):
            errors.append("%s: %s" % (name, b.get("error_message", "")))
            continue
        if b.get("run_type") == "aggregate" and b.get("aggregate_name") != "median":
            continue
        scale = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[b.get("time_unit", "ns")]
        times[name] = b["cpu_time"] * scale
        if "frame_ms" in b:
            frames[name] = b["frame_ms"]
        for q in QUALITY_COUNTERS:
            if q in b:
                quality.setdefault(name, {})[q] = b[q]
    return level, times, frames, errors, data["context"]


def table(head, rows):
    lines = ["| " + " | ".join(head) + " |", "|" + "---|" * len(head)]
    lines += ["| " + " | ".join(r) + " |" for r in rows]
    return "\n".join(lines)


def main():
    p = argparse.ArgumentParser()
    p.add_argument("--bench", default="build/bench/vsps_bench")
    p.add_argument("--repetitions", type=int, default=5)
    p.add_argument("--min-time", type=float, default=0.1)
    p.add_argument("--filter", default="")
    p.add_argument("--smoke", action="store_true", help="a few iterations, no statistics (CI)")
    p.add_argument("--markdown", default="", help="also write the tables to this file")
    args = p.parse_args()

    # The levels run in turn, one process each, and the whole round is
    # repeated: load changes on a shared machine then hit every level alike.
    # Each benchmark's time is the median over the rounds.
    levels, samples, frames, context = [], {}, {}, None
    for rnd in range(1 if args.smoke else args.repetitions):
        for code, mask in LEVEL_MASKS:
            if rnd > 0 and code not in levels:
                continue
            level, times, fr, errors, ctx = run(args.bench, mask, args)
            if errors:
                print("benchmark errors at %s:\n  %s" % (level, "\n  ".join(errors)), file=sys.stderr)
                sys.exit(1)
            context = context or ctx
            if not level.endswith("(%s)" % code) and "(%s)+" % code not in level:
                print("level %s not available here or not built (got %s); skipped" % (code, level), file=sys.stderr)
                continue
            if rnd == 0:
                levels.append(code)
            for n, t in times.items():
                samples.setdefault(code, {}).setdefault(n, []).append(t)
            frames.update(fr)
    results = [(c, {n: statistics.median(v) for n, v in samples[c].items()}) for c in levels]

    codes = [c for c, _ in results]
    base = results[0][1]
    names = [n for n in base if not n.startswith(MODEL_PREFIX)]
    rows = []
    for n in names:
        cells = ["%.1f" % t.get(n, float("nan")) for _, t in results]
        ratios = ["%.2fx" % (base[n] / t[n]) if t.get(n) else "-" for _, t in results[1:]]
        rows.append([n] + cells + ratios)
    out = ["### Time per call (ns, median) and speed-up over level 0\n",
           table(["benchmark"] + ["%s ns" % c for c in codes] + ["%s/mx" % c for c in codes[1:]], rows)]

    rows = []
    for n in names:
        m = MODEL_PREFIX + n[len("BM_"):]
        if m not in base:
            continue
        ratios = ["%.2fx" % (t[m] / t[n]) if t.get(n) and t.get(m) else "-" for _, t in results]
        rows.append([n, "%.1f" % base[m]] + ratios)
    if rows:
        out += ["\n### Against the plain scalar model (model time / our time, same run)\n",
                table(["benchmark", "model ns"] + codes, rows)]

    rows = []
    for n in names:
        for peer in PEERS:
            m = "%s%s_%s" % (PEER_PREFIX, peer, n[len("BM_"):])
            if m not in base:
                continue
            ratios = ["%.2fx" % (t[m] / t[n]) if t.get(n) and t.get(m) else "-" for _, t in results]
            rows.append([n, peer, "%.1f" % base[m]] + ratios)
    if rows:
        out += ["\n### Against the peers (peer time / our time, same run; peer ns at level 0)\n",
                table(["benchmark", "peer", "peer ns"] + codes, rows)]

    rows = []
    for n in names:
        if n in frames:
            rows.append([n, "%g ms" % frames[n]] + ["%.0f" % (frames[n] * 1e6 / t[n]) if t.get(n) else "-"
                                                    for _, t in results])
    if rows:
        out += ["\n### Channels per core in real time (frame duration / time per frame)\n",
                table(["benchmark", "frame"] + codes, rows)]

    rows = [[n] + ["%.1f" % quality[n]["erle_db"] if "erle_db" in quality[n] else "-",
                   ("yes" if quality[n]["detected"] else "no") if "detected" in quality[n] else "-"]
            for n in names if n in quality]
    if rows:
        out += ["\n### Quality on the echo scenario (the same at every level)\n",
                table(["benchmark", "ERLE dB", "tone detected"], rows)]

    text = "\n".join(out)
    print("machine: %s, %d cpus at %s MHz; medians of %s" % (
        context.get("host_name", "?"), context.get("num_cpus", 0), context.get("mhz_per_cpu", "?"),
        "1 run (smoke)" if args.smoke else "%d rounds of all levels" % args.repetitions))
    print(text)
    if args.markdown:
        with open(args.markdown, "w") as f:
            f.write(text + "\n")


if __name__ == "__main__":
    main()
