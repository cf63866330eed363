#!/usr/bin/python3
"""What Prometheus' own tools say of the metrics that a fleet of demo Macs writes, and of what is shipped for fleets.
CIRROVANE_BIN_DIR names the folder of the built programs; `scripts/install-packages fleet` brings promtool."""

import json
import os
import plistlib
import re
import shutil
import subprocess
import time
import unittest
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
SHIPPED = TREE / "packaging/fleet"
PROGRAMS = Path(os.environ.get("CIRROVANE_BIN_DIR", TREE / "build/dev/bin")).resolve()
# Where extended attributes are to be had.
FLEET = PROGRAMS.parent / f"test-files/fleet-{os.getpid()}"
# The application scans every 90 seconds in any case.
PATIENCE = 120
TYPES = {
    "cirrovane_blockers": "gauge",
    "cirrovane_build_info": "gauge",
    "cirrovane_coverage_complete": "gauge",
    "cirrovane_coverage_folders_not_examined": "gauge",
    "cirrovane_coverage_gaps": "gauge",
    "cirrovane_files": "gauge",
    "cirrovane_health_state": "gauge",
    "cirrovane_incidents": "gauge",
    "cirrovane_item_errors": "gauge",
    "cirrovane_last_coverage_timestamp_seconds": "gauge",
    "cirrovane_last_safe_timestamp_seconds": "gauge",
    "cirrovane_last_scan_timestamp_seconds": "gauge",
    "cirrovane_local_availability_ratio": "gauge",
    "cirrovane_not_downloaded_files": "gauge",
    "cirrovane_pending_bytes": "gauge",
    "cirrovane_pending_uploads": "gauge",
    "cirrovane_safe_to_close": "gauge",
    "cirrovane_stuck_uploads": "gauge",
    "cirrovane_unresolved_conflicts": "gauge",
    "cirrovane_upload_trust_ratio": "gauge",
    "cirrovane_watched_folders": "gauge",
}
OF_THE_APPLICATION = {
    "cirrovane_failed_probes": "gauge",
    "cirrovane_live_disagreements_total": "counter",
    "cirrovane_liveness": "gauge",
}
MOST_SERIES = 45


def run(*command, **more):
    done = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **more)
    return done.returncode, done.stdout


def families(text):
    """The types of all families; each has its help and type before its samples, which stand together."""
    found, series = {}, set()
    for help_line, type_line, samples in re.findall(r"(# HELP .+\n)(# TYPE .+\n)((?:[^#\n].*\n)+)", text):
        name, kind = type_line.split()[2:]
        assert help_line.split()[2] == name and name not in found, help_line
        found[name] = kind
        for sample in samples.splitlines():
            identity, value = sample.rsplit(" ", 1)
            # A name that stands by itself, a number, and no time.
            assert re.fullmatch(rf'{name}(\{{[a-z]+="[^"]*"\}})?', identity), sample
            float(value)
            assert identity not in series, f"{identity} stands twice"
            series.add(identity)
    assert sum(not line.startswith("#") for line in text.splitlines()) == len(series)
    return found, series


def promtool(*arguments, **more):
    return run("promtool", *arguments, **more)


class FleetTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        assert shutil.which("promtool"), "promtool is missing: scripts/install-packages fleet"
        status, said = run(TREE / "scripts/fleet-demo", 15, FLEET, env={**os.environ, "CIRROVANE_BIN_DIR": str(PROGRAMS)})
        assert status == 0, said
        cls.macs = json.loads((FLEET / "fleet.json").read_text())
        cls.texts = {mac["name"]: Path(mac["metrics"]).read_text() for mac in cls.macs}

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(FLEET, ignore_errors=True)

    def of_the_application(self):
        """What the application writes for the first Mac."""
        mac = self.macs[0]
        file = FLEET / "application.prom"
        defaults = Path(mac["root"]) / "Users/demo/Library/Preferences/com.quillmere.Cirrovane.json"
        defaults.parent.mkdir(parents=True, exist_ok=True)
        defaults.write_text(json.dumps({"metricsEnabled": True, "metricsFile": str(file), "motionEnabled": False}))
        application = subprocess.Popen(
            [PROGRAMS / "cirrovane", "--mac-root", mac["root"]], env={**os.environ, "QT_QPA_PLATFORM": "offscreen"},
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
        )  # fmt: skip
        try:
            end = time.monotonic() + PATIENCE
            text = ""
            # The coverage is looked at after the first scan; a verdict that turns brings the next text about.
            while "cirrovane_coverage_complete" not in text:
                self.assertLess(time.monotonic(), end, "the application has not written all that it knows")
                self.assertIsNone(application.poll(), "the application has ended")
                time.sleep(0.25)
                if file.exists():
                    if not text:
                        self.turn_unsafe(mac)
                    text = file.read_text()
            return text
        finally:
            application.kill()
            application.wait()

    def turn_unsafe(self, mac):
        drive = Path(mac["root"]) / "Users/demo/Library/Mobile Documents/com~apple~CloudDocs"
        file = next(path for path in sorted(drive.rglob("*")) if path.is_file() and "user.icloud" in os.listxattr(path))
        self.assertEqual(run(PROGRAMS / "cirrovane-demo-mac", "set", file, "isUploaded=false")[0], 0)

    def test_metrics_ofEveryState_arePromtoolsOwn(self):
        for name, text in self.texts.items():
            with self.subTest(name):
                self.assertEqual(promtool("check", "metrics", input=text), (0, ""))

    def test_metrics_everyFamily_isOfItsType(self):
        for mac in self.macs:
            found, _ = families(self.texts[mac["name"]])
            expected = dict(TYPES)
            if mac["state"] == "never_safe":
                del expected["cirrovane_last_safe_timestamp_seconds"]
            with self.subTest(mac["name"]):
                self.assertEqual(found, expected)

    def test_metrics_ofTheApplication_haveWhatItAloneKnows(self):
        text = self.of_the_application()
        self.assertEqual(promtool("check", "metrics", input=text), (0, ""))
        found, series = families(text)
        self.assertEqual(found, {**TYPES, **OF_THE_APPLICATION})
        self.assertEqual(len(series), MOST_SERIES)

    def test_metrics_nameNoFile(self):
        for text in self.texts.values():
            samples = "\n".join(line for line in text.splitlines() if not line.startswith("#"))
            self.assertNotRegex(samples, r"/|Users|demo|\.pages|\.numbers")

    def test_metrics_ofTheSameState_areTheSameText(self):
        def text(mac):
            status, said = run(PROGRAMS / "cirrovanectl", "--mac-root", mac["root"], "metrics")
            self.assertEqual(status, 0, said)
            return re.sub(r"(?m)^(cirrovane_last_(?:scan|coverage|safe)_timestamp_seconds) .*$", r"\1", said)

        for mac in self.macs[1:]:
            with self.subTest(mac["state"]):
                self.assertEqual(text(mac), text(mac))

    def test_rulesAndConfiguration_areValid(self):
        for kind, file in (("rules", "cirrovane-rules.yml"), ("config", "prometheus.yml")):
            status, said = promtool("check", kind, SHIPPED / file)
            self.assertEqual(status, 0, said)
            self.assertNotIn("duplicate", said)

    def test_rules_giveTheAlertsOfTheirTests(self):
        status, said = promtool("test", "rules", *sorted(SHIPPED.glob("*-test.yml")))
        self.assertEqual(status, 0, said)

    def test_rulesAndDashboard_askForWhatThereIs(self):
        rules = (SHIPPED / "cirrovane-rules.yml").read_text()
        recorded = set(re.findall(r"record: (\S+)", rules))
        known = recorded | TYPES.keys() | OF_THE_APPLICATION.keys()
        dashboard = (SHIPPED / "cirrovane-dashboard.json").read_text()
        expressions = [target["expr"] for panel in json.loads(dashboard)["panels"] for target in panel.get("targets", [])]
        asked = set(re.findall(r"\bcirrovane[_:][\w:]+", "\n".join([rules, *expressions])))
        self.assertLessEqual(asked, known)
        shown = set(re.findall(r"\bcirrovane_\w+", "\n".join(expressions)))
        self.assertEqual((TYPES.keys() | OF_THE_APPLICATION.keys()) - shown, set(), "the dashboard shows all but these")

    def test_guide_namesEveryFamily(self):
        guide = (TREE / "docs/fleet.md").read_text()
        rows = dict(re.findall(r"(?m)^\| `(cirrovane_\w+)[^`]*` \| (\w+) \|", guide))
        self.assertEqual(rows, {**TYPES, **OF_THE_APPLICATION})
        self.assertIn(f"{MOST_SERIES} series", guide)

    def test_jobs_runThePairOfCommands(self):
        with open(SHIPPED / "macos/com.quillmere.Cirrovane.metrics.plist", "rb") as file:
            job = plistlib.load(file)
        place = FLEET / "job.prom"
        mac = self.macs[1]
        wrapper = FLEET / "cirrovanectl"
        wrapper.write_text(f'#!/bin/sh\nexec "{PROGRAMS}/cirrovanectl" --mac-root "{mac["root"]}" "$@"\n')
        wrapper.chmod(0o755)
        self.assertEqual(run(*job["ProgramArguments"][:-2], wrapper, place), (0, ""))
        self.assertIn("cirrovane_safe_to_close 0\n", place.read_text())
        service = (SHIPPED / "linux/cirrovane-metrics.service").read_text()
        self.assertEqual(re.findall(r"ExecStart=-?/usr/bin/cirrovanectl (\w+)", service), ["refresh", "metrics"])


if __name__ == "__main__":
    unittest.main()
