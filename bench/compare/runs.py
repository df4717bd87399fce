"""One measurement each: of a peer, of a panel, of Tidewell."""

import contextlib
import pathlib
import subprocess
import time

import bus
import desktops
import launch
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
    """Fails for one that is not installed: a panel without its plugin would start all the same."""
    done = subprocess.run(["dpkg-query", "-W", "-f", "${Version}", package],
                          capture_output=True, text=True)
    if done.returncode != 0 or not done.stdout:
        raise RuntimeError(f"{package} is not installed")
    return done.stdout


def panel(this_world, name, seconds):
    package, desktop, configure = peers.PANELS[name]
    installed = version(package)
    with stage.Stage(this_world, desktop, configure) as here:
        time.sleep(stage.SETTLE)
        groups = here.measure(seconds)
    return {"groups": groups, "version": installed}


def peer(this_world, name, seconds):
    each = peers.PEERS[name]
    installed = version(each.package)
    with stage.Stage(this_world, each.desktop) as here:
        folder = launch.prepare(here, each)
        child, output = launch.start(here, each, folder)
        time.sleep(stage.SETTLE)
        result = {"groups": here.measure(seconds), "version": installed,
                  "interval": each.interval, "command": " ".join(each.command)}
        if child.poll() is not None:
            raise RuntimeError(f"ended by itself: {output.read_text(errors='replace')[-300:]}")
        if each.parse:
            result["rates"] = _rates(here, lambda: _printed(here, each, folder, output),
                                     lambda text: each.parse(text)[each.skip:])
    return result


def tidewell(this_world, seconds, preferences, with_probe, desktop=desktops.XFCE, crowd=None):
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
            shown = []
            result["rates"] = _rates(here, lambda: _samples(here, shown), readings.samples)
            result["text"] = {**result["rates"], "shown": readings.panel_text("\n".join(shown))}
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


def _samples(here, texts):
    """The resident's last samples; and, in the list, what the panel's text was meanwhile."""
    for _ in range(LOOK):
        time.sleep(1)
        texts.append(here.run([*_BUSCTL, "MenubarText"]))
    return here.run([*_BUSCTL, "Samples"])


def _printed(here, each, folder, output):
    if each.ask:
        return launch.ask(here, each, folder)
    shown = output.stat().st_size
    time.sleep(LOOK)
    return output.read_text(errors="replace")[shown:]


def _prefer(here, preferences):
    folder = pathlib.Path(here.environment["XDG_CONFIG_HOME"]) / "tidewell"
    folder.mkdir()
    values = {key: str(value).lower() for key, value in preferences.items()}
    (folder / "preferences.toml").write_text(
        "".join(f"{key} = {value}\n" for key, value in values.items()))
