#!/usr/bin/python3
"""Holds the shells' completion and the manual pages to what the programs themselves say that they take.

  shell_help_test.py PROGRAMS
"""

import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

LINUX = Path(__file__).resolve().parents[2] / "packaging/linux"
BASH = LINUX / "cirrovanectl.bash"
COMMAND_LINE = re.compile(r"^  ([a-z]+) {2,}\S", re.M)
OPTION = re.compile(r"^  ((?:-\w,)?--[a-z-]+)(?: ([A-Z]+)(?::\{([a-z,]+)\})?)?", re.M)
programs = None


def help_of(program, *command):
    return subprocess.run([programs / program, *command, "--help"], stdout=subprocess.PIPE, text=True, check=True).stdout


def section_of(help_text, name):
    found = re.search(rf"^{name}:\n(.*?)(?:\n\n|\Z)", help_text, re.M | re.S)
    return found[1] if found else ""


def options_of(program, *command):
    """The options that the help names, each with the values that it may have, as far as they are told."""
    values = {}
    for names, _, choices in OPTION.findall(section_of(help_of(program, *command), "Options")):
        for name in names.split(","):
            values[name] = choices.split(",") if choices else []
    return values


def commands_below(*command):
    return COMMAND_LINE.findall(section_of(help_of("cirrovanectl", *command), "Subcommands"))


def all_commands():
    for command in commands_below():
        yield (command,)
        for below in commands_below(command):
            yield (command, below)


def completed(*words, folder=None):
    """What bash offers for the last of the words."""
    script = 'source "$0"; COMP_WORDS=(cirrovanectl "$@"); COMP_CWORD=$#; _cirrovanectl; printf "%s\\n" "${COMPREPLY[@]}"'
    run = subprocess.run(
        ["bash", "--norc", "-c", script, BASH, *words], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, cwd=folder
    )
    if run.stderr or run.returncode != 0:
        raise AssertionError(run.stderr)
    return [line for line in run.stdout.split("\n") if line]


class HelpTest(unittest.TestCase):
    def test_help_isUnderstoodByThisTest(self):
        self.assertGreater(len(list(all_commands())), 15)
        self.assertIn("--wait", options_of("cirrovanectl", "check"))
        self.assertIn("active", options_of("cirrovanectl", "incidents")["--scope"])


class BashCompletionTest(unittest.TestCase):
    def test_commands_areAllOffered_andNoOthers(self):
        self.assertEqual(sorted(completed("")), sorted(commands_below()))
        for command in commands_below():
            below = commands_below(command)
            if below:
                self.assertEqual(sorted(completed(command, "")), sorted(below), command)

    def test_options_areAllOffered_andNoOthers(self):
        everywhere = options_of("cirrovanectl")
        self.assertEqual(sorted(completed("-")), sorted(everywhere))
        for command in all_commands():
            expected = set(everywhere) | set(options_of("cirrovanectl", *command))
            self.assertEqual(set(completed(*command, "-")), expected, command)

    def test_valuesOfAnOption_areOffered_afterIt(self):
        checked = 0
        for command in all_commands():
            for option, values in options_of("cirrovanectl", *command).items():
                if values:
                    self.assertEqual(sorted(completed(*command, option, "")), sorted(values), option)
                    checked += 1
        self.assertGreater(checked, 1)

    def test_domains_areTheOnesThatTheHelpNames(self):
        domains = re.search(r"One of ([a-z, ]+)", help_of("cirrovanectl", "diagnose"))[1].split(", ")
        self.assertEqual(sorted(completed("diagnose", "")), sorted(d.strip() for d in domains))
        self.assertEqual(completed("diagnose", "network", ""), [])

    def test_number_isLeftToTheUser(self):
        self.assertEqual(completed("check", "--timeout", ""), [])
        self.assertEqual(completed("history", "--limit", ""), [])

    def test_beginningOfAWord_narrowsTheOffer(self):
        self.assertEqual(completed("ex"), ["explain", "export"])
        self.assertEqual(completed("check", "--wa"), ["--wait"])
        self.assertEqual(completed("nonsense", ""), [])

    def test_optionsBeforeTheCommand_doNotHideIt(self):
        self.assertEqual(sorted(completed("--mac-root", "check", "watchlist", "")), sorted(commands_below("watchlist")))
        self.assertIn("--limit", completed("--mac-root", "/", "history", "-"))

    def test_foldersAndFiles_areOfferedWhereTheyAreMeant(self):
        with tempfile.TemporaryDirectory() as folder:
            (Path(folder) / "Client work").mkdir()
            (Path(folder) / "proof.json").touch()
            for words in (["check"], ["check", "x"], ["watchlist", "add"], ["--mac-root"], ["check", "--wait"]):
                self.assertEqual(completed(*words, "", folder=folder), ["Client work"], words)
            self.assertEqual(sorted(completed("export", "", folder=folder)), ["Client work", "proof.json"])
            self.assertEqual(completed("status", "", folder=folder), [])
            self.assertEqual(completed("coverage", "Cl", folder=folder), ["Client work"])
            self.assertEqual(sorted(completed("coverage", "forget", "", folder=folder)), ["Client work", "proof.json"])


class ZshCompletionTest(unittest.TestCase):
    def test_everyCommandAndOption_isNamed(self):
        text = (LINUX / "cirrovanectl.zsh").read_text()
        for command in all_commands():
            self.assertRegex(text, rf"\b{command[-1]}\b")
            for option in options_of("cirrovanectl", *command):
                self.assertIn(option, text, command)


class ManualTest(unittest.TestCase):
    def page(self, name):
        """The page as a reader sees it; whatever the formatter has to say is a mistake."""
        run = subprocess.run(
            ["groff", "-ww", "-man", "-Tutf8", "-P-cbou", "-rLL=200n", LINUX / f"{name}.1"],
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
            env={**os.environ, "LC_ALL": "C.UTF-8"},
        )  # fmt: skip
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        return run.stdout

    def test_page_isFormattedWithoutAWarning(self):
        for name in ("cirrovane", "cirrovanectl"):
            self.assertIn("SYNOPSIS", self.page(name))

    def test_everyOptionOfTheWindow_isDescribed(self):
        if not (programs / "cirrovane").exists():
            self.skipTest("built without the window")
        for option in options_of("cirrovane"):
            self.assertRegex(self.page("cirrovane"), rf"(?m)^ +(?:-h, )?{option}\b")

    def test_everyCommandAndItsOptions_areDescribed(self):
        page = self.page("cirrovanectl")
        for command in all_commands():
            self.assertRegex(page, rf"(?m)^ +{' '.join(command)}\b")
            for option, values in options_of("cirrovanectl", *command).items():
                self.assertRegex(page, rf"(?m)^ +(?:-h, )?{option}\b")
                for value in values:
                    self.assertRegex(page, rf"\b{value}\b")
        for option in options_of("cirrovanectl"):
            self.assertRegex(page, rf"(?m)^ +(?:-h, )?{option}\b")


if __name__ == "__main__":
    programs = Path(sys.argv.pop(1))
    unittest.main()
