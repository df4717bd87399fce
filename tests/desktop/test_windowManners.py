#!/usr/bin/python3
"""How the details and the settings behave among the windows of a desktop."""

import pathlib
import re

import apart
import bus
import xfce
from children import wait_until
from vitals import vitals
from windowCase import DETAIL, SETTINGS, WindowCase

BOTH = [DETAIL, SETTINGS]


class Manners(WindowCase):
    def test_a_window_that_is_asked_for_again_is_the_same_one_in_front(self):
        self.open(SETTINGS)
        self.open(DETAIL)
        self.assertEqual(vitals(self.resident.pid).threads, 1)
        numbers = {title: self.screen.titled(title).number for title in BOTH}
        for title in [SETTINGS, DETAIL, DETAIL]:
            self.open(title)
            self.assertEqual(self.screen.titles()[-1], title)
        self.assertEqual({title: self.screen.titled(title).number for title in BOTH}, numbers)

    def test_a_minimised_window_that_is_asked_for_comes_back_to_the_front(self):
        self.open(SETTINGS)
        self.open(DETAIL)
        for title in BOTH:
            window = self.screen.titled(title)
            self.screen.minimise(title)
            wait_until(lambda: "HIDDEN" in self.screen.titled(title).state, 5, "minimised window")
            self.open(title)
            again = self.screen.titled(title)
            self.assertEqual((again.number, "HIDDEN" in again.state), (window.number, False))
            self.assertEqual(self.screen.titles()[-1], title)

    def test_windows_say_whose_they_are(self):
        for title in BOTH:
            self.open(title)
            self.assertEqual(self.screen.titled(title).identity, ("tidewell-windows", "Tidewell"))

    def test_windows_load_no_other_toolkit(self):
        """Qt's plug-in for this desktop's theme, which most desktops install, would load GTK."""
        self.open(SETTINGS)
        (windows,) = self.session.children.named("tidewell-windows")
        mapped = pathlib.Path(f"/proc/{windows}/maps").read_text()
        toolkits = {name.split(".")[0] for name in re.findall(r"/(lib(?:gtk|Qt6Widgets).*\.so)", mapped)}
        self.assertEqual(toolkits, {"libQt6Widgets"})

    def test_windows_ask_for_a_dark_title_bar(self):
        for title in BOTH:
            self.open(title)
            number = self.screen.titled(title).number
            hint = self.session.output(["xprop", "-id", number, "-notype", "_GTK_THEME_VARIANT"])
            self.assertEqual(hint.strip(), '_GTK_THEME_VARIANT = "dark"')

    def test_the_token_of_a_menu_row_goes_back_when_its_window_is_there(self):
        item = (bus.TIDEWELL[0], "/StatusNotifierItem", "org.kde.StatusNotifierItem")
        heard = self.session.directory / "heard"
        with heard.open("wb") as output:
            self.session.start(["stdbuf", "-oL", "xev", "-root", "-event", "property"], stdout=output)
        # The listener has begun once it reports a change.
        change = ["xprop", "-root", "-f", "MARK", "8s", "-set", "MARK", "1"]
        wait_until(lambda: self.session.output(change) == "" and "MARK" in heard.read_text(), 5, "listener")
        # The listener does not print messages, but counts them: one for twenty bytes.
        token = f"{'x' * 90}_TIME5"
        parts = -(-len(f"remove: ID={token}0") // 20)
        bus.call(self.session.environment, item, "ProvideXdgActivationToken", f"string:{token}")
        bus.choose_row(self.session.environment, "Settings")
        wait_until(lambda: self.screen.titled(SETTINGS), 5, "settings")
        counted = ["(_NET_STARTUP_INFO_BEGIN)", *["(_NET_STARTUP_INFO)"] * (parts - 1)]
        wait_until(lambda: re.findall(r"\(_NET_STARTUP_INFO\w*\)", heard.read_text()) == counted, 5, "messages")

    def test_closing_a_window_loses_only_what_it_showed(self):
        self.open(SETTINGS)
        self.open(DETAIL)
        self.reader.press("page tab", "Processes")
        self.reader.press("radio button", "Alerts")
        self.reader.press("check box", "Enable Notifications")
        wait_until(lambda: self.preferred("showNotifications = false"), 5, "stored preference")
        for title in BOTH:
            self.open(title)
            self.display.press("alt+F4")
            wait_until(lambda: title not in self.screen.titles(), 5, "end of the window")
        self.assert_alive()
        self.open(DETAIL)
        self.reader.wait_to_read("Bandwidth Over Time")
        self.open(SETTINGS)
        self.reader.wait_to_find("check box", "Launch at Login")
        self.reader.press("radio button", "Alerts")
        self.assertFalse(self.reader.wait_to_find("check box", "Enable Notifications")["checked"])


if __name__ == "__main__":
    apart.main([*xfce.DISPLAY.PROGRAMS, "xfwm4", "xfce4-panel", "xprop"])
