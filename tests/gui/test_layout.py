"""Nothing is cut off and no two texts lie on each other where the window is as small as it gets."""

import itertools

import pytest
from application import TABS, TEXTS

SMALLEST = (860, 700)
# Neighbours may share a line of pixels.
TOLERANCE = 1


def overlap(one, other):
    width = min(one[0] + one[2], other[0] + other[2]) - max(one[0], other[0])
    height = min(one[1] + one[3], other[1] + other[3]) - max(one[1], other[1])
    return width > TOLERANCE and height > TOLERANCE


def expect_clear(application, window, page=None):
    """Texts within the window's width, and within its height unless the page scrolls them; none on another of the same
    parent."""
    x, y, width, height = window
    placed = [(node, node.extents()) for node in application.all() if node.role in TEXTS | {"push button", "page tab"}]
    outside = []
    for node, (left, top, wide, high) in placed:
        scrolls = any((parent.role, parent.name) == ("panel", page) for parent in node.ancestors())
        if wide <= 0 or high <= 0 or left < x or left + wide > x + width:
            outside.append((str(node), (left, top, wide, high)))
        elif not scrolls and (top < y or top + high > y + height):
            outside.append((str(node), (left, top, wide, high)))
    assert not outside, f"outside of the window {window}"
    by_parent = itertools.groupby(
        sorted(placed, key=lambda entry: entry[0].parent.path), key=lambda entry: entry[0].parent.path
    )
    for _, siblings in by_parent:
        for (node, one), (other_node, other) in itertools.combinations(list(siblings), 2):
            assert not overlap(one, other), f"{node} at {one} lies on {other_node} at {other}"


@pytest.mark.parametrize("tab", [pytest.param(tab, id=tab.id) for tab in TABS])
def test_page_smallestWindow_textsAreInsideAndApart(launch, tab):
    application = launch(CIRROVANE_DEMO_TAB=tab.id).ready()
    application.resize(*SMALLEST)
    application.wait_scanned()
    expect_clear(application, application.desktop.geometry(application.wait_for_window()), tab.heading)


def test_window_asSmallAsItGets_is860By700(launch):
    application = launch().ready()
    window = application.wait_for_window()
    application.desktop.resize(window, 300, 200)
    application.wait_until(lambda: application.desktop.geometry(window)[2:] == SMALLEST, f"a window of {SMALLEST}")


def test_panel_textsAreInsideAndApart(launch):
    application = launch("--panel")
    window = application.wait_for_window(380)
    application.wait_scanned()
    expect_clear(application, application.desktop.geometry(window))
