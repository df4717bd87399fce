#!/usr/bin/python3
"""The item and the panel in MATE's notification area."""

import apart
import bus
import mate
from children import wait_until
from desktopCase import PROGRAM, DesktopCase
from panelCases import PanelCases


class Mate(PanelCases, DesktopCase):
    DESKTOP = mate

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        # The area looks different without items once it has had one.
        first = cls.session.start([PROGRAM])
        wait_until(lambda: bus.registered_items(cls.session.environment), 15, "registered item")
        wait_until(lambda: cls.changes(cls.items), 10, "item")
        cls.session.children.end(first)
        wait_until(lambda: not bus.registered_items(cls.session.environment), 10, "no item")
        cls.empty = cls.settled()


if __name__ == "__main__":
    apart.main([*mate.DISPLAY.PROGRAMS, "openbox", "mate-panel"])
