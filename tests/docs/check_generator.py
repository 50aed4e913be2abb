#!/usr/bin/env python3
"""Checks tools/gen-api-reference.py on small lists: a well-formed list gives
groups, prototypes and first-sentence briefs; malformed lists are refused.

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
""")

BAD = {
    "entry without comment": BANNER.format("F") + "\nVSPS_FN(VspStatus, f, (int n), (n))\n",
    "unknown type": BANNER.format("F") + "\n/* Doc. */\nVSPS_FN(VspStatus, f, (Vsp99q* p), (p))\n",
    "stray line": BANNER.format("F") + "\n/* Doc. */\nVSPS_FN(VspStatus, f, (int n), (n))\nint x;\n",
    "entry before a banner": "/* Doc. */\nVSPS_FN(VspStatus, f, (int n), (n))\n",
    "duplicate": BANNER.format("F") + "\n/* A. */\nVSPS_FN(VspStatus, f, (int n), (n))\n\n"
                 "/* B. */\nVSPS_FN(VspStatus, f, (int n), (n))\n",
    "empty list": "/* Only a header comment. */\n",
}


def run(generator, vsps_h, text, tmp):
    src = os.path.join(tmp, "vsps_functions.h")
    out = os.path.join(tmp, "out.h")
    with open(src, "w") as f:
        f.write(text)
    if os.path.exists(out):
        os.remove(out)
    p = subprocess.run([sys.executable, generator, vsps_h, src, out], capture_output=True, text=True)
    return p.returncode, (open(out).read() if os.path.exists(out) else ""), p.stderr


def main(argv):
    generator, vsps_h = argv[1:3]
    failures = []
    with tempfile.TemporaryDirectory() as tmp:
        rc, out, err = run(generator, vsps_h, GOOD, tmp)
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
