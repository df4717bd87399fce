"""Pictures of the virtual screen."""

import re
import subprocess
from typing import NamedTuple


class Box(NamedTuple):
    """A rectangle in pixels; left and top belong to it, right and bottom do not."""

    left: int
    top: int
    right: int
    bottom: int

    @property
    def width(self):
        return self.right - self.left

    @property
    def height(self):
        return self.bottom - self.top


class Picture(NamedTuple):
    """Rows of RGB bytes."""

    width: int
    height: int
    pixels: bytes

    def row(self, y):
        return self.pixels[3 * self.width * y : 3 * self.width * (y + 1)]


def take(environment):
    """What the screen shows now."""
    picture = subprocess.run(
        ["import", "-window", "root", "-depth", "8", "ppm:-"],
        env=environment, capture_output=True, check=True,
    ).stdout  # fmt: skip
    header = re.match(rb"P6\s(\d+)\s(\d+)\s255\s", picture)
    if not header:
        raise ValueError(f"unexpected picture: {picture[:20]!r}")
    return Picture(int(header[1]), int(header[2]), picture[header.end() :])


def save(environment, path, crop=None):
    """Saves what the screen shows as a PNG, or a part of it."""
    part = ["-crop", f"{crop.width}x{crop.height}+{crop.left}+{crop.top}", "+repage"] if crop else []
    subprocess.run(["import", "-window", "root", *part, path], env=environment, check=True)


def difference(one, other):
    """The smallest box outside of which two pictures are equal, or None when they are equal."""
    if one[:2] != other[:2]:
        raise ValueError("pictures of different sizes")
    rows = [y for y in range(one.height) if one.row(y) != other.row(y)]
    if not rows:
        return None
    columns = [x for y in rows for x in _different_columns(one.row(y), other.row(y))]
    return Box(min(columns), rows[0], max(columns) + 1, rows[-1] + 1)


def _different_columns(one, other):
    return [i // 3 for i in range(len(one)) if one[i] != other[i]]
