"""An X server without a screen: its pictures, its pointer, its keyboard and its clipboard."""

import os
import struct
import subprocess

import background
from children import wait_until
from picture import Picture
from xWindows import XWindows

PROGRAMS = ["Xvfb", "xdotool", "xclip"]
SESSION_TYPE = "x11"

_BACKGROUND = 0x20303C

# The X server's file of pixels: sizes of the header and of a colour map's entry, and the positions of
# the fields in the header, in 32-bit words.
_HEADER_WORDS = 25
_WIDTH, _HEIGHT, _LINE, _COLOURS = 4, 5, 12, 19
_COLOUR_BYTES = 12


class Display:
    def __init__(self, session, screen):
        self._session = session
        self._screen = screen
        self._pixels = session.directory / "pixels"

    def start(self):
        self._pixels.mkdir()
        reading, writing = os.pipe()
        self._session.start(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", self._screen,
             "-nolisten", "tcp", "-noreset", "-fbdir", str(self._pixels)],
            pass_fds=[writing],
        )  # fmt: skip
        os.close(writing)
        with open(reading) as answer:
            number = answer.readline().strip()
        if not number:
            raise RuntimeError(f"no X server: {self._session.log.read_text(errors='replace')}")
        self._session.environment["DISPLAY"] = f":{number}"
        self.environment = dict(self._session.environment)
        background.paint(self.environment["DISPLAY"], _BACKGROUND)

    def close(self):
        pass

    def move(self, x, y):
        self._run("xdotool", "mousemove", str(x), str(y))

    def click(self, x, y, button=1):
        # The press comes a moment after the move: some panels read the pointer's position.
        self._run("xdotool", "mousemove", str(x), str(y), "sleep", "0.05", "click", str(button))

    def scroll_down(self, x, y):
        self._run("xdotool", "mousemove", str(x), str(y), "click", "--repeat", "20", "5")

    def press_escape(self):
        self.press("Escape")

    def press(self, *keys):
        self._run("xdotool", "key", *keys)

    def copied(self):
        """The clipboard's text, or None while it has none."""
        return self._session.output(["xclip", "-selection", "clipboard", "-out"])

    def windows(self):
        """Title, identity and whether there is an icon, of each ordinary window."""
        return [(window.title, window.identity[1], self._has_icon(window.number))
                for window in XWindows(self._session).stacked()]

    def _has_icon(self, number):
        icon = self._session.output(["xprop", "-id", number, "-notype", "32c", "_NET_WM_ICON"]) or ""
        return "=" in icon or "Icon (" in icon

    def is_bar_drawn(self, height, edge="bottom"):
        """Whether the screen's lower or upper edge has another colour than the rest."""
        screen = self.take()
        line = height if edge == "top" else screen.height - height
        upper, lower = screen.box._replace(bottom=line), screen.box._replace(top=line)
        return screen.commonest_colour(upper) != screen.commonest_colour(lower)

    def take(self):
        """What the screen shows now."""
        data = (self._pixels / "Xvfb_screen0").read_bytes()
        header = struct.unpack_from(f">{_HEADER_WORDS}I", data)
        width, height, line = header[_WIDTH], header[_HEIGHT], header[_LINE]
        begin = header[0] + header[_COLOURS] * _COLOUR_BYTES
        starts = range(begin, begin + height * line, line)
        rows = b"".join(data[start : start + 4 * width] for start in starts)
        pixels = bytearray(3 * width * height)
        for channel in range(3):
            pixels[channel::3] = rows[2 - channel :: 4]
        return Picture(width, height, bytes(pixels))

    def _run(self, *command):
        subprocess.run(command, env=self.environment, check=True)


def await_bar(height, edge="bottom"):
    """The `arrive` of a desktop whose bar has this height. A panel is on the bus before it has drawn itself."""
    return lambda session: wait_until(lambda: session.display.is_bar_drawn(height, edge), 20, "bar")


def write_gtk_settings(config_home, text):
    """Writes groups of settings of GTK's desktops into a file of the session's own."""
    folder = config_home / "glib-2.0/settings"
    folder.mkdir(parents=True)
    (folder / "keyfile").write_text(text)
