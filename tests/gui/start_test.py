#!/usr/bin/env python3
"""How the viewer starts, ends, and tells a host that it ends badly; see suite.py."""
import os
import signal
import subprocess
import tempfile
import time

from suite import HELPERS, KELHPGL, TITLE, beside, expect_picture, is_picture, picture, run_all, wait_for

FATAL = "KEL Graphics Fatal Error"
MESSAGE = "KEL_MESSAGE 1537"
ADVICE = "Delete older version(s) of KEL frontend software and reinstall the latest one."
ROOM = 255  # bytes of a message about the toolkit

NO_DISPLAY = {name: value for name, value in os.environ.items()
              if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}


def run_unseen(*arguments, **environment):
    """Without a display."""
    return subprocess.run([KELHPGL, *arguments], env={**NO_DISPLAY, **environment}, stdin=subprocess.DEVNULL,
                          capture_output=True, text=True, check=False, timeout=30)


def other_toolkit(name):
    """The environment in which that library stands in front of the viewer's own."""
    return {"LD_LIBRARY_PATH": str(HELPERS / name)}


class Host:
    """A host's window; a context manager."""

    def __init__(self, desktop):
        self.environment = desktop.environment

    def __enter__(self):
        self.process = subprocess.Popen([HELPERS / "x11_listener"], env=self.environment, stdout=subprocess.PIPE)
        os.set_blocking(self.process.stdout.fileno(), False)
        self.window = self.heard()
        return self

    def __exit__(self, *error):
        self.process.kill()
        self.process.communicate()

    def heard(self):
        """The next line of the listener."""
        return wait_for("the host's window", self.process.stdout.readline).decode().strip()


def answer_box(desktop, viewer, title):
    """Waits for a message box, and presses its button."""
    box = wait_for("the box", lambda: viewer.windows(title))[0]
    wait_for("the box's focus", box.is_active)
    desktop.xdotool("key", "Return")


def close_button_ends_it(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        viewer.window().close_button()
        viewer.outcome(0)


def signals_end_it(desktop, plot):
    for number in signal.SIGTERM, signal.SIGINT, signal.SIGHUP:
        with desktop.viewer(KELHPGL, plot) as viewer:
            expect_picture(viewer, plot)
            viewer.process.send_signal(number)
            viewer.outcome(0)


def a_signal_ends_it_before_the_first_picture(desktop, plot):
    """The pipe has no writer, so the window is not shown yet."""
    pipe = plot.with_name("pipe")
    os.mkfifo(pipe)
    for number in signal.SIGTERM, signal.SIGINT:
        with desktop.viewer(KELHPGL, pipe) as viewer:
            with open(pipe, "wb"):  # waits until the viewer has opened it
                assert not viewer.windows(TITLE)
                viewer.process.send_signal(number)
                viewer.outcome(0)


def leaves_no_file_behind(desktop, plot):
    with tempfile.TemporaryDirectory() as folder:
        with desktop.viewer(KELHPGL, plot, folder=folder) as viewer:
            expect_picture(viewer, plot)
            viewer.end()
        assert os.listdir(folder) == [], os.listdir(folder)


def nobody_is_told_of_a_good_end(desktop, plot):
    with Host(desktop) as host:
        with desktop.viewer(KELHPGL, "-I=7", f"-P={host.window}", plot) as viewer:
            expect_picture(viewer, plot)
            viewer.end()
        box_of_other_toolkit(desktop, host, "toolkit_without_version", 8)  # the first that is heard


def box_of_other_toolkit(desktop, host, name, number):
    with desktop.viewer(KELHPGL, f"-I={number}", f"-p={host.window}", environment=other_toolkit(name)) as viewer:
        answer_box(desktop, viewer, FATAL)
        viewer.outcome(111)
    assert host.heard() == f"{MESSAGE} {number} 0 0 0"


def other_toolkits_are_refused(desktop, _):
    with Host(desktop) as host:
        box_of_other_toolkit(desktop, host, "toolkit_without_version", 77)
        box_of_other_toolkit(desktop, host, "toolkit_of_next_version", 4294967295)


def other_toolkits_are_named(*_):
    library = HELPERS / "toolkit_of_next_version" / "libQRVEL.so"
    unsent = "no message is sent to window 123456: no X11 display answers"
    wrong_version = (f"\nWrong Version of W Lib\n\n  - W:\t00401001 ({str(library)[:128]})\n"
                     f"  - App:\t00401000 ({str(KELHPGL)[:128]})\n\n{ADVICE}")[:ROOM]
    for name, text in (("toolkit_without_version", "Unable to get W Lib Version"),
                       ("toolkit_of_next_version", wrong_version)):
        done = run_unseen("-I=5", "-P=123456", **other_toolkit(name))
        assert done.returncode == 111, done
        assert done.stderr == f"{FATAL}: {text}\n{unsent}\n", done.stderr


def a_missing_language_ends_it(desktop, plot):
    beside(plot, "HPGL.ini", "LANG=xx\n")
    configuration = {"KEL_CONFIG_DIR": str(plot.parent)}
    with Host(desktop) as host:
        with desktop.viewer(KELHPGL, "-I=31", f"-P={host.window}", plot, environment=configuration) as viewer:
            answer_box(desktop, viewer, TITLE)
            viewer.outcome(1)
        assert host.heard() == f"{MESSAGE} 31 0 0 0"
    done = run_unseen("-P=5", plot, QT_QPA_PLATFORM="offscreen", **configuration)
    assert done.returncode == 1 and "Unable to open language file" in done.stderr, done


def bad_ends_without_a_window_are_told(desktop, plot):
    """Once each. What is written well is no bad end."""
    nowhere = plot.parent / "nowhere"
    ends = (("--print-to", nowhere / "a.pdf", plot), ("--picture", nowhere / "a.png", plot),
            ("--picture", plot.with_suffix(".png"), nowhere / "a.plt"), ("--print-to", plot.with_suffix(".pdf"), nowhere))
    with Host(desktop) as host:
        for number, words in enumerate(ends, start=41):
            with desktop.viewer(KELHPGL, "-I=7", f"-P={host.window}", "--print-to", plot.with_suffix(".svg"),
                                plot) as viewer:
                viewer.outcome(0)
            with desktop.viewer(KELHPGL, f"-I={number}", f"-P={host.window}", *words) as viewer:
                said = viewer.outcome(1)
            assert said.count("\n") == 1 and "nowhere" in said, said
            assert host.heard() == f"{MESSAGE} {number} 0 0 0"


def signals_end_it_while_a_box_waits(desktop, plot):
    beside(plot, "HPGL.ini", "LANG=xx\n")
    for number in signal.SIGTERM, signal.SIGINT:
        with desktop.viewer(KELHPGL, plot, environment={"KEL_CONFIG_DIR": str(plot.parent)}) as viewer:
            wait_for("the box", lambda: viewer.windows(TITLE))
            viewer.process.send_signal(number)
            viewer.outcome(1)


def the_end_does_not_wait_for_a_long_paint(desktop, plot):
    """Wide lines from end to end: more of them than any machine draws in the time."""
    plot.write_text("IN;SP1;PW5;PU0,0;PD" + "9000,9000,0,9000,9000,0,0,0," * 400_000 + "0,0;")
    with desktop.viewer(KELHPGL, "--as-is", plot) as viewer:
        viewer.window()
        began = time.monotonic()
        viewer.process.send_signal(signal.SIGTERM)
        viewer.outcome(0)
        assert time.monotonic() - began < 10, time.monotonic() - began


def displays_that_do_not_answer(*_):
    """Qt would end the process by itself."""
    for settings in ({"WAYLAND_DISPLAY": "wayland-9"}, {"QT_QPA_PLATFORM": "wayland", "WAYLAND_DISPLAY": "wayland-9"},
                     {"QT_QPA_PLATFORM": "nothing"}, {"QT_QPA_PLATFORM": "wayland;xcb", "DISPLAY": ":97"}):
        done = run_unseen(**settings)
        assert done.returncode == 1 and "no display" in done.stderr, (settings, done)
        done = run_unseen(**settings, **other_toolkit("toolkit_without_version"))
        assert done.returncode == 111 and "Unable to get W Lib Version" in done.stderr, (settings, done)


def a_picture_file_is_written_without_a_word(_, plot):
    done = run_unseen("--picture", plot.with_suffix(".png"), plot)
    assert done.returncode == 0 and done.stderr == "" and done.stdout == "", done


def without_a_display(_, plot):
    done = run_unseen(plot)
    assert done.returncode == 1, done
    assert "no display" in done.stderr and "Gbtmp: unable to initialize W" in done.stderr, done.stderr
    file = plot.with_suffix(".png")
    done = run_unseen("--picture", file, "--size", "640x480", plot)
    assert done.returncode == 0, done
    shown = picture.read(file)
    assert shown.shape == (480, 640), shown.shape
    assert is_picture(shown, plot)


run_all(close_button_ends_it, signals_end_it, a_signal_ends_it_before_the_first_picture, leaves_no_file_behind,
        nobody_is_told_of_a_good_end, other_toolkits_are_refused, other_toolkits_are_named, a_missing_language_ends_it,
        bad_ends_without_a_window_are_told, signals_end_it_while_a_box_waits, the_end_does_not_wait_for_a_long_paint, without_a_display,
        displays_that_do_not_answer, a_picture_file_is_written_without_a_word)
