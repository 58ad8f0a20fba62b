#!/usr/bin/env python3
"""Printing on a printer: a real print server, whose queues lead into files; see suite.py."""
import subprocess

from suite import KELHPGL, beside, expect_picture, run_all, wait_for

from print_server import PrintServer

PRINT = "Print"
BLUE = b"\x00\x00\xff" * 4  # pixels of pen 2
LABELS = "IN;SP2;PU100,100;PD3900,100,3900,2900,100,2900,100,100;PU500,500;SI0.5,0.8;LBWerkstatt\x03;"


def pdf(tool, *words):
    return subprocess.run([tool, *map(str, words)], capture_output=True, check=True).stdout.decode()


def rendered(file):
    """The pixels of its page."""
    return subprocess.run(["pdftoppm", "-r", "100", "-singlefile", file], capture_output=True, check=True).stdout


def open_panel(desktop, viewer):
    wait_for("the focus", viewer.window().is_active)
    desktop.xdotool("key", "ctrl+p")
    panel = viewer.window(PRINT)
    wait_for("the panel's focus", panel.is_active)
    return panel


def start_print(desktop, viewer):
    """With all as the panel offers it: on the printer, where there is one."""
    open_panel(desktop, viewer)
    desktop.xdotool("key", "Return")
    wait_for("the panel to go", lambda: not viewer.windows(PRINT))


def expect_notice(desktop, viewer, text):
    """A box that says it; the viewer goes on."""
    box = wait_for("the box", lambda: [window for window in viewer.search(".*") if window.is_box()
                                       and int(window.number) in desktop.stacking()])[0]
    wait_for("the box's focus", box.is_active)
    desktop.xdotool("key", "Return")
    wait_for("the main window alone", lambda: desktop.stacking() == [int(viewer.window().number)])
    said = viewer.end()
    assert text in said, said


def a_page_arrives_at_the_printer(desktop, plot):
    plot = beside(plot, "labels.plt", LABELS)
    with PrintServer() as server:
        job = server.add("plotter")
        with desktop.viewer(KELHPGL, "--as-is", plot, environment=server.environment) as viewer:
            start_print(desktop, viewer)
            wait_for("the job", job.exists)
            viewer.end()
        size = [line for line in pdf("pdfinfo", job).splitlines() if line.startswith("Page size")][0]
        assert "842 x 595" in size or "595 x 842" in size, size
        assert "Werkstatt" in pdf("pdftotext", job, "-")
        assert BLUE in rendered(job)


def a_printer_may_be_gone(desktop, plot):
    with PrintServer() as server:
        server.add("plotter")
        with desktop.viewer(KELHPGL, plot, environment=server.environment) as viewer:
            expect_picture(viewer, plot)
            open_panel(desktop, viewer)
            server.remove("plotter")
            desktop.xdotool("key", "Return")
            expect_notice(desktop, viewer, "cannot print on plotter: there is no such printer")


def a_printer_may_take_no_jobs(desktop, plot):
    with PrintServer() as server:
        server.add("plotter")
        server.refuse_jobs("plotter")
        with desktop.viewer(KELHPGL, plot, environment=server.environment) as viewer:
            expect_picture(viewer, plot)
            start_print(desktop, viewer)
            expect_notice(desktop, viewer, "cannot print on plotter: Destination \"plotter\" is not accepting jobs.")


def a_print_server_may_be_gone(desktop, plot):
    with PrintServer() as server:
        server.add("plotter")
        with desktop.viewer(KELHPGL, plot, environment=server.environment) as viewer:
            expect_picture(viewer, plot)
            open_panel(desktop, viewer)
            server.process.terminate()
            server.process.wait()
            desktop.xdotool("key", "Return")
            expect_notice(desktop, viewer, "cannot print on plotter")


run_all(a_page_arrives_at_the_printer, a_printer_may_be_gone, a_printer_may_take_no_jobs, a_print_server_may_be_gone)
