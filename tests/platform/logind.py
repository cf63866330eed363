"""Plays logind for python-dbusmock. Its locks are pipes, as logind's own: who closes them has released them. A machine
that is about to leave waits for the locks of the mode "delay", as long as InhibitDelayMaxUSec says. What happens is told
on standard output, a line each."""

import os

import dbus
from dbusmock import MOCK_IFACE
from gi.repository import GLib

BUS_NAME = "org.freedesktop.login1"
MAIN_OBJ = "/org/freedesktop/login1"
MAIN_IFACE = "org.freedesktop.login1.Manager"
SYSTEM_BUS = True

SIGNALS = {"sleep": "PrepareForSleep", "shutdown": "PrepareForShutdown"}
DONE = {"sleep": "asleep", "shutdown": "off"}
ERRORS = {
    "denied": ("org.freedesktop.DBus.Error.AccessDenied", "Permission denied"),
    "password": ("org.freedesktop.DBus.Error.InteractiveAuthorizationRequired", "Interactive authentication required."),
    "odd": ("org.freedesktop.login1.SleepVerbNotSupported", "Sleep verb 'suspend' is\nnot supported"),
}


def say(*words):
    # In one piece, so that whoever kills this gets no half of a line.
    os.write(1, (" ".join(map(str, words)) + "\n").encode())


def load(mock, parameters):
    mock.locks = {}
    mock.answers = {}
    mock.act = None
    mock.is_gone = False
    longest = parameters.get("InhibitDelayMaxUSec", 5_000_000)
    mock.AddProperties(MAIN_IFACE, {"InhibitDelayMaxUSec": dbus.UInt64(longest)})
    say("ready")


def answer(mock, method, reply, fail, value=()):
    """Replies to a call as it was told to. Whether the call is granted."""
    kind = mock.answers.get(method, "yes")
    if kind == "silent":
        say("silent")
        return False
    if kind in ERRORS:
        name, message = ERRORS[kind]
        fail(dbus.exceptions.DBusException(message, name=name))
        return False
    reply(*value)
    return True


def begin(mock, act):
    mock.act, mock.is_gone = act, False
    mock.EmitSignal(MAIN_IFACE, SIGNALS[act], "b", [True])
    longest = mock.Get(MAIN_IFACE, "InhibitDelayMaxUSec") // 1000
    GLib.timeout_add(longest, lambda: leave(mock, act))
    leave_when_free(mock)


def leave(mock, act):
    if mock.act == act and not mock.is_gone:
        mock.is_gone = True
        say(DONE[act])
    return False


def leave_when_free(mock):
    if mock.act and not any(what == "sleep:shutdown" and mode == "delay" for what, _, _, mode in mock.locks.values()):
        leave(mock, mock.act)


def call_act(mock, act, method, interactive, reply, fail):
    say(method, "interactive" if interactive else "quiet")
    if answer(mock, method, reply, fail):
        begin(mock, act)


@dbus.service.method(MAIN_IFACE, in_signature="b", out_signature="", async_callbacks=("reply", "fail"))
def Suspend(self, interactive, reply, fail):
    call_act(self, "sleep", "Suspend", interactive, reply, fail)


@dbus.service.method(MAIN_IFACE, in_signature="b", out_signature="", async_callbacks=("reply", "fail"))
def PowerOff(self, interactive, reply, fail):
    call_act(self, "shutdown", "PowerOff", interactive, reply, fail)


@dbus.service.method(MAIN_IFACE, in_signature="ssss", out_signature="h", async_callbacks=("reply", "fail"))
def Inhibit(self, what, who, why, mode, reply, fail):
    if self.act and mode == "delay":
        fail(dbus.exceptions.DBusException("The operation is in progress", name=BUS_NAME + ".OperationInProgress"))
        return
    ours, theirs = os.pipe()
    if not answer(self, "Inhibit", reply, fail, (dbus.types.UnixFd(theirs),)):
        os.close(ours)
        os.close(theirs)
        return
    os.close(theirs)
    self.locks[ours] = tuple(str(word) for word in (what, who, why, mode))
    say("took", *self.locks[ours])

    def released(descriptor, _condition):
        os.close(descriptor)
        say("released", self.locks.pop(descriptor)[0])
        leave_when_free(self)
        return False

    GLib.unix_fd_add_full(GLib.PRIORITY_DEFAULT, ours, GLib.IOCondition.HUP, released)


@dbus.service.method(MOCK_IFACE, in_signature="ss", out_signature="")
def SetAnswer(self, method, kind):
    self.answers[str(method)] = str(kind)


@dbus.service.method(MOCK_IFACE, in_signature="s", out_signature="")
def Announce(self, act):
    begin(self, str(act))


@dbus.service.method(MOCK_IFACE, in_signature="", out_signature="")
def Stay(self):
    act, self.act = self.act, None
    self.EmitSignal(MAIN_IFACE, SIGNALS[act], "b", [False])
