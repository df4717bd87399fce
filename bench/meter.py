"""What programs cost, by the kernel's own accounting.

Figures of a group are (mean, least, most): processor time in percent of one processor, wake-ups a second,
memory in megabytes.
"""

import contextlib
import os
import pathlib
import re
import signal
import statistics
import subprocess
import threading
import time
from collections import namedtuple

# `nanoseconds` of the group, `sleeps` by thread, `busy` seconds of the whole machine.
Reading = namedtuple("Reading", "at nanoseconds sleeps busy")

# A command line that runs a command without ping. Needs root.
HIDE_PING = ["unshare", "--mount", "sh", "-c", "for f in /bin/ping /usr/bin/ping; do "
             "mount --bind /dev/null $f 2>/dev/null; done; exec \"$0\""]

_JOIN = 'echo $$ >"$0" && exec "$@"'


def _tasks(pid, file):
    """{thread: text of a file of /proc} of the process's threads; empty when it has ended."""
    found = {}
    with contextlib.suppress(FileNotFoundError, ProcessLookupError):
        for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
            found[int(task.name)] = (task / file).read_text()
    return found


def _sleeps(pid):
    """{thread: its voluntary context switches}."""
    return {thread: int(re.search(r"^voluntary_ctxt_switches:\s*(\d+)", status, re.MULTILINE)[1])
            for thread, status in _tasks(pid, "status").items()}


def wakeups(pid):
    """How often the living threads have woken up."""
    return sum(_sleeps(pid).values())


def processor(pid):
    """Seconds that the living threads have run."""
    return sum(int(text.split()[0]) for text in _tasks(pid, "schedstat").values()) / 1e9


def memory(pid):
    """Megabytes of PSS, and written by this process alone."""
    text = ""
    with contextlib.suppress(FileNotFoundError, ProcessLookupError):
        text = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
    found = dict(re.findall(r"^(\w+):\s+(\d+) kB$", text, re.MULTILINE))
    return [int(found.get(field, 0)) / 1024 for field in ("Pss", "Private_Dirty")]


def _root():
    """Where control groups account for processor time, and the file that does."""
    mounts = pathlib.Path("/proc/mounts").read_text()
    for pattern, account in ((r" (\S+) cgroup \S*cpuacct", "cpuacct.usage"),
                             (r" (\S+) cgroup2 ", "cpu.stat")):
        if found := re.search(pattern, mounts):
            return pathlib.Path(found[1]), account
    raise RuntimeError("no control groups are mounted")


class Group:
    """A control group, for a `with` block: what is started in it stays in it, with all descendants.

    Processor time includes processes that have ended; memory and wake-ups are those of the living.
    """

    def __init__(self, name):
        root, self._account = _root()
        self.path = root / f"tidewell-bench-{os.getpid()}-{name}"

    def __enter__(self):
        self.path.mkdir()
        return self

    def command(self, command):
        """The command line that runs a command in the group, in the same process."""
        return ["sh", "-c", _JOIN, str(self.path / "cgroup.procs"), *command]

    def pids(self):
        return [int(pid) for pid in (self.path / "cgroup.procs").read_text().split()]

    def read(self):
        text = (self.path / self._account).read_text()
        nanoseconds = int(text) if self._account == "cpuacct.usage" else 1000 * int(text.split()[1])
        sleeps = {}
        for pid in self.pids():
            sleeps.update(_sleeps(pid))
        return Reading(time.monotonic(), nanoseconds, sleeps, _busy())

    def memory(self, pids):
        """Megabytes of PSS, and written by them alone, of those processes that still live."""
        return [sum(column) for column in zip((0, 0), *map(memory, set(pids) & set(self.pids())))]

    def __exit__(self, *_):
        """Ends whatever still runs in it, and removes it."""
        deadline = time.monotonic() + 5
        while self.pids() and time.monotonic() < deadline:
            for pid in self.pids():
                with contextlib.suppress(ProcessLookupError, ChildProcessError):
                    os.kill(pid, signal.SIGKILL)
                    os.waitpid(pid, os.WNOHANG)
            time.sleep(0.02)
        self.path.rmdir()


def window(before, after):
    """Processor time, wake-ups, and processor time of the rest of the machine between two readings."""
    seconds = after.at - before.at
    wakeups = sum(count - before.sleeps.get(thread, 0) for thread, count in after.sleeps.items())
    cpu = (after.nanoseconds - before.nanoseconds) / 1e9
    others = max(0.0, after.busy - before.busy - cpu)
    return 100 * cpu / seconds, wakeups / seconds, 100 * others / seconds


def figures(readings, memory):
    """Of readings of one group, and its memory."""
    windows = [window(*pair) for pair in zip(readings, readings[1:])]
    spreads = [(statistics.mean(values), min(values), max(values)) for values in zip(*windows)]
    return dict(zip(("cpu", "wakeups", "others", "pss", "private"),
                    [*spreads, *((value,) * 3 for value in memory)]))


def _busy():
    user, nice, system, _, _, irq, softirq, *_ = map(
        int, pathlib.Path("/proc/stat").read_text().split("\n", 1)[0].split()[1:])
    return (user + nice + system + irq + softirq) / os.sysconf("SC_CLK_TCK")


class Cost:
    """A command run to its end: `milliseconds` of processor time, `peak` memory in kilobytes."""

    def __init__(self, command):
        child = subprocess.Popen([str(word) for word in command], stdout=subprocess.PIPE,
                                 stderr=subprocess.DEVNULL)
        self.peak = 0
        watcher = threading.Thread(target=self._watch, args=(child.pid,))
        watcher.start()
        child.stdout.read()
        child.stdout.close()
        _, status, usage = os.wait4(child.pid, 0)
        self.status = child.returncode = os.waitstatus_to_exitcode(status)
        watcher.join()
        self.milliseconds = 1e3 * (usage.ru_utime + usage.ru_stime)

    def _watch(self, pid):
        with contextlib.suppress(OSError, TypeError):
            while True:
                time.sleep(0.05)
                text = pathlib.Path(f"/proc/{pid}/status").read_text()
                # The wrappers that start the program do not count.
                if text.startswith(("Name:\tnettop", "Name:\tnethogs")):
                    self.peak = max(self.peak, *map(int, re.findall(r"VmHWM:\s*(\d+)", text)))
