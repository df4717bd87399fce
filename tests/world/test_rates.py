#!/usr/bin/python3
"""What the resident reads of steady traffic, of none, and how often."""

import statistics
import unittest

from harness import case
from harness.world import EIGHT_MEGABITS


class SteadyTraffic(case.ResidentTestCase):
    def test_eight_megabits_read_as_one_megabyte(self):
        self.send("net", EIGHT_MEGABITS, frame=1000)
        self.start()
        self.text_becomes("↓1.0M ↑0K")
        for sample in self.watch.next_samples(30 if case.LONG else 4, 60):
            self.assertAlmostEqual(sample.download, EIGHT_MEGABITS, delta=10_000)
            self.assertEqual(self.watch.values["MenubarText"], "↓1.0M ↑0K")

    def test_directions_are_not_swapped(self):
        self.send("net", 640_000)
        self.send("user", 320_000)
        self.start()
        sample = self.watch.next_samples(3, 10)[-1]
        self.assertAlmostEqual(sample.download, 640_000, delta=13_000)
        self.assertAlmostEqual(sample.upload, 320_000, delta=6_500)

    def test_a_link_that_is_offered_too_much_reads_as_what_it_carries(self):
        self.world.do("rate", 4, 4)
        self.send("net", EIGHT_MEGABITS, frame=1000)
        self.start()
        sample = self.watch.next_samples(3, 10)[-1]
        self.assertAlmostEqual(sample.download, 500_000, delta=10_000)

    def test_only_the_interface_that_leads_to_the_internet_counts(self):
        self.begin()
        # To the other interface's neighbour, not to the internet.
        self.send("user", EIGHT_MEGABITS, host="192.168.2.1")
        samples = self.watch.next_samples(3, 10)
        self.assertTrue(all(sample.upload < 1000 for sample in samples), samples)

    @unittest.skipUnless(case.LONG, "takes half a minute of full load")
    def test_counters_are_wider_than_32_bits(self):
        sender = self.world.sender("user", 250_000_000, 30, frame=1514, host="192.168.1.1")
        self.begin()
        self.watch.next_samples(25, 40)
        sender.stop()
        _, sent = self.world.counters()
        self.assertGreater(sent, 2**32)
        mean = statistics.mean(sample.upload for sample in self.watch.samples[1:-1])
        for sample in self.watch.samples[1:-1]:
            self.assertAlmostEqual(sample.upload, mean, delta=0.1 * mean)


class NoTraffic(case.ResidentTestCase):
    def test_an_idle_link_reads_as_zero(self):
        self.start()
        # The lookups of the start, which fail here, are over after some seconds.
        self.watch.next_samples(6, 15)
        self.text_becomes("↓0K ↑0K")
        for sample in self.watch.next_samples(3, 10):
            self.assertLess(sample.download, 1000)
            self.assertLess(sample.upload, 1000)

    def test_stopped_traffic_reads_as_zero_within_two_intervals(self):
        sender = self.world.sender("net", EIGHT_MEGABITS, frame=1000)
        self.start()
        self.text_becomes("↓1.0M ↑0K")
        sender.stop()
        self.assertLess(self.watch.next_samples(2, 10)[-1].download, 1000)
        self.text_becomes("↓0K ↑0K")


class TheInterval(case.ResidentTestCase):
    def spans(self, samples):
        return [b.timestamp - a.timestamp for a, b in zip(samples, samples[1:])]

    def test_is_the_preferred_one_and_follows_the_file(self):
        self.start()
        for interval in (1.0, 0.4):
            self.session.prefer(refreshInterval=interval)
            self.watch.next_samples(1, 5)  # with the change, one sample of either period may pass
            for span in self.spans(self.watch.next_samples(4, 10)):
                self.assertAlmostEqual(span, interval, delta=0.05)

    def test_keeps_its_grid(self):
        self.session.prefer(refreshInterval=0.25)
        self.start()
        samples = self.watch.next_samples(20, 15, after=0)
        first = samples[0].timestamp
        for index, sample in enumerate(samples):
            # Every fifth one pings on the same queue. No sample is late by a whole period.
            self.assertAlmostEqual(sample.timestamp - first, 0.25 * index, delta=0.05)


if __name__ == "__main__":
    case.main()
