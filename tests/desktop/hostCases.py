"""What a user does with the item, its menu and the panel, on every desktop, and what is recorded of it."""

import itertools
import time
from pathlib import Path

import bus
from children import wait_until
from desktopCase import PROGRAM
from harness import world
from harness.session import write_preferences
from hostRecord import HostRecord
from panelCases import ADDRESS, SAME_CLICK, PanelCases
from pictureText import lines_of_text
from windowCase import DETAIL, OPENING, SETTINGS

MIDDLE, SECOND = 2, 3
FIGURES = 4
COMMANDS = ["Open", "Details", "Settings", "Speed Test", "Copy IP", "Quit"]

# Wider than the pointer, whose end reaches out of the bar.
LEAST_MENU = 100

# Bytes per second for texts of every width, and how many texts are looked at.
RATES = [1_000, 3_000, 47_000, 120_000, 880_000, 1_500_000, 4_400_000, 9_700_000]
TEXTS = 20
OFTEN = 0.5

INSTALLED = PROGRAM.startswith("/usr/")

OTHER_WINDOW = ["/usr/bin/python3", str(Path(__file__).with_name("otherWindow.py")), "200", "140"]


class HostCases(PanelCases):
    """To be inherited together with DesktopCase. Keeps what it sees in `record`.

    TITLE names the row. JITTER is the largest difference of the item's width between texts, in pixels.
    MENU_BUTTON opens the menu.
    """

    TITLE = None
    JITTER = 0
    # How the desktop names the program's windows: by the class under X11, by the file of its menu entry
    # under Wayland.
    IDENTITY = "Tidewell"
    MENU_BUTTON = SECOND

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.record = HostRecord(cls.TITLE or cls.DESKTOP.NAME)

    # The item

    def test_the_item_keeps_its_width_while_its_text_changes(self):
        write_preferences(Path(self.session.environment["XDG_CONFIG_HOME"]), refreshInterval=OFTEN)
        self.addCleanup(self.forget_preferences)
        widths, texts = set(), set()
        for rate in itertools.islice(itertools.cycle(RATES), TEXTS):
            # Started here, because a desktop under another user number cannot enter other networks.
            sender = self.session.start(world.sender("user", rate))
            for _ in range(3):
                time.sleep(OFTEN)
                texts.add(bus.live_text(self.session.environment))
                widths.add(self.item_width())
            self.session.children.end(sender)
        self.assertGreaterEqual(len(texts), TEXTS)
        self.save_picture(f"{self.DESKTOP.__name__}-item")
        self.record.keep("item", self.describe_item())
        difference = max(widths) - min(widths)
        self.record.keep("its width", "steady" if not difference else f"varies by {difference} px")
        self.assertLessEqual(difference, self.JITTER, sorted(widths))

    def item_width(self):
        return self.changes(self.items).width

    def describe_item(self):
        return f"{self.item.width} x {self.item.height} px"

    def forget_preferences(self):
        (Path(self.session.environment["XDG_CONFIG_HOME"]) / "tidewell/preferences.toml").unlink()

    def test_the_middle_button_is_harmless(self):
        self.display.click(*self.item.centre, MIDDLE)
        time.sleep(SAME_CLICK)
        self.assertIsNone(self.resident.poll())
        shown = self.is_panel_shown()
        self.record.keep("middle click", "opens the panel" if shown else "nothing")
        if shown:
            self.display.press_escape()
        self.assert_is_panel(self.open_panel())

    # The menu

    def open_menu(self):
        self.display.click(*self.item.centre, self.MENU_BUTTON)
        return self.steady(self.menu, "menu")

    def menu(self):
        """The menu's box, or None before it is shown."""
        # A window in the middle of the screen looks different while the menu has the keyboard.
        box = self.changes(self.room._replace(left=self.room.left + self.room.width * 5 // 8))
        return box if box and box.width > LEAST_MENU else None

    def rows(self, menu):
        """Top and bottom of each row's text."""
        return lines_of_text(self.display.take(), menu)

    def choose(self, menu, command):
        top, bottom = self.rows(menu)[FIGURES + COMMANDS.index(command)]
        self.display.click(menu.centre[0], (top + bottom) // 2)

    def test_the_menu_shows_the_figures_and_copies_the_address(self):
        wait_until(lambda: bus.get(self.session.environment, bus.TIDEWELL, "IpAddress") == ADDRESS,
                   10, "address on the bus")
        menu = self.open_menu()
        self.save_picture(f"{self.DESKTOP.__name__}-menu")
        self.assertEqual(len(self.rows(menu)), FIGURES + len(COMMANDS))
        self.record.keep("menu", "with the second button" if self.MENU_BUTTON == SECOND else "with a click")
        self.choose(menu, "Copy IP")
        wait_until(lambda: self.display.copied() == ADDRESS, 5, "address in the clipboard")
        self.record.keep("Copy IP", "works from panel and menu")

    # The panel

    def assert_beside_item(self, box):
        super().assert_beside_item(box)
        distance = self.distance(box)
        offset = abs(box.centre[0] - self.item.centre[0])
        # Borders of bars may not belong to their height.
        self.assertLessEqual(distance, 8 * self.SCALE + 1)
        at_edge = min(box.left - self.room.left, self.room.right - box.right) <= 8 * self.SCALE
        where = "at the screen's edge" if at_edge else f"centred on the item ({offset} px off)"
        self.record.keep("the panel", f"{distance} px from the bar, {where}")
        self.record.keep("left click", "opens and closes the panel" if self.MENU_BUTTON == SECOND
                         else "opens the menu; a double click the panel")  # fmt: skip
        if self.SCALE == 1:
            self.record.keep_picture(self.display.take().crop(self.around(box, self.item)))

    def around(self, *boxes):
        """The part of the screen with these boxes and a margin."""
        screen, margin = self.display.take().box, 16
        return screen._replace(left=max(screen.left, min(box.left for box in boxes) - margin),
                               top=max(screen.top, min(box.top for box in boxes) - margin),
                               right=min(screen.right, max(box.right for box in boxes) + margin),
                               bottom=min(screen.bottom, max(box.bottom for box in boxes) + margin))

    def test_clicks_on_a_window_and_on_the_bar_close_the_panel(self):
        other = self.session.start(OTHER_WINDOW)
        self.addCleanup(setattr, type(self), "empty", self.empty)
        self.addCleanup(self.session.children.end, other)
        window = self.steady(lambda: self.changes(self.room), "window")
        type(self).empty = self.settled()
        for place in (window.left + 20, window.centre[1]), self.empty_place_on_bar():
            self.open_panel()
            self.display.click(*place)
            # The other window may have a larger shadow now.
            wait_until(lambda: not self.is_panel_shown(), 5, "screen without the panel")
            time.sleep(SAME_CLICK)
        self.record.keep("closed by", "a click anywhere else, Escape")

    def empty_place_on_bar(self):
        return (self.bar.left + self.bar.width // 3, self.bar.centre[1])

    # The windows

    def test_the_details_say_whose_they_are(self):
        self.open_window(DETAIL)
        wait_until(lambda: self.is_shown(DETAIL), 10, f"details by {self.IDENTITY}")

    def test_the_settings_say_whose_they_are(self):
        self.open_window(SETTINGS)
        wait_until(lambda: self.is_shown(SETTINGS), 10, f"settings by {self.IDENTITY}")

    def open_window(self, title):
        """Opens a window and waits until it is drawn. Returns its box."""
        bus.call(self.session.environment, bus.TIDEWELL, OPENING[title])
        box = self.drawn_window()
        self.save_picture(f"{self.DESKTOP.__name__}-{OPENING[title].removeprefix('Open')}")
        return box

    def is_shown(self, title):
        # Themes have the icon of an installed program only.
        return any((found, identity) == (title, self.IDENTITY) and (has_icon or not INSTALLED)
                   for found, identity, has_icon in self.display.windows())

    def title_bar_colour(self, window):
        # Below the corner and the edge.
        return self.display.take().commonest_colour(window._replace(top=window.top + 8, bottom=window.top + 20))

    def test_the_item_comes_back_in_a_bar_that_was_restarted(self):
        self.session.stop_panel()
        wait_until(lambda: self.changes(self.items) != self.item, 10, "screen without the bar")
        self.session.start_panel()
        wait_until(lambda: bus.registered_items(self.session.environment), 60, "registered item")
        wait_until(self.is_item_where_it_was, 60, "item where it was")

    def is_item_where_it_was(self):
        # Some bars frame a new item for a moment.
        box = self.changes(self.items)
        return box and all(abs(now - then) <= max(1, self.JITTER)
                           for now, then in zip(box.centre, self.item.centre))  # fmt: skip
