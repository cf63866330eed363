#!/usr/bin/env python3
"""Proves that check-darwin sees mistakes that a Mac alone would show: planted_test.py BUILD_FOLDER

Each is planted in a copy of one source, which is compiled as the build compiled the source, or linked in its place. One
that finds nothing to replace fails, lest a test go blind when the sources change.
"""

import json
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
TREE = HERE.parent.parent.parent
BUILD = pathlib.Path(sys.argv.pop(1)).resolve()
COMMANDS = json.loads((BUILD / "compile_commands.json").read_text(encoding="utf-8"))
PLACE = re.compile(r" -o (\S+) -c (\S+)$")
LINK = re.compile(r"/usr/bin/python3 \S*link\.py\S* .*?(?= && |$)")


class PlantedTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def plant(self, path: str, *replacements) -> pathlib.Path:
        """A copy of a file of the tree, with a mistake in it: each pair's first text replaced by its second."""
        text = (TREE / path).read_text(encoding="utf-8")
        for right, wrong in replacements:
            self.assertIn(right, text, f"nothing to replace in {path}")
            text = text.replace(right, wrong)
        copy = self.folder / pathlib.PurePath(path).name
        copy.write_text(text, encoding="utf-8")
        return copy

    def command(self, path: str) -> str:
        """How the build compiled the file, or what it joined with the file's neighbours."""
        for entry in COMMANDS:
            if pathlib.Path(entry["file"]) == TREE / path:
                return entry["command"]
        for entry in COMMANDS:
            file = pathlib.Path(entry["file"])
            if "Unity" in file.parts and str(TREE / path) in file.read_text(encoding="utf-8"):
                return entry["command"]
        return self.fail(f"a Mac builds no {path}")

    def compile(self, path: str, copy: pathlib.Path, how: str) -> subprocess.CompletedProcess:
        command = PLACE.sub("", self.command(path))
        return subprocess.run([*shlex.split(command), *shlex.split(how), str(copy)], cwd=BUILD, capture_output=True,
                              text=True, check=False)

    def assert_not_compiled(self, path: str, diagnostic: str, *replacements):
        result = self.compile(path, self.plant(path, *replacements), "-fsyntax-only")
        self.assertNotEqual(result.returncode, 0, result.stderr)
        self.assertIn(diagnostic, result.stderr)
        print("\n".join(line.partition("error: ")[2] for line in result.stderr.splitlines() if diagnostic in line))

    def link(self, program: str, *, change=lambda command: command) -> subprocess.CompletedProcess:
        """Links a program of the build once more, elsewhere, by a changed command."""
        commands = subprocess.run(["ninja", "-C", str(BUILD), "-t", "commands", "-s", f"bin/{program}"],
                                  capture_output=True, text=True, check=True).stdout
        command = change(LINK.search(commands).group()).replace(f" bin/{program} ", f" {self.folder / program} ")
        return subprocess.run(shlex.split(command), cwd=BUILD, capture_output=True, text=True, check=False)

    def assert_not_linked(self, program: str, path: str, symbol: str, *replacements):
        made = self.folder / "planted.o"
        result = self.compile(path, self.plant(path, *replacements), f"-c -o {made}")
        self.assertEqual(result.returncode, 0, result.stderr)
        result = self.link(program, change=lambda command: command.replace(" -- ", f" {made} -- "))
        self.assertNotEqual(result.returncode, 0, result.stderr)
        self.assertIn(f"{symbol}: not in frameworks.txt", result.stderr)
        print(f"{program} lacks {symbol}")

    def test_copy_without_mistake_is_compiled_and_linked(self):
        made = self.folder / "planted.o"
        result = self.compile("platform/posix/HostCondition.cpp", self.plant("platform/posix/HostCondition.cpp"), f"-c -o {made}")
        self.assertEqual(result.returncode, 0, result.stderr)
        result = self.link("cirrovanectl", change=lambda command: command.replace(" -- ", f" {made} -- "))
        self.assertEqual(result.returncode, 0, result.stderr)

    def test_join_without_its_header(self):
        self.assert_not_compiled("cli/DiagnoseCommand.cpp", "no member named 'join' in namespace 'fmt'",
                                 ("#include <fmt/ranges.h>\n", ""))

    def test_thread_that_joins_itself_in_test(self):
        self.assert_not_compiled("tests/platform/ThreadExecutorTest.cpp", "no member named 'jthread'",
                                 ("std::vector<std::thread>", "std::vector<std::jthread>"))

    def test_function_whose_header_differs(self):
        self.assert_not_compiled("tests/support/TemporaryFolder.cpp", "use of undeclared identifier 'mkdtemp'",
                                 ("#include <unistd.h>\n", ""))

    def test_call_of_linux_alone(self):
        self.assert_not_compiled("platform/posix/ChildProcess.cpp", "use of undeclared identifier 'pipe2'",
                                 ("if (pipe(ends.data()) != 0)", "if (pipe2(ends.data(), O_CLOEXEC) != 0)"))

    def test_clock_of_linux_alone(self):
        self.assert_not_compiled("platform/posix/MonotonicClock.cpp", "use of undeclared identifier 'CLOCK_BOOTTIME'",
                                 ("kWithSleep = CLOCK_MONOTONIC;", "kWithSleep = CLOCK_BOOTTIME;"))

    def test_header_of_linux_alone(self):
        self.assert_not_compiled("platform/posix/HostCondition.cpp", "'sys/sysinfo.h' file not found",
                                 ("#include <cstdlib>\n", "#include <cstdlib>\n#include <sys/sysinfo.h>\n"))

    def test_part_of_the_library_that_came_later(self):
        self.assert_not_compiled("platform/posix/HostCondition.cpp", "'to_chars' is unavailable",
                                 ("#include <cstdlib>\n", "#include <charconv>\n#include <cstdlib>\n"),
                                 ("  std::array<double, 3> samples{};",
                                  "  std::array<double, 3> samples{};\n"
                                  "  char text[32]{};\n  std::to_chars(text, text + 32, samples[0]);"))

    def test_block_where_the_real_dispatch_wants_a_queue(self):
        self.assert_not_compiled("platform/macos/MacSystemInformation.mm",
                                 "no matching function for call to 'dispatch_sync'",
                                 ("dispatch_sync(dispatch_get_main_queue(), ask)", "dispatch_sync(ask, ask)"))

    def test_attribute_call_that_a_mac_lacks(self):
        self.assert_not_linked(
            "macos_tests", "tests/support/TemporaryFolder.cpp", "_lsetxattr",
            ("namespace cirrovane::test {\n",
             'extern "C" int lsetxattr(const char*, const char*, const void*, size_t, int);\n'
             "namespace cirrovane::test {\n"),
            ("  fs::create_directories(parent);",
             '  fs::create_directories(parent);\n  lsetxattr(parent.c_str(), "a", "b", 1, 0);'))

    def test_symbol_that_a_mac_lacks(self):
        self.assert_not_linked("cirrovanectl", "platform/posix/HostCondition.cpp", "_sysinfo",
                               ("namespace cirrovane {\n", 'extern "C" int sysinfo(void*);\nnamespace cirrovane {\n'),
                               ("  std::array<double, 3> samples{};",
                                "  std::array<double, 3> samples{};\n  sysinfo(samples.data());"))

    def test_formatting_that_is_not_compiled_in(self):
        made = self.folder / "planted.o"
        result = self.compile("cli/LocalTime.cpp", self.plant("cli/LocalTime.cpp"), f"-UFMT_HEADER_ONLY -c -o {made}")
        self.assertEqual(result.returncode, 0, result.stderr)
        # By itself, since the other objects have formatting of their own.
        result = self.link("cirrovanectl", change=lambda command: f"{command.partition(' bin/')[0]} {self.folder / 'alone'} {made} --")
        self.assertNotEqual(result.returncode, 0, result.stderr)
        self.assertRegex(result.stderr, r"_ZN3fmt\w+vformat\w+: not in frameworks.txt")

    def test_framework_that_is_not_linked(self):
        result = self.link("cirrovanectl", change=lambda command: command.replace("-framework IOKit", ""))
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("_IOPSCopyPowerSourcesInfo: IOKit is not linked", result.stderr)


if __name__ == "__main__":
    unittest.main(verbosity=0)
