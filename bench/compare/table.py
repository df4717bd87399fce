"""The document made of what was measured."""

import statistics

import summary
import verdicts
from curves import curves
from prose import HEAD, HOW, TAIL

COLUMNS = ["", "CPU %", "wake-ups a second", "PSS MB", "private MB", "rate error %"]


def text(results):
    rows = summary.rows(results)
    parts = [HEAD, _machine(results.get("machine", {})), _noise(results), _programs(rows),
             _verdicts(rows), _reasons(rows), _missing(results), _how(results), _commands(results),
             curves(results), TAIL]
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
            f"{machine['commit']} by {machine['compiler']}.\n\n")


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
             "overlap, for memory within five percent, and for accuracy within 0.2 points.\n"]
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
        lines.append([verdicts.NAMES[criterion], _beside(where), why, after])
    if not lines:
        return ""
    return "\n### Why not, and what comes next\n\n" + markdown(
        ["", "beside", "reason", "next step"], lines)


def _beside(where):
    """"rates alone, as installed: conky, polybar" of the peers by ours."""
    ours_of = {}
    for ours, peers in where.items():
        ours_of.setdefault(", ".join(peers), []).append(verdicts.short(ours))
    return "; ".join(f"{', '.join(ours)}: {peers}" for peers, ours in ours_of.items())


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
