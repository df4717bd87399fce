"""Troubles of months within seconds. A resident survives each of them."""

import os
import random
import signal
import time

import apart
import bus
from children import wait_until
from windowCase import DETAIL, OPENING, SETTINGS

# Weeks of samples in the time of a test. The window does not offer this interval.
FAST = {"refreshInterval": 0.05, "trackPerProcess": True}
WINDOWS = "tidewell-windows"
BROKEN_FILES = [b"", b"\xff\xfe\x00", b"refreshInterval = ", b"[tables]\n" * 1000,
                b"refreshInterval = -1\n", b'refreshInterval = "often"\n', b"\x00" * 100_000]


class Troubles:
    """Causes them in an order given by `seed`, and counts them in `made`."""

    def __init__(self, case, seed):
        self._case = case
        self._dice = random.Random(seed)
        self.made = {}

    def make(self):
        names = [name for name in dir(type(self)) if name.startswith("trouble_")]
        name = self._dice.choice(names)
        getattr(self, name)()
        name = name.removeprefix("trouble_")
        self.made[name] = self.made.get(name, 0) + 1

    def end(self):
        """Restores the network and the preferences, and closes all windows."""
        apart.do("carrier", "on")
        self._case.prefer(**FAST)
        for window in (DETAIL, SETTINGS):
            self._close(window)
        self._case.display.press("Escape")

    def trouble_panel(self):
        self._call("OpenPanel")
        time.sleep(0.5)
        self._case.display.press("Escape")

    def trouble_window(self):
        window = self._dice.choice([DETAIL, SETTINGS])
        self._call(OPENING[window])
        time.sleep(0.5)
        if self._dice.random() < 0.7:
            self._close(window)

    def trouble_windowsKilled(self):
        self._kill(WINDOWS, signal.SIGKILL)

    def trouble_toolKilled(self):
        for name in ("ping", "nettop", "publicAddress"):
            self._kill(name, signal.SIGKILL)

    def trouble_toolStopped(self):
        self._kill("ping", signal.SIGSTOP)
        self._kill("nettop", signal.SIGSTOP)

    def trouble_linkLost(self):
        apart.do("carrier", "off")
        time.sleep(self._dice.choice([0.05, 0.3, 1.5]))
        apart.do("carrier", "on")

    def trouble_linkFlaps(self):
        for _ in range(10):
            apart.do("carrier", "off")
            apart.do("carrier", "on")

    def trouble_preferencesChanged(self):
        choices = {name: self._dice.random() < 0.5 for name in
                   ("trackPerProcess", "showNotifications", "showUploadInMenubar", "launchAtLogin")}
        self._case.prefer(**{**FAST, **choices}, slowSpeedThreshold=self._dice.choice([-1, 0, 1e300]),
                          monitorInterface=self._dice.choice(["all", "eth0", "none", "x" * 1000]))

    def trouble_preferencesBroken(self):
        self._case.preferences.write_bytes(self._dice.choice(BROKEN_FILES))
        time.sleep(0.3)
        self._case.prefer(**FAST)

    def trouble_preferencesGone(self):
        self._case.preferences.unlink(missing_ok=True)
        time.sleep(0.3)
        self._case.prefer(**FAST)

    def trouble_barRestarts(self):
        self._case.session.stop_panel()
        self._case.session.start_panel()

    def trouble_noticesRestart(self):
        self._case.restart_notices()

    def trouble_speedTest(self):
        self._call("RunSpeedTest")

    def trouble_secondStart(self):
        second = self._case.session.start(self._case.command())
        wait_until(lambda: second.poll() is not None, 10, "end of a second start")
        self._case.assertEqual(second.returncode, 0)
        self._case.display.press("Escape")

    def trouble_oddCalls(self):
        for member in ("OpenPanel", "Nonsense"):
            bus.call(self._case.session.environment, bus.TIDEWELL, member, "string:" + "x" * 5000)

    def _call(self, member):
        bus.call(self._case.session.environment, bus.TIDEWELL, member)

    def _close(self, title):
        window = self._case.screen.titled(title)
        if window:
            self._case.session.output(["xdotool", "windowactivate", "--sync", window.number,
                                       "key", "alt+F4"])

    def _kill(self, name, number):
        for pid in self._case.session.children.named(name):
            try:
                os.kill(pid, number)
            except ProcessLookupError:
                pass
