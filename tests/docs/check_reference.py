#!/usr/bin/env python3
"""Checks that the API reference holds every export of the list.

Usage: check_reference.py FUNCTIONS_H GENERATED_H HTML_DIR

The names are read from the list of exports with a pattern of its own (not the
generator's parser). Each must be declared exactly once in the generated
header, directly after a Doxygen block with a brief description, a parameter
table, its statuses and an example line, and must be
documented in the HTML output (an entry of the index of functions and a member
anchor in a group page). Names the list does not hold must not appear either.
"""

import glob
import html
import os
import re
import sys


def main(argv):
    if len(argv) != 4:
        sys.stderr.write(__doc__)
        return 2
    functions_h, generated_h, html_dir = argv[1:]
    with open(functions_h, encoding="utf-8") as f:
        text = f.read()
    # The umbrella list includes one list per family.
    for family in re.findall(r'^#include\s+"(vsps/\w+\.h)"', text, flags=re.M):
        with open(os.path.join(os.path.dirname(functions_h), family), encoding="utf-8") as f:
            text += f.read()
    listed = re.findall(r"^\s*VSPS_(?:FN|SERVICE)\s*\(\s*[^,]+,\s*(\w+)\s*,", text, flags=re.M)
    errors = []
    if len(listed) < 1:
        errors.append(f"{functions_h}: no entries found")
    if len(set(listed)) != len(listed):
        errors.append(f"{functions_h}: a name is listed twice")

    with open(generated_h, encoding="utf-8") as f:
        generated = f.read()
    declared = re.findall(r"\*/\n[^\n(]*?\b(\w+)\((?:[^;]*)\);\n", generated)
    for name in listed:
        n = declared.count(name)
        if n != 1:
            errors.append(f"{generated_h}: {name} declared {n} times after a doc block")
            continue
        block = re.search(r"/\*\*((?:(?!\*/).)*)\*/\n[^\n(]*?\b" + name + r"\(", generated, flags=re.S)
        if not block or not re.search(r"\\brief\s+\S", block.group(1)):
            errors.append(f"{generated_h}: {name} has no brief description")
            continue
        # The reference part: a parameter table (when it takes parameters),
        # the statuses (when it returns one) and an example line.
        decl = re.search(r"^(\w[^\n]*\b" + name + r"\([^;]*\));", generated, flags=re.M).group(1)
        wanted = [("\\code", "example line")]
        if "(void)" not in decl:
            wanted.append(("| parameter | direction |", "parameter table"))
        if decl.startswith("VspStatus"):
            wanted.append(("Statuses:", "list of statuses"))
        for part, what in wanted:
            if part not in block.group(1):
                errors.append(f"{generated_h}: {name} has no {what}")
    for name in sorted(set(declared) - set(listed)):
        errors.append(f"{generated_h}: {name} is not in the list")

    index = os.path.join(html_dir, "globals_func.html")
    if not os.path.exists(index):
        errors.append(f"{index}: missing (was the reference built?)")
    else:
        with open(index, encoding="utf-8") as f:
            index_text = html.unescape(re.sub(r"<[^>]+>", " ", f.read()))
        indexed = set(re.findall(r"\b(legacy\w+)\s*\(\)", index_text))
        for name in listed:
            if name not in indexed:
                errors.append(f"{index}: {name} is not in the index of functions")
        for name in sorted(indexed - set(listed)):
            errors.append(f"{index}: {name} is not in the list")
    group_text = ""
    for page in glob.glob(os.path.join(html_dir, "group__*.html")):
        with open(page, encoding="utf-8") as f:
            group_text += f.read()
    for name in listed:
        if not re.search(r'<h2 class="memtitle">.*?\b' + name + r"\b", group_text):
            errors.append(f"{html_dir}: {name} has no documented member in a group page")

    for e in errors:
        print(e)
    print(f"{len(listed)} exports listed, {len(errors)} problems")
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
