#!/usr/bin/python3
"""What the tests saw of each desktop: hostRecord.py DIRECTORY prints it as a table."""

import json
import os
import sys
from pathlib import Path

# Set it to a directory to keep what the tests see.
_DIRECTORY = os.environ.get("TIDEWELL_HOST_RECORD")

COLUMNS = ["item", "its width", "left click", "middle click", "menu", "the panel", "closed by", "Copy IP"]


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


def table(directory):
    """The lines of the table."""
    lines = ["| desktop | " + " | ".join(COLUMNS) + " |", "|---" * (len(COLUMNS) + 1) + "|"]
    for file in sorted(Path(directory).glob("*.json")):
        row = json.loads(file.read_text())
        lines.append(f"| {file.stem} | " + " | ".join(row.get(name, "") for name in COLUMNS) + " |")
    return lines


if __name__ == "__main__":
    print("\n".join(table(sys.argv[1])))
