#!/usr/bin/env python3
"""Checks the text of all tracked files: what may not stand in the sources and in the documents.

- C and C++ code: no <iostream>, fused multiply-add, goto; in src/ no long double, no streams at
  all, no exp, log, pow, atan or kin of the standard library, and no raw new, delete or malloc outside the places that hold memory.
- everywhere: no path of one machine, no host that packages come from, no leftover marker, no
  mention of a text that is not part of the project.
"""

import re
import sys

from source_tree import code_files, read_text, report, tracked_files, without_comments

OWNERS = ("src/base/aligned_block.", "src/exports/call_frame.", "src/exports/handle_exports.")
BINARY = (".png", ".jpg", ".ppm", ".pgm", ".tif", ".bmp")

CODE_RULES = (
    (re.compile(r"#\s*include\s*<iostream>"), "no iostream"),
    (re.compile(r"\bstd::fmaf?\b|\b__builtin_fmaf?\b"), "no fused multiply-add"),
    (re.compile(r"\busing namespace std\b"), "no using namespace std"),
    (re.compile(r"\bgoto\b"), "no goto"),
    (re.compile(r"\bstd::(bit_cast|source_location|pmr|format)\b"), "not in every compiler"),
)
SOURCE_RULES = (
    (re.compile(r"\blong double\b"), "no long double"),
    (re.compile(r"#\s*include\s*<(fstream|sstream|iomanip|ostream|istream|ranges)>"), "no streams"),
    (
        re.compile(
            r"\b(std::|__builtin_)(exp2?|expm1|log(2|10|1p)?|pow|cbrt|hypot|a?(sin|cos|tan)h?|atan2|erfc?|"
            r"[lt]gamma)[fl]?\("
        ),
        "no function that libraries round differently; see base/elementary.h",
    ),
    (re.compile(r"#\s*include\s*<(?!std|math|cpuid|windows|sys/)[\w/]+\.h>"), "another library"),
)
OWNING_RULES = (
    (re.compile(r"\bnew\s+[A-Za-z_(:]"), "no raw new"),
    (re.compile(r"\bdelete\b"), "no raw delete"),
    (re.compile(r"\b(malloc|calloc|realloc)\s*\("), "no malloc"),
)
# Written in pieces, so that this file passes its own check.
TEXT_RULES = (
    (re.compile("/" + r"(work|root)/[a-z]|/home/" + r"[a-z]|/Users/" + r"[a-z]"), "a path of one machine"),
    (re.compile(r"deb\." + r"debian|registry\." + r"npmjs|pypi" + r"\.org|proxy\." + r"golang"), "a package host"),
    (re.compile(r"\b(TO" + r"DO|FIX" + r"ME|XX" + r"X)\b"), "a leftover marker"),
    (re.compile(r"<<<<" + r"<<< |>>>>" + r">>> "), "a merge marker"),
    (re.compile(r"\bspec" + r"\.md\b|\bPa" + r"rts? \d\.\d|\bthe spec" + r"(ification)?\b"), "a foreign text"),
)


def deleted_functions(text):
    """Blanks "= delete" and "operator new", which own nothing."""
    text = re.sub(r"=\s*delete\b", "", text)
    return re.sub(r"operator\s+(new|delete)", "", text)


def code_problems(path, text):
    rules = CODE_RULES
    if path.startswith("src/"):
        rules += SOURCE_RULES
        if not path.startswith(OWNERS):
            rules += OWNING_RULES
    code = deleted_functions(without_comments(text))
    for number, line in enumerate(code.splitlines(), start=1):
        for pattern, reason in rules:
            if pattern.search(line):
                yield f"{path}:{number}: {reason}: {line.strip()}"


def text_problems(path, text):
    for number, line in enumerate(text.splitlines(), start=1):
        for pattern, reason in TEXT_RULES:
            if pattern.search(line):
                yield f"{path}:{number}: {reason}: {line.strip()}"


def main():
    problems = []
    for path in code_files():
        problems.extend(code_problems(path, read_text(path)))
    for path in tracked_files():
        if not path.endswith(BINARY):
            problems.extend(text_problems(path, read_text(path)))
    sys.exit(report("words", problems))


if __name__ == "__main__":
    main()
