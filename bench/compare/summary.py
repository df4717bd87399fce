"""Figures to compare, made of what was measured. Pure.

A figure is (mean, least, most); that of memory has no spread.
"""

import statistics

CRITERIA = ("cpu", "wakeups", "pss", "private", "error")
# Two of memory this near to each other are the same; of accuracy, so many points of percent.
NEAR = 0.05
POINTS = 0.2


def figures(group):
    """Of one group's measurement: processor time and wake-ups, memory in megabytes."""
    def spread(name):
        values = [window[name] for window in group["windows"]]
        return statistics.mean(values), min(values), max(values)
    memory = {name: (group[name] / 1024,) * 3 for name in ("pss", "private")}
    return {"cpu": spread("cpu"), "wakeups": spread("wakeups"), **memory}


def minus(more, less):
    """What something adds: the spread is the widest that both leave open."""
    return {name: (more[name][0] - less[name][0], more[name][1] - less[name][2],
                   more[name][2] - less[name][1]) for name in less}


def plus(one, other):
    return {name: tuple(a + b for a, b in zip(one[name], other[name])) for name in one}


def error(rates):
    """The differences from the truth, in percent of it, both directions together."""
    off = [100 * abs(value - truth) / truth
           for shown in rates["shown"] for value, truth in zip(shown, rates["truth"])]
    return (statistics.mean(off), min(off), max(off)) if off else None


def verdict(ours, theirs, criterion):
    """"leads", "level" or "behind", or None where one of them is not known."""
    if ours is None or theirs is None:
        return None
    if criterion in ("cpu", "wakeups"):
        ahead, behind = ours[2] < theirs[1], ours[1] > theirs[2]
    elif criterion == "error":
        ahead, behind = ours[0] < theirs[0] - POINTS, ours[0] > theirs[0] + POINTS
    else:
        ahead = ours[0] < theirs[0] * (1 - NEAR)
        behind = ours[0] * (1 - NEAR) > theirs[0]
    return "leads" if ahead else "behind" if behind else "level"


def rows(results):
    """(name, figures with "error" where rates were read) of all that has been measured, ours first."""
    found = {}
    panel = _of(results, "Xfce panel", "panel")
    for name in ("Tidewell, rates alone", "Tidewell, as installed"):
        alone = _of(results, name, "tidewell")
        if alone:
            exact = _with_error(alone, results[name].get("rates"))
            found[name] = exact
            in_panel = _of(results, name, "panel")
            if panel and in_panel:
                whole = plus(alone, minus(in_panel, panel))
                found[f"{name}, with its item in the Xfce panel"] = _with_error(
                    whole, results[name].get("text"))
    for name, with_it, without in (
            ("Xfce's netload plugin", "Xfce panel with netload", "Xfce panel"),
            ("Waybar's network module", "Waybar with its network module", "Waybar")):
        more, less = _of(results, with_it, "panel"), _of(results, without, "panel")
        if more and less:
            found[name] = minus(more, less)
    for name, result in results.items():
        theirs = _of(results, name, "program")
        if theirs:
            found[name] = _with_error(theirs, result.get("rates"))
    return found


def _of(results, name, group):
    groups = results.get(name, {}).get("groups", {})
    return figures(groups[group]) if group in groups else None


def _with_error(found, rates):
    off = error(rates) if rates else None
    return {**found, "error": off} if off else found
