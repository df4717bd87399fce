"""A desktop with Tidewell in it: what is on the screen, and what a user does."""

import os
import signal
import time
import unittest

import bus
import picture
from children import wait_until
from session import Session

PROGRAM = os.environ.get("TIDEWELL", "build/dev/src/tidewell")
SCREENSHOTS = os.environ.get("TIDEWELL_SCREENSHOTS")
WINDOWS = "tidewell-windows"

# Of the panel's design, in pixels: its width, its rounding and shadow's play, the space to the
# edges, the height of the bar of five buttons at its bottom.
WIDTH = 340
GAP = 6
BUTTONS, BUTTON_BAR_HEIGHT = ["Speed Test", "Copy IP", "Details", "Settings", "Quit"], 46

# How far a tool's bar may be away for the panel to belong to it.
NEAR = 12


class DesktopCase(unittest.TestCase):
    """One session for the whole class, one resident for each test.

    DESKTOP is the desktop's module, SCREEN its size, VARIABLES go into its environment, SCALE is
    how many pixels the panel then has for each of its own.
    """

    DESKTOP = None
    SCREEN = "1280x720x24"
    VARIABLES = {}
    SCALE = 1.0

    @classmethod
    def setUpClass(cls):
        cls.session = Session(cls.DESKTOP, cls.SCREEN, **cls.VARIABLES).__enter__()
        cls.addClassCleanup(cls.session.__exit__)
        cls.display = cls.session.display
        screen, edge = cls.display.take().box, cls.DESKTOP.BAR_HEIGHT
        if cls.DESKTOP.BAR == "top":
            cls.bar, cls.room = screen._replace(bottom=edge), screen._replace(top=edge)
        else:
            edge = screen.bottom - edge
            cls.bar, cls.room = screen._replace(top=edge), screen._replace(bottom=edge)
        cls.rest_pointer()
        cls.empty = cls.settled()

    @classmethod
    def settled(cls):
        """The screen once nothing moves on it any more."""
        def quiet():
            first = cls.display.take()
            for _ in range(8):
                time.sleep(0.1)
                if cls.display.take() != first:
                    return None
            return first
        return wait_until(quiet, 20, "quiet screen")

    def setUp(self):
        self.resident = self.start_resident()
        self.addCleanup(self.end_everything)

    def start_resident(self):
        resident = self.session.start([os.path.abspath(PROGRAM)])
        wait_until(lambda: bus.registered_items(self.session.environment), 15, "registered item")
        self.item = self.steady(lambda: self.changes(self.bar), "item in the bar")
        return resident

    def end_everything(self):
        self.session.children.end(self.resident)
        for pid in self.windows():
            os.kill(pid, signal.SIGTERM)
        wait_until(lambda: not self.windows(), 5, "end of the windows")
        self.rest_pointer()
        wait_until(lambda: not self.changes(self.empty.box), 10, "the screen as it was")

    def windows(self):
        return self.session.children.named(WINDOWS)

    # Looking

    def changes(self, part):
        return picture.difference(self.empty, self.display.take(), part)

    def steady(self, look, what):
        """The first answer that is given three times in a row."""
        def same():
            first = look()
            for _ in range(2):
                time.sleep(0.05)
                if look() != first:
                    return None
            return first
        return wait_until(same, 10, what)

    def panel(self):
        """Where the panel is on the screen, once it is."""
        return self.steady(lambda: self.changes(self.room), "panel")

    def is_panel_shown(self):
        """Whether there is more to see than the pointer."""
        box = self.changes(self.room)
        return box is not None and box.width > WIDTH // 2

    def assert_no_panel(self):
        self.rest_pointer()
        wait_until(lambda: not self.changes(self.room), 5, "screen without the panel")

    def assert_is_panel(self, box):
        self.assertAlmostEqual(box.width, WIDTH * self.SCALE, delta=3 * self.SCALE)
        self.assertGreater(box.height, 350 * self.SCALE)
        colour = self.display.take().commonest_colour(box)
        self.assertTrue(all(20 <= channel <= 40 for channel in colour), colour)

    def assert_beside_item(self, box):
        """Apart from the bar, near it, and below or above the item as far as the screen allows."""
        below = box.top - self.room.top
        above = self.room.bottom - box.bottom
        distance = below if self.DESKTOP.BAR == "top" else above
        self.assertTrue(0 < distance <= NEAR * self.SCALE, (box, self.room))
        middle = self.item.centre[0] - box.width // 2
        gap = GAP * self.SCALE
        nearest = max(self.room.left + gap, min(middle, self.room.right - gap - box.width))
        self.assertAlmostEqual(box.left, nearest, delta=NEAR * self.SCALE)
        self.assertGreaterEqual(min(below, above, box.left, self.room.right - box.right), 0)

    def is_notice_shown(self, box):
        """Whether the panel says in red at its top that the resident is gone."""
        red, green, blue = self.display.take().commonest_colour(
            box._replace(left=box.left + int(20 * self.SCALE), right=box.right - int(20 * self.SCALE),
                         top=box.top + int(8 * self.SCALE), bottom=box.top + int(20 * self.SCALE)))
        return red > 40 and green < 25 and blue < 25

    # Doing

    def click_item(self):
        self.display.click(*self.item.centre)

    @classmethod
    def rest_pointer(cls):
        """Puts the pointer where no bar shows hints for it, no button lights up, and where it is
        not in the way, since some screens show it in their pictures."""
        cls.display.move(cls.bar.left + cls.bar.width // 3, cls.bar.top + 2)

    def open_panel(self):
        self.click_item()
        wait_until(self.is_panel_shown, 5, "panel")
        self.rest_pointer()
        return self.panel()

    def click_outside(self):
        self.display.click(self.room.left + 40, self.room.centre[1])

    def click_button(self, box, name):
        width = box.width / len(BUTTONS)
        self.display.click(int(box.left + width * (BUTTONS.index(name) + 0.5)),
                           int(box.bottom - BUTTON_BAR_HEIGHT * self.SCALE / 2))

    def save_picture(self):
        if SCREENSHOTS:
            os.makedirs(SCREENSHOTS, exist_ok=True)
            self.display.take().save(f"{SCREENSHOTS}/{self.DESKTOP.__name__}.png")
