"""The commands of examples/README.md against an installed tree: those of sh blocks succeed, those
of console blocks print what stands there."""

import os
import pty
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from examples_support import ROOT

BUILD = os.environ["ORV_BUILD"]
LIBRARY_FOLDER = os.environ["ORV_LIBDIR"]
INSTALLABLE = os.environ["ORV_INSTALLABLE"] == "1"
BLOCK = re.compile(r"^```(sh|console)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def on_terminal(command, **options):
    """What a command leaves on a terminal: of lines that were drawn over, the last."""
    ours, theirs = pty.openpty()
    process = subprocess.Popen(["bash", "-c", command], stdout=theirs, stderr=theirs, stdin=subprocess.DEVNULL, **options)
    os.close(theirs)
    text = b""
    while True:
        try:
            block = os.read(ours, 65536)
        except OSError:  # how Linux tells the end of a terminal
            break
        if not block:
            break
        text += block
    os.close(ours)
    code = process.wait()
    erased = text.decode().replace("\x1b[K", "")
    lines = erased.replace("\r\n", "\n").split("\n")
    return code, "\n".join(line.split("\r")[-1] for line in lines)


@unittest.skipUnless(INSTALLABLE, "this build has sanitizers, or no tool or install rules")
@unittest.skipUnless(shutil.which("pkg-config"), "pkg-config is not installed")
class Readme(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        tree = Path(holder.name) / "tree"
        subprocess.run(["cmake", "--install", BUILD, "--prefix", tree], check=True, stdout=subprocess.DEVNULL)
        self.folder = Path(holder.name) / "examples"
        shutil.copytree(ROOT / "examples", self.folder)
        libraries = tree / LIBRARY_FOLDER
        self.environment = {
            **os.environ,
            "PATH": f"{tree / 'bin'}:{os.environ['PATH']}",
            "LD_LIBRARY_PATH": str(libraries),
            "PKG_CONFIG_PATH": str(libraries / "pkgconfig"),
            "CMAKE_PREFIX_PATH": str(tree),
            # The default generator wants make, which the packages of the tests do not bring.
            "CMAKE_GENERATOR": os.environ["ORV_GENERATOR"],
        }
        del self.environment["ORV_LIBRARY"]
        told = self.shell("orv --version")[1]
        if "libvips" not in told:
            self.skipTest("this build of orv reads no PNG: " + told)

    def shell(self, command):
        return on_terminal(command, cwd=self.folder, env=self.environment)

    def test_commands_do_what_the_page_says(self):
        text = (ROOT / "examples/README.md").read_text(encoding="utf-8")
        blocks = BLOCK.findall(text)
        self.assertGreaterEqual(len(blocks), 6)
        for kind, body in blocks:
            commands = re.split(r"^\$ ", body, flags=re.MULTILINE)[1:] if kind == "console" else body.splitlines()
            for command in commands:
                line, _, expected = command.partition("\n")
                with self.subTest(line):
                    code, printed = self.shell(line)
                    if kind == "console":
                        self.assertEqual(printed, expected.rstrip("\n") + "\n" if expected.strip() else "")
                    else:
                        self.assertEqual(code, 0, printed)

    def test_standing_alone_gives_the_programs_of_the_project(self):
        code, printed = self.shell("cmake -B build && cmake --build build")
        self.assertEqual(code, 0, printed)
        for name in ("restore_bmp_c", "restore_bmp_cpp"):
            self.assertEqual(self.shell(f"build/{name}"), (2, "usage: restore_bmp IN.bmp OUT.bmp\n"))


if __name__ == "__main__":
    unittest.main()
