"""The generated blocks of docs/comparison.md, made of the results."""

import statistics

from peers import PEERS
from report import spread, table

# How far apart two figures are level: memory as a share, accuracy in points of percent.
NEAR = 0.05
POINTS = 0.2

CRITERIA = {"cpu": "processor time", "wakeups": "wake-ups", "pss": "PSS", "private": "private memory",
            "error": "rate error of what is shown"}
OURS = ("Tidewell, rates alone", "Tidewell, as installed")
IN_PANEL = ", with its item in the Xfce panel"
PLUGINS = {"Xfce's netload plugin": ("Xfce panel with netload", "Xfce panel"),
           "Waybar's network module": ("Waybar with its network module", "Waybar")}

_GROWTH = {"interfaces": "further interfaces", "sockets": "TCP connections",
           "processes": "further processes", "intervals": "interval"}
_RESIDENT = ["CPU %", "wake-ups a second", "PSS MB", "private MB"]


def rows(results):
    """{name: figures} of Tidewell and of all other programs that were measured."""
    found = {}
    for name in OURS:
        ours = results.get(name, {})
        if "program" in ours:
            found[name] = ours["program"]
        if "text" in ours and "panel" in results.get("Xfce panel", {}):
            item = minus(ours["panel"], results["Xfce panel"]["panel"])
            found[name + IN_PANEL] = {**{key: [a + b for a, b in zip(ours["program"][key], item[key])]
                                         for key in item}, "error": ours["text"]}
    for name, (more, less) in PLUGINS.items():
        if "panel" in results.get(more, {}) and "panel" in results.get(less, {}):
            found[name] = minus(results[more]["panel"], results[less]["panel"])
    found.update({name: results[name]["program"] for name in PEERS if "program" in results.get(name, {})})
    return found


def minus(more, less):
    """What something adds, with the widest spread that both leave open."""
    return {key: [more[key][0] - less[key][0], more[key][1] - less[key][2], more[key][2] - less[key][1]]
            for key in less}


def verdict(ours, theirs, criterion):
    """How Tidewell compares, or "" where one of them is not known."""
    if not ours or not theirs:
        return ""
    if criterion in ("cpu", "wakeups"):
        leads, trails = ours[2] < theirs[1], ours[1] > theirs[2]
    elif criterion == "error":
        leads, trails = ours[0] < theirs[0] - POINTS, ours[0] > theirs[0] + POINTS
    else:
        leads, trails = ours[0] < theirs[0] * (1 - NEAR), ours[0] * (1 - NEAR) > theirs[0]
    return "leads" if leads else "**does not lead**" if trails else "level"


def figure(values, decimals):
    """The mean, and least and most where they differ. A zero has no sign."""
    middle, least, most = (f"{round(value, decimals) + 0.0:.{decimals}f}" for value in values)
    return middle if least == most else f"{middle} ({least} - {most})"


def _programs(results):
    groups = [group for result in results.values() if isinstance(result, dict)
              for group in result.values() if isinstance(group, dict) and "others" in group]
    means, least, most = zip(*(group["others"] for group in groups))
    return (f"\n{results['machine']}\n\nThe rest of the machine, with the senders and the display, took "
            f"{statistics.median(means):.0f} % of one processor meanwhile, between {min(least):.0f} and "
            f"{max(most):.0f}.\n" + table(["", *_RESIDENT, "rate error %"], [
                [name, figure(row["cpu"], 3), figure(row["wakeups"], 1), figure(row["pss"][:1] * 3, 1),
                 figure(row["private"][:1] * 3, 1), "{0:.2f} (worst {2:.2f})".format(*row["error"])
                 if "error" in row else "not readable"] for name, row in rows(results).items()]))


def _verdicts(found):
    text = ""
    for ours in [name for name in found if name.startswith(OURS)]:
        shown = found.get(ours.removesuffix(IN_PANEL) + IN_PANEL, {}).get("error")
        text += f"\n### {ours}\n" + table(["against", *CRITERIA.values()], [
            [name, *(verdict(shown if key == "error" else found[ours][key], theirs.get(key), key)
                     for key in CRITERIA)]
            for name, theirs in found.items() if not name.startswith(OURS)])
    return text


def _resident(point):
    """Means, because some costs occur only once in several samples."""
    cpu, wakeups, pss, private = (point["program"][key][0]
                                  for key in ("cpu", "wakeups", "pss", "private"))
    return [f"{cpu:.3f}", f"{wakeups:.1f}", f"{pss:.1f}", f"{private:.2f}"]


def _helper(point):
    return [f"{spread(cost['milliseconds'], 1)}, {cost['peak'] / 1024:.1f}" if cost else "refused"
            for cost in point.get("helper", {}).values()]


def blocks(results):
    """{name: text} of what was measured."""
    found = rows(results)
    made = {"programs": _programs(results), "verdicts": _verdicts(found)} if found else {}
    made["versions"] = table(["program", "version", "started as", "shows every"], [
        [name, result["version"], f"`{result['command']}`" if "command" in result else
         "in the session's panel", result.get("interval", "1 s")]
        for name, result in results.items() if "version" in result])
    for name, unit in _GROWTH.items():
        points = results.get(f"growth {name}", {}).get("points", {})
        helper = ["by eBPF: CPU ms, MB", "by inet_diag: CPU ms, MB"]
        if points:
            made[name] = table([unit, *_RESIDENT, *(helper if "helper" in str(points) else [])], [
                [count, *_resident(point), *_helper(point)] for count, point in points.items()])
    return made
