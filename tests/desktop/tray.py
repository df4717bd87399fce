"""A bar at the top with an old-style tray, which embeds windows and does not support items."""

from types import SimpleNamespace

import x11

NAME = "openbox"
DISPLAY = x11
PROGRAMS = [["openbox"], ["tint2"]]
PANEL = None

_CONFIGURATION = """
panel_items = FS
panel_position = top center horizontal
panel_size = 100% 32
panel_background_id = 1
systray_padding = 4 2 4
systray_icon_size = 24
rounded = 0
border_width = 0
background_color = #303438 100
"""


# A window manager alone: no panel, no tray.
BARE = SimpleNamespace(__name__="bare", NAME=NAME, DISPLAY=x11, PROGRAMS=[["openbox"]], PANEL=None,
                       configure=lambda _config_home: None)


def configure(config_home):
    """Writes the bar's configuration."""
    (config_home / "tint2").mkdir()
    (config_home / "tint2/tint2rc").write_text(_CONFIGURATION)
