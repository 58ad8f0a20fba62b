"""Whether two pictures of the same page show the same ink, whoever has drawn them.

Different programs put an edge half a pixel here or there, and smooth it or not. So only a pixel of one of the drawing's
own colours is held against the other picture, which must have one there, or near it, that is nearer to that colour than
to any other or to the paper.
"""

PAPER = b"\xff\xff\xff"
EXACT = 8  # steps of a channel by which a pixel of a colour may be off


def distance(colour, other):
    return sum((a - b) ** 2 for a, b in zip(colour, other))


class Ink:
    """Where a picture has ink: for each colour of a drawing a row of bits a row of pixels, the leftmost bit lowest.

    `pure` are the pixels of just that colour, `like` those that are nearer to it than to any other.
    """

    def __init__(self, picture, colours):
        self.width, self.height = picture.width, picture.height
        self.pure = {colour: [0] * picture.height for colour in colours}
        self.like = {colour: [0] * picture.height for colour in colours}
        self.nearest = {}
        blank = PAPER * picture.width
        for y in range(picture.height):
            if picture.rows[y] != blank:
                self.add_row(y, picture.colours(y))

    def add_row(self, y, row):
        places = {}
        for x, colour in enumerate(row):
            if colour != PAPER:
                places[colour] = places.get(colour, 0) | 1 << x
        for colour, bits in places.items():
            nearest = self.nearest_to(colour)
            if nearest != PAPER:
                self.like[nearest][y] |= bits
                if all(abs(a - b) <= EXACT for a, b in zip(colour, nearest)):
                    self.pure[nearest][y] |= bits

    def nearest_to(self, colour):
        if colour not in self.nearest:
            self.nearest[colour] = min((PAPER, *self.like), key=lambda other: distance(colour, other))
        return self.nearest[colour]

    def area(self):
        """The number of pixels of the drawing's own colours."""
        return sum(row.bit_count() for rows in self.pure.values() for row in rows)

    def bounds(self):
        """Left, top, right and bottom of all ink, in pixels; the right and bottom ones are inked."""
        rows = [sum_of_bits(bits) for bits in zip(*self.like.values())]
        inked = [y for y, row in enumerate(rows) if row]
        everything = sum_of_bits(rows)
        return (everything & -everything).bit_length() - 1, inked[0], everything.bit_length() - 1, inked[-1]


def sum_of_bits(rows):
    total = 0
    for row in rows:
        total |= row
    return total


def widened(rows, reach):
    """The same bits, and those at most that many pixels away on both axes."""
    wide = [sum_of_bits([row << step for step in range(reach + 1)] + [row >> step for step in range(1, reach + 1)])
            for row in rows]
    return [sum_of_bits(wide[max(y - reach, 0):y + reach + 1]) for y in range(len(rows))]


def unmatched(one, other, reach):
    """How many pixels of one picture have none of their colour near them in the other."""
    count = 0
    for colour, rows in one.pure.items():
        near = widened(other.like[colour], reach)
        near += [0] * (len(rows) - len(near))
        count += sum((row & ~there).bit_count() for row, there in zip(rows, near))
    return count
