#!/usr/bin/python3
"""The desktops of the everyday tests once more, with everything that is asked of a desktop."""

import apart
import lxqt
import test_mate
import waybar
import xfce
from desktopCase import DesktopCase
from hostCases import HostCases


class Xfce(HostCases, DesktopCase):
    DESKTOP = xfce
    TITLE = "Xfce"


class Lxqt(HostCases, DesktopCase):
    DESKTOP = lxqt
    TITLE = "LXQt"


class Mate(HostCases, test_mate.Mate):
    TITLE = "MATE"
    # Letters of the label begin and end at different places within their width.
    JITTER = 3


class Waybar(HostCases, DesktopCase):
    DESKTOP = waybar
    TITLE = "sway with Waybar"
    COVERS_BAR = True
    IDENTITY = "com.halden.Tidewell"


if __name__ == "__main__":
    programs = {*xfce.DISPLAY.PROGRAMS, *waybar.DISPLAY.PROGRAMS}
    apart.main(sorted(programs), as_user=True)
