"""Little of everything: descriptors, standard streams, file sizes, memory, room on disks."""
import contextlib
import os
import pathlib
import re
import shutil
import signal
import subprocess
import time

import mutations
import pages
import viewers
from case import Finding, Skipped, Watched
from hosts import EARLY

FOR_ONE_HOST = 30  # descriptors
OLD = b"what was there before"
DISK_SCRIPT = """
mount -t tmpfs -o "size=$1,nr_inodes=$2" none disk && cp -a old/. disk || exit 77
[ "$3" = rw ] || mount -o remount,ro disk || exit 77
shift 3
"$@" <&0 &
trap 'kill $!' TERM
wait $!
code=$?
if kill -0 $! 2>/dev/null; then wait $!; code=$?; fi  # the signal has ended the first wait
cp -a disk/. kept && exit $code"""
GROUPS = pathlib.Path("/sys/fs/cgroup")


def jobs(case, folder="out"):
    """What is run under limits: its command and the names of what it makes, of which some are there before."""
    name = case.dice.choice(("out.pdf", "out.svg", "out.png", "picture.png", "plain.plt", "dump"))
    (case.folder / "plot.plt").write_bytes(mutations.honest_plot(case.dice))
    target = f"{folder}/{name}"
    if name == "dump":
        return [case.program("hpgldump"), "plot.plt"], None
    if name == "plain.plt":
        return [case.program("hpglplain"), "-o", target, "plot.plt"], name
    if name == "picture.png":
        return [case.program("kelhpgl"), "--picture", target, "plot.plt"], name
    return [case.program("kelhpgl"), "--print-to", target, "--dpi", "72", "plot.plt"], name


def prepare(case, folder, name):
    """Answers what the folder held before."""
    folder.mkdir()
    if name is None or case.dice.random() < 0.5:
        return {}
    (folder / name).write_bytes(OLD)
    return {name: OLD}


def expect_result(folder, name, old, code):
    """A file where all went well; else what was there before."""
    if code == 0 and name and not (folder / name).exists():
        raise Finding(f"all went well, but there is no {name}")
    if code == 0 and name in old and (folder / name).read_bytes() == OLD:
        raise Finding(f"all went well, but {name} is the old one")
    if code != 0 and name and (folder / name).exists() and (folder / name).read_bytes() != old.get(name):
        raise Finding(f"a new {name}, but the exit code is {code}")
    pages.expect_whole_or_old(folder, old)


def run_limited(case, *wrapper, codes=(0, 1), words=True, **options):
    command, name = jobs(case)
    old = prepare(case, case.folder / "out", name)
    program = Watched(case, [*wrapper, *command], **options)
    code = program.finish(codes, words)
    expect_result(case.folder / "out", name, old, code)


def descriptors(case):
    """Fewer than the loader needs are nobody's fault."""
    most = case.dice.randrange(3, 30)
    run_limited(case, "prlimit", f"--nofile={most}:{most}", codes=(0, 1, 127))


def descriptors_of_a_window(case):
    """Which must serve or end; hosts come until there are none left."""
    most = case.dice.randrange(8, 60)
    viewer = viewers.start(case, "--channel", viewers.CHANNEL, wrapper=["prlimit", f"--nofile={most}:{most}"])
    viewers.wait_until(lambda: viewer.process.poll() is not None or viewer.error_text() or viewers.path(case).exists(),
                       viewers.ANSWER)
    if not viewers.path(case).exists():  # it ends, or a box says what is wrong
        viewer.terminate((*EARLY, 1, 127))
        return
    several = [viewers.try_to_connect(case) for _ in range(80)]
    with contextlib.suppress(OSError):
        for one in filter(None, several):
            one.kept.settimeout(1)
            one.send(viewers.host.picture(b"IN;SP1;PU0,0;PD10,10;"))
    viewer.expect_idle()
    for one in filter(None, several):
        one.kept.close()
    viewer.expect_alive()
    expect_shown_in_the_end(case, viewer, most)
    viewer.expect_idle()
    viewer.terminate()


def expect_shown_in_the_end(case, viewer, most):
    """As soon as it has heard that the others have gone. With few descriptors it lets nobody in, and says so."""
    until = time.monotonic() + viewers.patience(viewers.ANSWER)
    while True:
        try:
            viewers.expect_shown(case, viewer)
            return
        except Finding:
            viewer.expect_alive()
            if most < FOR_ONE_HOST and "too few descriptors" in viewer.error_text():
                return
            if time.monotonic() > until:
                raise
            time.sleep(0.2)


def streams(case):
    """Closed from the start, as some programs leave them, or such that take nothing."""
    how = [case.dice.choice((f"{stream}&-", f"{stream}/dev/null", f"{stream}/dev/full", ""))
           for stream in ("0<", "1>", "2>")]
    run_limited(case, "sh", "-c", f'exec "$@" {" ".join(how)}', "sh", words=not how[2])


def streams_of_a_window(case):
    """Its own descriptors then have the streams' numbers."""
    how = " ".join(word for word in ("0<&-", "1>&-", "2>&-") if case.dice.random() < 0.6)
    viewer = viewers.listening(case, wrapper=["sh", "-c", f'exec "$@" {how}', "sh"])
    viewers.expect_shown(case, viewer, mutations.honest_plot(case.dice))
    viewer.expect_idle()
    viewer.terminate(EARLY)


def file_size(case):
    """The signal that comes with it ends a program that does not ignore it."""
    most = case.dice.choice((0, 1, 100, 4096, 20_000))
    said = most >= 100  # what is said goes into a file, too
    run_limited(case, "prlimit", f"--fsize={most}", codes=(0, 1, -signal.SIGXFSZ), words=said)


def little_memory(case):
    """In a control group: the system may kill it, and then there is no half file."""
    with memory_group(case) as (group, limit):
        limit.write_text(str(case.dice.choice((30, 60, 100, 150, 250)) << 20), encoding="ascii")
        run_limited(case, "sh", "-c", f'echo $$ >{group}/cgroup.procs && exec "$@"', "sh",
                    codes=(0, 1, -signal.SIGKILL))


@contextlib.contextmanager
def memory_group(case):
    """Its folder and the file of its limit."""
    first_version = (GROUPS / "memory").is_dir()
    parent, name = (GROUPS / "memory", "memory.limit_in_bytes") if first_version else (GROUPS, "memory.max")
    group = parent / case.folder.name
    try:
        group.mkdir()
    except OSError as problem:
        raise Skipped(f"no control group can be made: {problem.strerror}") from problem
    try:
        if not os.access(group / name, os.W_OK):
            raise Skipped("control groups have no limit for memory here")
        yield group, group / name
    finally:
        case.end_all()
        viewers.wait_until(lambda: not (group / "cgroup.procs").read_text(encoding="ascii"), 5)
        group.rmdir()


# ---- disks, in a name space of the user's own -----------------------------------------------------------------------

def on_a_disk(case, command, old, *, size="100%", inodes="0", mode="rw", settings=None, **options):
    """Starts a command in whose folder `disk` a small one is mounted; afterwards `kept` holds what is on it."""
    expect_name_spaces(case)
    for name in "disk", "kept", "old":
        (case.folder / name).mkdir(exist_ok=True)
    for name, content in old.items():
        (case.folder / "old" / name).write_bytes(content)
    return Watched(case, ["unshare", "-Urm", "sh", "-c", DISK_SCRIPT, "sh", size, inodes, mode, *command],
                   settings=settings, **options)


def expect_name_spaces(case):
    tried = subprocess.run(["unshare", "-Urm", "mount", "-t", "tmpfs", "none", case.folder / "tmp"],
                           capture_output=True, check=False)
    if tried.returncode != 0:
        raise Skipped("no name space with a disk: " + tried.stderr.decode("utf-8", "replace").strip())


def expect_disk(case, name, old, code):
    kept = case.folder / "kept"
    expect_result(kept, name, old, code)
    shutil.rmtree(kept)


def disk(**limits):
    def attack(case):
        command, name = jobs(case, "disk")
        old = {"other.plt": OLD}
        if name and case.dice.random() < 0.5:
            old[name] = OLD
        chosen = {key: choose(case.dice) for key, choose in limits.items()}
        code = on_a_disk(case, command, old, **chosen).finish()
        if chosen.get("mode") == "ro" and name and code == 0:
            raise Finding("all went well on a disk that nobody can write on")
        expect_disk(case, name, old, code)
    return attack


def full_temporary(case):
    """More than waits in memory comes through standard input, and the disk for it is full."""
    plot = case.folder / "large.plt"
    plot.write_bytes(b"IN;SP1;PU0,0;PD4000,3000;" + b";" * case.dice.randrange(15_000_000, 20_000_000))
    command = [case.program("kelhpgl"), "--as-is", "--print-to", "out/out.svg", "-"]
    out = case.folder / "out"
    old = prepare(case, out, "out.svg")
    with open(plot, "rb") as stream:
        code = on_a_disk(case, command, {}, size=too_little(case.dice), settings={"TMPDIR": str(case.folder / "disk")},
                         stdin=stream).finish()
    expect_result(out, "out.svg", old, code)
    if left := list((case.folder / "kept").iterdir()):
        raise Finding(f"left in TMPDIR: {[file.name for file in left]}")


def full_temporary_of_a_window(case):
    """A host is told, or shown; others are served."""
    command = [case.program("kelhpgl"), "--channel", viewers.CHANNEL]
    settings = {"DISPLAY": case.worker.desktop().display, "TMPDIR": str(case.folder / "disk")}
    viewer = on_a_disk(case, command, {}, size=too_little(case.dice), settings=settings, seconds=viewers.LIFE)
    with viewers.connect(case, viewer) as large:
        large.kept.settimeout(viewers.patience(viewers.ANSWER))
        with contextlib.suppress(OSError):
            large.kept.sendall(viewers.host.frame(viewers.host.BEGIN, b";" * 10_000_000) +
                               viewers.host.frame(viewers.host.END, b";" * 10_000_000))
        kinds = []
        while not kinds or kinds[-1] == viewers.host.ACCEPTED:
            given = viewers.answer(large)
            if given is None:
                raise Finding("the host of a large picture is left without an answer")
            kinds.append(given[0])
    viewers.expect_shown(case, viewer)
    viewer.terminate()
    if left := re.findall(r"\S+", " ".join(file.name for file in (case.folder / "kept").iterdir())):
        raise Finding(f"left in TMPDIR: {left}")


def too_little(dice):
    """For what is sent, mostly."""
    return f"{dice.randrange(4, 20_000)}k"


def few_pages(dice):
    """Room for what is there before, and little more."""
    return f"{dice.choice((12, 16, 40, 100, 400))}k"


ROWS = {"few descriptors": descriptors, "few descriptors, window": descriptors_of_a_window, "closed streams": streams,
        "closed streams, window": streams_of_a_window, "short files": file_size, "little memory": little_memory,
        "full TMPDIR": full_temporary, "full TMPDIR, window": full_temporary_of_a_window,
        "full disk": disk(size=few_pages), "read-only disk": disk(mode=lambda _: "ro"),
        "disk without room for names": disk(inodes=lambda dice: str(dice.randrange(3, 5)))}
