"""The pages of the seven domains."""

import re

import pytest

DOMAINS = {
    "iCloud": "iCloud Diagnostics",
    "finder": "Finder Diagnostics",
    "system": "System Diagnostics",
    "network": "Network Diagnostics",
    "storage": "Storage Diagnostics",
    "power": "Power Diagnostics",
    "performance": "Performance Diagnostics",
}
SUBTITLE = "Signals beyond file-level blockers to explain system conditions affecting trust."
BADGES = {"error": "Error", "warning": "Warning", "ok": "OK", "info": "Info"}
UPDATED = re.compile(r"Last Updated \d{1,2}:\d\d:\d\d\s[AP]M")


def expected(mac, domain):
    """Badge, title and detail of each finding that the command-line tool has of the same Mac."""
    findings = mac.ask("diagnose", domain.lower())
    assert findings
    return [text for finding in findings
            for text in (BADGES[finding["severity"]], finding["title"], finding["detail"].rstrip())]  # fmt: skip


def expect(application, title, findings):
    page = ("panel", title)

    def is_shown():
        texts = application.texts(page)
        return (
            texts[:2] == [title, SUBTITLE]
            and UPDATED.fullmatch(texts[2])
            and texts[3:] == ["Rescan", *findings]
        )  # fmt: skip

    application.wait_until(is_shown, lambda: f"{findings}, but the page says {application.texts(page)}")


@pytest.mark.parametrize("domain", DOMAINS)
def test_domain_isToldAsTheCommandLineToolTellsIt(launch, mac, domain):
    application = launch(CIRROVANE_DEMO_TAB=domain).ready()
    application.wait_scanned()
    expect(application, DOMAINS[domain], expected(mac, domain))


def test_domain_afterEachRefresh_tellsHowThingsAreNow(launch, mac):
    mac.settle()
    application = launch(CIRROVANE_DEMO_TAB="power").ready()
    application.wait_scanned()
    before = expected(mac, "power")
    expect(application, DOMAINS["power"], before)
    mac.set_fact("lowPowerMode", True)
    mac.set_fact("powerSources", [{"Current Capacity": 4, "Max Capacity": 100, "Is Charging": False}])
    after = expected(mac, "power")
    assert after != before
    scans = len(mac.history)
    application.press("push button", "Rescan", ("panel", DOMAINS["power"]))
    application.wait_scanned(scans + 1)
    expect(application, DOMAINS["power"], after)


def test_domain_firstScanStillUnderWay_hasNothingYet(launch, mac):
    # The walk itself ends; what the findings wait for does not.
    mac.replace_command("usr/bin/pgrep", "exec sleep 600\n")
    application = launch(CIRROVANE_DEMO_TAB="finder").ready()
    texts = ["Finder Diagnostics", SUBTITLE, "Last Updated Not yet", "Rescan",
             "No diagnostics in this category yet", "Run a scan to populate diagnostics."]  # fmt: skip
    application.wait_until(lambda: application.texts(("panel", "Finder Diagnostics")) == texts, texts)
    # Asked again, it goes on with the scan that is under way.
    application.press("push button", "Rescan", ("panel", "Finder Diagnostics"))
    assert application.is_scanning()
