#!/usr/bin/env python3
"""Plots as other programs write them: gnuplot's and plotutils' HP-GL, and our own examples, through hpgldump.

usage: programs_test.py HPGLDUMP

Each must be drawn (so many output calls at least), in the same way whatever the chunks; with a plotter in between, too.
"""
import os
import pathlib
import subprocess
import sys
import tempfile

PROGRAM = str(pathlib.Path(sys.argv[1]).resolve())
EXAMPLES = pathlib.Path(__file__).resolve().parents[2] / "examples"
GNUPLOT = "set terminal {}; set output '{}'; set title 'Title'; set samples 400; {}"
SINE = "plot sin(x) with lines, cos(x)*exp(-x*x/20) with linespoints"
SURFACE = "set isosamples 30; set hidden3d; splot sin(x)*cos(y)"
POINTS = "0 0\n1 3\n2 1\n3 4\n4 2\n"

# name, command ({} is the plot to write, or it goes to standard output), its input, output calls at least
ROWS = [
    ("gnuplot hpgl", ["gnuplot", "-e", GNUPLOT.format("hpgl", "{}", SINE)], "", 700),
    ("gnuplot hpgl surface", ["gnuplot", "-e", GNUPLOT.format("hpgl", "{}", SURFACE)], "", 700),
    ("gnuplot pcl5", ["gnuplot", "-e", GNUPLOT.format("pcl5", "{}", SINE)], "", 50),
    ("graph hpgl 2", ["graph", "-T", "hpgl", "-L", "Label"], POINTS, 30),
    ("graph hpgl 1", ["graph", "-T", "hpgl", "--pen-colors", "1=red", "-S", "4"], POINTS, 30),
    ("plotfont hpgl", ["plotfont", "-T", "hpgl", "HersheySerif"], "", 1000),
]


def write_plot(command, text, plot):
    command = [word.replace("{}", str(plot)) for word in command]
    environment = {**os.environ, "HPGL_VERSION": "2"}
    done = subprocess.run(command, input=text.encode(), capture_output=True, check=True, env=environment)
    if done.stdout:
        plot.write_bytes(done.stdout)


def dump(plot, *options):
    return subprocess.run([PROGRAM, *options, str(plot)], capture_output=True, check=True, timeout=300).stdout


def check(name, plot, at_least, *options):
    calls = dump(plot, "--calls", *options)
    same = all(calls == dump(plot, "--calls", "--chunk", chunk, *options) for chunk in ("1", "250", "8192"))
    count = calls.count(b"\n")
    if same and count >= at_least:
        return True
    print(f"FAILED {name} {' '.join(options)}: {count} calls" + ("" if same else ", and chunks differ"))
    return False


def check_both(name, plot, at_least):
    return check(name, plot, at_least) and check(name, plot, at_least, "--plotted")


def main():
    with tempfile.TemporaryDirectory() as folder:
        results = []
        for number, (name, command, text, at_least) in enumerate(ROWS):
            plot = pathlib.Path(folder) / f"{number}.plt"
            write_plot(command, text, plot)
            results.append(check_both(name, plot, at_least))
    for plot in sorted(EXAMPLES.glob("*.plt")):
        results.append(check_both(plot.name, plot, 1000))
    print(f"{results.count(True)} passed, {results.count(False)} failed")
    return 0 if all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
