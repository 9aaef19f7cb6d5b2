#!/usr/bin/env python3
"""Checks the length of files and functions.

A file may have 600 lines; above 400 a note is printed. A function may have 60, its braces
included. Functions are found by the layout that clang-format gives them: a line that ends with
an opening brace after a parenthesis, closed by a brace of the same indentation.
"""

import re
import sys

from source_tree import code_files, read_text, report, tracked_files, without_comments

FILE_LIMIT = 600
FILE_NOTE = 400
FUNCTION_LIMIT = 60
SCRIPT_ENDINGS = (".py", ".sh", ".cmake")

# A parameter list's end, what may follow it, and the brace.
OPENS = re.compile(
    r"\)\s*(const|noexcept|override|final|&|&&|mutable|->\s*[\w:<>,&*\s]+|\s)*"
    r"(:\s.*|,\s.*)?\{$|^\s*:\s.*\{$"
)
STATEMENT = re.compile(r"^\s*(\}\s*)?(if|else|for|while|switch|do|catch|try)\b")
NAMESPACE = re.compile(r'^\s*(namespace|class|struct|enum|union|extern\b)')


def functions_of(text):
    """Yields (line, length) of each function and of each lambda that is long on its own."""
    lines = without_comments(text).splitlines()
    for start, line in enumerate(lines):
        stripped = line.rstrip()
        if not stripped.endswith("{") or STATEMENT.match(line) or NAMESPACE.match(line):
            continue
        if not OPENS.search(stripped):
            continue
        first = start
        # A statement whose head spans lines ends like a function's head.
        depth = stripped.count(")") - stripped.count("(")
        while depth > 0 and first > 0:
            first -= 1
            depth += lines[first].count(")") - lines[first].count("(")
        if STATEMENT.match(lines[first]):
            continue
        indent = len(lines[first]) - len(lines[first].lstrip())
        for end in range(start + 1, len(lines)):
            closing = lines[end]
            if closing.lstrip().startswith("}") and len(closing) - len(closing.lstrip()) <= indent:
                yield first + 1, end - first + 1
                break


def main():
    problems = []
    for path in code_files():
        text = read_text(path)
        for line, length in functions_of(text):
            if length > FUNCTION_LIMIT:
                problems.append(f"{path}:{line}: a function of {length} lines")
    scripts = [p for p in tracked_files() if p.endswith(SCRIPT_ENDINGS)]
    for path in code_files() + scripts:
        length = read_text(path).count("\n")
        if length > FILE_LIMIT:
            problems.append(f"{path}: {length} lines")
        elif length > FILE_NOTE:
            print(f"sizes: note: {path} has {length} lines")
    sys.exit(report("sizes", problems))


if __name__ == "__main__":
    main()
