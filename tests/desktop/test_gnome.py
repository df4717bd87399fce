#!/usr/bin/python3
"""The item, its menu and the panel in GNOME, where a click on an item opens its menu."""

import time

import apart
import bus
import gnome
from children import wait_until
from desktopCase import PROGRAM, DesktopCase
from panelCases import PanelCases
from pictureText import lines_of_text

FIGURES = 4
COMMANDS = ["Open", "Details", "Settings", "Speed Test", "Copy IP", "Quit"]

LEAST_LABEL = 60
# Wider than the pointer, whose end reaches below the bar.
LEAST_MENU = 100

DOUBLE_CLICK = 0.15


class Gnome(PanelCases, DesktopCase):
    DESKTOP = gnome

    def start_resident(self):
        # Newer shells keep the item of a dead program for a moment, and then move the next.
        wait_until(lambda: not self.changes(self.items), 10, "end of the last item")
        resident = super().start_resident()
        self.item = self.steady(self.labelled, "label beside the icon")
        return resident

    def labelled(self):
        """The item's box, or None while newer shells show only its icon."""
        box = self.changes(self.items)
        return box if box and box.width > LEAST_LABEL else None

    def open_menu(self):
        self.display.click(*self.item.centre)
        return self.steady(self.menu, "menu")

    def menu(self):
        """The menu's box, or None before it is shown, which newer shells delay."""
        box = self.changes(self.room)
        return box if box and box.width > LEAST_MENU else None

    def lines(self, menu):
        """Top and bottom of each line of text in the menu."""
        return lines_of_text(self.display.take(), menu)

    def choose(self, menu, command):
        top, bottom = self.lines(menu)[FIGURES + COMMANDS.index(command)]
        self.display.click(menu.centre[0], (top + bottom) // 2)

    def ask_for_panel(self):
        self.choose(self.open_menu(), "Open")

    # A click opens the menu here.
    test_a_click_opens_the_panel_beside_the_item_and_another_closes_it = None

    def test_a_click_opens_the_menu_whose_figures_live(self):
        menu = self.open_menu()
        lines = self.lines(menu)
        self.assertEqual(len(lines), FIGURES + len(COMMANDS))
        self.save_picture("gnome-menu")
        figures = menu._replace(top=lines[0][0], bottom=lines[FIGURES - 1][1])
        first = self.display.take().crop(figures)
        wait_until(lambda: self.display.take().crop(figures) != first, 10, "other figures")
        self.display.press_escape()

    def test_open_in_the_menu_opens_the_panel_beside_the_item_and_in_the_same_process(self):
        windows = None
        for _ in range(2):
            box = self.open_panel()
            self.assert_is_panel(box)
            self.assert_beside_item(box)
            self.save_picture()
            windows = windows or self.windows()
            self.assertEqual(self.windows(), windows)
            self.display.press_escape()
            self.assert_no_panel()

    def test_a_double_click_on_the_item_opens_the_panel_and_no_menu(self):
        self.display.click(*self.item.centre)
        time.sleep(DOUBLE_CLICK)
        self.display.click(*self.item.centre)
        wait_until(self.windows, 5, "windows")
        self.rest_pointer()
        self.assert_is_panel(self.panel())

    def test_quit_in_the_menu_ends_the_program(self):
        self.choose(self.open_menu(), "Quit")
        self.assertEqual(self.resident.wait(5), 0)


class OurExtension(DesktopCase):
    DESKTOP = gnome.WithOurExtension()

    def start_resident(self):
        resident = self.session.start([PROGRAM])
        wait_until(lambda: bus.live_text(self.session.environment), 15, "live text")
        self.item = self.steady(lambda: self.changes(self.items), "figures in the bar")
        return resident

    test_a_click_opens_the_panel_beside_the_figures_and_another_closes_it = (
        PanelCases.test_a_click_opens_the_panel_beside_the_item_and_another_closes_it)
    test_a_click_elsewhere_closes_the_panel = PanelCases.test_a_click_elsewhere_closes_the_panel
    test_escape_closes_the_panel = PanelCases.test_escape_closes_the_panel


if __name__ == "__main__":
    apart.main([*gnome.DISPLAY.PROGRAMS, "gnome-shell"])
