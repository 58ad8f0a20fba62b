"""A host: it speaks the frames of docs/host-channel.md with the viewer."""
import os
import select
import socket
import struct

from desktop import PATIENCE, wait_for

FURTHER, BEGIN, END = 0, 1, 2
ACCEPTED, REFUSED, SHOWN = 16, 17, 18
HEADER = struct.Struct("<BI")
MOST_FRAME_BYTES = 16 * 1024 * 1024
NAME = "drawings"


def frame(kind, data=b""):
    return HEADER.pack(kind, len(data)) + data


def picture(data):
    """A transmission: plotter data, which may be text."""
    data = data if isinstance(data, bytes) else data.encode()
    return frame(BEGIN) + frame(FURTHER, data) + frame(END)


class Host:
    """One that reads the viewer's answers from one descriptor and writes to another; `kept` is what must stay open."""

    def __init__(self, reading, writing, kept=None):
        self.reading, self.writing, self.kept = reading, writing, kept

    def __enter__(self):
        return self

    def __exit__(self, *error):
        self.kept.close()

    def send(self, *frames):
        rest = memoryview(b"".join(frames))
        while rest:
            rest = rest[os.write(self.writing, rest):]

    def receive(self, size, patience=PATIENCE):
        """So many bytes, or fewer at the end."""
        data = b""
        while len(data) < size:
            if not select.select([self.reading], [], [], patience)[0]:
                raise AssertionError(f"no answer in {patience} s")
            try:
                more = os.read(self.reading, size - len(data))
            except ConnectionResetError:  # the viewer has not read everything
                more = b""
            if not more:
                break
            data += more
        return data

    def answer(self, patience=PATIENCE):
        """Its kind and its text; None at the end."""
        header = self.receive(HEADER.size, patience)
        if not header:
            return None
        kind, length = HEADER.unpack(header)
        return kind, self.receive(length).decode()

    def expect(self, *answers):
        for answer in answers:
            given = self.answer()
            assert given == answer, (given, answer)

    def expect_shown(self):
        self.expect((ACCEPTED, ""), (SHOWN, ""))

    def expect_refused(self, reason):
        self.expect((REFUSED, reason))

    def expect_end(self):
        self.expect(None)

    def show(self, data):
        self.send(picture(data))
        self.expect_shown()


def on_socket(connection):
    return Host(connection.fileno(), connection.fileno(), connection)


def connection_to(path):
    """As soon as somebody listens there."""
    connection = socket.socket(socket.AF_UNIX)

    def is_connected():
        try:
            connection.connect(str(path))
            return True
        except (FileNotFoundError, ConnectionRefusedError):
            return False
    wait_for("the viewer's socket", is_connected)
    return connection


def connect(path):
    return on_socket(connection_to(path))


def runtime_folder(plot):
    """The user's own, beside the plot."""
    folder = plot.with_name("run")
    folder.mkdir(mode=0o700, exist_ok=True)
    return folder


def channel_path(plot):
    return runtime_folder(plot) / f"kelhpgl.{NAME}"


def listening(desktop, program, plot, *arguments, environment=None):
    """A viewer that hosts find at channel_path(plot)."""
    settings = {"XDG_RUNTIME_DIR": str(runtime_folder(plot)), **(environment or {})}
    return desktop.viewer(program, "--channel", NAME, *arguments, folder=plot.parent, environment=settings)
