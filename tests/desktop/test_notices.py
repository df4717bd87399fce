#!/usr/bin/python3
"""A notice of Tidewell on desktops that show notices themselves."""

import apart
import budgie
import bus
import cinnamon
import kwin
import plasma
import x11
import xfce
from children import wait_until
from desktopCase import DesktopCase

SERVER = "org.freedesktop.Notifications"
LEAST_WIDTH = 200


class Notices:
    """To be inherited together with DesktopCase. DAEMON is the program that shows the notices, as the kernel cuts
    its name."""

    DAEMON = None
    SCREEN = "1280x800x24"

    def test_the_loss_of_the_connection_is_shown(self):
        wait_until(lambda: self.daemon() == self.DAEMON, 20, f"{self.DAEMON} on the bus")
        self.addCleanup(apart.do, "carrier", "on")
        apart.do("carrier", "off")
        notice = self.steady(self.notice, "notice")
        self.save_picture(f"notice-{self.DESKTOP.__name__}")
        self.assertEqual(self.daemon(), self.DAEMON)
        self.assertGreater(self.display.take().colours(notice), 20)

    def daemon(self):
        return bus.process(self.session.environment, SERVER)

    def notice(self):
        box = self.changes(self.room)
        return box if box and box.width > LEAST_WIDTH else None

    def end_everything(self):
        # The notice may stay.
        self.session.children.end(self.resident)


class Xfce(Notices, DesktopCase):
    DESKTOP = xfce.WITH_NOTICES
    DAEMON = "xfce4-notifyd"


class Cinnamon(Notices, DesktopCase):
    DESKTOP = cinnamon.make()
    VARIABLES = cinnamon.VARIABLES
    DAEMON = "cinnamon"


class Budgie(Notices, DesktopCase):
    DESKTOP = budgie.make("Budgie")
    DAEMON = "budgie-daemon"


class Plasma(Notices, DesktopCase):
    DESKTOP = plasma.make(kwin)
    VARIABLES = DESKTOP.VARIABLES
    DAEMON = "plasmashell"


if __name__ == "__main__":
    apart.main([*x11.PROGRAMS, *(xfce.NOTICES or ["xfce4-notifyd"]), *cinnamon.PROGRAMS, *budgie.PROGRAMS, "plasmashell"])
