"""Whether two pictures of the same page show the same ink, whoever has drawn them.

Different programs put an edge half a pixel here or there, and smooth it or not. So only a pixel of one of the drawing's
own colours is held against the other picture, which must have one there, or near it, that is nearer to that colour than
to any other or to the paper.
"""

import numpy

from picture import channels

PAPER = 0xFFFFFF
EXACT = 8  # steps of a channel by which a pixel of a colour may be off


class Ink:
    """Where a picture has ink: for each colour of a drawing an array that is true where there is some.

    `pure` are the pixels of just that colour, `like` those that are nearer to it than to any other.
    """

    def __init__(self, picture, colours):
        inked = picture != PAPER
        shown, which = numpy.unique(picture[inked], return_inverse=True)
        steps = channels(shown)[:, None] - channels(numpy.array([PAPER, *colours]))
        nearest = (steps ** 2).sum(axis=2).argmin(axis=1)
        exact = abs(steps).max(axis=2) <= EXACT
        self.pure, self.like = {}, {}
        for number, colour in enumerate(colours, 1):
            self.pure[colour], self.like[colour] = numpy.zeros_like(inked), numpy.zeros_like(inked)
            self.pure[colour][inked] = ((nearest == number) & exact[:, number])[which]
            self.like[colour][inked] = (nearest == number)[which]

    def area(self):
        """The number of pixels of the drawing's own colours."""
        return sum(int(pixels.sum()) for pixels in self.pure.values())

    def bounds(self):
        """Left, top, right and bottom of all ink, in pixels; the right and bottom ones are inked."""
        rows, columns = numpy.nonzero(numpy.any(list(self.like.values()), axis=0))
        return int(columns.min()), int(rows.min()), int(columns.max()), int(rows.max())


def near(ink, reach):
    """The places that are at most that many pixels away from ink, on both axes."""
    wide = numpy.pad(ink, reach)
    height, width = ink.shape
    wide = numpy.any([wide[step:step + height] for step in range(2 * reach + 1)], axis=0)
    return numpy.any([wide[:, step:step + width] for step in range(2 * reach + 1)], axis=0)


def unmatched(one, other, reach):
    """How many pixels of one picture have none of their colour near them in the other."""
    count = 0
    for colour, pixels in one.pure.items():
        missing = [(0, max(size - other_size, 0)) for size, other_size in zip(pixels.shape, other.like[colour].shape)]
        there = near(numpy.pad(other.like[colour], missing), reach)
        count += int((pixels & ~there[:pixels.shape[0], :pixels.shape[1]]).sum())
    return count
