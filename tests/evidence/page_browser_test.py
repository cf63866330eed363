#!/usr/bin/python3
"""Opens the page of a proof packet in a real browser that has no network but this test's own server.

  page_browser_test.py PROGRAMS FOLDER

PROGRAMS has cirrovanectl and cirrovane-demo-mac; FOLDER may be filled, and has to be on a file system with extended
attributes. With KEEP_PICTURES set to a folder, the pictures stay there.
"""

import copy
import html
import http.server
import json
import os
import re
import subprocess
import sys
import tempfile
import threading
import unittest
from pathlib import Path

BROWSER = "/usr/bin/chromium"
# What a harmless page leaves alone.
TITLE = "Cirrovane proof: not safe to close"
programs = None
folder = None

# Looks at the page in a frame, as its own script and policy make it, and says what it found.
HARNESS = """<!DOCTYPE html><html><head><meta charset="utf-8"><title>harness</title></head><body>
<iframe id="page" src="/page.html" style="width:%(width)dpx;height:2000px;border:0" %(attributes)s></iframe>
<pre id="found"></pre><script>
window.onload = function () {
  var page = document.getElementById("page").contentDocument;
  var found = {};
  function shown() {
    return Array.prototype.filter.call(page.querySelectorAll("#blockers tbody tr"), function (row) {
      return row.getClientRects().length > 0;
    }).length;
  }
  found.title = page.title;
  found.text = page.body.innerText;
  found.scripts = page.scripts.length;
  found.foreign = page.querySelectorAll("img,iframe,object,embed,link,a,form,base,video,audio").length;
  found.isFilterShown = page.getElementById("filter").getClientRects().length > 0;
  found.rows = shown();
  found.overflow = page.documentElement.scrollWidth - page.documentElement.clientWidth;
  found.picture = page.querySelector("svg.timeline").getBoundingClientRect().height;
  function type(words, reason) {
    page.getElementById("words").value = words;
    page.getElementById("reason").value = reason;
    page.getElementById("words").dispatchEvent(new Event("input"));
    page.getElementById("reason").dispatchEvent(new Event("change"));
    return [shown(), page.getElementById("count").textContent];
  }
  if (found.isFilterShown) {
    found.byName = type("NEEDLE", "");
    found.byReason = type("", "notDownloaded");
    found.byBoth = type("needle", "notDownloaded");
    found.byNothing = type("", "");
  }
  document.getElementById("found").textContent = JSON.stringify(found);
};
</script></body></html>"""


class Server(http.server.ThreadingHTTPServer):
    """Serves a few documents and notes what it is asked for."""

    def __init__(self):
        super().__init__(("127.0.0.1", 0), Handler)
        self.documents = {}
        self.asked = []
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def url(self, path):
        return f"http://127.0.0.1:{self.server_port}{path}"


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        self.server.asked.append(self.path)
        document = self.server.documents.get(self.path)
        self.send_response(200 if document is not None else 404)
        self.send_header("Content-Type", "text/html; charset=utf-8")
        self.end_headers()
        self.wfile.write((document or "").encode())

    def log_message(self, *_):
        pass


def browse(*arguments):
    with tempfile.TemporaryDirectory() as profile:
        return subprocess.run(
            [BROWSER, "--headless", "--no-sandbox", "--disable-gpu", "--hide-scrollbars", "--disable-background-networking",
             "--disable-component-update", "--no-first-run", "--disable-dev-shm-usage", f"--user-data-dir={profile}",
             # No name is looked up anywhere.
             "--host-resolver-rules=MAP * ~NOTFOUND, EXCLUDE 127.0.0.1", *arguments],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=True, timeout=120,
        ).stdout  # fmt: skip


def ctl(root, *arguments):
    subprocess.run(
        [programs / "cirrovanectl", "--mac-root", root, *arguments], check=True, stdout=subprocess.DEVNULL
    )


class PageInABrowser(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.server = Server()
        cls.addClassCleanup(cls.server.server_close)
        cls.addClassCleanup(cls.server.shutdown)
        parent = tempfile.TemporaryDirectory(dir=folder)
        cls.addClassCleanup(parent.cleanup)
        cls.folder = Path(parent.name)
        root = cls.folder / "Mac"
        subprocess.run([programs / "cirrovane-demo-mac", "create", root], check=True, stdout=subprocess.DEVNULL)
        cls.packet = cls.folder / "demo.json"
        for _ in range(2):
            ctl(root, "export", cls.packet)
        cls.root = root
        cls.hostile = cls.folder / "hostile.json"
        cls.hostile.write_text(json.dumps(hostile(json.loads(cls.packet.read_text()), cls.server)))

    def page_of(self, packet, *more):
        page = self.folder / "page.html"
        ctl(self.root, "export", "--from", packet, "--html", page, *more)
        return page

    def look(self, page, width=1200, attributes=""):
        """What the harness finds, and what the server was asked for meanwhile."""
        self.server.documents = {
            "/page.html": page.read_text(),
            "/harness.html": HARNESS % {"width": width, "attributes": attributes},
        }
        self.server.asked.clear()
        dom = browse(f"--window-size={width + 100},2200", "--dump-dom", self.server.url("/harness.html"))
        found = re.search(r'<pre id="found">(.+?)</pre>', dom, re.S)
        self.assertTrue(found, dom[-2000:])
        return json.loads(html.unescape(found[1])), set(self.server.asked) - {"/favicon.ico"}

    def test_hostileNames_doNothingAndAskForNothing(self):
        found, asked = self.look(self.page_of(self.hostile))
        self.assertEqual(asked, {"/harness.html", "/page.html"})
        self.assertTrue(found["title"].startswith(TITLE), found["title"])
        self.assertEqual((found["scripts"], found["foreign"]), (1, 0))
        self.assertIn("<script>document.title='owned'</script>", found["text"])
        self.assertIn("\\u{202e}gpj.exe", found["text"])
        self.assertIn("And 230 more blockers", found["text"])

    def test_filter_narrowsByWordsAndReason(self):
        found, _ = self.look(self.page_of(self.hostile))
        self.assertTrue(found["isFilterShown"])
        self.assertEqual(found["rows"], 1000)
        self.assertEqual(found["byName"], [1, "1 of 1000"])
        self.assertEqual(found["byBoth"], [0, "0 of 1000"])
        self.assertEqual(found["byNothing"], [1000, ""])
        rows, words = found["byReason"]
        self.assertTrue(0 < rows < 1000)
        self.assertEqual(words, f"{rows} of 1000")

    def test_withoutScripts_allOfItIsThere(self):
        found, _ = self.look(self.page_of(self.packet), attributes='sandbox="allow-same-origin"')
        self.assertFalse(found["isFilterShown"])
        self.assertEqual(found["rows"], len(json.loads(self.packet.read_text())["report"]["blockers"]))
        self.assertGreater(found["picture"], 100)
        for heading in ("Criteria", "Timeline", "Blockers", "Watched folders", "Findings", "Incidents"):
            self.assertIn(heading, found["text"])

    def test_onAPhone_nothingSticksOut(self):
        for packet in (self.packet, self.hostile):
            found, _ = self.look(self.page_of(packet), width=390)
            self.assertEqual(found["overflow"], 0)

    def test_hiddenNames_areNowhereOnThePage(self):
        found, _ = self.look(self.page_of(self.packet, "--redact", "names"))
        for name in ("Harbour", "Lindqvist", "Invoice", "demo/"):
            self.assertNotIn(name, found["text"])

    def test_picturesAndPrint_areMade(self):
        page = self.page_of(self.packet).resolve().as_uri()
        pictures = Path(os.environ.get("KEEP_PICTURES", self.folder))
        for name, arguments in {
            "phone": ["--window-size=500,3000"],
            "wide": ["--window-size=1280,3000"],
            "dark": ["--window-size=1280,3000", "--blink-settings=preferredColorScheme=0"],
        }.items():
            picture = pictures / f"page-{name}.png"
            browse(f"--screenshot={picture}", *arguments, page)
            self.assertTrue(picture.read_bytes().startswith(b"\x89PNG"), name)
        self.assertNotEqual((pictures / "page-wide.png").read_bytes(), (pictures / "page-dark.png").read_bytes())
        printed = pictures / "page.pdf"
        browse(f"--print-to-pdf={printed}", "--no-pdf-header-footer", page)
        self.assertGreater(len(re.findall(rb"/Type\s*/Page\b", printed.read_bytes())), 1)


def hostile(packet, server):
    """The packet with 1230 blockers, among whose names are markup, scripts and addresses."""
    report = packet["report"]
    address = server.url("/stolen")
    names = [
        "<script>document.title='owned'</script>", f"<img src='{address}' onerror=\"document.title='owned'\">",
        f"<iframe src={address}>", f"<link rel=stylesheet href={address}>", f"<style>@import '{address}';</style>",
        f"url({address})", f"javascript:fetch('{address}')", "</td></tr></table></section>", "</style></script><h1>",
        "&lt;b&gt;&#60;script&#62;", "\u202egpj.exe", "needle in a haystack", "x" * 900, "\u05e9\u05dc\u05d5\u05dd",
        f"\"><svg/onload=fetch('{address}')>", "<base href='http://127.0.0.1/'>", f"<meta http-equiv=refresh content='0;{address}'>",
    ]  # fmt: skip
    some = report["blockers"][-1]
    for number, name in enumerate(names):
        blocker = copy.deepcopy(some)
        blocker.update(filePath="/Users/x/" + name, folderName=name, reason="uploadError", details=name)
        report["blockers"].insert(number, blocker)
        incident = copy.deepcopy(packet["incidents"][0])
        incident.update(title=name, lastDetail=name)
        packet["incidents"].append(incident)
        packet["diagnostics"].append(dict(packet["diagnostics"][0], title=name, detail=name))
    packet["history"][0]["topBlockerFilePath"] = names[1]
    report["summary"] = names[0]
    while len(report["blockers"]) < 1230:
        report["blockers"].append(dict(some, filePath=f"/Users/x/{len(report['blockers'])}"))
    return packet


if __name__ == "__main__":
    programs, folder = (Path(argument).resolve() for argument in sys.argv[1:3])
    folder.mkdir(parents=True, exist_ok=True)
    unittest.main(argv=sys.argv[:1])
