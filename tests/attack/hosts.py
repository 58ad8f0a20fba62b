"""Hosts that break every rule, against a viewer that afterwards must serve others as before."""
import contextlib
import os
import signal
import socket
import struct
import subprocess
import sys
import threading
import time

import mutations
import viewers
from case import Finding, wait_until
from host import BEGIN, END, FURTHER, HEADER, MOST_FRAME_BYTES, frame, picture

SECONDS = 2.0  # that hosts attack
EARLY = 0, -signal.SIGTERM  # exit codes of a viewer that is told to end, perhaps before it has begun
CROWD = 300  # connections at a time, at most; the viewer takes 64


def against(attack):
    """Runs an attack on a viewer that has shown a picture."""
    def run(case):
        mutations.write_neighbours(case.folder)
        viewer = viewers.listening(case)
        viewers.expect_shown(case, viewer, mutations.honest_plot(case.dice))
        before = viewer.sockets()
        attack(case, viewer)
        viewer.expect_alive()
        viewers.expect_unharmed(case, viewer, before)
    return run


def transmission(dice):
    """A hostile plot in frames, some of them with colons in front."""
    data = mutations.hostile_plot(dice)[:300_000]
    frames, mark = [], dice.choice((b"", b"", b":"))
    while data:
        length = dice.choice((1, 5, 100, 255, 256, 257, 65_536))
        frames.append(frame(FURTHER, mark + data[:length]))
        data = data[length:]
        if len(frames) > 500:
            break
    begin = frame(BEGIN, mark) if dice.random() < 0.9 else frame(END)
    return begin + b"".join(frames) + frame(END) * (dice.random() < 0.9)


def send(one, data, seconds=SECONDS):
    """As much as it takes in the time; whether the other end refuses does not matter."""
    one.kept.settimeout(seconds)
    with contextlib.suppress(OSError):
        one.kept.sendall(data)


def sends_in_turn(make):
    """Hosts one after another, each sending what is made and leaving."""
    def attack(case, viewer):
        end = time.monotonic() + SECONDS
        while time.monotonic() < end:
            with viewers.connect(case, viewer) as one:
                send(one, make(case.dice))
                if case.dice.random() < 0.5:
                    with contextlib.suppress(OSError):
                        one.kept.recv(100)
    return against(attack)


def cut_frames(dice):
    return mutations.cut_off(dice, transmission(dice))


def wrong_counts(dice):
    """Lengths that are not what follows, and kinds that there are not."""
    parts = [picture(mutations.honest_plot(dice)[:1000])]
    for _ in range(dice.randrange(1, 5)):
        kind = dice.choice((BEGIN, FURTHER, END, BEGIN, FURTHER, END, 3, 16, 18, 255))
        length = dice.choice((0, 1, 99, 101, 65_536, MOST_FRAME_BYTES - 1, MOST_FRAME_BYTES, MOST_FRAME_BYTES + 1,
                              2**31, 2**32 - 1))
        parts.append(HEADER.pack(kind, length) + dice.randbytes(100))
    dice.shuffle(parts)
    return b"".join(parts)


def oversized(dice):
    content = b"PU1,1;" * (MOST_FRAME_BYTES // 6)
    content = content + b";" * (MOST_FRAME_BYTES - len(content) + dice.choice((0, 0, 1)))
    return frame(BEGIN) + frame(FURTHER, content) * dice.choice((1, 2)) + frame(END) * dice.choice((0, 1))


def garbage(dice):
    return dice.choice((lambda: dice.randbytes(mutations.some(dice, 100_000)),
                        lambda: mutations.flip_bytes(dice, transmission(dice)),
                        lambda: mutations.flip_bits(dice, transmission(dice)),
                        lambda: mutations.cut(dice, transmission(dice)),
                        lambda: mutations.hostile_plot(dice),
                        lambda: bytes(mutations.some(dice, 100_000)),
                        lambda: bytes([dice.randrange(3)]) * mutations.some(dice, 100_000)))()


def crowd(case, viewer):
    """Hundreds at a time; some say something, some stay in the midst of it."""
    dice = case.dice
    hosts = [one for one in (viewers.try_to_connect(case) for _ in range(dice.randrange(64, CROWD))) if one]
    dice.shuffle(hosts)
    for one in hosts:
        if dice.random() < 0.5:
            send(one, dice.choice((cut_frames, garbage, wrong_counts))(dice)[:5000], 0.05)
        if dice.random() < 0.3:
            one.kept.close()
    viewer.expect_alive()
    for one in hosts:
        one.kept.close()


def vanish(case, viewer):
    """Processes that send as fast as they can and are killed, and connections that are torn down."""
    dice = case.dice
    program = ("import socket, sys\ns = socket.socket(socket.AF_UNIX)\ns.connect(sys.argv[1])\n"
               "data = open(sys.argv[2], 'rb').read()\nwhile True:\n    s.sendall(data)\n")
    sent = case.folder / "frames"
    sent.write_bytes(transmission(dice) + frame(BEGIN))
    for _ in range(4):
        with contextlib.ExitStack() as stack:
            several = [stack.enter_context(subprocess.Popen([sys.executable, "-c", program, viewers.path(case), sent],
                                                            env=case.environment, stderr=subprocess.DEVNULL))
                       for _ in range(dice.randrange(1, 4))]
            time.sleep(dice.uniform(0.05, 1.0))
            for one in several:
                one.kill()
    for _ in range(50):
        with viewers.connect(case, viewer) as one:
            one.kept.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
            send(one, cut_frames(dice)[:dice.randrange(70_000)], 0.1)
            if dice.random() < 0.3:
                with contextlib.suppress(OSError):
                    one.kept.shutdown(dice.choice((socket.SHUT_RD, socket.SHUT_WR, socket.SHUT_RDWR)))


def drip(one, data, stop):
    for byte in data:
        if stop.wait(0.01):
            return
        send(one, bytes([byte]))


def slow(case, viewer):
    """Byte by byte, while others want to be served."""
    dice, stop = case.dice, threading.Event()
    hosts = [viewers.connect(case, viewer) for _ in range(dice.randrange(1, 10))]
    threads = [threading.Thread(target=drip, args=(one, transmission(dice), stop)) for one in hosts]
    for thread in threads:
        thread.start()
    time.sleep(dice.uniform(0, SECONDS))
    stop.set()
    for thread in threads:
        thread.join()
    if dice.random() < 0.5:  # silent inside a transmission: the viewer leaves it for others
        viewers.expect_shown(case, viewer)
    for one in hosts:
        one.kept.close()


def deaf(case, viewer):
    """Never reads an answer. What has come is shown all the same, so it is not much."""
    dice = case.dice
    hosts = [viewers.connect(case, viewer) for _ in range(dice.randrange(1, 8))]
    small = picture(b"IN;SP1;PU0,0;PD10,10;" + b";" * 10_000)
    threads = [threading.Thread(target=send, args=(one, small * 500)) for one in hosts]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    viewer.expect_alive()
    for one in hosts:
        one.kept.close()


# ---- other ways in --------------------------------------------------------------------------------------------------

def pipes(case):
    """--frames: standard input breaks off, standard output is not read or closed."""
    dice = case.dice
    mutations.write_neighbours(case.folder)
    reads_nothing = dice.random() < 0.3
    viewer = viewers.start(case, "--frames", stdin=subprocess.PIPE,
                           stdout=subprocess.PIPE if reads_nothing else subprocess.DEVNULL)
    if reads_nothing and dice.random() < 0.5:
        viewer.process.stdout.close()
    sent = garbage(dice) + cut_frames(dice) + wrong_counts(dice)
    writing = threading.Thread(target=write, args=(viewer.process.stdin, sent))
    writing.start()
    writing.join(SECONDS)
    viewer.expect_alive()
    viewer.terminate(EARLY)
    writing.join()
    if reads_nothing:
        viewer.process.stdout.close()


def write(stream, data):
    with contextlib.suppress(OSError, ValueError):
        stream.write(data)
    with contextlib.suppress(OSError, ValueError):
        stream.close()


def descriptor(case):
    """--channel-fd with descriptors that are no socket, and with one that breaks off."""
    dice = case.dice
    ours, theirs = socket.socketpair()
    plain_file = case.folder / "file"
    plain_file.write_bytes(b"IN;")
    folder = os.open(case.folder, os.O_RDONLY)
    with ours, theirs, open(plain_file, "rb") as file:
        inherited = [theirs.fileno(), file.fileno(), folder]
        given = dice.choice((theirs.fileno(), theirs.fileno(), *inherited[1:], 0, 2, 9999, 2147483647))
        viewer = viewers.start(case, "--channel-fd", given, pass_fds=inherited)
        os.close(folder)
        is_socket = given == theirs.fileno()
        theirs.close()
        ours.settimeout(SECONDS)
        with contextlib.suppress(OSError):
            ours.sendall(garbage(dice) + cut_frames(dice))
        ours.close()
        time.sleep(dice.uniform(0, SECONDS))
        if is_socket:
            viewer.expect_alive()
        viewer.terminate(EARLY if is_socket else (*EARLY, 1, 2))


def viewers_of_one_name(case):
    """Of viewers that start together one listens, the others say so; one that is killed is followed by another."""
    several = [viewers.start(case, "--channel", viewers.CHANNEL) for _ in range(3)]
    if not wait_until(lambda: sum(one.process.poll() is None for one in several) == 1, viewers.ANSWER):
        raise Finding("of three viewers of one name not one is left")
    left = [one for one in several if one.process.poll() is None]
    for one in several:
        if one not in left:
            one.finish((1,))
    for one in left:
        viewers.expect_shown(case, one)
        one.send(signal.SIGKILL)
        one.process.wait()
    after = viewers.listening(case)
    viewers.expect_shown(case, after)
    after.terminate()


ROWS = {"frames cut": sends_in_turn(cut_frames), "wrong counts": sends_in_turn(wrong_counts),
        "oversized frames": sends_in_turn(oversized), "garbage": sends_in_turn(garbage), "crowds": against(crowd),
        "hosts that vanish": against(vanish), "slow hosts": against(slow), "deaf hosts": against(deaf),
        "two pipes": pipes, "descriptors as channel": descriptor, "viewers of one name": viewers_of_one_name}
