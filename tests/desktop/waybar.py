"""Waybar: a bar at the top of sway, with its tray at the right end."""

import json
from pathlib import Path

import sway

NAME = "sway"
DISPLAY = sway
PROGRAMS = []
PANEL = ["waybar"]
BAR, BAR_HEIGHT = "top", 30

_CONFIGURATION = {
    "layer": "top",
    "position": BAR,
    "height": BAR_HEIGHT,
    "modules-left": ["sway/workspaces"],
    "modules-right": ["tray"],
    "tray": {"icon-size": 22, "spacing": 8},
}

_STYLE = """
* { font-family: "DejaVu Sans"; font-size: 13px; border: none; border-radius: 0; min-height: 0; }
window#waybar { background: #24262b; color: #dddddd; }
#tray { padding: 0 8px; }
#workspaces button { padding: 0 8px; color: #dddddd; }
"""


def configure(config_home: Path):
    """Writes the bar's configuration."""
    folder = config_home / "waybar"
    folder.mkdir()
    (folder / "config").write_text(json.dumps(_CONFIGURATION))
    (folder / "style.css").write_text(_STYLE)
