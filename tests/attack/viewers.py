"""Viewers with a window on a desktop of the suite's own, and hosts that talk to them."""
import pathlib
import socket
import sys

sys.path[1:1] = [str(pathlib.Path(__file__).resolve().parents[1] / folder) for folder in ("gui", "pictures")]
import host  # pylint: disable=wrong-import-position
from case import Finding, Watched, patience, wait_until  # pylint: disable=wrong-import-position

CHANNEL = "attack"
ANSWER = 30.0  # seconds until a host is answered; other hosts may stall for 5 of them
LIFE = 240.0  # seconds of a viewer


def start(case, *options, settings=None, wrapper=(), **others):
    """`wrapper`: what the viewer is started by."""
    settings = {"DISPLAY": case.worker.desktop().display, **(settings or {})}
    return Watched(case, [*wrapper, case.program("kelhpgl"), *options], settings=settings, seconds=LIFE, **others)


def listening(case, **others):
    viewer = start(case, "--channel", CHANNEL, **others)
    connect(case, viewer).kept.close()
    return viewer


def path(case):
    return case.folder / "run" / f"kelhpgl.{CHANNEL}"


def try_to_connect(case):
    connection = socket.socket(socket.AF_UNIX)
    connection.settimeout(ANSWER)
    try:
        connection.connect(str(path(case)))
        connection.settimeout(None)
        return host.on_socket(connection)
    except OSError:
        connection.close()
        return None


def connect(case, viewer):
    """As soon as the viewer listens."""
    made = []

    def is_there():
        made.append(try_to_connect(case))
        return made[-1] or viewer.process.poll() is not None
    if wait_until(is_there, ANSWER) and made[-1]:
        return made[-1]
    viewer.expect_alive()
    raise Finding("the viewer does not listen")


def answer(one):
    """The kind of the next frame that is no page's, and its text."""
    given = one.answer(patience(ANSWER))
    while given and given[0] > host.SHOWN:
        given = one.answer(patience(ANSWER))
    return given


def push(case, viewer, plot):
    """What a host that keeps to the rules hears."""
    with connect(case, viewer) as honest:
        try:
            honest.kept.settimeout(patience(ANSWER))
            honest.kept.sendall(host.picture(plot))
            return [answer(honest), answer(honest)]
        except (AssertionError, OSError) as problem:
            viewer.expect_alive()
            raise Finding(f"an honest host is not served: {problem}") from problem


def expect_shown(case, viewer, plot=b"IN;SP1;PU0,0;PD4000,3000,0,3000;"):
    """An honest host is served; while others that have left wait for their turn still, it asks again."""
    heard = []

    def has_room():
        heard[:] = push(case, viewer, plot)
        return heard[0] != (host.REFUSED, "too many hosts")
    wait_until(has_room, ANSWER)
    viewer.expect_alive()
    if heard != [(host.ACCEPTED, ""), (host.SHOWN, "")]:
        raise Finding(f"an honest host hears {heard}")


def expect_unharmed(case, viewer, sockets):
    """It serves, holds no more connections than before, rests, and ends when it is told to."""
    expect_shown(case, viewer)
    if not wait_until(lambda: viewer.sockets() <= sockets, ANSWER):
        viewer.expect_alive()
        raise Finding(f"{viewer.sockets()} sockets instead of {sockets} are open")
    viewer.expect_idle()
    viewer.expect_alive()
    viewer.terminate()
