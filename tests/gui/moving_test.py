#!/usr/bin/env python3
"""Moving about in a drawing: wheel, keys and drags, judged by what the viewer shows for the rectangle that each means; see
suite.py."""
from suite import KELHPGL, expect_picture, is_picture, run_all, wait_for, zoom

STEP = 1.25
FREE = 4  # pixels that the viewer leaves free on each axis, half of them on the left and below


class Motion:
    """The rectangle of one motion, in pixels of the view before it."""

    def __init__(self, shape):
        height, width = shape
        self.window = width - FREE, height - FREE
        self.low = [0.0, 0.0]
        self.size = list(map(float, self.window))

    def zoom(self, factor, *at):
        for axis in 0, 1:
            size = self.size[axis] / factor
            self.low[axis] += (at[axis] - FREE / 2) / self.window[axis] * (self.size[axis] - size)
            self.size[axis] = size
        return self

    def move(self, *by):
        for axis in 0, 1:
            self.low[axis] -= by[axis] / self.window[axis] * self.size[axis]
        return self

    def options(self):
        low = [half_up(value) for value in self.low]
        return zoom(*low, *(half_up(low + size) for low, size in zip(self.low, self.size)))


def half_up(value):
    """As Qt rounds."""
    return int(value + 0.5) if value >= 0 else int(value - 0.5)


def motion(viewer):
    return Motion(viewer.picture().shape)


def key(desktop, *names):
    desktop.xdotool("key", "--delay", "30", *names)


def wheel(viewer, x, y, *buttons):
    """4 and 5 turn the wheel, 6 and 7 tilt it."""
    viewer.mouse(x, y, *(word for button in buttons for word in ("click", button)))


def the_wheel_zooms_at_the_cursor(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        wheel(viewer, 120, 300, 4)
        expect_picture(viewer, plot, *motion(viewer).zoom(STEP, 120, 301).options())
        key(desktop, "Home")
        expect_picture(viewer, plot)


def a_burst_is_one_view(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        wheel(viewer, 120, 300, 4, 4, 4)
        expect_picture(viewer, plot, *motion(viewer).zoom(STEP**3, 120, 301).options())
        key(desktop, "BackSpace")
        expect_picture(viewer, plot)
        key(desktop, "alt+Right")
        expect_picture(viewer, plot, *motion(viewer).zoom(STEP**3, 120, 301).options())
        key(desktop, "alt+Left")
        expect_picture(viewer, plot)


def zooming_out_ends_with_the_whole(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        wheel(viewer, 300, 100, 5, 5)
        expect_picture(viewer, plot)
        wheel(viewer, 300, 100, 4, 4)
        expect_picture(viewer, plot, *motion(viewer).zoom(STEP**2, 300, 101).options())
        wheel(viewer, 10, 10, 5, 5, 5)
        expect_picture(viewer, plot)


def a_hundred_steps_in_and_out(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        first = viewer.picture()
        for _ in range(10):
            viewer.mouse(222, 222, "click", "--repeat", 10, "--delay", 10, 4)
        wait_for("another picture", lambda: not is_picture(viewer.picture(), plot))
        for _ in range(10):
            viewer.mouse(210, 230, "click", "--repeat", 10, "--delay", 10, 5)
        expect_picture(viewer, plot)
        assert (viewer.picture() == first).all()


def keys_zoom_and_move(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        height, width = viewer.picture().shape
        middle = (width) / 2, (height) / 2
        right, up = half_up((width - FREE) / 10), half_up((height - FREE) / 10)
        rows = (
            (("plus", "plus"), motion(viewer).zoom(STEP**2, *middle)),
            (("equal", "Left"), motion(viewer).zoom(STEP, *middle).move(right, 0)),
            (("plus", "l", "l"), motion(viewer).zoom(STEP, *middle).move(-2 * right, 0)),
            (("KP_Add", "Up"), motion(viewer).zoom(STEP, *middle).move(0, -up)),
            (("plus", "j"), motion(viewer).zoom(STEP, *middle).move(0, up)),
            (("h", "k"), motion(viewer).move(right, -up)),
        )
        for keys, expected in rows:
            for whole in "ctrl+0", "F2":
                key(desktop, *keys)
                expect_picture(viewer, plot, *expected.options())
                key(desktop, whole)
                expect_picture(viewer, plot)


def drags_move(desktop, plot):
    def with_the_middle_button():
        viewer.mouse(200, 200, "mousedown", 2)
        viewer.mouse(230, 180)
        viewer.mouse(260, 150, "mouseup", 2)

    def with_space():
        desktop.xdotool("keydown", "space")
        viewer.start_drag(200, 200, 260, 150)
        viewer.release()
        desktop.xdotool("keyup", "space")

    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        for drag in with_the_middle_button, with_space:
            drag()
            expect_picture(viewer, plot, *motion(viewer).move(60, -50).options())
            drag()
            expect_picture(viewer, plot, *motion(viewer).move(60, -50).options(),
                           *motion(viewer).move(60, -50).options())
            key(desktop, "BackSpace")
            expect_picture(viewer, plot, *motion(viewer).move(60, -50).options())
            key(desktop, "BackSpace")
            expect_picture(viewer, plot)


def a_drag_shows_the_picture_under_the_hand(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        viewer.mouse(200, 200, "mousedown", 2)
        for x, y in (210, 210), (300, 120), (100, 290), (201, 199):
            viewer.mouse(x, y)
            expect_picture(viewer, plot, *motion(viewer).move(x - 200, y - 200).options())
        desktop.xdotool("mouseup", 2)


def shift_and_the_tilted_wheel_move_sideways(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        _, width = viewer.picture().shape
        for turn, by in (("shift", 4), 1), (("shift", 5), -1), ((None, 6), 1), ((None, 7), -1):
            held, button = turn
            if held:
                desktop.xdotool("keydown", held)
            wheel(viewer, 200, 200, button)
            if held:
                desktop.xdotool("keyup", held)
            expect_picture(viewer, plot, *motion(viewer).move(by * width / 10, 0).options())
            key(desktop, "Home")
            expect_picture(viewer, plot)


def it_moves_on_a_dense_screen(desktop, plot):
    with desktop.viewer(KELHPGL, plot, environment={"QT_SCALE_FACTOR": "2"}) as viewer:
        expect_picture(viewer, plot)
        wheel(viewer, 320, 600, 4, 4)
        expect_picture(viewer, plot, *motion(viewer).zoom(STEP**2, 320, 601).options())
        key(desktop, "Home")
        expect_picture(viewer, plot)


def it_moves_after_a_drag_and_another_size(desktop, plot):
    drag = zoom(100, 100, 380, 330)
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        viewer.drag(100, 100, 380, 330)
        expect_picture(viewer, plot, *drag)
        wheel(viewer, 120, 300, 4)
        expect_picture(viewer, plot, *drag, *motion(viewer).zoom(STEP, 120, 301).options())
        wheel(viewer, 120, 300, *[5] * 20)
        expect_picture(viewer, plot)
        viewer.resize(640, 410)
        expect_picture(viewer, plot)
        wheel(viewer, 320, 30, 4)
        expect_picture(viewer, plot, *motion(viewer).zoom(STEP, 320, 31).options())


def clicks_and_trembling_hands_zoom_nothing(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        viewer.drag(200, 200, 203, 197)
        viewer.drag(200, 200, 197, 203)
        key(desktop, "alt+Right")
        viewer.drag(200, 200, 206, 203)
        expect_picture(viewer, plot, *zoom(200, 200, 206, 203))


if __name__ == "__main__":
    run_all(the_wheel_zooms_at_the_cursor, a_burst_is_one_view, zooming_out_ends_with_the_whole, a_hundred_steps_in_and_out,
            keys_zoom_and_move, drags_move, a_drag_shows_the_picture_under_the_hand,
            shift_and_the_tilted_wheel_move_sideways, it_moves_on_a_dense_screen,
            it_moves_after_a_drag_and_another_size, clicks_and_trembling_hands_zoom_nothing)
