"""Random HP-GL plots, the same ones for the same seed: mostly sensible commands, with hostile values among them.

RULES is a grammar. In its texts {name} stands for one of the alternatives of that rule, or for what the method of that
name in Writer gives, called with the words that follow the name: {series 2 4 integer}. The text is Latin-1: a character
is a byte.
"""
import os
import random
import re

from hpgldump import COMMANDS

# Files that the plots name; the programs find them in their working folder.
NEIGHBOURS = {
    "inner.plt": b"PA1,2;PD5,6;HPGL_XLBfoo\x03SP3",
    "long.plt": b"PU10,20;PD300,4;" * 700 + b"HPGL_FILEother\nPM0;HPGL_Q;PA3" + b"PD1,2;LBx\x03" * 1500,
}
NAMED_PIPE = "pipe.plt"

# A rule's alternatives are equally likely, or have weights.
RULES = {
    # A plot and its commands.
    "beginning": {"": 9, "IN;SP1;PU;PA0,0;PD100,200,3000,4000;PU;": 9, ":": 1, ":IN;PD100,200,3000,4000;": 1},
    "command": {
        "{move}": 14, "{any_command}": 6, "{label}": 5, "{encoded}": 5, "{polygon}": 5, "{arc}": 4, "{wedge}": 4,
        "{circle}": 3, "{rectangle}": 3, "{curve}": 3, "{scale}": 3, "{select_pen}": 3, "{passed_over}": 3,
        "{noise}": 3, "{font}": 2.5, "{character_size}": 2.5, "{label_end}": 2, "{pen_width}": 2, "{pen_colour}": 2,
        "{comment}": 1.5, "{pseudo_command}": 1.5,
    },
    "command_end": (";", ";", ";", "", "\n", ";\n", " "),
    # Makes a plot long. Without damage, most of which would hide all that comes behind.
    "filler": (
        "PD{series 2 300 coordinate};", "LB{text 1 260}\x03", "SM{series 1 300 long_word};", "IN;", "SP{whole 0 9};",
        "PE{base}{times 0 8 sound_point};", "{move};",
    ),
    "long_word": ("{text 16 16}",),

    # Numbers.
    "integer": {
        "{whole -10000 10000}": 2, "{whole -200 200}": 1, "{whole -3 3}": 1, "{whole -2147483648 2147483648}": 1,
        "{whole -1e18 1e18}": 1, "{edge_integer}": 1, "0x{whole 0 9999}": 1, "{decimal -99 99 2}": 1,
    },
    "small_integer": ("{whole -3 3}", "{whole 0 10}", "{integer}"),
    "edge_integer": (
        "2147483647", "-2147483648", "4294967295", "65535", "65536", "32768", "-32769", "-1", "255", "254", "0",
        "9999999999999999", "99999999999999999999",
    ),
    "real": {
        "{whole -400 400}": 5, "{decimal -400 400 3}": 5, "{decimal 0 5 2}": 5, "{decimal -1 1 6}": 1, "{edge_real}": 3,
        "{odd_real}": 3, "{integer}": 2,
    },
    "edge_real": (
        "inf", "-inf", "infinity", "Inf", "nan", "-nan", "nAn", "NAN", "nan(12)", "nan(0xffffffff)", "nan(07777777777)",
        "nan(99999999999)", "nan(zz)", "nan(", "1e400", "-1e400", "1e38", "-1e38", "3.5e38", "1e30", "1e9",
        "2147483648", "-2147483649", "0.0000001", "1e-40", "-0",
    ),
    "odd_real": (
        "1e", "1e5", "1E3", "0x1.8p3", "0x.8", "0x", "0x.", "0x1p200", "-0x1p5", "0XFFp1", ".", "-.", "-", ".5", "5.",
        "1.2.3", "0", "0.1", "90", "180", "360", "361", "-90", "720",
    ),
    "coordinate": ("{whole -100 100}", "{whole -1000 1000}", "{whole -10000 10000}", "{whole -1000000 1000000}"),
    "point": ("{coordinate},{coordinate}",),
    "separator": {
        ",": 40, " ": 1, ", ": 1, ";": 1, "\n,": 1, ";;": 1, " ,": 1, "\r\n,": 1, "\x00,": 1, "\x80,": 1, "\x7f,": 1,
        "": 1, "+": 1, "-": 1,
    },
    "first_separator": {"": 8, " ": 1, ",": 1, "\n": 1},
    "L": {"{integer}": 9, "{real}": 1},
    "I": ("{small_integer}",),
    "R": ("{real}",),
    "A": ("{angle}",),
    "C": {"{text 1 3}": 4, "{text 1 20}": 1},

    # Moves, labels, comments.
    "move": ("PD{move_points}", "PU{move_points}", "PA{move_points}", "PR{move_points}"),
    "move_points": {"{point}": 4, "{series 2 3 point}": 2, "": 1, "{coordinate}": 1, "{point},{coordinate}": 1},
    "label": {
        "LB{text 0 20}{after_label}": 12, "SI{whole 1 99},{whole 1 99};LB{text 0 20}{after_label}": 6,
        "SR{whole 1 30},{whole 5 30};LB{text 0 20}{after_label}": 3, "LB{text 240 600}{after_label}": 1,
    },
    "after_label": ("\x03", "\x03", "\x03", "\r", "\n", "\x80", "#", "", "\xff", "\x00"),
    "label_end": (
        "DT", "DT#", "DT#", "DTa", "DT,", "DT;", "DT\x03", "DTP", "DTHP", "DTL", "DT##", "DT#;1", "DT#1", "DT|,0",
        "DT\xff", "DTH", "DTB", "DT#,1,x,2", 'DT"',
    ),
    "comment": {
        'CO"{text 0 8}"': 2, 'CO {text 0 8}"': 1, 'COx"{text 0 8}"': 1, 'CO"{text 0 8}""': 1, "CO{text 0 8}": 1,
    },

    # Encoded polylines: {base} chooses how {encode} writes the values behind it.
    "encoded": ("PE{base}{mark}{times 0 8 encoded_item}{after_encoded}",),
    "encoded_item": {"{mark}{value}{value}": 75, ":{pen_value}": 15, ">{encode -8 8}": 10},
    "sound_point": ("{encode -30 30}{encode -30 30}", "{encode -3000 3000}{encode -1e6 1e6}"),
    "mark": {"": 12, "<": 2, "=": 2, "<=": 1, "=<": 1, "<<": 1, "7": 0.2},
    "value": {
        "{encode -30 30}": 8, "{encode -3000 3000}": 8, "{encode -1e6 1e6}": 8, "{encode -1073741824 1073741824}": 8,
        "{damaged_value}": 1,
    },
    "pen_value": ("{encode 0 5}", "{encode -1 8}", "{encode 254 255}", "{encode 256 40000}", "{damaged_value}"),
    "damaged_value": (
        "{times 4 9 digit}{encode -30 30}", "{times 1 3 digit}", "????????????{encode 0 9}", "{byte}{encode 0 9}",
        "\n{encode 0 9}", "5",
    ),
    "digit": ("{character 63 126}",),
    "after_encoded": (";", ";", ";", ";", "", "PA", ";;"),

    # Commands that the viewer knows by a long name.
    "pseudo_command": {
        "HPGL_FILE{file_name}{after_file_name}": 8, "HPGL_DATA": 1, "HPGL_INFO": 1, "HPGL_INFO;": 1, "HPGL_DAT": 1,
        "HP": 1, "HPGL": 1, "HPGL_XYZ": 1, "HPGL_\nINFO": 1, "H\nPGL_INFO": 1, "HP\x00GL_INFO": 1, "hpgl_info": 1,
        "HPGL_INFOPA1,2": 1, "HPGL_DATA1,2,3": 1, "HHPGL_INFO": 1, "HPHPGL_INFO": 1, "HPGL_FIL": 1,
        "HPGL_INFHPGL_INFO": 1, "HPGL_DATA\x80": 1,
    },
    "file_name": {
        "inner.plt": 6, "long.plt": 4, "\ninner.plt": 1, ":inner.plt": 2, NAMED_PIPE: 1, ":" + NAMED_PIPE: 1,
        "nofile": 1, ".": 1, "/dev/null": 1, "P": 1, "H": 1, "": 1, "a b": 1,
    },
    "after_file_name": ("\n", "\x00", "\xff", "", ";\n", "\r\nA"),

    # Round things.
    "circle": ("CI{radius}{optional_chord}",),
    "arc": ("AA{point},{angle}{optional_chord}", "AR{point},{angle}{optional_chord}"),
    "wedge": ("EW{radius},{angle},{angle}{optional_chord}", "WG{radius},{angle},{angle}{optional_chord}"),
    "curve": {
        "BR{series 3 3 point}": 4, "BZ{series 3 3 point}": 4, "BR{series 6 9 point}": 2, "BZ{series 6 9 point}": 2,
        "BR{series 0 8 coordinate}": 3, "BZ{series 0 8 coordinate}": 3,
    },
    "radius": {"{whole -3000 3000}": 3, "{integer}": 1},
    # The endless ones cost a million steps each, seconds for the reference.
    "angle": {
        "{even_angle}": 300, "{decimal -400 400 2}": 300, "{whole -720 720}": 300, "{odd_real}": 50, "{long_angle}": 20,
        "{endless_angle}": 1,
    },
    "even_angle": ("90", "180", "360", "-90", "-360", "45", "0", "-0", "nan", "inf", "-inf", "720"),
    "long_angle": ("2000", "10000", "-10001", "-1e5", "1e5"),
    "endless_angle": ("1e30", "-1e30", "1e7"),
    "optional_chord": ("", ",{chord}", ",{chord}", ",{chord},3"),
    "chord": {"{even_chord}": 300, "{edge_chord}": 200, "{fine_chord}": 1},
    "even_chord": ("5", "10", "30", "45", "90", "120", "-20"),
    "edge_chord": (
        "400", "-5", "0", "-0", "7.5", "1", "2.5", "nan", "inf", "0.5", "361", "359", "1e30", "33", "22.5", "0.18",
        "0.1799", "-10", "0.25",
    ),
    "fine_chord": ("0.01", "0.0005", "0.0001", "1e-9"),

    # Rectangles and polygons; a polygon takes 2000 points in each of 256 parts.
    "rectangle": ("EA{corner}", "ER{corner}", "RA{corner}", "RR{corner}"),
    "corner": {"{point}": 3, "": 1, "{coordinate}": 1, "{series 3 4 coordinate}": 2},
    "polygon": ("PM{polygon_begin};{times 0 5 polygon_item}{polygon_end}{polygon_use}",),
    "polygon_begin": ("0", "0", "0", "", " ", "1", "2", "3"),
    "polygon_item": {
        "{move};": 30, "PM1;": 20, "{arc};": 10, "{rectangle};": 10, "{curve};": 10, "{circle};": 10,
        "{times 250 300 next_part}": 1, "{times 4 7 whole_circle}": 1, "{times 19 21 long_line}{circle};{move};": 1,
    },
    "polygon_end": ("PM2;", "PM2;", "PM2;", "PM1;", ""),
    "polygon_use": ("EP;", "FP;", "EP;FP;", "FP0;", "FP1,2", ""),
    "next_part": ("PM1;",),
    "whole_circle": ("CI100,1;",),
    "long_line": ("PD{series 100 100 point};",),

    # Scale, pens, fonts.
    "scale": {
        "SC": 1, "SC{series 4 4 bound}": 3, "SC{series 4 4 bound},{scale_kind}": 3,
        "SC{series 4 4 bound},{scale_kind},{series 2 2 bound}": 2, "SC{series 1 12 bound}": 4,
    },
    "bound": ("0", "1000", "-1000", "1", "0.5", "2", "-1", "nan", "inf", "{real}"),
    "scale_kind": ("0", "1", "2", "2", "2", "3", "-1", "65538", "{integer}"),
    "select_pen": {"SP{whole 0 8}": 6, "SP{whole 0 400}": 2, "SP": 1, "SP{edge_pen}": 8, "SP{integer}": 1},
    "edge_pen": ("-1", "-2", "254", "255", "256", "300", "509", "32767", "32768", "65535", "65536"),
    "pen_width": ("PW{width}{width_pen}",),
    "width": ("", "0.35", "1", "5", "0.1", "-1", "nan", "inf", "1000", "819.2", "1e10", "{real}"),
    "width_pen": ("", "", ",1", ",0", ",254", ",255", ",-1", ",300", ",2", ",2,3", ",1,2,3"),
    "pen_colour": ("PC{colour_pen}{colour}",),
    "colour_pen": ("", "{whole 0 10}", "{whole 0 10}", "255", "254", "-1", "256", "300", "{integer}"),
    "colour": ("", ",1,2,3", ",255,128,0", ",256,-1,300", ",1", ",1,2", ",1,2,3,4", ",1,2,3,4,5,6,7,8"),
    "font": {
        "AD{series 0 8 font_pair}": 3, "SD{series 0 8 font_pair}": 3, "AD{series 0 3 font_pair},{font_kind}": 1,
        "SD{series 0 3 font_pair},{font_kind}": 1, "SA": 1, "SS": 1,
    },
    "font_pair": ("{font_kind},{font_value}",),
    "font_kind": {"{whole 0 8}": 3, "{integer}": 1},
    "font_value": ("10", "0", "-1", "24", "1e-40", "0.5", "{real}"),
    "character_size": ("SI{sizes}", "SR{sizes}"),
    "sizes": {"{series 2 2 size}": 3, "": 1, "{series 1 4 size}": 3},
    "size": ("0.2", "0.3", "1", "2", "5", "-1", "0", "100", "nan", "inf", "{real}"),

    # Commands over whose parameters the two passes step in different ways, and what is no command at all.
    "passed_over": tuple("{command_named %s}" % name for name in """
        SM DT UL AC CF LA FT LT PG IN IW IP RO NP PC PW SI SR SP CI AA EW WG EA AD""".split()),
    "noise": (
        "{text 1 6}", "{byte}", "{integer}", "pa1,2", "pd", "P\nD", "P;D", "P D", "\x1b%0B", "\x1b.(", "A", "\n",
        "\r\n", ";", ",", "+", "-", " ", "{byte}{byte}",
    ),

    # Options of a run.
    "options": ("--chunk {chunk}|{size_option}|{rotate_option}|{zoom_options}",),
    "chunk": ("1", "1", "2", "3", "7", "16", "64", "256", "256", "8192", "8192", "{whole 1 50}"),
    "size_option": ("", "--size {window}"),
    "window": (
        "800x600", "4x4", "0x0", "1x1", "5x5", "8x8", "100x3", "3x100", "1600x1000", "{whole 0 2000}x{whole 0 2000}",
        "2147483647x2147483647", "2147483647x500",
    ),
    "rotate_option": {"": 7, "--rotate 1": 2, "--rotate 2": 1, "--rotate 3": 1},
    "zoom_options": {"": 6, "{zoom}": 2, "{zoom}|{zoom}": 1, "{zoom}|{zoom}|{zoom}": 1},
    "zoom": {"--zoom {series 4 4 device}": 3, "--zoom {series 4 4 far_device}": 1},
    "device": ("{whole 0 500}",),
    "far_device": ("{device}", "{device}", "{whole -50 1000}", "0", "1", "496", "2147483647", "-2147483648"),
}

REFERENCE = re.compile(r"\{([^{}]*)\}")
# Mostly printable, with the characters that mean something to HP-GL more often than the others.
ALPHABET = "".join(map(chr, range(32, 127))) + "abcdef,; +-PDUALBHG0123456789" * 3
ROUND = ("AA", "AR", "CI", "EW", "WG")
# The letters are rules, too; numbers of round commands are angles, which seldom take the reference long.
SIGNATURES = {name: signature.replace("R", "A") if name in ROUND else signature
              for name, signature in COMMANDS if not name.startswith("HPGL_")}
BLOCK_SIZE = 30000


class Writer:
    """Writes random texts by the rules."""

    def __init__(self, seed):
        self.dice = random.Random(seed)
        self.bits = 6  # of a digit of {encode}: 6, or 5 in data for seven-bit lines

    def write(self, text):
        """The text with its references replaced; what replaces them is not looked into again."""
        return REFERENCE.sub(lambda reference: self.expand(*reference.group(1).split()), text)

    def expand(self, name, *words):
        """What one reference stands for."""
        if name in RULES:
            return self.write(self.alternative(RULES[name]))
        return getattr(self, name)(*words)

    def alternative(self, rule):
        """One of a rule's texts."""
        if isinstance(rule, dict):
            return self.dice.choices(list(rule), list(rule.values()))[0]
        return self.dice.choice(rule)

    def chance(self, probability):
        """True as often as the probability says."""
        return self.dice.random() < probability

    # What references name, besides rules. The words come as they stand in the text.

    def number(self, low, high):
        """A random whole number, both limits included."""
        return self.dice.randint(int(float(low)), int(float(high)))

    def whole(self, low, high):
        """A whole number as text."""
        return str(self.number(low, high))

    def decimal(self, low, high, places):
        """A number with so many decimal places."""
        return f"{self.dice.uniform(float(low), float(high)):.{places}f}"

    def repeated(self, low, high, rule):
        """A list of texts made by a rule."""
        return [self.expand(rule) for _ in range(self.number(low, high))]

    def times(self, low, high, rule):
        """Texts made by a rule, one behind the other."""
        return "".join(self.repeated(low, high, rule))

    def series(self, low, high, rule):
        """Texts made by a rule, with commas."""
        return ",".join(self.repeated(low, high, rule))

    def text(self, low, high):
        """Printable characters."""
        return "".join(self.dice.choices(ALPHABET, k=self.number(low, high)))

    def character(self, low, high):
        """A character between two codes."""
        return chr(self.number(low, high))

    def byte(self):
        """Any byte."""
        return self.character(0, 255)

    def base(self):
        """The mark, if any, for the base in which the following values are encoded."""
        self.bits = self.dice.choice((5, 6, 6))
        return "7" if self.bits == 5 else ""

    def encode(self, low, high):
        """A number as PE has it: the sign in the lowest bit, the lowest digit first, the last one marked."""
        number = self.number(low, high)
        rest = abs(number) << 1 | (number < 0)
        digits = ""
        while rest >> self.bits:
            digits += chr(63 + (rest & (1 << self.bits) - 1))
            rest >>= self.bits
        return digits + chr((95 if self.bits == 5 else 191) + rest)

    def any_command(self):
        """A command out of the whole table."""
        return self.command_named(self.dice.choice(list(SIGNATURES)))

    def command_named(self, name):
        """A command with parameters of the kinds that it takes, not always as many."""
        signature = SIGNATURES[name] or "L"
        letters = [signature[k % len(signature)] for k in range(self.parameter_count(len(SIGNATURES[name])))]
        text = name + self.write("{first_separator}")
        return text + "".join(self.expand(letter) + self.write("{separator}") for letter in letters)

    def parameter_count(self, usual):
        """Now and then one too few or too many, and rarely more than a record can count."""
        if self.chance(0.01):
            return self.number(200, 300)
        fewer, more = max(usual - 1, 0), usual + 1
        return self.dice.choice((usual, usual, usual, 0, 1, fewer, more, 2 * usual, self.number(0, 12)))

    # Plots.

    def plot(self):
        """A plot in pieces, which are commands."""
        rule = self.command_rule()
        pieces = [self.write(self.alternative(rule) + "{command_end}") for _ in range(self.length())]
        pieces.insert(0, self.write("{beginning}"))
        if self.chance(0.05):
            self.fill(pieces)
        if self.chance(0.15):
            self.damage(pieces)
        return [piece.encode("latin-1") for piece in pieces]

    def command_rule(self):
        """All commands, or a few of them for a plot that is full of those."""
        commands = RULES["command"]
        return {name: commands[name] for name in self.dice.sample(list(commands), 4)} if self.chance(0.3) else commands

    def length(self):
        """The number of commands: few, for plots easily understood, or many."""
        return self.number(1, 4) if self.chance(0.3) else self.number(3, 30)

    def fill(self, pieces):
        """Makes the plot long enough for several blocks of compact code, in one place."""
        at = self.number(0, len(pieces))
        rest = self.number(BLOCK_SIZE, 6 * BLOCK_SIZE)  # the code is a third of the text
        while rest > 0:
            pieces.insert(at, self.write("{filler}"))
            rest -= len(pieces[at])

    def damage(self, pieces):
        """Changes a few bytes, as a bad line would."""
        for _ in range(self.number(1, 4)):
            at = self.dice.randrange(len(pieces))
            pieces[at] = self.damaged(pieces[at])

    def damaged(self, piece):
        """Replaces, drops, inserts or doubles something."""
        at, some = self.number(0, len(piece)), self.number(1, 10)
        dropped, inserted = self.dice.choice((
            (1, self.byte()), (1, ""), (0, self.byte()), (0, piece[at:at + some]), (some, "")))
        return piece[:at] + inserted + piece[at + dropped:]

    def options(self):
        """Options of hpgldump, each with its value."""
        return [option for option in self.write("{options}").split("|") if option]


def write_neighbours(folder):
    """Puts the files that the plots name into a folder."""
    for name, content in NEIGHBOURS.items():
        (folder / name).write_bytes(content)
    os.mkfifo(folder / NAMED_PIPE)
