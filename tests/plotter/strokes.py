"""What a plain text draws: its lines and areas, in plotter units, as text to compare."""
import re


class Drawing:
    """Of plain text. factor: output units a plotter unit; coordinates are divided by it and rounded."""

    def __init__(self, plain, factor=1.0):
        self.lines, self.areas, self.pens, self.widths, self.colours = [], [], [], {}, {}
        self._factor = factor
        self._pen = 0
        at = None
        line = rings = None
        for name, numbers in re.findall(r"([A-Z]{2})([-0-9., ]*)", plain):
            values = [float(value) for value in numbers.replace(",", " ").split()]
            points = list(zip(values[0::2], values[1::2]))
            if name == "SP":
                self._pen = int(values[0])
            elif name == "PC":
                self.colours[int(values[0])] = tuple(int(value) for value in values[1:])
            elif name == "PW":
                self.widths[int(values[1])] = values[0] / factor
            elif name == "PM":
                if values[0] == 0:
                    rings = [[at]]
                elif values[0] == 1:
                    rings.append([])
            elif name == "FP":
                self.areas.append([[self._unit(point) for point in ring] for ring in rings])
                self.pens.append(self._pen)
                rings = None
            elif name in ("PU", "PD"):
                if rings is not None:
                    rings[-1] += points
                elif name == "PU":
                    line = None
                elif line is None:
                    line = [at] + points
                    self.lines.append(line)
                    self.pens.append(self._pen)
                else:
                    line += points
                if points:
                    at = points[-1]
        self.lines = [[self._unit(point) for point in line] for line in self.lines]

    def _unit(self, point):
        return tuple(whole(value / self._factor) for value in point)

    def points(self):
        return [point for part in self.lines + [ring for area in self.areas for ring in area] for point in part]


def whole(value):
    """Half away from zero."""
    return int(value + 0.5) if value >= 0 else -int(0.5 - value)


def text_of(line):
    kept = [point for i, point in enumerate(line) if i == 0 or point != line[i - 1]]
    return "-".join("%d,%d" % point for point in kept)


def lines_text(drawing):
    return " | ".join(text_of(line) for line in drawing.lines)


def ring_text(ring):
    """Whether a ring ends where it began says nothing about what is inside."""
    return text_of(ring[:-1] if len(ring) > 1 and ring[-1] == ring[0] else ring)


def areas_text(drawing):
    return " | ".join(" + ".join(ring_text(ring) for ring in area) for area in drawing.areas)
