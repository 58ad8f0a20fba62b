"""Hostile plots: those of the project and random ones, changed by chance."""
import functools
import gzip
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(1, str(ROOT / "tests" / "oracle"))
import random_plots  # pylint: disable=wrong-import-position

MOST_BYTES = 1_000_000
NUMBER = re.compile(rb"[-+]?\d+(?:\.\d+)?")
CONTROL = re.compile(rb"\^(x[0-9A-F]{2}|[@A-Z\[])")  # as the tables of tests/plotter write bytes
EXTREMES = """0 -0 1 -1 . - + 0.00001 1e-40 127 128 254 255 256 360 1e9 32767 32768 -32768 -32769 65535 65536 8388607
    8388608 16777217 1073741823 1073741824 2147483647 2147483648 -2147483648 -2147483649 4294967295 4294967296
    9223372036854775807 9223372036854775808 99999999999999999999 nan inf -inf 1e38 1e39 1e308 1e309 ,""".encode().split() + [b""]
# Commands of every kind, for whole and for broken ones.
WORDS = """AA AC AD AF AH AR AS AT BL BP BR BZ CA CC CF CI CM CO CP CR CS CT CV DC DF DI DL DP DR DS DT DV EA EC EP ER
    ES EW FI FN FP FR FS FT GC GM GP HPGL_DATA HPGL_FILE: HPGL_INFO IM IN IP IR IV IW KY LA LB LM LO LT MC MG MT NP NR
    OA OC OD OE OF OH OI OL OO OP OS OT OW PA PB PC PD PE PG PM PP PR PS PT PU PW QL RA RF RO RP RR RT SA SB SC SD SI SL
    SM SP SR SS ST SV TD TL TR UC UF UL VA VN VS WD WG WU XT YT""".encode().split()
PIECES = WORDS + [b"PM0", b"PM1", b"PM2", b"PE<=", b"PE7", b"LB\x03", b"LB", b'CO"', b"DT\0", b"RF1,8,8,", b"FT3,1,0",
                  b"UL8,1,99", b"PB", b"WG1e9,0,360,0.36", b"CI1000000,0.36", b"AA0,0,1e9", b"SC0,0,0,0",
                  b"SC0,1e-30,0,1e-30", b"IW0,0,0,0", b"IP0,0,0,0", b"RO90", b"PG", b"RP1000", b"DL65",
                  b"HPGL_FILE:inner.plt\n", b"HPGL_FILE:pipe.plt\n",
                  b"HPGL_FILE:/dev/zero\n", b"HPGL_FILE:/dev/tty\n", b"HPGL_FILE:.\n", b"HPGL_FILE:/proc/self/mem\n"]
UNIVERSAL_EXIT = b"\x1b%-12345X"
MACRO = b"\x1b&f1Y\x1b&f0X"


@functools.lru_cache(maxsize=None)
def seeds():
    """The project's own plots, small ones; what is longer is cut."""
    folders = [ROOT / "tests" / "golden", ROOT / "tests" / "fuzz" / "kept", ROOT / "tests" / "cli", ROOT / "examples"]
    files = [file for folder in folders for file in sorted(folder.rglob("*"))
             if file.is_file() and (file.suffix == ".plt" or "kept" in file.parts)]
    return [file.read_bytes()[:MOST_BYTES] for file in files] + table_plots()


def table_plots():
    tables = sorted((ROOT / "tests" / "plotter").glob("*.table"))
    lines = [line for table in tables for line in table.read_bytes().splitlines() if line.startswith(b"plot: ")]
    return [b"IN;SP1;" + CONTROL.sub(control_byte, line.removeprefix(b"plot: ")) for line in lines]


def control_byte(found):
    word = found.group(1)
    return bytes([int(word[1:], 16) if len(word) == 3 else word[0] - 64])


def any_seed(dice):
    if dice.random() < 0.3:
        return b"".join(random_plots.Writer(dice.getrandbits(32)).plot())[:MOST_BYTES]
    return dice.choice(seeds())


def some(dice, most):
    """A number from 1 to that, small ones as often as large ones."""
    return max(1, min(most, int(most ** dice.random())))


def place(dice, data, longest):
    """A piece's beginning and end."""
    begin = dice.randrange(len(data) + 1)
    return begin, min(len(data), begin + some(dice, longest))


def flip_bytes(dice, data):
    changed = bytearray(data)
    for _ in range(some(dice, 50) if changed else 0):
        changed[dice.randrange(len(changed))] = dice.randrange(256)
    return bytes(changed)


def flip_bits(dice, data):
    changed = bytearray(data)
    for _ in range(some(dice, 50) if changed else 0):
        changed[dice.randrange(len(changed))] ^= 1 << dice.randrange(8)
    return bytes(changed)


def cut(dice, data):
    begin, end = place(dice, data, len(data) + 1)
    return data[:begin] + data[end:]


def cut_off(dice, data):
    return data[:dice.randrange(len(data) + 1)]


def splice(dice, data):
    other = any_seed(dice)
    begin, end = place(dice, other, len(other) + 1)
    at = dice.randrange(len(data) + 1)
    return data[:at] + other[begin:end] + data[at:]


def repeat(dice, data):
    begin, end = place(dice, data, 2000)
    piece = data[begin:end]
    return data[:begin] + piece * some(dice, MOST_BYTES // (len(piece) + 1) + 1) + data[end:]


def replace_numbers(dice, data):
    share = dice.choice((0.02, 0.1, 0.5, 1.0))
    return NUMBER.sub(lambda found: dice.choice(EXTREMES) if dice.random() < share else found.group(), data)


def insert_words(dice, data):
    for _ in range(some(dice, 20)):
        at = dice.randrange(len(data) + 1)
        numbers = b",".join(dice.choice(EXTREMES) for _ in range(dice.choice((0, 0, 1, 2, 4, 8))))
        data = data[:at] + b";" + dice.choice(PIECES) + numbers + dice.choice((b";", b"", b"\n")) + data[at:]
    return data


def escape(dice):
    """Of printers, with a number that may be wrong, and bytes behind it."""
    number = dice.choice((str(dice.randrange(300)).encode(), dice.choice(EXTREMES)))
    group = dice.choice(b"*b *r *v *t *c *p &l &f &p &a &k % (s )s ( .".split())
    last = dice.choice(b"ABCDEFGHIJKLMNOPQRSTUVWXYZ(@")
    return b"\x1b" + group + number + bytes([last]) + (dice.randbytes(some(dice, 300)) if dice.random() < 0.4 else b"")


def raster(dice):
    """Its rows packed in one way or another, and now and then shorter than they say."""
    resolution = dice.choice((b"75", b"300", dice.choice(EXTREMES)))
    rows = [b"\x1b%%1A\x1b*t%sR\x1b*r%sS\x1b*r1A" % (resolution, dice.choice(EXTREMES))]
    for _ in range(some(dice, 200)):
        count = dice.randrange(1, 200)
        rows.append(b"\x1b*b%dm%dW" % (dice.choice((0, 1, 2, 3, 5, 9)), count))
        rows.append(dice.randbytes(count - dice.choice((0, 0, 0, 1))))
    return b"".join(rows) + b"\x1b*rB\x1b%0B"


def insert_escapes(dice, data):
    for _ in range(some(dice, 10)):
        at = dice.randrange(len(data) + 1)
        data = data[:at] + (raster(dice) if dice.random() < 0.3 else escape(dice)) + data[at:]
    return data


def wrap(dice, data):
    """In what stands around plots."""
    number = dice.choice(EXTREMES)
    return dice.choice((
        lambda: UNIVERSAL_EXIT + b"@PJL JOB\r\n@PJL ENTER LANGUAGE=HPGL2\r\n" + data + UNIVERSAL_EXIT + b"@PJL EOJ\r\n",
        lambda: UNIVERSAL_EXIT + b"@PJL " + bytes(dice.choices(b"ABC =\"\r\n;%", k=some(dice, 3000))) + data,
        lambda: b"\x1bE\x1b&l2A\x1b*c%sx%sY\x1b*c0T\x1b%%0B" % (number, dice.choice(EXTREMES)) + data + b"\x1b%0A\x1bE",
        lambda: b"\x1b.(" + b"\x1b.I" + number + b";;17:\x1b.N;19:" + data + b"\x1b.)",
        lambda: b"\x1b&f" + number + b"y0X" + data + b"\x1b&f1X" + b"\x1b&f2X" * some(dice, 1000),
        lambda: MACRO + b"\x1b%0B" + data + b"\x1b%0A\x1b&f1X" + b"\x1b&f1y3X" * some(dice, 100),
        lambda: gzip.compress(data * some(dice, 20), 1),
        lambda: flip_bytes(dice, gzip.compress(data, 1)),
        lambda: cut_off(dice, gzip.compress(data, 1)),
        lambda: gzip.compress(data, 1)[:dice.randrange(30)],
        lambda: data.decode("latin-1").encode(dice.choice(("utf-16", "utf-16-be", "utf-8-sig"))),
        lambda: bytes(some(dice, 100_000)) + data,
        lambda: data + b"\x1a" + dice.randbytes(some(dice, 3000)),
        lambda: dice.randbytes(some(dice, 3000)) + data,
    ))()


def lone_words(dice, _):
    """No plot around them."""
    return b"".join(dice.choice(PIECES) + dice.choice((b"", b";", dice.choice(EXTREMES)))
                    for _ in range(some(dice, 300)))


MUTATIONS = (flip_bytes, flip_bits, cut, cut_off, splice, splice, repeat, replace_numbers, replace_numbers,
             insert_words, insert_words, insert_escapes, wrap, wrap, lone_words)


def hostile_plot(dice):
    data = any_seed(dice)
    for _ in range(some(dice, 6)):
        data = dice.choice(MUTATIONS)(dice, data)[:2 * MOST_BYTES]
    return data


def honest_plot(dice):
    """One of the project's, for what must come of it."""
    return dice.choice(examples())


@functools.lru_cache(maxsize=None)
def examples():
    return [file.read_bytes() for file in sorted((ROOT / "examples").glob("*.plt"))]


def write_neighbours(folder):
    """The files that plots name."""
    random_plots.write_neighbours(folder)
