"""Draws hpgldump's calls by itself, as far as thin lines and their colours go, and compares a picture with that."""
import subprocess

WHITE = (255, 255, 255)


def dump(program, plot, width, height, *options):
    """Palette and output calls of a plot in a window of that size."""
    command = [str(program), "--picture", "--calls", "--size", f"{width}x{height}", *options, str(plot)]
    return subprocess.run(command, capture_output=True, check=True).stdout.decode().splitlines()


def line_points(x1, y1, x2, y2):
    """The points of a line: one on every step of its longer side."""
    steps = max(abs(x2 - x1), abs(y2 - y1), 1)
    for step in range(steps + 1):
        yield round(x1 + (x2 - x1) * step / steps), round(y1 + (y2 - y1) * step / steps)


def draw(lines, width, height):
    """Colour by point, of all points that are not white; y grows downward like a picture's rows."""
    palette, colour, points = {}, WHITE, {}
    for line in lines:
        kind, *words = line.split()
        if kind == "palette":
            index, *rgb = map(int, words)
            palette[index] = tuple(rgb)
        elif kind == "OUTlinecolour":
            colour = palette[int(words[0])]
        elif kind == "OUTline":
            for x, y in line_points(*map(int, words)):
                if 0 <= x < width and 0 <= y < height:
                    points[x, height - 1 - y] = colour
        elif kind.startswith("OUT") and kind != "OUTfillcolour":
            raise ValueError("not a thin plot: " + line)
    return {point: colour for point, colour in points.items() if colour != WHITE}


def ink_of(picture):
    """Colour by point of a picture, of all points that are not white."""
    width, height, data = picture
    ink = {}
    for y in range(height):
        row = data[3 * width * y:3 * width * (y + 1)]
        if row.count(255) == len(row):
            continue
        for x in range(width):
            colour = tuple(row[3 * x:3 * x + 3])
            if colour != WHITE:
                ink[x, y] = colour
    return ink


def far_from(points, others):
    """Those that have none of their colour among the others, even one pixel beside."""
    around = [(dx, dy) for dx in (-1, 0, 1) for dy in (-1, 0, 1)]
    return [(point, colour) for point, colour in points.items()
            if not any(others.get((point[0] + dx, point[1] + dy)) == colour for dx, dy in around)]


def differences(picture, lines):
    """What is drawn and should not be, and what should be and is not; empty when the picture is right."""
    width, height, _ = picture
    actual, expected = ink_of(picture), draw(lines, width, height)
    return far_from(actual, expected) + far_from(expected, actual)
