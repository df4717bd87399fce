"""A private desktop on a machine without a display: display server, session bus, panel."""

import os
import shutil
import signal
import subprocess
import sys
import tempfile
from pathlib import Path

import bus
from children import Children, wait_until


class Session:
    """A `with` block with a private desktop, which `environment` selects.

    `desktop` is a module such as xfce, `variables` go into its environment. Nothing of the user's
    home or bus is touched, and everything is removed. The output of its programs is in the file `log`.
    """

    def __init__(self, desktop, screen="1280x720x24", **variables):
        self.desktop = desktop
        self.environment = {}
        self.display = None
        self._screen = screen
        self._variables = variables
        self._panel = None

    def __enter__(self):
        self.directory = Path(tempfile.mkdtemp(prefix="tidewell-desktop."))
        self.log = self.directory / "log"
        self._log_file = self.log.open("wb")
        self.children = Children(self._log_file).__enter__()
        try:
            self._start()
        except BaseException:
            print(self.log.read_text(errors="replace")[-2000:], file=sys.stderr)
            self.__exit__(None, None, None)
            raise
        return self

    def __exit__(self, *_):
        if self.display:
            self.display.close()
        self.children.__exit__()
        self._log_file.close()
        shutil.rmtree(self.directory, ignore_errors=True)

    def start(self, command, **options):
        """Starts a program of this desktop."""
        return self.children.start(command, self.environment, **options)

    def output(self, command):
        """What a program of this desktop prints, or None when it fails."""
        done = subprocess.run(command, env=self.environment, text=True, capture_output=True)
        return done.stdout if done.returncode == 0 else None

    def start_panel(self):
        """Starts the panel, and waits until it watches for items, or has the name SERVICE on the bus, and the
        desktop is ready."""
        self._panel = self.start(self.desktop.PANEL)
        wait_until(self._is_panel_there, 60, "watcher in the panel")
        if hasattr(self.desktop, "arrive"):
            self.desktop.arrive(self)

    def stop_panel(self):
        """Ends the panel, as a crash would."""
        self._panel.send_signal(signal.SIGKILL)
        self.children.end(self._panel)
        wait_until(lambda: not self._is_panel_there(), 10, "end of the watcher")

    def _is_panel_there(self):
        return bus.owner(self.environment, getattr(self.desktop, "SERVICE", bus.WATCHER[0]))

    def _start(self):
        self.environment = self._make_environment()
        self.desktop.configure(Path(self.environment["XDG_CONFIG_HOME"]))
        self.display = self.desktop.DISPLAY.Display(self, self._screen)
        self.display.start()
        self._start_buses()
        if hasattr(self.display, "start_compositor"):
            self.display.start_compositor()
        for command in self.desktop.PROGRAMS:
            self.start(command)
        if self.desktop.PANEL:
            self.start_panel()

    def _make_environment(self):
        def home(name):
            directory = self.directory / name
            directory.mkdir(mode=0o700)
            return str(directory)

        return {
            "PATH": os.environ.get("PATH", "/usr/bin:/bin"),
            "HOME": home("home"),
            "LANG": "C.UTF-8",
            "XDG_CONFIG_HOME": home("config"),
            "XDG_CACHE_HOME": home("cache"),
            "XDG_DATA_HOME": home("data"),
            "XDG_RUNTIME_DIR": home("run"),
            "XDG_CURRENT_DESKTOP": self.desktop.NAME,
            "XDG_SESSION_TYPE": self.desktop.DISPLAY.SESSION_TYPE,
            "DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.directory}/run/bus",
            # Some desktops need one, even an empty one.
            "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={self.directory}/run/systemBus",
            "NO_AT_BRIDGE": "1",
            "GIO_USE_VFS": "local",
            # So that no settings service has to be installed.
            "GSETTINGS_BACKEND": "keyfile",
            **self._variables,
        }

    def _start_buses(self):
        for bus_of in ("SYSTEM", "SESSION"):
            address = self.environment[f"DBUS_{bus_of}_BUS_ADDRESS"]
            self.start(["dbus-daemon", "--session", "--nofork", "--nopidfile",
                        f"--address={address}"])  # fmt: skip
        wait_until(lambda: bus.owner(self.environment, "org.freedesktop.DBus"), 10, "session bus")
