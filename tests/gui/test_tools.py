"""The optional tools: which there are, which are installed, and how one gets them."""

import pytest
from application import TABS

TOOLS_TAB = next(tab for tab in TABS if tab.id == "tools")
PAGE = ("panel", "Tools & Downloads")
HEAD = ["Tools & Downloads", "Optional terminal tools for deeper subsystem checks."]
NOTE = "Some hardware metrics are not exposed by default macOS APIs. Optional tools unlock deeper telemetry."
MISSING = "Homebrew not found. Install Homebrew first to use one-click installs."
TOOLS = [
    ("osx-cpu-temp", "Reads exact CPU temperature from SMC sensors.",
     "Accurate temperature in Status and Performance diagnostics."),
    ("smartmontools", "Reads SMART storage health details.", "Deeper disk risk diagnostics in Storage tab."),
    ("iperf3", "Advanced network throughput diagnostics.", "Expanded Network stress testing support."),
    ("ifstat", "Live per-interface traffic meter.",
     "Faster detection of stalled uploads versus active network traffic."),
    ("mtr", "Route quality and packet-loss tracing.",
     "Deeper path diagnostics when iCloud hosts are intermittently reachable."),
    ("speedtest-cli", "Quick internet speed baseline checks.",
     "Context for slow upload windows versus local file/system blockers."),
    ("htop", "Interactive CPU and memory process monitor.",
     "Faster root-cause checks when performance pressure affects sync behavior."),
    ("btop", "Visual system monitor for CPU, memory, and process spikes.",
     "Richer live diagnostics during heavy sync or indexing sessions."),
    ("fswatch", "Filesystem event stream watcher.",
     "Evidence of ongoing file churn in watched folders during sync incidents."),
    ("jq", "JSON parsing utility.", "Faster filtering and triage of exported proof packets in terminal workflows."),
    ("lnav", "Terminal log navigator and analyzer.",
     "Efficient analysis of diagnostic logs while investigating recurring incidents."),
]  # fmt: skip
BREW = "opt/homebrew/bin/brew"
# Stands still until the test lets it go.
PATIENT_BREW = 'while [ ! -e "${0%/*}/go" ]; do sleep 0.02; done\nexit 0\n'


@pytest.fixture
def tools(launch):
    return lambda: launch(CIRROVANE_DEMO_TAB="tools").ready()


def card(application, name):
    """The texts of a tool's card."""
    return application.texts(("panel", name))


def wait_for(application, name, *texts):
    """Waits until the card says all of this."""
    application.wait_until(
        lambda: set(texts) <= set(card(application, name)), lambda: f"{texts} of {name}: {card(application, name)}"
    )


def installed(mac):
    return [tool["name"] for tool in mac.ask("tools") if tool["installed"]]


def test_tools_areToldInOrderWithTheirState(tools, mac):
    there = installed(mac)
    assert 0 < len(there) < len(TOOLS)
    expected = [*HEAD, "11 tools available", f"{len(there)} installed"]
    for name, purpose, unlocks in TOOLS:
        expected += [name, "Installed" if name in there else "Not Installed", purpose, "Unlocks:", unlocks,
                     "Install command:", f"brew install {name}", "Copy"]  # fmt: skip
        expected += [] if name in there else ["Download"]
    expected.append(NOTE)
    application = tools()
    application.wait_until(
        lambda: application.texts(PAGE) == expected, lambda: f"{expected}, but the page says {application.texts(PAGE)}"
    )


def test_copy_putsTheCommandOnTheClipboard(tools, desktop):
    application = tools()
    application.press("push button", "Copy", ("panel", "fswatch"))
    wait_for(application, "fswatch", "Command copied")
    application.wait_until(lambda: desktop.clipboard() == "brew install fswatch", "the command on the clipboard")


def test_download_installsTheTool(tools, mac):
    application = tools()
    wait_for(application, "smartmontools", "Not Installed")
    count = len(installed(mac))
    application.press("push button", "Download", ("panel", "smartmontools"))
    wait_for(application, "smartmontools", "Install complete", "Installed")
    application.node("label", f"{count + 1} installed", PAGE)
    assert "smartmontools" in installed(mac)


def test_download_brewFails_saysSo(tools, mac):
    mac.replace_command(BREW, "echo 'Error: no bottle' >&2\nexit 1\n")
    application = tools()
    wait_for(application, "mtr", "Not Installed")
    application.press("push button", "Download", ("panel", "mtr"))
    wait_for(application, "mtr", "Install failed", "Not Installed", "Download")


def test_download_twoAtOnce_eachGoesItsOwnWay(tools, mac):
    mac.replace_command(BREW, f'if [ "$2" = htop ]; then exit 1; fi\n{PATIENT_BREW}')
    application = tools()
    wait_for(application, "lnav", "Not Installed")
    application.press("push button", "Download", ("panel", "lnav"))
    wait_for(application, "lnav", "Installing...")
    application.press("push button", "Download", ("panel", "htop"))
    wait_for(application, "htop", "Install failed")
    assert "Installing..." in card(application, "lnav")
    (mac.root / BREW).with_name("go").touch()
    # It ran without an error, and yet the command is not there.
    wait_for(application, "lnav", "Install complete", "Not Installed")


def begin_and_leave(application):
    """An install is under way, and another page is shown."""
    wait_for(application, "lnav", "Not Installed")
    application.press("push button", "Download", ("panel", "lnav"))
    wait_for(application, "lnav", "Installing...")
    application.press("page tab", "Why")
    application.node("heading", "Why This Verdict")
    return application


def test_download_pageLeftMeanwhile_isUnderWayWhereOneComesBack(tools, mac):
    runs = mac.root / "runs"
    mac.replace_command(BREW, f'echo "$2" >>"{runs}"\n{PATIENT_BREW}')
    application = begin_and_leave(tools())
    application.choose_tab(TOOLS_TAB)
    wait_for(application, "lnav", "Installing...")
    # Does nothing.
    application.press("push button", "Download", ("panel", "lnav"))
    (mac.root / BREW).with_name("go").touch()
    wait_for(application, "lnav", "Install complete")
    assert runs.read_text().split() == ["lnav"]


def test_download_endedWhileThePageWasLeft_isToldThere(tools, mac):
    mac.replace_command(BREW, f'{PATIENT_BREW.replace("exit 0", "touch ${0%/*}/ended; exit 1")}')
    application = begin_and_leave(tools())
    (mac.root / BREW).with_name("go").touch()
    application.wait_until((mac.root / BREW).with_name("ended").exists, "the install to end")
    application.choose_tab(TOOLS_TAB)
    wait_for(application, "lnav", "Install failed", "Download")


def test_homebrewMissing_offersItsPage(tools, mac, desktop):
    (mac.root / BREW).unlink()
    application = tools()
    application.node("label", MISSING, PAGE)
    application.press("push button", "Download Homebrew", PAGE)
    application.wait_until(lambda: desktop.opened_pages(), "the browser to open a page")
    assert desktop.opened_pages()[-1] == "https://brew.sh"
