#!/usr/bin/env python3
"""Zooming with the mouse: the rectangle that is dragged, what it leaves, and what breaks it off; see suite.py."""
import os

from suite import KELHPGL, TURNABLE, beside, expect_picture, is_picture, run_all, wait_for, zoom

DRAG = 100, 100, 380, 330
NEXT = "IN;PC1,200,0,100;SP1;PU-500,-300;PD700,900,700,-300;PC2,0,90,255;SP2;PD-500,900;"


def dragging_zooms(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        viewer.drag(*DRAG)
        expect_picture(viewer, plot, *zoom(*DRAG))
        viewer.drag(400, 390, 60, 50)
        expect_picture(viewer, plot, *zoom(*DRAG), *zoom(400, 390, 60, 50))
        assert not is_picture(viewer.picture(), plot), "no zoom to be seen"


def dragging_zooms_on_a_dense_screen(desktop, plot):
    with desktop.viewer(KELHPGL, plot, environment={"QT_SCALE_FACTOR": "2"}) as viewer:
        expect_picture(viewer, plot)
        for drag in (201, 199, 702, 650), (31, 501, 444, 43):
            viewer.start_drag(*drag)
            viewer.release()
        expect_picture(viewer, plot, *zoom(201, 199, 702, 650), *zoom(31, 501, 444, 43))


def the_rectangle_is_seen_while_it_is_dragged(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        for x, y in (100, 50), (300, 350), (20, 400), (390, 30):  # to all four sides
            viewer.start_drag(200, 200, x, y)
            expect_picture(viewer, plot, band=(200, 200, x, y))
            viewer.mouse(x + 5, y - 7)
            expect_picture(viewer, plot, band=(200, 200, x + 5, y - 7))
            viewer.mouse(200, 200)
            expect_picture(viewer, plot)
            viewer.release()


def rectangles_without_an_area_change_nothing(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        viewer.drag(200, 200, 200, 200)
        viewer.drag(300, 100, 300, 160)
        viewer.drag(30, 110, 160, 110)
        viewer.mouse(222, 111, "click", 1)
        viewer.mouse(60, 300, "click", "--repeat", 2, "--delay", 10, 1)
        viewer.drag(*DRAG)
        expect_picture(viewer, plot, *zoom(*DRAG))


def rectangles_that_hold_no_unit_change_nothing(desktop, plot):
    """Zoomed in so far that two pixels are less than a unit."""
    deep = zoom(200, 200, 210, 210) + zoom(200, 200, 210, 210)
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        viewer.drag(200, 200, 210, 210)
        viewer.drag(200, 200, 210, 210)
        expect_picture(viewer, plot, *deep)
        viewer.drag(300, 300, 301, 302)
        expect_picture(viewer, plot, *deep)
        viewer.drag(*DRAG)
        expect_picture(viewer, plot, *deep, *zoom(*DRAG))


def a_double_click_leaves_no_rectangle(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        viewer.mouse(200, 200, "click", 1, "mousedown", 1)
        viewer.mouse(320, 310)
        expect_picture(viewer, plot, band=(200, 200, 320, 310))
        viewer.mouse(200, 200)
        viewer.release()
        expect_picture(viewer, plot)


def expect_broken_off(viewer, plot, break_off):
    """No rectangle is left of a drag that something breaks off, its release does nothing, and the next drag zooms."""
    viewer.start_drag(*DRAG)
    expect_picture(viewer, plot, band=DRAG)
    break_off()
    expect_picture(viewer, plot)
    viewer.mouse(50, 60)
    viewer.release()
    viewer.mouse(70, 50)
    viewer.drag(310, 90, 60, 320)
    expect_picture(viewer, plot, *zoom(310, 90, 60, 320))


def escape_breaks_a_drag_off(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        wait_for("the focus", viewer.window().is_active)
        expect_broken_off(viewer, plot, lambda: desktop.xdotool("key", "Escape"))


def a_second_button_breaks_a_drag_off(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        expect_broken_off(viewer, plot, lambda: desktop.xdotool("click", 3))


def the_loss_of_the_focus_breaks_a_drag_off(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as other:
        expect_picture(other, plot)
        with desktop.viewer(KELHPGL, plot) as viewer:
            expect_picture(viewer, plot)
            wait_for("the focus", viewer.window().is_active)
            desktop.xdotool("windowmove", other.window().number, 900, 300)

            def lose_the_focus():
                other.window().activate()
                wait_for("the other's focus", other.window().is_active)
            expect_broken_off(viewer, plot, lose_the_focus)


def the_rectangle_ends_at_the_edge(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        height, width = viewer.picture().shape
        for outside, edge in ((640, -45), (width - 1, 0)), ((-20, height + 70), (0, height - 1)):
            viewer.start_drag(250, 200, *outside)
            expect_picture(viewer, plot, band=(250, 200, *edge))
            viewer.release()
            expect_picture(viewer, plot, *zoom(250, 200, *edge))
            desktop.xdotool("key", "Home")
            expect_picture(viewer, plot)


def a_repaint_leaves_the_rectangle(desktop, plot):
    """Another window comes in front and goes; then the window itself takes another size."""
    with desktop.viewer(KELHPGL, plot) as other:
        expect_picture(other, plot)
        with desktop.viewer(KELHPGL, plot) as viewer:
            expect_picture(viewer, plot)
            wait_for("the focus", viewer.window().is_active)
            desktop.xdotool("windowmove", other.window().number, 150, 150)
            viewer.start_drag(*DRAG)
            expect_picture(viewer, plot, band=DRAG)
            desktop.xdotool("windowraise", other.window().number)
            wait_for("the other in front", lambda: desktop.stacking()[-1] == int(other.window().number))
            desktop.xdotool("windowmove", other.window().number, 1000, 600)
            expect_picture(viewer, plot, band=DRAG)
            viewer.resize(600, 440)
            expect_picture(viewer, plot, band=DRAG)
            viewer.mouse(300, 310)
            expect_picture(viewer, plot, band=(100, 100, 300, 310))
            viewer.release()
            expect_picture(viewer, plot, *zoom(100, 100, 300, 310))


def resizing_keeps_the_view(desktop, plot):
    """The same rectangle in units, in drawings in which a pixel of the whole picture is 8, 5 and 7.5 of them."""
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        viewer.resize(504, 504)
        expect_picture(viewer, plot)
        viewer.drag(80, 110, 320, 290)
        expect_picture(viewer, plot, *zoom(80, 110, 320, 290))
        viewer.resize(804, 804)
        expect_picture(viewer, plot, *zoom(128, 176, 512, 464))
        viewer.resize(904, 404)
        expect_picture(viewer, plot, *zoom(452, -16, 708, 176))
        viewer.resize(504, 504)
        expect_picture(viewer, plot, *zoom(80, 110, 320, 290))


def the_next_picture_is_shown_whole(desktop, plot):
    """In its own colours and extents, whatever the view of the one before."""
    second = beside(plot, "second.plt", NEXT)
    pipe = plot.with_name("pipe")
    os.mkfifo(pipe)
    with desktop.viewer(KELHPGL, "--as-is", plot, pipe) as viewer:
        expect_picture(viewer, plot)
        viewer.drag(*DRAG)
        expect_picture(viewer, plot, *zoom(*DRAG))
        pipe.write_bytes(second.read_bytes())
        expect_picture(viewer, second)
        viewer.drag(*DRAG)
        expect_picture(viewer, second, *zoom(*DRAG))


def another_view_breaks_a_drag_off(desktop, plot):
    """Rotation makes a new picture, whose whole is the first view."""
    plot.write_text(TURNABLE)
    with desktop.viewer(KELHPGL, "--as-is", plot) as viewer:
        expect_picture(viewer, plot)
        wait_for("the focus", viewer.window().is_active)
        viewer.start_drag(*DRAG)
        expect_picture(viewer, plot, band=DRAG)
        desktop.xdotool("key", "ctrl+r")
        expect_picture(viewer, plot, "--rotate", "1")
        viewer.release()
        viewer.mouse(200, 200)
        desktop.xdotool("key", "ctrl+r")
        expect_picture(viewer, plot)


def another_picture_breaks_a_drag_off(desktop, plot):
    second = beside(plot, "second.plt", NEXT)
    pipe = plot.with_name("pipe")
    os.mkfifo(pipe)
    with desktop.viewer(KELHPGL, "--as-is", plot, pipe) as viewer:
        expect_picture(viewer, plot)
        viewer.start_drag(*DRAG)
        expect_picture(viewer, plot, band=DRAG)
        pipe.write_bytes(second.read_bytes())
        expect_picture(viewer, second)
        viewer.release()
        viewer.drag(50, 60, 200, 220)
        expect_picture(viewer, second, *zoom(50, 60, 200, 220))


def a_menu_breaks_a_drag_off(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        wait_for("the focus", viewer.window().is_active)

        def look_into_a_menu():
            desktop.xdotool("key", "alt+s")
            wait_for("the menu", viewer.popups)
            viewer.release()
            desktop.xdotool("key", "Escape")
            wait_for("the menu to go", lambda: not viewer.popups())
        expect_broken_off(viewer, plot, look_into_a_menu)


run_all(dragging_zooms, dragging_zooms_on_a_dense_screen, the_rectangle_is_seen_while_it_is_dragged,
        rectangles_without_an_area_change_nothing, rectangles_that_hold_no_unit_change_nothing,
        a_double_click_leaves_no_rectangle, escape_breaks_a_drag_off, a_second_button_breaks_a_drag_off,
        the_loss_of_the_focus_breaks_a_drag_off, the_rectangle_ends_at_the_edge, a_repaint_leaves_the_rectangle,
        resizing_keeps_the_view, the_next_picture_is_shown_whole, another_view_breaks_a_drag_off,
        another_picture_breaks_a_drag_off, a_menu_breaks_a_drag_off)
