"""The two pages of help, read as a screen reader reads them."""

import pytest

FAQ = [
    (
        "What does Safe to Close mean?",
        "It means this Mac can be safely closed, slept, shut down, or traveled with based on observed iCloud sync "
        "signals for your watched folders.",
    ),
    (
        "What does it not mean?",
        "It does not guarantee every macOS service in existence is perfect. It confirms the critical criteria we can "
        "verify right now are passing.",
    ),
    (
        "Why can Upload Trust be high when some files are cloud-only?",
        "Cloud-only means the file may be safely stored in iCloud but not downloaded locally. That affects Local "
        "Availability, not Upload Trust.",
    ),
    (
        "Why is my score low?",
        "Most common causes: pending uploads, unresolved conflicts, transfer errors, stalled uploads, or watchlist "
        "folders outside iCloud.",
    ),
    (
        "What should I do first when unsafe?",
        "Follow the Safe Next Actions list from top to bottom. It is ordered to prioritize the lowest-risk steps "
        "first.",
    ),
    (
        "Can this inspect all Mac failures?",
        "Not yet. Diagnostics currently cover iCloud, Finder reachability, and key system constraints. More subsystem "
        "integrations can be added over time.",
    ),
    (
        "What is a proof packet?",
        "A JSON export containing the current report and timeline history that you can share with IT or Apple Support "
        "for evidence-based troubleshooting.",
    ),
]
GUIDE = [
    (
        "Core Signals",
        [
            (
                "Safe to Close",
                "Binary result. Green only when no critical blockers, no pending uploads, no conflicts, and no "
                "upload/download errors are detected.",
            ),
            (
                "Upload Trust Score",
                "0-100 confidence score for upload integrity. Cloud-only files do not reduce this score.",
            ),
            (
                "Local Availability",
                "0-100 estimate of how much watched content is currently downloaded on this Mac.",
            ),
            (
                "Top Blockers",
                "The highest-risk files currently reducing trust. These are the first items to inspect before travel, "
                "shutdown, or handoff.",
            ),
        ],
    ),
    (
        "Status Colors",
        [
            (
                "Green",
                "No critical sync risks detected in watched folders. Usually safe for shutdown or travel.",
            ),
            (
                "Yellow",
                "Some risk exists or confidence is incomplete. Review blockers before relying on sync.",
            ),
            (
                "Red",
                "High risk. Sync may be incomplete or failing. Do not assume files are safely uploaded.",
            ),
        ],
    ),
    (
        "Blocker Reasons",
        [
            ("Conflict Detected", "iCloud reports unresolved file version conflicts."),
            ("Upload Error", "A file failed to upload to iCloud."),
            ("Download Error", "A file failed to download to this Mac."),
            (
                "Upload Stalled",
                "A file appears to be uploading but has not progressed for the configured threshold window.",
            ),
            ("Not Uploaded", "The file has local changes that are not yet fully uploaded."),
            (
                "Cloud-Only (Not Local)",
                "The file can still be safely in iCloud, but a local copy is not present on this Mac right now.",
            ),
            (
                "Outside iCloud",
                "A watched folder is outside iCloud Drive, so upload trust cannot be guaranteed by iCloud metadata.",
            ),
            ("Folder Unavailable", "A watched folder path does not exist on this Mac."),
        ],
    ),
    (
        "Audit and Proof",
        [
            ("Audit Timeline", "History of scan snapshots showing trust movement over time."),
            (
                "Proof Packet",
                "Exportable JSON evidence containing current report + scan history for IT or Apple support.",
            ),
            (
                "Critical Folder Watchlist",
                "Your high-stakes folders (client work, school, invoices) used to compute trust.",
            ),
        ],
    ),
]

QUESTIONS = [question for question, _ in FAQ]
FAQ_HEADER = ["FAQ", "Clear answers for trust, scoring, and safety decisions."]
PAGE = ("panel", "FAQ")
SHEET = ("dialog", "Terminology Guide")


@pytest.fixture
def faq(launch):
    return launch(CIRROVANE_DEMO_TAB="faq").ready()


@pytest.fixture
def guide(launch):
    application = launch().ready()
    application.open_menu("Help", "Terminology Guide")
    application.node(*SHEET)
    return application


def with_answers(*opened):
    """The page's texts when these questions are open."""
    return FAQ_HEADER + [
        text for number, (question, answer) in enumerate(FAQ, 1)
        for text in ([question, answer] if number in opened else [question])
    ]  # fmt: skip


def expect_faq(application, *opened):
    application.wait_until(
        lambda: application.texts(PAGE) == with_answers(*opened), f"answers {opened} alone to be open"
    )
    states = {node.name: node.description for node in application.all("push button", under=PAGE)}
    expected = {question: "Expanded" if number in opened else "Collapsed"
                for number, question in enumerate(QUESTIONS, 1)}  # fmt: skip
    assert states == expected


def test_faq_asOpened_hasEveryQuestionAndNoAnswer(faq):
    expect_faq(faq)


def test_faq_everyQuestionPressed_hasEveryAnswerBelowItsQuestion(faq):
    for question in QUESTIONS:
        faq.press("push button", question, PAGE)
    expect_faq(faq, 1, 2, 3, 4, 5, 6, 7)


def test_faq_twoOpenAndOneClosedAgain_keepsTheOther(faq):
    faq.press("push button", QUESTIONS[2], PAGE)
    faq.press("push button", QUESTIONS[4], PAGE)
    expect_faq(faq, 3, 5)
    faq.press("push button", QUESTIONS[2], PAGE)
    expect_faq(faq, 5)


def test_faq_byKeyboard_opensAndCloses(faq):
    faq.tab_to("push button", QUESTIONS[0])
    faq.keys("space")
    expect_faq(faq, 1)
    faq.keys("Tab", "Return")
    expect_faq(faq, 1, 2)
    faq.keys("space", "shift+Tab", "Return")
    expect_faq(faq)


def test_faq_leftAndOpenedAgain_isClosed(faq):
    faq.press("push button", QUESTIONS[0], PAGE)
    expect_faq(faq, 1)
    faq.press("page tab", "Why")
    faq.node("heading", "Why This Verdict")
    faq.open_menu("Help", "FAQ")
    expect_faq(faq)


def test_faq_refreshed_keepsItsAnswersOpen(faq):
    faq.press("push button", QUESTIONS[1], PAGE)
    expect_faq(faq, 2)
    faq.rescan()
    expect_faq(faq, 2)


def test_guide_hasEveryTermInItsSection(guide):
    expected = [SHEET[1], "What each trust signal and blocker reason means.", "Close"]
    for section, terms in GUIDE:
        expected.append(section)
        for term in terms:
            expected += term
    assert guide.texts(SHEET) == expected
    assert sum(len(terms) for _, terms in GUIDE) == 18
    headings = [node.name for node in guide.all("heading", under=SHEET)]
    assert headings == [SHEET[1], *(section for section, _ in GUIDE)]


@pytest.mark.parametrize("key", ["Escape", "ctrl+w", "Return", "space"])
def test_guide_keyThatCloses_closesItAndNothingElse(guide, key):
    guide.node("push button", "Close", SHEET, focused=True)
    guide.keys(key)
    guide.wait_for_none(*SHEET)
    assert guide.node("frame", "Cirrovane")
    assert len(guide.windows()) == 1


def test_guide_closeButton_closesItAndItOpensAgain(guide):
    guide.press("push button", "Close", SHEET)
    guide.wait_for_none(*SHEET)
    guide.open_menu("Help", "Terminology Guide")
    guide.node(*SHEET)


def test_guide_byKeyboard_scrolls(guide):
    def lowest_edge(*node):
        _, y, _, height = guide.node(*node).extents()
        return y + height

    last = GUIDE[-1][1][-1][1]
    assert lowest_edge("label", last, SHEET) > lowest_edge(*SHEET)
    guide.node("push button", "Close", SHEET, focused=True)
    guide.keys("Tab", *["Down"] * 60)
    guide.wait_until(lambda: lowest_edge("label", last, SHEET) <= lowest_edge(*SHEET), "the last term in sight")
