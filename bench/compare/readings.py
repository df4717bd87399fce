"""The rates that programs show, read out of what they print. Pure.

Each function gives a list of (down, up) in bytes a second, one for each time that they were shown.
"""

import json
import re

_UNITS = {"": 1, "K": 1_000, "M": 1_000_000, "G": 1_000_000_000}


def conky(text):
    """Lines "down UP up" in KiB/s, as its configuration asks for them."""
    found = re.findall(r"^ *net ([\d.]+) ([\d.]+)$", text, re.MULTILINE)
    return [(float(down) * 1024, float(up) * 1024) for down, up in found]


def polybar(text):
    """Lines with "net 1.2 MB/s 345 KB/s", in thousands, among others."""
    found = re.findall(r"net +([\d.]+) ([KMG]?)B/s +([\d.]+) ([KMG]?)B/s", text)
    return [(float(down) * _UNITS[down_unit], float(up) * _UNITS[up_unit])
            for down, down_unit, up, up_unit in found]


def bwm_ng(text, interface="eth0"):
    """Lines "time;interface;sent;received;..." in bytes a second."""
    lines = [line.split(";") for line in text.splitlines()]
    return [(float(line[3]), float(line[2])) for line in lines
            if len(line) > 4 and line[1] == interface]


def nethogs(text):
    """Blocks that begin with "Refreshing:"; lines "program/pid/user<tab>sent<tab>received", KiB/s."""
    found = []
    for block in text.split("Refreshing:")[1:]:
        rows = re.findall(r"^\S.*\t([\d.e+-]+)\t([\d.e+-]+)$", block, re.MULTILINE)
        if rows:
            found.append((sum(float(down) for _, down in rows) * 1024,
                          sum(float(up) for up, _ in rows) * 1024))
    return found


def vnstat(text):
    """One document of `vnstat -tr --json` after the other."""
    decoder, found, at = json.JSONDecoder(), [], text.find("{")
    while at >= 0:
        document, end = decoder.raw_decode(text, at)
        found.append((float(document["rx"]["bytespersecond"]),
                      float(document["tx"]["bytespersecond"])))
        at = text.find("{", end)
    return found


def samples(text, last=10):
    """The last ones of Tidewell's property Samples, as `busctl --json=short` prints it."""
    return [(float(sample[1]), float(sample[2])) for sample in json.loads(text)["data"][-last:]]


def panel_text(text):
    """Texts in the panel such as "↓1.2M ↑345K", one a line."""
    found = re.findall(r"↓([\d.]+)([KMG]) ↑([\d.]+)([KMG])", text)
    return [(float(down) * _UNITS[down_unit], float(up) * _UNITS[up_unit])
            for down, down_unit, up, up_unit in found]
