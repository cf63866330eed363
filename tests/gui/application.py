"""The application as a screen reader has it: nodes with roles, names, states and actions."""

import signal
import subprocess
from dataclasses import dataclass
from functools import cached_property

import pytest
from waiting import PATIENCE, TooLate, wait_until

CONTROLS = {
    "check box", "check menu item", "combo box", "entry", "link", "list item", "menu", "menu item", "page tab",
    "push button", "radio button", "radio menu item", "scroll bar", "slider", "spin button", "text", "toggle button",
}  # fmt: skip
TEXTS = {"heading", "label", "paragraph", "static", "text"}
# What somebody who reads a page aloud reads: its texts, and its controls by their names.
READ = TEXTS | {"check box", "progress bar", "push button", "radio button", "toggle button"}


@dataclass(frozen=True)
class Tab:
    """A tab of the main window."""

    id: str
    title: str
    # What its page says over itself.
    heading: str
    # Whether it has a button of its own in the tab bar; the others are in its menu.
    is_primary: bool


TABS = [
    Tab("overview", "Overview", "Cirrovane", True),
    Tab("why", "Why", "Why This Verdict", True),
    Tab("incidents", "Incidents", "Incident Center", True),
    Tab("status", "Status", "Live Status", True),
    Tab("iCloud", "iCloud", "iCloud Diagnostics", True),
    Tab("finder", "Finder", "Finder Diagnostics", True),
    Tab("system", "System", "System Diagnostics", False),
    Tab("network", "Network", "Network Diagnostics", False),
    Tab("storage", "Storage", "Storage Diagnostics", False),
    Tab("power", "Power", "Power Diagnostics", False),
    Tab("performance", "Performance", "Performance Diagnostics", False),
    Tab("faq", "FAQ", "FAQ", False),
    Tab("tools", "Tools", "Tools & Downloads", False),
]
TAB_BAR = ("page tab list", "Tabs")
# The button of the tabs that have none of their own.
EXTRA_TABS = "push button"
# Qt gives a menu's title in a menu bar the role of the bar.
MENU_TITLE = "menu bar"
# The program that the tests are about speaks of trouble in its QML by these words.
COMPLAINTS = ("qrc:", "QML ", "QQml", "TypeError", "ReferenceError", "Binding loop", "ASSERT", "QObject::", "QFont",
              "QPainter", "Sanitizer", "terminate called")  # fmt: skip


def _unless_gone(ask, otherwise):
    """The answer, or the other one when there is nobody any more to give it."""
    from gi.repository import GLib

    try:
        return ask()
    except GLib.Error:
        return otherwise


class Node:
    """One node of the accessibility tree. Role, name and place in the tree are those of the moment at which the tree was
    read; the rest is asked for when it is wanted, and then kept."""

    def __init__(self, accessible, parent):
        self.accessible, self.parent, self.children = accessible, parent, []
        self.role, self.name = accessible.get_role_name(), accessible.get_name() or ""

    @cached_property
    def description(self):
        return _unless_gone(self.accessible.get_description, "") or ""

    @cached_property
    def states(self):
        states = _unless_gone(lambda: self.accessible.get_state_set().get_states(), [])
        return frozenset(state.value_nick for state in states)

    @cached_property
    def interfaces(self):
        return frozenset(_unless_gone(self.accessible.get_interfaces, []))

    def walk(self):
        """This node and all below, in reading order."""
        yield self
        for child in self.children:
            yield from child.walk()

    @property
    def path(self):
        """Tells nodes apart: the same for the same one in two trees."""
        return self.accessible.path

    def ancestors(self):
        node = self.parent
        while node is not None:
            yield node
            node = node.parent

    @property
    def is_there(self):
        """Whether it is part of what the window has to show, perhaps after scrolling. Items that are hidden are on the
        tree too, but they have no place on the screen."""
        if self.role == "frame":
            return "visible" in self.states
        return self.parent is None or "Component" in self.interfaces

    def actions(self):
        if "Action" not in self.interfaces:
            return []
        action = self.accessible.queryAction()
        return [action.getName(index) for index in range(action.nActions)]

    def act(self, name):
        """Does one of the node's actions."""
        names = self.actions()
        assert name in names, f"{self} has no action {name}, but {names}"
        assert self.accessible.queryAction().doAction(names.index(name)), f"{name} of {self} was refused"

    def press(self):
        """Presses it, or toggles it where that is what it offers."""
        self.act("Press" if "Press" in self.actions() else "Toggle")

    def extents(self):
        """x, y, width, height on the screen."""
        place = self.accessible.queryComponent().getExtents(0)
        return place.x, place.y, place.width, place.height

    def __str__(self):
        description = f" ({self.description})" if self.description else ""
        return f"{self.role} {self.name!r}{description}"

    def outline(self, depth=0):
        """The tree from here on, a line each."""
        told = sorted(self.states & {"checked", "expanded", "focused", "selected", "busy"})
        told += [] if self.is_there else ["hidden"]
        told += ["disabled"] if self.role in CONTROLS and "enabled" not in self.states else []
        lines = ["  " * depth + str(self) + (f" [{', '.join(told)}]" if told else "")]
        return lines + [line for child in self.children for line in child.outline(depth + 1)]


class Application:
    """A running application, on a desktop and a demo Mac."""

    def __init__(self, desktop, program, mac, arguments=(), environment=None, is_host=False):
        """On the machine itself, the demo Mac lends its home folder alone."""
        self.desktop, self.mac = desktop, mac
        self.log_file = desktop.folder / f"cirrovane-{mac.root.name}-{len(desktop.logs)}.log"
        desktop.logs.append(self.log_file)
        root = () if is_host else ("--mac-root", mac.root)
        environment = {**(mac.home_of_the_host() if is_host else {}), **(environment or {})}
        self.process = desktop.spawn([program, *root, *arguments], environment, log=self.log_file)

    @property
    def log(self):
        """What it has said on standard output and standard error."""
        return self.log_file.read_text(errors="replace")

    def complaints(self):
        return [line for line in self.log.splitlines() if any(word in line for word in COMPLAINTS)]

    # Life

    @property
    def is_running(self):
        return self.process.poll() is None

    def wait_for_end(self, seconds=PATIENCE):
        """The exit status."""
        try:
            return self.process.wait(seconds)
        except subprocess.TimeoutExpired:
            raise TooLate(f"the application still runs after {seconds} s") from None

    def end(self):
        """Ends it, whatever it does."""
        if self.is_running:
            self.process.terminate()
            try:
                self.process.wait(3)
            except subprocess.TimeoutExpired:
                self.process.send_signal(signal.SIGKILL)
                self.process.wait()

    # The accessibility tree

    def _root(self):
        """The application's own node; none before it has one."""
        from gi.repository import GLib

        desktop = self.desktop.accessibility.getDesktop(0)
        for index in range(desktop.get_child_count()):
            try:
                child = desktop.get_child_at_index(index)
                if child is not None and child.get_process_id() == self.process.pid:
                    return child
            except GLib.Error:
                # A program that is just going.
                continue
        return None

    def tree(self):
        """The whole tree as it is now; a node that goes meanwhile is left out."""
        from gi.repository import GLib

        def read(accessible, parent):
            node = Node(accessible, parent)
            if node.role == "frame" and not node.is_there:
                return node
            for index in range(accessible.get_child_count()):
                try:
                    child = accessible.get_child_at_index(index)
                    if child is not None:
                        node.children.append(read(child, node))
                except GLib.Error:
                    continue
            return node

        root = self._root()
        try:
            return read(root, None) if root is not None else None
        except GLib.Error:
            return None

    def outline(self):
        tree = self.tree()
        return "\n".join(tree.outline()) if tree else "(no accessibility tree)"

    def all(self, role=None, name=None, under=None):
        """The nodes of this role and name that are there, in reading order. `under` is the role and the name of a node above."""
        tree = self.tree()
        if tree is None:
            return []
        tops = [tree]
        if under is not None:
            tops = [node for node in tree.walk() if (node.role, node.name) == under and node.is_there]
        return [
            node
            for top in tops
            for node in top.walk()
            if (role is None or node.role == role)
            and (name is None or node.name == name)
            and node.is_there
        ]

    def _fail(self, what):
        if not self.is_running:
            pytest.fail(f"{what}: the application has ended with {self.process.poll()}\n{self.log}", pytrace=False)
        pytest.fail(f"{what}. There is:\n{self.outline()}\n{self.log}", pytrace=True)

    def wait_until(self, condition, what, seconds=PATIENCE):
        try:
            return wait_until(lambda: condition() or (not self.is_running and self._fail(what)), what, seconds)
        except TooLate as error:
            self._fail(str(error))

    def node(self, role=None, name=None, under=None, seconds=PATIENCE, **states):
        """The one node of this role and name, which may be yet to come. `focused=True` waits for a state as well."""

        def find():
            found = [
                node
                for node in self.all(role, name, under)
                if all((state in node.states) == wanted for state, wanted in states.items())
            ]
            return found[0] if len(found) == 1 else None

        below = f" under {under[0]} {under[1]!r}" if under else ""
        with_states = f" with {states}" if states else ""
        return self.wait_until(find, f"one {role or 'node'} {name!r}{below}{with_states}", seconds)

    def texts(self, under):
        """Everything that can be read below the node of this role and name, in order."""
        return [node.name for node in self.all(under=under) if node.role in READ]

    def wait_for_none(self, role, name, seconds=PATIENCE):
        self.wait_until(lambda: not self.all(role, name), f"no {role} {name!r} to be left", seconds)

    def press(self, role, name, under=None):
        self.node(role, name, under).press()

    # Windows

    def windows(self):
        return self.desktop.windows_of(self.process.pid) if self.is_running else []

    def wait_for_window(self, width=None):
        """The window; the one of this width where there is more than one."""

        def find():
            found = [w for w in self.windows() if width is None or self.desktop.geometry(w)[2] == width]
            return found[0] if len(found) == 1 else None

        return self.wait_until(find, "the window on the screen")

    def ready(self):
        """Waits until its window is there, has the focus and can be read."""
        window = self.wait_for_window()
        self.node("frame", "Cirrovane")
        self.desktop.activate(window)
        return self

    def resize(self, width, height):
        window = self.wait_for_window()
        self.desktop.resize(window, width, height)
        self.wait_until(
            lambda: self.desktop.geometry(window)[2:] == (width, height), f"a window of {width} x {height}"
        )

    def menu_bar_height(self):
        """Of the bar in the window."""
        bars = [node for node in self.all(MENU_TITLE) if any(child.role == MENU_TITLE for child in node.walk() if child is not node)]
        return max(node.extents()[3] for node in bars)

    def resize_content(self, width, height):
        """The window without its menu bar."""
        self.resize(width, height + self.menu_bar_height())

    def keys(self, *keys, pause=0):
        self.desktop.press_keys(*keys, pause=pause)

    # The keyboard

    def press_and_hear_focus(self, key):
        """Presses a key that moves the keyboard's focus, and answers with the node that then tells of having it."""
        self.desktop.forget_focus()
        self.keys(key)
        return self.wait_until(self.desktop.focused, f"another control to have the keyboard after {key}")

    def tab_to(self, role, name):
        """Presses Tab until the control has the keyboard."""
        seen = []
        while (node := self.press_and_hear_focus("Tab")).path not in seen:
            if (node.get_role_name(), node.get_name()) == (role, name):
                return
            seen.append(node.path)
        self._fail(f"Tab never reaches {role} {name!r}")

    def walk_by_tab(self):
        """The paths of all controls that Tab reaches, in order."""
        seen = []
        while (node := self.press_and_hear_focus("Tab")).path not in seen:
            seen.append(node.path)
        return seen

    # What a user does all the time

    def wait_scanned(self, scans=1):
        """Waits until that many scans are in the history and none is running."""
        self.wait_until(lambda: len(self.mac.history) >= scans, f"scan {scans} in the history")
        self.wait_until(lambda: not self.is_scanning(), "the end of the scan")

    def is_scanning(self):
        return any(node.description == "A scan is running" for node in self.all("push button"))

    def rescan(self):
        """One scan from its begin to its end, by the tab bar's button."""
        self.wait_scanned()
        scans = len(self.mac.history)
        self.all("push button", "Rescan")[0].press()
        self.wait_scanned(scans + 1)

    def selected_tab(self):
        """The title of the tab that is chosen."""
        chosen = [node.name for node in self.all("page tab") if "selected" in node.states]
        return chosen[0] if len(chosen) == 1 else chosen

    def open_menu(self, menu, entry):
        self.press(MENU_TITLE, menu)
        self.press("menu item", entry)

    def choose_tab(self, tab):
        if tab.is_primary:
            self.press("page tab", tab.title)
        else:
            self.node(EXTRA_TABS, under=TAB_BAR).press()
            self.press("menu item", tab.title)
        self.node("heading", tab.heading)

    def quit(self):
        """Ends it as a user does, and waits until it has ended."""
        self.keys("ctrl+q")
        status = self.wait_for_end()
        assert status == 0, f"ended with {status}\n{self.log}"
