"""The live progress bar of the example hosts, on a terminal of the test's own."""

import os
import pty
import re
import subprocess
import unittest

from examples_support import COMMANDS, HostCase, bmp, environment, noise

FRAME = re.compile(r"restoring \[(#*)(-*)\] +(\d+) %")


def read_all(descriptor):
    """What was written to a terminal until the last writer left."""
    text = b""
    while True:
        try:
            block = os.read(descriptor, 65536)
        except OSError:  # how Linux tells the end of a terminal
            return text
        if not block:
            return text
        text += block


class LiveBar(HostCase):
    def test_bar_grows_to_its_end_in_one_line(self):
        self.write("in.bmp", bmp(300, 200, noise(300 * 200 * 3)))
        for host, command in COMMANDS.items():
            with self.subTest(host=host):
                ours, theirs = pty.openpty()
                process = subprocess.Popen(
                    [*command, "in.bmp", "out.bmp"],
                    stdout=subprocess.DEVNULL,
                    stderr=theirs,
                    cwd=self.folder,
                    env=environment(host),
                )
                os.close(theirs)
                text = read_all(ours).decode()
                os.close(ours)
                self.assertEqual(process.wait(timeout=60), 0)
                self.assertTrue(text.startswith("\r"), text[:40])
                self.assertTrue(text.endswith("\r\n"), text[-40:])
                percents = []
                for frame in text[:-2].split("\r")[1:]:
                    found = FRAME.fullmatch(frame)
                    self.assertIsNotNone(found, frame)
                    done, left, percent = len(found[1]), len(found[2]), int(found[3])
                    self.assertEqual((done, done + left), (40 * percent // 100, 40))
                    self.assertLess(len(frame), 80)
                    percents.append(percent)
                self.assertEqual(percents, sorted(set(percents)))
                self.assertEqual(percents[-1], 100)
                self.assertGreater(len(percents), 50)


if __name__ == "__main__":
    unittest.main()
