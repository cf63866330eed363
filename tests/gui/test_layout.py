"""Nothing is cut off and no two texts lie on each other where the window is as small as it gets."""

import itertools

import pytest
from application import EXTRA_TABS, TAB_BAR, TABS, TEXTS

# Of the content; the menu bar comes on top.
SMALLEST = (860, 700)
# Neighbours may share a line of pixels.
TOLERANCE = 1


def overlap(one, other):
    width = min(one[0] + one[2], other[0] + other[2]) - max(one[0], other[0])
    height = min(one[1] + one[3], other[1] + other[3]) - max(one[1], other[1])
    return width > TOLERANCE and height > TOLERANCE


def expect_clear(application, window, page=None):
    """Texts within the window, unless the page scrolls them down or the tab bar across; none on another of the same
    parent. A page that has just been opened finds its places first."""
    problems = []

    def is_clear():
        problems[:] = find_problems(application, window, page)
        return not problems

    application.wait_until(is_clear, lambda: "\n".join(problems))


def find_problems(application, window, page):
    x, y, width, height = window
    placed = [(node, node.extents()) for node in application.all() if node.role in TEXTS | {"push button", "page tab"}]
    problems = []
    for node, (left, top, wide, high) in placed:
        above = {(parent.role, parent.name) for parent in node.ancestors()}
        is_across = left >= x and left + wide <= x + width or TAB_BAR in above
        is_down = top >= y and top + high <= y + height or ("panel", page) in above
        if wide <= 0 or high <= 0 or not is_across or not is_down:
            problems.append(f"{node} at {(left, top, wide, high)} is outside of the window {window}")
    by_parent = itertools.groupby(
        sorted(placed, key=lambda entry: entry[0].parent.path), key=lambda entry: entry[0].parent.path
    )
    for _, siblings in by_parent:
        for (node, one), (other_node, other) in itertools.combinations(list(siblings), 2):
            if overlap(one, other):
                problems.append(f"{node} at {one} lies on {other_node} at {other}")
    return problems


@pytest.mark.parametrize("tab", [pytest.param(tab, id=tab.id) for tab in TABS])
def test_page_smallestWindow_textsAreInsideAndApart(shared, tab):
    shared.resize_content(*SMALLEST)
    shared.choose_tab(tab)
    expect_clear(shared, shared.desktop.geometry(shared.wait_for_window()), tab.heading)


@pytest.mark.parametrize("tab", [pytest.param(tab, id=tab.id) for tab in TABS])
def test_tabBar_smallestWindow_hasTheChosenTabWhollyInSight(shared, tab):
    shared.resize_content(*SMALLEST)
    shared.choose_tab(tab)
    chosen = ("page tab", tab.title) if tab.is_primary else (EXTRA_TABS, tab.title)

    def is_in_sight():
        x, _, width, _ = shared.node(*TAB_BAR).extents()
        left, _, wide, _ = shared.node(*chosen, under=TAB_BAR).extents()
        return x <= left and left + wide <= x + width

    shared.wait_until(is_in_sight, f"all of {tab.title} in sight")


def test_window_asSmallAsItGets_is860By700(launch):
    application = launch().ready()
    window = application.wait_for_window()
    application.desktop.resize(window, 300, 200)
    width, height = SMALLEST
    smallest = (width, height + application.menu_bar_height())
    assert smallest[1] > height
    application.wait_until(lambda: application.desktop.geometry(window)[2:] == smallest, f"a window of {smallest}")


def tool_bar(application):
    """Where everything in the tab bar stands, by name."""
    parts = [node for node in application.all() if node.role in {"page tab", "push button"}]
    return {node.name: node.extents() for node in parts if node.name in {"Overview", "More", "Build v1.2 (45)", "Rescan"}}


def test_toolBar_whenAScanBegins_standsStill(launch, held):
    application = launch(CIRROVANE_DEMO_TAB="faq", **held.environment).ready()
    application.resize_content(*SMALLEST)
    application.wait_until(application.is_scanning, "the scan to begin")
    during = tool_bar(application)
    held.let_go()
    application.wait_scanned()
    assert tool_bar(application) == during


def test_panel_textsAreInsideAndApart(launch):
    application = launch("--panel")
    window = application.wait_for_window(380)
    application.wait_scanned()
    expect_clear(application, application.desktop.geometry(window))
