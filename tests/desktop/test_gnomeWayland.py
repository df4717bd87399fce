#!/usr/bin/python3
"""Our extension in GNOME's Wayland session, with and without X clients, at two scales."""

import time

import apart
import bus
import gnome
import gnomeWayland
from children import wait_until
from desktopCase import PROGRAM, DesktopCase
from hostCases import HostCases
from panelCases import SAME_CLICK
from picture import Box

BUTTON = f"Main.panel.statusArea['{gnomeWayland.EXTENSION}']"
BOX = f"(() => {{ const b = {BUTTON}; return b?.visible && b.has_allocation() ? [...b.get_transformed_position(), ...b.get_transformed_size()] : null; }})()"
FIGURES = f"{BUTTON}._figures.get_children().map(figure => [figure.get_transformed_position()[0], figure.width])"


class _Extension(HostCases):
    # The shell closes the open panel at a click on the text, whoever opened it.
    COVERS_BAR = True
    IDENTITY = "com.halden.Tidewell"

    def start_resident(self):
        resident = self.session.start([PROGRAM])
        wait_until(lambda: bus.live_text(self.session.environment), 15, "live text")
        wait_until(self.button, 15, "text in the bar")
        self.item = self.steady(self.button, "text in its place")
        wait_until(lambda: "gnome-shell" in (bus.get(self.session.environment, bus.TIDEWELL, "Faces") or ""),
                   5, "attached extension")
        return resident

    def button(self):
        """The text's box in the bar, or None while it is not shown."""
        box = self.display.evaluate(BOX)
        if not box:
            return None
        left, top, width, height = (round(pixels * self.SCALE) for pixels in box)
        return Box(left, top, left + width, top + height)

    def item_width(self):
        # The figures stand still, too.
        places = self.display.evaluate(FIGURES)
        self.first = getattr(self, "first", places)
        self.assertEqual(places, self.first)
        return self.button().width

    def is_item_where_it_was(self):
        return self.button() == self.item

    def test_the_item_comes_back_in_a_bar_that_was_restarted(self):
        for name in ("disableExtension", "enableExtension"):
            self.display.evaluate(f"Main.extensionManager.{name}('{gnomeWayland.EXTENSION}')")
            wait_until(lambda: bool(self.button()) == (name == "enableExtension"), 5, name)
        wait_until(self.is_item_where_it_was, 5, "text where it was")

    def test_the_middle_button_is_harmless(self):
        self.display.click(*self.item.centre, 2)
        wait_until(lambda: any("Details" in title for title, *_ in self.display.windows()), 10, "details")
        self.record.keep("middle click", "opens the details")

    def test_the_overview_closes_the_panel(self):
        self.open_panel()
        self.display.evaluate("Main.overview.show()")
        wait_until(lambda: not any(title == "Tidewell" for title, *_ in self.display.windows()), 10,
                   "end of the panel")  # fmt: skip
        self.display.evaluate("Main.overview.hide()")
        self.assert_no_panel()

    def test_the_text_goes_while_the_screen_is_locked(self):
        for change, is_there in ("pushMode", False), ("popMode", True):
            self.display.evaluate(f"Main.sessionMode.{change}('unlock-dialog')")
            wait_until(lambda: ("gnome-shell" in (bus.get(self.session.environment, bus.TIDEWELL, "Faces") or ""))
                       == is_there, 5, change)  # fmt: skip
            wait_until(lambda: bool(self.button()) == is_there, 5, f"text after {change}")
        wait_until(self.is_item_where_it_was, 5, "text where it was")

    def test_enter_on_the_text_opens_the_panel(self):
        self.display.evaluate(f"{BUTTON}.grab_key_focus()")
        self.display.press("Return")
        wait_until(self.is_panel_shown, 5, "panel")
        self.assert_is_panel(self.panel())

    def test_a_click_opens_the_panel_within_a_tenth_of_a_second(self):
        self.open_panel()
        self.display.press_escape()
        self.assert_no_panel()
        time.sleep(SAME_CLICK)
        times = []
        for _ in range(5):
            times.append(self.display.evaluate_later(OPENING_TIME.format(button=BUTTON)))
            # The keyboard follows a moment after the window.
            self.panel()
            self.display.press_escape()
            self.assert_no_panel()
            time.sleep(SAME_CLICK)
        print("from click to panel:", sorted(times), "ms")
        self.assertLess(sorted(times)[2], 100)


OPENING_TIME = """
const begin = imports.gi.GLib.get_monotonic_time();
const id = global.window_manager.connect('map', () => {{
  global.window_manager.disconnect(id);
  done((imports.gi.GLib.get_monotonic_time() - begin) / 1000);
}});
{button}._togglePanel();
"""


class Wayland(_Extension, DesktopCase):
    DESKTOP = gnomeWayland.Shell("gnomeWayland", [gnomeWayland.EXTENSION])
    VARIABLES = DESKTOP.VARIABLES
    SCREEN = "1280x800x24"
    TITLE = "GNOME 48, Wayland, our extension"


class WithX(_Extension, DesktopCase):
    DESKTOP = gnomeWayland.Shell("gnomeXwayland", [gnomeWayland.EXTENSION], has_x=True)
    VARIABLES = DESKTOP.VARIABLES
    SCREEN = "1280x800x24"
    TITLE = "GNOME 48, Wayland with Xwayland, our extension"
    IDENTITY = "Tidewell"


class Scaled(_Extension, DesktopCase):
    DESKTOP = gnomeWayland.Shell("gnomeScaled", [gnomeWayland.EXTENSION], scale=2)
    VARIABLES = DESKTOP.VARIABLES
    SCREEN = "2560x1600x24"
    SCALE = 2.0
    TITLE = "GNOME 48, Wayland at scale 2, our extension"


class Scale15(_Extension, DesktopCase):
    DESKTOP = gnomeWayland.Shell("gnomeScale15", [gnomeWayland.EXTENSION], scale=1.5)
    VARIABLES = DESKTOP.VARIABLES
    SCREEN = "1920x1200x24"
    SCALE = 1.5
    TITLE = "GNOME 48, Wayland at scale 1.5, our extension"


class TwoScreens(_Extension, DesktopCase):
    DESKTOP = gnomeWayland.Shell("gnomeTwoScreens", [gnomeWayland.EXTENSION], screens=2)
    VARIABLES = DESKTOP.VARIABLES
    SCREEN = "1280x800x24"
    AREA = Box(0, 0, 1280, 800)
    TITLE = "GNOME 48, Wayland on two screens, our extension"


class AppIndicator(DesktopCase):
    """Without our extension nothing tells a program under Xwayland of clicks that take no focus from it."""

    DESKTOP = gnomeWayland.Shell("gnomeItem", [gnome.EXTENSION], has_x=True)
    VARIABLES = DESKTOP.VARIABLES
    SCREEN = "1280x800x24"

    def ask_for_panel(self):
        bus.call(self.session.environment, bus.TIDEWELL, "OpenPanel")

    def test_the_panel_outlasts_a_click_on_the_bare_desktop_and_escape_closes_it(self):
        self.assert_is_panel(self.open_panel())
        self.click_outside()
        time.sleep(1)
        self.assertTrue(self.is_panel_shown())
        self.display.press_escape()
        self.assert_no_panel()


class AppIndicatorWithoutX(DesktopCase):
    """This compositor lets no program copy that has no window with the keyboard."""

    DESKTOP = gnomeWayland.Shell("gnomeItemWithoutX", [gnome.EXTENSION])
    VARIABLES = DESKTOP.VARIABLES
    SCREEN = "1280x800x24"

    def test_the_menu_says_that_it_could_not_copy_and_what_to_do(self):
        bus.choose_row(self.session.environment, "Copy IP")
        wait_until(lambda: "The address was not copied" in self.display.evaluate(NOTICES), 10, "notice")
        self.save_picture("gnomeWayland-not-copied")

    def test_a_title_bar_that_the_program_draws_is_dark(self):
        bus.call(self.session.environment, bus.TIDEWELL, "OpenSettings")
        window = self.steady(lambda: self.changes(self.room), "settings")
        self.save_picture("gnomeWayland-titleBar")
        bar = window._replace(top=window.top + 4, bottom=window.top + 24)
        self.assertLess(max(self.display.take().commonest_colour(bar)[:3]), 64)


NOTICES = "Main.messageTray.getSources().flatMap(source => source.notifications.map(notice => notice.title))"


if __name__ == "__main__":
    apart.main(["gnome-shell", "gdctl"])
