"""The links, and how each is measured."""

import contextlib
import json
import os
import pathlib
import re
import subprocess
import time
from dataclasses import dataclass

from harness import quality
from harness.world import World

HERE = pathlib.Path(__file__).resolve().parent
CONNECTOR = str(HERE / "connector.py")
CLI_SERVER = str(HERE / "cliServer.py")
RUNS = 3
SERVER_IS_UP = 0.5
# Of iperf3. Up to half a second's worth of data, held back for a lost packet or waiting in the buffer,
# falls inside or outside of this span.
SECONDS = 16
SECONDS_ON_SLOW_LINKS = 40
WARM_UP = 4  # longer for a deep queue, which has to fill
WARM_UP_PER_SECOND_OF_QUEUE = 20
PROBES_PER_SECOND = 10
PROBES_ON_SLOW_LINKS = 3  # so that they take no noticeable share of the link
SLOW = 5  # Mbit/s


@dataclass(frozen=True)
class Link:
    down: float
    up: float
    buffer: int  # milliseconds
    delay: int   # milliseconds, added to a round trip

    @property
    def name(self):
        rate = f"{self.down}" if self.down == self.up else f"{self.down}-{self.up}"
        return f"{rate}M-{self.buffer}ms-{self.delay}ms"


LINKS = [Link(*rates, buffer, delay)
         for rates, buffers in (((1, 1), (50, 500)), ((10, 10), (20, 200)), ((100, 100), (20, 500)),
                                ((1000, 1000), (5, 50)), ((100, 20), (20, 200)))
         for buffer in buffers for delay in (0, 20)]


def trimmed_mean(values):
    kept = sorted(values)[:max(1, len(values) * 95 // 100)]
    return sum(kept) / len(kept)


def finish(world, *command, **options):
    """(what a command on the user's machine printed, what it took)."""
    began = time.monotonic()
    process = world.start("user", *command, stdout=subprocess.PIPE, text=True, **options)
    with process.stdout as output:
        text = output.read()
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    return text, {"wall": time.monotonic() - began, "cpu": usage.ru_utime + usage.ru_stime,
                  "rss": usage.ru_maxrss / 1024}


def run_helper(world, server):
    text, took = finish(world, quality.HELPER, "-s", "-v", env=server.environment())
    patterns = {"down": r"Downlink capacity: ([\d.]+)", "up": r"Uplink capacity: ([\d.]+)",
                "rpm": r"\((\d+) RPM\)", "downFlows": r"Download: (\d+)", "upFlows": r"Upload: (\d+)"}
    return {**{key: float(re.search(pattern, text)[1]) for key, pattern in patterns.items()}, **took}


def load_by_iperf(world, link, flows, rate, *options):
    """Megabits per second of iperf3, and the milliseconds that another program's connections take to
    open meanwhile."""
    seconds = SECONDS if rate > SLOW else SECONDS_ON_SLOW_LINKS
    warm_up = WARM_UP + link.buffer * WARM_UP_PER_SECOND_OF_QUEUE // 1000
    server = world.start("net", "iperf3", "-s", "-1", "-B", "1.1.1.1", stdout=subprocess.DEVNULL)
    time.sleep(SERVER_IS_UP)
    client = world.start("user", "iperf3", "-c", "1.1.1.1", "-P", flows, "-t", seconds,
                         "-O", warm_up, "-J", *options, stdout=subprocess.PIPE, text=True)
    time.sleep(warm_up)
    per_second = PROBES_PER_SECOND if rate > SLOW else PROBES_ON_SLOW_LINKS
    probes = world.run("user", "python3", CONNECTOR, quality.ADDRESS, quality.PORT, per_second,
                       seconds - 1)
    report = json.loads(client.communicate()[0])
    server.wait()
    return {"mbps": report["end"]["sum_received"]["bits_per_second"] / 1e6,
            "roundTrip": trimmed_mean(json.loads(probes))}


def run_cli(world):
    """One run of speedtest-cli against a server that answers like its own."""
    hosts = pathlib.Path(f"/etc/netns/tidewell-{world.name}-user/hosts")
    hosts.write_text(f"127.0.0.1 localhost\n{quality.ADDRESS} www.speedtest.net c.speedtest.net\n")
    server = world.start("net", "python3", CLI_SERVER, quality.ADDRESS)
    try:
        time.sleep(SERVER_IS_UP)
        text, took = finish(world, "speedtest-cli", "--json")
    finally:
        server.kill()
        server.wait()
    report = json.loads(text)
    return {"down": report["download"] / 1e6, "up": report["upload"] / 1e6, **took}


@contextlib.contextmanager
def shaped(link):
    """A world with such a link, and a server in it."""
    world = World()
    try:
        world.do("rate", link.down, link.up, link.buffer)
        if link.delay:
            world.do("delay", link.delay)
        with contextlib.closing(quality.QualityServer(world)) as server:
            yield world, server
    finally:
        world.down()


def measure_cli(link):
    """The helper and speedtest-cli, one after the other."""
    with shaped(link) as (world, server):
        return {"helper": run_helper(world, server), "cli": run_cli(world)}


def measure(link):
    """The helper and iperf3, one after the other."""
    with shaped(link) as (world, server):
        runs = [run_helper(world, server) for _ in range(RUNS)]
        return {"runs": runs,
                "iperfDown": load_by_iperf(world, link, int(runs[-1]["downFlows"]), link.down, "-R"),
                "iperfUp": load_by_iperf(world, link, int(runs[-1]["upFlows"]), link.up)}
