"""A test world: three network namespaces made by the script `world`."""

import itertools
import json
import os
import pathlib
import re
import subprocess

HERE = pathlib.Path(__file__).resolve().parent.parent
SCRIPT = str(HERE / "world")

# The address at which senders in the net reach the user, whichever interface is in use.
USER = "203.0.113.2"
PROBED = "1.1.1.1"
DISCARD = "9"

# Bytes per second on the interface for eight megabits per second of IP packets in frames of 1,000 bytes,
# with 14 bytes of Ethernet header each. Without the header the rate would be on the border between the
# texts "1000K" and "1.0M".
EIGHT_MEGABITS = 1_000_000 * 1000 // 986

# SECONDS TIMES: prints a rate for each span.
_RATES = """
import sys, time
file = open("/sys/class/net/eth0/statistics/rx_bytes")
def look():
    file.seek(0)
    return int(file.read()), time.monotonic()
before, begin = look()
for _ in range(int(sys.argv[2])):
    time.sleep(float(sys.argv[1]))
    after, end = look()
    print((after - before) / (end - begin))
    before, begin = after, end
"""

_numbers = itertools.count()


# Outside of CTest the development build is tested.
_BUILD = HERE.parent.parent / "build" / "dev"
_TOOLS = pathlib.Path(os.environ.get("TIDEWELL_WORLD_TOOLS", _BUILD / "tests" / "world"))
RESIDENT = os.environ.get("TIDEWELL_RESIDENT", str(_BUILD / "src" / "tidewell"))
CONTROL = os.environ.get("TIDEWELL_CONTROL", str(_BUILD / "src" / "tidewellctl"))
VERSION = re.search(r"VERSION ([\d.]+)", (HERE.parent.parent / "CMakeLists.txt").read_text().split("project(")[1])[1]


def tool(name):
    """The path of one of the programs of this folder."""
    return str(_TOOLS / name)


def sender(where, rate, seconds=86400, frame=500, host=None):
    """The command of a constant-rate sender: towards the user from "net", towards the net from "user"."""
    host = host or (USER if where == "net" else PROBED)
    return [tool("sender"), host, DISCARD, str(rate), str(seconds), str(frame)]


def check():
    """None if this machine allows worlds, otherwise the reason."""
    result = subprocess.run([SCRIPT, "check"], capture_output=True, text=True)
    return None if result.returncode == 0 else result.stdout.strip() or result.stderr.strip()


class World:
    def __init__(self, name=None):
        """Creates a world, or uses the existing one of that name."""
        self.name = name or f"{os.getpid()}-{next(_numbers)}"
        self._call("up", self.name)

    def down(self):
        self._call("down", self.name)

    def do(self, *verb):
        """One of the script's verbs, for example do("rate", 8, 4)."""
        self._call("-n", self.name, *map(str, verb))

    def command(self, where, *command):
        """The command line that runs a command in a namespace: "user", "router" or "net"."""
        return ["ip", "netns", "exec", f"tidewell-{self.name}-{where}", *map(str, command)]

    def run(self, where, *command):
        """Runs a command to its end. Returns what it printed."""
        return subprocess.run(
            self.command(where, *command), check=True, capture_output=True, text=True
        ).stdout

    def start(self, where, *command, **options):
        return subprocess.Popen(self.command(where, *command), **options)

    def counters(self, interface="eth0", where="user"):
        """What the interface has received and sent, in bytes, by its own count."""
        folder = f"/sys/class/net/{interface}/statistics"
        text = self.run(where, "cat", f"{folder}/rx_bytes", f"{folder}/tx_bytes")
        received, sent = text.split()
        return int(received), int(sent)

    def rates(self, seconds, times=1, where="user"):
        """Bytes a second that eth0 receives. One process takes all readings: starting one for each takes
        too long on a busy machine."""
        text = self.run(where, "python3", "-c", _RATES, seconds, times)
        return [float(rate) for rate in text.split()]

    def sender(self, where, rate, seconds=600, **options):
        return Sender(self.command(where, *sender(where, rate, seconds, **options)))

    def ping(self, count=1):
        """The round-trip times of some probes in milliseconds; lost ones are missing."""
        result = subprocess.run(
            self.command("user", "ping", "-n", "-c", count, "-i", "0.2", "-W", "1", PROBED),
            capture_output=True, text=True, env={**os.environ, "LC_ALL": "C"},
        )
        lines = [line for line in result.stdout.splitlines() if "time=" in line]
        return [float(line.split("time=")[1].split()[0]) for line in lines]

    @staticmethod
    def _call(*arguments):
        result = subprocess.run([SCRIPT, *arguments], capture_output=True, text=True)
        if result.returncode != 0:
            raise RuntimeError(f"world {' '.join(arguments)}: {result.stderr or result.stdout}")


class Sender:
    def __init__(self, command):
        self._process = subprocess.Popen(command, stdout=subprocess.PIPE, text=True)

    def wait(self):
        """Waits for its end. Returns what it sent."""
        return json.loads(self._process.communicate()[0])

    def stop(self):
        """Ends it. Returns what it sent."""
        self._process.terminate()
        return self.wait()
