"""What is left to upload: the words and the bar while files leave, and which file is stuck and why."""

import json
import re
import subprocess
from datetime import datetime, timedelta, timezone
from pathlib import Path

import pytest
from conftest import PROGRAMS

CARD = ("panel", "Safe to Close")
BAR = "progress bar"
SHEET = ("dialog", "Stuck Uploads")
AMOUNT = re.compile(r"Left to upload: (\d+) files?, ")
INVOICE = "Invoice 2031 Harbour Café.pdf"


def ago(**time):
    return (datetime.now(timezone.utc) - timedelta(**time)).strftime("%Y-%m-%dT%H:%M:%SZ")


def remember(mac, files, flows=()):
    """Has the application remember that these files waited, and what left."""
    record = {
        "files": [{"filePath": path, "bytes": size, "pendingSince": ago(**since), "pendingBytesThen": 1_000_000}
                  for path, size, since in files],
        "flows": [{"at": ago(**at), "bytesLeft": size, "filesLeft": 1, "bytesCame": 0} for size, at in flows],
        "isWhole": True,
    }  # fmt: skip
    (mac.stores / "uploads.json").write_text(json.dumps(record))


def pending(mac):
    return mac.ask("pending")["files"]


@pytest.fixture
def uploading(mac):
    """Has files leave while the test looks on, and ends that."""
    running = []

    def start(*options):
        running.append(subprocess.Popen([PROGRAMS / "cirrovane-demo-mac", "upload", mac.root, *options],
                                        stdout=subprocess.DEVNULL))  # fmt: skip
        return running[-1]

    yield start
    for process in running:
        process.terminate()
        process.wait()


def waiting_files(application):
    """How many files the card says are left; absent while it says nothing of it."""
    told = [AMOUNT.match(text) for text in application.texts(CARD)]
    return next((int(match[1]) for match in told if match), None)


def share(application):
    """The bar's percentage as a screen reader has it; absent without a bar."""
    bars = application.all(BAR, "Uploaded", CARD)
    return int(bars[0].description.removesuffix("%")) if bars else None


def test_uploads_atWork_wordsAndBarFollow(overview, mac, uploading):
    files = pending(mac)
    remember(mac, [(file["filePath"], file["bytes"], {"minutes": 6}) for file in files],
             [(20_000, {"seconds": 10 + 15 * number}) for number in range(20)])  # fmt: skip
    application = overview()
    application.wait_until(lambda: waiting_files(application) == len(files), "all files wait")
    application.wait_until(
        lambda: any(re.search(r"^(about \d.* min|under a minute)$", text) for text in application.texts(CARD)),
        lambda: f"a range, but: {application.texts(CARD)}",
    )
    first = share(application)
    assert first == 0
    process = uploading("--rate", str(sum(file["bytes"] for file in files) // 20))
    application.wait_until(lambda: 0 < (waiting_files(application) or 0) < len(files), "some have left")
    application.wait_until(lambda: (share(application) or 0) > first, "the bar has moved")
    moved = share(application)
    application.wait_until(lambda: (share(application) or 100) > moved, "the bar moves on")
    assert process.wait() == 0
    application.wait_until(lambda: waiting_files(application) is None, "nothing is left to say")
    assert share(application) is None
    assert mac.ask("pending")["pendingFiles"] == 0


def test_uploads_nothingPending_showsNothing(overview, mac):
    mac.settle()
    application = overview()
    assert waiting_files(application) is None
    assert share(application) is None
    assert not application.all("push button", "Why and What to Do")


def test_uploads_stuckFile_isNamedWithItsErrorAndTheNextStep(overview, mac, files):
    [invoice] = [file for file in pending(mac) if file["filePath"].endswith(INVOICE)]
    before = Path(invoice["filePath"]).stat()
    remember(mac, [(invoice["filePath"], invoice["bytes"], {"hours": 3, "seconds": 30})])
    application = overview()
    application.node(None, "1 file is stuck", CARD)
    application.press("push button", "Why and What to Do", CARD)
    texts = application.texts(SHEET)
    assert invoice["filePath"] in texts
    assert "Waiting for 3 h, 10 KB" in texts
    assert any("there isn’t enough space in your iCloud account" in text for text in texts)
    assert "Free some iCloud storage, or get more of it. The upload then goes on by itself." in texts
    application.press("push button", "Reveal in Finder", SHEET)
    application.wait_until(lambda: len(files.shown()) == 1, "the file manager shows it")
    application.keys("Escape")
    application.wait_for_none(*SHEET)
    after = Path(invoice["filePath"]).stat()
    assert (after.st_mtime_ns, after.st_ctime_ns) == (before.st_mtime_ns, before.st_ctime_ns)


def test_uploads_stuckWithoutANetwork_saysWhatTheMachineLacks(overview, mac):
    stuck = next(file for file in pending(mac) if not file["filePath"].endswith(INVOICE))
    remember(mac, [(stuck["filePath"], stuck["bytes"], {"days": 3})])
    mac.set_network(False)
    application = overview()
    application.press("push button", "Why and What to Do", CARD)
    application.wait_until(lambda: "Default route" in application.texts(SHEET), "the finding is told")
    texts = application.texts(SHEET)
    assert "Waiting for 3 days, " in " ".join(texts)
    assert "Connect this Mac to the internet. The upload then goes on by itself." in texts


def test_panel_pendingFiles_tellsTheSameWords(launch, mac):
    files = pending(mac)
    remember(mac, [(file["filePath"], file["bytes"], {"minutes": 12, "seconds": 20}) for file in files])
    application = launch("--panel", CIRROVANE_DEMO_TAB="faq")
    application.wait_scanned()
    size = f"{round(sum(file['bytes'] for file in files) / 1000)} KB"
    words = f"Left to upload: {len(files)} files, {size}, nothing has moved for 12 min."
    application.wait_until(lambda: words in application.texts(("panel", "Cirrovane")), words)
