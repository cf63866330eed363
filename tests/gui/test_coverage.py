"""What the verdict does not vouch for: the row, the sheet, the panel's line and the mark beside a YES."""

import fcntl
import json
import os


AWARENESS, TITLE = "Signals You Might Miss", "Not Vouched For"
SHEET, PANEL = ("dialog", TITLE), ("panel", "Cirrovane")
PANEL_WIDTH = 380
COMPLETE = "The verdict vouches for everything in your watched folders."
KINDS = {
    "pendingPackage": "Package Not Uploaded",
    "pendingHidden": "Hidden Item Not Uploaded",
    "syncPaused": "Sync Paused",
    "excluded": "Left Out of iCloud",
    "stateUnknown": "State Unknown",
    "notInICloud": "Not in iCloud",
    "unreadableFolder": "Folder Not Readable",
    "filesLost": "Files Gone",
}
# Watched folders of a demo Mac: one is missing, one is outside iCloud Drive.
NOT_LOOKED_AT = ["Travel Documents", "Scratch"]


def items(count):
    return f"The verdict does not vouch for {count} item{'' if count == 1 else 's'}"


def everything(titles):
    """What the row says of a demo Mac with one gap of each of these kinds."""
    parts = ["1 " + title for title in titles] + [f"{len(NOT_LOOKED_AT)} Not Looked At"]
    return f"{items(len(titles) + len(NOT_LOOKED_AT))}: {', '.join(parts)}."


def expect_row(application, text):
    """What the card says of it."""

    def told():
        texts = application.texts(("panel", AWARENESS))
        return texts[texts.index(TITLE) + 1] if TITLE in texts else None

    application.wait_until(lambda: told() == text, lambda: f"{text!r}, but: {told()!r}")


def open_sheet(application):
    application.press("push button", "Review", ("panel", AWARENESS))
    application.node(*SHEET)


def expect_in_sheet(application, *wanted):
    application.wait_until(
        lambda: set(wanted) <= set(application.texts(SHEET)), lambda: f"{wanted} in: {application.texts(SHEET)}"
    )


def with_path(application, control, path):
    return [node for node in application.all("push button", control, SHEET) if node.description == str(path)]


def acknowledge(application, path, time):
    button = application.wait_until(
        lambda: [node for node in with_path(application, "Acknowledge", path) if "enabled" in node.states],
        f"what acknowledges {path}",
    )[0]
    button.press()
    application.press("menu item", time)
    application.wait_until(lambda: not with_path(application, "Acknowledge", path), f"{path} to go")


def look_again(application):
    application.press("push button", "Look Again", SHEET)


def add_gap(mac):
    """Something hidden that is no part of iCloud."""
    path = mac.home / "Library/Mobile Documents/com~apple~CloudDocs/Client Work/.secret"
    path.write_text("secret")
    return path


def test_sheet_newMac_tellsAGapOfEachKind(overview, mac):
    application = overview()
    gaps = mac.ask("coverage")["gaps"]
    assert [gap["kind"] for gap in gaps] == list(KINDS)
    expect_row(application, everything(list(KINDS.values())))
    open_sheet(application)
    expect_in_sheet(application, *(f"{title} (1)" for title in KINDS.values()), *(gap["path"] for gap in gaps))
    told = application.texts(SHEET)
    assert [text.removesuffix(" (1)") for text in told if text.endswith(" (1)")] == list(KINDS.values())
    assert "Not Looked At (2)" in told
    assert all(any(text.endswith("/" + name) for text in told) for name in NOT_LOOKED_AT)
    assert any(text.startswith("Looked at ") for text in told)


def test_gaps_acknowledgedForAWeek_comeBackAfterIt(overview, mac):
    application = overview()
    gaps = mac.ask("coverage")["gaps"]
    open_sheet(application)
    for left, gap in zip(range(7, -1, -1), gaps):
        acknowledge(application, gap["path"], "For a Week")
        application.wait_until(
            lambda left=left: any(
                text.startswith(items(left + len(NOT_LOOKED_AT)) + ":") for text in application.texts(SHEET)
            ),
            f"{left} gaps to be left",
        )
    # The number of files is held against today's from now on, which needs no acknowledgement.
    expect_in_sheet(application, "Acknowledged (7)")
    assert mac.ask("coverage")["gaps"] == []
    application.press("push button", "Close", SHEET)
    expect_row(application, f"{everything([])} 7 gaps are acknowledged.")

    file = mac.stores / "acknowledged.json"
    kept = json.loads(file.read_text())
    assert all("expiresAt" in one for one in kept)
    file.write_text(json.dumps([{**one, "expiresAt": "2020-01-01T00:00:00Z"} for one in kept]))
    open_sheet(application)
    look_again(application)
    expect_in_sheet(application, *(gap["path"] for gap in gaps[:-1]))
    application.wait_until(lambda: "Acknowledged (7)" not in application.texts(SHEET), "none to be acknowledged")
    application.press("push button", "Close", SHEET)
    expect_row(application, everything(list(KINDS.values())[:-1]))


def test_gap_acknowledgedForGood_canBeTakenBack(overview, mac):
    mac.settle()
    path = add_gap(mac)
    application = overview()
    expect_row(application, f"{items(1)}: 1 Not in iCloud.")
    open_sheet(application)
    acknowledge(application, path, "For Good")
    expect_in_sheet(application, f"{COMPLETE} 1 gap is acknowledged.", "Acknowledged (1)")
    assert "expiresAt" not in mac.ask("coverage", "acknowledged")[0]
    application.wait_until(lambda: with_path(application, "Forget", path), "what takes it back")[0].press()
    expect_in_sheet(application, f"{items(1)}: 1 Not in iCloud.")
    application.wait_until(lambda: with_path(application, "Acknowledge", path), "the gap to be back")
    assert mac.ask("coverage", "acknowledged") == []


def test_gap_whileAnotherProgramKeepsTheFiles_saysThatItCouldNotBeAcknowledged(overview, mac):
    mac.settle()
    path = add_gap(mac)
    application = overview()
    open_sheet(application)
    button = application.wait_until(lambda: with_path(application, "Acknowledge", path), "the gap")[0]
    folder = os.open(mac.stores, os.O_RDONLY)
    fcntl.flock(folder, fcntl.LOCK_EX)
    button.press()
    application.press("menu item", "For Good")
    application.wait_until(
        lambda: any(node.name.startswith("It could not be acknowledged: ") for node in application.all("alert", under=SHEET)),
        "the reason",
    )
    os.close(folder)
    assert with_path(application, "Acknowledge", path)
    acknowledge(application, path, "For Good")
    assert not any(node.name for node in application.all("alert", under=SHEET))


def test_folderOutsideICloud_isToldAsNotLookedAt(overview, mac):
    mac.settle()
    elsewhere = mac.home / "Elsewhere"
    elsewhere.mkdir()
    mac.ask("watchlist", "add", elsewhere)
    application = overview()
    expect_row(application, f"{items(1)}: 1 Not Looked At.")
    open_sheet(application)
    expect_in_sheet(application, "Not Looked At (1)", str(elsewhere))


def test_settledMac_hasNoGapsAfterTheNextLook(overview, mac):
    application = overview()
    open_sheet(application)
    expect_in_sheet(application, "Sync Paused (1)")
    mac.settle()
    look_again(application)
    # The application keeps its own watchlist, in which a folder outside iCloud Drive is left.
    expect_in_sheet(application, f"{items(1)}: 1 Not Looked At.")
    application.press("push button", "Close", SHEET)
    expect_row(application, f"{items(1)}: 1 Not Looked At.")


def test_gap_reveal_showsItInTheFileManager(overview, mac, files):
    mac.settle()
    path = add_gap(mac)
    application = overview()
    open_sheet(application)
    application.wait_until(lambda: with_path(application, "Reveal in Finder", path), "the gap")[0].press()
    application.wait_until(lambda: any(shown.endswith("/.secret") for shown in files.shown()), "the file manager to show it")


def test_yesWithGaps_isAYesWithAMark(overview, mac):
    mac.settle()
    add_gap(mac)
    application = overview()
    note = items(1) + "."
    trust = ("panel", "Safe to Close")
    application.wait_until(lambda: note in application.texts(trust), "the note")
    assert "YES" in application.texts(trust)
    [mark] = [node for node in application.all(name=note, under=trust) if node.role not in ("label", "static", "text")]
    assert "showing" in mark.states
    [yes] = [node for node in application.all(name="YES", under=trust)]
    assert yes.description == note
    open_sheet(application)
    acknowledge(application, mac.home / "Library/Mobile Documents/com~apple~CloudDocs/Client Work/.secret", "For Good")
    application.press("push button", "Close", SHEET)
    application.wait_until(lambda: not application.all(name=note), "the mark to go")
    assert "YES" in application.texts(trust)


def test_panel_yesWithGaps_tellsThemAndOpensTheSheet(launch, mac):
    mac.settle()
    add_gap(mac)
    application = launch("--panel", CIRROVANE_DEMO_TAB="faq")
    application.wait_for_window(PANEL_WIDTH)
    application.wait_scanned()
    note = items(1) + "."
    application.wait_until(lambda: note in application.texts(PANEL), lambda: f"{note} in {application.texts(PANEL)}")
    assert "Safe to close now" in application.texts(PANEL)
    application.press("push button", "Review", PANEL)
    application.node(*SHEET)
    expect_in_sheet(application, "Not in iCloud (1)")


def test_panel_completeCoverage_saysNothing(launch, mac):
    mac.settle()
    application = launch("--panel", CIRROVANE_DEMO_TAB="faq")
    application.wait_for_window(PANEL_WIDTH)
    application.wait_scanned()
    application.node("push button", "Rescan", PANEL)
    assert not application.all("push button", "Review", PANEL)


def test_sheet_escape_givesTheKeyboardBack(overview, desktop, mac):
    application = overview()
    expect_row(application, everything(list(KINDS.values())))
    open_sheet(application)
    desktop.press_keys("Escape")
    application.wait_for_none(*SHEET)
