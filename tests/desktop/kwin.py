"""KWin's Wayland compositor in windows of an X server without a screen, which has its pictures."""

import shutil
import subprocess
from pathlib import Path

import x11
from children import wait_until

PROGRAMS = [*x11.PROGRAMS, "kwin_wayland", "wl-paste"]
SESSION_TYPE = "wayland"

# Variables of the session: how many screens there are, side by side, and their scale.
SCREENS = "TIDEWELL_TEST_SCREENS"
SCALE = "TIDEWELL_TEST_SCALE"

_SOCKET = "wayland-0"


class Display(x11.Display):
    def __init__(self, session, screen):
        self._width, self._height, depth = map(int, screen.split("x"))
        self._count = int(session.environment.get(SCREENS, "1"))
        self._scale = float(session.environment.get(SCALE, "1"))
        super().__init__(session, f"{self._width * self._count}x{self._height}x{depth}")

    def start_compositor(self):
        """Starts the compositor, which needs the session bus."""
        environment = self._session.environment
        # A copy has no capabilities. Some machines start no program that has those of KWin.
        program = shutil.copy(shutil.which("kwin_wayland"), self._session.directory)
        self._session.start(
            [program, "--x11-display", environment.pop("DISPLAY"), "--width", str(self._width),
             "--height", str(self._height), "--output-count", str(self._count), "--no-lockscreen",
             "--socket", _SOCKET])  # fmt: skip
        windows = wait_until(self._windows, 30, "compositor")
        # There is no window manager outside.
        for index, window in enumerate(windows):
            self._run("xdotool", "windowmove", window, str(index * self._width), "0")
        wait_until(Path(environment["XDG_RUNTIME_DIR"], _SOCKET).exists, 10, "compositor's socket")
        environment["WAYLAND_DISPLAY"] = _SOCKET
        # For programs that the bus starts.
        subprocess.run(["dbus-update-activation-environment", "DISPLAY=", f"WAYLAND_DISPLAY={_SOCKET}"],
                       env=environment, check=True)  # fmt: skip
        if self._scale != 1.0:
            self._set_scale()

    def _set_scale(self):
        """Sets the scale of all screens, which stay side by side."""
        wanted = []
        for index in range(self._count):
            left = round(index * self._width / self._scale)
            wanted += [f"output.{index + 1}.scale.{self._scale:g}", f"output.{index + 1}.position.{left},0"]
        wait_until(lambda: self._session.output(["kscreen-doctor", *wanted]) is not None, 20, "scale")

    def move(self, x, y):
        super().move(self._pointer(x), y)

    def click(self, x, y, button=1):
        super().click(self._pointer(x), y, button)

    def _pointer(self, x):
        """Where the X server's pointer has to be. In windows, the compositor takes the corners of screens for
        device pixels. So of a scaled second screen only the left part can be reached."""
        corner = x // self._width * self._width / self._scale
        return round(x + corner * (self._scale - 1))

    def copied(self):
        """The clipboard's text, or None while it has none. Version 5 does not answer before the first one."""
        return self._session.output(["timeout", "2", "wl-paste", "--no-newline"])

    def _windows(self):
        """The compositor's windows once all are there, one for each screen from the left."""
        found = subprocess.run(["xdotool", "search", "--name", ""], env=self.environment, text=True,
                               capture_output=True).stdout.split()  # fmt: skip
        # The first is the root window.
        windows = sorted(found, key=int)[1:]
        return windows if len(windows) == self._count else None
