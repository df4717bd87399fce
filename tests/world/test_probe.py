#!/usr/bin/python3
"""Latency, jitter and loss follow the link within one probe."""

import time

from harness import case

PERIOD = 5  # samples from one probe to the next


class TheProbe(case.ResidentTestCase):
    INTERVAL = 0.2  # a probe per second

    def next_probe(self, timeout=10):
        """The first sample from now on that carries a new probe."""
        after = time.time()
        def found():
            return [sample for sample in self.watch.samples
                    if sample.number % PERIOD == 0 and sample.timestamp > after]
        return self.watch.until(found, timeout, "a probe")[0]

    def status_becomes(self, status):
        self.watch.until(lambda: self.watch.values.get("Status") == status, 5, f"status {status}")

    def test_latency_follows_the_link_within_one_probe(self):
        self.start()
        for delay in (5, 25, 80):
            self.world.do("delay", delay)
            latency = self.next_probe().latency
            self.assertGreaterEqual(latency, delay)
            self.assertLess(latency, delay + 10)
        self.world.do("delay", 0)
        self.assertLess(self.next_probe().latency, 5)

    def test_runs_with_every_fifth_sample_and_is_carried_over_between(self):
        self.world.do("delay", 20, 10)
        self.start()
        self.watch.next_samples(4 * PERIOD, 20, after=0)
        for sample in self.watch.samples[:PERIOD - 1]:
            self.assertEqual(sample.latency, 0.0)
        for before, sample in zip(self.watch.samples, self.watch.samples[1:]):
            if sample.number % PERIOD == 0:
                self.assertNotEqual(sample.latency, before.latency)
            else:
                self.assertEqual(sample.latency, before.latency)

    def test_jitter_is_the_mean_difference_of_the_last_ten(self):
        self.world.do("delay", 50, 30)
        self.start()
        latencies = []
        for _ in range(12):
            probe = self.next_probe()
            latencies = [*latencies, probe.latency][-10:]
            differences = [abs(b - a) for a, b in zip(latencies, latencies[1:])]
            mean = sum(differences) / len(differences) if differences else 0.0
            self.assertAlmostEqual(probe.jitter, mean, delta=1e-9)
        self.assertGreater(probe.jitter, 2)

    def test_loss_climbs_by_ten_while_nothing_answers_and_falls_by_five(self):
        self.world.do("delay", 5)
        self.start()
        good = self.next_probe()
        self.assertEqual(good.loss, 0.0)
        self.world.do("probe", "unreachable")
        for loss in (10.0, 20.0, 30.0):
            probe = self.next_probe()
            self.assertEqual(probe.loss, loss)
            self.assertEqual(probe.latency, 0.0)
        self.world.do("probe", "reachable")
        for loss in (25.0, 20.0, 15.0):
            probe = self.next_probe()
            self.assertEqual(probe.loss, loss)
            self.assertGreater(probe.latency, 4.9)

    def test_a_probe_without_a_route_fails_at_once(self):
        self.start()
        self.next_probe()
        self.world.do("route", "off")
        self.assertEqual(self.next_probe().loss, 10.0)
        samples = self.watch.samples
        self.assertLess(samples[-1].timestamp - samples[-2].timestamp, 3 * self.INTERVAL)

    def test_an_unanswered_probe_costs_two_seconds_and_no_reading_is_wrong(self):
        self.send("net", 1_000_000)
        self.world.do("probe", "unreachable")
        self.start()
        samples = self.watch.next_samples(3 * PERIOD, 20)
        spans = [b.timestamp - a.timestamp for a, b in zip(samples, samples[1:])]
        self.assertLess(max(spans), 2.6)
        self.assertGreater(max(spans), 1.8)
        for sample in samples:
            self.assertAlmostEqual(sample.download, 1_000_000, delta=25_000)

    def test_status_follows_the_latency(self):
        self.start()
        for delay, status in ((0, "excellent"), (70, "good"), (130, "degraded"), (10, "excellent")):
            self.world.do("delay", delay)
            self.next_probe()
            self.status_becomes(status)
        self.world.do("probe", "unreachable")
        self.status_becomes("degraded")


if __name__ == "__main__":
    case.main()
