#!/usr/bin/env python3
"""Checks what CMake would build on a Mac: configure_test.py LIBRARY_ARCHITECTURE

The tree is configured as on a Mac, with this machine's compiler and Qt, and nothing of it is built. What is looked at
is what the build would do, and in which order.
"""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

TREE = pathlib.Path(__file__).resolve().parent.parent.parent
ARCHITECTURE = sys.argv[1]
# What Qt asks for, and only a Mac's frameworks or another package offer.
LEFT_OUT = ("WrapOpenGL", "WrapVulkanHeaders")


def configure(folder: pathlib.Path, *arguments) -> subprocess.CompletedProcess:
    compilers = [f"-DCMAKE_{language}_COMPILER=/usr/bin/clang++-16" for language in ("CXX", "OBJCXX")]
    working = [f"-DCMAKE_{language}_COMPILER_WORKS=ON" for language in ("C", "CXX", "OBJCXX")]
    libraries = f"/usr/lib/{ARCHITECTURE}"
    return subprocess.run(
        ["cmake", "-S", TREE, "-B", folder, "-G", "Ninja", "-DCMAKE_SYSTEM_NAME=Darwin", "-DCMAKE_OSX_SYSROOT=",
         "-DCMAKE_C_COMPILER=/usr/bin/clang-16", *compilers, *working, "-DCMAKE_INSTALL_NAME_TOOL=/usr/bin/true",
         f"-DCMAKE_LIBRARY_ARCHITECTURE={ARCHITECTURE}", f"-DCMAKE_CXX_LIBRARY_ARCHITECTURE={ARCHITECTURE}",
         f"-DCMAKE_PREFIX_PATH={libraries}/cmake;{libraries};/usr", f"-DCMAKE_SYSTEM_PREFIX_PATH=/usr;{libraries}",
         *arguments], capture_output=True, text=True, check=False)  # fmt: skip


class ConfigureTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(temporary.cleanup)
        cls.folder = pathlib.Path(temporary.name)
        cls.modules = cls.folder / "modules"
        cls.modules.mkdir()
        for name in LEFT_OUT:
            (cls.modules / f"Find{name}.cmake").write_text(
                f"if(NOT TARGET {name}::{name})\n  add_library({name}::{name} INTERFACE IMPORTED)\nendif()\n"
                f"set({name}_FOUND ON)\n", encoding="utf-8")  # fmt: skip
        cls.sparkle = cls.folder / "Sparkle.framework"
        cls.sparkle.mkdir()
        cls.build = cls.folder / "build"
        result = configure(cls.build, f"-DCMAKE_MODULE_PATH={cls.modules}", f"-DCIRROVANE_SPARKLE={cls.sparkle}")
        assert result.returncode == 0, result.stderr

    def ninja(self, tool: str, target: str) -> list:
        return subprocess.run(["ninja", "-C", self.build, "-t", tool, target], capture_output=True, text=True,
                              check=True).stdout.splitlines()  # fmt: skip

    def installation(self, build: pathlib.Path) -> list:
        """What is done to the installed application, in order."""
        text = (build / "ui/cmake_install.cmake").read_text(encoding="utf-8")
        return re.findall(r"(?:run_on_installed\((\w+)|include\(.*(deploy)_)", text)

    def test_tool_links_nothing_of_the_application_alone(self):
        link = self.ninja("commands", "bin/cirrovanectl")[-1]
        self.assertIn("-o bin/cirrovanectl", link)
        for name in ("Sparkle", "UserNotifications", "platform_desktop", "Qt6"):
            self.assertNotIn(name, link)

    def test_application_links_the_framework_for_updates(self):
        commands = self.ninja("commands", "bin/Cirrovane.app/Contents/MacOS/Cirrovane")
        link = next(line for line in commands if "-o bin/Cirrovane.app/Contents/MacOS/Cirrovane" in line)
        self.assertIn("-framework -Xlinker Sparkle", link)

    def test_bundle_follows_each_of_its_parts(self):
        inputs = {line.strip() for line in self.ninja("query", "macos/bundle-finished")}
        for part in ("bin/cirrovanectl", "bin/Cirrovane.app/Contents/MacOS/Cirrovane", "macos/Info.plist",
                     "macos/Cirrovane.icns"):  # fmt: skip
            self.assertIn(part, inputs)

    def test_bundle_is_signed_when_everything_is_in_it(self):
        steps = self.ninja("commands", "cirrovane_bundle")[-1].split(" && ")
        names = [next(name for name in ("copy", "ditto", "sign", "touch") if f" {name} " in f" {step} ".replace("/", " "))
                 for step in steps[1:]]  # fmt: skip
        self.assertEqual(names, ["copy", "ditto", "sign", "touch"])
        self.assertIn("cirrovane_bundle", " ".join(self.ninja("query", "ui/all")))

    def test_installed_application_is_made_whole_signed_and_checked(self):
        self.assertEqual(self.installation(self.build), [("", "deploy"), ("complete", ""), ("sign", ""), ("check", "")])

    def test_package_manager_with_its_own_qt_gets_no_copy_of_it(self):
        build = self.folder / "undeployed"
        result = configure(build, f"-DCMAKE_MODULE_PATH={self.modules}", "-DCIRROVANE_DEPLOY=OFF")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.installation(build), [("sign", "")])

    def test_oldest_system_is_the_stated_one_everywhere(self):
        self.assertIn("-mmacosx-version-min=13.0", self.ninja("commands", "bin/cirrovanectl")[-1])

    def test_mac_without_qt_is_refused(self):
        result = configure(self.folder / "without")
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("Qt6", result.stderr)

    def test_window_that_nobody_wants_needs_no_qt(self):
        result = configure(self.folder / "windowless", "-DCIRROVANE_WINDOW=OFF")
        self.assertEqual(result.returncode, 0, result.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
