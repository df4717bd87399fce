#!/usr/bin/python3
"""Takes the documents' picture of one desktop: the item in its bar, and the panel beside it.

    picturesOfDesktops.py xfce|mate|lxqt|gnome|waybar

To be run in a test world, by scripts/takePictures.
"""

import os
import sys
import time
import unittest

import apart  # noqa: F401, finds the test world
import bus
import documentPicture
import test_gnome
import test_lxqt
import test_mate
import test_waybar
import test_xfce
from children import wait_until
from harness import world
from harness.session import write_preferences

CASES = {"xfce": test_xfce.Xfce, "mate": test_mate.Mate, "lxqt": test_lxqt.Lxqt,
         "gnome": test_gnome.Gnome, "waybar": test_waybar.Waybar}

HISTORY_SECONDS = 40


class Pictures:
    """To be inherited before a desktop's tests, which know how things are done there."""

    def setUp(self):
        write_preferences(self.session.environment["XDG_CONFIG_HOME"], **documentPicture.PREFERENCES)
        super().setUp()

    def runTest(self):
        wait_until(lambda: bus.get(self.session.environment, bus.TIDEWELL, "PublicIp") == world.USER,
                   20, "public address")
        time.sleep(HISTORY_SECONDS)
        name = self.DESKTOP.__name__
        if hasattr(self, "open_menu"):
            self.save(f"{name}Menu", self.open_menu())
            self.display.press_escape()
            time.sleep(1)
        self.save(name, self.open_panel())

    def save(self, name, box):
        screen = self.display.take()
        documentPicture.save(documentPicture.with_end_of_bar(screen, self.bar, box), name)


def main(desktop):
    trusted = {"SSL_CERT_FILE": os.environ["SSL_CERT_FILE"], **CASES[desktop].VARIABLES}
    case = type("Pictures", (Pictures, CASES[desktop]), {"VARIABLES": trusted})
    result = unittest.TextTestRunner().run(unittest.TestSuite([case("runTest")]))
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
