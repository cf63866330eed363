"""That a window which is refreshed again and again holds no more and more memory, whoever draws it. It takes minutes."""

from pathlib import Path

import pytest

MEBIBYTE = 1 << 20
# What is kept on purpose is there after the first ones: the history is full, each text has been seen.
WARM_UP, REFRESHES = 220, 300
# Between two readings of what the window says.
READ_EVERY = 20
MAY_GROW = 2 * MEBIBYTE
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


@pytest.mark.parametrize("environment", DRAWING)
def test_overview_refreshedAgainAndAgain_holdsWhatItHeld(launch, mac, capsys, environment):
    mac.set_defaults(motionEnabled=True)
    application = launch(**environment).ready()
    application.wait_scanned()
    refresh(application, mac, WARM_UP)
    before = own_memory(application)
    refresh(application, mac, REFRESHES)
    after = own_memory(application)
    with capsys.disabled():
        print(f"\n{before / MEBIBYTE:.1f} MiB after {WARM_UP} refreshes, {after / MEBIBYTE:.1f} after {REFRESHES} more")
    assert after <= before + MAY_GROW
