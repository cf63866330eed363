"""The panel beside the tray icon: what it tells, and everything that can be done there."""

import json
import re
from pathlib import Path, PurePosixPath

import pytest

PANEL = ("panel", "Cirrovane")
PANEL_WIDTH = 380
REASONS = {"unresolvedConflict": "Conflict Detected", "notDownloaded": "Cloud-Only (Not Local)"}
CONTROLS = ["Rescan", "Export Proof", "Check for Updates", "Show terminology in dashboard", "Terminology Guide",
            "Open Cirrovane", "Settings...", "Quit", "Build v1.2 (45)"]  # fmt: skip
TIME = re.compile(r"\d{1,2}:\d\d:\d\d\s[AP]M")


@pytest.fixture
def panel(launch):
    """The panel alone, after its scan."""

    def start():
        # The window's page has none of the panel's controls.
        application = launch("--panel", CIRROVANE_DEMO_TAB="faq")
        application.wait_for_window(PANEL_WIDTH)
        application.wait_scanned()
        return application

    return start


def texts(application):
    return ["(time)" if TIME.fullmatch(text) else text for text in application.texts(PANEL)]


def expect_told(application, *expected):
    """From the state to what leads away."""

    def told():
        shown = texts(application)
        return shown[: shown.index("Theme")] if "Theme" in shown else shown

    application.wait_until(lambda: told() == [*expected, "Leaving soon?", "Sleep When Safe"], lambda: f"{expected}, but: {texts(application)}")
    assert [text for text in texts(application) if text in CONTROLS] == CONTROLS


def head(report, state, verdict):
    return [state, str(report["score"]), verdict,
            f"Upload Trust {report['score']} · Local {report['localAvailabilityScore']}", "Live"]  # fmt: skip


def test_panel_unsafeMac_tellsTheTopBlockerAndTheFailedScan(panel, mac):
    application = panel()
    report = mac.ask("check")
    top = report["blockers"][0]
    name = PurePosixPath(top["filePath"]).name
    pending = mac.ask("pending")
    left = f"Left to upload: {pending['pendingFiles']} files, {round(pending['pendingBytes'] / 1000)} KB, no estimate yet."
    coverage = mac.ask("coverage")
    gaps = len(coverage["gaps"]) + len(coverage["notExamined"])
    expect_told(application, *head(report, "Red Unsafe", "Do not close yet"), left,
                f"The verdict does not vouch for {gaps} items.", "Review", "Top blocker",
                f"{REASONS[top['reason']]}: {name}", "Last failed scan", "(time)", REASONS[top["reason"]])  # fmt: skip


def test_panel_safeMac_tellsNeither(panel, mac):
    mac.settle()
    application = panel()
    expect_told(application, *head(mac.ask("check"), "Green Safe", "Safe to close now"))


def test_panel_safeAgain_stillTellsTheFailedScan(panel, mac):
    mac.settle()
    application = panel()
    for number, arrange in enumerate((mac.unsettle, mac.settle), 2):
        arrange()
        application.press("push button", "Rescan", PANEL)
        application.wait_scanned(number)
    reason = REASONS[mac.history[1]["topBlockerReason"]]
    expect_told(application, *head(mac.ask("check"), "Green Safe", "Safe to close now"), "Last failed scan", "(time)",
                reason)  # fmt: skip


def test_theme_chosenInThePanel_isTheWindowsToo(panel, mac, launch, desktop):
    application = panel()
    assert launch().wait_for_end() == 0
    window = application.wait_until(
        lambda: next((w for w in application.windows() if desktop.geometry(w)[2] > PANEL_WIDTH), None), "the window"
    )
    desktop.park_pointer()
    x, y, width, height = desktop.geometry(window)
    liquid = desktop.picture(x, y, width // 2, height)
    # A window that comes takes the panel's place; it is opened once more.
    assert launch("--panel").wait_for_end() == 0
    application.press("radio button", "Classic", PANEL)
    application.wait_until(lambda: mac.defaults.get("visualStyle") == "classic", "the style to be remembered")
    application.wait_until(
        lambda: liquid.share_unlike(desktop.picture(x, y, width // 2, height)) > 0.2, "another look of the window"
    )


def test_checkForUpdates_opensTheReleases(panel, desktop):
    application = panel()
    before = len(desktop.opened_pages())
    application.press("push button", "Check for Updates", PANEL)
    application.wait_until(lambda: len(desktop.opened_pages()) > before, "the browser to open a page")
    assert desktop.opened_pages()[-1].startswith("https://")


def test_exportProof_writesThePacket(panel, mac):
    application = panel()
    file = mac.home / "panel-proof.json"
    application.press("push button", "Export Proof", PANEL)
    application.press("push button", "Export...", ("dialog", "Export Proof"))
    title = "Export Proof Packet"
    application.node("dialog", title)
    entry = application.wait_until(
        lambda: [node for node in application.all("text", under=("dialog", title)) if "editable" in node.states],
        "where to type",
    )[0]
    assert entry.accessible.queryEditableText().setTextContents(str(file))
    application.press("push button", "Save", ("dialog", title))
    application.wait_until(file.exists, "the packet")
    assert json.loads(Path(file).read_text())["report"]["score"] == mac.history[0]["score"]


def test_terminologySwitch_isRemembered(panel, mac):
    application = panel()
    application.node("check box", "Show terminology in dashboard", PANEL, checked=False).press()
    application.node("check box", "Show terminology in dashboard", PANEL, checked=True)
    assert mac.defaults["showTerminologyOnDashboard"] is True


def test_terminologyGuide_opensInThePanel(panel):
    application = panel()
    application.press("push button", "Terminology Guide", PANEL)
    application.node("dialog", "Terminology Guide")
    application.press("push button", "Close", ("dialog", "Terminology Guide"))
    application.wait_for_none("dialog", "Terminology Guide")
    assert application.wait_for_window(PANEL_WIDTH)


def only_window(application, desktop):
    """The main window, once it is the only one."""
    return application.wait_until(
        lambda: next((w for w in application.windows() if desktop.geometry(w)[2] > PANEL_WIDTH), None)
        if len(application.windows()) == 1 else None,
        "the window, and no panel",
    )  # fmt: skip


def open_again(application, launch):
    assert launch("--panel").wait_for_end() == 0
    return application.wait_for_window(PANEL_WIDTH)


def test_openCirrovane_showsTheWindowInThePanelsPlace(panel, desktop):
    application = panel()
    application.press("push button", "Open Cirrovane", PANEL)
    window = only_window(application, desktop)
    application.wait_until(lambda: desktop.active_window() == window.id, "the window to have the keyboard")


def test_quit_endsTheApplication(panel):
    application = panel()
    application.press("push button", "Quit", PANEL)
    assert application.wait_for_end() == 0


def test_settings_openInTheWindow(panel, desktop):
    application = panel()
    application.press("push button", "Settings...", PANEL)
    only_window(application, desktop)
    application.node("dialog", "Settings")


@pytest.mark.parametrize("keys", ["Escape", "ctrl+w"])
def test_closingKeys_closeThePanelAlone(panel, desktop, launch, keys):
    application = panel()
    assert launch().wait_for_end() == 0
    only_window(application, desktop)
    opened = open_again(application, launch)
    desktop.activate(opened)
    application.keys(keys)
    only_window(application, desktop)


def test_commandKeys_workInThePanel(panel, desktop, mac):
    application = panel()
    desktop.activate(application.wait_for_window(PANEL_WIDTH))
    application.keys("ctrl+r")
    application.wait_scanned(2)
    application.keys("ctrl+comma")
    only_window(application, desktop)
    application.node("dialog", "Settings")


def test_quitKey_endsTheApplication(panel, desktop):
    application = panel()
    desktop.activate(application.wait_for_window(PANEL_WIDTH))
    application.quit()


def test_panelClosed_takesItsSheetAlong(panel, desktop, launch):
    application = panel()
    application.press("push button", "Terminology Guide", PANEL)
    application.node("dialog", "Terminology Guide")
    # Another window takes the keyboard.
    assert launch().wait_for_end() == 0
    only_window(application, desktop)
    open_again(application, launch)
    application.node("push button", "Terminology Guide", PANEL)
    assert not application.all("dialog", "Terminology Guide")
