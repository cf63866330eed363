"""The icon in the tray and the panel beside it."""

import os
from pathlib import Path

import pytest
from waiting import wait_until

GREEN, YELLOW, RED = (0x30, 0xD1, 0x58), (0xFF, 0xD6, 0x0A), (0xFF, 0x69, 0x61)
PANEL_WIDTH = 380


def tray_picture(desktop):
    icons = desktop.tray_icons()
    return desktop.picture(*desktop.geometry(icons[0])) if len(icons) == 1 else None


def coloured(picture, colour):
    """How many pixels are of about this colour."""
    return sum(all(abs(one - other) < 24 for one, other in zip(pixel, colour)) for pixel in picture.pixels())


def expect_icon(application, desktop, colour):
    def shows():
        picture = tray_picture(desktop)
        if picture is None:
            return False
        counts = {other: coloured(picture, other) for other in (GREEN, YELLOW, RED)}
        return counts.pop(colour) > 40 and not any(counts.values())

    application.wait_until(shows, f"one tray icon of colour {colour}")


def test_icon_followsTheState(launch, desktop, mac, held):
    mac.settle()
    application = launch(**held.environment).ready()
    expect_neutral_icon(application, desktop)
    held.let_go()
    application.wait_scanned()
    expect_icon(application, desktop, GREEN)
    mac.unsettle()
    application.rescan()
    expect_icon(application, desktop, RED)


def test_icon_besideANo_isNeverGreen(launch, desktop, mac):
    mac.settle()
    spoil_one_file(mac)
    application = launch().ready()
    application.wait_scanned()
    report = mac.ask("check")
    assert report["status"] == "safe" and not report["safeToClose"]
    expect_icon(application, desktop, YELLOW)
    application.node("label", "NO")
    application.node(None, "Yellow Needs Attention")
    assert not application.all(name="Green Safe")


def spoil_one_file(mac):
    """One file's state cannot be read, and nothing else is amiss."""
    folder = next(Path(folder["path"]) for folder in mac.watchlist)
    file = next(path for path in sorted(folder.rglob("*")) if path.is_file() and not path.name.startswith("."))
    os.setxattr(file, "user.icloud", b"isUploaded=maybe")


def expect_neutral_icon(application, desktop):
    def shows():
        picture = tray_picture(desktop)
        return picture is not None and not any(coloured(picture, colour) for colour in (GREEN, YELLOW, RED))

    application.wait_until(shows, "one tray icon without a colour")


def test_icon_applicationQuits_goesFromTheTray(launch, desktop):
    application = launch().ready()
    application.wait_until(desktop.tray_icons, "the icon in the tray")
    application.quit()
    wait_until(lambda: not desktop.tray_icons(), "the icon to go")


def click_icon(desktop):
    x, y, width, height = desktop.geometry(desktop.tray_icons()[0])
    desktop.click(x + width // 2, y + height // 2)


def open_by_click(application, desktop):
    application.wait_until(desktop.tray_icons, "the icon in the tray")
    click_icon(desktop)
    return application.wait_for_window(PANEL_WIDTH)


def expect_beside_icon(desktop, panel):
    """Over or under the icon, near it, and wholly on the screen."""
    x, y, width, height = desktop.geometry(panel)
    icon_x, icon_y, icon_width, icon_height = desktop.geometry(desktop.tray_icons()[0])
    screen = desktop.picture()
    place = f"the panel is at {x}, {y}, the icon at {icon_x}, {icon_y}"
    assert x >= 0 and y >= 0 and x + width <= screen.width and y + height <= screen.height, place
    assert x <= icon_x and x + width >= icon_x + icon_width, place
    assert min(abs(icon_y - y - height), abs(y - icon_y - icon_height)) < 20, place


def test_icon_clicked_opensThePanelBesideIt(launch, desktop):
    application = launch().ready()
    panel = open_by_click(application, desktop)
    expect_beside_icon(desktop, panel)
    application.keys("Escape")
    application.wait_until(lambda: len(application.windows()) == 1, "Escape to close the panel")


def test_icon_clickedAgain_takesThePanelAway(launch, desktop):
    application = launch().ready()
    for _ in range(2):
        panel = open_by_click(application, desktop)
        application.wait_until(lambda: desktop.active_window() == panel.id, "the panel to have the keyboard")
        click_icon(desktop)
        application.wait_until(lambda: len(application.windows()) == 1, "the second click to take the panel away")


def test_panelAtTheStart_isAtTheRightEdgeEvenBeforeTheTrayHasTheIcon(launch, desktop):
    application = launch("--panel")
    x, y, width, height = desktop.geometry(application.wait_for_window(PANEL_WIDTH))
    screen = desktop.picture()
    assert x + width == screen.width and y >= 0 and y + height <= screen.height


def test_panelAtTheStart_opensAloneAndTellsTheState(launch, mac, held):
    mac.settle()
    application = launch("--panel", **held.environment)
    application.wait_for_window(PANEL_WIDTH)
    assert len(application.windows()) == 1
    application.node("label", "Scanning")
    application.node("label", "Do not close yet")
    held.let_go()
    application.node("label", "Green Safe")
    application.node("label", "Safe to close now")
    application.node("label", "Upload Trust 100 · Local 100")


def test_iconPointedAt_whileAScanTakesItsTime_saysHowFarItHasCome(launch, desktop, held):
    application = launch(**held.environment).ready()
    application.wait_until(lambda: len(desktop.tray_icons()) == 1, "the tray icon")
    x, y, width, height = desktop.geometry(desktop.tray_icons()[0])
    desktop.point(x + width // 2, y + height // 2)
    application.wait_until(
        lambda: any("Scanning " in node.name and " files" in node.name for node in application.all("tool tip")),
        "how far the scan has come",
    )


def test_panel_openedAgain_scansAgain(launch, mac):
    mac.settle()
    application = launch("--panel")
    application.node("label", "Green Safe")
    application.wait_scanned()
    application.keys("Escape")
    application.wait_until(lambda: not application.windows(), "the panel to close")
    mac.unsettle()
    assert launch("--panel").wait_for_end() == 0
    application.wait_for_window(PANEL_WIDTH)
    application.wait_scanned(2)
    application.node("label", "Red Unsafe")
    application.node("label", "Do not close yet")
    score, local = (mac.history[0][key] for key in ("score", "localAvailabilityScore"))
    application.node("label", f"Upload Trust {score} · Local {local}")


@pytest.mark.parametrize("surface", [[], ["--panel"]])
def test_surfaces_firstToAppear_scansOnce(launch, mac, surface):
    application = launch(*surface)
    application.wait_until(lambda: mac.history, "a scan")
    application.wait_scanned()
    application.end()
    assert len(mac.history) == 1
