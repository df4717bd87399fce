#!/usr/bin/python3
"""The real resident in a real Xfce panel on a virtual screen."""

import os
import pathlib
import shutil
import subprocess
import sys
import time
import unittest

import bus
import picture
import xfce
from children import wait_until
from session import Session

PROGRAM = os.environ.get("TIDEWELL", "build/dev/src/tidewell")
TESTS = pathlib.Path(__file__).resolve().parent.parent
NEEDED = ["Xvfb", "xfce4-panel", "openbox", "import", "xsetroot", "dbus-send", "stdbuf"]
APART = "TIDEWELL_DESKTOP_APART"

PANEL_HEIGHT = 32

# The panel's own drawing may shift by a pixel at the tile's edges.
PLAUSIBLE = range(14, 60)


class XfcePanel(unittest.TestCase):
    def setUp(self):
        self.session = Session(xfce).__enter__()
        self.addCleanup(self.session.__exit__, None, None, None)
        time.sleep(2)  # the panel fades in
        self.empty = self.panel_picture()
        self.resident = self.session.start([PROGRAM])
        wait_until(self.is_registered, 15, "registered item")

    def panel_picture(self):
        """The panel alone: notices show below it."""
        screen = picture.take(self.session.environment)
        return picture.Picture(screen.width, PANEL_HEIGHT,
                               screen.pixels[: 3 * screen.width * PANEL_HEIGHT])

    def is_registered(self):
        return bus.registered_items(self.session.environment)

    def item_box(self):
        """Where the screen differs from the one without the item; None while it does not."""
        return picture.difference(self.empty, self.panel_picture())

    def seen_item(self):
        return wait_until(self.item_box, 10, "item on the screen")

    def test_shows_the_item_and_publishes_its_text(self):
        box = self.seen_item()
        self.assertIn(box.width, PLAUSIBLE, box)
        self.assertIn(box.height, PLAUSIBLE, box)
        self.assertRegex(bus.live_text(self.session.environment), r"^↓(0K|--) ↑(0K|--)$")

    def test_shows_the_item_again_in_a_panel_that_was_restarted(self):
        first = self.seen_item()
        self.session.stop_panel()
        self.session.start_panel()
        wait_until(self.is_registered, 15, "item registered again")
        time.sleep(2)
        second = self.seen_item()
        self.assertEqual(second.height, first.height)

    def test_ends_when_its_menu_says_quit(self):
        item = ("com.halden.Tidewell", "/MenuBar", "com.canonical.dbusmenu")
        layout = bus.call(self.session.environment, item, "GetLayout", "int32:0", "int32:-1",
                          "array:string:")
        self.assertIn("Quit", layout)
        rows = layout[: layout.index("Quit")].count("struct")
        bus.call(self.session.environment, item, "Event", f"int32:{rows - 1}", "string:clicked",
                 "variant:int32:0", "uint32:0")
        self.assertEqual(self.resident.wait(5), 0)


def main():
    missing = [program for program in NEEDED if not shutil.which(program)]
    if missing:
        print(f"skipped: {', '.join(missing)} not installed")
        return 77
    if os.environ.get(APART) != "1":
        # A network of its own: nothing leaves the machine.
        probe = subprocess.run(["unshare", "--net", "true"], capture_output=True, check=False)
        if probe.returncode:
            print("skipped: this machine forbids network namespaces")
            return 77
        os.environ[APART] = "1"
        os.execvp("unshare", ["unshare", "--net", "--", sys.executable, *sys.argv])
    unittest.main(verbosity=2)
    return 0


if __name__ == "__main__":
    sys.exit(main())
