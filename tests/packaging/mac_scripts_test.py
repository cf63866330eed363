#!/usr/bin/python3
"""The scripts that make and sign the Mac's packages, with a Mac's own programs played by scripts.

  mac_scripts_test.py DRAW_ICON
"""

import os
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SCRIPTS = Path(__file__).resolve().parents[2] / "packaging/macos"
IDENTITY = "Developer ID Application: Jane Doe (ABCDE12345)"
WHO = ["--identity", IDENTITY, "--team", "ABCDE12345", "--profile", "notary"]
draw_icon = None


class ScriptTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = Path(temporary.name).resolve()
        self.calls_file = self.folder / "calls"
        self.calls_file.touch()

    def play(self, program, body=""):
        """Puts a program first on the path that writes down its name and arguments and then does the body."""
        path = self.folder / "programs" / program
        path.parent.mkdir(exist_ok=True)
        path.write_text(f'#!/bin/bash\n(printf "{program}"; printf "|%s" "$@"; echo) >>"{self.calls_file}"\n{body}\n')
        path.chmod(0o755)

    def run_script(self, script, *arguments):
        environment = {**os.environ, "PATH": f"{self.folder / 'programs'}:{os.environ['PATH']}"}
        return subprocess.run([script, *arguments], env=environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)

    def calls(self, program):
        lines = [line.split("|") for line in self.calls_file.read_text().splitlines()]
        return [line[1:] for line in lines if line[0] == program]


class IconTest(ScriptTest):
    def test_icon_isHandedOverInEverySizeOfAMac(self):
        self.play("iconutil", f'cp -r "${{!#}}" "{self.folder}/seen.iconset"; touch "$4"')
        result = self.run_script(SCRIPTS / "make-icns", draw_icon, self.folder / "Cirrovane.icns")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertTrue((self.folder / "Cirrovane.icns").exists())
        sizes = {}
        for picture in (self.folder / "seen.iconset").iterdir():
            content = picture.read_bytes()
            self.assertEqual(content[:8], b"\x89PNG\r\n\x1a\n")
            sizes[picture.name] = struct.unpack(">II", content[16:24])
        expected = {}
        for side in (16, 32, 128, 256, 512):
            expected[f"icon_{side}x{side}.png"] = (side, side)
            expected[f"icon_{side}x{side}@2x.png"] = (2 * side, 2 * side)
        self.assertEqual(sizes, expected)

    def test_pictureThatCannotBeDrawn_endsIt(self):
        self.play("iconutil")
        self.assertNotEqual(self.run_script(SCRIPTS / "make-icns", "false", self.folder / "a.icns").returncode, 0)
        self.assertEqual(self.calls("iconutil"), [])


class SigningTest(ScriptTest):
    def setUp(self):
        super().setUp()
        # A tree of its own, in which the build installs an application with something in it.
        self.tree = self.folder / "tree"
        (self.tree / "packaging/macos").mkdir(parents=True)
        self.script = self.tree / "packaging/macos/sign-and-notarize"
        shutil.copy(SCRIPTS / "sign-and-notarize", self.script)
        (self.tree / "packaging/macos/Cirrovane.entitlements").touch()
        (self.tree / "build/release").mkdir(parents=True)
        (self.tree / "build/release/CPackConfig.cmake").touch()
        self.play("cmake", """app=$4/Cirrovane.app/Contents
            mkdir -p $app/MacOS $app/Resources $app/Frameworks/Qt.framework/Versions/A
            touch $app/MacOS/Cirrovane $app/MacOS/cirrovanectl $app/Resources/Cirrovane.icns "$app/Frameworks/a b.dylib" \
              $app/Frameworks/Qt.framework/Versions/A/Qt""")
        self.play("file", 'case ${!#} in *.icns) echo "Mac OS X icon" ;; *) echo "Mach-O 64-bit" ;; esac')
        self.play("cpack", "mkdir -p build/release/packages; touch build/release/packages/Cirrovane.dmg")
        for program in ("codesign", "xcrun", "spctl"):
            self.play(program)

    def signed(self):
        return [Path(call[-1]).name for call in self.calls("codesign") if "--sign" in call]

    def test_everyProgram_isSigned_theApplicationAfterWhatIsInIt(self):
        result = self.run_script(self.script, *WHO)
        self.assertEqual(result.returncode, 0, result.stderr)
        signed = self.signed()
        self.assertEqual(sorted(signed), sorted(["a b.dylib", "Qt", "Qt.framework", "cirrovanectl", "Cirrovane.app", "Cirrovane.dmg"]))
        self.assertLess(signed.index("Qt"), signed.index("Qt.framework"))
        self.assertEqual(signed[-2:], ["Cirrovane.app", "Cirrovane.dmg"])
        for call in self.calls("codesign"):
            if "--sign" in call:
                self.assertEqual(call[call.index("--sign") + 1], IDENTITY)
                self.assertEqual("runtime" in call, not call[-1].endswith(".dmg"))
                self.assertEqual("--entitlements" in call, call[-1].endswith(".app"))

    def test_image_isNotarisedAndStapled_andItsPathPrinted(self):
        result = self.run_script(self.script, *WHO)
        image = f"{self.tree}/build/release/packages/Cirrovane.dmg"
        self.assertEqual(result.stdout, image + "\n")
        submit, staple = self.calls("xcrun")
        self.assertEqual(submit, ["notarytool", "submit", image, "--keychain-profile", "notary", "--team-id", "ABCDE12345", "--wait"])
        self.assertEqual(staple, ["stapler", "staple", image])

    def test_signatureThatFails_endsItBeforeAnythingIsPacked(self):
        self.play("codesign", 'case ${!#} in *.dylib) exit 1 ;; esac')
        self.assertNotEqual(self.run_script(self.script, *WHO).returncode, 0)
        self.assertEqual(self.calls("cpack"), [])
        self.assertEqual(self.calls("xcrun"), [])

    def test_notaryThatRefuses_endsItWithoutAnImage(self):
        self.play("xcrun", "exit 1")
        result = self.run_script(self.script, *WHO)
        self.assertNotEqual(result.returncode, 0)
        self.assertEqual(result.stdout, "")
        self.assertEqual(len(self.calls("xcrun")), 1)

    def test_missingOrWrongArguments_areRefusedBeforeAnythingIsDone(self):
        wrong = [[], WHO[:4], WHO[2:], WHO[:2] + WHO[4:], [*WHO, "--more"], [*WHO, "--build"], [*WHO, "--team", "ZZZZZ99999"]]
        for arguments in wrong:
            result = self.run_script(self.script, *arguments)
            self.assertEqual(result.returncode, 2, arguments)
            self.assertIn("usage:", result.stderr)
        self.assertEqual(self.calls_file.read_text(), "")

    def test_help_isPrinted(self):
        result = self.run_script(self.script, "--help")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        for option in ("--identity", "--team", "--profile", "--build"):
            self.assertIn(option, result.stdout)

    def test_noBuild_isRefused(self):
        (self.tree / "build/release/CPackConfig.cmake").unlink()
        result = self.run_script(self.script, *WHO)
        self.assertEqual(result.returncode, 3)
        self.assertIn("no build", result.stderr)


if __name__ == "__main__":
    draw_icon = sys.argv.pop(1)
    unittest.main()
