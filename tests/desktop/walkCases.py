"""The panel and the windows, walked with the keyboard alone, as a screen reader finds them."""

from pathlib import Path

import bus
from children import wait_until
from desktopCase import BUTTONS
from harness.session import write_preferences
from screenReader import ScreenReader

PANEL, DETAIL, SETTINGS = "Tidewell", "Tidewell \u2014 Network Details", "Tidewell \u2014 Settings"
TABS = ["Overview", "Processes", "History", "Diagnostics"]
SECTIONS = ["General", "Alerts", "Display", "Data", "Advanced"]

# Seconds until a key has surely moved the focus.
MOVES = 3

# What says nothing about an element.
_NO_ROLES = ("", "unknown", "invalid", "filler", "redundant object")
# A tab is reached by the arrow keys. The chosen one always says that it is focused.
_TAB = "page tab"
# Reached by the arrow keys from the chosen one.
_CHOICES = (_TAB, "radio button", "label")


class WalkCases:
    """To be inherited together with DesktopCase."""

    def setUp(self):
        # Few readings, so that the history does not outgrow its window during the test.
        write_preferences(Path(self.session.environment["XDG_CONFIG_HOME"]), refreshInterval=5.0)
        super().setUp()
        self.reader = ScreenReader(self.session)
        self.addCleanup(self.reader.close)

    def open_window(self, title, method):
        bus.call(self.session.environment, bus.TIDEWELL, method)
        self.reader.wait_to_read(title)

    def focus(self, window):
        """Role and title of what has the keyboard focus; None for the window itself."""
        focused = [(element["role"], element["title"]) for element in self.reader.look(window)
                   if element["focused"] and element["title"] and element["role"] != _TAB]
        return focused[-1] if focused and focused[-1][1] != window else None

    def press(self, key, window):
        """Presses a key that moves the focus, if there is somewhere to go. Returns where it is then."""
        before = self.focus(window)
        self.display.press(key)
        try:
            wait_until(lambda: self.focus(window) not in (None, before), MOVES, "move")
        except TimeoutError:
            pass
        return self.focus(window)

    def round(self, window):
        """What the Tab key reaches, from where the focus is until it is there again."""
        stops = [self.focus(window) or self.press("Tab", window)]
        while len(stops) < 20:
            stop = self.press("Tab", window)
            if stop == stops[0]:
                return stops
            stops.append(stop)
        self.fail(f"no end of {stops}")

    def assert_all_named_and_reached(self, window, stops):
        """Every element that takes the focus has a name and a role, and Tab reaches it, or the arrow keys from
        one of its kind."""
        found = [element for element in self.reader.look(window) if element["focusable"]]
        self.assertTrue(found)
        for element in found:
            self.assertTrue(element["title"].strip(), element)
            self.assertNotIn(element["role"], _NO_ROLES, element)
            if element["role"] not in _CHOICES and element["role"] != "scroll bar":
                self.assertIn((element["role"], element["title"]), stops)
        for role in {element["role"] for element in found} & set(_CHOICES) - {_TAB}:
            self.assertTrue(any(stop[0] == role for stop in stops), (role, stops))

    def test_the_panel_is_walked_with_the_keyboard(self):
        self.open_panel()
        stops = self.round(PANEL)
        self.assertEqual([title for _, title in stops], BUTTONS)
        self.assert_all_named_and_reached(PANEL, stops)
        self.save_picture(f"{self.DESKTOP.__name__}-walkPanel")

    def test_the_details_are_walked_with_the_keyboard(self):
        self.open_window(DETAIL, "OpenDetail")
        for tab in TABS:
            with self.subTest(tab):
                if tab != TABS[0]:
                    self.display.press("Right")
                wait_until(lambda: self.reader.find("scroll bar", tab), 5, tab)
                stops = self.round(DETAIL)  # ends where it began
                self.assertEqual(stops[0], ("page tab list", tab))
                self.assert_all_named_and_reached(DETAIL, stops)
        self.save_picture(f"{self.DESKTOP.__name__}-walkDetails")

    def test_the_settings_are_walked_with_the_keyboard(self):
        self.open_window(SETTINGS, "OpenSettings")
        self.assertEqual(self.press("Tab", SETTINGS), ("radio button", SECTIONS[0]))
        for section in SECTIONS:
            with self.subTest(section):
                if section != SECTIONS[0]:
                    self.assertEqual(self.press("Down", SETTINGS), ("radio button", section))
                wait_until(lambda: self.reader.find("scroll bar", section), 5, section)
                self.assert_all_named_and_reached(SETTINGS, self.round(SETTINGS))
        self.save_picture(f"{self.DESKTOP.__name__}-walkSettings")
