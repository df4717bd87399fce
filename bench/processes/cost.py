"""Processor time and memory of a run of a command."""

import os
import pathlib
import re
import subprocess
import threading
import time


class Cost:
    """`milliseconds` of processor time, `peak` memory in kilobytes, and the `output`."""

    def __init__(self, command):
        child = subprocess.Popen([str(word) for word in command], stdout=subprocess.PIPE,
                                 stderr=subprocess.DEVNULL)
        self.peak = 0
        watcher = threading.Thread(target=self._watch, args=(child.pid,))
        watcher.start()
        self.output = child.stdout.read().decode(errors="replace")
        child.stdout.close()
        _, status, usage = os.wait4(child.pid, 0)
        child.returncode = os.waitstatus_to_exitcode(status)
        self.status = child.returncode
        watcher.join()
        self.milliseconds = 1e3 * (usage.ru_utime + usage.ru_stime)

    def _watch(self, process):
        try:
            while True:
                time.sleep(0.05)
                text = pathlib.Path(f"/proc/{process}/status").read_text()
                # Not what it was before it became the program that is meant.
                if not text.startswith(("Name:\tnettop", "Name:\tnethogs")):
                    continue
                self.peak = max(self.peak, *map(int, re.findall(r"VmHWM:\s*(\d+)", text)))
        except (OSError, TypeError, ProcessLookupError):
            pass
