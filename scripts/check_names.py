#!/usr/bin/env python3
"""Checks that a type has one definition in its namespace.

Two types of one name in two files compile and, as long as all their functions are inlined, work;
without optimisation the linker keeps the functions of one for both. Types of an unnamed namespace
and of other types belong to their file or type and may repeat.
"""

import re
import sys

from source_tree import code_files, read_text, report, without_comments

FOLDERS = ("src/", "include/", "tools/")
# clang-format closes it with this comment.
UNNAMED = re.compile(r"^namespace \{$.*?^\}  // namespace$", re.MULTILINE | re.DOTALL)
# clang-format starts what stands in a namespace at the first column.
NAMESPACE = re.compile(r"^namespace ([\w:]+) \{", re.MULTILINE)
TYPE = re.compile(
    r"^(?:struct|class|union|enum(?: class)?) (?:\[\[[^\]]*\]\] )?(\w+)(?: final)?(?: :[^:;{][^;{]*)? \{",
    re.MULTILINE,
)


def definitions_of(text):
    """Yields the qualified name of each type that other files could clash with."""
    text = without_comments(UNNAMED.sub("", text))
    scope = NAMESPACE.search(text)
    prefix = scope.group(1) + "::" if scope else ""
    for match in TYPE.finditer(text):
        yield prefix + match.group(1)


def problems_of(texts):
    """Yields a line for each name that two files define; `texts` is by path."""
    owners = {}
    for path, text in texts.items():
        for name in definitions_of(text):
            if owners.setdefault(name, path) != path:
                yield f"{path}: {name} is defined in {owners[name]} too"


def main():
    paths = [path for path in code_files() if path.startswith(FOLDERS)]
    sys.exit(report("names", list(problems_of({path: read_text(path) for path in paths}))))


if __name__ == "__main__":
    main()
