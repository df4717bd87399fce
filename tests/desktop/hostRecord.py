#!/usr/bin/python3
"""What the tests saw of each desktop.

    hostRecord.py DIRECTORY            prints it as a table
    hostRecord.py DIRECTORY DOCUMENT   replaces the table in the document, and the pictures beside it
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


def table(directory):
    """The lines of the table."""
    lines = ["| desktop | " + " | ".join(COLUMNS) + " |", "|---" * (len(COLUMNS) + 1) + "|"]
    for file in _records(directory):
        row = json.loads(file.read_text())
        picture = _picture_of(file)
        name = f"[{file.stem}]({_PICTURES}/{picture.name})" if picture.exists() else file.stem
        lines.append(f"| {name} | " + " | ".join(row.get(column, "") for column in COLUMNS) + " |")
    return lines


def replace_in(document, directory):
    text, found = _TABLE.subn("\n".join(table(directory)).replace("\\", "\\\\") + "\n", document.read_text())
    if found != 1:
        raise ValueError(f"{document} has {found} tables of desktops")
    document.write_text(text)
    pictures = document.with_name("images") / "hosts"
    shutil.rmtree(pictures, ignore_errors=True)
    pictures.mkdir()
    for file in _records(directory):
        if _picture_of(file).exists():
            shutil.copy(_picture_of(file), pictures)


if __name__ == "__main__":
    if len(sys.argv) == 3:
        replace_in(Path(sys.argv[2]), sys.argv[1])
    else:
        print("\n".join(table(sys.argv[1])))
