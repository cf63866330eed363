"""Notifications of a changed verdict, as the notification server receives them."""

import pytest

ATTENTION = ("Cirrovane needs attention", "Safe to close is now red/yellow. Top issue: Conflict Detected.")
SAFE = ("Cirrovane is now safe", "All core criteria are passing. Safe to close is now green.")


@pytest.fixture
def told(desktop):
    """The notifications so far."""
    return lambda: [(notification.title, notification.body) for notification in desktop.notifications.all()]


@pytest.fixture
def safe_mac(mac):
    mac.settle()
    return mac


def expect_told(application, told, *expected):
    application.wait_until(lambda: told() == list(expected), lambda: f"{expected}; told so far: {told()}")


def wait_remembered(application, safe):
    application.wait_until(
        lambda: application.mac.defaults.get("lastKnownSafeToClose") is safe, f"the verdict {safe} to be remembered"
    )


def test_verdictChanges_eachIsToldOnce(launch, safe_mac, told):
    application = launch().ready()
    application.wait_scanned()
    wait_remembered(application, True)
    safe_mac.unsettle()
    application.rescan()
    expect_told(application, told, ATTENTION)
    # Nothing has changed, so nothing is told; the next change would come after it.
    application.rescan()
    safe_mac.settle()
    application.rescan()
    expect_told(application, told, ATTENTION, SAFE)


def test_notification_hasProgramActionAndSound(launch, safe_mac, desktop):
    application = launch().ready()
    application.wait_scanned()
    safe_mac.unsettle()
    application.rescan()
    (notification,) = application.wait_until(desktop.notifications.all, "a notification")
    assert notification.program == "Cirrovane"
    assert notification.replaces == 0
    assert notification.actions[:1] == ["default"]
    assert "sound-name" in notification.hints


def test_firstVerdictEver_isRememberedAndNotTold(launch, mac, told):
    first = launch().ready()
    wait_remembered(first, False)
    first.quit()
    assert told() == []
    mac.settle()
    second = launch().ready()
    expect_told(second, told, SAFE)
    wait_remembered(second, True)


def test_verdictChangedWhileNotRunning_isToldAtTheNextStart(launch, safe_mac, told):
    first = launch().ready()
    wait_remembered(first, True)
    first.end()
    safe_mac.unsettle()
    second = launch().ready()
    expect_told(second, told, ATTENTION)
    wait_remembered(second, False)
    second.end()
    third = launch().ready()
    third.wait_scanned(3)
    third.quit()
    assert told() == [ATTENTION]


def test_switchedOff_nothingIsToldOrRemembered(launch, safe_mac, told):
    safe_mac.set_defaults(guardrailNotificationsEnabled=False, lastKnownSafeToClose=True)
    safe_mac.unsettle()
    application = launch().ready()
    application.wait_scanned()
    application.quit()
    assert told() == []
    assert safe_mac.defaults["lastKnownSafeToClose"] is True
    # Switched on again, the verdict is held against the one from before.
    safe_mac.set_defaults(guardrailNotificationsEnabled=True)
    application = launch().ready()
    expect_told(application, told, ATTENTION)


def test_notInABundle_verdictIsRememberedAndNotTold(launch, safe_mac, told):
    safe_mac.set_fact("bundle", {"path": "/usr/local/bin/cirrovane", "info": {}})
    application = launch().ready()
    wait_remembered(application, True)
    safe_mac.unsettle()
    application.rescan()
    wait_remembered(application, False)
    application.quit()
    assert told() == []


def test_permissionDenied_nothingIsTold(launch, safe_mac, told):
    safe_mac.set_fact("notificationAuthorization", "denied")
    application = launch().ready()
    wait_remembered(application, True)
    safe_mac.unsettle()
    application.rescan()
    wait_remembered(application, False)
    application.quit()
    assert told() == []


def test_notification_clicked_showsTheWindow(launch, safe_mac, told, desktop):
    application = launch().ready()
    application.wait_scanned()
    safe_mac.unsettle()
    application.rescan()
    expect_told(application, told, ATTENTION)
    desktop.close(application.wait_for_window())
    application.wait_until(lambda: not application.windows(), "the window to be closed")
    desktop.spawn(["dunstctl", "action", "0"])
    application.ready()
