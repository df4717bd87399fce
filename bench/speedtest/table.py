"""The generated blocks of docs/speedtest.md, made of the results."""

import links
import report

# nghttpd buffers up to this much for each connection, which delays every reply on it.
SERVER_BUFFER = 65_536

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
    """Round trips per minute in the worse direction, from the independent round trips."""
    def of(loaded, flows, in_buffer):
        wait = flows * in_buffer * 8 / (loaded["mbps"] * 1e3)
        return (60_000 / loaded["roundTrip"] + 60_000 / (loaded["roundTrip"] + wait)) / 2
    last = result["runs"][-1]
    return min(of(result["iperfDown"], last["downFlows"], SERVER_BUFFER),
               of(result["iperfUp"], last["upFlows"], 0))


def link_row(link, result):
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


def blocks(results):
    """{name: text} of what was measured."""
    return {name: report.table(columns, [
        row(link, results[prefix + link.name]) for link in links.LINKS if prefix + link.name in results])
        for name, columns, row, prefix in (("links", COLUMNS, link_row, ""),
                                           ("beside", CLI_COLUMNS, cli_row, "cli "))}
