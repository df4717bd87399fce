"""GNOME Shell as a Wayland compositor of its own, with and without X clients, with and without our extension."""

import bus
import gnome
import mutter
import x11
from children import wait_until

EXTENSION = gnome.OUR_EXTENSION


class Shell:
    """One combination, used as a desktop's module. `extensions` are enabled."""

    NAME = "GNOME"
    DISPLAY = mutter
    PROGRAMS = []
    BAR = "top"

    def __init__(self, name, extensions, has_x=False, screens=1, scale=1):
        self.__name__ = name
        self._extensions = extensions
        self._screens = screens
        self.scale = scale
        self.BAR_HEIGHT = int(32 * scale)
        self.VARIABLES = {mutter.SCREENS: str(screens), mutter.SCALE: str(scale)}
        self._displays = [] if has_x else ["--no-x11"]

    @property
    def PANEL(self):
        """Virtual monitors are given as arguments."""
        monitors = " ".join(["--virtual-monitor $TIDEWELL_TEST_MONITOR"] * self._screens)
        options = " ".join(["--headless --wayland --unsafe-mode", *self._displays])
        return ["sh", "-c", f"exec gnome-shell {options} {monitors}"]

    @property
    def SERVICE(self):
        """What shows that the shell is ready: the watcher of the extension for items, or the shell itself."""
        return bus.WATCHER[0] if gnome.EXTENSION in self._extensions else "org.gnome.Shell"

    def configure(self, config_home):
        """Writes the shell's settings, and puts our extension where the shell looks for a user's."""
        enabled = ", ".join(f"'{name}'" for name in self._extensions)
        x11.write_gtk_settings(config_home, gnome.settings(enabled))
        if EXTENSION in self._extensions:
            gnome.install_our_extension(config_home)

    def arrive(self, session):
        wait_until(lambda: gnome.is_in_overview(session), 20, "GNOME's overview")
        session.display.arrive()
        gnome.arrive(session)
        # A change of the screens leaves the overview, so this comes last.
        if self.scale != 1:
            session.display.set_scale()
