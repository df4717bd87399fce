#!/usr/bin/python3
"""Steady traffic, compared with the interface's own counters."""

import os
import time

from harness import case
from harness.truth import Accuracy, CounterLog

MEGABIT = 125_000  # bytes
DOUBT = 0.1  # percent of the rate that the truth may be uncertain by, in the median


class SteadyTraffic(case.ResidentTestCase):
    def measure(self, interval, seconds, where, direction, meanwhile=lambda: time.sleep(0.1)):
        """Measures eight megabits for a while, up to three times until the truth is known well enough."""
        self.session.prefer(refreshInterval=interval)
        self.send(where, 8 * MEGABIT, frame=250)
        self.start()
        self.take_precedence()
        for _ in range(3):
            log = CounterLog(self.world)
            first = len(self.watch.samples)
            end = time.time() + interval + seconds
            while time.time() < end:
                meanwhile()
            self.watch.next_samples(1, interval + 5)
            time.sleep(0.05)
            log.stop()
            # The log may have begun after the first of these samples.
            samples = self.watch.samples[first + 1:]
            self.assertGreaterEqual(len(samples), seconds / interval)
            self.accuracy = Accuracy(samples, log, direction)
            print(f"\n  {direction}, every {interval} s: {self.accuracy}")
            if self.accuracy.doubt < DOUBT:
                break

    def take_precedence(self):
        """Lets no other program delay the resident between a reading and its time of day."""
        try:
            os.sched_setscheduler(self.session.resident.pid,
                                  os.SCHED_FIFO | os.SCHED_RESET_ON_FORK, os.sched_param(5))
        except PermissionError:
            pass

    def assert_exact(self):
        # Otherwise the comparison would prove nothing.
        self.assertLess(self.accuracy.doubt, DOUBT)
        self.assertLessEqual(abs(self.accuracy.mean_error), 0.02)
        self.assertLessEqual(self.accuracy.worst, 0.1)

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
