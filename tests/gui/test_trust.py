"""No YES stays on the screen while work is not in the cloud: hung probes, folders that cannot be read, the time before the
first scan."""

import shutil
from pathlib import Path

from application import TABS
from test_tray import GREEN, coloured, tray_picture

HANGS = "exec sleep 100000\n"
IGNORES_SIGTERM = "trap '' TERM HUP INT\nwhile :; do sleep 1000; done\n"
TABS_BY_ID = {tab.id: tab for tab in TABS}


def expect_no_soon(application, seconds=10):
    """Long before any probe's time is up."""
    application.node("label", "NO", seconds=seconds)
    assert not application.all("label", "YES")


def settled(launch, mac):
    mac.settle()
    application = launch().ready()
    application.wait_scanned()
    application.node("label", "YES")
    return application


def press_rescan(application):
    application.all("push button", "Rescan")[0].press()


def test_pendingUploads_behindAHungProbe_areShownAtOnceAndRecorded(launch, mac):
    application = settled(launch, mac)
    scans = len(mac.history)
    mac.replace_command("usr/bin/pgrep", IGNORES_SIGTERM)
    mac.unsettle()
    press_rescan(application)
    expect_no_soon(application)
    assert application.is_scanning(), "the probe hangs"
    application.wait_until(lambda: len(mac.history) == scans + 1, "the cycle in the history", seconds=35)
    assert not mac.history[0]["safeToClose"]
    application.wait_until(lambda: not application.is_scanning(), "the end of the cycle")


def test_watchedFolder_thatBecomesAPlainFile_isANo(launch, desktop, mac):
    application = settled(launch, mac)
    folder = next(Path(folder["path"]) for folder in mac.watchlist)
    shutil.rmtree(folder)
    folder.write_text("no folder any more")
    application.rescan()
    expect_no_soon(application)
    application.node(None, "The folder exists but cannot be read.")
    assert not coloured(tray_picture(desktop), GREEN)


def test_beforeTheFirstScan_noSignIsGoodAndNoTimeIsShown(launch, mac, held):
    mac.settle()
    application = launch(**held.environment).ready()
    application.node(None, "Scanning")
    application.node("label", "NO")
    application.node("label", "Not scanned yet", under=("panel", "Safe to Close"))
    for tab in ("why", "status", "iCloud", "overview"):
        application.choose_tab(TABS_BY_ID[tab])
        nodes = application.all()
        assert not any(node.description == "Passed" for node in nodes), tab
        assert not any("1970" in text for node in nodes for text in (node.name, node.description)), tab
        assert not any(word in node.name for node in nodes for word in ("Green Safe", "YES")), tab
    held.let_go()
    application.node("label", "YES")
    application.node(None, "Green Safe")
