"""Hostile plots through every program."""
import mutations
import pages
import viewers
from case import Finding

PAPERS = ("A6", "A4", "A0", "fit", "10x10mm", "20x5000mm", "5080x5080mm")
CORNERS = 0, 1, 100, 250, 499, 500, -1, 2147483647, -2147483648  # of zooms


def write_plots(case, count):
    """Answers their names."""
    mutations.write_neighbours(case.folder)
    names = [f"plot{number}.plt" for number in range(count)]
    for name in names:
        (case.folder / name).write_bytes(mutations.hostile_plot(case.dice))
    return names


def sometimes(case, *words):
    """Those words, or none; a callable says its word."""
    return [word() if callable(word) else word for word in words] if case.dice.random() < 0.3 else []


def size(case, most):
    return f"{case.dice.randrange(1, most)}x{case.dice.randrange(1, most)}"


def a_page(case):
    return case.dice.choice(("1", "1", "2", "3", "1000"))


def picture(case):
    """A page that is not there is the only thing that may go wrong."""
    options = [*sometimes(case, "--as-is"), *sometimes(case, "--size", lambda: size(case, 3000)),
               *sometimes(case, "--page", lambda: a_page(case))]
    code = case.run(case.program("kelhpgl"), "--picture", "out.png", *options, *write_plots(case, 1))
    expect_pages(case, code, ".png")


def expect_pages(case, code, ending):
    made = sorted(case.folder.glob(f"out*{ending}"))
    if code == 0 and not made:
        raise Finding("all went well, but there is no file")
    for file in made:
        pages.expect_opens(file)
        file.unlink()  # the finding is in the plots


def printing(ending):
    def attack(case):
        options = [*sometimes(case, "--as-is"), *sometimes(case, "--landscape"),
                   *sometimes(case, "--page", lambda: case.dice.choice(PAPERS)),
                   *sometimes(case, "--page", lambda: a_page(case))]
        if ending == ".png":
            options += ["--dpi", case.dice.choice(("10", "30", "50"))]  # 10,000 pixels a side on the largest paper
        name = case.dice.choice(("out-%n", "out-%n-%p")) + ending
        code = case.run(case.program("kelhpgl"), "--print-to", name, *options, *write_plots(case, 3))
        expect_pages(case, code, ending)
    return attack


def dump(case):
    dice = case.dice
    options = [*sometimes(case, "--plotted"), *sometimes(case, "--chunk", lambda: str(dice.randrange(1, 300))),
               *sometimes(case, "--size", lambda: size(case, 40_000)),
               *sometimes(case, "--rotate", lambda: str(dice.randrange(1, 4)))]
    for _ in range(dice.choice((0, 0, 1, 5))):
        options += ["--zoom", ",".join(str(dice.choice(CORNERS)) for _ in range(4))]
    for name in write_plots(case, 5):
        case.run(case.program("hpgldump"), *options, name)


def plain(case):
    """What is plain comes out of it as it is."""
    for name in write_plots(case, 5):
        options = [*sometimes(case, "--report"), *sometimes(case, "--page", lambda: a_page(case))]
        if case.run(case.program("hpglplain"), *options, "-o", "plain.plt", name) == 0:
            case.run(case.program("hpglplain"), "-o", "again.plt", "plain.plt", codes=(0,))
            if (case.folder / "plain.plt").read_bytes() != (case.folder / "again.plt").read_bytes():
                raise Finding(f"of {name} comes what is not plain")


def window(case):
    """The files of one hpglsend after another, in a viewer with a window."""
    names = write_plots(case, 4)
    viewer = viewers.listening(case)
    case.run(case.program("hpglsend"), "--no-start", "--channel", viewers.CHANNEL, *sometimes(case, "--as-is"), *names,
             words=False)
    viewer.expect_alive()
    viewer.terminate()


ROWS = {"picture": picture, "print pdf": printing(".pdf"), "print svg": printing(".svg"), "print png": printing(".png"),
        "hpgldump": dump, "hpglplain": plain, "hpglsend": window}
