"""Kills at any moment: no half file stands under a final name, and who is asked to end does so."""
import signal
import time

import mutations
import pages
import viewers
from case import Finding, Watched

ASKED = signal.SIGTERM, signal.SIGTERM, signal.SIGINT, signal.SIGHUP
KILLED = signal.SIGKILL
LATEST = 6.0  # seconds until the kill
SHEETS = 5  # that are printed in a call
OLD = b"what was there before"
SEVERAL_PAGES = b"IN;SP1;" + b"PG;".join(b"PU0,0;PD%d,%d;" % (100 * number + 5, 4000) for number in range(30))


def write_plots(case, count):
    """Of some size, so that printing lasts."""
    names = [f"plot{number}.plt" for number in range(count)]
    for name in names:
        data = case.dice.choice((mutations.honest_plot(case.dice), SEVERAL_PAGES, many_lines(case.dice)))
        (case.folder / name).write_bytes(data)
    return names


def many_lines(dice):
    points = b",".join(b"%d" % dice.randrange(8000) for _ in range(2 * dice.randrange(1, 60_000)))
    return b"IN;SP1;PU0,0;PD" + b";PD".join(points.split(b";")) + b";"


def kill(case, program, latest=LATEST, codes=(0,)):
    """Answers the signal; the program ends by it, or before it, or with one of the codes and no words."""
    number = case.dice.choice((*ASKED, KILLED, KILLED))
    time.sleep(case.dice.uniform(0, latest))
    program.terminate((*codes, -number), number, words=False)
    return number


def old_files(case, folder, names):
    """Puts some of them there."""
    chosen = [name for name in names if case.dice.random() < 0.3]
    for name in chosen:
        (folder / name).write_bytes(OLD)
    return {name: OLD for name in chosen}


def expect_clean(case, number):
    """Temporary files have no names; those beside a file may be left where nobody could take them away."""
    if left := [file.name for file in (case.folder / "tmp").iterdir()]:
        raise Finding(f"left in TMPDIR after {signal.Signals(number).name}: {left}")


def printing(ending, *options):
    def attack(case):
        names = write_plots(case, SHEETS)
        folder = case.folder / "out"
        folder.mkdir()
        old = old_files(case, folder, [f"plot{number}{ending}" for number in range(SHEETS)])
        program = Watched(case, [case.program("kelhpgl"), "--print-to", f"out/%n{ending}", *options, *names])
        number = kill(case, program, codes=(0, 1))
        pages.expect_whole_or_old(folder, old, left=number == KILLED)
        expect_clean(case, number)
    return attack


def picture(case):
    write_plots(case, 1)
    old = old_files(case, case.folder, ["out.png"])
    program = Watched(case, [case.program("kelhpgl"), "--picture", "out.png", "--size", "3000x3000", "plot0.plt"])
    number = kill(case, program, 2.0, codes=(0, 1))
    pages.expect_whole_or_old(case.folder, old, left=number == KILLED)
    expect_clean(case, number)


def plain(case):
    """What is written must be the whole text, or what was there before."""
    (case.folder / "plot.plt").write_bytes(many_lines(case.dice).replace(b"IN;", b"IN;LT2,1;"))
    command = [case.program("hpglplain"), "-o"]
    case.run(*command, "whole.plt", "plot.plt")
    whole = (case.folder / "whole.plt").read_bytes()
    (case.folder / "out").mkdir()
    old = old_files(case, case.folder / "out", ["out.plt"])
    number = kill(case, Watched(case, [*command, "out/out.plt", "plot.plt"]), 1.0)
    for file in (case.folder / "out").iterdir():
        if file.name == "out.plt" and file.read_bytes() not in (whole, old.get(file.name, whole)):
            raise Finding(f"half a file: {file.name}")
        if file.name != "out.plt" and number != KILLED:
            raise Finding(f"an unfinished file is left behind: {file.name}")


def window(case):
    """A viewer that starts, reads, parses or paints."""
    data = case.dice.choice((mutations.honest_plot(case.dice), many_lines(case.dice) * case.dice.randrange(1, 30),
                             mutations.hostile_plot(case.dice)))
    mutations.write_neighbours(case.folder)
    (case.folder / "plot.plt").write_bytes(data)
    options = case.dice.choice(([], ["--as-is"], ["--watch"]))
    number = kill(case, viewers.start(case, *options, "plot.plt"))
    expect_clean(case, number)


def fed(case):
    """A viewer that hosts feed more than waits in memory."""
    viewer = viewers.listening(case)
    with viewers.connect(case, viewer) as one:
        one.kept.settimeout(case.dice.uniform(0.1, 5))
        try:
            one.kept.sendall(viewers.host.frame(viewers.host.BEGIN) + viewers.host.frame(0, b";" * 10_000_000) * 4)
        except OSError:
            pass
        number = kill(case, viewer, 3.0)
    expect_clean(case, number)


ROWS = {"kill: print pdf": printing(".pdf"), "kill: print svg": printing(".svg"),
        "kill: print png": printing(".png", "--dpi", "150"), "kill: picture": picture, "kill: hpglplain": plain,
        "kill: window": window, "kill: fed window": fed}
