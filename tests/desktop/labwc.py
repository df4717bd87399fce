"""labwc without a screen: a stacking compositor of the wlroots family, with a bar of another desktop."""

from pathlib import Path
from types import SimpleNamespace

import lxqt
import pixbuf
import sway
import waybar

PROGRAMS = ["labwc", "grim", "wl-paste", "wlrctl"]
SESSION_TYPE = "wayland"
SCREENS = sway.SCREENS

_NAME = "labwc:wlroots"

# The pictures of programs, in the size that title bars show.
_ICONS = Path("/usr/share/icons/hicolor/22x22/apps")


class Display(sway.Display):
    SOCKET = "wayland-0"

    def command(self, _count):
        return ["labwc"]

    def windows(self):
        """Title, identity and whether the screen shows its icon, of each window. The identity names the icon."""
        listed = (self._session.output(["wlrctl", "toplevel", "list"]) or "").splitlines()
        return [(title, identity, self._shows_icon(identity))
                for identity, title in (line.split(": ", 1) for line in listed)]  # fmt: skip

    def _shows_icon(self, identity):
        file = _ICONS / f"{identity}.png"
        if not file.exists():
            return False
        icon = pixbuf.load(file)
        # Without the corners, which are transparent.
        return icon.row(icon.height // 2, icon.width // 4, icon.width * 3 // 4) in self.take().pixels


def make(bar):
    """This compositor with the bar of that desktop."""
    return SimpleNamespace(__name__=f"labwc-{bar.__name__}", NAME=_NAME, DISPLAY=_THIS, PROGRAMS=[],
                           PANEL=bar.PANEL, BAR=bar.BAR, BAR_HEIGHT=bar.BAR_HEIGHT,
                           configure=bar.configure)  # fmt: skip


_THIS = SimpleNamespace(Display=Display, SESSION_TYPE=SESSION_TYPE)

WAYBAR, LXQT, LXQT_TOP = make(waybar), make(lxqt), make(lxqt.TOP)
