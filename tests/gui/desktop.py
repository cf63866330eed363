"""A desktop of its own: a screen that nobody sees, a window manager, a panel with a tray, a notification server, and
the two buses that a session has. Nothing of it touches the session that the tests are started from."""

import contextlib
import ctypes
import os
import shutil
import signal
import subprocess
import tempfile
import threading
import time
from pathlib import Path

from Xlib import X, XK
from Xlib import display as xdisplay
from Xlib.ext import xtest
from Xlib.protocol import event as xevent

from picture import Picture
from waiting import wait_until

WIDTH, HEIGHT = 1600, 1000
TRAY_BACKGROUND = (0x20, 0x24, 0x2C)
# How the folder of a desktop begins; the number of the process that it belongs to follows.
FOLDER = "cirrovane-desktop-"
# Names every process of one desktop in its environment, also those that others start.
MARK = "CIRROVANE_TEST_DESKTOP"
PASSED_ON = ("PATH", "LD_LIBRARY_PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS", "LSAN_OPTIONS")

WINDOW_MANAGER = """<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
  <placement><policy>Smart</policy></placement>
  <theme><animateIconify>no</animateIconify></theme>
  <desktops><number>1</number><popupTime>0</popupTime></desktops>
  <keyboard/>
  <mouse>
    <context name="Client">
      <mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
    </context>
  </mouse>
</openbox_config>
"""
PANEL = """
rounded = 0
border_width = 0
background_color = #{:02x}{:02x}{:02x} 100
border_color = #000000 0
panel_items = FS
panel_size = 100% 32
panel_position = bottom center horizontal
panel_background_id = 1
panel_layer = bottom
wm_menu = 0
systray_padding = 2 2 2
systray_background_id = 1
systray_icon_size = 24
systray_sort = left2right
""".format(*TRAY_BACKGROUND)
NOTIFICATION_SERVER = """
[global]
    monitor = 0
    origin = top-right
    history_length = 50
    markup = full
    idle_threshold = 0
[urgency_low]
    timeout = 2
[urgency_normal]
    timeout = 2
[urgency_critical]
    timeout = 2
"""

_libc = ctypes.CDLL(None)


def _end_with_parent():
    pr_set_pdeathsig = 1
    _libc.prctl(pr_set_pdeathsig, signal.SIGTERM)


class Notification:
    """What a program asked a notification server to show, as it came over the bus."""

    def __init__(self, arguments):
        (self.program, self.replaces, self.icon, self.title, self.body, self.actions, self.hints,
         self.timeout) = arguments  # fmt: skip

    def __repr__(self):
        return f"Notification({self.title!r}, {self.body!r})"


class NotificationMonitor:
    """Hears every call to the notification server."""

    INTERFACE = "org.freedesktop.Notifications"
    MESSAGE_HEADER = 16

    def __init__(self, desktop, bus):
        from gi.repository import Gio

        self._message_type = Gio.DBusMessage
        self._method_call = Gio.DBusMessageType.METHOD_CALL
        self._bus = bus
        self._heard, self._echoes, self._lock = [], 0, threading.Lock()
        rule = f"interface='{self.INTERFACE}'"
        process = desktop.spawn(["dbus-monitor", "--binary", "--session", rule], stdout=subprocess.PIPE)
        threading.Thread(target=self._read, args=(process.stdout,), daemon=True).start()
        wait_until(lambda: self._echo(0.05), "the monitor of the bus")

    def _read(self, stream):
        while header := stream.read(self.MESSAGE_HEADER):
            message = header + stream.read(self._message_type.bytes_needed(header) - len(header))
            message = self._message_type.new_from_blob(message, 0)
            with self._lock:
                if message.get_member() == "CirrovaneEcho":
                    self._echoes += 1
                elif message.get_member() == "Notify" and message.get_message_type() == self._method_call:
                    self._heard.append(Notification(message.get_body().unpack()))

    def _echo(self, seconds):
        """Sends something over the bus and waits until the monitor has heard it."""
        from gi.repository import GLib

        before = self._echoes
        self._bus.emit_signal(None, "/", self.INTERFACE, "CirrovaneEcho", GLib.Variant("()", ()))
        try:
            return wait_until(lambda: self._echoes > before, "an echo", seconds)
        except AssertionError:
            return False

    def all(self):
        """All since `forget`, in order, with everything that went over the bus before this call."""
        assert self._echo(20), "the monitor of the bus is deaf"
        with self._lock:
            return list(self._heard)

    def forget(self):
        self.all()
        with self._lock:
            self._heard.clear()


class Desktop:
    """Started by `start`, for good only once in a process, because the accessibility library finds its bus only once."""

    def __init__(self):
        self._remove_what_a_killed_one_left()
        self.folder = Path(tempfile.mkdtemp(prefix=f"{FOLDER}{os.getpid()}-"))
        self._processes = []
        self.logs = []
        self._display_number = None
        self.environment = {
            **{name: os.environ[name] for name in PASSED_ON if name in os.environ},
            MARK: self.folder.name,
            "HOME": self._make("home"),
            "XDG_RUNTIME_DIR": self._make("run"),
            "XDG_CONFIG_HOME": self._make("config"),
            "XDG_CACHE_HOME": self._make("cache"),
            "XDG_DATA_HOME": self._make("data"),
            "TMPDIR": self._make("tmp"),
            "LC_ALL": "C.UTF-8",
            "TZ": "UTC",
            # A screen reader is at work.
            "QT_ACCESSIBILITY": "1",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "QT_QPA_PLATFORM": "xcb",
            "QT_STYLE_OVERRIDE": "Fusion",
            # Settings of the desktop that are kept in memory need no service.
            "GSETTINGS_BACKEND": "memory",
            # Comes before any other that a program would open a page with.
            "PATH": self._make_browser() + os.pathsep + os.environ["PATH"],
            # No test may put the machine itself to sleep.
            "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent/bus",
            "GIO_USE_VFS": "local",
            "NO_AT_BRIDGE": "1",
        }

    @staticmethod
    def _remove_what_a_killed_one_left():
        for folder in Path(tempfile.gettempdir()).glob(f"{FOLDER}*-*"):
            owner = folder.name.removeprefix(FOLDER).partition("-")[0]
            if owner.isdigit() and not Path("/proc", owner).exists():
                shutil.rmtree(folder, ignore_errors=True)

    def _make(self, name):
        folder = self.folder / name
        folder.mkdir(mode=0o700)
        return str(folder)

    def _make_browser(self):
        """A web browser that only notes which pages it was to open."""
        folder = self._make("bin")
        browser = Path(folder, "xdg-open")
        browser.write_text(f'#!/bin/sh\necho "$1" >>"{self.folder}/pages"\n')
        browser.chmod(0o755)
        return folder

    def opened_pages(self):
        file = self.folder / "pages"
        return file.read_text().splitlines() if file.exists() else []

    def _write(self, name, text):
        file = self.folder / name
        file.write_text(text)
        return str(file)

    # Start and end

    def start(self):
        try:
            self._start_screen()
            self._start_bus()
            self._start_accessibility()
            self._start_shell()
        except BaseException:
            self.stop()
            raise

    def _start_screen(self):
        number, screen_end = os.pipe()
        os.set_inheritable(screen_end, True)
        screen = f"{WIDTH}x{HEIGHT}x24"
        self.spawn(
            ["Xvfb", "-displayfd", str(screen_end), "-screen", "0", screen, "-nolisten", "tcp", "-noreset"],
            pass_fds=(screen_end,),
        )
        os.close(screen_end)
        with open(number) as answer:
            self._display_number = answer.readline().strip()
        assert self._display_number, f"no screen: {self.log('Xvfb')}"
        self.environment["DISPLAY"] = f":{self._display_number}"
        self.display = xdisplay.Display(self.environment["DISPLAY"])
        self.root = self.display.screen().root

    def _start_bus(self):
        address = f"unix:path={self.environment['XDG_RUNTIME_DIR']}/bus"
        process = self.spawn(
            ["dbus-daemon", "--session", f"--address={address}", "--nofork", "--nopidfile", "--print-address"],
            stdout=subprocess.PIPE,
        )
        address = process.stdout.readline().decode().strip()
        assert address, f"no bus: {self.log('dbus-daemon')}"
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        # For the libraries that this process loads from now on.
        for name in ("AT_SPI_BUS_ADDRESS", "XAUTHORITY", "WAYLAND_DISPLAY"):
            os.environ.pop(name, None)
        os.environ.update(self.environment)

        from gi.repository import Gio

        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self.bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)

    def _start_accessibility(self):
        from gi.repository import GLib

        # The first call starts the accessibility bus.
        for name in ("IsEnabled", "ScreenReaderEnabled"):
            arguments = GLib.Variant("(ssv)", ("org.a11y.Status", name, GLib.Variant("b", True)))
            self._call("org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set", arguments)

        import pyatspi

        self.accessibility = pyatspi.Registry
        root = wait_until(self._accessibility_root, "the accessibility bus")
        # Every answer is the application's own, at that moment.
        root.set_cache_mask(pyatspi.cache.NONE)
        self._focused = None
        self.accessibility.registerEventListener(self._hear_focus, "object:state-changed:focused")

    def _hear_focus(self, event):
        if event.detail1:
            self._focused = event.source

    def focused(self):
        """The node that was last said to have got the keyboard; none since `forget_focus`."""
        from gi.repository import GLib

        context = GLib.MainContext.default()
        while context.pending():
            context.iteration(False)
        return self._focused

    def forget_focus(self):
        self.focused()
        self._focused = None

    def _accessibility_root(self):
        from gi.repository import GLib

        try:
            root = self.accessibility.getDesktop(0)
            root.get_child_count()
            return root
        except GLib.Error:
            return None

    def _start_shell(self):
        self.spawn(["openbox", "--sm-disable", "--config-file", self._write("openbox.xml", WINDOW_MANAGER)])
        wait_until(self._has_window_manager, lambda: f"the window manager: {self.log('openbox')}")
        self._start_tray()
        self.spawn(["dunst", "-conf", self._write("dunstrc", NOTIFICATION_SERVER)])
        wait_until(
            lambda: self._has_name_owner("org.freedesktop.Notifications"),
            lambda: f"the notification server: {self.log('dunst')}",
        )
        self.notifications = NotificationMonitor(self, self.bus)

    def _has_tray(self):
        return self.display.get_selection_owner(self.atom("_NET_SYSTEM_TRAY_S0")) != X.NONE

    def _start_tray(self):
        self._tray = self.spawn(["tint2", "-c", self._write("tint2rc", PANEL)])
        wait_until(self._has_tray, lambda: f"the tray: {self.log('tint2')}")

    @contextlib.contextmanager
    def without_tray(self):
        """A desktop that offers no place for icons."""
        self._tray.terminate()
        self._tray.wait()
        wait_until(lambda: not self._has_tray(), "the tray to go")
        yield
        self._start_tray()

    def stop(self):
        if hasattr(self, "display"):
            self.display.close()
        for process in reversed(self._processes):
            process.send_signal(signal.SIGTERM)
        for process in reversed(self._processes):
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        # What those have started; it ends by itself as a rule, but nobody waits for it.
        for number in self._marked_processes():
            try:
                os.kill(number, signal.SIGKILL)
            except ProcessLookupError:
                pass
        if self._display_number:
            # Left over only where the screen had to be killed.
            Path(f"/tmp/.X{self._display_number}-lock").unlink(missing_ok=True)
            Path(f"/tmp/.X11-unix/X{self._display_number}").unlink(missing_ok=True)
        shutil.rmtree(self.folder, ignore_errors=True)

    def _marked_processes(self):
        mark = f"{MARK}={self.folder.name}".encode()
        for entry in Path("/proc").iterdir():
            if entry.name.isdigit() and int(entry.name) != os.getpid():
                try:
                    if mark in (entry / "environ").read_bytes().split(b"\0"):
                        yield int(entry.name)
                except OSError:
                    pass

    def spawn(self, command, environment=None, stdout=None, pass_fds=(), log=None):
        """Starts a program on this desktop; what it says goes to its log."""
        log = open(log or self._log_file(command[0]), "ab")
        process = subprocess.Popen(
            [str(part) for part in command],
            stdin=subprocess.DEVNULL,
            stdout=stdout or log,
            stderr=log,
            env={**self.environment, **(environment or {})},
            cwd=self.environment["HOME"],
            start_new_session=True,
            preexec_fn=_end_with_parent,
            pass_fds=pass_fds,
        )
        log.close()
        self._processes.append(process)
        return process

    def _log_file(self, program):
        return self.folder / (Path(program).name + ".log")

    def log(self, program):
        """What a program of the desktop has said."""
        file = self._log_file(program)
        return file.read_text(errors="replace") if file.exists() else ""

    # The bus

    def _call(self, name, path, interface, method, arguments):
        from gi.repository import Gio

        milliseconds = 20000
        return self.bus.call_sync(
            name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, milliseconds, None
        )

    def _has_name_owner(self, name):
        from gi.repository import GLib

        bus = "org.freedesktop.DBus"
        return self._call(bus, "/", bus, "NameHasOwner", GLib.Variant("(s)", (name,))).unpack()[0]

    # The screen

    def atom(self, name):
        return self.display.intern_atom(name)

    def property_of(self, window, name):
        """The value of a window's property as a list; empty without it, or without the window."""
        from Xlib.error import BadWindow

        try:
            value = window.get_full_property(self.atom(name), X.AnyPropertyType)
        except BadWindow:
            return []
        return list(value.value) if value is not None else []

    def _has_window_manager(self):
        return bool(self.property_of(self.root, "_NET_SUPPORTING_WM_CHECK"))

    def windows(self):
        """The windows that the window manager knows, lowest first."""
        numbers = self.property_of(self.root, "_NET_CLIENT_LIST_STACKING")
        return [self.display.create_resource_object("window", number) for number in numbers]

    def windows_of(self, process):
        return [window for window in self.windows() if self.property_of(window, "_NET_WM_PID") == [process]]

    def active_window(self):
        numbers = self.property_of(self.root, "_NET_ACTIVE_WINDOW")
        return numbers[0] if numbers else X.NONE

    def _tell_window_manager(self, window, message, data):
        event = xevent.ClientMessage(
            window=window, client_type=self.atom(message), data=(32, [*data, 0, 0, 0, 0, 0][:5])
        )
        self.root.send_event(event, event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self.display.flush()

    def activate(self, window):
        by_pager = 2
        self._tell_window_manager(window, "_NET_ACTIVE_WINDOW", [by_pager, X.CurrentTime])
        wait_until(lambda: self.active_window() == window.id, "the window to have the focus")

    def close(self, window):
        """As the button in its title bar does."""
        self._tell_window_manager(window, "_NET_CLOSE_WINDOW", [X.CurrentTime, 2])

    def geometry(self, window):
        """Where a window's content is on the screen: x, y, width, height."""
        size = window.get_geometry()
        place = self.root.translate_coords(window, 0, 0)
        return place.x, place.y, size.width, size.height

    def resize(self, window, width, height):
        window.configure(width=width, height=height)
        self.display.sync()

    def move(self, window, x, y):
        window.configure(x=x, y=y)
        self.display.sync()

    def tray_icons(self):
        """The windows of the icons in the tray."""
        found = []

        def look(window, depth):
            for child in window.query_tree().children:
                if self.property_of(child, "_XEMBED_INFO"):
                    found.append(child)
                elif depth > 0:
                    look(child, depth - 1)

        for window in self.windows():
            if self.atom("_NET_WM_WINDOW_TYPE_DOCK") in self.property_of(window, "_NET_WM_WINDOW_TYPE"):
                look(window, 2)
        return found

    def picture(self, x=0, y=0, width=WIDTH, height=HEIGHT):
        """What is on the screen, whatever lies outside of it left out."""
        right, bottom = min(x + width, WIDTH), min(y + height, HEIGHT)
        x, y = max(x, 0), max(y, 0)
        all_planes = 0xFFFFFFFF
        image = self.root.get_image(x, y, right - x, bottom - y, X.ZPixmap, all_planes)
        return Picture(right - x, bottom - y, image.data)

    def clipboard(self):
        """The text on the clipboard; none while nobody offers one."""
        clipboard, answer = self.atom("CLIPBOARD"), self.atom("CIRROVANE_ANSWER")
        if self.display.get_selection_owner(clipboard) == X.NONE:
            return None
        with contextlib.closing(xdisplay.Display(self.environment["DISPLAY"])) as display:
            window = display.screen().root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
            window.convert_selection(clipboard, self.atom("UTF8_STRING"), answer, X.CurrentTime)
            display.flush()
            wait_until(lambda: self._is_answered(display), "the clipboard's owner to answer")
            value = window.get_full_property(answer, X.AnyPropertyType)
            return value.value.decode() if value is not None else None

    @staticmethod
    def _is_answered(display):
        return display.pending_events() and display.next_event().type == X.SelectionNotify

    # Keys and pointer

    def press_keys(self, *keys, pause=0):
        """Presses keys one after the other, each alone or with others: "Tab", "shift+Tab", "ctrl+q", "a". After each
        press comes a pause, in seconds, as a hand makes it: while a screen reader listens, the toolkit hands on a
        modifier's press late, even after the shortcut that it belongs to."""
        for combination in keys:
            codes = [self._code(name) for name in combination.split("+")]
            for code in codes:
                xtest.fake_input(self.display, X.KeyPress, code)
                self.display.sync()
                time.sleep(pause)
            for code in reversed(codes):
                xtest.fake_input(self.display, X.KeyRelease, code)
        self.display.sync()

    def _code(self, name):
        name = {"ctrl": "Control_L", "shift": "Shift_L", "alt": "Alt_L"}.get(name, name)
        code = self.display.keysym_to_keycode(XK.string_to_keysym(name))
        assert code, f"no key {name}"
        return code

    def click(self, x, y, button=1):
        xtest.fake_input(self.display, X.MotionNotify, x=x, y=y)
        xtest.fake_input(self.display, X.ButtonPress, button)
        xtest.fake_input(self.display, X.ButtonRelease, button)
        self.display.sync()

    def point(self, x, y):
        """Moves the pointer there and lets it rest."""
        xtest.fake_input(self.display, X.MotionNotify, x=x, y=y)
        self.display.sync()

    def park_pointer(self):
        """Moves the pointer where nothing reacts to it."""
        self.point(WIDTH - 1, 0)
