#!/usr/bin/python3
"""What the tests saw of each desktop.

    hostRecord.py DIRECTORY            prints it as a table
    hostRecord.py DIRECTORY DOCUMENT   replaces the rows in the document, and the pictures beside it; rows of other
                                       desktops stay
"""

import json
import os
import re
import shutil
import sys
from pathlib import Path

# Set it to a directory to keep what the tests see.
_DIRECTORY = os.environ.get("TIDEWELL_HOST_RECORD")

COLUMNS = ["item", "its width", "left click", "middle click", "menu", "the panel", "closed by", "Copy IP"]

# The document's pictures, beside it.
_PICTURES = "images/hosts"

_TABLE = re.compile(r"^\| desktop \|.*?\n(?=\n)", re.MULTILINE | re.DOTALL)
_ROW = re.compile(r"^\| \[?([^\]|]+?)(?:\]\(.*?\))? \|")


class HostRecord:
    """One desktop's row, written to a file with each entry."""

    def __init__(self, desktop):
        self._desktop = desktop

    def keep(self, column, text):
        if column not in COLUMNS:
            raise ValueError(f"no column {column}")
        if not _DIRECTORY:
            return
        file = Path(_DIRECTORY) / f"{self._desktop}.json"
        file.parent.mkdir(parents=True, exist_ok=True)
        row = json.loads(file.read_text()) if file.exists() else {}
        file.write_text(json.dumps({**row, column: text}, ensure_ascii=False, indent=1))

    def keep_picture(self, picture):
        if _DIRECTORY:
            picture.save(_picture_of(Path(_DIRECTORY) / f"{self._desktop}.json"))


def _picture_of(record):
    return record.with_name("host-" + re.sub(r"\W+", "-", record.stem).strip("-").lower() + ".png")


def _records(directory):
    return sorted(Path(directory).glob("*.json"))


def _row(file):
    row = json.loads(file.read_text())
    picture = _picture_of(file)
    name = f"[{file.stem}]({_PICTURES}/{picture.name})" if picture.exists() else file.stem
    return f"| {name} | " + " | ".join(row.get(column, "") for column in COLUMNS) + " |"


def table(directory, old=()):
    """The lines of the table, with the rows of the old one whose desktops have no record."""
    rows = {_ROW.match(line)[1]: line for line in list(old)[2:]}
    rows.update((file.stem, _row(file)) for file in _records(directory))
    return ["| desktop | " + " | ".join(COLUMNS) + " |", "|---" * (len(COLUMNS) + 1) + "|",
            *(rows[name] for name in sorted(rows))]  # fmt: skip


def replace_in(document, directory):
    text = document.read_text()
    old = _TABLE.findall(text)
    if len(old) != 1:
        raise ValueError(f"{document} has {len(old)} tables of desktops")
    text = text.replace(old[0], "\n".join(table(directory, old[0].splitlines())) + "\n")
    document.write_text(text)
    pictures = document.with_name("images") / "hosts"
    pictures.mkdir(exist_ok=True)
    for file in _records(directory):
        if _picture_of(file).exists():
            shutil.copy(_picture_of(file), pictures)
    for picture in pictures.iterdir():
        if f"{_PICTURES}/{picture.name}" not in text:
            picture.unlink()


if __name__ == "__main__":
    if len(sys.argv) == 3:
        replace_in(Path(sys.argv[2]), sys.argv[1])
    else:
        print("\n".join(table(sys.argv[1])))
