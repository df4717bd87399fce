#!/usr/bin/python3
"""The item and the panel in KDE Plasma, in its Wayland session and under X11."""

import apart
import kwin
import plasma
import x11
from desktopCase import DesktopCase
from hostCases import OTHER_WINDOW, HostCases

CLICKS = 20


class X11(HostCases, DesktopCase):
    DESKTOP = plasma.make(x11)
    VARIABLES = DESKTOP.VARIABLES
    SCREEN = "1280x800x24"
    TITLE = f"Plasma {plasma.VERSION}, X11"


class Wayland(HostCases, DesktopCase):
    DESKTOP = plasma.make(kwin)
    VARIABLES = DESKTOP.VARIABLES
    SCREEN = "1280x800x24"
    TITLE = f"Plasma {plasma.VERSION}, Wayland"
    COVERS_BAR = True

    # The compositor tells no test about its windows.
    test_details_and_settings_say_whose_they_are = None

    def open_and_close(self, times):
        for _ in range(times):
            self.assert_beside_item(self.open_panel())
            self.display.press_escape()
            self.assert_no_panel()

    def test_every_click_opens_the_panel_beside_the_bar(self):
        self.open_and_close(CLICKS)

    def test_every_click_over_a_window_opens_the_panel_beside_the_bar(self):
        other = self.session.start(OTHER_WINDOW)
        self.addCleanup(setattr, type(self), "empty", self.empty)
        self.addCleanup(self.session.children.end, other)
        self.steady(lambda: self.changes(self.room), "window")
        type(self).empty = self.settled()
        self.open_and_close(CLICKS)


if __name__ == "__main__":
    apart.main([*x11.PROGRAMS, "plasmashell"], as_user=False)
