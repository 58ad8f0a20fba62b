#!/usr/bin/env python3
"""Every command of the table has a plot of its own in the folder commands, and every plot there is one of a command.

usage: commands_test.py COMMANDS

A plot of a command begins with a comment that says what is to be seen, and names the command behind that.
"""
import pathlib
import re
import sys

from plots import HERE

ROW = re.compile(r'^HPGL_COMMAND\((\w+),', re.M)
COMMENTED = re.compile(r'CO"[^"]+";\n(.*)', re.S)


def complaints(commands, plots):
    for name in sorted(commands - plots.keys()):
        yield f"{name} has no plot"
    for name, text in sorted(plots.items()):
        behind = COMMENTED.fullmatch(text)
        if name not in commands:
            yield f"{name}.plt is the plot of no command"
        elif not behind:
            yield f"{name}.plt does not begin with a comment"
        elif name not in behind[1]:
            yield f"{name}.plt does not name its command"


def main():
    commands = set(ROW.findall(pathlib.Path(sys.argv[1]).read_text()))
    plots = {plot.stem: plot.read_text("latin-1") for plot in (HERE / "commands").glob("*.plt")}
    found = list(complaints(commands, plots))
    print("\n".join([*found, f"{len(commands)} commands, {len(plots)} plots"]))
    return 1 if found or not commands else 0


if __name__ == "__main__":
    sys.exit(main())
