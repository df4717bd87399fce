#!/usr/bin/python3
"""The item and the panel in Xfce."""

import apart
import bus
import xfce
from children import wait_until
from desktopCase import DesktopCase
from panelCases import PanelCases

# The panel's own drawing may shift by a pixel at the tile's edges.
PLAUSIBLE = range(14, 60)


class Xfce(PanelCases, DesktopCase):
    DESKTOP = xfce

    def test_shows_the_item_and_publishes_its_text(self):
        self.assertIn(self.item.width, PLAUSIBLE, self.item)
        self.assertIn(self.item.height, PLAUSIBLE, self.item)
        self.assertRegex(bus.live_text(self.session.environment), r"^↓\S+ ↑\S+$")

    def test_shows_the_item_again_in_a_panel_that_was_restarted(self):
        self.session.stop_panel()
        wait_until(lambda: self.changes(self.bar) != self.item, 10, "screen without the bar")
        self.session.start_panel()
        wait_until(lambda: bus.registered_items(self.session.environment), 15, "registered item")
        wait_until(lambda: self.changes(self.bar) == self.item, 15, "item where it was")

    def test_ends_when_its_menu_says_quit(self):
        item = ("com.halden.Tidewell", "/MenuBar", "com.canonical.dbusmenu")
        layout = bus.call(self.session.environment, item, "GetLayout", "int32:0", "int32:-1",
                          "array:string:")
        self.assertIn("Quit", layout)
        rows = layout[: layout.index("Quit")].count("struct")
        bus.call(self.session.environment, item, "Event", f"int32:{rows - 1}", "string:clicked",
                 "variant:int32:0", "uint32:0")
        self.assertEqual(self.resident.wait(5), 0)


if __name__ == "__main__":
    apart.main([*xfce.DISPLAY.PROGRAMS, "xfwm4", "xfce4-panel"])
