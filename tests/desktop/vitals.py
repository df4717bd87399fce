"""What must not grow in a process that runs for months."""

import os
import pathlib
from collections import namedtuple

Vitals = namedtuple("Vitals", "descriptors timers threads children private")


def vitals(pid):
    """Counts, and kilobytes of private memory."""
    process = pathlib.Path(f"/proc/{pid}")
    targets = [_target(descriptor) for descriptor in (process / "fd").iterdir()]
    tasks = list((process / "task").iterdir())
    children = sum(len(_read(task / "children").split()) for task in tasks)
    rollup = dict(line.split(":") for line in _read(process / "smaps_rollup").splitlines()[1:])
    return Vitals(len([target for target in targets if target]),
                  targets.count("anon_inode:[timerfd]"), len(tasks), children,
                  int(rollup["Private_Dirty"].split()[0]))


def least(readings):
    """The smallest value of each field, without what was only temporary."""
    return Vitals(*map(min, zip(*readings)))


def _target(descriptor):
    """None for a descriptor that has been closed since it was listed."""
    try:
        return os.readlink(descriptor)
    except FileNotFoundError:
        return None


def _read(path):
    try:
        return path.read_text()
    except FileNotFoundError:
        return ""
