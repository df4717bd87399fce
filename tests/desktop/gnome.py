"""GNOME Shell: a bar at the top, with the AppIndicator extension's items at its right end."""

from pathlib import Path

import settings
import x11

NAME = "GNOME"
DISPLAY = x11
PROGRAMS = []
PANEL = ["gnome-shell", "--x11", "--sm-disable"]
BAR, BAR_HEIGHT = "top", 27

EXTENSION = "ubuntu-appindicators@ubuntu.com"

_SETTINGS = f"""
[org/gnome/shell]
enabled-extensions=['{EXTENSION}']
disable-extension-version-validation=true
welcome-dialog-last-shown-version='1000'

[org/gnome/desktop/interface]
enable-animations=false

[org/gnome/desktop/background]
picture-options='none'
primary-color='#20303c'
color-shading-type='solid'
"""


def configure(config_home: Path):
    """Writes the shell's settings."""
    settings.write(config_home, _SETTINGS)
