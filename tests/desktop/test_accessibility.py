#!/usr/bin/python3
"""The panel and the windows as a screen reader finds them, in a real session."""

import time

import apart
import bus
import xfce
from children import wait_until
from desktopCase import DesktopCase
from screenReader import VARIABLES, ScreenReader
from walkCases import WalkCases

BUTTON = "push button"


class Accessibility(DesktopCase):
    DESKTOP = xfce
    VARIABLES = VARIABLES

    def setUp(self):
        super().setUp()
        self.reader = ScreenReader(self.session)
        self.addCleanup(self.reader.close)

    def press(self, name):
        self.reader.press(BUTTON, name)

    def open_again(self):
        """Opens the panel next to a window that has just taken the focus, and may take it again."""
        def opened():
            if "Quit" in self.reader.names():
                return True
            bus.call(self.session.environment, bus.TIDEWELL, "OpenPanel")
            time.sleep(0.5)
            return "Quit" in self.reader.names()
        wait_until(opened, 10, "panel")

    def get(self, name):
        return bus.get(self.session.environment, bus.TIDEWELL, name)

    def test_every_figure_of_the_panel_is_read(self):
        self.open_panel()
        wait_until(lambda: self.get("LatencyMs") not in (None, "double 0"), 15, "latency")
        for beginning in ("Upload", "Latency", "Jitter", "Packet Loss", "Bandwidth", "Network",
                          "Interface", "Local IP", "Public IP", "DNS"):
            self.reader.wait_to_read(beginning)
        self.assertRegex(self.reader.wait_to_read("Latency"), r"^Latency \d+ ms$")
        self.assertEqual(self.reader.wait_to_read("Local IP"), "Local IP 192.168.1.2")
        self.assertIn("Excellent", " ".join(self.reader.names()))
        graph = next(element for element in self.reader.look() if element["name"].startswith("Bandwidth"))
        for word in ("urrent", "verage", "eak"):
            self.assertIn(word, graph["name"] + graph["description"])

    def test_every_button_of_the_panel_is_pressed(self):
        self.open_panel()
        buttons = [element for element in self.reader.look() if element["role"] == BUTTON]
        self.assertEqual([button["name"] for button in buttons],
                         ["Speed Test", "Copy IP", "Details", "Settings", "Quit"])
        self.assertTrue(all(button["focusable"] and button["actions"] for button in buttons))
        self.press("Copy IP")
        wait_until(lambda: self.display.copied() == "192.168.1.2", 5, "address in the clipboard")
        self.press("Speed Test")
        wait_until(lambda: self.get("LastSpeedTest") not in (None, "array []")
                   or self.get("SpeedTestIsRunning") == "true", 10, "speed test")
        self.press("Details")
        self.reader.wait_to_read("Tidewell \u2014 Network Details")
        self.open_again()
        self.press("Settings")
        self.reader.wait_to_read("Tidewell \u2014 Settings")
        self.open_again()
        self.press("Quit")
        self.assertEqual(self.resident.wait(5), 0)


class Keyboard(WalkCases, DesktopCase):
    DESKTOP = xfce
    VARIABLES = VARIABLES


if __name__ == "__main__":
    apart.main([*xfce.DISPLAY.PROGRAMS, "xfce4-panel", "xfwm4"])
