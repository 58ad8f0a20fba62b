#!/usr/bin/env python3
"""Files that go through the plotter: their pages, what is said of them, waiting and giving up; see suite.py."""
import os
import signal
import subprocess
import time

import numpy

from suite import KELHPGL, TITLE, TURNABLE, WHITE, beside, expect_picture, run_all, wait_for, zoom
from host import channel_path, connect, listening, runtime_folder

PANEL = "Information"
DRAG = 100, 100, 380, 330
PAGES = "".join(f"PU0,0;PD4000,0,4000,3000,0,3000,0,0;SP{pen};PU{pen * 500},200;PD{pen * 900},2800;PG;" for pen in (1, 2, 3))
PLOTTED = f"IN;SP1;{PAGES}"
SCALED = f"IN;IP0,0,4000,3000;SC0,40,0,30;SP1;PU0,0;PD40,0,40,30,0,0;"
SLOW = "LB" + ("H" * 80 + "\r") * 40_000 + "\3;"  # which takes the plotter its time


def pages_in(plot, text=PLOTTED):
    return beside(plot, "pages.plt", text)


def page_window(viewer, page, pages=3):
    """The main window as soon as it says that this page is shown."""
    viewer.main = wait_for(f"page {page}", lambda: viewer.search(f"(^| \u2013 ){page} of {pages} \u2013 {TITLE}$"))[0]
    return viewer.main


def expect_page(viewer, plot, page, pages=3):
    page_window(viewer, page, pages)
    expect_picture(viewer, plot, "--plotted", "--page", str(page))


def strip_of(viewer):
    """First and last row of the strip in the window; None while there is none. No bar has its colour, nor the drawing."""
    shown = viewer.window().picture()
    if shown is None:
        return None
    rows = numpy.flatnonzero((shown[:, [2, -3]] == 0xFFFFDC).all(axis=1))
    return (rows[0], rows[-1]) if len(rows) else None


def wait_for_strip(viewer):
    return wait_for("the strip", lambda: strip_of(viewer))


def click_strip_away(viewer):
    top, bottom = wait_for_strip(viewer)
    viewer.window().click(250, (top + bottom) // 2)
    wait_for("the strip to go", lambda: not strip_of(viewer))


def opened(desktop, *arguments):
    """The last is a file; its folder holds what a session has."""
    return desktop.viewer(KELHPGL, *arguments, environment={"XDG_RUNTIME_DIR": str(runtime_folder(arguments[-1]))})


def press(viewer, *keys):
    wait_for("the focus", viewer.window().is_active)
    viewer.desktop.xdotool("key", *keys)


# ---- pages ----------------------------------------------------------------------------------------------------------


def keys_turn_the_pages(desktop, plot):
    """At the ends nothing happens."""
    pages = pages_in(plot)
    with opened(desktop, pages) as viewer:
        page_window(viewer, 1)
        click_strip_away(viewer)
        expect_page(viewer, pages, 1)
        for key, page in (("Next", 2), ("Next", 3), ("Next", 3), ("Prior", 2), ("Prior", 1), ("Prior", 1), ("Next", 2)):
            press(viewer, key)
            expect_page(viewer, pages, page)
        said = viewer.end()
    assert not said, said


def pages_may_be_passed_over(desktop, plot):
    pages = pages_in(plot)
    with opened(desktop, pages) as viewer:
        page_window(viewer, 1)
        press(viewer, "Next", "Next", "Next", "Prior", "Next")
        expect_page(viewer, pages, 3)
        press(viewer, "Prior", "Prior")
        expect_page(viewer, pages, 1)


def a_page_is_shown_whole(desktop, plot):
    pages = pages_in(plot)
    with opened(desktop, pages) as viewer:
        page_window(viewer, 1)
        expect_page(viewer, pages, 1)
        viewer.drag(*DRAG)
        expect_picture(viewer, pages, "--plotted", *zoom(*DRAG))
        press(viewer, "Next")
        expect_page(viewer, pages, 2)


def a_page_may_be_named(desktop, plot):
    pages = pages_in(plot)
    with opened(desktop, "--page", "2", pages) as viewer:
        expect_page(viewer, pages, 2)
        press(viewer, "Prior")
        expect_page(viewer, pages, 1)


def a_page_that_is_not_there_is_said(desktop, plot):
    """The last is shown instead."""
    pages = pages_in(plot)
    with opened(desktop, "--page", "4", pages) as viewer:
        window = page_window(viewer, 3)
        wait_for("the box", lambda: len(desktop.stacking()) == 2 and not window.is_active())
        desktop.xdotool("key", "Return")
        expect_page(viewer, pages, 3)
        assert "pages.plt has no page 4, the last is 3" in viewer.end()


def standard_input_has_pages(desktop, plot):
    pages = pages_in(plot)
    with subprocess.Popen(["cat", pages], stdout=subprocess.PIPE) as generator:
        with desktop.viewer(KELHPGL, stdin=generator.stdout) as viewer:
            page_window(viewer, 1)
            press(viewer, "Next")
            expect_page(viewer, pages, 2)


def another_picture_takes_their_place(desktop, plot):
    """Then there is nothing to turn any more."""
    pages = pages_in(plot)
    pipe = plot.with_name("pipe")
    os.mkfifo(pipe)
    with opened(desktop, pages, pipe) as viewer:
        page_window(viewer, 1)
        pipe.write_bytes(plot.read_bytes())
        viewer.main = None
        expect_picture(viewer, plot)
        press(viewer, "Next", "Prior", "Prior")
        expect_picture(viewer, plot)
        assert not viewer.search(f"1 of 3 \u2013 {TITLE}$")


def a_watched_file_keeps_its_page(desktop, plot):
    pages = pages_in(plot)
    with opened(desktop, "--watch", pages) as viewer:
        page_window(viewer, 1)
        press(viewer, "Next")
        expect_page(viewer, pages, 2)
        pages.write_text(PLOTTED.replace("200;PD", "900;PD"))
        expect_page(viewer, pages, 2)
        pages.write_text("IN;" + PAGES + PAGES)
        expect_page(viewer, pages, 2, 6)
        pages.write_text(plot.read_text())
        viewer.main = None
        expect_picture(viewer, plot)


# ---- what goes through the plotter ----------------------------------------------------------------------------------


def files_go_through_the_plotter(desktop, plot):
    scaled = beside(plot, "scaled.plt", SCALED)
    with opened(desktop, scaled) as viewer:
        expect_picture(viewer, scaled, "--plotted")
        said = viewer.end()
    assert not said, said


def as_it_is_a_file_does_not(desktop, plot):
    for text in PLOTTED, SCALED:
        other = beside(plot, "other.plt", text)
        with opened(desktop, "--as-is", other) as viewer:
            expect_picture(viewer, other)
            said = viewer.end()
        assert not said, said


def what_hosts_send_does_not(desktop, plot):
    with listening(desktop, KELHPGL, plot) as viewer, connect(channel_path(plot)) as host:
        for text in TURNABLE, SCALED, PLOTTED:
            host.show(text)
            expect_picture(viewer, beside(plot, "sent.plt", text))
        host.show(f"HPGL_FILE:{beside(plot, 'named.plt', SCALED)}\n")
        expect_picture(viewer, beside(plot, "sent.plt", SCALED))


def a_file_of_another_kind_is_named(desktop, plot):
    script = beside(plot, "script.plt", "%!PS-Adobe-3.0\n0 0 moveto PU0,0;PD100,100; 100 100 lineto stroke showpage\n")
    with opened(desktop, script) as viewer:
        window = viewer.window()
        wait_for("the box", lambda: len(desktop.stacking()) == 2 and not window.is_active())
        desktop.xdotool("key", "Return")
        expect_picture(viewer, beside(plot, "empty.plt"))
        said = viewer.end()
    assert said.startswith("kelhpgl: ") and "script.plt holds no HP-GL drawing (PostScript" in said, said


# ---- what is said ---------------------------------------------------------------------------------------------------


def the_strip_takes_nothing_away(desktop, plot):
    """It lies over the drawing, whose size stays; the keyboard stays with the drawing, and it goes by itself."""
    pages = pages_in(plot)
    with opened(desktop, pages) as viewer:
        window = page_window(viewer, 1)
        top, bottom = wait_for_strip(viewer)
        began = time.monotonic()
        assert window.geometry()[2:] == (500, 500) and bottom - top < 60, (window.geometry(), top, bottom)
        wait_for("the focus", window.is_active)
        wait_for("the strip to go", lambda: not strip_of(viewer))
        assert time.monotonic() - began > 4, "nobody can have read it"
        expect_page(viewer, pages, 1)


def an_empty_drawing_is_said(desktop, plot):
    empty = beside(plot, "moves.plt", "IN;SP1;PU0,0;PA100,100;PU200,300.5;")
    with opened(desktop, empty) as viewer:
        wait_for_strip(viewer)
        click_strip_away(viewer)
        expect_picture(viewer, beside(plot, "empty.plt"))
        said = viewer.end()
    assert said.endswith("moves.plt: this drawing is empty\n") and said.count("\n") == 1, said


def a_file_that_breaks_off_is_said(desktop, plot):
    broken = beside(plot, "broken.plt", "IN;SP1;PU0,0;PD1000.5,1000;PM0;PD500,20,30,700;")
    with opened(desktop, broken) as viewer:
        wait_for_strip(viewer)
        said = viewer.end()
    assert said.endswith("broken.plt: incomplete: the file ends inside a polygon\n"), said


# ---- waiting --------------------------------------------------------------------------------------------------------


def large(plot):
    return beside(plot, "large.plt", "IN;SP1;PU0,0;" + SLOW * 4)


def press_button(panel):
    _, _, width, height = panel.geometry()
    panel.click(width - 40, height - 20)


def the_window_lives_while_a_file_is_plotted(desktop, plot):
    with opened(desktop, plot, large(plot)) as viewer:
        expect_picture(viewer, plot)
        desktop.xdotool("windowmove", viewer.window(PANEL).number, 1000, 800)  # from above the drawing
        viewer.resize(640, 420)
        expect_picture(viewer, plot)
        assert viewer.windows(PANEL)


def plotting_can_be_given_up(desktop, plot):
    """The picture stays, and the next is shown."""
    scaled = beside(plot, "scaled.plt", SCALED)
    with opened(desktop, plot, large(plot), scaled) as viewer:
        expect_picture(viewer, plot)
        panel = viewer.window(PANEL)
        time.sleep(0.5)  # until it has been read
        began = time.monotonic()
        press_button(panel)
        expect_picture(viewer, scaled, "--plotted")
        assert time.monotonic() - began < 15, time.monotonic() - began
        viewer.end()


def a_page_can_be_given_up(desktop, plot):
    """The one before it stays, and can be turned."""
    pages = beside(plot, "pages.plt", "IN;SP1;PU0,0;PD4000,3000;PG;" + "PU0,0;" + SLOW + "PG;PU0,0;PD3000,4000;")
    with opened(desktop, pages) as viewer:
        page_window(viewer, 1)
        wait_for("the panel to go", lambda: not viewer.windows(PANEL))
        click_strip_away(viewer)
        press(viewer, "Next")
        press_button(viewer.window(PANEL))
        wait_for("the panel to go", lambda: not viewer.windows(PANEL))
        page_window(viewer, 1)
        shown = viewer.window().picture()
        press(viewer, "Next", "Next")
        page_window(viewer, 3)
        assert not numpy.array_equal(viewer.window().picture(), shown)
        viewer.end()


def the_viewer_may_end_meanwhile(desktop, plot):
    with opened(desktop, large(plot)) as viewer:
        viewer.window(PANEL)
        began = time.monotonic()
        viewer.process.send_signal(signal.SIGTERM)
        viewer.outcome(0)
        assert time.monotonic() - began < 10, time.monotonic() - began


run_all(keys_turn_the_pages, pages_may_be_passed_over, a_page_is_shown_whole, a_page_may_be_named,
        a_page_that_is_not_there_is_said, standard_input_has_pages, another_picture_takes_their_place,
        a_watched_file_keeps_its_page, files_go_through_the_plotter, as_it_is_a_file_does_not,
        what_hosts_send_does_not, a_file_of_another_kind_is_named, the_strip_takes_nothing_away,
        an_empty_drawing_is_said, a_file_that_breaks_off_is_said, the_window_lives_while_a_file_is_plotted,
        plotting_can_be_given_up, a_page_can_be_given_up, the_viewer_may_end_meanwhile)
