#!/usr/bin/env python3
"""Hosts that break the rules: the picture shown stays, and others are served; see suite.py."""
import contextlib
import os
import pathlib
import resource
import stat
import subprocess
import sys
import threading
import time

from suite import KELHPGL, beside, expect_picture, run_all, wait_for  # first: it says where others are
from host import (ACCEPTED, BEGIN, END, FURTHER, HEADER, MOST_FRAME_BYTES, REFUSED, channel_path, connect, frame,
                  listening, picture)

OTHER = "IN;PC1,200,0,100;SP1;PU-500,-300;PD700,900,700,-300;PC2,0,90,255;SP2;PD-500,900;"
MOST_HOSTS = 64
MOST_SILENCE = 5.0  # seconds inside a transmission while another host waits
GIVEN_UP = "given up by the user"
UNKNOWN = "a frame of an unknown kind"
TOO_LONG = "a frame longer than 16 MiB"
GONE = "it has gone inside a transmission"
STALLED = "the host has stalled while another waits"
TOO_MANY = "too many hosts"
TOO_FEW = "too few descriptors are left for another"
NOBODY = 65534  # a user


@contextlib.contextmanager
def unharmed(desktop, plot, *lines, environment=None):
    """A viewer that shows the plot. Afterwards it still does, serves all hosts, and has said those lines only."""
    other = beside(plot, "other.plt", OTHER)
    with listening(desktop, KELHPGL, plot, environment=environment) as viewer, connect(channel_path(plot)) as honest:
        honest.show(plot.read_bytes())
        expect_picture(viewer, plot)
        yield viewer
        expect_picture(viewer, plot)
        honest.show(OTHER)
        expect_picture(viewer, other)
        with connect(channel_path(plot)) as new:
            new.show(plot.read_bytes())
        expect_picture(viewer, plot)
        said = viewer.end().splitlines()
        assert said == [f"kelhpgl: host: {line}" for line in lines], said


def what_is_no_frame_is_refused(desktop, plot):
    """And nothing more is heard from whoever sends it."""
    rows = ((frame(3), UNKNOWN), (frame(255, b"x"), UNKNOWN), (frame(16), UNKNOWN), (bytes(4) + b"\x80", TOO_LONG),
            (HEADER.pack(BEGIN, 0xFFFFFFFF), TOO_LONG), (HEADER.pack(END, MOST_FRAME_BYTES + 1), TOO_LONG),
            (frame(BEGIN, OTHER.encode()) + frame(99), UNKNOWN), (frame(BEGIN) + frame(END)[:1] + b"xxxx", TOO_LONG),
            (b"GET / HTTP/1.1\r\nHost: localhost\r\n\r\n", UNKNOWN),
            (b"\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03" + os.urandom(500), UNKNOWN))
    with unharmed(desktop, plot, *(reason for _, reason in rows)):
        for sent, reason in rows:
            with connect(channel_path(plot)) as host:
                host.send(sent)
                host.expect_refused(reason)
                host.expect_end()


def what_was_whole_before_is_shown(desktop, plot):
    with unharmed(desktop, plot, UNKNOWN), connect(channel_path(plot)) as host:
        host.send(picture(OTHER), picture(plot.read_bytes()), b"nonsense")
        host.expect_shown()
        host.expect_shown()
        host.expect_refused(UNKNOWN)
        host.expect_end()


def what_is_cut_off_is_dropped(desktop, plot):
    whole = frame(BEGIN) + frame(FURTHER, OTHER.encode()) + frame(END, b"PU;")
    cuts = 1, 4, 5, 9, 10, 60, len(whole) - 8, len(whole) - 1
    with unharmed(desktop, plot, *([GONE] * len(cuts))):
        for cut in cuts:
            with connect(channel_path(plot)) as host:
                host.send(whole[:cut])
        connect(channel_path(plot)).kept.close()  # a host that says nothing at all is none to talk about


def a_host_may_be_killed(desktop, plot):
    """While it sends as fast as it can, and without an end."""
    program = (f"import socket, struct\ns = socket.socket(socket.AF_UNIX)\ns.connect('{channel_path(plot)}')\n"
               "while True:\n    s.sendall(struct.pack('<BI', 0, 60000) + b'PU1,2;' * 10000)\n")
    with unharmed(desktop, plot, GONE):
        with subprocess.Popen([sys.executable, "-c", program]) as host:
            time.sleep(0.3)
            host.kill()


def a_host_that_stalls_is_dropped_for_another(desktop, plot):
    """It is told, and is served again when it has come to the end of what it was about to say."""
    data = plot.read_bytes()
    with unharmed(desktop, plot, STALLED), connect(channel_path(plot)) as slow:
        slow.send(frame(BEGIN, OTHER.encode()))
        with connect(channel_path(plot)) as another:
            began = time.monotonic()
            another.show(data)
            assert MOST_SILENCE - 1 < time.monotonic() - began < MOST_SILENCE + 5
        slow.expect_refused(STALLED)
        slow.send(frame(FURTHER, OTHER.encode()), frame(END))
        slow.show(data)


def hosts_that_stall_in_line_are_dropped_sooner(desktop, plot):
    """Their silence counts from their last byte, not from their turn."""
    number = 8
    with unharmed(desktop, plot, *([STALLED] * number)), contextlib.ExitStack() as stack:
        slow = [stack.enter_context(connect(channel_path(plot))) for _ in range(number)]
        for host in slow:
            host.send(frame(BEGIN)[:1])
        with connect(channel_path(plot)) as honest:
            began = time.monotonic()
            honest.show(plot.read_bytes())
            assert time.monotonic() - began < MOST_SILENCE + 5
        for host in slow:
            host.expect_refused(STALLED)
            host.send(frame(BEGIN)[1:], frame(END))


def a_transmission_without_end_is_bounded(desktop, plot):
    """By half of the memory, or less where that is asked for. The host may go on sending: it is not listened to."""
    most = 30_000_000
    reason = f"more data than KEL_MOST_BYTES ({most})"
    with unharmed(desktop, plot, reason, environment={"KEL_MOST_BYTES": str(most)}) as viewer:
        with connect(channel_path(plot)) as host:
            host.show(plot.read_bytes())
            for _ in range(100):
                host.send(frame(FURTHER, b"PU1,1;" * 170_000))
            host.expect_refused(reason)
            wait_for("the file to go", lambda: not open_files(viewer, "(deleted)"))
            host.send(frame(END))
            host.show(plot.read_bytes())


def what_is_added_is_bounded_too(desktop, plot):
    """Transmissions without a begin are one picture."""
    most = 1_000_000
    reason = f"more data than KEL_MOST_BYTES ({most})"
    with unharmed(desktop, plot, reason, environment={"KEL_MOST_BYTES": str(most)}):
        with connect(channel_path(plot)) as host:
            host.show(plot.read_bytes())
            for _ in range(3):
                host.send(frame(FURTHER, b"PU1,1;" * 80_000), frame(END))
            host.expect_shown()
            host.expect_shown()
            host.expect((ACCEPTED, ""), (REFUSED, reason))
            host.show(plot.read_bytes())


def nobody_need_read_what_is_said(desktop, plot):
    """Standard error is a pipe here, which is full after some hundred lines."""
    with listening(desktop, KELHPGL, plot) as viewer, connect(channel_path(plot)) as honest:
        honest.show(plot.read_bytes())
        for _ in range(3000):
            with connect(channel_path(plot)) as host:
                host.send(frame(3))
                host.expect_refused(UNKNOWN)
        honest.show(plot.read_bytes())
        expect_picture(viewer, plot)
        viewer.end()


def open_files(viewer, word):
    """Those of the viewer's in whose names the system puts that word."""
    links = pathlib.Path(f"/proc/{viewer.process.pid}/fd").iterdir()
    return [link for link in links if word in target(link)]


def target(link):
    """Of a file that may be closed meanwhile."""
    try:
        return os.readlink(link)
    except FileNotFoundError:
        return ""


def a_host_that_reads_no_answers_hinders_nobody(desktop, plot):
    """It is not listened to until it does; then all that it has sent is shown."""
    number = 20_000
    one = picture("IN;SP1;PU0,0;PD10,10;")
    with unharmed(desktop, plot), connect(channel_path(plot)) as deaf:
        sending = threading.Thread(target=deaf.send, args=[one] * number)
        sending.start()
        with connect(channel_path(plot)) as honest:
            for _ in range(20):
                honest.show(OTHER)
            assert sending.is_alive()
            for _ in range(number):
                deaf.expect_shown()
            sending.join()
            honest.show(plot.read_bytes())


def deaf_hosts_may_go(desktop, plot):
    """What they have sent is shown all the same."""
    with unharmed(desktop, plot) as viewer:
        before = len(open_files(viewer, "socket"))
        with connect(channel_path(plot)) as deaf:
            deaf.kept.setblocking(False)
            with contextlib.suppress(BlockingIOError):
                while True:
                    deaf.send(picture(plot.read_bytes()))
        with connect(channel_path(plot)) as honest:
            honest.show(plot.read_bytes())
        wait_for("the connections to be closed", lambda: len(open_files(viewer, "socket")) == before)


def there_is_a_limit_to_hosts(desktop, plot):
    """64 at a time; places become free again."""
    number = 1000
    soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
    resource.setrlimit(resource.RLIMIT_NOFILE, (min(hard, 4096), hard))
    with unharmed(desktop, plot, *([TOO_MANY] * (number - MOST_HOSTS + 1))) as viewer:
        with contextlib.ExitStack() as stack:
            hosts = [stack.enter_context(connect(channel_path(plot))) for _ in range(number)]
            for host in hosts[MOST_HOSTS - 1:]:  # one was connected before
                host.expect_refused(TOO_MANY)
                host.expect_end()
            for host in hosts[:MOST_HOSTS - 1]:
                host.show(plot.read_bytes())
        wait_for("free places", lambda: len(open_files(viewer, "socket")) < MOST_HOSTS)
    resource.setrlimit(resource.RLIMIT_NOFILE, (soft, hard))


def hosts_leave_descriptors_for_the_viewer(desktop, plot):
    """What it needs itself: here for the dialog of files, without which Qt ends the process. One line for all of them."""
    environment = {"CUPS_SERVER": "/nowhere", "HOME": str(plot.parent)}
    with unharmed(desktop, plot, TOO_FEW, environment=environment) as viewer:
        used, connected = len(open_files(viewer, "")), len(open_files(viewer, "socket"))
        resource.prlimit(viewer.process.pid, resource.RLIMIT_NOFILE, (used + 20, used + 20))
        with contextlib.ExitStack() as stack:
            hosts = [stack.enter_context(connect(channel_path(plot))) for _ in range(40)]
            hosts[-1].expect_end()
            hosts[0].show(plot.read_bytes())
            panel = under_key(desktop, viewer, viewer.window(), "ctrl+p")
            under_key(desktop, viewer, panel, "alt+h")
            desktop.xdotool("key", "Escape")
            wait_for("the panel's focus", panel.is_active)
            desktop.xdotool("key", "Escape")
            wait_for("the panel to go", lambda: not viewer.windows("Print"))
            hosts[0].show(plot.read_bytes())
        wait_for("free places", lambda: len(open_files(viewer, "socket")) == connected)


def under_key(desktop, viewer, window, key):
    """The window for printing that the key opens from that one."""
    wait_for("the focus", window.is_active)
    desktop.xdotool("key", key)
    opened = wait_for("the window", lambda: [new for new in viewer.windows("Print") if new.number != window.number])[0]
    wait_for("its focus", opened.is_active)
    return opened


def files_named_by_the_data_may_be_anything(desktop, plot):
    fifo, loop, folder = (plot.with_name(name) for name in ("fifo", "loop", "folder"))
    os.mkfifo(fifo)
    loop.symlink_to(loop)
    folder.mkdir()
    empty = beside(plot, "empty.plt")
    with unharmed(desktop, plot) as viewer, connect(channel_path(plot)) as host:
        missing = plot.with_name("missing")
        for name in fifo, loop, folder, missing, "/dev/zero", "/dev/tty", "/proc/self/mem", "/proc/self/pagemap", "x" * 5000, "":
            host.show(OTHER)
            host.show(f"HPGL_FILE:{name}\n")
            expect_picture(viewer, empty)
        host.show(plot.read_bytes())


def a_named_file_that_takes_long_can_be_given_up(desktop, plot):
    """Meanwhile the window can be moved, and other hosts are heard."""
    long = plot.with_name("long.plt")
    with open(long, "wb") as file:
        file.truncate(1 << 33)
    with unharmed(desktop, plot, GIVEN_UP) as viewer, connect(channel_path(plot)) as host:
        host.send(picture(f"HPGL_FILE:{long}\n"))
        host.expect((ACCEPTED, ""))
        panel = viewer.window("Information")
        with connect(channel_path(plot)) as other:
            other.send(picture(plot.read_bytes()))
            _, _, width, height = panel.geometry()
            panel.click(width - 40, height - 20)
            host.expect_refused(GIVEN_UP)
            other.expect_shown()


def other_users_cannot_connect(desktop, plot):
    with unharmed(desktop, plot):
        path = channel_path(plot)
        assert stat.S_IMODE(path.stat().st_mode) & 0o077 == 0, oct(path.stat().st_mode)
        if os.geteuid() == 0:
            for folder in path.parent.parent, path.parent:
                folder.chmod(0o755)  # the socket alone keeps them out
            assert connecting_as(NOBODY, path) == "PermissionError"
            path.parent.chmod(0o700)


def connecting_as(user, path):
    """The name of what goes wrong."""
    program = ("import os, socket, sys\nos.setgid(int(sys.argv[1]))\nos.setuid(int(sys.argv[1]))\n"
               "try:\n    socket.socket(socket.AF_UNIX).connect(sys.argv[2])\n"
               "except OSError as failure:\n    print(type(failure).__name__)\n")
    done = subprocess.run([sys.executable, "-c", program, str(user), path], capture_output=True, check=True, text=True)
    return done.stdout.strip()


run_all(what_is_no_frame_is_refused, what_was_whole_before_is_shown, what_is_cut_off_is_dropped, a_host_may_be_killed,
        a_host_that_stalls_is_dropped_for_another, hosts_that_stall_in_line_are_dropped_sooner,
        a_transmission_without_end_is_bounded, what_is_added_is_bounded_too, nobody_need_read_what_is_said,
        a_host_that_reads_no_answers_hinders_nobody, deaf_hosts_may_go,
        there_is_a_limit_to_hosts, hosts_leave_descriptors_for_the_viewer, files_named_by_the_data_may_be_anything,
        a_named_file_that_takes_long_can_be_given_up, other_users_cannot_connect)
