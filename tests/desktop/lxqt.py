"""LXQt's panel: a bar at the bottom with the status notifier area at its right end."""

from functools import partial
from pathlib import Path
from types import SimpleNamespace

import x11

NAME = "LXQt"
DISPLAY = x11
PROGRAMS = [["openbox"]]
PANEL = ["lxqt-panel"]
BAR, BAR_HEIGHT = "bottom", 32
arrive = x11.await_bar(BAR_HEIGHT, BAR)

_CONFIGURATION = """
panels=panel1

[panel1]
plugins=mainmenu, spacer, statusnotifier
position={edge}
desktop=0
alignment=-1
width=100
width-percent=true
panelSize={height}
iconSize=22
lineCount=1
animation-duration=0
background-color=#31363b
opacity=100

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


def configure(config_home: Path, edge=BAR):
    """Writes the panel's configuration."""
    folder = config_home / "lxqt"
    folder.mkdir()
    (folder / "panel.conf").write_text(_CONFIGURATION.format(edge=edge.title(), height=BAR_HEIGHT))


TOP = SimpleNamespace(__name__="lxqt-top", NAME=NAME, DISPLAY=DISPLAY, PROGRAMS=PROGRAMS, PANEL=PANEL, BAR="top",
                      BAR_HEIGHT=BAR_HEIGHT, configure=partial(configure, edge="top"), arrive=x11.await_bar(BAR_HEIGHT, "top"))
