"""That a window which stays open holds no more and more memory, whoever draws it. It takes minutes."""

from pathlib import Path

import pytest
from test_live import open_surfaces, save_and_upload, settled

MEBIBYTE = 1 << 20
# What is kept on purpose is there after the first ones: the history is full, each text has been seen.
WARM_UP, REFRESHES = 220, 300
# Between two readings of what the window says.
READ_EVERY = 20
# Each a NO and a YES again.
WARM_UP_TURNS, TURNS = 50, 250
REFRESHES_MAY_GROW, TURNS_MAY_GROW = 2 * MEBIBYTE, MEBIBYTE
DRAWING = [
    pytest.param({"QT_QUICK_BACKEND": "software", "QSG_RHI_BACKEND": ""}, id="painter"),
    pytest.param({"QT_QUICK_BACKEND": "", "QSG_RHI_BACKEND": "opengl"}, id="opengl"),
]


def own_memory(application):
    """In bytes, without the files that are mapped."""
    lines = Path(f"/proc/{application.process.pid}/smaps_rollup").read_text().splitlines()
    return next(1024 * int(line.split()[1]) for line in lines if line.startswith("Anonymous:"))


def refresh(application, mac, times):
    """By the keyboard, one after the other, to the end of each; a screen reader reads the window now and then."""
    history = mac.stores / "history.json"

    def stamp():
        status = history.stat()
        return status.st_ino, status.st_mtime_ns

    for number in range(times):
        before = stamp()

        def has_refreshed():
            if stamp() != before:
                return True
            # One that is asked for while another runs is not begun.
            application.keys("ctrl+r")
            return False

        application.wait_until(has_refreshed, "a refresh by the keyboard")
        if number % READ_EVERY == 0:
            application.node("push button", "Terminology")


def expect_no_growth(before, after, through, most, capsys):
    with capsys.disabled():
        print(f"\n{before / MEBIBYTE:.1f} MiB, after {through} {after / MEBIBYTE:.1f}")
    assert after <= before + most


@pytest.mark.parametrize("environment", DRAWING)
def test_overview_refreshedAgainAndAgain_holdsWhatItHeld(launch, mac, capsys, environment):
    mac.set_defaults(motionEnabled=True)
    application = launch(**environment).ready()
    application.wait_scanned()
    refresh(application, mac, WARM_UP)
    before = own_memory(application)
    refresh(application, mac, REFRESHES)
    after = own_memory(application)
    expect_no_growth(before, after, f"{REFRESHES} refreshes", REFRESHES_MAY_GROW, capsys)


def test_verdictThatTurnsAgainAndAgain_holdsWhatItHeld(launch, mac, capsys):
    mac.set_defaults(motionEnabled=False)
    application, file = settled(launch, mac)
    surfaces = open_surfaces(application)
    for _ in range(WARM_UP_TURNS):
        save_and_upload(surfaces, file)
    before = own_memory(application)
    for _ in range(TURNS):
        save_and_upload(surfaces, file)
    expect_no_growth(before, own_memory(application), f"{TURNS} turns", TURNS_MAY_GROW, capsys)
