#!/usr/bin/env python3
"""A second, independent hpgldump: what the viewer makes of an HP-GL file.

Same command line, same output, byte for byte, and the same exit status as the
real tool, but slow and plain: one procedure a command, Python's integers cut to
their width by hand. The tests compare the two on files and on random plots.

The road of a picture: Parser (text to compact code) -> set_up_picture (extents,
pens, palette) -> Display (scaling, zoom) -> Interpreter (output calls).
"""

import itertools
import math
import os
import re
import stat
import struct
import sys

# ---------------------------------------------------------------------------------------------------------------------
# Command table: the id of a command is its row.

COMMANDS = [tuple(row.split(":")) for row in """
HPGL_DATA: HPGL_FILE:C HPGL_INFO: CO: DF: IN: IP:LLLL IR:RRRR IW:LLLL PG: RO:I RP: SC:RRRRIRR AA:LLRR AR:LLRR
AT:LLLLR BR:LLLLLL BZ:LLLLLL CI:LR PA:LL PD:LL PE:CCC PR:LL PU:LL RT:LLLLR EA:LL EP: ER:LL EW:LRRR FP:I PM:I RA:LL
RR:LL WG:LRRR AD:IRIRIRIRIRIRIR CF:IL CP:RR DI:RR DR:RR DT:CI DV:II ES:RR FI:I FN:I LB:C LO:I SA: SB:I
SD:IRIRIRIRIRIRIR SI:RR SL:R SR:RR SS: TD:I AC:LL FT:IRR LA:IIIIIR LT:IRI PW:RI RF:IIII SM:C SP:I SV:III TR:I
UL:IRRRRRRRRRRRRRRRRRR WU:I BP: MC:I NP:I PC:IIII CS: AS: FS: VS: PT: CT: DL: EC: FR: MG: MT: OH: OI: OP: OS: PS: QL:
ST: VR: CR: DC: DP: OD:
""".split()]
NAMES = [name for name, _ in COMMANDS]
SIGNATURES = [signature for _, signature in COMMANDS]
ID = {name: row for row, name in enumerate(NAMES)}
PSEUDO_NAMES = {name.encode(): ID[name] for name in NAMES[:3]}
# Two letters, as one number, to the id; the pseudo-commands share the first of their rows.
ID_OF_LETTERS = {name.encode()[0] << 8 | name.encode()[1]: row for row, name in reversed(list(enumerate(NAMES)))}

WIDTH = {"L": 4, "I": 2, "R": 4, "C": 1}
FORMAT = {"L": "i", "I": "h", "R": "f", "C": "B"}


def cyclic(signature, count):
    """The letters of count parameters: the signature begins again after its end."""
    return "".join(itertools.islice(itertools.cycle(signature), count)) if signature else ""


def width_of(letters):
    return sum(WIDTH[letter] for letter in letters)


def unpack(letters, data, at):
    return struct.unpack_from("<" + "".join(FORMAT[letter] for letter in letters), data, at)


# ---------------------------------------------------------------------------------------------------------------------
# Numbers of fixed width.

INT_MIN, INT_MAX = -0x80000000, 0x7FFFFFFF


def wrap32(value):
    return ((value + 0x80000000) & 0xFFFFFFFF) - 0x80000000


def wrap16(value):
    return ((value + 0x8000) & 0xFFFF) - 0x8000


def divide(dividend, divisor):
    """32-bit division toward zero; a divisor of 0 is taken as 1, INT_MIN / -1 wraps."""
    divisor = divisor or 1
    size = abs(dividend) // abs(divisor)
    return wrap32(size if (dividend < 0) == (divisor < 0) else -size)


def truncate(value):
    """A float toward zero; out of range the nearest 32-bit integer, not-a-number 0."""
    if value != value:
        return 0
    if value >= 2147483648.0:
        return INT_MAX
    if value <= -2147483648.0:
        return INT_MIN
    return int(value)


def single(value):
    """Rounds to single precision."""
    try:
        return struct.unpack("<f", struct.pack("<f", value))[0]
    except OverflowError:
        return math.copysign(math.inf, value)


def quotient(dividend, divisor):
    """IEEE division, which Python refuses for a divisor of zero."""
    if divisor == 0.0:
        if dividend == 0.0 or dividend != dividend:
            return math.nan
        return math.copysign(math.inf, dividend) * math.copysign(1.0, divisor)
    return dividend / divisor


# ---------------------------------------------------------------------------------------------------------------------
# The C library's number readers in the C locale.

DIGITS = re.compile(rb"[+-]?[0-9]+")
HEX_FLOAT = re.compile(rb"0[xX](?:[0-9a-fA-F]+\.?[0-9a-fA-F]*|\.[0-9a-fA-F]+)(?:[pP][+-]?[0-9]+)?")
DECIMAL_FLOAT = re.compile(rb"(?:[0-9]+\.?[0-9]*|\.[0-9]+)(?:[eE][+-]?[0-9]+)?")
NAN = re.compile(rb"nan(?:\(([0-9a-z_]*)\))?", re.I)
INFINITY = re.compile(rb"inf(?:inity)?", re.I)
NAN_PAYLOAD = re.compile(rb"0x([0-9a-f]+)|(0[0-7]*)|([1-9][0-9]*)|", re.I)


def c_atol(text):
    match = DIGITS.match(text)
    return max(-1 << 63, min((1 << 63) - 1, int(match.group()))) if match else 0


def nan_bits(sequence):
    """A quiet single-precision not-a-number; the sequence in parentheses is the low part of a double's fraction, of
    which only the upper bits survive the narrowing."""
    payload = NAN_PAYLOAD.fullmatch(sequence or b"")
    value = 0
    if payload and payload.lastindex:
        value = int(payload.group(payload.lastindex), {1: 16, 2: 8, 3: 10}[payload.lastindex])
    return 0x7FC00000 | value >> 29 & 0x3FFFFF


def packed_atof(text):
    """atof, narrowed to single precision, as four bytes."""
    negative = text[:1] == b"-"
    body = text[1:] if text[:1] in (b"-", b"+") else text
    match = NAN.match(body)
    if match:
        return struct.pack("<I", nan_bits(match.group(1)) | negative << 31)
    value = 0.0
    if INFINITY.match(body):
        value = math.inf
    elif match := HEX_FLOAT.match(body):
        try:
            value = float.fromhex(match.group().decode())
        except OverflowError:
            value = math.inf
    elif match := DECIMAL_FLOAT.match(body):
        value = float(match.group())
    else:
        negative = False  # no number at all: a sign alone makes no -0
    return struct.pack("<f", single(-value if negative else value))


# ---------------------------------------------------------------------------------------------------------------------
# Compact code.

BLOCK_SIZE = 30000


class Block:
    def __init__(self):
        self.data = bytearray()
        self.start = 0  # where the record now being written begins; None when no record is open


class CompactCode:
    def __init__(self):
        self.blocks = []

    def new_block(self):
        """An unfinished record moves into the new block whole."""
        fresh = Block()
        if self.blocks:
            old = self.blocks[-1]
            if old.start is not None:
                fresh.data += old.data[old.start:]
                del old.data[old.start:]
        self.blocks.append(fresh)

    def append(self, data):
        if len(self.blocks[-1].data) + len(data) >= BLOCK_SIZE:
            self.new_block()
        self.blocks[-1].data += data

    def mark_command(self):
        self.blocks[-1].start = len(self.blocks[-1].data)

    def clear_command(self):
        self.blocks[-1].start = None

    def open_record(self, command, count=0):
        self.mark_command()
        self.append(bytes([command]))
        self.append(bytes([count]))

    def set_count(self, count):
        block = self.blocks[-1]
        if block.start is not None:
            block.data[block.start + 1] = min(count, 255)


# ---------------------------------------------------------------------------------------------------------------------
# The picture: what the parser leaves and the set-up pass completes.

DEFAULT_COLOURS = [(0, 0, 0), (0, 0, 255), (255, 255, 0), (0, 255, 0), (255, 0, 255), (255, 0, 0), (0, 255, 255),
                   (128, 128, 128), (192, 192, 192), (0, 0, 128), (128, 128, 0), (0, 128, 0), (128, 0, 128),
                   (128, 0, 0), (0, 128, 128)]
PENS = 255


class Pen:
    def __init__(self, colour):
        self.colour = colour
        self.index = 0
        self.used = False
        self.width = 0


class Picture:
    def __init__(self):
        self.code = CompactCode()
        self.file_name = None
        self.info = False
        self.extents = (0x3FFFFFFF, 0x3FFFFFFF, -0x3FFFFFFF, -0x3FFFFFFF)
        self.pens = [Pen((255, 255, 255))] + [Pen(DEFAULT_COLOURS[k % 15]) for k in range(PENS - 1)]
        self.pens[0].used = self.pens[1].used = True
        self.palette = []


# ---------------------------------------------------------------------------------------------------------------------
# Parser.

ETX = 3
SEPARATORS = b" ,;"
BUFFER_LENGTH = 16
CO, PA, PD, PE, PR, PU, DT, LB, SP = (ID[name] for name in ("CO", "PA", "PD", "PE", "PR", "PU", "DT", "LB", "SP"))


class Parser:
    def __init__(self, picture):
        self.picture = picture
        self.code = picture.code
        self.reset()

    def reset(self):
        self.buffer = bytearray()
        self.previous = self.current = 0  # the two bytes in which names are looked up
        self.terminator = ETX
        self.command = 0
        self.signature = None  # None: no command is open, parameters are passed over
        self.letter = 0  # index of the letter that the next parameter takes
        self.count = 0
        self.pending = False
        self.string_mode = False
        self.controls_allowed = False
        self.quote_seen = False
        self.new_parse = True
        self.relative = False
        self.pseudo_name = None  # the part of a pseudo-command's name that has been seen
        self.last_byte = 0  # the byte before the chunk, control bytes included
        self.encoded = None

    def flush(self):
        self.code.blocks.clear()
        self.reset()

    def parse(self, text):
        """One chunk. False when the rest of it was lost."""
        if self.new_parse:
            self.new_parse = False
            self.code.new_block()
            self.code.clear_command()
        at, end = 0, len(text)
        while at < end:
            at = self.step(text, at)
            if at is None:
                return False
        if text:
            self.last_byte = text[-1]
        self.code.set_count(self.count)
        return True

    def step(self, text, at):
        """Takes the byte at a position, and what belongs to it; gives the next position, None on a failure."""
        byte = text[at]
        if self.pseudo_name is not None:
            return self.join_pseudo_name(byte, at)
        if self.encoded is not None and self.encoded.value is not None:
            return self.encoded.decode(text, at)
        control = byte < 32 or byte > 127
        if control and not self.controls_allowed and not self.string_mode:
            return at + 1
        self.previous, self.current = self.current, byte
        if not self.string_mode:
            command = ID_OF_LETTERS.get(self.previous << 8 | byte)
            if command is not None:
                self.current = 0
                if command != 0:
                    self.open_command(command)
                    return at + 1
                # The long names are compared with the text itself, in which a filtered byte may stand between.
                before = text[at - 1] if at else self.last_byte
                if before != self.previous:
                    return None
                self.pseudo_name = b"HP"
                return at + 1
        if self.signature is None:
            return at + 1
        if self.command == ID["HPGL_FILE"]:
            return self.take_file_name(text, at)
        if self.command == CO:
            self.comment(byte)
        elif self.command == PE:
            return self.encoded.item(text, at)
        elif self.command == LB:
            self.label(byte, control)
        else:
            self.parameter(byte)
        return at + 1

    def join_pseudo_name(self, byte, at):
        name = self.pseudo_name + bytes([byte])
        if not any(full.startswith(name) for full in PSEUDO_NAMES):
            self.pseudo_name = None
            return None
        self.pseudo_name = name
        if name in PSEUDO_NAMES:
            self.pseudo_name = None
            self.open_command(PSEUDO_NAMES[name])
        return at + 1

    def open_command(self, command):
        self.close_record()
        self.command = command
        self.signature = SIGNATURES[command]
        self.letter = 0
        self.count = 0
        self.pending = False
        self.buffer.clear()
        if command == ID["HPGL_INFO"]:
            self.picture.info = True
        if command == CO:
            self.quote_seen = False
        if command == PE:
            self.encoded = EncodedPolyline(self)
        if command in (CO, PE, LB):
            self.string_mode = True
        if command == LB:
            self.controls_allowed = True
        if command == PA:
            self.relative = False
        if command == PR:
            self.relative = True
        if command in (0, 1, 2, CO, PE):
            self.code.clear_command()
        else:
            self.code.open_record(command)

    def close_record(self):
        """A pending parameter ends with the first letter of the name that follows it."""
        if self.pending:
            del self.buffer[-1:]
            if self.buffer:
                self.convert()
        self.code.set_count(self.count)

    def close_command(self):
        self.signature = None
        self.pending = False
        self.string_mode = False
        self.controls_allowed = False

    def take_file_name(self, text, at):
        if text[at] == ord(":"):
            at += 1
        stop = at
        while stop < len(text) and 32 <= text[stop] <= 127:
            stop += 1
        self.picture.file_name = bytes(text[at:stop])
        self.close_command()
        return stop

    def comment(self, byte):
        if byte == ord('"'):
            if self.quote_seen:
                self.close_command()
            self.quote_seen = True

    def label(self, byte, control):
        if byte == self.terminator or control:
            self.close_command()
            return
        self.count += 1
        if self.count <= 255:
            self.code.append(bytes([byte]))

    def letter_now(self):
        return self.signature[self.letter] if self.signature else ""

    def parameter(self, byte):
        if byte in SEPARATORS:
            if self.pending:
                self.complete()
            return
        if byte in b"+-" and self.pending and self.letter_now() != "C":
            self.complete()
            if byte == ord("+"):
                return
        if len(self.buffer) < BUFFER_LENGTH:
            self.buffer.append(byte)
        self.pending = True

    def complete(self):
        self.convert()
        if self.signature:
            self.letter = (self.letter + 1) % len(self.signature)
        self.pending = False
        self.buffer.clear()

    def convert(self):
        self.count += 1
        if self.count > 255:
            return
        letter = self.letter_now()
        text = bytes(self.buffer)
        if letter == "C":
            self.code.append(text)
        elif letter == "I":
            self.code.append(struct.pack("<H", c_atol(text) & 0xFFFF))
        elif letter == "L":
            self.code.append(struct.pack("<I", c_atol(text) & 0xFFFFFFFF))
        elif letter == "R":
            self.code.append(packed_atof(text))
        if self.command == DT and self.count == 1:
            self.terminator = text[0]


class EncodedPolyline:
    """The data of one PE: items of one byte, some of them followed by encoded values."""

    def __init__(self, parser):
        self.parser = parser
        self.code = parser.code
        self.absolute = False
        self.pen_up = False
        self.seven_bit = False
        self.value = None  # what the value being decoded is for: pen, fraction, x or y
        self.sum = 0
        self.digits = 0
        self.incomplete = False

    def write(self, command, count):
        self.code.open_record(command, count)
        self.parser.count = count

    def item(self, text, at):
        byte = text[at]
        if byte == ord("7"):
            self.seven_bit = True
        elif byte == ord(":"):
            self.write(SP, 1)
            return self.begin("pen", text, at + 1)
        elif byte == ord("<"):
            self.pen_up = True
        elif byte == ord("="):
            self.absolute = True
        elif byte == ord(">"):
            return self.begin("fraction", text, at + 1)
        elif byte == ord(";"):
            self.write(PR if self.parser.relative else PA, 0)
            self.parser.close_command()
            self.parser.encoded = None
        else:
            if self.pen_up:
                self.write(PU, 0)
            self.write(PA if self.absolute else PR, 2)
            return self.begin("x", text, at)
        return at + 1

    def begin(self, what, text, at):
        self.value = what
        self.sum = self.digits = 0
        self.incomplete = False
        return self.decode(text, at)

    def decode(self, text, at):
        """Digits up to a terminal one. A value cut by the chunk's end or over its digit limit is incomplete: it goes on
        with further weights, and a pen number is then stored with 32 bits."""
        bits, limit = (5, 6) if self.seven_bit else (6, 5)
        while at < len(text):
            byte = text[at]
            at += 1
            if self.seven_bit:
                terminal = byte > 94 or byte == ord("5")
                digit = 29 if byte == ord("5") else byte - 95 if terminal else byte - 63
            else:
                terminal = byte > 190
                digit = byte - 191 if terminal else byte - 63
            self.sum = self.sum + (digit << bits * min(self.digits, 32)) & 0xFFFFFFFF
            self.digits += 1
            if terminal:
                return self.end_value(text, at)
            if self.digits == limit:
                self.incomplete = True
        self.incomplete = True
        return at

    def end_value(self, text, at):
        half = self.sum >> 1
        result = -half if self.sum & 1 else half
        what, self.value = self.value, None
        if what == "fraction":
            return at
        if what == "pen" and not self.incomplete:
            self.code.append(struct.pack("<H", result & 0xFFFF))
            return at
        self.code.append(struct.pack("<I", result & 0xFFFFFFFF))
        if what == "x":
            return self.begin("y", text, at)
        if what == "y":
            if self.pen_up:
                self.write(PD, 0)
                self.pen_up = False
            self.absolute = False
        return at


# ---------------------------------------------------------------------------------------------------------------------
# Intake.

FILE_PIECE = 8192


def read_from_file(parser, name):
    """Only regular files are read; opened without waiting, since a name may be that of a pipe."""
    try:
        handle = os.open(name, os.O_RDONLY | os.O_NONBLOCK)
    except (OSError, ValueError):
        return
    if not stat.S_ISREG(os.fstat(handle).st_mode):
        os.close(handle)
        return
    with open(handle, "rb") as file:
        data = file.read()
    for at in range(0, len(data) + 1, FILE_PIECE):
        parser.parse(data[at:at + FILE_PIECE])


def take_in(data, chunk_size):
    """The bytes as one transmission: a first chunk, further ones, an empty last one."""
    picture = Picture()
    parser = Parser(picture)
    colon = data[:1] == b":"
    for at in range(0, len(data), chunk_size):
        chunk = data[at:at + chunk_size]
        parser.parse(chunk[1:] if colon and chunk[:1] == b":" else chunk)
    parser.parse(b"")
    if picture.file_name is not None:
        parser.flush()
        read_from_file(parser, picture.file_name)
    return picture


# ---------------------------------------------------------------------------------------------------------------------
# Record lengths. The two passes do not step over the same bytes.

BYPASSED_BELOW = 3


def fixed_letters(name, count):
    """Records that are read in a fixed form whatever their count says; None for the others."""
    if name in ("AA", "AR"):
        return "LLRR" if count == 4 else "LLR"
    if name in ("EW", "WG"):
        return "LRRR" if count == 4 else "LRR"
    if name == "CI":
        return "LR" if count == 2 else "L"
    if name in ("EA", "ER", "RA", "RR"):
        return "LL"
    if name == "SP":
        return "I" if count else ""
    if name == "SC":
        return {4: "RRRR", 5: "RRRRI", 7: "RRRRIRR"}.get(count, "")
    return None


def set_up_letters(code, count):
    name = NAMES[code]
    if name == "PC":
        return "IIII"
    letters = fixed_letters(name, count)
    return cyclic(SIGNATURES[code], count) if letters is None else letters


def paint_letters(code, count):
    name = NAMES[code]
    if code < BYPASSED_BELOW:
        return ""
    if name in ("AD", "SD"):
        return "IR" * ((count + 1) // 2)
    if name in ("SI", "SR"):
        return "RR" if count else ""
    if name == "PW":
        return "RI" if count >= 2 else "R"
    if name == "PC":
        return "I" * count
    letters = fixed_letters(name, count)
    return cyclic(SIGNATURES[code], count) if letters is None else letters


def looked_at(code, count, letters):
    """The bytes that must be there for a record to be acted upon: SC looks at more than it steps over."""
    width = width_of(letters)
    if NAMES[code] == "SC" and count:
        width = max(width, 18 if count >= 5 else 16)
    return width


LENGTHS = {}


def lengths(letters_of, code, count):
    key = letters_of, code, count
    if key not in LENGTHS:
        letters = letters_of(code, count)
        LENGTHS[key] = letters, width_of(letters), looked_at(code, count, letters)
    return LENGTHS[key]


def walk(data, letters_of):
    """The records of a block: offset, code, count, letters. A lone code above 92 has no count. A record that the
    block's end cuts off ends the block."""
    at, end = 0, len(data)
    while at < end:
        code = data[at]
        if code >= len(COMMANDS):
            yield at, code, None, ""
            at += 1
            continue
        if at + 2 > end:
            return
        count = data[at + 1]
        letters, width, needed = lengths(letters_of, code, count)
        if at + 2 + needed > end:
            return
        yield at, code, count, letters
        at += 2 + width


# ---------------------------------------------------------------------------------------------------------------------
# What both passes share: steps of an angle, scaling.

DEFAULT_CHORD = 5.0
COMMAND_STEPS = 1000000
PASS_STEPS = 50000000
STEPS_AFTERWARDS = 1000


class Steps:
    """The loops over angles, bounded for each command and for the whole pass."""

    def __init__(self):
        self.left = PASS_STEPS

    def chord(self, parameters):
        if self.left <= 0 or not parameters:
            return DEFAULT_CHORD
        chord = parameters[0]
        return chord if math.isfinite(chord) and chord > 0.0 else DEFAULT_CHORD

    def limited(self, angles):
        limit = min(COMMAND_STEPS, self.left) if self.left > 0 else STEPS_AFTERWARDS
        for angle in itertools.islice(angles, limit):
            self.left -= 1
            yield angle

    def circle(self, chord):
        return self.limited(circle_angles(chord))

    def sweep(self, start, sweep, chord):
        return self.limited(sweep_angles(start, sweep, chord))


def circle_angles(chord):
    angle = chord
    while angle <= 360.0:
        yield angle
        if angle + chord == angle:
            return
        angle += chord


def sweep_angles(start, sweep, chord):
    end = start + sweep
    angle = start
    while True:
        yield angle
        following = angle + chord if sweep > 0.0 else angle - chord
        if following == angle or (following > end if sweep > 0.0 else following < end):
            return
        angle = following


def radians(angle):
    return angle * 6.283184 / 360.0


def finite(angle):
    return angle if math.isfinite(angle) else 0.0


def scaled(value, factor):
    return value if factor == 1.0 and -0x1000000 <= value <= 0x1000000 else truncate(single(single(value) * factor))


class Factors:
    """The scale factors that SC sets, in single precision."""

    def __init__(self, rotation):
        self.x = self.y = 1.0
        self.rotation = float(rotation)

    def scale_command(self, data, at, count):
        if count == 0:
            self.x = self.y = self.rotation
            return
        bounds = struct.unpack_from("<4f", data, at)
        kind = struct.unpack_from("<h", data, at + 16)[0] if count >= 5 else 0
        if kind in (0, 1):
            if bounds[0] > bounds[1]:
                self.x = -1.0
            if bounds[2] > bounds[3]:
                self.y = -1.0
        elif kind == 2:
            self.x, self.y = bounds[1], bounds[3]
        else:
            return
        self.x *= self.rotation
        self.y *= self.rotation

    def point(self, x, y):
        return scaled(x, self.x), scaled(y, self.y)


def pen_number(number):
    """The pen that SP means."""
    if number > PENS - 1:
        return (number - 1) % (PENS - 1) + 1
    return max(number, 0)


# ---------------------------------------------------------------------------------------------------------------------
# Extents and set-up pass.

PALETTE_LIMIT = 64


class SetUp:
    def __init__(self, picture, rotation):
        self.picture = picture
        self.factors = Factors(rotation)
        self.steps = Steps()
        self.x = self.y = 0
        self.down = self.relative = False
        self.min_x = self.min_y = 0x3FFFFFFF
        self.max_x = self.max_y = -0x3FFFFFFF

    def run(self):
        for block in self.picture.code.blocks:
            for at, code, count, letters in walk(block.data, set_up_letters):
                if count is not None:
                    self.record(block.data, at + 2, NAMES[code], count, letters)
        self.picture.extents = self.min_x, self.min_y, self.max_x, self.max_y

    def record(self, data, at, name, count, letters):
        if name == "SC":
            self.factors.scale_command(data, at, count)
        elif name in ("PA", "PD", "PR", "PU"):
            self.moves(name, unpack(letters, data, at))
        elif name in ACTED_UPON_IN_SET_UP:
            getattr(self, ACTED_UPON_IN_SET_UP[name])(name, unpack(letters, data, at))

    def add(self, x, y):
        self.min_x = min(self.min_x, x)
        self.max_x = max(self.max_x, x)
        self.min_y = min(self.min_y, y)
        self.max_y = max(self.max_y, y)

    def moves(self, name, values):
        if name in ("PD", "PU"):
            self.down = name == "PD"
        else:
            self.relative = name == "PR"
        for k in range(0, len(values) - 1, 2):
            if self.down:
                self.add(self.x, self.y)
            x, y = self.factors.point(values[k], values[k + 1])
            if self.relative:
                x, y = wrap32(self.x + x), wrap32(self.y + y)
            self.x, self.y = x, y
            if self.down:
                self.add(x, y)

    def circle(self, _name, values):
        radius = single(values[0])
        across = truncate(single(radius * self.factors.x))
        upward = truncate(single(radius * self.factors.y))
        self.min_x = min(self.min_x, wrap32(self.x - across))
        self.max_x = max(self.max_x, wrap32(self.x + across))
        self.min_y = min(self.min_y, wrap32(self.y - upward))
        self.max_y = max(self.max_y, wrap32(self.y + upward))

    def curves(self, name, values):
        for k in range(0, len(values) - 5, 6):
            from_x, from_y = (self.x, self.y) if name == "BR" else (0, 0)
            for j in range(k, k + 6, 2):
                x, y = self.factors.point(values[j], values[j + 1])
                x, y = wrap32(x + from_x), wrap32(y + from_y)
                self.add(x, y)
            self.x, self.y = x, y

    def rectangle(self, name, values):
        x, y = self.factors.point(*values)
        if name in ("ER", "RR"):
            x, y = wrap32(x + self.x), wrap32(y + self.y)
        self.add(x, y)

    def wedge(self, _name, values):
        radius, start, sweep = float(values[0]), finite(values[1]), finite(values[2])
        chord = self.steps.chord(values[3:])
        if radius < 0.0:
            radius, start = -radius, start + 180.0
        radius_x, radius_y = self.factors.x * radius, self.factors.y * radius
        for angle in itertools.chain(self.steps.sweep(start, sweep, chord), (start + sweep,)):
            self.add(wrap32(self.x + truncate(math.cos(radians(angle)) * radius_x)),
                     wrap32(self.y + truncate(math.sin(radians(angle)) * radius_y)))

    def arc(self, name, values):
        sweep, chord = finite(values[2]), self.steps.chord(values[3:])
        centre_x, centre_y, vector_x, vector_y = arc_centre(name, self.x, self.y, values)
        radius, start = arc_radius_and_start(vector_x, vector_y)
        radius_x, radius_y = self.factors.x * radius, self.factors.y * radius
        for angle in itertools.chain(self.steps.sweep(start, sweep, chord), (start + sweep,)):
            # The start angle in the offsets is no slip of this file: the extents have always been so.
            x = wrap32(centre_x + truncate(math.cos(radians(angle)) * radius_x + start))
            y = wrap32(centre_y + truncate(math.sin(radians(angle)) * radius_y + start))
            self.add(x, y)
        self.x, self.y = x, y

    def select_pen(self, _name, values):
        self.picture.pens[pen_number(values[0]) if values else 0].used = True

    def pen_colour(self, _name, values):
        if 0 <= values[0] < PENS:
            pen = self.picture.pens[values[0]]
            pen.colour, pen.used = values[1:], True


ACTED_UPON_IN_SET_UP = {"CI": "circle", "BR": "curves", "BZ": "curves", "EA": "rectangle", "RA": "rectangle",
                        "ER": "rectangle", "RR": "rectangle", "EW": "wedge", "WG": "wedge", "AA": "arc", "AR": "arc",
                        "SP": "select_pen", "PC": "pen_colour"}


def arc_centre(name, x, y, values):
    """The centre, and the vector from it to the pen; the centre is not scaled."""
    if name == "AA":
        return values[0], values[1], wrap32(x - values[0]), wrap32(y - values[1])
    return wrap32(x + values[0]), wrap32(y + values[1]), wrap32(-values[0]), wrap32(-values[1])


def arc_radius_and_start(vector_x, vector_y):
    across, upward = float(vector_x), float(vector_y)
    return math.sqrt(across * across + upward * upward), math.atan2(upward, across) * 180.0 / 3.141592


def build_palette(picture):
    palette = []
    for pen in picture.pens:
        if pen.used and len(palette) < PALETTE_LIMIT:
            pen.index = len(palette)
            palette.append(tuple(part & 0xFF for part in pen.colour))
    if len(palette) == 1:
        palette.append((0, 0, 0))
        picture.pens[-1].index = 1
    picture.palette = palette + [(0, 255, 0)]


def set_up_picture(picture, rotation):
    SetUp(picture, rotation).run()
    build_palette(picture)


# ---------------------------------------------------------------------------------------------------------------------
# Scaling and zoom.

class Display:
    def __init__(self, size):
        self.size_x, self.size_y = wrap32(size[0] - 4), wrap32(size[1] - 4)
        self.size = self.extent = self.max_x = self.max_y = 0

    def set_scaling(self, rectangle):
        min_x, min_y, self.max_x, self.max_y = rectangle
        width, height = wrap32(self.max_x - min_x), wrap32(self.max_y - min_y)
        factor_x = quotient(float(self.size_x), float(width))
        factor_y = quotient(float(self.size_y), float(height))
        if factor_y > factor_x:
            self.size, self.extent = self.size_x, width
        else:
            self.size, self.extent = self.size_y, height

    def point(self, x, y):
        return (self.mapped(self.size_x, self.max_x, x), self.mapped(self.size_y, self.max_y, y))

    def mapped(self, device, corner, value):
        return wrap32(device - divide(wrap32(wrap32(corner - value) * self.size), self.extent) + 2)

    def length(self, value):
        return divide(wrap32(self.size * value), self.extent)


def zoomed(display, view, band):
    """The view that a rubber band of (x1, y1, x2, y2) gives, the old one when the band is refused."""
    x1, y1, x2, y2 = band
    if x1 == x2 or y1 == y2:
        return view

    def plotter(corner, value, device):
        return wrap32(corner + divide(wrap32(wrap32(value - device) * display.extent), display.size))

    across = sorted(plotter(view[2], x, display.size_x) for x in (x1, x2))
    upward = sorted(plotter(view[3], y, display.size_y) for y in (y1, y2))
    if across[0] == across[1] or upward[0] == upward[1]:
        return view
    return across[0], upward[0], across[1], upward[1]


# ---------------------------------------------------------------------------------------------------------------------
# Polygon buffer.

ROOM = 2000
SUB_POLYGONS = 256


class PolygonBuffer:
    def __init__(self, capacity):
        self.capacity = capacity
        self.open = False
        self.used = []  # the sub-polygons in use; the last one is the current one

    def begin(self, x, y):
        self.open = True
        self.used = [[(x, y)]]

    def full(self):
        return len(self.used[-1]) >= ROOM

    def add(self, x, y):
        if self.open and not self.full():
            self.used[-1].append((x, y))

    def add_run(self, points):
        if self.open and len(self.used[-1]) < ROOM - len(points):
            self.used[-1] += points

    def close_sub_polygon(self):
        points = self.used[-1]
        if points and points[-1] != points[0]:
            self.add(*points[0])

    def close(self):
        if self.open:
            self.close_sub_polygon()
            self.open = False

    def next(self):
        if self.open and len(self.used) < self.capacity:
            self.close_sub_polygon()
            self.used.append([])

    def first_point(self):
        return self.used[-1][0] if self.used and self.used[-1] else None


# ---------------------------------------------------------------------------------------------------------------------
# Interpreter.

FONT_SIZES = (2, 4, 6, 8, 10, 13, 16, 19, 22, 27, 32, 37, 42, 47, 52, 62, 72, 82, 92)
DEFAULT_FONT = (277, 0, 113, 162, 0, 0, 48)
FONT_WIDTH, FONT_HEIGHT = 3, 4  # kinds, counted from 1
CURVE_STEPS = 21


class Interpreter:
    def __init__(self, picture, display, rotation):
        self.picture = picture
        self.display = display
        self.calls = []
        self.factors = Factors(rotation)
        self.steps = Steps()
        self.x = self.y = 0
        self.down = self.relative = self.polygon_mode = False
        self.pen = 1
        self.width = self.height = 0  # overrides of the font's character size
        self.fonts = {"SD": list(DEFAULT_FONT), "AD": list(DEFAULT_FONT)}
        self.font = "SD"
        self.polygon = PolygonBuffer(SUB_POLYGONS)

    def run(self):
        for pen in self.picture.pens:
            pen.width = 0
        self.set_colour()
        for block in self.picture.code.blocks:
            for at, code, count, letters in walk(block.data, paint_letters):
                if count is not None:
                    self.record(block.data, at + 2, NAMES[code], count, letters)
        return self.calls

    def record(self, data, at, name, count, letters):
        if name == "SC":
            self.factors.scale_command(data, at, count)
        elif name == "LB":
            self.label(data[at:at + count])
        elif name in PAINTED:
            getattr(self, PAINTED[name])(name, unpack(letters, data, at))

    def call(self, name, *numbers):
        self.calls.append(name + "".join(f" {number}" for number in numbers))

    # Primitives: plotter units to output calls.

    def set_colour(self):
        index = self.picture.pens[self.pen].index
        self.call("OUTlinecolour", index)
        self.call("OUTfillcolour", index)

    def device_width(self):
        return self.display.length(self.picture.pens[self.pen].width)

    def mapped(self, points):
        return list(itertools.chain.from_iterable(self.display.point(x, y) for x, y in points))

    def geometric_line(self, width, points):
        self.call("OUTgeomline", width, len(points), *self.mapped(points))

    def line(self, x1, y1, x2, y2):
        width = self.device_width()
        if width > 1:
            self.geometric_line(width, [(x1, y1), (x2, y2)])
        else:
            self.call("OUTline", *self.mapped([(x1, y1), (x2, y2)]))

    def box(self, width, height, filled):
        x, y = self.display.point(self.x, self.y)
        width, height = self.display.length(width), self.display.length(height)
        if filled:
            self.call("OUTboxr1", x, y, width, height)
        elif self.device_width() > 1:
            right, top = wrap32(x + width), wrap32(y + height)
            self.call("OUTgeomline", self.device_width(), 5, x, y, right, y, right, top, x, top, x, y)
        else:
            self.call("OUTboxr0", x, y, width, height)

    def outline(self, buffer):
        for points in buffer.used:
            self.geometric_line(self.device_width(), points)

    def fill(self, buffer):
        polygons = [points + points[:1] for points in buffer.used if points]
        self.call("OUTwinsolidpolygons", len(polygons), *(len(points) for points in polygons),
                  *self.mapped(itertools.chain.from_iterable(polygons)))

    def draw_local(self, buffer, filled=False):
        """A circle, arc, wedge or curve: into the polygon in polygon mode, otherwise onto the device."""
        if self.polygon_mode:
            self.polygon.add_run(buffer.used[-1])
        elif filled:
            self.fill(buffer)
        else:
            self.outline(buffer)

    # Commands.

    def moves(self, name, values):
        if name in ("PD", "PU"):
            self.down = name == "PD"
        else:
            self.relative = name == "PR"
        for k in range(0, len(values) - 1, 2):
            x, y = self.factors.point(values[k], values[k + 1])
            if self.relative:
                x, y = wrap32(self.x + x), wrap32(self.y + y)
            if self.polygon_mode:
                self.polygon.add(x, y)
            elif self.down:
                self.line(self.x, self.y, x, y)
            self.x, self.y = x, y

    def rectangle(self, name, values):
        width, height = self.factors.point(*values)
        if name in ("EA", "RA"):
            width, height = wrap32(width - self.x + 1), wrap32(height - self.y + 1)
        if self.polygon_mode:
            right, top = wrap32(self.x + width), wrap32(self.y + height)
            for point in (self.x, self.y), (right, self.y), (right, top), (self.x, top), (self.x, self.y):
                self.polygon.add(*point)
        else:
            self.box(width, height, name in ("RA", "RR"))

    def add_round(self, local, centre, radii, angle):
        """The point at an angle; not computed when the buffer would refuse it."""
        if not local.full():
            local.add(*round_point(centre, radii, angle))

    def circle(self, _name, values):
        radii = self.factors.x * values[0], self.factors.y * values[0]
        chord = self.steps.chord(values[1:])
        local = PolygonBuffer(1)
        local.begin(wrap32(self.x + truncate(radii[0])), self.y)
        for angle in self.steps.circle(chord):
            self.add_round(local, (self.x, self.y), radii, angle)
        local.close()
        self.draw_local(local)

    def arc(self, name, values):
        sweep, chord = finite(values[2]), self.steps.chord(values[3:])
        centre_x, centre_y, vector_x, vector_y = arc_centre(name, self.x, self.y, values)
        radius, start = arc_radius_and_start(vector_x, vector_y)
        radii = self.factors.x * radius, self.factors.y * radius
        local = PolygonBuffer(1)
        local.begin(self.x, self.y)
        for angle in self.steps.sweep(start, sweep, chord):
            self.add_round(local, (centre_x, centre_y), radii, angle)
        self.x, self.y = round_point((centre_x, centre_y), radii, start + sweep)
        local.add(self.x, self.y)
        self.draw_local(local)

    def wedge(self, name, values):
        radius, start, sweep = values[0], finite(values[1]), finite(values[2])
        chord = self.steps.chord(values[3:])
        if radius < 0:
            radius, start = -radius, start + 180.0
        radii = self.factors.x * radius, self.factors.y * radius
        local = PolygonBuffer(1)
        local.begin(self.x, self.y)
        for angle in self.steps.sweep(start, sweep, chord):
            self.add_round(local, (self.x, self.y), radii, angle)
        local.add(self.x, self.y)
        local.close()
        self.draw_local(local, name == "WG")

    def curves(self, name, values):
        local = PolygonBuffer(1)
        local.begin(self.x, self.y)
        for k in range(0, len(values) - 5, 6):
            start = self.x, self.y
            points = [self.factors.point(values[j], values[j + 1]) for j in range(k, k + 6, 2)]
            if name == "BR":
                points = [(wrap32(x + start[0]), wrap32(y + start[1])) for x, y in points]
            for step in range(1, CURVE_STEPS + 1):
                local.add(*(curve_value(step / CURVE_STEPS, start[axis], *(point[axis] for point in points))
                            for axis in (0, 1)))
            self.x, self.y = points[2]
        self.draw_local(local)

    def polygon_command(self, _name, values):
        kind = values[0] if values else 0
        if kind == 0:
            self.polygon_mode = True
            self.polygon.begin(self.x, self.y)
            return
        if kind == 1:
            self.polygon.next()
        elif kind == 2:
            self.polygon_mode = False
            self.polygon.close()
        if kind in (1, 2):
            self.x, self.y = self.polygon.first_point() or (self.x, self.y)

    def edge_polygon(self, _name, _values):
        self.outline(self.polygon)

    def fill_polygon(self, _name, _values):
        self.fill(self.polygon)

    def define_font(self, name, values):
        font = self.fonts[name]
        if not values:
            font[:] = DEFAULT_FONT
        for kind, value in zip(values[::2], values[1::2]):
            if kind == FONT_WIDTH:
                value = single(quotient(1016.0, value))
            elif kind == FONT_HEIGHT:
                value = value * 1016.0 / 72.0
            if 1 <= kind <= 7:
                font[kind - 1] = truncate(value)

    def alternate_font(self, _name, _values):
        self.font = "AD"

    def absolute_size(self, _name, values):
        self.width, self.height = (truncate(single(value * 400.0)) for value in values or (0.0, 0.0))

    def relative_size(self, _name, values):
        min_x, min_y, max_x, max_y = self.picture.extents
        spans = wrap32(max_x - min_x), wrap32(max_y - min_y)
        self.width, self.height = (truncate(single(single(span) * single(value / 100.0)))
                                   for span, value in zip(spans, values or (0.0, 0.0)))

    def label(self, text):
        font = self.fonts[self.font]
        width = self.display.length(self.width or font[FONT_WIDTH - 1])
        height = self.display.length(self.height or font[FONT_HEIGHT - 1])
        if not any(0 < size <= height for size in FONT_SIZES):
            return
        self.call("OUTsettext", 0, 0, wrap32(width * len(text)), height, 0, 0)
        self.call("OUTchars_len", *self.display.point(self.x, self.y), len(text), *([text.hex()] if text else []))

    def pen_width(self, _name, values):
        pen = values[1] if len(values) > 1 else self.pen
        if 0 <= pen < PENS:
            self.picture.pens[pen].width = wrap16(truncate(single(values[0] * 40.0)))

    def select_pen(self, _name, values):
        self.pen = pen_number(values[0]) if values else 0
        self.set_colour()


PAINTED = {"PA": "moves", "PD": "moves", "PR": "moves", "PU": "moves", "EA": "rectangle", "ER": "rectangle",
           "RA": "rectangle", "RR": "rectangle", "CI": "circle", "AA": "arc", "AR": "arc", "EW": "wedge", "WG": "wedge",
           "BR": "curves", "BZ": "curves", "PM": "polygon_command", "EP": "edge_polygon", "FP": "fill_polygon",
           "AD": "define_font", "SD": "define_font", "SA": "alternate_font", "SS": "alternate_font",
           "SI": "absolute_size", "SR": "relative_size", "PW": "pen_width", "SP": "select_pen"}


def round_point(centre, radii, angle):
    return (wrap32(centre[0] + truncate(math.cos(radians(angle)) * radii[0])),
            wrap32(centre[1] + truncate(math.sin(radians(angle)) * radii[1])))


def curve_value(t, p0, p1, p2, p3):
    u = 1.0 - t
    return truncate(u * u * u * p0 + t * u * u * wrap32(3 * p1) + t * t * u * wrap32(3 * p2) + t * t * t * p3)


# ---------------------------------------------------------------------------------------------------------------------
# Sections of the output.

def printed(letter, value):
    if letter == "R":
        if value != value:
            return "-nan" if math.copysign(1.0, value) < 0 else "nan"
        return "%.9g" % value
    return str(value)


def hex_section(picture):
    for index, block in enumerate(picture.code.blocks):
        yield f"block {index} {len(block.data)}".encode()
        yield b"hex" + (b" " + block.data.hex().encode() if block.data else b"")


def picture_section(picture):
    yield b"file " + (b"-" if picture.file_name is None else picture.file_name)
    yield f"info {int(picture.info)}".encode()
    yield "extents {} {} {} {}".format(*picture.extents).encode()
    for index, colour in enumerate(picture.palette):
        yield "palette {} {} {} {}".format(index, *colour).encode()
    for number, pen in enumerate(picture.pens):
        if pen.used:
            yield "pen {} {} {} {} {}".format(number, *pen.colour, pen.index).encode()


def calls_section(picture, display, rotation):
    yield (f"scaling {display.size_x} {display.size_y} {display.size} {display.extent} "
           f"{display.max_x} {display.max_y}").encode()
    for line in Interpreter(picture, display, rotation).run():
        yield line.encode()


def parameters(data, at, letters):
    """One word a number, one word a run of characters."""
    for kind, run in itertools.groupby(letters, lambda letter: letter == "C"):
        run = "".join(run)
        if kind:
            yield data[at:at + len(run)].hex()
        else:
            yield from map(printed, run, unpack(run, data, at))
        at += width_of(run)


def records_section(picture):
    for index, block in enumerate(picture.code.blocks):
        for at, code, count, letters in walk(block.data, set_up_letters):
            if count is None:
                yield f"rec {index} {at} {code} ?".encode()
            else:
                words = ["rec", index, at, code, NAMES[code], count, *parameters(block.data, at + 2, letters)]
                yield " ".join(map(str, words)).encode()


# ---------------------------------------------------------------------------------------------------------------------
# Command line.

class WrongOptions(Exception):
    pass


def whole(text, least=INT_MIN):
    if not re.fullmatch(r"-?[0-9]+", text, re.A):
        raise WrongOptions
    value = int(text)
    if not least <= value <= INT_MAX:
        raise WrongOptions
    return value


class Options:
    def __init__(self):
        self.chunk = 256
        self.size = 500, 500
        self.rotate = 0
        self.zooms = []
        self.sections = set()
        self.file = None


def wholes(text, separator, number, least=INT_MIN):
    parts = text.split(separator)
    if len(parts) != number:
        raise WrongOptions
    return tuple(whole(part, least) for part in parts)


def read_options(words):
    options = Options()
    words = iter(words)
    for word in words:
        if word in ("--hex", "--picture", "--calls", "--records"):
            options.sections.add(word)
        elif word in ("--chunk", "--size", "--rotate", "--zoom"):
            value = next(words, "")
            if word == "--chunk":
                options.chunk = whole(value, 1)
            elif word == "--size":
                options.size = wholes(value, "x", 2, 0)
            elif word == "--rotate":
                options.rotate = whole(value, 0)
            else:
                options.zooms.append(wholes(value, ",", 4))
        elif word.startswith("-") or options.file is not None:
            raise WrongOptions
        else:
            options.file = word
    if options.file is None:
        raise WrongOptions
    options.sections = options.sections or {"--hex", "--picture", "--calls"}
    return options


def arrange(picture, options):
    """Set-up pass, rotations and zooms; gives the display and the rotation sign."""
    rotation = 1
    set_up_picture(picture, rotation)
    for _ in range(options.rotate):
        rotation = -rotation
        set_up_picture(picture, rotation)
    display, view = Display(options.size), picture.extents
    display.set_scaling(view)
    for band in options.zooms:
        view = zoomed(display, view, band)
        display.set_scaling(view)
    return display, rotation


def dump(picture, options):
    display, rotation = arrange(picture, options)
    sections = {"--hex": lambda: hex_section(picture), "--picture": lambda: picture_section(picture),
                "--calls": lambda: calls_section(picture, display, rotation),
                "--records": lambda: records_section(picture)}
    lines = itertools.chain.from_iterable(make() for name, make in sections.items() if name in options.sections)
    return b"".join(line + b"\n" for line in lines)


def main(words):
    try:
        options = read_options(words)
    except WrongOptions:
        print("usage: hpgldump.py [--chunk N] [--size WxH] [--rotate K] [--zoom X1,Y1,X2,Y2]...\n"
              "                   [--records] [--hex] [--picture] [--calls] FILE", file=sys.stderr)
        return 2
    try:
        with open(options.file, "rb") as file:
            data = file.read()
    except (OSError, ValueError) as error:
        print(f"hpgldump.py: {error}", file=sys.stderr)
        return 1
    sys.stdout.buffer.write(dump(take_in(data, options.chunk), options))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
