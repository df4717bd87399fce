#!/usr/bin/python3
"""The item and the panel in Waybar, under sway."""

from pathlib import Path

import apart
import bus
import waybar
from children import wait_until
from desktopCase import BUTTON_BAR_HEIGHT, DesktopCase
from picture import Box, difference
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


    def test_a_tool_tip_is_no_window_that_the_compositor_lays_out(self):
        # Longer than the panel is wide.
        server = "fe80::1%" + 50 * "w"
        self.set_dns_server(server)
        box = self.open_panel()
        before, containers = self.display.take(), self.display.containers()
        x, y = box.right - 60, box.bottom - BUTTON_BAR_HEIGHT - 28
        self.display.move(x, y)
        self.display.move(x + 1, y)
        wait_until(lambda: self.display.containers() != containers or self.tip(before, box), 5, "tool tip")
        self.save_picture("waybar-toolTip")
        self.assertEqual(self.display.containers(), containers)
        self.assertGreater(self.tip(before, box).height, 25, "the tip has two lines")
        beside = self.room._replace(right=box.left)
        self.assertIsNone(difference(before, self.display.take(), beside))
        self.rest_pointer()
        wait_until(lambda: not self.tip(before, box), 5, "end of the tool tip")

    def tip(self, before, box):
        """The part of the tool tip that is drawn over the buttons."""
        part = box._replace(top=box.bottom - BUTTON_BAR_HEIGHT)
        return difference(before, self.display.take(), part)

    def set_dns_server(self, server):
        resolver = Path("/etc/resolv.conf")  # the world's own
        known = resolver.read_text()
        self.addCleanup(resolver.write_text, known)
        resolver.write_text(f"nameserver {server}\n")
        wait_until(lambda: bus.get(self.session.environment, bus.TIDEWELL, "Dns") == server, 10,
                   "server on the bus")


class TextModule(DesktopCase):
    DESKTOP = waybar.TEXT

    def test_shows_the_text_opens_the_panel_and_is_hidden_without_tidewell(self):
        left = self.bar._replace(right=self.bar.left + self.bar.width // 2)
        self.assertIsNone(difference(self.empty, self.display.take(), left._replace(left=left.centre[0])))
        text = self.steady(lambda: self.changes(left), "text")
        self.assertTrue(40 < text.width < 200, text)
        self.display.click(*text.centre)
        wait_until(self.is_panel_shown, 5, "panel")
        self.rest_pointer()
        self.assert_is_panel(self.panel())
        self.save_picture()
        self.session.children.end(self.resident)
        wait_until(lambda: not self.changes(left), 5, "end of the text")


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
