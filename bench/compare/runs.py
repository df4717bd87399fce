"""Measurements of a peer, of a panel, of Tidewell, and of how its cost grows."""

import contextlib
import fcntl
import os
import pty
import shlex
import statistics
import struct
import subprocess
import termios
import threading
import time

import bus
import peers
import readings
import xfce
from children import wait_until
from harness import nettop
from harness.world import RESIDENT
from meter import HIDE_PING, Cost
from stage import DOWN, SETTLE, UP, Stage, make_world

_BUSCTL = ["busctl", "--user", "--json=short", "get-property", *bus.TIDEWELL]
# Seconds of constant traffic whose rates are read.
LOOK = 12
# Without a panel Tidewell tries another way to show its item twenty seconds after its start.
SETTLE_WITHOUT_PANEL = 30
RATES_ALONE = {"trackPerProcess": False, "showNotifications": False}

NET, PORT = "198.51.100.2", 7000
# So many of the connections send data in every second.
ACTIVE = 10
HELPER_RUNS = 5
# Latency is probed with every fifth sample, so ten samples contain two probes.
TWO_PROBES = 10


def version(package):
    """Raises for a package that is not installed: a panel would start without its plugin."""
    found = subprocess.run(["dpkg-query", "-W", "-f", "${Version}", package], capture_output=True,
                           text=True).stdout
    if not found:
        raise RuntimeError(f"{package} is not installed")
    return found


def error(shown):
    """The differences from the sender's rates in percent, of both directions: (mean, least, most)."""
    off = [100 * abs(value - truth) / truth for pair in shown for value, truth in zip(pair, (DOWN, UP))]
    return (statistics.mean(off), min(off), max(off))


def panel(this_world, name, seconds):
    package, desktop, configure = peers.PANELS[name]
    installed = version(package)
    with Stage(this_world, desktop, configure) as here:
        time.sleep(SETTLE)
        return {**here.watch(seconds), "version": installed}


def peer(this_world, name, seconds):
    each = peers.PEERS[name]
    installed = version(each.package)
    with Stage(this_world, each.desktop) as here:
        if each.file:
            here.write(*each.file)
        child, output = _start(here, each)
        time.sleep(SETTLE)
        result = {**here.watch(seconds), "version": installed, "interval": each.interval,
                  "command": each.command}
        if child.poll() is not None:
            raise RuntimeError(f"it has ended: {output.read_text(errors='replace')[-300:]}")
        if each.parse:
            text = here.constant(lambda: _printed(here, each, output))
            result["program"]["error"] = error(each.parse(text)[each.skip:])
    return result


def _words(here, command):
    return shlex.split(command.replace("{}", str(here.config)))


def _start(here, each):
    """The process, and the file with what it prints."""
    output, command = here.folder / "printed", _words(here, each.command)
    if not each.terminal:
        with output.open("wb") as file:
            return here.start(command, stdout=file, stderr=subprocess.STDOUT), output
    here.environment["TERM"] = "xterm-256color"
    ours, theirs = pty.openpty()
    fcntl.ioctl(ours, termios.TIOCSWINSZ, struct.pack("4H", 24, 80, 0, 0))
    child = here.start(command, stdin=theirs, stdout=theirs, stderr=theirs)
    os.close(theirs)
    threading.Thread(target=_drain, args=(ours, output), daemon=True).start()
    return child, output


def _drain(descriptor, output):
    with output.open("wb", buffering=0) as file, contextlib.suppress(OSError):
        while data := os.read(descriptor, 65536):
            file.write(data)


def _printed(here, each, output):
    if each.ask:
        return here.run(_words(here, each.ask), each.ask_seconds)
    shown = output.stat().st_size
    time.sleep(LOOK)
    return output.read_text(errors="replace")[shown:]


def tidewell(this_world, seconds, preferences, with_probe=True, desktop=xfce, crowd=()):
    """In a desktop with a panel or in none, among the crowds of these verbs of crowd.py."""
    with Stage(this_world, desktop) as here, contextlib.ExitStack() as crowds:
        for where, *arguments in crowd:
            crowds.callback(nettop.end, nettop.crowd(this_world, where, *arguments))
        here.write("tidewell/preferences.toml", "".join(
            f"{key} = {str(value).lower()}\n" for key, value in preferences.items()))
        child = here.start([*([] if with_probe else HIDE_PING), RESIDENT])
        if desktop.PANEL:
            wait_until(lambda: bus.registered_items(here.environment), 15, "item in the panel")
        time.sleep(SETTLE if desktop.PANEL else SETTLE_WITHOUT_PANEL)
        result = here.watch(seconds)
        if child.poll() is not None:
            raise RuntimeError("it has ended")
        if crowd:
            result["helper"] = _helper_costs(this_world)
        elif desktop.PANEL:
            texts, samples = here.constant(lambda: _shown(here))
            result["program"]["error"] = error(readings.samples(samples))
            result["text"] = error(readings.panel_text("\n".join(texts)))
    return result


def _shown(here):
    """The panel's text in each second, and the resident's samples."""
    texts = []
    for _ in range(LOOK):
        time.sleep(1)
        texts.append(here.run([*_BUSCTL, "MenubarText"]))
    return texts, here.run([*_BUSCTL, "Samples"])


def _helper_costs(this_world):
    """Of a run of the helper that lists programs: {route: {milliseconds, peak} or None}."""
    # The cost of entering the namespace is subtracted.
    enter = ["nsenter", f"--net=/run/netns/{this_world.command('user')[3]}"]
    entry = statistics.median(Cost([*enter, "true"]).milliseconds for _ in range(9))
    return {"bpf": _costs([nettop.HELPER, "--route=bpf"], 0.0),
            "diag": _costs([*enter, nettop.HELPER, "--route=diag"], entry)}


def _costs(command, entry):
    """None where the kernel refuses the programs."""
    costs = [Cost(command) for _ in range(HELPER_RUNS)]
    if any(cost.status != 0 for cost in costs):
        return None
    return {"milliseconds": [max(0.0, cost.milliseconds - entry) for cost in costs],
            "peak": max(cost.peak for cost in costs)}


def _alone(this_world, seconds, interval=1.0, crowd=()):
    return tidewell(this_world, seconds, {**RATES_ALONE, "refreshInterval": interval},
                    with_probe=False, desktop=peers.TERMINAL, crowd=crowd)


def interfaces(_world, seconds):
    """Uses its own world, so that the interfaces are removed with it."""
    own = make_world("interfaces")
    router = own.command("router", "true")[3]
    points = {}
    try:
        for begin, end in ((0, 1), (1, 10), (10, 100), (100, 1000)):
            for where, line in (("user", "link add more{0} up type veth peer more{0} netns {1}\n"),
                                ("router", "link set more{0} up\n")):
                subprocess.run(own.command(where, "ip", "-batch", "-"), text=True, check=True,
                               input="".join(line.format(each, router) for each in range(begin, end)))
            points[f"{end:,}"] = _alone(own, seconds)
    finally:
        own.down()
    return points


def _connections(count):
    return [("net", "serve", NET, PORT), ("user", "connect", NET, PORT, count, min(ACTIVE, count))]


def sockets(this_world, seconds):
    return {f"{count:,}": _alone(this_world, seconds, crowd=_connections(count))
            for count in (10, 100, 1000, 10_000)}


def processes(this_world, seconds):
    def idle(count):
        return ("user", "idle", count, 0)
    return {f"{count:,}": _alone(this_world, seconds, crowd=[*_connections(ACTIVE), idle(count)])
            for count in (100, 1000, 10_000)}


def intervals(this_world, seconds):
    points = {}
    for interval in (1.0, 2.0, 3.0, 5.0):
        name, span = f"{interval:.0f} s", max(seconds, TWO_PROBES * interval)
        points[f"{name}, rates alone"] = _alone(this_world, span, interval)
        points[f"{name}, as installed"] = tidewell(
            this_world, span, {"refreshInterval": interval}, desktop=peers.TERMINAL)
    return points


def everything(world, seconds):
    """{name: function} of all measurements, in their order."""
    every = {"refreshInterval": 1.0}
    found = {"Tidewell, rates alone": lambda: tidewell(world, seconds, {**RATES_ALONE, **every}, False),
             "Tidewell, as installed": lambda: tidewell(world, seconds, every)}
    for measure, names in ((panel, peers.PANELS), (peer, peers.PEERS)):
        for name in names:
            found[name] = lambda measure=measure, name=name: measure(world, name, seconds)
    for measure in (interfaces, sockets, processes, intervals):
        found[f"growth {measure.__name__}"] = (
            lambda measure=measure: {"points": measure(world, seconds / 4)})
    return found
