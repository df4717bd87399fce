"""The links that are measured, and how one is."""

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
# Of iperf3. What TCP holds back until a lost packet has come again, and what waits in the buffer,
# falls on one side of its ends or the other: up to half a second's worth.
SECONDS = 16
SECONDS_ON_SLOW_LINKS = 40
WARM_UP = 4  # and longer the deeper the queue is that has to fill
WARM_UP_PER_SECOND_OF_QUEUE = 20
PROBES_PER_SECOND = 10
PROBES_ON_SLOW_LINKS = 3  # not to take a share of the link that counts
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


def run_helper(world, server):
    """One run: what it printed, and what it took."""
    begin = time.monotonic()
    process = world.start("user", quality.HELPER, "-s", "-v", env=server.environment(),
                          stdout=subprocess.PIPE, text=True)
    _, status, usage = os.wait4(process.pid, 0)
    text = process.stdout.read()
    process.stdout.close()
    process.returncode = os.waitstatus_to_exitcode(status)
    wall = time.monotonic() - begin

    def number(pattern):
        found = re.search(pattern, text)
        return float(found[1]) if found else None

    return {
        "down": number(r"Downlink capacity: ([\d.]+)"), "up": number(r"Uplink capacity: ([\d.]+)"),
        "rpm": number(r"\((\d+) RPM\)"), "wall": wall, "cpu": usage.ru_utime + usage.ru_stime,
        "rss": usage.ru_maxrss / 1024,
        "downFlows": number(r"Download: (\d+)"), "upFlows": number(r"Upload: (\d+)"),
        "details": [line for line in text.splitlines() if " ms: " in line],
    }


def load_by_iperf(world, link, flows, rate, *options):
    """Megabits per second that iperf3 gets through, and meanwhile the round trip of connections
    that somebody else opens, in milliseconds."""
    seconds = SECONDS if rate > SLOW else SECONDS_ON_SLOW_LINKS
    warm_up = WARM_UP + link.buffer * WARM_UP_PER_SECOND_OF_QUEUE // 1000
    server = world.start("net", "iperf3", "-s", "-1", "-B", "1.1.1.1", stdout=subprocess.DEVNULL)
    server_is_up = 0.3
    time.sleep(server_is_up)
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
        time.sleep(0.5)
        begin = time.monotonic()
        process = world.start("user", "speedtest-cli", "--json", stdout=subprocess.PIPE, text=True)
        text = process.stdout.read()
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        wall = time.monotonic() - begin
    finally:
        server.kill()
        server.wait()
    report = json.loads(text)
    return {"down": report["download"] / 1e6, "up": report["upload"] / 1e6, "wall": wall,
            "cpu": usage.ru_utime + usage.ru_stime, "rss": usage.ru_maxrss / 1024}


def measure_cli(link):
    """The helper and speedtest-cli on one link, one after the other."""
    world = World()
    try:
        world.do("rate", link.down, link.up, link.buffer)
        if link.delay:
            world.do("delay", link.delay)
        server = quality.QualityServer(world)
        try:
            helper = run_helper(world, server)
        finally:
            server.close()
        return {"helper": helper, "cli": run_cli(world)}
    finally:
        world.down()


def measure(link):
    world = World()
    try:
        world.do("rate", link.down, link.up, link.buffer)
        if link.delay:
            world.do("delay", link.delay)
        server = quality.QualityServer(world)
        try:
            runs = [run_helper(world, server) for _ in range(RUNS)]
            down = load_by_iperf(world, link, int(runs[-1]["downFlows"]), link.down, "-R")
            up = load_by_iperf(world, link, int(runs[-1]["upFlows"]), link.up)
            return {"runs": runs, "iperfDown": down, "iperfUp": up}
        finally:
            server.close()
    finally:
        world.down()
