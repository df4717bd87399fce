#!/usr/bin/python3
"""The text in the status line of swaybar."""

import unittest

import apart
import bus
import swaybar
from children import wait_until
from desktopCase import PROGRAM, SCREENSHOTS
from picture import Box, difference
from session import Session

# The right half of the bar's middle rows.
STATUS = Box(640, 2, 1280, 18)


class StatusLine(unittest.TestCase):
    def test_shows_the_text_while_tidewell_runs(self):
        session = self.enterContext(Session(swaybar))
        empty = self.quiet(session)
        resident = session.start([PROGRAM])
        wait_until(lambda: bus.live_text(session.environment), 10, "text on the bus")
        wait_until(lambda: self.width(empty, session) > 40, 5, "text in the bar")
        if SCREENSHOTS:
            session.display.take().save(f"{SCREENSHOTS}/swaybar.png")
        session.children.end(resident)
        wait_until(lambda: not self.width(empty, session), 5, "end of the text")

    def quiet(self, session):
        """The screen with an empty bar."""
        def shown():
            picture = session.display.take()
            return picture if picture.pixel(*STATUS.centre) == (0, 0, 0) else None
        return wait_until(shown, 10, "bar")

    @staticmethod
    def width(empty, session):
        """The width of what has changed in the status line."""
        box = difference(empty, session.display.take(), STATUS)
        return box.width if box else 0


if __name__ == "__main__":
    apart.main(["sway", "swaybar", "grim"], as_user=True)
