"""The document made of what was measured."""

import links

# nghttpd keeps up to this much of a connection's data in front of every reply.
SERVER_BUFFER = 65_536

HEAD = """# The speed test, measured

Made by `bench/speedtest/measure`: each link in a world of network namespaces, shaped by a token
bucket, TCP cubic, three runs of the helper (release build) against `nghttpd`, then `iperf3` with as
many flows in either direction. On one machine of two cores that also runs the server, and, for the
added delay, a relay in user space.

"""

COLUMNS = ["link (Mbit/s, buffer, added delay)", "iperf3 down / up", "down", "off", "up", "off",
           "RPM", "spread", "from round trips", "off", "wall", "CPU", "memory"]


CLI_COLUMNS = ["link", "helper: down / up", "wall", "CPU", "memory",
               "speedtest-cli: down / up", "wall", "CPU", "memory"]


def span(values, decimals):
    low, high = min(values), max(values)
    texts = [f"{value:.{decimals}f}" for value in (low, high)]
    return texts[0] if texts[0] == texts[1] else " - ".join(texts)


def worst_off(values, truth):
    """The largest difference, in percent of the truth."""
    return max(((value - truth) / truth * 100 for value in values), key=abs)


def expected(result):
    """Round trips per minute of the worse direction, as the independent round trips have it."""
    def of(loaded, flows, in_buffer):
        wait = flows * in_buffer * 8 / (loaded["mbps"] * 1e3)
        return (60_000 / loaded["roundTrip"] + 60_000 / (loaded["roundTrip"] + wait)) / 2
    last = result["runs"][-1]
    return min(of(result["iperfDown"], last["downFlows"], SERVER_BUFFER),
               of(result["iperfUp"], last["upFlows"], 0))


def row(link, result):
    runs = result["runs"]
    down, up, rpm = ([run[key] for run in runs] for key in ("down", "up", "rpm"))
    iperf_down, iperf_up = result["iperfDown"]["mbps"], result["iperfUp"]["mbps"]
    right = expected(result)
    mean = sum(rpm) / len(rpm)
    decimals = 3 if link.down < 10 else 2 if link.down < 100 else 1
    return [
        f"{link.down}/{link.up}, {link.buffer} ms, {link.delay} ms",
        f"{iperf_down:.{decimals}f} / {iperf_up:.{decimals}f}",
        span(down, decimals), f"{worst_off(down, iperf_down):+.1f} %",
        span(up, decimals), f"{worst_off(up, iperf_up):+.1f} %",
        span(rpm, 0), f"{(max(rpm) - min(rpm)) / mean * 100:.1f} %",
        f"{right:.0f}", f"{(mean - right) / right * 100:+.0f} %",
        f"{max(run['wall'] for run in runs):.0f} s", f"{max(run['cpu'] for run in runs):.1f} s",
        f"{max(run['rss'] for run in runs):.1f} MB",
    ]


def cli_row(link, result):
    def half(run):
        return [f"{run['down']:.1f} / {run['up']:.1f}", f"{run['wall']:.0f} s", f"{run['cpu']:.1f} s",
                f"{run['rss']:.0f} MB"]
    return [f"{link.down}/{link.up}, {link.buffer} ms, {link.delay} ms",
            *half(result["helper"]), *half(result["cli"])]


def cli_table(results):
    measured = [link for link in links.LINKS if f"cli {link.name}" in results]
    if not measured:
        return ""
    lines = ["", "Beside speedtest-cli 2.1.3 against a server of ours that answers like its own (one run",
             "each, one after the other; it measures no responsiveness, and over plain HTTP):", "",
             "| " + " | ".join(CLI_COLUMNS) + " |", "|" + "---|" * len(CLI_COLUMNS)]
    lines += ["| " + " | ".join(cli_row(link, results[f"cli {link.name}"])) + " |"
              for link in measured]
    return "\n".join(lines) + "\n"


def text(results):
    lines = ["| " + " | ".join(COLUMNS) + " |", "|" + "---|" * len(COLUMNS)]
    for link in links.LINKS:
        if link.name in results:
            lines.append("| " + " | ".join(row(link, results[link.name])) + " |")
    return HEAD + "\n".join(lines) + "\n" + cli_table(results) + TAIL


TAIL = """
- **off**: the worst of three runs against iperf3. Both count what TCP delivers; the helper counts the
  bytes of its probes, too, because the line carried them.
- **spread**: between the largest and the smallest of three, in percent of their mean. The queue itself
  sways, by a third where it is deep: of nine runs at 100/20, 200 ms, 20 ms one met it fuller than the
  others (a TCP handshake of 211 ms instead of 189) and told 240 RPM.
- **from round trips**: what the responsiveness would have to be by a measurement that knows nothing of
  HTTP. While iperf3 loads the link, another program opens connections; the mean of their fastest 95 %
  is the loaded round trip T, which is what a packet meets on the way. A request on a new connection
  takes T for each of its steps. A request on a loading connection also waits behind what the server
  has taken out of the file and not yet sent: `nghttpd` keeps 64 KiB for each connection, so there the
  wait W is flows x 64 KiB / rate for downloads; the helper keeps its own buffer near zero, so for
  uploads W is 0. By the draft's rule that makes (60000 / T + 60000 / (T + W)) / 2 round trips per
  minute, of which the worse direction counts.
- **wall, CPU, memory**: the worst of three runs. The machine's two processors are threads of one core: the
  relay of an added delay takes from what the other one can do.

Over the loopback interface, with the server on the same two cores, the helper's one thread took 7.6
Gbit/s down at 0.10 s of processor time a gigabit, probes included; the server was the limit.

On a machine that is starved of processor time (a load of twelve on two cores) uploads came out up to
22 percent too low, because what waits in the helper's sockets is kept small for the sake of the probes.
"""
