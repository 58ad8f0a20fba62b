"""What the whole viewer costs, from the opened file to the written picture, without a display.

usage: whole_process.py [--build DIR] [--runs N] [--large]
       whole_process.py [--build DIR] [--runs N] --rows [WORD ...]

Prints a Markdown table of wall time, user time and peak memory, the median of N runs (5) each: of an empty plot and of
plots of 10,000 to 10 million short segments, as the window's picture and printed as a page. --large adds a plot of 1 GB, run once. DIR is where viewer and plot_file
were built (../build/bench, by ../bench). No plotter stands in between. --rows prints, one JSON object a line, what ../bench wants: the same times,
the memory that a loaded plot holds for good, what printing costs beside its bounds; only rows whose names contain one of the words, when there are any.
"""

import argparse
import json
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
SEGMENTS = (10_000, 100_000, 1_000_000, 10_000_000)
SIZE = "1600x1000"
MB = 1_000_000
LARGE = 1000 * MB
SEGMENT_BYTES = 8  # of compact code, at least
MEMORY_BOUND = 1.2  # of the compact code
FORMS = "picture", "png", "pdf", "svg"  # of the window; of a page
PDF_BOUND = 3.0  # of the time of a PNG
PDF_BYTES_BOUND = 12.0  # a segment
ONE_CALL_BOUND = 0.1  # of the time of single calls
FILES = 1000
SMALL_PLOT = "IN;SP1;PU0,0;PD4000,0,4000,3000,0,3000,0,0;SP2;PU500,500;PD3500,2500;PU1000,1000;LBsmall\3;"
QUIET = 1.0  # seconds without work after which the viewer is taken to have finished


class Cost:
    def __init__(self, wall, usage):
        self.wall, self.user, self.peak = wall, usage.ru_utime, usage.ru_maxrss * 1024


def median(costs, figure):
    return statistics.median(getattr(cost, figure) for cost in costs)


def viewer_of(build):
    return build / "src" / "kelhpgl"


def offscreen():
    return {**os.environ, "QT_QPA_PLATFORM": "offscreen"}


def start(arguments):
    return subprocess.Popen(arguments, stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=offscreen())


def run_once(command, output):
    output.unlink(missing_ok=True)
    begin = time.perf_counter()
    process = start(command)
    _, status, usage = os.wait4(process.pid, 0)
    wall = time.perf_counter() - begin
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0 or output.stat().st_size == 0:
        sys.exit(f"{command} did not write {output}")
    return Cost(wall, usage)


def run(viewer, plot, folder, runs, form="picture"):
    """form: the window's picture, or a page as png, pdf or svg."""
    output = folder / f"output.{form}"
    how = ["--picture", output, "--size", SIZE] if form == "picture" else ["--print-to", output, "--landscape"]
    return [run_once([viewer, "--as-is", *how, plot], output) for _ in range(runs)]


# ---- plots ----------------------------------------------------------------------------------------------------------


def write_plot(build, plot, kind, size):
    with plot.open("wb") as to:
        subprocess.run([build / "benchmarks" / "plot_file", kind, str(size)], stdout=to, check=True)


def plots(build, folder, large):
    """Name and file of each plot; a file lasts until the next is asked for."""
    plot = folder / "plot.plt"
    plot.write_bytes(b"IN;")
    yield "an empty plot", plot
    for segments in SEGMENTS:
        write_plot(build, plot, "segments", segments)
        yield f"{segments:,} segments", plot
    if large:
        write_plot(build, plot, "bytes", LARGE)
        yield "1 GB of pen moves", plot


# ---- memory that stays ----------------------------------------------------------------------------------------------


def processor_time(pid):
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
    return int(fields[11]) + int(fields[12])


def resident(pid):
    for line in pathlib.Path(f"/proc/{pid}/status").read_text().splitlines():
        if line.startswith("VmRSS:"):
            return int(line.split()[1]) * 1024
    return 0


def resident_when_quiet(viewer, plots_to_open):
    process = start([viewer, "--as-is", *plots_to_open])
    before = -1
    while (now := processor_time(process.pid)) != before:
        before = now
        time.sleep(QUIET)
    bytes_held = resident(process.pid)
    process.terminate()
    process.wait()
    return bytes_held


def compact_bytes(hpgldump, plot):
    """The sum of the occupied bytes of all blocks."""
    with subprocess.Popen([hpgldump, "--hex", plot], stdout=subprocess.PIPE) as dump:
        return sum(int(line.split()[2]) for line in dump.stdout if line.startswith(b"block"))


def memory_row(name, build, folder):
    plot = folder / "plot.plt"
    write_plot(build, plot, "segments", SEGMENTS[-1])
    viewer = viewer_of(build)
    held = resident_when_quiet(viewer, [plot]) - resident_when_quiet(viewer, [])
    compact = compact_bytes(build / "tools" / "hpgldump", plot)
    if compact < SEGMENTS[-1] * SEGMENT_BYTES:
        return {"row": name, "problem": f"only {compact} bytes of compact code", "ok": False}
    return bound_row(name, "MB", held / MB, compact / MB, "compact code", MEMORY_BOUND)


# ---- pages ----------------------------------------------------------------------------------------------------------


def bound_row(name, unit, ours, yardstick, of, bound):
    ratio = ours / yardstick
    return {"row": name, "unit": unit, "ours": ours, "yardstick": yardstick, "of": of, "ratio": ratio, "bound": bound,
            "ok": ratio <= bound}


def page_rows(build, folder, runs):
    """Of a million segments: the time of a PDF beside that of a PNG, and its bytes a segment."""
    plot = folder / "plot.plt"
    segments = 1_000_000
    write_plot(build, plot, "segments", segments)
    png, pdf = (median(run(viewer_of(build), plot, folder, runs, form), "wall") * 1000 for form in ("png", "pdf"))
    yield bound_row("page of 1 million segments, PDF", "ms", pdf, png, "PNG", PDF_BOUND)
    size = (folder / "output.pdf").stat().st_size
    yield bound_row("PDF of 1 million segments", "bytes", size, segments, "segments", PDF_BYTES_BOUND)


def many_files_row(build, folder):
    """Small files in one call, beside a call for each."""
    files = [folder / f"small{i}.plt" for i in range(FILES)]
    for file in files:
        file.write_text(SMALL_PLOT)
    pattern = folder / "%n.pdf"
    one = run_once([viewer_of(build), "--as-is", "--print-to", pattern, *files], files[-1].with_suffix(".pdf")).wall
    many = sum(run_once([viewer_of(build), "--as-is", "--print-to", pattern, file], file.with_suffix(".pdf")).wall
               for file in files)
    return bound_row(f"{FILES} files printed in one call", "ms", one * 1000, many * 1000, "a call for each",
                     ONE_CALL_BOUND)


# ---- output ---------------------------------------------------------------------------------------------------------


def print_table(build, runs, large):
    print("| plot | size, MB | to | wall, s | user, s | peak memory, MB |\n|---|---:|---|---:|---:|---:|")
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        for plot_name, plot in plots(build, folder, large):
            size = plot.stat().st_size
            for form in FORMS:
                costs = run(viewer_of(build), plot, folder, runs if size < LARGE else 1, form)
                wall, user, peak = (median(costs, figure) for figure in ("wall", "user", "peak"))
                print(f"| {plot_name} | {size / MB:.2f} | {form} | {wall:.3f} | {user:.3f} | {peak / MB:.0f} |",
                      flush=True)


def print_row(row):
    print(json.dumps(row), flush=True)


def print_rows(build, runs, words):
    memory, whole = "memory of 10 million segments, loaded", "opened to written picture"

    def wanted(row):
        return not words or any(word in row for word in words)

    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        if wanted(memory):
            print_row(memory_row(memory, build, folder))
        if wanted("page PDF"):
            for row in page_rows(build, folder, runs):
                print_row(row)
        if wanted("files printed in one call"):
            print_row(many_files_row(build, folder))
        if not wanted(whole):
            return
        for plot_name, plot in plots(build, folder, False):
            wall = median(run(viewer_of(build), plot, folder, runs), "wall")
            print_row({"row": f"{whole}, {plot_name}", "unit": "ms", "ours": wall * 1000, "ok": True})


def main():
    parser = argparse.ArgumentParser(usage=__doc__.split("\n\n")[1].replace("usage: ", ""))
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build" / "bench")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--large", action="store_true")
    parser.add_argument("--rows", action="store_true")
    parser.add_argument("words", nargs="*")
    options = parser.parse_args()
    if options.rows:
        print_rows(options.build, options.runs, options.words)
    else:
        print_table(options.build, options.runs, options.large)


main()
