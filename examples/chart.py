"""A page of a small town's power station: bars, line, ring, hours of the year, bands. The figures are made up."""

import math

from plot import Plot, circle_points, mix, polar, ramp

WIDTH, HEIGHT = 16000, 11000
INK, SOFT, LINE, PAPER, CARD = (38, 44, 56), (112, 118, 130), (214, 217, 222), (244, 243, 239), (255, 255, 255)
MONTHS = ("Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec")
SOURCES = (  # name, colour, MWh a month
    ("Hydro", (46, 96, 140), (310, 295, 380, 470, 520, 455, 340, 270, 260, 300, 345, 330)),
    ("Wind", (88, 164, 176), (420, 390, 370, 300, 240, 190, 180, 200, 260, 350, 400, 430)),
    ("Solar", (242, 180, 70), (60, 105, 190, 270, 340, 375, 385, 330, 235, 140, 75, 48)),
    ("Biomass", (134, 162, 92), (180, 165, 150, 110, 80, 60, 55, 60, 90, 130, 165, 185)),
    ("Imported", (214, 92, 78), (160, 140, 60, 20, 0, 0, 35, 90, 110, 120, 140, 185)),
)
DEMAND = (1130, 1070, 1090, 1010, 950, 930, 985, 965, 955, 1020, 1110, 1178)
HEAT = [(238, 243, 236), (196, 224, 214), (118, 184, 190), (62, 126, 168), (48, 74, 128), (40, 32, 78)]


def card(sheet, x1, y1, x2, y2, title, note):
    sheet.use(CARD)
    sheet.bar(x1, y1, x2, y2)
    sheet.use(LINE)
    sheet.box(x1, y1, x2, y2)
    sheet.use(INK)
    sheet.label(x1 + 250, y2 - 420, title, 170)
    sheet.use(SOFT)
    sheet.label(x1 + 250, y2 - 660, note, 105)


def draw_months(sheet, left, low, right, high):
    """Stacked bars, a month each, and the demand as a line over them."""
    tallest = 1600

    def level(value):
        return low + (high - low) * value / tallest

    for value in range(0, tallest + 1, 200):
        sheet.use(INK if value == 0 else LINE, 0.35 if value == 0 else 0.1)
        sheet.line((left, level(value)), (right, level(value)))
        sheet.use(SOFT)
        sheet.label(left - 110, level(value) - 50, str(value), 105, "r")
    step = (right - left) / 12
    middles = [left + step * (k + 0.5) for k in range(12)]
    for k, x in enumerate(middles):
        base = 0
        for _, colour, amounts in SOURCES:
            if amounts[k]:
                sheet.use(colour)
                sheet.bar(x - 0.33 * step, level(base) + 10, x + 0.33 * step, level(base + amounts[k]))
            base += amounts[k]
        sheet.use(INK)
        sheet.label(x, low - 240, MONTHS[k], 115, "c")
        sheet.use(SOFT)
        sheet.label(x, level(base) + 190, str(base), 90, "c")
    line = [(x, level(value)) for x, value in zip(middles, DEMAND)]
    for colour, width in ((CARD, 2.2), (INK, 0.7)):
        sheet.use(colour, width)
        sheet.line(*line)
    for x, y in line:
        for colour, radius in ((INK, 75), (CARD, 42)):
            sheet.use(colour)
            sheet.polygon([circle_points(x, y, radius, 36)])


def draw_legend(sheet, x, y):
    for name, colour, _ in SOURCES:
        sheet.use(colour)
        sheet.bar(x, y, x + 150, y + 110)
        sheet.use(INK)
        sheet.label(x + 220, y + 5, name, 105)
        x += 420 + 84 * len(name)
    sheet.use(INK, 0.7)
    sheet.line((x, y + 55), (x + 240, y + 55))
    sheet.use(INK)
    sheet.polygon([circle_points(x + 120, y + 55, 60, 24)])
    sheet.label(x + 320, y + 5, "Demand", 105)


def draw_ring(sheet, x, y, outer, inner):
    """The shares of the year as a ring; the largest stands out."""
    totals = [sum(amounts) for _, _, amounts in SOURCES]
    start, largest = 90.0, totals.index(max(totals))
    for k, (name, colour, _) in enumerate(SOURCES):
        sweep = -360 * totals[k] / sum(totals)
        middle = start + sweep / 2
        cx, cy = polar(x, y, 130 if k == largest else 0, middle)
        sheet.use(colour)
        sheet.wedge(cx, cy, outer, start, sweep, 1)
        sheet.use(CARD, 0.7)
        for edge in (start, start + sweep):
            sheet.line((cx, cy), polar(cx, cy, outer + 20, edge))
        sheet.use(SOFT)
        bend = polar(cx, cy, outer + 190, middle)
        side = 1 if math.cos(math.radians(middle)) > 0 else -1
        end = (bend[0] + 130 * side, bend[1])
        sheet.line(polar(cx, cy, outer + 50, middle), bend, end)
        anchor = "l" if side > 0 else "r"
        sheet.use(INK)
        sheet.label(end[0] + 60 * side, end[1] + 10, name, 115, anchor)
        sheet.use(SOFT)
        sheet.label(end[0] + 60 * side, end[1] - 150, f"{100 * totals[k] / sum(totals):.1f} %", 100, anchor)
        start += sweep
    sheet.use(CARD)
    sheet.polygon([circle_points(x, y, inner, 120)])
    sheet.use(INK)
    sheet.label(x, y - 20, f"{sum(totals) / 1000:.1f}", 300, "c")
    sheet.use(SOFT)
    sheet.label(x, y - 240, "GWh in the year", 90, "c")


def bell(t, middle, wide):
    return math.exp(-(((t - middle) / wide) ** 2))


def load(month, hour):
    """What the town draws in an hour of a month, as a part of the highest load."""
    winter = 0.5 + 0.5 * math.cos(math.tau * (month - 0.4) / 12)
    morning, noon, evening = bell(hour, 7.8, 2.1), bell(hour, 13, 3.4), bell(hour, 18.6 - 0.6 * winter, 2.6)
    return 0.12 + 0.14 * winter + 0.3 * morning + (0.3 + 0.16 * winter) * evening + (0.3 - 0.06 * winter) * noon


def draw_hours(sheet, left, low, right, high):
    """A field for every hour of a day in every month."""
    wide, tall = (right - left) / 24, (high - low) / 12
    for month in range(12):
        y = high - tall * (month + 1)
        for hour in range(24):
            shade = round(12 * min(1, max(0, (load(month, hour) - 0.14) / 0.66)))
            sheet.use(ramp(HEAT, shade / 12))
            sheet.bar(left + wide * hour + 8, y + 8, left + wide * (hour + 1) - 8, y + tall - 8)
        sheet.use(SOFT)
        sheet.label(left - 80, y + tall / 2 - 42, MONTHS[month], 85, "r")
    for hour in range(0, 25, 3):
        sheet.label(left + wide * hour, low - 190, f"{hour:02}", 90, "c")
    for k in range(13):
        sheet.use(ramp(HEAT, k / 12))
        sheet.bar(right - 2350 + 150 * k, high + 130, right - 2200 + 150 * k, high + 230)
    sheet.use(SOFT)
    sheet.label(right - 2430, high + 135, "low", 85, "r")
    sheet.label(right, high + 135, "high", 85, "r")


def draw_bands(sheet, left, low, right, high):
    """The sources on a day in June, stacked as bands."""
    shapes = (
        lambda t: 0.30 + 0.03 * math.sin(t / 3),
        lambda t: 0.16 + 0.07 * math.sin(t / 2.3 + 1.4) + 0.03 * math.sin(1.7 * t),
        lambda t: 0.52 * max(0.02, math.sin(math.pi * (t - 4.6) / 16)) ** 1.4 * (1 - 0.12 * bell(t, 14.2, 0.8)),
        lambda t: 0.06 + 0.03 * bell(t, 20, 2.4),
    )
    times = [k / 6 for k in range(145)]
    x = [left + (right - left) * t / 24 for t in times]
    floor = [low] * len(times)
    for k in range(5):
        sheet.use(LINE)
        sheet.line((left, low + (high - low) * k / 4), (right, low + (high - low) * k / 4))
        sheet.use(SOFT)
        sheet.label(left - 90, low + (high - low) * k / 4 - 45, f"{0.7 * k:.1f}", 90, "r")
    for shape, (_, colour, _) in zip(shapes, SOURCES):
        top = [y + (high - low) * 0.86 * shape(t) for y, t in zip(floor, times)]
        sheet.use(mix(colour, CARD, 0.25))
        sheet.polygon([list(zip(x, floor)) + list(zip(reversed(x), reversed(top)))])
        sheet.use(colour, 0.55)
        sheet.line(*zip(x, top))
        floor = top
    sheet.use(INK, 0.35)
    sheet.line((left, low), (right, low))
    sheet.use(SOFT)
    for hour in range(0, 25, 6):
        sheet.label(left + (right - left) * hour / 24, low - 200, f"{hour:02}:00", 90, "c")


def main():
    sheet = Plot("chart.py")
    sheet.raw(f"SC0,{WIDTH},0,{HEIGHT};")
    sheet.use(PAPER)
    sheet.box(0, 0, WIDTH, HEIGHT)
    sheet.bar(0, 0, WIDTH, HEIGHT)
    sheet.use(INK)
    sheet.label(500, 10280, "Where the power comes from", 330, width=0.76)
    sheet.use(SOFT)
    sheet.label(500, 9960, "Mill Lane power station: a year in megawatt hours, hour by hour and source by source", 125)
    sheet.use(SOURCES[4][1])
    sheet.bar(0, 9900, 200, 10650)
    card(sheet, 500, 4350, 10000, 9650, "Twelve months", "MWh a month by source; the line is the town's demand")
    draw_months(sheet, 1250, 5350, 9800, 8600)
    draw_legend(sheet, 1250, 4620)
    card(sheet, 10250, 4350, 15500, 9650, "The year's shares", "parts of everything that was delivered")
    draw_ring(sheet, 12830, 6720, 1450, 870)
    card(sheet, 500, 400, 7600, 4100, "The day's load", "a field is an hour")
    draw_hours(sheet, 1150, 750, 7350, 3200)
    card(sheet, 7850, 400, 15500, 4100, "A day in June", "megawatts, the 21st, every ten minutes")
    draw_bands(sheet, 8450, 800, 15200, 3150)
    sheet.write()


main()
