"""Draws the output calls that hpgldump prints, by geometry alone, so that the screen's pictures can be held against it.

Coordinates are device pixels, y growing upward; a point is the middle of its pixel.

    thin line     the pixel nearest to the line, on each step along its longer side; of two that are equally near, the
                  one farther from the line's left (on steep lines: lower) end
    wide line     every pixel whose middle is at most half the width away from the path: round ends and corners
    box           outlined through its four corners, or filled with width x height pixels
    polygons      every pixel whose middle lies inside an odd number of them
"""
import itertools
import math
import subprocess

from picture import Picture

WHITE = b"\xff\xff\xff"
TEXT_CALL = "OUTchars_len"
THIN = 1  # the greatest width that is drawn as a thin line


def dump(program, plot, width, height, *options):
    """Palette and output calls of a plot in a window of that size; run beside the plot, which may name other files."""
    command = [program, "--picture", "--calls", "--size", f"{width}x{height}", *options, plot.name]
    return subprocess.run(command, cwd=plot.parent, capture_output=True, check=True).stdout.decode().splitlines()


def has_text(lines):
    return any(line.startswith(TEXT_CALL) for line in lines)


def has_wide_lines(lines):
    return any(kind == "OUTgeomline" and int(words[0]) > THIN for kind, *words in map(str.split, lines))


def pairs(numbers):
    return list(zip(numbers[::2], numbers[1::2]))


def risen(rise, step, steps):
    """How far a line has come after some of its steps: rise * step / steps, rounded, halves away from 0."""
    way = (2 * abs(rise) * step + steps) // max(2 * steps, 1)
    return way if rise > 0 else -way


def cut(slope, offset, least, most):
    """The x from `least` to `most` at which slope * x + offset is from 0 to 1, as a range; None when there is none."""
    if slope == 0:
        return (least, most) if 0 <= offset <= 1 else None
    ends = sorted((-offset / slope, (1 - offset) / slope))
    least, most = max(least, ends[0]), min(most, ends[1])
    return (least, most) if least <= most else None


class Drawing:
    """The picture of a plot's output calls. Each method named like a call draws it."""

    def __init__(self, lines, width, height):
        words = [line.split() for line in lines]
        self.palette = {int(index): bytes(map(int, rgb)) for kind, index, *rgb in words if kind == "palette"}
        self.picture = Picture.blank(width, height, self.palette.get(0, WHITE))
        self.line_colour = self.fill_colour = WHITE
        for kind, *numbers in words:
            if kind.startswith("OUT"):
                getattr(self, kind)(*map(int, numbers))

    def fill(self, left, right, y, colour):
        """The pixels of a row from `left` to `right`, as far as they are in the picture."""
        left, right = max(left, 0), min(right, self.picture.width - 1)
        if left <= right and 0 <= y < self.picture.height:
            row = self.picture.rows[self.picture.height - 1 - y]
            row[3 * left:3 * (right + 1)] = colour * (right - left + 1)

    def rows(self, lowest, highest):
        return range(max(math.ceil(lowest), 0), min(math.floor(highest), self.picture.height - 1) + 1)

    def OUTlinecolour(self, index):
        self.line_colour = self.palette[index]

    def OUTfillcolour(self, index):
        self.fill_colour = self.palette[index]

    def OUTline(self, x1, y1, x2, y2):
        if abs(x2 - x1) < abs(y2 - y1):
            (y1, x1), (y2, x2) = sorted(((y1, x1), (y2, x2)))
            for y in self.rows(y1, y2):
                x = x1 + risen(x2 - x1, y - y1, y2 - y1)
                self.fill(x, x, y, self.line_colour)
        else:
            (x1, y1), (x2, y2) = sorted(((x1, y1), (x2, y2)))
            for x in range(max(x1, 0), min(x2, self.picture.width - 1) + 1):
                self.fill(x, x, y1 + risen(y2 - y1, x - x1, x2 - x1), self.line_colour)

    def OUTgeomline(self, width, count, *numbers):
        points = pairs(numbers[:2 * count])
        for (x1, y1), (x2, y2) in zip(points, points[1:] or points):
            if width > THIN:
                self.wide_line(width / 2, x1, y1, x2, y2)
            else:
                self.OUTline(x1, y1, x2, y2)

    def wide_line(self, radius, x1, y1, x2, y2):
        for y in self.rows(min(y1, y2) - radius, max(y1, y2) + radius):
            ends = self.disc(radius, x1, y - y1), self.disc(radius, x2, y - y2)
            for span in (*ends, self.band(radius, x1, y1, x2, y2, y)):
                if span:
                    self.fill(math.ceil(span[0]), math.floor(span[1]), y, self.line_colour)

    @staticmethod
    def disc(radius, x, up):
        """Where a row, `up` above the middle of a disc, runs through it."""
        if abs(up) > radius:
            return None
        half = math.sqrt(radius * radius - up * up)
        return x - half, x + half

    def band(self, radius, x1, y1, x2, y2, y):
        """Where a row runs between the two ends of a line and is not farther than the radius from it."""
        wide, high = x2 - x1, y2 - y1
        square = wide * wide + high * high
        if square == 0:
            return None
        along = cut(wide / square, ((y - y1) * high - x1 * wide) / square, 0, self.picture.width - 1)
        if along is None:
            return None
        across = 2 * radius * math.sqrt(square)
        return cut(high / across, (-(y - y1) * wide - x1 * high) / across + 0.5, *along)

    def OUTboxr0(self, x, y, width, height):
        corners = [(x, y), (x + width, y), (x + width, y + height), (x, y + height), (x, y)]
        for start, end in itertools.pairwise(corners):
            self.OUTline(*start, *end)

    def OUTboxr1(self, x, y, width, height):
        left, right = sorted((x, x + width))
        low, high = sorted((y, y + height))
        for row in self.rows(low, high - 1):
            self.fill(left, right - 1, row, self.fill_colour)

    def OUTwinsolidpolygons(self, count, *numbers):
        points = iter(pairs(numbers[count:]))
        sides = [side for size in numbers[:count] for side in itertools.pairwise(itertools.islice(points, size))]
        heights = [y for side in sides for _, y in side]
        for y in self.rows(min(heights, default=0), max(heights, default=-1)):
            crossings = sorted(x1 + (y - y1) * (x2 - x1) / (y2 - y1)
                               for (x1, y1), (x2, y2) in sides if min(y1, y2) <= y < max(y1, y2))
            for left, right in pairs(crossings):
                self.fill(math.ceil(left), math.ceil(right) - 1, y, self.fill_colour)


def drawn(lines, width, height):
    """The picture of what hpgldump printed; there must be no text in it."""
    return Drawing(lines, width, height).picture
