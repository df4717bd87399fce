"""A desktop with Tidewell in it: what is on the screen, and what a user does."""

import os
import signal
import time
import unittest

import bus
import picture
from children import wait_until
from session import Session

PROGRAM = os.path.abspath(os.environ.get("TIDEWELL", "build/dev/src/tidewell"))
SCREENSHOTS = os.environ.get("TIDEWELL_SCREENSHOTS")
WINDOWS = "tidewell-windows"

# The panel's design in pixels: its width, the space to the edges, the buttons at its bottom and the
# height of their bar.
WIDTH = 340
GAP = 8
BUTTONS, BUTTON_BAR_HEIGHT = ["Speed Test", "Copy IP", "Details", "Settings", "Quit"], 46

# A window is wider than a menu, and its text has more colours than an empty window.
LEAST_WINDOW, FEWEST_COLOURS = 300, 60

# The largest distance of the panel from the bar and from its position below the item.
NEAR = 12


class DesktopCase(unittest.TestCase):
    """One session for the whole class, one resident for each test.

    DESKTOP is the desktop's module, SCREEN its size, VARIABLES go into its environment, SCALE is
    how many pixels the panel then has for each of its own, AREA the part of the picture that is
    the screen to work on, if not all.
    """

    DESKTOP = None
    SCREEN = "1280x720x24"
    VARIABLES = {}
    SCALE = 1.0
    AREA = None

    @classmethod
    def setUpClass(cls):
        cls.session = Session(cls.DESKTOP, cls.SCREEN, **cls.VARIABLES).__enter__()
        cls.addClassCleanup(cls.session.__exit__)
        cls.display = cls.session.display
        cls.divide(cls.AREA or cls.display.take().box, cls.DESKTOP.BAR, int(cls.DESKTOP.BAR_HEIGHT))
        cls.rest_pointer()
        cls.empty = cls.settled()

    @classmethod
    def divide(cls, screen, edge, height):
        """Finds the bar at this edge, the room beside it, and the items: at the end of the bar, because there
        may be a clock in its middle."""
        inner, line = {
            "top": ("bottom", screen.top + height),
            "bottom": ("top", screen.bottom - height),
            "left": ("right", screen.left + height),
            "right": ("left", screen.right - height),
        }[edge]
        cls.bar, cls.room = screen._replace(**{inner: line}), screen._replace(**{edge: line})
        end = {"left": screen.left + screen.width * 5 // 8}
        if edge in ("left", "right"):
            end = {"top": screen.top + screen.height * 5 // 8}
        cls.items = cls.bar._replace(**end)

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
        resident = self.session.start([PROGRAM])
        wait_until(lambda: bus.registered_items(self.session.environment), 15, "registered item")
        self.item = self.steady(lambda: self.changes(self.items), "item in the bar")
        return resident

    def end_everything(self):
        self.session.children.end(self.resident)
        for pid in self.windows():
            os.kill(pid, signal.SIGTERM)
        wait_until(lambda: not self.windows(), 5, "end of the windows")
        self.rest_pointer()
        wait_until(lambda: not (self.changes(self.room) or self.changes(self.items)), 10,
                   "the screen as it was")

    def windows(self):
        return self.session.children.named(WINDOWS)

    # Looking

    @classmethod
    def changes(cls, part):
        return picture.difference(cls.empty, cls.display.take(), part)

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
        """Waits for the panel. Returns its box."""
        return self.steady(lambda: self.changes(self.room), "panel")

    def is_panel_shown(self):
        """Whether more than the pointer or a menu is visible."""
        box = self.changes(self.room)
        return box is not None and box.width > 0.9 * WIDTH * self.SCALE

    def drawn_window(self):
        """Waits until a window shows its content, whose text has many colours. Returns its box."""
        def drawn():
            box = self.changes(self.room)
            if not box or box.width <= LEAST_WINDOW:
                return None
            width, height = box.width // 4, box.height // 4
            middle = box._replace(left=box.left + width, right=box.right - width,
                                  top=box.top + height, bottom=box.bottom - height)
            return box if self.display.take().colours(middle) >= FEWEST_COLOURS else None
        return self.steady(drawn, "drawn window")

    def assert_no_panel(self):
        self.rest_pointer()
        wait_until(lambda: not self.changes(self.room), 5, "screen without the panel")

    def assert_is_panel(self, box):
        self.assertAlmostEqual(box.width, WIDTH * self.SCALE, delta=3 * self.SCALE)
        self.assertGreater(box.height, 350 * self.SCALE)
        colour = self.display.take().commonest_colour(box)
        # At most the design's surface, and darker over a dark background.
        self.assertTrue(all(8 <= channel <= 27 for channel in colour), colour)

    def assert_beside_item(self, box):
        """Apart from the bar, near it, and centred on the item as far as the screen allows."""
        self.assertTrue(0 < self.distance(box) <= NEAR * self.SCALE, (box, self.room))
        middle, size, first, last = self.item.centre[0], box.width, self.room.left, self.room.right
        begin = box.left
        if self.DESKTOP.BAR in ("left", "right"):
            middle, size, first, last = self.item.centre[1], box.height, self.room.top, self.room.bottom
            begin = box.top
        gap = GAP * self.SCALE
        nearest = max(first + gap, min(middle - size // 2, last - gap - size))
        self.assertAlmostEqual(begin, nearest, delta=NEAR * self.SCALE)
        self.assertGreater(min(self.distances(box).values()), 0, "it would be cut off")

    def distances(self, box):
        """From each edge of the room."""
        room = self.room
        return {"top": box.top - room.top, "bottom": room.bottom - box.bottom,
                "left": box.left - room.left, "right": room.right - box.right}  # fmt: skip

    def distance(self, box):
        """From the bar."""
        return self.distances(box)[self.DESKTOP.BAR]

    def is_notice_shown(self, box):
        """Whether the panel shows the red notice at its top."""
        red, green, blue = self.display.take().commonest_colour(
            box._replace(left=box.left + int(20 * self.SCALE), right=box.right - int(20 * self.SCALE),
                         top=box.top + int(8 * self.SCALE), bottom=box.top + int(20 * self.SCALE)))
        return red > 40 and green < 25 and blue < 25

    # Doing

    def click_item(self):
        self.display.click(*self.item.centre)

    @classmethod
    def rest_pointer(cls):
        """Moves the pointer to a place without tool tips and buttons. Some screens show it in pictures."""
        cls.display.move(cls.bar.left + cls.bar.width // 3, cls.bar.top + 2)

    def ask_for_panel(self):
        """Opens the panel."""
        self.click_item()

    def open_panel(self):
        self.ask_for_panel()
        wait_until(self.is_panel_shown, 5, "panel")
        # Some compositors report the pointer only when it moves. A hand moves it a little, and never jumps.
        x, y = self.item.centre
        self.display.move(x + 1, y)
        self.rest_pointer()
        return self.panel()

    def click_outside(self):
        self.display.click(self.room.left + self.room.width * 2 // 5, self.room.centre[1])

    def click_button(self, box, name):
        width = box.width / len(BUTTONS)
        self.display.click(int(box.left + width * (BUTTONS.index(name) + 0.5)),
                           int(box.bottom - BUTTON_BAR_HEIGHT * self.SCALE / 2))

    def save_picture(self, name=None):
        if SCREENSHOTS:
            os.makedirs(SCREENSHOTS, exist_ok=True)
            self.display.take().save(f"{SCREENSHOTS}/{name or self.DESKTOP.__name__}.png")
