"""Starts processes, and ends every one of them and of their descendants, by pid."""

import ctypes
import glob
import os
import signal
import subprocess
import time

_PR_SET_PDEATHSIG = 1
_PR_SET_CHILD_SUBREAPER = 36
_libc = ctypes.CDLL(None)


def wait_until(condition, seconds, what):
    """Returns the first true answer of condition(), or raises TimeoutError after the seconds."""
    deadline = time.monotonic() + seconds
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise TimeoutError(f"no {what} within {seconds} s")
        time.sleep(0.05)


class Children:
    """The processes of one session. Leaving the `with` block ends them, youngest first."""

    def __init__(self, log):
        self._log = log
        self._processes = []

    def __enter__(self):
        # Orphaned grandchildren become our children.
        _libc.prctl(_PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
        for number in (signal.SIGTERM, signal.SIGHUP):
            signal.signal(number, _leave)
        return self

    def __exit__(self, *_):
        for process in reversed(self._processes):
            self.end(process)
        for number in (signal.SIGTERM, signal.SIGKILL):
            _end_descendants(number, seconds=1)

    def start(self, command, environment, **options):
        """Starts a command that dies with this process, its messages going to the log."""
        options.setdefault("stdout", self._log)
        options.setdefault("stderr", self._log)
        options.setdefault("stdin", subprocess.DEVNULL)
        process = subprocess.Popen(
            command,
            env=environment,
            preexec_fn=_in_own_group_dying_with_parent,
            **options,
        )
        self._processes.append(process)
        return process

    def named(self, name):
        """The process ids of all running descendants of that name, which the kernel cuts."""
        return [pid for pid in _descendants() if _name(pid) == name[:15]]

    def end(self, process, seconds=3):
        """Asks a process to end, then makes it. Returns its exit status."""
        process.terminate()
        try:
            status = process.wait(seconds)
        except subprocess.TimeoutExpired:
            process.kill()
            status = process.wait()
        if process in self._processes:
            self._processes.remove(process)
        return status


def _leave(number, _frame):
    raise SystemExit(128 + number)


def _in_own_group_dying_with_parent():
    # In its own group, so that Ctrl-C reaches only this process, which then ends the others in order.
    os.setpgid(0, 0)
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGTERM, 0, 0, 0)


def _descendants(pid="self"):
    pids = [int(text) for file in glob.glob(f"/proc/{pid}/task/*/children")
            for text in _text(file).split()]
    return pids + [below for child in pids for below in _descendants(child)]


def _text(path):
    """What is in a file; empty for one that is gone."""
    try:
        with open(path) as file:
            return file.read()
    except (FileNotFoundError, ProcessLookupError):
        return ""


def _name(pid):
    """The name of a process; empty for one that has ended."""
    try:
        with open(f"/proc/{pid}/stat", "rb") as file:
            name, _, rest = file.read().partition(b"(")[2].rpartition(b")")
    except (FileNotFoundError, ProcessLookupError):
        return ""
    return "" if rest.split()[0] == b"Z" else name.decode(errors="replace")


def _end_descendants(number, seconds):
    for pid in _descendants():
        try:
            os.kill(pid, number)
        except ProcessLookupError:
            pass
    deadline = time.monotonic() + seconds
    while _descendants() and time.monotonic() < deadline:
        try:
            os.waitpid(-1, os.WNOHANG)
        except ChildProcessError:
            return
        time.sleep(0.02)
