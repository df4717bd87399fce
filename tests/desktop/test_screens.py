#!/usr/bin/python3
"""The panel on small and on scaled screens."""

import apart
import xfce
from desktopCase import DesktopCase

# Less than the panel's height.
HEIGHT = 500


class _Screen:
    """To be inherited together with DesktopCase."""

    DESKTOP = xfce

    def test_the_panel_opens_beside_the_item_and_wholly_on_the_screen(self):
        box = self.open_panel()
        self.assert_is_panel(box)
        self.assert_beside_item(box)
        self.save_picture(f"screen-{type(self).__name__}")


class Small(_Screen, DesktopCase):
    SCREEN = "800x480x24"

    def test_what_does_not_fit_is_scrolled_to(self):
        box = self.open_panel()
        self.assertLess(box.height, HEIGHT)
        self.display.scroll_down(*box.centre)
        self.rest_pointer()
        self.panel()
        self.click_button(box, "Quit")
        self.assertEqual(self.resident.wait(5), 0)


class Scaled125(_Screen, DesktopCase):
    SCREEN = "1920x1080x24"
    SCALE = 1.25
    VARIABLES = {"QT_SCALE_FACTOR": "1.25"}


class Scaled150(_Screen, DesktopCase):
    SCREEN = "1920x1080x24"
    SCALE = 1.5
    VARIABLES = {"QT_SCALE_FACTOR": "1.5"}


class Scaled200(_Screen, DesktopCase):
    SCREEN = "2560x1440x24"
    SCALE = 2.0
    VARIABLES = {"QT_SCALE_FACTOR": "2"}


if __name__ == "__main__":
    apart.main([*xfce.DISPLAY.PROGRAMS, "xfwm4", "xfce4-panel"])
