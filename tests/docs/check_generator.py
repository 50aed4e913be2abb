#!/usr/bin/env python3
"""Checks tools/gen-api-reference.py on small lists: a well-formed list gives
groups, prototypes, first-sentence briefs, and per export a parameter table
(direction, type, Q format, refused values), the statuses with their reasons
and an example line (from an examples folder when it calls the export);
malformed lists are refused.

Usage: check_generator.py GENERATOR VSPS_H
"""

import os
import subprocess
import sys
import tempfile

BANNER = "/* ======================================================================\n * {}\n * ====================================================================== */\n"

GOOD = (BANNER.format("First family") + """
/* Family notes: formats. More notes. */

/* Returns 1. It has no arguments. */
VSPS_SERVICE(VspStatus, fooOne, (void), ())

/* ---- Sub-tools ----------------------------------------------------------
 * Text of the sub-tools. */

/* Copies e.g. x <= 2 & y into *pDst (0.5 each). Q15. */
VSPS_FN(VspStatus, fooTwo, (const Vsp16s* pSrc, Vsp16s* pDst, int len), (pSrc, pDst, len))

""" + BANNER.format("Second family") + """
/* Three. */
VSPS_FN(VspStatus, fooThree, (Vsp32fc* p), (p))

/* Scales pSrcDst (Q12) in place with a table of pCoef (Q15 cosines). Gives
 * vspStsLPCUnstable when the sum overflows. Checks in order: any pointer
 * null: vspStsNullPtrErr; len < 1 or len > 8: vspStsSizeErr; len odd:
 * vspStsSizeErr. */
VSPS_FN(VspStatus, fooFour, (Vsp16s* pSrcDst, const Vsp16s* pCoef, int len), (pSrcDst, pCoef, len))

/* Five. Checks as fooFour, then len > 4: vspStsRangeErr. */
VSPS_FN(VspStatus, fooFive, (Vsp16s* pSrcDst, const Vsp16s* pCoef, int len), (pSrcDst, pCoef, len))
""")

EXAMPLE = "int main(void) {\n  Vsp16s v[2] = {1, 2};\n  return fooFour(v,\n      v, 2) != vspStsNoErr;\n}\n"

BAD = {
    "entry without comment": BANNER.format("F") + "\nVSPS_FN(VspStatus, f, (int n), (n))\n",
    "unknown type": BANNER.format("F") + "\n/* Doc. */\nVSPS_FN(VspStatus, f, (Vsp99q* p), (p))\n",
    "stray line": BANNER.format("F") + "\n/* Doc. */\nVSPS_FN(VspStatus, f, (int n), (n))\nint x;\n",
    "entry before a banner": "/* Doc. */\nVSPS_FN(VspStatus, f, (int n), (n))\n",
    "duplicate": BANNER.format("F") + "\n/* A. */\nVSPS_FN(VspStatus, f, (int n), (n))\n\n"
                 "/* B. */\nVSPS_FN(VspStatus, f, (int n), (n))\n",
    "empty list": "/* Only a header comment. */\n",
}


def run(generator, vsps_h, text, tmp, examples=None):
    src = os.path.join(tmp, "vsps_functions.h")
    out = os.path.join(tmp, "out.h")
    with open(src, "w") as f:
        f.write(text)
    if os.path.exists(out):
        os.remove(out)
    p = subprocess.run([sys.executable, generator, vsps_h, src, out] + ([examples] if examples else []),
                       capture_output=True, text=True)
    return p.returncode, (open(out).read() if os.path.exists(out) else ""), p.stderr


def main(argv):
    generator, vsps_h = argv[1:3]
    failures = []
    with tempfile.TemporaryDirectory() as tmp:
        examples = os.path.join(tmp, "examples")
        os.mkdir(examples)
        with open(os.path.join(examples, "four.c"), "w") as f:
            f.write(EXAMPLE)
        rc, out, err = run(generator, vsps_h, GOOD, tmp, examples)
        expect = [
            "\\defgroup vsps_first_family First family",
            "\\brief Family notes: formats.",
            "\\defgroup vsps_second_family Second family",
            "\\name Sub-tools",
            "\\brief Returns 1.\n *\n * It has no arguments.",
            "VspStatus fooOne(void);",
            "\\brief Copies e.g. x \\<= 2 \\& y into *pDst (0.5 each).\n *\n * Q15.",
            "VspStatus fooTwo(const Vsp16s* pSrc, Vsp16s* pDst, int len);",
            "\\brief Three.",
            "VspStatus fooThree(Vsp32fc* p);",
            # parameter tables, statuses, examples
            " * | pSrc | in | const Vsp16s* | - |\n * | pDst | out | Vsp16s* | - |\n * | len | in | int | - |",
            " * | pSrcDst | in/out | Vsp16s*, Q12 | null: vspStsNullPtrErr |",
            " * | pCoef | in | const Vsp16s*, Q15 | null: vspStsNullPtrErr |",
            " * | len | in | int | len \\< 1 or len \\> 8: vspStsSizeErr; len odd: vspStsSizeErr |",
            " * - vspStsNoErr: success\n * - vspStsNullPtrErr: any pointer null\n"
            " * - vspStsSizeErr: len \\< 1 or len \\> 8; len odd\n"
            " * - vspStsLPCUnstable: Gives vspStsLPCUnstable when the sum overflows.",
            " * Example (examples/four.c):\n * \\code\n * return fooFour(v, v, 2) != vspStsNoErr;\n * \\endcode",
            " * Example:\n * \\code\n * VspStatus st = fooThree(p);\n * \\endcode",
            " * | len | in | int | len \\< 1 or len \\> 8: vspStsSizeErr; len odd: vspStsSizeErr; len \\> 4: "
            "vspStsRangeErr |",
        ]
        if rc != 0:
            failures.append(f"well-formed list refused: {err.strip()}")
        for e in expect:
            if e not in out:
                failures.append(f"well-formed list: missing {e!r}")
        if out.count("@{") != out.count("@}"):
            failures.append("well-formed list: unbalanced groups")
        for what, text in BAD.items():
            rc, out, err = run(generator, vsps_h, text, tmp)
            if rc == 0 or out:
                failures.append(f"{what}: accepted")
            elif not err.strip():
                failures.append(f"{what}: refused without a message")
    for f in failures:
        print(f)
    print(f"{len(BAD) + 1} lists, {len(failures)} problems")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
