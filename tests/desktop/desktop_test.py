#!/usr/bin/env python3
"""What is installed, as a desktop uses it: kinds of files, small pictures, entries, manual pages, completions.

usage: desktop_test.py BUILD [NAME...]

Installs what BUILD holds into a folder of its own, as a package would be. Small pictures are made in bubblewrap, as
desktops make them: without a network, a home and a display, on a system that cannot be written to. Where the kernel
grants no namespaces the first line says so, and they are made without.
"""
import os
import pathlib
import re
import shlex
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
SOURCE = HERE.parent.parent
BUILD = pathlib.Path(sys.argv[1]).resolve()
PATIENCE = 60  # seconds; a loaded machine is slow
PLOT = "application/vnd.hp-hpgl"
PROGRAMS = ("kelhpgl", "hpglsend", "hpglplain", "hpgldump")
ICON_SIZES = (16, 24, 32, 48, 64, 128, 256)

DRAWING = b"SP1;PU0,0;PD4000,0,4000,3000,0,3000,0,0;PU1000,1000;PD3000,2000;PU;SP0;"
ESC = b"\033"
PJL = ESC + b"%-12345X@PJL JOB NAME = \"sheet\"\r\n@PJL ENTER LANGUAGE = HPGL2\r\n"
PCL = ESC + b"E" + ESC + b"&l26A" + ESC + b"*t300R" + ESC + b"*r1A" + ESC + b"*b4W\xff\x00\xff\x00" + ESC + b"*rB" + ESC + b"E"
PNG = b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1\x08\0\0\0\0:~\x9bU"
JPEG = b"\xff\xd8\xff\xe0\0\x10JFIF\0\1\1\0\0\1\0\1\0\0"

# name of the file, its bytes, and whether it is a plot
KINDS = [
    # by content
    ("initialized", b"IN;" + DRAWING, True),
    ("defaults", b"DF;" + DRAWING, True),
    ("begun", b"BP;IN;" + DRAWING, True),
    ("switched", ESC + b"%-1BIN;" + DRAWING, True),
    ("of a driver", PJL + ESC + b"E" + ESC + b"%0BIN;" + DRAWING, True),
    ("set up at length", ESC + b"E" + b" " * 254 + ESC + b"%0BIN;" + DRAWING, True),
    ("controlled", ESC + b".(" + ESC + b".I81;;17:IN;" + DRAWING, True),
    # by name
    *[(f"by name.{ending}", DRAWING, True) for ending in ("plt", "hpgl", "hpg", "hgl", "hpgl2", "gl", "PLT")],
    # what is none
    ("photo.jpg", JPEG, False),
    ("photo", JPEG, False),
    ("picture.png", PNG, False),
    ("letter.txt", b"A plotter starts with IN; or with DF; and BP;IN too.\n", False),
    ("letter", b"A plotter starts with IN; or with DF; and BP;IN too.\n", False),
    ("list.txt", b"IN; the list of those who come in\n", False),
    ("word", b"INVOICE\n", False),
    ("page.prn", PCL, False),
    ("page.pcl", PCL, False),
    ("page with a plot.pcl", ESC + b"E" + ESC + b"%0BIN;" + DRAWING + ESC + b"%0A", False),
    ("switched too late", ESC + b"E" + b" " * 255 + ESC + b"%0BIN;" + DRAWING, False),
    ("calculator.hp", b"HPHP48-C" + b"\0" * 60, False),
    ("pages.prn", b"%!PS-Adobe-3.0\n", False),
]


def works(*command):
    try:
        return subprocess.run(command, capture_output=True, timeout=PATIENCE, check=False).returncode == 0
    except OSError:
        return False


CONFINED = works("bwrap", "--unshare-all", "--ro-bind", "/", "/", "true")


class Desktop(unittest.TestCase):
    """One installation for all tests; a folder of its own for each."""

    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory()  # pylint: disable=consider-using-with
        cls.addClassCleanup(scratch.cleanup)
        cls.root = pathlib.Path(scratch.name)
        cls.share = cls.root / "usr" / "share"
        cls.programs = cls.root / "usr" / "bin"
        subprocess.run(["cmake", "--install", BUILD, "--prefix", "/usr"], capture_output=True, check=True,
                       env={**os.environ, "DESTDIR": str(cls.root)})
        shutil.copy("/usr/share/mime/packages/freedesktop.org.xml", cls.share / "mime" / "packages")
        subprocess.run(["update-mime-database", cls.share / "mime"], capture_output=True, check=True)
        subprocess.run(["update-desktop-database", cls.share / "applications"], capture_output=True, check=True)

    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)
        self.home = self.folder / "home"
        self.environment = {"PATH": f"{self.programs}:/usr/bin:/bin", "LC_ALL": "C.UTF-8", "HOME": str(self.home),
                            "XDG_DATA_DIRS": str(self.share), "GIO_USE_VFS": "local", "XDG_CURRENT_DESKTOP": "GNOME"}

    def said(self, *command, **more):
        """What a command writes to standard output."""
        return subprocess.run(command, capture_output=True, text=True, timeout=PATIENCE, check=True, cwd=self.folder,
                              env={**self.environment, **more}).stdout

    def text(self, *inside):
        return self.share.joinpath(*inside).read_text(encoding="utf-8")

    def manual(self, file):
        return subprocess.run(["gzip", "-dc", file], capture_output=True, text=True, check=True).stdout


class Kinds(Desktop):
    def kind(self, name):
        found = re.search(r"standard::content-type: (\S+)", self.said("gio", "info", self.folder / name))
        return found and found[1]

    def test_of_files(self):
        for name, data, is_plot in KINDS:
            with self.subTest(name):
                (self.folder / name).write_bytes(data)
                kind = self.kind(name)
                (self.assertEqual if is_plot else self.assertNotEqual)(kind, PLOT)
                self.assertEqual(self.said("xdg-mime", "query", "filetype", name).strip(), kind)

    def test_of_the_examples(self):
        examples = sorted((self.share / "doc" / "kelhpgl" / "examples").iterdir())
        self.assertGreater(len(examples), 5)
        for example in examples:
            shutil.copy(example, self.folder / "example")
            self.assertEqual(self.kind("example"), PLOT, example.name)

    def test_has_names_in_two_languages(self):
        about = self.text("mime", "packages", "kelhpgl.xml")
        self.assertIn("<comment>plotter drawing", about)
        self.assertIn('<comment xml:lang="de">Plotterzeichnung', about)


class Entry(Desktop):
    def test_is_what_opens_plots(self):
        self.assertEqual(self.said("xdg-mime", "query", "default", PLOT).strip(), "kelhpgl.desktop")
        self.assertIn("kelhpgl.desktop", self.said("gio", "mime", PLOT))

    def test_has_an_icon_of_every_size(self):
        icons = self.share / "icons" / "hicolor"
        for size in ICON_SIZES:
            data = (icons / f"{size}x{size}" / "apps" / "kelhpgl.png").read_bytes()
            self.assertEqual(struct.unpack(">II", data[16:24]), (size, size))
        self.assertTrue((icons / "scalable" / "apps" / "kelhpgl.svg").is_file())

    def test_a_software_centre_finds_it(self):
        self.assertIn('<launchable type="desktop-id">kelhpgl.desktop</launchable>',
                      self.text("metainfo", "org.kelhpgl.Display.metainfo.xml"))
        self.assertTrue((self.share / "applications" / "kelhpgl.desktop").is_file())


class Thumbnails(Desktop):
    def setUp(self):
        super().setUp()
        self.plot = self.folder / "in" / "a drawing.plt"
        self.plot.parent.mkdir()
        self.plot.write_bytes(b"IN;" + DRAWING)
        self.output = self.folder / "out"
        self.output.mkdir()

    def call(self, size, name, plot):
        """The entry's command as desktops read it."""
        line = re.search("^Exec=(.*)$", self.text("thumbnailers", "kelhpgl.thumbnailer"), re.M)[1]
        values = {"%o": str(self.output / name), "%s": str(size), "%i": str(plot)}
        return [re.sub("%[osi]", lambda found: values[found[0]], word) for word in shlex.split(line)]

    def make(self, size=128, name="small.png", plot=None, confined=CONFINED):
        plot = plot or self.plot
        command = self.call(size, name, plot)
        if confined:
            command = ["bwrap", "--unshare-all", "--die-with-parent", "--new-session", "--ro-bind", "/usr", "/usr",
                       "--symlink", "usr/bin", "/bin", "--symlink", "usr/lib", "/lib", "--symlink", "usr/lib64", "/lib64",
                       "--ro-bind-try", "/etc/fonts", "/etc/fonts", "--ro-bind-try", "/etc/ld.so.cache", "/etc/ld.so.cache",
                       "--proc", "/proc", "--dev", "/dev", "--ro-bind", self.root, self.root, "--ro-bind", plot, plot,
                       "--bind", self.output, self.output, "--chdir", "/", "--", *command]
        return subprocess.run(command, capture_output=True, text=True, timeout=PATIENCE, check=False,
                              env=self.environment, cwd="/")

    def made(self):
        return sorted(file.name for file in self.output.iterdir())

    def test_have_the_size_that_is_asked_for(self):
        for size in (128, 256, 512, 1024):
            done = self.make(size)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
            self.assertEqual(self.made(), ["small.png"])
            data = (self.output / "small.png").read_bytes()
            self.assertEqual(struct.unpack(">II", data[16:24]), (size, size))

    def test_show_the_drawing(self):
        self.assertEqual(self.make().returncode, 0)
        expected = self.folder / "expected.png"
        self.said("kelhpgl", "--picture", expected, "--size", "128x128", self.plot)
        self.assertEqual((self.output / "small.png").read_bytes(), expected.read_bytes())
        other = self.folder / "in" / "other.plt"
        other.write_bytes(b"IN;SP1;PU0,0;PD3000,3000;")
        self.assertEqual(self.make(name="other.png", plot=other).returncode, 0)
        self.assertNotEqual((self.output / "other.png").read_bytes(), expected.read_bytes())

    def test_go_under_any_name(self):
        """Some desktops want them under one that does not say what they are."""
        self.make()
        (self.output / ".thumbnail.X1Y2Z3").touch()
        done = self.make(name=".thumbnail.X1Y2Z3")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual(self.made(), [".thumbnail.X1Y2Z3", "small.png"])
        self.assertEqual((self.output / ".thumbnail.X1Y2Z3").read_bytes(), (self.output / "small.png").read_bytes())

    def test_of_what_is_no_plot_there_are_none(self):
        photo = self.folder / "in" / "photo.plt"
        photo.write_bytes(JPEG + bytes(range(256)) * 8)
        for name in ("small.png", "small"):
            self.assertEqual(self.make(name=name, plot=photo).returncode, 1)
            self.assertEqual(self.made(), [])

    def test_leave_nothing_behind(self):
        """Also where nothing would keep them from it."""
        self.assertEqual(self.make(confined=False).returncode, 0)
        self.assertEqual(sorted(file.name for file in self.folder.iterdir()), ["in", "out"])
        self.assertEqual(self.made(), ["small.png"])


class Programs(Desktop):
    def test_find_their_libraries_where_they_lie(self):
        for program in ("usr/bin/kelhpgl", *(file.relative_to(self.root) for file in self.root.rglob("lib*.so"))):
            for name, place in re.findall(r"(lib(?:QRVEL|kelplatform)\.so) => (\S+)", self.said("ldd", self.root / program)):
                self.assertEqual(pathlib.Path(place).resolve(), next(self.root.rglob(name)).resolve())
        self.assertIn("libQRVEL.so", self.said("ldd", self.programs / "kelhpgl"))

    def test_find_their_texts_beside_the_library(self):
        (self.folder / "HPGL.ini").write_text("LANG=de\n")
        done = subprocess.run([self.programs / "kelhpgl", "--picture", "out.png", "none.plt"], capture_output=True, text=True,
                              cwd=self.folder, timeout=PATIENCE, check=False,
                              env={**self.environment, "KEL_CONFIG_DIR": str(self.folder), "XDG_DATA_DIRS": "/nonexistent"})
        self.assertIn("none.plt kann nicht gelesen werden", done.stderr)

    def test_no_path_of_the_build_is_left(self):
        for file in (file for file in self.root.rglob("*") if file.is_file() and not file.is_symlink()):
            self.assertNotIn(bytes(SOURCE), file.read_bytes(), file.name)


def options_in_the_table():
    """Of the viewer, out of its table."""
    rows = (SOURCE / "src" / "qrvel" / "base" / "options.cpp").read_text(encoding="utf-8")
    return set(re.findall(r'^    \{"(--[a-z-]+)",', rows, re.M))


def options_of(program, root):
    if program == "kelhpgl":
        return options_in_the_table()
    done = subprocess.run([root / program, "--help"], capture_output=True, text=True, stdin=subprocess.DEVNULL, check=False)
    return set(re.findall(r"--[a-z][a-z-]*|-o\b", done.stdout or re.sub("unknown option --help", "", done.stderr)))


class Manual(Desktop):
    def pages(self):
        return {file.name.removesuffix(".gz"): self.manual(file) for file in (self.share / "man").rglob("*.gz")}

    def test_has_a_page_for_each_program(self):
        self.assertEqual(sorted(self.pages()),
                         sorted(["HPGL.ini.5", "kelhpgl-thumbnailer.1", *(f"{program}.1" for program in PROGRAMS)]))

    def test_has_each_option(self):
        pages = self.pages()
        for program in PROGRAMS:
            told = {"-" + word for word in re.findall(r"(?:Fl|\||,) (-?[a-z][a-z-]*)", pages[f"{program}.1"])}
            self.assertEqual(options_of(program, self.programs) - told, set(), program)
            self.assertEqual({word for word in told if word.startswith("--")} - options_of(program, self.programs), set(), program)

    def test_refers_to_pages_that_are_there(self):
        pages = self.pages()
        for page, text in pages.items():
            for name, section in re.findall(r"^\.Xr (\S+) (\d)", text, re.M):
                self.assertIn(f"{name}.{section}", pages, page)


class Completions(Desktop):
    def files(self, program):
        return (self.share / "bash-completion" / "completions" / program,
                self.share / "zsh" / "vendor-completions" / f"_{program}",
                self.share / "fish" / "vendor_completions.d" / f"{program}.fish")

    def bash(self, *words):
        line = " ".join(("kelhpgl", *words))
        script = (f". /usr/share/bash-completion/bash_completion; . {self.files('kelhpgl')[0]}; COMP_WORDS=({line}); "
                  f"COMP_CWORD={len(words)} COMP_LINE='{line}' COMP_POINT={len(line)}; _kelhpgl; "
                  'printf "%s\\n" "${COMPREPLY[@]}"')
        return set(self.said("bash", "--norc", "-c", script).splitlines())

    def fish(self, *words):
        script = f"source {self.files('kelhpgl')[2]}; complete -C 'kelhpgl {' '.join(words)}'"
        self.home.mkdir(exist_ok=True)
        return {line.partition("\t")[0] for line in self.said("fish", "--no-config", "-c", script).splitlines()}

    def test_have_each_option(self):
        for program in PROGRAMS:
            bash, zsh, fish = (file.read_text(encoding="utf-8") for file in self.files(program))
            for option in options_of(program, self.programs):
                self.assertRegex(bash, rf"[' ]{option}[' ]")
                self.assertRegex(zsh, rf"'\*{option}['\[:]")
                self.assertRegex(fish, rf" -[ls] {option.lstrip('-')}\n| -[ls] {option.lstrip('-')} -")

    def test_of_words(self):
        for name in ("one.plt", "one.txt", "one.png"):
            (self.folder / name).touch()
        for shell in (self.bash, self.fish):
            self.assertEqual(shell("--pr"), {"--print-to"})
            self.assertEqual(shell("--page", "L"), {"Letter", "Legal"})
            self.assertEqual(shell("on"), {"one.plt"})
            self.assertIn("one.png", shell("--picture", "on"))


if __name__ == "__main__":
    print("small pictures are made in bubblewrap" if CONFINED else
          "NOT CONFINED: bubblewrap can make no namespaces here, small pictures are made without it", flush=True)
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
