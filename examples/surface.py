"""A surface over a square net, drawn from the back to the front so that near fields cover far ones."""

import math

from plot import Plot, mix, ramp

WIDTH, HEIGHT = 16000, 11000
NET = 64  # fields along a side
PAPER, INK, EDGE, SOFT, LINE = (250, 250, 248), (36, 40, 52), (52, 62, 92), (128, 132, 142), (206, 209, 214)
HEAT = [(44, 38, 96), (44, 96, 156), (52, 158, 164), (142, 200, 132), (244, 214, 108), (238, 140, 72), (196, 60, 66)]
TONES, SHADES = 17, 3


def value(u, v):
    """The height over the net; u and v from -1 to 1."""
    ring = math.hypot(u, v) * 11
    wave = math.sin(ring) / ring if ring else 1
    hill, hollow = (u + 0.7) ** 2 + (v - 0.62) ** 2, (u - 0.7) ** 2 + (v + 0.5) ** 2
    return wave + 0.2 * math.exp(-4 * hill) - 0.14 * math.exp(-6 * hollow)


def see(u, v, w):
    """Looks at the net from its corner (1, -1): plotter units."""
    return 7900 + 3250 * (u + v), 4500 + 1150 * (v - u) + 3900 * w


def knot(k):
    return 2 * k / NET - 1


def light(i, j):
    """How far a field looks to the light, 0 to 1."""
    step = 2 / NET
    du = (value(knot(i + 1), knot(j)) - value(knot(i), knot(j))) / step
    dv = (value(knot(i), knot(j + 1)) - value(knot(i), knot(j))) / step
    return min(1, max(0, 0.5 + (0.5 * du + 0.35 * dv) / math.sqrt(1 + du * du + dv * dv)))


def paint(tone, shade):
    colour = ramp(HEAT, tone / (TONES - 1))
    return mix(mix(colour, INK, 0.25), mix(colour, PAPER, 0.25), shade / (SHADES - 1))


def draw_floor(sheet):
    """The net's shadow of lines and its scale."""
    low = -0.42
    for k in range(11):
        at = knot(NET * k / 10)
        sheet.use(LINE)
        sheet.line(see(-1, at, low), see(1, at, low))
        sheet.line(see(at, -1, low), see(at, 1, low))
    for m in range(8):
        w = low + 0.2 * m
        sheet.line(see(-1, -1, w), see(-1, 1, w), see(1, 1, w))
        x, y = see(-1, -1, w)
        sheet.use(SOFT)
        sheet.label(x - 120, y - 50, f"{0.2 * (m - 2):.1f}", 110, "r")
        sheet.use(LINE)
    for corner in ((-1, -1), (-1, 1), (1, 1)):
        sheet.line(see(*corner, low), see(*corner, low + 1.4))
    sheet.use(SOFT)
    for k in range(0, 11, 2):
        at = knot(NET * k / 10)
        x, y = see(at, -1, low)
        sheet.label(x - 110, y - 190, f"{at:.1f}", 110, "r")
        x, y = see(1, at, low)
        sheet.label(x + 110, y - 190, f"{at:.1f}", 110)


def draw_fields(sheet):
    edge = sheet.pen(EDGE)
    for i, j in sorted(((i, j) for i in range(NET) for j in range(NET)), key=lambda n: n[0] - n[1]):
        corners = [(knot(a), knot(b)) for a, b in ((i, j), (i + 1, j), (i + 1, j + 1), (i, j + 1))]
        heights = [value(u, v) for u, v in corners]
        tone = round((TONES - 1) * min(1, max(0, (sum(heights) / 4 + 0.25) / 1.1)))
        sheet.use(paint(tone, round((SHADES - 1) * light(i, j))))
        ring = [see(u, v, w) for (u, v), w in zip(corners, heights)]
        sheet.polygon([ring], f"FP;SP{edge};EP;")


def main():
    sheet = Plot("surface.py")
    sheet.raw(f"SC0,{WIDTH},0,{HEIGHT};")
    sheet.use(PAPER)
    sheet.box(0, 0, WIDTH, HEIGHT)
    sheet.bar(0, 0, WIDTH, HEIGHT)
    sheet.use(INK)
    sheet.label(600, 10100, "sin r / r", 330)
    sheet.use(SOFT)
    sheet.label(600, 9800, f"{NET * NET} fields, the farthest first", 130)
    draw_floor(sheet)
    draw_fields(sheet)
    for k in range(TONES):
        sheet.use(paint(k, SHADES // 2))
        sheet.bar(15000, 7000 + 170 * k, 15250, 7170 + 170 * k)
    sheet.use(SOFT)
    for k in range(6):
        sheet.label(14900, 7000 + 170 * TONES * (0.05 + 0.2 * k) / 1.1 - 45, f"{0.2 * (k - 1):.1f}", 110, "r")
    sheet.write()


main()
