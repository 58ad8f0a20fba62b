"""A desktop of its own for a test: Xvfb with a window manager, and the viewer on it as a person sees it."""
import contextlib
import io
import os
import pathlib
import re
import subprocess
import time

import numpy
import picture

PATIENCE = 30.0  # seconds until a state that does not come is a failure; a loaded machine is slow
SCREEN = 1920, 1200  # pixels; room for the viewer at twice its size
TITLE = "KEL HPGL Display"
KEYBOARD = "pc+us+macintosh_vndr/apple(alukbd)"  # one with F15
WHITE = 0xFFFFFF


def wait_for(what, condition, patience=PATIENCE):
    """Asks until the condition answers something true, and answers that."""
    end = time.monotonic() + patience
    while time.monotonic() < end:
        answer = condition()
        if answer:
            return answer
        time.sleep(0.02)
    raise AssertionError(f"waited {patience:.0f} s for {what}")


class Desktop:
    """Xvfb and openbox; a context manager."""

    test = "none"  # the one that runs

    def __enter__(self):
        with contextlib.ExitStack() as self.stack:  # ends what has been started when something fails
            self.display = self.start_server()
            self.environment = {**os.environ, "DISPLAY": self.display, "LC_ALL": "C.UTF-8"}
            self.environment.pop("WAYLAND_DISPLAY", None)
            # First: a window manager whose keyboard changes begins anew, and forgets windows that just come.
            self.ask("setxkbmap", "-symbols", KEYBOARD)
            self.start(["openbox"], env=self.environment)
            wait_for("the window manager",
                     lambda: "window id" in self.ask("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))
            self.stack = self.stack.pop_all()
        return self

    def __exit__(self, *error):
        self.stack.close()

    def start_server(self):
        """Answers the display's name. Without -noreset the server may restart between its first two clients."""
        read, write = os.pipe()
        size = "x".join(map(str, SCREEN))
        self.start(["Xvfb", "-displayfd", str(write), "-screen", "0", f"{size}x24", "-nolisten", "tcp", "-noreset"],
                   pass_fds=[write])
        os.close(write)
        with os.fdopen(read) as number:
            return ":" + number.readline().strip()

    def start(self, command, **options):
        process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **options)
        self.stack.callback(lambda: (process.kill(), process.wait()))
        return process

    def ask(self, *command):
        done = subprocess.run(list(map(str, command)), env=self.environment, capture_output=True, check=False,
                              timeout=PATIENCE)
        return done.stdout.decode("utf-8", "replace").strip()

    def xdotool(self, *words):
        return self.ask("xdotool", *words).split()

    def stacking(self):
        """The windows' numbers, the one in front last."""
        return [int(word, 16) for word in re.findall(r"0x[0-9a-f]+", self.ask("xprop", "-root",
                                                                             "_NET_CLIENT_LIST_STACKING"))]

    def save(self, name):
        """A picture of the whole screen."""
        pathlib.Path(name).parent.mkdir(parents=True, exist_ok=True)
        self.ask("import", "-silent", "-window", "root", name)

    def viewer(self, program, *arguments, stdin=subprocess.DEVNULL, folder=None, environment=None):
        return Viewer(self, [str(program), *map(str, arguments)], stdin, folder, environment or {})


class Window:
    """One window on the desktop."""

    def __init__(self, desktop, number):
        self.desktop = desktop
        self.number = number

    def geometry(self):
        """x, y, width, height of its inside on the screen."""
        lines = self.desktop.ask("xwininfo", "-id", self.number).splitlines()
        values = dict(line.strip().split(":", 1) for line in lines if ":" in line)
        names = "Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"
        return tuple(int(values[name]) for name in names)

    def numbers(self, name):
        """The numbers of one of its properties, in the order in which xprop writes them."""
        return [int(word) for word in re.findall(r"-?\b\d+\b", self.desktop.ask("xprop", "-id", self.number, name)
                                                 .split("=", 1)[-1])]

    def frame(self):
        """x, y, width, height with the window manager's frame."""
        left, right, top, bottom = self.numbers("_NET_FRAME_EXTENTS")
        x, y, width, height = self.geometry()
        return x - left, y - top, width + left + right, height + top + bottom

    def resize(self, width, height):
        """Asks for another size, and does not wait for it."""
        self.desktop.xdotool("windowsize", self.number, width, height)

    def picture(self):
        """Its inside; None while there is nothing of it to be had."""
        done = subprocess.run(["import", "-silent", "-window", str(self.number), "-depth", "8", "ppm:-"],
                              env=self.desktop.environment, capture_output=True, check=False, timeout=PATIENCE)
        return picture.read(io.BytesIO(done.stdout)) if done.stdout.startswith(b"P6") else None

    def click(self, x, y):
        """With the left button; from its upper left corner."""
        left, top, _, _ = self.geometry()
        self.desktop.xdotool("mousemove", left + x, top + y, "click", 1)

    def close_button(self):
        """What the window manager's close button does."""
        self.desktop.ask("wmctrl", "-i", "-c", self.number)

    def activate(self):
        """Asks for the focus, and does not wait for it."""
        self.desktop.xdotool("windowactivate", self.number)

    def is_box(self):
        """Whether it belongs to another window, whose title it may have."""
        return "window id" in self.desktop.ask("xprop", "-id", self.number, "WM_TRANSIENT_FOR")

    def is_active(self):
        return self.desktop.xdotool("getactivewindow") == [str(self.number)]


class Viewer:
    """The viewer's process and its windows; a context manager.

    Coordinates are those of the drawing: pixels of the screen from its lower left corner, y growing upward.
    """

    def __init__(self, desktop, command, stdin, folder, environment):
        self.desktop = desktop
        self.command = command
        self.stdin = stdin
        self.folder = folder
        self.environment = {**desktop.environment, **environment}
        self.main = None
        self.bars = None  # heights of the bars above and below the drawing; None until a picture of it was right

    def __enter__(self):
        self.process = subprocess.Popen(self.command, stdin=self.stdin, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                        env=self.environment, cwd=self.folder)
        return self

    def __exit__(self, error, *_):
        if error:
            self.desktop.save(f"gui-failures/{self.desktop.test}.png")
        if self.process.poll() is None:
            self.process.kill()
        self.process.communicate()

    def expect_alive(self):
        if self.process.poll() is not None:
            raise AssertionError(f"the viewer ended: {self.process.returncode} {self.process.stderr.read()}")

    def windows(self, title):
        """Those that show now; the main window's title follows the name of what it shows."""
        named = "(.* \u2013 )?" if title == TITLE else ""
        return self.search(f"^{named}{re.escape(title)}$")

    def popups(self):
        """The menus that show now: windows that the window manager leaves alone. One in which nothing is drawn yet does
        not take keys either."""
        return [window for window in self.search(".*")
                if "Override Redirect State: yes" in self.desktop.ask("xwininfo", "-id", window.number)
                and not is_blank(window.picture())]

    def search(self, pattern):
        self.expect_alive()
        found = self.desktop.xdotool("search", "--all", "--onlyvisible", "--pid", self.process.pid, "--name", pattern)
        return [Window(self.desktop, number) for number in found]

    def window(self, title=TITLE):
        """The one with that title, as soon as it shows."""
        if title != TITLE:
            return wait_for(f"the window {title}", lambda: self.windows(title))[0]
        self.main = self.main or wait_for("the window", lambda: [window for window in self.windows(TITLE)
                                                                 if not window.is_box()])[0]
        return self.main

    def wait_for_picture(self, is_right):
        """Asks until the answer about the drawing is true."""
        def look():
            self.expect_alive()
            shown = self.window().picture()
            bars = self.bars or bars_around(shown)
            if shown is None or not bars or not is_right(between(shown, bars)):
                return False
            self.bars = bars
            return True
        wait_for("the right picture", look)

    def picture(self):
        """The drawing as it is now."""
        return between(self.window().picture(), self.bars)

    def resize(self, width, height):
        """Makes the drawing that large."""
        size = width, height + sum(self.bars)
        self.window().resize(*size)
        wait_for("the size", lambda: self.window().geometry()[2:] == size)

    def place(self, x, y):
        """A point of the drawing as xdotool's words for a place on the screen."""
        left, top, _, height = self.window().geometry()
        return left + x, top + height - self.bars[1] - 1 - y

    def mouse(self, x, y, *words):
        """Moves the mouse there; then whatever xdotool can do."""
        self.desktop.xdotool("mousemove", *self.place(x, y), *words)

    def start_drag(self, x1, y1, x2, y2):
        """From one point to the other, with the left button, which stays down."""
        self.mouse(x1, y1, "mousedown", 1)
        self.mouse((x1 + x2) // 2, (y1 + y2) // 2)
        self.mouse(x2, y2)

    def release(self):
        self.desktop.xdotool("mouseup", 1)

    def drag(self, *points):
        self.start_drag(*points)
        self.release()

    def end(self):
        """Asks it to end, and answers what it wrote on standard error."""
        self.process.terminate()
        return self.outcome(0)

    def outcome(self, status):
        """Waits until it ends with that status, and answers what it wrote on standard error."""
        _, said = self.process.communicate(timeout=PATIENCE)
        if self.process.returncode != status:
            raise AssertionError(f"the viewer ended with {self.process.returncode}: {said}")
        return said.decode("utf-8", "replace")


def bars_around(shown):
    """Heights of what is above and below the drawing: at the window's left edge the paper is white, a bar is not."""
    white = () if shown is None else numpy.flatnonzero(shown[:, 0] == WHITE)
    return (white[0], len(shown) - 1 - white[-1]) if len(white) else None


def is_blank(shown):
    return shown is None or (shown == shown[0]).all()


def between(shown, bars):
    above, below = bars
    return shown[above:len(shown) - below]
