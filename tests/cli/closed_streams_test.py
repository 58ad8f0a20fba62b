#!/usr/bin/env python3
"""Programs that are started with closed standard streams: no file and no connection gets the numbers of those.

usage: closed_streams_test.py PROGRAM...
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import time

PATIENCE = 60  # seconds; a loaded machine is slow
CLOSED = "<&-", ">&-", "2>&-", "<&- >&- 2>&-"
ARGUMENTS = {"kelhpgl": ["--print-to", "out.pdf"], "hpglplain": ["-o", "out.plt"]}


def targets(process):
    """What the standard streams lead to, as far as they are open."""
    found = {}
    for number in range(3):
        try:
            found[number] = os.readlink(f"/proc/{process.pid}/fd/{number}")
        except FileNotFoundError:
            pass
    return found


def check(program, closed):
    """The program reads from a pipe into which nobody writes, so that it can be looked at."""
    gone = [number for number, word in enumerate(CLOSED[:3]) if word in closed.split()]
    expected = {number: "/dev/null" for number in gone}
    with tempfile.TemporaryDirectory() as folder:
        pipe = pathlib.Path(folder).resolve() / "pipe"
        os.mkfifo(pipe)
        words = [program, *ARGUMENTS.get(program.name, []), pipe]
        kept = os.open(pipe, os.O_RDWR)
        with subprocess.Popen(["sh", "-c", f'exec "$@" {closed}', "sh", *words], cwd=folder, stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            end = time.monotonic() + PATIENCE
            while not has_open(process, pipe) and process.poll() is None and time.monotonic() < end:
                time.sleep(0.02)
            found = {number: target for number, target in targets(process).items() if number in gone}
            process.kill()
        os.close(kept)
    if found == expected:
        return True
    print(f"FAILED {program.name} {closed}: {found}")
    return False


def has_open(process, file):
    try:
        return any(os.readlink(link) == str(file) for link in pathlib.Path(f"/proc/{process.pid}/fd").iterdir())
    except FileNotFoundError:  # one that is closed meanwhile
        return False


def main():
    results = [check(pathlib.Path(program).resolve(), closed) for program in sys.argv[1:] for closed in CLOSED]
    print(f"{results.count(True)} passed, {results.count(False)} failed")
    return 0 if results and all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
