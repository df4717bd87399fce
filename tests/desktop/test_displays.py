#!/usr/bin/python3
"""The windows open on the display that is there, if another one that is set refuses or does not answer."""

import socket
import subprocess
import threading
import unittest
from pathlib import Path
from types import SimpleNamespace

import apart
import sway
import x11
from children import wait_until
from session import Session
from windowCase import PROGRAM, SETTINGS

WINDOWS = str(Path(PROGRAM).parent.parent / "libexec/tidewell/tidewell-windows")

REFUSING_X = ":9999"


class DisplayCase(unittest.TestCase):
    def begin(self, display):
        """Starts a display alone. A window manager that starts may miss a window."""
        desktop = SimpleNamespace(NAME="", DISPLAY=display, PROGRAMS=[], PANEL=None,
                                  configure=lambda _config_home: None)  # fmt: skip
        self.session = Session(desktop).__enter__()
        self.addCleanup(self.session.__exit__)
        self.environment = self.session.environment

    def compositor(self, name, serve):
        """Sets a Wayland display that accepts connections and does this with them."""
        path = str(self.session.directory / name)
        listener = socket.socket(socket.AF_UNIX)
        listener.bind(path)
        listener.listen()
        kept = [listener]
        self.addCleanup(lambda: [each.close() for each in kept])
        self.addCleanup(listener.shutdown, socket.SHUT_RDWR)

        def accept():
            try:
                while True:
                    kept.append(listener.accept()[0])
                    serve(kept[-1])
            except OSError:
                pass

        threading.Thread(target=accept, daemon=True).start()
        self.environment["WAYLAND_DISPLAY"] = path

    def silent_compositor(self):
        self.compositor("silent", lambda connection: None)

    def closing_compositor(self):
        self.compositor("closing", lambda connection: connection.close())

    def is_open(self):
        raise NotImplementedError

    def assert_opens(self):
        self.session.start([WINDOWS, "settings"])
        wait_until(self.is_open, 15, "window")

    def assert_says_that_there_is_none(self):
        done = subprocess.run([WINDOWS, "settings"], env=self.environment, text=True, capture_output=True,
                              timeout=15)
        self.assertEqual((done.returncode, done.stderr), (1, "tidewell-windows: there is no display\n"))


class X(DisplayCase):
    def setUp(self):
        self.begin(x11)

    def is_open(self):
        return self.session.output(["xdotool", "search", "--onlyvisible", "--name", SETTINGS])

    def test_beside_a_compositor_that_does_not_answer(self):
        self.silent_compositor()
        self.assert_opens()

    def test_beside_a_compositor_that_hangs_up(self):
        self.closing_compositor()
        self.assert_opens()

    def test_when_the_user_has_chosen_wayland_which_is_not_there(self):
        self.environment["QT_QPA_PLATFORM"] = "wayland"
        self.assert_opens()


class Wayland(DisplayCase):
    def setUp(self):
        self.begin(sway)

    def is_open(self):
        return SETTINGS in [window[0] for window in self.session.display.windows()]

    def test_beside_an_x_server_that_refuses(self):
        self.environment["DISPLAY"] = REFUSING_X
        self.assert_opens()

    def test_when_the_user_has_chosen_an_x_server_that_refuses(self):
        self.environment.update(DISPLAY=REFUSING_X, QT_QPA_PLATFORM="xcb")
        self.assert_opens()


class NoDisplay(DisplayCase):
    def setUp(self):
        self.begin(x11)
        del self.environment["DISPLAY"]

    def test_a_compositor_that_does_not_answer(self):
        self.silent_compositor()
        self.assert_says_that_there_is_none()

    def test_a_compositor_that_hangs_up(self):
        self.closing_compositor()
        self.assert_says_that_there_is_none()

    def test_chosen_by_the_user(self):
        for platform in ("wayland", "xcb", "wayland;xcb"):
            with self.subTest(platform):
                self.environment["QT_QPA_PLATFORM"] = platform
                self.assert_says_that_there_is_none()


if __name__ == "__main__":
    apart.main([*x11.PROGRAMS, *sway.PROGRAMS], as_user=True)
