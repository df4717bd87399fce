#!/usr/bin/python3
"""The item and the panel in labwc, with Waybar and with LXQt's panel."""

import apart
import labwc
from desktopCase import DesktopCase
from hostCases import HostCases
from panelCases import PanelCases


class Waybar(HostCases, DesktopCase):
    DESKTOP = labwc.WAYBAR
    TITLE = "labwc with Waybar"
    COVERS_BAR = True
    IDENTITY = "com.halden.Tidewell"


class Lxqt(HostCases, DesktopCase):
    DESKTOP = labwc.LXQT
    TITLE = "labwc with lxqt-panel"
    COVERS_BAR = True
    IDENTITY = "com.halden.Tidewell"

    def menu(self):
        # It covers the bar, too.
        box = self.changes(self.items._replace(top=self.room.top))
        return box if box and box.height > self.bar.height else None


class LxqtAtTheTop(PanelCases, DesktopCase):
    DESKTOP = labwc.LXQT_TOP
    COVERS_BAR = True


if __name__ == "__main__":
    apart.main([*labwc.PROGRAMS, "waybar", "lxqt-panel"])
