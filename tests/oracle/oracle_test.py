#!/usr/bin/env python3
"""hpgldump against a second implementation of it, on the golden plots, the examples and random plots.

usage: oracle_test.py HPGLDUMP [--plots N] [--seed S]

The random plots have the seeds S, S + 1 and so on: a plot is made again with --plots 1 and its own seed. A plot on
which the two differ is shrunk by leaving out what does not matter, and shown with its options and the difference.
"""
import argparse
import difflib
import functools
import itertools
import multiprocessing
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time
import traceback
import typing

import hpgldump
import random_plots

ROOT = pathlib.Path(__file__).resolve().parents[2]
SECTIONS = ["--hex", "--picture", "--calls", "--records"]
PLOT = "plot.plt"
WORKERS = 2
TIMEOUT = 120  # seconds for one run
SHRINKING = 60  # seconds for one plot
SHOWN_FAILURES = 5
SHOWN_LINES = 30

SMALL_FILE = 10000  # bytes up to which a file is run with all of the options
FILE_OPTIONS = [
    ["--chunk 1"],
    ["--chunk 256"],
    ["--size 800x600"],
    ["--size 4x4"],
    ["--size 0x0", "--zoom 1,1,300,300"],
    ["--rotate 1"],
    ["--rotate 2", "--size 1600x1000"],
    ["--zoom 100,100,300,250"],
    ["--zoom 300,250,100,100", "--zoom 10,20,400,410"],
    ["--rotate 1", "--zoom 400,10,10,390"],
    ["--size 1024x768", "--zoom -100,-2000,5000,70000"],
    ["--zoom 2147483647,-2147483648,0,17"],
]
LARGE_FILE_OPTIONS = [["--chunk 250", "--size 1024x768"]]


class Case(typing.NamedTuple):
    """A plot in pieces that can be left out, and options, each with its value."""
    name: str
    pieces: list
    options: list

    def words(self):
        """The command line."""
        return [*SECTIONS, *" ".join(self.options).split(), PLOT]


def file_cases():
    """The golden plots and the examples."""
    for path in [*sorted(ROOT.glob("tests/golden/*/*.plt")), *sorted(ROOT.glob("examples/*.plt"))]:
        data = path.read_bytes()
        for options in FILE_OPTIONS if len(data) <= SMALL_FILE else LARGE_FILE_OPTIONS:
            yield Case(str(path.relative_to(ROOT)), re.findall(rb"[^;]+;?|;", data), options)


def random_case(seed):
    """The random plot of a seed."""
    writer = random_plots.Writer(seed)
    return Case(f"random plot, seed {seed}", writer.plot(), writer.options())


def enter_folder(parent):
    """Each process works in a folder of its own, in which the plots find the files that they name."""
    folder = pathlib.Path(tempfile.mkdtemp(dir=parent))
    random_plots.write_neighbours(folder)
    os.chdir(folder)


def actual(program, case):
    """All that the program prints, and how it ended if not well."""
    pathlib.Path(PLOT).write_bytes(b"".join(case.pieces))
    try:
        done = subprocess.run([program, *case.words()], capture_output=True, check=False, timeout=TIMEOUT)
    except subprocess.TimeoutExpired:
        return b"no end within %d seconds\n" % TIMEOUT
    return done.stdout + done.stderr + (b"" if done.returncode == 0 else b"exit %d\n" % done.returncode)


def expected(case):
    """What the reference prints; one that stumbles differs from the program, too."""
    options = hpgldump.read_options(case.words())
    try:
        return hpgldump.dump(hpgldump.take_in(b"".join(case.pieces), options.chunk), options)
    except Exception:
        return traceback.format_exc().encode()


def agrees(program, case):
    """Whether both print the same."""
    return actual(program, case) == expected(case)


def without_needless(items, fails):
    """The items without those that the failure does not need: large slices first, then smaller ones."""
    step = max(len(items) // 2, 1)
    while step:
        before, at = len(items), 0
        while at < len(items):
            fewer = items[:at] + items[at + step:]
            if fails(fewer):
                items = fewer
            else:
                at += step
        if step > 1 or len(items) == before:
            step //= 2
    return items


def shrunk(program, case):
    """The case without the options, pieces and bytes that do not matter."""
    end = time.monotonic() + SHRINKING

    def fails(field, value):
        return time.monotonic() < end and not agrees(program, case._replace(**{field: value}))

    case = case._replace(options=without_needless(case.options, functools.partial(fails, "options")))
    case = case._replace(pieces=without_needless(case.pieces, functools.partial(fails, "pieces")))
    letters = [bytes([byte]) for byte in b"".join(case.pieces)]
    return case._replace(pieces=without_needless(letters, functools.partial(fails, "pieces")))


def difference(program, case):
    """The lines about the first one that differs, as a unified diff."""
    texts = [text.decode("ascii", "backslashreplace").splitlines() for text in (expected(case), actual(program, case))]
    pairs = enumerate(itertools.zip_longest(*texts))
    first = next((at for at, (left, right) in pairs if left != right), 0)
    window = slice(max(first - 3, 0), first + SHOWN_LINES)
    return "\n".join(difflib.unified_diff(*(text[window] for text in texts), "reference", "hpgldump", lineterm=""))


def report(program, case, shrinking):
    """Shows a case on which the two differ."""
    print(f"FAILED {case.name}, {' '.join(case.options)}")
    if shrinking:
        case = shrunk(program, case)
        print(f"  plot    {b''.join(case.pieces)!r}\n  options {' '.join(case.options) or 'none'}")
        print(difference(program, case), flush=True)


def run(program, cases, folder):
    """The results of all cases; the failures are shown as they come."""
    enter_folder(folder)
    results = []
    with multiprocessing.Pool(WORKERS, enter_folder, [folder]) as pool:
        for case, good in zip(cases, pool.imap(functools.partial(agrees, program), cases)):
            results.append(good)
            if not good:
                report(program, case, results.count(False) <= SHOWN_FAILURES)
    return results


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program", metavar="HPGLDUMP", type=pathlib.Path)
    parser.add_argument("--plots", metavar="N", type=int, default=400, help="number of random plots")
    parser.add_argument("--seed", metavar="S", type=int, default=1, help="seed of the first one")
    arguments = parser.parse_args()
    seeds = range(arguments.seed, arguments.seed + arguments.plots)
    cases = [*file_cases(), *map(random_case, seeds)]
    with tempfile.TemporaryDirectory() as folder:
        results = run(str(arguments.program.resolve()), cases, folder)
        os.chdir(ROOT)
    print(f"{results.count(True)} passed, {results.count(False)} failed")
    return 0 if all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
