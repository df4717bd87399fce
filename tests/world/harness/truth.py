"""The truth: an interface's own counters, read densely while something is measured."""

import bisect
import tempfile

# INTERFACE: prints seconds before a reading, seconds after it, bytes received and sent. It takes
# precedence over other programs, where it may.
_LOG = """
import os, sys, time
try:
    os.sched_setscheduler(0, os.SCHED_FIFO, os.sched_param(10))
except PermissionError:
    pass
files = [os.open(f"/sys/class/net/{sys.argv[1]}/statistics/{name}", os.O_RDONLY)
         for name in ("rx_bytes", "tx_bytes")]
while True:
    before = time.time()
    received, sent = (os.pread(file, 32, 0).decode().strip() for file in files)
    print(f"{before:.6f} {time.time():.6f} {received} {sent}", flush=True)
    time.sleep(0.0002)
"""


class CounterLog:
    """Reads the counters of one of the user's interfaces many times per interval."""

    def __init__(self, world, interface="eth0"):
        self._file = tempfile.TemporaryFile("w+")
        self._process = world.start("user", "python3", "-c", _LOG, interface, stdout=self._file)
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
        index = bisect.bisect_left(self._starts, moment)  # the first reading that began later
        before = index - 1
        while before >= 0 and self.readings[before][1] > moment:
            before -= 1
        if before < 0 or index == len(self.readings):
            raise AssertionError("the counters were not read around that moment")
        return self.readings[before][column], self.readings[index][column]


class Accuracy:
    """Compares readings of a rate with the counters over the same spans of time."""

    def __init__(self, samples, log, direction="download"):
        column = {"download": 2, "upload": 3}[direction]
        edges = [(s.timestamp, log.bounds(s.timestamp, column)) for s in samples]
        rates = [getattr(s, direction) for s in samples[1:]]
        self.errors = []  # of each reading in percent, beyond the log's own uncertainty
        self.doubts = []  # the log's uncertainty for each reading, in percent
        for rate, (t0, (low0, high0)), (t1, (low1, high1)) in zip(rates, edges, edges[1:]):
            least, most = (low1 - high0) / (t1 - t0), (high1 - low0) / (t1 - t0)
            truth = (least + most) / 2
            # A rate is truncated to a whole number.
            outside = max(least - 1 - rate, rate - most, 0)
            self.errors.append(100 * outside / truth)
            self.doubts.append(100 * (most - least) / truth)
        (start, first), (end, last) = edges[0], edges[-1]
        true_mean = (sum(last) - sum(first)) / 2 / (end - start)
        self.mean_error = 100 * (sum(rates) / len(rates) - true_mean) / true_mean
        self.worst = max(self.errors)
        self.doubt = sorted(self.doubts)[len(self.doubts) // 2]  # in the median

    def __str__(self):
        return (f"{len(self.errors)} readings, mean off by {self.mean_error:+.4f} %, worst single "
                f"{self.worst:.4f} % (uncertainty of the log: {self.doubt:.4f} % "
                f"median, {max(self.doubts):.4f} % at most)")


