"""The same without a press of Rescan, by the timer alone and for every way in which a probe hangs. It takes minutes."""

import pytest
from test_trust import IGNORES_SIGTERM, settled

# The refresh that the timer starts, and the scan's own time.
UNTIL_NO = 95
UNTIL_RECORDED = 35
PROBES = ["usr/bin/pgrep", "usr/sbin/route", "usr/sbin/scutil", "usr/bin/dscacheutil", "usr/sbin/sysctl",
          "usr/bin/which", "usr/bin/top", "usr/bin/vm_stat"]
HANGS = "exec sleep 100000\n"
# What it leaves behind holds the pipe and has left its group.
FORKS_AWAY = "setsid sleep 300 &\nexec sleep 100000\n"


def expect_no_and_record(application, mac, seconds=UNTIL_NO):
    scans = len(mac.history)
    application.node("label", "NO", seconds=seconds)
    application.wait_until(lambda: len(mac.history) > scans, "the cycle in the history", seconds=UNTIL_RECORDED)
    assert not mac.history[0]["safeToClose"]


@pytest.mark.parametrize("script", [HANGS, IGNORES_SIGTERM, FORKS_AWAY], ids=["hangs", "ignores", "forks"])
def test_pendingUploads_behindAHungProbe_turnTheVerdictByTheTimer(launch, mac, script):
    application = settled(launch, mac)
    mac.replace_command("usr/bin/pgrep", script)
    mac.unsettle()
    expect_no_and_record(application, mac)


def test_everyProbeHangs_verdictTurnsByTheTimer(launch, mac):
    application = settled(launch, mac)
    for probe in PROBES:
        mac.replace_command(probe, IGNORES_SIGTERM)
    mac.unsettle()
    expect_no_and_record(application, mac)
    # And once more: a hung cycle is not the last one.
    expect_no_and_record(application, mac)


def test_probeHangsFromTheStart_verdictIsShownAndRecorded(launch, mac):
    mac.replace_command("usr/bin/dscacheutil", HANGS)
    application = launch().ready()
    application.node("label", "NO", seconds=10)
    application.wait_until(lambda: mac.history, "the cycle in the history", seconds=UNTIL_RECORDED)
