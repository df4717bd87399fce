#!/usr/bin/python3
"""GNOME under X11 with the AppIndicator extension, with everything that is asked of a desktop."""

import apart
import gnome
import test_gnome
from hostCases import HostCases
from windowCase import SETTINGS

# Title bars are as dark as the windows or nearly white.
DARK = 80


class Gnome(HostCases, test_gnome.Gnome):
    MENU_BUTTON = 1
    JITTER = 3
    ask_for_panel = test_gnome.Gnome.ask_for_panel
    test_a_click_opens_the_panel_beside_the_item_and_another_closes_it = None

    @classmethod
    def setUpClass(cls):
        cls.TITLE = f"GNOME {gnome.version()}, X11, AppIndicator extension"
        super().setUpClass()

    def test_version_43_follows_the_hint_for_a_dark_title_bar(self):
        is_dark = max(self.title_bar_colour(self.open_window(SETTINGS))) < DARK
        self.assertEqual(is_dark, gnome.version() == 43)


if __name__ == "__main__":
    apart.main([*gnome.DISPLAY.PROGRAMS, "gnome-shell"], as_user=True)
