#!/usr/bin/python3
"""Steady traffic, held against the interface's own counters."""

import time

from harness import case
from harness.truth import Accuracy, CounterLog

MEGABIT = 125_000  # bytes


class SteadyTraffic(case.ResidentTestCase):
    def check_accuracy(self, interval, seconds, where, direction):
        self.session.prefer(refreshInterval=interval)
        sender = self.world.sender(where, 8 * MEGABIT)
        log = CounterLog(self.world)
        self.start()
        self.watch.next_samples(1, 3 * interval + 5, after=time.time())
        self.watch.next_samples(round(seconds / interval), seconds + 10, after=time.time())
        time.sleep(0.05)
        samples = list(self.watch.samples)
        log.stop()
        sender.stop()
        accuracy = Accuracy(samples, log, direction)
        print(f"\n  {direction}, every {interval} s: {accuracy}")
        self.assertLessEqual(abs(accuracy.mean_error), 0.02)
        self.assertLessEqual(accuracy.worst, 0.1)
        # Else the comparison would prove nothing.
        self.assertLess(sorted(accuracy.doubts)[len(accuracy.doubts) // 2], 0.1)

    def test_download_is_exact_in_the_mean_and_in_every_reading(self):
        self.check_accuracy(2.0, 60 if case.LONG else 16, "net", "download")

    def test_upload_is_exact_in_the_mean_and_in_every_reading(self):
        self.check_accuracy(2.0, 60 if case.LONG else 12, "user", "upload")


if __name__ == "__main__":
    case.main()
