"""MATE's panel: a bar at the top with the notification area at its right end."""

from pathlib import Path

import x11

NAME = "MATE"
DISPLAY = x11
PROGRAMS = [["openbox"]]
PANEL = ["mate-panel"]
BAR, BAR_HEIGHT = "top", 28
arrive = x11.await_bar(BAR_HEIGHT, BAR)

_SETTINGS = f"""
[org/mate/panel/general]
toplevel-id-list=['top']
object-id-list=['menu-bar', 'notification-area']
enable-animations=false

[org/mate/panel/toplevels/top]
expand=true
orientation='top'
size={BAR_HEIGHT}
enable-animations=false

[org/mate/panel/objects/menu-bar]
object-type='menu-bar'
toplevel-id='top'
position=0
locked=true

[org/mate/panel/objects/notification-area]
object-type='applet'
applet-iid='NotificationAreaAppletFactory::NotificationArea'
toplevel-id='top'
position=10
relative-to-edge='end'
locked=true
"""


def configure(config_home: Path):
    """Writes the panel's configuration."""
    x11.write_gtk_settings(config_home, _SETTINGS)
