#!/usr/bin/env python3
"""Checks the sources for macOS without a Mac: type_check.py [--shared] [--overlay FOLDER] [--sdk FOLDER] [FILE...]

Compiles each file for an Apple processor and the oldest macOS that is supported, against our own declarations of
Apple's interfaces in sdk/, with warnings as errors, and then runs Clang's static analyser on the Objective-C++ ones. So
a change of an interface of ours cannot leave the adapter behind, and neither can a slip in ownership or a call that is
newer than that macOS.

The C and C++ libraries are this machine's. They are read first, as the Linux that they were written for; only then
does the compiler pass for a Mac's. Without FILEs: all sources below platform/ that a Mac builds; with --shared those
that both systems share instead, which takes minutes. A file in the overlay folder takes the place of the tree's file of
the same path.
"""

import argparse
import concurrent.futures
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
COMPILER = "clang++-16"
TARGET = "arm64-apple-macos13"
# What a Mac builds. The sources of the folders below use no header that the prelude could not read first.
PATTERNS = ("platform/*.cpp", "platform/posix/*.cpp", "platform/posix/walk/*.cpp", "platform/macos/*.cpp",
            "platform/macos/plain/*.cpp", "platform/macos/*.mm")
# What it builds besides, with libraries that take minutes to read.
SHARED_PATTERNS = ("base/*.cpp", "core/*.cpp", "diagnostics/*.cpp", "stores/*.cpp", "coordinator/*.cpp", "evidence/*.cpp", "cli/*.cpp")
ANGLED = re.compile(r"^\s*#\s*(?:include|import)\s*<([^>]+)>", re.MULTILINE)
WARNINGS = ("-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor "
            "-Woverloaded-virtual -Woverriding-method-mismatch -Wimplicit-fallthrough -Wcast-align -Wundef "
            "-Wundeclared-selector -Wunguarded-availability -Wunguarded-availability-new "
            "-Wnullable-to-nonnull-conversion -Werror").split()
# The checkers by their whole groups, those for ownership in Foundation and Core Foundation among them.
ANALYSIS = ("-Xclang -analyzer-output=text -Xclang -analyzer-werror "
            "-Xclang -analyzer-checker=core,cplusplus,osx,nullability,optin.osx").split()


def folder_of_libcxx() -> str:
    return "/usr/lib/llvm-16/include/c++/v1"


def system_folders() -> list:
    machine = subprocess.run(["gcc", "-dumpmachine"], capture_output=True, text=True, check=False).stdout.strip()
    resource = subprocess.run([COMPILER, "-print-resource-dir"], capture_output=True, text=True,
                              check=True).stdout.strip()
    folders = [folder_of_libcxx(), f"{resource}/include", f"/usr/include/{machine or 'x86_64-linux-gnu'}",
               "/usr/include"]
    return [part for folder in folders for part in ("-isystem", folder)]


def prelude_text(tree: pathlib.Path, sdk: pathlib.Path, is_shared: bool) -> str:
    """Reads every library header that the sources use as Linux, and then makes the compiler pass for a Mac's."""
    headers = set()
    for pattern in (*PATTERNS, *(SHARED_PATTERNS if is_shared else ())):
        for path in [*tree.glob(pattern), *tree.glob(str(pathlib.PurePath(pattern).with_suffix(".h")))]:
            headers.update(ANGLED.findall(path.read_text(encoding="utf-8")))
    ours = {str(path.relative_to(sdk)) for path in sdk.rglob("*.h")}
    shadowing = {name for name in ours if any((pathlib.Path(folder) / name).exists()
                                              for folder in ("/usr/include", "/usr/include/x86_64-linux-gnu"))}
    included = sorted((headers - ours) | (headers & shadowing))
    lines = ["#undef __nonnull", *(f"#include <{header}>" for header in included)]
    lines += [f"#undef {name}" for name in ("__linux__", "__linux", "linux", "__gnu_linux__", "__ELF__", "__x86_64__",
                                            "__nonnull", "__nullable")]
    lines += ["#define __APPLE__ 1", "#define __MACH__ 1", "#define __nonnull _Nonnull", "#define __nullable _Nullable"]
    return "\n".join(lines) + "\n"


def flags_for(language: str, arguments) -> list:
    """What decides how a source is read, and so is the same for the prelude that goes before it."""
    flags = ["-x", language, "-target", TARGET, "-std=c++20", "-fblocks", "-U__APPLE__", "-U__MACH__", "-D__linux__=1",
             "-D__gnu_linux__=1", "-D__ELF__=1", "-D__x86_64__=1", "-D_GNU_SOURCE", "-nostdinc++",
             # Before the libraries, whose headers some of these add to.
             "-isystem", str(arguments.sdk), *system_folders()]
    return flags + (["-fobjc-arc"] if language.startswith("objective-c++") else [])


def run(command: list) -> str:
    """What a command says; the fact itself when it fails in silence."""
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    if result.returncode != 0 and not result.stderr.strip():
        return f"{command[0]} ended with {result.returncode}: {' '.join(command)}\n"
    return result.stderr


def check(source: pathlib.Path, arguments, preludes: dict) -> str:
    """What the compiler and the analyser say of one source; empty when they are content."""
    language = language_of(source)
    command = [COMPILER, *flags_for(language, arguments), "-include-pch", str(preludes[language])]
    for folder in (arguments.overlay, arguments.tree):
        if folder is not None:
            command += ["-iquote", str(folder)]
    command += [*WARNINGS, str(source)]
    findings = run([*command, "-fsyntax-only"])
    if not findings and source.suffix == ".mm":
        findings = run([*command, "--analyze", *ANALYSIS])
    return findings


def language_of(source: pathlib.Path) -> str:
    return "objective-c++" if source.suffix == ".mm" else "c++"


def make_preludes(folder: pathlib.Path, languages, arguments) -> dict:
    """The prelude for each language, read once."""
    text = folder / "prelude.h"
    text.write_text(prelude_text(arguments.tree, arguments.sdk, arguments.shared), encoding="utf-8")
    preludes = {}
    for language in languages:
        preludes[language] = folder / f"{language}.pch"
        findings = run([COMPILER, *flags_for(f"{language}-header", arguments), str(text), "-o",
                        str(preludes[language])])
        if findings:
            sys.exit(findings)
    return preludes


def sources_of(arguments) -> list:
    if arguments.files:
        names = arguments.files
    else:
        names = sorted(str(path.relative_to(arguments.tree)) for pattern in (SHARED_PATTERNS if arguments.shared else PATTERNS)
                       for path in arguments.tree.glob(pattern))
    in_overlay = arguments.overlay or arguments.tree
    return [in_overlay / name if (in_overlay / name).exists() else arguments.tree / name for name in names]


def main() -> int:
    parser = argparse.ArgumentParser(description="Checks the sources for macOS without a Mac.")
    parser.add_argument("--tree", type=pathlib.Path, default=HERE.parent.parent)
    parser.add_argument("--shared", action="store_true")
    parser.add_argument("--overlay", type=pathlib.Path)
    parser.add_argument("--sdk", type=pathlib.Path, default=HERE / "sdk")
    parser.add_argument("files", nargs="*")
    arguments = parser.parse_args()
    if shutil.which(COMPILER) is None or not pathlib.Path(folder_of_libcxx()).exists():
        print("clang-16 and libc++-16-dev are needed: scripts/install-packages test", file=sys.stderr)
        return 1
    sources = sources_of(arguments)
    with tempfile.TemporaryDirectory() as folder:
        preludes = make_preludes(pathlib.Path(folder), set(map(language_of, sources)), arguments)
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            findings = list(pool.map(lambda source: check(source, arguments, preludes), sources))
    found = [text for text in findings if text]
    print("".join(found), end="")
    print(f"{len(sources)} files, {len(found)} with findings")
    return 1 if found or not sources else 0


if __name__ == "__main__":
    sys.exit(main())
