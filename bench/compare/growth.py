"""How Tidewell's cost grows with what it lives among, and with how often it looks."""

import subprocess

import desktops
import runs
import stage
from crowds import Processes, Sockets

ONCE_A_SECOND = {"refreshInterval": 1.0}
INTERFACES = (1, 10, 100, 1000)
SOCKETS = (10, 100, 1000, 10_000)
PROCESSES = (100, 1000, 10_000)
INTERVALS = (1, 2, 3, 5)
# The probe comes with every fifth sample: so many samples hold two.
TWO_PROBES = 10


def _resident(this_world, seconds, crowd=None):
    return runs.tidewell(this_world, seconds, {**runs.RATES_ALONE, **ONCE_A_SECOND},
                         with_probe=False, desktop=desktops.TERMINAL, crowd=crowd)


def interfaces(_world, seconds):
    """In a world of its own, which takes them along at the end."""
    own = stage.make_world("interfaces")
    points, made = {}, 0
    try:
        for count in INTERFACES:
            _add_interfaces(own, made, count)
            made = count
            points[str(count)] = _resident(own, seconds)
    finally:
        own.down()
    return {"points": points}


def _add_interfaces(own, first, end):
    """Links to the router."""
    names = [f"more{number}" for number in range(first, end)]
    router = own.command("router", "true")[3]
    _batch(own, "user", [f"link add {name} up type veth peer name {name} netns {router}"
                         for name in names])
    _batch(own, "router", [f"link set {name} up" for name in names])


def _batch(own, where, lines):
    subprocess.run(own.command(where, "ip", "-batch", "-"), input="\n".join(lines), text=True,
                   check=True)


def sockets(this_world, seconds):
    return {"points": {str(count): _resident(this_world, seconds, Sockets(this_world, count))
                       for count in SOCKETS}}


def processes(this_world, seconds):
    return {"points": {str(count): _resident(this_world, seconds, Processes(this_world, count))
                       for count in PROCESSES}}


def intervals(this_world, seconds):
    points = {}
    for interval in INTERVALS:
        often = {"refreshInterval": float(interval)}
        points[str(interval)] = {
            "alone": runs.tidewell(this_world, max(seconds, TWO_PROBES / 2 * interval),
                                   {**runs.RATES_ALONE, **often}, with_probe=False,
                                   desktop=desktops.TERMINAL),
            "installed": runs.tidewell(this_world, max(seconds, TWO_PROBES * interval), often,
                                       with_probe=True, desktop=desktops.TERMINAL),
        }
    return {"points": points}


MEASUREMENTS = {"interfaces": interfaces, "sockets": sockets, "processes": processes,
                "intervals": intervals}
