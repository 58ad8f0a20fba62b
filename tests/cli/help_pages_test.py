#!/usr/bin/env python3
"""The help pages and the German texts: whole, the same in both languages, and in step with the program's own texts.

usage: help_pages_test.py SRC
"""
import html.parser
import pathlib
import re
import sys

SRC = pathlib.Path(sys.argv[1])
HELP = SRC / "qrvel" / "help"
GERMAN = SRC / "qrvel" / "texts" / "HPGL_de.txt"
LANGUAGES = ("en", "de")
INDEX = "index.html"
KEYS = "keys.html"
WITHOUT_END = {"meta", "br", "hr"}
PARTS = {"h1", "h2", "p", "ul", "li", "table", "tr", "td", "pre"}  # what both languages have in the same order
PANEL = "W_PRINT_"  # what the keys of the print set-up's texts begin with
BAR = ["ABTX01", "ABTX02", "ABTX03", "ABTX04", "ABTX05"]
PULLDOWNS = [["ABTX06", "ABTX07", "ABTX08"], ["ABTX15"], ["ABTX16"], ["ABTX17", "ABTX18", "ABTX24"],
             ["ABTX19", "ABTX20", "ABTX21", "ABTX22", "ABTX23"]]


class Page(html.parser.HTMLParser):
    """What a page has in it; `problems` says what is not well-formed."""

    def __init__(self, text):
        super().__init__()
        self.open, self.problems, self.parts, self.links, self.bold = [], [], [], [], []
        self.words = {"title": "", "h1": "", "body": ""}
        self.language = self.charset = None
        self.fixes_colours = re.search(r"(color|background)\s*[:=]", text) is not None
        self.feed(text)
        self.close()
        self.problems += [f"<{tag}> is not closed" for tag in self.open]

    def handle_starttag(self, tag, attrs):
        attributes = dict(attrs)
        if tag not in WITHOUT_END:
            self.open.append(tag)
        if tag in PARTS:
            self.parts.append(tag)
        if tag == "a":
            self.links.append(attributes.get("href", ""))
        self.language = attributes.get("lang", self.language)
        self.charset = attributes.get("charset", self.charset)

    def handle_endtag(self, tag):
        if self.open and self.open[-1] == tag:
            self.open.pop()
        else:
            self.problems.append(f"</{tag}> at line {self.getpos()[0]} closes {self.open[-1:]}")

    def handle_data(self, data):
        for tag in self.words.keys() & set(self.open):
            self.words[tag] += data
        if self.open[-1:] == ["b"]:
            self.bold.append(data)


def read_pages(language):
    return {file.name: Page(file.read_text(encoding="utf-8")) for file in sorted((HELP / language).glob("*.html"))}


def page_problems(language, name, page, names):
    yield from page.problems
    if not page.words["title"].strip() or page.words["title"] != page.words["h1"]:
        yield f"title {page.words['title']!r}, heading {page.words['h1']!r}"
    if page.language != language:
        yield f"its language is {page.language}"
    if page.charset != "utf-8":
        yield f"its charset is {page.charset}"
    if page.fixes_colours:
        yield "it fixes colours, and the desktop may be dark"
    yield from (f"no such page: {link}" for link in page.links if link not in names)
    if name != INDEX and page.links[-1:] != [INDEX]:
        yield "its last link does not lead back"


def reachable(pages):
    """The pages to which links lead from the index."""
    found, waiting = set(), [INDEX]
    while waiting:
        name = waiting.pop()
        if name in pages and name not in found:
            found.add(name)
            waiting += pages[name].links
    return found


def check_pages(language, pages):
    if INDEX not in pages:
        yield f"{language}/{INDEX}: missing"
    for name, page in pages.items():
        yield from (f"{language}/{name}: {problem}" for problem in page_problems(language, name, page, pages.keys()))
    yield from (f"{language}/{name}: no link leads there" for name in sorted(pages.keys() - reachable(pages)))


def check_languages(english, german):
    yield from (f"{name}: in one language alone" for name in sorted(english.keys() ^ german.keys()))
    for name in sorted(english.keys() & german.keys()):
        if english[name].parts != german[name].parts:
            yield f"{name}: in German its parts are others"


def read_english():
    """The texts by key that the program has built in."""
    return dict(re.findall(r'\{"(\w+)",\s*"([^"]*)"\}', (SRC / "shell" / "texts.cpp").read_text(encoding="utf-8")))


def read_own_english():
    """Those of the toolkit."""
    rows = (SRC / "qrvel" / "base" / "own_texts.cpp").read_text(encoding="utf-8")
    return dict(re.findall(r'"(W_\w+)",\s*"([^"]*)"', rows))


def read_constant(name):
    header = (SRC / "shell" / "texts.h").read_text(encoding="utf-8")
    return int(re.search(rf"\b{name} = (\d+);", header).group(1))


def german_lines():
    lines = GERMAN.read_text(encoding="utf-8").splitlines()
    return [line for line in lines if line and not line.startswith("#")]


def texts_of(lines):
    return dict(line.split("=", 1) for line in lines if "=" in line)


def check_lines(lines):
    yield from (f"not KEY=text: {line}" for line in lines if not re.match(r"\w+=", line))
    keys = [line.partition("=")[0] for line in lines]
    yield from (f"{key}: twice" for key in sorted(set(keys)) if keys.count(key) > 1)


def check_keys(english, german):
    yield from (f"{key}: not translated" for key in sorted(english.keys() - german.keys()))
    yield from (f"{key}: nobody asks for it" for key in sorted(german.keys() - english.keys()))
    yield from (f"{key}: too short" for key, text in german.items() if len(text) < 2)


def check_room(english, german):
    used = sum(len(german.get(key, "").encode()) + 1 for key in english)
    if used > read_constant("HPGL_TEXT_BUFFER_SIZE"):
        yield f"the texts take {used} bytes"


def check_function_keys(english, german):
    for key in sorted(english.keys() & german.keys()):
        name = english[key].partition("=")[0]
        if key.startswith("HLTX") and not german[key].startswith(name + "="):
            yield f"{key}: {german[key]!r} is not about {name}"


def check_mnemonics(german):
    for group in [BAR, *PULLDOWNS]:
        letters = [german.get(key, "").lower().partition("~")[2][:1] for key in group]
        if "" in letters or len(set(letters)) < len(letters):
            yield f"mnemonics of {group}: {letters}"


def check_panel_mnemonics(language, texts):
    """Alt and a letter lead to one place."""
    letters = [text.lower().partition("&")[2][:1] for key, text in texts.items() if key.startswith(PANEL) and "&" in text]
    twice = sorted(letter for letter in set(letters) if letters.count(letter) > 1)
    if twice or not letters:
        yield f"{language}: mnemonics of the print set-up: {twice}"


def menu_names(texts, keys):
    return [texts.get(key, "").replace("~", "").removesuffix("...") for key in keys]


def check_menu_names(language, texts, pages):
    """What is bold are the menus' names, and the page of the keys has them all."""
    bar, items = menu_names(texts, BAR), menu_names(texts, sum(PULLDOWNS, []))
    for name, page in pages.items():
        yield from (f"{language}/{name}: no menu has {word!r}" for word in page.bold if word not in bar + items)
    if KEYS not in pages:
        return
    menus = " ".join(pages[KEYS].words["body"].split()).partition(bar[0])[2]  # the table behind the keys
    yield from (f"{language}/{KEYS}: does not name {name!r}" for name in items if name not in menus)
    if pages[KEYS].bold != bar:
        yield f"{language}/{KEYS}: its menus are {pages[KEYS].bold}"


def check_texts(english, german):
    if len(english) != read_constant("HPGL_TEXTS"):
        yield f"texts.cpp was not understood: {len(english)} texts"
    own = read_own_english()
    yield from check_keys(english | own, german)
    yield from check_panel_mnemonics("en", own)
    yield from check_panel_mnemonics("de", german)
    yield from check_room(english, german)
    yield from check_function_keys(english, german)
    yield from check_mnemonics(german)


def problems():
    pages = {language: read_pages(language) for language in LANGUAGES}
    lines = german_lines()
    texts = {"en": read_english(), "de": texts_of(lines)}
    for language in LANGUAGES:
        yield from check_pages(language, pages[language])
        yield from check_menu_names(language, texts[language], pages[language])
    yield from check_languages(pages["en"], pages["de"])
    yield from (f"{GERMAN.name}: {problem}" for problem in check_lines(lines))
    yield from (f"{GERMAN.name}: {problem}" for problem in check_texts(texts["en"], texts["de"]))


def main():
    try:
        found = list(problems())
    except UnicodeDecodeError as error:
        found = [f"not UTF-8: {error}"]
    for problem in found:
        print("FAILED", problem)
    print(f"{len(found)} problems")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
