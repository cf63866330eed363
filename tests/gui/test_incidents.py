"""The incident center: what it lists, its filters, and what one can do there."""

import json
import re
from datetime import datetime

import pytest

PAGE = ("panel", "Incident Center")
HEAD = ["Incident Center", "Persistent risk history with recurrence tracking and guardrail notifications."]
SWITCH_TEXTS = ["Guardrail Notifications", "Alerts when Safe to Close changes between safe and unsafe."]
EMPTY = ["No incidents in this filter", "Try changing scope or run additional scans."]


def incident(number, **values):
    """A record of one that is over."""
    return {
        "id": f"00000000-0000-4000-8000-{number:012}",
        "title": f"Trouble {number}",
        "domain": "Network",
        "severity": "warning",
        "firstSeen": "2026-10-03T08:05:00Z",
        "lastSeen": "2026-10-05T21:40:00Z",
        "lastDetail": f"Detail {number}.",
        "occurrences": 2,
        "isResolved": True,
        "resolvedAt": "2026-10-06T09:00:00Z",
        "fingerprint": f"trouble-{number}",
        **values,
    }  # fmt: skip


@pytest.fixture
def opened(launch, mac):
    """The page after a scan, of a Mac on which there were these resolved incidents before."""

    def open_page(*records):
        mac.stores.mkdir(parents=True, exist_ok=True)
        (mac.stores / "incidents.json").write_text(json.dumps(records))
        application = launch(CIRROVANE_DEMO_TAB="incidents").ready()
        application.wait_scanned()
        return application

    return open_page


def time_text(time):
    time = datetime.strptime(time, "%Y-%m-%dT%H:%M:%SZ")
    return f"{time:%b} {time.day}, {time.hour % 12 or 12}:{time:%M}\u202f{time:%p}"


def row(record):
    """What the page says of a record."""
    count = record["occurrences"]
    state = ["Resolved", "Reopen"] if record["isResolved"] else ["Active", "Mark Resolved"]
    return [record["title"], record["domain"], "1 occurrence" if count == 1 else f"{count} occurrences",
            f"First {time_text(record['firstSeen'])}", f"Last {time_text(record['lastSeen'])}",
            record["lastDetail"].rstrip(), *state]  # fmt: skip


def rows(application):
    """Each incident's texts, its badge and its button, in the order of the page."""
    found = []
    for card in application.all("panel", under=PAGE):
        texts = [node.name for node in card.walk() if node.role in ("label", "push button") and node.is_there]
        if texts and texts[0] == card.name and texts[-1] in ("Mark Resolved", "Reopen"):
            found.append(texts)
    return found


def pills(application):
    return [text for text in application.texts(PAGE) if re.fullmatch(r"(Active|Resolved|Recurring) \d+", text)]


def expect_pills(application, active, resolved, recurring):
    expected = [f"Active {active}", f"Resolved {resolved}", f"Recurring {recurring}"]
    application.wait_until(lambda: pills(application) == expected, lambda: f"{expected}: {pills(application)}")


def expect_rows(application, records):
    expected = [row(record) for record in records]
    application.wait_until(lambda: rows(application) == expected, lambda: f"{expected}, but there is {rows(application)}")


def choose(application, group, choice):
    application.press("radio button", choice, ("panel", group))


def press_for(application, button, title):
    def find():
        return [node for node in application.all("push button", button) if node.description == title]

    application.wait_until(find, f"{button} of {title}")[0].press()


def test_incidents_areToldInTheStoresOrder(opened, mac):
    application = opened(incident(1, occurrences=7, severity="error"), incident(2, occurrences=1), incident(3, occurrences=0))
    records = mac.ask("incidents")
    active = [record for record in records if not record["isResolved"]]
    assert {record["severity"] for record in active} == {"warning", "error"}
    expect_rows(application, records)
    texts = application.texts(PAGE)
    assert texts[:2] == HEAD
    assert texts[2:5] == [f"Active {len(active)}", "Resolved 3", "Recurring 0"]
    assert texts[5:7] == SWITCH_TEXTS
    told = {node.name: node.description for node in application.all("label", under=PAGE)}
    assert all(told[record["title"]] == record["severity"].capitalize() for record in records)


def test_filters_keepWhatTheySay(opened, mac):
    application = opened(incident(1, severity="error"), incident(2))
    records = mac.ask("incidents")
    for scope, resolved in (("Active", [False]), ("Resolved", [True]), ("All", [False, True])):
        choose(application, "Scope", scope)
        for choice, severities in (("Warnings", ["warning"]), ("Errors", ["error"]), ("All", ["warning", "error"])):
            choose(application, "Severity", choice)
            expect_rows(application, [record for record in records
                                      if record["isResolved"] in resolved and record["severity"] in severities])  # fmt: skip
    active = len([record for record in records if not record["isResolved"]])
    expect_pills(application, active, 2, 0)


def test_filters_thatKeepNothing_sayWhatToDo(opened, mac):
    mac.settle()
    mac.set_fact("lowPowerMode", True)
    application = opened()
    active = mac.ask("incidents")
    assert active and all(record["severity"] == "warning" for record in active)
    choose(application, "Scope", "Active")
    choose(application, "Severity", "Errors")
    expect_rows(application, [])
    assert [text for text in application.texts(PAGE) if text in EMPTY] == EMPTY
    expect_pills(application, len(active), 0, 0)


def test_filters_pageLeftAndOpenedAgain_areBothAtAll(opened, mac):
    application = opened(incident(1))
    records = mac.ask("incidents")
    choose(application, "Scope", "Resolved")
    choose(application, "Severity", "Warnings")
    expect_rows(application, [record for record in records if record["isResolved"]])
    application.press("page tab", "Why")
    application.node("heading", "Why This Verdict")
    application.press("page tab", "Incidents")
    expect_rows(application, records)


def test_resolve_underScopeActive_takesTheRowAwayAndCounts(opened, mac):
    application = opened(incident(1, occurrences=3))
    press_for(application, "Reopen", "Trouble 1")
    active = [record for record in mac.ask("incidents") if not record["isResolved"]]
    expect_pills(application, len(active), 0, 1)
    choose(application, "Scope", "Active")
    press_for(application, "Mark Resolved", "Trouble 1")
    expect_rows(application, [record for record in active if record["title"] != "Trouble 1"])
    expect_pills(application, len(active) - 1, 1, 0)
    assert [record["title"] for record in mac.ask("incidents", "--scope", "resolved")] == ["Trouble 1"]


def test_resolveAndReopen_underScopeAll_keepTheOrder(opened, mac):
    application = opened()
    records = mac.ask("incidents")
    expect_rows(application, records)
    press_for(application, "Mark Resolved", records[0]["title"])
    expect_rows(application, [{**records[0], "isResolved": True}, *records[1:]])
    press_for(application, "Reopen", records[0]["title"])
    expect_rows(application, records)


def test_refresh_whileAFilterIsChosen_keepsIt(opened, mac):
    application = opened(incident(1))
    choose(application, "Scope", "Resolved")
    application.press("push button", "Rescan", ("panel", "Filter"))
    application.wait_scanned(2)
    expect_rows(application, [incident(1)])
    application.node("radio button", "Resolved", ("panel", "Scope"), checked=True)


def test_notificationSwitch_isRemembered(opened, mac, launch):
    application = opened()
    switch = application.node(name="Guardrail Notifications", under=PAGE, role="check box", checked=True)
    switch.press()
    application.node(name="Guardrail Notifications", under=PAGE, role="check box", checked=False)
    assert mac.defaults["guardrailNotificationsEnabled"] is False
    application.quit()
    again = launch(CIRROVANE_DEMO_TAB="incidents").ready()
    again.node(name="Guardrail Notifications", under=PAGE, role="check box", checked=False)
