#!/usr/bin/env python3
"""The trace in a window; see suite.py."""
import numpy

from suite import KELHPGL, SCREEN, WHITE, expect_picture, run_all, wait_for

NAME = "dev_hp00.log"
BESIDE = {"KELGTRACE_WINX": "700"}  # the main window


def traced(desktop, plot, **settings):
    return desktop.viewer(KELHPGL, plot, folder=plot.parent, environment={**BESIDE, **settings})


def expect_place(window, x, y, width, height):
    """Of the frame, y being what is left free at the bottom; of the inside."""
    assert window.geometry()[2:] == (width, height), window.geometry()
    wait_for("its frame", lambda: window.frame()[3] > height)
    wait_for("its place", lambda: window.frame()[:2] == (x, SCREEN[1] - y - window.frame()[3]))


def inked_rows(picture):
    return numpy.flatnonzero((picture != WHITE).any(axis=1))


def has_place_and_size_of_the_settings(desktop, plot):
    with traced(desktop, plot, KELGTRACE="3", KELGTRACE_WINHT="220", KELGTRACE_WINWD="333", KELGTRACE_WINX="720",
                KELGTRACE_WINY="40") as viewer:
        expect_place(viewer.window(NAME), 720, 40, 333, 220)
        expect_picture(viewer, plot)


def is_800_pixels_wide_by_itself(desktop, plot):
    """Without a trace file, whose name it has all the same, and where no width is given or 0."""
    for settings in {}, {"KELGTRACE_WINWD": "0"}, {"KELGTRACE_WINWD": "0", "DGTRACE": "3"}:
        with traced(desktop, plot, KELGTRACE="1", KELGTRACE_WINHT="100", **settings) as viewer:
            expect_place(viewer.window(NAME), 700, 0, 800, 100)
            viewer.end()


def is_500_x_250_beside_a_trace_file(desktop, plot):
    with traced(desktop, plot, KELGTRACE="2", DGTRACE="1") as viewer:
        expect_place(viewer.window(NAME), 700, 0, 500, 250)
        expect_picture(viewer, plot)
        viewer.end()


def stands_on_the_screens_bottom_edge(desktop, plot):
    with traced(desktop, plot, KELGTRACE="2", KELGTRACE_WINHT="200", KELGTRACE_WINY="0") as viewer:
        window = viewer.window(NAME)
        expect_place(window, 700, 0, 800, 200)
        _, y, _, height = window.frame()
        assert y + height == SCREEN[1], (y, height)


def odd_sizes_do_no_harm(desktop, plot):
    """Less than nothing is no window, more than the screen as much as that; the drawing is there in any case."""
    for size, settings in (((), {"KELGTRACE_WINHT": "-5"}),
                           ((), {"KELGTRACE_WINHT": "100", "KELGTRACE_WINWD": "-7"}),
                           (SCREEN, {"KELGTRACE_WINHT": "40000", "KELGTRACE_WINWD": "60000"}),
                           ((), {"KELGTRACE_WINHT": "2147483647", "KELGTRACE_WINWD": "-2147483648",
                                 "KELGTRACE_WINX": "2147483647", "KELGTRACE_WINY": "-2147483648"})):
        with traced(desktop, plot, KELGTRACE="3", **settings) as viewer:
            if size:
                wait_for("its size", lambda size=size: [shown.geometry()[2:] == size for shown in viewer.windows(NAME)])
                viewer.window().activate()
            expect_picture(viewer, plot)
            assert len(viewer.windows(NAME)) == (1 if size else 0), settings
            assert len(viewer.end()) < 1000


def is_not_shown_without_a_height(desktop, plot):
    for settings in {"KELGTRACE_WINHT": "0"}, {}, {"KELGTRACE_WINHT": "0", "DGTRACE": "3"}:
        with traced(desktop, plot, KELGTRACE="3", **settings) as viewer:
            expect_picture(viewer, plot)
            assert len(desktop.stacking()) == 1, desktop.stacking()
            viewer.end()


def the_newest_line_is_at_the_bottom(desktop, plot):
    """At level 1, the start is a line and a click another."""
    with traced(desktop, plot, KELGTRACE="1", KELGTRACE_WINHT="200", KELGTRACE_WINWD="600") as viewer:
        expect_picture(viewer, plot)
        window = viewer.window(NAME)
        wait_for("the first line", lambda: len(inked_rows(window.picture())))
        before = window.picture()
        first = inked_rows(before)
        assert 200 - 20 < first[0] and first[-1] < 200, first
        line = before[first[0]:first[-1] + 1]
        assert (line == 0).any(), "no black text"
        viewer.mouse(200, 200, "click", 1)
        wait_for("the second line", lambda: inked_rows(window.picture())[0] < 200 - 20)
        after = window.picture()
        top = inked_rows(after)[0]
        assert numpy.array_equal(after[top:top + len(line)], line), "the first line has not gone up"
        assert first[0] - top <= 20 and inked_rows(after)[-1] > top + len(line), "no second line below"


def it_does_not_take_the_focus(desktop, plot):
    with traced(desktop, plot, KELGTRACE="3", KELGTRACE_WINHT="200") as viewer:
        viewer.window(NAME)
        wait_for("the main window's focus", viewer.window().is_active)


def closing_it_ends_the_viewer(desktop, plot):
    with traced(desktop, plot, KELGTRACE="3", KELGTRACE_WINHT="200") as viewer:
        expect_picture(viewer, plot)
        viewer.window(NAME).close_button()
        viewer.outcome(0)


def it_goes_with_the_main_window(desktop, plot):
    with traced(desktop, plot, KELGTRACE="3", KELGTRACE_WINHT="200") as viewer:
        expect_picture(viewer, plot)
        viewer.window().close_button()
        viewer.outcome(0)
    assert not desktop.stacking()


run_all(odd_sizes_do_no_harm, has_place_and_size_of_the_settings, is_800_pixels_wide_by_itself, is_500_x_250_beside_a_trace_file,
        stands_on_the_screens_bottom_edge, is_not_shown_without_a_height, the_newest_line_is_at_the_bottom,
        it_does_not_take_the_focus, closing_it_ends_the_viewer, it_goes_with_the_main_window)
