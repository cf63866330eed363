"""The same a hundred times, and what of it is recorded and told. It takes minutes."""

from datetime import datetime

from test_live import expect_soon, open_surfaces, save_and_upload, settled, told_times

ROUNDS = 100
# Between the beginnings of two cycles: the timer's, and the soonest that a turned verdict starts one.
TIMER, SOONEST = 90, 60
# A cycle's own time, and what the machine is late by.
SLACK = 15


def seconds_of_history(mac):
    """From its oldest record to its newest."""
    oldest, newest = (datetime.fromisoformat(mac.history[place]["timestamp"].rstrip("Z")) for place in (-1, 0))
    return (newest - oldest).total_seconds()


def test_aHundredSaves_turnEverySurfaceWithinASecond(launch, mac, capsys):
    application, file = settled(launch, mac)
    surfaces = open_surfaces(application)
    rounds = [save_and_upload(surfaces, file) for _ in range(ROUNDS)]
    with capsys.disabled():
        print(f"\n{ROUNDS} saves to {told_times(rounds)}")
    expect_soon(rounds)


def test_saveThatIsUploadedAtOnce_isNeitherRecordedNorToldBeforeTheTimersCycle(launch, mac, desktop):
    application, file = settled(launch, mac)
    surfaces = open_surfaces(application)
    scans = len(mac.history)
    save_and_upload(surfaces, file)
    application.wait_until(lambda: len(mac.history) > scans, "the timer's cycle", TIMER + SLACK)
    assert seconds_of_history(mac) >= TIMER - 2
    assert all(scan["safeToClose"] for scan in mac.history)
    assert desktop.notifications.all() == []


def test_saveThatStays_isRecordedAndToldAMinuteAfterTheLastCycle(launch, mac, desktop):
    application, file = settled(launch, mac)
    file.save()
    application.node("label", "NO")
    assert len(mac.history) == 1
    assert desktop.notifications.all() == []
    application.wait_until(lambda: len(mac.history) > 1, "the cycle of the turned verdict", SOONEST + SLACK)
    assert SOONEST - 2 <= seconds_of_history(mac) <= SOONEST + SLACK
    assert not mac.history[0]["safeToClose"]
    application.wait_until(desktop.notifications.all, "the notification")
    assert [notification.title for notification in desktop.notifications.all()] == ["Cirrovane needs attention"]
