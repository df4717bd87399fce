#!/usr/bin/python3
"""The item and the panel in Budgie."""

import apart
import budgie
from desktopCase import DesktopCase
from hostCases import HostCases
from panelCases import PanelCases


class _Items:
    SCREEN = "1280x800x24"

    @classmethod
    def divide(cls, screen, edge, height):
        super().divide(screen, edge, height)
        # The clock beside the items changes, too.
        cls.items = cls.bar._replace(left=cls.bar.right - budgie.TRAY, right=cls.bar.right - budgie.REST)


class Budgie(_Items, HostCases, DesktopCase):
    DESKTOP = budgie.make("Budgie")
    TITLE = "Budgie"


class RelativeOfGnome(_Items, PanelCases, DesktopCase):
    """Sessions may name GNOME, too, whose items look different."""

    DESKTOP = budgie.make("Budgie:GNOME")

    def test_the_item_is_the_tile(self):
        self.assertAlmostEqual(self.item.width, self.item.height, delta=2)
        self.save_picture("budgie-relative")


if __name__ == "__main__":
    apart.main([*budgie.PROGRAMS, *budgie.make("").DISPLAY.PROGRAMS])
