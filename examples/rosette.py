"""A rosette of many thin curves, each turned a little against the one before; one encoded polyline a curve.

usage: rosette.py [SEGMENTS]   (about that many; 126000 when none are named)
"""

import math
import sys

from plot import Plot, polar, ramp

WIDTH, HEIGHT = 16000, 11000
CENTRE = (WIDTH / 2, HEIGHT / 2)
NIGHT = (13, 17, 38)
FIRE = [(255, 236, 170), (255, 179, 71), (240, 98, 90), (190, 70, 150), (104, 84, 190), (60, 140, 200), (120, 214, 200)]
COLOURS = 28


def petal(turn, points):
    """The ring number turn (0 inside to 1 outside): twelve petals that wind up while they grow."""
    radius, depth, twist = 500 + 3950 * turn, 0.02 + 0.21 * math.sin(math.pi * turn) ** 1.3, 34 * math.sin(2.6 * turn)
    ring = []
    for i in range(points + 1):
        angle = 360 * i / points
        wave = math.cos(math.radians(12 * angle))
        ring.append(polar(*CENTRE, radius * (1 + depth * wave + 0.05 * turn * wave * wave * wave), angle + twist))
    return ring


def garland(phase, points):
    """One of six strands of the band around the rosette."""
    ring = []
    for i in range(points + 1):
        angle = 360 * i / points
        ring.append(polar(*CENTRE, 4880 + 150 * math.cos(math.radians(72 * angle + phase)), angle))
    return ring


def star(x, y):
    """A little rosette for a corner: a circle that rolls in a circle."""
    ring = []
    for i in range(2101):
        angle = 2160 * i / 2100
        ring.append(polar(*polar(x, y, 520, angle), 400, -angle * 13 / 6))
    return ring


def main(segments):
    sheet = Plot("rosette.py")
    sheet.raw(f"SC0,{WIDTH},0,{HEIGHT};")
    sheet.use(NIGHT)
    sheet.box(0, 0, WIDTH, HEIGHT)
    sheet.bar(0, 0, WIDTH, HEIGHT)
    rings = 84
    points = max(12, segments // (rings + 6))
    for k in range(rings):
        sheet.use(ramp(FIRE, int(k * COLOURS / rings) / (COLOURS - 1)))
        sheet.line(*petal(k / (rings - 1), points))
    for k in range(6):
        sheet.use(FIRE[0] if k % 2 else FIRE[1])
        sheet.line(*garland(60 * k, points))
    for x in (1300, WIDTH - 1300):
        for y in (1300, HEIGHT - 1300):
            sheet.use(FIRE[5])
            sheet.line(*star(x, y))
    for inset, colour in ((220, FIRE[1]), (270, FIRE[4])):
        sheet.use(colour)
        sheet.box(inset, inset, WIDTH - inset, HEIGHT - inset)
    sheet.write()


main(int(sys.argv[1]) if len(sys.argv) > 1 else 126000)
