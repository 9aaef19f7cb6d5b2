#!/usr/bin/env python3
"""Checks every #include "..." against cmake/layers.txt.

The first pattern that matches a file decides its layer. A layer may include itself, the layers
that its line lists and the single headers that it lists. A header on an "only" line is open to
its own layer and to the layers named there, although others may see the rest of its layer.
"""

import fnmatch
import re
import sys

from source_tree import code_files, read_text, report, tracked_files

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


class Rules:
    """cmake/layers.txt."""

    def __init__(self, text):
        self.layers = []
        self.uses = {}
        self.only = {}
        for line in text.splitlines():
            if not line.strip() or line.startswith("#"):
                continue
            name, files, uses = (field.split() for field in line.split("|"))
            if name == ["only"]:
                for header in files:
                    self.only["src/" + header] = set(uses)
                continue
            self.layers.append((name[0], files))
            self.uses[name[0]] = set(uses)

    def layer_of(self, path):
        """Returns the layer's name, or None for a file outside the layers."""
        for name, patterns in self.layers:
            if any(fnmatch.fnmatchcase(path, pattern) for pattern in patterns):
                return name
        return None

    def allows(self, layer, header):
        """Whether a file of the layer may include the header (a path from the root)."""
        owner = self.layer_of(header)
        if header in self.only and layer != owner and layer not in self.only[header]:
            return False
        short = header.removeprefix("src/")
        return owner == layer or owner in self.uses[layer] or short in self.uses[layer]


def problems_of(path, text, rules, known):
    layer = rules.layer_of(path)
    if layer is None:
        return
    for name in INCLUDE.findall(text):
        header = "src/" + name
        if header in known:
            if not rules.allows(layer, header):
                yield f"{path}: the layer {layer} may not include {name}"
        elif path.startswith("src/") and "include/" + name not in known:
            yield f"{path}: {name} is not a path from src/ or include/"


def main():
    rules = Rules(read_text("cmake/layers.txt"))
    known = set(tracked_files())
    problems = []
    for path in code_files():
        if path.startswith("src/") and rules.layer_of(path) is None:
            problems.append(f"{path}: no layer of cmake/layers.txt holds it")
        problems.extend(problems_of(path, read_text(path), rules, known))
    sys.exit(report("layers", problems))


if __name__ == "__main__":
    main()
