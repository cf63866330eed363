"""The machine's login service, played by python-dbusmock on a message bus of its own, and what it is asked for."""

import shutil
import subprocess
import tempfile
import threading
from pathlib import Path

from waiting import wait_until

TEMPLATE = Path(__file__).parents[1] / "platform/logind.py"
# Names no folder of services, so that the bus starts none by itself.
CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>system</type><listen>unix:path={}</listen><auth>EXTERNAL</auth>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy>
</busconfig>
"""
BUS_NAME, OBJECT, CONTROL = "org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.DBus.Mock"


class LoginService:
    def __enter__(self):
        # The socket's path has to be short.
        self._folder = Path(tempfile.mkdtemp())
        socket = self._folder / "bus"
        self.environment = {"DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={socket}"}
        (self._folder / "bus.conf").write_text(CONFIGURATION.format(socket))
        self._processes = [subprocess.Popen(["dbus-daemon", f"--config-file={self._folder}/bus.conf", "--nofork"])]
        wait_until(socket.exists, "the bus")
        command = ["/usr/bin/python3", "-B", "-m", "dbusmock", "--system", "--template", TEMPLATE, "--logfile", "/dev/null"]
        service = subprocess.Popen(command, env=self.environment, stdout=subprocess.PIPE, text=True)
        self._processes.append(service)
        self.lines = []
        threading.Thread(target=lambda: self.lines.extend(self._stripped(service)), daemon=True).start()
        wait_until(lambda: self.lines, "the login service")
        return self

    def _stripped(self, service):
        for line in service.stdout:
            yield line.rstrip()

    def _control(self, method, *texts):
        wait_until(lambda: self._call(method, *texts), f"the service's answer to {method}")

    def _call(self, method, *texts):
        command = ["gdbus", "call", "--address", self.environment["DBUS_SYSTEM_BUS_ADDRESS"], "--dest", BUS_NAME,
                   "--object-path", OBJECT, "--method", f"{CONTROL}.{method}", *texts]  # fmt: skip
        return subprocess.run(command, stdout=subprocess.DEVNULL).returncode == 0

    def announce(self, act):
        self._control("Announce", act)

    def stay(self):
        self._control("Stay")

    def answer(self, method, kind):
        self._control("SetAnswer", method, kind)

    def count(self, beginning):
        return sum(line.startswith(beginning) for line in list(self.lines))

    def __exit__(self, *_):
        for process in reversed(self._processes):
            process.kill()
            process.wait()
        shutil.rmtree(self._folder)
