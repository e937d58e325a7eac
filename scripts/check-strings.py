#!/usr/bin/env python3
"""Check the plain-text string tables of the layer commands resource library.

Usage: check-strings.py [FILE ...]

Without arguments every strings*.txt in resources/VxLayerCmdsRes is checked.
Each problem is printed as FILE:LINE: message; the exit status is 1 when any
problem was found (2 when a file cannot be read), 0 otherwise.

Rules (the host's string table format):
  - UTF-8 text; lines starting with '#' are comments; blank lines are ignored;
  - an entry is: decimal id, one or more blanks or tabs, the text in double
    quotes, and nothing after the closing quote;
  - escapes inside the text: \\n \\t \\" \\\\ \\uXXXX (a BMP code point, not a
    surrogate); every other character stands for itself, an unescaped double
    quote ends the text;
  - ids ascend and each id appears at most once.
"""

import os
import sys

SIMPLE_ESCAPES = {"n": "\n", "t": "\t", '"': '"', "\\": "\\"}
HEX_DIGITS = "0123456789abcdefABCDEF"


def default_files():
    here = os.path.dirname(os.path.abspath(__file__))
    res_dir = os.path.join(here, os.pardir, "resources", "VxLayerCmdsRes")
    res_dir = os.path.normpath(res_dir)
    try:
        names = sorted(n for n in os.listdir(res_dir)
                       if n.startswith("strings") and n.endswith(".txt"))
    except OSError:
        names = []
    return [os.path.join(res_dir, n) for n in names]


def parse_text(body):
    """Decode the part after the opening quote.

    Returns (text, rest, errors): rest is what follows the closing quote, or
    None when the closing quote is missing; errors are messages with columns
    relative to body.
    """
    out = []
    errors = []
    i = 0
    n = len(body)
    while i < n:
        c = body[i]
        if c == '"':
            return "".join(out), body[i + 1:], errors
        if c != "\\":
            out.append(c)
            i += 1
            continue
        if i + 1 >= n:
            errors.append((i, "backslash at end of line"))
            i += 1
            continue
        e = body[i + 1]
        if e in SIMPLE_ESCAPES:
            out.append(SIMPLE_ESCAPES[e])
            i += 2
        elif e == "u":
            digits = body[i + 2:i + 6]
            if len(digits) != 4 or any(d not in HEX_DIGITS for d in digits):
                errors.append((i, "\\u needs exactly four hex digits"))
                i += 2
                continue
            cp = int(digits, 16)
            if 0xD800 <= cp <= 0xDFFF:
                errors.append((i, "\\u%s is a surrogate, not a code point" % digits))
            out.append(chr(cp))
            i += 6
        else:
            errors.append((i, "unknown escape \\%s" % e))
            i += 2
    return "".join(out), None, errors


def check_file(path):
    """Check one table; returns (problem count, entry count)."""
    problems = []

    def report(lineno, msg):
        problems.append("%s:%d: %s" % (path, lineno, msg))

    with open(path, "rb") as f:
        raw = f.read()
    if raw.startswith(b"\xef\xbb\xbf"):
        report(1, "byte order mark at start of file")
        raw = raw[3:]

    lines = raw.split(b"\n")
    if lines and lines[-1] == b"":
        lines.pop()

    entries = 0
    last_id = None
    last_line = 0
    seen = {}
    for lineno, bline in enumerate(lines, 1):
        try:
            line = bline.decode("utf-8")
        except UnicodeDecodeError as exc:
            report(lineno, "not valid UTF-8 (byte %d)" % (exc.start + 1))
            continue
        if line.endswith("\r"):
            report(lineno, "carriage return at end of line")
            line = line[:-1]
        if line.startswith("#") or line.strip(" \t") == "":
            continue

        # id
        i = 0
        while i < len(line) and line[i] in "0123456789":
            i += 1
        if i == 0:
            report(lineno, "malformed line: expected a decimal id or a comment")
            continue
        id_text = line[:i]
        j = i
        while j < len(line) and line[j] in " \t":
            j += 1
        if j == i:
            report(lineno, "malformed line: expected blanks or tabs after id %s"
                   % id_text)
            continue
        if j >= len(line) or line[j] != '"':
            report(lineno, "malformed line: expected '\"' to open the text of id %s"
                   % id_text)
            continue

        text_col = j + 1
        _text, rest, errors = parse_text(line[text_col:])
        for col, msg in errors:
            report(lineno, "column %d: %s" % (text_col + col + 1, msg))
        if rest is None:
            report(lineno, "malformed line: missing closing '\"' for id %s" % id_text)
        elif rest != "":
            report(lineno, "malformed line: text after the closing '\"' of id %s: %r"
                   % (id_text, rest))
        if not errors and rest == "":
            entries += 1

        # A bad text still takes part in the id checks, so order problems
        # around it are reported in the same run.
        ident = int(id_text)
        if ident in seen:
            report(lineno, "duplicate id %d (first on line %d)" % (ident, seen[ident]))
        else:
            seen[ident] = lineno
            if last_id is not None and ident < last_id:
                report(lineno, "id %d is not ascending (after %d on line %d)"
                       % (ident, last_id, last_line))
        if last_id is None or ident > last_id:
            last_id = ident
            last_line = lineno

    for p in problems:
        print(p)
    return len(problems), entries


def main(argv):
    files = argv[1:] or default_files()
    if not files:
        print("check-strings: no string tables found", file=sys.stderr)
        return 2
    total = 0
    for path in files:
        try:
            count, entries = check_file(path)
        except OSError as exc:
            print("%s: cannot read: %s" % (path, exc.strerror), file=sys.stderr)
            return 2
        total += count
        status = "OK" if count == 0 else "%d problem(s)" % count
        print("%s: %d entries, %s" % (path, entries, status))
    return 1 if total else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
