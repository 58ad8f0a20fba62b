#!/usr/bin/env python3
"""Runs hpgldump on one golden plot, or on all, and compares with the expected text beside it.

usage: run.py HPGLDUMP [--update] [PLOT...]

NAME.plt is the plot, NAME.args the options (a line, if any), NAME.dump what hpgldump prints with all sections. Without
options of its own a plot must also print the same when it comes in chunks of 1, 2 and 7 bytes. --update writes the
expected text anew, and the run fails all the same: look at what changed, then run again.
"""
import difflib
import pathlib
import subprocess
import sys

SECTIONS = ["--hex", "--picture", "--calls", "--records"]
CHUNKS = ["1", "2", "7"]


def dump(program, plot, options):
    done = subprocess.run([program, *SECTIONS, *options, plot.name], cwd=plot.parent, capture_output=True, check=False)
    return done.stdout + done.stderr + (b"" if done.returncode == 0 else b"exit %d\n" % done.returncode)


def runs_of(plot):
    options = plot.with_suffix(".args")
    if options.exists():
        return [options.read_text().split()]
    return [[]] + [["--chunk", chunk] for chunk in CHUNKS]


def check(program, plot, update):
    expected_file = plot.with_suffix(".dump")
    runs = runs_of(plot)
    if update:
        expected_file.write_bytes(dump(program, plot, runs[0]))
        print(f"{plot}: written anew")
        return False
    expected = expected_file.read_bytes()
    for options in runs:
        actual = dump(program, plot, options)
        if actual != expected:
            lines = [text.decode("latin-1").splitlines() for text in (expected, actual)]
            print("\n".join(difflib.unified_diff(*lines, f"{plot} expected", f"actual {options}", lineterm="")))
            return False
    return True


def main():
    program = str(pathlib.Path(sys.argv[1]).resolve())
    update = "--update" in sys.argv
    plots = [pathlib.Path(name) for name in sys.argv[2:] if name != "--update"]
    plots = plots or sorted(pathlib.Path(__file__).parent.glob("*/*.plt"))
    failed = [plot for plot in plots if not check(program, plot, update)]
    print(f"{len(plots) - len(failed)} passed, {len(failed)} failed")
    return 1 if failed or not plots else 0


if __name__ == "__main__":
    sys.exit(main())
