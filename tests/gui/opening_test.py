#!/usr/bin/env python3
"""What is opened, how it is shown, and in which sizes; see suite.py."""
import os
import pathlib
import re
import subprocess

from suite import KELHPGL, beside, expect_picture, picture, run_all, wait_for


def opens_a_file(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        assert viewer.window().geometry()[2:] == (500, 500), viewer.window().geometry()
        assert viewer.window().frame()[:2] == (50, 50), viewer.window().frame()


def resizing_refits(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        for size in (900, 400), (480, 800), (1000, 700):
            viewer.resize(*size)
            expect_picture(viewer, plot)


def the_window_has_a_least_size(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        hints = desktop.ask("xprop", "-id", viewer.window().number, "WM_NORMAL_HINTS")
        width, height = map(int, re.search(r"minimum size: (\d+) by (\d+)", hints).groups())
        assert 200 <= width <= 500 and 160 <= height <= 300, (width, height)
        viewer.window().resize(10, 10)
        wait_for("the least size", lambda: viewer.window().geometry()[2:] == (width, height))
        expect_picture(viewer, plot)


def reads_a_pipe(desktop, plot):
    with subprocess.Popen(["cat", plot], stdout=subprocess.PIPE) as generator:
        with desktop.viewer(KELHPGL, stdin=generator.stdout) as viewer:
            expect_picture(viewer, plot)


def a_missing_file_is_said(desktop, plot):
    """On standard error and in a box in front of the window, which stays."""
    with desktop.viewer(KELHPGL, plot.with_name("missing.plt")) as viewer:
        back = int(viewer.window().number)
        wait_for("the box in front", lambda: len(desktop.stacking()) == 2 and desktop.stacking()[0] == back)
        assert "missing.plt" in viewer.end()


def a_file_without_a_drawing_is_said(desktop, plot):
    """A program, whose bytes would draw by chance: an empty picture, a line on standard error and a box."""
    program = beside(plot, "program.plt")
    program.write_bytes(pathlib.Path("/bin/sh").read_bytes() * 20)
    with desktop.viewer(KELHPGL, program) as viewer:
        window = viewer.window()
        wait_for("the box", lambda: len(desktop.stacking()) == 2 and not window.is_active())
        desktop.xdotool("key", "Return")  # the box has the focus
        wait_for("the box to go", lambda: len(desktop.stacking()) == 1)
        expect_picture(viewer, beside(plot, "empty.plt"))
        assert "program.plt holds no HP-GL drawing" in viewer.end()


def file_names_are_bytes(desktop, plot):
    name = os.fsencode(plot.parent) + b"/d\xe4 'x\".plt"
    with open(name, "wb") as file:
        file.write(plot.read_bytes())
    with desktop.viewer(KELHPGL, os.fsdecode(name)) as viewer:
        expect_picture(viewer, plot)


def options_of_others_are_passed_over(desktop, plot):
    with desktop.viewer(KELHPGL, "-X=5", "-I=", "-p=0", "-Q", plot) as viewer:
        expect_picture(viewer, plot)
    with desktop.viewer(KELHPGL, "--unknown") as viewer:
        assert "unknown option: --unknown" in viewer.outcome(2)


def a_german_session_shows_the_same_picture(desktop, plot):
    """Its numbers have a decimal comma, the plot's keep their point."""
    plot.write_text("IN;SP1;PU0,0;PD1000.5,0,1000.5,700.25;CI100.75;PW0.1;SP2;PA100.5,100.5;")
    german = {"LC_ALL": "de_DE.UTF-8", "LANG": "de_DE.UTF-8"}
    with desktop.viewer(KELHPGL, "--as-is", plot, environment=german) as viewer:
        expect_picture(viewer, plot)


def pixels_of_a_dense_screen_are_all_used(desktop, plot):
    with desktop.viewer(KELHPGL, plot, environment={"QT_SCALE_FACTOR": "2"}) as viewer:
        expect_picture(viewer, plot)
        assert viewer.window().geometry()[2:] == (1000, 1000), viewer.window().geometry()
        viewer.resize(870, 642)
        expect_picture(viewer, plot)


def unreadable_configuration_is_passed_over(desktop, plot):
    """A folder in the file's place, texts that are no texts, and a language with a single one."""
    plot.with_name("HPGL.ini").mkdir()
    with desktop.viewer(KELHPGL, plot, environment={"KEL_CONFIG_DIR": str(plot.parent)}) as viewer:
        expect_picture(viewer, plot)
        assert "HPGL.ini: no ordinary file" in viewer.end()
    plot.with_name("HPGL.ini").rmdir()
    beside(plot, "HPGL.ini", "LANG=xx\n")
    plot.with_name("texts").mkdir()
    for texts in bytes(range(256)) * 40, b"=\n" * 999 + b"HTIT1", b"ABTX17=~Gesamt\n":
        plot.with_name("texts").joinpath("HPGL_xx.txt").write_bytes(texts)
        with desktop.viewer(KELHPGL, plot, environment={"KEL_CONFIG_DIR": str(plot.parent)}) as viewer:
            expect_picture(viewer, plot)
            said = viewer.end()
            assert "kelhpgl:" not in said, said  # texts that are missing are those of the program


def a_pipe_is_no_configuration(desktop, plot):
    """Nobody writes to it."""
    os.mkfifo(plot.with_name("HPGL.ini"))
    with desktop.viewer(KELHPGL, plot, environment={"KEL_CONFIG_DIR": str(plot.parent)}) as viewer:
        expect_picture(viewer, plot)
        assert "cannot read" in viewer.end()


def several_notices_share_a_box(desktop, plot):
    missing = [plot.with_name(f"missing{i}.plt") for i in range(5)]
    with desktop.viewer(KELHPGL, *missing, plot) as viewer:
        window = viewer.window()
        wait_for("the box", lambda: len(desktop.stacking()) == 2 and not window.is_active())
        desktop.xdotool("key", "Return")
        expect_picture(viewer, plot)
        assert len(desktop.stacking()) == 1, desktop.stacking()
        said = viewer.end()
        assert all(str(name) in said for name in missing), said


def logs_that_cannot_be_written_are_done_without(desktop, plot):
    """The working folder is gone, which stops root too."""
    beside(plot, "HPGL.ini", "LOGF=echo\n")
    settings = {"KEL_CONFIG_DIR": str(plot.parent), "DGTRACE": "3"}
    gone = plot.with_name("gone")
    gone.mkdir()
    command = f'cd "{gone}" && rmdir "{gone}" && exec "$@"'
    with desktop.viewer("sh", "-c", command, "sh", KELHPGL, plot, environment=settings) as viewer:
        expect_picture(viewer, plot)
        said = viewer.end()
        assert "no trace file can be written" in said and "the echo file cannot be written" in said, said


def picture_sizes_have_limits(desktop, plot):
    file = plot.with_name("size.png")

    def draw(size):
        return subprocess.run([KELHPGL, "--picture", file, "--size", size, plot], stdin=subprocess.DEVNULL,
                              capture_output=True, check=False, timeout=30)
    for size in "1x1", "16384x1", "1x16384":
        done = draw(size)
        assert done.returncode == 0, done
        assert "{1}x{0}".format(*picture.read(file).shape) == size, size
        file.unlink()
    for size in "0x1", "1x0", "16385x1", "1x16385", "100000x1", "-1x1", "500", "500x500x":
        done = draw(size)
        assert done.returncode == 2 and b"no size: " + size.encode() in done.stderr, done
        assert not file.exists(), size


run_all(opens_a_file, resizing_refits, the_window_has_a_least_size, reads_a_pipe, a_missing_file_is_said, a_file_without_a_drawing_is_said, file_names_are_bytes,
        options_of_others_are_passed_over, a_german_session_shows_the_same_picture,
        pixels_of_a_dense_screen_are_all_used, unreadable_configuration_is_passed_over,
        a_pipe_is_no_configuration, several_notices_share_a_box, logs_that_cannot_be_written_are_done_without,
        picture_sizes_have_limits)
