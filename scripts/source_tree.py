"""What the check scripts share: the list of tracked files and C++ text without comments."""

import os
import re
import subprocess

ROOT = os.path.realpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
CODE_FOLDERS = ("src/", "include/", "tests/", "tools/", "bench/", "fuzz/", "examples/")
CODE_ENDINGS = (".h", ".cpp", ".inl", ".c")


def tracked_files():
    """Returns the paths that git tracks, from the root, without those deleted in the tree."""
    listing = subprocess.run(
        ["git", "-c", "safe.directory=*", "ls-files", "-z"],
        cwd=ROOT,
        check=True,
        capture_output=True,
    ).stdout.decode()
    paths = [path for path in listing.split("\0") if path]
    return [path for path in paths if os.path.isfile(os.path.join(ROOT, path))]


def code_files():
    """Returns the tracked C and C++ files."""
    return [
        path
        for path in tracked_files()
        if path.startswith(CODE_FOLDERS) and path.endswith(CODE_ENDINGS)
    ]


def read_text(path):
    with open(os.path.join(ROOT, path), encoding="utf-8") as file:
        return file.read()


_TOKENS = re.compile(
    r"""//[^\n]*|/\*.*?\*/|R"(?P<tag>[^(\s]*)\(.*?\)(?P=tag)"|"(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])+'""",
    re.DOTALL,
)


def without_comments(text, keep_strings=False):
    """Blanks comments, and literals unless kept; every line stays on its line."""

    def blank(match):
        found = match.group(0)
        if keep_strings and not found.startswith(("//", "/*")):
            return found
        # A digit separator (1'000) is no literal.
        start = match.start()
        if found[0] == "'" and start > 0 and text[start - 1].isdigit():
            return found
        return "".join("\n" if c == "\n" else " " for c in found)

    return _TOKENS.sub(blank, text)


def report(name, problems):
    """Prints the problems and returns the exit code."""
    for problem in problems:
        print(f"{name}: {problem}")
    return 1 if problems else 0
