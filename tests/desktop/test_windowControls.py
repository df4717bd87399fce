#!/usr/bin/python3
"""Every control of the details and the settings, as a screen reader and the keyboard reach it."""

import re

import apart
import xfce
from children import wait_until
from windowCase import DETAIL, SETTINGS, WindowCase

TOGGLE, CHOICE, ENTRY, TAB, BAR = "check box", "combo box", "radio button", "page tab", "scroll bar"

# What a user can do something with, besides the sections, the tabs and the bar that scrolls.
SECTIONS = {
    "General": [(TOGGLE, "Launch at Login"), (TOGGLE, "Check for Updates"),
                (CHOICE, "Refresh Interval"), (CHOICE, "Monitor Interface"),
                (TOGGLE, "Track Per-Process")],
    "Alerts": [(TOGGLE, "Enable Notifications"), (CHOICE, "Slow Speed Warning"),
               (CHOICE, "High Latency Warning")],
    "Display": [(TOGGLE, "Show Upload Speed")],
    "Data": [(CHOICE, "Keep History")],
    "Advanced": [],
}
PANES = {
    "Overview": [("panel", "Overview"), (ENTRY, "5m"), (ENTRY, "1h"), (ENTRY, "24h"), (ENTRY, "7d")],
    "Processes": [],
    "History": [],
    "Diagnostics": [("panel", "Diagnostics"), ("push button", "Run Now")],
}
# Where the Tab key stops in each, after the tabs.
STOPS = {"Overview": [("panel", "Overview"), (ENTRY, "1h")], "Processes": [], "History": [],
         "Diagnostics": PANES["Diagnostics"]}

# The keys of the preferences and, for lists, the entry after the default one and its value.
STORED = {
    "Launch at Login": ("launchAtLogin", "true"),
    "Check for Updates": ("checkForUpdates", "false"),
    "Refresh Interval": ("refreshInterval", "5 seconds", "5.0"),
    "Monitor Interface": ("monitorInterface", "Wi-Fi (en0)", '"en0"'),
    "Track Per-Process": ("trackPerProcess", "false"),
    "Enable Notifications": ("showNotifications", "false"),
    "Slow Speed Warning": ("slowSpeedThreshold", "25 Mbps", "25.0"),
    "High Latency Warning": ("highLatencyThreshold", "200 ms", "200.0"),
    "Show Upload Speed": ("showUploadInMenubar", "false"),
    "Keep History": ("dataRetentionDays", "90 days", "90"),
}
OPTIONS = {
    "Refresh Interval": ["1 second", "2 seconds", "5 seconds"],
    "Monitor Interface": ["All Interfaces", "Wi-Fi (en0)", "Ethernet (en1)"],
    "Slow Speed Warning": ["5 Mbps", "10 Mbps", "25 Mbps", "50 Mbps"],
    "High Latency Warning": ["50 ms", "100 ms", "200 ms"],
    "Keep History": ["7 days", "30 days", "90 days", "1 year"],
}


RATE, BYTES = r"\d+(\.\d)? [KM]B/s", r"\d+ [KM]B"
_CURVE = f"current {RATE}, average {RATE}, peak {RATE}"
_PROCESS = rf".+, PID \d+, download {RATE}, upload {RATE}, total {BYTES}, usage \d+ %"

# What there is to read on each tab.
READ = {
    "Overview": [rf"Bandwidth Over Time Download: {_CURVE}\. Upload: {_CURVE}\.",
                 f"Current {RATE}", f"Average {RATE}", f"Peak {RATE}", f"Total {BYTES}", _PROCESS],
    "Processes": ["Process, Download, Upload, Total, Usage", _PROCESS],
    "History": ["Latency Over Time .*ms.*",
                rf"\d\d:\d\d(:\d\d)?, download {RATE}, upload {RATE}, latency \d+ ms"],
    "Diagnostics": ["Status Connected", r"Interface Ethernet \(eth0\)", "Network Ethernet",
                    r"Local IP 192\.168\.1\.2", "Public IP unknown", r"DNS Server 9\.9\.9\.9",
                    "Interface Type Ethernet", r"Latency \d+\.\d ms", r"Jitter \d+\.\d ms",
                    r"Packet Loss 0\.0%", r"No speed test run yet\."],
}


class _Walk(WindowCase):
    WINDOW = None

    def setUp(self):
        super().setUp()
        self.open(self.WINDOW)

    def controls(self):
        """(role, title) of all that can be pressed or have the keyboard."""
        return [(element["role"], element["title"]) for element in self.reader.look(self.WINDOW)
                if element["focusable"] or element["actions"]]

    def focus(self):
        """What the keyboard's keys go to: role and title, None for the window itself."""
        # Of a row of tabs the chosen one says that it has the keyboard even when it has not, and
        # what frames a scrolling content has no title of its own.
        focused = [(element["role"], element["title"]) for element in self.reader.look(self.WINDOW)
                   if element["focused"] and element["title"] and element["role"] != TAB]
        return focused[-1] if focused else None

    def stops(self):
        """What the Tab key reaches from here until it comes round."""
        reached = []
        while len(reached) < 2 or reached[0] != reached[-1]:
            self.display.press("Tab")
            reached.append(self.focus())
            self.assertLess(len(reached), 12, reached)
        return reached[:-1]


class Settings(_Walk):
    WINDOW = SETTINGS

    def test_every_control_is_there_with_its_name_and_is_reached_by_tab(self):
        sections = [(ENTRY, section) for section in SECTIONS]
        for section, controls in SECTIONS.items():
            with self.subTest(section):
                self.reader.press(ENTRY, section)
                wait_until(lambda: self.reader.find(BAR, section), 5, section)
                self.assertEqual(self.controls(), [*sections, *controls, (BAR, section)])
                self.assertCountEqual(self.stops(), [(ENTRY, section), *controls])

    def test_every_control_stores_what_is_chosen_and_shows_it(self):
        for section, controls in SECTIONS.items():
            self.reader.press(ENTRY, section)
            for role, title in controls:
                with self.subTest(title):
                    self.reader.wait_to_find(role, title)
                    (self.turn if role == TOGGLE else self.choose)(title, *STORED[title])

    def turn(self, title, key, value):
        self.reader.press(TOGGLE, title)
        wait_until(lambda: self.preferred(f"{key} = {value}"), 5, f"{key} = {value}")
        self.assertEqual(self.reader.find(TOGGLE, title)["checked"], value == "true")

    def choose(self, title, key, entry, value):
        self.reader.press(CHOICE, title)
        self.reader.wait_to_find("list", title)
        options = [element["name"] for element in self.reader.look()
                   if element["role"] == "list item"]
        self.assertEqual(options, OPTIONS[title])
        self.display.press("Down", "Return")
        wait_until(lambda: self.preferred(f"{key} = {value}"), 5, f"{key} = {value}")
        self.assertEqual(self.reader.find(CHOICE, title)["name"], entry)


class Details(_Walk):
    WINDOW = DETAIL
    # Few readings, so that the history does not grow beyond its window while it is looked at.
    PREFERENCES = {"refreshInterval": 5.0}

    def test_every_control_is_there_with_its_name_and_is_reached_by_tab(self):
        tabs = [(TAB, tab) for tab in PANES]
        for tab, controls in PANES.items():
            with self.subTest(tab):
                self.reader.press(TAB, tab)
                wait_until(lambda: self.reader.find(BAR, tab), 5, tab)
                # The row of tabs is called by the chosen one.
                self.assertEqual(self.controls(),
                                 [("page tab list", tab), *tabs, *controls, (BAR, tab)])
                self.assertCountEqual(self.stops(), [("page tab list", tab), *STOPS[tab]])


class Figures(_Walk):
    WINDOW = DETAIL
    PREFERENCES = {"refreshInterval": 1.0}

    def test_a_pressed_range_is_the_chosen_one(self):
        for label in ("5m", "24h", "7d", "1h"):
            self.reader.press(ENTRY, label)
            wait_until(lambda: self.chosen() == [label], 5, f"chosen {label}")

    def chosen(self):
        return [element["title"] for element in self.reader.look(self.WINDOW)
                if element["role"] == ENTRY and element["checked"]]

    def test_every_figure_is_read_with_its_unit(self):
        wait_until(lambda: self.get("LatencyMs") not in (None, "double 0"), 15, "latency")
        wait_until(lambda: self.get("Processes") != "array []", 15, "process")
        for tab, figures in READ.items():
            self.reader.press(TAB, tab)
            wait_until(lambda: self.reader.find(BAR, tab), 5, tab)
            texts = [f"{element['name']} {element['description']}".rstrip()
                     for element in self.reader.look(self.WINDOW)]
            for figure in figures:
                self.assertTrue(any(re.fullmatch(figure, text) for text in texts), (figure, texts))


if __name__ == "__main__":
    apart.main([*xfce.DISPLAY.PROGRAMS, "xfwm4", "xfce4-panel"])
