"""labwc without a screen: a stacking compositor of the wlroots family, with a bar of another desktop."""

from types import SimpleNamespace

import lxqt
import sway
import waybar

PROGRAMS = ["labwc", "grim", "wl-paste", "wlrctl"]
SESSION_TYPE = "wayland"
SCREENS = sway.SCREENS

_NAME = "labwc:wlroots"


class Display(sway.Display):
    SOCKET = "wayland-0"

    def command(self, _count):
        return ["labwc"]

    def windows(self):
        """Title, identity and whether there is an icon, of each window. The identity names the icon."""
        listed = (self._session.output(["wlrctl", "toplevel", "list"]) or "").splitlines()
        return [(title, identity, sway.has_icon(identity))
                for identity, title in (line.split(": ", 1) for line in listed)]  # fmt: skip


def make(bar):
    """This compositor with the bar of that desktop."""
    return SimpleNamespace(__name__=f"labwc-{bar.__name__}", NAME=_NAME, DISPLAY=_THIS, PROGRAMS=[],
                           PANEL=bar.PANEL, BAR=bar.BAR, BAR_HEIGHT=bar.BAR_HEIGHT,
                           configure=bar.configure)  # fmt: skip


_THIS = SimpleNamespace(Display=Display, SESSION_TYPE=SESSION_TYPE)

WAYBAR, LXQT = make(waybar), make(lxqt)
