#!/usr/bin/env python3
"""usage: tables_test.py HPGLPLAIN [TABLE...]: the plots of the tables beside the strokes that must come of them.

A table is made of blocks. Its lines are `word: text`, and empty lines part them:

    name: what it tries
    plot: the plot behind IN;SP1; (^C, ^M, ^J, ^[, ^@ stand for control bytes, ^xNN for any; lines are joined)
    draws: lines in plotter units, points joined by -, lines by |
    fills: areas, rings joined by +, areas by |
    ink: LEFT RIGHT LOW HIGH of all that is drawn
    has: one of the lines (any number of these)
    counts: how many lines there are
    pens: the pens of lines and areas in their order
    colours: PEN=R,G,B ...
    reports: a piece of what --report says (any number)
    options: words for hpglplain
    bare: the plot is without IN;SP1;
"""
import pathlib
import re
import shlex
import subprocess
import sys

import strokes

FACTOR = re.compile(r", ([-+.e0-9]+) output units each")


def blocks(text):
    block = []
    for line in text.splitlines() + [""]:
        if line.startswith("#"):
            continue
        if line.strip():
            word, _, rest = line.partition(":")
            rest = rest.removeprefix(" ")
            if not word.isalpha():
                raise SystemExit("not a table's line: " + line)
            block.append((word, rest))
        elif block:
            yield block
            block = []


CONTROLS = {"C": 3, "M": 13, "J": 10, "[": 27, "@": 0, "N": 14, "O": 15, "H": 8, "I": 9, "K": 11, "Z": 26}


def unescaped(text):
    out = bytearray()
    for piece in re.findall(r"\^x[0-9a-fA-F]{2}|\^[CMJ\[@NOHIKZ]|.", text, re.S):
        if len(piece) == 4 and piece.startswith("^x"):
            out.append(int(piece[2:], 16))
        elif len(piece) == 2 and piece[0] == "^":
            out.append(CONTROLS[piece[1]])
        else:
            out += piece.encode("utf-8")
    return bytes(out)


def plain_of(program, plot, options):
    ran = subprocess.run([program, "--report", *options], input=plot, capture_output=True, check=False)
    if ran.returncode != 0:
        raise AssertionError("exit code %d: %s" % (ran.returncode, ran.stderr.decode(errors="replace")))
    return ran.stdout.decode("ascii"), ran.stderr.decode(errors="replace")


def near(found, wanted, slack):
    return all(abs(a - b) <= slack for a, b in zip(found, wanted))


def check(program, block):
    words = dict(block)
    plot = unescaped("".join(text for word, text in block if word == "plot"))
    if "bare" not in words:
        plot = b"IN;SP1;" + plot
    options = shlex.split(words.get("options", ""))
    plain, report = plain_of(program, plot, options)
    page = int(options[options.index("--page") + 1]) if "--page" in options else 1
    factors = FACTOR.findall(report)
    drawing = strokes.Drawing(plain, float(factors[min(page, len(factors)) - 1]) if factors else 1.0)
    again = subprocess.run([program], input=plain.encode(), capture_output=True, check=False).stdout.decode()
    problems = []
    if again != plain:
        problems.append("given again it does not come out as it was:\n" + plain + "---\n" + again)

    def compare(word, found):
        if found != words[word].strip():
            problems.append("%s: %s\ninstead: %s" % (word, words[word], found))

    if "draws" in words:
        compare("draws", strokes.lines_text(drawing))
    if "fills" in words:
        compare("fills", strokes.areas_text(drawing))
    if "pens" in words:
        compare("pens", " ".join(str(pen) for pen in drawing.pens))
    if "counts" in words:
        compare("counts", str(len(drawing.lines)))
    if "colours" in words:
        compare("colours", " ".join("%d=%d,%d,%d" % (pen, *colour) for pen, colour in sorted(drawing.colours.items())))
    if "ink" in words:
        xs, ys = zip(*drawing.points())
        found = (min(xs), max(xs), min(ys), max(ys))
        wanted = tuple(int(number) for number in words["ink"].split())
        if not near(found, wanted, 2):
            problems.append("ink: %s\ninstead: %s" % (wanted, found))
    for word, text in block:
        if word == "has" and text.strip() not in [strokes.text_of(line) for line in drawing.lines]:
            problems.append("no line %s in: %s" % (text, strokes.lines_text(drawing)))
        if word == "reports" and text not in report:
            problems.append("not reported: %s\nbut: %s" % (text, report))
    return problems


def main():
    program = sys.argv[1]
    folder = pathlib.Path(__file__).parent
    tables = [pathlib.Path(name) for name in sys.argv[2:]] or sorted(folder.glob("*.table"))
    count = failed = 0
    for table in tables:
        for block in blocks(table.read_text(encoding="utf-8")):
            count += 1
            try:
                problems = check(program, block)
            except AssertionError as problem:
                problems = [str(problem)]
            if problems:
                failed += 1
                print("%s: %s\n  %s" % (table.stem, dict(block).get("name"), "\n  ".join(problems)))
    print("%d plots, %d failed" % (count, failed))
    return 1 if failed or not count else 0


if __name__ == "__main__":
    sys.exit(main())
