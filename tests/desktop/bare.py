"""A window manager alone: no panel, no tray."""

import x11

NAME = "openbox"
DISPLAY = x11
PROGRAMS = [["openbox"]]
PANEL = None


def configure(_config_home):
    """It needs nothing."""
