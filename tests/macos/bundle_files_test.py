#!/usr/bin/env python3
"""Checks what the bundles for macOS say of themselves: bundle_files_test.py BUILD_FOLDER VERSION BUILD_NUMBER"""

import pathlib
import plistlib
import sys
import unittest

TREE = pathlib.Path(__file__).resolve().parent.parent.parent
BUILD, VERSION, BUILD_NUMBER = pathlib.Path(sys.argv[1]), *sys.argv[2:4]


def read(path: pathlib.Path) -> dict:
    with path.open("rb") as file:
        return plistlib.load(file)


class BundleFilesTest(unittest.TestCase):
    def setUp(self):
        self.info = read(BUILD / "macos" / "Info.plist")

    def test_version_is_that_of_the_build(self):
        for info in (self.info, read(BUILD / "macos" / "cirrovanectl-Info.plist")):
            self.assertEqual(info["CFBundleShortVersionString"], VERSION)
            self.assertEqual(info["CFBundleVersion"], BUILD_NUMBER)

    def test_keys_of_updates_are_texts(self):
        for key in ("SUFeedURL", "SUPublicEDKey", "CirrovaneReleasesURL"):
            self.assertIsInstance(self.info[key], str, key)

    def test_identity(self):
        self.assertEqual(self.info["CFBundleIdentifier"], "com.quillmere.Cirrovane")
        self.assertEqual(self.info["CFBundleExecutable"], "Cirrovane")
        self.assertEqual(self.info["CFBundlePackageType"], "APPL")
        self.assertEqual(self.info["NSPrincipalClass"], "NSApplication")
        # With one identifier for both, the tool would write over the application's settings.
        self.assertNotEqual(read(BUILD / "macos" / "cirrovanectl-Info.plist")["CFBundleIdentifier"].lower(),
                            self.info["CFBundleIdentifier"].lower())

    def test_each_request_for_a_folder_is_explained(self):
        for kind in ("DesktopFolder", "DocumentsFolder", "DownloadsFolder", "FileProviderDomain"):
            self.assertIn("Cirrovane reads", self.info[f"NS{kind}UsageDescription"])

    def test_oldest_system_is_the_one_that_the_sources_are_checked_for(self):
        target = (TREE / "tests" / "macos" / "type_check.py").read_text(encoding="utf-8")
        self.assertIn(f'"arm64-apple-macos{self.info["LSMinimumSystemVersion"].removesuffix(".0")}"', target)

    def test_request_to_send_events_is_explained(self):
        self.assertIn("Cirrovane puts this Mac to sleep", self.info["NSAppleEventsUsageDescription"])

    def test_entitlements_are_no_more_than_the_engine_and_the_gate_need(self):
        self.assertEqual(read(TREE / "packaging" / "macos" / "Cirrovane.entitlements"),
                         {"com.apple.security.automation.apple-events": True,
                          "com.apple.security.cs.allow-jit": True})


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
