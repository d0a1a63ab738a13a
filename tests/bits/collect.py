#!/usr/bin/env python3
"""Writes points.txt and estimates.txt for quevar_bits, witnesses.txt for quevar_accuracy: collect.py LIBRARY.

points.txt: for each base, as its families are named, the patterns that stand in its source and in the headers that it
includes from its folder. estimates.txt: the families whose members use a reciprocal estimate of the processor, by the
disassembly of the library. witnesses.txt: the arguments that comments name as the worst known."""
import pathlib
import re
import struct
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


def worst_arguments(text):
    """What the comments that begin with "Worst" name, in order: patterns of arguments and whole numbers."""
    for comment in re.findall(r"//[^\n]*\bWorst\b(?:[^\n]*\n *//)*[^\n]*", text):
        comment = re.sub(r"\n *//", " ", comment[comment.index("Worst"):])
        comment = re.sub(r"\bgives?\s+0x\w+(,\s+wanted\s+[.\w]+)?|\(.*?\)", "", comment)
        comment = re.sub(r"0x1\.\w+p[-+]\d+",
                         lambda m: "0x" + struct.pack(">d", float.fromhex(m[0])).hex().upper(), comment)
        comment = re.sub(r"-?\d+\.\d+(e[-+]?\d+)?|-?\d+e[-+]?\d+", "", comment)
        yield re.findall(r"0x(?:[0-9A-F]{16}|[0-9A-F]{8})\b|(?<![\w^-])-?\d+\b", comment)


def witnesses():
    found = {}
    for path in sorted(source.rglob("*.cpp")):
        text = text_with_headers(path, set())
        for base, mark, shape in set(re.findall(r"QUEVAR_EXPORT\((\w+), (\w*), \w*, (\w+),", text)):
            digits = 8 if mark else 16
            first, whole = rf"0x\w{{{digits}}}", r"-?\d+"
            form = {"binary": [first, first], "with_int": [first, whole]}.get(shape, [first])
            for words in worst_arguments(text):
                while words:
                    if all(re.fullmatch(f, w) for f, w in zip(form, words)) and len(words) >= len(form):
                        as_bits = [w if w.startswith("0x") else f"0x{int(w) & 0xFFFFFFFF:08X}" for w in words]
                        found.setdefault(base + mark, {})[" ".join(as_bits[:len(form)])] = None
                        words = words[len(form):]
                    else:
                        words = words[1:]
    with open(here / "witnesses.txt", "w") as file:
        for base, lines in sorted(found.items()):
            for line in lines:
                file.write(f"{base} {line}\n")


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


if __name__ == "__main__":
    points()
    witnesses()
    estimates(sys.argv[1])
