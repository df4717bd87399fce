"""A real notification server, dunst, on a display without a screen."""

import json
import os
import re
import signal
import subprocess

from .session import wait_until

SERVER = "org.freedesktop.Notifications"
PROGRAMS = ("dunst", "dunstctl", "Xvfb", "busctl")

CONFIGURATION = """[global]
always_run_script = true
stack_duplicates = false
[all]
summary = "*"
timeout = 0
script = {script}
"""

SCRIPT = """#!/bin/sh
printf '%s\\t%s\\t%s\\n' "$DUNST_ID" "$DUNST_SUMMARY" "$DUNST_BODY" >>{log}
echo "$DUNST_URGENCY" >>{log}.urgencies
"""


class Dunst:
    """`shown` lists every notice that it shows, replacements included, in order."""

    def __init__(self, world, session):
        self._world = world
        self._session = session
        self._log = session.folder / "notices"
        self._log.touch()
        script = session.folder / "notice"
        script.write_text(SCRIPT.format(log=self._log))
        script.chmod(0o755)
        self._configuration = session.folder / "dunstrc"
        self._configuration.write_text(CONFIGURATION.format(script=script))
        self._display = None
        self._server = None

    def start(self):
        if self._display is None:
            self._start_display()
        self._server = self._world.start(
            "user", "dunst", "-conf", self._configuration, env=self._environment(),
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_until(lambda: self._busctl("status", SERVER).returncode == 0, 10, "dunst on the bus")

    def kill(self):
        self._server.kill()
        self._server.wait()
        self._server = None

    def halt(self):
        self._server.send_signal(signal.SIGSTOP)

    def resume(self):
        self._server.send_signal(signal.SIGCONT)

    def close(self):
        for process in (self._server, self._display):
            if process:
                process.kill()
                process.wait()

    @property
    def shown(self):
        """(number, title, body) of each."""
        lines = self._log.read_text().splitlines()
        return [(int(number), title, body)
                for number, title, body in (line.split("\t") for line in lines)]

    def texts(self):
        return [(title, body) for _, title, body in self.shown]

    def urgencies(self):
        """The urgency of each notice, in dunst's words."""
        return (self._session.folder / "notices.urgencies").read_text().split()

    def pause(self, is_paused):
        """Whether dunst withholds notices."""
        self._ask("set-paused", "true" if is_paused else "false")

    def withheld(self):
        """The number of notices that it withholds."""
        return int(re.search(r"Waiting: (\d+)", self._ask("count")).group(1))

    def until_shown(self, count, timeout):
        wait_until(lambda: len(self.shown) >= count, timeout, f"{count} notices")

    def history(self):
        """The notices in dunst's history, oldest first: title and body."""
        self._ask("close-all")
        wait_until(lambda: "displayed: 0" in self._ask("count"), 5, "the notices closed")
        entries = json.loads(self._ask("history"))["data"][0]
        return [(entry["summary"]["data"], entry["body"]["data"]) for entry in reversed(entries)]

    def _start_display(self):
        reading, writing = os.pipe()
        self._display = self._world.start(
            "user", "Xvfb", "-displayfd", writing, "-screen", "0", "640x480x24", "-nolisten", "tcp",
            pass_fds=[writing], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as number:
            self._number = number.readline().strip()
        if not self._number:
            raise AssertionError("Xvfb does not start")

    def _environment(self):
        return {**self._session.environment, "DISPLAY": f":{self._number}"}

    def _ask(self, *question):
        return subprocess.run(["dunstctl", *question], env=self._session.environment, check=True,
                              capture_output=True, text=True).stdout

    def _busctl(self, *arguments):
        return subprocess.run(["busctl", "--user", *arguments], env=self._session.environment,
                              capture_output=True)
