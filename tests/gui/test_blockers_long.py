"""That the sheet of all blockers holds half a million without a halt of the window. It takes minutes."""

import itertools
import os
import sys
from pathlib import Path

import pytest
from Xlib import X
from Xlib.ext import xtest

from test_blockers import SEARCH, SHEET, pick, rows

sys.path.insert(0, str(Path(__file__).parents[2] / "bench"))
from windows import gaps  # noqa: E402

FILES, FOLDERS = 500_000, 2_500
# No longer than this may the event loop stand still. Counted is for how long its thread was at work: what else the
# machine does is nobody's fault here.
LONGEST = 0.050
# What a user does one after the other in the list: keys, and the wheel.
WHEEL_DOWN, WHEEL_UP = 5, 4
STEPS = ["Down", "Next", "Next", WHEEL_DOWN, WHEEL_DOWN, "End", WHEEL_UP, WHEEL_UP, "Prior", "Home"]
ROUNDS = 30
# How often it is asked while it sorts or narrows.
LOOKS = 1500


def make_pending(mac):
    """Half a million files that wait for their upload, each as the one that the demo Mac is told of."""
    top = mac.home / "Library/Mobile Documents/com~apple~CloudDocs/Client Work/Pending"
    top.mkdir()
    template = top / "template"
    template.touch()
    mac.set_file(template, isUbiquitous="true", isUploaded="false", downloadingStatus="current")
    attributes = {key: os.getxattr(template, key) for key in os.listxattr(template)}
    template.unlink()
    for folder in range(FOLDERS):
        (top / f"{folder:04}").mkdir()
        for number in range(FILES // FOLDERS):
            path = top / f"{folder:04}" / f"file {number:03}.txt"
            os.close(os.open(path, os.O_CREAT | os.O_WRONLY))
            for key, value in attributes.items():
                os.setxattr(path, key, value)


def is_settled(application):
    return not application.is_scanning() and application.mac.history


@pytest.fixture(scope="module")
def sheet(shared_launcher):
    """The application with the sheet of very many blockers. Each test leaves it to the next."""
    mac = shared_launcher.make_mac()
    make_pending(mac)
    application = shared_launcher.launch(mac, CIRROVANE_DEMO_TAB="overview").ready()
    application.wait_until(lambda: is_settled(application), "the end of the scan", seconds=300)
    application.resize_content(1280, 900)
    application.press("push button", "Show All")
    application.node("text", SEARCH, SHEET, focused=True)
    application.wait_until(lambda: rows(application), "rows")
    return application


def test_halfAMillionBlockers_scrollWithoutAHalt(sheet, desktop, capsys):
    window = sheet.wait_for_window()
    sheet.keys("Down")
    x, y, width, height = sheet.node("list", SHEET[1], SHEET).extents()
    xtest.fake_input(desktop.display, X.MotionNotify, x=x + width // 2, y=y + height // 2)
    steps = itertools.chain.from_iterable([STEPS] * ROUNDS)

    def scroll():
        step = next(steps, None)
        if isinstance(step, int):
            xtest.fake_input(desktop.display, X.ButtonPress, step)
            xtest.fake_input(desktop.display, X.ButtonRelease, step)
            desktop.display.sync()
        elif step:
            desktop.press_keys(step)
        return step is None

    answers = gaps(desktop.display, sheet.process, window, scroll)
    tell(capsys, "scrolling", answers)


@pytest.mark.parametrize("act", ["sort", "filter", "search"])
def test_halfAMillionBlockers_areSortedAndNarrowedWithoutAHalt(sheet, desktop, capsys, act):
    window = sheet.wait_for_window()
    if act == "sort":
        pick(sheet, "Order", "By Name")
    elif act == "filter":
        pick(sheet, "Reason", "Not Uploaded")
    else:
        sheet.keys("ctrl+f", *"0042")
    looks = iter(range(LOOKS))
    tell(capsys, act, gaps(desktop.display, sheet.process, window, lambda: next(looks, None) is None))
    if act == "search":
        sheet.wait_until(lambda: any(node.name.startswith(f"{FILES // FOLDERS} of ")
                                     for node in sheet.all("label", under=SHEET)), "the folder's files")  # fmt: skip


def tell(capsys, what, answers):
    longest, at_work = (max(column) for column in zip(*answers))
    with capsys.disabled():
        print(f"\n{what}: longest gap {1000 * longest:.1f} ms, at work in one at most {1000 * at_work:.1f} ms")
    assert at_work <= LONGEST
