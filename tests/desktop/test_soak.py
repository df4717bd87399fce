#!/usr/bin/python3
"""Months in minutes: many samples, constant trouble, and nothing may grow.

TIDEWELL_SOAK_SECONDS is the duration, TIDEWELL_SOAK_SEED selects the order of the troubles.
"""

import os
import time

import apart
import xfce
from children import wait_until
from troubles import FAST, WINDOWS, Troubles
from vitals import least, vitals
from windowCase import WindowCase

SECONDS = float(os.environ.get("TIDEWELL_SOAK_SECONDS", 45))
SEED = os.environ.get("TIDEWELL_SOAK_SEED", "1")
STRETCH = 12  # seconds of trouble before each rest
REST = 5
# What may be more after all of it than after the first stretch. Of kilobytes, some pages are the
# allocator's.
MOST_MORE = {"descriptors": 0, "timers": 0, "threads": 0, "children": 0, "private": 300}
# After half of a long run every trouble has happened often. A leak keeps growing, everything else has
# levelled off. Before that, a rare trouble may touch pages for the first time.
LONG = 10  # rests
MOST_MORE_IN_LONG = {**MOST_MORE, "private": 400}
MOST_MORE_SINCE_HALF = {"threads": 0, "private": 64}


class Soak(WindowCase):
    PREFERENCES = FAST

    def start(self):
        self._notices = None
        self.restart_notices()
        super().start()

    def restart_notices(self):
        if self._notices:
            self.session.children.end(self._notices)
        self._notices = self.session.start(["dunst"])

    def rest(self):
        """What the resident holds after everything has ended."""
        self.troubles.end()
        for pid in self.session.children.named(WINDOWS):
            os.kill(pid, 15)
        wait_until(lambda: not self.session.children.named(WINDOWS), 5, "end of the windows")
        time.sleep(REST)  # a stopped tool is killed after four seconds
        readings = []
        for _ in range(20):
            self.assertIsNone(self.resident.poll(), "the resident has ended")
            readings.append(vitals(self.resident.pid))
            self.assertEqual(readings[-1].threads, 1)
            time.sleep(0.1)
        return least(readings)

    def test_nothing_grows_whatever_happens(self):
        self.troubles = Troubles(self, SEED)
        apart.send(self.session.children, apart.TRAFFIC)
        began = time.monotonic()
        rests = []
        while time.monotonic() - began < SECONDS or len(rests) < 2:
            until = time.monotonic() + STRETCH
            while time.monotonic() < until:
                self.troubles.make()
                self.assertIsNone(self.resident.poll(), self.troubles.made)
            rests.append(self.rest())
            print(f"{time.monotonic() - began:6.0f} s  {rests[-1]}", flush=True)
        print(self.troubles.made, flush=True)
        is_long = len(rests) >= LONG
        self.assert_level(rests[0], rests[-1], MOST_MORE_IN_LONG if is_long else MOST_MORE)
        if is_long:
            self.assert_level(rests[len(rests) // 2], rests[-1], MOST_MORE_SINCE_HALF)

    def assert_level(self, before, after, most_more):
        for name, more in most_more.items():
            self.assertLessEqual(getattr(after, name), getattr(before, name) + more, name)


if __name__ == "__main__":
    apart.main([*xfce.DISPLAY.PROGRAMS, "xfwm4", "xfce4-panel", "xprop", "dunst"], traffic=False)
