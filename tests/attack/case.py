"""What every attack has: chance that can be repeated, a folder of its own, and programs under limits."""
import contextlib
import os
import pathlib
import random
import shlex
import shutil
import signal
import subprocess
import tempfile
import threading
import time

MOST_SECONDS = 60.0  # of a program that is alone on the machine
MOST_RESIDENT = 2 << 30  # bytes of a program and all that it has started, with what the sanitizers take
ENDS_WITHIN = 4.0  # seconds from a signal: one or two, and as many for the sanitizers
RESTS_WITHIN = 30.0  # seconds
SANITIZER_SAID = 99  # exit code
MARK = "KEL_ATTACK_CASE"  # in the environment of every process that a case starts
SHOWN_BYTES = 4000  # of what a program has said


class Finding(Exception):
    """Something that must not be."""


class Skipped(Exception):
    """This machine does not allow it."""


def patience(seconds):
    """As much longer as the machine is loaded."""
    return seconds * max(1.0, os.getloadavg()[0] / os.cpu_count())


def wait_until(condition, seconds):
    """Whether it came true in time."""
    end = time.monotonic() + patience(seconds)
    while not condition():
        if time.monotonic() > end:
            return False
        time.sleep(0.02)
    return True


def statistics(pid):
    """The numbers of a process behind its name in /proc/PID/stat; none of one that has gone."""
    try:
        text = pathlib.Path(f"/proc/{pid}/stat").read_text(encoding="utf-8", errors="replace")
        return text.rpartition(")")[2].split()
    except (FileNotFoundError, ProcessLookupError):
        return []


def processes():
    return [int(name) for name in os.listdir("/proc") if name.isdigit()]


def resident(session):
    """Bytes of all processes of a session."""
    found = (statistics(pid) for pid in processes())
    return sum(int(words[21]) for words in found if words and int(words[3]) == session) * os.sysconf("SC_PAGE_SIZE")


def cpu_seconds(pid):
    words = statistics(pid)
    return (int(words[11]) + int(words[12])) / os.sysconf("SC_CLK_TCK") if words else 0.0


class Watched:
    """A program under limits; a thread looks at it until it ends."""

    def __init__(self, case, command, *, shown=None, settings=None, seconds=MOST_SECONDS, **options):
        """`shown` stands for the command in the finding."""
        self.case = case
        self.name = pathlib.Path(str((shown or command)[0])).name
        self.exceeded = None
        self.said = case.new_file(f"{self.name}.err")
        options = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, **options}
        case.note("run: " + " ".join([*(f"{key}={shlex.quote(value)}" for key, value in (settings or {}).items()),
                                      shlex.join(map(str, shown or command))]))
        with open(self.said, "wb") as said:
            self.process = subprocess.Popen(list(map(str, command)), cwd=case.folder, stderr=said,
                                            start_new_session=True,
                                            env={**case.environment, **(settings or {})}, **options)
        case.started.append(self)
        self.end = time.monotonic() + patience(seconds)
        self.watch = threading.Thread(target=self.look, daemon=True)
        self.watch.start()

    def look(self):
        while self.process.poll() is None and not self.exceeded:
            if (bytes_now := resident(self.process.pid)) > MOST_RESIDENT:
                self.exceeded = f"takes {bytes_now >> 20} MiB"
                self.kill()
            elif time.monotonic() > self.end:
                self.exceeded = "takes too long"
                self.kill(signal.SIGABRT)  # the sanitizer's report says where it is
                with contextlib.suppress(subprocess.TimeoutExpired):
                    self.process.wait(5)
                self.kill()
            else:
                time.sleep(0.05)

    def kill(self, number=signal.SIGKILL):
        with contextlib.suppress(ProcessLookupError):
            os.killpg(self.process.pid, number)

    def send(self, number):
        self.case.note(f"signal {signal.Signals(number).name} to {self.name}")
        with contextlib.suppress(ProcessLookupError):
            os.kill(self.process.pid, number)

    def error_text(self):
        return self.said.read_bytes().decode("utf-8", "replace")

    def expect_sound(self):
        """No limit was passed, and no sanitizer said anything."""
        if self.exceeded:
            raise Finding(f"{self.name} {self.exceeded}")
        if reports := sorted(self.case.folder.glob("report.*")):
            raise Finding(f"a sanitizer's report: {headline(reports[0].read_text(encoding='utf-8', errors='replace'))}")
        if "runtime error: " in self.error_text():  # of UndefinedBehaviorSanitizer, which knows no other place
            raise Finding(f"a sanitizer's report: {headline(self.error_text())}")

    def expect_alive(self):
        if self.process.poll() is not None:
            self.finish(())
        self.expect_sound()

    def finish(self, codes=(0, 1), words=True):
        """Waits for its end, and answers its exit code, which must be one of those; who fails must say why."""
        self.process.wait()
        self.watch.join()
        self.expect_sound()
        code = self.process.returncode
        if code not in codes:
            raise Finding(f"{self.name} ends with {code}")
        if words and code > 0 and not self.error_text().strip():
            raise Finding(f"{self.name} ends with {code} and says nothing")
        return code

    def terminate(self, codes=(0,), number=signal.SIGTERM, words=True):
        """Asks it to end, which it must do soon."""
        self.send(number)
        if not wait_until(lambda: self.process.poll() is not None, ENDS_WITHIN):
            self.exceeded = self.exceeded or f"does not end after {signal.Signals(number).name}"
            self.kill(signal.SIGABRT)
            wait_until(lambda: self.process.poll() is not None, 5)
            self.kill()
        return self.finish(codes, words)

    def expect_idle(self):
        """With nothing to do it does nothing, as soon as it has shown what hosts have left."""
        def rests():
            before = cpu_seconds(self.process.pid)
            time.sleep(0.5)
            return cpu_seconds(self.process.pid) - before < 0.2
        if not wait_until(rests, RESTS_WITHIN):
            self.expect_alive()
            raise Finding(f"{self.name} is busy with nothing to do")

    def sockets(self):
        """How many it has open."""
        links = pathlib.Path(f"/proc/{self.process.pid}/fd")
        return sum(target(link).startswith("socket:") for link in (links.iterdir() if links.exists() else ()))


def target(link):
    """Of a file that may be closed meanwhile."""
    try:
        return os.readlink(link)
    except OSError:
        return ""


class Case:
    """One try; a context manager. Its name and the seed make the same dice again."""

    def __init__(self, worker, row, number):
        self.worker = worker
        self.row = row
        self.number = number
        self.dice = random.Random(f"{worker.seed} {row} {number}")
        self.notes = []
        self.started = []

    def __enter__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="kel-attack-"))
        for name in "run", "tmp", "home":
            (self.folder / name).mkdir(mode=0o700)
        sanitizers = f"log_path={self.folder}/report:exitcode={SANITIZER_SAID}:print_stacktrace=1"
        kept = {key: value for key, value in os.environ.items()
                if key not in ("DISPLAY", "WAYLAND_DISPLAY", "LANGUAGE") and not key.startswith(("LC_", "KEL_"))}
        self.environment = {
            **kept, MARK: str(self.folder), "LC_ALL": "C.UTF-8", "KEL_CONFIG_DIR": "/nonexistent",
            "XDG_RUNTIME_DIR": str(self.folder / "run"), "TMPDIR": str(self.folder / "tmp"),
            "HOME": str(self.folder / "home"), "CUPS_SERVER": "/nonexistent", "UBSAN_OPTIONS": sanitizers,
            "ASAN_OPTIONS": f"{sanitizers}:detect_leaks=0:handle_abort=1:quarantine_size_mb=16"}
        return self

    def __exit__(self, *error):
        shutil.rmtree(self.folder, ignore_errors=True)

    def note(self, line):
        self.notes.append(line)

    def program(self, name):
        return self.worker.build / ("src" if name == "kelhpgl" else "tools") / name

    def new_file(self, name):
        """A name in the folder that is not taken."""
        names = [self.folder / f"{number or ''}{name}" for number in range(1000)]
        return next(file for file in names if not file.exists())

    def run(self, *command, codes=(0, 1), words=True, **options):
        return Watched(self, command, **options).finish(codes, words)

    def marked(self):
        """All processes of this case."""
        mark = f"{MARK}={self.folder}".encode()
        return [pid for pid in processes() if mark in environment_of(pid)]

    def end_all(self):
        """Ends what the case has left, and answers the processes that it does not know of."""
        for watched in self.started:
            watched.kill()
            watched.process.wait()
            watched.watch.join()
        if wait_until(lambda: not self.marked(), 1):
            return []
        left = self.marked()
        for pid in left:
            with contextlib.suppress(ProcessLookupError):
                os.kill(pid, signal.SIGKILL)
        return left


def environment_of(pid):
    try:
        return pathlib.Path(f"/proc/{pid}/environ").read_bytes().split(b"\0")
    except OSError:  # gone, or another user's
        return []


def headline(report):
    lines = report.splitlines() or ["empty"]
    return next((line for line in lines if "ERROR: " in line or "runtime error: " in line), lines[0]).strip()
