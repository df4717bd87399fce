#!/usr/bin/python3
"""Takes the documents' pictures of the panel, the details and the settings.

To be run in a test world with a server for speed tests, by scripts/takePictures.
"""

import os
import sys
import time
import unittest

import apart  # noqa: F401, finds the test world
import bus
import documentPicture
import picture
import xfce
from children import wait_until
from harness import world
from windowCase import DETAIL, PROGRAM, SETTINGS, WindowCase

# After the speed test, until the history holds nothing older.
HISTORY_SECONDS = 85

TABS = {"Overview": "details", "Processes": "processes", "History": "history",
        "Diagnostics": "diagnostics"}
SECTIONS = {"General": "settings", "Alerts": "settingsAlerts"}

# Tabs and sections, as assistive programs find them.
TAB, ENTRY = "page tab", "radio button"

# Of the details, so that a tab is seen as a whole.
SIZE = ["680", "760"]

REST = (500, 4)
# The middle of the item, from the right end of the bar.
ITEM = 19


class Pictures(WindowCase):
    PREFERENCES = documentPicture.PREFERENCES
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
        time.sleep(HISTORY_SECONDS)
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
        """What is to be seen below the bar."""
        screen = self.display.take()
        room = screen.box._replace(top=xfce.BAR_HEIGHT)
        return screen, picture.difference(self.empty, screen, room)

    def take_panel(self):
        self.display.click(self.empty.width - ITEM, xfce.BAR_HEIGHT // 2)
        self.display.move(*REST)
        time.sleep(2)
        screen, box = self.changes()
        bar = screen.box._replace(bottom=xfce.BAR_HEIGHT)
        documentPicture.save(documentPicture.with_end_of_bar(screen, bar, box), "panel")
        self.display.press_escape()
        wait_until(lambda: self.changes()[1] is None, 5, "end of the panel")

    def take_parts(self, role, parts):
        for part, name in parts.items():
            self.reader.press(role, part)
            time.sleep(2)
            screen, box = self.changes()
            documentPicture.save(screen.crop(box), name)


if __name__ == "__main__":
    outcome = unittest.TextTestRunner().run(unittest.TestSuite([Pictures("runTest")]))
    sys.exit(0 if outcome.wasSuccessful() else 1)
