#!/usr/bin/env python3
"""hpglsend as a user calls it, with a viewer that is played: exact output, exit code and what the viewer is sent.

usage: hpglsend_test.py HPGLSEND
"""
import errno
import os
import pathlib
import resource
import signal
import socket
import subprocess
import sys
import tempfile
import time

from viewer_double import PAGE

PROGRAM = str(pathlib.Path(sys.argv[1]).resolve())
DOUBLE = str(pathlib.Path(__file__).resolve().with_name("viewer_double.py"))
PATIENCE = 60  # seconds; a loaded machine is slow
USAGE = ("usage: hpglsend [--channel NAME] [--viewer PROGRAM] [--wait SECONDS] [--no-start] [--as-is] [--receive FILE] "
         "[FILE...]\n")
PIECE = 65536
A, B = b"IN;SP1;PU0,0;PD3,4;", b"IN;SP1;PU0,0;PD5,6;"  # plain: they are sent as they are


def wrong(problem):
    return 2, "", f"hpglsend: {problem}\n{USAGE}"


class Place:
    """A folder with files, and the viewers that are started in it; a context manager."""

    def __enter__(self):
        self.scratch = tempfile.TemporaryDirectory()
        self.folder = pathlib.Path(self.scratch.name)
        (self.folder / "a.plt").write_bytes(A)
        (self.folder / "b.plt").write_bytes(B)
        (self.folder / "empty.plt").write_bytes(b"")
        (self.folder / "large.plt").write_bytes(bytes(range(256)) * 1024)
        self.log = self.folder / "log"
        self.pids = self.folder / "pids"
        self.environment = {**os.environ, "XDG_RUNTIME_DIR": str(self.folder), "DOUBLE_LOG": str(self.log),
                            "DOUBLE_STARTED": str(self.pids)}
        return self

    def __exit__(self, *error):
        for pid in self.started():
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
        self.scratch.cleanup()

    def call(self, *arguments, plays="", **others):
        return subprocess.Popen([PROGRAM, "--viewer", DOUBLE, *arguments], cwd=self.folder, stdin=subprocess.PIPE,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                env={**self.environment, "DOUBLE_PLAYS": plays}, **others)

    def run(self, *arguments, plays="", stdin=b"", **others):
        return result(self.call(*arguments, plays=plays, **others), stdin)

    def started(self):
        return [int(line) for line in self.pids.read_text().split()] if self.pids.exists() else []

    def sent(self):
        """Of each transmission the sizes of the frames and the bytes."""
        lines = self.log.read_text().splitlines() if self.log.exists() else []
        words = [line.rsplit(" ", 1) for line in lines]
        return [([int(size) for size in sizes.strip("[]").split(",")], bytes.fromhex(data)) for sizes, data in words]


def result(process, stdin=b""):
    out, err = process.communicate(stdin, timeout=PATIENCE)
    return process.returncode, out.decode(), err.decode()


def expect(expected, actual):
    assert expected == actual, f"\n  expected {expected}\n  actual   {actual}"


# arguments, (exit code, standard output, standard error); no viewer is started
ROWS = [
    (["--all"], wrong("unknown option --all")),
    (["-c", "x"], wrong("unknown option -c")),
    (["a.plt", "--channel"], wrong("a value is missing behind --channel")),
    (["--channel", ""], wrong("wrong value behind --channel: ")),
    (["--channel", "a/b"], wrong("wrong value behind --channel: a/b")),
    (["--channel", ".a"], wrong("wrong value behind --channel: .a")),
    (["--viewer", ""], wrong("wrong value behind --viewer: ")),
    (["--wait", "-1"], wrong("wrong value behind --wait: -1")),
    (["--wait", "86401"], wrong("wrong value behind --wait: 86401")),
    (["--wait", "1s"], wrong("wrong value behind --wait: 1s")),
    (["--wait", ""], wrong("wrong value behind --wait: ")),
    (["--receive", ""], wrong("wrong value behind --receive: ")),
    (["--receive", "-"], wrong("wrong value behind --receive: -")),
    (["a.plt", "--receive"], wrong("a value is missing behind --receive")),
    (["missing.plt"], (1, "missing.plt: cannot read: No such file or directory\n", "")),
    (["."], (1, ".: cannot read: Is a directory\n", "")),
    (["--", "-", "--help"], (1, "./-: cannot read: No such file or directory\n"
                                "--help: cannot read: No such file or directory\n", "")),
    (["--receive", "no/out.pdf", "a.plt"], (4, "no/out.pdf: cannot write: No such file or directory\n", "")),
    (["--receive", "new/", "a.plt"], (4, "new/: cannot write: No such file or directory\n", "")),
    (["--receive", "b.plt/out.pdf", "a.plt"], (4, "b.plt/out.pdf: cannot write: Not a directory\n", "")),
    (["--receive", ".", "a.plt"], (4, ".: cannot write: Is a directory\n", "")),
    (["--receive", "/dev/full", "a.plt"], (4, "/dev/full: cannot write: Not an ordinary file\n", "")),
    (["--receive", "x" * 256, "a.plt"], (4, f"{'x' * 256}: cannot write: File name too long\n", "")),
    (["--receive", "out.pdf", "no.plt"], (1, "no.plt: cannot read: No such file or directory\n"
                                             "out.pdf: not received: not all files are shown\n", "")),
]


def answers_without_a_viewer(place):
    for arguments, expected in ROWS:
        expect(expected, place.run(*arguments))
    expect([], place.started())


def tells_how_to_call_it(place):
    code, out, err = place.run("--help")
    expect((0, ""), (code, err))
    assert out.startswith(USAGE) and "--no-start" in out.removeprefix(USAGE), out


def starts_a_viewer_and_sends(place):
    expect((0, "a.plt: shown\n", ""), place.run("a.plt"))
    expect([([0, len(A), 0], A)], place.sent())
    expect(1, len(place.started()))


def sends_several_to_the_one_that_runs(place):
    place.run("a.plt")
    expect((0, "b.plt: shown\nempty.plt: shown\na.plt: shown\n", ""), place.run("b.plt", "empty.plt", "a.plt"))
    expect([A, B, b"", A], [data for _, data in place.sent()])
    expect([0, 0], place.sent()[2][0])
    expect(1, len(place.started()))


def another_channel_is_another_viewer(place):
    expect((0, "a.plt: shown\n", ""), place.run("--channel", "one", "a.plt"))
    expect((0, "a.plt: shown\n", ""), place.run("--channel", "two", "a.plt"))
    expect(2, len(place.started()))


def sends_standard_input(place):
    expect((0, "-: shown\n", ""), place.run(stdin=b"PD1,2;"))
    expect((0, "a.plt: shown\n-: shown\n", ""), place.run("a.plt", "-", stdin=b""))
    expect([b"PD1,2;", A, b""], [data for _, data in place.sent()])


def sends_large_files_in_pieces(place):
    expect((0, "large.plt: shown\n", ""), place.run("--as-is", "large.plt"))
    expect([([0, PIECE, PIECE, PIECE, PIECE, 0], bytes(range(256)) * 1024)], place.sent())
    plain = b"IN;SP1;PU0,0;" + b"PD10,10;" * 20_000
    (place.folder / "plain.plt").write_bytes(plain)
    expect((0, "plain.plt: shown\n", ""), place.run("plain.plt"))
    expect(([0, PIECE, PIECE, len(plain) - 2 * PIECE, 0], plain), place.sent()[1])


def memory_stays_small(place):
    """Whatever is sent as it is, and whatever is printed that nobody asked for."""
    with open(place.folder / "huge.plt", "wb") as file:
        file.truncate(400_000_000)
    needs_little_memory(place.call("--channel", "one", "--as-is", "huge.plt", plays="blind"), b"huge.plt: shown\n")
    needs_little_memory(place.call("--channel", "two", "a.plt", plays="floods"), b"a.plt: shown\n")


def needs_little_memory(call, said):
    _, status, usage = os.wait4(call.pid, 0)
    expect(0, status)
    expect(said, call.stdout.read())
    assert usage.ru_maxrss < 100_000, f"{usage.ru_maxrss} kB"  # a sanitizer takes some itself


# ---- the plotter in between -----------------------------------------------------------------------------------------

PAGES = b"IN;SP1;PU0,0;PD4000,3000;PG;PU0,0;PD1000,0;PG;PU5,5;PD7,9;"


def sends_each_page(place):
    """As a picture of its own, which is plain."""
    (place.folder / "pages.plt").write_bytes(PAGES)
    expect((0, "a.plt: shown\npages.plt, page 1 of 3: shown\npages.plt, page 2 of 3: shown\n"
               "pages.plt, page 3 of 3: shown\nb.plt: shown\n", ""), place.run("a.plt", "pages.plt", "b.plt"))
    pages = [data for _, data in place.sent()][1:-1]
    expect(3, len(pages))
    for number, page in enumerate(pages):
        assert b"PG" not in page and b"PD" in page, page
        (place.folder / f"page{number}.plt").write_bytes(page)
        expect((0, f"page{number}.plt: shown\n", ""), place.run(f"page{number}.plt"))
        expect(page, place.sent()[-1][1])


def sends_as_it_is(place):
    (place.folder / "pages.plt").write_bytes(PAGES)
    expect((0, "pages.plt: shown\n", ""), place.run("--as-is", "pages.plt"))
    expect((0, "-: shown\n", ""), place.run(stdin=PAGES))
    expect([PAGES, PAGES], [data for _, data in place.sent()])


def goes_on_after_a_page_that_is_refused(place):
    (place.folder / "pages.plt").write_bytes(PAGES)
    expect((1, "".join(f"pages.plt, page {page} of 3: refused: no paper\n" for page in (1, 2, 3)), ""),
           place.run("pages.plt", plays="refuse"))


def sends_no_more_pages_without_a_viewer(place):
    (place.folder / "pages.plt").write_bytes(PAGES)
    expect((3, "pages.plt, page 1 of 3: not shown: the viewer has closed the connection\n"
               "a.plt: not shown: there is no viewer\n", ""), place.run("pages.plt", "a.plt", plays="mute"))


def says_what_is_not_drawn(place):
    (place.folder / "odd.plt").write_bytes(b"IN;SP1;PU0,0;PD10.5,10;LBlab")
    expect((0, "odd.plt: shown\n", "hpglsend: odd.plt: incomplete: the file ends inside a label\n"), place.run("odd.plt"))


def sends_no_other_kind(place):
    (place.folder / "script.plt").write_bytes(b"%!PS\nPD100,100;\n")
    expect((1, "script.plt: not a plot: PostScript\na.plt: shown\n", ""), place.run("script.plt", "a.plt"))
    expect((0, "script.plt: shown\n", ""), place.run("--as-is", "script.plt"))
    expect(2, len(place.sent()))


# ---- what goes wrong ------------------------------------------------------------------------------------------------

def goes_on_after_a_file_that_cannot_be_read(place):
    expect((1, "a.plt: shown\nmissing.plt: cannot read: No such file or directory\nb.plt: shown\n", ""),
           place.run("a.plt", "missing.plt", "b.plt"))


def waits_until_the_viewer_listens(place):
    expect((0, "a.plt: shown\n", ""), place.run("a.plt", plays="late"))


def goes_on_after_a_refusal(place):
    expect((1, "a.plt: refused: no paper\nlarge.plt: refused: no paper\n", ""),
           place.run("--as-is", "a.plt", "large.plt", plays="refuse"))


def others_words_command_nothing(place):
    """Answers, names of files, what stands in the environment."""
    escape = "\x1b]0;title\x07"
    (place.folder / f"{escape}.plt").write_bytes(A)
    expect((1, "?]0;title?.plt: refused: ?[2Jno?paper? \u00e4?\n", ""), place.run(f"{escape}.plt", plays="rude"))
    expect((1, "?]0;title?: cannot read: No such file or directory\n", ""), place.run(escape))
    expect(wrong("unknown option --?]0;title?"), place.run(f"--{escape}"))
    place.environment["XDG_RUNTIME_DIR"] = f"/{escape}"
    path = "/?]0;title?/kelhpgl.default"
    expect((3, "", f"hpglsend: no viewer: {path}: No such file or directory\n"), place.run("--no-start", "--wait", "0", "a.plt"))


def stops_sending_what_is_refused(place):
    expect((1, "large.plt: refused: no paper\na.plt: refused: no paper\n", ""),
           place.run("--as-is", "large.plt", "a.plt", plays="early"))
    expect(1, len(place.started()))


def hears_why_the_connection_is_closed(place):
    expect((1, "large.plt: refused: no paper\na.plt: refused: no paper\n", ""),
           place.run("--as-is", "large.plt", "a.plt", plays="strict"))
    expect(1, len(place.started()))


def hears_that_there_are_too_many(place):
    expect((1, "large.plt: refused: too many hosts\na.plt: refused: too many hosts\n", ""),
           place.run("--as-is", "large.plt", "a.plt", plays="full"))


def stops_when_the_viewer_ends(place):
    for plays in ("dies", "mute"):
        expect((3, "large.plt: not shown: the viewer has closed the connection\na.plt: not shown: there is no viewer\n", ""),
               place.run("--as-is", "large.plt", "a.plt", plays=plays))


def finds_no_viewer(place):
    path = f"{place.folder}/kelhpgl.default"
    missing = f"hpglsend: no viewer: {path}: No such file or directory"
    expect((3, "", f"{missing}\n"), place.run("--no-start", "--wait", "0", "a.plt"))
    expect((3, "", f"{missing}; {DOUBLE} has ended with exit code 7\n"),
           place.run("--wait", "1", "a.plt", plays="never"))
    expect((3, "", "hpglsend: no viewer: ./no-viewer: No such file or directory\n"),
           place.run("--viewer", "./no-viewer", "a.plt"))
    expect((3, "", "hpglsend: no viewer: a.plt: No such file or directory\n"),
           place.run("--viewer", "a.plt", "a.plt"))  # is looked up in PATH


def waits_no_longer_than_told(place):
    start = time.monotonic()
    place.run("--no-start", "--wait", "1", "a.plt")
    assert 1 <= time.monotonic() - start < 10, time.monotonic() - start


def nobody_refuses(path):
    with socket.socket(socket.AF_UNIX) as host:
        return host.connect_ex(str(path)) != errno.ECONNREFUSED


def starts_where_a_viewer_crashed(place):
    place.run("a.plt")
    os.kill(place.started()[0], signal.SIGKILL)
    while nobody_refuses(place.folder / "kelhpgl.default"):
        time.sleep(0.01)
    expect((0, "b.plt: shown\n", ""), place.run("b.plt"))
    expect(2, len(place.started()))


def two_at_once_share_one_viewer(place):
    calls = [place.call(name, plays="late") for name in ("a.plt", "b.plt")]
    expect([(0, "a.plt: shown\n", ""), (0, "b.plt: shown\n", "")], [result(call) for call in calls])
    expect([A, B], sorted(data for _, data in place.sent()))


def a_slow_generator_is_waited_for(place):
    call = place.call()
    call.stdin.write(b"IN;")
    call.stdin.flush()
    time.sleep(0.5)
    expect((0, "-: shown\n", ""), result(call, b"PD1,1;"))
    expect([b"IN;PD1,1;"], [data for _, data in place.sent()])


# ---- a page that is printed -----------------------------------------------------------------------------------------

SIZE = len(PAGE)


def received(name, remark=""):
    return 0, f"a.plt: shown\n{name}: received, pdf, {SIZE} bytes{remark}\n", ""


def temporary_files(folder):
    return [path.name for path in folder.iterdir() if path.name.startswith(".hpglsend")]


def receives_a_page(place):
    (place.folder / "sub").mkdir()
    for plays in ("prints", "mixes"):
        for name in ("out.pdf", "OUT.PDF", "out", "a b \u00fc.pdf", "-out.pdf", "--", "sub/out.pdf",
                     str(place.folder / "other.pdf"), "x" * 251 + ".pdf"):
            expect(received(name), place.run("--channel", plays, "--receive", name, "a.plt", plays=plays))
            expect(PAGE, (place.folder / name).read_bytes())
            (place.folder / name).unlink()
    expect([], temporary_files(place.folder) + temporary_files(place.folder / "sub"))


def says_that_the_format_is_another(place):
    remark = ", which is not what its name says"
    expect(received("out.svg", remark), place.run("--receive", "out.svg", "a.plt", plays="prints"))
    expect(PAGE, (place.folder / "out.svg").read_bytes())


def receives_one_of_several_files(place):
    expect((0, f"a.plt: shown\nb.plt: shown\nout.pdf: received, pdf, {SIZE} bytes\n", ""),
           place.run("--receive", "out.pdf", "a.plt", "b.plt", plays="prints"))
    expect((1, "a.plt: shown\nno.plt: cannot read: No such file or directory\n"
               "new.pdf: not received: not all files are shown\n", ""),
           place.run("--receive", "new.pdf", "a.plt", "no.plt"))
    assert not (place.folder / "new.pdf").exists()


def replaces_what_was_there(place):
    out, link = place.folder / "out.pdf", place.folder / "link.pdf"
    out.write_bytes(b"before")
    out.chmod(0o640)
    link.symlink_to("out.pdf")
    expect(received("link.pdf"), place.run("--receive", "link.pdf", "a.plt", plays="prints"))
    expect((PAGE, 0o640, True), (out.read_bytes(), out.stat().st_mode & 0o777, link.is_symlink()))
    out.unlink()
    expect(received("out.pdf"), place.run("--receive", "out.pdf", "a.plt", plays="prints", umask=0o027))
    expect(0o640, out.stat().st_mode & 0o777)


def receives_nothing(place):
    """A file that was there stays."""
    out = place.folder / "out.pdf"
    out.write_bytes(b"before")
    for plays, code, became, why in (
            ("refuse", 1, "refused: no paper", "not all files are shown"),
            ("dies", 3, "not shown: the viewer has closed the connection", "not all files are shown"),
            ("breaks", 3, "shown", "the viewer has closed the connection")):
        expect((code, f"a.plt: {became}\nout.pdf: not received: {why}\n", ""),
               place.run("--channel", plays, "--receive", "out.pdf", "a.plt", plays=plays))
        expect(b"before", out.read_bytes())
    expect([], temporary_files(place.folder))


def says_that_the_viewer_is_closed(place):
    call = place.call("--receive", "out.pdf", "a.plt")
    expect(b"a.plt: shown\n", call.stdout.readline())
    os.kill(place.started()[0], signal.SIGKILL)
    expect((3, "out.pdf: not received: the viewer has closed the connection\n", ""), result(call))


def cannot_write_without_permission(place):
    if os.getuid() == 0:
        print("without permission: not tried, for root has every permission")
        return
    (place.folder / "locked").mkdir(mode=0o500)
    (place.folder / "out.pdf").touch(mode=0o400)
    for name in ("locked/out.pdf", "out.pdf"):
        expect((4, f"{name}: cannot write: Permission denied\n", ""), place.run("--receive", name, "a.plt"))
    expect([], place.started())


def cannot_write_into_a_full_disk(place):
    disk = place.folder / "disk"
    disk.mkdir()
    mount = ["mount", "-t", "tmpfs", "-o", "size=64k", "hpglsend", disk]
    if subprocess.run(mount, stderr=subprocess.DEVNULL, check=False).returncode != 0:
        print("full disk: not tried, for a small one cannot be mounted")
        return
    try:
        cannot_write(place, "disk", "No space left on device")
    finally:
        subprocess.run(["umount", disk], check=True)


def cannot_write_more_than_a_file_may_have(place):
    """Files of this process may have 64 KiB; the signal about it is ignored, as it is here."""
    cannot_write(place, ".", "File too large", restore_signals=False,
                 preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (65536, 65536)))


def cannot_write(place, folder, why, **others):
    out = place.folder / folder / "out.pdf"
    expected = 4, f"a.plt: shown\n{folder}/out.pdf: cannot write: {why}\n", ""
    for before in ([], [b"before"]):
        for content in before:
            out.write_bytes(content)
        expect(expected, place.run("--receive", f"{folder}/out.pdf", "a.plt", plays="prints", **others))
        expect(before, [out.read_bytes()] if out.exists() else [])
        expect([], temporary_files(out.parent))


def ends_by_a_signal(place):
    """While it waits, amid a page, and whenever a page is written: there is a whole file or none."""
    for plays in ("", "halves", *["prints"] * 30):
        for number in (signal.SIGTERM, signal.SIGINT):
            call = place.call("--channel", f"c{plays}", "--receive", "out.pdf", "a.plt", plays=plays)
            expect(b"a.plt: shown\n", call.stdout.readline())
            call.send_signal(number)
            code = result(call)[0]
            out = place.folder / "out.pdf"
            assert code == -number or (code, plays) == (0, "prints"), (code, plays)
            expect([], temporary_files(place.folder))
            if out.exists():
                expect(("prints", PAGE), (plays, out.read_bytes()))
                out.unlink()


TESTS = [answers_without_a_viewer, tells_how_to_call_it, starts_a_viewer_and_sends, sends_several_to_the_one_that_runs,
         another_channel_is_another_viewer, sends_standard_input, sends_large_files_in_pieces, memory_stays_small,
         sends_each_page, sends_as_it_is, goes_on_after_a_page_that_is_refused, sends_no_more_pages_without_a_viewer,
         says_what_is_not_drawn, sends_no_other_kind,
         goes_on_after_a_file_that_cannot_be_read, waits_until_the_viewer_listens, goes_on_after_a_refusal,
         others_words_command_nothing, stops_sending_what_is_refused, hears_why_the_connection_is_closed, hears_that_there_are_too_many,
         stops_when_the_viewer_ends, finds_no_viewer, waits_no_longer_than_told, starts_where_a_viewer_crashed,
         two_at_once_share_one_viewer, a_slow_generator_is_waited_for, receives_a_page, says_that_the_format_is_another,
         receives_one_of_several_files, replaces_what_was_there, receives_nothing, says_that_the_viewer_is_closed,
         cannot_write_without_permission, cannot_write_into_a_full_disk, cannot_write_more_than_a_file_may_have,
         ends_by_a_signal]


def check(test):
    with Place() as place:
        try:
            test(place)
            return True
        except (AssertionError, subprocess.TimeoutExpired) as problem:
            print(f"FAILED {test.__name__}: {problem}")
            return False


def main():
    results = [check(test) for test in TESTS]
    print(f"{results.count(True)} passed, {results.count(False)} failed")
    return 0 if all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
