"""The end of the application."""

import os
import signal
import time

import pytest


def seconds_to_end(application, act):
    begin = time.monotonic()
    act()
    status = application.wait_for_end(20)
    assert status == 0, application.log
    return time.monotonic() - begin


def kill(process):
    try:
        os.kill(process, signal.SIGKILL)
    except ProcessLookupError:
        pass


def test_quitKey_idle_endsWithinASecond(launch):
    application = launch().ready()
    application.wait_scanned()
    assert seconds_to_end(application, lambda: application.keys("ctrl+q")) < 1


def test_quitCommand_idle_endsWithinASecond(launch):
    application = launch().ready()
    application.wait_scanned()
    assert seconds_to_end(application, lambda: application.open_menu("Cirrovane", "Quit Cirrovane")) < 1


def test_quitKey_probeNeverReturns_endsWithinASecond(launch, mac):
    mac.replace_command("usr/sbin/route", 'echo $$ >"${0%/usr/*}/route.pid"\nexec sleep 1000000\n')
    number = mac.root / "route.pid"
    application = launch().ready()
    application.wait_until(lambda: number.exists() and number.read_text().endswith("\n"), "the probe to hang")
    assert application.is_scanning()
    assert seconds_to_end(application, lambda: application.keys("ctrl+q")) < 1
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
        close = (lambda: application.keys("ctrl+w")) if by_key else (
            lambda: desktop.close(application.wait_for_window()))  # fmt: skip
        assert seconds_to_end(application, close) < 2
