#!/usr/bin/env python3
"""Writes the completions of bash, zsh and fish out of what the programs say of their options themselves.

usage: make_completions.py FOLDER MIME_XML PROGRAM...

Each program's help is asked for with --help; one that knows no such option says its usage on standard error. FOLDER
gets PROGRAM (for bash), _PROGRAM (for zsh) and PROGRAM.fish.
"""
import dataclasses
import itertools
import pathlib
import re
import subprocess
import sys
import xml.etree.ElementTree

# In a help an option is a row: its name, what follows it, in capitals, and what it does.
ROW = re.compile(r"^  (?P<name>--?[a-z][a-z-]*) +(?:(?P<value>[A-Z]\w*) +)?(?P<help>[^A-Z ].*)$")
# In a usage it stands in brackets; an inner pair may stand inside.
BRACKETED = re.compile(r"\[(?P<name>--?[a-z][a-z-]*)(?: (?P<value>[A-Z][\w,]*))?(?=[ \]])")
FORMATS = {"--picture": ["png"], "--print-to": ["pdf", "svg", "png"]}  # what the name that follows ends with
FILE_VALUES = ("FILE", "OUT", "PROGRAM")


@dataclasses.dataclass
class Option:
    name: str
    help: str = ""
    values: list = dataclasses.field(default_factory=list)  # what may follow, as the help calls it
    words: list = dataclasses.field(default_factory=list)  # the ones of them that are names


def listed_words(text):
    """The names that a row's help lists, as in "the paper: A0 to A2, Letter, WxHmm, fit (A4)"."""
    words = []
    for item in re.sub(r" \(.*\)", "", text.partition(": ")[2]).split(", "):
        span = re.fullmatch(r"([A-Z])(\d) to \1(\d)", item)
        if span:
            words += [f"{span[1]}{number}" for number in range(int(span[2]), int(span[3]) + 1)]
        elif re.fullmatch(r"[A-Z]?[a-z]+", item):
            words.append(item)
    return words


def options_of(program):
    asked = subprocess.run([program, "--help"], capture_output=True, text=True, stdin=subprocess.DEVNULL, check=False)
    text = re.sub(r"\n {12,}(?=[a-z])", " ", asked.stdout or asked.stderr)  # a row may go on in the next line
    rows = [match for line in text.splitlines() if (match := ROW.match(line))]
    rowless = [match for match in BRACKETED.finditer(text) if match["name"] not in {row["name"] for row in rows}]
    options = {}
    for match in itertools.chain(rows, rowless):
        option = options.setdefault(match["name"], Option(match["name"]))
        about = match.groupdict().get("help") or ""
        option.help = "; ".join(filter(None, (option.help, about)))
        option.values += filter(None, [match["value"]])
        if match["value"] == "SIZE":
            option.words += listed_words(about)
    missed = set(re.findall(r"--[a-z][a-z-]*", text)) - options.keys() - {"--help"}
    if missed or not options:
        sys.exit(f"{program}: which options are these? {missed}")
    return list(options.values())


def takes_files(option):
    return option.name in FORMATS or any(value in FILE_VALUES for value in option.values)


# ---- bash -----------------------------------------------------------------------------------------------------------

BASH = """# bash completion for {name}, made from what it says of its options.
_{name}()
{{
    local cur prev
    _init_completion -n = || return
    case $prev in
{cases}
    esac
    if [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W '{options}' -- "$cur"))
    else
        _filedir '@({endings})'
    fi
}} &&
    complete -F _{name} {name}
"""


def bash_case(option):
    if option.name in FORMATS:
        action = f"_filedir '@({'|'.join(FORMATS[option.name])})'"
    elif takes_files(option):
        action = "_filedir"
    elif option.words:
        action = f"COMPREPLY=($(compgen -W '{' '.join(option.words)}' -- \"$cur\"))"
    else:
        action = ":"
    return f"        {option.name}) {action}; return ;;"


def bash(name, options, endings):
    return BASH.format(name=name, cases="\n".join(bash_case(option) for option in options if option.values),
                       options=" ".join(option.name for option in options),
                       endings="|".join(itertools.chain(endings, map(str.upper, endings))))


# ---- zsh ------------------------------------------------------------------------------------------------------------

def quoted(text):
    """As one word of a shell, in which an apostrophe ends nothing."""
    return "'" + text.replace("'", "'\\''") + "'"


def zsh_action(option):
    if option.name in FORMATS:
        return f'_files -g "*.({"|".join(FORMATS[option.name])})"'
    if takes_files(option):
        return "_files"
    return f"({' '.join(option.words)})" if option.words else ""


def zsh_option(option):
    about = re.sub(r"([\\:\[\]])", r"\\\1", option.help)
    spec = f"*{option.name}" + (f"[{about}]" if about else "")
    if option.values:
        spec += f":{' or '.join(option.values)}:{zsh_action(option)}"
    return "    " + quoted(spec)


def zsh(name, options, endings):
    files = quoted(f'*:plot:_files -g "(#i)*.({"|".join(endings)})"')
    return " \\\n".join([f"#compdef {name}\n\n_arguments -S", *map(zsh_option, options), "    " + files]) + "\n"


# ---- fish -----------------------------------------------------------------------------------------------------------

def fish_option(name, option):
    kind, word = ("-l", option.name[2:]) if option.name.startswith("--") else ("-s", option.name[1:])
    line = f"complete -c {name} {kind} {word}"
    if option.values:
        line += " -r" + ("F" if takes_files(option) else "f")
    if option.words:
        line += f" -a '{' '.join(option.words)}'"
    # Of fish's quotes a backslash keeps the next one from ending the text.
    about = option.help.replace("\\", "\\\\").replace("'", "\\'")
    return line + (f" -d '{about}'" if about else "")


FISH = """# fish completion for {name}, made from what it says of its options.

# Plots and folders; all files where there are none.
function __fish_{name}_files
    set -l files (complete -C "__fish_command_without_completions "(commandline -ct))
    string match -ri '^.*(?:/|\\.(?:{endings}))$' -- $files
    or string join \\n -- $files
end

complete -c {name} -xa '(__fish_{name}_files)'
{options}
"""


def fish(name, options, endings):
    return FISH.format(name=name, endings="|".join(endings),
                       options="\n".join(fish_option(name, option) for option in options))


def main(folder, mime, *programs):
    globs = xml.etree.ElementTree.parse(mime).iter("{http://www.freedesktop.org/standards/shared-mime-info}glob")
    endings = [glob.get("pattern").removeprefix("*.") for glob in globs]
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    for program in programs:
        name = pathlib.Path(program).name
        options = options_of(program)
        for file, write in ((name, bash), (f"_{name}", zsh), (f"{name}.fish", fish)):
            (folder / file).write_text(write(name, options, endings), encoding="utf-8")


main(*sys.argv[1:])
