"""Desktop, demo Macs and applications for the tests. CIRROVANE_BIN_DIR names the folder of the built programs; without
it, they are those of the preset "dev"."""

import os
import re
from pathlib import Path

import pytest
from application import Application
from desktop import Desktop
from login_service import LoginService
from mac import DemoMac
from services import file_manager

PROGRAMS = Path(os.environ.get("CIRROVANE_BIN_DIR", Path(__file__).parents[2] / "build/dev/bin")).resolve()
BUILD = PROGRAMS.parent
# Pictures, trees and logs of what failed.
ARTIFACTS = BUILD / "gui-artifacts"


class Launcher:
    """Makes demo Macs and starts applications for one test or more, and takes them away again."""

    def __init__(self, desktop, name):
        self._desktop, self._name = desktop, re.sub(r"\W+", "-", name)
        self.macs, self.applications = [], []

    def make_mac(self):
        mac = DemoMac(PROGRAMS, BUILD / "test-files/gui" / f"{self._name}-{len(self.macs)}")
        # What moves by itself costs time.
        mac.set_defaults(motionEnabled=False)
        self.macs.append(mac)
        return mac

    def launch(self, mac, *arguments, is_host=False, **environment):
        program = PROGRAMS / "cirrovane"
        self.applications.append(Application(self._desktop, program, mac, arguments, environment, is_host))
        return self.applications[-1]

    def close(self):
        for application in self.applications:
            application.end()
        for mac in self.macs:
            mac.remove()
        complaints = [line for application in self.applications for line in application.complaints()]
        assert not complaints, "the application complained:\n" + "\n".join(dict.fromkeys(complaints))


@pytest.hookimpl(hookwrapper=True, tryfirst=True)
def pytest_runtest_makereport(item, call):
    report = (yield).get_result()
    if report.failed and report.when != "teardown":
        launchers = [value for value in getattr(item, "funcargs", {}).values() if isinstance(value, Launcher)]
        keep(item.name, [application for launcher in launchers for application in launcher.applications])


def keep(test, applications):
    """Keeps what helps to see why a test failed."""
    name = re.sub(r"\W+", "-", test)
    for number, application in enumerate(applications):
        application.desktop.picture().save(ARTIFACTS / f"{name}.png")
        tree = application.outline() if application.is_running else "(ended)"
        (ARTIFACTS / f"{name}-{number}.txt").write_text(f"{tree}\n\n{application.log}")


@pytest.fixture(scope="session")
def desktop():
    desktop = Desktop()
    desktop.start()
    yield desktop
    desktop.stop()


@pytest.fixture
def launcher(request, desktop):
    desktop.notifications.forget()
    desktop.forget_focus()
    desktop.park_pointer()
    launcher = Launcher(desktop, request.node.name)
    yield launcher
    launcher.close()


@pytest.fixture
def files(desktop):
    """A file manager that notes what it shows."""
    with file_manager(desktop) as manager:
        yield manager


@pytest.fixture
def make_mac(launcher):
    """Makes one more demo Mac."""
    return launcher.make_mac


@pytest.fixture
def mac(launcher):
    """A demo Mac that is not safe to close."""
    return launcher.make_mac()


@pytest.fixture
def launch(launcher, mac):
    """Starts the application; with arguments and environment, and on another demo Mac, if that is wanted."""
    return lambda *arguments, on=None, **environment: launcher.launch(on or mac, *arguments, **environment)


@pytest.fixture
def logind():
    """The machine's login service, played on a bus of the test's own."""
    with LoginService() as service:
        yield service


@pytest.fixture
def overview(launch):
    """Starts the application on its first page, and waits for its first scan."""

    def start():
        application = launch(CIRROVANE_DEMO_TAB="overview").ready()
        application.wait_scanned()
        return application

    return start


@pytest.fixture(scope="module")
def shared_launcher(request, desktop):
    launcher = Launcher(desktop, request.node.name)
    yield launcher
    launcher.close()


@pytest.fixture(scope="module")
def shared(shared_launcher):
    """An application for all tests of a file, after its first scan. Where it is left is where the next test finds it."""
    application = shared_launcher.launch(shared_launcher.make_mac()).ready()
    application.wait_scanned()
    return application


def preloaded(*libraries, **environment):
    """The environment of an application with these libraries of the tests before all others."""
    files = [BUILD / "tests" / library for library in libraries]
    assert all(file.exists() for file in files), f"one of {files} is missing"
    return {"LD_PRELOAD": ":".join(str(file) for file in files), **environment}


class RefusedWatches:
    """Has the system watch no folder of an application until it allows that."""

    LIBRARY = "gui/librefused_watches.so"

    def __init__(self, mac):
        self._refusal = mac.root / "refusal"
        self._refusal.touch()
        self.variables = {"CIRROVANE_TEST_REFUSAL": str(self._refusal)}
        self.environment = preloaded(self.LIBRARY, **self.variables)

    def allow(self):
        """From the next start of the watch on."""
        self._refusal.unlink()


@pytest.fixture
def refused(mac):
    """An application with `refused.environment` on the demo Mac is told of no change before `refused.allow()`."""
    return RefusedWatches(mac)


class HeldScan:
    """Keeps every scan of an application from its end until it lets go: each reading of a file's state waits at a gate."""

    LIBRARY = "cli/libslow_attributes.so"

    def __init__(self, mac):
        gate = mac.root / "gate"
        os.mkfifo(gate)
        self._gate, self._open = gate, None
        self.variables = {"CIRROVANE_TEST_GATE": str(gate)}
        self.environment = preloaded(self.LIBRARY, **self.variables)

    def let_go(self):
        # Held open for both, so that nobody waits at it any more.
        if self._open is None:
            self._open = os.open(self._gate, os.O_RDWR)

    def hold_again(self):
        """From the next reading on."""
        os.close(self._open)
        self._open = None

    def close(self):
        self.let_go()
        os.close(self._open)


@pytest.fixture
def held(mac):
    """An application with `held.environment` on the demo Mac begins its scans and does not end them before
    `held.let_go()`."""
    scan = HeldScan(mac)
    yield scan
    scan.close()
