"""Files that can't be read or written: one line, exit code 3 or 4, and nothing left behind."""

import fcntl
import os
import pty
import re
import signal
import struct
import subprocess
import termios
import time
import unittest

from cli_support import KEEP, NEEDS_VIPS, TOOL, FolderCase, run, samples, write_netpbm, write_png


class Files(FolderCase):
    def setUp(self):
        super().setUp()
        write_netpbm(self.folder / "in.ppm", 8, 8, samples(8, 8, 3))

    def refused(self, line, *arguments, code=3):
        before = self.names()
        self.check((code, "", f"orv: {line}\n"), "restore", *arguments)
        self.assertEqual(self.names(), before)

    def test_missing_input(self):
        self.refused("none.png: no such file", "none.png", "out.ppm")

    def test_folder_as_input(self):
        (self.folder / "sub").mkdir()
        code, out, error = run("restore", "sub", "out.ppm", cwd=self.folder)
        self.assertEqual((code, out), (3, ""))
        self.assertRegex(error, r"^orv: sub: holds no picture \(.*\.bmp \.ppm \.pgm \.pnm\)\n$")

    def test_device_as_input(self):
        self.refused("/dev/zero: is no regular file", "/dev/zero", "out.ppm")

    def test_empty_input(self):
        (self.folder / "void.png").write_bytes(b"")
        self.refused("void.png: is empty", "void.png", "out.ppm")

    def test_text_as_input(self):
        (self.folder / "text.png").write_text("this is no picture")
        code, out, error = run("restore", "text.png", "out.ppm", cwd=self.folder)
        self.assertEqual((code, out), (3, ""))
        self.assertRegex(error, r"^orv: text\.png: is no picture that orv reads \(.*BMP, PPM, PGM\)\n$")

    def test_unknown_ending(self):
        code, out, error = run("restore", "in.ppm", "out.gif", cwd=self.folder)
        self.assertEqual((code, out), (4, ""))
        self.assertRegex(error, r"^orv: out\.gif: the ending names no format that orv writes \(.*\.bmp \.ppm \.pgm \.pnm\)\n$")

    def test_existing_output(self):
        (self.folder / "out.ppm").write_text("mine")
        self.refused(
            "out.ppm: exists already, and the second word is the file to write; "
            "-o FOLDER reads both pictures, --force overwrites it",
            *("in.ppm", "out.ppm"),
            code=4,
        )
        self.refused("out.ppm: exists already; --force overwrites it", "in.ppm", "-o", "out.ppm", code=4)
        self.assertEqual((self.folder / "out.ppm").read_text(), "mine")

    def test_input_as_output(self):
        self.refused("in.ppm: exists already; --force overwrites it", "in.ppm", "-o", "in.ppm", code=4)
        before = (self.folder / "in.ppm").read_bytes()

        self.check((0, "", ""), "restore", "in.ppm", "in.ppm", "--force", "-q", *KEEP)

        self.assertEqual((self.folder / "in.ppm").read_bytes(), before)
        self.assertEqual(self.names(), ["in.ppm"])

    def test_folder_as_output(self):
        (self.folder / "out.ppm").mkdir()
        self.check((0, "", ""), "restore", "in.ppm", "out.ppm", "-q")
        self.assertEqual([entry.name for entry in (self.folder / "out.ppm").iterdir()], ["in.ppm"])

    def test_output_beside_the_input(self):
        self.check((0, "", ""), "restore", "in.ppm", "-q")
        self.check((0, "", ""), "denoise", "in.ppm", "-q")
        self.assertEqual(self.names(), ["in.denoise.ppm", "in.ppm", "in.restored.ppm"])
        self.refused("in.restored.ppm: exists already; --force overwrites it", "in.ppm", code=4)

    def test_three_words_are_three_inputs(self):
        code, out, error = run("restore", "in.ppm", "none.ppm", "more.ppm", cwd=self.folder)
        self.assertEqual(code, 1)
        self.assertEqual(error, "orv: none.ppm: no such file\norv: more.ppm: no such file\norv: 2 of 3 pictures failed\n")
        self.assertRegex(out, r"^(in\.ppm: .*; as: .*\n)?in\.restored\.ppm: 8 x 8 pixels, .*\n$")
        self.assertEqual(self.names(), ["in.ppm", "in.restored.ppm"])

    def test_missing_folders_are_made(self):
        self.check((0, "", ""), "restore", "in.ppm", "sub/deep/out.ppm", "-q", *KEEP)
        self.assertEqual((self.folder / "sub/deep/out.ppm").read_bytes(), (self.folder / "in.ppm").read_bytes())
        self.assertEqual(os.listdir(self.folder / "sub/deep"), ["out.ppm"])

    def test_folders_made_for_a_result_that_fails_go_again(self):
        write_netpbm(self.folder / "thin.ppm", 1, 8, samples(1, 8, 3))
        (self.folder / "sub").mkdir()
        code, _, _ = run("restore", "thin.ppm", "sub/a/b/out.ppm", "--scheme", "ADI", cwd=self.folder)
        self.assertNotEqual(code, 0)
        self.assertEqual(os.listdir(self.folder / "sub"), [])

    def test_folder_that_cannot_be_made(self):
        self.refused("in.ppm/sub/out.ppm: the folder in.ppm/sub can't be made: Not a directory", "in.ppm", "in.ppm/sub/out.ppm", code=4)

    @unittest.skipIf(os.geteuid() == 0, "root may write anywhere")
    def test_read_only_folder(self):
        sub = self.folder / "sub"
        sub.mkdir(mode=0o555)
        self.refused("sub/out.ppm: can't be written: Permission denied", "in.ppm", "sub/out.ppm", code=4)

    def test_kernel_folder(self):
        code, out, error = run("restore", "in.ppm", "/proc/out.ppm", cwd=self.folder)
        self.assertEqual((code, out), (4, ""))
        self.assertTrue(error.startswith("orv: /proc/out.ppm: can't be written: "), error)

    def test_link_as_output_keeps_the_link(self):
        (self.folder / "real.ppm").write_text("old")
        (self.folder / "link.ppm").symlink_to("real.ppm")

        self.check((0, "", ""), "restore", "in.ppm", "link.ppm", "-f", "-q", *KEEP)

        self.assertTrue((self.folder / "link.ppm").is_symlink())
        self.assertEqual((self.folder / "real.ppm").read_bytes(), (self.folder / "in.ppm").read_bytes())

    def test_mode_follows_the_mask_of_the_user(self):
        self.check((0, "", ""), "restore", "in.ppm", "out.ppm", "-q")
        mask = os.umask(0)
        os.umask(mask)
        self.assertEqual((self.folder / "out.ppm").stat().st_mode & 0o777, 0o666 & ~mask)

    def test_control_characters_stay_off_the_terminal(self):
        self.refused("a?b.ppm: no such file", "a\nb.ppm", "out.ppm")

    def test_method_refusal_leaves_nothing(self):
        write_netpbm(self.folder / "thin.ppm", 1, 8, samples(1, 8, 3))
        self.check(
            (5, "", "orv: restore: the scheme ADI needs at least 2 x 2 pixels, this picture has 1 x 8\n"),
            *("restore", "thin.ppm", "out.ppm", "--scheme", "ADI"),
        )
        self.assertEqual(self.names(), ["in.ppm", "thin.ppm"])

    @NEEDS_VIPS
    def test_alpha_where_the_format_has_none(self):
        write_png(self.folder / "a.png", 4, 4, samples(4, 4, 4), 4)
        hint = "can't hold the transparency of this picture; take PNG, TIFF, WebP or BMP, or --alpha drop"
        self.refused(f"out.jpg: JPEG {hint}", "a.png", "out.jpg", code=4)
        self.refused(f"out.ppm: PPM {hint}", "a.png", "out.ppm", code=4)

    def test_colour_in_pgm(self):
        self.refused("out.pgm: PGM holds grey alone and this picture has colour; take .ppm", "in.ppm", "out.pgm", code=4)


class Runs(FolderCase):
    def start(self, *more):
        write_netpbm(self.folder / "in.ppm", 256, 256, samples(256, 256, 3))
        arguments = [TOOL, "restore", "in.ppm", "out.ppm", "--steps", "1000", "--scheme", "AMOS", *more]
        return subprocess.Popen(arguments, cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def test_signals_leave_nothing(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with self.subTest(number=number):
                process = self.start()
                deadline = time.monotonic() + 60
                while len(self.names()) < 2 and time.monotonic() < deadline:
                    time.sleep(0.01)
                self.assertEqual(len(self.names()), 2, "no file in the making")

                process.send_signal(number)
                out, error = process.communicate(timeout=60)

                self.assertEqual(process.returncode, -number)
                self.assertEqual(out, b"")
                told = b"orv: cancelled, nothing written\n" if number == signal.SIGINT else b""
                self.assertEqual(error, told)
                self.assertEqual(self.names(), ["in.ppm"])

    def test_progress_lines_rise_and_end_at_100(self):
        write_netpbm(self.folder / "in.ppm", 256, 256, samples(256, 256, 3))
        _, out, error = run("restore", "in.ppm", "out.ppm", "--steps", "200", "--scheme", "AMOS", cwd=self.folder)

        lines = error.splitlines()
        percents = [int(line.split()[1]) for line in lines]
        self.assertEqual(percents, sorted(set(percents)))
        self.assertLessEqual(len(lines), 11)
        if lines:  # a quick machine has nothing to tell
            self.assertEqual(percents[-1], 100)
            self.assertNotIn(100, percents[:-1])
        self.assertRegex(out, r"(^|\n)out\.ppm: 256 x 256 pixels, 8-bit colour, 197 KB, in [\d.]+ s\n$")

    def on_terminal(self, columns, *more, interrupt=False):
        """Exit code and all that a terminal was sent."""
        keeper, terminal = pty.openpty()
        fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        write_netpbm(self.folder / "in.ppm", 256, 256, samples(256, 256, 3))
        arguments = [TOOL, "restore", "in.ppm", "out.ppm", "--scheme", "AMOS", *more]
        environment = {**os.environ, "TERM": "xterm"}
        with subprocess.Popen(arguments, cwd=self.folder, env=environment, stdout=subprocess.PIPE, stderr=terminal) as process:
            os.close(terminal)
            shown = b""
            while True:
                try:
                    block = os.read(keeper, 4096)
                except OSError:  # the other end is closed
                    break
                if not block:
                    break
                shown += block
                if interrupt and b" %" in shown:
                    process.send_signal(signal.SIGINT)
                    interrupt = False
            process.communicate(timeout=60)
        os.close(keeper)
        return process.returncode, shown

    def test_a_terminal_shows_one_line_that_only_rises(self):
        code, shown = self.on_terminal(80, "--steps", "200")

        self.assertEqual(code, 0)
        self.assertLess(shown.index(b"restore: reading in.ppm ..."), shown.index(b"restore: writing out.ppm ..."))
        percents = [int(found) for found in re.findall(rb"restore +(\d+) %", shown)]
        self.assertEqual(percents, sorted(percents))
        if percents:  # a quick machine has nothing to tell
            self.assertEqual((percents[-1], percents.count(100)), (100, 1))
            self.assertEqual(shown.count(b"\n"), 1)

    def test_a_narrow_terminal_is_never_overfilled(self):
        for columns in (6, 20, 40):
            with self.subTest(columns=columns):
                code, shown = self.on_terminal(columns, "--steps", "500", "-f")
                self.assertEqual(code, 0)
                lines = re.split(rb"[\r\n]+(?:\x1b\[K)?", shown)
                self.assertLess(max(map(len, lines)), columns)
                if b"100 %" in shown:  # a quick machine has no bar
                    self.assertRegex(lines[-2], rb"^(restore )?100 %")

    def test_an_interruption_ends_the_line_and_says_so(self):
        code, shown = self.on_terminal(80, "--steps", "1000", interrupt=True)

        self.assertEqual(code, -signal.SIGINT)
        self.assertRegex(shown, rb" %[^\n]*\r\norv: cancelled, nothing written\r\n$")
        self.assertEqual(self.names(), ["in.ppm"])

    def test_quick_runs_and_quiet_runs_are_silent(self):
        write_netpbm(self.folder / "in.ppm", 8, 8, samples(8, 8, 3))
        code, out, error = run("restore", "in.ppm", "a.ppm", cwd=self.folder)
        self.assertEqual((code, error), (0, ""))
        self.assertRegex(out, r"(^|\n)a\.ppm: 8 x 8 pixels, 8-bit colour, 203 bytes, in [\d.]+ s\n$")
        self.check((0, "", ""), "restore", "in.ppm", "b.ppm", "--quiet")


if __name__ == "__main__":
    unittest.main()
