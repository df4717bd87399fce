"""GNOME Shell: a bar at the top, with the AppIndicator extension's items at its right end."""

import re
import shutil
import subprocess
from pathlib import Path

import bus
import x11
from children import wait_until
from desktopCase import PROGRAM

NAME = "GNOME"
DISPLAY = x11
PROGRAMS = []
PANEL = ["gnome-shell", "--x11", "--sm-disable"]
BAR, BAR_HEIGHT = "top", 32

BACKGROUND = "#20303c"
EXTENSION = "ubuntu-appindicators@ubuntu.com"
OUR_EXTENSION = "tidewell@halden.com"
_PREFIX = Path(PROGRAM).parent.parent

_SHELL = ("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell")

_SETTINGS = """
[org/gnome/shell]
enabled-extensions=[{enabled}]
disable-extension-version-validation=true
welcome-dialog-last-shown-version='1000'

[org/gnome/desktop/interface]
enable-animations=false

[org/gnome/mutter]
experimental-features=['scale-monitor-framebuffer']

[org/gnome/desktop/notifications]
show-banners=false

[org/gnome/desktop/background]
picture-options='none'
primary-color='{background}'
color-shading-type='solid'
"""


def settings(enabled):
    """The shell's settings; `enabled` is a list of extensions, quoted and with commas."""
    return _SETTINGS.format(enabled=enabled, background=BACKGROUND)


def version():
    """The shell's major version."""
    printed = subprocess.run(["gnome-shell", "--version"], text=True, capture_output=True, check=True).stdout
    return int(re.search(r"\d+", printed)[0])


def configure(config_home: Path):
    """Writes the shell's settings."""
    x11.write_gtk_settings(config_home, settings(f"'{EXTENSION}'"))


def install_our_extension(config_home):
    """Puts our extension where the shell looks for a user's."""
    installed = _PREFIX / "share/gnome-shell/extensions" / OUR_EXTENSION
    built = _PREFIX / "faces/gnome" / ("modules" if version() >= 45 else "imports")
    shutil.copytree(installed if installed.exists() else built,
                    config_home.parent / "data/gnome-shell/extensions" / OUR_EXTENSION)  # fmt: skip


def is_in_overview(session):
    """Whether the shell runs and shows its overview."""
    return bus.get(session.environment, _SHELL, "OverviewActive") == "boolean true"


def arrive(session):
    """Leaves the overview, which the shell opens at the end of its start."""
    background = tuple(bytes.fromhex(BACKGROUND[1:]))

    def is_left():
        if not is_in_overview(session):
            return session.display.take().pixel(300, 300) == background
        session.display.press_escape()
        return False

    wait_until(lambda: is_in_overview(session), 20, "GNOME's overview")
    wait_until(is_left, 20, "GNOME's desktop")


class WithOurExtension:
    """The same shell with our extension alone, used as a desktop's module."""

    __name__ = "gnomeExtension"
    NAME, DISPLAY, PROGRAMS, PANEL, BAR, BAR_HEIGHT = NAME, DISPLAY, PROGRAMS, PANEL, BAR, BAR_HEIGHT
    # What shows that the shell is ready.
    SERVICE = "org.gnome.Shell"

    @staticmethod
    def configure(config_home):
        x11.write_gtk_settings(config_home, settings(f"'{OUR_EXTENSION}'"))
        install_our_extension(config_home)

    arrive = staticmethod(arrive)
