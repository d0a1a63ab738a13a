#!/usr/bin/env python3
"""Draws the medians of a benchmark run as an SVG: nanoseconds per lane at one ymm, a row for each family.

quevar_bench --benchmark_out=run.json --benchmark_filter='/(quevar|sleef|libm)'
plot.py run.json > throughput.svg
"""
import json
import math
import sys

ROW, LEFT, RIGHT, TOP = 18, 170, 620, 50
SERIES = {"quevar": "#c0392b", "sleef": "#2c6fbb", "libm": "#7f8c8d"}
LABELS = {"quevar": "quevar", "sleef": "SLEEF", "libm": "C library"}


def medians(path):
    """{family: {width: {what: nanoseconds per lane}}}, in the order of the run."""
    table = {}
    with open(path) as file:
        for run in json.load(file)["benchmarks"]:
            if run.get("aggregate_name") == "median":
                family, width, what = run["run_name"].split("/")
                table.setdefault(family, {}).setdefault(int(width), {})[what] = run["per_lane"] * 1e9
    return table


def rows(table):
    for family, widths in sorted(table.items()):
        vectors = sorted(width for width in widths if "quevar" in widths[width])
        if len(vectors) == 3:  # xmm, ymm, two ymm
            yield family, {**widths.get(1, {}), **widths[vectors[1]]}


def svg(rows):
    times = [row[what] for _, row in rows for what in SERIES if what in row]
    low, high = math.floor(math.log2(min(times))), math.ceil(math.log2(max(times)))
    bottom = TOP + ROW * len(rows)

    def x(time):
        return LEFT + (RIGHT - LEFT) * (math.log2(time) - low) / (high - low)

    yield (f'<svg xmlns="http://www.w3.org/2000/svg" width="{RIGHT + 30}" height="{bottom + 30}" '
           'font-family="sans-serif" font-size="11">')
    yield '<rect width="100%" height="100%" fill="white"/>'
    for place, (what, colour) in enumerate(SERIES.items()):
        yield f'<circle cx="{LEFT + 90 * place}" cy="16" r="4" fill="{colour}"/>'
        yield f'<text x="{LEFT + 90 * place + 8}" y="20">{LABELS[what]}</text>'
    yield f'<text x="{LEFT + 290}" y="20">nanoseconds per lane, one ymm</text>'
    for power in range(low, high + 1):
        at = x(2.0**power)
        yield f'<line x1="{at:.1f}" x2="{at:.1f}" y1="{TOP - 8}" y2="{bottom}" stroke="#ddd"/>'
        yield f'<text x="{at:.1f}" y="{TOP - 12}" text-anchor="middle">{2.0**power:g}</text>'
    for line, (family, row) in enumerate(rows):
        y = TOP + ROW * line + ROW // 2
        yield f'<text x="{LEFT - 10}" y="{y + 4}" text-anchor="end">{family}</text>'
        for what, colour in SERIES.items():
            if what in row:
                yield f'<circle cx="{x(row[what]):.1f}" cy="{y}" r="4" fill="{colour}"/>'
    yield "</svg>"


if len(sys.argv) != 2:
    sys.exit(__doc__)
print("\n".join(svg(list(rows(medians(sys.argv[1]))))))
