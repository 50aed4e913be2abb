#!/usr/bin/env python3
"""Counts non-blank, non-comment C/C++ lines: tests against library + codecs + tools.

A line counts when anything other than white space and comments remains on it after
// and /* */ comments (outside string and character literals) are removed.
"""
import os
import sys

SUFFIXES = (".c", ".cpp", ".h", ".hpp", ".inl")
LIBRARY = ("include", "core", "speech", "g711", "g722", "g726", "g729", "gsmamr", "gsmfr", "ec")


def code_lines(text):
    count = 0
    in_block = False
    for line in text.splitlines():
        kept = []
        i = 0
        quote = None
        while i < len(line):
            c = line[i]
            if in_block:
                if line.startswith("*/", i):
                    in_block = False
                    i += 2
                else:
                    i += 1
                continue
            if quote:
                kept.append(c)
                if c == "\\":
                    kept.append(line[i + 1 : i + 2])
                    i += 2
                    continue
                if c == quote:
                    quote = None
                i += 1
                continue
            if line.startswith("//", i):
                break
            if line.startswith("/*", i):
                in_block = True
                i += 2
                continue
            if c in "\"'":
                quote = c
            kept.append(c)
            i += 1
        if "".join(kept).strip():
            count += 1
    return count


def count_tree(root, folders):
    total = 0
    for folder in folders:
        for base, _, files in os.walk(os.path.join(root, folder)):
            for name in files:
                if name.endswith(SUFFIXES):
                    with open(os.path.join(base, name), encoding="utf-8", errors="replace") as f:
                        total += code_lines(f.read())
    return total


def main():
    root = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), "..")
    rows = [(name, count_tree(root, [name])) for name in LIBRARY + ("codecs", "tools", "tests")]
    for name, n in rows:
        print(f"{name:10} {n:7}")
    code = sum(n for name, n in rows if name != "tests")
    tests = dict(rows)["tests"]
    print(f"tests {tests} / library + codecs + tools {code} = {100.0 * tests / code:.1f}%")


if __name__ == "__main__":
    main()
