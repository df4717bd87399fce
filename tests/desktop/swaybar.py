"""swaybar: sway's own bar, which speaks i3bar's protocol, at the top and without a tray."""

from types import SimpleNamespace

import sway
import waybar

NAME = "sway"
PANEL = None
# Sway would start it before the session has a bus.
PROGRAMS = [["sh", "-c", 'SWAYSOCK=$(echo "$XDG_RUNTIME_DIR"/sway-ipc.*.sock) exec swaybar -b bar-0']]

_BAR = "bar {{\n position top\n tray_output none\n swaybar_command true\n {}\n}}\n"


class Display(sway.Display):
    def command(self, count):
        command = super().command(count)
        with (self._session.directory / "sway").open("a") as configuration:
            configuration.write(_BAR.format(waybar.documented("sh")))
        return command


DISPLAY = SimpleNamespace(Display=Display, SESSION_TYPE=sway.SESSION_TYPE)


def configure(_config_home):
    """The bar's configuration is part of the compositor's."""
