#!/usr/bin/env python3
"""hpgldump as a user calls it: exact standard output, standard error and exit code.

usage: hpgldump_test.py HPGLDUMP
"""
import os
import pathlib
import subprocess
import sys
import tempfile

PROGRAM = str(pathlib.Path(sys.argv[1]).resolve())
USAGE = """usage: hpgldump [--plotted [--page N]] [--chunk N] [--size WxH] [--rotate K] [--zoom X1,Y1,X2,Y2]...
                [--records] [--hex] [--picture] [--calls] FILE
"""
PICTURE = """file -
info 0
extents 0 0 3 4
palette 0 255 255 255
palette 1 0 0 0
palette 2 0 255 0
pen 0 255 255 255 0
pen 1 0 0 0 1
"""
HEX = "block 0 12\nhex 14020300000004000000" + "1300\n"
CALLS = """scaling 496 496 496 4 3 4
OUTlinecolour 1
OUTfillcolour 1
OUTline 126 2 498 498
"""
RECORDS = "rec 0 0 20 PD 2 3 4\nrec 0 10 19 PA 0\n"
PLAIN = "IN;SP1;PU0,0;PD3,4;"
PLAIN_RECORDS = "rec 0 0 5 IN 0\nrec 0 2 61 SP 1 1\nrec 0 6 23 PU 2 0 0\nrec 0 16 20 PD 2 3 4\n"


def wrong(problem):
    return 2, "", f"hpgldump: {problem}\n{USAGE}"


# name, arguments, (exit code, standard output, standard error)
ROWS = [
    ("all sections but the records", ["t.plt"], (0, HEX + PICTURE + CALLS, "")),
    ("one section", ["--picture", "t.plt"], (0, PICTURE, "")),
    ("order is fixed", ["--records", "--calls", "--hex", "t.plt"], (0, HEX + CALLS + RECORDS, "")),
    ("options behind the file", ["t.plt", "--records"], (0, RECORDS, "")),
    ("smallest chunk", ["--chunk", "1", "--hex", "t.plt"], (0, HEX, "")),
    ("largest chunk", ["--chunk", "2147483647", "--hex", "t.plt"], (0, HEX, "")),
    ("empty file", ["--hex", "empty.plt"], (0, "block 0 0\nhex\n", "")),
    ("negative zoom corner", ["--records", "--zoom", "-5,-6,-7,-8", "t.plt"], (0, RECORDS, "")),
    ("a plain file plotted", ["--plotted", "--records", "plain.plt"], (0, PLAIN_RECORDS, "")),
    ("a page plotted", ["--plotted", "--page", "2", "--records", "pages.plt"],
     (0, PLAIN_RECORDS.replace("3 4", "40960 0"), "")),
    ("the first page plotted", ["--plotted", "--records", "pages.plt"],
     (0, PLAIN_RECORDS.replace("3 4", "12288 16384"), "")),
    ("a page of a plain file", ["--plotted", "--page", "2", "plain.plt"],
     (1, "", "hpgldump: plain.plt has no page 2, the last is 1\n")),
    ("a page too many", ["--plotted", "--page", "3", "pages.plt"],
     (1, "", "hpgldump: pages.plt has no page 3, the last is 2\n")),
    ("a page without the plotter", ["--page", "2", "pages.plt"], wrong("--page goes with --plotted")),
    ("page 0", ["--plotted", "--page", "0", "pages.plt"], wrong("wrong value behind --page: 0")),
    ("no such file", ["missing.plt"], (1, "", "hpgldump: cannot read missing.plt\n")),
    ("a folder", ["."], (1, "", "hpgldump: cannot read .\n")),
    ("no file", [], wrong("no file")),
    ("two files", ["t.plt", "empty.plt"], wrong("more than one file: empty.plt")),
    ("unknown option", ["--all", "t.plt"], wrong("unknown option --all")),
    ("a single minus sign", ["-"], wrong("unknown option -")),
    ("chunk of 0", ["--chunk", "0", "t.plt"], wrong("wrong value behind --chunk: 0")),
    ("chunk too large", ["--chunk", "2147483648", "t.plt"], wrong("wrong value behind --chunk: 2147483648")),
    ("chunk with a tail", ["--chunk", "12x", "t.plt"], wrong("wrong value behind --chunk: 12x")),
    ("chunk without a number", ["t.plt", "--chunk"], wrong("a value is missing behind --chunk")),
    ("size with one number", ["--size", "500", "t.plt"], wrong("wrong value behind --size: 500")),
    ("negative size", ["--size", "-1x5", "t.plt"], wrong("wrong value behind --size: -1x5")),
    ("negative rotation", ["--rotate", "-1", "t.plt"], wrong("wrong value behind --rotate: -1")),
    ("zoom with three numbers", ["--zoom", "1,2,3", "t.plt"], wrong("wrong value behind --zoom: 1,2,3")),
    ("empty value", ["--size", "", "t.plt"], wrong("wrong value behind --size: ")),
]


def run(arguments, folder, environment=None):
    done = subprocess.run([PROGRAM, *arguments], cwd=folder, capture_output=True, check=False,
                          env={**os.environ, **(environment or {})})
    return done.returncode, done.stdout.decode(), done.stderr.decode()


def check(name, expected, actual):
    if expected == actual:
        return True
    print(f"FAILED {name}\n  expected {expected}\n  actual   {actual}")
    return False


def check_rows(folder):
    return [check(name, expected, run(arguments, folder)) for name, arguments, expected in ROWS]


def check_trace(folder):
    """The trace's environment variables are honoured; without them no file appears."""
    run(["t.plt"], folder)
    quiet = sorted(path.name for path in folder.iterdir())
    window = run(["--picture", "t.plt"], folder, {"KELGTRACE": "3", "KELGTRACE_WINHT": "100"})
    run(["t.plt"], folder, {"DGTRACE": "2"})
    logs = sorted(path.name for path in folder.glob("*.log"))
    text = (folder / "dev_hp00.log").read_bytes() if logs else b""
    return [
        check("no trace file without being asked for", ["empty.plt", "pages.plt", "plain.plt", "t.plt"], quiet),
        check("trace window", (0, PICTURE, ""), window),
        check("trace file", ["dev_hp00.log"], logs),
        check("trace line", True, b"HPGL-Viewer started\r\n" in text),
        check("trace of the zoom stack", True, b"Zoom Stack successfully initialized: 0 0 3 4\r\n" in text),
    ]


def main():
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        (folder / "t.plt").write_text("PD3,4;PA")
        (folder / "empty.plt").write_text("")
        (folder / "plain.plt").write_text(PLAIN)
        (folder / "pages.plt").write_text(PLAIN + "PG;PU0,0;PD10,0;")
        results = check_rows(folder) + check_trace(folder)
    print(f"{results.count(True)} passed, {results.count(False)} failed")
    return 0 if all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
