#!/usr/bin/python3
"""The item and the panel in KDE Plasma, in its Wayland session and under X11."""

import time

import apart
import bus
import kwin
import plasma
import x11
from children import wait_until
from desktopCase import PROGRAM, DesktopCase
from hostCases import OTHER_WINDOW, HostCases
from picture import Box
from windowCase import DETAIL, SETTINGS

CLICKS = 20
WIDTH, HEIGHT = 1280, 800
PORTAL = ("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings")


class Placement:
    """To be inherited together with DesktopCase: where this number of clicks open the panel."""

    TIMES = CLICKS

    def open_and_close(self):
        for _ in range(self.TIMES):
            self.assert_beside_item(self.open_panel())
            self.display.press_escape()
            self.assert_no_panel()

    def test_every_click_opens_the_panel_beside_the_bar(self):
        self.open_and_close()
        self.open_panel()
        self.save_picture(f"plasma-{type(self).__name__}")
        self.click_outside()
        self.assert_no_panel()

    def test_every_click_over_a_window_opens_the_panel_beside_the_bar(self):
        other = self.session.start(OTHER_WINDOW)
        self.addCleanup(setattr, type(self), "empty", self.empty)
        self.addCleanup(self.session.children.end, other)
        self.steady(lambda: self.changes(None), "window")
        type(self).empty = self.settled()
        self.open_and_close()


class Brightness:
    """To be inherited together with DesktopCase: the tile in a bar of light colours, which are the default."""

    def ground(self):
        return min(self.display.take().commonest_colour(self.item))

    def test_the_tile_is_as_light_as_the_bar(self):
        # Asks for any setting, which starts the portal.
        bus.call(self.session.environment, PORTAL, "ReadAll", "array:string:org.freedesktop.appearance")
        wait_until(lambda: self.ground() > 240, 10, "light tile")
        self.save_picture(f"plasma-light-{type(self).__name__}")


class TitleBar:
    """To be inherited together with HostCases: the desktop has a light theme."""

    def test_the_details_have_a_dark_title_bar(self):
        self.assert_dark_title_bar(self.open_window(DETAIL))

    def test_the_settings_have_a_dark_title_bar(self):
        self.assert_dark_title_bar(self.open_window(SETTINGS))

    def assert_dark_title_bar(self, window):
        colour = self.title_bar_colour(window)
        # The desktop itself is black.
        self.assertTrue(all(16 < channel < 80 for channel in colour), colour)


class X11(Brightness, TitleBar, HostCases, DesktopCase):
    DESKTOP = plasma.make(x11)
    VARIABLES = DESKTOP.VARIABLES
    SCREEN = f"{WIDTH}x{HEIGHT}x24"
    TITLE = f"Plasma {plasma.VERSION}, X11"


class Wayland(Brightness, TitleBar, Placement, HostCases, DesktopCase):
    DESKTOP = plasma.make(kwin)
    VARIABLES = DESKTOP.VARIABLES
    SCREEN = f"{WIDTH}x{HEIGHT}x24"
    TITLE = f"Plasma {plasma.VERSION}, Wayland"
    COVERS_BAR = True

    # The compositor tells no test about its windows.
    test_the_details_say_whose_they_are = None
    test_the_settings_say_whose_they_are = None


def barred(times=2, screens=1, scale=1.0, **where):
    """A bar on the last of these screens under Wayland."""
    desktop = plasma.make(kwin, screen=screens - 1, scale=scale, **where)
    width, height = round(WIDTH * scale), round(HEIGHT * scale)
    return type("Bar", (Placement, DesktopCase), {
        "DESKTOP": desktop, "SCALE": scale, "TIMES": times, "SCREEN": f"{width}x{height}x24",
        "AREA": Box((screens - 1) * width, 0, screens * width, height),
        "VARIABLES": {**desktop.VARIABLES, kwin.SCREENS: str(screens), kwin.SCALE: f"{scale:g}"},
    })  # fmt: skip


class Scale2(barred(CLICKS, scale=2.0)):
    pass


class SecondScreen(barred(CLICKS, screens=2)):
    pass


class SecondScreenScale2(barred(CLICKS, screens=2, scale=2.0, first=True)):
    @classmethod
    def divide(cls, screen, edge, height):
        super().divide(screen, edge, height)
        cls.items = cls.bar._replace(right=screen.left + screen.width * 3 // 8)


class Scale15(barred(scale=1.5)):
    pass


class Top(barred(edge="top")):
    pass


class Left(barred(edge="left")):
    pass


class Right(barred(edge="right")):
    pass


class Floating(barred(floating=True)):
    pass


class FloatingTop(barred(edge="top", floating=True)):
    pass


class Hiding(barred(hiding="autohide")):
    """The bar comes when the pointer is at the edge. Nothing of it is in the picture of the empty screen."""

    def start_resident(self):
        resident = self.session.start([PROGRAM])
        wait_until(lambda: bus.registered_items(self.session.environment), 15, "registered item")
        # Where it is in a bar that does not hide.
        self.item = Box(WIDTH - 36, HEIGHT - 33, WIDTH - 14, HEIGHT - 11)
        return resident

    @classmethod
    def rest_pointer(cls):
        cls.display.move(cls.room.left + 20, cls.room.top + 20)

    def click_item(self):
        wait_until(self.push, 10, "bar")
        self.steady(lambda: self.changes(self.bar), "bar")
        super().click_item()

    def push(self):
        """Moves the pointer to the edge. The compositor wants that more than once."""
        for y in (HEIGHT - 3, HEIGHT - 1):
            self.display.move(self.item.centre[0], y)
            time.sleep(0.1)
        box = self.changes(self.bar)
        return box and box.height > self.bar.height // 2


if __name__ == "__main__":
    apart.main([*x11.PROGRAMS, "plasmashell"], as_user=False)
