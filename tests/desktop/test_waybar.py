#!/usr/bin/python3
"""The item and the panel in Waybar, under sway."""

import apart
import bus
import waybar
from children import wait_until
from desktopCase import DesktopCase
from picture import Box
from panelCases import ADDRESS, PanelCases


class Waybar(PanelCases, DesktopCase):
    DESKTOP = waybar
    COVERS_BAR = True

    def test_the_menu_copies_the_address_although_no_window_has_the_keyboard(self):
        wait_until(lambda: bus.get(self.session.environment, bus.TIDEWELL, "IpAddress") == ADDRESS,
                   10, "address on the bus")
        bus.choose_row(self.session.environment, "Copy IP")
        wait_until(lambda: self.display.copied() == ADDRESS, 5, "address in the clipboard")
        self.session.start(["wl-copy", "--foreground", "another text"])
        wait_until(lambda: self.display.copied() == "another text", 5, "another program's text")


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
