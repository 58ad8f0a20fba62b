#!/usr/bin/env python3
"""Hosts that send pictures, files that change, and files that are dropped; see suite.py."""
import contextlib
import itertools
import os
import shutil
import signal
import socket
import subprocess
import threading
import time

import numpy

from suite import HELPERS, KELHPGL, beside, expect_picture, run_all, wait_for  # first: it says where others are
from host import (ACCEPTED, BEGIN, END, FURTHER, NAME, REFUSED, Host, channel_path, connect, frame, listening, on_socket,
                  picture, runtime_folder)

OTHER = "IN;PC1,200,0,100;SP1;PU-500,-300;PD700,900,700,-300;PC2,0,90,255;SP2;PD-500,900;"
MORE = "SP6;PU0,3000;PD4000,1500,0,0;"
PANEL = "Information"
GIVEN_UP = "given up by the user"
SILENCE = 5.0  # seconds until a viewer to which no host speaks shows itself


def viewer_for_hosts(desktop, plot, *arguments, environment=None):
    return listening(desktop, KELHPGL, plot, *arguments, environment=environment)


def other(plot):
    return beside(plot, "other.plt", OTHER)


def expect_silence(viewer):
    said = viewer.end()
    assert not said, said


# ---- transmissions --------------------------------------------------------------------------------------------------


def pictures_come_one_after_another(desktop, plot):
    with viewer_for_hosts(desktop, plot) as viewer, connect(channel_path(plot)) as host:
        for shown in plot, other(plot), plot, beside(plot, "empty.plt"), plot:
            host.show(shown.read_bytes())
            expect_picture(viewer, shown)
        expect_silence(viewer)


def pictures_need_not_be_waited_for(desktop, plot):
    with viewer_for_hosts(desktop, plot) as viewer, connect(channel_path(plot)) as host:
        host.send(picture(OTHER), picture(""), picture(plot.read_bytes()))
        for _ in range(3):
            host.expect_shown()
        expect_picture(viewer, plot)


def frames_may_come_byte_by_byte(desktop, plot):
    with viewer_for_hosts(desktop, plot) as viewer, connect(channel_path(plot)) as host:
        for byte in picture(plot.read_bytes()):
            host.send(bytes([byte]))
        host.expect_shown()
        expect_picture(viewer, plot)


def a_host_need_not_wait_for_answers(desktop, plot):
    """It may close its half of the connection, or all of it: what it has sent is shown."""
    with viewer_for_hosts(desktop, plot) as viewer:
        with connect(channel_path(plot)) as host:
            host.send(picture(OTHER), picture(plot.read_bytes()))
            host.kept.shutdown(socket.SHUT_WR)
            host.expect_shown()
            host.expect_shown()
            host.expect_end()
            expect_picture(viewer, plot)
        with connect(channel_path(plot)) as host:
            host.send(picture(plot.read_bytes()), picture(OTHER))
        expect_picture(viewer, other(plot))
        expect_silence(viewer)


def every_frame_may_have_data(desktop, plot):
    data = plot.read_bytes()
    with viewer_for_hosts(desktop, plot) as viewer, connect(channel_path(plot)) as host:
        for first, second in (0, 0), (300, 300), (300, 310), (1, len(data)), (len(data), len(data)):
            host.show(OTHER)
            host.send(frame(BEGIN, data[:first]), frame(FURTHER, data[first:second]), frame(END, data[second:]))
            host.expect_shown()
            expect_picture(viewer, plot)


def without_a_begin_a_transmission_adds(desktop, plot):
    """But until one has had a begin, an end alone makes a new picture, whatever its length; later an empty one shows what
    there is."""
    long = beside(plot, "long.plt", "PU;" * 200 + plot.read_text())
    short = beside(plot, "short.plt", MORE)
    with viewer_for_hosts(desktop, plot) as viewer, connect(channel_path(plot)) as host:
        for alone in beside(plot, "empty.plt"), other(plot), short, long, other(plot), long, beside(plot, "empty.plt"):
            host.send(frame(END, alone.read_bytes()))
            host.expect_shown()
            expect_picture(viewer, alone)
        host.show(plot.read_bytes())
        host.send(frame(FURTHER, MORE.encode()), frame(END))
        host.expect_shown()
        both = beside(plot, "both.plt", plot.read_text() + MORE)
        expect_picture(viewer, both)
        host.send(frame(END))
        host.expect_shown()
        expect_picture(viewer, both)


def colons_are_taken_off(desktop, plot):
    """One from each frame of a transmission that begins with one. The log holds what is left."""
    beside(plot, "HPGL.ini", "LOGF=echo\n")
    data = plot.read_bytes()
    cuts = [data[i:i + 300] for i in range(0, len(data), 300)]
    colons = b"CO\":::\";" + b"".join(cuts)
    rows = ((frame(BEGIN, b":") + b"".join(frame(FURTHER, b":" + cut) for cut in cuts) + frame(END), data),
            (frame(BEGIN, b":" + data) + frame(END), data),
            (frame(BEGIN, b":") + frame(FURTHER, data) + frame(END, b":CO\"::\";"), data + b"CO\"::\";"),
            (frame(BEGIN, colons) + frame(END), colons))
    with viewer_for_hosts(desktop, plot, environment={"KEL_CONFIG_DIR": str(plot.parent)}) as viewer:
        with connect(channel_path(plot)) as host:
            for frames, expected in rows:
                host.show(OTHER)
                host.send(frames)
                host.expect_shown()
                expect_picture(viewer, plot)
                echo = plot.with_name("echo__00.log").read_bytes()
                assert echo == expected, echo


def the_data_may_name_a_file(desktop, plot):
    """Whose name is whole wherever it stands between pieces, and may hold blanks."""
    named = plot.with_name("a file of its own.plt")
    named.write_bytes(plot.read_bytes())
    with viewer_for_hosts(desktop, plot) as viewer, connect(channel_path(plot)) as host:
        for before in 0, 3, 200, 240, 256, 1000:
            host.show(OTHER)
            host.show("PU;" * (before // 3) + f"HPGL_FILE:{named}\n")
            expect_picture(viewer, plot)
        host.show(f"HPGL_INFO;{OTHER}")
        expect_picture(viewer, other(plot))
        host.show(f"HPGL_DATA{plot.read_text()}")
        expect_picture(viewer, plot)


def large_pictures_are_shown(desktop, plot):
    """More than a frame can hold, and than is kept in memory."""
    data = plot.read_bytes() + b"PU1,1;" * 3_000_000
    with viewer_for_hosts(desktop, plot) as viewer, connect(channel_path(plot)) as host:
        host.send(frame(BEGIN, data[:16_777_216]), frame(FURTHER, data[16_777_216:]), frame(END))
        host.expect_shown()
        expect_picture(viewer, plot)


# ---- ways to the viewer ---------------------------------------------------------------------------------------------


def a_descriptor_may_be_handed_over(desktop, plot):
    number = "exec \"$@\" 5<&0 0</dev/null"
    for command in (KELHPGL, "--channel-fd", "0"), ("sh", "-c", number, "sh", KELHPGL, "--channel-fd", "5"):
        ours, theirs = socket.socketpair()
        with desktop.viewer(*command, stdin=theirs) as viewer, on_socket(ours) as host:
            theirs.close()
            for shown in plot, other(plot):
                host.show(shown.read_bytes())
                expect_picture(viewer, shown)
            viewer.end()
            host.expect_end()


def frames_may_come_on_standard_input(desktop, plot):
    read, write = os.pipe()
    settings = {"XDG_RUNTIME_DIR": str(runtime_folder(plot))}
    with desktop.viewer(KELHPGL, "--frames", stdin=read, environment=settings) as viewer, open(write, "wb") as pipe:
        os.close(read)
        host = Host(viewer.process.stdout.fileno(), write)
        for shown in plot, other(plot):
            host.show(shown.read_bytes())
            expect_picture(viewer, shown)
        pipe.close()
        expect_picture(viewer, other(plot))
        expect_silence(viewer)


def a_host_that_leaves_without_a_word_leaves_an_empty_window(desktop, plot):
    ours, theirs = socket.socketpair()
    with desktop.viewer(KELHPGL, "--channel-fd", "0", stdin=theirs) as viewer:
        theirs.close()
        ours.close()
        expect_picture(viewer, beside(plot, "empty.plt"))


def a_viewer_to_which_nobody_speaks_shows_itself(desktop, plot):
    """Neither one that nobody knows, nor one with a host that says nothing or only half of what it has to say."""
    def nothing(_):
        pass

    def come(viewers):
        viewers.enter_context(connect(channel_path(plot)))

    for doing in nothing, come:
        began = time.monotonic()
        with viewer_for_hosts(desktop, plot) as viewer:
            with contextlib.ExitStack() as hosts:
                doing(hosts)
                expect_picture(viewer, beside(plot, "empty.plt"))
                assert time.monotonic() - began > SILENCE - 1
                with connect(channel_path(plot)) as host:
                    host.send(frame(END, plot.read_bytes()))
                    host.expect_shown()
                expect_picture(viewer, plot)


def the_socket_goes_with_the_viewer(desktop, plot):
    with viewer_for_hosts(desktop, plot) as viewer, connect(channel_path(plot)) as host:
        host.show(OTHER)
        assert len(list(runtime_folder(plot).iterdir())) == 2, list(runtime_folder(plot).iterdir())
        viewer.end()
        host.expect_end()
    assert not list(runtime_folder(plot).iterdir()), list(runtime_folder(plot).iterdir())


def a_name_is_taken_over_from_a_viewer_that_crashed(desktop, plot):
    for _ in range(2):
        with viewer_for_hosts(desktop, plot) as viewer, connect(channel_path(plot)) as host:
            host.show(plot.read_bytes())
            expect_picture(viewer, plot)
            viewer.process.kill()
            viewer.process.wait()
    assert channel_path(plot).exists()
    with viewer_for_hosts(desktop, plot) as viewer:
        wait_for("the new viewer", lambda: is_served(plot))
        viewer.end()
    assert not channel_path(plot).exists()


def is_served(plot):
    try:
        with connect(channel_path(plot)) as host:
            host.show(OTHER)
            return True
    except OSError:
        return False


def a_name_has_one_viewer(desktop, plot):
    with viewer_for_hosts(desktop, plot) as viewer, connect(channel_path(plot)) as host:
        host.show(plot.read_bytes())
        with desktop.viewer(KELHPGL, "--channel", f"{NAME}.lock",
                            environment={"XDG_RUNTIME_DIR": str(runtime_folder(plot))}) as other_name:
            wait_for("its socket", channel_path(plot).with_name(f"kelhpgl.{NAME}.lock").exists)
            other_name.process.terminate()
            other_name.outcome(0)
        with viewer_for_hosts(desktop, plot) as second:
            said = second.outcome(1)
            assert "another viewer has that name" in said and said.count("\n") == 1, said
        expect_picture(viewer, plot)
        host.show(OTHER)
        expect_picture(viewer, other(plot))


def its_files(plot):
    return sorted(runtime_folder(plot).iterdir())


def what_others_remove_is_made_again(desktop, plot):
    """The socket, the lock beside it, or their folder; the name stays the viewer's."""
    with viewer_for_hosts(desktop, plot) as viewer, connect(channel_path(plot)) as before:
        before.show(OTHER)
        both = lock, path = its_files(plot)
        for gone in [path], [lock], both:
            for file in gone:
                file.unlink()
            with viewer_for_hosts(desktop, plot) if gone == [lock] else contextlib.nullcontext() as second:
                if second:
                    assert "another viewer has that name" in second.outcome(1)
            wait_for("the files", lambda: its_files(plot) == both)
            with connect(path) as host:
                host.show(plot.read_bytes())
        shutil.rmtree(runtime_folder(plot))
        with connect(path) as host:
            host.show(plot.read_bytes())
        expect_picture(viewer, plot)
        with viewer_for_hosts(desktop, plot) as second:
            assert "another viewer has that name" in second.outcome(1)
        runtime_folder(plot).chmod(0o755)
        path.unlink()
        os.set_blocking(viewer.process.stderr.fileno(), False)
        said = wait_for("what it says", viewer.process.stderr.readline).decode()
        assert said == f"kelhpgl: cannot listen at {path}: its folder is not this user's alone\n", said
        runtime_folder(plot).chmod(0o700)
        with connect(path) as host:
            host.show(plot.read_bytes())
        before.show(OTHER)
        assert viewer.end() == "kelhpgl: listening again\n"
    assert not its_files(plot)


def a_viewer_leaves_its_successors_socket(desktop, plot):
    """While one does not look its files are removed, and another takes the name. Whoever ends first, hosts find the
    other."""
    lost = f"kelhpgl: cannot listen at {channel_path(plot)}: another viewer has that name"
    for first_ends in True, False:
        with viewer_for_hosts(desktop, plot) as first, connect(channel_path(plot)) as host:
            host.show(OTHER)
            first.process.send_signal(signal.SIGSTOP)
            for file in its_files(plot):
                file.unlink()
            with viewer_for_hosts(desktop, plot) as second, connect(channel_path(plot)) as new:
                new.show(OTHER)
                first.process.send_signal(signal.SIGCONT)
                os.set_blocking(first.process.stderr.fileno(), False)
                said = wait_for("what it says", first.process.stderr.readline).decode().strip()
                assert said == lost, said
                host.show(OTHER)
                ending, staying = (first, second) if first_ends else (second, first)
                assert ending.end() == ""
                with connect(channel_path(plot)) as later:
                    later.show(plot.read_bytes())
                expect_picture(staying, plot)
                staying.end()
        assert not its_files(plot), its_files(plot)


def its_folder_must_be_the_users_alone(desktop, plot):
    runtime_folder(plot).chmod(0o755)
    with viewer_for_hosts(desktop, plot) as viewer:
        box = wait_for("the box", lambda: viewer.windows("KEL HPGL Display"))[0]
        wait_for("the focus", box.is_active)
        desktop.xdotool("key", "Return")
        assert "its folder is not this user's alone" in viewer.outcome(1)


# ---- several hosts --------------------------------------------------------------------------------------------------


def hosts_take_turns(desktop, plot):
    with viewer_for_hosts(desktop, plot) as viewer:
        with connect(channel_path(plot)) as first, connect(channel_path(plot)) as second:
            for _ in range(5):
                first.show(plot.read_bytes())
                expect_picture(viewer, plot)
                second.show(OTHER)
                expect_picture(viewer, other(plot))


def one_hosts_picture_is_not_mixed_with_anothers(desktop, plot):
    data = plot.read_bytes()
    with viewer_for_hosts(desktop, plot) as viewer:
        with connect(channel_path(plot)) as first, connect(channel_path(plot)) as second:
            first.send(frame(BEGIN, data[:50]))
            time.sleep(0.2)
            second.send(picture(OTHER))
            time.sleep(0.2)
            first.send(frame(END, data[50:]))
            first.expect_shown()
            second.expect_shown()
            expect_picture(viewer, other(plot))
            first.show(data)
            expect_picture(viewer, plot)


def many_hosts_are_all_served(desktop, plot):
    with viewer_for_hosts(desktop, plot) as viewer:
        failures = []

        def speak():
            try:
                with connect(channel_path(plot)) as host:
                    for _ in range(20):
                        host.show(plot.read_bytes())
            except Exception as failure:
                failures.append(failure)
        hosts = [threading.Thread(target=speak) for _ in range(20)]
        for host in hosts:
            host.start()
        for host in hosts:
            host.join()
        assert not failures, failures
        expect_picture(viewer, plot)


# ---- loading --------------------------------------------------------------------------------------------------------


def loading_that_takes_long_is_told(desktop, plot):
    """In a panel that goes when the picture has come."""
    with viewer_for_hosts(desktop, plot) as viewer, connect(channel_path(plot)) as host:
        host.show(OTHER)
        expect_picture(viewer, other(plot))
        host.send(frame(BEGIN))
        viewer.window(PANEL)
        host.send(frame(END, plot.read_bytes()))
        host.expect_shown()
        wait_for("the panel to go", lambda: not viewer.windows(PANEL))
        expect_picture(viewer, plot)


def loading_can_be_given_up(desktop, plot):
    """The picture stays; the rest of the transmission is passed over, and the next is shown."""
    with viewer_for_hosts(desktop, plot) as viewer, connect(channel_path(plot)) as host:
        host.show(plot.read_bytes())
        expect_picture(viewer, plot)
        host.send(frame(BEGIN, OTHER.encode()))
        press_button(viewer.window(PANEL))
        host.expect((REFUSED, GIVEN_UP))
        wait_for("the panel to go", lambda: not viewer.windows(PANEL))
        expect_picture(viewer, plot)
        host.send(frame(FURTHER, OTHER.encode()), frame(END, OTHER.encode()))
        host.show(OTHER)
        expect_picture(viewer, other(plot))
        assert viewer.end() == f"kelhpgl: host: {GIVEN_UP}\n"


@contextlib.contextmanager
def handing_over_for_seconds(desktop, plot):
    """A host's large picture, which the log makes slow, is whole and on its way to the drawing."""
    beside(plot, "HPGL.ini", "LOGF=echo\n")
    with viewer_for_hosts(desktop, plot, environment={"KEL_CONFIG_DIR": str(plot.parent)}) as viewer:
        with connect(channel_path(plot)) as host:
            host.show(OTHER)
            host.send(frame(BEGIN), *[frame(FURTHER, b"PU1,1;" * 100_000)] * 150, frame(END))
            host.expect((ACCEPTED, ""))
            yield viewer, host


def handing_over_can_be_given_up(desktop, plot):
    """What has been handed over is shown."""
    with handing_over_for_seconds(desktop, plot) as (viewer, host):
        press_button(viewer.window(PANEL))
        host.expect((REFUSED, GIVEN_UP))
        wait_for("the panel to go", lambda: not viewer.windows(PANEL))
        expect_picture(viewer, beside(plot, "empty.plt"))
        host.show(plot.read_bytes())
        expect_picture(viewer, plot)


def the_viewer_may_end_meanwhile(desktop, plot):
    with handing_over_for_seconds(desktop, plot) as (viewer, host):
        expect_silence(viewer)
        host.expect_end()
    assert not list(runtime_folder(plot).iterdir())
    plot.with_name("HPGL.ini").unlink()
    with viewer_for_hosts(desktop, plot) as viewer, connect(channel_path(plot)) as host:
        host.show(OTHER)
        host.send(frame(BEGIN, OTHER.encode()))
        viewer.window(PANEL)
        expect_silence(viewer)
        host.expect_end()


def press_button(panel):
    _, _, width, height = panel.geometry()
    panel.click(width - 40, height - 20)


def a_file_that_never_comes_can_be_given_up(desktop, plot):
    """Hosts wait for it no longer."""
    pipe = plot.with_name("pipe")
    os.mkfifo(pipe)
    with viewer_for_hosts(desktop, plot, pipe) as viewer, connect(channel_path(plot)) as host:
        host.send(picture(plot.read_bytes()))
        press_button(viewer.window(PANEL))
        host.expect_shown()
        expect_picture(viewer, plot)


# ---- files ----------------------------------------------------------------------------------------------------------


def watching(desktop, plot, changing):
    return desktop.viewer(KELHPGL, "--as-is", "--watch", changing, environment={"XDG_RUNTIME_DIR": str(runtime_folder(plot))})


def files_are_read_again_when_they_change(desktop, plot):
    thin = plot.read_bytes()
    changing = beside(plot, "changing.plt", OTHER)
    with watching(desktop, plot, changing) as viewer:
        expect_picture(viewer, other(plot))
        changing.write_bytes(thin)  # in place
        expect_picture(viewer, plot)
        other(plot).rename(changing)  # by another
        expect_picture(viewer, other(plot))
        changing.unlink()
        time.sleep(1)
        expect_picture(viewer, other(plot))
        changing.write_bytes(thin)
        expect_picture(viewer, plot)
        expect_silence(viewer)


def a_file_is_read_again_when_it_is_whole(desktop, plot):
    """Not while somebody writes it: no other picture is seen in between, unless the writer itself paused for long."""
    changing = beside(plot, "changing.plt", OTHER)
    with watching(desktop, plot, changing) as viewer:
        expect_picture(viewer, other(plot))
        before = viewer.picture()
        writes = [time.monotonic()]

        def write():
            with changing.open("wb", buffering=0) as file:
                for byte in plot.read_bytes()[:150]:
                    file.write(bytes([byte]))
                    writes.append(time.monotonic())
                    time.sleep(0.01)
                file.write(plot.read_bytes()[150:])
        writer = threading.Thread(target=write)
        writer.start()
        while writer.is_alive():
            unchanged = numpy.array_equal(viewer.picture(), before)
            paused = max(later - one for one, later in itertools.pairwise([*writes, time.monotonic()])) > 0.2
            assert unchanged or paused or not writer.is_alive(), "read before it was whole"
        expect_picture(viewer, plot)


def a_file_can_be_dropped_on_the_window(desktop, plot):
    """It is shown, and stays where it was although it may be moved."""
    dropped = beside(plot, "dr\u00e4gged & dropped.plt", OTHER)
    with desktop.viewer(KELHPGL, "--as-is", plot) as viewer:
        expect_picture(viewer, plot)
        with subprocess.Popen([HELPERS / "drag_source", dropped], env=desktop.environment,
                              stdout=subprocess.PIPE) as source:
            wait_for("the source", lambda: desktop.xdotool("search", "--onlyvisible", "--name", "^drag source$"))
            desktop.xdotool("mousemove", 1300, 200, "mousedown", 1)
            for x in 1290, 1280, 700, 400:
                desktop.xdotool("mousemove", x, 250)
            viewer.mouse(200, 200)
            viewer.mouse(210, 200, "mouseup", 1)
            assert source.stdout.readline() == b"copied\n"
            expect_picture(viewer, other(plot))
            source.kill()
        assert dropped.exists()


run_all(pictures_come_one_after_another, pictures_need_not_be_waited_for, frames_may_come_byte_by_byte,
        a_host_need_not_wait_for_answers, every_frame_may_have_data, without_a_begin_a_transmission_adds, colons_are_taken_off, the_data_may_name_a_file,
        large_pictures_are_shown, a_descriptor_may_be_handed_over, frames_may_come_on_standard_input,
        a_host_that_leaves_without_a_word_leaves_an_empty_window, a_viewer_to_which_nobody_speaks_shows_itself,
        the_socket_goes_with_the_viewer, a_name_is_taken_over_from_a_viewer_that_crashed, a_name_has_one_viewer,
        what_others_remove_is_made_again, a_viewer_leaves_its_successors_socket,
        its_folder_must_be_the_users_alone, hosts_take_turns, one_hosts_picture_is_not_mixed_with_anothers,
        many_hosts_are_all_served, loading_that_takes_long_is_told, loading_can_be_given_up,
        handing_over_can_be_given_up, the_viewer_may_end_meanwhile, a_file_that_never_comes_can_be_given_up,
        files_are_read_again_when_they_change, a_file_is_read_again_when_it_is_whole,
        a_file_can_be_dropped_on_the_window)
