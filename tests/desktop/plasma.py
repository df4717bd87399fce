"""KDE Plasma's shell with one bar, which holds the system tray. Versions 5.27 and 6."""

import shutil
from types import SimpleNamespace

import bus
import kwin
import x11
from children import wait_until

NAME = "KDE"
BAR_HEIGHT = 44

# Numbers as in the shell's scripting interface.
_SHELL = ("org.kde.plasmashell", "/PlasmaShell", "org.kde.PlasmaShell")

VERSION = "6" if shutil.which("kded6") else "5"

# Of the desktop. Version 5 often paints none, also after its own restart.
_COLOUR = "32,48,60" if VERSION == "6" else "0,0,0"

# Variables of the session. Plasma renders without a graphics card.
_VARIABLES = {
    "KDE_FULL_SESSION": "true",
    "KDE_SESSION_VERSION": VERSION,
    "QT_QUICK_BACKEND": "software",
    "LIBGL_ALWAYS_SOFTWARE": "1",
}

# Replaces the shell's own layout, once it is there.
_LAYOUT = """
if (panels().length === 0) throw "not yet";
panels().forEach(panel => panel.remove());
desktops().forEach(desktop => {{
  desktop.wallpaperPlugin = "org.kde.color";
  desktop.currentConfigGroup = ["Wallpaper", "org.kde.color", "General"];
  desktop.writeConfig("Color", "{colour}");
}});
const bar = new Panel;
bar.location = "{edge}";
bar.height = {height};
// Version 5 cannot set it.
if (bar.screen !== {screen}) bar.screen = {screen};
bar.hiding = "{hiding}";
bar.floating = {floating};
const tray = "org.kde.plasma.systemtray", spacer = "org.kde.plasma.panelspacer";
const order = {first} ? [tray, spacer] : [spacer, tray];
const added = order.map(name => bar.addWidget(name));
const items = desktopById(added[order.indexOf(tray)].readConfig("SystrayContainmentId"));
if (items) {{
  items.currentConfigGroup = ["General"];
  items.writeConfig("extraItems", "");
  items.writeConfig("knownItems", "");
}}
print("done");
"""


def make(display, edge="bottom", screen=0, hiding="none", floating=False, scale=1.0, first=False):
    """A desktop with one bar at this edge of that screen, and the items at its end, or at its beginning. The
    scale is that of all screens."""
    layout = _LAYOUT.format(colour=_COLOUR, edge=edge, height=BAR_HEIGHT, screen=screen, hiding=hiding,
                            floating=str(floating).lower(), first=str(first).lower())

    def arrive(session):
        wait_until(lambda: bus.owner(session.environment, _SHELL[0]), 60, "Plasma's shell")
        wait_until(lambda: "done" in (bus.call(session.environment, _SHELL, "evaluateScript",
                                               "string:" + layout) or ""), 60, "layout")  # fmt: skip

    return SimpleNamespace(__name__="plasma", NAME=NAME, DISPLAY=display, BAR=edge,
                           BAR_HEIGHT=BAR_HEIGHT * scale, PROGRAMS=_PROGRAMS[display], PANEL=["plasmashell"], SERVICE=_SHELL[0],
                           configure=_configure, arrive=arrive,
                           VARIABLES={**_VARIABLES, "KWIN_COMPOSE": _COMPOSITING[display]})


# By KWin's renderer in memory, which it has under Wayland only.
_COMPOSITING = {kwin: "Q", x11: "N"}

_PROGRAMS = {
    kwin: [["kded" + VERSION]],
    x11: [["kwin_x11"], ["kded" + VERSION]],
}


def _configure(config_home):
    (config_home / "kdeglobals").write_text("[KDE]\nAnimationDurationFactor=0\n")
    (config_home / "kwinrc").write_text("[Compositing]\nLatencyPolicy=ExtremelyLow\n")
