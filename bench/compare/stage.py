"""Where programs are measured: a shaped link with known traffic, and a desktop."""

import os
import signal
import time
from types import SimpleNamespace

from harness import world
from session import Session

import meter

# Mbit/s down and up, of which the traffic takes a half: nothing waits and nothing is lost.
LINK = (20, 6)
# Bytes a second, Ethernet header included. Deliberately not round.
DOWN, UP = 1_234_000, 345_000
FRAME = 1000
# While costs are measured, so much more comes down in every other second: what is shown changes.
WAVE = 555_000
_WAVES = 'while :; do "$0" "$@" >/dev/null; sleep 1; done'
# Until those have left the averages of the last seconds that some show.
CALM = 7

# Else the first of GTK's programs on a screen, whichever it is, loads a graphics driver of 9 MB to
# look at the screen for all of them.
_VARIABLES = {"GDK_GL": "disable"}

SETTLE = 12
WINDOWS = 4


class Stage:
    """One program's turn: the link's traffic flows, the desktop stands, groups count."""

    def __init__(self, this_world, desktop, configure=None):
        self.world = this_world
        self._groups = {}
        self._senders = []
        self._desktop = SimpleNamespace(**vars(desktop))
        if configure:
            self._desktop.configure = lambda home: configure(home, desktop.configure)
        if desktop.PANEL:
            self._desktop.PANEL = self.command("panel", desktop.PANEL)
        self._session = Session(self._desktop, **_VARIABLES)

    def __enter__(self):
        try:
            self._session.__enter__()
        except BaseException:  # it has cleared away what is its own
            self._clear()
            raise
        self.environment, self.folder = self._session.environment, self._session.directory
        try:
            self._start_traffic()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for sender in self._senders:
            sender.stop()
        self._session.__exit__(None, None, None)
        self._clear()

    def _start_traffic(self):
        self._senders = [self.world.sender("net", DOWN, frame=FRAME),
                         self.world.sender("user", UP, frame=FRAME)]
        self._waves = self._session.start(self.world.command(
            "net", "sh", "-c", _WAVES, world.tool("sender"), world.USER, world.DISCARD, WAVE, 1,
            FRAME))

    def _clear(self):
        for group in self._groups.values():
            group.close()
        signal.signal(signal.SIGTERM, signal.default_int_handler)

    def command(self, name, command):
        """The command line that runs a command on the user's machine, in a group of that name."""
        if name not in self._groups:
            self._groups[name] = meter.Group(name)
        return self._groups[name].command(self.world.command("user", *command))

    def start(self, name, command, **options):
        return self._session.start(self.command(name, command), **options)

    def run(self, command, seconds=60):
        """What a command of the session prints; it is in no group."""
        return self._session.output(["timeout", str(seconds), *self.world.command("user", *command)])

    def messages(self):
        return self._session.log.read_text(errors="replace")

    def calm(self):
        """From here on the rates are constant."""
        self._session.children.end(self._waves)
        time.sleep(CALM)

    def truth(self):
        """Now, and the counters of the user's interface."""
        return (time.monotonic(), *self.world.counters())

    def measure(self, seconds):
        """Figures of each group over so many seconds."""
        living = {name: group.pids() for name, group in self._groups.items()}
        figures = {name: [] for name in self._groups}
        readings = {name: group.read() for name, group in self._groups.items()}
        for _ in range(WINDOWS):
            time.sleep(seconds / WINDOWS)
            after = {name: group.read() for name, group in self._groups.items()}
            for name in self._groups:
                figures[name].append(meter.window(readings[name], after[name]))
            readings = after
        result = {}
        for name, group in self._groups.items():
            pss, private = group.memory(living[name])
            result[name] = {"windows": figures[name], "pss": pss, "private": private,
                            "processes": len(set(living[name]) & set(group.pids()))}
        return result


def link(before, after):
    """Bytes a second down and up between two readings of the counters."""
    seconds = after[0] - before[0]
    return [(after[column] - before[column]) / seconds for column in (1, 2)]


def make_world(name="programs"):
    made = world.World(f"compare{os.getpid()}-{name}")
    made.do("rate", *LINK)
    return made
