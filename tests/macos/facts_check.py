#!/usr/bin/env python3
"""Compares our declarations of Apple's classes with facts.tsv: facts_check.py [--sdk FOLDER] [--print]

Each declared method and property has a row, each row is declared, and the two agree in the selector, in what may be nil
and in the first macOS that has it. A declaration says since when only where that matters for a guard; the row knows
always. --print writes the declarations as rows, for whoever adds one.
"""

import argparse
import pathlib
import re
import sys

HERE = pathlib.Path(__file__).resolve().parent
OLDEST = (13, 0)
# And what is only announced.
COMMENT = re.compile(r"//[^\n]*|^@protocol [\w, ]+;|^@class [^;]*;", re.MULTILINE)
BLOCK = re.compile(r"(?:SDK_SINCE\(([\d.]+)\)\s*)?(?<!\w)@(interface|protocol)\s+(\w+)(.*?)@end", re.DOTALL)
SINCE = re.compile(r"SDK_SINCE\(([\d.]+)\)")
MEMBER = re.compile(r"(?:@property.*?|^\s*[-+]\s*\(.*?);", re.DOTALL | re.MULTILINE)
PROPERTY = re.compile(r"@property(?:\(([^)]*)\))?\s*(.*?)(\w+)\s*$", re.DOTALL)
PART = re.compile(r"(\w+):\s*")

def inside(text: str, start: int) -> int:
    """The place behind the parenthesis that opens at the start."""
    depth = 0
    for place in range(start, len(text)):
        depth += {"(": 1, ")": -1}.get(text[place], 0)
        if depth == 0:
            return place + 1
    raise ValueError(text)


def nullability(kind: str) -> str:
    """Of one type as it is written: what is not marked is never nil, since the headers assume so."""
    outer = re.sub(r"\(\^\s*(_Nullable)?\s*\).*", r"^ \1", kind.strip(), flags=re.DOTALL)
    if re.search(r"\b(?:nullable|null_resettable)\b|(?:_Nullable|\[_Nullable\])\s*$", outer):
        return "nullable"
    is_object = "*" in outer or "^" in outer or re.search(r"\bid\b|\b(?:instancetype|Class|ObjectType|KeyType)\b|Ref\b",
                                                        outer)
    is_object = is_object or re.search(r"\b(?:NS|UN)\w*(?:Name|Key|Domain)\b", outer)
    return "nonnull" if is_object else "value"


def method_facts(text: str) -> tuple:
    """The selector with its sign; what may be nil of the result and of each argument."""
    text = text.strip()
    open_at = text.index("(")
    end = inside(text, open_at)
    kinds, rest, selector = [text[open_at + 1:end - 1]], text[end:], ""
    while (part := PART.search(rest)) is not None:
        selector += part.group(1) + ":"
        end = inside(rest, part.end())
        kinds.append(rest[part.end() + 1:end - 1])
        rest = rest[end:].lstrip()
        rest = re.sub(r"^\w+", "", rest, count=1)
    if not selector:
        selector = re.match(r"\s*(\w+)", rest).group(1)
    return text[0] + selector, " ".join(nullability(kind) for kind in kinds)


def property_facts(text: str) -> tuple:
    attributes, kind, name = PROPERTY.match(SINCE.sub("", text).rstrip("; \n")).groups()
    attributes = attributes or ""
    sign = "+" if re.search(r"\bclass\b", attributes) else "-"
    marked = "nullable " if re.search(r"\bnullable\b|null_resettable", attributes) else ""
    getter = re.search(r"getter\s*=\s*(\w+)", attributes)
    return sign + (getter.group(1) if getter else name), nullability(marked + kind)


def declared(sdk: pathlib.Path) -> dict:
    """What may be nil and since when, for each class and selector of the headers."""
    facts = {}
    for header in sorted(sdk.rglob("*.h")):
        text = COMMENT.sub("", header.read_text(encoding="utf-8"))
        for since, _, owner, body in BLOCK.findall(text):
            for member in MEMBER.findall(body):
                own = SINCE.search(member)
                selector, nullable = (property_facts if "@property" in member else method_facts)(SINCE.sub("", member))
                facts[owner, selector] = nullable, own.group(1) if own else since
    return facts


def version(text: str) -> tuple:
    return tuple(map(int, text.split(".")))


def rows(path: pathlib.Path) -> dict:
    facts = {}
    for line in path.read_text(encoding="utf-8").splitlines():
        if line and not line.startswith("#"):
            owner, selector, nullable, since, source = line.split("\t")
            if (owner, selector) in facts or not source:
                raise ValueError(line)
            facts[owner, selector] = nullable, since
    return facts


def differences(ours: dict, known: dict) -> list:
    found = [f"{owner} {selector}: declared, but not in the table" for owner, selector in ours.keys() - known.keys()]
    found += [f"{owner} {selector}: in the table, but not declared" for owner, selector in known.keys() - ours.keys()]
    for place in ours.keys() & known.keys():
        (nullable, since), (known_nullable, known_since) = ours[place], known[place]
        name = " ".join(place)
        if nullable != known_nullable:
            found.append(f"{name}: declared {nullable}, but is {known_nullable}")
        if since != known_since and (since or version(known_since) > OLDEST):
            found.append(f"{name}: declared since {since or 'ever'}, but is there since {known_since}")
    return sorted(found)


def main() -> int:
    parser = argparse.ArgumentParser(description="Compares our declarations with the table of facts.")
    parser.add_argument("--sdk", type=pathlib.Path, default=HERE / "sdk")
    parser.add_argument("--print", action="store_true")
    arguments = parser.parse_args()
    ours = declared(arguments.sdk)
    if arguments.print:
        for (owner, selector), (nullable, since) in sorted(ours.items()):
            print(owner, selector, nullable, since, sep="\t")
        return 0
    found = differences(ours, rows(HERE / "facts.tsv"))
    print("\n".join([*found, f"{len(ours)} declarations, {len(found)} differences"]))
    return 1 if found or not ours else 0


if __name__ == "__main__":
    sys.exit(main())
