"""A desktop of its own for a test: Xvfb with a window manager, and the viewer on it as a person sees it."""
import contextlib
import os
import pathlib
import re
import subprocess
import time

from picture import Picture

PATIENCE = 30.0  # seconds until a state that does not come is a failure; a loaded machine is slow


def wait_for(what, condition):
    """Asks until the condition answers something true, and answers that."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        answer = condition()
        if answer:
            return answer
        time.sleep(0.05)
    raise AssertionError(f"waited {PATIENCE:.0f} s for {what}")


class Desktop:
    """Xvfb and openbox; a context manager."""

    def __enter__(self):
        self.stack = contextlib.ExitStack()
        read, write = os.pipe()
        self.server = self.start(["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x1024x24", "-nolisten", "tcp"],
                                 pass_fds=[write])
        os.close(write)
        with os.fdopen(read) as number:
            self.display = ":" + number.readline().strip()
        self.environment = {**os.environ, "DISPLAY": self.display, "LC_ALL": "C.UTF-8"}
        self.environment.pop("WAYLAND_DISPLAY", None)
        self.start(["openbox"], env=self.environment)
        wait_for("the window manager", lambda: "window id" in self.ask("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))
        return self

    def __exit__(self, *error):
        self.stack.close()

    def start(self, command, **options):
        process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **options)
        self.stack.callback(lambda: (process.kill(), process.wait()))
        return process

    def ask(self, *command):
        done = subprocess.run(command, env=self.environment, capture_output=True, check=False, timeout=PATIENCE)
        return done.stdout.decode("utf-8", "replace").strip()

    def stacking(self):
        """The windows' numbers, the one in front last."""
        return [int(word, 16) for word in re.findall(r"0x[0-9a-f]+", self.ask("xprop", "-root",
                                                                             "_NET_CLIENT_LIST_STACKING"))]

    def viewer(self, program, *arguments, stdin=subprocess.DEVNULL, folder=None):
        return Viewer(self, program, arguments, stdin, folder)


class Viewer:
    """The viewer's process and its window; a context manager."""

    TITLE = "KEL HPGL Display"

    def __init__(self, desktop, program, arguments, stdin, folder):
        self.desktop = desktop
        self.command = [str(program), *map(str, arguments)]
        self.stdin = stdin
        self.folder = folder

    def __enter__(self):
        self.process = subprocess.Popen(self.command, stdin=self.stdin, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                        env=self.desktop.environment, cwd=self.folder)
        return self

    def __exit__(self, *error):
        if self.process.poll() is None:
            self.process.kill()
        self.process.communicate()

    def window(self):
        """The main window's number, as soon as it shows."""
        def find():
            if self.process.poll() is not None:
                raise AssertionError(f"the viewer ended: {self.process.returncode} {self.process.stderr.read()}")
            found = self.desktop.ask("xdotool", "search", "--onlyvisible", "--pid", str(self.process.pid), "--name",
                                     f"^{self.TITLE}$").split()
            return found[0] if found else None
        return wait_for("the window", find)

    def geometry(self):
        """x, y, width, height of the window's inside on the screen."""
        lines = self.desktop.ask("xwininfo", "-id", self.window()).splitlines()
        values = dict(line.strip().split(":", 1) for line in lines if ":" in line)
        return tuple(int(values[name]) for name in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))

    def frame(self):
        """x, y of the window's frame on the screen."""
        left, _, top, _ = (int(word) for word in
                           self.desktop.ask("xprop", "-id", self.window(), "_NET_FRAME_EXTENTS")
                           .split("=")[1].split(","))
        x, y, _, _ = self.geometry()
        return x - left, y - top

    def resize(self, width, height):
        self.desktop.ask("xdotool", "windowsize", "--sync", self.window(), str(width), str(height))

    def drag(self, x1, y1, x2, y2):
        """With the left button; in device coordinates, y growing upward."""
        left, top, _, height = self.geometry()
        bottom = top + height - 1
        for x, y, action in ((x1, y1, "mousedown"), ((x1 + x2) // 2, (y1 + y2) // 2, None), (x2, y2, "mouseup")):
            self.desktop.ask("xdotool", "mousemove", "--sync", str(left + x), str(bottom - y))
            if action:
                self.desktop.ask("xdotool", action, "1")

    def picture(self):
        """The window's inside; None while there is nothing of it to be had."""
        done = subprocess.run(["import", "-silent", "-window", self.window(), "-depth", "8", "ppm:-"],
                              env=self.desktop.environment, capture_output=True, check=False, timeout=PATIENCE)
        return read_ppm(done.stdout)

    def save(self, name):
        pathlib.Path(name).parent.mkdir(parents=True, exist_ok=True)
        subprocess.run(["import", "-silent", "-window", self.window(), str(name)], env=self.desktop.environment,
                       check=False, timeout=PATIENCE)

    def close_button(self):
        """What the window manager's close button does."""
        self.desktop.ask("wmctrl", "-i", "-c", self.window())

    def wait(self):
        return self.process.wait(timeout=PATIENCE)


def read_ppm(data):
    if not data.startswith(b"P6"):
        return None
    _, size, _, rest = data.split(b"\n", 3)
    width, height = (int(number) for number in size.split())
    return Picture.from_bytes(width, height, rest)
