#!/usr/bin/python3
"""Without a panel the item appears in an old-style tray or as a small window."""

import os
import time
import unittest

import apart
import picture
import tray
from children import wait_until
from desktopCase import PROGRAM, SCREENSHOTS, WIDTH
from session import Session

# Seconds that a panel has to take the item.
PATIENCE = 20

REST = (640, 700)


class NoPanel(unittest.TestCase):
    def test_the_item_shows_itself_and_a_click_on_it_opens_the_panel(self):
        sessions = []
        for desktop in (tray.BARE, tray):
            session = Session(desktop).__enter__()
            self.addCleanup(session.__exit__)
            session.display.move(*REST)
            sessions.append(session)
        time.sleep(3)  # the bar draws itself
        starts = [(session, session.display.take(), session.start([os.path.abspath(PROGRAM)]))
                  for session in sessions]
        for session, empty, resident in starts:
            with self.subTest(session.desktop.__name__):
                self.check(session, empty, resident)

    def check(self, session, empty, resident):
        def changes():
            return picture.difference(empty, session.display.take())
        item = wait_until(changes, PATIENCE + 15, "item")
        time.sleep(1)
        item = changes()
        self.assertLess(item.width, 260)
        self.assertLess(item.height, 60)
        self.assertLess(item.top, 60)
        session.display.click(*item.centre)
        session.display.move(*REST)  # the pointer is in the picture, too
        wait_until(lambda: changes().height > WIDTH, 10, "panel")
        if SCREENSHOTS:
            os.makedirs(SCREENSHOTS, exist_ok=True)
            session.display.take().save(f"{SCREENSHOTS}/{session.desktop.__name__}.png")
        session.display.press_escape()
        wait_until(lambda: changes().height < 60, 5, "end of the panel")
        resident.terminate()
        self.assertEqual(resident.wait(5), 0)
        wait_until(lambda: not changes(), 5, "end of the item")


if __name__ == "__main__":
    apart.main([*tray.DISPLAY.PROGRAMS, "openbox", "tint2"])
