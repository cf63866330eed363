"""The metrics that the application writes for a collector: the choice of it, the file, and what is said when it fails."""

import pytest
from test_overview import type_into_dialog
from test_settings import DIALOG, notes, switch

WRITE = "Write metrics for this Mac"
PANEL = "Write Metrics"
REFUSED = "The metrics could not be written. "


@pytest.fixture
def place(mac):
    """Where a collector would look for them."""
    folder = mac.root / "collected"
    folder.mkdir()
    return folder / "cirrovane.prom"


@pytest.fixture
def settings(launch):
    """Opens the settings of the application once it has scanned."""

    def start():
        application = launch().ready()
        application.wait_scanned()
        application.keys("ctrl+comma")
        application.node(*DIALOG)
        return application

    return start


def samples(place):
    """Of a file in the text format; None while there is none."""
    lines = place.read_text().splitlines() if place.exists() else []
    return {name: float(value) for name, value in (line.rsplit(" ", 1) for line in lines if line[0] != "#")} or None


def choose(application, place):
    switch(application, WRITE, checked=False).press()
    type_into_dialog(application, PANEL, str(place), "Save")


def wait_for(application, place, **wanted):
    def holds():
        found = samples(place) or {}
        return all(found.get(f"cirrovane_{name}") == value for name, value in wanted.items())

    application.wait_until(holds, lambda: f"{wanted} in {samples(place)}")


def test_metrics_switchedOn_areWrittenToTheChosenFileAfterEachScan(settings, mac, place):
    application = settings()
    choose(application, place)
    switch(application, WRITE, checked=True)
    application.node(None, str(place))
    wait_for(application, place, safe_to_close=0, pending_uploads=9)
    assert mac.defaults["metricsEnabled"] is True
    assert mac.defaults["metricsFile"] == str(place)
    found = samples(place)
    assert sum(found[f'cirrovane_liveness{{state="{state}"}}'] for state in ("live", "catchingUp", "notLive")) == 1
    assert found['cirrovane_failed_probes{outcome="outOfTime"}'] == 0
    assert found["cirrovane_live_disagreements_total"] == 0
    mac.settle()
    application.keys("Escape")
    application.keys("ctrl+r")
    wait_for(application, place, pending_uploads=0)


def test_metrics_placeNotChosen_stayOff(settings, mac):
    application = settings()
    switch(application, WRITE, checked=False).press()
    application.node("dialog", PANEL)
    application.keys("Escape")
    application.wait_for_none("dialog", PANEL)
    switch(application, WRITE, checked=False)
    assert "metricsFile" not in mac.defaults


def test_metrics_launchedAgain_areWrittenOn(launch, mac, place):
    mac.set_defaults(metricsEnabled=True, metricsFile=str(place))
    application = launch().ready()
    application.wait_until(place.exists, "the file")
    application.keys("ctrl+comma")
    switch(application, WRITE, checked=True).press()
    switch(application, WRITE, checked=False)
    place.unlink()
    application.keys("Escape")
    scans = len(mac.history)
    application.keys("ctrl+r")
    application.wait_scanned(scans + 1)
    assert not place.exists()
    assert mac.defaults["metricsEnabled"] is False


def test_metrics_thatCannotBeWritten_areSaidBesideTheSwitchUntilTheyCan(settings, mac, place):
    place.mkdir()
    (place / "in the way").touch()
    mac.set_defaults(metricsEnabled=True, metricsFile=str(place))
    application = settings()
    application.wait_until(lambda: [note for note in notes(application) if note.startswith(REFUSED)], "why")
    assert sum(note.startswith(REFUSED) for note in notes(application)) == 1
    switch(application, WRITE, checked=True)
    (place / "in the way").unlink()
    place.rmdir()
    application.keys("Escape")
    application.keys("ctrl+r")
    wait_for(application, place, safe_to_close=0, pending_uploads=9)
    application.keys("ctrl+comma")
    application.node(*DIALOG)
    application.wait_until(lambda: not [note for note in notes(application) if note.startswith(REFUSED)], "no note")
