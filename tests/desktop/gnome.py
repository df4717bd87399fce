"""GNOME Shell: a bar at the top, with the AppIndicator extension's items at its right end."""

from pathlib import Path

import settings
import x11
from children import wait_until

NAME = "GNOME"
DISPLAY = x11
PROGRAMS = []
PANEL = ["gnome-shell", "--x11", "--sm-disable"]
BAR, BAR_HEIGHT = "top", 32

BACKGROUND = "#20303c"
EXTENSION = "ubuntu-appindicators@ubuntu.com"

_SETTINGS = f"""
[org/gnome/shell]
enabled-extensions=['{EXTENSION}']
disable-extension-version-validation=true
welcome-dialog-last-shown-version='1000'

[org/gnome/desktop/interface]
enable-animations=false

[org/gnome/desktop/notifications]
show-banners=false

[org/gnome/desktop/background]
picture-options='none'
primary-color='{BACKGROUND}'
color-shading-type='solid'
"""


def configure(config_home: Path):
    """Writes the shell's settings."""
    settings.write(config_home, _SETTINGS)


def arrive(session):
    """Leaves the overview, in which the shell starts."""
    background = tuple(bytes.fromhex(BACKGROUND[1:]))

    def is_left():
        if session.display.take().pixel(300, 300) == background:
            return True
        session.display.press_escape()
        return False

    wait_until(is_left, 20, "GNOME's desktop")
