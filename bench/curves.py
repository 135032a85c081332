# SPDX-License-Identifier: GPL-3.0-or-later
"""Draws how operations grow with the number of templates, from the samples of the part "curves".

Usage: curves.py RESULTS PICTURE, which is an SVG.
"""

import json
import pathlib
import statistics
import subprocess
import sys

CURVES = {"list": "sprig list, from its start to its end", "reload": "reload: from the save to the menu", "decode": "decoding",
          "menu": "building the menu"}
FORMAT = """set terminal svg size 720,480 background "white" font "sans,13"
set logscale xy
set xlabel "templates"
set ylabel "milliseconds"
set xtics format "%.0f"
set ytics format "%g"
set xrange [8:130000]
set key left top
set grid
set style line 100 lc "gray" dt 2
"""


def points(samples, curve):
    """The medians by the number of templates."""
    found = {int(name.rpartition("/")[2]): statistics.median(times) / 1e6 for name, times in samples.items()
             if name.startswith(f"curve/{curve}/")}
    return "".join(f"{count} {time}\n" for count, time in sorted(found.items())) + "e\n"


def main():
    samples = json.loads(pathlib.Path(sys.argv[1]).read_text())["samples"]
    lines = [f"'-' using 1:2 with linespoints lw 2 title '{title}'" for title in CURVES.values()]
    plot = ", ".join([*lines, "x/100 with lines ls 100 title 'ten times as many, ten times as long'"])
    commands = f"{FORMAT}set output {json.dumps(sys.argv[2])}\nplot {plot}\n" + "".join(points(samples, curve) for curve in CURVES)
    subprocess.run(["gnuplot"], input=commands, text=True, check=True)


main()
