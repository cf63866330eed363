#!/usr/bin/env python3
"""Tests scripts/check-pictures on a small tree."""

import os
import pathlib
import subprocess
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "scripts/check-pictures"


class PicturesCheck(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = pathlib.Path(folder.name)
        for name in ("ui/qml/components", "ui/symbols", "docs/images"):
            (self.tree / name).mkdir(parents=True)
        self.page = self.tree / "ui/qml/components/Page.qml"
        self.page.write_text("Item {\n    width: 1\n}\n", encoding="utf-8")
        self.assertEqual(self.check("--record"), 0)

    def check(self, *arguments: str) -> int:
        environment = {**os.environ, "CIRROVANE_TREE": str(self.tree)}
        return subprocess.run([SCRIPT, *arguments], env=environment, stdout=subprocess.DEVNULL, check=False).returncode

    def test_screens_as_they_were_pass(self):
        self.assertEqual(self.check(), 0)

    def test_comments_and_layout_pass(self):
        self.page.write_text("// A page.\nItem {\n\n  width: 1\n}\n", encoding="utf-8")
        self.assertEqual(self.check(), 0)

    def test_changed_screen_fails_until_recorded(self):
        self.page.write_text("Item {\n    width: 2\n}\n", encoding="utf-8")
        self.assertEqual(self.check(), 1)
        self.assertEqual(self.check("--record"), 0)
        self.assertEqual(self.check(), 0)

    def test_new_symbol_and_page_that_went_fail(self):
        (self.tree / "ui/symbols/a.svg").write_text("<svg/>", encoding="utf-8")
        self.assertEqual(self.check(), 1)
        self.check("--record")
        self.page.unlink()
        self.assertEqual(self.check(), 1)

    def test_no_record_fails(self):
        (self.tree / "docs/images/made-from.txt").unlink()
        self.assertEqual(self.check(), 1)


if __name__ == "__main__":
    unittest.main()
