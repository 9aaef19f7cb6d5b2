"""What the tests of batches share: pictures by the dozen, and batches that are watched."""

import os
import re
import subprocess
import time
from pathlib import Path

from cli_support import TOOL, FolderCase, run, samples, write_netpbm, write_png

# Work that takes no time on a tiny picture and changes every sample of it.
QUICK = ["blur", "--sigma", "1"]
# A picture of this size then takes many seconds, and a tiny one none.
SLOW = ["denoise", "--steps", "100", "--tau", "5", "--sigma", "2"]
SLOW_SIDE = 1200


def picture(path, seed=1, width=9, height=7):
    """A small picture, in the format that its ending names."""
    path.parent.mkdir(parents=True, exist_ok=True)
    write = write_png if path.suffix == ".png" else write_netpbm
    write(path, width, height, samples(width, height, 3, seed=seed), 3)


def slow_picture(path):
    path.write_bytes(b"P6\n%d %d\n255\n" % (SLOW_SIDE, SLOW_SIDE) + bytes(range(256)) * (SLOW_SIDE * SLOW_SIDE * 3 // 256))


def workers_of(process):
    """The processes that a process has started, with their words."""
    found = {}
    for entry in Path("/proc").iterdir():
        try:
            if entry.name.isdigit() and int((entry / "stat").read_text().rsplit(")", 1)[1].split()[1]) == process:
                found[int(entry.name)] = (entry / "cmdline").read_bytes().split(b"\0")
        except OSError:
            continue
    return found


def is_running(process):
    """Whether a process is there and no mere entry that nobody has asked for."""
    try:
        return Path(f"/proc/{process}/stat").read_text().rsplit(")", 1)[1].split()[0] not in "ZX"
    except OSError:
        return False


def wait_until(condition, seconds=20.0):
    """Waits for something to become true, and gives it."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        value = condition()
        if value:
            return value
        time.sleep(0.01)
    raise AssertionError("it did not happen in time")


class BatchCase(FolderCase):
    """A case with pictures in a folder."""

    def pictures(self, count, ending=".ppm", folder="in"):
        for i in range(count):
            picture(self.folder / folder / f"{i + 1}{ending}", seed=i + 1)

    def batch(self, *arguments):
        return run("batch", *arguments, cwd=self.folder)

    def start(self, *arguments):
        """Starts a batch and goes on."""
        process = subprocess.Popen(
            [TOOL, "batch", *map(str, arguments)], cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE
        )
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.stderr.close)
        return process

    def end(self, process):
        out, err = process.communicate(timeout=120)
        return process.returncode, out.decode(), err.decode()

    def tree(self, folder="out"):
        """All files below a folder but for recipes, with their bytes."""
        top = self.folder / folder
        return {
            os.fsencode(str(path.relative_to(top))): path.read_bytes()
            for path in top.rglob("*")
            if path.is_file() and ".orv" not in path.relative_to(top).parts
        }

    def assertTidy(self, folder="out"):
        """Neither unfinished files nor the folder of the workers is left."""
        left = [path for path in (self.folder / folder).rglob("*") if path.name.startswith(".orv-") or path.name == ".work"]
        self.assertEqual(left, [])

    def assertTimed(self, expected, told):
        """Exit code and texts; T stands for a time."""
        shown = tuple(re.sub(r"\b\d+(\.\d+)? s\b", "T", text) if isinstance(text, str) else text for text in told)
        self.assertEqual(shown, expected)


def damage(path, kind):
    """Spoils a picture file."""
    data = path.read_bytes()
    path.write_bytes({"truncated": data[: len(data) // 2], "empty": b"", "wrong": b"no picture at all"}[kind])
