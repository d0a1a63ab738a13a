#!/usr/bin/env python3
"""Writes points.txt and estimates.txt, which quevar_bits reads: collect.py LIBRARY.

points.txt: for each base, as its families are named, the patterns that stand in its source and in the headers that it
includes from its folder. estimates.txt: the families whose members use a reciprocal estimate of the processor, by the
disassembly of the library."""
import pathlib
import re
import subprocess
import sys

here = pathlib.Path(__file__).resolve().parent
source = here.parent.parent / "src"


def text_with_headers(path, seen):
    if path in seen or "frame" in path.parts:
        return ""
    seen.add(path)
    text = path.read_text()
    for name in re.findall(r'#include "([^"]+\.hpp)"', text):
        for folder in (path.parent, source):
            if (folder / name).exists():
                text += text_with_headers(folder / name, seen)
                break
    return text


def points():
    by_base = {}
    for path in sorted(source.rglob("*.cpp")):
        text = text_with_headers(path, set())
        patterns = list(dict.fromkeys(re.findall(r"\b0x(?:[0-9A-F]{16}|[0-9A-F]{8})(?=\b|u|_f)", text)))
        for base, mark in re.findall(r"QUEVAR_EXPORT\((\w+), (\w*),", text):
            by_base.setdefault(base + mark, dict.fromkeys(patterns)).update(dict.fromkeys(patterns))
    with open(here / "points.txt", "w") as file:
        for base, patterns in sorted(by_base.items()):
            file.write(" ".join([base, *patterns]) + "\n")


def estimates(library):
    listing = subprocess.run(["objdump", "-d", "--no-show-raw-insn", library], check=True, capture_output=True, text=True)
    uses, calls, function = set(), {}, None
    for line in listing.stdout.splitlines():
        if match := re.match(r"[0-9a-f]+ <(\w+)>:", line):
            function = match[1]
        elif re.search(r"\tv(rcp|rsqrt)[ps]s", line):
            uses.add(function)
        elif match := re.search(r"\t(?:call|j\w+) +[0-9a-f]+ <(\w+)>", line):
            calls.setdefault(function, set()).add(match[1])
    while more := {f for f, callees in calls.items() if callees & uses} - uses:
        uses |= more
    members = (re.fullmatch(r"__quevar_(\w+?)(?:1|2|3|4|8|16)((?:_native|_half|_rm)?)", f) for f in uses)
    families = {member[1] + member[2] for member in members if member}
    with open(here / "estimates.txt", "w") as file:
        for name in sorted(families):
            file.write(name + "\n")


points()
estimates(sys.argv[1])
