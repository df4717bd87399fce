"""Waybar: a bar at the top of sway, with its tray at the right end."""

import json
import os
import re
from pathlib import Path
from types import SimpleNamespace

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

_DOCUMENT = Path(__file__).resolve().parents[2] / "docs" / "bars.md"
_CONTROL = Path(os.path.abspath(os.environ.get("TIDEWELL", "build/dev/src/tidewell"))).parent / "tidewellctl"


def documented(language):
    """The first example in a language of the document on bars, with the path of the program that is tested."""
    text = re.search(rf"^```{language}\n(.*?)^```$", _DOCUMENT.read_text(), re.M | re.S)[1]
    return text.replace("tidewellctl", str(_CONTROL))


_STYLE = """
* { font-family: "DejaVu Sans"; font-size: 13px; border: none; border-radius: 0; min-height: 0; }
window#waybar { background: #24262b; color: #dddddd; }
#tray { padding: 0 8px; }
#workspaces button { padding: 0 8px; color: #dddddd; }
"""


def configure(config_home: Path):
    """Writes the bar's configuration."""
    _write(config_home, _CONFIGURATION, _STYLE)


def _configure_text(config_home: Path):
    module = json.loads("{" + documented("jsonc") + "}")
    _write(config_home, {**_CONFIGURATION, **module, "modules-left": list(module)}, _STYLE + documented("css"))


def _write(config_home, configuration, style):
    folder = config_home / "waybar"
    folder.mkdir()
    (folder / "config").write_text(json.dumps(configuration))
    (folder / "style.css").write_text(style)


# The text as a module of its own at the left end, as the documents have it.
TEXT = SimpleNamespace(__name__="waybarText", NAME=NAME, DISPLAY=DISPLAY, PROGRAMS=PROGRAMS, PANEL=PANEL, BAR=BAR,
                       BAR_HEIGHT=BAR_HEIGHT, configure=_configure_text)
