"""Leaving: sleep as soon as it is safe, what keeps the machine awake, and the question before a shutdown."""

import pytest

CARD = ("panel", "Safe to Close")
QUESTION = ("dialog", "It Is Not Safe to Leave Yet")
SETTINGS = ("dialog", "Settings")
ASK = "Ask before shutting down while it is not safe"
KEEP_AWAKE = "Keep awake while uploads are pending"
DELAY = "took sleep:shutdown Cirrovane"
IDLE = "took idle Cirrovane"


@pytest.fixture
def on_host(launcher, mac, logind):
    """Starts the application on the machine itself, whose login service the test plays."""

    def start(*arguments, **defaults):
        mac.set_defaults(**defaults)
        application = launcher.launch(mac, *arguments, is_host=True, CIRROVANE_DEMO_TAB="overview", **logind.environment)
        return application.ready()

    return start


@pytest.fixture
def shut_down(on_host, logind):
    """Starts the application, which asks before a shutdown, and announces one once it has scanned."""

    def start():
        application = on_host(askBeforeShutdown=True)
        application.wait_scanned()
        wait_for_line(application, logind, DELAY)
        logind.announce("shutdown")
        return application

    return start


def make_pending(mac):
    """One upload is pending, and nothing else is amiss."""
    mac.settle()
    file = mac.cloud_files()[0]
    mac.set_file(file, isUploaded="false")
    return file


def wait_for_line(application, logind, beginning, count=1):
    application.wait_until(lambda: logind.count(beginning) >= count, f"{beginning!r} in {logind.lines}")


def test_sleepWhenSafe_whileUnsafe_staysAwakeUntilTheUploadEnds(on_host, mac, logind):
    make_pending(mac)
    application = on_host()
    application.press("push button", "Sleep When Safe", CARD)
    application.node("label", "Sleeps as soon as it is safe.", CARD)
    wait_for_line(application, logind, IDLE)
    application.wait_until(
        lambda: any(node.name.startswith("Kept awake since ") for node in application.all("label", under=CARD)),
        "since when it is kept awake",
    )
    assert logind.count("Suspend") == 0
    mac.upload()
    wait_for_line(application, logind, "Suspend")
    wait_for_line(application, logind, "released idle")
    application.node("push button", "Sleep When Safe", CARD)
    assert logind.count("Suspend") == 1


def test_sleepWhenSafe_cancelled_letsGo(on_host, mac, logind):
    make_pending(mac)
    application = on_host()
    application.press("push button", "Sleep When Safe", CARD)
    wait_for_line(application, logind, IDLE)
    application.press("push button", "Cancel", CARD)
    wait_for_line(application, logind, "released idle")
    application.node("push button", "Sleep When Safe", CARD)
    assert logind.count("Suspend") == 0


def test_sleepWhenSafe_denied_saysWhy(on_host, mac, logind):
    mac.settle()
    logind.answer("Suspend", "denied")
    application = on_host()
    application.press("push button", "Sleep When Safe", CARD)
    application.wait_until(
        lambda: any(
            node.name.startswith("It is safe, but this Mac does not sleep: ") for node in application.all("alert", under=CARD)
        ),
        "the reason",
    )


def test_sleepWhenSafe_onADescribedMac_isItsOwnPmset(launch, mac):
    make_pending(mac)
    application = launch(CIRROVANE_DEMO_TAB="overview").ready()
    application.press("push button", "Sleep When Safe", CARD)
    log = mac.root / "var/log/power.log"
    application.wait_until(lambda: log.exists() and "caffeinate -i -w " in log.read_text(), "its caffeinate")
    assert "pmset" not in log.read_text()
    mac.upload()
    application.wait_until(lambda: "pmset sleepnow" in log.read_text(), "its sleep")
    application.node("push button", "Sleep When Safe", CARD)
    assert log.read_text().count("pmset sleepnow") == 1


def test_panel_sleepsWhenSafeToo(on_host, mac, logind):
    mac.settle()
    application = on_host("--panel")
    application.press("push button", "Sleep When Safe")
    wait_for_line(application, logind, "Suspend")


def test_keepAwake_holdsWhileAnUploadIsPending(on_host, mac, logind):
    file = make_pending(mac)
    application = on_host()
    application.wait_scanned()
    assert logind.count("took") == 0, "nothing is asked of the machine before the user wants it"
    application.open_menu("Cirrovane", "Settings...")
    application.press("check box", KEEP_AWAKE, SETTINGS)
    wait_for_line(application, logind, IDLE)
    application.keys("Escape")
    mac.set_file(file, isUploaded="true")
    wait_for_line(application, logind, "released idle")


def test_shutdown_whileUnsafe_asksAndLeavesAnyway(shut_down, mac, logind):
    make_pending(mac)
    application = shut_down()
    application.node(*QUESTION, seconds=1)
    texts = application.texts(QUESTION)
    assert any("1 file" in text for text in texts), texts
    application.press("push button", "Leave Anyway", QUESTION)
    wait_for_line(application, logind, "released sleep:shutdown")
    wait_for_line(application, logind, "off")
    application.wait_for_none(*QUESTION)


def test_shutdown_whileUnsafe_waitedFor_goesOnWhenSafe(shut_down, mac, logind):
    file = make_pending(mac)
    application = shut_down()
    application.node(*QUESTION)
    # The button that has the keyboard.
    application.keys("Return")
    application.node("dialog", "Waiting Until It Is Safe")
    assert logind.count("released sleep:shutdown") == 0
    mac.set_file(file, isUploaded="true")
    wait_for_line(application, logind, "released sleep:shutdown")
    application.wait_for_none("dialog", "Waiting Until It Is Safe")


def test_shutdown_whileUnsafe_withoutAnAnswer_goesOnByTheSystem(shut_down, mac, logind):
    make_pending(mac)
    application = shut_down()
    application.node(*QUESTION)
    wait_for_line(application, logind, "off")


def test_shutdown_whileSafe_isHeldUpByNobody(shut_down, mac, logind):
    mac.settle()
    application = shut_down()
    wait_for_line(application, logind, "released sleep:shutdown")
    assert not application.all(*QUESTION)


def test_shutdownThatIsCalledOff_takesTheQuestionBack(shut_down, mac, logind):
    make_pending(mac)
    application = shut_down()
    application.node(*QUESTION)
    logind.stay()
    application.wait_for_none(*QUESTION)


def test_settings_machineThatAnnouncesNothing_saysSo(launch):
    application = launch().ready()
    application.open_menu("Cirrovane", "Settings...")
    application.press("check box", ASK, SETTINGS)
    application.wait_until(
        lambda: any(node.name for node in application.all("alert", under=SETTINGS)), "why nobody can be asked"
    )
