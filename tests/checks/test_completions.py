#!/usr/bin/python3
"""The completions of tidewellctl: test_completions.py TIDEWELLCTL"""

import pathlib
import re
import shutil
import subprocess
import sys
import unittest

FOLDER = pathlib.Path(__file__).resolve().parents[2] / "packaging" / "completions"
WORDS = {"panel", "details", "settings", "plain", "json", "waybar", "i3bar", "polybar"}


class Completions(unittest.TestCase):
    def completed(self, *words):
        """What bash offers for the last word."""
        script = (f". {FOLDER}/tidewellctl.bash; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); "
                  "_tidewellctl; printf '%s\\n' \"${COMPREPLY[@]}\"")
        return subprocess.run(["bash", "-euc", script, "bash", "tidewellctl", *words], check=True,
                              capture_output=True, text=True).stdout.split()  # fmt: skip

    def test_bash_offers_what_fits(self):
        self.assertEqual(self.completed("st"), ["status"])
        self.assertEqual(self.completed("--"), ["--version", "--help"])
        self.assertEqual(self.completed("status", "--"), ["--json", "--start"])
        self.assertEqual(self.completed("follow", "--format", "p"), ["plain", "polybar"])
        self.assertEqual(self.completed("follow", "--format", "=", "w"), ["waybar"])
        self.assertEqual(len(self.completed("follow", "--format", "=")), 5)
        self.assertEqual(self.completed("open", ""), ["panel", "details", "settings", "--start"])
        self.assertEqual(self.completed("quit", ""), [])

    @unittest.skipUnless(shutil.which("fish"), "fish is not installed")
    def test_fish_offers_what_fits(self):
        for line, words in (("st", {"status"}), ("open ", {"panel", "details", "settings"}),
                            ("follow --format p", {"plain", "polybar"}), ("status --j", {"--json"}), ("quit --", set())):
            script = f"source {FOLDER}/tidewellctl.fish; complete -C 'tidewellctl {line}'"
            offered = subprocess.run(["fish", "--no-config", "-c", script], check=True, capture_output=True, text=True).stdout
            self.assertEqual({one.split("\t")[0] for one in offered.splitlines()}, words, line)

    def test_every_shell_knows_every_word_of_the_help(self):
        text = subprocess.run([PROGRAM, "--help"], check=True, capture_output=True, text=True).stdout
        verbs = set(re.findall(r"^  ([a-z]+)", text, re.M))
        options = {option.lstrip("-") for option in re.findall(r"--[a-z]+", text)}
        self.assertTrue(len(verbs) >= 6 and len(options) >= 5)
        for shell in ("bash", "zsh", "fish"):
            content = (FOLDER / f"tidewellctl.{shell}").read_text()
            missing = (verbs | options | WORDS) - set(re.findall(r"\w+", content))
            self.assertEqual(missing, set(), shell)

    def test_shells_accept_their_files(self):
        for shell in ("bash", "zsh", "fish"):
            if shutil.which(shell):
                subprocess.run([shell, "-n", FOLDER / f"tidewellctl.{shell}"], check=True)


if __name__ == "__main__":
    PROGRAM = sys.argv.pop()
    unittest.main()
