#!/usr/bin/python3
"""Steady traffic, held against the interface's own counters."""

import time

from harness import case
from harness.truth import Accuracy, CounterLog

MEGABIT = 125_000  # bytes


class SteadyTraffic(case.ResidentTestCase):
    def measure(self, interval, seconds, where, direction):
        """Eight megabits for a while, read and written down."""
        self.session.prefer(refreshInterval=interval)
        sender = self.world.sender(where, 8 * MEGABIT, frame=250)
        log = CounterLog(self.world)
        self.start()
        time.sleep(interval + seconds)
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
        # Else the comparison would prove nothing.
        doubts = self.accuracy.doubts
        self.assertLess(sorted(doubts)[len(doubts) // 2], 0.1)

    def test_download_is_exact_in_the_mean_and_in_every_reading(self):
        self.measure(2.0, 60 if case.LONG else 14, "net", "download")
        self.assert_exact()

    def test_upload_is_exact_in_the_mean_and_in_every_reading(self):
        self.measure(2.0, 60 if case.LONG else 10, "user", "upload")
        self.assert_exact()


if __name__ == "__main__":
    case.main()
