#!/usr/bin/env python3
"""Compares what programs leave to a Mac with frameworks.txt: check_links.py BUILD_FOLDER

link.py let nothing else be left when it linked; the list may have changed since, and holds nothing besides.
"""

import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
sys.dont_write_bytecode = True
from link import known_symbols  # noqa: E402  the folder is known only now


def main() -> int:
    reports = sorted(pathlib.Path(sys.argv[1], "bin").rglob("*.unresolved"))
    if not any(report.name == "cirrovanectl.unresolved" for report in reports):
        print("cirrovanectl was not linked", file=sys.stderr)
        return 1
    left = {name for report in reports for name in report.read_text(encoding="utf-8").split()}
    known = set(known_symbols())
    for name in sorted(known - left):
        print(f"frameworks.txt: nothing needs {name}", file=sys.stderr)
    for name in sorted(left - known):
        print(f"frameworks.txt: {name} is missing", file=sys.stderr)
    print(f"{len(reports)} programs linked; {len(left)} symbols are left to a Mac's frameworks and runtimes")
    return 1 if known != left else 0


if __name__ == "__main__":
    sys.exit(main())
