#!/usr/bin/python3
"""The item and the panel in Cinnamon, at two scales."""

import apart
import cinnamon
import x11
from desktopCase import DesktopCase
from hostCases import HostCases


class Cinnamon(HostCases, DesktopCase):
    DESKTOP = cinnamon.make()
    VARIABLES = cinnamon.VARIABLES
    SCREEN = "1280x800x24"
    TITLE = "Cinnamon"


class Scaled(HostCases, DesktopCase):
    DESKTOP = cinnamon.make(scale=2)
    VARIABLES = cinnamon.VARIABLES
    SCREEN = "2560x1600x24"
    SCALE = 2.0
    TITLE = "Cinnamon at scale 2"


if __name__ == "__main__":
    apart.main([*x11.PROGRAMS, *cinnamon.PROGRAMS])
