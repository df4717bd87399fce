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


def _without_menu(config_home):
    """Whether the panel has loaded its menu's pictures by then depends on the machine's mood."""
    xfce.configure(config_home)
    file = config_home / "xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml"
    menu = '<value type="int" value="1"/>\n        <value type="int" value="2"/>'
    text = file.read_text()
    assert menu in text
    file.write_text(text.replace(menu, '<value type="int" value="2"/>'))


XFCE = SimpleNamespace(**{**vars(xfce), "configure": _without_menu})


class _Sway(sway.Display):
    WRAPPER = apart.AS_USER


WAYBAR = SimpleNamespace(**{**vars(waybar), "DISPLAY": SimpleNamespace(
    Display=_Sway, SESSION_TYPE=sway.SESSION_TYPE)})
