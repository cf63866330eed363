"""How the application starts: on which page, and what a second start does."""

from pathlib import Path

import pytest
from application import EXTRA_TABS, TAB_BAR, TABS

REPOSITORY = Path(__file__).resolve().parents[2]
OVERVIEW = TABS[0]
BY_ID = [pytest.param(tab, id=tab.id) for tab in TABS]


def expect_tab(application, tab):
    application.node("heading", tab.heading)
    chosen = application.selected_tab()
    menu = application.node(EXTRA_TABS, under=TAB_BAR).name
    assert (chosen, menu) == ((tab.title, "More") if tab.is_primary else ([], tab.title))


def test_window_carriesTheIconAndTheNameOfTheDesktopsEntry(launch):
    application = launch().ready()
    window = application.wait_for_window()
    icon = application.desktop.property_of(window, "_NET_WM_ICON")
    sizes, at = [], 0
    while at < len(icon):
        width, height = icon[at : at + 2]
        assert any(pixel >> 24 for pixel in icon[at + 2 : at + 2 + width * height])
        sizes.append((width, height))
        at += 2 + width * height
    assert {(16, 16), (32, 32), (48, 48), (256, 256)} <= set(sizes)
    entry = (REPOSITORY / "packaging/linux/com.quillmere.Cirrovane.desktop").read_text()
    assert f"\nStartupWMClass={window.get_wm_class()[1]}\n" in entry


@pytest.mark.parametrize("tab", BY_ID)
def test_start_tabInTheEnvironment_isChosen(launch, tab):
    expect_tab(launch(CIRROVANE_DEMO_TAB=tab.id).ready(), tab)


@pytest.mark.parametrize("value", ["Tools", "", "nonsense", "faq "])
def test_start_unknownTabInTheEnvironment_isOverview(launch, value):
    expect_tab(launch(CIRROVANE_DEMO_TAB=value).ready(), OVERVIEW)


def test_start_noTabInTheEnvironment_isOverview(launch):
    expect_tab(launch().ready(), OVERVIEW)


def test_tabs_pressed_areChosen(launch):
    application = launch().ready()
    for tab in reversed(TABS):
        application.choose_tab(tab)
        expect_tab(application, tab)


def test_secondStart_windowCovered_raisesItAndEnds(launch, make_mac):
    first = launch().ready()
    other = launch(on=make_mac())
    other.ready()
    second = launch()
    assert second.wait_for_end() == 0, second.log
    window = first.wait_for_window()
    first.wait_until(lambda: first.desktop.active_window() == window.id, "the first window to come to the front")
    assert other.is_running


def test_secondStart_windowMinimized_raisesIt(launch):
    first = launch().ready()
    window = first.wait_for_window()
    first.keys("ctrl+m")
    first.wait_until(lambda: first.desktop.active_window() != window.id, "the window to be minimized")
    assert launch().wait_for_end() == 0
    first.wait_until(lambda: first.desktop.active_window() == window.id, "the window to come back")


def test_secondStart_windowClosed_showsIt(launch):
    first = launch().ready()
    first.desktop.close(first.wait_for_window())
    first.wait_until(lambda: not first.windows(), "the window to be closed")
    assert launch().wait_for_end() == 0
    first.ready()


def test_secondStart_panelWanted_opensTheFirstOnesPanel(launch):
    first = launch().ready()
    assert launch("--panel").wait_for_end() == 0
    first.wait_until(lambda: len(first.windows()) == 2, "the panel")


def test_start_noSuchRoot_saysSo(launch, mac):
    mac.remove()
    application = launch()
    assert application.wait_for_end() == 3
    assert str(mac.root) in application.log


def test_start_optionWithoutItsValue_isWrongUsage(launch):
    assert launch("--mac-root").wait_for_end() == 2


def test_scanThatTakesItsTime_saysHowFarItHasCome(launch, held):
    application = launch(**held.environment).ready()
    application.wait_until(
        lambda: any(node.name.startswith("Scanning ") and node.name.endswith(" files") for node in application.all("label")),
        "how far the scan has come",
    )
    held.let_go()
    application.wait_scanned()
    assert not any(node.name.startswith("Scanning ") for node in application.all("label"))


# In the third of the five watched folders.
LATE_FILE = "Timetable.ics"
ACCENT = (0x3D, 0x9B, 0xFF)


def bar(application):
    """How much of the window's width the bar below the tabs fills, 0 to 1."""
    x, y, width, height = application.desktop.geometry(application.wait_for_window())
    picture = application.desktop.picture(x, y, width, height // 4)

    def filled(row):
        end = 0
        while end < width and all(abs(one - other) < 8 for one, other in zip(picture.pixel(end, row), ACCENT)):
            end += 1
        return end

    return max(filled(row) for row in range(picture.height)) / width


def test_nextScanThatTakesItsTime_fillsABarAsFarAsItHasCome(launch, held):
    application = launch(CIRROVANE_TEST_GATED_ITEM=LATE_FILE, **held.environment).ready()
    held.let_go()
    application.wait_scanned()
    assert bar(application) == 0
    held.hold_again()
    application.all("push button", "Rescan")[0].press()
    application.wait_until(lambda: 0 < bar(application) < 1, "a bar that is partly filled")
    held.let_go()
    application.wait_until(lambda: not application.is_scanning(), "the end of the scan")
    application.wait_until(lambda: bar(application) == 0, "the bar to go")
