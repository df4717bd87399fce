#!/usr/bin/python3
"""Every control of the details and the settings, as a screen reader and the keyboard reach it."""

import re

import apart
import xfce
from children import wait_until
from picture import difference
from windowCase import DETAIL, SETTINGS, TOGGLE, WindowCase

CHOICE, ENTRY, TAB, BAR, TEXT = "combo box", "radio button", "page tab", "scroll bar", "label"

# The controls of each section of the settings besides the sections themselves and the scroll bar. For
# each the stored key and the value after a change, for lists also the entry after the default one
# and all entries.
SECTIONS = {
    "General": {
        (TOGGLE, "Launch at Login"): ("launchAtLogin", "true"),
        (TOGGLE, "Check for Updates"): ("checkForUpdates", "false"),
        (CHOICE, "Refresh Interval"): ("refreshInterval", "5.0", "5 seconds",
                                       ["1 second", "2 seconds", "5 seconds"]),
        (CHOICE, "Monitor Interface"): ("monitorInterface", '"en0"', "Wi-Fi (en0)",
                                        ["All Interfaces", "Wi-Fi (en0)", "Ethernet (en1)"]),
        (TOGGLE, "Track Per-Process"): ("trackPerProcess", "false"),
    },
    "Alerts": {
        (TOGGLE, "Enable Notifications"): ("showNotifications", "false"),
        (CHOICE, "Slow Speed Warning"): ("slowSpeedThreshold", "25.0", "25 Mbps",
                                         ["5 Mbps", "10 Mbps", "25 Mbps", "50 Mbps"]),
        (CHOICE, "High Latency Warning"): ("highLatencyThreshold", "200.0", "200 ms",
                                           ["50 ms", "100 ms", "200 ms"]),
    },
    "Display": {(TOGGLE, "Show Upload Speed"): ("showUploadInMenubar", "false")},
    "Data": {(CHOICE, "Keep History"): ("dataRetentionDays", "90", "90 days",
                                        ["7 days", "30 days", "90 days", "1 year"])},
    "Advanced": {},
}
# The same of each tab of the details.
PANES = {
    "Overview": [("panel", "Overview"), (ENTRY, "5m"), (ENTRY, "1h"), (ENTRY, "24h"), (ENTRY, "7d")],
    "Processes": [],
    "History": [],
    "Diagnostics": [("panel", "Diagnostics"), ("push button", "Run Now")],
}
# Where the Tab key stops in each, after the tabs.
STOPS = {"Overview": [("panel", "Overview"), (ENTRY, "1h")], "Processes": [], "History": [],
         "Diagnostics": [*PANES["Diagnostics"], (TEXT, "Status Connected")]}

RATE, BYTES = r"\d+(\.\d)? [KM]B/s", r"\d+ [KM]B"
_CURVE = f"current {RATE}, average {RATE}, peak {RATE}"
_VERDICT = "(good|fair|poor)"
_PROCESS = rf".+, PID \d+, download {RATE}, upload {RATE}, total {BYTES}, usage \d+ %"

# What there is to read on each tab.
READ = {
    "Overview": [rf"Bandwidth Over Time Download: {_CURVE}\. Upload: {_CURVE}\. Scale from 0 to \d+ Mbps\.",
                 f"Current {RATE}", f"Average {RATE}", f"Peak {RATE}", f"Total {BYTES}", _PROCESS],
    "Processes": ["Process, Download, Upload, Total, Usage", _PROCESS],
    "History": [r"Latency Over Time Current \d+ ms, peak \d+ ms\. Scale from 0 to \d+ ms\.",
                rf"\d\d:\d\d(:\d\d)?, download {RATE}, upload {RATE}, latency \d+ ms"],
    "Diagnostics": ["Status Connected", r"Interface Ethernet \(eth0\)", "Network Ethernet",
                    r"Local IP 192\.168\.1\.2", "Public IP unknown", r"DNS Server 9\.9\.9\.9",
                    "Interface Type Ethernet", rf"Latency \d+\.\d ms, {_VERDICT}",
                    rf"Jitter \d+\.\d ms, {_VERDICT}", r"Packet Loss 0\.0%, good",
                    r"No speed test run yet\."],
}


class _Walk(WindowCase):
    WINDOW = None

    def setUp(self):
        super().setUp()
        self.open(self.WINDOW)

    def controls(self):
        """(role, title) of all that can be pressed or focused, besides texts to copy."""
        return [(element["role"], element["title"]) for element in self.reader.look(self.WINDOW)
                if (element["focusable"] or element["actions"]) and element["role"] != TEXT]

    def focus(self):
        """Role and title of what has the keyboard focus, None for the window itself."""
        # The chosen tab always says that it is focused. The frame of scrolling content has no title.
        focused = [(element["role"], element["title"]) for element in self.reader.look(self.WINDOW)
                   if element["focused"] and element["title"] and element["role"] != TAB]
        return focused[-1] if focused else None

    def stops(self):
        """What the Tab key reaches in one round."""
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
            for (role, title), stored in controls.items():
                with self.subTest(title):
                    self.reader.wait_to_find(role, title)
                    (self.turn if role == TOGGLE else self.choose)(title, *stored)

    def choose(self, title, key, value, entry, entries):
        self.reader.press(CHOICE, title)
        self.reader.wait_to_find("list", title)
        options = [element["name"] for element in self.reader.look()
                   if element["role"] == "list item"]
        self.assertEqual(options, entries)
        self.display.press("Down", "Return")
        wait_until(lambda: self.preferred(f"{key} = {value}"), 5, f"{key} = {value}")
        self.assertEqual(self.reader.find(CHOICE, title)["name"], entry)


class Details(_Walk):
    WINDOW = DETAIL
    # Few readings, so that the history does not outgrow its window during the test.
    PREFERENCES = {"refreshInterval": 5.0}

    def test_every_control_is_there_with_its_name_and_is_reached_by_tab(self):
        tabs = [(TAB, tab) for tab in PANES]
        for tab, controls in PANES.items():
            with self.subTest(tab):
                self.reader.press(TAB, tab)
                wait_until(lambda: self.reader.find(BAR, tab), 5, tab)
                # The row of tabs bears the chosen tab's name.
                self.assertEqual(self.controls(),
                                 [("page tab list", tab), *tabs, *controls, (BAR, tab)])
                self.assertCountEqual(self.stops(), [("page tab list", tab), *STOPS[tab]])


    def test_values_are_copied_with_the_keyboard_and_with_the_pointer(self):
        self.reader.press(TAB, "Diagnostics")
        self.reader.wait_to_read("Local IP 192.168.1.2")
        while self.focus() != (TEXT, "Status Connected"):
            self.display.press("Tab")
        self.display.press("Down", "Down", "Down", "ctrl+c")
        wait_until(lambda: self.display.copied() == "192.168.1.2", 5, "address")
        self.click(self.reader.find(TEXT, "DNS Server 9.9.9.9"))
        self.display.press("ctrl+c")
        wait_until(lambda: self.display.copied() == "9.9.9.9", 5, "server")
        left, top, width, height = self.reader.find(TEXT, "Network Ethernet")["box"]
        x, y = left + width - 20, top + height // 2
        before = self.display.take()
        self.display.click(x, y, 3)
        # Beyond the window, where nothing else changes.
        beside = before.box._replace(left=left + width + 30, top=y, bottom=y + 20)
        wait_until(lambda: difference(before, self.display.take(), beside), 5, "menu")
        self.display.press("Down", "Return")
        wait_until(lambda: self.display.copied() == "Ethernet", 5, "name")


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

    def test_a_chart_reads_the_sample_under_the_pointer(self):
        for tab, chart in {"Overview": "Bandwidth Over Time", "History": "Latency Over Time"}.items():
            self.reader.press(TAB, tab)
            self.reader.wait_to_find("chart", chart)
            left, top, width, height = self.reader.find("chart", chart)["box"]
            self.display.move(left + width // 2, top + height // 2)
            own = r"\d+ ms, " if tab == "History" else ""
            reading = rf"At the pointer: \d\d:\d\d(:\d\d)?, {own}download {RATE}, upload {RATE}\. .*"
            wait_until(lambda: re.fullmatch(reading, self.described(chart)), 5, reading)
            self.display.move(left + width // 2, top - 10)
            wait_until(lambda: "pointer" not in self.described(chart), 5, "no reading")

    def described(self, chart):
        return self.reader.find("chart", chart)["description"]

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
