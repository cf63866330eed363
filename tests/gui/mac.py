"""Demo Macs: folders that stand for a Mac's disk."""

import json
import shutil
import subprocess


class DemoMac:
    """A demo Mac in a folder of its own, which has to be on a file system with extended attributes."""

    def __init__(self, programs, root):
        self._programs, self.root = programs, root
        shutil.rmtree(root, ignore_errors=True)
        root.parent.mkdir(parents=True, exist_ok=True)
        self._demo("create", root)
        self.home = root / "Users/demo"
        self.stores = self.home / "Library/Application Support/com.quillmere.Cirrovane"

    def _demo(self, *arguments):
        command = [self._programs / "cirrovane-demo-mac", *arguments]
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        assert done.returncode == 0, f"{command} failed: {done.stdout}"

    def settle(self):
        """All files are uploaded and local: the next scan finds it safe."""
        self._demo("settle", self.root)

    def unsettle(self):
        """The troubles that it was made with are back: the next scan finds it unsafe."""
        self._demo("unsettle", self.root)

    def cloud_files(self):
        """Of the watched folders in iCloud Drive, in the order of their paths."""
        drive = self.root / "Users/demo/Library/Mobile Documents/com~apple~CloudDocs"
        shown = (path for path in drive.rglob("*") if path.is_file() and ".pages" not in str(path))
        return sorted(path for path in shown if not any(part.startswith(".") for part in path.relative_to(drive).parts))

    def set_file(self, path, **state):
        self._demo("set", path, *(f"{key}={value}" for key, value in state.items()))

    def upload(self):
        """Sends everything that is pending, at a thousand times the pace of a slow line."""
        self._demo("upload", "--rate", "5000000", self.root)

    def set_fact(self, key, value):
        self._demo("fact", self.root, key, json.dumps(value))

    def set_process(self, name, runs):
        self._demo("process", self.root, name, "on" if runs else "off")

    def set_network(self, is_connected):
        self._demo("network", self.root, "on" if is_connected else "off")

    def replace_command(self, path, script):
        """Puts a shell script in the place of one of the Mac's commands."""
        command = self.root / path
        command.unlink(missing_ok=True)
        command.write_text("#!/bin/sh\n" + script)
        command.chmod(0o755)

    def ask(self, *arguments):
        """What the command-line tool answers of this Mac."""
        command = [self._programs / "cirrovanectl", "--mac-root", self.root, *arguments, "--json"]
        return json.loads(subprocess.run(command, stdout=subprocess.PIPE, check=False).stdout)

    def home_of_the_host(self):
        """The environment of a program that takes this Mac's home folder for its user's on the host."""
        home = self.root / "Users/demo"
        library = home / "Library"
        return {
            "HOME": str(home),
            "XDG_DATA_HOME": str(library / "Application Support"),
            "XDG_CONFIG_HOME": str(library / "Preferences"),
        }

    def remove(self):
        shutil.rmtree(self.root, ignore_errors=True)

    @property
    def _defaults_file(self):
        return self.home / "Library/Preferences/com.quillmere.Cirrovane.json"

    @property
    def defaults(self):
        """The user's settings, and what the application remembers beside them."""
        return json.loads(self._defaults_file.read_text()) if self._defaults_file.exists() else {}

    def set_defaults(self, **values):
        """Only while no application runs on this Mac."""
        self._defaults_file.parent.mkdir(parents=True, exist_ok=True)
        self._defaults_file.write_text(json.dumps({**self.defaults, **values}))

    @property
    def history(self):
        """The scans so far, newest first."""
        file = self.stores / "history.json"
        return json.loads(file.read_text()) if file.exists() else []

    @property
    def watchlist(self):
        return json.loads((self.stores / "watchlist.json").read_text())
