"""What hosts get of the viewer: how fast it takes pictures, and how lively its window stays meanwhile.

usage: host_channel.py [--build DIR] [--runs N]

Prints a Markdown table of figures and their bounds, and ends with 1 when one is missed: 100 MB of pen moves by the
channel and out of a file, from the viewer's start until they are painted, the median of N runs (3) each; the longest
time for which the window did not answer while they were received and parsed; and 10,000 small pictures in one
connection. DIR is where viewer and plot_file were built (../build/bench, by ../bench). Needs Xvfb and openbox, and
starts a desktop of its own.
"""

import argparse
import ctypes
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path[1:1] = [str(ROOT / "tests" / "gui"), str(ROOT / "tests" / "pictures")]
from desktop import Desktop  # noqa: E402
from host import ACCEPTED, BEGIN, END, FURTHER, channel_path, connect, frame, listening  # noqa: E402

MB = 1_000_000
LARGE = 100 * MB
PIECE = 65536
SMALL = "IN;SP1;PU0,0;PD1000,1000,2000,0;SP2;CI500;"
PICTURES = 10_000
SPEED_BOUND = 2.0  # times what a file takes
TURN_BOUND = 50.0  # milliseconds
RATE_BOUND = 500  # pictures a second
GROWTH_BOUND = 1 * MB


# ---- pings ----------------------------------------------------------------------------------------------------------


class ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5), ("rest", ctypes.c_long * 24)]


class Pings(threading.Thread):
    """Asks a window over and over whether it is alive, as window managers do; its event loop answers."""

    CLIENT_MESSAGE = 33
    STRUCTURE_NOTIFY = 1 << 17  # how Qt answers

    def __init__(self, desktop, window):
        super().__init__(daemon=True)
        self.x11 = ctypes.CDLL("libX11.so.6")
        self.x11.XOpenDisplay.restype = ctypes.c_void_p
        self.x11.XDefaultRootWindow.restype = self.x11.XInternAtom.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.x11.XOpenDisplay(desktop.display.encode()))
        self.root = ctypes.c_ulong(self.x11.XDefaultRootWindow(self.display))
        self.x11.XSelectInput(self.display, self.root, ctypes.c_long(self.STRUCTURE_NOTIFY))
        self.window = ctypes.c_ulong(int(window.number))
        self.protocols, self.ping = (self.x11.XInternAtom(self.display, name, 0)
                                     for name in (b"WM_PROTOCOLS", b"_NET_WM_PING"))
        self.answers = []  # when each came, and how long it took; seconds
        self.ended = False

    def run(self):
        event = ClientMessage()
        number = 0
        while not self.ended:
            number += 1
            asked = time.monotonic()
            event.type, event.window, event.message_type, event.format = (self.CLIENT_MESSAGE, self.window.value,
                                                                          self.protocols, 32)
            event.data[:] = [self.ping, number, self.window.value, 0, 0]
            self.x11.XSendEvent(self.display, self.window, 0, ctypes.c_long(0), ctypes.byref(event))
            event.data[1] = 0
            while event.type != self.CLIENT_MESSAGE or event.data[0] != self.ping or event.data[1] != number:
                self.x11.XNextEvent(self.display, ctypes.byref(event))
            now = time.monotonic()
            self.answers.append((now, now - asked))

    def longest(self, begin, end):
        """Of those that were under way in that time, milliseconds."""
        return 1000 * max(took for came, took in self.answers if came > begin and came - took < end)

    def end(self):
        self.ended = True
        self.join()


# ---- figures --------------------------------------------------------------------------------------------------------


class Bench:
    def __init__(self, build, runs, desktop, folder):
        self.viewer, self.runs, self.desktop, self.folder = build / "src" / "kelhpgl", runs, desktop, folder
        self.plot = folder / "plot.plt"
        with self.plot.open("wb") as to:
            subprocess.run([build / "benchmarks" / "plot_file", "bytes", str(LARGE)], stdout=to, check=True)
        self.data = self.plot.read_bytes()

    def start(self, *arguments):
        return listening(self.desktop, self.viewer, self.plot, *arguments)

    def connect(self):
        return connect(channel_path(self.plot))

    def send_large(self, host):
        host.send(frame(BEGIN))
        for i in range(0, len(self.data), PIECE):
            host.send(frame(FURTHER, self.data[i:i + PIECE]))
        host.send(frame(END))

    def time_by_file(self):
        """A host that asks for nothing new waits until the file is painted."""
        began = time.monotonic()
        with self.start(self.plot), self.connect() as host:
            host.send(frame(END))
            host.expect_shown()
            return time.monotonic() - began

    def time_by_channel(self):
        began = time.monotonic()
        with self.start(), self.connect() as host:
            self.send_large(host)
            host.expect_shown()
            host.send(frame(END))
            host.expect_shown()
            return time.monotonic() - began

    def speed(self):
        by_file, by_channel = zip(*((self.time_by_file(), self.time_by_channel()) for _ in range(self.runs)))
        file, channel = statistics.median(by_file), statistics.median(by_channel)
        yield f"{len(self.data) / MB:.0f} MB out of a file, s", file, None
        yield "the same by the channel, s", channel, None
        ratio = channel / file
        yield f"by the channel: times as long (at most {SPEED_BOUND:.0f})", ratio, ratio <= SPEED_BOUND

    def turns(self):
        """The set-up pass and the paint are what a transmission of nothing takes afterwards, and come last."""
        with self.start() as viewer, self.connect() as host:
            host.show(SMALL)
            pings = Pings(self.desktop, viewer.window())
            pings.start()
            time.sleep(1)
            began = time.monotonic()
            self.send_large(host)
            host.expect((ACCEPTED, ""))
            received = time.monotonic()
            host.answer()
            shown = time.monotonic()
            host.send(frame(END))
            host.expect_shown()
            painting = 1.1 * (time.monotonic() - shown)
            time.sleep(1)
            idle = time.monotonic()
            time.sleep(1)
            pings.end()
            receiving, parsing = pings.longest(began, received), pings.longest(received, shown - painting)
            yield "longest wait for the window, idle, ms", pings.longest(idle, idle + 1), None
            yield f"the same while receiving, ms (at most {TURN_BOUND:.0f})", receiving, receiving <= TURN_BOUND
            yield f"the same while parsing, ms (at most {TURN_BOUND:.0f})", parsing, parsing <= TURN_BOUND
            yield "receiving, parsing, set-up pass and paint, s", shown - began, None
            yield "of which set-up pass and paint, s, about", painting / 1.1, None

    def small_pictures(self):
        with self.start() as viewer, self.connect() as host:
            for _ in range(PICTURES):
                host.show(SMALL)
            before = holdings(viewer)
            began = time.monotonic()
            for _ in range(PICTURES):
                host.show(SMALL)
            rate = PICTURES / (time.monotonic() - began)
            growth, opened = (now - then for now, then in zip(holdings(viewer), before))
        yield f"small pictures a second (at least {RATE_BOUND})", rate, rate >= RATE_BOUND
        yield f"memory that {PICTURES:,} of them took for good, MB", growth / MB, growth <= GROWTH_BOUND
        yield "descriptors that they took for good", opened, opened <= 0


def holdings(viewer):
    """Its resident bytes and open descriptors."""
    process = pathlib.Path("/proc") / str(viewer.process.pid)
    pages = int((process / "statm").read_text().split()[1])
    return pages * os.sysconf("SC_PAGE_SIZE"), len(list((process / "fd").iterdir()))


def main():
    parser = argparse.ArgumentParser(usage=__doc__.split("\n\n")[1].replace("usage: ", ""))
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build" / "bench")
    parser.add_argument("--runs", type=int, default=3)
    options = parser.parse_args()
    print("| figure | | |\n|---|---:|---|")
    well = True
    with Desktop() as desktop, tempfile.TemporaryDirectory() as folder:
        bench = Bench(options.build, options.runs, desktop, pathlib.Path(folder))
        for figures in bench.speed, bench.turns, bench.small_pictures:
            for name, value, ok in figures():
                print(f"| {name} | {value:,.2f} | {'' if ok is None else 'ok' if ok else 'MISSED'} |", flush=True)
                well = well and ok is not False
    sys.exit(0 if well else 1)


main()
