#!/usr/bin/python3
"""Holds real proof packets to the schema and the document that describe them.

  proof_packet_test.py PROGRAMS FOLDER

PROGRAMS has cirrovanectl and cirrovane-demo-mac; FOLDER may be filled, and has to be on a file system with extended
attributes.
"""

import base64
import copy
import hashlib
import json
import os
import re
import subprocess
import sys
import tempfile
import unittest
import uuid
from pathlib import Path

import jsonschema

DOCS = Path(__file__).resolve().parents[2] / "docs"
SCHEMA = json.loads((DOCS / "proof-packet.schema.json").read_text())
# The keys that an object may lack, by its place; all others it must have.
OPTIONAL = {
    "blockers": {"lastModified"},
    "history": {"localAvailabilityScore"},
    "systemStatus": {
        "batteryCharging", "batteryPercent", "cpuTemperatureC", "cpuUsagePercent", "diskFreeBytes", "diskTotalBytes",
        "load15m", "load1m", "load5m", "memoryUsedBytes", "networkReachable",
    },
}  # fmt: skip
programs = None
folder = None


def errors_of(packet):
    validator = jsonschema.Draft202012Validator(SCHEMA)
    return [f"{'/'.join(map(str, error.absolute_path))}: {error.message}" for error in validator.iter_errors(packet)]


class DemoMac:
    """A demo Mac in a folder of its own, which a test's cleanup removes."""

    def __init__(self, add_cleanup):
        parent = tempfile.TemporaryDirectory(dir=folder)
        add_cleanup(parent.cleanup)
        self.root = Path(parent.name) / "Mac"
        self.demo("create", self.root)

    def demo(self, *arguments):
        subprocess.run([programs / "cirrovane-demo-mac", *arguments], check=True, stdout=subprocess.DEVNULL)

    def ctl(self, *arguments):
        return subprocess.run(
            [programs / "cirrovanectl", "--mac-root", self.root, *arguments], stdout=subprocess.PIPE, text=True
        ).stdout

    @property
    def history_file(self):
        return self.root / "Users/demo/Library/Application Support/com.quillmere.Cirrovane/history.json"

    def packet(self):
        return json.loads(self.ctl("export", "-"))


class PacketTest(unittest.TestCase):
    def expect_valid(self, packet):
        self.assertEqual(errors_of(packet), [])

    def expect_rejected(self, packet, what):
        self.assertNotEqual(errors_of(packet), [], f"the schema takes a packet with {what}")


class RealPackets(PacketTest):
    def test_schema_ItselfIsOne(self):
        jsonschema.Draft202012Validator.check_schema(SCHEMA)

    def test_demoMac_freshSettledAndRecurring_isValid(self):
        mac = DemoMac(self.addCleanup)
        fresh = mac.packet()
        self.expect_valid(fresh)
        self.assertFalse(fresh["report"]["safeToClose"])
        reasons = {blocker["reason"] for blocker in fresh["report"]["blockers"]}
        self.assertEqual(reasons, set(SCHEMA["$defs"]["blockerReason"]["enum"]), "the demo Mac has every reason")

        mac.demo("settle", mac.root)
        settled = mac.packet()
        self.expect_valid(settled)
        self.assertTrue(settled["report"]["safeToClose"])
        self.assertTrue(any(incident["isResolved"] for incident in settled["incidents"]))

        mac.demo("network", mac.root, "off")
        for process in ("bird", "cloudd", "fileproviderd"):
            mac.demo("process", mac.root, process, "off")
        self.expect_valid(mac.packet())

    def test_redactedPackets_areValid_andNothingOfOursIsWithheld(self):
        mac = DemoMac(self.addCleanup)
        states = [
            lambda: None,
            lambda: mac.demo("network", mac.root, "off"),
            lambda: mac.demo("process", mac.root, "bird", "off"),
            lambda: mac.demo("settle", mac.root),
        ]
        for change in states:
            change()
            whole = mac.root.parent / "whole.json"
            mac.ctl("export", whole)
            for how in ("names", "strict"):
                packet = json.loads(mac.ctl("export", "--from", whole, "--redact", how, "-"))
                self.expect_valid(packet)
                withheld = {
                    record.get("title", record.get("reason"))
                    for record in objects(packet)
                    if "(withheld)" in record.values()
                }
                tools = {"CPU usage sample", "Swap usage", "uploadError", "downloadError"}
                self.assertLessEqual(withheld, tools if how == "strict" else set())

    def test_page_namesItsOwnScriptAndStyleByTheirHash(self):
        page = DemoMac(self.addCleanup).ctl("export", "--html", "-")
        policy = re.search(r'Content-Security-Policy" content="([^"]+)"', page)[1]
        self.assertTrue(policy.startswith("default-src 'none'; "))
        for tag in ("script", "style"):
            [content] = re.findall(rf"<{tag}>(.*?)</{tag}>", page, re.S)
            digest = base64.b64encode(hashlib.sha256(content.encode()).digest()).decode()
            self.assertIn(f"{tag}-src 'sha256-{digest}'", policy)

    def test_history_of51_isValidAndCut(self):
        mac = DemoMac(self.addCleanup)
        mac.ctl("refresh")
        snapshot = json.loads(mac.history_file.read_text())[0]
        snapshots = [dict(snapshot, id=str(uuid.uuid4()).upper()) for _ in range(51)]
        # As files were before these values were recorded.
        for key in ("localAvailabilityScore", "topBlockerFilePath", "topBlockerFolderName", "topBlockerReason"):
            del snapshots[3][key]
        mac.history_file.write_text(json.dumps(snapshots))
        packet = mac.packet()
        self.expect_valid(packet)
        self.assertEqual(len(packet["history"]), 50)
        self.assertEqual(packet["history"][1:], snapshots[:49])

    def test_macOfWhichNothingIsKnown_isValid(self):
        with tempfile.TemporaryDirectory(dir=folder) as root:
            Path(root, "machine.json").write_text("{}")
            packet = subprocess.run(
                [programs / "cirrovanectl", "--mac-root", root, "export", "-"], stdout=subprocess.PIPE, check=True
            ).stdout
        packet = json.loads(packet)
        self.expect_valid(packet)
        self.assertEqual(
            sorted(packet["systemStatus"]),
            ["capturedAt", "lowPowerMode", "memoryTotalBytes", "thermalState", "uptimeSeconds"],
        )

    def test_host_isValid(self):
        with tempfile.TemporaryDirectory(dir=folder) as home:
            environment = {**os.environ, "HOME": home}
            for name in ("XDG_DATA_HOME", "XDG_CONFIG_HOME"):
                environment.pop(name, None)
            packet = subprocess.run(
                [programs / "cirrovanectl", "--mac-root", "/", "export", "-"],
                stdout=subprocess.PIPE, env=environment, check=True,
            ).stdout  # fmt: skip
        self.expect_valid(json.loads(packet))


def objects_in(value, path=()):
    """The path to each object in a document."""
    if isinstance(value, dict):
        yield path
        for key, inner in value.items():
            yield from objects_in(inner, (*path, key))
    elif isinstance(value, list):
        for index, inner in enumerate(value):
            yield from objects_in(inner, (*path, index))


def objects(document):
    return [at(document, path) for path in objects_in(document)]


def at(document, path):
    for step in path:
        document = document[step]
    return document


class DamagedPackets(PacketTest):
    @classmethod
    def setUpClass(cls):
        mac = DemoMac(cls.addClassCleanup)
        mac.ctl("refresh")
        mac.demo("network", mac.root, "off")
        mac.ctl("refresh")
        mac.demo("network", mac.root, "on")
        cls.packet = mac.packet()
        # One of each kind will do.
        report = cls.packet["report"]
        report["blockers"] = [next(blocker for blocker in report["blockers"] if "lastModified" in blocker)]
        for lists in (report["actions"], report["folderHealth"], cls.packet["history"], cls.packet["diagnostics"]):
            del lists[1:]
        resolved = next(incident for incident in cls.packet["incidents"] if incident["isResolved"])
        cls.packet["incidents"] = [resolved]

    def damaged(self, path, key, value):
        packet = copy.deepcopy(self.packet)
        at(packet, path)[key] = value
        return packet

    def test_packet_beforeItIsDamaged_isValid(self):
        self.expect_valid(self.packet)
        self.assertEqual(len(list(objects_in(self.packet))), 11, "one object of every kind")

    def test_missingKey_isRejected(self):
        for path in objects_in(self.packet):
            for key in at(self.packet, path):
                packet = copy.deepcopy(self.packet)
                del at(packet, path)[key]
                kind = next((step for step in reversed(path) if isinstance(step, str)), "")
                if key in OPTIONAL.get(kind, ()):
                    self.expect_valid(packet)
                else:
                    self.expect_rejected(packet, f"no {key} in {path}")

    def test_extraKey_isRejected(self):
        for path in objects_in(self.packet):
            self.expect_rejected(self.damaged(path, "extra", 1), f"an extra key in {path}")

    def test_nullOrValueOfAnotherType_isRejected(self):
        for path in objects_in(self.packet):
            for key, value in at(self.packet, path).items():
                self.expect_rejected(self.damaged(path, key, None), f"a null for {key}")
                other = 1 if isinstance(value, str) else "1"
                self.expect_rejected(self.damaged(path, key, other), f"{other!r} for {key}")

    def test_unknownCaseOfAnEnumeration_isRejected(self):
        for path, key in (
            (("report",), "status"),
            (("report", "blockers", 0), "reason"),
            (("report", "folderHealth", 0), "status"),
            (("history", 0), "status"),
            (("history", 0), "topBlockerReason"),
            (("diagnostics", 0), "domain"),
            (("diagnostics", 0), "severity"),
            (("incidents", 0), "domain"),
            (("incidents", 0), "severity"),
            (("systemStatus",), "thermalState"),
        ):
            for value in ("unheard of", "", at(self.packet, path)[key].swapcase()):
                self.expect_rejected(self.damaged(path, key, value), f"{value!r} for {key}")
        self.expect_rejected(self.damaged(("incidents", 0), "severity", "ok"), "an incident that is none")

    def test_wrongDate_isRejected(self):
        for path, key in (
            ((), "exportedAt"),
            (("report",), "generatedAt"),
            (("report", "blockers", 0), "lastModified"),
            (("history", 0), "timestamp"),
            (("diagnostics", 0), "observedAt"),
            (("incidents", 0), "firstSeen"),
            (("incidents", 0), "lastSeen"),
            (("incidents", 0), "resolvedAt"),
            (("systemStatus",), "capturedAt"),
        ):
            for date in (
                "2026-11-15", "2026-11-15 18:25:15Z", "2026-11-15T18:25:15", "2026-11-15T18:25:15.5Z",
                "2026-13-15T18:25:15Z", "2026-11-32T18:25:15Z", "2026-11-15T24:25:15Z", "2026-11-15T18:25:15+01:00", "",
            ):  # fmt: skip
                self.expect_rejected(self.damaged(path, key, date), f"the date {date!r} for {key}")

    def test_wrongIdentifier_isRejected(self):
        for path in objects_in(self.packet):
            if "id" in at(self.packet, path):
                good = at(self.packet, path)["id"]
                for value in (good.lower() + "x", good[:-1], good.replace("-", ""), "{" + good + "}"):
                    self.expect_rejected(self.damaged(path, "id", value), f"the identifier {value}")

    def test_numberOutOfRange_isRejected(self):
        for value in (-1, 101, 50.5):
            self.expect_rejected(self.damaged(("report",), "score", value), f"a score of {value}")
        self.expect_rejected(self.damaged(("report", "metrics"), "errors", -1), "less than no errors")
        self.expect_rejected(self.damaged(("incidents", 0), "occurrences", 0), "an incident that never was")

    def test_verdictThatItsOwnCountsDeny_isRejected(self):
        packet = copy.deepcopy(self.packet)
        packet["report"].update(safeToClose=True, status="safe")
        self.expect_rejected(packet, "pending uploads and a verdict of safe")
        packet["report"]["metrics"].update(pendingUploads=0, errors=0, unresolvedConflicts=0)
        self.expect_valid(packet)
        packet["report"]["status"] = "warning"
        self.expect_rejected(packet, "a state of warning and a verdict of safe")

    def test_tooManyOfAKind_isRejected(self):
        snapshot = self.packet["history"][0]
        self.expect_valid(self.damaged((), "history", [snapshot] * 50))
        self.expect_rejected(self.damaged((), "history", [snapshot] * 51), "51 scans")
        action = self.packet["report"]["actions"][0]
        self.expect_rejected(self.damaged(("report",), "actions", [action] * 4), "4 actions")


class Document(unittest.TestCase):
    text = (DOCS / "proof-packet.md").read_text()

    def test_everyFieldAndCase_isNamed(self):
        for definition in [SCHEMA, *SCHEMA["$defs"].values()]:
            for name, value in definition.get("properties", {}).items():
                self.assertIn(f"`{name}`", self.text)
                for case in [*value.get("enum", []), *definition.get("enum", [])]:
                    self.assertIn(f"`{case}`", self.text)
            for case in definition.get("enum", []):
                self.assertIn(f"`{case}`", self.text)

    def test_questions_areAnsweredAsTheDocumentSays(self):
        examples = re.findall(r"```\n\$ (jq .*?)\n((?:[^`].*\n)+?)```", self.text)
        self.assertEqual(len(examples), 3)
        mac = DemoMac(self.addCleanup)
        mac.ctl("refresh")
        mac.ctl("refresh")
        mac.ctl("export", mac.root.parent / "proof.json")
        for command, answer in examples:
            output = subprocess.run(
                ["/bin/sh", "-c", command], cwd=mac.root.parent, stdout=subprocess.PIPE, text=True, check=True
            ).stdout
            self.assertEqual(without_days(output), without_days(answer), command)


def without_days(text):
    """The demo Mac's files are as old as they are when it is made."""
    return re.sub(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ", "DATE", text)


if __name__ == "__main__":
    programs, folder = (Path(argument).resolve() for argument in sys.argv[1:3])
    folder.mkdir(parents=True, exist_ok=True)
    unittest.main(argv=sys.argv[:1])
