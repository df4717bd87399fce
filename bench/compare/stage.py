"""Where programs are measured: a shaped link with known traffic, and a desktop."""

import contextlib
import os
import pathlib
import time
from types import SimpleNamespace

import meter
from harness import world
from session import Session

# Mbit/s down and up. The traffic takes half of it, so nothing is queued and nothing is lost.
LINK = (20, 6)
# Bytes a second, Ethernet headers included. Deliberately not round.
DOWN, UP = 1_234_000, 345_000
FRAME = 1000
# While costs are measured, so much more comes down in every other second: the shown text changes.
WAVE = 555_000
_WAVES = 'while :; do "$0" "$@" >/dev/null; sleep 1; done'
# Seconds until the waves have left the averages that some programs show.
CALM = 7
# What the counters may differ from the sender: they are read some milliseconds late.
LEEWAY = 0.01

SETTLE = 12
WINDOWS = 4


class Stage:
    """A `with` block for one program, with traffic, a desktop and groups."""

    def __init__(self, this_world, desktop, configure=None):
        self.world = this_world
        self._desktop = SimpleNamespace(**vars(desktop))
        if configure:
            self._desktop.configure = lambda home: configure(home, desktop.configure)

    def __enter__(self):
        with contextlib.ExitStack() as stack:
            self._groups = {name: stack.enter_context(meter.Group(name))
                            for name in ["program", *(["panel"] if self._desktop.PANEL else [])]}
            if self._desktop.PANEL:
                self._desktop.PANEL = self._command("panel", self._desktop.PANEL)
            # The first GTK program on a screen would load a graphics driver of 9 MB for all of them.
            self._session = stack.enter_context(Session(self._desktop, GDK_GL="disable"))
            self.environment, self.folder = self._session.environment, self._session.directory
            self.config = pathlib.Path(self.environment["XDG_CONFIG_HOME"])
            for where, rate in (("net", DOWN), ("user", UP)):
                stack.callback(self.world.sender(where, rate, frame=FRAME).stop)
            self._waves = self._session.start(self.world.command(
                "net", "sh", "-c", _WAVES, world.tool("sender"), world.USER, world.DISCARD, WAVE, 1,
                FRAME))
            self._clean = stack.pop_all()
        return self

    def __exit__(self, *_):
        self._clean.close()

    def _command(self, group, command):
        return self._groups[group].command(self.world.command("user", *command))

    def start(self, command, **options):
        """Starts the measured program."""
        return self._session.start(self._command("program", command), **options)

    def run(self, command, seconds=60):
        """What a command of the session prints until it ends or the time is over. It is in no group."""
        wrapped = ["sh", "-c", 'timeout "$@" 2>/dev/null; true', "sh", str(seconds)]
        return self._session.output(self.world.command("user", *wrapped, *command)) or ""

    def write(self, name, text):
        """Writes a file of the user's configuration."""
        (self.config / name).parent.mkdir(parents=True, exist_ok=True)
        (self.config / name).write_text(text.replace("{0}", str(self.folder)))

    def watch(self, seconds):
        """Figures of each group over so many seconds."""
        living = {name: group.pids() for name, group in self._groups.items()}
        readings = {name: [group.read()] for name, group in self._groups.items()}
        for _ in range(WINDOWS):
            time.sleep(seconds / WINDOWS)
            for name, group in self._groups.items():
                readings[name].append(group.read())
        return {name: meter.figures(readings[name], group.memory(living[name]))
                for name, group in self._groups.items()}

    def constant(self, look):
        """What the function returns while the rates are constant, as the link's counters confirm."""
        self._session.children.end(self._waves)
        time.sleep(CALM)
        before, began = self.world.counters(), time.monotonic()
        result = look()
        after, seconds = self.world.counters(), time.monotonic() - began
        for had, has, rate in zip(before, after, (DOWN, UP)):
            if abs((has - had) / seconds - rate) > LEEWAY * rate:
                raise RuntimeError(f"the link carried {(has - had) / seconds}, not {rate}")
        return result


def make_world(name="programs"):
    made = world.World(f"compare{os.getpid()}-{name}")
    made.do("rate", *LINK)
    return made
