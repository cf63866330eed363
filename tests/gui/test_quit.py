"""The end of the application."""

import contextlib
import os
import signal
import time

import pytest
from application import MENU_TITLE
from gi.repository import GLib


def expect_end_at_once(application, act):
    # A machine that is at its limits takes its time over everything.
    is_overloaded = os.getloadavg()[0] > 2 * os.cpu_count()
    begin = time.monotonic()
    act()
    status = application.wait_for_end()
    seconds = time.monotonic() - begin
    assert status == 0, application.log
    assert seconds < (10 if is_overloaded else 1)


def kill(process):
    try:
        os.kill(process, signal.SIGKILL)
    except ProcessLookupError:
        pass


def test_quitKey_idle_endsAtOnce(launch):
    application = launch().ready()
    application.wait_scanned()
    expect_end_at_once(application, lambda: application.keys("ctrl+q"))


def test_quitCommand_idle_endsAtOnce(launch):
    application = launch().ready()
    application.wait_scanned()
    application.press(MENU_TITLE, "Cirrovane")
    entry = application.node("menu item", "Quit Cirrovane")

    def press():
        # It may be gone before it has answered.
        with contextlib.suppress(AssertionError, GLib.Error):
            entry.press()

    expect_end_at_once(application, press)


def test_quitKey_probeNeverReturns_endsAtOnce(launch, mac):
    mac.replace_command("usr/sbin/route", 'echo $$ >"${0%/usr/*}/route.pid"\nexec sleep 1000000\n')
    number = mac.root / "route.pid"
    application = launch().ready()
    application.wait_until(lambda: number.exists() and number.read_text().endswith("\n"), "the probe to hang")
    assert application.is_scanning()
    expect_end_at_once(application, lambda: application.keys("ctrl+q"))
    kill(int(number.read_text()))


def test_windowClosed_tray_keepsRunning(launch, mac):
    application = launch().ready()
    application.wait_scanned()
    application.desktop.close(application.wait_for_window())
    application.wait_until(lambda: not application.windows(), "the window to close")
    assert launch("--panel").wait_for_end() == 0, "nobody is there any more"
    assert application.is_running


@pytest.mark.parametrize("by_key", [True, False])
def test_windowClosed_noTray_ends(launch, desktop, by_key):
    with desktop.without_tray():
        application = launch().ready()
        application.wait_scanned()
        window = application.wait_for_window()
        close = (lambda: application.keys("ctrl+w")) if by_key else (lambda: desktop.close(window))
        expect_end_at_once(application, close)
