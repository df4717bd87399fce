"""The document made of what was measured."""

import statistics

import summary
import verdicts
from curves import curves

HEAD = """# Tidewell beside other monitors

Written by `bench/compare/measure` from what it measured (`bench/compare/results.json`).

"""

HOW = """
## How

A machine of the test world (`tests/world`) on a link of 20 Mbit/s down and 6 up. 1,234,000 bytes a
second come down and 345,000 go up, Ethernet headers included, from a sender that keeps such a rate
exactly; while costs are measured 555,000 more come down in every other second, so that whatever shows
a rate has to show another one. Every program runs alone with its desktop, on a virtual screen, for
{settle} seconds before it is watched for {seconds}, in {windows} windows.

- **CPU**: percent of one processor, by the kernel's account of a control group that holds the program
  and everything that it starts, those that have ended, too. Mean, and least and most of the windows.
  Neither the display server's nor the bus daemon's share is in anybody's figure.
- **wake-ups**: voluntary sleeps a second of all threads of the processes that live all the time.
- **PSS, private**: their proportional memory, and what they alone have written.
- **rate error**: of the rates shown while the traffic is constant, both directions, from the
  sender's; median and worst. For Tidewell in the panel it is the text; for the resident the number on
  the bus. nethogs counts without Ethernet headers, 14 bytes of 1,000 here, which explains 1.4 %; what
  else it reads low at a constant rate is not explained here. For vnstat it is the answer of
  `vnstat -tr`. What is drawn only no program can read: polybar prints its text instead of drawing it
  in a second run; for gkrellm, btop, gnome-system-monitor and the plugins there is no such way.
- Plugins of a panel are the panel with them less the panel without; so is what the panel spends on
  Tidewell's item. The least and the most of such a difference are what the windows leave open.
- *Rates alone* is Tidewell with ping hidden from it and programs and notices switched off; *as
  installed* has every default. Both sample once a second, like the others; the default is every
  two seconds (see the curve).

"""

TAIL = """
## Again

```sh
sudo scripts/installPackages build run desktop desktops world bench
scripts/buildPreset release tidewell tidewell_nettop tidewell_publicAddress tidewell_notificationSound \\
  sender talker
sudo bench/compare/measure all           # half an hour, on a machine that does nothing else
sudo bench/compare/measure --seconds 20 conky "growth intervals"
bench/compare/measure table
```
"""

COLUMNS = ["", "CPU %", "wake-ups a second", "PSS MB", "private MB", "rate error %"]


def text(results):
    rows = summary.rows(results)
    parts = [HEAD, _machine(results.get("machine", {})), _noise(results), _programs(rows), _verdicts(rows),
             _reasons(rows), _missing(results), _how(results), _commands(results), curves(results),
             TAIL]
    return "".join(parts)


def markdown(columns, lines):
    return "\n".join(["| " + " | ".join(columns) + " |", "|" + "---|" * len(columns),
                      *("| " + " | ".join(line) + " |" for line in lines)]) + "\n"


def span(figure, decimals):
    """The mean, and least and most where they differ."""
    middle, least, most = (_plain(value, decimals) for value in figure)
    return middle if least == most else f"{middle} ({least} - {most})"


def _plain(value, decimals):
    """Never a zero with a sign."""
    return f"{round(value, decimals) + 0.0:.{decimals}f}"


def _machine(machine):
    if not machine:
        return ""
    return (f"{machine['processors']} processors ({machine['processor']}), {machine['memory']} MB, "
            f"{machine['system']}, kernel {machine['kernel']}; {machine['build']} build of "
            f"{machine['commit']}.\n\n")


def _noise(results):
    """What the rest of the machine did meanwhile, the senders and the display included."""
    others = [window["others"] for result in results.values()
              for group in result.get("groups", {}).values() for window in group["windows"]]
    if not others:
        return ""
    return ("Everything else on the machine, the senders and the display included, took "
            f"{statistics.median(others):.0f} % of one processor meanwhile, between "
            f"{min(others):.0f} and {max(others):.0f}.\n\n")


def _programs(rows):
    lines = []
    for name, row in rows.items():
        off = row.get("error")
        lines.append([name, span(row["cpu"], 3), span(row["wakeups"], 1),
                      _plain(row["pss"][0], 1), _plain(row["private"][0], 1),
                      f"{off[0]:.2f} (worst {off[2]:.2f})" if off else "not readable"])
    return markdown(COLUMNS, lines)


def _verdicts(rows):
    columns = ["against", *(verdicts.NAMES[criterion] for criterion in summary.CRITERIA)]
    found = ["\n## Where Tidewell leads, and where not\n\nBy the figures: *level* is where the windows "
             "overlap, and for memory and accuracy within five percent.\n"]
    for ours in verdicts.OURS:
        compared = verdicts.compare(rows, ours)
        peers = dict.fromkeys(peer for peer, _ in compared)
        lines = [[peer, *(verdicts.WORDS[compared[peer, criterion]]
                          for criterion in summary.CRITERIA)] for peer in peers]
        if lines:
            found.append(f"\n### {ours}\n\n" + markdown(columns, lines))
    return "".join(found)


def _reasons(rows):
    """Each reason once, with the places that it is for."""
    places = {}
    for ours in verdicts.OURS:
        for (peer, criterion), verdict in verdicts.compare(rows, ours).items():
            if verdict == "behind":
                why = (criterion, *verdicts.reason(ours, criterion, peer, rows))
                places.setdefault(why, {}).setdefault(ours, []).append(peer)
    lines = []
    for (criterion, why, after), where in places.items():
        beside = "; ".join(f"{ours}: {', '.join(peers)}" for ours, peers in where.items())
        lines.append([verdicts.NAMES[criterion], beside, why, after])
    if not lines:
        return ""
    return "\n### Why not, and what comes next\n\n" + markdown(
        ["", "beside", "reason", "next step"], lines)


def _missing(results):
    failed = [f"- {name}: {result['error']}\n" for name, result in results.items()
              if "error" in result]
    return "\n## Not measured\n\n" + "".join(failed) if failed else ""


def _how(results):
    measured = next((r for r in results.values() if "groups" in r), None)
    if not measured:
        return ""
    spans = sorted({f"{r['seconds']:g}" for r in results.values() if "groups" in r}, key=float)
    return HOW.format(settle=measured["settle"], seconds=" or ".join(spans),
                      windows=len(next(iter(measured["groups"].values()))["windows"]))


def _commands(results):
    lines = [[name, result["version"], f"`{result['command']}`" if "command" in result else
              "in the session's panel", result.get("interval", "1 s")]
             for name, result in results.items() if result.get("version")]
    return markdown(["program", "version", "started as", "shows every"], lines) if lines else ""
