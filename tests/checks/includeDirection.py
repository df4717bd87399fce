#!/usr/bin/python3
"""Checks that files of src/ include only files of lower layers.

    includeDirection.py SOURCE_DIRECTORY

A room sees the rooms listed for it and itself. The first entry that a file's path starts with is
its room.
"""

import pathlib
import re
import sys

SERVICES = ["settings", "sampling", "connectivity", "processes", "speedtest", "alerts"]

# room -> what it may include. Order matters: a longer path comes before a shorter one.
ROOMS = {
    "base": [],
    "platform/linux": ["base", "platform"],
    "platform": ["base"],
    "settings": ["base", "platform"],
    "sampling": ["base", "platform"],
    "connectivity": ["base", "platform", "sampling"],
    "processes": ["base", "platform"],
    "speedtest": ["base", "platform"],
    "alerts": ["base", "platform", "settings"],
    "format": ["base", *SERVICES],
    "windowRequests": ["base"],
    "bus": ["base"],
    "tile": ["base"],
    "helpers": ["base", "platform/linux"],
    "control": ["base", "platform/linux", "bus"],
    # The process knows where the preferences lie; its windows do not.
    "ui/application": ["base", "platform", "platform/linux", "format", "windowRequests", "bus", "tile",
                       "settings", "ui"],
    "ui": ["base", "platform", "format", "windowRequests", "bus", "tile", "settings"],
    "app": ["base", "platform", "platform/linux", "format", "windowRequests", "bus", "tile",
            *SERVICES],
}

# Single files beyond that, room -> files. Views and the bus interface show what services publish and
# start none: they see the states, the values that these are made of, and the text forms of such
# values.
_STATES = re.compile(
    r"[a-z]+/([A-Za-z]+State|NetworkSnapshot|NetworkStatus|ConnectionInfo|ProcessUsage)\.h"
)
VALUES = {"bus": _STATES, "control": _STATES, "ui": _STATES, "ui/application": _STATES}

# Libraries that only some rooms may include.
OUTSIDE = {
    re.compile(r"systemd/|linux/"): ["platform/linux", "app", "control", "helpers"],
    re.compile(r"curl/|openssl/|nlohmann/|canberra"): ["helpers"],
    re.compile(r"Q[A-Z]|qpa/|wayland|xcb/"): ["ui", "ui/application"],
}

INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]([^>"]+)[>"]', re.MULTILINE)


def room_of(path):
    matches = [room for room in ROOMS if path == room or path.startswith(room + "/")]
    return max(matches, key=len, default=None)


def faults_of(source, file):
    """The forbidden includes of one file, as lines of text."""
    path = file.relative_to(source).as_posix()
    room = room_of(path)
    if room is None:
        yield f"{path}: lies in no known room"
        return
    for included in INCLUDE.findall(file.read_text(encoding="utf-8")):
        target = room_of(included)
        is_value = room in VALUES and VALUES[room].fullmatch(included) and target in SERVICES
        if target and target != room and target not in ROOMS[room] and not is_value:
            yield f"{path}: {room} must not include {included}"
        for pattern, allowed in OUTSIDE.items():
            if not target and pattern.match(included) and room not in allowed:
                yield f"{path}: {room} must not include {included}"


def main(source):
    files = sorted(file for kind in ("*.h", "*.cpp") for file in source.rglob(kind))
    faults = [fault for file in files for fault in faults_of(source, file)]
    print("\n".join(faults) or f"{len(files)} files include only lower layers")
    return 1 if faults or not files else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]).resolve()))
