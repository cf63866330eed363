"""The sheet of all blockers: what opens it, and everything that can be done in it."""

import urllib.parse

import pytest
from test_overview import BLOCKERS, REASONS, WATCHLIST

SHEET = ("dialog", "All Blockers")
SEARCH = "Search names and paths"


@pytest.fixture
def sheet(overview):
    """The application, with the sheet open."""

    def start():
        application = overview()
        application.press("push button", "Show All", ("panel", BLOCKERS))
        application.node("text", SEARCH, SHEET, focused=True)
        return application

    return start


def rows(application):
    return application.all("list item", under=SHEET)


def paths_in(mac):
    return [blocker["filePath"] for blocker in mac.ask("check")["blockers"]]


def says(application, text):
    application.node("label", text, SHEET)


def pick(application, choice, entry):
    """Picks an entry of one of the sheet's filters, which say what is chosen behind a colon."""
    [button] = [node for node in application.all("push button", under=SHEET) if node.name.startswith(choice + ":")]
    button.press()
    application.press("menu item", entry)
    application.node("push button", f"{choice}: {entry}", SHEET)


def test_showAll_opensEveryBlocker_andEscapeGoesBack(overview, mac):
    application = overview()
    blockers = mac.ask("check")["blockers"]
    application.tab_to("push button", "Show All")
    application.keys("space")
    says(application, f"{len(blockers)} blockers")
    application.node("list", "All Blockers", SHEET)
    first = application.wait_until(lambda: rows(application), "rows")[0]
    assert first.name.startswith(f"{REASONS[blockers[0]['reason']]}: ")
    assert blockers[0]["filePath"] in first.description
    application.keys("Escape")
    application.wait_for_none(*SHEET)
    application.node("push button", "Show All", focused=True)


def test_search_narrowsWhatIsShown_andClearBringsItBack(sheet, mac):
    application = sheet()
    paths = paths_in(mac)
    matching = [path for path in paths if "menu" in path.lower()]
    assert 0 < len(matching) < len(paths)
    application.keys(*"menu")
    says(application, f"{len(matching)} of {len(paths)}")
    application.wait_until(lambda: len(rows(application)) == len(matching), "the rows that match")
    application.keys("x")
    says(application, "No blockers match")
    application.press("push button", "Show All Blockers", SHEET)
    says(application, f"{len(paths)} blockers")
    application.node("text", SEARCH, SHEET, focused=True)


def test_filters_haveNames_andHoldWhatOccurs(sheet, mac):
    application = sheet()
    blockers = mac.ask("check")["blockers"]
    [button] = [node for node in application.all("push button", under=SHEET) if node.name == "Reason: All Reasons"]
    button.press()
    occurring = {REASONS[blocker["reason"]] for blocker in blockers}
    application.node("menu item", "All Reasons")
    offered = {node.name for node in application.all("menu item")} & set(REASONS.values())
    assert offered == occurring
    application.press("menu item", "Not Uploaded")
    count = sum(blocker["reason"] == "notUploaded" for blocker in blockers)
    says(application, f"{count} of {len(blockers)}")
    application.wait_until(lambda: all(row.name.startswith("Not Uploaded: ") for row in rows(application)), "only those")


def test_order_bySize_putsTheLargestFirst(sheet, mac):
    application = sheet()
    pick(application, "Order", "Largest First")
    largest = max(mac.ask("pending")["files"], key=lambda file: file["bytes"])
    application.wait_until(
        lambda: rows(application) and largest["filePath"] in rows(application)[0].description,
        lambda: f"{largest['filePath']} first: {[row.name for row in rows(application)]}",
    )
    assert "waiting" in rows(application)[0].name


def test_copyPath_byButtonAndByKeyboard(sheet, mac, desktop):
    application = sheet()
    paths = paths_in(mac)
    application.wait_until(lambda: len(rows(application)) > 2, "rows")
    application.all("push button", "Copy Path", SHEET)[1].press()
    application.wait_until(lambda: desktop.clipboard() == paths[1], lambda: f"{paths[1]}: {desktop.clipboard()}")
    application.keys("Down", "ctrl+c")
    application.wait_until(lambda: desktop.clipboard() == paths[2], lambda: f"{paths[2]}: {desktop.clipboard()}")


def test_copyPath_byItsMenu(sheet, mac, desktop):
    application = sheet()
    paths = paths_in(mac)
    row = application.wait_until(lambda: rows(application), "rows")[0]
    x, y, _, height = row.extents()
    desktop.click(x + 60, y + height // 2, button=3)
    application.press("menu item", "Copy Path")
    application.wait_until(lambda: desktop.clipboard() == paths[0], lambda: f"{paths[0]}: {desktop.clipboard()}")


def test_reveal_byButtonAndByKeyboard(sheet, mac, files):
    application = sheet()
    uris = ["file://" + urllib.parse.quote(path) for path in paths_in(mac)]
    application.wait_until(lambda: len(rows(application)) > 2, "rows")
    application.all("push button", "Reveal in Finder", SHEET)[1].press()
    application.wait_until(lambda: files.shown() == uris[1:2], lambda: f"{uris[1]}: {files.shown()}")
    application.keys("Down", "Return")
    application.wait_until(lambda: files.shown() == uris[1:3], lambda: f"{uris[2]}: {files.shown()}")


def test_keyboard_reachesEverythingAndWalksTheList(sheet, mac):
    application = sheet()
    last = paths_in(mac)[-1]
    for name in ("Reason: All Reasons", "Folder: All Folders", "Order: Most Serious First"):
        application.tab_to("push button", name)
    application.wait_until(lambda: rows(application), "rows")
    assert application.press_and_hear_focus("Tab").path == rows(application)[0].path
    for name in ("Reveal in Finder", "Copy Path", "Close"):
        application.tab_to("push button", name)
    application.tab_to("text", SEARCH)
    application.keys("Down", "End")
    application.wait_until(
        lambda: any("focused" in row.states and last in row.description for row in rows(application)), "the last row"
    )
    application.keys("ctrl+f")
    application.node("text", SEARCH, SHEET, focused=True)


@pytest.mark.parametrize("way", ["action", "keyboard", "name", "health"])
def test_watchlistRow_opensTheBlockersOfItsFolder(overview, mac, desktop, way):
    application = overview()
    folder = mac.watchlist[1]
    [button] = [node for node in application.all("push button", "Show Blockers", ("panel", WATCHLIST))
                if folder["path"] in node.description]  # fmt: skip
    if way == "action":
        button.press()
    else:
        while application.press_and_hear_focus("Tab").path != button.path:
            pass
        if way == "keyboard":
            application.keys("Return")
        else:
            x, y, width, height = button.extents()
            desktop.click(x + 40, y + (10 if way == "name" else height - 8))
    report = mac.ask("check")
    inside = [blocker for blocker in report["blockers"] if blocker["filePath"].startswith(folder["path"])]
    says(application, f"{len(inside)} of {len(report['blockers'])}")
    application.node("push button", f"Folder: {folder['name']}", SHEET)
    [health] = [found for found in report["folderHealth"] if found["folder"]["path"] == folder["path"]]
    assert health["blockerCount"] == len(inside)


def test_liveChanges_leaveTheKeyboardOnItsRow(sheet, mac):
    application = sheet()
    paths = paths_in(mac)
    application.keys("Down", "Down", "Down", "Down")
    focused = application.wait_until(
        lambda: [row for row in rows(application) if "focused" in row.states and paths[3] in row.description], "row 4"
    )[0]
    mac.set_file(paths[0], hasUnresolvedConflicts="false")
    application.wait_until(
        lambda: any(node.name.endswith(" blockers") and node.name != f"{len(paths)} blockers"
                    for node in application.all("label", under=SHEET)), "fewer blockers")  # fmt: skip
    kept = [row for row in rows(application) if "focused" in row.states]
    assert [row.description for row in kept] == [focused.description]
