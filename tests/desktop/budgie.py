"""Budgie's desktop with its own layout: one bar at the bottom, with the tray before the bell and the clock."""

from pathlib import Path
from types import SimpleNamespace

import x11

PROGRAMS = ["budgie-wm", "budgie-daemon", "budgie-panel"]

# Where the bar's end begins, from the right: items, bell, sound, clock and session.
TRAY, REST = 280, 112
HEIGHT = 36

_SETTINGS = """
[org/gnome/desktop/background]
picture-options='none'
primary-color='#20303c'

[org/gnome/desktop/interface]
enable-animations=false
"""


def make(name):
    """The desktop whose session has this name."""
    return SimpleNamespace(__name__="budgie", NAME=name, DISPLAY=x11, PANEL=["budgie-panel"], BAR="bottom", SERVICE="org.budgie_desktop.Panel",
                           BAR_HEIGHT=HEIGHT, PROGRAMS=[["budgie-wm", "--x11"], ["budgie-daemon"]],
                           configure=_configure, arrive=x11.await_bar(HEIGHT))  # fmt: skip


def _configure(config_home: Path):
    x11.write_gtk_settings(config_home, _SETTINGS)
