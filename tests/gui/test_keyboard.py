"""Everything can be done by keyboard, and every control has a name."""

import pytest
from application import CONTROLS, EXTRA_TABS, MENU_TITLE, TABS

# The arrow keys walk through these; Tab reaches the list as one.
IN_LISTS = {"menu item", "list item", "scroll bar", "label"}
# A reason to have none: nobody acts on it, or the page scrolls it with the keys anyway.
UNNAMED = {"scroll bar", "separator"}
PAGES = [pytest.param(tab, id=tab.id) for tab in TABS]


@pytest.fixture
def scanned(launch):
    def start(tab):
        application = launch(CIRROVANE_DEMO_TAB=tab).ready()
        application.wait_scanned()
        return application

    return start


@pytest.mark.parametrize("tab", PAGES)
def test_page_everyControl_hasANameAndAnAction(shared, tab):
    shared.choose_tab(tab)
    found = [node for node in shared.all() if node.role in CONTROLS]
    assert len(found) >= 9, "the tab bar alone has as many"
    nameless = [node for node in found if not node.name.strip() and node.role not in UNNAMED]
    assert not nameless, f"{len(nameless)} without a name:\n{shared.outline()}"
    idle = [str(node) for node in found
            if not {"Press", "Toggle"} & set(node.actions()) and node.role not in UNNAMED | {"text", "entry"}]  # fmt: skip
    assert not idle, "without an action"


@pytest.mark.parametrize("tab", PAGES)
def test_page_everyControl_isReachedByTab(shared, tab):
    shared.choose_tab(tab)
    wanted = {node.path: str(node) for node in shared.all()
              if node.role in CONTROLS and node.role not in IN_LISTS
              and "enabled" in node.states}  # fmt: skip
    reached = shared.walk_by_tab()
    missing = [wanted[path] for path in wanted if path not in reached]
    assert not missing, f"Tab never reaches {missing}"


def test_tabs_spaceAndReturn_choose(launch):
    application = launch().ready()
    for key, title, heading in (("space", "Why", "Why This Verdict"), ("Return", "Incidents", "Incident Center")):
        application.tab_to("page tab", title)
        application.keys(key)
        application.node("heading", heading)


@pytest.mark.parametrize("key", ["space", "Return", "Down"])
def test_extraTabs_byKeyboard_areChosen(launch, key):
    application = launch().ready()
    application.tab_to(EXTRA_TABS, "More")
    application.keys(key)
    application.node("menu item", "System", focused=True)
    application.keys("Down", "Down", "Return")
    application.node("heading", "Storage Diagnostics")
    application.node(EXTRA_TABS, "Storage")


def test_extraTabs_escape_closesTheListAndChangesNothing(launch):
    application = launch().ready()
    application.tab_to(EXTRA_TABS, "More")
    application.keys("space")
    application.node("menu item", "System", focused=True)
    application.keys("Down", "Escape")
    application.wait_for_none("menu item", "System")
    application.node(EXTRA_TABS, "More", focused=True)
    application.node("heading", "Cirrovane")


@pytest.mark.parametrize("number, heading", enumerate(
    ["Cirrovane", "Why This Verdict", "Incident Center", "Live Status", "iCloud Diagnostics", "Finder Diagnostics"], 1
))  # fmt: skip
def test_tabs_digits_choose(launch, number, heading):
    application = launch(CIRROVANE_DEMO_TAB="faq").ready()
    application.keys(f"ctrl+{number}")
    application.node("heading", heading)


@pytest.mark.parametrize("key", ["space", "Return"])
def test_rescan_byKeyboard_scans(scanned, mac, key):
    application = scanned("faq")
    application.tab_to("push button", "Rescan")
    application.keys(key)
    application.wait_scanned(2)
    application.keys("ctrl+r")
    application.wait_scanned(3)


def test_build_byKeyboard_copiesTheVersion(scanned):
    application = scanned("faq")
    application.tab_to("push button", "Build v1.2 (45)")
    application.keys("space")
    application.node("push button", "Copied v1.2 (45)")


def test_menus_byKeyboard_areOpenedAndUsed(launch):
    application = launch().ready()
    application.tab_to(MENU_TITLE, "Help")
    application.keys("space")
    application.node("menu item", "Terminology Guide")
    application.keys("Down", "Return")
    application.node("dialog", "Terminology Guide")


def test_menus_byTheirLetters_areOpened(launch):
    application = launch().ready()
    application.keys("alt+h", pause=0.2)
    application.node("menu item", "Terminology Guide")
    application.keys("Escape")
    application.wait_for_none("menu item", "Terminology Guide")
    application.keys("alt+e", pause=0.2)
    application.node("menu item", "Copy")
