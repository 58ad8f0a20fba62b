"""A map of an island that nobody has seen: tints, contours lit from one side, rivers, roads, frame, legend.

The landscape is noise that was rained upon. Takes a few seconds.
"""

import heapq
import math

from plot import CAP, Plot, circle_points, dashes, polar, ramp, smooth

WIDTH, HEIGHT = 16000, 11000
LEFT, BOTTOM, RIGHT, TOP = 700, 700, 12100, 10300
STEP = 60  # plotter units between two nodes of the grid
COLUMNS, ROWS = (RIGHT - LEFT) // STEP + 1, (TOP - BOTTOM) // STEP + 1
SPRING = 70  # nodes that must drain together to make a brook
INTERVAL, INDEX = 50, 200  # metres between contours and between the thick ones
THICK = 0.55

INK = (44, 42, 48)
GREY = (140, 136, 130)
WATER = (38, 104, 150)
RED = (178, 44, 40)
PAPER = (252, 250, 244)
ROAD = (160, 74, 50)
TONES = 7  # of contours, from those that look away from the light to those that look towards it
CONTOURS = [(96, 64, 40), (150, 108, 72), (212, 176, 130), (255, 248, 226)]
DEPTHS = [(76, 128, 170), (112, 160, 198), (150, 194, 224)]
TINTS = [  # from this height in metres upward
    (-400, (150, 196, 224)), (-200, (172, 210, 232)), (-100, (192, 222, 238)), (-50, (212, 234, 244)),
    (0, (172, 204, 148)), (50, (188, 213, 156)), (100, (202, 220, 164)), (200, (217, 226, 172)),
    (300, (229, 230, 178)), (400, (236, 226, 172)), (500, (238, 217, 160)), (600, (235, 205, 146)),
    (700, (228, 192, 134)), (800, (219, 179, 126)), (900, (210, 170, 124)), (1000, (204, 168, 132)),
    (1100, (210, 182, 156)), (1200, (224, 206, 190)), (1300, (240, 232, 224)),
]  # fmt: skip


TOWNS = [  # name, node, radius of its circle, place and anchor of its label
    ("Port Sizing", (113, 148), 90, 40, 330, "c"), ("Deckle", (53, 104), 90, -130, -230, "r"),
    ("Quire", (99, 85), 60, -120, -190, "r"), ("Laid", (149, 108), 60, 130, 40, "l"),
    ("Kollergang", (118, 117), 60, 120, -50, "l"), ("Bleach Head", (121, 33), 60, -120, -170, "r"),
    ("Couch", (31, 27), 60, -130, -60, "r"), ("Foolscap", (67, 148), 60, -110, -60, "r"),
]  # fmt: skip
SUMMITS = [("Mount Ream", (61, 120)), ("Rag Top", (85, 100)), ("The Dandy", (122, 92)), ("Stamper", (134, 75)),
           ("Felt", (35, 32))]  # fmt: skip
ROADS = [("Port Sizing", "Foolscap"), ("Port Sizing", "Kollergang"), ("Kollergang", "Laid"), ("Kollergang", "Quire"),
         ("Quire", "Deckle"), ("Quire", "Bleach Head")]  # fmt: skip
PATHS = [("Foolscap", "Mount Ream"), ("Kollergang", "The Dandy"), ("Couch", "Felt"), ("Kollergang", "Rag Top")]
SEAS = [(4700, 4320, "STRAIT OF GUM", 170), (11000, 9620, "NORTH BAY", 120), (8000, 1400, "PULP DEEP", 150)]


# The landscape.


def slope_at(x, y, seed, u, v):
    """What the random slope of the node (x, y) makes of the way (u, v) from there."""
    n = (x * 374761393 + y * 668265263 + seed * 1442695041) & 0xFFFFFFFF
    n = ((n ^ (n >> 13)) * 1274126177) & 0xFFFFFFFF
    angle = ((n ^ (n >> 16)) & 0xFFFF) * math.tau / 65536
    return u * math.cos(angle) + v * math.sin(angle)


def noise(x, y, seed):
    """Smooth noise of wave length 1, about -0.7 to 0.7."""
    i, j = math.floor(x), math.floor(y)
    u, v = x - i, y - j
    s, t = (w * w * w * (w * (6 * w - 15) + 10) for w in (u, v))
    low = slope_at(i, j, seed, u, v) * (1 - s) + slope_at(i + 1, j, seed, u - 1, v) * s
    high = slope_at(i, j + 1, seed, u, v - 1) * (1 - s) + slope_at(i + 1, j + 1, seed, u - 1, v - 1) * s
    return low * (1 - t) + high * t


def hill(x, y, cx, cy, rx, ry):
    return math.exp(-(((x - cx) / rx) ** 2) - ((y - cy) / ry) ** 2)


def rough_height(x, y):
    """Metres above the sea before the rain; x and y in widths of the map."""
    x, y = x + 0.07 * noise(4 * x, 4 * y, 5), y + 0.07 * noise(4 * x, 4 * y, 6)
    land = hill(x, y, 0.63, 0.56, 0.25, 0.2) + 0.58 * hill(x, y, 0.36, 0.68, 0.17, 0.11)
    land += 0.62 * hill(x, y, 0.86, 0.3, 0.16, 0.13) + 0.5 * hill(x, y, 0.2, 0.2, 0.1, 0.08)
    detail = sum(noise(f * x, f * y, f) / f for f in (4, 8, 16, 32)) * 4
    return 1250 * land - 330 + (220 + 380 * min(land, 1)) * detail


NEIGHBOURS = ((1, 0), (0, 1), (-1, 0), (0, -1), (1, 1), (-1, 1), (-1, -1), (1, -1))


def flood(heights):
    """Lets the sea rise: the nodes in the order in which it reaches them, and from which neighbour it came to each."""
    border = [(heights[j][i], i, j) for j in range(ROWS) for i in range(COLUMNS)
              if i in (0, COLUMNS - 1) or j in (0, ROWS - 1) or heights[j][i] < 0]  # fmt: skip
    heapq.heapify(border)
    down, order = {(i, j): None for _, i, j in border}, []
    while border:
        level, i, j = heapq.heappop(border)
        order.append((i, j))
        for di, dj in NEIGHBOURS:
            node = (i + di, j + dj)
            if node not in down and 0 <= node[0] < COLUMNS and 0 <= node[1] < ROWS:
                down[node] = (i, j)
                heapq.heappush(border, (max(level, heights[node[1]][node[0]]), *node))
    return order, down


def drainage(order, down):
    """How many nodes drain through each."""
    drained = dict.fromkeys(order, 1)
    for node in reversed(order):
        if down[node]:
            drained[down[node]] += drained[node]
    return drained


def rain(heights, strength):
    """Wears every node down towards the one below it, the more, the more water it carries."""
    order, down = flood(heights)
    drained = drainage(order, down)
    for i, j in order:
        below = down[i, j]
        if below:
            base = heights[below[1]][below[0]]
            wear = strength * math.sqrt(drained[i, j]) / math.hypot(i - below[0], j - below[1])
            heights[j][i] = max(base + 0.5, (heights[j][i] + wear * base) / (1 + wear))


def crumble(heights, share):
    """Moves every node by a share towards the mean of its four neighbours."""
    old = [row[:] for row in heights]
    for j in range(1, ROWS - 1):
        for i in range(1, COLUMNS - 1):
            mean = (old[j][i - 1] + old[j][i + 1] + old[j - 1][i] + old[j + 1][i]) / 4
            heights[j][i] += share * (mean - old[j][i])


def landscape():
    wide = RIGHT - LEFT
    nodes = [[(i * STEP / wide, j * STEP / wide) for i in range(COLUMNS)] for j in range(ROWS)]
    heights = [[rough_height(x, y) for x, y in row] for row in nodes]
    uplift = [[min(max(h, 0), 950) / 30 * (1 + noise(26 * x, 26 * y, 9)) for h, (x, y) in zip(*rows)]
              for rows in zip(heights, nodes)]  # fmt: skip
    for _ in range(22):
        rain(heights, 0.045)
        crumble(heights, 0.1)
        heights = [[h + up for h, up in zip(*rows)] for rows in zip(heights, uplift)]
    for _ in range(3):
        crumble(heights, 0.6)
    return heights


def place(i, j):
    """The plotter point of a node; nodes outside the grid lie on its edge."""
    return LEFT + STEP * min(max(i, 0), COLUMNS - 1), BOTTOM + STEP * min(max(j, 0), ROWS - 1)


# Contours: marching squares over the grid with a ring of abyss around it, so that every contour is closed.


# The cell sides (0 bottom, 1 right, 2 top, 3 left) that the contour joins, the higher ground at its left, for every set
# of corners above it (1 lower left, 2 lower right, 4 upper right, 8 upper left); of the two saddles, for a low middle.
CELLS = {
    1: [(0, 3)], 2: [(1, 0)], 3: [(1, 3)], 4: [(2, 1)], 5: [(0, 3), (2, 1)], 6: [(2, 0)], 7: [(2, 3)],
    8: [(3, 2)], 9: [(0, 2)], 10: [(1, 0), (3, 2)], 11: [(1, 2)], 12: [(3, 1)], 13: [(0, 1)], 14: [(3, 0)],
}  # fmt: skip
HIGH_SADDLES = {5: [(0, 1), (2, 3)], 10: [(3, 0), (1, 2)]}


def cell_sides(corners, level):
    case = sum(1 << k for k, corner in enumerate(corners) if corner > level)
    if case in HIGH_SADDLES and sum(corners) / 4 > level:
        return HIGH_SADDLES[case]
    return CELLS.get(case, [])


def crossing(ground, level, i1, j1, i2, j2):
    (x1, y1), (x2, y2), v1, v2 = place(i1, j1), place(i2, j2), ground[j1 + 1][i1 + 1], ground[j2 + 1][i2 + 1]
    t = (level - v1) / (v2 - v1)
    return x1 + (x2 - x1) * t, y1 + (y2 - y1) * t


def contour_rings(ground, level):
    """The closed contours of a level; ground has the abyss around it."""
    follow = {}
    for j in range(-1, ROWS):
        for i in range(-1, COLUMNS):
            low, high = ground[j + 1], ground[j + 2]
            a, b, c, d = (i, j), (i + 1, j), (i + 1, j + 1), (i, j + 1)
            sides = ((a, b), (b, c), (d, c), (a, d))
            for enter, leave in cell_sides((low[i + 1], low[i + 2], high[i + 2], high[i + 1]), level):
                follow[sides[enter]] = sides[leave]
    rings = []
    while follow:
        side = start = next(iter(follow))
        ring = []
        while side in follow:
            ring.append(crossing(ground, level, *side[0], *side[1]))
            side = follow.pop(side)
        if side == start and len(ring) > 8:
            rings.append(thin(ring + ring[:1], 2.5))
    return rings


def thin(points, tolerance):
    """Leaves out points that lie within the tolerance of the line without them."""
    keep, pending = {0, len(points) - 1}, [(0, len(points) - 1)]
    while pending:
        a, b = pending.pop()
        (x1, y1), (x2, y2) = points[a], points[b]
        length = math.hypot(x2 - x1, y2 - y1)
        worst, at = tolerance, None
        for k in range(a + 1, b):
            x, y = points[k]
            off = abs((x2 - x1) * (y - y1) - (y2 - y1) * (x - x1)) / length if length else math.hypot(x - x1, y - y1)
            if off > worst:
                worst, at = off, k
        if at is not None:
            keep.add(at)
            pending += [(a, at), (at, b)]
    return [points[k] for k in sorted(keep)]


def on_edge(p, q):
    edges = ((0, LEFT), (0, RIGHT), (1, BOTTOM), (1, TOP))
    return any(abs(p[k] - edge) < 1 and abs(q[k] - edge) < 1 for k, edge in edges)


def light(p, q):
    """The tone of a stroke: the light comes from the north-west."""
    length = math.hypot(q[0] - p[0], q[1] - p[1]) or 1
    facing = (p[0] - q[0] + p[1] - q[1]) / length
    return round((facing / math.sqrt(2) + 1) / 2 * (TONES - 1))


def covered(p, boxes):
    return any(x1 < p[0] < x2 and y1 < p[1] < y2 for x1, y1, x2, y2 in boxes)


def tone_strokes(ring, boxes):
    """The ring in strokes of one tone each, without the map's edge and what lies under a label."""
    strokes, tone = [], None
    for p, q in zip(ring, ring[1:]):
        if on_edge(p, q) or covered(((p[0] + q[0]) / 2, (p[1] + q[1]) / 2), boxes):
            tone = None
        elif light(p, q) == tone:
            strokes[-1][1].append(q)
        else:
            tone = light(p, q)
            strokes.append((tone, [p, q]))
    return strokes


def rivers(heights):
    """Polylines from mouth to source, each with the number of nodes that drain through it."""
    order, down = flood(heights)
    drained, feeder = drainage(order, down), {}
    for node in order:
        if down[node] and drained[node] > drained.get(feeder.get(down[node]), 0):
            feeder[down[node]] = node
    found = []
    for node in order:
        below = down[node]
        if below and drained[node] > SPRING and (feeder[below] != node or down[below] is None):
            course, at = [below], node
            while at and drained[at] > SPRING:
                course.append(at)
                at = feeder.get(at)
            if len(course) > 9:
                found.append((drained[node], smooth([place(*n) for n in course[:1] + course[1:-1:2] + course[-1:]], 2)))
    return found


def easiest_way(heights, start, goal):
    """The way over land from node to node that climbs least, as a smooth polyline."""
    cost, came, pending = {start: 0}, {}, [(0, start)]
    while pending:
        spent, at = heapq.heappop(pending)
        if at == goal:
            break
        if spent > cost[at]:
            continue
        here = heights[at[1]][at[0]]
        for di, dj in NEIGHBOURS:
            i, j = at[0] + di, at[1] + dj
            if 0 <= i < COLUMNS and 0 <= j < ROWS and (heights[j][i] > 12 or (i, j) == goal):
                total = spent + math.hypot(di, dj) * (1 + ((heights[j][i] - here) / 9) ** 2)
                if total < cost.get((i, j), math.inf):
                    cost[i, j], came[i, j] = total, at
                    heapq.heappush(pending, (total, (i, j)))
    way = [goal]
    while way[-1] != start:
        way.append(came[way[-1]])
    return smooth([place(*n) for n in way[:1] + way[1:-1:3] + way[-1:]], 3)


def ashore(heights, i, j):
    """The nearest node that stands dry."""
    land = ((a, b) for b in range(ROWS) for a in range(COLUMNS) if heights[b][a] > 20)
    return min(land, key=lambda n: (n[0] - i) ** 2 + (n[1] - j) ** 2)


def summit(heights, i, j):
    """The highest node around a node."""
    near = [(b, a) for b in range(max(0, j - 9), min(ROWS, j + 10)) for a in range(max(0, i - 9), min(COLUMNS, i + 10))]
    b, a = max(near, key=lambda n: heights[n[0]][n[1]])
    return a, b


# The sheet.


def draw_tints(sheet, ground):
    sheet.use(TINTS[0][1])
    sheet.bar(LEFT, BOTTOM, RIGHT, TOP)
    for level, colour in TINTS[1:]:
        rings = contour_rings(ground, level)
        if rings:
            sheet.use(colour)
            sheet.polygon(rings)


def label_spots(ring, taken):
    """Places on a ring where it runs nearly level from west to east, far from each other."""
    spots = []
    for p, q in zip(ring, ring[1:]):
        x, y = (p[0] + q[0]) / 2, (p[1] + q[1]) / 2
        level = abs(q[1] - p[1]) < 0.35 * abs(q[0] - p[0])
        inside = LEFT + 400 < x < RIGHT - 400 and BOTTOM + 300 < y < TOP - 300
        if level and inside and all(math.hypot(x - a, (y - b) * 1.2) > 1250 for a, b in taken):
            spots.append((x, y))
            taken.append((x, y))
    return spots


def draw_contours(sheet, ground, keep_clear):
    taken, boxes, labels, contours = [], list(keep_clear), [], []
    for level in range(-350, 2000, INTERVAL):
        rings = contour_rings(ground, level)
        contours += [(level, ring) for ring in rings]
        if level % INDEX == 0 and level > 0:
            for x, y in (spot for ring in rings if len(ring) > 40 for spot in label_spots(ring, taken)):
                if not any(a - 250 < x < c + 250 and b - 80 < y < d + 80 for a, b, c, d in keep_clear):
                    labels.append((x, y, str(level)))
    for x, y, text in labels:
        boxes.append((x - 36 * len(text) - 25, y - 55, x + 36 * len(text) + 25, y + 55))
    for level, ring in contours:
        tones = CONTOURS if level > 0 else DEPTHS
        width = THICK if level % INDEX == 0 and level >= 0 else 0.1
        for tone, stroke in tone_strokes(ring, boxes[len(keep_clear) :] if level == 0 else boxes):
            sheet.use(ramp(tones, tone / (TONES - 1)) if level else WATER, width)
            sheet.line(*stroke)
    sheet.use(CONTOURS[0])
    for x, y, text in labels:
        sheet.label(x, y - 42, text, 85, "c", 0.82)


def draw_grid(sheet):
    """The frame with its kilometres: 1900 units are one."""
    sheet.use(GREY)
    for k in range(1, 6):
        for m in range(1, 6):
            x, y = LEFT + 1900 * k, BOTTOM + 1900 * m
            if y < TOP - 100:
                sheet.line((x - 70, y), (x + 70, y))
                sheet.line((x, y - 70), (x, y + 70))
    sheet.use(INK)
    sheet.box(LEFT - 130, BOTTOM - 130, RIGHT + 130, TOP + 130)
    for k in range(0, 12, 2):
        for y in (BOTTOM - 130, TOP):
            sheet.bar(LEFT + 950 * k, y, LEFT + 950 * (k + 1), y + 130)
    for k in range(0, 10, 2):
        for x in (LEFT - 130, RIGHT):
            sheet.bar(x, BOTTOM + 950 * k, x + 130, BOTTOM + 950 * (k + 1))
    for k in range(1, 6):
        x, y = LEFT + 1900 * k, BOTTOM + 1900 * k
        for at in (BOTTOM - 300, TOP + 210):
            sheet.label(x, at, str(411 + k), 110, "c")
        for at, anchor in ((LEFT - 190, "r"), (RIGHT + 190, "l")):
            sheet.label(at, y - 55, str(76 + k), 110, anchor)
    sheet.use(INK, 0.5)
    sheet.box(LEFT, BOTTOM, RIGHT, TOP)


def name_labels(heights, towns, tops):
    """The labels of towns and summits: x, y, text, height, anchor."""
    labels = []
    for name, _, size, dx, dy, anchor in TOWNS:
        x, y = place(*towns[name])
        labels.append((x + dx, y + dy, name, 110 + size // 2, anchor))
    for name, (i, j) in tops.items():
        x, y = place(i, j)
        labels += [(x + 110, y + 20, name, 115, "l"), (x + 110, y - 125, f"{heights[j][i]:.0f}", 95, "l")]
    return labels


def label_box(x, y, text, height, anchor):
    left, wide = x - {"l": 0, "c": 0.5, "r": 1}[anchor] * CAP * height * len(text), CAP * height * len(text)
    return left - 25, y - 30, left + wide + 25, y + height + 25


def draw_ways(sheet, heights, towns, tops):
    for start, goal in ROADS:
        sheet.use(ROAD, THICK)
        sheet.line(*easiest_way(heights, towns[start], towns[goal]))
    for start, goal in PATHS:
        sheet.use(INK)
        sheet.lines(dashes(easiest_way(heights, towns[start], tops[goal]), (75, 50)))


def draw_places(sheet, towns, tops, labels):
    for name, _, size, *_ in TOWNS:
        draw_town(sheet, *place(*towns[name]), size)
    for node in tops.values():
        draw_summit(sheet, *place(*node))
    for label in labels:
        sheet.label(*label)
    sheet.use(WATER)
    for x, y, name, size in SEAS:
        sheet.label(x, y, " ".join(name), size, "c")


def draw_summit(sheet, x, y):
    sheet.use(INK)
    sheet.polygon([[(x - 60, y - 40), (x + 60, y - 40), (x, y + 70)]])


def draw_town(sheet, x, y, size):
    sheet.use(PAPER)
    sheet.polygon([circle_points(x, y, size, 32)])
    sheet.use(INK, 0.35)
    sheet.circle(x, y, size)
    if size > 70:
        sheet.polygon([circle_points(x, y, size - 45, 24)])


def draw_north(sheet, x, y):
    sheet.use(INK, 0.35)
    sheet.circle(x, y, 420, 3)
    sheet.use(INK)
    sheet.circle(x, y, 380, 3)
    for k in range(72):
        sheet.line(polar(x, y, 380, 5 * k), polar(x, y, 330 if k % 6 == 0 else 355, 5 * k))
    for k in range(8):
        reach = 560 if k == 2 else 320 if k % 2 == 0 else 190
        tip, left, right = polar(x, y, reach, 45 * k), polar(x, y, 75, 45 * k + 45), polar(x, y, 75, 45 * k - 45)
        sheet.use(PAPER)
        sheet.polygon([[tip, left, (x, y)]])
        sheet.use(RED if k == 2 else INK)
        sheet.polygon([[tip, (x, y), right]])
        sheet.polygon([[tip, left, (x, y)]], "EP;")
    sheet.label(x, y + 620, "N", 190, "c")


def draw_panel(sheet):
    x, right = 12700, 15560
    sheet.use(INK)
    sheet.label(x, 9910, "ISLE OF", 240, width=0.95)
    sheet.use(RED)
    sheet.label(x, 9450, "VELLUM", 400, width=1.05)
    sheet.use(INK)
    sheet.label(x, 9210, "TOPOGRAPHIC SHEET 7, MAIN ISLAND", 105, width=0.83)
    sheet.use(INK, 0.5)
    sheet.line((x, 9060), (right, 9060))
    draw_north(sheet, 14130, 8130)
    sheet.use(INK)
    sheet.line((x, 7480), (right, 7480))
    sheet.label(x, 7250, "HEIGHT ABOVE THE SEA, METRES", 105, width=0.83)
    top, tall = 7080, 178
    for k, (level, colour) in enumerate(reversed(TINTS)):
        sheet.use(colour)
        sheet.bar(x, top - tall * k, x + 620, top - tall * (k + 1))
    sheet.use(INK)
    sheet.box(x, top - tall * len(TINTS), x + 620, top)
    for k, (level, _) in enumerate(reversed(TINTS[1:])):
        y = top - tall * (k + 1)
        sheet.line((x + 620, y), (x + 690, y))
        sheet.label(x + 1010, y - 45, str(level), 95, "r")
    signs = 13980
    words = ("contour", f"every {INDEX} m", "coast", "river", "road", "path", "town", "village", "summit")
    for k, text in enumerate(words):
        y = 6900 - 390 * k
        sheet.use(INK)
        sheet.label(signs + 560, y - 45, text, 100)
        if k < 6:
            sheet.use((CONTOURS[0], CONTOURS[0], WATER, WATER, ROAD, INK)[k], (0.1, THICK, THICK, 0.35, THICK, 0.1)[k])
            course = [(signs + 40 * m, y + 45 * math.sin(0.7 * m)) for m in range(11)]
            sheet.lines(dashes(course, (70, 45)) if k == 5 else [course])
        elif k < 8:
            draw_town(sheet, signs + 200, y, (90, 60)[k - 6])
        else:
            draw_summit(sheet, signs + 200, y)
    sheet.use(INK)
    sheet.line((x, 3400), (right, 3400))
    draw_scale(sheet, x, 2780)
    sheet.label(x, 1900, f"Contour interval {INTERVAL} m", 100)
    sheet.label(x, 1700, "Grid 1 km, light from NW", 100)
    sheet.label(x, 1500, "Gradient noise and rain,", 100)
    sheet.label(x, 1300, "rivers by priority flood", 100)
    sheet.use(GREY)
    sheet.line((x, 1050), (right, 1050))
    sheet.label(x, 840, "Not for navigation.", 100)


def draw_scale(sheet, x, y):
    sheet.use(INK)
    sheet.label(x, y + 330, "1 : 21 000", 150)
    for k, (start, end) in enumerate(((0, 475), (475, 950), (950, 1900), (1900, 2850))):
        if k % 2 == 0:
            sheet.bar(x + start, y, x + end, y + 100)
        sheet.box(x + start, y, x + end, y + 100)
    for at, text, anchor in ((0, "0", "l"), (950, "500", "c"), (1900, "1000", "c"), (2850, "1500 m", "r")):
        sheet.label(x + at, y - 200, text, 100, anchor)


def main():
    heights = landscape()
    abyss = [-1e9] * (COLUMNS + 2)
    ground = [abyss] + [[-1e9] + row + [-1e9] for row in heights] + [abyss]
    sheet = Plot("contour.py")
    sheet.raw(f"SC0,{WIDTH},0,{HEIGHT};")
    sheet.use(PAPER)
    sheet.bar(0, 0, WIDTH, HEIGHT)
    draw_tints(sheet, ground)
    towns = {name: ashore(heights, *node) for name, node, *_ in TOWNS}
    tops = {name: summit(heights, *node) for name, node in SUMMITS}
    labels = name_labels(heights, towns, tops)
    draw_contours(sheet, ground, [label_box(*label) for label in labels])
    for drained, course in rivers(heights):
        sheet.use(WATER, 0.7 if drained > 900 else 0.35)
        sheet.line(*course)
    draw_ways(sheet, heights, towns, tops)
    draw_places(sheet, towns, tops, labels)
    draw_grid(sheet)
    draw_panel(sheet)
    sheet.use(INK, 0.7)
    sheet.box(120, 120, WIDTH - 120, HEIGHT - 120)
    sheet.use(GREY)
    sheet.box(0, 0, WIDTH, HEIGHT)
    sheet.write()


main()
