"""What the tests of orv.exe under Wine share; tool_test.py tells the words of the command line."""

import os
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
PROGRAM = Path(sys.argv[1]).resolve() if len(sys.argv) > 2 else None
PREFIX = Path(sys.argv[2]).resolve() if len(sys.argv) > 2 else None
os.environ["ORV_TOOL"] = str(
    Path(sys.argv[3]).resolve() if len(sys.argv) > 3 else ROOT / "build" / "release" / "tools" / "orv" / "orv"
)
sys.path.insert(0, str(ROOT / "tests" / "cli"))
sys.dont_write_bytecode = True

from cli_support import (  # noqa: E402
    HAVE_VIPS,
    KEEP,
    FolderCase,
    chunk,
    read_png,
    run,
    samples,
    write_png,
)

WIDTH, HEIGHT = 33, 21
# The chunk of a PNG of 300 dots an inch.
DOTS_300 = chunk(b"pHYs", (11811).to_bytes(4, "big") * 2 + b"\1")
NEEDS_VIPS = unittest.skipUnless(HAVE_VIPS, "the tool to compare with is without libvips")
WINE_SETTINGS = {
    "WINEPREFIX": str(PREFIX),
    "WINEDEBUG": "-all",
    "WINEDLLOVERRIDES": "mscoree,mshtml,winemenubuilder.exe=",
    "DISPLAY": "",
}


def wine(*arguments, cwd, stdin=b""):
    """Runs orv.exe and gives exit code, standard output and standard error, as bytes."""
    # Files, since what Wine leaves running in the background would keep pipes open.
    with tempfile.TemporaryFile() as words, tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as errors:
        words.write(stdin)
        words.seek(0)
        done = subprocess.run(
            ["wine", str(PROGRAM), *map(str, arguments)],
            stdin=words,
            stdout=out,
            stderr=errors,
            cwd=cwd,
            timeout=240,
            env={**os.environ, **WINE_SETTINGS},
        )
        out.seek(0)
        errors.seek(0)
        return done.returncode, out.read(), errors.read()


class WindowsCase(FolderCase):
    """A case with a folder of its own, where both tools can run."""

    def orv(self, *arguments, stdin=b""):
        """Runs orv.exe there; texts are UTF-8 with plain line ends."""
        code, out, errors = wine(*arguments, cwd=self.folder, stdin=stdin)
        return code, out.decode(), errors.decode()

    def done(self, *arguments):
        """orv.exe has to succeed; gives its standard output."""
        code, out, errors = self.orv(*arguments)
        self.assertEqual((code, errors), (0, ""), arguments)
        return out

    def here(self, *arguments):
        """The tool of this machine has to succeed; gives its standard output."""
        code, out, errors = run(*arguments, cwd=self.folder)
        self.assertEqual((code, errors), (0, ""), arguments)
        return out

    def wait_for(self, condition):
        """Waits for what other programs do."""
        for _ in range(600):
            if condition():
                return
            time.sleep(0.05)
        self.fail("waited in vain")

    def pixels(self, name):
        """Size, channels, depth and samples of a picture as the tool of this machine reads it."""
        self.here("restore", name, "pixels.png", *KEEP, "--force", "--quiet")
        return read_png(self.folder / "pixels.png")

    def png(self, name, channels=3, depth=8, seed=1, extra=b""):
        """A PNG of noise."""
        values = samples(WIDTH, HEIGHT, channels, depth, seed)
        write_png(self.folder / name, WIDTH, HEIGHT, values, channels, depth, extra)

    def soft_png(self, name):
        """A PNG without noise, which survives a JPEG."""
        smooth = [100 + (x + y) + 20 * c for y in range(HEIGHT) for x in range(WIDTH) for c in range(3)]
        write_png(self.folder / name, WIDTH, HEIGHT, smooth, 3)


def as_rgba(picture):
    """A picture as RGBA, so that grey compares with three equal channels."""
    width, height, channels, depth, values = picture
    full, result = (1 << depth) - 1, []
    for i in range(0, len(values), channels):
        pixel = values[i : i + channels]
        colours = pixel[:1] * 3 if channels < 3 else pixel[:3]
        result += colours + (pixel[-1:] if channels in (2, 4) else [full])
    return width, height, 4, depth, result


class Counted(unittest.TextTestResult):
    """Counts a case once, however many of its parts failed."""

    def __init__(self, *arguments):
        super().__init__(*arguments)
        self.cases = set()

    def startTest(self, test):
        super().startTest(test)
        self.cases.add(test.id())

    def bad(self):
        """Names of the cases that failed."""
        return {getattr(test, "test_case", test).id() for test, _ in self.failures + self.errors}
