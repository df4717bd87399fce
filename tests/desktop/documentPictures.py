#!/usr/bin/python3
"""Takes the documents' pictures of a subject: documentPictures.py windows|xfce|mate|lxqt|gnome|waybar

"windows" are the panel, the details and the settings, each desktop its item and panel. Started by
scripts/takePictures in a test world with servers.
"""

import os
import sys
import time
import unittest
from pathlib import Path

import apart  # noqa: F401, finds the test world
import bus
import picture
import test_gnome
import test_lxqt
import test_mate
import test_waybar
import test_xfce
import xfce
from children import wait_until
from harness import world
from harness.session import write_preferences
from windowCase import DETAIL, PROGRAM, SETTINGS, WindowCase

CASES = {"xfce": test_xfce.Xfce, "mate": test_mate.Mate, "lxqt": test_lxqt.Lxqt,
         "gnome": test_gnome.Gnome, "waybar": test_waybar.Waybar}

IMAGES = Path(__file__).resolve().parent.parent.parent / "docs/images"

MARGIN = 12

# Frequent samples fill the charts quickly.
PREFERENCES = {"refreshInterval": 0.25}

# A picture of an empty screen has fewer colours. Pictures in documents should load quickly.
FEWEST_COLOURS, MOST_BYTES = 60, 200_000

# Seconds until the history shows nothing from before, for a desktop and for the windows.
DESKTOP_HISTORY, HISTORY = 40, 85

TABS = {"Overview": "details", "Processes": "processes", "History": "history",
        "Diagnostics": "diagnostics"}
SECTIONS = {"General": "settings", "Alerts": "settingsAlerts"}

# Tabs and sections, as assistive programs find them.
TAB, ENTRY = "page tab", "radio button"

# The size of the details at which a whole tab is visible.
SIZE = ["680", "760"]

REST = (500, 4)
# The middle of the item, from the right end of the bar.
ITEM = 19


def with_end_of_bar(screen, bar, box):
    """The part of a screen with a box and the end of the bar next to it."""
    return screen.crop(screen.box._replace(
        left=max(box.left - MARGIN, 0),
        top=max(min(bar.top, box.top - MARGIN), 0),
        bottom=min(max(bar.bottom, box.bottom + MARGIN), screen.height)))


def save(image, name):
    """Writes docs/images/NAME.png. Raises ValueError for an empty or a large picture."""
    colours = image.colours(image.box)
    if colours < FEWEST_COLOURS:
        raise ValueError(f"{name}: {colours} colours, so there is nothing to see")
    path = IMAGES / f"{name}.png"
    image.save(path)
    size = path.stat().st_size
    print(f"{path.name}: {image.width} x {image.height}, {colours} colours, {size} bytes",
          flush=True)
    if size > MOST_BYTES:
        raise ValueError(f"{name}: {size} bytes are too many")


class Desktop:
    """To be inherited before a desktop's tests."""

    def setUp(self):
        write_preferences(self.session.environment["XDG_CONFIG_HOME"], **PREFERENCES)
        super().setUp()

    def runTest(self):
        wait_until(lambda: bus.get(self.session.environment, bus.TIDEWELL, "PublicIp") == world.USER,
                   20, "public address")
        time.sleep(DESKTOP_HISTORY)
        name = self.DESKTOP.__name__
        if hasattr(self, "open_menu"):
            self.keep(f"{name}Menu", self.open_menu())
            self.display.press_escape()
            time.sleep(1)
        self.keep(name, self.open_panel())

    def keep(self, name, box):
        screen = self.display.take()
        save(with_end_of_bar(screen, self.bar, box), name)


class Windows(WindowCase):
    PREFERENCES = PREFERENCES
    SCREEN = "1280x960x24"

    def start(self):
        self.display.move(*REST)
        time.sleep(3)  # the bar draws itself
        self.empty = self.display.take()
        super().start()

    def command(self):
        names = ["TIDEWELL_SPEEDTEST_CONFIG", "SSL_CERT_FILE"]
        return ["env", *(f"{name}={os.environ[name]}" for name in names), PROGRAM]

    def runTest(self):
        wait_until(lambda: self.get("PublicIp") == world.USER, 10, "public address")
        bus.call(self.session.environment, bus.TIDEWELL, "RunSpeedTest")
        wait_until(lambda: (self.get("LastSpeedTest") or "").count("double"), 60, "speed test")
        time.sleep(HISTORY)
        self.take_panel()
        self.prefer()  # as they are when nobody has chosen anything
        self.open(DETAIL)
        self.session.output(["xdotool", "getactivewindow", "windowsize", *SIZE])
        self.reader.wait_to_read("curl, ", 20)
        self.take_parts(TAB, TABS)
        bus.call(self.session.environment, bus.TIDEWELL, "Quit")
        wait_until(lambda: self.changes()[1] is None, 5, "end of the details")
        self.start()
        self.open(SETTINGS)
        self.take_parts(ENTRY, SECTIONS)

    def changes(self):
        """The screen, and the changed part below the bar."""
        screen = self.display.take()
        room = screen.box._replace(top=xfce.BAR_HEIGHT)
        return screen, picture.difference(self.empty, screen, room)

    def take_panel(self):
        self.display.click(self.empty.width - ITEM, xfce.BAR_HEIGHT // 2)
        self.display.move(*REST)
        time.sleep(2)
        screen, box = self.changes()
        bar = screen.box._replace(bottom=xfce.BAR_HEIGHT)
        save(with_end_of_bar(screen, bar, box), "panel")
        self.display.press_escape()
        wait_until(lambda: self.changes()[1] is None, 5, "end of the panel")

    def take_parts(self, role, parts):
        for part, name in parts.items():
            self.reader.press(role, part)
            time.sleep(2)
            screen, box = self.changes()
            save(screen.crop(box), name)


def case(subject):
    if subject == "windows":
        return Windows("runTest")
    trusted = {"SSL_CERT_FILE": os.environ["SSL_CERT_FILE"], **CASES[subject].VARIABLES}
    return type("Pictures", (Desktop, CASES[subject]), {"VARIABLES": trusted})("runTest")


if __name__ == "__main__":
    result = unittest.TextTestRunner().run(unittest.TestSuite([case(sys.argv[1])]))
    sys.exit(0 if result.wasSuccessful() else 1)
