#!/usr/bin/python3
"""Steady traffic, compared with the interface's own counters."""

import time

from harness import case
from harness.truth import Accuracy, CounterLog

MEGABIT = 125_000  # bytes


class SteadyTraffic(case.ResidentTestCase):
    def measure(self, interval, seconds, where, direction, meanwhile=lambda: time.sleep(0.1)):
        """Measures eight megabits for a while."""
        self.session.prefer(refreshInterval=interval)
        sender = self.world.sender(where, 8 * MEGABIT, frame=250)
        log = CounterLog(self.world)
        self.start()
        end = time.time() + interval + seconds
        while time.time() < end:
            meanwhile()
        self.watch.next_samples(1, interval + 5)
        time.sleep(0.05)
        samples = list(self.watch.samples)
        log.stop()
        sender.stop()
        self.assertGreaterEqual(len(samples), seconds / interval)
        self.accuracy = Accuracy(samples, log, direction)
        print(f"\n  {direction}, every {interval} s: {self.accuracy}")

    def assert_exact(self):
        self.assertLessEqual(abs(self.accuracy.mean_error), 0.02)
        self.assertLessEqual(self.accuracy.worst, 0.1)
        # Otherwise the comparison would prove nothing.
        doubts = self.accuracy.doubts
        self.assertLess(sorted(doubts)[len(doubts) // 2], 0.1)

    def test_download_is_exact_in_the_mean_and_in_every_reading(self):
        self.measure(2.0, 60 if case.LONG else 14, "net", "download")
        self.assert_exact()

    def test_upload_is_exact_in_the_mean_and_in_every_reading(self):
        self.measure(2.0, 60 if case.LONG else 10, "user", "upload")
        self.assert_exact()

    def test_interfaces_that_come_and_go_in_a_neighbouring_container_change_nothing(self):
        # Meanwhile requests about links wait in the kernel for tens of milliseconds.
        def churn():
            self.world.run("router", "sh", "-c", "ip link add other type bridge;"
                           "ip link set other up; ip link del other")

        self.measure(1.0, 20 if case.LONG else 8, "net", "download", churn)
        self.assert_exact()


if __name__ == "__main__":
    case.main()
