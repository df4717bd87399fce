#!/usr/bin/python3
"""The text and the status while the machine is offline, and the way there and back."""

import time

from harness import case
from harness.world import EIGHT_MEGABITS

RATE = EIGHT_MEGABITS


class NoConnection(case.ResidentTestCase):
    def test_without_a_route_at_the_start_the_first_one_is_found(self):
        self.world.do("route", "off")
        self.start()
        self.text_becomes("↓-- ↑--")
        self.watch.until(lambda: self.watch.values.get("Status") == "down", 5, "status down")
        self.send("net", RATE, frame=1000)
        time.sleep(1.5)
        self.world.do("route", "on")
        self.text_becomes("↓1.0M ↑0K")
        self.watch.until(lambda: self.watch.values.get("Status") == "excellent", 5, "excellent")
        for sample in self.watch.samples:
            self.assertLessEqual(sample.download, 1.02 * RATE, self.watch.samples)

    def test_is_shown_when_the_carrier_or_the_route_goes_and_comes(self):
        self.start()
        self.text_becomes("↓0K ↑0K")
        for verb in ("carrier", "route"):
            self.world.do(verb, "off")
            self.text_becomes("↓-- ↑--", timeout=2)
            self.world.do(verb, "on")
            self.text_becomes("↓0K ↑0K", timeout=2)


if __name__ == "__main__":
    case.main()
