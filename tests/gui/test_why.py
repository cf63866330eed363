"""The page that says why the verdict is what it is."""

import pytest

PAGE = ("panel", "Why This Verdict")
HEAD = ["Why This Verdict", "Clear proof of why this device is safe or unsafe to pause right now."]
MEANING = (
    "Safe to Close means the device can safely sleep, shut down, or disconnect from network risk based on currently "
    "observable sync signals."
)
REASONS = {
    "unresolvedConflict": "Conflict Detected",
    "notDownloaded": "Cloud-Only (Not Local)",
}


@pytest.fixture
def why(launch):
    def start():
        application = launch(CIRROVANE_DEMO_TAB="why").ready()
        application.wait_scanned()
        return application

    return start


def expect(application, verdict, criteria, blocker):
    """`blocker` is the title, the path and the details of the one that is shown; empty for none."""
    rows = [text for criterion in criteria for text in (criterion["title"], criterion["detail"])]
    expected = [*HEAD, "Safe to Close", verdict, MEANING, "Last evaluation: ", "Checklist", "All must pass", *rows]
    if blocker:
        expected += ["Top Blocking Reason", *blocker, "Reveal in Finder"]

    def told():
        return [
            "Last evaluation: " if text.startswith("Last evaluation: ") else text for text in application.texts(PAGE)
        ]

    application.wait_until(lambda: told() == expected, lambda: f"{expected}, but the page says {told()}")


def test_why_unsafeMac_tellsEachCriterionAndTheTopBlocker(why, mac):
    told = mac.ask("explain")
    assert told["safeToClose"] is False
    assert [criterion["isPassing"] for criterion in told["criteria"]].count(False) >= 3
    top = told["topBlocker"]
    expect(why(), "NO", told["criteria"], [REASONS[top["reason"]], top["filePath"], top["details"]])


def test_why_safeMacWithoutBlockers_hasNoCardForThem(why, mac):
    mac.settle()
    told = mac.ask("explain")
    assert "topBlocker" not in told
    assert all(criterion["isPassing"] for criterion in told["criteria"])
    expect(why(), "YES", told["criteria"], [])


def test_why_safeWithACloudOnlyFile_saysYesAndShowsIt(why, mac):
    mac.settle()
    file = next(path for path in sorted((mac.home / "Library/Mobile Documents").rglob("*")) if path.is_file())
    mac.set_file(file, downloadingStatus="notDownloaded")
    told = mac.ask("explain")
    assert told["safeToClose"] is True
    expect(why(), "YES", told["criteria"], ["Cloud-Only (Not Local)", str(file), told["topBlocker"]["details"]])


def test_why_verdictFlips_pageFollows(why, mac):
    mac.settle()
    application = why()
    application.node("label", "YES", PAGE)
    mac.unsettle()
    application.rescan()
    application.node("label", "NO", PAGE)
    application.node("label", REASONS[mac.ask("explain")["topBlocker"]["reason"]], PAGE)
