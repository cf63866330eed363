"""The page of the machine's own condition, read as a screen reader reads it."""

import re

import pytest

PAGE = ("panel", "Live Status")
SUBTITLE = "Hardware and subsystem signals that affect reliability and confidence."
SENSORS = (
    "Exact CPU temperature may be unavailable from default system APIs. "
    "Desktop tools can unlock richer hardware telemetry."
)
LIVE = ["Live Verdict", "State Live", "Reason None", "Verdict Confirmed Now", "Changes Missed 0"]
TIME = re.compile(r"Captured \d{1,2}:\d\d:\d\d\s[AP]M")


@pytest.fixture
def status(launch):
    def start():
        application = launch(CIRROVANE_DEMO_TAB="status").ready()
        application.wait_scanned()
        return application

    return start


def expect(application, *cards):
    """The page with these texts between its head and its last card."""
    expected = [text for card in cards for text in card]

    def is_shown():
        texts = application.texts(PAGE)
        return (
            texts[:2] == ["Live Status", SUBTITLE]
            and TIME.fullmatch(texts[2])
            and texts[3] == "Refresh"
            and texts[4:] == [*expected, *LIVE, "Optional Sensors", SENSORS]
        )

    application.wait_until(is_shown, lambda: f"{expected}, but the page says {application.texts(PAGE)}")


def test_status_healthyMac_isToldWhole(status, mac):
    expect(
        status(),
        ["CPU", "Usage 19.6%", "Load 1.52 / 1.31 / 1.20", "Thermal State Nominal", "Temperature 61.8 C"],
        ["Memory", "Memory", "64%", "Used 11 GB", "Total 17.18 GB"],
        ["Storage", "Free 212.5 GB", "Total 494.38 GB"],
        ["Power", "Battery 87%", "Charging Yes", "Low Power Mode Off", "Uptime 3d 4h"],
        ["Network", "iCloud Reachability Reachable"],
    )


def test_status_nothingKnown_saysSo(status, mac):
    for fact in ("volume", "powerSources", "loadAverages", "thermalState", "physicalMemory", "uptimeSeconds"):
        mac.set_fact(fact, None)
    for command in ("usr/bin/top", "usr/bin/vm_stat", "opt/homebrew/bin/osx-cpu-temp", "usr/sbin/scutil", "sbin/ping"):
        (mac.root / command).unlink(missing_ok=True)
    expect(
        status(),
        ["CPU", "Usage Unknown", "Load - / - / -", "Thermal State Unknown",
         "Temperature Unknown (optional sensor required)"],  # fmt: skip
        ["Memory", "Used Unknown", "Total Zero KB"],
        ["Storage", "Free Unknown", "Total Unknown"],
        ["Power", "Battery Unknown", "Charging Unknown", "Low Power Mode Off", "Uptime 0m"],
        ["Network", "iCloud Reachability Unknown"],
    )


def test_status_refreshed_takesTheNewValues(status, mac):
    application = status()
    mac.set_fact("powerSources", [{"Current Capacity": 12, "Max Capacity": 100, "Is Charging": False}])
    mac.set_fact("lowPowerMode", True)
    scans = len(mac.history)
    application.press("push button", "Refresh", PAGE)
    application.wait_scanned(scans + 1)
    for text in ("Battery 12%", "Charging No", "Low Power Mode On"):
        application.node("label", text, PAGE)
