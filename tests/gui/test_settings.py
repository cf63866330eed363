"""The settings: what can be chosen there, and what the system has to say to it."""

import json

import pytest
from application import CONTROLS
from Xlib import X

DIALOG = ("dialog", "Settings")
CHOICES = ["Liquid Glass", "Classic", "Motion", "Show terminology in dashboard", "Guardrail Notifications",
           "Keep awake while uploads are pending", "20%", "30%", "50%", "80%",
           "Ask before shutting down while it is not safe", "Open at login", "Write metrics for this Mac"]  # fmt: skip
REFUSED = "No notifications are shown: allow Cirrovane in your desktop's settings, under Notifications."
NOT_INSTALLED = "Only an installed application can be opened at login."


@pytest.fixture
def settings(launch):
    """The application with its settings open."""

    def start(**environment):
        application = launch(**environment).ready()
        application.keys("ctrl+comma")
        application.node(*DIALOG)
        return application

    return start


@pytest.fixture
def login_file(mac):
    return mac.home / "Library/LoginItems/com.quillmere.Cirrovane.json"


def switch(application, name, **states):
    return application.node("check box", name, DIALOG, **states)


def notes(application, under=DIALOG):
    return [node.name for node in application.all("alert", under=under) if node.name]


def expect_note(application, text, under=DIALOG):
    application.wait_until(lambda: text in notes(application, under), lambda: f"{text}: {notes(application, under)}")


def come_back(application, desktop):
    """Another program has the keyboard for a while."""
    window = application.wait_for_window()
    other = desktop.root.create_window(0, 0, 50, 50, 0, X.CopyFromParent)
    other.map()
    desktop.display.sync()
    desktop.activate(other)
    # The toolkit takes a moment to believe it.
    application.wait_until(lambda: "active" not in application.all("frame")[0].states, "the window to be left")
    other.destroy()
    desktop.activate(window)


def test_settings_offerEveryChoice(settings):
    application = settings()
    found = [node.name for node in application.all(under=DIALOG) if node.role in CONTROLS]
    assert found == ["Close", *CHOICES]


def test_settings_fromTheMenu_openAndCloseByKeys(launch):
    application = launch().ready()
    for key in ("Escape", "ctrl+w"):
        application.open_menu("Cirrovane", "Settings...")
        application.node(*DIALOG)
        application.keys(key)
        application.wait_for_none(*DIALOG)
    assert application.wait_for_window()


def test_settings_byKeyboard_eachChoiceIsReached(settings):
    application = settings()
    wanted = {node.path: str(node) for node in application.all(under=DIALOG) if node.role in CONTROLS}
    reached = application.walk_by_tab()
    assert not [wanted[path] for path in wanted if path not in reached]
    assert set(reached) <= set(wanted), "Tab leaves the sheet"


def test_settings_smallestWindow_showsEachChoiceThatTabReaches(settings):
    application = settings()
    application.resize_content(860, 700)
    application.tab_to("check box", "Open at login")
    x, y, width, height = application.node(*DIALOG).extents()
    left, top, w, h = switch(application, "Open at login").extents()
    assert x <= left and left + w <= x + width and y <= top and top + h <= y + height


def test_look_chosen_isRememberedAndHoldsAtOnce(settings, mac):
    application = settings()
    application.press("radio button", "Classic", DIALOG)
    application.node("radio button", "Classic", DIALOG, checked=True)
    switch(application, "Motion", checked=False).press()
    switch(application, "Motion", checked=True)
    switch(application, "Show terminology in dashboard", checked=False).press()
    switch(application, "Show terminology in dashboard", checked=True)
    assert mac.defaults["visualStyle"] == "classic"
    assert mac.defaults["motionEnabled"] is True
    assert mac.defaults["showTerminologyOnDashboard"] is True


def test_openAtLogin_switched_isSoForTheSystem(settings, login_file):
    application = settings()
    switch(application, "Open at login", checked=False).press()
    switch(application, "Open at login", checked=True)
    assert json.loads(login_file.read_text()) == {"isOn": True}
    switch(application, "Open at login").press()
    switch(application, "Open at login", checked=False)
    assert json.loads(login_file.read_text()) == {"isOn": False}


def test_openAtLogin_changedElsewhere_isKnownWhenTheUserComesBack(settings, login_file, desktop):
    application = settings()
    switch(application, "Open at login", checked=False)
    login_file.parent.mkdir(parents=True, exist_ok=True)
    login_file.write_text('{"isOn": true}')
    come_back(application, desktop)
    switch(application, "Open at login", checked=True)


def test_openAtLogin_approvalNeeded_saysWhereToGiveIt(settings, mac):
    mac.set_fact("loginItemApproval", "needed")
    application = settings()
    switch(application, "Open at login", checked=False).press()
    switch(application, "Open at login", checked=True)
    expect_note(application, "Not yet: allow Cirrovane in System Settings > General > Login Items.")


def test_openAtLogin_cannotBeStored_staysOffAndSaysWhy(settings, login_file):
    (login_file / "in the way").mkdir(parents=True)
    application = settings()
    switch(application, "Open at login", checked=False).press()
    said = application.wait_until(
        lambda: next((t for t in notes(application) if t.startswith("This could not be changed. ")), None),
        "why it stays off",
    )
    assert len(said) > len("This could not be changed. ")
    switch(application, "Open at login", checked=False)


def test_openAtLogin_bareExecutable_cannotBeChosenAndSaysWhy(settings, mac):
    mac.set_fact("bundle", {"path": "/usr/local/bin/cirrovane", "info": {}})
    application = settings()
    switch(application, "Open at login", checked=False).press()
    expect_note(application, NOT_INSTALLED)
    switch(application, "Open at login", checked=False)
    expect_note(application, "No notifications are shown: only an installed application can show notifications.")


def test_notificationsRefused_areSaidBesideTheSwitchUntilAllowed(settings, mac, desktop):
    mac.set_fact("notificationAuthorization", "denied")
    application = settings(CIRROVANE_DEMO_TAB="incidents")
    expect_note(application, REFUSED)
    page = ("panel", "Incident Center")
    expect_note(application, REFUSED, page)
    switch(application, "Guardrail Notifications", checked=True).press()
    application.wait_until(lambda: REFUSED not in notes(application) + notes(application, page), "no note")
    switch(application, "Guardrail Notifications", checked=False).press()
    expect_note(application, REFUSED)
    mac.set_fact("notificationAuthorization", "authorized")
    come_back(application, desktop)
    application.wait_until(lambda: REFUSED not in notes(application) + notes(application, page), "no note")
