"""The export: what is handed over, and how it will begin."""

import json
import urllib.parse

import pytest

SHEET = ("dialog", "Export Proof")
PACKET_DIALOG = "Export Proof Packet"
PAGE_DIALOG = "Export Page"
TIMELINE = "Audit Timeline"


@pytest.fixture
def export(launch, mac):
    """The application with the sheet of an export open."""
    application = launch(CIRROVANE_DEMO_TAB="overview").ready()
    application.wait_scanned()
    application.press("push button", "Export Proof Packet", ("panel", TIMELINE))
    application.node(*SHEET)
    return application


def preview(application):
    return "\n".join(node.name for node in application.all("label", under=("panel", "Preview")))


def choose(application, title):
    application.node("radio button", title, SHEET).press()
    application.node("radio button", title, SHEET, checked=True)


def save_as(application, title, file):
    application.press("push button", "Export...", SHEET)
    application.wait_for_none(*SHEET)
    application.node("dialog", title)
    entry = application.wait_until(
        lambda: [node for node in application.all("text", under=("dialog", title)) if "editable" in node.states],
        "where to type",
    )[0]
    assert entry.accessible.queryEditableText().setTextContents(str(file))
    application.press("push button", "Save", ("dialog", title))


def note(application, text):
    application.node("alert", text, ("panel", TIMELINE))


def test_sheet_showsHowThePacketWillBegin(export):
    export.node("radio button", "Packet", SHEET, checked=True)
    export.node("radio button", "Shown", SHEET, checked=True)
    export.wait_until(lambda: '"diagnostics"' in preview(export) and "Lindqvist" in preview(export), lambda: preview(export))
    choose(export, "Hidden")
    export.wait_until(lambda: "name-" in preview(export) and "Lindqvist" not in preview(export), lambda: preview(export))
    choose(export, "Page")
    export.wait_until(lambda: "It was not safe to close this Mac" in preview(export), lambda: preview(export))


def test_packetAndPageWithHiddenNames_areWrittenSideBySide(export, mac):
    choose(export, "Both")
    choose(export, "Hidden")
    save_as(export, PACKET_DIALOG, mac.home / "safe.json")
    note(export, "Proof packet exported to safe.json, its page to safe.html.")
    for name in ("safe.json", "safe.html"):
        text = (mac.home / name).read_text()
        assert "name-1" in text and "Lindqvist" not in text
    assert json.loads((mac.home / "safe.json").read_text())["report"]["score"] == mac.history[0]["score"]


def test_page_isNamedInADialogOfItsOwnAndCanBeRevealed(export, mac, files):
    choose(export, "Page")
    save_as(export, PAGE_DIALOG, mac.home / "proof")
    note(export, "Page exported to proof.html.")
    page = mac.home / "proof.html"
    assert page.read_text().startswith("<!DOCTYPE html>")
    export.press("push button", "Reveal in Finder", ("panel", TIMELINE))
    uri = "file://" + urllib.parse.quote(str(page))
    export.wait_until(lambda: files.shown() == [uri], lambda: f"{uri}: {files.shown()}")


def test_cancel_leavesEverythingAsItWas(export):
    export.press("push button", "Cancel", SHEET)
    export.wait_for_none(*SHEET)
    assert not export.all("dialog", PACKET_DIALOG)


def test_keyboard_opensAndLeavesTheSheet(export):
    export.keys("Escape")
    export.wait_for_none(*SHEET)
    export.tab_to("push button", "Export Proof Packet")
    export.keys("space")
    # The button that goes on has the keyboard at first.
    export.node("push button", "Export...", SHEET, focused=True)
    export.keys("Escape")
    export.wait_for_none(*SHEET)
    export.node("push button", "Export Proof Packet", ("panel", TIMELINE), focused=True)
