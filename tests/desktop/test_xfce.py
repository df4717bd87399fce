#!/usr/bin/python3
"""The item and the panel in Xfce."""

import re

import apart
import bus
import xfce
from children import wait_until
from desktopCase import DesktopCase
from panelCases import PanelCases
from xWindows import XWindows

# The panel may draw the tile's edges a pixel off.
PLAUSIBLE = range(14, 60)

# Pixels between the panel's middle and the item's.
MOST_OFFSET = 8

# Pixels of each corner that its roundness surely leaves free.
CORNER = 3

HEAVY_TRAFFIC = {"net": 12_000_000, "user": 850_000}


class Xfce(PanelCases, DesktopCase):
    DESKTOP = xfce

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        apart.send(cls.session.children, apart.TRAFFIC)

    def test_shows_the_item_and_publishes_its_text(self):
        self.assertIn(self.item.width, PLAUSIBLE, self.item)
        self.assertIn(self.item.height, PLAUSIBLE, self.item)
        self.assertRegex(bus.live_text(self.session.environment), r"^↓\S+ ↑\S+$")

    def test_shows_the_item_again_in_a_panel_that_was_restarted(self):
        self.session.stop_panel()
        wait_until(lambda: self.changes(self.items) != self.item, 10, "screen without the bar")
        self.session.start_panel()
        wait_until(lambda: bus.registered_items(self.session.environment), 15, "registered item")
        wait_until(lambda: self.changes(self.items) == self.item, 15, "item where it was")

    def test_asks_for_blur_behind_the_panel_but_not_its_corners(self):
        box = self.open_panel()
        number = XWindows(self.session).titled("Tidewell").number
        words = self.session.output(["xprop", "-id", number, "-notype", "32c", "_KDE_NET_WM_BLUR_BEHIND_REGION"])
        numbers = [int(word) for word in re.findall(r"\d+", words.partition("=")[2])]
        blurred = {(x, y) for left, top, width, height in zip(*[iter(numbers)] * 4)
                   for x in range(left, left + width) for y in range(top, top + height)}
        columns, rows = ({point[axis] for point in blurred} for axis in (0, 1))
        self.assertEqual((columns, rows), (set(range(box.width)), set(range(box.height))))
        corner = [(x, y) for x in range(CORNER) for y in range(CORNER)]
        self.assertTrue(blurred.isdisjoint(corner))
        self.assertTrue(blurred.isdisjoint((box.width - 1 - x, box.height - 1 - y) for x, y in corner))

    def test_ends_when_its_menu_says_quit(self):
        bus.choose_row(self.session.environment, "Quit")
        self.assertEqual(self.resident.wait(5), 0)


class ItemInTheMiddle(DesktopCase):
    DESKTOP = xfce.CENTRED

    @classmethod
    def divide(cls, screen, edge, height):
        super().divide(screen, edge, height)
        quarter = screen.width // 4
        cls.items = cls.bar._replace(left=quarter, right=3 * quarter)

    @classmethod
    def rest_pointer(cls):
        cls.display.move(cls.bar.right - 20, cls.bar.top + 2)

    def test_the_panel_is_centred_on_the_item(self):
        self.assertLess(abs(self.item.centre[0] - self.bar.centre[0]), self.bar.width // 8)
        box = self.open_panel()
        self.assert_is_panel(box)
        self.save_picture()
        self.assertLessEqual(abs(box.centre[0] - self.item.centre[0]), MOST_OFFSET)


class Rates(DesktopCase):
    DESKTOP = xfce

    def test_the_item_keeps_its_place_and_size_at_every_rate(self):
        text = lambda: bus.live_text(self.session.environment)
        wait_until(lambda: text() == "↓0K ↑0K", 10, "idle line in the text")
        idle = self.steady(lambda: self.changes(self.items), "item")
        apart.send(self.session.children, HEAVY_TRAFFIC)
        wait_until(lambda: text().startswith("↓12."), 15, "busy line in the text")
        self.assertEqual(self.steady(lambda: self.changes(self.items), "item"), idle)


if __name__ == "__main__":
    apart.main([*xfce.DISPLAY.PROGRAMS, "xfwm4", "xfce4-panel"], traffic=False)
