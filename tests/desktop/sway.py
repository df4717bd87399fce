"""A Wayland compositor without a screen: its pictures, its pointer, its keyboard, its clipboard."""

import re
import subprocess

from children import wait_until
from devices import Devices
from picture import Picture

PROGRAMS = ["sway", "grim", "wl-paste"]
SESSION_TYPE = "wayland"

_CONFIGURATION = """
xwayland disable
output HEADLESS-1 resolution {size} position 0 0 background #20303c solid_color
seat seat0 fallback true
"""

_SOCKET = "wayland-1"


class Display:
    """Call `start`, then `prepare` when the session's bus runs."""

    def __init__(self, session, screen):
        self._session = session
        self._size = "x".join(screen.split("x")[:2])
        self._devices = None

    def start(self):
        environment = self._session.environment
        configuration = self._session.directory / "sway"
        configuration.write_text(_CONFIGURATION.format(size=self._size))
        headless = {"WLR_BACKENDS": "headless", "WLR_RENDERER": "pixman", "WLR_LIBINPUT_NO_DEVICES": "1"}
        self._session.children.start(["sway", "--config", str(configuration)], {**environment, **headless})
        environment["WAYLAND_DISPLAY"] = _SOCKET
        socket = f"{environment['XDG_RUNTIME_DIR']}/{_SOCKET}"
        self._devices = wait_until(lambda: _connected(socket, self._size), 10, "compositor")

    def prepare(self):
        self.move(2, 2)

    def close(self):
        if self._devices:
            self._devices.close()

    def move(self, x, y):
        self._devices.move(x, y)

    def click(self, x, y):
        self._devices.click(x, y)

    def press_escape(self):
        self._devices.press_escape()

    def copied(self):
        """The clipboard's text, or None while it has none."""
        return self._session.output(["wl-paste", "--no-newline"])

    def take(self):
        """What the screen shows now."""
        shot = subprocess.run(["grim", "-t", "ppm", "-"], env=self._session.environment,
                              capture_output=True, check=True).stdout  # fmt: skip
        header = re.match(rb"P6\s(\d+)\s(\d+)\s255\s", shot)
        if not header:
            raise ValueError(f"unexpected picture: {shot[:20]!r}")
        return Picture(int(header[1]), int(header[2]), shot[header.end() :])


def _connected(socket, size):
    try:
        return Devices(socket, *map(int, size.split("x")))
    except (FileNotFoundError, ConnectionRefusedError):
        return None
