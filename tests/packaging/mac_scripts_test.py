#!/usr/bin/python3
"""The scripts that make and sign the Mac's packages, with a Mac's own programs played by scripts.

  mac_scripts_test.py DRAW_ICON
"""

import os
import plistlib
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parent))

from mach_o import (  # noqa: E402
    INSTALL_NAME_TOOL, OTOOL, write_application, write_code, write_framework, write_information,
)  # fmt: skip

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
        for name in ("sign-and-notarize", "bundle"):
            shutil.copy(SCRIPTS / name, self.script.parent)
        (self.tree / "packaging/macos/Cirrovane.entitlements").touch()
        (self.tree / "build/release").mkdir(parents=True)
        (self.tree / "build/release/CPackConfig.cmake").touch()
        app = self.folder / "made/Cirrovane.app"
        write_application(app, "@executable_path/../Frameworks/Qt.framework/Versions/A/Qt")
        write_framework(app / "Contents/Frameworks", "Qt")
        write_code(app / "Contents/Frameworks/a b.dylib")
        (app / "Contents/Resources").mkdir()
        (app / "Contents/Resources/Cirrovane.icns").touch()
        self.play("cmake", f'mkdir -p "$4" && cp -a "{app}" "$4"')
        self.play("otool", OTOOL)
        self.play("cpack", "mkdir -p build/release/packages; touch build/release/packages/Cirrovane.dmg")
        for program in ("codesign", "xcrun", "spctl"):
            self.play(program)

    def signed(self):
        return [Path(call[-1]).name for call in self.calls("codesign") if "--sign" in call]

    def test_everyProgram_isSigned_theApplicationAfterWhatIsInIt(self):
        result = self.run_script(self.script, *WHO)
        self.assertEqual(result.returncode, 0, result.stderr)
        signed = self.signed()
        self.assertEqual(sorted(signed), sorted(["a b.dylib", "Qt.framework", "cirrovanectl", "Cirrovane.app", "Cirrovane.dmg"]))
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

    def test_applicationThatAsksForMoreThanItHas_isNotPacked(self):
        write_application(self.folder / "made/Cirrovane.app", "@rpath/QtGui.framework/Versions/A/QtGui")
        result = self.run_script(self.script, *WHO)
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("@rpath/QtGui.framework", result.stderr)
        self.assertEqual(self.calls("cpack"), [])

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


class BundleTest(ScriptTest):
    def setUp(self):
        super().setUp()
        self.play("otool", OTOOL)
        self.play("install_name_tool", INSTALL_NAME_TOOL)
        self.play("codesign")
        self.app = self.folder / "Cirrovane.app"
        self.frameworks = self.app / "Contents/Frameworks"

    def bundle(self, action, *arguments):
        return self.run_script(SCRIPTS / "bundle", action, self.app, *arguments)

    def assert_sound(self):
        result = self.bundle("check")
        self.assertEqual((result.returncode, result.stderr), (0, ""), result.stdout)

    def assert_amiss(self, *expected):
        result = self.bundle("check")
        self.assertEqual((result.returncode, result.stderr), (1, ""))
        self.assertEqual(result.stdout.splitlines(), list(expected))


class BundleCheckTest(BundleTest):
    def test_bundleWithAllItAsksFor_isSound(self):
        write_application(self.app, "@rpath/QtCore.framework/Versions/A/QtCore", "@executable_path/../Frameworks/libz.1.dylib",
                          "/System/Library/Frameworks/AppKit.framework/Versions/C/AppKit",
                          search_paths=["@executable_path/../Frameworks"])  # fmt: skip
        write_framework(self.frameworks, "QtCore", "@loader_path/../../../libz.1.dylib",
                        identity="@rpath/QtCore.framework/Versions/A/QtCore")  # fmt: skip
        write_code(self.frameworks / "libz.1.dylib", identity="@executable_path/../Frameworks/libz.1.dylib",
                   processors=("x86_64", "arm64"))  # fmt: skip
        self.assert_sound()

    def test_referenceThatNothingResolves_isFound(self):
        write_application(self.app, "@rpath/QtCore.framework/Versions/A/QtCore")
        write_framework(self.frameworks, "QtCore", identity="@rpath/QtCore.framework/Versions/A/QtCore")
        # The library is there, but no search path leads to it.
        self.assert_amiss(
            "Contents/MacOS/Cirrovane asks for what is not in the bundle: @rpath/QtCore.framework/Versions/A/QtCore"
        )

    def test_programsSearchPaths_holdForItsLibraries(self):
        write_application(self.app, search_paths=["@executable_path/../Frameworks"])
        write_framework(self.frameworks, "QtCore", identity="@rpath/QtCore.framework/Versions/A/QtCore")
        write_code(self.app / "Contents/PlugIns/libqcocoa.dylib", "@rpath/QtCore.framework/Versions/A/QtCore")
        self.assert_sound()

    def test_pathsOfTheBuildMachine_areFound(self):
        write_application(self.app, "/opt/homebrew/opt/fmt/lib/libfmt.11.dylib", search_paths=["/opt/homebrew/lib"])
        write_code(self.frameworks / "libfmt.11.dylib", identity="/opt/homebrew/opt/fmt/lib/libfmt.11.dylib")
        machine = "has a path of the build machine:"
        self.assert_amiss(
            f"Contents/Frameworks/libfmt.11.dylib {machine} /opt/homebrew/opt/fmt/lib/libfmt.11.dylib",
            f"Contents/MacOS/Cirrovane {machine} /opt/homebrew/lib",
            f"Contents/MacOS/Cirrovane {machine} /opt/homebrew/opt/fmt/lib/libfmt.11.dylib",
        )

    def test_oneProcessorOfSeveral_isEnough(self):
        write_application(self.app)
        file = write_code(self.frameworks / "libz.dylib", processors=("x86_64", "arm64"))
        content = file.read_bytes()
        first = content.index(b"/usr/lib/", content.index(b"(architecture arm64)"))
        file.write_bytes(content[:first] + content[first:].replace(b"/usr/lib/", b"/Users/jane/lib/", 1))
        self.assert_amiss("Contents/Frameworks/libz.dylib has a path of the build machine: /Users/jane/lib/libSystem.B.dylib")

    def test_referenceOutOfTheBundle_isFound(self):
        write_application(self.app, "@executable_path/../../../lib/libz.dylib")
        write_code(self.folder / "lib/libz.dylib")
        self.assert_amiss(
            "Contents/MacOS/Cirrovane asks for what is not in the bundle: @executable_path/../../../lib/libz.dylib"
        )

    def test_toolThatAsksForTheApplicationsLibraries_isFound(self):
        sparkle = "@rpath/Sparkle.framework/Versions/B/Sparkle"
        write_application(self.app, search_paths=["@executable_path/../Frameworks"])
        write_code(self.frameworks / "Sparkle.framework/Versions/B/Sparkle", identity=sparkle)
        write_code(self.app / "Contents/MacOS/cirrovanectl", sparkle)
        self.assert_amiss(f"Contents/MacOS/cirrovanectl asks for more than the system's libraries: {sparkle}")

    def test_libraryThatNeedsANewerSystem_isFound(self):
        write_application(self.app)
        write_code(self.frameworks / "libz.dylib", oldest="14.4")
        write_code(self.frameworks / "liby.dylib", oldest="13.0.0")
        self.assert_amiss("Contents/Frameworks/libz.dylib needs macOS 14.4, the bundle claims 13.0")

    def test_linkOutOfTheBundle_isFound(self):
        write_application(self.app)
        (self.app / "Contents/Resources").mkdir()
        (self.app / "Contents/Resources/qml").symlink_to("/opt/homebrew/share/qt/qml")
        self.assert_amiss("Contents/Resources/qml is a link that leads out of the bundle, or nowhere")

    def test_noProgram_isFound(self):
        write_application(self.app).unlink()
        self.assertEqual(self.bundle("check").returncode, 1)

    def test_noBundle_isRefused(self):
        self.assertEqual(self.bundle("check").returncode, 2)

    def test_otoolThatFails_isAnError(self):
        write_application(self.app)
        self.play("otool", "echo broken >&2; exit 1")
        result = self.bundle("check")
        self.assertEqual(result.returncode, 3)
        self.assertIn("broken", result.stderr)


class BundleCompleteTest(BundleTest):
    """A bundle as Qt's own tool leaves it with Homebrew's Qt, whose libraries are read-only and behind links."""

    def setUp(self):
        super().setUp()
        self.homebrew = self.folder / "homebrew"
        cellar = self.homebrew / "Cellar/qtbase/6.9.1/lib"
        gui, core = (f"@rpath/{name}.framework/Versions/A/{name}" for name in ("QtGui", "QtCore"))
        for name, references in (("QtCore", ["@loader_path/../../../../../../../opt/pcre2/lib/libpcre2-16.0.dylib"]),
                                 ("QtGui", [core])):  # fmt: skip
            program = write_framework(cellar, name, *references, oldest="15.0", search_paths=["@loader_path/../../../"],
                                      identity=f"@rpath/{name}.framework/Versions/A/{name}")  # fmt: skip
            (program.parents[2] / "Headers").mkdir()
            program.chmod(0o444)
            (self.homebrew / "lib").mkdir(exist_ok=True)
            (self.homebrew / f"lib/{name}.framework").symlink_to(cellar / f"{name}.framework")
        # Kept out of the common folder, because the system brings one along.
        write_code(self.homebrew / "Cellar/pcre2/10.45/lib/libpcre2-16.0.dylib", oldest="15.0",
                   identity=f"{self.homebrew}/opt/pcre2/lib/libpcre2-16.0.dylib")  # fmt: skip
        (self.homebrew / "opt").mkdir()
        (self.homebrew / "opt/pcre2").symlink_to(self.homebrew / "Cellar/pcre2/10.45")
        write_application(self.app, "@executable_path/../Frameworks/QtGui.framework/Versions/A/QtGui",
                          search_paths=[str(self.homebrew / "lib"), "@executable_path/../Frameworks"])  # fmt: skip
        write_framework(self.frameworks, "QtGui", core, oldest="15.0")
        self.plugin = write_code(self.app / "Contents/PlugIns/platforms/libqcocoa.dylib", gui, core, oldest="15.0",
                                 search_paths=["@loader_path/../../../../lib"])  # fmt: skip

    def complete(self):
        result = self.bundle("complete", self.homebrew / "lib")
        self.assertEqual((result.returncode, result.stderr), (0, ""))

    def test_bundleThatQtLeaves_isAmissAndThenSound(self):
        self.assertEqual(self.bundle("check").returncode, 1)
        self.complete()
        self.assert_sound()

    def test_missingLibraries_areCopiedWithWhatTheyAskFor(self):
        self.complete()
        core = self.frameworks / "QtCore.framework"
        self.assertTrue((core / "Versions/A/QtCore").is_file())
        self.assertEqual(os.readlink(core / "Versions/Current"), "A")
        self.assertFalse((core / "Headers").exists())
        self.assertTrue(os.stat(core / "Versions/A/QtCore").st_mode & 0o200)
        self.assertTrue((self.frameworks / "libpcre2-16.0.dylib").is_file())

    def test_whatIsCopied_leavesItsSourceAsItWas(self):
        before = {path: path.read_bytes() for path in self.homebrew.rglob("*") if path.is_file()}
        self.complete()
        self.assertEqual({path: path.read_bytes() for path in self.homebrew.rglob("*") if path.is_file()}, before)

    def test_oldestSystem_isThatOfTheLibraries(self):
        self.complete()
        information = plistlib.loads((self.app / "Contents/Info.plist").read_bytes())
        self.assertEqual(information, {"CFBundleExecutable": "Cirrovane", "LSMinimumSystemVersion": "15.0"})

    def test_bundleThatIsWhole_isLeftAlone(self):
        self.complete()
        self.calls_file.write_text("")
        before = (self.app / "Contents/Info.plist").read_bytes()
        self.complete()
        self.assertEqual(self.calls("install_name_tool"), [])
        self.assertEqual((self.app / "Contents/Info.plist").read_bytes(), before)

    def test_libraryThatIsNowhere_isLeftForTheCheckToFind(self):
        write_code(self.plugin, "@rpath/QtDBus.framework/Versions/A/QtDBus", oldest="15.0")
        self.complete()
        self.assert_amiss("Contents/PlugIns/platforms/libqcocoa.dylib asks for what is not in the bundle: "
                          "@rpath/QtDBus.framework/Versions/A/QtDBus")  # fmt: skip


class BundleSignTest(BundleTest):
    def setUp(self):
        super().setUp()
        write_application(self.app)

    def signed(self, *arguments):
        result = self.bundle("sign", *arguments)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        return self.calls("codesign")

    def test_development_isSignedAdHoc_theToolFirst(self):
        calls = self.signed()
        names = [Path(call[-1]).name for call in calls]
        self.assertEqual(names, ["cirrovanectl", "Cirrovane.app"])
        for call in calls:
            self.assertEqual(call[:-1], ["--force", "--sign", "-"])

    def test_nestedServices_areSignedBeforeWhatHoldsThem_andKeepTheirEntitlements(self):
        sparkle = self.frameworks / "Sparkle.framework"
        version = sparkle / "Versions/B"
        write_code(version / "Sparkle")
        write_code(version / "Autoupdate")
        (sparkle / "Versions/Current").symlink_to("B")
        for name in ("Sparkle", "Autoupdate", "XPCServices", "Updater.app"):
            (sparkle / name).symlink_to(f"Versions/Current/{name}")
        for bundle in ("XPCServices/Downloader.xpc", "XPCServices/Installer.xpc", "Updater.app"):
            name = Path(bundle).stem
            write_information(version / bundle, name)
            write_code(version / bundle / "Contents/MacOS" / name)
        calls = self.signed("--identity", IDENTITY, "--entitlements", "a.entitlements")
        names = [Path(call[-1]).name for call in calls]
        self.assertEqual(names, ["Downloader.xpc", "Installer.xpc", "Autoupdate", "Updater.app", "Sparkle.framework",
                                 "cirrovanectl", "Cirrovane.app"])  # fmt: skip
        for name, call in zip(names, calls):
            self.assertEqual(call[:-1][:6], ["--force", "--sign", IDENTITY, "--timestamp", "--options", "runtime"])
            keeps = ["--preserve-metadata=entitlements"] if name.endswith((".xpc", "Updater.app")) else []
            own = ["--entitlements", "a.entitlements"] if name == "Cirrovane.app" else []
            self.assertEqual(call[6:-1], keeps + own, name)

    def test_signatureThatFails_endsIt(self):
        self.play("codesign", 'case ${!#} in *ctl) echo "no identity" >&2; exit 1 ;; esac')
        result = self.bundle("sign")
        self.assertEqual(result.returncode, 3)
        self.assertIn("no identity", result.stderr)
        self.assertEqual(len(self.calls("codesign")), 1)


class RunTest(ScriptTest):
    """What ./run does on a Mac, in a tree of its own."""

    def setUp(self):
        super().setUp()
        self.tree = self.folder / "tree"
        (self.tree / "scripts").mkdir(parents=True)
        shutil.copy(SCRIPTS.parents[1] / "run", self.tree)
        for script in ("install-packages", "build"):
            (self.tree / "scripts" / script).write_text("#!/bin/sh\n")
            (self.tree / "scripts" / script).chmod(0o755)
        self.play("uname", "echo Darwin")
        self.play("open")
        tool = self.tree / "build/release/bin/cirrovanectl"
        tool.parent.mkdir(parents=True)
        tool.write_text(f'#!/bin/sh\nprintf "tool|%s\\n" "$*" >>"{self.calls_file}"\n')
        tool.chmod(0o755)

    def test_application_isOpenedAsTheSystemOpensIt(self):
        result = self.run_script(self.tree / "run")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.calls("open"), [["-W", "build/release/bin/Cirrovane.app"]])

    def test_arguments_areTheTools(self):
        self.assertEqual(self.run_script(self.tree / "run", "check", "--json").returncode, 0)
        self.assertEqual(self.calls("open"), [])
        self.assertEqual(self.calls("tool"), [["check --json"]])


class FirstHourTest(ScriptTest):
    """Of the steps on a Mac: that they pass where all is well, and that one that is not is told."""

    SCRIPT = SCRIPTS.parents[1] / "tests/macos/first-hour"
    REFUSED = '"safeToClose" : false, "details" : "The folder exists but cannot be read."'

    def setUp(self):
        super().setUp()
        self.app = self.folder / "Cirrovane.app"
        self.tool = self.app / "Contents/MacOS/cirrovanectl"
        self.tool.parent.mkdir(parents=True)
        self.check(self.REFUSED, 1)
        running = self.folder / "running"
        # Nothing is refused to root, whom the tests may run as; the tool is played in any case.
        self.play("id", "echo 501")
        self.play("plutil", "echo 1.2")
        self.play("codesign")
        self.play("getconf", f'echo "{self.folder}"')
        self.play("open", f"""[ "$1" != -n ] || exit 0
            touch "{self.folder}/cirrovane-501-abc.lock"
            sleep 60 </dev/null >/dev/null 2>&1 &
            echo $! >"{running}" """)
        self.play("pgrep", f'[ ! -e "{running}" ] || cat "{running}"')

    def check(self, refused, status):
        self.tool.write_text(
            f"#!/bin/bash\n[ $1 = check ] || {{ echo 'Cirrovane 1.2'; exit; }}\n"
            f"case $3 in */refused) echo '{refused}'; exit {status} ;; esac\n"
            "echo '\"safeToClose\" : false'; exit 1\n"
        )
        self.tool.chmod(0o755)

    def test_everythingAsItMustBe_passes(self):
        result = self.run_script(self.SCRIPT, self.app)
        self.assertEqual((result.returncode, result.stderr), (0, ""), result.stdout)
        self.assertEqual(len(result.stdout.splitlines()), 9, result.stdout)

    def test_refusalThatIsTakenForSafe_isTold(self):
        self.check('"safeToClose" : true', 0)
        result = self.run_script(self.SCRIPT, self.app)
        self.assertEqual(result.returncode, 1)
        self.assertIn("NOT AS IT MUST BE: a folder that may not be listed is a blocker", result.stdout)

    def test_signatureThatDoesNotHold_isTold(self):
        self.play("codesign", "exit 1")
        result = self.run_script(self.SCRIPT, self.app)
        self.assertEqual(result.returncode, 1)
        self.assertIn("NOT AS IT MUST BE: the signature", result.stdout)


if __name__ == "__main__":
    draw_icon = sys.argv.pop(1)
    unittest.main()
