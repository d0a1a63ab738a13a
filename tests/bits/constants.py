#!/usr/bin/env python3
"""The bits of every constant block and table of the library, against constants.txt: constants.py check|record LIBRARY.

Some constants decide so few result bits that no sample of arguments notices a change of their last place: the tail of
pi/2 in three parts, a coefficient far out in a series. A line of constants.txt is a block's name, its bytes' number and
a hash of them."""
import hashlib
import pathlib
import re
import subprocess
import sys

record = pathlib.Path(__file__).resolve().parent / "constants.txt"


def blocks(library):
    image = pathlib.Path(library).read_bytes()
    headers = subprocess.run(["readelf", "-lW", library], check=True, capture_output=True, text=True).stdout
    segments = [[int(x, 16) for x in m] for m in
                re.findall(r"LOAD +(0x\w+) (0x\w+) 0x\w+ (0x\w+)", headers)]
    symbols = subprocess.run(["nm", "-SC", "--defined-only", library], check=True, capture_output=True, text=True).stdout
    for address, size, name in sorted(set(re.findall(r"^(\w{16}) (\w{16}) [rRdDvV] (quevar::.+)$", symbols, re.M)), key=lambda s: s[2]):
        at, bytes_ = int(address, 16), int(size, 16)
        offset = next(o + at - v for o, v, length in segments if v <= at < v + length)
        yield f"{name} {bytes_} {hashlib.sha256(image[offset:offset + bytes_]).hexdigest()[:16]}"


lines = list(blocks(sys.argv[2]))
if sys.argv[1] == "record":
    record.write_text("\n".join(lines) + "\n")
    sys.exit()
expected = record.read_text().splitlines()
for line in sorted(set(lines) ^ set(expected)):
    print("not recorded:" if line in lines else "recorded:    ", line)
print(f"{len(lines)} constant blocks, {len(set(lines) - set(expected))} other than recorded")
sys.exit(lines != expected or not lines)
