"""Turns the rows that the benchmarks print, one JSON object a line, into a table, or into one JSON document.

usage: report.py [--json] < ROWS
Ends with 1 when a result was wrong, a bound was missed, or there was no row at all.
"""

import json
import platform
import sys

WIDTHS = (52, 12, 12, 8, 8, 0)
ALIGN = ("<", ">", ">", ">", ">", "<")


def figure(row, key, unit=""):
    return f"{row[key]:.4g}{unit}" if key in row else ""


def cells(row):
    if "problem" in row:
        return (row["row"], "", "", "", "", "WRONG: " + row["problem"])
    unit = " " + row["unit"]
    verdict = ("ok" if row["ok"] else "OVER") if "bound" in row else ""
    of = f"  (of: {row['of']})" if "of" in row else ""
    bound = figure(row, "bound", "" if "ratio" in row else unit)
    return (row["row"], figure(row, "ours", unit), figure(row, "yardstick", unit), figure(row, "ratio"), bound,
            verdict + of)


def line(texts):
    print("  ".join(f"{text:{align}{width or ''}}" for text, align, width in zip(texts, ALIGN, WIDTHS)).rstrip(),
          flush=True)


def main(as_json):
    rows = []
    if not as_json:
        line(("row", "ours", "yardstick", "ratio", "bound", ""))
    for text in sys.stdin:
        rows.append(json.loads(text))
        if not as_json:
            line(cells(rows[-1]))
    ok = bool(rows) and all(row["ok"] for row in rows)
    if as_json:
        print(json.dumps({"machine": platform.platform(), "ok": ok, "rows": rows}, indent=1))
    return 0 if ok else 1


sys.exit(main("--json" in sys.argv[1:]))
