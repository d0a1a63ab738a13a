#!/usr/bin/env python3
"""Applies faults of one line to the library's source and says which ones the record of result bits notices.

    faults.py [--count N] [--seed S] [--build DIR] [FILE...]

Each fault is made in a copy of one source file: the last bit of a constant or of a table's entry flipped, a fused step
made separate, a comparison made strict or the reverse, a term of a special mask removed, another tier's class exported.
The file is compiled as the build compiles it and linked into a library beside the other objects. The record of constants
and that of result bits, for the families that the file exports, look at it. Code that comes out the same is reported as
having no effect. Exit status: 1 if a fault survives that is not in EQUIVALENT."""
import argparse
import json
import os
import pathlib
import random
import re
import shlex
import subprocess
import sys
import tempfile

root = pathlib.Path(__file__).resolve().parent.parent

# Faults without an effect on any argument, and why: (file, the changed line as it stands after the fault).
EQUIVALENT = {}


def arguments_of_call(text, start):
    """The arguments of a call whose opening parenthesis is at start, and the index behind it."""
    depth, begin, arguments = 0, start + 1, []
    for i in range(start, len(text)):
        if text[i] in "([{":
            depth += 1
        elif text[i] in ")]}":
            depth -= 1
            if depth == 0:
                return [*arguments, text[begin:i]], i + 1
        elif text[i] == "," and depth == 1:
            arguments.append(text[begin:i])
            begin = i + 1
    return [], start + 1


def faults_of(text):
    """All faults of a text as (kind, start, end, replacement)."""
    comment = [False] * len(text)
    for m in re.finditer(r"//[^\n]*", text):
        for i in range(m.start(), m.end()):
            comment[i] = True
    found = []
    for m in re.finditer(r"0x([0-9A-F]{15}|[0-9A-F]{7})([0-9A-F])\b|0x([0-9A-F]{15}|[0-9A-F]{7})([0-9A-F])_f", text):
        digit = m.end(2) - 1 if m[2] else m.end(4) - 1
        found.append(("last bit", digit, digit + 1, format(int(text[digit], 16) ^ 1, "X")))
    for m in re.finditer(r"\bf(ma|nma|ms)(_unless_scalar)?\(", text):
        arguments, end = arguments_of_call(text, m.end() - 1)
        if len(arguments) != 3:
            continue
        a, b, c = (f"({x.strip()})" for x in arguments)
        separate = {"ma": f"(V({a}) * V({b}) + V({c}))", "nma": f"(V({c}) - V({a}) * V({b}))",
                    "ms": f"(V({a}) * V({b}) - V({c}))"}[m[1]]
        found.append(("unfused", m.start(), end, separate))
        if m[2]:
            found.append(("width 1 like the others", m.start(2), m.end(2), ""))
    for m in re.finditer(r" (<=|>=|<|>) (?=[a-zA-Z(])", text):
        if "template" in text[text.rfind("\n", 0, m.start()):m.start()]:
            continue
        found.append(("comparison", m.start(1), m.end(1), {"<": "<=", "<=": "<", ">": ">=", ">=": ">"}[m[1]]))
    for m in re.finditer(r"return flagged\(", text):
        arguments, _ = arguments_of_call(text, m.end() - 1)
        if len(arguments) == 2 and " | " in arguments[1]:
            start = text.index(arguments[1], m.end())
            found.append(("mask", start, start + len(arguments[1]), " " + arguments[1].split(" | ")[0].strip()))
    exports = list(re.finditer(r"QUEVAR_EXPORT\(\w+, f?, \w*, \w+, \w+, \w+, \w+, ([\w<>, ]+)\)", text))
    for m in exports:
        for other in exports:
            if other[1] != m[1]:
                found.append(("tier", m.start(1), m.end(1), other[1]))
                break
    return [f for f in found if not comment[f[1]]]


def disassembly(file):
    text = subprocess.run(["objdump", "-d", "-s", "-r", "--no-show-raw-insn", file], check=True, capture_output=True, text=True)
    return text.stdout.split("\n", 3)[-1]


class Laboratory:
    def __init__(self, build, folder):
        self.build, self.folder = build, pathlib.Path(folder)
        listing = subprocess.run(["ninja", "-C", build, "-t", "compdb"], check=True, capture_output=True, text=True).stdout
        commands = json.loads(listing)
        self.compile = {e["file"]: e for e in commands
                        if e["output"].startswith("CMakeFiles/quevar_objects") and e["output"].endswith(".o")}
        self.link = next(e for e in commands if e["output"] == "__quevar.so.3.7")

    def object_of(self, file, text, output):
        """Compiles text in the place of file; its headers are found where file lies."""
        entry = self.compile[str(file)] if str(file) in self.compile else self.compile[os.path.relpath(file, self.build)]
        copy = self.folder / file.name
        copy.write_text(text)
        words = [w for w in shlex.split(entry["command"]) if not w.endswith("ccache")]
        words[words.index("-o") + 1] = str(output)
        words[words.index("-c") + 1] = str(copy)
        words += [f"-I{file.parent}", "-w"]
        return subprocess.run(words, cwd=self.build, capture_output=True).returncode == 0, entry["output"]

    def library_with(self, place, replacement):
        words = shlex.split(self.link["command"].split("&&")[1])
        words = [str(replacement) if w == place else w for w in words]
        words[words.index("-o") + 1] = str(self.folder / "__quevar.so.3.7")
        subprocess.run(words, cwd=self.build, check=True, capture_output=True)

    def check(self, families):
        """None where the records hold, else what noticed."""
        constants = subprocess.run([sys.executable, str(root / "tests/bits/constants.py"), "check",
                                    str(self.folder / "__quevar.so.3.7")], capture_output=True)
        if constants.returncode:
            return "constants"
        environment = dict(os.environ, LD_LIBRARY_PATH=str(self.folder))
        run = subprocess.run([f"{self.build}/tests/quevar_bits", "check", *families], env=environment,
                             capture_output=True, text=True, timeout=600)
        return None if run.returncode == 0 else (run.stdout.splitlines() or ["crash"])[0]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--count", type=int, default=60)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--build", default=str(root / "build"))
    parser.add_argument("files", nargs="*")
    options = parser.parse_args()
    files = [pathlib.Path(f).resolve() for f in options.files] or sorted((root / "src").rglob("*.cpp"))

    candidates = []
    for file in files:
        text = file.read_text()
        families = [base + mark + tier
                    for base, mark, tier in re.findall(r"QUEVAR_EXPORT\((\w+), (f?), (\w*),", text) if "#" not in base]
        if families:
            candidates += [(file, text, families, fault) for fault in faults_of(text)]
    random.Random(options.seed).shuffle(candidates)

    killed = survived = same = invalid = 0
    with tempfile.TemporaryDirectory() as folder:
        laboratory = Laboratory(options.build, folder)
        original = {}
        for file, text, families, (kind, start, end, replacement) in candidates:
            if killed + survived >= options.count:
                break
            line = text.count("\n", 0, start) + 1
            changed = text[:start] + replacement + text[end:]
            begin = changed.rfind("\n", 0, start) + 1
            shown = changed[begin:changed.find("\n", start)].strip()
            output = pathlib.Path(folder) / "changed.o"
            compiled, place = laboratory.object_of(file, changed, output)
            if not compiled:
                invalid += 1
                continue
            if file not in original:
                laboratory.object_of(file, text, pathlib.Path(folder) / "original.o")
                original[file] = disassembly(pathlib.Path(folder) / "original.o")
            name = f"{file.relative_to(root)}:{line}: {kind}: {shown}"
            if disassembly(output) == original[file]:
                same += 1
                continue
            laboratory.library_with(place, output)
            noticed = laboratory.check(families)
            if noticed:
                killed += 1
                print(f"killed    {name}  ({noticed})", flush=True)
            elif (str(file.relative_to(root)), shown) in EQUIVALENT:
                print(f"no effect {name}  ({EQUIVALENT[str(file.relative_to(root)), shown]})", flush=True)
            else:
                survived += 1
                print(f"SURVIVED  {name}", flush=True)
    print(f"{killed} killed, {survived} survived; {same} changed no code, {invalid} did not compile")
    return survived > 0


sys.exit(main())
