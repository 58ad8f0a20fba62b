"""A workshop drawing of a spur gear: section, front view, an enlarged tooth, gear data, title block.

Measures in this file are millimetres on the paper, 1 : 1; the sheet is 400 x 275.
"""

import math

from plot import CAP, MM, Plot, circle_points, dashes, hatching, polar

BLACK, THIN, BLUE = (24, 26, 32), (70, 74, 84), (30, 84, 160)
RED, GREEN, SHEET = (186, 44, 38), (40, 120, 84), (196, 198, 202)
EDGE, FINE, FRAME = 0.55, 0.1, 0.8  # line widths

MODULE, TEETH, PRESSURE = 4, 36, 20
PITCH = MODULE * TEETH / 2  # radii
TIP, ROOT, BASE = PITCH + MODULE, PITCH - 1.25 * MODULE, PITCH * math.cos(math.radians(PRESSURE))
FACE, HUB_LENGTH, WEB = 30, 46, 12
HUB, BORE, RIM, HOLES, HOLE = 28, 16, 60, 44, 10
KEY_WIDTH, KEY_TOP = 10, 19.3  # of the keyway, its top above the axis
FRONT = (209, 160)
SECTION = (74, 160)
DETAIL = (156, 43)
ZOOM = 4


class Drawing(Plot):
    """A sheet in millimetres."""

    def stroke(self, colour, width, *points):
        self.use(colour, width)
        self.line(*[(x * MM, y * MM) for x, y in points])

    def round(self, colour, width, x, y, radius, chord=2.5):
        self.use(colour, width)
        self.circle(x * MM, y * MM, radius * MM, chord)

    def centre(self, *points):
        """A dash-dotted centre line."""
        self.use(RED, FINE)
        self.lines(dashes([(x * MM, y * MM) for x, y in points], (260, 60, 20, 60)))

    def text(self, x, y, words, height=2.5, anchor="l", colour=BLACK, width=CAP):
        self.use(colour)
        self.label(x * MM, y * MM, words, height * MM, anchor, width)

    def arrow(self, x, y, angle):
        """An arrow head with its tip at (x, y) that points in the direction of the angle."""
        sides = [polar(x, y, 2.6, angle + 180 + turn) for turn in (-9, 9)]
        self.polygon([[(u * MM, v * MM) for u, v in [(x, y), *sides]]])

    def diameter(self, x, y, height=2.5):
        """The sign for a diameter, left of x."""
        self.circle((x - 1.6) * MM, (y + height / 2) * MM, 0.42 * height * MM)
        self.line(((x - 2.8) * MM, (y - 0.2) * MM), ((x - 0.4) * MM, (y + height + 0.2) * MM))

    def measure_across(self, x1, x2, y, from1, from2, words):
        """A horizontal dimension at y with extension lines from the heights from1 and from2."""
        for x, start in ((x1, from1), (x2, from2)):
            way = 1 if y > start else -1
            self.stroke(BLUE, FINE, (x, start + way), (x, y + 1.6 * way))
        self.stroke(BLUE, FINE, (x1, y), (x2, y))
        self.arrow(x1, y, 180)
        self.arrow(x2, y, 0)
        self.text((x1 + x2) / 2, y + 1, words, 2.8, "c", BLUE)

    def measure_up(self, y1, y2, x, from1, from2, words, at=None, round_part=True):
        """A vertical dimension at x whose number stands in a gap of its line."""
        for y, start in ((y1, from1), (y2, from2)):
            way = 1 if x > start else -1
            self.stroke(BLUE, FINE, (start + way, y), (x + 1.6 * way, y))
        middle = (y1 + y2) / 2 if at is None else at
        self.stroke(BLUE, FINE, (x, y1), (x, middle - 2.6))
        self.stroke(BLUE, FINE, (x, middle + 2.6), (x, y2))
        self.arrow(x, y1, -90)
        self.arrow(x, y2, 90)
        self.text(x + (1.4 if round_part else 0), middle - 1.4, words, 2.8, "c", BLUE)
        if round_part:
            self.diameter(x + 1.4 - len(words) * 2.8 * CAP / 2, middle - 1.4, 2.8)


# The gear.


def half_angle(radius):
    """Half of a tooth's thickness at a radius, as an angle in degrees."""

    def involute(angle):
        return math.tan(angle) - angle

    at = math.acos(min(1, BASE / radius))
    return 90 / TEETH + math.degrees(involute(math.radians(PRESSURE)) - involute(at))


def tooth(middle):
    """One tooth from root to root, its middle at an angle; polar pairs (radius, angle)."""
    steps = 9
    low = max(BASE, ROOT)
    flank = [(low + (TIP - low) * (k / steps) ** 1.3, 0) for k in range(steps + 1)]
    flank = [(r, half_angle(r)) for r, _ in flank]
    foot = [(ROOT, half_angle(low) + 0.75), (ROOT + 0.35, half_angle(low) + 0.2), (ROOT + 1, half_angle(low))]
    rising = [(r, middle + a) for r, a in foot + flank]
    falling = [(r, middle - a) for r, a in reversed(foot + flank)]
    return rising + [(TIP, middle)] + falling


def outline(first=0, count=TEETH):
    """The gear's edge, clockwise, from tooth number first on."""
    return [pair for k in range(first, first + count) for pair in tooth(90 - 360 / TEETH * k)]


def keyway(x, y, radius=BORE):
    """The bore with its keyway as a ring."""
    half = KEY_WIDTH / 2
    start = math.degrees(math.acos(half / radius))
    arc = [polar(x, y, radius, start - k * (180 + 2 * start) / 60) for k in range(61)]
    return arc + [(x - half, y + KEY_TOP), (x + half, y + KEY_TOP), arc[0]]


def draw_front(sheet):
    x, y = FRONT
    sheet.stroke(BLACK, EDGE, *[polar(x, y, r, a) for r, a in outline() + outline(0, 1)[:1]])
    for radius in (RIM, HUB):
        sheet.round(BLACK, EDGE, x, y, radius)
    sheet.round(THIN, FINE, x, y, HUB - 1.5)
    sheet.stroke(BLACK, EDGE, *keyway(x, y))
    for k in range(5):
        sheet.round(BLACK, EDGE, *polar(x, y, HOLES, 72 * k - 90), HOLE)
    for radius in (PITCH, HOLES):
        sheet.centre(*circle_points(x, y, radius, 180))
    for k in range(1, 5):
        sheet.centre(polar(x, y, HOLES - HOLE - 3, 72 * k - 90), polar(x, y, HOLES + HOLE + 3, 72 * k - 90))
    sheet.centre((x - TIP - 7, y), (x + TIP + 7, y))
    sheet.centre((x, y + TIP + 7), (x, y + 38))  # leaves room for the keyway's width
    sheet.centre((x, y + 32), (x, y - TIP - 7))


def section_rings(x, y, side):
    """The cut parts of the upper (side 1) or the lower half (side -1), where the hole leaves two."""
    face, web, hub = FACE / 2, WEB / 2, HUB_LENGTH / 2
    inner = KEY_TOP if side > 0 else BORE
    rim = [(web, RIM), (face, RIM), (face, ROOT), (-face, ROOT), (-face, RIM), (-web, RIM)]
    boss = [(-web, HUB), (1.5 - hub, HUB), (-hub, HUB - 1.5), (-hub, inner), (hub, inner), (hub, HUB - 1.5),
            (hub - 1.5, HUB), (web, HUB)]  # fmt: skip
    low, high = HOLES - HOLE, HOLES + HOLE
    parts = [rim + boss] if side > 0 else [rim + [(-web, high), (web, high)], [(-web, low)] + boss + [(web, low)]]
    return [[(x + u, y + side * v) for u, v in part] for part in parts]


def draw_section(sheet):
    x, y = SECTION
    face, web, hub = FACE / 2, WEB / 2, HUB_LENGTH / 2
    for side in (1, -1):
        for part in section_rings(x, y, side):
            sheet.use(GREEN, FINE)
            sheet.lines(hatching([[(u * MM, v * MM) for u, v in part]], 105, 45))
            sheet.stroke(BLACK, EDGE, *part, part[0])
        edge = y + side * TIP
        root = y + side * ROOT
        sheet.stroke(BLACK, EDGE, (x - face, root), (x - face, edge - side), (x - face + 1, edge), (x + face - 1, edge),
                     (x + face, edge - side), (x + face, root))  # fmt: skip
        sheet.stroke(THIN, FINE, (x - face, edge - side), (x + face, edge - side))
        sheet.centre((x - face - 5, y + side * PITCH), (x + face + 5, y + side * PITCH))
    for end in (-hub, hub):
        sheet.stroke(BLACK, EDGE, (x + end, y - BORE), (x + end, y + KEY_TOP))
    sheet.stroke(BLACK, EDGE, (x - hub, y + math.sqrt(BORE**2 - 25)), (x + hub, y + math.sqrt(BORE**2 - 25)))
    for end in (-web, web):
        sheet.stroke(BLACK, EDGE, (x + end, y - HOLES - HOLE), (x + end, y - HOLES + HOLE))
    sheet.centre((x - web - 8, y - HOLES), (x + web + 8, y - HOLES))
    sheet.centre((x - hub - 7, y), (x + hub + 7, y))
    sheet.text(x, y + TIP + 17, "A - A", 4.2, "c", width=0.9)


def draw_dimensions(sheet):
    x, y = SECTION
    face, hub = FACE / 2, HUB_LENGTH / 2
    sheet.measure_up(y - TIP, y + TIP, x - hub - 30, x - face, x - face, "152 h11", y + 20)
    sheet.measure_up(y - PITCH, y + PITCH, x - hub - 15, x - face - 5, x - face - 5, "144", y + 8)
    sheet.measure_up(y - HUB, y + HUB, x + hub + 8, x + hub, x + hub, "56", y + 13)
    sheet.measure_up(y - BORE, y + KEY_TOP, x + hub + 23, x + hub, x + hub, "35.3 +0.2", y + 8, False)
    sheet.measure_across(x - hub, x + hub, y - TIP - 15, y - HUB, y - HUB, "46")
    sheet.measure_across(x - face, x + face, y - TIP - 7, y - TIP, y - TIP, "30 -0.1")
    sheet.measure_across(x - WEB / 2, x + WEB / 2, y + TIP + 8, y + RIM, y + RIM, "12")
    x, y = FRONT
    sheet.measure_across(x - KEY_WIDTH / 2, x + KEY_WIDTH / 2, y + 33, y + KEY_TOP, y + KEY_TOP, "10 JS9")
    leader(sheet, polar(x, y, BORE, -62), (x + 24, y - 94), "32 H7", 12)
    leader(sheet, polar(*polar(x, y, HOLES, -18), HOLE, -50), (x + 70, y - 78), "20 (5x)", 14)
    leader(sheet, polar(x, y, HOLES, 14), (x + 84, y + 32), "88", 8)
    leader(sheet, polar(x, y, RIM, 26), (x + 84, y + 50), "120", 9)


def leader(sheet, tip, knee, words, length):
    """A diameter on a leader line that ends at the tip."""
    sheet.stroke(BLUE, FINE, tip, knee, (knee[0] + length + 4, knee[1]))
    sheet.arrow(*tip, math.degrees(math.atan2(tip[1] - knee[1], tip[0] - knee[0])))
    sheet.text(knee[0] + 4.5, knee[1] + 0.9, words, 2.8, "l", BLUE)
    sheet.diameter(knee[0] + 4.3, knee[1] + 0.9, 2.8)


def draw_cut_marks(sheet):
    x, y = FRONT
    for side in (1, -1):
        at = y + side * (TIP + 7)
        sheet.stroke(BLACK, FRAME, (x, at), (x, at + side * 6))
        sheet.stroke(BLACK, EDGE, (x, at + side * 4), (x - 9, at + side * 4))
        sheet.arrow(x - 9, at + side * 4, 180)
        sheet.text(x - 13, at + side * 4 - 1.8, "A", 4.2, "c")


def draw_detail(sheet):
    """The tooth at the upper right of the front view, enlarged, in a circle."""
    x, y = FRONT
    number = 3
    angle = 90 - 360 / TEETH * number
    spot = polar(x, y, PITCH, angle)
    sheet.round(BLUE, FINE, *spot, 7)
    sheet.text(*polar(*spot, 9, 50), "Z", 4.2, "l", BLUE)

    cx, cy = DETAIL
    reach = 27

    def near(radius, turn):
        """The place in the detail of a point of the gear, the tooth upright."""
        u, v = polar(0, 0, radius, 90 + turn - angle)
        return cx + u * ZOOM, cy + (v - PITCH) * ZOOM

    edge = dense([near(r, a) for r, a in outline(number - 1, 3)])
    inside = [p for p in edge if math.hypot(p[0] - cx, p[1] - cy) < reach]
    left, right = (math.degrees(math.atan2(p[1] - cy, p[0] - cx)) for p in (inside[0], inside[-1]))
    below = [polar(cx, cy, reach, right - (right - left) % 360 * k / 60) for k in range(61)]
    sheet.use(GREEN, FINE)
    sheet.lines(hatching([[(u * MM, v * MM) for u, v in inside + below]], 130, 45))
    sheet.stroke(BLACK, EDGE, below[-1], *inside, below[0])
    sheet.round(BLUE, FINE, cx, cy, reach)
    sheet.centre(*[near(PITCH, angle + k / 10) for k in range(-53, 54)])
    draw_detail_dimensions(sheet, near, angle)
    sheet.text(cx + 48, cy + 2, "Z", 4.2, "l", BLUE)
    sheet.text(cx + 48, cy - 5, f"{ZOOM} : 1", 3.2)


def draw_detail_dimensions(sheet, near, angle):
    cx, cy = DETAIL
    half = half_angle(PITCH)
    (x1, y1), (x2, _) = near(PITCH, angle + half), near(PITCH, angle - half)
    sheet.measure_across(x1, x2, cy + 33, y1, y1, "6.28")
    tip, root, pitch = near(TIP, angle)[1], near(ROOT, angle)[1], near(PITCH, angle)[1]
    sheet.measure_up(root, tip, cx + 40, cx + 18, cx + 4, "9", pitch - 4, False)
    sheet.measure_up(pitch, tip, cx - 34, cx - 12, cx - 4, "4", None, False)


def dense(points, parts=40):
    """The same line with so many points for each."""
    return [(x1 + (x2 - x1) * k / parts, y1 + (y2 - y1) * k / parts)
            for (x1, y1), (x2, y2) in zip(points, points[1:]) for k in range(parts)]  # fmt: skip


def draw_frame(sheet):
    sheet.stroke(SHEET, FINE, (0, 0), (400, 0), (400, 275), (0, 275), (0, 0))
    sheet.stroke(BLACK, FINE, (5, 5), (395, 5), (395, 270), (5, 270), (5, 5))
    sheet.stroke(BLACK, FRAME, (10, 10), (390, 10), (390, 265), (10, 265), (10, 10))
    for k in range(8):
        x = 10 + 47.5 * k
        for low, high in ((5, 10), (265, 270)):
            if k:
                sheet.stroke(BLACK, FINE, (x, low), (x, high))
            sheet.text(x + 23.75, low + 1.4, str(k + 1), 2.2, "c")
    for k, letter in enumerate("FEDCBA"):
        y = 10 + 42.5 * k
        for low, high in ((5, 10), (390, 395)):
            if k:
                sheet.stroke(BLACK, FINE, (low, y), (high, y))
            sheet.text(low + 2.5, y + 20.2, letter, 2.2, "c")


def draw_title(sheet):
    left, right, low, high = 230, 390, 10, 58
    sheet.stroke(BLACK, FRAME, (left, low), (left, high), (right, high))
    for y in (24, 34):
        sheet.stroke(BLACK, FINE, (left, y), (right, y))
    for x, y1, y2 in ((262, 10, 34), (294, 10, 34), (326, 10, 58), (358, 10, 34)):
        sheet.stroke(BLACK, FINE, (x, y1), (x, y2))
    for x, y, head, words in (
        (left, 24, "DRAWN", "E. Falk"), (262, 24, "CHECKED", "M. Roth"), (294, 24, "DATE", "1994-03-11"),
        (326, 24, "SCALE", "1 : 1"), (358, 24, "SHEET", "1 / 1"), (left, 10, "MATERIAL", "C45E +QT"),
        (262, 10, "TOLERANCE", "ISO 2768-mK"), (294, 10, "MASS", "2.61 kg"), (326, 10, "SIZE", "A3"),
        (358, 10, "REVISION", "C"),
    ):  # fmt: skip
        tall = 10 if y == 24 else 14
        sheet.text(x + 1.5, y + tall - 3.1, head, 1.6, "l", THIN)
        sheet.text(x + 1.5, y + (1.8 if y == 24 else 3), words, 2.8 if len(words) < 11 else 2.5)
    sheet.text(left + 5, 44.5, "SPUR GEAR", 7, width=0.95)
    sheet.text(left + 5, 38, "straight teeth, module 4, 36 teeth", 2.6, "l", THIN)
    sheet.text(328, 54, "DRAWING No.", 1.6, "l", THIN)
    sheet.text(329, 46, "40-3600-152", 4.2)
    projection(sheet, 346, 39.5)


def projection(sheet, x, y):
    """The sign for first-angle projection: a cone from the side and from its end."""
    sheet.stroke(BLACK, FINE, (x, y - 3.2), (x, y + 3.2), (x + 9, y + 1.8), (x + 9, y - 1.8), (x, y - 3.2))
    sheet.round(BLACK, FINE, x + 18, y, 3.2)
    sheet.round(BLACK, FINE, x + 18, y, 1.8)
    sheet.use(RED, FINE)
    sheet.lines([[((x - 2) * MM, y * MM), ((x + 11) * MM, y * MM)], [((x + 13) * MM, y * MM), ((x + 23) * MM, y * MM)],
                 [((x + 18) * MM, (y - 4.6) * MM), ((x + 18) * MM, (y + 4.6) * MM)]])  # fmt: skip


def draw_notes(sheet):
    notes = ("Tip edges 0.3 x 45, root fillet R 1.5", "Chamfers not shown 1.5 x 45", "Teeth ground after hardening",
             "Flanks 58 + 4 HRC, depth 0.6 + 0.2", "Runout of the tip circle 0.03 to the bore")  # fmt: skip
    sheet.text(16, 48, "NOTES", 3, width=0.9)
    for k, note in enumerate(notes):
        sheet.text(16, 41 - 5.2 * k, f"{k + 1}  {note}", 2.2, colour=THIN)


def draw_data(sheet):
    rows = (("Module", "m", "4"), ("Teeth", "z", "36"), ("Pressure angle", "a", "20"), ("Helix angle", "b", "0"),
            ("Profile shift", "x", "0"), ("Pitch diameter", "d", "144.000"), ("Base diameter", "db", f"{2 * BASE:.3f}"),
            ("Root diameter", "df", f"{2 * ROOT:.3f}"), ("Tooth depth", "h", "9.000"), ("Span over 4", "Wk", "43.16"),
            ("Quality", "", "7 e 25"))  # fmt: skip
    left, right, top, tall = 318, 390, 265, 6.2
    low = top - tall * (len(rows) + 1)
    sheet.stroke(BLACK, EDGE, (left, top), (left, low), (right, low))
    sheet.text(left + 2, top - 4.7, "GEAR DATA", 3, width=0.9)
    for k, (name, sign, value) in enumerate(rows):
        y = top - tall * (k + 1)
        sheet.stroke(BLACK, FINE, (left, y), (right, y))
        sheet.text(left + 2, y - 4.3, name, 2.3)
        sheet.text(left + 42, y - 4.3, sign, 2.3, "c")
        sheet.text(right - 3.4, y - 4.3, value, 2.3, "r")
        if value in ("20", "0") and "angle" in name:
            sheet.circle((right - 2.5) * MM, (y - 2.3) * MM, 0.55 * MM)
    for x in (left + 38, left + 46):
        sheet.stroke(BLACK, FINE, (x, top - tall), (x, low))


def main():
    sheet = Drawing("mechanical.py")
    draw_front(sheet)
    draw_section(sheet)
    draw_dimensions(sheet)
    draw_cut_marks(sheet)
    draw_detail(sheet)
    draw_frame(sheet)
    draw_title(sheet)
    draw_notes(sheet)
    draw_data(sheet)
    sheet.write()


main()
