"""The verdict follows the files: how soon the window's surfaces show a save, and how they say whether they follow."""

import os
import statistics
import time
from pathlib import Path

from application import TABS
from test_tray import GREEN, RED, YELLOW, coloured, expect_icon, open_by_click
from test_trust import HANGS, press_rescan
from waiting import PATIENCE, TooLate

# Between a save and the last surface that shows it, in seconds.
LONGEST = 1.0
# Between two looks at a surface.
PAUSE = 0.005
# Where, and by which words, a surface tells that all is good.
GOOD_WORDS = {"header": ("image", "Green Safe"), "card": ("label", "YES"), "panel": ("label", "Safe to close now")}
CARD, LIVE_CARD = ("panel", "Safe to Close"), ("panel", "Live Verdict")
NO_MORE_FOLDERS = "The system watches no more folders (fs.inotify.max_user_watches)."
TABS_BY_ID = {tab.id: tab for tab in TABS}
UPLOADED, PENDING = b"isUploaded=true\ndownloadingStatus=current", b"isUploaded=false\ndownloadingStatus=current"


class WorkingFile:
    """A file of a watched folder, with what an editor and the system do to it."""

    def __init__(self, mac):
        folder = Path(mac.watchlist[0]["path"])
        visible = (path for path in sorted(folder.rglob("*")) if path.is_file() and not path.name.startswith("."))
        self._path = next(visible)

    def save(self):
        with open(self._path, "ab") as content:
            content.write(b"one more line\n")
        os.setxattr(self._path, "user.icloud", PENDING)

    def upload(self):
        os.setxattr(self._path, "user.icloud", UPLOADED)


def settled(launch, mac, **environment):
    """The application after its first cycle, with the file that the test works on."""
    mac.settle()
    file = WorkingFile(mac)
    application = launch(CIRROVANE_DEMO_TAB="overview", **environment).ready()
    application.wait_scanned()
    application.node("label", "YES", CARD)
    return application, file


class Surfaces:
    """The places that tell the verdict, found once, so that a look at them costs little."""

    def __init__(self, application):
        self._desktop = application.desktop
        self._icon = self._desktop.geometry(self._desktop.tray_icons()[0])
        self._texts = {surface: application.node(*words).accessible for surface, words in GOOD_WORDS.items()}

    def _is_good(self, surface):
        if surface == "icon":
            picture = self._desktop.picture(*self._icon)
            counts = {colour: coloured(picture, colour) for colour in (GREEN, YELLOW, RED)}
            return max(counts, key=counts.get) == GREEN
        return self._texts[surface].get_name() == GOOD_WORDS[surface][1]

    def wait_until_all(self, good, since):
        """Seconds from a moment until each surface was seen to be good, or not good any more."""
        seen, left = {}, ["icon", *self._texts]
        while left:
            if time.monotonic() > since + PATIENCE:
                raise TooLate(f"after {PATIENCE} s {left} had not become {'good' if good else 'bad'}")
            for surface in list(left):
                if self._is_good(surface) == good:
                    seen[surface] = time.monotonic() - since
                    left.remove(surface)
            time.sleep(PAUSE)
        return seen


def save_and_upload(surfaces, file):
    """Seconds from a save until each surface showed it; after that all is good again."""
    begin = time.monotonic()
    file.save()
    seen = surfaces.wait_until_all(False, begin)
    file.upload()
    surfaces.wait_until_all(True, time.monotonic())
    return seen


def told_times(rounds):
    """Median and worst of each surface, in a line."""
    parts = []
    for surface in rounds[0]:
        times = [1000 * seen[surface] for seen in rounds]
        parts.append(f"{surface} {statistics.median(times):.0f} ms, at worst {max(times):.0f}")
    return "; ".join(parts)


def expect_soon(rounds):
    assert all(seconds <= LONGEST for seen in rounds for seconds in seen.values()), told_times(rounds)


def open_surfaces(application):
    """The panel beside the window; it scans as it opens."""
    open_by_click(application, application.desktop)
    application.node("label", "Safe to close now")
    application.wait_scanned(2)
    expect_icon(application, application.desktop, GREEN)
    return Surfaces(application)


def expect_words(application, state, reason=None):
    """On the card of the verdict, in the panel, and on the page of the machine's condition."""
    sentence = f"{state}. {reason}" if reason else state
    application.wait_until(
        lambda: [node.name for node in application.all("label", sentence)] == [sentence] * 2, f"{sentence!r} in both")
    application.choose_tab(TABS_BY_ID["status"])
    texts = application.texts(LIVE_CARD)
    assert texts[:3] == ["Live Verdict", f"State {state}", f"Reason {reason or 'None'}"], texts
    assert texts[4:] == ["Changes Missed 0"], texts
    application.choose_tab(TABS_BY_ID["overview"])
    return texts[3]


def test_save_turnsIconHeaderCardAndPanelWithinASecondAndUploadTurnsThemBack(launch, mac, desktop):
    application, file = settled(launch, mac)
    open_surfaces(application)
    assert expect_words(application, "Live") == "Verdict Confirmed Now"
    surfaces = Surfaces(application)
    rounds = [save_and_upload(surfaces, file) for _ in range(3)]
    expect_soon(rounds)
    assert len(mac.history) == 2, "a save that is uploaded at once is no record"
    assert desktop.notifications.all() == []


def test_saveBehindAHungProbe_isANoWithinASecond(launch, mac):
    application, file = settled(launch, mac)
    verdict = application.node("label", "YES", CARD).accessible
    mac.replace_command("usr/bin/pgrep", HANGS)
    press_rescan(application)
    application.wait_until(application.is_scanning, "the cycle")
    scans = len(mac.history)
    begin = time.monotonic()
    file.save()
    while verdict.get_name() != "NO":
        assert time.monotonic() < begin + PATIENCE
        time.sleep(PAUSE)
    assert time.monotonic() <= begin + LONGEST
    assert application.is_scanning() and len(mac.history) == scans, "the probe hangs"


def test_foldersThatCannotBeWatched_areToldWithTheReasonUntilTheyCan(launch, mac, refused):
    application, file = settled(launch, mac, **refused.environment)
    open_by_click(application, application.desktop)
    assert expect_words(application, "Not live", NO_MORE_FOLDERS) != "Verdict Confirmed Now"
    # Nobody tells of it; a scan finds it.
    file.save()
    application.rescan()
    application.node("label", "NO", CARD)
    refused.allow()
    file.upload()
    application.rescan()
    expect_words(application, "Live")
    application.node("label", "YES", CARD)
