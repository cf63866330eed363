"""The overview: each card's texts, and everything that can be done there."""

import json
import urllib.parse
from pathlib import Path

import jsonschema
import pytest
from dropping import drop

SCHEMA = Path(__file__).parents[2] / "docs/proof-packet.schema.json"
REASONS = {
    "unavailableFolder": "Folder Unavailable",
    "outsideICloud": "Outside iCloud",
    "unresolvedConflict": "Conflict Detected",
    "uploadError": "Upload Error",
    "downloadError": "Download Error",
    "stalledUpload": "Upload Stalled",
    "notUploaded": "Not Uploaded",
    "notDownloaded": "Cloud-Only (Not Local)",
}
BLOCKERS, WATCHLIST, TIMELINE = "Top Blockers", "Critical Folder Watchlist", "Audit Timeline"
AWARENESS = "Signals You Might Miss"
EXPORT = "Export Proof Packet"


def card(application, heading):
    return application.texts(("panel", heading))


def expect(application, heading, *texts):
    """The card has these texts and no others."""
    application.wait_until(
        lambda: card(application, heading) == list(texts), lambda: f"{texts}, but: {card(application, heading)}"
    )


def expect_among(application, heading, *texts):
    """The card has these texts one after the other, and others before and after them."""

    def are_there():
        told = card(application, heading)
        return any(told[start : start + len(texts)] == list(texts) for start in range(len(told)))

    application.wait_until(are_there, lambda: f"{texts} in: {card(application, heading)}")


def cloud_files(mac):
    return [path for path in sorted((mac.home / "Library/Mobile Documents").rglob("*"))
            if path.is_file() and not path.is_symlink()]  # fmt: skip


STATES = {"safe": "Safe", "warning": "Needs Attention", "danger": "Unsafe"}


def count(number, noun):
    return f"{number} {noun}{'' if number == 1 else 's'}"


def health(report, path):
    """What the watchlist says of the folder at this path."""
    [folder] = [found for found in report["folderHealth"] if found["folder"]["path"] == path]
    return (f"{STATES[folder['status']]} · Score {folder['score']} · {count(folder['scannedFileCount'], 'file')} · "
            f"{count(folder['blockerCount'], 'blocker')}")  # fmt: skip


def shown_blockers(mac):
    report = mac.ask("check")
    rows = [text for blocker in report["blockers"][:5]
            for text in (REASONS[blocker["reason"]], blocker["folderName"], blocker["filePath"], blocker["details"],
                         "Reveal in Finder")]  # fmt: skip
    return [f"{len(report['blockers'])} total", *rows, *(["Show All"] if rows else [])]


def test_overview_nothingKnown_saysWhatIsMissing(launch, mac):
    (mac.home / "Library/Mobile Documents").rename(mac.home / "Elsewhere")
    (mac.stores / "watchlist.json").write_text("[]")
    # The first scan does not end, so there is no history.
    mac.replace_command("usr/bin/pgrep", "exec sleep 600\n")
    application = launch(CIRROVANE_DEMO_TAB="overview").ready()
    expect(application, WATCHLIST, WATCHLIST, "Mark the folders you cannot afford to lose.", "Add Folder",
           "No folders tracked", "Add at least one critical folder to activate trust scoring.")  # fmt: skip
    expect(application, BLOCKERS, BLOCKERS, "0 total", "No blockers detected",
           "Your watched folders currently show no obvious sync blockers.")  # fmt: skip
    expect(application, TIMELINE, TIMELINE, "No scan history yet", "Run scans over time to build an evidence timeline.",
           EXPORT)  # fmt: skip
    expect_among(application, AWARENESS, "Last Scan Result", "No failed scans in history",
                 "This can mean stable sync, or simply not enough scan history yet.",
                 "Last Confirmed Safe Scan", "None yet in current history.")  # fmt: skip
    expect_among(application, AWARENESS, "Coverage Gaps", "No watchlist coverage gaps detected.", "Cloud-Only Files",
                 "No cloud-only files currently detected.")  # fmt: skip


def test_overview_unsafeMac_tellsTheReport(overview, mac):
    application = overview()
    report = mac.ask("check")
    metrics = report["metrics"]
    expect(application, BLOCKERS, BLOCKERS, *shown_blockers(mac))
    expect_among(application, "Safe to Close", f"Files {metrics['totalFiles']}", f"Pending {metrics['pendingUploads']}",
                 f"Conflicts {metrics['unresolvedConflicts']}", f"Errors {metrics['errors']}",
                 f"Watchlist {len(mac.watchlist)}", f"Local Ready {report['localAvailabilityScore']}",
                 f"Cloud-Only {metrics['notDownloaded']}")  # fmt: skip
    expect_among(application, "Safe to Close", "Safe to Close", "NO")
    actions = [text for action in report["actions"] for text in (f"{action['rank']}.", action["title"], action["detail"])]
    expect(application, "Safe Next Actions", "Safe Next Actions", "Low risk first", *actions)
    newest = mac.history[0]
    expect_among(application, AWARENESS, f"Reason: {REASONS[newest['topBlockerReason']]}",
                 f"Folder: {newest['topBlockerFolderName']}", "Reveal in Finder")  # fmt: skip
    folders = [text for folder in mac.watchlist for text in (folder["name"], folder["path"], health(report, folder["path"]), "Show Blockers", "Remove")]
    expect_among(application, WATCHLIST, "Add Folder", *folders)


@pytest.mark.parametrize("count", [5, 8])
def test_blockers_atMostFiveAreShown(overview, mac, count):
    mac.settle()
    for file in cloud_files(mac)[:count]:
        mac.set_file(file, downloadingStatus="notDownloaded")
    application = overview()
    expect(application, BLOCKERS, BLOCKERS, *shown_blockers(mac))
    texts = card(application, BLOCKERS)
    assert texts[1] == f"{count} total"
    assert texts.count("Reveal in Finder") == 5
    expect_among(application, AWARENESS, f"{count} files are cloud-only on this device. They can still be safely in "
                 "iCloud, but may be unavailable offline.")  # fmt: skip


def test_reveal_showsTheBlockerInTheFileManager(overview, mac, files):
    application = overview()
    path = mac.ask("check")["blockers"][1]["filePath"]
    [button] = [node for node in application.all("push button", "Reveal in Finder", ("panel", BLOCKERS))
                if path in node.description]  # fmt: skip
    button.press()
    uri = "file://" + urllib.parse.quote(path)
    application.wait_until(lambda: files.shown() == [uri], lambda: f"{uri}: {files.shown()}")


def test_lastFailedScan_withoutItsPath_saysSo(overview, mac):
    mac.unsettle()
    overview().quit()
    old = {key: value for key, value in mac.history[0].items() if key != "topBlockerFilePath"}
    (mac.stores / "history.json").write_text(json.dumps([old]))
    mac.settle()
    application = overview()
    expect_among(application, AWARENESS, "Location unavailable because older snapshots did not capture file paths.")
    assert "Reveal in Finder" not in card(application, AWARENESS)
    application.wait_until(
        lambda: any(text.startswith("Unsafe at ") for text in card(application, AWARENESS))
        and any(text.startswith("Safe at ") for text in card(application, AWARENESS)),
        "both scans by their times",
    )


def test_timeline_hasARowForEachScan(overview, mac):
    mac.settle()
    application = overview()
    mac.unsettle()
    application.rescan()
    unsafe = mac.history[0]
    expect_among(application, TIMELINE, "Score 100", "Local 100", "0 blockers", "Safe")
    expect_among(application, TIMELINE, f"Score {unsafe['score']}", f"Local {unsafe['localAvailabilityScore']}",
                 f"{unsafe['blockerCount']} blockers", REASONS[unsafe["topBlockerReason"]])  # fmt: skip


def test_timeline_tellsTheScanThatIsPointedOut(overview, mac):
    mac.settle()
    application = overview()
    mac.unsettle()
    application.rescan()
    unsafe = mac.history[0]
    chart = application.node("panel", "Score timeline").accessible
    assert chart.get_description().startswith("2 scans from ")
    name = Path(unsafe["topBlockerFilePath"]).name
    newest = f" · Score {unsafe['score']} · Local {unsafe['localAvailabilityScore']} · {unsafe['blockerCount']} blockers"
    newest += f" · {REASONS[unsafe['topBlockerReason']]}: {name}"
    oldest = " · Score 100 · Local 100 · 0 blockers"

    def expect_told(scan):
        application.wait_until(
            lambda: chart.get_description().endswith(scan), lambda: f"{scan!r}: {chart.get_description()!r}")

    application.tab_to("panel", "Score timeline")
    expect_told(newest)
    application.keys("Left")
    expect_told(oldest)
    application.keys("End")
    expect_told(newest)
    application.keys("Home")
    expect_told(oldest)
    application.keys("Tab")
    application.wait_until(lambda: chart.get_description().startswith("2 scans from "), "no scan to be pointed out")


def type_into_dialog(application, title, text, button):
    """Types into the file dialog of this title and accepts it."""
    application.node("dialog", title)
    entry = application.wait_until(
        lambda: [node for node in application.all("text", under=("dialog", title)) if "editable" in node.states],
        "where to type",
    )[0]
    assert entry.accessible.queryEditableText().setTextContents(text)
    application.press("push button", button, ("dialog", title))
    application.wait_for_none("dialog", title)


def test_addFolder_throughTheDialog_watchesAndScansIt(overview, mac):
    application = overview()
    folder = mac.home / "Documents/Thesis"
    folder.mkdir(parents=True)
    scans = len(mac.history)
    application.press("push button", "Add Folder", ("panel", WATCHLIST))
    type_into_dialog(application, "Add Critical Folder", str(folder), "Add to Watchlist")
    application.wait_scanned(scans + 1)
    expect_among(application, WATCHLIST, "Thesis", str(folder), health(mac.ask("check"), str(folder)), "Show Blockers",
                 "Remove")
    assert str(folder) in [watched["path"] for watched in mac.watchlist]
    [button] = [node for node in application.all("push button", "Remove") if str(folder) in node.description]
    button.press()
    application.wait_until(lambda: "Thesis" not in card(application, WATCHLIST), "the folder to be gone")
    assert str(folder) not in [watched["path"] for watched in mac.watchlist]


def test_watchlist_foldersDropped_areWatchedAndScanned(overview, mac, desktop):
    application = overview()
    folder, file = mac.home / "Documents/Thesis", mac.home / "Documents/notes.txt"
    folder.mkdir(parents=True)
    file.touch()
    scans = len(mac.history)
    application.tab_to("push button", "Add Folder")
    x, y, width, height = application.node("heading", WATCHLIST).extents()
    drop(desktop, application.wait_for_window(), x + width // 2, y + height // 2, [folder, file])
    application.wait_scanned(scans + 1)
    expect_among(application, WATCHLIST, "Thesis", str(folder), health(mac.ask("check"), str(folder)), "Show Blockers",
                 "Remove")
    assert str(file) not in [watched["path"] for watched in mac.watchlist]


def test_watchlist_removed_isUndone(overview, mac):
    application = overview()
    before = mac.watchlist
    application.all("push button", "Remove", ("panel", WATCHLIST))[0].press()
    application.wait_until(lambda: mac.watchlist == before[1:], "the folder to be gone")
    application.node("alert", f"Removed {before[0]['name']}", ("panel", WATCHLIST))
    application.press("push button", "Undo", ("panel", WATCHLIST))
    application.wait_until(lambda: mac.watchlist == before, "the folder to be back")
    application.wait_for_none("push button", "Undo")


def test_path_byKeyboard_isCopied(overview, mac, desktop):
    application = overview()
    path = mac.watchlist[0]["path"]
    application.tab_to("label", path)
    application.keys("ctrl+c")
    application.wait_until(lambda: desktop.clipboard() == path, lambda: f"{path}: {desktop.clipboard()}")


def test_path_byItsMenu_isCopied(overview, mac, desktop):
    application = overview()
    path = mac.watchlist[0]["path"]
    application.tab_to("label", path)
    x, y, _, height = application.node("label", path, ("panel", WATCHLIST)).extents()
    desktop.click(x + 5, y + height // 2, button=3)
    application.press("menu item", "Copy Path")
    application.wait_until(lambda: desktop.clipboard() == path, lambda: f"{path}: {desktop.clipboard()}")
    application.wait_for_none("menu item", "Copy Path")


def test_path_byTheEditMenu_isCopied(overview, mac, desktop):
    application = overview()
    path = mac.watchlist[0]["path"]
    application.tab_to("label", path)
    application.open_menu("Edit", "Copy")
    application.wait_until(lambda: desktop.clipboard() == path, lambda: f"{path}: {desktop.clipboard()}")


def test_export_throughTheDialog_writesAProofPacket(overview, mac, files):
    application = overview()
    file = mac.home / "proof"
    application.press("push button", EXPORT, ("panel", TIMELINE))
    application.press("push button", "Export...", ("dialog", "Export Proof"))
    type_into_dialog(application, EXPORT, str(file), "Save")
    packet = application.wait_until(lambda: file.with_suffix(".json").exists() and file.with_suffix(".json"), "the packet")
    packet = json.loads(packet.read_text())
    jsonschema.validate(packet, json.loads(SCHEMA.read_text()))
    assert packet["report"]["score"] == mac.history[0]["score"]
    application.node("alert", "Proof packet exported to proof.json.", ("panel", TIMELINE))
    application.press("push button", "Reveal in Finder", ("panel", TIMELINE))
    uri = "file://" + urllib.parse.quote(str(file.with_suffix(".json")))
    application.wait_until(lambda: files.shown() == [uri], lambda: f"{uri}: {files.shown()}")


def test_theme_isChosenAndRemembered(overview, mac, desktop):
    application = overview()
    window = application.wait_for_window()
    desktop.park_pointer()
    liquid = desktop.picture(*desktop.geometry(window))
    application.press("radio button", "Classic")
    application.wait_until(lambda: mac.defaults.get("visualStyle") == "classic", "the style to be remembered")
    application.wait_until(
        lambda: liquid.share_unlike(desktop.picture(*desktop.geometry(window))) > 0.2, "another look of the window"
    )


def test_motion_isSwitchedAndRemembered(overview, mac):
    application = overview()
    application.node("check box", "Motion", checked=False).press()
    application.node("check box", "Motion", checked=True)
    assert mac.defaults["motionEnabled"] is True


def test_terminology_opensTheGuide(overview):
    application = overview()
    application.press("push button", "Terminology")
    application.node("dialog", "Terminology Guide")
    application.keys("Escape")
    application.wait_for_none("dialog", "Terminology Guide")


def test_terminologyOnTheDashboard_isShownWhenWanted(overview, mac):
    mac.set_defaults(showTerminologyOnDashboard=True)
    application = overview()
    application.node("label", "0-100 confidence score for upload integrity. Cloud-only files do not reduce this score.")


def test_refresh_whileScrolled_leavesThePageWhereItIs(overview):
    application = overview()
    application.resize_content(860, 700)
    application.tab_to("push button", EXPORT)
    button = application.node("push button", EXPORT, ("panel", TIMELINE), focused=True)
    heading = application.node("heading", WATCHLIST)
    before = heading.extents()
    application.rescan()
    expect_among(application, AWARENESS, "0% safe in last 2 scans")
    # One more line in the timeline below is all that has changed.
    assert application.node("heading", WATCHLIST).extents() == before
    assert application.node("push button", EXPORT, focused=True).path == button.path
