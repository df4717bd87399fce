"""Pictures of the virtual screen."""

import struct
import zlib
from collections import Counter
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

    @property
    def centre(self):
        return ((self.left + self.right) // 2, (self.top + self.bottom) // 2)


class Picture(NamedTuple):
    """Rows of RGB bytes."""

    width: int
    height: int
    pixels: bytes

    @property
    def box(self):
        return Box(0, 0, self.width, self.height)

    def row(self, y, left=0, right=None):
        start = 3 * self.width * y
        return self.pixels[start + 3 * left : start + 3 * (self.width if right is None else right)]

    def pixel(self, x, y):
        return tuple(self.row(y, x, x + 1))

    def crop(self, box):
        rows = (self.row(y, box.left, box.right) for y in range(box.top, box.bottom))
        return Picture(box.width, box.height, b"".join(rows))

    def commonest_colour(self, box):
        part = self.crop(box).pixels
        return Counter(zip(part[0::3], part[1::3], part[2::3])).most_common(1)[0][0]

    def colours(self, box):
        """How many colours there are in a box."""
        part = self.crop(box).pixels
        return len(set(zip(part[0::3], part[1::3], part[2::3])))

    def save(self, path):
        """Writes a PNG file."""

        def chunk(kind, content):
            checksum = struct.pack(">I", zlib.crc32(kind + content))
            return struct.pack(">I", len(content)) + kind + content + checksum

        rows = b"".join(b"\0" + self.row(y) for y in range(self.height))
        with open(path, "wb") as file:
            file.write(b"\x89PNG\r\n\x1a\n")
            header = struct.pack(">IIBBBBB", self.width, self.height, 8, 2, 0, 0, 0)
            file.write(chunk(b"IHDR", header))
            file.write(chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


def difference(one, other, within=None):
    """The smallest box outside of which two pictures are equal, or None when they are equal.

    `within` is the part of the pictures to look at, if not all.
    """
    if one[:2] != other[:2]:
        raise ValueError("pictures of different sizes")
    part = within or one.box
    left, right, rows = part.right, part.left, []
    for y in range(part.top, part.bottom):
        first, second = one.row(y, part.left, part.right), other.row(y, part.left, part.right)
        if first != second:
            begin, end = _different_span(first, second)
            left, right = min(left, part.left + begin), max(right, part.left + end)
            rows.append(y)
    return Box(left, rows[0], right, rows[-1] + 1) if rows else None


def _different_span(one, other):
    """The first pixel that differs, and the one after the last."""
    bits = int.from_bytes(one, "big") ^ int.from_bytes(other, "big")
    first = len(one) - (bits.bit_length() + 7) // 8
    last = len(one) - 1 - ((bits & -bits).bit_length() - 1) // 8
    return first // 3, last // 3 + 1
