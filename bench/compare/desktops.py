"""The desktops that programs are at home in. A panel among them is under measurement itself."""

from types import SimpleNamespace

import apart
import sway
import waybar
import x11
import xfce


class _NoDisplay:
    def __init__(self, *_):
        pass

    def start(self):
        pass

    def close(self):
        pass


def _nothing(_config_home):
    pass


TERMINAL = SimpleNamespace(NAME="none", PROGRAMS=[], PANEL=None, configure=_nothing,
                           DISPLAY=SimpleNamespace(Display=_NoDisplay, SESSION_TYPE="tty"))
X = SimpleNamespace(NAME="openbox", PROGRAMS=[["openbox"]], PANEL=None, configure=_nothing,
                    DISPLAY=x11)
XFCE = xfce


class _Sway(sway.Display):
    WRAPPER = apart.AS_USER


WAYBAR = SimpleNamespace(**{**vars(waybar), "DISPLAY": SimpleNamespace(
    Display=_Sway, SESSION_TYPE=sway.SESSION_TYPE)})
