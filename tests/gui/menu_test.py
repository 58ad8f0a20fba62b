#!/usr/bin/env python3
"""Menus, keys, the help line, help and product information; see suite.py."""
import dataclasses
import os

import numpy

from suite import KELHPGL, TURNABLE, beside, expect_picture, run_all, wait_for, zoom

HELP = "Bitmap-Hilfe"
PRODUCT = "Product Information"
ROWS = 3, 1, 1, 3, 5  # of the pull-downs
BUTTONS = 5
DRAGS = (100, 100, 380, 330), (390, 350, 60, 50)
MENU_PATIENCE = 5.0  # seconds
GAP = 8  # pixels between two words of the bar at least, and more than between two letters


@dataclasses.dataclass(frozen=True)
class Item:
    pulldown: int  # from the left
    row: int  # of it, from the top
    letters: tuple  # keys
    key: str = ""  # that does the same


PRINT = Item(0, 0, ("alt+g", "p"), "ctrl+p")
SAVE = Item(0, 1, ("alt+g", "s"))
EXIT = Item(0, 2, ("alt+g", "e"), "ctrl+q")
CANCEL = Item(1, 0, ("alt+e", "a"))
BACK = Item(2, 0, ("alt+g", "alt+g", "b"))  # the bar has two items with that letter
COMPLETE = Item(3, 0, ("alt+s", "c"), "Home")
LAST = Item(3, 1, ("alt+s", "l"), "BackSpace")
ROTATE = Item(3, 2, ("alt+s", "r"), "ctrl+r")
DISABLED = (SAVE, Item(4, 0, ("alt+h", "h")), Item(4, 1, ("alt+h", "i")), Item(4, 2, ("alt+h", "f")),
            Item(4, 3, ("alt+h", "g")))
INFORMATION = Item(4, 4, ("alt+h", "p"))
ENABLED = PRINT, EXIT, CANCEL, BACK, COMPLETE, LAST, ROTATE, INFORMATION


def press(viewer, *keys):
    """In the main window, or in what is open in it."""
    wait_for("the focus", viewer.window().is_active)
    viewer.desktop.xdotool("key", *keys)


def bar(viewer):
    """The rows of the menu bar, without the line below it."""
    return viewer.window().picture()[:viewer.bars[0] - 1]


def words(rows):
    """The middles of what stands beside each other on the background."""
    inked = numpy.flatnonzero((rows != rows[0, 0]).any(axis=0))
    return [(word[0] + word[-1]) // 2 for word in numpy.split(inked, numpy.flatnonzero(numpy.diff(inked) > GAP) + 1)]


def pull_down(viewer, number):
    """Opens a menu with the mouse."""
    places = words(bar(viewer))
    assert len(places) == len(ROWS), places
    viewer.window().click(places[number], viewer.bars[0] // 2)
    return wait_for("the menu", viewer.popups)[0]


def by_mouse(viewer, item):
    wait_for("the focus", viewer.window().is_active)
    menu = pull_down(viewer, item.pulldown)
    _, _, width, height = menu.geometry()
    menu.click(width // 3, (2 * item.row + 1) * height // (2 * ROWS[item.pulldown]))


def open_menus(viewer, *keys, tries=3):
    """One after the other: what is typed before a menu has opened may be lost in one that closes for it. Who sees no
    menu for long begins again."""
    try:
        for key in keys:
            before = {menu.number for menu in viewer.popups()}
            viewer.desktop.xdotool("key", key)
            wait_for("the menu", lambda: {menu.number for menu in viewer.popups()} - before, MENU_PATIENCE)
    except AssertionError:
        if tries == 1:
            raise
        viewer.desktop.xdotool("key", "Escape", "Escape")
        wait_for("the menu to go", lambda: not viewer.popups())
        open_menus(viewer, *keys, tries=tries - 1)


def by_letters(viewer, item):
    wait_for("the focus", viewer.window().is_active)
    *opening, choosing = item.letters
    open_menus(viewer, *opening)
    viewer.desktop.xdotool("key", choosing)


def steps_down(item):
    """Disabled items are passed over."""
    return sum(other.pulldown == item.pulldown and other.row < item.row for other in ENABLED)


def go_down(viewer, item):
    viewer.desktop.xdotool("key", *["Down"] * steps_down(item), "Return")


def by_arrows(viewer, item):
    """From a menu that is open."""
    wait_for("the focus", viewer.window().is_active)
    aside = item.pulldown - COMPLETE.pulldown
    open_menus(viewer, COMPLETE.letters[0], *["Right" if aside > 0 else "Left"] * abs(aside))
    go_down(viewer, item)


def by_alt(viewer, item):
    """From the bar."""
    press(viewer, "Alt_L", *["Right"] * item.pulldown)
    open_menus(viewer, "Down", tries=1)
    go_down(viewer, item)


def by_key(viewer, item):
    press(viewer, item.key)


def button(viewer, number):
    """Clicks a button of the help line."""
    _, _, width, height = viewer.window().geometry()
    viewer.window().click((2 * number + 1) * width // (2 * BUTTONS), height - viewer.bars[1] // 2)


def expect_unharmed(viewer, plot):
    """Nothing has happened to the whole picture, nothing is open, and a drag zooms."""
    wait_for("the main window alone", lambda: viewer.desktop.stacking() == [int(viewer.window().number)])
    wait_for("the focus", viewer.window().is_active)
    expect_picture(viewer, plot)
    viewer.drag(*DRAGS[0])
    expect_picture(viewer, plot, *zoom(*DRAGS[0]))
    press(viewer, "Home")
    expect_picture(viewer, plot)


def views(desktop, plot, pick):
    """What changes the view, by one way of choosing it."""
    first, second = (zoom(*drag) for drag in DRAGS)
    turned = "--rotate", "1"
    plot.write_text(TURNABLE)
    with desktop.viewer(KELHPGL, "--as-is", plot) as viewer:
        def zoom_twice(*options):
            for drag in DRAGS:
                viewer.drag(*drag)
            expect_picture(viewer, plot, *options, *first, *second)

        def choose(item, *options):
            pick(viewer, item)
            expect_picture(viewer, plot, *options)

        expect_picture(viewer, plot)
        zoom_twice()
        choose(LAST, *first)
        choose(LAST)
        choose(LAST)
        zoom_twice()
        choose(COMPLETE)
        zoom_twice()
        choose(ROTATE, *turned)
        zoom_twice(*turned)
        choose(LAST, *turned, *first)
        choose(ROTATE)
        choose(COMPLETE)


def the_mouse_chooses_views(desktop, plot):
    views(desktop, plot, by_mouse)


def letters_choose_views(desktop, plot):
    views(desktop, plot, by_letters)


def arrows_choose_views(desktop, plot):
    views(desktop, plot, by_arrows)


def alt_leads_to_views(desktop, plot):
    views(desktop, plot, by_alt)


def keys_choose_views(desktop, plot):
    views(desktop, plot, by_key)


def items_end_the_viewer(desktop, plot):
    ways = [(item, way) for item in (EXIT, CANCEL, BACK) for way in (by_mouse, by_letters, by_arrows, by_alt)]
    for item, way in [*ways, (EXIT, by_key)]:
        with desktop.viewer(KELHPGL, plot) as viewer:
            expect_picture(viewer, plot)
            way(viewer, item)
            viewer.outcome(0)


def keys_end_the_viewer(desktop, plot):
    for key in "F3", "F12", "F15", "shift+F3":
        with desktop.viewer(KELHPGL, plot) as viewer:
            expect_picture(viewer, plot)
            press(viewer, key)
            viewer.outcome(0)


def buttons_end_the_viewer(desktop, plot):
    for number in 1, 3, 4:
        with desktop.viewer(KELHPGL, plot) as viewer:
            expect_picture(viewer, plot)
            button(viewer, number)
            viewer.outcome(0)


def what_is_disabled_does_nothing(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        for item in DISABLED:
            for way in by_mouse, by_letters:
                way(viewer, item)
                wait_for("the menu", viewer.popups)
                press(viewer, "Escape")
                wait_for("the menu to go", lambda: not viewer.popups())
        press(viewer, "F11", "ctrl+F3", "shift+F12", "F2", "ctrl+s", "ctrl+Home", "alt+BackSpace", "Return", "space")
        button(viewer, 2)
        expect_unharmed(viewer, plot)


def printing_is_asked_for(desktop, plot):
    """By a window that Esc closes."""
    for way in by_mouse, by_letters, by_key:
        with desktop.viewer(KELHPGL, plot) as viewer:
            expect_picture(viewer, plot)
            way(viewer, PRINT)
            wait_for("the window in front", lambda: len(desktop.stacking()) == 2 and not viewer.window().is_active())
            desktop.xdotool("key", "Escape")
            expect_unharmed(viewer, plot)


def help_is_one_window(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        press(viewer, "F1")
        window = viewer.window(HELP)
        wait_for("the help's focus", window.is_active)
        viewer.window().activate()
        for ask in lambda: press(viewer, "F1"), lambda: button(viewer, 0):
            ask()
            wait_for("the help's focus", window.is_active)
            assert len(desktop.stacking()) == 2, desktop.stacking()
            viewer.window().activate()
            expect_picture(viewer, plot)
        window.activate()
        wait_for("the help's focus", window.is_active)
        desktop.xdotool("key", "Escape")
        expect_unharmed(viewer, plot)


def minimised_help_comes_back(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        press(viewer, "F1")
        window = viewer.window(HELP)
        wait_for("the help's focus", window.is_active)
        desktop.xdotool("windowminimize", window.number)
        wait_for("the help to go", lambda: not viewer.windows(HELP))
        viewer.window().activate()
        press(viewer, "F1")
        wait_for("the help's focus", window.is_active)
        viewer.end()


def keys_of_the_help_are_its_own(desktop, plot):
    """They neither end the viewer nor change its view."""
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        viewer.drag(*DRAGS[0])
        expect_picture(viewer, plot, *zoom(*DRAGS[0]))
        for keys in ("F3", "F12", "F15", "shift+F3"), ("Home", "BackSpace", "ctrl+r"), ("ctrl+q",):
            button(viewer, 0)
            window = viewer.window(HELP)
            wait_for("the help's focus", window.is_active)
            desktop.xdotool("key", *keys, "Escape")
            wait_for("the help to go", lambda: len(desktop.stacking()) == 1)
            expect_picture(viewer, plot, *zoom(*DRAGS[0]))
        viewer.end()


def the_viewer_ends_with_its_help(desktop, plot):
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        press(viewer, "F1")
        wait_for("the help's focus", viewer.window(HELP).is_active)
        viewer.window().close_button()
        viewer.outcome(0)


def product_information_is_one_panel(desktop, plot):
    def by_button(panel):
        row = 24  # from the bottom
        picture = panel.picture()
        panel.click(words(picture[-row:1 - row])[-1], len(picture) - row)

    def by_return(_):
        desktop.xdotool("key", "Return")

    def by_escape(_):
        desktop.xdotool("key", "Escape")

    def by_close_button(panel):
        panel.close_button()

    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        for pick, close in ((by_mouse, by_button), (by_letters, by_return), (by_arrows, by_escape),
                            (by_alt, by_close_button)):
            for _ in range(2):
                pick(viewer, INFORMATION)
                panel = viewer.window(PRODUCT)
                wait_for("the panel's focus", panel.is_active)
                assert len(desktop.stacking()) == 2, desktop.stacking()
                viewer.window().activate()
            panel.activate()
            wait_for("the panel's focus", panel.is_active)
            close(panel)
            wait_for("the panel to go", lambda: len(desktop.stacking()) == 1)
        expect_unharmed(viewer, plot)


def a_german_session_has_german_menus(desktop, plot):
    session = {"LC_ALL": "de_DE.UTF-8", "LANG": "de_DE.UTF-8"}
    beside(plot, "HPGL.ini", "LANG=de\n")
    with desktop.viewer(KELHPGL, plot) as viewer:
        expect_picture(viewer, plot)
        english = bar(viewer)
    for environment in session, {"KEL_CONFIG_DIR": str(plot.parent)}:
        with desktop.viewer(KELHPGL, plot, environment=environment) as viewer:
            expect_picture(viewer, plot)
            assert not numpy.array_equal(bar(viewer), english)
            press(viewer, "F1")
            wait_for("the help's focus", viewer.window(HELP).is_active)
            desktop.xdotool("key", "Escape")
            by_letters(viewer, INFORMATION)
            wait_for("the panel's focus", viewer.window("Produktinformation").is_active)
            viewer.end()


def a_language_may_have_a_single_text(desktop, plot):
    beside(plot, "HPGL.ini", "LANG=xx\n")
    plot.with_name("texts").mkdir()
    plot.with_name("texts").joinpath("HPGL_xx.txt").write_text("ABTX17=~Gesamt\n")

    def settings(viewer):
        expect_picture(viewer, plot)
        wait_for("the focus", viewer.window().is_active)
        rows = pull_down(viewer, COMPLETE.pulldown).picture()
        return bar(viewer), rows[:len(rows) // 3], rows[len(rows) // 3:]

    with desktop.viewer(KELHPGL, plot) as viewer:
        english = settings(viewer)
    with desktop.viewer(KELHPGL, plot, environment={"KEL_CONFIG_DIR": str(plot.parent)}) as viewer:
        own = settings(viewer)
        assert [numpy.array_equal(one, other) for one, other in zip(own, english)] == [True, False, True]
        press(viewer, "Escape")
        viewer.drag(*DRAGS[0])
        expect_picture(viewer, plot, *zoom(*DRAGS[0]))
        open_menus(viewer, "alt+s")
        press(viewer, "g")
        expect_picture(viewer, plot)


def actions_wait_for_the_picture_on_its_way(desktop, plot):
    """Whether they come before, within or behind a large transmission. Its panel lies in the middle of the drawing, and
    whoever clicks on it has left the main window."""
    first = beside(plot, "first.plt", "IN;SP1;PU0,0;PD100,0,100,300,0,0;")
    plot.write_text(TURNABLE)
    large = "SP5;SP4;PU0,0;" * 2_000_000 + TURNABLE
    pipe = plot.with_name("pipe")
    os.mkfifo(pipe)
    with desktop.viewer(KELHPGL, "--as-is", first, pipe) as viewer:
        expect_picture(viewer, first)
        wait_for("the panel", lambda: viewer.windows("Information"))
        by_key(viewer, COMPLETE)
        with pipe.open("w") as host:
            host.write(large[:len(large) // 2])
            viewer.mouse(30, 30, "click", 1)
            desktop.xdotool("key", "Home", "ctrl+r")
            host.write(large[len(large) // 2:])
        desktop.xdotool("key", "BackSpace", "F11")
        wait_for("the panel to go", lambda: not viewer.windows("Information"))
        press(viewer, "F1")
        wait_for("the help's focus", viewer.window(HELP).is_active)
        desktop.xdotool("key", "Escape")
        expect_picture(viewer, plot, "--rotate", "1")
        viewer.end()


run_all(the_mouse_chooses_views, letters_choose_views, arrows_choose_views, alt_leads_to_views, keys_choose_views,
        items_end_the_viewer, keys_end_the_viewer, buttons_end_the_viewer, what_is_disabled_does_nothing,
        printing_is_asked_for, help_is_one_window, minimised_help_comes_back, keys_of_the_help_are_its_own, the_viewer_ends_with_its_help,
        product_information_is_one_panel, a_german_session_has_german_menus, a_language_may_have_a_single_text,
        actions_wait_for_the_picture_on_its_way)
