"""Batches as a user runs them: folders, refusals, resuming, progress, reports."""

import json
import os
import pty
import re
import select
import subprocess
import unittest

from batch_support import QUICK, SLOW, BatchCase, damage, picture, slow_picture, wait_until, workers_of
from cli_support import HAVE_VIPS, NEEDS_VIPS, TOOL, run


class Folders(BatchCase):
    def test_a_folder_goes_into_another_as_single_runs_would_do_it(self):
        self.pictures(3)
        self.assertTimed((0, "batch blur: 3 done, in T; results in out\n", ""), self.batch(*QUICK, "in", "-o", "out"))
        run("blur", "--sigma", "1", "in/1.ppm", "in/2.ppm", "in/3.ppm", "-o", "single/", cwd=self.folder)
        self.assertEqual(self.tree(), self.tree("single"))
        self.assertNotEqual(self.tree(), self.tree("in"))
        self.assertTidy()

    def test_folders_keep_their_tree(self):
        picture(self.folder / "in/a/b/x.ppm")
        picture(self.folder / "in/x.ppm", seed=2)
        code, _, err = self.batch(*QUICK, "in", "-o", "out", "--recursive")
        self.assertEqual((code, err), (0, ""))
        self.assertEqual(sorted(self.tree()), [b"a/b/x.ppm", b"x.ppm"])
        recipes = sorted(str(path.relative_to(self.folder / "out/.orv")) for path in (self.folder / "out/.orv").rglob("*.json"))
        self.assertEqual(recipes, ["a/b/x.ppm.json", "x.ppm.json"])

    def test_patterns_and_names(self):
        for name in ("a1.ppm", "a2.ppm", "b1.ppm"):
            picture(self.folder / "in" / name)
        code, _, err = self.batch(*QUICK, "in", "-o", "out", "--include", "b*,*2.ppm", "--name", "{stem}-{verb}{ext}")
        self.assertEqual((code, err), (0, ""))
        self.assertEqual(sorted(self.tree()), [b"a2-blur.ppm", b"b1-blur.ppm"])

    def test_a_format_renames(self):
        self.pictures(1)
        self.assertEqual(self.batch(*QUICK, "in", "-o", "out", "--format", "bmp")[0], 0)
        self.assertEqual(list(self.tree()), [b"1.bmp"])
        self.assertEqual(self.tree()[b"1.bmp"][:2], b"BM")

    def test_names_of_all_kinds(self):
        names = ["two words.ppm", "-o.ppm", "line\nbreak.ppm", "été 写真.ppm", ",", "a[1].ppm", "'\"$x`.ppm"]
        for i, name in enumerate(names):
            picture(self.folder / "in" / name, seed=i + 1)
        code, out, err = self.batch(*QUICK, "in", "-o", "out", "--include", "*", "--name", "{name}.ppm")
        self.assertEqual((code, err), (0, ""))
        self.assertEqual(sorted(self.tree()), sorted(os.fsencode(name + ".ppm") for name in names))

    def test_names_that_begin_with_a_dash_or_are_no_text(self):
        picture(self.folder / "-o.ppm")
        picture(self.folder / os.fsdecode(b"in/\xff.ppm"))
        self.assertEqual(self.batch(*QUICK, "-o", "out", "--", "-o.ppm", "in")[0], 0)
        self.assertEqual(sorted(self.tree()), [b"-o.ppm", b"\xff.ppm"])

    def test_results_within_the_searched_folder_are_no_pictures(self):
        self.pictures(2)
        self.assertEqual(self.batch(*QUICK, "in", "-o", "in/out", "--recursive")[0], 0)
        told = self.batch(*QUICK, "in", "-o", "in/out", "--recursive", "--resume")
        self.assertTimed(
            (
                0,
                "batch blur: 0 done, 2 skipped, in T; results in in/out\n",
                "orv: warning: in/out: 2 pictures in it are left out, as the results go there\n",
            ),
            told,
        )

    def test_chains(self):
        self.pictures(2)
        code, _, err = self.batch("blur", "in", "--sigma", "1", ",", "shock", "--iterations", "2", "-o", "out", "--jobs", "2")
        self.assertEqual((code, err), (0, ""))
        run("blur", "in/1.ppm", "--sigma", "1", ",", "shock", "--iterations", "2", "-o", "one.ppm", cwd=self.folder)
        self.assertEqual(self.tree()[b"1.ppm"], (self.folder / "one.ppm").read_bytes())

    def test_recipes(self):
        self.pictures(2)
        (self.folder / "r.json").write_text('{"steps": [{"verb": "blur", "parameters": {"sigma": 1}}]}')
        told = self.batch("run", "r.json", "in", "-o", "out")
        self.assertTimed((0, "batch run: 2 done, in T; results in out\n", ""), told)
        self.batch(*QUICK, "in", "-o", "again")
        self.assertEqual(self.tree(), self.tree("again"))
        # What a batch wrote can be replayed, and its result is verified.
        code, _, err = run("run", "out/.orv/1.ppm.json", "in/1.ppm", "-o", "replayed.ppm", cwd=self.folder)
        self.assertEqual((code, (self.folder / "replayed.ppm").read_bytes()), (0, self.tree()[b"1.ppm"]))

    def test_a_recipe_of_one_picture_serves_many(self):
        self.pictures(2)
        run("blur", "in/1.ppm", "one.ppm", "--recipe", "one.json", cwd=self.folder)
        self.assertTimed((0, "batch run: 2 done, in T; results in out\n", ""), self.batch("run", "one.json", "in", "-o", "out"))

    def test_presets(self):
        for number in (1, 2):
            picture(self.folder / f"in/{number}.ppm", seed=number, width=24, height=20)
        for verb in ("restore", "run"):
            code, _, err = self.batch(verb, "--preset", "night", "in", "-o", verb)
            self.assertEqual((code, err), (0, ""))
        self.assertEqual(self.tree("restore"), self.tree("run"))

    def test_a_second_picture_serves_all(self):
        self.pictures(2)
        picture(self.folder / "colours.ppm", seed=9)
        self.assertEqual(self.batch("recolor", "in", "--with", "colours.ppm", "-o", "out")[::2], (0, ""))
        self.assertEqual(len(self.tree()), 2)

    def test_jobs_change_no_byte(self):
        self.pictures(12)
        for jobs in (1, 3):
            self.assertEqual(self.batch(*QUICK, "in", "-o", f"jobs{jobs}", "--jobs", jobs)[0], 0)
        self.assertEqual(len(self.tree("jobs1")), 12)
        self.assertEqual(self.tree("jobs1"), self.tree("jobs3"))


class Refusals(BatchCase):
    def refuse(self, code, text, *arguments):
        self.assertEqual(self.batch(*arguments), (code, "", f"orv: {text}\n"))
        self.assertFalse((self.folder / "out").exists())

    def test_command_lines(self):
        self.pictures(1)
        usage = " (usage: orv batch blur IN... -o DIR [options])"
        self.refuse(2, "batch: the verb to run is missing (usage: orv batch VERB IN... -o DIR [options])")
        self.refuse(2, "batch: the verb comes first, before --jobs (usage: orv batch VERB IN... -o DIR [options])", "--jobs", "2")
        self.refuse(2, "batch: 'blurr' is no method, did you mean 'blur'? (orv methods lists them; run replays a recipe)", "blurr", "in")
        self.refuse(2, "batch: 'solve' is no method (orv methods lists them; run replays a recipe)", "solve", "in")
        self.refuse(2, "batch blur: the pictures to read is missing" + usage, "blur", "-o", "out")
        self.refuse(2, "batch blur: -o DIR, the folder for the results, is missing" + usage, "blur", "in")
        self.refuse(2, "--jobs: '0' is not a whole number from 1 to 256", "blur", "in", "-o", "out", "--jobs", "0")
        self.refuse(2, "--report: 'r.txt' is no page (expected a file that ends in .html)", "blur", "in", "-o", "out", "--report", "r.txt")
        self.refuse(2, "-o -: a batch writes into a folder, not to standard output; name one", "blur", "in", "-o", "-")

    def test_help_is_about_the_verb_in_a_batch(self):
        for words in (["blur", "--help"], ["blur", "in", "-h"]):
            code, out, err = self.batch(*words)
            self.assertEqual((code, err), (0, ""))
            for part in ("\nUsage: orv batch blur IN... -o DIR [options]\n", "--sigma", "--resume", "-o, --output DIR", "orv help blur --all"):
                self.assertIn(part, out)
        self.assertIn("\nUsage: orv batch VERB IN... -o DIR [options]\n", self.batch("--help")[1])

    def test_records_of_one_picture(self):
        self.pictures(1)
        self.refuse(
            2,
            "--recipe: a batch writes a recipe for each picture, into .orv in the folder of the results; leave it out",
            *("blur", "in", "-o", "out", "--recipe", "r.json"),
        )
        self.refuse(
            2,
            "--compare: is for one picture; --report FILE.html shows all of a batch, before and after",
            *("blur", "in", "-o", "out", "--compare", "c.html"),
        )

    def test_what_the_verb_refuses_in_its_own_words(self):
        self.pictures(2)
        for words in (["--sigma", "x"], ["--quality", "0"], ["--strip=x"], ["--alpha"]):
            single = run("blur", "in/1.ppm", "single.ppm", *words, cwd=self.folder)
            self.assertEqual(single[0], 2)
            self.assertEqual(self.batch("blur", "in", "-o", "out", *words), single)
        self.assertFalse((self.folder / "out").exists())

    def test_what_a_worker_alone_can_tell_ends_the_batch(self):
        self.pictures(3)
        words = ["--preset", "night", "--tau", "2"]
        single = run("restore", "in/1.ppm", "single.ppm", *words, cwd=self.folder)
        self.assertEqual(single[0], 2)
        self.assertEqual(self.batch("restore", "in", "-o", "out", *words), single)
        self.assertFalse((self.folder / "out").exists())

    def test_a_second_picture_is_named(self):
        self.pictures(2)
        code, _, err = self.batch("recolor", "in", "-o", "out")
        self.assertEqual(code, 2)
        self.assertIn("batch recolor: --with FILE is missing; it names the second picture", err)

    def test_two_pictures_for_one_result(self):
        picture(self.folder / "a/x.ppm")
        picture(self.folder / "b/x.ppm")
        code, out, err = self.batch(*QUICK, "a", "b", "-o", "out")
        self.assertEqual((code, out), (2, ""))
        self.assertIn("a/x.ppm and b/x.ppm would both become out/x.ppm", err)
        self.assertFalse((self.folder / "out").exists())

    def test_originals_are_never_overwritten(self):
        self.pictures(2)
        before = self.tree("in")
        for force in ([], ["--force"]):
            code, _, err = self.batch(*QUICK, "in", "-o", "in", *force)
            self.assertEqual(
                (code, err),
                (4, "orv: in/1.ppm: is the picture itself, which a batch never overwrites; take another -o or --name\n"),
            )
        self.assertEqual(self.tree("in"), before)

    def test_folders_that_cannot_be(self):
        self.pictures(1)
        (self.folder / "file").write_text("")
        self.refuse(2, "file: is a file, and -o names the folder that results go into", *QUICK, "in", "-o", "file")
        self.refuse(4, "file/out: can't be written: Not a directory", *QUICK, "in", "-o", "file/out")

    @unittest.skipUnless(os.geteuid() == 0, "another user is needed")
    def test_a_folder_without_permission(self):
        self.pictures(1)
        self.folder.chmod(0o755)
        (self.folder / "out").mkdir()
        done = subprocess.run(
            [TOOL, "batch", *QUICK, "in", "-o", "out"], cwd=self.folder, capture_output=True, user=65534, group=65534
        )
        if b"ermission denied" not in done.stderr:
            self.skipTest("the tool is out of reach for another user")
        self.assertEqual((done.returncode, done.stderr), (4, b"orv: out: can't be written: Permission denied\n"))

    def test_no_pictures(self):
        (self.folder / "in").mkdir()
        self.assertEqual(self.batch(*QUICK, "in", "-o", "out")[0], 3)
        self.assertFalse((self.folder / "out").exists())

    def test_a_batch_where_another_is_at_work(self):
        (self.folder / "in").mkdir()
        slow_picture(self.folder / "in/slow.ppm")
        first = self.start(*SLOW, "in", "-o", "out")
        wait_until(lambda: workers_of(first.pid))
        self.assertEqual(
            self.batch(*SLOW, "in", "-o", "out"),
            (4, "", "orv: out: another batch writes into this folder; wait for it or take another -o\n"),
        )
        first.terminate()
        self.end(first)


class Resuming(BatchCase):
    def setUp(self):
        super().setUp()
        self.pictures(3)
        self.assertEqual(self.batch(*QUICK, "in", "-o", "out")[0], 0)
        self.before = self.tree()

    def test_without_a_word_nothing_is_touched(self):
        picture(self.folder / "in/4.ppm")
        self.assertEqual(
            self.batch(*QUICK, "in", "-o", "out"),
            (4, "", "orv: out: 3 of 4 results exist already, as out/1.ppm; --resume skips what is finished, --force makes all again\n"),
        )
        self.assertEqual(self.tree(), self.before)

    def test_what_is_finished_is_skipped(self):
        times = [path.stat().st_mtime_ns for path in sorted((self.folder / "out").glob("*.ppm"))]
        picture(self.folder / "in/4.ppm")
        (self.folder / "out/2.ppm").unlink()
        told = self.batch(*QUICK, "in", "-o", "out", "--resume")
        self.assertTimed((0, "batch blur: 2 done, 2 skipped, in T; results in out\n", ""), told)
        self.assertEqual({name: self.tree()[name] for name in self.before}, self.before)
        now = [path.stat().st_mtime_ns for path in sorted((self.folder / "out").glob("*.ppm"))]
        self.assertEqual((now[0], now[2]), (times[0], times[2]))

    def test_numbers_written_otherwise_are_the_same_work(self):
        told = self.batch("blur", "--sigma=1.0", "in", "-o", "out", "--resume", "--jobs", "1")
        self.assertTimed((0, "batch blur: 0 done, 3 skipped, in T; results in out\n", ""), told)

    def test_other_parameters_are_other_work(self):
        told = self.batch("blur", "--sigma", "2", "in/1.ppm", "in/2.ppm", "-o", "out", "--resume")
        refused = "orv: in/{0}.ppm: out/{0}.ppm was made by 'blur --sigma 1'; --force makes it again by 'blur --sigma 2'\n"
        self.assertTimed(
            (
                1,
                "batch blur: 0 done, 2 failed, in T; results in out\n",
                refused.format(1) + refused.format(2) + "orv: 2 of 2 pictures failed\n",
            ),
            told,
        )
        self.assertEqual(self.tree(), self.before)
        self.assertEqual(self.batch("blur", "--sigma", "2", "in", "-o", "out", "--resume", "--force")[0], 0)
        changed = self.tree()
        self.assertTrue(all(changed[name] != self.before[name] for name in self.before))
        # Now the other ones are finished.
        told = self.batch("blur", "--sigma", "2", "in", "-o", "out", "--resume")
        self.assertTimed((0, "batch blur: 0 done, 3 skipped, in T; results in out\n", ""), told)

    def test_other_options_of_files_are_other_work(self):
        code, _, err = self.batch(*QUICK, "in/1.ppm", "-o", "out", "--resume", "--max-side", "5")
        self.assertEqual(code, 1)
        self.assertIn("--force makes it again by 'blur --sigma 1 --max-side 5'", err)

    def test_a_changed_picture_is_told(self):
        picture(self.folder / "in/1.ppm", seed=77)
        code, out, err = self.batch(*QUICK, "in", "-o", "out", "--resume")
        self.assertEqual(code, 1)
        self.assertEqual(
            err, "orv: in/1.ppm: has changed since out/1.ppm was made; --force makes it again\norv: 1 of 3 pictures failed\n"
        )
        self.assertEqual(self.tree(), self.before)

    def test_results_that_someone_changed_stay(self):
        (self.folder / "out/1.ppm").write_bytes(b"P6\n1 1\n255\nabc")
        (self.folder / "out/.orv/2.ppm.json").unlink()
        os.utime(self.folder / "out/3.ppm", (1, 1))
        code, _, err = self.batch(*QUICK, "in", "-o", "out", "--resume")
        self.assertEqual(
            (code, err),
            (
                1,
                "orv: in/1.ppm: out/1.ppm was changed after it was made; --force overwrites it\n"
                "orv: in/2.ppm: out/2.ppm stands there without a recipe; --force overwrites it\n"
                "orv: in/3.ppm: out/3.ppm was changed after it was made; --force overwrites it\n"
                "orv: 3 of 3 pictures failed\n",
            ),
        )
        self.assertEqual((self.folder / "out/1.ppm").read_bytes(), b"P6\n1 1\n255\nabc")
        self.assertEqual(self.batch(*QUICK, "in", "-o", "out", "--force")[0], 0)
        self.assertEqual(self.tree(), self.before)

    def test_a_second_picture_that_changed_is_other_work(self):
        picture(self.folder / "colours.ppm", seed=9)
        words = ["recolor", "in", "--with", "colours.ppm", "-o", "second"]
        self.assertEqual(self.batch(*words)[0], 0)
        self.assertIn(" 3 skipped", self.batch(*words, "--resume")[1])
        picture(self.folder / "colours.ppm", seed=10)
        self.assertEqual(self.batch(*words, "--resume")[0], 1)

    def test_force_keeps_permissions_and_links(self):
        (self.folder / "out/1.ppm").chmod(0o640)
        (self.folder / "elsewhere.ppm").write_bytes(b"")
        (self.folder / "out/2.ppm").unlink()
        (self.folder / "out/2.ppm").symlink_to("../elsewhere.ppm")
        self.assertEqual(self.batch(*QUICK, "in", "-o", "out", "--force")[0], 0)
        self.assertEqual((self.folder / "out/1.ppm").stat().st_mode & 0o777, 0o640)
        self.assertTrue((self.folder / "out/2.ppm").is_symlink())
        self.assertEqual(self.tree(), self.before)


class Progress(BatchCase):
    def test_events(self):
        self.pictures(3)
        damage(self.folder / "in/2.ppm", "empty")
        code, out, err = self.batch(*QUICK, "in", "-o", "out", "--progress=json", "--jobs", "1")
        lines = [json.loads(line) for line in err.splitlines() if line.startswith("{")]
        self.assertEqual(lines[0], {"event": "start", "verb": "blur", "files": 3, "skipped": 0, "jobs": 1})
        files = [{key: line[key] for key in ("file", "status", "reason", "finished", "of")} for line in lines if line["event"] == "file"]
        self.assertEqual(
            files,
            [
                {"file": "in/1.ppm", "status": "done", "reason": "", "finished": 1, "of": 3},
                {"file": "in/2.ppm", "status": "failed", "reason": "is empty", "finished": 2, "of": 3},
                {"file": "in/3.ppm", "status": "done", "reason": "", "finished": 3, "of": 3},
            ],
        )
        end = lines[-1]
        self.assertEqual((end.pop("event"), end.pop("seconds") > 0), ("end", True))
        self.assertEqual(end, {"done": 2, "skipped": 0, "failed": 1})
        self.assertEqual([line for line in err.splitlines() if not line.startswith("{")], ["orv: 1 of 3 pictures failed; --resume tries it again"])

    def test_quiet(self):
        self.pictures(2)
        damage(self.folder / "in/2.ppm", "empty")
        self.assertEqual(
            self.batch(*QUICK, "in", "-o", "out", "--quiet"),
            (1, "", "orv: in/2.ppm: is empty\norv: 1 of 2 pictures failed; --resume tries it again\n"),
        )

    def test_warnings_are_told_once(self):
        self.pictures(3)
        words = ["--solver", "Jacobi", "--scheme", "LOD", "in", "-o", "out"]
        code, _, err = self.batch("denoise", *words)
        single = run("denoise", "--solver", "Jacobi", "--scheme", "LOD", "in/1.ppm", "single.ppm", cwd=self.folder)[2]
        self.assertEqual((code, err), (0, single))

    def on_terminal(self, columns, *arguments):
        """What the tool writes to a terminal of so many columns."""
        process, terminal = pty.fork()
        if process == 0:
            os.chdir(self.folder)
            os.environ.update(TERM="xterm", COLUMNS=str(columns))
            os.execvp(TOOL, [TOOL, "batch", *map(str, arguments)])
        import fcntl
        import struct
        import termios

        fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        text = b""
        while select.select([terminal], [], [], 60)[0]:
            try:
                block = os.read(terminal, 4096)
            except OSError:
                break
            if not block:
                break
            text += block
        os.close(terminal)
        return os.waitstatus_to_exitcode(os.waitpid(process, 0)[1]), text.decode()

    def test_the_line_of_a_terminal(self):
        self.pictures(60)
        damage(self.folder / "in/1.ppm", "empty")
        for columns in (80, 60, 30):
            code, text = self.on_terminal(columns, *QUICK, "in", "-o", f"out{columns}")
            self.assertEqual(code, 1)
            drawn = [part for part in text.split("\r") if part.startswith("\x1b[K") and " of 60" in part]
            self.assertGreater(len(drawn), 1)
            for part in drawn:
                self.assertLess(len(part.removeprefix("\x1b[K")), columns)
            percents = [int(re.search(r"(\d+) %", part).group(1)) for part in drawn if "%" in part]
            self.assertEqual(percents, sorted(percents))
            self.assertRegex(drawn[-1], r"^\x1b\[K\d+ of 60, 1 failed  ")
            self.assertIn("orv: in/1.ppm: is empty\r\n", text)
            self.assertIn("batch blur: 59 done, 1 failed, in ", text)


class Reports(BatchCase):
    def test_a_page(self):
        names = ["a b.png" if HAVE_VIPS else "a b.ppm", "<i>&'\".ppm", "50%#?.ppm"]
        for i, name in enumerate(names):
            picture(self.folder / "in" / name, seed=i + 1)
        (self.folder / "in/bad<script>.ppm").write_bytes(b"")
        code, _, _ = self.batch(*QUICK, "in", "-o", "out", "--report", "pages/index.html")
        self.assertEqual(code, 1)
        page = (self.folder / "pages/index.html").read_text()
        self.assertIn("<title>batch blur: 3 done, 1 failed</title>", page)
        for part in ("<i>", "<script", "@ORV_", "http"):
            self.assertNotIn(part, page)
        self.assertIn("in/bad&lt;script&gt;.ppm", page)
        self.assertIn("<span>is empty</span>", page)
        from urllib.parse import unquote
        from html import unescape

        links = {unquote(unescape(link)) for link in re.findall(r'href="([^"]*)"', page)}
        self.assertTrue({f"../out/{name}" for name in names} <= links, links)
        for link in links:
            self.assertTrue((self.folder / "pages" / link).exists(), link)
        self.assertEqual(page.count("data:image/jpeg;base64,"), 6 if HAVE_VIPS else 0)

    def test_an_older_page_stays(self):
        self.pictures(1)
        (self.folder / "r.html").write_text("mine")
        self.assertEqual(
            self.batch(*QUICK, "in", "-o", "out", "--report", "r.html"),
            (4, "", "orv: r.html: exists already; --force overwrites it\n"),
        )
        self.assertEqual((self.folder / "r.html").read_text(), "mine")
        self.assertFalse((self.folder / "out").exists())
        self.assertEqual(self.batch(*QUICK, "in", "-o", "out", "--report", "r.html", "--force")[0], 0)
        self.assertIn("1 done", (self.folder / "r.html").read_text())

    @NEEDS_VIPS
    def test_pictures_of_all_formats_have_previews(self):
        picture(self.folder / "in/a.ppm")
        code, _, _ = run("blur", "in/a.ppm", "in/b.bmp", cwd=self.folder)
        self.assertEqual(code, 0)
        for ending in ("jpg", "tif", "webp", "png"):
            self.assertEqual(run("blur", "in/a.ppm", f"in/c{ending}.{ending}", cwd=self.folder)[0], 0)
        self.assertEqual(self.batch(*QUICK, "in", "-o", "out", "--report", "out/r.html")[0], 0)
        self.assertEqual((self.folder / "out/r.html").read_text().count("data:image/jpeg;base64,"), 12)


if __name__ == "__main__":
    unittest.main()
