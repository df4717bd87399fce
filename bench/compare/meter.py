"""What a program and everything that it starts cost, by the kernel's own accounting."""

import os
import pathlib
import signal
import time
from collections import namedtuple

Reading = namedtuple("Reading", "at nanoseconds sleeps busy")

_JOIN = 'echo $$ >"$0" && exec "$@"'


def _root():
    """Where control groups account for processor time, and the file that does."""
    mounts = [line.split() for line in pathlib.Path("/proc/mounts").read_text().splitlines()]
    for _, where, kind, options, *_ in mounts:
        if kind == "cgroup" and "cpuacct" in options.split(","):
            return pathlib.Path(where), "cpuacct.usage"
    for _, where, kind, *_ in mounts:
        if kind == "cgroup2":
            return pathlib.Path(where), "cpu.stat"
    raise RuntimeError("no control groups are mounted")


class Group:
    """A control group: whoever is started in it stays in it, with all descendants.

    Its processor time counts also those that have ended; its memory and its wake-ups are those of
    the processes that live.
    """

    def __init__(self, name):
        root, self._account = _root()
        self.path = root / f"tidewell-compare-{os.getpid()}-{name}"
        self.path.mkdir()

    def command(self, command):
        """The command line that runs a command in the group; the process stays the same."""
        return ["sh", "-c", _JOIN, str(self.path / "cgroup.procs"), *command]

    def pids(self):
        return [int(pid) for pid in (self.path / "cgroup.procs").read_text().split()]

    def read(self):
        return Reading(time.monotonic(), self._nanoseconds(),
                       {thread: count for pid in self.pids() for thread, count in _sleeps(pid)},
                       _busy())

    def memory(self, pids):
        """(PSS, written by them alone) of those of the processes that still live, in kilobytes."""
        readings = [reading for reading in map(_memory, set(pids) & set(self.pids())) if reading]
        return [sum(column) for column in zip(*readings)] or [0, 0]

    def close(self):
        """Ends whatever still runs in it, and removes it."""
        deadline = time.monotonic() + 5
        while self.pids() and time.monotonic() < deadline:
            for pid in self.pids():
                try:
                    os.kill(pid, signal.SIGKILL)
                    os.waitpid(pid, os.WNOHANG)
                except (ProcessLookupError, ChildProcessError):
                    pass
            time.sleep(0.02)
        self.path.rmdir()

    def _nanoseconds(self):
        text = (self.path / self._account).read_text()
        if self._account == "cpuacct.usage":
            return int(text)
        return 1000 * int(dict(line.split() for line in text.splitlines())["usage_usec"])


def window(before, after):
    """What passed between two readings: shares in percent of one processor, wake-ups a second."""
    seconds = after.at - before.at
    wakeups = sum(count - before.sleeps.get(thread, 0) for thread, count in after.sleeps.items())
    cpu = (after.nanoseconds - before.nanoseconds) / 1e9
    return {"cpu": 100 * cpu / seconds, "wakeups": wakeups / seconds,
            "others": 100 * max(0.0, after.busy - before.busy - cpu) / seconds}


def _sleeps(pid):
    """How often each thread of a process has gone to sleep by itself."""
    found = []
    try:
        for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
            for line in (task / "status").read_text().splitlines():
                if line.startswith("voluntary_ctxt_switches"):
                    found.append((int(task.name), int(line.split()[1])))
    except (FileNotFoundError, ProcessLookupError):
        pass
    return found


def _memory(pid):
    """None for one that has ended."""
    try:
        lines = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines()[1:]
    except (FileNotFoundError, ProcessLookupError):
        return None
    rollup = dict(line.split(":") for line in lines)
    return [int(rollup[name].split()[0]) for name in ("Pss", "Private_Dirty")]


def _busy():
    """Seconds that the machine's processors have worked since it started."""
    user, nice, system, _, _, irq, softirq, *_ = map(
        int, pathlib.Path("/proc/stat").read_text().split("\n", 1)[0].split()[1:])
    return (user + nice + system + irq + softirq) / os.sysconf("SC_CLK_TCK")
