"""The details and the settings in a real session, for tests of what a user does with them."""

import os
import unittest
from pathlib import Path

import bus
import xfce
from children import wait_until
from harness.session import write_preferences
from screenReader import VARIABLES, ScreenReader
from session import Session
from xWindows import XWindows

PROGRAM = os.path.abspath(os.environ.get("TIDEWELL", "build/dev/src/tidewell"))

DETAIL = "Tidewell \u2014 Network Details"
SETTINGS = "Tidewell \u2014 Settings"
TOGGLE = "check box"
OPENING = {DETAIL: "OpenDetail", SETTINGS: "OpenSettings"}


class WindowCase(unittest.TestCase):
    """A session, a resident and preferences of its own for each test."""

    PREFERENCES = {}
    SCREEN = "1280x720x24"

    def setUp(self):
        self.session = Session(xfce, self.SCREEN, **VARIABLES).__enter__()
        self.addCleanup(self.session.__exit__)
        self.display = self.session.display
        self.reader = ScreenReader(self.session)
        self.addCleanup(self.reader.close)
        self.screen = XWindows(self.session)
        self.configuration = Path(self.session.environment["XDG_CONFIG_HOME"])
        self.prefer(**self.PREFERENCES)
        self.start()

    def start(self):
        self.resident = self.session.start(self.command())
        wait_until(lambda: bus.registered_items(self.session.environment), 15, "registered item")

    def command(self):
        return [PROGRAM]

    @property
    def preferences(self):
        return self.configuration / "tidewell/preferences.toml"

    def prefer(self, **preferences):
        write_preferences(self.configuration, **preferences)

    def preferred(self, line):
        """Whether the preferences file says so."""
        return line in self.preferences.read_text().splitlines()

    def turn(self, title, key, value):
        """Presses a switch, which stores the value."""
        self.reader.press(TOGGLE, title)
        wait_until(lambda: self.preferred(f"{key} = {value}"), 5, f"{key} = {value}")
        self.assertEqual(self.reader.find(TOGGLE, title)["checked"], value == "true")

    def get(self, name):
        return bus.get(self.session.environment, bus.TIDEWELL, name)

    def ask_for(self, title):
        bus.call(self.session.environment, bus.TIDEWELL, OPENING[title])

    def open(self, title):
        """Opens a window, or brings it to the front."""
        self.ask_for(title)
        wait_until(lambda: self.screen.active() == title, 5, f"{title} in front")

    def click(self, element):
        left, top, width, height = element["box"]
        self.display.click(left + width // 2, top + height // 2)

    def assert_alive(self):
        self.assertIsNone(self.resident.poll(), "the resident has ended")
        self.assertEqual(len(self.session.children.named("tidewell-windows")), 1)
