"""Results of measurements, kept in a file, and the tables that documents show of them."""

import json
import pathlib
import re
import statistics

ROOT = pathlib.Path(__file__).resolve().parent.parent
_BLOCK = re.compile(r"(<!-- measured: (\w+) -->\n)(.*?)(<!-- end -->)", re.DOTALL)


def load(file):
    return json.loads(file.read_text()) if file.exists() else {}


def save(file, name, result):
    """Adds one result to the file, so that an interrupted run can be continued."""
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_text(json.dumps({**load(file), name: result}, indent=1) + "\n")


def blocks(text):
    """{name: text} of a document's generated blocks."""
    return {name: block for _, name, block, _ in _BLOCK.findall(text)}


def update(document, made):
    """Replaces generated blocks of a document by those of {name: text} that are not empty."""
    document.write_text(_BLOCK.sub(
        lambda found: found[1] + (made.get(found[2]) or found[3]) + found[4], document.read_text()))


def table(columns, rows):
    """A Markdown table, with a blank line before and after; empty when there are no rows."""
    if not rows:
        return ""
    head, *body = [f"| {' | '.join(line)} |\n" for line in (columns, *rows)]
    return "".join(["\n", head, "|", "---|" * len(columns), "\n", *body, "\n"])


def spread(values, decimals):
    """The median of some values, and their least and most."""
    low, middle, high = min(values), statistics.median(values), max(values)
    return f"{middle:.{decimals}f} ({low:.{decimals}f} - {high:.{decimals}f})"
