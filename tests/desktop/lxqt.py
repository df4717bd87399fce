"""LXQt's panel: a bar at the bottom with the status notifier area at its right end."""

from pathlib import Path

import x11

NAME = "LXQt"
DISPLAY = x11
PROGRAMS = [["openbox"]]
PANEL = ["lxqt-panel"]
BAR, BAR_HEIGHT = "bottom", 32

_CONFIGURATION = f"""
panels=panel1

[panel1]
plugins=mainmenu, spacer, statusnotifier
position=Bottom
desktop=0
alignment=-1
width=100
width-percent=true
panelSize={BAR_HEIGHT}
iconSize=22
lineCount=1
animation-duration=0

[mainmenu]
type=mainmenu

[spacer]
type=spacer
expandable=true
size=8

[statusnotifier]
type=statusnotifier
alignment=Right
"""


def configure(config_home: Path):
    """Writes the panel's configuration."""
    folder = config_home / "lxqt"
    folder.mkdir()
    (folder / "panel.conf").write_text(_CONFIGURATION)
