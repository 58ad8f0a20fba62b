#!/usr/bin/env python3
"""Attacks the viewer, by repeatable chance, and keeps what it found.

usage: attack.py BUILD [MINUTES] [--seed N] [--case ROW/NUMBER]

BUILD is the folder of a build with sanitizers; what is found goes to BUILD/findings: a folder for each, in which
finding.txt says what was done. --case runs one case again, with the seed that finding.txt names.
"""
import argparse
import multiprocessing
import os
import pathlib
import queue
import shutil
import signal
import sys
import time
import traceback

import hosts
import kills
import limits
import plots
from case import SHOWN_BYTES, Case, Finding, Skipped
from desktop import Desktop  # viewers says where it is

# With the part of the time that each has.
KINDS = ((plots.ROWS, 0.35), (hosts.ROWS, 0.25), (kills.ROWS, 0.2), (limits.ROWS, 0.2))
MOST_KEPT = 20  # findings of a row; the others are counted


class Worker:
    """One of several that share the cases; it has a desktop when it needs one."""

    def __init__(self, build, seed, number=0, workers=1):
        self.build, self.seed = build, seed
        self.number, self.workers = number, workers
        self.desktops = []

    def desktop(self):
        if not self.desktops:
            self.desktops.append(Desktop().__enter__())
        return self.desktops[0]

    def end(self):
        for desktop in self.desktops:
            desktop.__exit__(None, None, None)

    def run(self, row, attack, number):
        """Answers what became of the case, and more about it in words."""
        with Case(self, row, number) as case:
            try:
                try:
                    attack(case)
                finally:
                    left = case.end_all()
                if left:
                    raise Finding(f"processes are left: {left}")
            except Skipped as reason:
                return "skipped", str(reason)
            except Finding as finding:
                return "found", keep(case, str(finding))
            except Exception as problem:  # also what the suite did not expect is a finding
                case.note(traceback.format_exc())
                return "found", keep(case, f"{type(problem).__name__}: {problem}")
        return "sound", ""

    def run_for(self, seconds, results):
        """All kinds, each its part of the time; the workers begin with different ones."""
        first = self.number * len(KINDS) // self.workers
        counts = {}
        end = time.monotonic()
        for rows, part in KINDS[first:] + KINDS[:first]:
            end += part * seconds
            self.run_kind(rows, end, counts, results)
        self.end()

    def run_kind(self, rows, end, counts, results):
        skipped = set()
        first = self.number * len(rows) // self.workers
        order = list(rows.items())[first:] + list(rows.items())[:first]
        while time.monotonic() < end and len(skipped) < len(rows):
            for row, attack in order:
                if row in skipped or time.monotonic() > end:
                    continue
                number = counts.get(row, self.number)
                counts[row] = number + self.workers
                result, text = self.run(row, attack, number)
                results.put((row, result, text))
                if result == "skipped":
                    skipped.add(row)


def file_name(row, number):
    return "".join(letter if letter.isalnum() else "_" for letter in row) + f"-{number}"


def keep(case, text):
    """Answers the finding's headline; the case's folder becomes the finding's, unless there are many of the row."""
    folder = case.worker.build / "findings"
    folder.mkdir(exist_ok=True)
    name = file_name(case.row, case.number)
    if len(list(folder.glob(name.rpartition("-")[0] + "-*"))) >= MOST_KEPT:
        return text
    said = [f"{watched.name} says:\n{watched.error_text()[-SHOWN_BYTES:]}" for watched in case.started
            if watched.error_text()]
    reports = [file.read_text(encoding="utf-8", errors="replace")[:4 * SHOWN_BYTES]
               for file in case.folder.glob("report.*")]
    again = f"./attack --seed {case.worker.seed} --case '{case.row}/{case.number}'"
    lines = [text, "", f"Again: {again}", f"The folder was {case.folder}; its programs ran in it, with ASAN_OPTIONS="
             f"{case.environment['ASAN_OPTIONS']}", "", *case.notes, "", *said, *reports]
    (case.folder / "finding.txt").write_text("\n".join(lines), encoding="utf-8", errors="replace")
    shutil.rmtree(folder / name, ignore_errors=True)
    for file in [*case.folder.rglob("*")]:
        if file.is_socket() or file.is_fifo():
            file.unlink()
    shutil.copytree(case.folder, folder / name, symlinks=True, ignore_dangling_symlinks=True)
    return f"{text} ({name}/finding.txt)"


def attacks():
    return {row: attack for rows, _ in KINDS for row, attack in rows.items()}


def run_all(build, seed, seconds):
    """Answers whether nothing was found."""
    workers = os.cpu_count()
    results = multiprocessing.Queue()
    running = [multiprocessing.Process(target=Worker(build, seed, number, workers).run_for, args=(seconds, results))
               for number in range(workers)]
    for worker in running:
        worker.start()
    outcomes = []
    while any(worker.is_alive() for worker in running) or not results.empty():
        try:
            outcomes.append(results.get(timeout=1))
        except queue.Empty:
            continue
        show(*outcomes[-1])
    for worker in running:
        worker.join()
    return table(outcomes) and all(worker.exitcode == 0 for worker in running)


def show(row, result, text):
    if result == "found":
        print(f"{row}: {text}", flush=True)


def table(outcomes):
    """Answers whether there is no finding."""
    print(f"{'row':<30} {'tried':>7} {'findings':>9}")
    for row in attacks():
        results = [result for its_row, result, _ in outcomes if its_row == row]
        reasons = {f"  skipped: {text}" for its_row, result, text in outcomes if its_row == row and result == "skipped"}
        tried = len(results) - results.count("skipped")
        print(f"{row:<30} {tried:>7} {results.count('found'):>9}{''.join(sorted(reasons))}")
    return all(result != "found" for _, result, _ in outcomes)


def run_one(build, seed, case):
    row, _, number = case.rpartition("/")
    if row not in attacks() or not number.isdigit():
        sys.exit(f"there is no case {case}; the rows are: {', '.join(attacks())}")
    worker = Worker(build, seed)
    result, text = worker.run(row, attacks()[row], int(number))
    worker.end()
    print(f"{case}: {result} {text}".rstrip())
    return result != "found"


def main():
    words = argparse.ArgumentParser(usage=__doc__)
    words.add_argument("build", type=pathlib.Path)
    words.add_argument("minutes", type=float, nargs="?", default=10)
    words.add_argument("--seed", type=int, default=time.time_ns() // 1_000_000 % 1_000_000_000)
    words.add_argument("--case")
    chosen = words.parse_args()
    signal.signal(signal.SIGHUP, signal.SIG_DFL)  # for the programs, also where hang-ups are ignored
    print(f"seed {chosen.seed}", flush=True)
    build = chosen.build.resolve()
    if chosen.case:
        sound = run_one(build, chosen.seed, chosen.case)
    else:
        shutil.rmtree(build / "findings", ignore_errors=True)
        sound = run_all(build, chosen.seed, 60 * chosen.minutes)
    sys.exit(0 if sound else 1)


if __name__ == "__main__":
    main()
