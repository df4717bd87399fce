#!/usr/bin/python3
"""How the settings change a running Tidewell, and how other writers change the open settings."""

import shutil
import subprocess
import time
from pathlib import Path

import apart
import xfce
from children import wait_until
from harness.session import Watch
from windowCase import PROGRAM, SETTINGS, TOGGLE, WindowCase

CHOICE = "combo box"
INTERVAL, TRACKING, LOGIN = "Refresh Interval", "Track Per-Process", "Launch at Login"

# Seconds until the helper that lists programs first runs after tracking is switched on, and what a
# busy machine adds.
FIRST_LOOK = 2.0
SLACK = 1.5
# Seconds until the window tries again to store a change.
RETRY = 5.0

BROKEN = b"refreshInterval = 2.0\n\x00 = = [\xff\n"


class Settings(WindowCase):
    PREFERENCES = {"refreshInterval": 1.0}

    def setUp(self):
        super().setUp()
        self.open(SETTINGS)

    def chosen(self, title):
        """What a list shows. Without a choice its name is its title."""
        name = self.reader.find(CHOICE, title)["name"]
        return None if name == title else name

    def is_on(self, title):
        return self.reader.find(TOGGLE, title)["checked"]

    def looks(self, seconds):
        """Whether the helper runs within so many seconds."""
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            if self.session.children.named("nettop"):
                return True
            time.sleep(0.02)
        return False

    def test_a_clicked_interval_is_the_one_of_the_samples_from_then_on(self):
        watch = Watch(self.session.environment)
        self.addCleanup(watch.stop)
        one, two = watch.next_samples(2, 10)
        self.assertAlmostEqual(two.timestamp - one.timestamp, 1, delta=0.5)
        self.click(self.reader.wait_to_find(CHOICE, INTERVAL))
        self.click(self.reader.wait_to_find("list item", "5 seconds"))
        wait_until(lambda: self.preferred("refreshInterval = 5.0"), 5, "stored interval")
        self.assertEqual(self.chosen(INTERVAL), "5 seconds")
        one, two = watch.next_samples(2, 15)
        self.assertAlmostEqual(two.timestamp - one.timestamp, 5, delta=0.5)

    def test_without_tracking_nobody_looks_at_processes_until_it_is_on_again(self):
        wait_until(lambda: self.get("Processes") != "array []", 10, "process")
        wait_until(lambda: not self.session.children.named("nettop"), 5, "end of the helper")
        self.turn(TRACKING, "trackPerProcess", "false")
        # On and off again before its first run.
        self.turn(TRACKING, "trackPerProcess", "true")
        self.turn(TRACKING, "trackPerProcess", "false")
        seen = self.get("Processes")
        self.assertFalse(self.looks(FIRST_LOOK + SLACK))
        self.assertEqual(self.get("Processes"), seen)
        self.turn(TRACKING, "trackPerProcess", "true")
        self.assertTrue(self.looks(FIRST_LOOK + SLACK))

    def test_launch_at_login_is_an_autostart_entry_while_it_is_on(self):
        entry = self.configuration / "autostart/com.halden.Tidewell.desktop"
        self.assertFalse(entry.exists())
        self.turn(LOGIN, "launchAtLogin", "true")
        wait_until(entry.exists, 5, "autostart entry")
        self.assertIn(f'Exec="{self.command()[0]}"', entry.read_text())
        self.turn(LOGIN, "launchAtLogin", "false")
        wait_until(lambda: not entry.exists(), 5, "end of the autostart entry")

    def test_launch_at_login_says_why_it_fails_where_the_resident_prints(self):
        (self.configuration / "autostart").write_text("in the way")
        self.turn(LOGIN, "launchAtLogin", "true")
        line = f"Launch at login error: {self.configuration}/autostart: Not a directory"
        wait_until(lambda: line in self.session.log.read_text().splitlines(), 5, line)

    def test_the_arrows_go_on_from_a_clicked_section_and_store_nothing(self):
        before = self.preferences.read_text()
        self.display.press("Tab", "Tab", "Tab", "Tab")
        wait_until(lambda: self.reader.find(CHOICE, INTERVAL)["focused"], 5, "focused list")
        self.click(self.reader.find("radio button", "Data"))
        self.reader.wait_to_find(CHOICE, "Keep History")
        self.display.press("Down")
        self.reader.wait_to_find("scroll bar", "Advanced")
        self.assertEqual(self.preferences.read_text(), before)

    def test_what_others_write_is_shown_at_once(self):
        self.assertEqual((self.chosen(INTERVAL), self.is_on(TRACKING)), ("1 second", True))
        self.prefer(refreshInterval=2.0, trackPerProcess=False, monitorInterface="en1")
        wait_until(lambda: self.chosen(INTERVAL) == "2 seconds", 2, "interval")
        self.assertFalse(self.is_on(TRACKING))
        self.assertEqual(self.chosen("Monitor Interface"), "Ethernet (en1)")
        # No option has this one.
        self.prefer(refreshInterval=3.0)
        wait_until(lambda: self.chosen(INTERVAL) is None, 2, "empty choice")
        self.assertTrue(self.is_on(TRACKING))

    def test_preferences_that_cannot_be_read_upset_neither_the_window_nor_the_resident(self):
        self.preferences.write_bytes(BROKEN)
        wait_until(lambda: self.chosen(INTERVAL) == "2 seconds", 5, "what can be read")
        self.assert_works()
        self.preferences.unlink()
        self.preferences.mkdir()
        self.assert_works()
        self.prefer(refreshInterval=5.0)
        wait_until(lambda: self.chosen(INTERVAL) == "5 seconds", 5, "interval")
        self.assert_works()

    def test_a_change_that_cannot_be_stored_is_explained_and_stored_later(self):
        directory = self.preferences.parent
        self.mount("--bind", directory, directory)
        self.addCleanup(subprocess.run, ["umount", directory], check=True)
        self.mount("-o", "remount,bind,ro", directory)
        self.reader.press(TOGGLE, TRACKING)
        self.reader.wait_to_read("Not saved: Read-only file system. Trying again.")
        self.assertTrue(self.is_on(TRACKING))
        self.mount("-o", "remount,bind,rw", directory)
        wait_until(lambda: self.preferred("trackPerProcess = false"), RETRY + SLACK, "stored value")
        wait_until(lambda: not self.is_on(TRACKING), 5, "switch")

    def mount(self, *arguments):
        subprocess.run(["mount", *arguments], check=True)

    def assert_works(self):
        """The window shows what is chosen in it, and the resident answers."""
        before = self.is_on(TRACKING)
        self.reader.press(TOGGLE, TRACKING)
        wait_until(lambda: self.is_on(TRACKING) != before, 5, "switch")
        self.assertIsNotNone(self.get("MenubarText"))
        self.assert_alive()


class Moved(WindowCase):
    """A resident that does not lie where its windows would look for it."""

    def command(self):
        prefix = self.session.directory / "moved"
        program = prefix / "programs/tidewell"
        if not prefix.exists():
            program.parent.mkdir(parents=True)
            shutil.copy2(PROGRAM, program)
            (prefix / "libexec").symlink_to(Path(PROGRAM).parent.parent / "libexec")
        return [str(program)]

    def test_launch_at_login_starts_the_program_that_runs(self):
        self.open(SETTINGS)
        self.turn(LOGIN, "launchAtLogin", "true")
        entry = self.configuration / "autostart/com.halden.Tidewell.desktop"
        wait_until(entry.exists, 5, "autostart entry")
        self.assertIn(f'Exec="{self.command()[0]}"', entry.read_text())


if __name__ == "__main__":
    apart.main([*xfce.DISPLAY.PROGRAMS, "xfwm4", "xfce4-panel"])
