"""The same without a press of Rescan, by the timer alone and for every way in which a probe hangs. It takes minutes."""

from conftest import preloaded
from test_tray import GREEN, YELLOW, expect_icon
from test_trust import HANGS, IGNORES_SIGTERM

# After the beginning of the scan.
UNTIL_STALE = 185
# The files are followed between the cycles, whatever probes hang.
UNTIL_NO = 10
# The cycle that the timer or the turned verdict starts, and its probes' time.
UNTIL_RECORDED = 95 + 35
PGREP = ["usr/bin/pgrep"]
EVERY_PROBE = [*PGREP, "usr/sbin/route", "usr/sbin/scutil", "usr/bin/dscacheutil", "usr/sbin/sysctl", "usr/bin/which",
               "usr/bin/top", "usr/bin/vm_stat"]  # fmt: skip
# What it leaves behind holds the pipe and has left its group.
FORKS_AWAY = "setsid sleep 200 &\nexec sleep 100000\n"


def expect_no_and_record(application, scans):
    application.node("label", "NO", seconds=UNTIL_NO)
    application.wait_until(lambda: len(application.mac.history) > scans, "the cycle in the history", UNTIL_RECORDED)
    assert not application.mac.history[0]["safeToClose"]


def test_pendingUploads_behindHungProbes_turnTheVerdictByTheTimer(launch, make_mac):
    # Side by side, since each of them waits for its timer.
    applications = []
    for probes, script in [(PGREP, HANGS), (PGREP, IGNORES_SIGTERM), (PGREP, FORKS_AWAY), (EVERY_PROBE, HANGS)]:
        mac = make_mac()
        mac.settle()
        applications.append((launch(on=mac).ready(), probes, script))
    for application, _, _ in applications:
        application.wait_scanned()
        application.node("label", "YES")
    scans = []
    for application, probes, script in applications:
        scans.append(len(application.mac.history))
        for probe in probes:
            application.mac.replace_command(probe, script)
        application.mac.unsettle()
    for (application, _, _), before in zip(applications, scans):
        expect_no_and_record(application, before)
    # A cycle with hung probes is not the last one.
    for (application, _, _), before in zip(applications, scans):
        application.wait_until(
            lambda application=application, before=before: len(application.mac.history) > before + 1,
            "the next cycle", UNTIL_RECORDED)


def test_probeHangsFromTheStart_verdictIsShownAndRecorded(launch, mac):
    mac.replace_command("usr/bin/dscacheutil", HANGS)
    application = launch().ready()
    application.node("label", "NO", seconds=10)
    application.wait_until(lambda: mac.history, "the cycle in the history", UNTIL_RECORDED)


def test_yesThatNoScanConfirmsAgain_growsStale(launch, desktop, mac, held, refused):
    mac.settle()
    application = launch(**preloaded(held.LIBRARY, refused.LIBRARY, **held.variables, **refused.variables)).ready()
    held.let_go()
    application.wait_scanned()
    expect_icon(application, desktop, GREEN)
    held.hold_again()
    # The timer's scan hangs at the first file.
    note = application.wait_until(
        lambda: [node.name for node in application.all("label") if node.name.startswith("as of ")],
        "the YES to grow stale", UNTIL_STALE)[0]
    assert note.endswith(". The last scan is over 3 minutes old.")
    assert application.node("label", "YES").description == note
    application.node(None, "Yellow Needs Attention")
    expect_icon(application, desktop, YELLOW)
    held.let_go()
    application.node(None, "Green Safe")
    application.wait_for_none("label", note)
    expect_icon(application, desktop, GREEN)
