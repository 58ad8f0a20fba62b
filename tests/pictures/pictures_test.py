#!/usr/bin/env python3
"""The means of comparing pictures, held against pictures written by hand and against mistakes that must be found."""
import io
import unittest

import numpy
import PIL.Image

import picture
from comparison import differences
from drawing import drawn
from ink import Ink, unmatched

INK = {".": 0xFFFFFF, "#": 0, "b": 0x0000FF, "+": 0x808080}
PALETTE = ["palette 0 255 255 255", "palette 1 0 0 0", "palette 2 0 0 255", "OUTlinecolour 1", "OUTfillcolour 1"]
LETTERS = {colour: letter for letter, colour in INK.items()}


def calls(*lines):
    return PALETTE + list(lines)


def picture_of(*rows):
    return numpy.array([[INK[letter] for letter in row] for row in rows])


def rows_of(shown):
    return ["".join(LETTERS[colour] for colour in row) for row in shown]


class Drawing(unittest.TestCase):
    def expect(self, lines, *rows):
        self.assertEqual(rows_of(drawn(calls(*lines), len(rows[0]), len(rows))), list(rows))

    def test_thin_lines_in_every_direction(self):
        self.expect(["OUTline 0 0 3 0"], "....", "####")
        self.expect(["OUTline 1 1 1 0"], ".#..", ".#..")
        self.expect(["OUTline 2 1 2 1"], "..#.", "....")
        self.expect(["OUTline 0 2 2 0", "OUTlinecolour 2", "OUTline 3 0 5 2"], "#....b", ".#..b.", "..#b..")
        self.expect(["OUTline 5 1 0 0"], "...###", "###...")
        for ends in "0 0 4 2", "4 2 0 0":
            self.expect([f"OUTline {ends}"], "...##", ".##..", "#....")
        for ends in "0 2 4 0", "4 0 0 2":
            self.expect([f"OUTline {ends}"], "#....", ".##..", "...##")

    def test_what_is_outside_is_left_out(self):
        for far in 1000000000, 2147483647:
            self.expect([f"OUTline {-far} {-far} {far} {far}"], "..#", ".#.", "#..")
        self.expect(["OUTboxr1 -5 1 1000000000 1000000000"], "###", "...")
        self.expect(["OUTgeomline 2 2 -9 -9 -9 -9"], "...", "...")

    def test_wide_lines(self):
        self.expect(["OUTgeomline 3 1 2 2"], ".....", ".###.", ".###.", ".###.", ".....")
        self.expect(["OUTgeomline 4 1 2 2"], "..#..", ".###.", "#####", ".###.", "..#..")
        self.expect(["OUTgeomline 3 2 2 2 4 2"], ".......", ".#####.", ".#####.", ".#####.", ".......")
        self.expect(["OUTgeomline 2 3 1 1 3 1 3 3"], "...#.", "..###", ".####", "#####", ".###.")

    def test_narrow_outlines_are_thin(self):
        self.expect(["OUTgeomline 1 3 0 0 2 0 2 2"], "..#", "..#", "###")
        self.expect(["OUTgeomline 0 1 1 1"], "...", ".#.", "...")
        self.expect(["OUTgeomline 0 0"], "...", "...")

    def test_boxes(self):
        self.expect(["OUTboxr0 1 0 3 2"], ".####", ".#..#", ".####")
        self.expect(["OUTboxr1 1 0 3 2"], ".....", ".###.", ".###.")
        self.expect(["OUTboxr1 4 2 -3 -2"], ".....", ".###.", ".###.")

    def test_polygons_have_holes(self):
        self.expect(["OUTwinsolidpolygons 2 5 5 0 0 6 0 6 4 0 4 0 0 2 1 4 1 4 3 2 3 2 1"],
                    "######.", "##..##.", "##..##.", "######.")

    def test_an_unknown_call_is_no_drawing(self):
        with self.assertRaises(AttributeError):
            drawn(calls("OUTchars_len 1 1 1 41"), 4, 4)


class Comparison(unittest.TestCase):
    PLACE = calls("OUTline 2 10 20 14", "OUTlinecolour 2", "OUTgeomline 3 2 4 20 25 30")

    def show(self, lines):
        return drawn(lines, 40, 40)

    def changed(self, old, new):
        return self.show([new if line == old else line for line in self.PLACE])

    def alike(self, other, smoothed=False):
        return not differences(other, self.show(self.PLACE), smoothed).any()

    def test_one_pixel_beside_passes(self):
        for line in ("OUTline 2 11 20 15", "OUTline 3 10 21 14", "OUTline 1 9 19 13", "OUTline 2 10 20 15"):
            self.assertTrue(self.alike(self.changed("OUTline 2 10 20 14", line)), line)
        self.assertTrue(self.alike(self.changed("OUTgeomline 3 2 4 20 25 30", "OUTgeomline 3 2 5 19 26 29")))

    def test_two_pixels_beside_is_found(self):
        for line in ("OUTline 2 12 20 16", "OUTline 2 8 20 12", "OUTline 4 10 22 14", "OUTline 2 10 20 16"):
            self.assertFalse(self.alike(self.changed("OUTline 2 10 20 14", line)), line)
        for smoothed in (False, True):
            for line in ("OUTgeomline 3 2 4 22 25 32", "OUTgeomline 3 2 6 20 27 30", "OUTgeomline 7 2 4 20 25 30"):
                self.assertFalse(self.alike(self.changed("OUTgeomline 3 2 4 20 25 30", line), smoothed), line)

    def test_missing_and_surplus_lines_are_found(self):
        for line in self.PLACE[-1], self.PLACE[5]:
            self.assertFalse(self.alike(self.changed(line, "OUTfillcolour 2")))
            self.assertFalse(self.alike(self.changed(line, "OUTfillcolour 2"), smoothed=True))
        self.assertFalse(self.alike(self.show(self.PLACE + ["OUTline 35 5 35 5"])))
        self.assertFalse(self.alike(self.show(self.PLACE + ["OUTline 35 5 35 5"]), smoothed=True))

    def test_a_wrong_colour_is_found(self):
        for smoothed in (False, True):
            self.assertFalse(self.alike(self.changed("OUTlinecolour 2", "OUTlinecolour 1"), smoothed))
            self.assertFalse(self.alike(self.changed("palette 2 0 0 255", "palette 2 0 0 128"), smoothed))

    def test_a_gap_of_three_pixels_is_found(self):
        line, gap = picture_of(".......", "#######", "......."), picture_of(".......", "##...##", ".......")
        for one, other in (gap, line), (line, gap):
            self.assertEqual(numpy.argwhere(differences(one, other)).tolist(), [[1, 3]])

    def test_a_mixture_is_found_unless_it_is_of_a_smooth_edge(self):
        sharp = picture_of("#####....", "#####....", "#####....", "#####....")
        for rows in (("#####+...",) * 4, ("####+....",) * 4, ("####++...",) * 4):
            self.assertTrue(differences(picture_of(*rows), sharp).any(), rows)
            self.assertFalse(differences(picture_of(*rows), sharp, smoothed=True).any(), rows)
        for rows in (("#####..+.",) * 4, ("#+###....",) * 4, ("##++++...",) * 4, ("#####b...",) * 4):
            self.assertTrue(differences(picture_of(*rows), sharp, smoothed=True).any(), rows)

    def test_another_size_is_no_picture_of_it(self):
        with self.assertRaises(ValueError):
            differences(picture_of("..."), picture_of(".."))


class TheSameInk(unittest.TestCase):
    def unmatched(self, one, other, reach=1):
        inks = [Ink(picture_of(*rows), (INK["#"], INK["b"])) for rows in (one, other)]
        return unmatched(*inks, reach), unmatched(*reversed(inks), reach)

    def test_beside_it_is_the_same(self):
        self.assertEqual(self.unmatched(["#....", "..b.."], [".#...", "..b.."]), (0, 0))
        self.assertEqual(self.unmatched(["#....", "....."], [".....", ".#..."]), (0, 0))

    def test_farther_off_it_is_not(self):
        self.assertEqual(self.unmatched(["#...."], ["..#.."]), (1, 1))
        self.assertEqual(self.unmatched(["#...."], ["..#.."], reach=2), (0, 0))

    def test_what_is_missing_or_too_much_is_found(self):
        self.assertEqual(self.unmatched(["##..b"], ["##..."]), (1, 0))
        self.assertEqual(self.unmatched(["....."], ["#.#.#"]), (0, 3))

    def test_another_colour_is_found(self):
        self.assertEqual(self.unmatched(["##..."], ["bb..."]), (2, 2))

    def test_a_mixture_is_matched_but_asks_for_nothing(self):
        self.assertEqual(self.unmatched(["+...."], ["....."]), (0, 0))

    def test_bounds_and_area(self):
        ink = Ink(picture_of(".....", ".#.b.", "..#.."), (INK["#"], INK["b"]))
        self.assertEqual((ink.bounds(), ink.area()), ((1, 1, 3, 2), 3))

    def test_pictures_of_other_sizes(self):
        self.assertEqual(self.unmatched(["#....", ".....", "....#"], ["#....", "....."]), (1, 0))


class Files(unittest.TestCase):
    SHOWN = picture_of("..##b", "..##b", "+####", ".....")

    def image(self, mode):
        return PIL.Image.fromarray(picture.channels(self.SHOWN).astype(numpy.uint8)).convert(mode)

    def read(self, write):
        data = io.BytesIO()
        write(data)
        data.seek(0)
        return rows_of(picture.read(data))

    def test_what_is_written_is_read(self):
        self.assertEqual(self.read(lambda data: picture.write(data, self.SHOWN)), rows_of(self.SHOWN))

    def test_what_others_write_is_read(self):
        for kind in "png", "ppm":
            self.assertEqual(self.read(lambda data, kind=kind: self.image("RGB").save(data, kind)), rows_of(self.SHOWN))

    def test_another_kind_of_png_is_refused(self):
        for mode in "RGBA", "L", "1":
            with self.assertRaises(ValueError):
                self.read(lambda data, mode=mode: self.image(mode).save(data, "png"))

    def test_too_many_colours_are_not_written(self):
        with self.assertRaises(ValueError):
            picture.write(io.BytesIO(), numpy.arange(257)[None])


if __name__ == "__main__":
    unittest.main()
