"""Where pictures come from and go to: files, folders, patterns, standard input and output."""

import os
import pty
import subprocess
import unittest

from cli_support import KEEP, NEEDS_VIPS, TOOL, FolderCase, read_netpbm, read_png, run, samples, write_netpbm, write_png


class Inputs(FolderCase):
    def picture(self, name, seed=1):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        write_netpbm(path, 8, 6, samples(8, 6, 3, seed=seed))
        return path

    def done(self, *arguments):
        self.check((0, "", ""), "restore", *arguments, "-q", *KEEP)

    def tree(self):
        return sorted(str(path.relative_to(self.folder)) for path in self.folder.rglob("*") if path.is_file())

    def through(self, arguments, data):
        """Exit code, standard output and standard error of a run with bytes on standard input."""
        ran = subprocess.run([TOOL, "restore", *arguments, *KEEP], input=data, cwd=self.folder, capture_output=True)
        return ran.returncode, ran.stdout, ran.stderr


class Names(Inputs):
    def test_any_name_will_do(self):
        for name in ("two words.ppm", "grün-日本.ppm", "a\nb.ppm", "*.ppm", "a[1].ppm", "x:y.ppm", "'q\".ppm", "%s.ppm", "a..ppm"):
            with self.subTest(name=name):
                before = self.picture(name).read_bytes()
                self.done(name, "-o", "out/" + name)
                self.assertEqual((self.folder / "out" / name).read_bytes(), before)

    def test_a_leading_dash_needs_a_folder_or_the_end_of_options(self):
        before = self.picture("-a.ppm").read_bytes()
        self.done("./-a.ppm", "-o", "b.ppm")
        code, out, error = run("restore", "-q", *KEEP, "-o", "c.ppm", "--", "-a.ppm", cwd=self.folder)
        self.assertEqual((code, out, error), (0, "", ""))
        for name in ("b.ppm", "c.ppm"):
            self.assertEqual((self.folder / name).read_bytes(), before)

    @NEEDS_VIPS
    def test_a_name_of_another_format_reads_fine(self):
        values = samples(5, 4, 3)
        write_png(self.folder / "really.jpg", 5, 4, values, 3)
        self.done("really.jpg", "-o", "out.ppm")
        self.assertEqual(read_netpbm(self.folder / "out.ppm")[4], values)


class Folders(Inputs):
    def test_a_folder_gives_its_pictures(self):
        for name in ("in/p10.ppm", "in/p2.ppm", "in/sub/q.ppm", "in/.hidden.ppm"):
            self.picture(name)
        (self.folder / "in/notes.txt").write_text("no picture")
        self.done("in", "-o", "out")
        self.assertEqual([name for name in self.tree() if name.startswith("out")], ["out/p10.ppm", "out/p2.ppm"])

    def test_several_pictures_go_into_a_folder(self):
        first, second = self.picture("a.ppm", 1), self.picture("b.ppm", 2)
        self.done("a.ppm", "b.ppm", "-o", "new/deep")
        self.assertEqual((self.folder / "new/deep/a.ppm").read_bytes(), first.read_bytes())
        self.assertEqual((self.folder / "new/deep/b.ppm").read_bytes(), second.read_bytes())

    def test_a_slash_makes_a_folder_for_one(self):
        self.picture("a.ppm")
        self.done("a.ppm", "-o", "new/")
        self.assertEqual(self.tree(), ["a.ppm", "new/a.ppm"])

    def test_one_file_for_several_is_refused_before_any_work(self):
        self.picture("a.ppm")
        self.picture("b.ppm")
        code, out, error = run("restore", "a.ppm", "b.ppm", "-o", "out.ppm", cwd=self.folder)
        self.assertEqual(out, "")
        self.assertNotEqual(code, 0)
        line = "orv: out.ppm: names one file, and 2 pictures are to be written; name a folder (out.ppm/ for one of this name)\n"
        self.assertEqual(error, line)
        self.assertEqual(self.tree(), ["a.ppm", "b.ppm"])

    def test_two_pictures_of_one_name_are_refused_before_any_work(self):
        self.picture("a/x.ppm")
        self.picture("b/x.ppm")
        code, out, error = run("restore", "a/x.ppm", "b/x.ppm", "-o", "out", cwd=self.folder)
        self.assertEqual(out, "")
        self.assertNotEqual(code, 0)
        self.assertRegex(error, r"^orv: a/x\.ppm and b/x\.ppm would both become out/x\.ppm; ")
        self.assertEqual(self.tree(), ["a/x.ppm", "b/x.ppm"])

    def test_a_second_run_leaves_results_out(self):
        self.picture("a.ppm")
        self.done("a.ppm")
        self.done("a.ppm", "a.restored.ppm", "-o", "out")
        self.assertEqual(self.tree(), ["a.ppm", "a.restored.ppm", "out/a.ppm"])

    def test_patterns_that_the_shell_left_alone(self):
        for name in ("a1.ppm", "a2.ppm", "b.ppm", "sub/a3.ppm"):
            self.picture(name)
        self.done("a*.ppm", "-o", "out")
        self.done("**/a3.ppm", "-o", "deep")
        self.assertEqual([n for n in self.tree() if n.startswith(("out", "deep"))], ["deep/sub/a3.ppm", "out/a1.ppm", "out/a2.ppm"])
        code, out, error = run("restore", "z*.ppm", cwd=self.folder)
        self.assertEqual((code, out, error), (3, "", "orv: z*.ppm: no file matches this pattern\n"))


class Streams(Inputs):
    def test_a_picture_goes_through(self):
        data = self.picture("in.ppm").read_bytes()
        self.assertEqual(self.through(["-", "-o", "-", "--format", "ppm", "-q"], data), (0, data, b""))

    def test_the_format_of_the_stream_stays_without_a_word(self):
        data = self.picture("in.ppm").read_bytes()
        code, out, error = self.through(["-", "-o", "-", "-q"], data)
        self.assertEqual((code, error), (0, b""))
        self.assertIn(out[:2], (b"P6", b"\x89P"))

    def test_standard_output_holds_the_picture_alone(self):
        data = self.picture("in.ppm").read_bytes()
        code, out, _ = self.through(["in.ppm", "-o", "-", "--format", "ppm"], b"")
        self.assertEqual((code, out), (0, data))

    @NEEDS_VIPS
    def test_every_format_goes_both_ways(self):
        values = samples(16, 12, 3)
        write_png(self.folder / "in.png", 16, 12, values, 3)
        for word in ("png", "tiff", "bmp", "ppm", "webp", "jpeg", "jpg"):
            with self.subTest(word=word):
                code, middle, error = self.through(["in.png", "-o", "-", "--format", word, "-q", "--quality", "100"], b"")
                self.assertEqual((code, error), (0, b""))
                code, back, error = self.through(["-", "-o", "-", "--format", "png", "-q"], middle)
                self.assertEqual((code, error), (0, b""))
                (self.folder / "back.png").write_bytes(back)
                self.done("in.png", "-o", f"file.{word}", "--quality", "100")
                self.assertEqual((self.folder / f"file.{word}").read_bytes(), middle)
                if word not in ("jpeg", "jpg"):
                    self.assertEqual(read_png(self.folder / "back.png")[4], values)

    def test_an_empty_stream_is_told(self):
        self.assertEqual(self.through(["-", "-o", "out.ppm"], b""), (3, b"", b"orv: standard input: is empty\n"))
        self.assertEqual(self.tree(), [])

    def test_a_damaged_stream_is_told(self):
        data = self.picture("in.ppm").read_bytes()[:-1]
        self.assertEqual(self.through(["-", "-o", "out.ppm"], data), (3, b"", b"orv: standard input: is cut short\n"))

    def test_a_terminal_is_no_input_and_no_output(self):
        self.picture("in.ppm")
        keeper, terminal = pty.openpty()
        self.addCleanup(os.close, keeper)
        self.addCleanup(os.close, terminal)
        ran = subprocess.run([TOOL, "restore", "-", "-o", "out.ppm"], stdin=terminal, cwd=self.folder, capture_output=True, timeout=60)
        self.assertEqual(ran.returncode, 3)
        self.assertRegex(ran.stderr, rb"^orv: standard input: is a terminal; ")
        ran = subprocess.run(
            [TOOL, "restore", "in.ppm", "-o", "-", "--format", "ppm", "-q"], stdout=terminal, stderr=subprocess.PIPE, cwd=self.folder, timeout=60
        )
        self.assertEqual(ran.returncode, 4)
        self.assertRegex(ran.stderr, rb"^orv: standard output: is a terminal, ")

    def test_standard_input_stands_alone(self):
        self.picture("in.ppm")
        code, out, error = self.through(["-", "in.ppm", "-o", "out"], b"")
        self.assertEqual(out, b"")
        self.assertNotEqual(code, 0)
        self.assertRegex(error, rb"^orv: -: standard input holds one picture and stands alone")

    def test_a_pipe_with_a_path_is_read(self):
        data = self.picture("in.ppm").read_bytes()
        reader, writer = os.pipe()
        os.write(writer, data)
        os.close(writer)
        ran = subprocess.run([TOOL, "restore", f"/dev/fd/{reader}", "-o", "out.ppm", "-q", *KEEP], cwd=self.folder, pass_fds=[reader], capture_output=True)
        os.close(reader)
        self.assertEqual((ran.returncode, ran.stderr), (0, b""))
        self.assertEqual((self.folder / "out.ppm").read_bytes(), data)

    def test_a_full_disk_is_told(self):
        self.picture("in.ppm")
        with open("/dev/full", "wb") as full:
            ran = subprocess.run([TOOL, "restore", "in.ppm", "-o", "-", "--format", "ppm", "-q"], stdout=full, stderr=subprocess.PIPE, cwd=self.folder)
        self.assertEqual(ran.returncode, 4)
        self.assertEqual(ran.stderr, b"orv: standard output: can't be written: No space left on device\n")


class FullDisk(Inputs):
    """A limit on the size of files stands for a disk without room."""

    def limited(self, *arguments):
        import resource
        import signal

        def limit():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (4096, 4096))

        ran = subprocess.run([TOOL, *arguments], cwd=self.folder, capture_output=True, preexec_fn=limit)
        return ran.returncode, ran.stdout, ran.stderr

    def test_nothing_half_is_left(self):
        write_netpbm(self.folder / "in.ppm", 100, 100, samples(100, 100, 3))
        for name in ("out.ppm", "new/out.bmp"):
            code, out, error = self.limited("restore", "in.ppm", "-o", name, "-q", *KEEP)
            self.assertEqual((code, out), (4, b""))
            self.assertEqual(error.decode(), f"orv: {name}: can't be written: File too large\n")
            self.assertEqual(self.names(), ["in.ppm"])

    def test_what_was_there_stays(self):
        write_netpbm(self.folder / "in.ppm", 100, 100, samples(100, 100, 3))
        (self.folder / "out.ppm").write_text("mine")
        code, _, _ = self.limited("restore", "in.ppm", "-o", "out.ppm", "-f", "-q", *KEEP)
        self.assertEqual(code, 4)
        self.assertEqual((self.folder / "out.ppm").read_text(), "mine")


if __name__ == "__main__":
    unittest.main()
