"""Reads the rates that programs show out of what they print.

Each function returns a list of (down, up) in bytes a second, one for each time they were shown.
"""

import json
import re

_UNITS = {"": 1, "K": 1_000, "M": 1_000_000, "G": 1_000_000_000}


def conky(text):
    """Lines "net DOWN UP" in KiB/s, as configured."""
    return [(float(down) * 1024, float(up) * 1024)
            for down, up in re.findall(r"^ *net ([\d.]+) ([\d.]+)$", text, re.MULTILINE)]


def _with_units(pattern, text):
    return [(float(down) * _UNITS[down_unit], float(up) * _UNITS[up_unit])
            for down, down_unit, up, up_unit in re.findall(pattern, text)]


def polybar(text):
    """Lines with "net 1.2 MB/s 345 KB/s" in units of 1,000, among others."""
    return _with_units(r"net +([\d.]+) ([KMG]?)B/s +([\d.]+) ([KMG]?)B/s", text)


def panel_text(text):
    """Tidewell's texts in the panel, such as "↓1.2M ↑345K", one a line."""
    return _with_units(r"↓([\d.]+)([KMG]) ↑([\d.]+)([KMG])", text)


def bwm_ng(text, interface="eth0"):
    """Lines "time;interface;sent;received;..." in bytes a second."""
    return [(float(down), float(up)) for up, down in re.findall(
        rf"^[^;]*;{interface};([\d.]+);([\d.]+);", text, re.MULTILINE)]


def nethogs(text):
    """Blocks that begin with "Refreshing:", of lines "program/pid/user<tab>sent<tab>received" in
    KiB/s."""
    found = []
    for block in text.split("Refreshing:")[1:]:
        rows = re.findall(r"^\S.*\t([\d.e+-]+)\t([\d.e+-]+)$", block, re.MULTILINE)
        if rows:
            found.append((sum(float(down) for _, down in rows) * 1024,
                          sum(float(up) for up, _ in rows) * 1024))
    return found


def vnstat(text):
    """The documents of several `vnstat -tr --json`."""
    return [(float(down), float(up)) for down, up in re.findall(
        r'"rx":\s*{[^}]*"bytespersecond":\s*(\d+).*?"tx":\s*{[^}]*"bytespersecond":\s*(\d+)', text,
        re.DOTALL)]


def samples(text, last=10):
    """The last of Tidewell's property Samples, as `busctl --json=short` prints it."""
    return [(float(sample[1]), float(sample[2])) for sample in json.loads(text)["data"][-last:]]
