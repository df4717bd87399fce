"""What the panel does in every desktop."""

import os
import signal
import time

import bus
from children import wait_until

# The machine's address in the test world.
ADDRESS = "192.168.1.2"

# Longer than one click, which may close the panel by taking its focus and then reach the item.
SAME_CLICK = 0.3


class PanelCases:
    """To be inherited together with DesktopCase."""

    # Whether the open panel receives all clicks, also those on the item.
    COVERS_BAR = False

    def test_a_click_opens_the_panel_beside_the_item_and_another_closes_it(self):
        for _ in range(2):
            box = self.open_panel()
            self.assert_is_panel(box)
            self.assert_beside_item(box)
            windows = self.windows()
            self.assertEqual(len(windows), 1)
            self.save_picture()
            self.click_item()
            self.assert_no_panel()
            self.assertEqual(self.windows(), windows)
            time.sleep(SAME_CLICK)

    def test_a_click_elsewhere_closes_the_panel(self):
        self.open_panel()
        self.click_outside()
        self.assert_no_panel()

    def test_escape_closes_the_panel(self):
        self.open_panel()
        self.display.press_escape()
        self.assert_no_panel()

    def test_copies_the_address_and_keeps_it_after_the_panel_closed(self):
        wait_until(lambda: bus.get(self.session.environment, bus.TIDEWELL, "IpAddress") == ADDRESS,
                   10, "address on the bus")
        self.click_button(self.open_panel(), "Copy IP")
        wait_until(lambda: self.display.copied() == ADDRESS, 5, "address in the clipboard")
        self.display.press_escape()
        self.assert_no_panel()
        self.assertEqual(self.display.copied(), ADDRESS)

    def test_quit_ends_the_program_and_its_windows(self):
        self.click_button(self.open_panel(), "Quit")
        self.assertEqual(self.resident.wait(5), 0)
        wait_until(lambda: not self.windows(), 5, "end of the windows")
        self.assert_no_panel()

    def test_the_panel_outlives_the_resident_and_says_so_until_it_is_back(self):
        box = self.open_panel()
        self.assertFalse(self.is_notice_shown(box))
        self.resident.kill()
        self.session.children.end(self.resident)
        wait_until(lambda: self.is_notice_shown(box), 5, "notice in the panel")
        self.resident = self.start_resident()
        wait_until(lambda: not self.is_notice_shown(box), 5, "end of the notice")
        if self.COVERS_BAR:
            self.click_item()
            self.assert_no_panel()
        self.ask_for_panel()
        wait_until(self.is_panel_shown, 5, "panel")
        self.rest_pointer()
        wait_until(lambda: len(self.windows()) == 1, 5, "one process for the windows")
        self.assert_is_panel(self.panel())

    def test_a_panel_that_crashed_comes_back(self):
        self.open_panel()
        (crashed,) = self.windows()
        os.kill(crashed, signal.SIGSEGV)
        wait_until(lambda: self.windows() not in ([], [crashed]), 5, "windows started again")
        wait_until(self.is_panel_shown, 5, "panel")
        self.assert_is_panel(self.panel())
