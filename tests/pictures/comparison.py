"""Whether a picture of the screen surface shows what it should, up to one pixel along an edge.

Two pictures are alike when every pixel of each finds its colour in the other one, at its own place or at one of the
eight around it. So a line may run one pixel beside where it should, but one that is two pixels off, missing, broken or
of another colour is found, and so is one too many.

The surface smooths the edges of wide lines, half a pixel to either side. So in plots with wide lines a pixel may be a
mixture of two colours that meet within two pixels of its place in the other picture, and counts as the nearer one.
Everything else in such a plot is exact, as are all plots without wide lines.
"""
import functools
import itertools

import numpy

from picture import around, channels, joined

EDGE = 1  # pixels by which an edge may be off
SMOOTH_EDGE = 2  # pixels from an edge within which there are mixtures: half a pixel, rounded up, and what it may be off
ROUNDING = 2  # steps of a channel
NO_COLOUR = -1


def is_mixture(colour, one, other):
    """Whether a colour lies on the straight way from one to another."""
    way = other - one
    share = (colour - one) @ way / (way @ way)
    return 0 <= share <= 1 and (abs(one + share * way - colour) <= ROUNDING).all()


@functools.lru_cache(maxsize=None)
def counts_as(colour, others):
    """The one of the colours that a mixture of two of them stands for; any other colour stands for itself."""
    mixed, *parts = channels(numpy.array([colour, *sorted(others)]))
    pairs = [pair for pair in itertools.combinations(parts, 2) if is_mixture(mixed, *pair)]
    return joined(min(itertools.chain(*pairs), key=lambda part: ((mixed - part) ** 2).sum(), default=mixed))


def sharpened(surface, drawn, places):
    """The surface, with its mixtures at those places replaced by what they count as."""
    sharp = surface.copy()
    for y, x in numpy.argwhere(places):
        near = drawn[max(y - SMOOTH_EDGE, 0):y + SMOOTH_EDGE + 1, max(x - SMOOTH_EDGE, 0):x + SMOOTH_EDGE + 1]
        sharp[y, x] = counts_as(surface[y, x], frozenset(near.flat))
    return sharp


def is_found(one, other):
    """Where a colour of one picture is in the other, at its own place or beside it."""
    return numpy.any([one == moved for moved in around(other, EDGE, NO_COLOUR)], axis=0)


def differences(surface, drawn, smoothed=False):
    """Where one picture shows what the other does not; nowhere when they are alike."""
    if surface.shape != drawn.shape:
        raise ValueError("{1}x{0} pixels instead of {3}x{2}".format(*surface.shape, *drawn.shape))
    unequal = surface != drawn
    shown = sharpened(surface, drawn, unequal) if smoothed else surface
    return unequal & ~(is_found(shown, drawn) & is_found(drawn, shown))
