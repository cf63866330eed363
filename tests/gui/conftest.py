"""Desktop, demo Macs and applications for the tests. CIRROVANE_BIN_DIR names the folder of the built programs; without
it, they are those of the preset "dev"."""

import os
import re
from pathlib import Path

import pytest
from application import Application
from desktop import Desktop
from mac import DemoMac

PROGRAMS = Path(os.environ.get("CIRROVANE_BIN_DIR", Path(__file__).parents[2] / "build/dev/bin")).resolve()
BUILD = PROGRAMS.parent
# Pictures, trees and logs of what failed.
ARTIFACTS = BUILD / "gui-artifacts"


@pytest.hookimpl(hookwrapper=True, tryfirst=True)
def pytest_runtest_makereport(item, call):
    report = (yield).get_result()
    if report.when == "call":
        item.has_failed = report.failed


@pytest.fixture(scope="session")
def desktop():
    desktop = Desktop()
    desktop.start()
    yield desktop
    desktop.stop()


@pytest.fixture
def make_mac(request):
    """Makes one more demo Mac."""
    macs = []

    def make():
        name = re.sub(r"\W+", "-", request.node.name)
        mac = DemoMac(PROGRAMS, BUILD / "test-files/gui" / f"{name}-{len(macs)}")
        # What moves by itself costs time.
        mac.set_defaults(motionEnabled=False)
        macs.append(mac)
        return mac

    yield make
    for mac in macs:
        mac.remove()


@pytest.fixture
def mac(make_mac):
    """A demo Mac that is not safe to close."""
    return make_mac()


class HeldProbe:
    """Keeps every scan of a Mac from its end until it lets go."""

    def __init__(self, mac):
        self._go = mac.root / "go"
        answer = (mac.root / "usr/sbin/route").read_text().removeprefix("#!/bin/sh\n")
        hold = 'while [ ! -e "${0%/usr/*}/go" ]; do sleep 0.05; done\n'
        mac.replace_command("usr/sbin/route", hold + answer)

    def let_go(self):
        self._go.touch()


@pytest.fixture
def held(mac):
    """The demo Mac's scans begin and do not end before `held.let_go()`."""
    probe = HeldProbe(mac)
    yield probe
    probe.let_go()


@pytest.fixture
def launch(request, desktop, mac):
    """Starts the application; on a demo Mac of one's own, with arguments and environment, if that is wanted."""
    applications = []
    desktop.notifications.forget()
    desktop.forget_focus()
    desktop.park_pointer()

    def launch(*arguments, on=None, **environment):
        applications.append(Application(desktop, PROGRAMS / "cirrovane", on or mac, arguments, environment))
        return applications[-1]

    yield launch
    if getattr(request.node, "has_failed", False):
        keep(request.node.name, desktop, applications)
    for application in applications:
        application.end()
    complaints = [line for application in applications for line in application.complaints()]
    assert not complaints, "the application complained:\n" + "\n".join(complaints)


def keep(test, desktop, applications):
    """Keeps what helps to see why a test failed."""
    name = re.sub(r"\W+", "-", test)
    desktop.picture().save(ARTIFACTS / f"{name}.png")
    for number, application in enumerate(applications):
        tree = application.outline() if application.is_running else "(ended)"
        (ARTIFACTS / f"{name}-{number}.txt").write_text(f"{tree}\n\n{application.log}")
