"""A specimen sheet: what arcs, curves, wedges, polygons, pens and labels look like, a field for each."""

import math

from plot import Plot, polar, ramp

WIDTH, HEIGHT = 16000, 11000
INK, SOFT, LINE, PAPER, CARD = (40, 42, 54), (124, 122, 128), (216, 211, 202), (249, 246, 239), (255, 254, 251)
TEAL, CORAL, AMBER = (28, 118, 128), (222, 92, 72), (236, 170, 60)
PLUM, MOSS, SKY = (112, 66, 126), (112, 142, 72), (90, 156, 204)
RAINBOW = [PLUM, SKY, TEAL, MOSS, AMBER, CORAL]
COLUMNS, ROWS = 4, 3
LEFT, LOW, WIDE, TALL, GAP = 500, 500, 3600, 2900, 200


def rainbow(t):
    """One of 24 colours: pens are few."""
    return ramp(RAINBOW, round(23 * t) / 23)


def draw_bezier(sheet, x, y):
    """BZ: curves from a ladder of points to the same ladder upside down; the control points swing."""
    for k in range(37):
        t = k / 36
        rung, swing = 1800 * t - 900, 1500 * math.sin(math.tau * t)
        sheet.use(rainbow(t))
        sheet.move(x - 1450, y + rung)
        points = (x - 500, y + rung + swing, x + 500, y - rung - swing, x + 1450, y - rung)
        sheet.raw("PD;BZ" + ",".join(str(round(v)) for v in points) + ";PU;")


def draw_relative_bezier(sheet, x, y):
    """BR: leaves, each two curves that go out and come back, turned about the middle."""
    for ring, (count, reach, wide) in enumerate(((16, 1000, 330), (12, 740, 300), (8, 480, 260))):
        for k in range(count):
            angle = 360 * (k + ring / 2) / count
            (bx, by), (cx, cy) = polar(0, 0, wide, angle + 55), polar(0, 0, reach * 0.8, angle + 24)
            (dx, dy), (ex, ey) = polar(0, 0, reach, angle), polar(0, 0, reach * 0.8, angle - 24)
            (fx, fy) = polar(0, 0, wide, angle - 55)
            sheet.use((TEAL, AMBER, CORAL)[ring], 0.35)
            sheet.move(x, y)
            points = (bx, by, cx, cy, dx, dy, ex - dx, ey - dy, fx - dx, fy - dy, -dx, -dy)
            sheet.raw("PD;BR" + ",".join(str(round(v)) for v in points) + ";PU;")


def draw_chords(sheet, x, y):
    """CI: the chord angle makes a polygon out of a circle."""
    for k, chord in enumerate((120, 90, 72, 60, 45, 30, 15, 3)):
        sheet.use(rainbow(k / 7), 0.55)
        sheet.circle(x, y, 240 + 115 * k, chord)


def draw_arcs(sheet, x, y):
    """AA: arcs about one middle, their sweeps and beginnings different."""
    for k in range(14):
        sheet.use(rainbow(k / 13), 1.0)
        sheet.arc(x, y, 200 + 66 * k, 90 + 23 * k, 290 - 14 * k, 2)


def draw_relative_arcs(sheet, x, y):
    """AR: waves of half circles, each begun where the one before ended."""
    for row in range(9):
        sheet.use(rainbow(row / 8), 0.55)
        sheet.move(x - 1440, y + 800 - 200 * row)
        sheet.raw("PD;" + "".join(f"AR180,0,{180 if k % 2 else -180},6;" for k in range(8)) + "PU;")


def draw_wedges(sheet, x, y):
    """WG and EW: a fan of wedges whose radius grows, and their edges."""
    for k in range(24):
        sheet.use(rainbow(k / 23))
        sheet.wedge(x, y, 420 + 28 * k, 90 - 15 * k, -15, 3)
        sheet.use(CARD)
        sheet.raw(f"EW{420 + 28 * k},{90 - 15 * k},-15,3;")
    sheet.use(CARD)
    sheet.wedge(x, y, 230, 0, 360, 5)


def star(x, y, outer, inner, points, turn=90):
    return [polar(x, y, inner if k % 2 else outer, turn + 180 * k / points) for k in range(2 * points + 1)]


def draw_holes(sheet, x, y):
    """PM1: rings inside rings; what lies in an even number of them stays open."""
    sheet.use(PLUM)
    sheet.polygon([star(x - 760, y, 640 - 150 * k, 430 - 100 * k, 10) for k in range(4)])
    sheet.use(TEAL)
    x += 760
    sheet.move(x + 640, y)
    sheet.raw(f"PM0;AA{x},{y},360,3;PM1;")
    for k in range(6):
        px, py = (round(v) for v in polar(x, y, 400, 60 * k))
        sheet.move(px + 150, py)
        sheet.raw(f"AA{px},{py},360,6;PM1;")
    sheet.move(x + 150, y)
    sheet.raw(f"AA{x},{y},360,6;PM2;FP;PU;")


def draw_outline(sheet, x, y):
    """EP and FP: one polygon, filled with one pen and edged with another."""
    for k in range(9):
        edge = sheet.pen(INK, 0.35)
        sheet.use(rainbow(k / 8))
        sheet.polygon([star(x, y, 1040 - 112 * k, 620 - 66 * k, 7, 90 + 11 * k)], f"FP;SP{edge};EP;")


def draw_widths(sheet, x, y):
    """PW: from a hair to three millimetres."""
    for k, width in enumerate((0.1, 0.25, 0.35, 0.5, 0.7, 1.0, 1.4, 2.0, 3.0)):
        level = y + 900 - 195 * k - 4 * k * k
        sheet.use(rainbow(k / 8), width)
        sheet.line(*[(x - 900 + 46 * m, level + 62 * math.sin(m / 3.2)) for m in range(52)])
        sheet.use(SOFT)
        sheet.label(x - 1060, level - 40, f"{width:g}", 95, "r")


def draw_sizes(sheet, x, y):
    """SI: centimetres; narrow and wide, low and tall."""
    level = y + 820
    for text, height, width, colour in (
        ("Plotter", 330, 0.8, CORAL), ("NARROW AND TALL", 300, 0.5, TEAL), ("WIDE, LOW", 120, 2.2, PLUM),
        ("The quick brown fox", 150, 0.8, INK), ("jumps over the lazy dog", 125, 0.8, SOFT),
        ("0123456789 +-*/ ()[]{}", 100, 0.9, INK), ("so small that one has to zoom in to read it", 55, 0.8, SOFT),
    ):  # fmt: skip
        level -= height
        sheet.use(colour)
        sheet.label(x - 1480, level, text, height, width=width)
        level -= 130


def draw_relative_sizes(sheet, x, y):
    """SR: parts of the picture's own size."""
    level = y + 850
    for k, share in enumerate((0.6, 0.9, 1.3, 1.8, 2.3, 2.8)):
        height = share / 100 * HEIGHT
        level -= height + 75
        sheet.use(rainbow(k / 5))
        sheet.raw(f"SR{share * 0.55:.3f},{share:.3f};")
        sheet.size = None
        sheet.move(x - 1480, level)
        sheet.raw(f"LB{share:.1f} per cent\x03")


def draw_fonts(sheet, x, y):
    """SD, AD and SS: the standard and the alternate label font; sizes from SI are given up first."""
    sheet.raw("SI;SD3,10,4,14;")
    sheet.size = None
    sheet.use(INK)
    for k, text in enumerate(("SD3,10,4,14: the standard", "font, 10 characters an", "inch, 14 points tall")):
        sheet.move(x - 1480, y + 640 - 300 * k)
        sheet.raw(f"LB{text}\x03")
    sheet.raw("AD3,6,4,20;SS;")
    sheet.use(CORAL)
    for k, text in enumerate(("AD3,6,4,20;SS:", "the alternate")):
        sheet.move(x - 1480, y - 480 - 400 * k)
        sheet.raw(f"LB{text}\x03")


FIELDS = (
    ("BZ", "curves from end to end", draw_bezier), ("BR", "curves from where the pen is", draw_relative_bezier),
    ("CI", "circles, chords of 120 to 3 degrees", draw_chords), ("AA", "arcs about a point", draw_arcs),
    ("AR", "arcs from where the pen is", draw_relative_arcs), ("WG EW", "wedges, filled and edged", draw_wedges),
    ("PM FP", "polygons with holes", draw_holes), ("FP EP", "polygons, filled and edged", draw_outline),
    ("PW", "pen widths in millimetres", draw_widths), ("SI", "label sizes in centimetres", draw_sizes),
    ("SR", "label sizes in parts of the picture", draw_relative_sizes), ("SD AD SS", "label fonts", draw_fonts),
)  # fmt: skip


def field_corner(k):
    return LEFT + (WIDE + GAP) * (k % COLUMNS), LOW + (TALL + GAP) * (ROWS - 1 - k // COLUMNS)


def main():
    sheet = Plot("curves.py")
    sheet.use(PAPER)
    sheet.box(0, 0, WIDTH, HEIGHT)
    sheet.bar(0, 0, WIDTH, HEIGHT)
    sheet.use(INK)
    sheet.label(500, 10290, "Arcs, curves, polygons, pens and labels", 300)
    sheet.use(SOFT)
    sheet.label(15500, 10290, "one field for each", 150, "r")
    for k, (name, words, _) in enumerate(FIELDS):
        x, y = field_corner(k)
        sheet.use(CARD)
        sheet.bar(x, y, x + WIDE, y + TALL)
        sheet.use(LINE)
        sheet.box(x, y, x + WIDE, y + TALL)
        sheet.use(INK)
        sheet.label(x + 120, y + TALL - 260, name, 150)
        sheet.use(SOFT)
        sheet.label(x + 120, y + TALL - 430, words, 90)
    for k, (_, _, draw) in enumerate(FIELDS):
        x, y = field_corner(k)
        draw(sheet, x + WIDE // 2, y + TALL // 2 - 190)
    sheet.write()


main()
