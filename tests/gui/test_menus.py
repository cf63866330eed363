"""The menus in the window, and what their commands do."""

from application import MENU_TITLE

MENUS = {
    "Cirrovane": ["About Cirrovane", "Settings...", "Check for Updates...", "Open Release Notes", "Quit Cirrovane"],
    "Edit": ["Copy", "Select All"],
    "View": ["Rescan"],
    "Window": ["Minimize", "Close Window", "Show Cirrovane"],
    "Help": ["Terminology Guide", "FAQ"],
}
ANSWER = "It means this Mac can be safely closed"


def entries(application):
    return [node.name for node in application.all("menu item")]


def test_menus_holdTheirCommands(shared):
    assert [node.name for node in shared.all(MENU_TITLE) if node.name] == list(MENUS)
    for menu, commands in MENUS.items():
        shared.press(MENU_TITLE, menu)
        shared.wait_until(lambda: entries(shared) == commands, lambda: f"{commands}, but: {entries(shared)}")
        shared.keys("Escape")
        shared.wait_until(lambda: not entries(shared), "the menu to close")


def test_about_tellsTheBuildAndCloses(launch):
    application = launch().ready()
    application.open_menu("Cirrovane", "About Cirrovane")
    application.node("dialog", "About Cirrovane")
    application.node("label", "Build v1.2 (45)", under=("dialog", "About Cirrovane"))
    # The key is the sheet's first.
    application.keys("ctrl+w")
    application.wait_for_none("dialog", "About Cirrovane")
    assert application.wait_for_window()


def test_copy_textSelected_isOnTheClipboard(launch, desktop):
    application = launch(CIRROVANE_DEMO_TAB="faq").ready()
    application.press("push button", "What does Safe to Close mean?")
    text = application.wait_until(
        lambda: next((node for node in application.all() if node.name.startswith(ANSWER) and "showing" in node.states), None), "the answer"
    )
    x, y, width, height = text.extents()
    desktop.click(x + 5, y + height // 2)
    application.open_menu("Edit", "Select All")
    application.open_menu("Edit", "Copy")
    application.wait_until(lambda: desktop.clipboard() == text.name, lambda: f"the text, but: {desktop.clipboard()}")


def test_copy_nothingSelected_leavesTheClipboard(launch, desktop):
    application = launch().ready()
    before = desktop.clipboard()
    application.open_menu("Edit", "Select All")
    application.open_menu("Edit", "Copy")
    application.wait_for_none("menu item", "Copy")
    assert desktop.clipboard() == before


def test_showCirrovane_windowMinimised_bringsItBack(launch, desktop):
    application = launch().ready()
    window = application.wait_for_window()
    hidden = desktop.atom("_NET_WM_STATE_HIDDEN")
    application.open_menu("Window", "Minimize")
    application.wait_until(lambda: hidden in desktop.property_of(window, "_NET_WM_STATE"), "the window to go")
    assert launch().wait_for_end() == 0
    application.wait_until(lambda: hidden not in desktop.property_of(window, "_NET_WM_STATE"), "the window to come back")
    desktop.activate(window)
    application.open_menu("Window", "Show Cirrovane")
    application.wait_until(lambda: desktop.active_window() == window.id, "the window to have the keyboard")
