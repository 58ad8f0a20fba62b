#!/usr/bin/env python3
"""Runs hpgldump on one golden plot, or on all, and compares with the expected text beside it.

usage: run.py HPGLDUMP [--update] [PLOT|FOLDER...]

NAME.plt is the plot, NAME.args or the folder's folder.args the options (a line, if any), NAME.dump what hpgldump prints
with all sections. A plot whose options do not cut it must also print the same when it comes in chunks of 1, 2 and 7
bytes. --update writes the expected text anew, and the run fails all the same: look at what changed, then run again.
"""
import difflib
import pathlib
import subprocess
import sys

from plots import options_of, plots_in

SECTIONS = ["--hex", "--picture", "--calls", "--records"]
CHUNKS = ["1", "2", "7"]


def dump(program, plot, options):
    done = subprocess.run([program, *SECTIONS, *options, plot.name], cwd=plot.parent, capture_output=True, check=False)
    return done.stdout + done.stderr + (b"" if done.returncode == 0 else b"exit %d\n" % done.returncode)


def runs_of(plot):
    options = options_of(plot)
    cuts = [] if "--chunk" in options else CHUNKS
    return [options] + [[*options, "--chunk", chunk] for chunk in cuts]


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
    plots = plots_in(name for name in sys.argv[2:] if name != "--update")
    failed = [plot for plot in plots if not check(program, plot, update)]
    print(f"{len(plots) - len(failed)} passed, {len(failed)} failed")
    return 1 if failed or not plots else 0


if __name__ == "__main__":
    sys.exit(main())
