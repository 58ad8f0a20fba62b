"""A picture of 24-bit colours, and PNG files of it."""
import collections
import itertools
import struct
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"
INDEXED = 3  # a PNG file's colour type, with one byte a pixel
CHANNELS = {2: 3, INDEXED: 1}  # bytes a pixel by colour type, of those that are read
UP, NEAREST = 2, 4  # filters of a row


class Picture:
    """Rows from the top, three bytes a pixel; a colour is three bytes."""

    def __init__(self, width, height, rows):
        self.width, self.height, self.rows = width, height, rows

    @classmethod
    def blank(cls, width, height, colour):
        return cls(width, height, [bytearray(colour * width) for _ in range(height)])

    @classmethod
    def from_bytes(cls, width, height, data):
        return cls(width, height, [data[3 * width * y:3 * width * (y + 1)] for y in range(height)])

    def pixel(self, x, y):
        return bytes(self.rows[y][3 * x:3 * x + 3])

    def put(self, x, y, colour):
        self.rows[y][3 * x:3 * x + 3] = colour

    def colours(self, y):
        """The colours of a row, from left to right."""
        row = bytes(self.rows[y])
        return [row[x:x + 3] for x in range(0, len(row), 3)]

    def around(self, x, y, reach):
        """The places at most that many pixels away, on both axes, that lie in the picture."""
        for below in range(max(y - reach, 0), min(y + reach + 1, self.height)):
            for beside in range(max(x - reach, 0), min(x + reach + 1, self.width)):
                yield beside, below

    def colours_around(self, x, y, reach):
        return {self.pixel(*place) for place in self.around(x, y, reach)}


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def write_png(file, picture):
    """Writes a picture of at most 256 colours, so that the file is small."""
    rows = [picture.colours(y) for y in range(picture.height)]
    palette = {colour: index for index, colour in enumerate(dict.fromkeys(itertools.chain(*rows)))}
    data = b"".join(b"\0" + bytes(palette[colour] for colour in row) for row in rows)
    header = struct.pack(">IIBBBBB", picture.width, picture.height, 8, INDEXED, 0, 0, 0)
    file.write_bytes(SIGNATURE + chunk(b"IHDR", header) + chunk(b"PLTE", b"".join(palette)) +
                     chunk(b"IDAT", zlib.compress(data, 9)) + chunk(b"IEND", b""))


def chunks(data):
    """The data of a PNG file's chunks by their kind, those of a kind joined."""
    found, at = collections.defaultdict(bytes), len(SIGNATURE)
    while at < len(data):
        length, kind = struct.unpack_from(">I4s", data, at)
        found[kind] += data[at + 8:at + 8 + length]
        at += length + 12
    return found


def nearest(left, above, corner):
    """The one of the three that is nearest to left + above - corner."""
    from_left, from_above, from_corner = abs(above - corner), abs(left - corner), abs(left + above - 2 * corner)
    if from_left <= from_above and from_left <= from_corner:
        return left
    return above if from_above <= from_corner else corner


def unfiltered(kind, differences, above, step):
    """A row that was stored as differences to the bytes `step` before and to those of the row above."""
    # Where these are 0, the row is the same as the one above for a start: nearly always, in a drawing.
    same = len(differences) - len(differences.lstrip(b"\0")) if kind in (UP, NEAREST) else 0
    row = bytearray(above[:same] + differences[same:])
    for at in range(same, len(row)):
        left, corner = (row[at - step], above[at - step]) if at >= step else (0, 0)
        if kind == UP:
            guess = above[at]
        elif kind == NEAREST:
            guess = nearest(left, above[at], corner)
        else:
            guess = (0, left, 0, (left + above[at]) // 2)[kind]
        row[at] = (row[at] + guess) % 256
    return row


def read_png(file):
    """Reads what write_png and the viewer write: 8 bits, indexed or RGB, not interlaced."""
    found = chunks(file.read_bytes())
    width, height, depth, kind, *_, interlaced = struct.unpack(">IIBBBBB", found[b"IHDR"])
    if depth != 8 or kind not in CHANNELS or interlaced:
        raise ValueError(f"{file}: a PNG file of another kind")
    step, palette, data = CHANNELS[kind], found[b"PLTE"], zlib.decompress(found[b"IDAT"])
    length = step * width + 1
    rows, above = [], bytes(length - 1)
    for at in range(0, length * height, length):
        above = unfiltered(data[at], data[at + 1:at + length], above, step)
        rows.append(b"".join(palette[3 * index:3 * index + 3] for index in above) if kind == INDEXED else bytes(above))
    return Picture(width, height, rows)
