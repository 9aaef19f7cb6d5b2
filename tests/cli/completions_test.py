"""What the shells offer: the scripts are run in bash, zsh and fish themselves."""

import json
import os
import pty
import shutil
import subprocess
import sys
import threading
import time
import unittest
from pathlib import Path

from cli_support import FolderCase, run

sys.path.insert(0, str(Path(__file__).resolve().parent))
from help_test import methods, options_of, topics, verbs  # noqa: E402

SHELLS = ("bash", "zsh", "fish")


def script(shell):
    code, text, error = run("completions", shell)
    assert (code, error) == (0, "")
    return text


def solvers():
    return [entry["name"] for entry in json.loads(run("solvers", "--json")[1])]


class Verb(unittest.TestCase):
    def test_unknown_shells(self):
        line = "orv: completions: 'fsih' is not known, did you mean 'fish'? (expected bash, zsh or fish)\n"
        self.assertEqual(run("completions", "fsih"), (2, "", line))

    def test_no_shell(self):
        line = "orv: completions: the shell, bash, zsh or fish, is missing (usage: orv completions bash|zsh|fish [options])\n"
        self.assertEqual(run("completions"), (2, "", line))

    def test_scripts_are_the_same_each_time(self):
        for shell in SHELLS:
            self.assertEqual(script(shell), script(shell))

    def test_scripts_hold_every_verb_option_and_choice(self):
        for shell in SHELLS:
            text = script(shell)
            for verb in verbs():
                self.assertIn(verb, text)
                for option in options_of(verb):
                    self.assertIn(f"-l {option[2:]}" if shell == "fish" else option, text)
            for method in methods().values():
                for parameter in method["parameters"]:
                    for choice in parameter.get("choices", []):
                        self.assertIn(choice["name"], text.replace("\\", ""))


class Shell:
    """What a shell offers where the last word of a command line stands."""

    def offers(self, *words):
        raise NotImplementedError

    def setUp(self):
        super().setUp()
        for name in ("photo.jpg", "my photo.png"):
            (self.folder / name).write_text("")
        (self.folder / "sub").mkdir()

    def test_verbs(self):
        self.assertLessEqual(set(verbs()), self.offers(""))
        self.assertEqual(self.offers("rest"), {"restore"})

    def test_options_of_every_verb(self):
        for verb in verbs():
            with self.subTest(verb=verb):
                self.assertLessEqual(set(options_of(verb)), self.offers(verb, "--"))

    def test_options_that_begin_as_the_word(self):
        self.assertEqual(self.offers("restore", "--solver"), {"--solver", "--solver-iterations"})
        self.assertEqual(self.offers("solvers", "--js"), {"--json"})

    def test_choices(self):
        self.assertEqual(self.offers("restore", "--scheme", ""), {"LOD", "AFI", "ADI", "AOS", "AMOS", "2DSemi", "2DImplicit"})
        self.assertEqual(self.offers("wavelet", "--wavelet", "9"), {"9/7", "9/3"})
        self.assertEqual(self.offers("blur", "photo.jpg", "--alpha", "k"), {"keep"})
        self.assertEqual(self.offers("restore", "--preset", ""), {"old-print", "night", "scan", "portrait", "document"})

    def test_solver_names(self):
        self.assertEqual(self.offers("restore", "--solver", ""), set(solvers()))

    def test_files(self):
        self.assertEqual(self.offers("restore", "ph"), {"photo.jpg"})
        self.assertIn("photo.jpg", self.offers("restore", "-o", ""))
        self.assertIn("photo.jpg", self.offers("restore", "--tau", "2", ""))
        self.assertEqual(self.offers("methods", "ph"), set())

    def test_numbers_offer_nothing(self):
        self.assertEqual(self.offers("restore", "--tau", ""), set())

    def test_after_a_comma(self):
        offered = self.offers("restore", "photo.jpg", ",", "")
        self.assertLessEqual(set(methods()), offered)
        self.assertNotIn("solvers", offered)
        self.assertIn("--iterations", self.offers("restore", "photo.jpg", ",", "shock", "--"))
        self.assertNotIn("--tau", self.offers("restore", "photo.jpg", ",", "shock", "--"))

    def test_subjects_of_help(self):
        self.assertLessEqual(set(verbs()) | set(topics()), self.offers("help", ""))
        self.assertEqual(self.offers("completions", ""), set(SHELLS))


@unittest.skipUnless(shutil.which("bash"), "bash is not installed")
class Bash(Shell, FolderCase):
    def offers(self, *words, breaks=()):
        listed = list(breaks or ("orv", *words))
        quoted = " ".join("'" + word.replace("'", "'\\''") + "'" for word in listed)
        program = script("bash") + f"\nCOMP_WORDS=({quoted})\nCOMP_CWORD={len(listed) - 1}\n_orv\nprintf '%s\\n' \"${{COMPREPLY[@]}}\"\n"
        done = subprocess.run(["bash", "--norc", "-c", program], cwd=self.folder, capture_output=True, text=True, timeout=60)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return {line.replace("\\", "") for line in done.stdout.splitlines()} - {""}

    def test_values_after_an_equals_sign(self):
        # Readline takes '=' for a word of its own.
        self.assertEqual(self.offers(breaks=("orv", "restore", "--scheme", "=", "A")), {"AFI", "ADI", "AOS", "AMOS"})
        self.assertEqual(self.offers(breaks=("orv", "restore", "--strip", "=")), {"all", "gps", "exif"})
        self.assertIn("photo.jpg", self.offers("restore", "--strip", ""))

    def test_names_with_spaces(self):
        self.assertEqual(self.offers("restore", "my"), {"my photo.png"})


@unittest.skipUnless(shutil.which("fish"), "fish is not installed")
class Fish(Shell, FolderCase):
    def offers(self, *words):
        (self.folder / ".orv.fish").write_text(script("fish"))
        line = " ".join(["orv", *words])
        program = f"complete -e orv; source .orv.fish; complete -C {json.dumps(line)}"
        environment = {**os.environ, "HOME": str(self.folder), "PATH": os.environ["PATH"]}
        done = subprocess.run(["fish", "--no-config", "-c", program], cwd=self.folder, capture_output=True, text=True, timeout=60, env=environment)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return {row.split("\t")[0].replace("\\", "") for row in done.stdout.splitlines()}


ZSH = r"""
PROMPT=
unsetopt beep
autoload -Uz compinit
compinit -u -D
source ./orv.zsh
# The completion system adds its matches by compadd; what it would show goes to a file.
compadd() {
    local -a found
    if [[ " $* " != *" -"[OAD]" "* ]]; then
        builtin compadd -O found "$@"
        print -rl -- $found >> $HOME/.offers
    fi
    builtin compadd "$@"
}
_offers() {
    compstate[insert]= compstate[list]=
    _main_complete
    : > $HOME/.done
}
zle -C offers complete-word _offers
bindkey '^T' offers
# Keys that come before the line editor has the terminal would go to the terminal itself.
zle-line-init() { : > $HOME/.ready }
zle -N zle-line-init
: > $HOME/.done
"""


@unittest.skipUnless(shutil.which("zsh"), "zsh is not installed")
class Zsh(Shell, FolderCase):
    """Types lines into an interactive zsh on a pseudo-terminal and asks what it would offer."""

    def setUp(self):
        super().setUp()
        (self.folder / "orv.zsh").write_text(script("zsh"))
        (self.folder / "start.zsh").write_text(ZSH)
        self.keeper, terminal = pty.openpty()
        environment = {**os.environ, "HOME": str(self.folder), "TERM": "dumb"}
        self.process = subprocess.Popen(
            ["zsh", "-f", "-i"], cwd=self.folder, env=environment, stdin=terminal, stdout=terminal, stderr=terminal, start_new_session=True
        )
        os.close(terminal)
        threading.Thread(target=self.drain, daemon=True).start()
        self.addCleanup(self.stop)
        self.ask("source ./start.zsh\n")
        self.wait_for(self.folder / ".ready")

    def drain(self):
        """Takes what the terminal shows, so that the shell never waits."""
        try:
            while os.read(self.keeper, 4096):
                pass
        except OSError:  # the other end is closed
            pass

    def stop(self):
        self.process.kill()
        self.process.wait()
        os.close(self.keeper)

    def ask(self, keys):
        """Types keys and waits until the shell has answered."""
        os.write(self.keeper, keys.encode())
        self.wait_for(self.folder / ".done")

    def wait_for(self, mark):
        """Waits for a file that the shell makes, and takes it away."""
        deadline = time.monotonic() + 60
        while not mark.exists() and time.monotonic() < deadline:
            time.sleep(0.01)
        self.assertTrue(mark.exists(), f"the shell made no {mark.name}")
        mark.unlink()

    def offers(self, *words):
        offers = self.folder / ".offers"
        offers.unlink(missing_ok=True)
        self.ask("\x15" + " ".join(["orv", *words]) + "\x14")
        rows = offers.read_text().splitlines() if offers.exists() else []
        return {row.replace("\\", "").rstrip("=") for row in rows} - {""}


if __name__ == "__main__":
    unittest.main()
