#!/usr/bin/python3
"""The item and the panel in Waybar, under sway."""

import apart
import waybar
from desktopCase import DesktopCase
from picture import Box
from panelCases import PanelCases


class Waybar(PanelCases, DesktopCase):
    DESKTOP = waybar
    COVERS_BAR = True


class RightOfTwoScreens(DesktopCase):
    DESKTOP = waybar
    VARIABLES = {waybar.DISPLAY.SCREENS: "2"}
    AREA = Box(1280, 0, 2560, 720)

    def test_the_panel_opens_on_the_screen_whose_item_was_clicked(self):
        box = self.open_panel()
        self.assert_is_panel(box)
        self.assert_beside_item(box)
        self.assertIsNone(self.changes(Box(0, self.room.top, self.room.left, self.room.bottom)))


if __name__ == "__main__":
    apart.main([*waybar.DISPLAY.PROGRAMS, "waybar"], as_user=True)
