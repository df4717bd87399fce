#!/usr/bin/python3
"""The panel and the windows as a screen reader and the keyboard find them in sway."""

import apart
import waybar
from desktopCase import DesktopCase
from screenReader import VARIABLES
from walkCases import WalkCases


class Keyboard(WalkCases, DesktopCase):
    DESKTOP = waybar
    VARIABLES = VARIABLES


if __name__ == "__main__":
    apart.main([*waybar.DISPLAY.PROGRAMS, "waybar"], as_user=True)
