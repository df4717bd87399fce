#!/usr/bin/python3
"""Looks at the installed Tidewell in a virtual desktop: installed.py SCREENSHOT

The session bus starts it as the package says; its text is in the panel; its windows belong to its
entry in the menu and have its icon.
"""

import configparser
import pathlib
import re
import subprocess
import sys
import time
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests/desktop"))

import bus  # noqa: E402
import xfce  # noqa: E402
from children import wait_until  # noqa: E402
from session import Session  # noqa: E402

ENTRY = "/usr/share/applications/com.halden.Tidewell.desktop"
MANUALS = ["tidewell.1", "tidewellctl.1", "tidewell-windows.1", "tidewell-nettop.8"]


def entry(key):
    parser = configparser.RawConfigParser()
    parser.optionxform = str
    parser.read(ENTRY)
    return parser["Desktop Entry"][key]


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.session = cls.enterClassContext(Session(xfce, "960x720x24"))
        # This call starts it.
        bus.call(cls.session.environment, bus.TIDEWELL, "OpenPanel")

    def property_of(self, window, name):
        return self.session.output(["xprop", "-id", window, "-notype", name]) or ""

    def windows(self):
        listed = self.session.output(["xprop", "-root", "_NET_CLIENT_LIST"]) or ""
        return re.findall(r"0x[0-9a-f]+", listed)

    def test_1_the_bus_starts_it_and_its_text_is_there(self):
        text = wait_until(lambda: bus.live_text(self.session.environment), 15, "live text")
        self.assertRegex(text, "↓.+ ↑.+")
        print(f"Live text: {text}")
        self.assertRegex(self.session.output(["tidewellctl", "status"]) or "", "^↓.+ ↑.+, ")

    def test_2_its_item_is_in_the_panel(self):
        wait_until(lambda: bus.registered_items(self.session.environment), 15, "item in the panel")

    def test_3_its_windows_belong_to_its_entry_and_have_its_icon(self):
        bus.call(self.session.environment, bus.TIDEWELL, "OpenDetail")
        instance = f'"{entry("StartupWMClass")}"'

        def has_icon():
            own = [w for w in self.windows() if instance in self.property_of(w, "WM_CLASS")]
            return any("64 x 64" in self.property_of(w, "_NET_WM_ICON") for w in own)

        wait_until(has_icon, 15, f"window of {instance} with the icon")

    def test_4_it_is_seen(self):
        time.sleep(2)  # for what is drawn after the first frame
        self.session.display.take().save(pathlib.Path(SCREENSHOT))

    def test_5_its_manual_is_there(self):
        for manual in MANUALS:
            path = f"/usr/share/man/man{manual[-1]}/{manual}.gz"
            text = subprocess.run(["zcat", path], capture_output=True, text=True, check=True).stdout
            self.assertIn(".SH NAME", text)

    def test_6_it_depends_on_the_plug_in_for_wayland(self):
        # Recommended packages may be missing, and then nothing would open in sessions without X.
        fields = self.session.output(["dpkg-query", "--show", "--showformat=${Depends}", "tidewell"])
        self.assertIn("qt6-wayland", re.split("[,| ]+", fields))

    def test_7_it_ends_when_asked(self):
        bus.call(self.session.environment, bus.TIDEWELL, "Quit")
        wait_until(lambda: not bus.owner(self.session.environment, bus.TIDEWELL[0]), 10, "end")


if __name__ == "__main__":
    SCREENSHOT = sys.argv.pop()
    unittest.main(verbosity=2)
