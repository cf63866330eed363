"""Programs with a window, on a screen that nobody sees: how soon they show something, what memory they hold and what
they do when nothing happens."""

import contextlib
import os
import select
import shutil
import signal
import subprocess
import tempfile
import time
import uuid
from pathlib import Path

from Xlib import X, XK
from Xlib import display as xdisplay
from Xlib.error import BadDrawable, BadMatch, BadWindow
from Xlib.ext import xtest
from Xlib.protocol import event as xevent

WIDTH, HEIGHT = 1600, 1000
# The screen's own colour, which no program draws: as long as it shows through, the window is not drawn.
SCREEN_COLOUR = 0xFF00FE
# A window is looked at in so many strips across it; that is faster than the whole of it, and nothing wider than a
# button is missed.
STRIPS = 16
# What a window shows at least once it is drawn: a ground and something on it.
LEAST_COLOURS = 3
# The ticks of a second in which something moves slowly and nothing else is done.
BUSIEST_AT_REST = 20
LOOK_PAUSE = 0.002
PATIENCE = 60
PAUSE = 0.02
# Names every process of one desktop in its environment, also those that others start.
MARK = "CIRROVANE_BENCH_DESKTOP"
END_WITH_PARENT = ("setpriv", "--pdeathsig", "TERM")

# No services that are started on demand: what a program asks for is not there, and that is answered at once.
BUS = """<busconfig><type>session</type><listen>unix:path={}</listen><auth>EXTERNAL</auth><policy context="default">
<allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy></busconfig>"""
WINDOW_MANAGER = """<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
  <theme><animateIconify>no</animateIconify></theme>
  <desktops><number>1</number><popupTime>0</popupTime></desktops>
  <keyboard/>
</openbox_config>
"""
TRAY = "panel_items = S\npanel_size = 100% 32\npanel_position = bottom center horizontal\n"


class TooLate(Exception):
    """Something did not happen in time."""


def wait_until(condition, what, seconds=PATIENCE, pause=PAUSE):
    deadline = time.monotonic() + seconds
    while not (answer := condition()):
        if time.monotonic() > deadline:
            raise TooLate(f"waited {seconds} s in vain for {what}")
        time.sleep(pause)
    return answer


class Desktop:
    """A screen, a bus and a window manager; with `tray` a panel with a place for icons, too. Used by `with`, which takes
    everything down again that was started on it."""

    def __init__(self, tray=False):
        self._has_tray = tray
        self._mark = uuid.uuid4().hex
        self._processes = []

    def __enter__(self):
        self.folder = Path(tempfile.mkdtemp(prefix="cirrovane-bench-"))
        try:
            self._start()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for process in reversed(self._processes):
            self.end(process)
        for number in self._marked_processes():
            with contextlib.suppress(ProcessLookupError):
                os.kill(number, signal.SIGKILL)
        shutil.rmtree(self.folder, ignore_errors=True)

    def _marked_processes(self):
        mark = f"{MARK}={self._mark}".encode()
        for entry in Path("/proc").iterdir():
            with contextlib.suppress(OSError):
                if entry.name.isdigit() and mark in (entry / "environ").read_bytes().split(b"\0"):
                    yield int(entry.name)

    def _start(self):
        folders = {name: self.folder / name for name in ("home", "run", "config", "cache", "data", "tmp")}
        for folder in folders.values():
            folder.mkdir(mode=0o700)
        bus = folders["run"] / "bus"
        self.environment = {
            "PATH": os.environ["PATH"],
            MARK: self._mark,
            "HOME": str(folders["home"]),
            "XDG_RUNTIME_DIR": str(folders["run"]),
            "XDG_CONFIG_HOME": str(folders["config"]),
            "XDG_CACHE_HOME": str(folders["cache"]),
            "XDG_DATA_HOME": str(folders["data"]),
            "TMPDIR": str(folders["tmp"]),
            "DBUS_SESSION_BUS_ADDRESS": f"unix:path={bus}",
            "LC_ALL": "C.UTF-8",
            "QT_QPA_PLATFORM": "xcb",
            # The same drawing by software for all, also where the machine has a graphics card.
            "LIBGL_ALWAYS_SOFTWARE": "1",
        }
        number, screen_end = os.pipe()
        command = ["Xvfb", "-displayfd", str(screen_end), "-screen", "0", f"{WIDTH}x{HEIGHT}x24", "-nolisten", "tcp"]
        # Without its screen a program ends, so this one goes even when whoever measures is killed.
        self.spawn([*END_WITH_PARENT, *command, "-noreset"], pass_fds=(screen_end,))
        os.close(screen_end)
        with open(number) as answer:
            self.environment["DISPLAY"] = ":" + answer.readline().strip()
        self._display = xdisplay.Display(self.environment["DISPLAY"])
        self._root = self._display.screen().root
        self._root.change_attributes(background_pixel=SCREEN_COLOUR, event_mask=X.PropertyChangeMask)
        self._root.clear_area()

        configuration = self._file("bus.conf", BUS.format(bus))
        self.spawn([*END_WITH_PARENT, "dbus-daemon", "--nofork", f"--config-file={configuration}"])
        wait_until(bus.exists, "the bus")
        self.spawn(["openbox", "--sm-disable", "--config-file", self._file("openbox.xml", WINDOW_MANAGER)])
        wait_until(lambda: self._property(self._root, "_NET_SUPPORTING_WM_CHECK"), "the window manager")
        if self._has_tray:
            self.spawn(["tint2", "-c", self._file("tint2rc", TRAY)])
            selection = self._display.intern_atom("_NET_SYSTEM_TRAY_S0")
            wait_until(lambda: self._display.get_selection_owner(selection) != X.NONE, "the tray")

    def _file(self, name, text):
        (self.folder / name).write_text(text)
        return str(self.folder / name)

    # Programs

    def spawn(self, command, pass_fds=(), environment=None):
        process = subprocess.Popen(
            [str(part) for part in command],
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            env={**self.environment, **(environment or {})},
            cwd=self.environment.get("HOME"),
            start_new_session=True,
            pass_fds=pass_fds,
        )
        self._processes.append(process)
        return process

    def end(self, process):
        """Ends a program, whatever it does."""
        if process.poll() is None:
            process.terminate()
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        self._processes.remove(process)

    def show_for_good(self, command, environment=None):
        """A program and its window once it has come to rest."""
        process, window, _ = self.show(command, environment)
        settle(process)
        return process, window

    def show(self, command, environment=None):
        """Starts a program: it, its window, and the seconds until there was something to see in that."""
        for _ in range(self._display.pending_events()):
            self._display.next_event()
        start = time.monotonic()
        process = self.spawn(command, environment=environment)
        deadline = start + PATIENCE
        window = None
        while window is None:
            # Asleep until the window manager knows of another window.
            if not self._display.pending_events():
                select.select([self._display], [], [], max(deadline - time.monotonic(), 0))
            for _ in range(self._display.pending_events()):
                self._display.next_event()
            window = self._window_of(process)
            if process.poll() is not None or time.monotonic() > deadline:
                raise TooLate(f"{command[0]} shows no window")
        wait_until(lambda: self._is_drawn(window), f"{command[0]} to draw", pause=LOOK_PAUSE)
        return process, window, time.monotonic() - start

    # Windows

    def _property(self, window, name):
        try:
            value = window.get_full_property(self._display.intern_atom(name), X.AnyPropertyType)
        except BadWindow:
            return []
        return list(value.value) if value is not None else []

    def _window_of(self, process):
        for number in self._property(self._root, "_NET_CLIENT_LIST"):
            window = self._display.create_resource_object("window", number)
            if self._property(window, "_NET_WM_PID") == [process.pid]:
                return window
        return None

    def _is_drawn(self, window):
        return len(self.colours(window)) >= LEAST_COLOURS

    def colours(self, window):
        """The colours of a window that show in some strips across it; none where the screen still shows through."""
        colours = set()
        try:
            size = window.get_geometry()
            place = self._root.translate_coords(window, 0, 0)
            # What is beyond the screen's edge cannot be looked at.
            left, right = max(-place.x, 0), min(size.width, WIDTH - place.x)
            top, bottom = max(-place.y, 0), min(size.height, HEIGHT - place.y)
            for strip in range(STRIPS):
                y = top + (bottom - top) * (2 * strip + 1) // (2 * STRIPS)
                data = window.get_image(left, y, right - left, 1, X.ZPixmap, 0xFFFFFF).data
                colours.update(memoryview(data).cast("I"))
        except (BadWindow, BadDrawable, BadMatch):
            return set()
        return set() if SCREEN_COLOUR in colours else colours

    def size_of(self, window):
        size = window.get_geometry()
        return size.width, size.height

    def resize(self, window, width, height):
        window.configure(width=width, height=height)
        self._display.sync()
        wait_until(lambda: self.size_of(window) == (width, height), f"a window of {width} x {height}")

    def _tell_window_manager(self, window, message, *data):
        values = (32, [*data, 0, 0, 0, 0, 0][:5])
        event = xevent.ClientMessage(window=window, client_type=self._display.intern_atom(message), data=values)
        self._root.send_event(event, event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self._display.sync()

    def _is_seen(self, window):
        try:
            return window.get_attributes().map_state == X.IsViewable
        except BadWindow:
            return False

    def quit(self, process, window):
        """Ends a program by its window, as a user does."""
        self.close(window)
        with contextlib.suppress(subprocess.TimeoutExpired):
            process.wait(5)
        self.end(process)

    def close(self, window):
        """As the button in its title bar does."""
        self._tell_window_manager(window, "_NET_CLOSE_WINDOW", X.CurrentTime, 2)
        wait_until(lambda: not self._is_seen(window), "the window to close")

    def minimise(self, window):
        iconic_state = 3
        self._tell_window_manager(window, "WM_CHANGE_STATE", iconic_state)
        wait_until(lambda: not self._is_seen(window), "the window to be minimised")

    def gaps(self, process, window, condition):
        """As the function of this name, on this desktop."""
        answers = gaps(self._display, process, window, condition)
        self._root.change_attributes(event_mask=X.PropertyChangeMask)
        return answers

    def press(self, *names):
        """Presses keys together."""
        codes = [self._display.keysym_to_keycode(XK.string_to_keysym(name)) for name in names]
        for code in codes:
            xtest.fake_input(self._display, X.KeyPress, code)
        for code in reversed(codes):
            xtest.fake_input(self._display, X.KeyRelease, code)
        self._display.sync()


def gaps(display, process, window, condition):
    """How long the program behind a window took each time to answer that it is still there, asked again and again
    until the condition holds: pairs of seconds, the second those for which its main thread was at work meanwhile,
    which other programs do not make more. It answers in its main event loop."""
    root = display.screen().root
    protocol, ping = display.intern_atom("WM_PROTOCOLS"), display.intern_atom("_NET_WM_PING")
    root.change_attributes(event_mask=X.PropertyChangeMask | X.StructureNotifyMask | X.SubstructureNotifyMask)

    def is_answer(number):
        if not display.pending_events():
            select.select([display], [], [], 1)
        for _ in range(display.pending_events()):
            event = display.next_event()
            if event.type == X.ClientMessage and event.window == root and event.data[1][1] == number:
                return True
        return False

    answers, number = [], 0
    while not condition():
        number += 1
        data = (32, [ping, number, window.id, 0, 0])
        event = xevent.ClientMessage(window=window, client_type=protocol, data=data)
        worked = main_thread_time(process)
        start = time.monotonic()
        window.send_event(event)
        display.flush()
        while not is_answer(number):
            if time.monotonic() > start + PATIENCE:
                raise TooLate("the program does not answer")
        took = time.monotonic() - start
        answers.append((took, main_thread_time(process) - worked))
        time.sleep(LOOK_PAUSE)
    return answers


# --- What a process costs --------------------------------------------------------------------------------------------


def memory(process, kind):
    """Bytes: of kind "Pss" with what it shares with others divided among them, of kind "Rss" with all of that, of kind
    "Anonymous" without files."""
    for line in Path(f"/proc/{process.pid}/smaps_rollup").read_text().splitlines():
        if line.startswith(kind + ":"):
            return int(line.split()[1]) * 1024
    raise TooLate(f"process {process.pid} is gone")


def main_thread_time(process):
    """The seconds for which its main thread has had a processor."""
    return int(Path(f"/proc/{process.pid}/task/{process.pid}/schedstat").read_text().split()[0]) / 1e9


def ticks(process):
    """The ticks of the clock for which its threads have been at work, in user and system mode."""
    if process.poll() is not None:
        # One that has ended would look idle.
        raise TooLate(f"{process.args[0]} has ended with {process.returncode}")
    fields = Path(f"/proc/{process.pid}/stat").read_text().rpartition(")")[2].split()
    return int(fields[11]) + int(fields[12])


# --- The application -------------------------------------------------------------------------------------------------


class DemoMac:
    """A demo Mac in a folder, made anew, and what the application keeps there."""

    def __init__(self, maker, root):
        self.root = root
        self.remove()
        subprocess.run([maker, "create", root], stdout=subprocess.DEVNULL, check=True)
        home = root / "Users/demo"
        self._history = home / "Library/Application Support/com.quillmere.Cirrovane/history.json"
        self._defaults = home / "Library/Preferences/com.quillmere.Cirrovane.json"

    def remove(self):
        shutil.rmtree(self.root, ignore_errors=True)

    def set_motion(self, enabled):
        self._defaults.parent.mkdir(parents=True, exist_ok=True)
        self._defaults.write_text('{"motionEnabled": %s}' % ("true" if enabled else "false"))

    def scan_stamp(self):
        """Something else after each refresh, which ends with a scan in the history; none before the first."""
        try:
            status = self._history.stat()
        except FileNotFoundError:
            return None
        return status.st_ino, status.st_mtime_ns

    def wait_for_scan(self, after=None):
        return wait_until(lambda: (stamp := self.scan_stamp()) != after and stamp, "a scan", pause=0.005)


def quiet_ticks(process, mac, seconds):
    """The ticks of so many seconds between two refreshes."""
    settle(process)
    while True:
        scan = mac.scan_stamp()
        before = ticks(process)
        time.sleep(seconds)
        used = ticks(process) - before
        if mac.scan_stamp() == scan:
            return used
        # A refresh has just been: the next one is not soon.
        settle(process)


def settle(process, seconds=3, patience=30):
    """Waits for some seconds at least, and then until a second has passed that was no busier than the one before."""
    deadline = time.monotonic() + patience
    time.sleep(seconds)
    busy = None
    while time.monotonic() < deadline:
        before = ticks(process)
        time.sleep(1)
        latest = ticks(process) - before
        if latest == 0 or (busy is not None and latest <= busy <= BUSIEST_AT_REST):
            return
        busy = latest


def refresh(desktop, mac, times):
    """Refreshes by the keyboard, one after the other."""
    stamp = mac.scan_stamp()
    for _ in range(times):
        deadline = time.monotonic() + PATIENCE
        # While a refresh is under way another one is not begun.
        while (latest := mac.scan_stamp()) == stamp:
            if time.monotonic() > deadline:
                raise TooLate("a refresh by the keyboard does not end")
            desktop.press("Control_L", "r")
            pause = time.monotonic() + 0.05
            while time.monotonic() < pause and mac.scan_stamp() == stamp:
                time.sleep(0.003)
        stamp = latest
