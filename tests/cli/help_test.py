"""What the tool tells about itself: the first words, help of verbs and topics, the manual page."""

import json
import os
import pty
import re
import shlex
import shutil
import subprocess
import unittest

from cli_support import HAVE_VIPS, NEEDS_VIPS, TOOL, FolderCase, run, samples, write_netpbm

MANDOC = shutil.which("mandoc")
NEEDS_MANDOC = unittest.skipUnless(MANDOC, "mandoc, which checks manual pages, is not installed")
SHORT_LINES = 40
PICTURE = re.compile(r"\.(jpg|png|tif|webp|bmp|ppm)$")


def told(*arguments):
    """The standard output of a run that goes well and says nothing else."""
    code, out, error = run(*arguments)
    assert (code, error) == (0, ""), (arguments, code, error)
    return out


def told_to_terminal(*arguments):
    """The same where standard output is a terminal."""
    ours, theirs = pty.openpty()
    with subprocess.Popen([TOOL, *arguments], stdout=theirs) as process:
        os.close(theirs)
        text = b""
        while True:
            try:
                text += os.read(ours, 4096)
            except OSError:  # the tool has ended
                break
    os.close(ours)
    assert process.returncode == 0, arguments
    return text.decode().replace("\r\n", "\n")


def verbs():
    """The verbs that the general help lists."""
    rows = told("help").split("Verbs;")[1].split("Topics;")[0].splitlines()[1:]
    return [row.split()[0] for row in rows if re.match(r"  \w", row)]


def topics():
    rows = told("help").split("Topics;")[1].split("Options:")[0].splitlines()[1:]
    return [row.split()[0] for row in rows if re.match(r"  \w", row)]


def methods():
    return {method["name"]: method for method in json.loads(told("methods", "--json"))}


def options_of(verb):
    """The options that the full help of a verb describes."""
    return re.findall(r"^  (?:-\w, )?(--[a-z-]+)", told("help", verb, "--all"), re.MULTILINE)


def flat(text):
    return " ".join(text.split())


class FirstWords(unittest.TestCase):
    def test_orv_alone_says_where_to_start(self):
        code, out, error = run()
        self.assertEqual((code, out), (2, ""))
        self.assertIn("  orv restore photo.jpg\n", error)
        self.assertIn("orv help lists all verbs and topics; orv VERB --help tells about one.", error)
        self.assertLessEqual(len(error.splitlines()), 15)
        for verb in re.findall(r"^  orv (\w+)", error, re.MULTILINE):
            self.assertIn(verb, verbs())

    def test_help_has_three_spellings(self):
        text = told("help")
        self.assertEqual(told("--help"), text)
        self.assertEqual(told("-h"), text)
        self.assertTrue(text.startswith("orv restores and enhances pictures"))

    def test_help_lists_what_runs(self):
        self.assertIn("restore", verbs())
        for verb in verbs():
            self.assertTrue(told(verb, "--help"), verb)
        for topic in topics():
            self.assertTrue(told("help", topic).startswith(topic + ": "), topic)

    def test_unknown_subjects(self):
        for word, hint in (("restor", ", did you mean 'restore'?"), ("format", ", did you mean 'formats'?"), ("zzzz", "")):
            line = f"orv: help: '{word}' is neither a verb nor a topic{hint} (orv help lists all)\n"
            self.assertEqual(run("help", word), (2, "", line))

    def test_help_takes_one_subject(self):
        line = "orv: help: 'blur' is one word too many (usage: orv help [VERB|TOPIC] [options])\n"
        self.assertEqual(run("help", "restore", "blur"), (2, "", line))


class Verbs(unittest.TestCase):
    def every(self):
        return verbs()

    def test_short_help_fits_a_screen(self):
        for verb in self.every():
            lines = told(verb, "--help").splitlines()
            self.assertLessEqual(len(lines), SHORT_LINES)
            self.assertLessEqual(max(map(len, lines)), 80)

    def test_every_text_fits_eighty_columns_of_plain_ascii(self):
        texts = [told("help", verb, "--all") for verb in verbs()] + [told("help", topic) for topic in topics()] + [told("help")]
        for text in texts:
            with self.subTest(text=text.splitlines()[0]):
                self.assertLessEqual(max(map(len, text.splitlines())), 80)
                self.assertNotRegex(text, r"[^ -~\n]| \n|\n\n\n")
                self.assertNotRegex(text, r"\[default:\s*\n|\d to\n +\S+ \[|\d\n +to \S+ \[")

    def test_short_help_names_every_option(self):
        for verb in self.every():
            short = told(verb, "--help")
            for option in options_of(verb):
                self.assertRegex(short, re.escape(option) + r"(?![a-z-])")

    def test_full_help_has_every_spelling(self):
        for verb in self.every():
            full = told("help", verb, "--all")
            self.assertEqual(told(verb, "--help", "--all"), full)
            self.assertEqual(told(verb, "--help=all"), full)
            self.assertEqual(told("help", verb), told(verb, "--help"))
            self.assertEqual(told(verb, "-h"), told(verb, "--help"))

    def test_help_says_how_to_see_more(self):
        for verb in self.every():
            short, full = told(verb, "--help"), told("help", verb, "--all")
            hidden = [option for option in options_of(verb) if not re.search(rf"^  (-\w, )?{option}\b", short, re.MULTILINE)]
            if hidden:
                self.assertIn(f"orv help {verb} --all", short)
            self.assertIn(f"Usage: orv {verb}", short)
            self.assertNotIn("More options", full)

    def test_every_verb_has_an_example(self):
        for verb in self.every():
            self.assertRegex(told(verb, "--help"), rf"\nExample: orv {verb} ")

    def test_help_stands_before_wrong_options(self):
        self.assertEqual(told("restore", "--bogus", "--help"), told("restore", "--help"))
        code, _, error = run("restore", "--", "--help")
        self.assertEqual((code, error), (3, "orv: --help: no such file\n"))

    def test_help_within_a_chain_is_of_the_last_method(self):
        self.assertEqual(told("restore", "in.jpg", ",", "shock", "--help"), told("shock", "--help"))


class Parameters(unittest.TestCase):
    def test_help_tells_what_the_catalogue_tells(self):
        for name, method in methods().items():
            short, full = flat(told(name, "--help")), flat(told("help", name, "--all"))
            for parameter in method["parameters"]:
                with self.subTest(method=name, parameter=parameter["name"]):
                    for text in [full] + ([] if parameter["rare"] else [short]):
                        self.assertIn(parameter["help"], text)
                        self.assertIn("larger " + parameter["larger"] if "larger" in parameter else "", text)
            for note in method["notes"]:
                self.assertIn(note, full)

    def test_every_number_has_range_default_and_what_larger_does(self):
        for name, method in methods().items():
            full = told("help", name, "--all")
            for parameter in method["parameters"]:
                if parameter["kind"] not in ("real", "integer"):
                    continue
                with self.subTest(method=name, parameter=parameter["name"]):
                    row = flat(re.search(rf"^  --{parameter['name']} (.*?)(?=^  -|^$)", full, re.MULTILINE | re.DOTALL)[1])
                    unit = parameter.get("unit", "n").upper().replace(" ", "-")
                    self.assertTrue(row.startswith(unit + " "), row)
                    self.assertRegex(row, r"; \S+ to \S+ \[default: (\S+|by the noise)\]; larger \w")

    def test_every_choice_is_told(self):
        for name, method in methods().items():
            short, full = flat(told(name, "--help")), flat(told("help", name, "--all"))
            for parameter in method["parameters"]:
                if parameter["kind"] != "choice" or len(parameter["choices"]) > 10:
                    continue
                for choice in parameter["choices"]:
                    self.assertIn(choice["name"] + " " + choice["help"], full)
                    if not parameter["rare"]:
                        self.assertIn(choice["name"], short)

    def test_catalogue_has_notes_and_an_example(self):
        for name, method in methods().items():
            self.assertTrue(method["notes"], name)
            self.assertTrue(method["example"].startswith(f"orv {name} "), name)


class Examples(FolderCase):
    """The commands of the helps run, in a folder that has the pictures that they name."""

    def prepare(self, words):
        """Makes the files that a command reads: all that it names, but those it writes."""
        self.assertEqual(words[0], "orv")
        written = {words[i + 1] for i, word in enumerate(words[:-1]) if word in ("-o", "--output", "--recipe", "--compare", ">")}
        pictures = [word for word in words[1:] if PICTURE.search(word) and word not in written]
        method = methods().get(words[1])
        if method and "-o" not in words and len(pictures) > len(method["pictures"]):
            pictures.pop()
        folders = [word for word in words[2:] if word.endswith("/") and word not in written]
        if words[1] == "batch" and not folders and not pictures:
            folders = [words[3]]
        for name in pictures + [f"{folder}/a.png" for folder in folders]:
            path = self.folder / name
            path.parent.mkdir(parents=True, exist_ok=True)
            write_netpbm(self.folder / "source.ppm", 32, 32, samples(32, 32, 3))
            done = run("restore", "source.ppm", path, "-q", "--tau", "0", cwd=self.folder)
            self.assertEqual(done, (0, "", ""))
        for name in (word for word in words if word.endswith(".json") and word not in written):
            step = {"verb": "blur", "parameters": {"sigma": 2}}
            (self.folder / name).write_text(json.dumps({"format": "orv-recipe", "version": 1, "steps": [step]}))

    def runs(self, command):
        words = shlex.split(command)
        self.prepare(words)
        code, _, error = run(*words[1 : words.index(">") if ">" in words else None], cwd=self.folder)
        self.assertEqual(code, 0, f"{command}: {error}")

    @NEEDS_VIPS
    def test_examples_of_verbs_run(self):
        for verb in verbs():
            found = re.search(r"\nExample: (.*)\n", told(verb, "--help"))
            if found:
                with self.subTest(command=found[1]):
                    self.runs(found[1])
                    for entry in self.folder.iterdir():
                        shutil.rmtree(entry) if entry.is_dir() else entry.unlink()

    @NEEDS_VIPS
    def test_commands_of_topics_run(self):
        commands = [line.strip() for topic in topics() for line in told("help", topic).splitlines() if line.startswith("  orv ")]
        self.assertGreaterEqual(len(commands), 3)
        for command in commands:
            with self.subTest(command=command):
                self.runs(command)

    def test_the_recipe_of_the_topic_runs(self):
        text = told("help", "recipes")
        recipe = json.loads(text[text.index("  {") : text.index("]}") + 2])
        (self.folder / "r.json").write_text(json.dumps(recipe))
        write_netpbm(self.folder / "in.ppm", 16, 16, samples(16, 16, 3))
        self.check((0, "", ""), "run", "r.json", "in.ppm", "-q")


class Topics(unittest.TestCase):
    def test_exit_codes(self):
        text = told("help", "exit-codes")
        self.assertEqual(re.findall(r"^  (\d+) ", text, re.MULTILINE), ["0", "1", "2", "3", "4", "5", "6", "130"])
        self.assertIn("--quiet leaves errors alone", text)

    def test_formats(self):
        text = told("help", "formats")
        self.assertRegex(text, r"\n  BMP +8 +yes +none\n")
        self.assertRegex(text, r"\n  PPM, PGM +8, 16 +no +none\n")
        if HAVE_VIPS:
            self.assertRegex(text, r"\n  PNG +8, 16 +yes +kept\n")
            self.assertRegex(text, r"\n  JPEG +8 +no +kept\n")
            self.assertRegex(text, r"\n  TIFF +8, 16, float +yes +profile, XMP\n")

    def test_recipes_list_the_presets(self):
        for preset in ("old-print", "night", "scan", "portrait", "document"):
            self.assertRegex(told("help", "recipes"), rf"\n  {preset} +\w")


class Listings(unittest.TestCase):
    def test_catalogue_as_json_is_complete_and_stable(self):
        keys = {"name", "summary", "pictures", "parameters", "notes", "example", "literature"}
        for method in methods().values():
            self.assertLessEqual(keys, set(method))
            for parameter in method["parameters"]:
                number = parameter["kind"] in ("real", "integer")
                expected = {"name", "kind", "default", "help", "rare"} | ({"from", "to", "larger"} if number else set())
                self.assertLessEqual(expected, set(parameter))
        self.assertEqual(told("methods", "--json"), told("methods", "--json"))


def parameters_of_page(page):
    return set(re.findall(r"--[a-z][a-z-]*", page))


class ManualPage(unittest.TestCase):
    def page(self):
        return told("help", "--man")

    def test_two_builds_give_the_same_page(self):
        self.assertEqual(self.page(), self.page())
        self.assertNotRegex(self.page(), r"\b20\d\d-\d\d-\d\d\b")
        self.assertRegex(self.page().splitlines()[0], r'^\.TH ORV 1 "" "orv \d+\.\d+\.\d+" "User commands"$')

    @NEEDS_MANDOC
    def test_page_is_sound(self):
        done = subprocess.run([MANDOC, "-T", "lint", "-W", "warning"], input=self.page().encode(), capture_output=True)
        complaints = [line for line in done.stdout.decode().splitlines() if "missing date" not in line]
        self.assertEqual(complaints, [])

    @NEEDS_MANDOC
    def test_page_shows_everything(self):
        shown = subprocess.run([MANDOC, "-T", "ascii", "-O", "width=78"], input=self.page().encode(), capture_output=True)
        page = re.sub(r".\x08", "", shown.stdout.decode())
        words = flat(page)
        for verb in verbs():
            with self.subTest(verb=verb):
                self.assertRegex(page, rf"\n +orv {verb}\b")
                self.assertLessEqual(set(options_of(verb)), parameters_of_page(page))
        for name, method in methods().items():
            for parameter in method["parameters"]:
                self.assertIn(flat(parameter["help"]).replace("-", ""), words.replace("-", ""))
        for title in ("NAME", "SYNOPSIS", "DESCRIPTION", "VERBS", "SHARED OPTIONS", "EXIT STATUS", "FORMATS", "ENVIRONMENT", "FILES", "EXAMPLES"):
            self.assertRegex(page, rf"(^|\n){title}\n")
        self.assertIn("130 interrupted", words)
        self.assertIn("orv restore noisy.jpg clean.jpg", words)



class Solvers(unittest.TestCase):
    def test_a_row_each_for_programs_and_folded_for_people(self):
        rows = told("solvers").splitlines()
        folded = told_to_terminal("solvers")

        self.assertEqual(len(rows), 43)
        self.assertGreater(max(map(len, rows)), 80)
        self.assertLessEqual(max(map(len, folded.splitlines())), 80)
        self.assertEqual(" ".join(folded.split()), " ".join(" ".join(rows).split()))


if __name__ == "__main__":
    unittest.main()
