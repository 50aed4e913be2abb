#!/usr/bin/env python3
"""Writes the declarations header the API reference is generated from.

The exports are declared through the X-macro list include/vsps_functions.h,
which Doxygen cannot document. This script reads that list and include/vsps.h
and writes a plain header in which every export is an ordinary prototype with
its comment turned into a Doxygen block:

  - the brief description is the comment's first sentence, the detailed
    description the rest of the text as written;
  - each "/* ===== title ===== */" banner becomes a Doxygen group with that
    title; a free-standing comment at the start of a section becomes the
    group's description, and a "---- title ----" comment inside a section a
    titled member group.

Each export's block also gets, derived from its signature and comment:

  - a parameter table: name, direction (from the type: const pointers and
    values are inputs; a non-const pointer is an output unless its name says
    it is updated: ...SrcDst..., a state, a memory, coefficients; work
    buffers are scratch), element type and Q format (a Q format written
    next to the parameter's name in the comment, or the family's stated
    format for that kind of value), and the values the checks refuse;
  - the statuses it returns and why (the "Checks" sentence of the comment,
    the other sentences naming a status, the status's meaning in vsps.h);
  - one example line: the first call of the export in the examples (when an
    examples folder is given and calls it), else a call with the
    parameters' names.

The list is parsed strictly: an entry without a comment, a line that is
neither a comment nor an entry, or a parameter type vsps.h does not declare
stops the script with an error, so no export can be dropped silently.

Usage: gen-api-reference.py VSPS_H FUNCTIONS_H OUTPUT_H [EXAMPLES_DIR]
Python 3 standard library only.
"""

import os
import re
import sys

BANNER_RULE = re.compile(r"^=+$")
SUBSECTION = re.compile(r"^-{2,}\s*(.*?)\s*-{2,}\s*$")
ENTRY_START = re.compile(r"^VSPS_(FN|SERVICE)\s*\(")
C_WORDS = {"const", "void", "int", "char", "unsigned", "signed", "short", "long", "float", "double"}


class ListError(Exception):
    pass


def comment_lines(block):
    """The text lines of a /* ... */ block without the comment markers."""
    body = block.strip()
    assert body.startswith("/*") and body.endswith("*/")
    body = body[2:-2]
    lines = []
    for raw in body.split("\n"):
        line = raw.rstrip()
        stripped = line.lstrip()
        if stripped.startswith("*"):
            stripped = stripped[1:]
            if stripped.startswith(" "):
                stripped = stripped[1:]
            line = stripped
        else:
            line = line.strip()
        lines.append(line)
    while lines and not lines[0].strip():
        lines.pop(0)
    while lines and not lines[-1].strip():
        lines.pop()
    return lines


def split_arguments(text):
    """Splits "a, b(c, d), e" at the top-level commas."""
    parts, depth, cur = [], 0, ""
    for ch in text:
        if ch == "(":
            depth += 1
        elif ch == ")":
            depth -= 1
        if ch == "," and depth == 0:
            parts.append(cur.strip())
            cur = ""
        else:
            cur += ch
    if cur.strip():
        parts.append(cur.strip())
    return parts


def parse_entry(text, line_no):
    m = ENTRY_START.match(text)
    inner = text[m.end():].rstrip()
    if not inner.endswith(")"):
        raise ListError(f"line {line_no}: entry does not end with ')'")
    args = split_arguments(inner[:-1])
    if len(args) != 4:
        raise ListError(f"line {line_no}: expected 4 macro arguments, found {len(args)}")
    ret, name, params, call_args = args
    if not re.fullmatch(r"[A-Za-z_]\w*", name):
        raise ListError(f"line {line_no}: bad function name {name!r}")
    if not (params.startswith("(") and params.endswith(")")):
        raise ListError(f"line {line_no}: parameters of {name} not parenthesised")
    return {"kind": m.group(1), "ret": ret, "name": name, "params": params, "args": call_args,
            "line": line_no}


INCLUDE = re.compile(r'^#include\s+"(vsps/[A-Za-z0-9_]+\.h)"\s*$', re.M)


def read_list(path):
    """The text of the list: the umbrella file with each family list it
    includes put in its place, less the family file's own header comment."""
    with open(path, encoding="utf-8") as f:
        text = f.read()
    folder = os.path.dirname(path)

    def family(m):
        with open(os.path.join(folder, m.group(1)), encoding="utf-8") as f:
            body = f.read()
        return re.sub(r"^\s*/\*.*?\*/", "", body, count=1, flags=re.S)

    return INCLUDE.sub(family, text)


def parse_list(path):
    """Returns the sections: [{title, intro: [lines], items: [...]}], items are
    ("entry", entry, comment lines) or ("subsection", title, comment lines)."""
    lines = read_list(path).split("\n")
    sections = []
    pending = None  # a comment not yet attached: (lines, first line number)
    i = 0

    def flush_pending():
        nonlocal pending
        if pending is None:
            return
        body, at = pending
        pending = None
        if not sections:
            return  # the file's own header comment
        section = sections[-1]
        m = SUBSECTION.match(body[0])
        if m:
            section["items"].append(("subsection", m.group(1), body[1:]))
        elif not section["items"]:
            section["intro"].extend(([""] if section["intro"] else []) + body)
        else:
            raise ListError(f"line {at}: free-standing comment after the first entry of a section "
                            "(start it with '---- title ----' to make it a subsection)")

    while i < len(lines):
        line = lines[i]
        stripped = line.strip()
        if not stripped or stripped in ("/* clang-format off */", "/* clang-format on */"):
            if not stripped and pending is not None:
                flush_pending()
            i += 1
            continue
        if stripped.startswith("/*"):
            start = i
            block = line
            while "*/" not in lines[i]:
                i += 1
                if i >= len(lines):
                    raise ListError(f"line {start + 1}: unterminated comment")
                block += "\n" + lines[i]
            if not lines[i].rstrip().endswith("*/"):
                raise ListError(f"line {i + 1}: text after a comment")
            i += 1
            body = comment_lines(block)
            if len(body) >= 3 and BANNER_RULE.match(body[0]) and BANNER_RULE.match(body[-1]):
                flush_pending()
                title = " ".join(x.strip() for x in body[1:-1]).strip()
                sections.append({"title": title, "intro": [], "items": []})
                continue
            flush_pending()
            pending = (body, start + 1)
            continue
        if ENTRY_START.match(stripped):
            start = i
            entry_text = stripped
            while entry_text.count("(") != entry_text.count(")"):
                i += 1
                if i >= len(lines):
                    raise ListError(f"line {start + 1}: unterminated entry")
                entry_text += " " + lines[i].strip()
            i += 1
            entry = parse_entry(entry_text, start + 1)
            if pending is None:
                raise ListError(f"line {start + 1}: {entry['name']} has no comment above it")
            if not sections:
                raise ListError(f"line {start + 1}: {entry['name']} before the first section banner")
            body, _ = pending
            pending = None
            sections[-1]["items"].append(("entry", entry, body))
            continue
        raise ListError(f"line {i + 1}: neither a comment nor an entry: {stripped[:60]!r}")
    flush_pending()
    return sections


def declared_types(path):
    """The type names vsps.h declares (typedefs, structs, enums)."""
    with open(path, encoding="utf-8") as f:
        text = re.sub(r"/\*.*?\*/", " ", f.read(), flags=re.S)
    names = set(re.findall(r"typedef\s+[^;{]*?\b(\w+)\s*;", text))
    names |= set(re.findall(r"}\s*(\w+)\s*;", text))
    names |= set(re.findall(r"\b(?:struct|enum)\s+(\w+)", text))
    names |= {"int8_t", "int16_t", "int32_t", "int64_t", "uint8_t", "uint16_t", "uint32_t", "uint64_t"}
    return names


def check_types(entry, known):
    words = re.findall(r"[A-Za-z_]\w*", entry["ret"])
    params = entry["params"][1:-1].strip()
    if params != "void":
        for p in split_arguments(params):
            tokens = re.findall(r"[A-Za-z_]\w*", p)
            if len(tokens) < 2:
                raise ListError(f"line {entry['line']}: {entry['name']}: parameter {p!r} has no name")
            words += tokens[:-1]  # the last word is the parameter's name
    for w in words:
        if w not in C_WORDS and w not in known:
            raise ListError(f"line {entry['line']}: {entry['name']}: type {w!r} is not declared in vsps.h")


# ---- parameters, statuses, examples -------------------------------------------

UPDATED = re.compile(r"SrcDst|^p?[Ss]tate$|^pMem$|^pPast|^coeffs$|^coeffFrames$|^carriedError$")
SCRATCH = re.compile(r"^(work|init)Buf")
# Kinds of values named in parameter names, and the words a family's notes
# use for their format ("LSP Q15 cosines").
KINDS = [("Lpc", r"LP coefficients"), ("Rc", r"reflection coefficients"), ("Lsp", r"\bLSPs?\b"),
         ("Lsf", r"\bLSFs?\b"), ("AutoCorr", r"autocorrelations")]
Q_FORMAT = re.compile(r"\b(?:radian |normalised )?Q\d+\b")


def parameters(entry):
    """[(type, name)] of the entry's parameters."""
    text = entry["params"][1:-1].strip()
    if text == "void":
        return []
    out = []
    for p in split_arguments(text):
        m = re.match(r"(.*?)(\w+)$", p.strip())
        out.append((m.group(1).strip(), m.group(2)))
    return out


def direction(entry, ptype, name):
    if "*" not in ptype:
        return "in"
    if ptype.startswith("const") and ptype.count("*") == ptype.count("const"):
        return "in"
    if SCRATCH.match(name):
        return "scratch"
    if UPDATED.search(name) and not re.search(r"Init|Size", entry["name"]):
        return "in/out"
    if ptype.startswith("const"):
        return "in"
    return "out"


def sentences(text):
    rest, out = text, []
    while rest:
        first, rest = first_sentence(rest)
        out.append(first.strip())
    return out


def q_format(name, text, intro):
    """The Q format stated next to the parameter's name in the comment (in
    the same clause), else the family's format for the kind of value the
    name says."""
    for clause in re.split(r"[;:,.()]\s", text):
        m = re.search(r"\b" + re.escape(name) + r"\b(.{0,30})", clause)
        if m:
            q = Q_FORMAT.search(m.group(1))
            if q:
                return q.group(0)
    m = re.search(r"\b" + re.escape(name) + r"\b\)?(.{0,40})", intro)
    if m and Q_FORMAT.search(m.group(1)):
        return Q_FORMAT.search(m.group(1)).group(0)
    for key, words in KINDS:
        if key in name:
            for clause in re.split(r"[;.]\s", intro):
                m = re.search(words + r"(.{0,50})", clause)
                if m and Q_FORMAT.search(m.group(1)):
                    return Q_FORMAT.search(m.group(1)).group(0)
    return ""


def checks(text, texts):
    """[(condition, status)] of the comment's "Checks" sentence, in order;
    "Checks as NAME[, then ...]" takes NAME's checks (texts: name -> comment
    text of every export) and adds the clauses after "then"."""
    m = re.search(r"Checks as (\w+)(?:, then\s*(.*))?", text, flags=re.S)
    if m and m.group(1) in texts:
        more = checks("Checks: " + m.group(2), texts) if m.group(2) else []
        return checks(texts[m.group(1)], texts) + more
    m = re.search(r"Checks(?: in order)?:\s*(.*)", text, flags=re.S)
    if not m:
        return []
    body, _ = first_sentence(m.group(1))
    out = []
    for clause in body.rstrip(".").split(";"):
        cm = re.match(r"\s*(.*):\s*(vspSts\w+)", clause, flags=re.S)
        if cm:
            out.append((re.sub(r"\s+", " ", cm.group(1)).strip(), cm.group(2)))
    return out


def refused(name, ptype, found):
    """The checks' conditions on one parameter."""
    out = []
    for cond, status in found:
        if re.search(r"\b" + re.escape(name) + r"\b", cond):
            out.append(f"{cond}: {status}")
        elif "*" in ptype and re.search(r"\bany\b[^:]*\bpointers?\b", cond):
            out.append(f"null: {status}")
    return "; ".join(out)


def status_reasons(entry, text, found):
    """[(status, why)]: success, each check's status with its conditions, and
    every other status the comment names with the sentence naming it; a
    status named nowhere else is explained by its meaning in vsps.h."""
    if entry["ret"] != "VspStatus":
        return []
    reasons = [("vspStsNoErr", "success")]
    for cond, status in found:
        for i, (s, why) in enumerate(reasons):
            if s == status:
                reasons[i] = (s, why + "; " + cond)
                break
        else:
            reasons.append((status, cond))
    checks_sentence = re.search(r"Checks(?: in order)?:|Checks as", text)
    for sentence in sentences(text):
        if checks_sentence and sentence.startswith(checks_sentence.group(0)):
            continue
        for status in re.findall(r"\bvspSts\w+", sentence):
            if status not in [s for s, _ in reasons]:
                reasons.append((status, re.sub(r"\s+", " ", sentence)))
    return reasons


def status_meanings(vsps_h_text):
    return dict(re.findall(r"\b(vspSts\w+)\s*=\s*-?\d+,?\s*/\*\*<\s*(.*?)\s*\*/", vsps_h_text))


def example_calls(folder, names):
    """{name: (the first statement calling it, file)} over the examples' C
    sources, for the listed names."""
    calls = {}
    if not folder:
        return calls
    for path in sorted(os.listdir(folder)):
        if not path.endswith(".c"):
            continue
        with open(os.path.join(folder, path), encoding="utf-8") as f:
            text = re.sub(r"/\*.*?\*/", " ", f.read(), flags=re.S)
        for stmt in re.split(r"(?<=[;{}])", text):
            stmt = re.sub(r"\s+", " ", stmt).strip()
            stmt = re.sub(r"^(?:if|while|for) \(|^[{}] *", "", stmt)
            for name in re.findall(r"\b(\w+)\s*\(", stmt):
                if name in names and name not in calls and len(stmt) <= 160:
                    calls[name] = (stmt, path)
    return calls


def cell(text):
    return escape(text).replace("|", "\\|") if text else "-"


def reference_lines(entry, body, intro, meanings, examples, texts):
    text = brief_text(join_lines(body))
    params = parameters(entry)
    found = checks(text, texts)
    out = []
    if params:
        out += ["", "| parameter | direction | type, Q format | refused values: status |", "|---|---|---|---|"]
        for ptype, name in params:
            base = re.sub(r"\bconst\b|\*", " ", ptype).split()[0]
            q = q_format(name, text, intro) if base in ("Vsp16s", "Vsp32s", "Vsp32sc") else ""
            kind = re.sub(r"\s+\*", "*", ptype) + (", " + q if q else "")
            out.append(f"| {name} | {direction(entry, ptype, name)} | {cell(kind)} | {cell(refused(name, ptype, found))} |")
    reasons = status_reasons(entry, text, found)
    if reasons:
        out += ["", "Statuses:"]
        out += [f"- {s}: {escape(why or meanings.get(s, ''))}" for s, why in reasons]
    call = examples.get(entry["name"])
    if call:
        line, where = call
        out += ["", f"Example (examples/{where}):"]
    else:
        args = ", ".join(n for _, n in params)
        result = "VspStatus st = " if entry["ret"] == "VspStatus" else entry["ret"] + " r = "
        line = f"{result}{entry['name']}({args});"
        out += ["", "Example:"]
    out += ["\\code", line, "\\endcode"]
    return out


def group_id(title):
    return "vsps_" + re.sub(r"[^a-z0-9]+", "_", title.lower()).strip("_")


# ---- text to Doxygen ---------------------------------------------------------

BREAK = "\x01"  # a line break kept in the detailed text (around formula lines)


def join_lines(lines):
    """Paragraph text: lines joined; a word split after a hyphen or an
    identifier split before an underscore is joined back; a blank line
    separates paragraphs; an indented line (a formula) keeps its own line,
    marked by BREAK before it and before the line that follows it."""
    out = ""
    after_formula = False
    for line in lines:
        line = line.rstrip()
        formula = line.startswith("  ") and line.strip()
        if not out:
            out = line.strip() if not formula else BREAK + line.strip()
        elif not line.strip():
            out += "\n\n"
        elif out.endswith("\n"):
            out += line.strip()
        elif formula or after_formula:
            out += "\n" + BREAK + line.strip()
        elif re.search(r"[A-Za-z]-$", out) or (re.search(r"\w$", out) and line.lstrip().startswith("_")):
            out += line.lstrip()
        else:
            out += "\n" + line
        after_formula = bool(formula)
    return out


def escape(text):
    """Characters Doxygen would take as commands, HTML or entities are
    escaped, except inside double quotes (quoted text is kept as written)."""
    def esc(part):
        part = part.replace("\\", "\\\\")
        for ch in "@<>&#%$":
            part = part.replace(ch, "\\" + ch)
        return part

    pieces = re.split(r'("[^"\n]*")', text)
    return "".join(p if p.startswith('"') else esc(p) for p in pieces)


def first_sentence(text):
    """Splits text after its first sentence: a full stop followed by white
    space outside parentheses (abbreviations such as e.g. excepted)."""
    depth = 0
    for i, ch in enumerate(text):
        if ch in "([":
            depth += 1
        elif ch in ")]":
            depth = max(0, depth - 1)
        elif ch == "." and depth == 0 and (i + 1 == len(text) or text[i + 1] in " \n") and text[i - 1:i] != ".":
            before = text[max(0, i - 4):i + 1]
            if re.search(r"(\be\.g|\bi\.e|\betc|\bvs)\.$", before):
                continue
            return text[:i + 1], text[i + 1:].strip()
    return text, ""


def brief_text(text):
    return re.sub(r"\s+", " ", text.replace(BREAK, " ")).strip()


def detail_lines(text):
    """Detailed text as comment lines; BREAK becomes Doxygen's line break."""
    out = []
    for line in text.split("\n"):
        if line.startswith(BREAK):
            if out and out[-1].strip():
                out[-1] += " \\n"
            line = line[len(BREAK):]
        out.append(line)
    return out


def doc_block(lines, indent=""):
    out = [indent + "/**"]
    for line in lines:
        out.append((indent + " * " + line).rstrip())
    out.append(indent + " */")
    return "\n".join(out)


def entry_doc(entry, body, intro, meanings, examples, texts):
    text = join_lines(body)
    brief, rest = first_sentence(text)
    doc = ["\\brief " + brief_text(escape(brief))]
    if rest:
        doc.append("")
        doc += detail_lines(escape(rest))
    if entry["kind"] == "SERVICE":
        doc += ["", "A library service, exported directly (not routed through the processor dispatch)."]
    doc += reference_lines(entry, body, intro, meanings, examples, texts)
    return doc_block(doc)


def prototype(entry):
    params = entry["params"]
    return f"{entry['ret']} {entry['name']}{params};"


def generate(sections, vsps_h_name, list_name, meanings, examples):
    texts = {item["name"]: brief_text(join_lines(body))
             for section in sections for kind, item, body in section["items"] if kind == "entry"}
    out = [
        "/* Generated by tools/gen-api-reference.py from include/"
        f"{list_name} and include/{vsps_h_name}: do not edit.",
        " * The declarations of the list of exports as plain prototypes, for the",
        " * API reference only; programs include vsps.h. */",
        "",
        "/**",
        f" * \\file {list_name}",
        " * \\brief Every exported function, grouped by family.",
        " *",
        f" * Programs include {vsps_h_name}, which declares these functions through the",
        f" * list of exports ({list_name}); the types, status codes and state",
        f" * types are in {vsps_h_name}.",
        " */",
        "",
    ]
    for section in sections:
        gid = group_id(section["title"])
        doc = [f"\\defgroup {gid} {section['title']}"]
        if section["intro"]:
            text = join_lines(section["intro"])
            brief, rest = first_sentence(text)
            doc += ["\\brief " + brief_text(escape(brief))]
            if rest:
                doc += [""] + detail_lines(escape(rest))
        doc += ["@{"]
        out.append(doc_block(doc))
        out.append("")
        in_subsection = False
        for kind, item, body in section["items"]:
            if kind == "subsection":
                if in_subsection:
                    out += ["/** @} */", ""]
                sub = [f"\\name {item}"]
                if body:
                    sub += detail_lines(escape(join_lines(body)))
                out.append(doc_block(sub))
                out += ["/** @{ */", ""]
                in_subsection = True
                continue
            intro = brief_text(join_lines(section["intro"]))
            out.append(entry_doc(item, body, intro, meanings, examples, texts))
            out.append(prototype(item))
            out.append("")
        if in_subsection:
            out += ["/** @} */", ""]
        out += ["/** @} */", ""]
    return "\n".join(out)


def main(argv):
    if len(argv) not in (4, 5):
        sys.stderr.write(__doc__)
        return 2
    vsps_h, functions_h, output = argv[1:4]
    try:
        sections = parse_list(functions_h)
        known = declared_types(vsps_h)
        names = set()
        for section in sections:
            for kind, item, _ in section["items"]:
                if kind != "entry":
                    continue
                check_types(item, known)
                if item["name"] in names:
                    raise ListError(f"line {item['line']}: {item['name']} listed twice")
                names.add(item["name"])
        if not names:
            raise ListError("no entries found")
    except ListError as e:
        sys.stderr.write(f"{functions_h}: {e}\n")
        return 1
    with open(vsps_h, encoding="utf-8") as f:
        meanings = status_meanings(f.read())
    examples = example_calls(argv[4] if len(argv) == 5 else "", names)
    text = generate(sections, vsps_h.replace("\\", "/").split("/")[-1],
                    functions_h.replace("\\", "/").split("/")[-1], meanings, examples)
    with open(output, "w", encoding="utf-8", newline="\n") as f:
        f.write(text)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
