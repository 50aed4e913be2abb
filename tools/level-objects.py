#!/usr/bin/env python3
"""Reports, per variant source, whether its seven per-level objects differ.

A variant source is compiled once per processor level (object libraries
vsps_<family>_<code>, code = mx m7 u8 n8 y8 e9 l9). Where the seven objects
hold the same machine code, up to the level's namespace code in the symbol
names, the source gains nothing from the levels' instruction sets and is a
candidate for GENERIC_SOURCES (compiled once, shared by the seven dispatch
entries).

BUILD_DIR must be configured with -DVSPS_UNITY_BUILD=OFF: the default build
compiles a family's variant sources of a level as one unit, so its objects
are per family, not per source.

Usage: level-objects.py BUILD_DIR [--objdump TOOL]
Prints one line per source: "same" or "differs (levels ...)", and the
object sizes. Python 3 standard library and binutils' objdump.
"""

import argparse
import glob
import os
import re
import subprocess
import sys

CODES = ["mx", "m7", "u8", "n8", "y8", "e9", "l9"]


def code_of(objdump, path):
    out = subprocess.run([objdump, "-d", "--no-show-raw-insn", "-r", path], check=True, capture_output=True,
                         text=True).stdout
    lines = []
    for line in out.splitlines():
        if line.startswith(path) or "file format" in line:
            continue
        # Symbol names carry the level namespace: 4vsps2mx.. in mangled form.
        line = re.sub(r"4vsps2(mx|m7|u8|n8|y8|e9|l9)", "4vsps2LV", line)
        line = re.sub(r"vsps::(mx|m7|u8|n8|y8|e9|l9)::", "vsps::LV::", line)
        lines.append(line)
    return "\n".join(lines)


def main(argv):
    ap = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    ap.add_argument("build_dir")
    ap.add_argument("--objdump", default="objdump")
    args = ap.parse_args(argv)
    sources = {}
    for path in glob.glob(os.path.join(args.build_dir, "**", "vsps_*_*.dir", "**", "*.o"), recursive=True):
        m = re.search(r"vsps_(\w+?)_(mx|m7|u8|n8|y8|e9|l9)\.dir/(.*)\.o$", path)
        if not m:
            continue
        family, code, source = m.groups()
        sources.setdefault((family, source), {})[code] = path
    if not sources:
        sys.stderr.write(f"no per-level objects under {args.build_dir}\n")
        return 1
    if any(source.startswith("Unity/") for _, source in sources):
        sys.stderr.write(f"{args.build_dir} has unity objects: configure it with -DVSPS_UNITY_BUILD=OFF\n")
        return 1
    for (family, source), objs in sorted(sources.items()):
        texts = {c: code_of(args.objdump, p) for c, p in objs.items()}
        base = texts.get("mx")
        differ = [c for c in CODES if c in texts and texts[c] != base]
        size = os.path.getsize(objs["mx"]) if "mx" in objs else 0
        verdict = "same" if not differ else "differs at " + " ".join(differ)
        print(f"{family}/{source:<40} {len(objs)} objects  {size:>7} bytes  {verdict}")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
