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

import numpy

WHITE = 0xFFFFFF
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


def risen(rise, steps, all_steps):
    """How far a line has come after some of its steps: rise * step / all_steps, rounded, halves away from 0."""
    # Counted from the first step that is asked for, so that no product is too large for an array's numbers.
    step, whole = 2 * abs(rise), max(2 * all_steps, 1)
    before, rest = divmod(step * int(steps[0]) + all_steps, whole)
    way = before + (rest + step * (steps - steps[0])) // whole
    return way if rise > 0 else -way


def between(lowest, highest, end):
    """The rows or columns of a picture from one coordinate to another."""
    return slice(max(math.ceil(lowest), 0), max(min(math.floor(highest) + 1, end), 0))


class Drawing:
    """The picture of a plot's output calls, its rows from the bottom. Each method named like a call draws it."""

    def __init__(self, lines, width, height):
        words = [line.split() for line in lines]
        self.palette = {int(index): int(red) << 16 | int(green) << 8 | int(blue)
                        for index, red, green, blue in (rest for kind, *rest in words if kind == "palette")}
        self.picture = numpy.full((height, width), self.palette.get(0, WHITE), numpy.int32)
        self.line_colour = self.fill_colour = WHITE
        for kind, *numbers in words:
            if kind.startswith("OUT"):
                getattr(self, kind)(*map(int, numbers))

    def part(self, left, low, right, high):
        """The part of the picture that holds these pixels."""
        height, width = self.picture.shape
        return between(low, high, height), between(left, right, width)

    def OUTlinecolour(self, index):
        self.line_colour = self.palette[index]

    def OUTfillcolour(self, index):
        self.fill_colour = self.palette[index]

    def OUTline(self, x1, y1, x2, y2):
        if abs(x2 - x1) < abs(y2 - y1):
            self.thin_line(self.picture.T, y1, x1, y2, x2)
        else:
            self.thin_line(self.picture, x1, y1, x2, y2)

    def thin_line(self, picture, *ends):
        """In the picture or, where the line is steep, the picture turned."""
        (x1, y1), (x2, y2) = sorted(pairs(ends))
        height, width = picture.shape
        x = numpy.arange(width)[between(x1, x2, width)]
        if x.size:
            y = y1 + risen(y2 - y1, x - x1, x2 - x1)
            inside = (0 <= y) & (y < height)
            picture[y[inside], x[inside]] = self.line_colour

    def OUTgeomline(self, width, count, *numbers):
        points = pairs(numbers[:2 * count])
        for (x1, y1), (x2, y2) in zip(points, points[1:] or points):
            if width > THIN:
                self.wide_line(width / 2, x1, y1, x2, y2)
            else:
                self.OUTline(x1, y1, x2, y2)

    def wide_line(self, radius, x1, y1, x2, y2):
        part = self.part(min(x1, x2) - radius, min(y1, y2) - radius, max(x1, x2) + radius, max(y1, y2) + radius)
        up, along = numpy.ogrid[part]
        up, along = up - float(y1), along - float(x1)
        wide, high = x2 - x1, y2 - y1
        # Where on the line, from 0 to 1, is nearest to a pixel.
        share = numpy.clip((along * wide + up * high) / max(wide * wide + high * high, 1), 0, 1)
        near = (along - share * wide) ** 2 + (up - share * high) ** 2 <= radius ** 2
        self.picture[part][near] = self.line_colour

    def OUTboxr0(self, x, y, width, height):
        corners = [(x, y), (x + width, y), (x + width, y + height), (x, y + height), (x, y)]
        for start, end in itertools.pairwise(corners):
            self.OUTline(*start, *end)

    def OUTboxr1(self, x, y, width, height):
        (left, right), (low, high) = sorted((x, x + width)), sorted((y, y + height))
        self.picture[self.part(left, low, right - 1, high - 1)] = self.fill_colour

    def OUTwinsolidpolygons(self, count, *numbers):
        points = iter(pairs(numbers[count:]))
        sides = [side for size in numbers[:count] for side in itertools.pairwise(itertools.islice(points, size))]
        height, width = self.picture.shape
        crossings = numpy.zeros((height, width + 1), int)  # by the first pixel that is on the right of them
        for side in sides:
            (low, x1), (high, x2) = sorted((y, x) for x, y in side)
            y = numpy.arange(height)[between(low, high - 1, height)]
            x = x1 + (y - float(low)) * (x2 - x1) / max(high - low, 1)
            crossings[y, numpy.clip(numpy.ceil(x), 0, width).astype(int)] += 1
        inside = numpy.cumsum(crossings, axis=1)[:, :width] % 2 == 1
        self.picture[inside] = self.fill_colour


def drawn(lines, width, height):
    """The picture of what hpgldump printed; there must be no text in it."""
    return Drawing(lines, width, height).picture[::-1]
