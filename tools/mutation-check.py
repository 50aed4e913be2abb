#!/usr/bin/env python3
"""Mutation check: does the test suite catch realistic faults in the library?

Each fault is a (description, snippet, replacement) applied to the library
sources (never the tests). The snippet is located by searching every tracked
library source for it: it must occur exactly once in the whole tree, so the
check keeps working when files move. For each fault: apply, rebuild the given
build directory incrementally, run ctest, record caught / missed / n/a (the
mutant does not build), restore the file. Files are always restored (also on
Ctrl-C, SIGTERM or an exception), and at the end the library sources must
show no change against the state found at the start.

    tools/mutation-check.py --build-dir build --report docs/mutation-before.md
    tools/mutation-check.py --list
    tools/mutation-check.py --only 3,7

The build directory is expected to be configured with VSPS_LEVELS="0;6"
(the generic level and the AVX2 level), without bench and docs, with ccache.
"""

import argparse
import os
import re
import signal
import subprocess
import sys
import time

# Tracked sources searched for snippets: everything but the tests and their
# neighbours (bench, examples, docs).
SOURCE_EXT = re.compile(r"\.(c|cc|cpp|cxx|h|hpp|hh|inc|inl)$")
EXCLUDED_DIRS = ("tests/", "bench/", "examples/", "docs/", "tools/")

# (area, kind, description, snippet, replacement[, snippet, replacement ...]):
# one or more edits, applied in order. Kinds: sat (saturating
# operator made plain), bound (loop bound off by one), round (rounding
# dropped), table (table entry changed), check (check moved after a write),
# tail (a level variant's scalar tail skipped), init (state field not reset
# in an Init), logic (other realistic slips).
FAULTS = [
    # ---- core and speech (shared primitives) ---------------------------------
    ("core", "round", "window_mult_r: the scalar form multiplies without rounding (mult for mult_r)",
     "  for (; k < n; ++k) y[k] = bop::mult_r(x[k], w[k]);",
     "  for (; k < n; ++k) y[k] = bop::mult(x[k], w[k]);"),
    ("speech", "check", "ConvPartial: scale-factor check after the outputs are written",
     "  if (scaleFactor < 0) return vspStsBadArgErr;\n  if (len < 1) return vspStsSizeErr;\n",
     "  if (len < 1) return vspStsSizeErr;\n",
     "    pDst[n] = static_cast<Vsp16s>(static_cast<int32_t>(acc) >> shift);\n  }\n  return vspStsNoErr;",
     "    pDst[n] = static_cast<Vsp16s>(static_cast<int32_t>(acc) >> shift);\n  }\n"
     "  if (scaleFactor < 0) return vspStsBadArgErr;\n  return vspStsNoErr;"),
    ("speech", "tail", "ConvPartial AVX2 blocks claim the whole length (scalar tail skipped at level 6)",
     "    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + n0), r);\n  }\n  return n0;",
     "    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + n0), r);\n  }\n  return len;"),
    ("core", "tail", "energy64_shifted: the AVX2 path skips the scalar tail",
     "    acc = static_cast<uint64_t>(_mm_cvtsi128_si64(a)) + static_cast<uint64_t>(_mm_extract_epi64(a, 1));\n",
     "    acc = static_cast<uint64_t>(_mm_cvtsi128_si64(a)) + static_cast<uint64_t>(_mm_extract_epi64(a, 1));\n"
     "    n = len;\n"),
    ("core", "table", "Inv_sqrt table: one entry mistyped (28602 -> 28620)",
     "kG729InvSqrtQ15[49] = {32767, 31790, 30894, 30070, 29309, 28602,",
     "kG729InvSqrtQ15[49] = {32767, 31790, 30894, 30070, 29309, 28620,"),
    ("core", "bound", "InvSqrt: the AVX2 loop runs one block too far (reads and writes past len)",
     "for (; k + 8 <= len; k += 8) inv_sqrt_q30_x8(pSrcDst + k, table);",
     "for (; k + 8 <= len + 1; k += 8) inv_sqrt_q30_x8(pSrcDst + k, table);"),
    # ---- g729 ---------------------------------------------------------------
    ("g729", "bound", "LagWindow leaves the last lag unwindowed",
     "for (int k = 0; k < len; ++k)  // r[k+1]", "for (int k = 0; k < len - 1; ++k)  // r[k+1]"),
    ("g729", "table", "G.729 lag window: one entry mistyped",
     "1877322904, 1829987576", "1877332904, 1829987576"),
    ("g729", "init", "HighPassFilterInit leaves the input memories x1, x2 as they were",
     "std::memset(pState, 0, kOffCoeff);", "std::memset(pState, 0, kOffX1);"),
    ("g729", "check", "HighPassFilter: scale-factor check after the state and samples are written",
     "  if (scaleFactor != 12 && scaleFactor != 13) return vspStsOutOfRangeErr;\n  int32_t y1",
     "  int32_t y1",
     "    pSrcDst[n] = out;\n  }\n",
     "    pSrcDst[n] = out;\n  }\n  if (scaleFactor != 12 && scaleFactor != 13) return vspStsOutOfRangeErr;\n"),
    ("g729", "sat", "InterpolateC_16s_Sfs stores the low 16 bits instead of saturating",
     "pDst[i] = static_cast<Vsp16s>(sum > bop::kMax16 ? bop::kMax16 : (sum < bop::kMin16 ? bop::kMin16 : sum));",
     "pDst[i] = static_cast<Vsp16s>(sum);"),
    ("speech", "logic", "AutoCorr_NormE reports the norm with 2 instead of 4 per scaling",
     "*pNorm = norm - 4 * scalings;", "*pNorm = norm - 2 * scalings;"),
    ("g729", "sat", "LSF stage-1 search (AVX2): key no longer clamped after each pair",
     "      key = _mm256_min_epu32(_mm256_add_epi32(key, _mm256_madd_epi16(e, e)), cap);",
     "      key = _mm256_add_epi32(key, _mm256_madd_epi16(e, e));"),
    ("g729", "round", "Levinson (G.729): Q27 -> Q12 without rounding",
     "  for (int i = 1; i <= order; ++i) pDstLpc[i] = bop::round(bop::L_shl(dpf::L_Comp(a[i]), 1));",
     "  for (int i = 1; i <= order; ++i) pDstLpc[i] = bop::extract_h(bop::L_shl(dpf::L_Comp(a[i]), 1));"),
    # ---- gsmamr -------------------------------------------------------------
    ("gsmamr", "sat", "Preemphasize (AVX2): x - g x[n-1] wraps instead of saturating",
     "_mm256_storeu_si256(reinterpret_cast<__m256i*>(pDst + n), _mm256_subs_epi16(x, simd::mult_q15(g, shifted)));",
     "_mm256_storeu_si256(reinterpret_cast<__m256i*>(pDst + n), _mm256_sub_epi16(x, simd::mult_q15(g, shifted)));"),
    ("gsmamr", "tail", "Preemphasize: the vector paths skip the scalar tail",
     "    prev = static_cast<int16_t>(_mm_extract_epi16(last, 7));\n  }\n#endif",
     "    prev = static_cast<int16_t>(_mm_extract_epi16(last, 7));\n    n = len;\n  }\n#endif"),
    ("gsmamr", "table", "GSM-AMR lag window: one high word mistyped",
     "32728, 32619, 32438, 32187", "32728, 32618, 32438, 32187"),
    ("gsmamr", "table", "GSM-AMR mean LSF (3-split): one entry mistyped",
     "1546, 2272, 3778, 5488, 6972", "1546, 2272, 3787, 5488, 6972"),
    ("gsmamr", "round", "Levinson (GSM-AMR): Q27 -> Q12 without rounding",
     "  for (int i = 1; i <= kM; ++i) pDstLpc[i] = bop::round(bop::L_shl(dpf::L_Comp(A[i]), 1));",
     "  for (int i = 1; i <= kM; ++i) pDstLpc[i] = bop::extract_h(bop::L_shl(dpf::L_Comp(A[i]), 1));"),
    ("gsmamr", "logic", "LSPQuant 12.2: past residual taken from the first vector",
     "    lsfQ2[i] = bop::add(r2[i], pred[i]);\n    pastRq[i] = r2[i];",
     "    lsfQ2[i] = bop::add(r2[i], pred[i]);\n    pastRq[i] = r1[i];"),
    ("gsmamr", "bound", "Lsf_wt: the last inner spacing is left uncomputed",
     "for (int i = 1; i < gsmamr::kOrder - 1; ++i) d[i] = bop::sub(lsfQ15[i + 1], lsfQ15[i - 1]);",
     "for (int i = 1; i < gsmamr::kOrder - 2; ++i) d[i] = bop::sub(lsfQ15[i + 1], lsfQ15[i - 1]);\n"
     "  d[gsmamr::kOrder - 2] = 0;"),
    ("gsmamr", "sat", "VQ search (AVX2): target - row wraps instead of saturating",
     "    const __m256i key = vq_keys(wp, _mm256_subs_epi16(tp, a), _mm256_subs_epi16(tp, b));",
     "    const __m256i key = vq_keys(wp, _mm256_sub_epi16(tp, a), _mm256_sub_epi16(tp, b));"),
    # ---- ec -----------------------------------------------------------------
    ("ec", "round", "FIR_EC_16s: Q15 products truncated instead of rounded (scalar path)",
     "for (int k = 0; k < tapLen; ++k) y = sat32(int64_t(y) + ((int32_t(x[-k]) * coeffs[k] + 16384) >> 15));",
     "for (int k = 0; k < tapLen; ++k) y = sat32(int64_t(y) + ((int32_t(x[-k]) * coeffs[k]) >> 15));"),
    ("ec", "tail", "FIR_EC_32f (AVX): the blocks claim the whole length (scalar tail skipped)",
     "    _mm256_storeu_ps(error + n, _mm256_sub_ps(_mm256_loadu_ps(nearEnd + n), y));\n  }\n  return n;",
     "    _mm256_storeu_ps(error + n, _mm256_sub_ps(_mm256_loadu_ps(nearEnd + n), y));\n  }\n  return len;"),
    ("ec", "round", "NLMS_EC_16s: carried error truncated instead of rounded",
     "c = wrap_mul_add(e, step[n], 1024) >> 11;", "c = wrap_mul_add(e, step[n], 0) >> 11;"),
    ("ec", "init", "ToneDetectInit_EC_16s keeps the counters and memories of the old block",
     "  ToneState16s s{};\n", "  ToneState16s s;\n  std::memcpy(&s, vsps::ec::align16(state), sizeof s);\n"),
    ("ec", "table", "2100 Hz resonator (8 kHz, Q12): one coefficient mistyped",
     "kToneCoeffs8kQ12[4] = {155, -155, 619, 3786};", "kToneCoeffs8kQ12[4] = {155, -155, 619, 3768};"),
    ("ec", "bound", "Tone detector: the gap limit reached one sample early",
     "  if (s.gapRun > s.gapLimit) {", "  if (s.gapRun >= s.gapLimit) {"),
    ("ec", "check", "FIRSubbandCoeffUpdate_EC_32sc_I: negative-step check after the coefficients are written",
     "  for (int k = 0; k < numSubbands; ++k)\n    if (step[2 * k] < 0) return vspStsSizeErr;\n"
     "  Vsp32sc t[ec::kMaxSubbands];\n"
     "  for (int k = 0; k < numSubbands; ++k) t[k] = step_times_error(step[2 * k], errorFrame[k]);\n"
     "  for (int m = 0; m < numSegments; ++m) {\n"
     "    const Vsp32sc* x = inputFrames[m];\n    Vsp32sc* h = coeffFrames[m];\n"
     "    for (int k = 0; k < numSubbands; ++k)\n"
     "      h[k] = update_one<true>(h[k], t[k], x[k], int64_t(step[2 * k + 1]) - scaleFactor - 31);\n  }\n",
     "  Vsp32sc t[ec::kMaxSubbands];\n"
     "  for (int k = 0; k < numSubbands; ++k) t[k] = step_times_error(step[2 * k], errorFrame[k]);\n"
     "  for (int m = 0; m < numSegments; ++m) {\n"
     "    const Vsp32sc* x = inputFrames[m];\n    Vsp32sc* h = coeffFrames[m];\n"
     "    for (int k = 0; k < numSubbands; ++k)\n"
     "      h[k] = update_one<true>(h[k], t[k], x[k], int64_t(step[2 * k + 1]) - scaleFactor - 31);\n  }\n"
     "  for (int k = 0; k < numSubbands; ++k)\n    if (step[2 * k] < 0) return vspStsSizeErr;\n"),
    ("ec", "sat", "Sub-band analysis (16s): the fold no longer saturates after each term (scalar path)",
     "for (int j = j0; j < n; ++j) a[j] = sat16(a[j] + mul_q13_round(d[b + j], w[b + j]));",
     "for (int j = j0; j < n; ++j) a[j] = a[j] + mul_q13_round(d[b + j], w[b + j]);"),
]


def git(repo, *args):
    return subprocess.run(["git", "-C", repo, *args], check=True, capture_output=True, text=True).stdout


def in_git(repo):
    try:
        top = git(repo, "rev-parse", "--show-toplevel").strip()
    except subprocess.CalledProcessError:
        return False
    return os.path.realpath(top) == os.path.realpath(repo)


def library_files(repo):
    """Tracked library sources; in an exported tree (no checkout of its own), every source file."""
    if in_git(repo):
        names = git(repo, "ls-files").splitlines()
    else:
        names = []
        for root, dirs, files in os.walk(repo):
            dirs[:] = [d for d in dirs if not d.startswith((".", "build"))]
            names += [os.path.relpath(os.path.join(root, f), repo) for f in files]
    return sorted(f for f in names if SOURCE_EXT.search(f) and not f.startswith(EXCLUDED_DIRS))


def snapshot(repo, paths):
    """The state the run must leave: git diff in a checkout, else the files' contents."""
    if in_git(repo):
        return git(repo, "diff", "--", *paths)
    out = []
    for p in paths:
        with open(os.path.join(repo, p), encoding="utf-8") as fh:
            out.append(fh.read())
    return out


def locate(repo, files, snippet):
    """The one file holding snippet exactly once; raises otherwise."""
    hits = []
    for f in files:
        try:
            with open(os.path.join(repo, f), encoding="utf-8") as fh:
                n = fh.read().count(snippet)
        except (OSError, UnicodeDecodeError):
            continue
        hits.extend([f] * n)
    if len(hits) != 1:
        where = ", ".join(hits) if hits else "nowhere"
        raise LookupError(f"snippet found {len(hits)} times ({where}):\n{snippet}")
    return hits[0]


def where(paths):
    return ", ".join(dict.fromkeys(paths))


class Restorer:
    """Remembers original file contents and puts them back."""

    def __init__(self, repo):
        self.repo = repo
        self.saved = {}

    def mutate(self, path, snippet, replacement):
        full = os.path.join(self.repo, path)
        with open(full, encoding="utf-8") as fh:
            text = fh.read()
        self.saved.setdefault(path, text)
        if text.count(snippet) != 1:
            raise LookupError(f"{path}: an earlier edit of the same fault changed the snippet:\n{snippet}")
        with open(full, "w", encoding="utf-8") as fh:
            fh.write(text.replace(snippet, replacement, 1))

    def restore(self):
        for path, text in list(self.saved.items()):
            with open(os.path.join(self.repo, path), "w", encoding="utf-8") as fh:
                fh.write(text)
            del self.saved[path]


def run(cmd, cwd, timeout):
    try:
        p = subprocess.run(cmd, cwd=cwd, capture_output=True, text=True, timeout=timeout)
        return p.returncode, p.stdout + p.stderr
    except subprocess.TimeoutExpired as e:
        out = (e.stdout or b"").decode() if isinstance(e.stdout, bytes) else (e.stdout or "")
        return -1, out + "\n[timed out]"


def build(args):
    return run(["nice", "-n", "5", "ninja", "-C", args.build_dir, f"-j{args.jobs}"], args.repo, args.build_timeout)


def failed_tests(output):
    """Names of the failed tests: ctest's summary, else its progress lines (--stop-on-failure prints no summary)."""
    names = []
    m = re.search(r"The following tests FAILED:\n(.*)", output, re.S)
    if m:
        for line in m.group(1).splitlines():
            t = re.match(r"\s*\d+ - (\S+) \((.*)\)", line)
            if t:
                names.append(t.group(1))
    if not names:
        names = re.findall(r"Test +#\d+: (\S+).*?\*\*\*(?:Failed|Exception|Timeout)", output)
    return list(dict.fromkeys(names))


def run_tests(args):
    cmd = ["nice", "-n", "5", "ctest", "--test-dir", args.build_dir, f"-j{args.jobs}", "--timeout",
           str(args.test_timeout), "-LE", args.exclude_labels]
    if args.exclude_tests:
        cmd += ["-E", args.exclude_tests]
    if args.fail_fast:
        cmd.append("--stop-on-failure")
    rc, out = run(cmd, args.repo, args.suite_timeout)
    fails = failed_tests(out)
    if rc != 0 and not fails:
        fails = ["(ctest: " + ("timeout" if rc == -1 else f"exit {rc}") + ")"]
    return fails


def short(names, limit=4):
    if not names:
        return ""
    s = ", ".join(names[:limit])
    return s + (f" (+{len(names) - limit})" if len(names) > limit else "")


def main():
    ap = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    ap.add_argument("--repo", default=os.path.dirname(os.path.dirname(os.path.abspath(__file__))),
                    help="source tree (default: the one holding this script)")
    ap.add_argument("--build-dir", default="build")
    ap.add_argument("--report", help="also write the markdown report to this file")
    ap.add_argument("--only", help="comma-separated fault numbers (1-based)")
    ap.add_argument("--list", action="store_true", help="list the faults and where they apply, then stop")
    ap.add_argument("--jobs", type=int, default=2)
    ap.add_argument("--exclude-labels", default="qemu|docs|concurrency")
    ap.add_argument("--exclude-tests", default="level_objects_share_no_symbols|shared_library_exports",
                    help="ctest -E regex (default: the symbol-table checks, which no value fault can reach)")
    ap.add_argument("--test-timeout", type=int, default=300, help="seconds per test")
    ap.add_argument("--suite-timeout", type=int, default=1800, help="seconds per ctest run")
    ap.add_argument("--build-timeout", type=int, default=1800)
    ap.add_argument("--fail-fast", action="store_true", help="stop each ctest run at its first failure")
    ap.add_argument("--no-baseline", action="store_true", help="skip the unmutated build and test run")
    args = ap.parse_args()
    args.build_dir = os.path.abspath(os.path.join(args.repo, args.build_dir)) if not os.path.isabs(
        args.build_dir) else args.build_dir

    files = library_files(args.repo)
    chosen = list(range(1, len(FAULTS) + 1))
    if args.only:
        chosen = [int(x) for x in args.only.split(",") if x.strip()]
        bad = [i for i in chosen if not 1 <= i <= len(FAULTS)]
        if bad:
            sys.exit(f"no such fault: {bad}")

    # Locate every snippet first: a stale table fails before anything is touched.
    located = {}
    errors = []
    for i in chosen:
        try:
            located[i] = [locate(args.repo, files, snippet) for snippet in FAULTS[i - 1][3::2]]
        except LookupError as e:
            errors.append(f"fault {i} ({FAULTS[i - 1][2]}): {e}")
    if args.list:
        for i in chosen:
            area, kind, desc = FAULTS[i - 1][:3]
            print(f"{i:3d} {area:7s} {kind:6s} {where(located.get(i, ['??'])):32s} {desc}")
    if errors:
        sys.exit("mutation-check: stale snippets\n" + "\n".join(errors))
    if args.list:
        return

    touched = sorted({f for paths in located.values() for f in paths})
    before = snapshot(args.repo, touched)
    restorer = Restorer(args.repo)

    def on_term(signum, frame):
        raise KeyboardInterrupt(f"signal {signum}")

    signal.signal(signal.SIGTERM, on_term)
    rows = []
    started = time.time()
    try:
        if not args.no_baseline:
            rc, out = build(args)
            if rc != 0:
                sys.exit("mutation-check: the unmutated tree does not build:\n" + out[-3000:])
            base = run_tests(args)
            if base:
                sys.exit("mutation-check: the unmutated tree fails tests: " + ", ".join(base))
            print(f"baseline: builds and passes ({time.time() - started:.0f} s)", file=sys.stderr, flush=True)
        for i in chosen:
            area, kind, desc = FAULTS[i - 1][:3]
            edits = FAULTS[i - 1][3:]
            t0 = time.time()
            for path, snippet, repl in zip(located[i], edits[0::2], edits[1::2]):
                restorer.mutate(path, snippet, repl)
            try:
                rc, out = build(args)
                if rc != 0:
                    result, by = "n/a (does not build)", ""
                else:
                    fails = run_tests(args)
                    result, by = ("caught", short(fails)) if fails else ("MISSED", "")
            finally:
                restorer.restore()
            rows.append((i, area, kind, desc, where(located[i]), result, by, time.time() - t0))
            print(f"[{i}] {result}: {desc} {by} ({time.time() - t0:.0f} s)", file=sys.stderr, flush=True)
    finally:
        restorer.restore()
        after = snapshot(args.repo, touched)
        if after != before:
            print("mutation-check: library sources differ from the start state!", file=sys.stderr)
            sys.exit(2)

    caught = sum(1 for r in rows if r[5] == "caught")
    missed = sum(1 for r in rows if r[5] == "MISSED")
    na = len(rows) - caught - missed
    head = git(args.repo, "rev-parse", "--short", "HEAD").strip() if in_git(args.repo) else "exported tree"
    lines = [f"# Mutation check ({head})", "",
             f"{caught} caught, {missed} missed, {na} not applicable, of {len(rows)} faults; "
             f"ctest -LE '{args.exclude_labels}' -E '{args.exclude_tests}', build dir {os.path.basename(args.build_dir)}, "
             f"{time.time() - started:.0f} s.", "",
             "| # | area | kind | fault | file | result | failing tests |",
             "|---|------|------|-------|------|--------|---------------|"]
    for i, area, kind, desc, path, result, by, _ in rows:
        lines.append(f"| {i} | {area} | {kind} | {desc} | `{path}` | {result} | {by} |")
    report = "\n".join(lines) + "\n"
    print(report)
    if args.report:
        with open(args.report, "w", encoding="utf-8") as fh:
            fh.write(report)
    # Rebuild the restored tree so the build directory matches the sources.
    build(args)


if __name__ == "__main__":
    main()
