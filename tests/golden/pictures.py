#!/usr/bin/env python3
"""Compares what the viewer shows of the golden plots with the pictures beside them, and with hpgldump's calls.

usage: pictures.py [--update] [--failures FOLDER] KELHPGL HPGLDUMP [PLOT|FOLDER...]

NAME.png is the screen's picture, to the pixel. It must also be what the calls draw (pictures/drawing.py), up to one
pixel along an edge (pictures/comparison.py). A plot has no picture when there is text in it, whose look is that of the
machine's fonts, or when its options are none of the viewer's: zooms, rotations, small chunks.

A failure writes NAME.expected.png, NAME.difference.png (red where the two differ) and NAME.actual.png into FOLDER
(golden-failures). --update writes the pictures anew, and the run fails all the same: look at what changed, then run
again.
"""
import argparse
import os
import pathlib
import subprocess
import sys
import tempfile

from plots import HERE, options_of, plots_in

import numpy

sys.path.insert(1, str(HERE.parent / "pictures"))  # for what follows
import comparison
import drawing
import picture

SIZE = "500x500"
WHITE, GREY, RED = 0xFFFFFF, 0xE0E0E0, 0xFF0000


def size_of(plot):
    """The picture's size; None when the viewer has no way to show what the plot's options ask for."""
    options = options_of(plot)
    values = dict(zip(options[::2], options[1::2]))
    width, height = map(int, values.pop("--size", SIZE).split("x"))
    whole = int(values.pop("--chunk", plot.stat().st_size)) >= plot.stat().st_size
    return (width, height) if whole and not values and width and height else None


class Check:
    """One run over plots; answers whether each is good."""

    def __init__(self, arguments):
        self.viewer = arguments.viewer.resolve()
        self.hpgldump = arguments.hpgldump.resolve()
        self.failures = arguments.failures
        self.update = arguments.update

    def calls(self, plot, size):
        """Palette and calls; None when the plot has no picture."""
        if size is None:
            return None
        lines = drawing.dump(self.hpgldump, plot, *size)
        return None if drawing.has_text(lines) else lines

    def shown(self, plot, size):
        """What the viewer writes, without a display."""
        environment = {name: value for name, value in os.environ.items()
                       if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder) / "picture.png"
            subprocess.run([self.viewer, "--as-is", "--picture", file, "--size", "{}x{}".format(*size), plot.name],
                           cwd=plot.parent, env=environment, stdin=subprocess.DEVNULL, capture_output=True, check=True,
                           timeout=60)
            return picture.read(file)

    def fail(self, plot, reason, expected, actual, wrong):
        """`wrong` is true where the two differ."""
        difference = numpy.where(wrong, RED, numpy.where(expected == WHITE, WHITE, GREY))
        stem = self.failures / plot.parent.name / plot.stem
        stem.parent.mkdir(parents=True, exist_ok=True)
        for kind, shown in (("expected", expected), ("difference", difference), ("actual", actual)):
            picture.write(stem.with_name(f"{stem.name}.{kind}.png"), shown)
        print(f"{plot}: {reason}, {wrong.sum()} pixels; see {stem.resolve()}.*.png")
        return False

    def plot(self, plot):
        file, size = plot.with_suffix(".png"), size_of(plot)
        lines = self.calls(plot, size)
        if lines is None:
            if file.exists():
                print(f"{file}: the plot can have no picture")
            return not file.exists()
        actual = self.shown(plot, size)
        drawn = drawing.drawn(lines, *size)
        wrong = comparison.differences(actual, drawn, drawing.has_wide_lines(lines))
        if wrong.any():
            return self.fail(plot, "not what the calls draw", drawn, actual, wrong)
        if self.update:
            picture.write(file, actual)
            print(f"{file}: written anew")
            return False
        if not file.exists():
            print(f"{file}: missing; --update writes it")
            return False
        expected = picture.read(file)
        changed = expected != actual
        return not changed.any() or self.fail(plot, "not the picture beside it", expected, actual, changed)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("viewer", metavar="KELHPGL", type=pathlib.Path)
    parser.add_argument("hpgldump", metavar="HPGLDUMP", type=pathlib.Path)
    parser.add_argument("plots", metavar="PLOT|FOLDER", nargs="*")
    parser.add_argument("--update", action="store_true", help="write the pictures anew")
    parser.add_argument("--failures", metavar="FOLDER", type=pathlib.Path, default=pathlib.Path("golden-failures"))
    arguments = parser.parse_intermixed_args()
    check = Check(arguments)
    results = [check.plot(plot) for plot in plots_in(arguments.plots)]
    print(f"{results.count(True)} passed, {results.count(False)} failed")
    return 0 if results and all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
