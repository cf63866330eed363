"""What a file manager does when a user drags files from it and drops them on a window: the source's side of XDND."""

import contextlib
from pathlib import Path

from Xlib import X
from Xlib import display as xdisplay
from Xlib.protocol import event as xevent

from waiting import wait_until

VERSION = 5


class _Drag:
    def __init__(self, display, target, uris):
        self._display = display
        self._target = display.create_resource_object("window", target)
        self._source = display.screen().root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
        self._uris = "".join(uri + "\r\n" for uri in uris).encode()
        self._told = []
        self._type = display.intern_atom("text/uri-list")
        self._source.set_selection_owner(display.intern_atom("XdndSelection"), X.CurrentTime)

    def send(self, name, *data):
        values = [self._source.id, *data] + [0] * (4 - len(data))
        message = xevent.ClientMessage(window=self._target, client_type=self._display.intern_atom(name), data=(32, values))
        self._target.send_event(message, event_mask=0)
        self._display.flush()

    def _serve(self):
        """Hands out what is dragged, and notes what the target tells."""
        while self._display.pending_events():
            event = self._display.next_event()
            if event.type == X.SelectionRequest:
                self._answer(event)
            elif event.type == X.ClientMessage:
                self._told.append(self._display.get_atom_name(event.client_type))

    def _answer(self, request):
        property_ = request.property or request.target
        request.requestor.change_property(property_, request.target, 8, self._uris)
        request.requestor.send_event(xevent.SelectionNotify(
            time=request.time, requestor=request.requestor, selection=request.selection, target=request.target,
            property=property_))  # fmt: skip
        self._display.flush()

    def wait_for(self, name):
        def is_told():
            self._serve()
            return name in self._told

        wait_until(is_told, f"{name} from the window")

    def drop_at(self, x, y):
        copy = self._display.intern_atom("XdndActionCopy")
        self.send("XdndEnter", VERSION << 24, self._type)
        self.send("XdndPosition", 0, x << 16 | y, X.CurrentTime, copy)
        self.wait_for("XdndStatus")
        self.send("XdndDrop", 0, X.CurrentTime)
        self.wait_for("XdndFinished")


def drop(desktop, window, x, y, paths):
    """Drops these files on a window, at a place of the screen."""
    with contextlib.closing(xdisplay.Display(desktop.environment["DISPLAY"])) as display:
        _Drag(display, window.id, [Path(path).as_uri() for path in paths]).drop_at(x, y)
