"""What the tests of the window share: programs and plots, what a plot looks like, and the run of the tests.

usage: SUBJECT_test.py KELHPGL HPGLDUMP HELPERS [NAME...]

HELPERS is the folder of the programs and libraries that are built for these tests. A failure leaves a picture of the
screen in the folder gui-failures beside the current one.
"""
import functools
import pathlib
import signal
import sys
import tempfile
import time
import traceback

sys.path.insert(1, str(pathlib.Path(__file__).resolve().parents[1] / "pictures"))  # for what follows
import drawing
import numpy
import picture
from desktop import SCREEN, TITLE, WHITE, Desktop, wait_for

KELHPGL, HPGLDUMP, HELPERS = (pathlib.Path(word).resolve() for word in sys.argv[1:4])

# Thin lines in several colours, in every direction. Its extents are 4000 x 3000 units. It is plain: what the viewer draws
# of it is the same with a plotter in between and without.
PLOT = ("IN;SP1;PU0,0;PD4000,0,4000,3000,0,3000,0,0;SP2;PU500,500;PD3500,2500;PU3500,500;PD500,2500;"
        "SP6;" + "".join(f"PU2000,1500;PD{2000 + 600 * dx},{1500 + 450 * dy};"
                         for dx, dy in ((2, 0), (0, 2), (-2, 0), (0, -2), (1, 2), (-1, 2), (2, -1), (-2, -1))))
TURNABLE = PLOT.replace("IN;", "IN;SC0,1,0,1;")  # when it is opened as it is


@functools.lru_cache(maxsize=None)
def dump(plot, written, width, height, *options):
    """`written`: when, since a plot may be written anew."""
    return drawing.dump(HPGLDUMP, plot, width, height, *options)


def with_band(plain, x1, y1, x2, y2):
    """The picture with that rectangle over it, striped in black and white."""
    height, width = plain.shape
    top, bottom = height - 1 - max(y1, y2), height - 1 - min(y1, y2)
    left, right = min(x1, x2), max(x1, x2)
    y, x = numpy.indices((height, width))
    inside = (x >= left) & (x <= right) & (y >= top) & (y <= bottom)
    edge = inside & ((x == left) | (x == right) | (y == top) | (y == bottom))
    return numpy.where(edge, numpy.where((x + y) // 4 % 2, WHITE, 0), plain)


def is_picture(shown, plot, *options, band=None):
    """Whether a picture shows the plot, without wide lines, in its size, with that rectangle being dragged."""
    height, width = shown.shape
    lines = dump(plot, plot.stat().st_mtime_ns, width, height, *options)
    drawn = drawing.drawn(lines, width, height)
    return numpy.array_equal(shown, with_band(drawn, *band) if band else drawn)


def expect_picture(viewer, plot, *options, band=None):
    """Waits until the window shows the plot in its present size."""
    viewer.wait_for_picture(lambda shown: is_picture(shown, plot, *options, band=band))


def zoom(*points):
    return ["--zoom", ",".join(map(str, points))]


def beside(plot, name, content=""):
    """Another file in the plot's folder."""
    other = plot.with_name(name)
    other.write_text(content)
    return other


def run(test, desktop):
    began = time.monotonic()
    desktop.test = test.__name__
    with tempfile.TemporaryDirectory() as folder, tempfile.TemporaryDirectory() as state:
        desktop.environment["XDG_STATE_HOME"] = state
        plot = pathlib.Path(folder) / "thin.plt"
        plot.write_text(PLOT)
        try:
            test(desktop, plot)
            print(f"passed {test.__name__} {time.monotonic() - began:.1f} s", flush=True)
            return True
        except Exception:  # whatever went wrong is this test's failure
            traceback.print_exc()
            desktop.xdotool("mouseup", 1)  # it may have been in a drag
            print(f"FAILED {test.__name__}", flush=True)
            return False


def run_all(*tests):
    """Runs the tests, or those that the command line names, each on a plot of its own; ends the process."""
    chosen = sys.argv[4:]
    signal.signal(signal.SIGHUP, signal.SIG_DFL)  # for the viewers, also where hang-ups are ignored
    with Desktop() as desktop:
        results = [run(test, desktop) for test in tests if not chosen or test.__name__ in chosen]
    print(f"{results.count(True)} passed, {results.count(False)} failed")
    sys.exit(0 if results and all(results) else 1)
