"""Pictures in files, read by GTK's library."""

import gi
from picture import Picture

gi.require_version("GdkPixbuf", "2.0")
from gi.repository import GdkPixbuf  # noqa: E402


def load(path):
    """The picture in a file, without what it says of transparency."""
    image = GdkPixbuf.Pixbuf.new_from_file(str(path))
    width, height, line = image.get_width(), image.get_height(), image.get_rowstride()
    data, channels = image.get_pixels(), image.get_n_channels()
    rows = b"".join(data[y * line : y * line + channels * width] for y in range(height))
    pixels = bytearray(3 * width * height)
    for channel in range(3):
        pixels[channel::3] = rows[channel::channels]
    return Picture(width, height, bytes(pixels))
