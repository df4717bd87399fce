#!/usr/bin/python3
"""The item and the panel in Waybar, under sway."""

import apart
import waybar
from desktopCase import DesktopCase
from panelCases import PanelCases


class Waybar(PanelCases, DesktopCase):
    DESKTOP = waybar
    COVERS_BAR = True


if __name__ == "__main__":
    apart.main([*waybar.DISPLAY.PROGRAMS, "waybar"], as_user=True)
