"""A Wayland compositor without a screen: its pictures, its pointer, its keyboard, its clipboard."""

import json
import re
import subprocess
from pathlib import Path

from children import wait_until
from devices import Devices
from picture import Picture

PROGRAMS = ["sway", "grim", "wl-paste"]
SESSION_TYPE = "wayland"

_CONFIGURATION = """
xwayland disable
seat seat0 fallback true
"""
_OUTPUT = "output HEADLESS-{} resolution {}x{} position {} 0 background #20303c solid_color\n"

_HEADLESS = {
    "WLR_BACKENDS": "headless",
    "WLR_RENDERER": "pixman",
    "WLR_LIBINPUT_NO_DEVICES": "1",
}

_ICONS = Path("/usr/share/icons/hicolor")

# The compositor's own variable: how many screens there are. They stand side by side.
SCREENS = "WLR_HEADLESS_OUTPUTS"


class Display:
    # The compositor is started through this, if it would refuse the caller.
    WRAPPER = []
    SOCKET = "wayland-1"

    def __init__(self, session, screen):
        self._session = session
        self._width, self._height = map(int, screen.split("x")[:2])
        self._devices = None

    def start(self):
        environment = self._session.environment
        count = int(environment.get(SCREENS, "1"))
        self._session.children.start([*self.WRAPPER, *self.command(count)], {**environment, **_HEADLESS})
        environment["WAYLAND_DISPLAY"] = self.SOCKET
        socket = f"{environment['XDG_RUNTIME_DIR']}/{self.SOCKET}"
        size = (count * self._width, self._height)
        self._devices = wait_until(lambda: _connected(socket, *size), 10, "compositor")

    def command(self, count):
        """Starts the compositor with this many screens."""
        configuration = self._session.directory / "sway"
        outputs = [_OUTPUT.format(index + 1, self._width, self._height, index * self._width)
                   for index in range(count)]
        configuration.write_text(_CONFIGURATION + "".join(outputs))
        return ["sway", "--config", str(configuration)]

    def close(self):
        if self._devices:
            self._devices.close()

    def move(self, x, y):
        self._devices.move(x, y)

    def click(self, x, y, button=1):
        self._devices.click(x, y, button)

    def press_escape(self):
        self.press("Escape")

    def press(self, *keys):
        self._devices.press(*keys)

    def copied(self):
        """The clipboard's text, or None while it has none."""
        return self._session.output(["wl-paste", "--no-newline"])

    def windows(self):
        """Title, identity and whether there is an icon, of each window. The identity names the icon."""
        return [(node["name"], node["app_id"], has_icon(node["app_id"]))
                for node in _leaves(self._tree())]

    def containers(self):
        """Number, kind, title and box of everything that the compositor lays out."""
        return [(node["id"], node["type"], node["name"], node["rect"]) for node in _nodes(self._tree())]

    def _tree(self):
        return json.loads(self._session.output(["swaymsg", "-s", self._control(), "-t", "get_tree"]))

    def _control(self):
        folder = Path(self._session.environment["XDG_RUNTIME_DIR"])
        return str(next(folder.glob("sway-ipc.*.sock")))

    def take(self):
        """What the screen shows now."""
        shot = subprocess.run(["grim", "-t", "ppm", "-"], env=self._session.environment,
                              capture_output=True, check=True).stdout  # fmt: skip
        header = re.match(rb"P6\s(\d+)\s(\d+)\s255\s", shot)
        if not header:
            raise ValueError(f"unexpected picture: {shot[:20]!r}")
        return Picture(int(header[1]), int(header[2]), shot[header.end() :])


def has_icon(identity):
    """Whether the icon theme has one of this name, which compositors look for."""
    return bool(identity) and any(_ICONS.glob(f"*/apps/{identity}.*"))


def _nodes(node):
    yield node
    for child in node["nodes"] + node["floating_nodes"]:
        yield from _nodes(child)


def _leaves(node):
    below = node["nodes"] + node["floating_nodes"]
    if not below:
        return [node] if node.get("pid") else []
    return [leaf for child in below for leaf in _leaves(child)]


def _connected(socket, width, height):
    try:
        return Devices(socket, width, height)
    except (FileNotFoundError, ConnectionRefusedError):
        return None
