#!/usr/bin/env python3
"""Finding one's way: titles, other files, reading again, the menu on the drawing, the full screen; see suite.py."""
import pathlib
import re
import subprocess

from suite import KELHPGL, PLOT, SCREEN, TITLE, WHITE, beside, expect_picture, run_all, wait_for, zoom

OTHER = "IN;SP1;PU0,0;PD3000,4000,0,4000,3000,0;"
DRAG = 100, 100, 380, 330


def key(desktop, *names):
    desktop.xdotool("key", "--delay", "30", *names)


def expect_title(viewer, title):
    def has_it():
        name = viewer.desktop.ask("xprop", "-id", viewer.window().number, "_NET_WM_NAME")
        return name.endswith(f'= "{title}"')
    wait_for(f"the title {title}", has_it)


def choose(viewer, *letters):
    """In the menu on the drawing; each time elsewhere, since two clicks at a place may be a double one."""
    viewer.mouse(40 + ord(letters[0]) % 8 * 40, 200, "click", 3)
    for letter in letters:
        wait_for(f"the menu for {letter}", viewer.popups)
        key(viewer.desktop, letter)


def the_title_names_the_file(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        expect_title(viewer, f"{plot.name} \u2013 {TITLE}")


def a_pipe_has_no_name(desktop, plot):
    with open(plot, "rb") as pipe, desktop.viewer(KELHPGL, "-", stdin=pipe) as viewer:
        expect_picture(viewer, plot)
        expect_title(viewer, TITLE)


def files_of_the_folder_are_turned(desktop, plot):
    files = [beside(plot, name, OTHER) for name in ("a2.plt", "a10.HPGL".lower(), "zz.hgl")]
    beside(plot, "b.txt", OTHER)
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        key(desktop, "ctrl+Next")
        expect_title(viewer, f"{files[2].name} \u2013 {TITLE}")
        expect_picture(viewer, files[2])
        key(desktop, "ctrl+Next", "ctrl+Prior")
        expect_picture(viewer, plot)
        key(desktop, "ctrl+Prior")
        expect_title(viewer, f"{files[1].name} \u2013 {TITLE}")
        key(desktop, "ctrl+Prior")
        expect_title(viewer, f"{files[0].name} \u2013 {TITLE}")


def named_files_are_turned(desktop, plot):
    other = beside(plot, "aaa.plt", OTHER)
    beside(plot, "bbb.plt", OTHER)
    with desktop.viewer(KELHPGL, other, plot) as viewer:
        expect_picture(viewer, plot)
        key(desktop, "ctrl+Prior")
        expect_title(viewer, f"{other.name} \u2013 {TITLE}")
        key(desktop, "ctrl+Next")
        expect_title(viewer, f"{plot.name} \u2013 {TITLE}")


def reading_again_keeps_the_view(desktop, plot):
    changed = PLOT + "SP3;PU0,1500;PD4000,1500;"
    for keys, options in (("F5", ()), ("r", ()), ((), ("--watch",))):
        plot.write_text(PLOT)
        with desktop.viewer(KELHPGL, *options, plot) as viewer:
            expect_picture(viewer, plot)
            viewer.drag(*DRAG)
            viewer.mouse(150, 150, "mousedown", 2)
            viewer.mouse(170, 140, "mouseup", 2)
            moved = zoom(-20, 10, 476, 456)
            expect_picture(viewer, plot, *zoom(*DRAG), *moved)
            plot.write_text(changed)
            if keys:
                key(desktop, keys)
            expect_picture(viewer, plot, *zoom(*DRAG), *moved)
            key(desktop, "BackSpace")
            expect_picture(viewer, plot, *zoom(*DRAG))


def another_file_is_seen_whole(desktop, plot):
    other = beside(plot, "zz.plt", OTHER)
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        viewer.drag(*DRAG)
        expect_picture(viewer, plot, *zoom(*DRAG))
        key(desktop, "ctrl+Next")
        expect_picture(viewer, other)


def the_full_screen_is_entered_and_left(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        before = viewer.window().geometry()[2:]
        key(desktop, "alt+Return")
        wait_for("the full screen", lambda: viewer.window().geometry() == (0, 0, *SCREEN))
        expect_picture(viewer, plot)
        key(desktop, "alt+Return")
        wait_for("the window", lambda: viewer.window().geometry()[2:] == before)
        expect_picture(viewer, plot)


def the_drawing_has_a_menu(desktop, plot):
    other = beside(plot, "zz.plt", OTHER)
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        viewer.drag(*DRAG)
        expect_picture(viewer, plot, *zoom(*DRAG))
        choose(viewer, "l")  # Last Zoom
        expect_picture(viewer, plot)
        choose(viewer, "x")
        expect_picture(viewer, plot, *zoom(*DRAG))
        choose(viewer, "f")
        expect_picture(viewer, other)
        choose(viewer, "e", "Down", "Return")  # the recent files: this one, then the first
        expect_picture(viewer, plot)
        viewer.window().activate()
        key(desktop, "Menu")
        wait_for("the menu", viewer.popups)
        key(desktop, "Escape")
        wait_for("no menu", lambda: not viewer.popups())
        key(desktop, "F10", "Down")
        wait_for("a pull-down", viewer.popups)
        key(desktop, "Escape", "Escape")


def recent_files_are_kept(desktop, plot):
    files = [beside(plot, f"p\u00e4 %{number}\n.plt", OTHER) for number in range(12)]
    for file in files + [files[5]]:
        with desktop.viewer(KELHPGL, file) as viewer:
            expect_picture(viewer, file)
            viewer.end()
    kept = pathlib.Path(desktop.environment["XDG_STATE_HOME"], "kelhpgl/recent").read_text().split()
    assert len(kept) == 10, kept
    wanted = [files[5], *(file for file in reversed(files[1:]) if file != files[5])][:10]
    assert [re.findall("%25([0-9]+)%0A", line) for line in kept] == [[str(files.index(file))] for file in wanted], kept


def an_empty_window_invites(desktop, plot):
    with desktop.viewer(KELHPGL) as viewer:
        viewer.wait_for_picture(is_invitation)
        viewer.window().activate()
        key(desktop, "ctrl+o")
        dialog = wait_for("the dialog", lambda: [window for window in viewer.search(".*") if window.is_box()])[0]
        wait_for("its focus", dialog.is_active)
        desktop.xdotool("type", "--delay", "10", str(plot))
        key(desktop, "Return")
        expect_picture(viewer, plot)


def is_invitation(shown):
    """A line in the middle, and white paper around it."""
    middle = slice(len(shown) // 2 - 15, len(shown) // 2 + 15)
    around = shown.copy()
    around[middle] = WHITE
    return (shown[middle] != WHITE).any() and (around == WHITE).all()


def a_photograph_leaves_the_drawing(desktop, plot):
    photo = plot.with_name("zz.plt")
    photo.write_bytes(b"\xff\xd8\xff\xe0\x00\x10JFIF" + bytes(range(256)) * 9)
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        key(desktop, "ctrl+Next")
        box = wait_for("the box", lambda: [window for window in viewer.windows(TITLE) if window.is_box()])[0]
        wait_for("its focus", box.is_active)
        key(desktop, "Return")
        expect_picture(viewer, plot)
        expect_title(viewer, f"{plot.name} \u2013 {TITLE}")


def a_photograph_gives_no_picture(desktop, plot):
    photo = beside(plot, "photo.jpg")
    photo.write_bytes(b"\xff\xd8\xff\xe0\x00\x10JFIF" + bytes(range(256)) * 9)
    done = subprocess.run([KELHPGL, "--picture", "x.png", photo], cwd=plot.parent, capture_output=True, check=False)
    assert done.returncode == 1 and b"JPEG" in done.stderr, done
    assert not plot.with_name("x.png").exists()


if __name__ == "__main__":
    run_all(the_title_names_the_file, a_pipe_has_no_name, files_of_the_folder_are_turned, named_files_are_turned,
            reading_again_keeps_the_view, another_file_is_seen_whole, the_full_screen_is_entered_and_left,
            the_drawing_has_a_menu, recent_files_are_kept, an_empty_window_invites, a_photograph_leaves_the_drawing,
            a_photograph_gives_no_picture)
