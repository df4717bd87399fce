"""One measurement each: of a peer, of a panel, of Tidewell."""

import contextlib
import fcntl
import os
import pathlib
import pty
import struct
import subprocess
import termios
import threading
import time

import bus
import peers
import readings
import stage
from children import wait_until
from harness.world import RESIDENT

_BUSCTL = ["busctl", "--user", "--json=short", "get-property", *bus.TIDEWELL]
_HIDE_PING = ('for f in /bin/ping /usr/bin/ping; do mount --bind /dev/null $f 2>/dev/null; done; '
              'exec "$0"')
# Seconds of constant traffic whose rates are read.
LOOK = 12
# What the counters may say beside the sender: they are read some milliseconds late.
LEEWAY = 0.01
# Without what is no part of reading rates: ping, which has no setting, is hidden from it.
RATES_ALONE = {"trackPerProcess": False, "showNotifications": False}


def version(package):
    done = subprocess.run(["dpkg-query", "-W", "-f", "${Version}", package],
                          capture_output=True, text=True)
    return done.stdout if done.returncode == 0 else ""


def panel(this_world, name, seconds):
    package, desktop, configure = peers.PANELS[name]
    with stage.Stage(this_world, desktop, configure) as here:
        time.sleep(stage.SETTLE)
        groups = here.measure(seconds)
    return {"groups": groups, "version": version(package)}


def peer(this_world, name, seconds):
    each = peers.PEERS[name]
    with stage.Stage(this_world, each.desktop) as here:
        folder = _prepare(here, each)
        child, output = _start(here, each, folder)
        time.sleep(stage.SETTLE)
        result = {"groups": here.measure(seconds), "version": version(each.package),
                  "interval": each.interval, "command": " ".join(each.command)}
        if child.poll() is not None:
            raise RuntimeError(f"ended by itself: {output.read_text(errors='replace')[-300:]}")
        if each.parse:
            result["rates"] = _rates(here, lambda: _printed(here, each, folder, output),
                                     lambda text: each.parse(text)[each.skip:])
    return result


def tidewell(this_world, seconds, preferences, with_probe, desktop=stage.XFCE, crowd=None):
    """In a desktop with a panel, which shows its item, or in none; with a crowd to live among."""
    with stage.Stage(this_world, desktop) as here, crowd or contextlib.nullcontext():
        _prefer(here, preferences)
        command = [RESIDENT] if with_probe else ["unshare", "--mount", "sh", "-c", _HIDE_PING,
                                                 RESIDENT]
        child = here.start("tidewell", command)
        if desktop.PANEL:
            wait_until(lambda: bus.registered_items(here.environment), 15, "item in the panel")
        time.sleep(stage.SETTLE)
        result = {"groups": here.measure(seconds)}
        if child.poll() is not None:
            raise RuntimeError(f"ended by itself: {here.messages()[-300:]}")
        if crowd:
            result["helper"] = crowd.helper_costs()
        elif desktop.PANEL:
            result["rates"] = _rates(here, lambda: _samples(here), readings.samples)
            result["text"] = {**result["rates"], "shown": readings.panel_text(
                here.run([*_BUSCTL, "MenubarText"]))}
    return result


def _rates(here, look, parse):
    """What is shown of constant traffic, and what the link carries meanwhile."""
    here.calm()
    before = here.truth()
    text = look()
    truth = [stage.DOWN, stage.UP]
    carried = stage.link(before, here.truth())
    if any(abs(has - should) > LEEWAY * should for has, should in zip(carried, truth)):
        raise RuntimeError(f"the link carried {carried}, not {truth}")
    return {"shown": parse(text), "truth": truth}


def _samples(here):
    time.sleep(LOOK)
    return here.run([*_BUSCTL, "Samples"])


def _printed(here, each, folder, output):
    if each.ask:
        return _ask(here, each, folder)
    shown = output.stat().st_size
    time.sleep(LOOK)
    return output.read_text(errors="replace")[shown:]


def _prefer(here, preferences):
    folder = pathlib.Path(here.environment["XDG_CONFIG_HOME"]) / "tidewell"
    folder.mkdir()
    values = {key: str(value).lower() for key, value in preferences.items()}
    (folder / "preferences.toml").write_text(
        "".join(f"{key} = {value}\n" for key, value in values.items()))


def _prepare(here, each):
    folder = pathlib.Path(here.environment["XDG_CONFIG_HOME"])
    for name, text in each.files.items():
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        (folder / name).write_text(text.replace("{0}", str(here.folder)))
    return folder


def _words(command, folder):
    return [word.replace("{}", str(folder)) for word in command]


def _start(here, each, folder):
    """The process, and the file that what it prints goes to."""
    output = here.folder / "printed"
    command = _words(each.command, folder)
    if each.terminal:
        here.environment["TERM"] = "xterm-256color"
        ours, theirs = _terminal()
        child = here.start("program", command, stdin=theirs, stdout=theirs, stderr=theirs)
        os.close(theirs)
        threading.Thread(target=_drain, args=(ours, output.open("wb")), daemon=True).start()
        return child, output
    with output.open("wb") as file:
        return here.start("program", command, stdout=file, stderr=subprocess.STDOUT), output


def _ask(here, each, folder):
    return here.run(["sh", "-c", 'timeout "$@" 2>/dev/null; true', "sh", str(each.ask_seconds),
                     *_words(each.ask, folder)]) or ""


def _terminal():
    """Both ends of a terminal of 80 columns and 24 lines."""
    ours, theirs = pty.openpty()
    fcntl.ioctl(ours, termios.TIOCSWINSZ, struct.pack("4H", 24, 80, 0, 0))
    return ours, theirs


def _drain(descriptor, file):
    """Until the program on the other side has ended."""
    with file:
        try:
            while data := os.read(descriptor, 65536):
                file.write(data)
                file.flush()
        except OSError:
            os.close(descriptor)
