#!/usr/bin/env python3
"""The print set-up, and the files that come of it; see suite.py."""
import contextlib
import os
import subprocess
import xml.etree.ElementTree

from suite import KELHPGL, PLOT, beside, expect_picture, run_all, wait_for, zoom

PANEL = "Print"  # the title of all its windows
LABEL = "Gear wheel"
BLUE = 0x0000FF  # pen 2
DRAG = 100, 100, 380, 330
NO_PRINTER = {"CUPS_SERVER": "/nowhere"}  # so that a file is offered first, whatever machine this is


@contextlib.contextmanager
def opened(desktop, plot):
    """The viewer with a plot that has a label; relative names count from the plot's folder."""
    plot.write_text(f"{PLOT}SP1;PU100,1400;LB{LABEL}\x03")
    environment = {**NO_PRINTER, "HOME": str(plot.parent)}
    with desktop.viewer(KELHPGL, "--as-is", plot, environment=environment) as viewer:
        wait_for("the focus", viewer.window().is_active)
        yield viewer


def open_panel(viewer):
    wait_for("the focus", viewer.window().is_active)
    viewer.desktop.xdotool("key", "ctrl+p")
    panel = viewer.window(PANEL)
    wait_for("the panel's focus", panel.is_active)
    return panel


def wait_until_closed(viewer):
    wait_for("the panel to go", lambda: not viewer.windows(PANEL))
    wait_for("the focus", viewer.window().is_active)


def box_of(viewer, panel):
    """The window that the panel has opened."""
    box = wait_for("the box", lambda: [window for window in viewer.windows(PANEL) if window.number != panel.number])[0]
    wait_for("the box's focus", box.is_active)
    return box


def name_file(desktop, name):
    desktop.xdotool("key", "alt+n", "ctrl+a")
    desktop.xdotool("type", str(name))


def print_to(viewer, name, *keys):
    """A name whose ending chooses the format; then keys."""
    panel = open_panel(viewer)
    name_file(viewer.desktop, name)
    viewer.desktop.xdotool("key", *keys, "Return")
    wait_until_closed(viewer)
    return panel


def written(file):
    """A file comes under its name when it is whole."""
    wait_for(f"the file {file.name}", file.exists)
    return file


def output(*command):
    return subprocess.run(list(map(str, command)), check=True, capture_output=True, text=True).stdout


def drawn(pdf):
    """As a PPM image of 50 dots per inch."""
    return subprocess.run(["pdftoppm", "-r", "50", str(pdf)], check=True, capture_output=True).stdout


def pixels(file):
    """Width and height; the image is read to its end."""
    return tuple(map(int, output("identify", "-regard-warnings", "-format", "%w %h", file).split()))


def every_way_closes_it(desktop, plot):
    """As often as one likes, and no file comes of it. How it is opened, the menus' test tries."""
    def escape(_):
        desktop.xdotool("key", "Escape")

    def cancel(_):
        desktop.xdotool("key", "alt+c")

    def close(panel):
        panel.close_button()

    with opened(desktop, plot) as viewer:
        for close_it in (escape, cancel, close) * 2:
            close_it(open_panel(viewer))
            wait_until_closed(viewer)
        viewer.end()
    assert list(plot.parent.iterdir()) == [plot]


def a_file_is_written_beside_the_plot(desktop, plot):
    with opened(desktop, plot) as viewer:
        open_panel(viewer)
        desktop.xdotool("key", "Return")
        pdf = written(plot.with_suffix(".pdf"))
        wait_until_closed(viewer)
        viewer.end()
    assert LABEL in output("pdftotext", pdf, "-")
    assert drawn(pdf).startswith(b"P6\n585 414\n")


def the_name_chooses_the_format(desktop, plot):
    with opened(desktop, plot) as viewer:
        for name in "a.pdf", "b.svg", "c.PNG", "d":  # the last stays with the format before
            print_to(viewer, name)
        first, second, third, fourth = (written(plot.with_name(name)) for name in ("a.pdf", "b.svg", "c.PNG", "d.png"))
        viewer.end()
    assert LABEL in output("pdftotext", first, "-")
    root = xml.etree.ElementTree.parse(second).getroot()
    assert root.tag.endswith("}svg") and LABEL in "".join(root.itertext())
    assert pixels(third) == pixels(fourth) == (3508, 2480)


def paper_and_resolution_are_chosen(desktop, plot):
    with opened(desktop, plot) as viewer:
        print_to(viewer, "small.png", "alt+e", "ctrl+a", "7", "2")
        print_to(viewer, "upright.png", "alt+a", "Tab", "Right")
        print_to(viewer, "large.png", "alt+a", "Home")
        print_to(viewer, "fit.png", "alt+a", "End")
        sizes = [pixels(written(plot.with_name(f"{name}.png"))) for name in ("small", "upright", "large", "fit")]
        viewer.end()
    assert sizes[:3] == [(842, 595), (595, 842), (2384, 3370)], sizes
    assert sizes[3][0] == 842 and sizes[3][1] < 842, sizes


def a_zoomed_view_is_printed_zoomed(desktop, plot):
    with desktop.viewer(KELHPGL, plot, environment=NO_PRINTER) as viewer:
        expect_picture(viewer, plot)
        viewer.drag(*DRAG)
        expect_picture(viewer, plot, *zoom(*DRAG))
        print_to(viewer, plot.with_name("part.pdf"))
        desktop.xdotool("key", "Home")
        expect_picture(viewer, plot)
        print_to(viewer, plot.with_name("whole.pdf"))
        part, whole = (drawn(written(plot.with_name(name))) for name in ("part.pdf", "whole.pdf"))
        viewer.end()
    assert part != whole


def a_pen_wider_than_the_view_is_printed(desktop, plot):
    """Though its middle lies outside of what is printed."""
    plot.write_text("IN;SP1;PU0,0;PD4000,0,4000,4000,0,4000,0,0;SP2;PW30;PU500,2000;PD3500,2000;")
    with desktop.viewer(KELHPGL, "--as-is", plot, environment=NO_PRINTER) as viewer:
        viewer.wait_for_picture(lambda picture: picture[250, 250] == BLUE)
        viewer.drag(250, 240, 300, 260)
        viewer.wait_for_picture(lambda picture: picture[5, 5] == picture[400, 490] == BLUE)
        print_to(viewer, plot.with_name("part.pdf"))
        page = drawn(written(plot.with_name("part.pdf")))
        viewer.end()
    assert page.count(BLUE) > len(page) // 6, page.count(BLUE)


def print_waits_for_what_comes_in(desktop, plot):
    """Never is a drawing printed that is not on the screen."""
    first = beside(plot, "first.plt", "IN;SP1;PU0,0;PD100,0,100,300,0,0;")
    pipe = plot.with_name("pipe")
    os.mkfifo(pipe)
    with desktop.viewer(KELHPGL, first, pipe, environment=NO_PRINTER) as viewer:
        expect_picture(viewer, first)
        panel = open_panel(viewer)
        name_file(desktop, plot.with_name("once.pdf"))
        pipe.write_text("SP5;SP4;PU0,0;" * 2_000_000 + plot.read_text())
        wait_for("the panel's focus", panel.is_active)
        desktop.xdotool("key", "Return")
        expect_picture(viewer, plot)
        written(plot.with_name("once.pdf"))
        wait_for("the main window alone", lambda: desktop.stacking() == [int(viewer.window().number)])
        assert "kelhpgl:" not in viewer.end()


def choices_stay(desktop, plot):
    with opened(desktop, plot) as viewer:
        open_panel(viewer)
        name_file(desktop, "kept.svg")
        desktop.xdotool("key", "Escape")
        wait_until_closed(viewer)
        open_panel(viewer)
        desktop.xdotool("key", "Return")
        written(plot.with_name("kept.svg"))
        viewer.end()


def a_file_that_exists_is_asked_for(desktop, plot):
    file = plot.with_name("mine.pdf")
    file.write_text("mine")
    with opened(desktop, plot) as viewer:
        panel = open_panel(viewer)
        name_file(desktop, "mine")
        for key in "Return", "Escape":
            desktop.xdotool("key", "Return")
            box_of(viewer, panel)
            desktop.xdotool("key", key)
            wait_for("the panel's focus", panel.is_active)
            assert file.read_text() == "mine"
        desktop.xdotool("key", "Return")
        box_of(viewer, panel)
        desktop.xdotool("key", "alt+r")
        wait_until_closed(viewer)
        wait_for("the page", lambda: file.read_bytes().startswith(b"%PDF"))
        viewer.end()


def what_cannot_be_written_does_not_close_it(desktop, plot):
    """Neither without a name, nor in no folder, nor over a folder or a pipe."""
    plot.with_name("folder.pdf").mkdir()
    os.mkfifo(plot.with_name("pipe.pdf"))
    with opened(desktop, plot) as viewer:
        panel = open_panel(viewer)
        for name in "", "none/a.pdf", "folder.pdf", "folder.pdf/a.pdf/b.pdf", "pipe.pdf":
            name_file(desktop, name)
            desktop.xdotool("key", "BackSpace" if not name else "End", "Return")
        assert panel.is_active()
        name_file(desktop, "folder.pdf/good.pdf")
        desktop.xdotool("key", "Return")
        wait_until_closed(viewer)
        written(plot.parent / "folder.pdf" / "good.pdf")
        viewer.end()
    assert {file.name for file in plot.parent.iterdir()} == {plot.name, "folder.pdf", "pipe.pdf"}


def too_many_pixels_do_not_close_it(desktop, plot):
    with opened(desktop, plot) as viewer:
        panel = open_panel(viewer)
        name_file(desktop, "large.png")
        desktop.xdotool("key", "alt+a", "Home", "alt+e", "ctrl+a", "2", "4", "0", "0", "Return")
        assert panel.is_active()
        desktop.xdotool("key", "alt+e", "ctrl+a", "5", "0", "Return")
        wait_until_closed(viewer)
        assert pixels(written(plot.with_name("large.png"))) == (2341, 1656)
        viewer.end()


def a_file_is_chosen_in_its_dialog(desktop, plot):
    with opened(desktop, plot) as viewer:
        panel = open_panel(viewer)
        desktop.xdotool("key", "alt+h")
        box_of(viewer, panel)
        desktop.xdotool("key", "Escape")
        wait_for("the panel's focus", panel.is_active)
        desktop.xdotool("key", "alt+h")
        box_of(viewer, panel)
        desktop.xdotool("key", "ctrl+a")
        desktop.xdotool("type", "other")
        desktop.xdotool("key", "Return")
        wait_for("the panel's focus", panel.is_active)
        desktop.xdotool("key", "Return")
        written(plot.with_name("other.pdf"))
        viewer.end()


run_all(every_way_closes_it, a_file_is_written_beside_the_plot, the_name_chooses_the_format,
        paper_and_resolution_are_chosen, a_zoomed_view_is_printed_zoomed, a_pen_wider_than_the_view_is_printed,
        print_waits_for_what_comes_in, choices_stay, a_file_that_exists_is_asked_for, what_cannot_be_written_does_not_close_it,
        too_many_pixels_do_not_close_it, a_file_is_chosen_in_its_dialog)
