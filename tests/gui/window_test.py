#!/usr/bin/env python3
"""The viewer in a real window, as a person sees and uses it.

usage: window_test.py KELHPGL HPGLDUMP [NAME...]

A failure leaves a picture of the window in the folder gui-failures beside the current one.
"""
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import traceback

sys.path.insert(1, str(pathlib.Path(__file__).resolve().parents[1] / "pictures"))  # for what follows
import comparison
import drawing
from desktop import Desktop, wait_for
from picture import read_png

KELHPGL = pathlib.Path(sys.argv[1]).resolve()
HPGLDUMP = pathlib.Path(sys.argv[2]).resolve()

# Thin lines in several colours, in every direction.
PLOT = ("IN;SC0,1,0,1;SP1;PU0,0;PD4000,0,4000,3000,0,3000,0,0;SP2;PU500,500;PD3500,2500;PU3500,500;PD500,2500;"
        "SP6;" + "".join(f"PU2000,1500;PD{2000 + 1200 * dx},{1500 + 900 * dy};"
                         for dx, dy in ((1, 0), (0, 1), (-1, 0), (0, -1), (0.5, 1), (-0.5, 1), (1, -0.5), (-1, -0.5))))


def wrong_places(picture, plot, *options):
    """Where a picture does not show the plot in its size."""
    lines = drawing.dump(HPGLDUMP, plot, picture.width, picture.height, *options)
    return comparison.differences(picture, drawing.drawn(lines, picture.width, picture.height))


def expect_picture(viewer, plot, *options):
    """Waits until the window shows the plot in its present size."""
    def is_right():
        picture = viewer.picture()
        return picture is not None and not wrong_places(picture, plot, *options)
    wait_for("the right picture", is_right)


def opens_a_file(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        assert viewer.geometry()[2:] == (500, 500), viewer.geometry()
        assert viewer.frame() == (50, 50), viewer.frame()


def resizing_refits(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        for width, height in ((900, 400), (400, 800), (1000, 700)):
            viewer.resize(width, height)
            wait_for("the size", lambda: viewer.geometry()[2:] == (width, height))
            expect_picture(viewer, plot)


def reads_a_pipe(desktop, plot):
    with subprocess.Popen(["cat", plot], stdout=subprocess.PIPE) as generator:
        with desktop.viewer(KELHPGL, stdin=generator.stdout) as viewer:
            expect_picture(viewer, plot)


def empty_beside(plot):
    empty = plot.with_name("empty.plt")
    empty.write_text("")
    return empty


def shows_an_empty_window(desktop, plot):
    with desktop.viewer(KELHPGL) as viewer:
        expect_picture(viewer, empty_beside(plot))


def zooms_by_dragging(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        viewer.drag(100, 100, 380, 330)
        expect_picture(viewer, plot, "--zoom", "100,100,380,330")
        viewer.drag(400, 420, 60, 50)
        expect_picture(viewer, plot, "--zoom", "100,100,380,330", "--zoom", "400,420,60,50")
        assert wrong_places(viewer.picture(), plot), "no zoom to be seen"


def a_click_changes_nothing(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        viewer.drag(200, 200, 200, 200)
        viewer.drag(300, 100, 300, 101)
        expect_picture(viewer, plot)


def close_button_ends_it(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        viewer.close_button()
        assert viewer.wait() == 0, viewer.process.returncode


def signals_end_it(desktop, plot):
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        with desktop.viewer(KELHPGL, plot) as viewer:
            expect_picture(viewer, plot)
            viewer.process.send_signal(number)
            assert viewer.wait() == 0, (number, viewer.process.returncode)


def leaves_no_file_behind(desktop, plot):
    with tempfile.TemporaryDirectory() as folder:
        with desktop.viewer(KELHPGL, plot, folder=folder) as viewer:
            expect_picture(viewer, plot)
            viewer.process.terminate()
            viewer.wait()
        assert os.listdir(folder) == [], os.listdir(folder)


def without_a_display(desktop, plot):
    environment = {name: value for name, value in os.environ.items()
                   if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}
    done = subprocess.run([KELHPGL, plot], env=environment, stdin=subprocess.DEVNULL, capture_output=True, check=False,
                          timeout=30)
    assert done.returncode == 1, done
    assert b"no display" in done.stderr and b"Gbtmp: unable to initialize W" in done.stderr, done.stderr
    picture = plot.with_suffix(".png")
    done = subprocess.run([KELHPGL, "--picture", picture, "--size", "640x480", plot], env=environment,
                          stdin=subprocess.DEVNULL, capture_output=True, check=False, timeout=30)
    assert done.returncode == 0, done
    image = read_png(picture)
    assert (image.width, image.height) == (640, 480), (image.width, image.height)
    wrong = wrong_places(image, plot)
    assert not wrong, wrong[:5]


def picture_sizes_have_limits(desktop, plot):
    picture = plot.with_name("size.png")

    def draw(size):
        return subprocess.run([KELHPGL, "--picture", picture, "--size", size, plot], stdin=subprocess.DEVNULL,
                              capture_output=True, check=False, timeout=30)
    for size in ("1x1", "16384x1", "1x16384"):
        done = draw(size)
        assert done.returncode == 0, done
        image = read_png(picture)
        assert f"{image.width}x{image.height}" == size, size
        picture.unlink()
    for size in ("0x1", "1x0", "16385x1", "1x16385", "100000x1", "-1x1", "500", "500x500x"):
        done = draw(size)
        assert done.returncode == 2 and b"no size: " + size.encode() in done.stderr, done
        assert not picture.exists(), size


def the_window_has_a_least_size(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        viewer.resize(100, 100)
        wait_for("the least size", lambda: viewer.geometry()[2:] == (200, 160))
        expect_picture(viewer, plot)


def a_missing_file_is_said(desktop, plot):
    """On standard error and in a box in front of the window, which stays."""
    missing = plot.with_name("missing.plt")
    with desktop.viewer(KELHPGL, missing) as viewer:
        viewer.window()
        windows = wait_for("the box", lambda: len(desktop.stacking()) == 2 and desktop.stacking())
        assert "Height: 500" in desktop.ask("xwininfo", "-id", str(windows[0])), "the box is not in front"
        viewer.process.terminate()
        viewer.wait()
        assert b"missing.plt" in viewer.process.stderr.read()


def a_file_without_a_drawing_is_said(desktop, plot):
    """A program, whose bytes would draw by chance: an empty picture, a line on standard error and a box."""
    program = plot.with_name("program.plt")
    program.write_bytes(pathlib.Path("/bin/sh").read_bytes() * 20)
    with desktop.viewer(KELHPGL, program) as viewer:
        viewer.window()
        wait_for("the box", lambda: len(desktop.stacking()) == 2)
        desktop.ask("xdotool", "key", "Return")  # the box has the focus
        wait_for("the box to go", lambda: len(desktop.stacking()) == 1)
        expect_picture(viewer, empty_beside(plot))
        viewer.process.terminate()
        viewer.wait()
        assert b"program.plt holds no HP-GL drawing" in viewer.process.stderr.read()


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
        assert viewer.wait() == 2
        assert b"unknown option: --unknown" in viewer.process.stderr.read()


TESTS = [opens_a_file, resizing_refits, reads_a_pipe, shows_an_empty_window, zooms_by_dragging, a_click_changes_nothing,
         close_button_ends_it, signals_end_it, leaves_no_file_behind, without_a_display, picture_sizes_have_limits,
         the_window_has_a_least_size, a_missing_file_is_said, a_file_without_a_drawing_is_said, file_names_are_bytes,
         options_of_others_are_passed_over]


def run(test, desktop, plot):
    try:
        test(desktop, plot)
        print(f"passed {test.__name__}")
        return True
    except Exception:  # whatever went wrong is this test's failure
        traceback.print_exc()
        pathlib.Path("gui-failures").mkdir(exist_ok=True)
        subprocess.run(["import", "-silent", "-window", "root", f"gui-failures/{test.__name__}.png"],
                       env=desktop.environment, check=False)
        print(f"FAILED {test.__name__}")
        return False


def main():
    chosen = sys.argv[3:]
    with tempfile.TemporaryDirectory() as folder, Desktop() as desktop:
        plot = pathlib.Path(folder) / "thin.plt"
        plot.write_text(PLOT)
        results = [run(test, desktop, plot) for test in TESTS if not chosen or test.__name__ in chosen]
    print(f"{results.count(True)} passed, {results.count(False)} failed")
    return 0 if results and all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
