"""The truth: an interface's own counters, written down densely while something is measured."""

import bisect
import tempfile

from .world import tool


class CounterLog:
    """Reads the counters of one of the user's interfaces many times per interval."""

    def __init__(self, world, interface="eth0", period_us=200):
        self._file = tempfile.TemporaryFile("w+")
        self._process = world.start(
            "user", tool("counterLog"), interface, period_us, stdout=self._file)
        self.readings = []  # (seconds before, seconds after, bytes received, bytes sent)

    def stop(self):
        self._process.kill()
        self._process.wait()
        self._file.seek(0)
        for line in self._file:
            if line.endswith("\n"):
                before, after, received, sent = line.split()
                self.readings.append((float(before), float(after), int(received), int(sent)))
        self._file.close()
        self._starts = [reading[0] for reading in self.readings]

    def bounds(self, moment, column):
        """The least and the most that the counter can have been then. Column 2 or 3 of a reading."""
        index = bisect.bisect_left(self._starts, moment)  # the first reading begun from then on
        before = index - 1
        while before >= 0 and self.readings[before][1] > moment:
            before -= 1
        if before < 0 or index == len(self.readings):
            raise AssertionError("the counters were not written down around that moment")
        return self.readings[before][column], self.readings[index][column]


class Accuracy:
    """Readings of a rate held against the counters over the same spans of time."""

    def __init__(self, samples, log, direction="download"):
        column = {"download": 2, "upload": 3}[direction]
        edges = [(s.timestamp, log.bounds(s.timestamp, column)) for s in samples]
        rates = [getattr(s, direction) for s in samples[1:]]
        self.errors = []  # of each reading in percent, beyond what the log leaves open
        self.doubts = []  # what the log leaves open of each reading, in percent
        for rate, (t0, (low0, high0)), (t1, (low1, high1)) in zip(rates, edges, edges[1:]):
            least, most = (low1 - high0) / (t1 - t0), (high1 - low0) / (t1 - t0)
            truth = (least + most) / 2
            # A rate is a whole number, cut off.
            outside = max(least - 1 - rate, rate - most, 0)
            self.errors.append(100 * outside / truth)
            self.doubts.append(100 * (most - least) / truth)
        (start, first), (end, last) = edges[0], edges[-1]
        true_mean = (sum(last) - sum(first)) / 2 / (end - start)
        self.mean_error = 100 * (sum(rates) / len(rates) - true_mean) / true_mean
        self.worst = max(self.errors)

    def __str__(self):
        doubts = sorted(self.doubts)
        return (f"{len(self.errors)} readings, mean off by {self.mean_error:+.4f} %, worst single "
                f"{self.worst:.4f} % (left open by the log: {doubts[len(doubts) // 2]:.4f} % "
                f"median, {doubts[-1]:.4f} % at most)")


