"""Whether a picture of the screen surface shows what it should, up to one pixel along an edge.

Two pictures are alike when every pixel of each finds its colour in the other one, at its own place or at one of the
eight around it. So a line may run one pixel beside where it should, but one that is two pixels off, missing, broken or
of another colour is found, and so is one too many.

The surface smooths the edges of wide lines, half a pixel to either side. So in plots with wide lines a pixel may be a
mixture of two colours that meet within two pixels of its place in the other picture, and counts as the nearer one.
Everything else in such a plot is exact, as are all plots without wide lines.
"""
import itertools

EDGE = 1  # pixels by which an edge may be off
SMOOTH_EDGE = 2  # pixels from an edge within which there are mixtures: half a pixel, rounded up, and what it may be off
ROUNDING = 2  # steps of a channel


def unequal_places(one, other):
    """Where two pictures of the same size differ."""
    for y, (left, right) in enumerate(zip(one.rows, other.rows)):
        if left != right:
            for x, (a, b) in enumerate(zip(one.colours(y), other.colours(y))):
                if a != b:
                    yield x, y


def distance(colour, other):
    return sum((a - b) ** 2 for a, b in zip(colour, other))


def is_mixture(colour, one, other):
    """Whether a colour lies on the straight way from one to another."""
    share = sum((c - a) * (b - a) for c, a, b in zip(colour, one, other)) / distance(one, other)
    return 0 <= share <= 1 and all(abs(a + share * (b - a) - c) <= ROUNDING for c, a, b in zip(colour, one, other))


def counts_as(colour, others):
    """The one of the colours that a mixture of two of them stands for; any other colour stands for itself."""
    pairs = [pair for pair in itertools.combinations(sorted(others), 2) if is_mixture(colour, *pair)]
    return min(itertools.chain(*pairs), key=lambda other: distance(colour, other), default=colour)


def differences(surface, drawn, smoothed=False):
    """The places at which one picture shows what the other does not; empty when they are alike."""
    if (surface.width, surface.height) != (drawn.width, drawn.height):
        raise ValueError(f"{surface.width}x{surface.height} pixels instead of {drawn.width}x{drawn.height}")
    places = list(unequal_places(surface, drawn))
    shown = {place: surface.pixel(*place) for place in places}
    if smoothed:
        for place, colour in shown.items():
            shown[place] = counts_as(colour, drawn.colours_around(*place, SMOOTH_EDGE))
    return [place for place in places
            if shown[place] not in drawn.colours_around(*place, EDGE) or
            drawn.pixel(*place) not in (shown.get(other, drawn.pixel(*other)) for other in drawn.around(*place, EDGE))]
