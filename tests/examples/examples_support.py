"""What the tests of the example hosts share: the hosts, BMPs made by hand, and the result that
the C functions give for the same pixels."""

import os
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts"))
from png_io import read_png  # noqa: E402

LIBRARY = os.environ["ORV_LIBRARY"]
PRELOAD = os.environ.get("ORV_PRELOAD", "")
PYTHON_RUNS = PRELOAD != "none"
NEEDS_PYTHON_HOST = unittest.skipUnless(PYTHON_RUNS, "Python cannot load a library with these sanitizers")

COMMANDS = {
    "c": [os.environ["ORV_EXAMPLE_C"]],
    "cpp": [os.environ["ORV_EXAMPLE_CPP"]],
    "python": [sys.executable, str(ROOT / "examples/python/restore_bmp.py")],
}
if not PYTHON_RUNS:
    del COMMANDS["python"]

PROGRESS = "".join(f"restoring: {percent} %\n" for percent in (25, 50, 75, 100))


def environment(host):
    """Sanitizers go into Python by the loader; what Python itself never frees is no leak."""
    variables = dict(os.environ)
    if PRELOAD and host == "python":
        variables.update(LD_PRELOAD=PRELOAD, ASAN_OPTIONS="detect_leaks=0")
    return variables


def run(host, *arguments, cwd=None):
    """Runs a host and gives exit code, standard output and standard error."""
    done = subprocess.run(
        [*COMMANDS[host], *map(str, arguments)], capture_output=True, cwd=cwd, env=environment(host), timeout=300
    )
    return done.returncode, done.stdout.decode(errors="replace"), done.stderr.decode(errors="replace")


def bmp(width, height, pixels, fields=(), gap=b"", tail=b"", info_size=40):
    """A 24-bit BMP of unpadded rows. A height below 0 marks the first row as the top one. Fields
    are (offset, struct format, value) and overwrite what is right."""
    row = width * 3
    padding = bytes(-row % 4)
    rows = b"".join(pixels[y * row : (y + 1) * row] + padding for y in range(abs(height)))
    offset = 14 + info_size + len(gap)
    head = struct.pack("<2sIII", b"BM", offset + len(rows) + len(tail), 0, offset)
    head += struct.pack("<IiiHHIIiiII", info_size, width, height, 1, 24, 0, len(rows), 2835, 1417, 0, 0)
    data = bytearray(head + bytes(info_size - 40) + gap + rows + tail)
    for at, form, value in fields:
        struct.pack_into("<" + form, data, at, value)
    return bytes(data)


def photo(name):
    """Width, height and pixels of a sample photo."""
    picture = read_png(str(ROOT / f"examples/photos/{name}.png"))
    return picture.width, picture.height, picture.samples


def noise(count, seed=1):
    """Pseudo-random bytes."""
    state, values = seed, bytearray()
    for _ in range(count):
        state = (state * 1103515245 + 12345) & 0x7FFFFFFF
        values.append(state >> 12 & 255)
    return bytes(values)


def restored(width, height, pixels):
    """The pixels that the library gives, called by a program of its own."""
    script = Path(__file__).with_name("call_library.py")
    done = subprocess.run(
        [sys.executable, str(script), LIBRARY, str(width), str(height)],
        input=pixels,
        capture_output=True,
        env=environment("python"),
        check=True,
    )
    assert len(done.stdout) == len(pixels)
    return done.stdout


def told(name, before, after):
    """The line that a host prints about its result."""
    differences = [abs(a - b) for a, b in zip(before, after)]
    changed = len(differences) - differences.count(0)
    return (
        f"{name}: {changed} of {len(before)} samples changed, "
        f"mean difference {sum(differences) / len(before):.2f} grey levels, largest {max(differences)}\n"
    )


class HostCase(unittest.TestCase):
    """A case with a folder of its own."""

    maxDiff = None

    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = Path(holder.name)

    def write(self, name, data):
        (self.folder / name).write_bytes(data)

    def read(self, name):
        return (self.folder / name).read_bytes()

    def names(self):
        """The files of the folder, hidden ones too."""
        return sorted(entry.name for entry in self.folder.iterdir())

    def refused(self, message, *arguments, progress=False):
        """Every host prints the message, ends with 1 and leaves all files as they were."""
        before = {name: self.read(name) for name in self.names() if (self.folder / name).is_file()}
        names = self.names()
        for host in COMMANDS:
            with self.subTest(host=host):
                code, out, error = run(host, *arguments, cwd=self.folder)
                self.assertEqual(error, (PROGRESS if progress else "") + f"restore_bmp: {message}\n")
                self.assertEqual(code, 1)
                if not progress:
                    self.assertEqual(out, "")
                self.assertEqual(self.names(), names)
                for name, data in before.items():
                    self.assertEqual(self.read(name), data, name)
