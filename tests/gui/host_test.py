#!/usr/bin/env python3
"""Hosts: hpglsend, the one in docs/host-channel.md, and what that page says of the viewer; see suite.py."""
import contextlib
import importlib.machinery
import os
import pathlib
import re
import signal
import socket
import struct
import subprocess
import sys
import threading
import types

from suite import HPGLDUMP, KELHPGL, TITLE, beside, expect_picture, run_all, wait_for
from desktop import PATIENCE, Viewer

HPGLSEND = HPGLDUMP.with_name("hpglsend")
PAGE = pathlib.Path(__file__).resolve().parents[2] / "docs/host-channel.md"
OTHER = "IN;SP3;PU0,0;PD3000,4000;PU3000,0;PD0,4000;"
CROSS = "SP2;PU0,4000;PD3000,0;"


class Process:
    """A process that somebody else has started, with what a Viewer wants of its own."""

    def __init__(self, pid):
        self.pid = pid
        self.returncode = self.stderr = None

    def poll(self):
        return None if self.pid in all_viewers() else 0

    def kill(self):
        os.kill(self.pid, signal.SIGKILL)

    def communicate(self):
        wait_for("the viewer's end", lambda: self.poll() is not None)


class StartedViewer(Viewer):
    """The one viewer that hosts have started; a context manager."""

    def __init__(self, hosts):
        super().__init__(hosts.desktop, [], None, None, {})
        self.hosts = hosts

    def __enter__(self):
        wait_for("one viewer", lambda: len(self.hosts.viewers()) == 1)
        self.process = Process(self.hosts.viewers()[0])
        return self


class Hosts:
    """A runtime folder, in which hosts and viewers find each other; a context manager."""

    def __init__(self, desktop, plot):
        self.desktop = desktop
        self.folder = plot.parent
        self.runtime = plot.parent / "runtime"
        self.environment = {**desktop.environment, "XDG_RUNTIME_DIR": str(self.runtime),
                            "PATH": f"{KELHPGL.parent}:{os.environ['PATH']}"}

    def __enter__(self):
        self.runtime.mkdir(mode=0o700)
        return self

    def __exit__(self, *error):
        for pid in self.viewers():
            os.kill(pid, signal.SIGKILL)
        wait_for("the viewers' end", lambda: not self.viewers())
        self.wait_for_empty_desktop()

    def wait_for_empty_desktop(self):
        """A viewer that starts before the window manager has seen the end of a killed one may get the number of its
        window, and the window manager then takes it for something else."""
        with contextlib.suppress(AssertionError):
            wait_for("the windows to go", lambda: not self.desktop.stacking(), 5.0)

    def viewers(self):
        return [pid for pid in all_viewers() if f"XDG_RUNTIME_DIR={self.runtime}".encode() in words(pid, "environ")]

    def start(self, *arguments, program=HPGLSEND):
        return subprocess.Popen([program, *map(str, arguments)], cwd=self.folder, env=self.environment,
                                stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def send(self, *arguments, stdin=b""):
        """A loaded machine takes its time to start a viewer."""
        return result(self.start("--wait", int(PATIENCE), *arguments), stdin)

    def viewer(self):
        return StartedViewer(self)

    def connect(self, channel):
        """As soon as a viewer listens."""
        path = str(self.runtime / f"kelhpgl.{channel}")

        def attempt():
            connection = socket.socket(socket.AF_UNIX)
            if connection.connect_ex(path) == 0:
                return connection
            connection.close()
            return None
        connection = wait_for("a viewer that listens", attempt)
        connection.settimeout(PATIENCE)
        return connection


def words(pid, name):
    try:
        return pathlib.Path(f"/proc/{pid}/{name}").read_bytes().split(b"\0")
    except OSError:
        return [b""]  # it has ended


def all_viewers():
    """The processes that run the viewer; of one that has ended and is not reaped nothing can be read."""
    running = map(int, filter(str.isdigit, os.listdir("/proc")))
    return [pid for pid in running if os.path.basename(words(pid, "cmdline")[0]) == os.fsencode(KELHPGL.name)]


def is_over(pid):
    """Not only without memory, but without sockets: gone, or waiting to be reaped."""
    try:
        return pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()[0] in "ZX"
    except OSError:
        return True


def result(process, stdin=b""):
    out, err = process.communicate(stdin, timeout=PATIENCE)
    return process.returncode, out.decode(), err.decode()


def expect(expected, actual):
    assert expected == actual, f"expected {expected}, not {actual}"


# ---- hpglsend -------------------------------------------------------------------------------------------------------

def starts_a_viewer_and_sends(desktop, plot):
    with Hosts(desktop, plot) as hosts:
        expect((0, "thin.plt: shown\n", ""), hosts.send(plot.name))
        with hosts.viewer() as viewer:
            expect_picture(viewer, plot)
            expect(viewer.process.pid, os.getsid(viewer.process.pid))


def sends_several_to_the_viewer_that_runs(desktop, plot):
    other = beside(plot, "other.plt", OTHER)
    with Hosts(desktop, plot) as hosts:
        expect((0, "thin.plt: shown\nother.plt: shown\n", ""), hosts.send(plot.name, other.name))
        with hosts.viewer() as viewer:
            expect_picture(viewer, other)
            expect((0, "other.plt: shown\nthin.plt: shown\n", ""), hosts.send("--no-start", other.name, plot.name))
            expect_picture(viewer, plot)


def finds_a_viewer_that_was_started_by_hand(desktop, plot):
    with Hosts(desktop, plot) as hosts:
        with desktop.viewer(KELHPGL, "--channel", "hand", environment=hosts.environment) as viewer:
            expect((0, "thin.plt: shown\n", ""), hosts.send("--channel", "hand", "--no-start", plot.name))
            expect_picture(viewer, plot)


def sends_standard_input(desktop, plot):
    with Hosts(desktop, plot) as hosts:
        expect((0, "-: shown\n", ""), hosts.send(stdin=plot.read_bytes()))
        with hosts.viewer() as viewer:
            expect_picture(viewer, plot)


def says_what_cannot_be_read(desktop, plot):
    other = beside(plot, "other.plt", OTHER)
    missing = "missing.plt: cannot read: No such file or directory\n"
    with Hosts(desktop, plot) as hosts:
        expect((1, missing, ""), hosts.send("missing.plt"))
        expect([], hosts.viewers())
        expect((1, f"thin.plt: shown\n{missing}other.plt: shown\n", ""),
               hosts.send(plot.name, "missing.plt", other.name))
        with hosts.viewer() as viewer:
            expect_picture(viewer, other)


def says_that_there_is_no_viewer(desktop, plot):
    with Hosts(desktop, plot) as hosts:
        expect(2, hosts.send("--wait", "soon", plot.name)[0])
        path = f"{hosts.runtime}/kelhpgl.default: No such file or directory"
        expect((3, "", f"hpglsend: no viewer: {path}\n"), hosts.send("--no-start", "--wait", "0", plot.name))
        expect(3, hosts.send("--viewer", "/no/such/viewer", plot.name)[0])
        expect([], hosts.viewers())
        del hosts.environment["DISPLAY"]
        code, out, err = hosts.send("--wait", "3", plot.name)
        expect((3, ""), (code, out))
        assert err.endswith("has ended with exit code 1\n"), err


def says_that_the_viewer_was_killed(desktop, plot):
    with Hosts(desktop, plot) as hosts:
        hosts.send(plot.name)
        host = hosts.start()
        host.stdin.write(b"IN;" * 100_000)  # more than a pipe holds: it has connected, then
        host.stdin.flush()
        killed = hosts.viewers()[0]
        os.kill(killed, signal.SIGKILL)
        wait_for("the viewer's end", lambda: is_over(killed))
        hosts.wait_for_empty_desktop()
        expect((3, "-: not shown: the viewer has closed the connection\n", ""), result(host))
        expect((0, "thin.plt: shown\n", ""), hosts.send(plot.name))
        with hosts.viewer() as viewer:
            expect_picture(viewer, plot)


def a_host_that_is_killed_leaves_the_picture(desktop, plot):
    other = beside(plot, "other.plt", OTHER)
    with Hosts(desktop, plot) as hosts:
        hosts.send(plot.name)
        host = hosts.start()
        host.stdin.write(OTHER.encode() * 10_000)
        host.stdin.flush()
        host.kill()
        host.communicate()
        with hosts.viewer() as viewer:
            expect_picture(viewer, plot)
            expect((0, "other.plt: shown\n", ""), hosts.send(other.name))
            expect_picture(viewer, other)


def two_at_once_share_one_viewer(desktop, plot):
    with Hosts(desktop, plot) as hosts:
        calls = [hosts.start(plot.name) for _ in range(2)]
        expect([(0, "thin.plt: shown\n", "")] * 2, [result(call) for call in calls])
        with hosts.viewer() as viewer:
            expect_picture(viewer, plot)
            expect(1, len(desktop.stacking()))


def receives_what_is_printed(desktop, plot):
    with Hosts(desktop, plot) as hosts:
        host = hosts.start("--receive", "out.pdf", plot.name)
        with hosts.viewer() as viewer:
            expect_picture(viewer, plot)
            wait_for("the focus", viewer.window().is_active)
            desktop.xdotool("key", "ctrl+p")
            wait_for("the panel", viewer.window("Print").is_active)
            desktop.xdotool("key", "alt+s", "alt+p")
            code, out, err = result(host)
            page = (plot.parent / "out.pdf").read_bytes()
            expect((0, f"thin.plt: shown\nout.pdf: received, pdf, {len(page)} bytes\n", ""), (code, out, err))
            assert page.startswith(b"%PDF") and page.endswith(b"%%EOF\n"), page


def a_page_that_is_not_taken_is_said(desktop, plot):
    """The host has closed its end of the viewer's standard output, and the viewer learns of it by the page."""
    with desktop.viewer(KELHPGL, "--frames", stdin=subprocess.PIPE) as viewer:
        picture = plot.read_bytes()
        for kind, content in ((BEGIN, picture), (END, b"")):
            viewer.process.stdin.write(struct.pack("<BI", kind, len(content)) + content)
        viewer.process.stdin.flush()
        expect_picture(viewer, plot)
        viewer.process.stdout.read(10)  # both replies
        viewer.process.stdout.close()
        viewer.process.stdout = None
        wait_for("the focus", viewer.window().is_active)
        desktop.xdotool("key", "ctrl+p")
        wait_for("the panel", viewer.window("Print").is_active)
        desktop.xdotool("key", "alt+s", "alt+p")
        wait_for("the panel to go", lambda: not viewer.windows("Print"))
        wait_for("the box", lambda: [window for window in viewer.windows(TITLE) if window.is_box()])
        said = viewer.end()
    assert said.endswith("is not there any more, or does not take the page.\n"), said


# ---- the page -------------------------------------------------------------------------------------------------------

def example_in(folder):
    """The program in the page, as a file."""
    blocks = re.findall(r"^```python\n(.*?)^```$", PAGE.read_text(encoding="utf-8"), re.DOTALL | re.MULTILINE)
    expect(1, len(blocks))
    path = folder / "example.py"
    path.write_text(blocks[0], encoding="utf-8")
    return path


def module(path):
    loader = importlib.machinery.SourceFileLoader("example", str(path))
    loaded = types.ModuleType(loader.name)
    loader.exec_module(loaded)
    return loaded


def the_example_shows_its_pictures(desktop, plot):
    path = example_in(plot.parent)
    example = module(path)
    plots = [beside(plot, f"{number}.plt", picture.decode()) for number, picture in enumerate(example.PICTURES)]
    said = "".join(f"picture {number}: shown\n" for number in (1, 2, 3))
    with Hosts(desktop, plot) as hosts:
        for _ in range(2):  # starts a viewer, and finds it
            expect((0, said, ""), result(hosts.start(path, program=sys.executable)))
            with hosts.viewer() as viewer:
                expect_picture(viewer, plots[-1])
                with hosts.connect("host-example") as connection:
                    for picture, shown in zip(example.PICTURES, plots):
                        expect(None, example.show(connection, picture))
                        expect_picture(viewer, shown)


class Talk:
    """A host that talks to a viewer of its own through a socket pair; a context manager. Its replies are text."""

    def __init__(self, desktop, plot):
        self.host, self.other = socket.socketpair()
        self.host.settimeout(PATIENCE)
        self.example = module(example_in(plot.parent))
        self.viewer = desktop.viewer(KELHPGL, "--channel-fd", 0, stdin=self.other, folder=plot.parent)

    def __enter__(self):
        self.viewer.__enter__()
        self.other.close()
        return self

    def __exit__(self, *error):
        self.viewer.__exit__(*error)
        self.host.close()

    def send(self, *frames):
        for kind, text in frames:
            self.example.send_frame(self.host, kind, text.encode())

    def reply(self):
        return named(*self.example.read_frame(self.host))


def named(kind, content):
    return {16: "accepted", 17: "refused", 18: "shown"}[kind] + (f": {content.decode()}" if content else "")


FURTHER, BEGIN, END = 0, 1, 2
SHOWN = ["accepted", "shown"]


def pictures_of_a_socket_pair(desktop, plot):
    """What frames do: cut anywhere, colons, no begin, nothing."""
    text = plot.read_text()
    rows = [
        ([(BEGIN, text), (END, "")], plot),
        ([(END, "")], plot),
        ([(BEGIN, ""), (END, OTHER)], beside(plot, "other.plt", OTHER)),
        ([(FURTHER, CROSS), (END, "")], beside(plot, "both.plt", OTHER + CROSS)),
        ([(BEGIN, ""), *((FURTHER, byte) for byte in text), (END, "")], plot),
        ([(BEGIN, ""), (END, "")], beside(plot, "empty.plt")),
        ([(BEGIN, ":" + OTHER[:9]), (FURTHER, OTHER[9:20]), (FURTHER, ":" + OTHER[20:]), (END, ":" + CROSS)],
         beside(plot, "both.plt", OTHER + CROSS)),
        ([(BEGIN, ""), (FURTHER, "HPGL_FILE:thin.plt\n"), (END, "")], plot),
        ([(BEGIN, "HPGL_FILE:missing.plt\n"), (END, "")], beside(plot, "empty.plt")),
    ]
    with Talk(desktop, plot) as talk:
        for frames, expected in rows:
            talk.send(*frames)
            expect(SHOWN, [talk.reply(), talk.reply()])
            expect_picture(talk.viewer, expected)


def replies_come_in_order(desktop, plot):
    """While the host is sending: it reads them only when it can send no more."""
    other = beside(plot, "other.plt", OTHER)
    pictures = 500
    with Talk(desktop, plot) as talk:
        def send_all():
            for text in [plot.read_text(), OTHER] * (pictures // 2):
                talk.send((BEGIN, text), (END, ""))
        sender = threading.Thread(target=send_all)
        sender.start()
        sender.join(0.5)
        expect(SHOWN * pictures, [talk.reply() for _ in range(2 * pictures)])
        sender.join()
        expect_picture(talk.viewer, other)
        talk.host.close()
        expect_picture(talk.viewer, other)


def a_host_need_not_wait(desktop, plot):
    other = beside(plot, "other.plt", OTHER)
    example = module(example_in(plot.parent))
    with Hosts(desktop, plot) as hosts:
        hosts.send(plot.name)
        with hosts.viewer() as viewer:
            with hosts.connect("default") as connection:
                example.send_picture(connection, OTHER.encode())
            expect_picture(viewer, other)


def nonsense_ends_the_connection(desktop, plot):
    rows = [(struct.pack("<BI", 3, 0), "refused: a frame of an unknown kind"),
            (struct.pack("<BI", 0, 16777217), "refused: a frame longer than 16 MiB")]
    example = module(example_in(plot.parent))
    with Hosts(desktop, plot) as hosts:
        hosts.send(plot.name)
        with hosts.viewer() as viewer:
            for header, reason in rows:
                with hosts.connect("default") as connection:
                    example.send_frame(connection, BEGIN, OTHER.encode())
                    connection.sendall(header)
                    expect(reason, named(*example.read_frame(connection)))
                    expect(b"", connection.recv(1))
                    expect_picture(viewer, plot)


def the_largest_frame_is_taken(desktop, plot):
    text = plot.read_text()
    with Talk(desktop, plot) as talk:
        talk.send((BEGIN, text + ";" * (16777216 - len(text))), (END, ""))
        expect(SHOWN, [talk.reply(), talk.reply()])
        expect_picture(talk.viewer, plot)


def frames_on_standard_streams(desktop, plot):
    example = module(example_in(plot.parent))
    with desktop.viewer(KELHPGL, "--frames", stdin=subprocess.PIPE) as viewer:
        def say(kind, content=b""):
            viewer.process.stdin.write(struct.pack("<BI", kind, len(content)) + content)
            viewer.process.stdin.flush()

        def hear():
            kind, length = struct.unpack("<BI", viewer.process.stdout.read(5))
            return named(kind, viewer.process.stdout.read(length))
        for picture in (*example.PICTURES, plot.read_bytes()):
            say(BEGIN, picture)
            say(END)
            expect(SHOWN, [hear(), hear()])
        expect_picture(viewer, plot)
        viewer.process.stdin.close()
        viewer.process.stdin = None
        expect_picture(viewer, plot)


def a_host_that_stalls_is_put_out_of_the_way(desktop, plot):
    other = beside(plot, "other.plt", OTHER)
    with Hosts(desktop, plot) as hosts:
        hosts.send(plot.name)
        example = module(example_in(plot.parent))
        with hosts.viewer() as viewer, hosts.connect("default") as slow:
            example.send_frame(slow, BEGIN, b"IN;")
            expect((0, "other.plt: shown\n", ""), hosts.send(other.name))
            expect("refused: the host has stalled while another waits", named(*example.read_frame(slow)))
            example.send_frame(slow, FURTHER, b"PD9,9;")  # belongs to what was refused
            example.send_frame(slow, END)
            expect_picture(viewer, other)
            expect(None, example.show(slow, plot.read_bytes()))
            expect_picture(viewer, plot)


def the_sixty_fifth_host_is_turned_away(desktop, plot):
    with Hosts(desktop, plot) as hosts:
        hosts.send(plot.name)
        example = module(example_in(plot.parent))
        connections = [hosts.connect("default") for _ in range(64)]
        expect((1, "thin.plt: refused: too many hosts\n", ""), hosts.send(plot.name))
        connections.pop().close()
        wait_for("room", lambda: hosts.send(plot.name)[0] == 0)
        for connection in connections:
            connection.close()


run_all(starts_a_viewer_and_sends, sends_several_to_the_viewer_that_runs, finds_a_viewer_that_was_started_by_hand,
        sends_standard_input, says_what_cannot_be_read, says_that_there_is_no_viewer, says_that_the_viewer_was_killed,
        a_host_that_is_killed_leaves_the_picture, two_at_once_share_one_viewer, receives_what_is_printed,
        the_example_shows_its_pictures, pictures_of_a_socket_pair, replies_come_in_order, a_host_need_not_wait,
        nonsense_ends_the_connection, the_largest_frame_is_taken, frames_on_standard_streams,
        a_page_that_is_not_taken_is_said,
        a_host_that_stalls_is_put_out_of_the_way, the_sixty_fifth_host_is_turned_away)
