"""Cinnamon's desktop: one bar at the bottom, with the items at its right end."""

from pathlib import Path
from types import SimpleNamespace

import x11

PROGRAMS = ["cinnamon", "csd-xsettings"]
HEIGHT = 40

_SETTINGS = """
[org/cinnamon]
enabled-applets=['panel1:left:0:menu@cinnamon.org', 'panel1:right:0:xapp-status@cinnamon.org']
startup-animation=false
desktop-effects=false

[org/cinnamon/desktop/background]
picture-options='none'
primary-color='#20303c'

[org/cinnamon/desktop/interface]
enable-animations=false
scaling-factor=uint32 {}
"""

# The desktop renders without a graphics card.
VARIABLES = {"LIBGL_ALWAYS_SOFTWARE": "1"}


def make(scale=1):
    """The desktop at this scale."""

    def configure(config_home: Path):
        x11.write_gtk_settings(config_home, _SETTINGS.format(scale))

    return SimpleNamespace(__name__=f"cinnamon{scale}", NAME="X-Cinnamon", DISPLAY=x11, BAR="bottom",
                           BAR_HEIGHT=HEIGHT * scale, PROGRAMS=[["csd-xsettings"]],
                           PANEL=["cinnamon", "--replace"], SERVICE="org.Cinnamon", configure=configure,
                           arrive=x11.await_bar(HEIGHT * scale))  # fmt: skip
