#!/usr/bin/env python3
"""Plays the viewer for hpglsend's test: keeps to the protocol, draws nothing.

usage: viewer_double.py --channel NAME

Writes its process id, a line, into the file DOUBLE_STARTED and what it is sent into DOUBLE_LOG: the sizes of a
transmission's frames and its bytes. DOUBLE_PLAYS says what it does beside that:
    blind   shows every transmission and writes nothing down
    late    listens only after a second
    refuse  refuses every transmission
    rude    the same, with a reason that commands a terminal
    early   refuses every transmission as soon as it has begun, and reads the rest
    strict  the same, and closes the connection
    full    refuses and closes every connection when it is made
    dies    ends when a transmission has begun
    mute    ends when a transmission has come
    prints  shows every transmission and prints it to the host
    mixes   the same, with the answers among the page's frames
    halves  shows every transmission, prints half a page and waits
    breaks  the same, and ends
    floods  shows every transmission, writes nothing down, but prints 400 MB before
    never   ends at once
"""
import contextlib
import fcntl
import os
import pathlib
import socket
import struct
import sys
import time

FURTHER, BEGIN, END, ACCEPTED, REFUSED, SHOWN, PAGE_BEGIN, PAGE_DATA, PAGE_END = 0, 1, 2, 16, 17, 18, 19, 20, 21
PIECE = 65536
REASONS = {"refuse": b"no paper", "rude": b"\x1b[2Jno\npaper\x7f \xc3\xa4\x9b"}
PAGE = b"%PDF" + bytes(range(256)) * 1024
PLAYS = os.environ.get("DOUBLE_PLAYS", "")


def write_down(variable, line):
    with open(os.environ[variable], "a", encoding="ascii") as file:
        file.write(line + "\n")


def say(host, kind, content=b""):
    try:
        host.sendall(struct.pack("<BI", kind, len(content)) + content)
    except OSError:
        pass  # a host that has gone


def frames(host):
    with contextlib.suppress(ConnectionResetError), host.makefile("rb") as stream:  # a host that was killed
        while len(header := stream.read(5)) == 5:
            kind, length = struct.unpack("<BI", header)
            yield kind, stream.read(length)


def page():
    """The frames of a page."""
    pieces = [PAGE[start:start + PIECE] for start in range(0, len(PAGE), PIECE)]
    return [(PAGE_BEGIN, b"pdf"), *((PAGE_DATA, piece) for piece in pieces), (PAGE_END, b"")]


def answers():
    """To a transmission: replies, and what is printed."""
    verdict = (REFUSED, REASONS[PLAYS]) if PLAYS in REASONS else (SHOWN, b"")
    begin, *rest = page()
    if PLAYS == "mixes":
        return [begin, (ACCEPTED, b""), *rest[:2], verdict, *rest[2:]]
    printed = {"prints": [begin, *rest], "halves": [begin, *rest[:2]], "breaks": [begin, *rest[:2]]}
    return [(ACCEPTED, b""), verdict, *printed.get(PLAYS, [])]


def take(host, sizes, data):
    write_down("DOUBLE_LOG", f"{sizes} {data.hex()}")
    if PLAYS == "mute":
        sys.exit(0)
    for kind, content in answers():
        say(host, kind, content)
    if PLAYS == "breaks":
        sys.exit(0)


def end_at_once(_host, _kind):
    sys.exit(0)


def refuse_early(host, kind):
    if kind == BEGIN:
        say(host, REFUSED, b"no paper")
        if PLAYS == "strict":
            host.shutdown(socket.SHUT_RDWR)


def show_unseen(host, kind):
    if kind == END:
        say(host, SHOWN)


def flood(host, kind):
    if kind == END:
        say(host, PAGE_BEGIN, b"svg")
        for _ in range(400):
            say(host, PAGE_DATA, bytes(1_000_000))
        say(host, PAGE_END)
        say(host, SHOWN)


# What looks at the kinds of frames alone.
FRAME_BY_FRAME = {"dies": end_at_once, "early": refuse_early, "strict": refuse_early, "blind": show_unseen,
                  "floods": flood}


def serve(host):
    sizes, data = [], b""
    for kind, piece in frames(host):
        if PLAYS in FRAME_BY_FRAME:
            FRAME_BY_FRAME[PLAYS](host, kind)
            continue
        sizes, data = ([], b"") if kind == BEGIN else (sizes, data)
        sizes, data = [*sizes, len(piece)], data + piece
        if kind == END:
            take(host, sizes, data)


def listening(path):
    """The name is the lock's: a second viewer ends, and a socket that was left behind is taken over."""
    path.parent.mkdir(mode=0o700, exist_ok=True)
    lock = open(f"{path}.lock", "w", encoding="ascii")
    try:
        fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except BlockingIOError:
        sys.exit(1)
    if PLAYS == "late":
        time.sleep(1)
    path.unlink(missing_ok=True)
    door = socket.socket(socket.AF_UNIX)
    door.bind(str(path))
    door.listen()
    return door, lock


def main():
    write_down("DOUBLE_STARTED", str(os.getpid()))
    if PLAYS == "never":
        sys.exit(7)
    door, _lock = listening(pathlib.Path(os.environ["XDG_RUNTIME_DIR"]) / f"kelhpgl.{sys.argv[2]}")
    while True:
        host, _ = door.accept()
        with host:
            if PLAYS == "full":
                say(host, REFUSED, b"too many hosts")
            else:
                serve(host)


if __name__ == "__main__":
    main()
