#!/usr/bin/env python3
"""The same picture as HP-GL and as SVG, both by a program of others: the viewer must show of the one what the other shows.

usage: pictures_test.py KELHPGL

Where on the page and how large is each format's own affair, so the ink of both is laid on each other by its bounds.
"""
import os
import pathlib
import subprocess
import sys
import tempfile

import numpy

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "pictures"))
import ink  # pylint: disable=wrong-import-position
import picture  # pylint: disable=wrong-import-position

PROGRAM = str(pathlib.Path(sys.argv[1]).resolve())
SIDE = 700  # pixels of the pictures, and of the square that both are stretched to
NEAR = 4  # of them, on both axes
MOST_UNMATCHED = 0.005  # of the ink
PALE = 225  # lighter pixels are the edges of thin lines
POINTS = "0 0\n1 3\n2 1\n3 4\n4 2\n5 2.5\n"
CURVE = "set samples 300; unset key; unset tics; set margins 2,2,2,2; plot sin(x) lt 1 dt 1, cos(x)*x/10 lt 1 dt 1"
SURFACE = "set isosamples 25; set hidden3d; unset key; unset tics; splot sin(x)*cos(y) lt 1"


def graph(*options):
    return ["graph", "-T", "{format}", "-F", "HersheySans", *options]


def gnuplot(terminal, script):
    terminals = {"hpgl": terminal, "svg": "svg size 1000,{}".format(720 if terminal == "hpgl" else 700)}
    return lambda kind: ["gnuplot", "-e", f"set terminal {terminals[kind]}; {script}"]


def plotutils(*command):
    return lambda kind: [word.replace("{format}", kind) for word in command]


# name, command for a format, its input, what else stands in its environment
ROWS = [
    ("curve", gnuplot("hpgl", CURVE), "", {}),
    ("surface", gnuplot("hpgl", SURFACE), "", {}),
    *[(f"{name}, version {version}", command, POINTS, {"HPGL_VERSION": version})
      for version in ("1", "1.5", "2")
      for name, command in [
          ("lines", plotutils(*graph("-L", "Title", "-X", "time", "-Y", "size"))),
          ("turned", plotutils(*graph("--rotation", "90"))),
          ("symbols", plotutils(*graph("-m", "0", "-S", "4", "0.05"))),
          ("filled symbols", plotutils(*graph("-m", "0", "-S", "16", "0.06"))),
          ("dotted", plotutils(*graph("-g", "3", "-m", "1", "--reposition", "0.2", "0.1", "0.6"))),
          ("letters", plotutils("plotfont", "-T", "{format}", "HersheySerif-Italic")),
          ("signs", plotutils("plotfont", "-T", "{format}", "HersheyEUC")),
      ]],
    # Version 1 fills nothing, and 1.5 hatches.
    ("filled", plotutils(*graph("-q", "0.3")), POINTS, {"HPGL_VERSION": "2"}),
]


def inked(file):
    """Where a picture has ink, in a square of SIDE that its bounds are stretched to."""
    rows, columns = numpy.nonzero(picture.channels(picture.read(file)).min(axis=2) < PALE)
    square = numpy.zeros((SIDE + 1, SIDE + 1), bool)
    square[stretched(rows), stretched(columns)] = True
    return square


def stretched(places):
    return numpy.rint((places - places.min()) * SIDE / (places.max() - places.min())).astype(int)


def unmatched(one, other):
    """The share of the ink of one picture that has none near it in the other."""
    return (one & ~ink.near(other, NEAR)).sum() / one.sum()


def run(command, text="", environment=None):
    return subprocess.run([str(word) for word in command], input=text.encode(), capture_output=True, check=True,
                          env={**os.environ, **(environment or {})}).stdout


def check(name, command, text, environment, folder):
    plot, drawing, ours, theirs = (folder / file for file in ("plot.plt", "drawing.svg", "ours.png", "theirs.png"))
    plot.write_bytes(run(command("hpgl"), text, environment))
    drawing.write_bytes(run(command("svg"), text))
    run([PROGRAM, "--picture", ours, "--size", f"{SIDE}x{SIDE}", plot])
    run(["rsvg-convert", "-w", SIDE, "-h", SIDE, "-b", "white", "-o", theirs, drawing])
    one, other = inked(ours), inked(theirs)
    shares = unmatched(one, other), unmatched(other, one)
    if max(shares) <= MOST_UNMATCHED:
        return True
    print(f"FAILED {name}: {shares[0]:.2%} of ours and {shares[1]:.2%} of theirs")
    return False


def main():
    chosen = sys.argv[2:]
    with tempfile.TemporaryDirectory() as folder:
        results = [check(*row, pathlib.Path(folder)) for row in ROWS if not chosen or row[0] in chosen]
    print(f"{results.count(True)} passed, {results.count(False)} failed")
    return 0 if all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
