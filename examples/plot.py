"""What the generators of this folder share: a sheet that collects HP-GL text.

All coordinates are plotter units (40 a millimetre), x to the right, y upward; angles are degrees, counter-clockwise.
"""

import math
import sys

MM = 40  # plotter units a millimetre
FEW = 30  # steps that are written as numbers; a longer path is an encoded polyline, a third of the size
ETX = "\x03"
CAP = 0.8  # width of a character of the label face, as a part of its capitals' height


def polar(x, y, radius, angle):
    """The point at an angle and a distance from (x, y)."""
    return x + radius * math.cos(math.radians(angle)), y + radius * math.sin(math.radians(angle))


def circle_points(x, y, radius, count):
    """A closed circle as a ring of points."""
    return [polar(x, y, radius, 360 * i / count) for i in range(count + 1)]


def mix(a, b, t):
    """The colour that stands at t (0 to 1) between the colours a and b."""
    return tuple(round(p + (q - p) * t) for p, q in zip(a, b))


def ramp(colours, t):
    """The colour at t (0 to 1) of a row of colours at equal distances."""
    place = min(max(t, 0), 1) * (len(colours) - 1)
    i = min(int(place), len(colours) - 2)
    return mix(colours[i], colours[i + 1], place - i)


def smooth(points, rounds=2):
    """Cuts the corners of a polyline; its ends stay."""
    for _ in range(rounds):
        cut = [points[0]]
        for (x1, y1), (x2, y2) in zip(points, points[1:]):
            cut += [(0.75 * x1 + 0.25 * x2, 0.75 * y1 + 0.25 * y2), (0.25 * x1 + 0.75 * x2, 0.25 * y1 + 0.75 * y2)]
        points = cut + [points[-1]]
    return points


def dashes(points, pattern):
    """Cuts a polyline into strokes; pattern: lengths of pen down, pen up, pen down, ..."""
    strokes, stroke, index, left = [], [points[0]], 0, pattern[0]
    for (x1, y1), (x2, y2) in zip(points, points[1:]):
        length, done = math.hypot(x2 - x1, y2 - y1), 0
        while length - done > left:
            done += left
            cut = (x1 + (x2 - x1) * done / length, y1 + (y2 - y1) * done / length)
            if index % 2 == 0:
                strokes.append(stroke + [cut])
            stroke, index = [cut], index + 1
            left = pattern[index % len(pattern)]
        left -= length - done
        stroke.append((x2, y2))
    return strokes + [stroke] if index % 2 == 0 and len(stroke) > 1 else strokes


def hatching(rings, distance, angle=45, phase=0):
    """Parallel strokes that fill a set of rings by the even-odd rule."""
    c, s = math.cos(math.radians(angle)), math.sin(math.radians(angle))
    turned = [[(x * c + y * s, y * c - x * s) for x, y in ring] for ring in rings]
    heights = [v for ring in turned for _, v in ring]
    strokes = []
    for k in range(math.ceil((min(heights) - phase) / distance), math.floor((max(heights) - phase) / distance) + 1):
        v, cuts = k * distance + phase, []
        for ring in turned:
            for (x1, y1), (x2, y2) in zip(ring, ring[1:] + ring[:1]):
                if (y1 <= v) != (y2 <= v):
                    cuts.append(x1 + (x2 - x1) * (v - y1) / (y2 - y1))
        cuts.sort()
        strokes += [[(u * c - v * s, u * s + v * c) for u in pair] for pair in zip(cuts[::2], cuts[1::2])]
    return strokes


def encoded(number):
    """A number as an encoded polyline has it: the sign in the lowest bit, digits of 6 bits, the lowest first."""
    rest, digits = (-number * 2 + 1 if number < 0 else number * 2), bytearray()
    while rest > 63:
        digits.append(rest % 64 + 63)
        rest //= 64
    digits.append(rest + 191)
    return bytes(digits)


class Plot:
    """One sheet. Pens are made by pen() and chosen by use(); write() hands the text to standard output."""

    def __init__(self, generator):
        self.parts = [f'IN;CO "Written by examples/{generator}";\n'.encode("ascii")]
        self.pens = {}
        self.size = None

    def raw(self, text):
        self.parts.append((text + "\n").encode("ascii"))

    def write(self):
        self.raw("PU;SP0;PG;")
        sys.stdout.buffer.write(b"".join(self.parts))

    # Pens.

    def pen(self, colour, width=0.1):
        """The number of the pen of this colour (red, green, blue), made when it is new, now so wide in millimetres."""
        colour = tuple(colour)
        number, wide = self.pens.get(colour, (len(self.pens) + 1, None))
        if wide is None:
            self.raw(f"PC{number},{colour[0]},{colour[1]},{colour[2]};")
        if wide != width:
            self.raw(f"PW{width:g},{number};")
        self.pens[colour] = (number, width)
        return number

    def use(self, colour, width=0.1):
        self.raw(f"SP{self.pen(colour, width)};")

    # Strokes.

    def move(self, x, y):
        self.raw(f"PU{round(x)},{round(y)};")

    def path(self, points):
        """Goes on to the points, without those that in whole units fall on their predecessor; encoded when many."""
        whole = [(round(x), round(y)) for x, y in points]
        steps = [(q[0] - p[0], q[1] - p[1]) for p, q in zip(whole, whole[1:]) if p != q]
        if len(steps) > FEW:
            self.parts.append(b"PD;PE" + b"".join(encoded(dx) + encoded(dy) for dx, dy in steps) + b";\n")
        elif steps:
            self.raw("PD" + ",".join(f"{x},{y}" for p, (x, y) in zip(whole, whole[1:]) if p != (x, y)) + ";")

    def line(self, *points):
        self.move(*points[0])
        self.path(points)
        self.raw("PU;")

    def lines(self, strokes):
        for stroke in strokes:
            self.line(*stroke)

    def box(self, x1, y1, x2, y2):
        self.line((x1, y1), (x2, y1), (x2, y2), (x1, y2), (x1, y1))

    def circle(self, x, y, radius, chord=5):
        self.move(x, y)
        self.raw(f"CI{round(radius)},{chord:g};")

    def arc(self, x, y, radius, start, sweep, chord=5):
        self.move(*polar(x, y, radius, start))
        self.raw(f"AA{round(x)},{round(y)},{sweep:g},{chord:g};")

    # Areas.

    def bar(self, x1, y1, x2, y2):
        """A filled rectangle."""
        self.move(min(x1, x2), min(y1, y2))
        self.raw(f"RA{round(max(x1, x2))},{round(max(y1, y2))};")

    def wedge(self, x, y, radius, start, sweep, chord=5):
        self.move(x, y)
        self.raw(f"WG{round(radius)},{start:g},{sweep:g},{chord:g};")

    def polygon(self, rings, draw="FP;"):
        """Fills rings of at most 2000 points by the even-odd rule; draw: FP, EP or both."""
        self.move(*rings[0][0])
        self.raw("PM0;")
        self.path(rings[0])
        for ring in rings[1:]:
            self.raw("PM1;")
            self.move(*ring[0])
            self.path(ring)
        self.raw("PM2;" + draw + "PU;")

    # Labels.

    def label(self, x, y, text, height, anchor="l", width=CAP):
        """A label whose capitals are `height` units high, its baseline at y; anchor: l, c or r of x."""
        advance = height * width
        if self.size != (advance, height):
            self.raw(f"SI{advance / 400:.4f},{height / 400:.4f};")
            self.size = (advance, height)
        shift = {"l": 0, "c": 0.5, "r": 1}[anchor] * advance * len(text)
        self.move(x - shift, y)
        self.raw(f"LB{text}{ETX}")
