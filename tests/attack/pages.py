"""Files that were printed: whole, or not there."""
import subprocess
import xml.parsers.expat

from case import Finding

ENDS = {".pdf": (b"%PDF-", b"%%EOF\n"), ".svg": (b"<?xml", b"</svg>\n"), ".png": (b"\x89PNG", b"IEND\xaeB`\x82")}
READERS = {".pdf": ("pdftotext", "FILE", "/dev/null"), ".png": ("identify", "FILE"),
           ".svg": ("rsvg-convert", "-w", "100", "FILE")}
MOST_READ = 1_000_000  # bytes of an SVG file; rsvg-convert refuses long ones
READING = 30  # seconds; what a reader makes of a large file is its own affair
BESIDE = ".kelhpgl-"  # how the names of unfinished files begin


def expect_whole(file):
    data = file.read_bytes()
    begin, end = ENDS[file.suffix]
    if not (data.startswith(begin) and data.endswith(end)):
        raise Finding(f"half a file: {file.name}, {len(data)} bytes")


def expect_opens(file):
    """Whole, and other programs read it."""
    expect_whole(file)
    if file.suffix == ".svg":
        expect_well_formed(file)
        if file.stat().st_size > MOST_READ:
            return
    try:
        done = subprocess.run([str(file) if word == "FILE" else word for word in READERS[file.suffix]], check=False,
                              capture_output=True, timeout=READING)
    except subprocess.TimeoutExpired:
        return
    if done.returncode != 0:
        raise Finding(f"{file.name} does not open: {done.stderr.decode('utf-8', 'replace')[:300]}")


def expect_well_formed(file):
    try:
        xml.parsers.expat.ParserCreate().Parse(file.read_bytes(), True)
    except xml.parsers.expat.ExpatError as problem:
        raise Finding(f"{file.name} is no XML: {problem}") from problem


def expect_whole_or_old(folder, old, left=False):
    """Of all files there: names with what they held before; `left`: whether unfinished ones may lie there."""
    for file in sorted(folder.iterdir()):
        if file.name.startswith(BESIDE):
            if not left:
                raise Finding(f"an unfinished file is left behind: {file.name}")
        elif file.suffix not in ENDS or file.name in old and file.read_bytes() == old[file.name]:
            continue
        else:
            expect_opens(file)
    if missing := sorted(set(old) - {file.name for file in folder.iterdir()}):
        raise Finding(f"files are gone: {missing}")
