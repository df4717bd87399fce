#!/usr/bin/python3
"""Interfaces that come, go and change while eight megabits flow: no reading is ever too high."""

import signal
import time

from harness import case
from harness.world import EIGHT_MEGABITS

RATE = EIGHT_MEGABITS
CEILING = 1.02 * RATE
OUTAGE = 20 if case.LONG else 3


class SteadyDownload(case.ResidentTestCase):
    """Eight megabits flow towards the user from the start to the end of each test."""

    INTERVAL = 2.0 if case.LONG else 1.0

    def setUp(self):
        super().setUp()
        self.send("net", RATE, frame=1000)
        self.start()
        self.text_becomes("↓1.0M ↑0K")

    def assert_right_again(self):
        """Readings are right within two intervals, and stay so."""
        samples = self.watch.next_samples(4, 4 * self.INTERVAL + 5)
        for sample in samples[1:]:
            self.assertAlmostEqual(sample.download, RATE, delta=0.02 * RATE, msg=self.watch.samples)
        self.assert_never_too_high()

    def assert_never_too_high(self):
        for sample in self.watch.samples:
            self.assertLessEqual(sample.download, CEILING, self.watch.samples)
            self.assertLess(sample.upload, 20_000, self.watch.samples)
            self.assertGreaterEqual(sample.download, 0)
            self.assertGreaterEqual(sample.upload, 0)


class ChangingInterfaces(SteadyDownload):
    def test_deleted_and_recreated_at_once(self):
        self.world.do("recreate")
        self.assert_right_again()

    def test_deleted_and_recreated_later(self):
        self.world.do("recreate", 2.5)
        self.assert_right_again()

    def test_deleted_and_recreated_over_and_over(self):
        for _ in range(5):
            self.world.do("recreate", 0.1)
            time.sleep(0.3)
        self.assert_right_again()

    def test_switched_to_another_and_back(self):
        self.world.do("switch")
        self.assert_right_again()
        self.world.do("switch")
        self.assert_right_again()

    def test_switched_to_one_that_has_moved_much_more(self):
        # Its counters are much higher than those of the present interface.
        self.world.sender("user", 10_000_000, 3, frame=1500, host="192.168.2.1").wait()
        self.world.sender("net", 10_000_000, 3, frame=1500, host="192.168.2.2").wait()
        self.world.do("switch")
        self.assert_right_again()

    def test_routes_that_lead_the_internet_elsewhere_are_followed(self):
        # As tunnels do: the default route does not change.
        for half in ("0.0.0.0/1", "128.0.0.0/1"):
            self.world.run("user", "ip", "route", "add", half, "via", "192.168.2.1")
        for sample in self.watch.next_samples(3, 10)[1:]:
            self.assertLess(sample.download, 1000)
        for half in ("0.0.0.0/1", "128.0.0.0/1"):
            self.world.run("user", "ip", "route", "del", half)
        self.assert_right_again()

    def test_with_ipv6_alone(self):
        self.world.run("user", "ip", "route", "del", "default")
        self.assert_right_again()
        self.world.do("switch")
        self.world.run("user", "ip", "route", "del", "default")
        self.assert_right_again()

    def test_without_a_carrier_for_a_while(self):
        self.world.do("carrier", "off")
        time.sleep(OUTAGE)
        self.assertLess(self.watch.samples[-1].download, 1000)
        self.world.do("carrier", "on")
        self.assert_right_again()

    def test_without_a_route_for_a_while(self):
        self.world.do("route", "off")
        time.sleep(OUTAGE)
        self.world.do("route", "on")
        self.assert_right_again()

    def test_taken_down_for_a_while(self):
        self.world.run("user", "ip", "link", "set", "eth0", "down")
        time.sleep(OUTAGE)
        self.assertLess(self.watch.samples[-1].download, 1000)
        self.world.run("user", "ip", "link", "set", "eth0", "up")
        self.world.do("route", "on")
        self.assert_right_again()

    def test_with_the_resident_itself_halted_for_a_while(self):
        self.session.resident.send_signal(signal.SIGSTOP)
        time.sleep(OUTAGE)
        self.session.resident.send_signal(signal.SIGCONT)
        self.assert_right_again()


class OtherInterfaces(SteadyDownload):
    # While interfaces come and go, readers of counters wait in the kernel for some milliseconds.
    INTERVAL = 2.0

    def test_forty_come_and_go_and_change_nothing(self):
        for _ in range(2):
            for number in range(40):
                self.world.run("user", "ip", "link", "add", f"other{number}", "type", "bridge")
                self.world.run("user", "ip", "link", "set", f"other{number}", "up")
            for number in range(40):
                self.world.run("user", "ip", "link", "del", f"other{number}")
        self.assert_right_again()
        self.assert_ends_well()


if __name__ == "__main__":
    case.main()
