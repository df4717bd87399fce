#!/usr/bin/python3
"""The item and the panel in LXQt, whose bar is at the bottom."""

import apart
import lxqt
from desktopCase import DesktopCase
from panelCases import PanelCases


class Lxqt(PanelCases, DesktopCase):
    DESKTOP = lxqt


if __name__ == "__main__":
    apart.main([*lxqt.DISPLAY.PROGRAMS, "openbox", "lxqt-panel"])
