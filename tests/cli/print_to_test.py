#!/usr/bin/env python3
"""kelhpgl --print-to as a user calls it, without a display: what the files show, exact messages and exit codes.

usage: print_to_test.py KELHPGL [--update] [NAME...]

The PDF and the SVG of a plot, drawn by programs of others, must show what its PNG shows. The plots in print_to have no
labels, so their SVG files are always the same; --update writes them anew, and fails all the same.
"""
import concurrent.futures
import contextlib
import errno
import io
import itertools
import math
import os
import pathlib
import pty
import re
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

import numpy
import PIL.Image

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
sys.path.insert(0, str(HERE.parent / "pictures"))
import picture  # pylint: disable=wrong-import-position
from ink import Ink, unmatched  # pylint: disable=wrong-import-position

PROGRAM = str(pathlib.Path(sys.argv[1]).resolve())
UPDATE = "--update" in sys.argv
EXAMPLES = sorted((ROOT / "examples").glob("*.plt"))
PLOTS = sorted((HERE / "print_to").glob("*.plt"))
PATIENCE = 60  # seconds; a loaded machine is slow
INCH = 25.4  # millimetres
POINT = INCH / 72
HINT = "Try 'kelhpgl --help'.\n"
SQUARE = b"IN;SP1;PU0,0;PD4000,0,4000,4000,0,4000,0,0;"
BLACK, RED, GREEN, BLUE = 0, 0xFF0000, 0x008000, 0x0000FF
INKS = (BLACK, RED, GREEN, BLUE)


def environment(locale="C.UTF-8", **more):
    kept = {key: value for key, value in os.environ.items()
            if key not in ("DISPLAY", "WAYLAND_DISPLAY", "LANGUAGE", "QT_QPA_PLATFORM") and not key.startswith("LC_")}
    return {**kept, "LC_ALL": locale, "LANG": locale, "KEL_CONFIG_DIR": "/nonexistent", **more}


def has_locale(name):
    listed = subprocess.run(["locale", "-a"], capture_output=True, text=True, check=True).stdout.lower()
    return name.lower().replace("utf-8", "utf8") in listed.replace("utf-8", "utf8").split()


def in_parallel(action, rows):
    """What an action answers for each row; two at once, for there are no more cores."""
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        return list(pool.map(action, rows))


class Printing(unittest.TestCase):
    """A folder of its own for each test."""

    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)
        self.plot("square.plt", SQUARE)

    def plot(self, name, data):
        file = self.folder / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(data)
        return file

    def run_in(self, folder, *arguments, stdin=subprocess.DEVNULL, locale="C.UTF-8", **variables):
        """Exit code and standard error; nothing is ever written to standard output."""
        given = {"input": stdin} if isinstance(stdin, bytes) else {"stdin": stdin}
        done = subprocess.run([PROGRAM, *arguments], cwd=folder, env=environment(locale, **variables), capture_output=True,
                              timeout=PATIENCE, check=False, **given)
        self.assertEqual(done.stdout, b"")
        return done.returncode, done.stderr.decode()

    def run_it(self, *arguments, **how):
        return self.run_in(self.folder, *arguments, **how)

    def prints(self, *arguments, **how):
        self.assertEqual(self.run_it(*arguments, **how), (0, ""))

    def files(self, folder="."):
        """What stands in a folder, as the bytes of the names."""
        return sorted(os.listdir(os.fsencode(self.folder / folder)))

    def assert_whole(self, file):
        data = file.read_bytes()
        ends = {".pdf": (b"%PDF-", b"%%EOF\n"), ".svg": (b"<?xml", b"</svg>\n"), ".png": (b"\x89PNG", b"IEND\xaeB`\x82")}
        begin, end = ends[file.suffix]
        self.assertTrue(data.startswith(begin) and data.endswith(end), f"{file}: {data[:20]}...{data[-20:]}")

    def rendered(self, file, dpi):
        """A PDF or SVG file as a picture, without smoothing where that can be had."""
        if file.suffix == ".svg":
            command = ["rsvg-convert", "-d", str(dpi), "-p", str(dpi), "--background-color=white", file]
        else:
            command = ["pdftoppm", "-r", str(dpi), "-aa", "no", "-aaVector", "no", file]
        return picture.read(io.BytesIO(subprocess.run(command, capture_output=True, check=True).stdout))

    def assert_same_picture(self, one, other):
        numpy.testing.assert_array_equal(picture.read(self.folder / one), picture.read(self.folder / other))

    def bounds(self, file, dpi, colours=INKS):
        """Left, top, right and bottom of what a PDF shows, and width and height of its paper, in millimetres."""
        shown = self.rendered(file, dpi)
        left, top, right, bottom = Ink(shown, colours).bounds()
        height, width = shown.shape
        return [pixels * INCH / dpi for pixels in (left, top, right + 1, bottom + 1, width, height)]


# ---- what is shown --------------------------------------------------------------------------------------------------

COLOURS = b"IN;PC2,255,0,0;PC3,0,128,0;PC4,0,0,255;"
FACES = {
    "lines": COLOURS + b"SP1;PU0,0;PD4000,0,4000,3000,0,3000,0,0;SP2;PU100,100;PD3900,2900;SP3;PU100,2900;PD3900,100;"
                       b"SP4;PU2000,100;PD2000,2900;PU100,1500;PD3900,1500;",
    "wide_lines": COLOURS + b"PW2,1;PW1,2;PW0.5,3;SP1;PU300,300;PD3700,300,2000,2700,300,300;SP2;PU300,2000;"
                            b"PD3700,2000;SP3;PU2000,300;PD2000,2700;",
    "circles": COLOURS + b"SP1;PU2000,2000;CI1800;SP2;CI1200;SP3;CI600,45;SP4;PU3500,2000;AA2000,2000,-180;"
                         b"PW1,2;SP2;PU2000,2000;CI300;",
    "polygons": COLOURS + b"SP2;PM0;PU0,0;PD4000,0,4000,3000,0,3000,0,0;PM1;PU500,500;PD500,2500,1500,2500,1500,500,"
                          b"500,500;PM2;FP;SP4;PU2000,500;PM0;PD3500,500,2700,2500,2000,500;PM2;FP;SP1;EP;SP3;PU600,600;"
                          b"RA1400,2400;",
    "wedges": COLOURS + b"SP2;PU2000,2000;WG1800,0,90;SP3;WG1800,90,120;SP4;WG1500,210,150;SP1;EW1800,0,90;",
    "curves": COLOURS + b"SP1;PU0,0;PD;BZ0,3000,4000,3000,4000,0;SP2;PU0,1000;PD;BR1000,2000,3000,2000,4000,0;"
                        b"SP4;PU0,0;PE<=9A9B>;PU0,3000;PD4000,2500;",
    "dashes": COLOURS + b"SP1;" + b"".join(b"PU%d,%d;PD%d,%d;" % (x, x // 2, x + 70, x // 2 + 30)
                                             for x in range(0, 4000, 120)) +
              b"SP2;" + b"".join(b"PU%d,2500;PD%d,2500;" % (x, x + 1) for x in range(0, 4000, 200)),
    "dots": COLOURS + b"PW2,1;PW3,4;SP1;" + b"".join(b"PU%d,%d;PD%d,%d;" % (x, x // 2, x, x // 2)
                                                     for x in range(0, 4001, 500)) + b"SP4;PU3000,500;PD3000,500;",
    # One line of more points than a path of PDF or SVG takes.
    "spiral": COLOURS + b"SP4;PU2300,2000;" + b"".join(
        b"PD%d,%d;" % (2000 + (300 + i / 5) * math.cos(i / 50), 2000 + (300 + i / 5) * math.sin(i / 50))
        for i in range(6000)),
    "labels": COLOURS + b"SP1;PU0,0;PD4000,0,4000,3000,0,3000,0,0;PU300,2000;SI0.5,0.7;LBEight KH\x03SP2;PU300,500;"
                        b"SI0.8,1.2;LBHIE\x03",
}
NEAR = 3  # pixels; a quarter of a millimetre where the plots are compared one by one


class Faces(Printing):
    """The same plot in three formats."""

    def same(self, vector, png, dpi, what):
        one, other = Ink(vector, INKS), Ink(png, INKS)
        # A PDF page is whole points wide and high.
        for size, expected in zip(vector.shape, png.shape):
            self.assertAlmostEqual(size, expected, delta=dpi / 144 + 1, msg=what)
        self.assertGreater(other.area(), 100, what)
        self.assertEqual((unmatched(one, other, NEAR), unmatched(other, one, NEAR)), (0, 0), what)

    def shows_the_same(self, plot, dpi, *options):
        """As it is: labels are text, and curves the viewer's."""
        base = plot.stem + "-" + "".join(options)
        for ending in ("pdf", "svg", "png"):
            self.prints("--as-is", "--print-to", f"{base}.{ending}", "--dpi", str(dpi), *options, str(plot))
        png = picture.read(self.folder / f"{base}.png")
        for ending in ("pdf", "svg"):
            self.same(self.rendered(self.folder / f"{base}.{ending}", dpi), png, dpi, f"{base}.{ending}")

    def test_every_plot_on_a_small_paper(self):
        for name, data in FACES.items():
            plot = self.plot(f"{name}.plt", data)
            with self.subTest(name):
                self.shows_the_same(plot, 300, "--page", "60x50mm")

    def test_every_paper(self):
        plot = self.plot("wide_lines.plt", FACES["wide_lines"])
        for dpi, *paper in [(100,), (100, "--landscape"), (100, "--page", "fit"), (200, "--page", "50x120mm"),
                            (900, "--page", "10x10mm"), (36, "--page", "A1")]:
            with self.subTest(paper):
                self.shows_the_same(plot, dpi, *paper)


class Svg(Printing):
    def test_is_always_the_same(self):
        self.assertTrue(PLOTS)
        for plot in PLOTS:
            expected = plot.with_suffix(".svg")
            for locale in filter(has_locale, ("C.UTF-8", "de_DE.UTF-8")):
                self.prints("--as-is", "--print-to", "out.svg", "--page", "60x50mm", str(plot), locale=locale)
                if UPDATE:
                    shutil.copy(self.folder / "out.svg", expected)
                self.assertEqual((self.folder / "out.svg").read_text(), expected.read_text(), plot.name)
        self.assertFalse(UPDATE, "written anew")

    def test_does_not_change_with_the_language(self):
        if not has_locale("de_DE.UTF-8"):
            self.skipTest("there is no locale de_DE.UTF-8")
        for name, locale in (("en", "C.UTF-8"), ("de", "de_DE.UTF-8")):
            self.prints("--print-to", f"{name}.svg", str(EXAMPLES[2]), locale=locale)
        self.assertEqual((self.folder / "en.svg").read_bytes(), (self.folder / "de.svg").read_bytes())


class Labels(Printing):
    def words(self, plot):
        self.prints("--as-is", "--print-to", "out.pdf", str(plot))
        return subprocess.run(["pdftotext", "-layout", self.folder / "out.pdf", "-"], capture_output=True, check=True,
                              text=True).stdout

    def test_can_be_searched_for(self):
        for name, words in {"chart": ("Where the power comes from", "Twelve months", "Biomass"),
                            "curves": ("one field for each", "curves from end to end", "BZ"),
                            "mechanical": ("A - A", "152 h11", "144"),
                            "surface": ("sin r / r",)}.items():
            text = self.words(ROOT / "examples" / f"{name}.plt")
            for word in words:
                self.assertIn(word, text, name)


# ---- on the paper ---------------------------------------------------------------------------------------------------

class Paper(Printing):
    def test_sizes_of_pdf_pages(self):
        sizes = [("A4", False, 210, 297), ("A4", True, 297, 210), ("A3", False, 297, 420), ("Letter", True, 279.4, 215.9),
                 ("100x50mm", False, 100, 50), ("50x100mm", True, 100, 50), ("10x10mm", False, 10, 10),
                 ("5080x10mm", False, 5080, 10), ("fit", False, 297, 297), ("209x296mm", False, 209, 296),
                 ("211x298mm", False, 211, 298), ("149x211mm", False, 149, 211)]

        def size_of(row):
            number, (page, landscape, *_) = row
            self.prints("--print-to", f"{number}.pdf", "--page", page, *(["--landscape"] * landscape), "square.plt")
            told = subprocess.run(["pdfinfo", self.folder / f"{number}.pdf"], capture_output=True, check=True,
                                  text=True).stdout
            self.assertIn("Pages:           1\n", told)
            return [float(side) * POINT for side in re.search(r"Page size: +(\S+) x (\S+) pts", told).groups()]

        for row, size in zip(sizes, in_parallel(size_of, enumerate(sizes))):
            for told, side in zip(size, row[2:]):
                with self.subTest(page=row[0], side=side):
                    self.assertAlmostEqual(told, side, delta=0.51 * POINT)

    def test_a_drawing_is_cut_out(self):
        for name, data in {"flat": b"IN;SP1;PU0,0;PD4000,0;", "point": b"IN;SP1;PU100,100;PD100,100;"}.items():
            self.plot("cut.plt", data)
            self.prints("--print-to", "cut.png", "--dpi", "100", "--page", "fit", "cut.plt")
            with self.subTest(name):
                self.assertLess(len(picture.read(self.folder / "cut.png")), 30 / INCH * 100)

    def test_size_and_resolution_of_a_png(self):
        for page, dpi, size in [("A4", 10, (83, 117)), ("A4", 300, (2480, 3508)), ("100x50mm", 254, (1000, 500)),
                                ("10x10mm", 2400, (945, 945))]:
            self.prints("--print-to", "out.png", "--page", page, "--dpi", str(dpi), "square.plt")
            self.assertEqual(picture.read(self.folder / "out.png").shape[::-1], size)
            with PIL.Image.open(self.folder / "out.png") as image:
                told = [round(dots / INCH * 1000) for dots in image.info["dpi"]]
            self.assertEqual(told, [round(dpi / INCH * 1000)] * 2)

    def test_a_png_has_the_pixels_asked_for(self):
        self.prints("--print-to", "out.png", "--size", "321x123", "square.plt")
        self.assertEqual(picture.read(self.folder / "out.png").shape, (123, 321))

    def test_the_resolution_is_300_unless_told(self):
        self.prints("--print-to", "out.png", "--page", "25.4x25.4mm", "square.plt")
        self.assertEqual(picture.read(self.folder / "out.png").shape[1], 300)

    def test_thin_lines_can_be_seen(self):
        self.plot("thin.plt", b"IN;SP1;PU0,0;PD4000,0;")
        self.prints("--print-to", "thin.pdf", "--page", "20x20mm", "thin.plt")
        _, top, _, bottom, *_ = self.bounds(self.folder / "thin.pdf", 1200)
        self.assertTrue(0.18 <= bottom - top + 0.01 and bottom - top <= 0.22, bottom - top)

    def assert_inside(self, name, colours, *options, centred=True):
        self.prints("--print-to", "out.pdf", *options, name)
        left, top, right, bottom, width, height = self.bounds(self.folder / "out.pdf", 100, colours)
        with self.subTest(plot=name, options=options):
            self.assertGreaterEqual(min(left, top, width - right, height - bottom), 8 - INCH / 100)
            if centred:
                self.assertAlmostEqual(left, width - right, delta=1)
                self.assertAlmostEqual(top, height - bottom, delta=1)

    def test_drawings_stand_in_the_middle(self):
        self.plot("wide.plt", b"IN;SP1;PU0,0;PD4000,0,4000,500,0,0;")
        self.plot("high.plt", b"IN;SP1;PU0,0;PD500,0,500,4000,0,0;")
        for name in ("square.plt", "wide.plt", "high.plt"):
            for options in ((), ("--landscape",), ("--page", "120x118mm"), ("--page", "211x298mm"), ("--page", "fit")):
                self.assert_inside(name, (BLACK,), *options)

    def test_wide_lines_keep_the_margins(self):
        self.plot("thick.plt", b"IN;PW4,1;SP1;PU0,0;PD4000,0,4000,500,0,0;")
        self.assert_inside("thick.plt", (BLACK,))

    def test_labels_keep_the_margins(self):
        self.plot("label.plt", SQUARE + b"PU3600,2000;SI2,3;LBWide label\x03")
        self.assert_inside("label.plt", (BLACK,), centred=False)

    def test_examples_keep_the_margins(self):
        for plot in EXAMPLES:
            self.assert_inside(str(plot), (BLACK, 0xF4F3EF), "--landscape", centred=False)


# ---- names and outcomes ---------------------------------------------------------------------------------------------

LONG = "x" * 251 + ".svg"  # as long as a name can be
TOO_LONG = "x" * 252 + ".svg"
FAR = "x/" * 2100 + "a.svg"
NO_PAPER = "kelhpgl: no paper (A0 to A6, Letter, Legal, Tabloid, WxHmm, fit): "
NO_SIDE = "kelhpgl: no paper from 10 to 5080 mm: "
NO_PAGE = "kelhpgl: pages are counted from 1: "
NO_DPI = "kelhpgl: no resolution from 10 to 2400: "
WHITE_PAGE = "kelhpgl: out.svg: the drawing is empty, the page is white\n"

# arguments, (exit code, standard error); no file is made
WRONG = [
    (["--\x1b[2J\n"], (2, "kelhpgl: unknown option: --?[2J?\n" + HINT)),
    (["--print-to"], (2, "kelhpgl: a value is missing behind: --print-to\n" + HINT)),
    (["--print-to", "", "square.plt"], (2, "kelhpgl: no name that ends with .pdf, .svg or .png: \n" + HINT)),
    (["--print-to", "out", "square.plt"], (2, "kelhpgl: no name that ends with .pdf, .svg or .png: out\n" + HINT)),
    (["--print-to", "out.ps", "square.plt"], (2, "kelhpgl: no name that ends with .pdf, .svg or .png: out.ps\n" + HINT)),
    (["--print-to", "out.svg"], (2, "kelhpgl: no file to print: --print-to\n" + HINT)),
    (["--print-to", "out.svg", "square.plt", "square.plt"],
     (2, "kelhpgl: several files need a %n in the name: out.svg\n" + HINT)),
    (["--print-to", "%%n.svg", "square.plt", "-"], (2, "kelhpgl: several files need a %n in the name: %%n.svg\n" + HINT)),
    (["--print-to", "%n.svg", "-", "-"], (2, "kelhpgl: standard input is asked for more than once: \n" + HINT)),
    *[(["--print-to", "out.svg", *other, "square.plt"], (2, "kelhpgl: goes with files alone: --print-to\n" + HINT))
      for other in (["--watch"], ["--frames"], ["--channel", "a"], ["--channel-fd", "0"], ["--picture", "x.png"])],
    *[(["--print-to", "out.svg", "--page", page, "square.plt"], (2, problem + page + "\n" + HINT))
      for page, problem in {"0x10mm": NO_SIDE, "9x100mm": NO_SIDE, "5081x10mm": NO_SIDE, "1000000x10mm": NO_SIDE,
                            "nanx10mm": NO_SIDE, "10xinfmm": NO_SIDE, "-10x10mm": NO_SIDE, "1e5000x10mm": NO_PAPER,
                            "100x100": NO_PAPER, "-1": NO_PAPER, "1.5": NO_PAPER, "0": NO_PAGE, "": NO_PAPER, "A7": NO_PAPER, "fits": NO_PAPER}.items()],
    *[(["--print-to", "out.png", "--dpi", dpi, "square.plt"], (2, NO_DPI + dpi + "\n" + HINT))
      for dpi in ("0", "9", "-300", "2401", "text", "", "300dpi", "30.5", "99999999999")],
    (["--print-to", "out.svg", "--size", "300x200", "square.plt"], (2, "kelhpgl: only a PNG has pixels: --size\n" + HINT)),
    (["--print-to", "out.png", "--size", "300x200", "--page", "A4", "square.plt"],
     (2, "kelhpgl: there is a paper already: --size\n" + HINT)),
    *[(["--print-to", "out.svg", "--page", page, "square.plt"],
       (1, f"kelhpgl: square.plt has no page {told}, the last is 1\n"))
      for page, told in {"2": 2, "100": 100, "99999999999999999999": 2147483647}.items()],
    (["--picture", "out.png", "--page", "2", "square.plt"],
     (1, "kelhpgl: square.plt has no page 2, the last is 1\n")),
    (["--print-to", "link.svg", "square.plt"], (1, "kelhpgl: cannot write link.svg: it is one of the drawings\n")),
    (["--print-to", "pipe.svg", "square.plt"], (1, "kelhpgl: cannot write pipe.svg: Not an ordinary file\n")),
    (["--picture", "pipe.png", "square.plt"], (1, "kelhpgl: cannot write pipe.png: Not an ordinary file\n")),
    (["--print-to", "none/out.svg", "square.plt"],
     (1, "kelhpgl: cannot write none/out.svg: No such file or directory\n")),
    (["--print-to", "square.plt/out.svg", "square.plt"],
     (1, "kelhpgl: cannot write square.plt/out.svg: Not a directory\n")),
    (["--print-to", "folder.svg", "square.plt"], (1, "kelhpgl: cannot write folder.svg: Is a directory\n")),
    (["--print-to", TOO_LONG, "square.plt"], (1, f"kelhpgl: cannot write {TOO_LONG}: File name too long\n")),
    (["--print-to", FAR, "square.plt"], (1, f"kelhpgl: cannot write {FAR}: File name too long\n")),
    (["--print-to", "no\nfolder/a.svg", "square.plt"],
     (1, "kelhpgl: cannot write no?folder/a.svg: No such file or directory\n")),
    (["--print-to", "out.png", "--page", "A0", "--dpi", "2400", "square.plt"],
     (1, "kelhpgl: cannot write out.png: the page is too large\n")),
    (["--print-to", "out.svg", "missing.plt"], (1, "kelhpgl: cannot read missing.plt: No such file or directory\n")),
    (["--print-to", "out.svg", "folder.svg"], (1, "kelhpgl: cannot read folder.svg: Is a directory\n")),
]

# arguments, (exit code, standard error), the file that is made
RIGHT = [
    (["--print-to", "out.svg", "square.plt"], (0, ""), "out.svg"),
    (["--print-to", "OUT.SVG", "square.plt"], (0, ""), "OUT.SVG"),
    (["--print-to", "first.svg", "--print-to", "last.svg", "square.plt"], (0, ""), "last.svg"),
    (["square.plt", "--print-to", "out.svg"], (0, ""), "out.svg"),
    (["--print-to", "with blanks .svg", "square.plt"], (0, ""), "with blanks .svg"),
    (["--print-to", "Größe.svg", "square.plt"], (0, ""), "Größe.svg"),
    (["--print-to", "two\nlines.svg", "square.plt"], (0, ""), "two\nlines.svg"),
    (["--print-to", "-dash.svg", "square.plt"], (0, ""), "-dash.svg"),
    (["--print-to", "100%.svg", "square.plt"], (0, ""), "100%.svg"),
    (["--print-to", "%n.svg", "with blanks.plt"], (0, ""), "with blanks.svg"),
    (["--print-to", "%n %p.svg", "square.plt"], (0, ""), "square 1.svg"),
    (["--print-to", "%p.pdf", "square.plt"], (0, ""), "1.pdf"),
    (["--print-to", "%%p.svg", "square.plt"], (0, ""), "%p.svg"),
    (["--print-to", "out.svg", "--page", "1", "--page", "A5", "square.plt"], (0, ""), "out.svg"),
    (["--print-to", "out.svg", "script.plt"],
     (0, "kelhpgl: script.plt holds no HP-GL drawing (PostScript)\n" + WHITE_PAGE), "out.svg"),
    (["--print-to", "%n.svg", "Größe.plt"], (0, ""), "Größe.svg"),
    (["--print-to", "%n.svg", "two\nlines.plt"], (0, ""), "two\nlines.svg"),
    (["--print-to", "%n.svg", "--", "-dash.plt"], (0, ""), "-dash.svg"),
    (["--print-to", "%n.svg", "--", "-"], (0, ""), "-.svg"),
    (["--print-to", "n" * 123 + ".svg", "square.plt"], (0, ""), "n" * 123 + ".svg"),
    (["--print-to", "n" * 124 + ".svg", "square.plt"], (0, ""), "n" * 124 + ".svg"),
    (["--print-to", LONG, "square.plt"], (0, ""), LONG),
    (["--print-to", b"no\xfftext.svg", "square.plt"], (0, ""), b"no\xfftext.svg"),
    (["--print-to", "%n.svg", b"no\xfetext.plt"], (0, ""), b"no\xfetext.svg"),
    (["--print-to", "out.svg", "empty.plt"], (0, "kelhpgl: empty.plt holds no HP-GL drawing\n" + WHITE_PAGE), "out.svg"),
    (["--print-to", "out.svg", "photo.plt"], (0, "kelhpgl: photo.plt holds no HP-GL drawing (PNG image)\n" + WHITE_PAGE), "out.svg"),
    (["--print-to", "out.svg", "-"], (0, WHITE_PAGE), "out.svg"),
]


class Outcomes(Printing):
    def outcome(self, number, arguments):
        """Exit code, standard error and the new files of a run in a folder of its own."""
        folder = self.folder / f"run{number}"
        folder.mkdir()
        (folder / "folder.svg").mkdir()
        (folder / "link.svg").symlink_to("square.plt")
        os.mkfifo(folder / "pipe.svg")
        os.mkfifo(folder / "pipe.png")
        for name in ("square.plt", "with blanks.plt", "Größe.plt", "two\nlines.plt", "-dash.plt", "-", b"no\xfetext.plt"):
            (folder / os.fsdecode(name)).write_bytes(SQUARE)
        (folder / "empty.plt").write_bytes(b"")
        (folder / "script.plt").write_bytes(b"%!PS-Adobe-3.0\n0 0 moveto PD100,100; 100 100 lineto stroke\n")
        (folder / "photo.plt").write_bytes(b"\x89PNG\r\n\x1a\n" + bytes(range(256)) * 10)
        before = set(os.listdir(os.fsencode(folder)))
        told = self.run_in(folder, *arguments)
        return *told, sorted(set(os.listdir(os.fsencode(folder))) - before)

    def test_of_what_is_wrong(self):
        rows = WRONG
        for (arguments, told), outcome in zip(rows, in_parallel(lambda row: self.outcome(row[0], row[1][0]),
                                                                enumerate(rows))):
            with self.subTest(arguments=arguments):
                self.assertEqual(outcome, (*told, []))

    def test_of_what_is_right(self):
        for (arguments, told, made), outcome in zip(RIGHT, in_parallel(lambda row: self.outcome(row[0], row[1][0]),
                                                                       enumerate(RIGHT))):
            with self.subTest(arguments=arguments):
                self.assertEqual(outcome, (*told, [os.fsencode(made)]))

    def test_standard_input_of_another_kind(self):
        self.assertEqual(self.run_it("--print-to", "out.svg", stdin=b"%PDF-1.4\n"),
                         (0, "kelhpgl: - holds no HP-GL drawing (PDF)\n" + WHITE_PAGE))

    def test_of_names_that_are_no_text(self):
        """Names are bytes: two that differ are two files."""
        for name in (b"a\xff.plt", b"a\xfe.plt"):
            self.plot(os.fsdecode(name), SQUARE)
        self.prints("--print-to", "out-%n.svg", b"a\xff.plt", b"a\xfe.plt")
        self.assertEqual([name for name in self.files() if name.endswith(b".svg")], [b"out-a\xfe.svg", b"out-a\xff.svg"])

    def test_a_long_path_is_no_other_file(self):
        folder = self.folder / ("d" * 200) / ("e" * 200)
        folder.mkdir(parents=True)
        self.prints("--print-to", str(folder / "out.svg"), "square.plt")
        self.assert_whole(folder / "out.svg")

    def test_standard_input(self):
        self.prints("--print-to", "piped.svg", stdin=SQUARE)
        self.prints("--print-to", "dash.svg", "-", stdin=SQUARE)
        with open(self.folder / "square.plt", "rb") as file:
            self.prints("--print-to", "%n.svg", "square.plt", "-", stdin=file)
        same = (self.folder / "square.svg").read_bytes()
        for name in ("piped", "dash", "stdin"):
            self.assertEqual((self.folder / f"{name}.svg").read_bytes(), same, name)

    def test_a_bad_file_between_good_ones(self):
        self.plot("other.plt", SQUARE)
        self.assertEqual(self.run_it("--print-to", "%n.svg", "square.plt", "missing.plt", ".", "other.plt"),
                         (1, "kelhpgl: cannot read missing.plt: No such file or directory\n"
                             "kelhpgl: cannot read .: Is a directory\n"))
        self.assertEqual(self.files(), [b"other.plt", b"other.svg", b"square.plt", b"square.svg"])

    def test_two_files_of_the_same_name(self):
        self.plot("a/same.plt", SQUARE)
        self.plot("b/same.plt", b"IN;SP1;PU0,0;PD1,1;")
        self.plot("b/last.plt", SQUARE)
        self.assertEqual(self.run_it("--print-to", "%n.svg", "a/same.plt", "b/same.plt", "b/last.plt"),
                         (1, "kelhpgl: cannot write same.svg: another drawing has been written there just now\n"))
        self.assertEqual((self.folder / "same.svg").read_bytes(), (self.folder / "last.svg").read_bytes())

    def test_a_file_keeps_its_rights_to_itself(self):
        previous = os.umask(0o027)
        self.addCleanup(os.umask, previous)
        self.prints("--print-to", "out.svg", "square.plt")
        self.assertEqual((self.folder / "out.svg").stat().st_mode & 0o777, 0o640)

    def test_an_older_file_is_replaced(self):
        for ending in ("pdf", "svg", "png"):
            file = self.folder / f"out.{ending}"
            file.write_bytes(b"old" * 1000000)
            self.prints("--print-to", file.name, "--dpi", "50", "square.plt")
            self.assert_whole(file)

    def test_the_user_has_not_looked_at_them(self):
        """Whoever makes pictures of a folder's files must not find them among those that were shown last."""
        for option in ("--picture", "--print-to"):
            self.prints(option, "out.png", "square.plt", HOME=str(self.folder / "home"), XDG_STATE_HOME="")
            self.assertFalse((self.folder / "home").exists(), option)

    def test_german_messages(self):
        if not has_locale("de_DE.UTF-8"):
            self.skipTest("there is no locale de_DE.UTF-8")
        code, told = self.run_it("--print-to", "none/out.svg", "square.plt", locale="de_DE.UTF-8")
        self.assertEqual(code, 1)
        self.assertTrue(told.startswith("kelhpgl: none/out.svg kann nicht geschrieben werden: "), told)


def fill(file):
    """Takes all the room that a disk has."""
    with contextlib.suppress(OSError), open(file, "wb", buffering=0) as filling:
        while filling.write(bytes(4096)) == 4096:
            pass


class Disks(Printing):
    @contextlib.contextmanager
    def disk(self, options):
        """A small disk of its own in `disk`."""
        place = self.folder / "disk"
        place.mkdir(exist_ok=True)
        if os.geteuid() != 0 or subprocess.run(["mount", "-t", "tmpfs", "-o", options, "none", place],
                                               capture_output=True, check=False).returncode != 0:
            self.skipTest("only root can mount a small disk")
        try:
            yield place
        finally:
            subprocess.run(["umount", place], check=True)

    def assert_whole_or_old(self, place, name, plot):
        """Nothing but a line comes of a disk that gets full."""
        (place / f"old{name[-4:]}").write_bytes(b"old")
        if plot == "square.plt":
            fill(place / "fill")
        before = self.files("disk")
        self.assertEqual(self.run_it("--print-to", f"disk/{name}", plot),
                         (1, f"kelhpgl: cannot write disk/{name}: No space left on device\n"))
        self.assertEqual((self.files("disk"), (place / f"old{name[-4:]}").read_bytes()), (before, b"old"))

    def test_full(self):
        self.plot("many.plt", b"IN;SP1;" + b"".join(b"PU%d,%d;PD%d,%d;" % (i * 37 % 4001, i * 91 % 4003, i * 53 % 3989,
                                                                          i * 17 % 4007) for i in range(6000)))
        for plot in ("square.plt", "many.plt"):
            for name in ("new.pdf", "old.pdf", "new.svg", "old.svg", "new.png", "old.png"):
                with self.disk("size=32k") as place, self.subTest(name, plot=plot):
                    self.assert_whole_or_old(place, name, plot)

    def test_read_only(self):
        with self.disk("size=64k") as place:
            (place / "old.svg").write_bytes(b"old")
            subprocess.run(["mount", "-o", "remount,ro", place], check=True)
            for name in ("new.svg", "old.svg"):
                with self.subTest(name):
                    code, told = self.run_it("--print-to", f"disk/{name}", "square.plt")
                    self.assertEqual(code, 1)
                    self.assertTrue(told.startswith(f"kelhpgl: cannot write disk/{name}: "), told)
            self.assertEqual(self.files("disk"), [b"old.svg"])
            self.assertEqual((place / "old.svg").read_bytes(), b"old")


# ---- pages ----------------------------------------------------------------------------------------------------------

# Three pages, each of a shape of its own; what stands before PG is drawn, and the last needs none.
SHAPES = [b"PU0,0;PD4000,0,4000,4000,0,4000,0,0;", b"PU0,0;PD4000,0,4000,500,0,0;", b"PU0,0;PD500,0,500,4000,0,0;"]
PAGES = b"IN;SP1;" + b"PG;".join(SHAPES)


class Pages(Printing):
    def setUp(self):
        super().setUp()
        self.plot("pages.plt", PAGES)
        for number, shape in enumerate(SHAPES, 1):
            self.plot(f"single{number}.plt", b"IN;SP1;" + shape)

    def sizes(self, pdf):
        """Of its pages, points."""
        told = subprocess.run(["pdfinfo", "-f", "1", "-l", "99", self.folder / pdf], capture_output=True, check=True,
                              text=True).stdout
        count = int(re.search(r"Pages: +(\d+)\n", told).group(1))
        sizes = [(float(w), float(h)) for w, h in re.findall(r"Page +\d+ size: +(\S+) x (\S+) pts", told)]
        self.assertEqual(len(sizes), count)
        return sizes

    def picture(self, pdf, page):
        data = subprocess.run(["pdftoppm", "-r", "60", "-f", str(page), "-l", str(page), "-aa", "no", "-aaVector", "no",
                               self.folder / pdf], capture_output=True, check=True).stdout
        self.assertEqual(data[:2], b"P6")
        return data

    def made(self):
        return [name for name in self.files() if not name.endswith(b".plt")]

    def test_a_pdf_has_all_of_them(self):
        self.prints("--print-to", "out.pdf", "pages.plt")
        self.assert_whole(self.folder / "out.pdf")
        self.assertEqual(self.made(), [b"out.pdf"])
        self.assertEqual(len(self.sizes("out.pdf")), 3)
        for number in (1, 2, 3):
            self.prints("--print-to", "one.pdf", f"single{number}.plt")
            self.assertEqual(self.picture("out.pdf", number), self.picture("one.pdf", 1), number)

    def test_each_is_cut_to_its_drawing(self):
        self.prints("--print-to", "out.pdf", "--page", "fit", "pages.plt")
        (w1, h1), (w2, h2), (w3, h3) = self.sizes("out.pdf")
        self.assertTrue(abs(w1 - h1) < 2 and w2 > 3 * h2 and h3 > 3 * w3, self.sizes("out.pdf"))

    def assert_singles(self, names):
        self.assertEqual(self.made(), sorted(os.fsencode(name) for name in names))
        for number, name in enumerate(names, 1):
            self.prints("--print-to", "expected.svg", f"single{number}.plt")
            self.assertEqual((self.folder / name).read_bytes(), (self.folder / "expected.svg").read_bytes(), name)

    def test_other_formats_have_a_file_each(self):
        self.prints("--print-to", "out.svg", "pages.plt")
        self.assert_singles(["out-1.svg", "out-2.svg", "out-3.svg"])

    def test_the_pattern_may_say_where_the_number_stands(self):
        self.prints("--print-to", "%p of %n.svg", "pages.plt")
        self.assert_singles(["1 of pages.svg", "2 of pages.svg", "3 of pages.svg"])

    def test_a_pattern_with_the_number_gives_a_pdf_each(self):
        self.prints("--print-to", "%n%p.pdf", "pages.plt")
        self.assertEqual(self.made(), [b"pages1.pdf", b"pages2.pdf", b"pages3.pdf"])
        self.assertEqual([len(self.sizes(name.decode())) for name in self.made()], [1, 1, 1])

    def test_png_files(self):
        self.prints("--print-to", "a.b.png", "--dpi", "30", "pages.plt")
        self.assertEqual(self.made(), [b"a.b-1.png", b"a.b-2.png", b"a.b-3.png"])

    def test_one_of_them(self):
        self.prints("--print-to", "expected.svg", "single2.plt")
        for name, pattern in {"out.svg": "out.svg", "2.svg": "%p.svg"}.items():
            self.prints("--print-to", pattern, "--page", "2", "pages.plt")
            self.assertEqual((self.folder / name).read_bytes(), (self.folder / "expected.svg").read_bytes())
        self.prints("--print-to", "out.pdf", "--page", "A5", "--page", "3", "pages.plt")
        ((width, height),) = self.sizes("out.pdf")
        self.assertAlmostEqual(width, 148 / POINT, delta=1)
        self.assertAlmostEqual(height, 210 / POINT, delta=1)

    def test_the_picture_of_one_of_them(self):
        for number in (1, 2, 3):
            self.prints("--picture", "out.png", "--page", str(number), "pages.plt")
            self.prints("--picture", "expected.png", f"single{number}.plt")
            self.assert_same_picture("out.png", "expected.png")

    def test_the_picture_is_of_the_first(self):
        self.prints("--picture", "out.png", "pages.plt")
        self.prints("--picture", "expected.png", "single1.plt")
        self.assert_same_picture("out.png", "expected.png")

    def test_one_that_is_not_there(self):
        told = "kelhpgl: pages.plt has no page 4, the last is 3\n"
        for option in ("--print-to", "--picture"):
            self.assertEqual(self.run_it(option, "out.png", "--page", "4", "pages.plt"), (1, told))
        self.assertEqual(self.made(), [])

    def test_one_that_only_some_files_have(self):
        self.assertEqual(self.run_it("--print-to", "%n.svg", "--page", "2", "single1.plt", "pages.plt", "square.plt"),
                         (1, "kelhpgl: single1.plt has no page 2, the last is 1\n"
                             "kelhpgl: square.plt has no page 2, the last is 1\n"))
        self.assertEqual(self.made(), [b"pages.svg"])

    def test_files_keep_their_pages_together(self):
        self.plot("more.plt", b"IN;SP1;" + b"PG;".join(SHAPES[:2]))
        self.prints("--print-to", "%n.pdf", "pages.plt", "square.plt", "more.plt")
        self.assertEqual([len(self.sizes(f"{name}.pdf")) for name in ("pages", "square", "more")], [3, 1, 2])

    def test_no_source_is_overwritten(self):
        (self.folder / "out-2.svg").symlink_to("pages.plt")
        self.assertEqual(self.run_it("--print-to", "out.svg", "pages.plt"),
                         (1, "kelhpgl: cannot write out-2.svg: it is one of the drawings\n"))
        self.assertEqual((self.folder / "pages.plt").read_bytes(), PAGES)
        self.assertEqual(self.made(), [b"out-1.svg", b"out-2.svg", b"out-3.svg"])
        (self.folder / "out.pdf").symlink_to("pages.plt")
        self.assertEqual(self.run_it("--print-to", "out.pdf", "pages.plt"),
                         (1, "kelhpgl: cannot write out.pdf: it is one of the drawings\n"))
        self.assertEqual((self.folder / "pages.plt").read_bytes(), PAGES)

    def test_no_file_is_written_twice(self):
        self.plot("sub/pages.plt", PAGES)
        self.assertEqual(self.run_it("--print-to", "%n.pdf", "pages.plt", "sub/pages.plt"),
                         (1, "kelhpgl: cannot write pages.pdf: another drawing has been written there just now\n"))
        self.plot("pages-2.plt", SQUARE)
        self.assertEqual(self.run_it("--print-to", "%n.svg", "pages.plt", "pages-2.plt"),
                         (1, "kelhpgl: cannot write pages-2.svg: another drawing has been written there just now\n"))

    def test_of_standard_input(self):
        self.prints("--print-to", "out.pdf", stdin=PAGES)
        self.assertEqual(len(self.sizes("out.pdf")), 3)

    def test_as_it_is_a_file_has_one(self):
        self.prints("--as-is", "--print-to", "out.pdf", "pages.plt")
        self.assertEqual(len(self.sizes("out.pdf")), 1)
        self.assertEqual(self.run_it("--as-is", "--picture", "out.png", "--page", "2", "pages.plt"),
                         (1, "kelhpgl: pages.plt has no page 2, the last is 1\n"))


class Remarks(Printing):
    """What is said of files that were not drawn as they stand there."""

    def said(self, data):
        self.plot("odd.plt", data)
        return self.run_it("--print-to", "out.svg", "odd.plt")

    def test_that_a_file_breaks_off(self):
        for data, where in {b"PM0;PD500,20,30,700;": "a polygon", b"LBlab": "a label", b"PE<=9A9B": "an encoded line"}.items():
            with self.subTest(where):
                self.assertEqual(self.said(b"IN;SP1;PU0,0;PD1000.5,1000;" + data),
                                 (0, f"kelhpgl: odd.plt: incomplete: the file ends inside {where}\n"))

    def test_what_was_not_drawn(self):
        code, told = self.said(b"IN;SP1;PU0,0;PD1000.5,1000;QQ1,2;")
        self.assertEqual((code, told), (0, "kelhpgl: odd.plt: 1 kind of instruction was not drawn: QQ\n"))

    def test_in_german(self):
        if not has_locale("de_DE.UTF-8"):
            self.skipTest("there is no locale de_DE.UTF-8")
        self.plot("odd.plt", b"IN;SP1;PU0,0;PD1000.5,1000;LBlab")
        self.assertEqual(self.run_it("--print-to", "out.svg", "odd.plt", locale="de_DE.UTF-8"),
                         (0, "kelhpgl: odd.plt: unvollständig: Die Datei endet mitten in einer Beschriftung\n"))

    def test_nothing_of_what_is_as_it_is(self):
        self.plot("odd.plt", b"IN;SP1;PU0,0;PD1000.5,1000;LBlab")
        self.prints("--as-is", "--print-to", "out.svg", "odd.plt")

    def test_an_empty_drawing_gives_a_white_page(self):
        self.assertEqual(self.said(b"IN;SP1;PU0,0;PA100.5,100;PU5,5;"),
                         (0, "kelhpgl: out.svg: the drawing is empty, the page is white\n"))


# ---- too much -------------------------------------------------------------------------------------------------------

class Bounds(Printing):
    """A page has a bound of its own in bytes: a few bytes of a plot can draw very much."""

    CIRCLES = b"IN;SP1;PA1000,1000;PD2000,2000;" + b"CI900;" * 1000  # 72 chords each at least, of 4 bytes
    LINES = b"IN;SP1;PU0,0;PD" + b",".join(b"%d,%d" % (x, x % 2 * 4000) for x in range(20000)) + b";"

    def test_a_page_beyond_is_refused_and_the_next_is_printed(self):
        self.plot("circles.plt", self.CIRCLES)
        for ending in ("pdf", "svg", "png"):
            for manner in ([], ["--as-is"]):
                self.assertEqual(
                    self.run_it(*manner, "--print-to", f"%n.{ending}", "circles.plt", "square.plt",
                                KEL_MOST_PAGE_BYTES="200000"),
                    (1, f"kelhpgl: cannot write circles.{ending}: the page is too large\n"))
                self.assertNotIn(f"circles.{ending}".encode(), self.files())
                self.assert_whole(self.folder / f"square.{ending}")

    def test_a_page_below_is_printed(self):
        self.plot("lines.plt", self.LINES)
        self.prints("--print-to", "lines.pdf", "lines.plt", KEL_MOST_PAGE_BYTES="100000")
        self.assert_whole(self.folder / "lines.pdf")

    def test_pages_of_one_file_count_together(self):
        self.plot("pages.plt", (self.LINES + b"PG;") * 3)
        self.assertEqual(self.run_it("--print-to", "pages.pdf", "pages.plt", KEL_MOST_PAGE_BYTES="200000"),
                         (1, "kelhpgl: cannot write pages.pdf: the page is too large\n"))
        self.prints("--print-to", "pages.pdf", "pages.plt", KEL_MOST_PAGE_BYTES="300000")
        self.assert_whole(self.folder / "pages.pdf")

    def test_much_is_kept_in_a_file(self):
        """Beyond 16 MiB, four million points. The same lines again and again are the same picture."""
        begin, there_and_back, end = b"IN;SP1;PU0,0;PD1000,1000;", b"PR9,0,-9,0;", b"PA0,500;"
        self.plot("often.plt", begin + there_and_back * 2200000 + end)
        self.plot("twice.plt", begin + there_and_back * 2 + end)
        for name in ("often", "twice"):
            self.prints("--as-is", "--print-to", "%n.png", "--dpi", "50", f"{name}.plt")
        self.assertEqual((self.folder / "often.png").read_bytes(), (self.folder / "twice.png").read_bytes())

    def test_it_ends_at_once_whatever_it_does(self):
        self.plot("circles.plt", self.CIRCLES * 1000)
        manners = {"pdf": "--print-to", "svg": "--print-to", "png": "--picture"}
        rows = list(itertools.product((signal.SIGTERM, signal.SIGINT, signal.SIGHUP), manners, (0.5, 2.5)))

        def ended(row):
            """How long it has gone on after the signal, and its exit code."""
            number, ending, wait = row
            out = f"{number}-{wait}.{ending}"
            process = subprocess.Popen([PROGRAM, manners[ending], out, "circles.plt"], cwd=self.folder, env=environment(),
                                       stdin=subprocess.DEVNULL, stderr=subprocess.PIPE)
            time.sleep(wait)
            process.send_signal(number)
            begun = time.monotonic()
            process.communicate(timeout=PATIENCE)
            return time.monotonic() - begun, process.returncode

        for row, (duration, code) in zip(rows, in_parallel(ended, rows)):
            with self.subTest(row):
                self.assertLess(duration, 2)
                self.assertNotEqual(code, 0)
        self.assertEqual(self.files(), [b"circles.plt", b"square.plt"])

    def test_more_signals_do_not_make_it_live_longer(self):
        self.plot("circles.plt", self.CIRCLES * 1000)
        process = subprocess.Popen([PROGRAM, "--as-is", "--print-to", "out.svg", "circles.plt"], cwd=self.folder,
                                   env=environment(), stdin=subprocess.DEVNULL, stderr=subprocess.PIPE)
        time.sleep(2)
        begun = time.monotonic()
        while process.poll() is None and time.monotonic() - begun < 10:
            process.send_signal(signal.SIGTERM)
            time.sleep(0.2)
        process.communicate(timeout=PATIENCE)
        self.assertLess(time.monotonic() - begun, 2)
        self.assertNotEqual(process.returncode, 0)


# ---- files that are not its own -------------------------------------------------------------------------------------

class Guards(Printing):
    def test_a_picture_has_its_ending(self):
        for arguments in (["--picture", "square.plt"], ["--picture", "square.plt", "other.plt"]):
            self.assertEqual(self.run_it(*arguments),
                             (2, "kelhpgl: no name that ends with .png: square.plt\n" + HINT))
        self.assertEqual((self.folder / "square.plt").read_bytes(), SQUARE)

    def test_no_picture_is_written_onto_its_source(self):
        self.plot("plot.png", SQUARE)
        (self.folder / "link.png").symlink_to("plot.png")
        os.link(self.folder / "plot.png", self.folder / "hard.png")
        for output in ("plot.png", "./plot.png", "link.png", "hard.png"):
            for arguments in (["--picture", output, "plot.png"], ["plot.png", "--picture", output]):
                self.assertEqual(self.run_it(*arguments),
                                 (1, f"kelhpgl: cannot write {output}: it is one of the drawings\n"))
            with open(self.folder / "plot.png", "rb") as stdin:
                self.assertEqual(self.run_it("--picture", output, "-", stdin=stdin)[0], 1)
        self.assertEqual((self.folder / "plot.png").read_bytes(), SQUARE)

    def test_a_drawing_names_files_of_its_own_folder_alone(self):
        outside = self.plot("outside.plt", SQUARE)
        self.plot("in/below/named.plt", SQUARE)
        (self.folder / "in" / "link.plt").symlink_to(outside)
        for name, said in [("below/named.plt", ""), (self.folder / "in/below/named.plt", ""),
                           (outside, outside), ("../outside.plt", "../outside.plt"), ("link.plt", "link.plt")]:
            self.plot("in/plot.plt", f"HPGL_FILE:{name}\n".encode())
            for manner in (["--print-to", "out.svg"], ["--picture", "out.png"]):
                (self.folder / "in" / manner[1]).unlink(missing_ok=True)
                told = self.run_in(self.folder / "in", *manner, "plot.plt")
                expected = f"kelhpgl: plot.plt: it names {said}, which does not lie in its folder\n" if said else ""
                self.assertEqual(told, (1 if said else 0, expected))
                self.assertEqual((self.folder / "in" / manner[1]).exists(), not said)

    def test_named_files_have_the_limit_of_others(self):
        self.plot("named.plt", SQUARE * 1000)
        self.plot("plot.plt", b"HPGL_FILE:named.plt\n")
        self.prints("--print-to", "out.svg", "plot.plt")
        for manner in (["--print-to", "new.svg"], ["--picture", "new.png"]):
            self.assertEqual(self.run_it(*manner, "plot.plt", KEL_MOST_BYTES="10000"),
                             (1, "kelhpgl: plot.plt: more data than KEL_MOST_BYTES (10000)\n"))
            self.assertFalse((self.folder / manner[1]).exists())

    def test_a_named_file_is_a_source_too(self):
        for ending, option in (("pdf", "--print-to"), ("svg", "--print-to"), ("png", "--picture")):
            self.plot(f"named.{ending}", SQUARE)
            self.plot("plot.plt", f"HPGL_FILE:named.{ending}\n".encode())
            self.assertEqual(self.run_it(option, f"named.{ending}", "plot.plt"),
                             (1, f"kelhpgl: cannot write named.{ending}: it is one of the drawings\n"))
            self.assertEqual((self.folder / f"named.{ending}").read_bytes(), SQUARE)

    def test_reading_a_named_file_ends_with_a_signal(self):
        with open(self.folder / "named.plt", "wb") as named:
            named.truncate(1 << 32)
        self.plot("plot.plt", b"HPGL_FILE:named.plt\n")
        process = subprocess.Popen([PROGRAM, "--print-to", "out.pdf", "plot.plt"], cwd=self.folder, env=environment(),
                                   stdin=subprocess.DEVNULL, stderr=subprocess.PIPE)
        time.sleep(1)
        process.send_signal(signal.SIGTERM)
        begun = time.monotonic()
        process.communicate(timeout=PATIENCE)
        self.assertLess(time.monotonic() - begun, 2)
        self.assertEqual(process.returncode, 1)  # it has heard of it itself

    def test_standard_input_is_a_source_too(self):
        self.plot("plot.pdf", SQUARE)
        with open(self.folder / "plot.pdf", "rb") as stdin:
            self.assertEqual(self.run_it("--print-to", "plot.pdf", "-", stdin=stdin)[0], 1)
        self.assertEqual((self.folder / "plot.pdf").read_bytes(), SQUARE)

    def test_two_names_for_one_output_are_one(self):
        (self.folder / "second.pdf").symlink_to("first.pdf")
        self.plot("first.plt", SQUARE)
        self.plot("second.plt", SQUARE)
        self.assertEqual(self.run_it("--print-to", "%n.pdf", "first.plt", "second.plt")[0], 1)
        self.assert_whole(self.folder / "first.pdf")
        self.assertTrue((self.folder / "second.pdf").is_symlink())


# ---- many files -----------------------------------------------------------------------------------------------------

class Many(Printing):
    def plots(self, count):
        (self.folder / "in").mkdir()
        for number in range(count):
            self.plot(f"in/plot {number:03}.plt", b"IN;SP1;PU0,0;PD%d,4000,4000,0;" % (number * 100))
        (self.folder / "out").mkdir()

    def test_in_one_call(self):
        self.plots(40)
        self.prints("--print-to", "out/%n.pdf", *[f"in/plot {number:03}.plt" for number in range(40)])
        self.assertEqual(len(self.files("out")), 40)
        for file in (self.folder / "out").iterdir():
            self.assert_whole(file)

    def test_side_by_side(self):
        self.plots(40)
        command = "find in -name '*.plt' -print0 | xargs -0 -P 4 -n 1 \"$1\" --print-to out/%n.pdf"
        done = subprocess.run(["sh", "-c", command, "sh", PROGRAM], cwd=self.folder, env=environment(),
                              stdin=subprocess.DEVNULL, capture_output=True, timeout=PATIENCE, check=False)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))
        self.assertEqual(self.files("out"), [b"plot %03d.pdf" % number for number in range(40)])
        for file in (self.folder / "out").iterdir():
            self.assert_whole(file)

    def test_ended_in_the_midst(self):
        (self.folder / "out").mkdir()
        names = [f"plot{number}.plt" for number in range(400)]
        for name in names:
            self.plot(name, (ROOT / "examples" / "curves.plt").read_bytes())
        for ending in ("pdf", "png"):
            process = subprocess.Popen([PROGRAM, "--print-to", f"out/%n.{ending}", *names], cwd=self.folder,
                                       env=environment(), stdin=subprocess.DEVNULL, stderr=subprocess.PIPE)
            until = time.monotonic() + PATIENCE
            while len(list((self.folder / "out").glob(f"*.{ending}"))) < 3 and time.monotonic() < until:
                time.sleep(0.001)
            process.send_signal(signal.SIGTERM)
            told = process.communicate(timeout=PATIENCE)[1]
            self.assertEqual(told, b"")
            self.assertNotEqual(process.returncode, 0)
        made = sorted((self.folder / "out").iterdir())
        self.assertTrue(6 <= len(made) < 2 * len(names), len(made))
        for file in made:
            self.assert_whole(file)

    def said_on_a_terminal(self, *arguments):
        ours, theirs = pty.openpty()
        process = subprocess.Popen([PROGRAM, *arguments], cwd=self.folder, env=environment(), stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE, stderr=theirs)
        os.close(theirs)
        said = b""
        while select.select([ours], [], [], PATIENCE)[0]:
            try:
                data = os.read(ours, 65536)
            except OSError as problem:
                self.assertEqual(problem.errno, errno.EIO)  # nobody has the other end
                break
            said += data
        os.close(ours)
        self.assertEqual(process.communicate(timeout=PATIENCE)[0], b"")
        return process.returncode, said.decode().replace("\r\n", "\n")

    @staticmethod
    def screen(said):
        """What a terminal shows of lines that are overwritten and emptied."""
        return "\n".join(line.rpartition("\r\x1b[K")[2] for line in said.split("\n"))

    def test_progress_on_a_terminal(self):
        for name in ("a", "b", "c"):
            self.plot(f"{name}.plt", SQUARE)
        code, said = self.said_on_a_terminal("--print-to", "%n.svg", "a.plt", "b.plt", "c.plt")
        self.assertEqual(code, 0)
        for progress in ("1/3 a.plt", "2/3 b.plt", "3/3 c.plt"):
            self.assertIn("\r\x1b[K" + progress, said)
        self.assertEqual(self.screen(said), "", "the last line is left there for the shell to write on")

    def test_progress_counts_what_cannot_be_read(self):
        self.plot("c.plt", SQUARE)
        code, said = self.said_on_a_terminal("--print-to", "%n.svg", "square.plt", "missing.plt", "c.plt")
        self.assertEqual(code, 1)
        self.assertIn("kelhpgl: cannot read missing.plt: No such file or directory\n", self.screen(said))
        self.assertIn("\r\x1b[K3/3 c.plt", said)

    def test_no_progress_for_one_file(self):
        self.assertEqual(self.said_on_a_terminal("--print-to", "out.svg", "square.plt"), (0, ""))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *[word for word in sys.argv[2:] if word != "--update"]])
