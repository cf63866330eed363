"""What other programs of a desktop do for the application, and note: a file manager and a web browser."""

import contextlib

from waiting import wait_until

INTERFACE = """<node><interface name="org.freedesktop.FileManager1"><method name="ShowItems">
<arg name="URIs" type="as" direction="in"/><arg name="StartupId" type="s" direction="in"/>
</method></interface></node>"""
NAME = "org.freedesktop.FileManager1"
PATH = "/org/freedesktop/FileManager1"


class FileManager:
    """The items that it was asked to show, as URIs."""

    def __init__(self, bus):
        from gi.repository import Gio

        self._shown = []
        interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
        self._bus = bus
        self._object = bus.register_object(PATH, interface, self._answer, None, None)
        self._has_name = False
        self._name = Gio.bus_own_name_on_connection(bus, NAME, Gio.BusNameOwnerFlags.NONE, self._named, None)
        wait_until(lambda: self.serve() or self._has_name, "the file manager's name")

    def _named(self, *_):
        self._has_name = True

    def _answer(self, _bus, _sender, _path, _interface, _method, arguments, invocation):
        self._shown += arguments.unpack()[0]
        invocation.return_value(None)

    @staticmethod
    def serve():
        """Answers whatever has come meanwhile."""
        from gi.repository import GLib

        context = GLib.MainContext.default()
        while context.pending():
            context.iteration(False)

    def shown(self):
        self.serve()
        return list(self._shown)

    def close(self):
        from gi.repository import Gio

        Gio.bus_unown_name(self._name)
        self._bus.unregister_object(self._object)
        self.serve()


@contextlib.contextmanager
def file_manager(desktop):
    manager = FileManager(desktop.bus)
    try:
        yield manager
    finally:
        manager.close()
