"""The tables of how Tidewell's cost grows. Pure."""

import statistics

_RESIDENT = ["CPU %", "wake-ups a second", "PSS MB", "private MB"]
_HELPER = ["by eBPF: CPU ms, MB", "by inet_diag: CPU ms, MB"]

_TITLES = {
    "interfaces": ("further interfaces", "Interfaces", "All of them are up; the resident, rates "
                   "alone, looks once a second at the one that leads to the internet."),
    "sockets": ("TCP connections", "Sockets", "Ten of them say something all the time. The helper is "
                "`nettop`, which runs while programs are being looked at; its figures are for one run "
                "(middle, least and most of five), and the highest resident memory."),
    "processes": ("further processes", "Processes", "They do nothing, beside ten TCP connections that "
                  "say something. The helper as above."),
    "intervals": ("seconds", "Intervals", "Two seconds is the default."),
}


def curves(results):
    found = {name: results.get(f"growth {name}", {}).get("points") for name in _TITLES}
    if not any(found.values()):
        return ""
    return "\n## How it grows\n\nThe resident without a panel.\n" + "".join(
        _curve(name, points) for name, points in found.items() if points)


def _curve(name, points):
    unit, title, told = _TITLES[name]
    if name == "intervals":
        columns = [unit, *(f"rates alone: {column}" for column in _RESIDENT[:2]),
                   *(f"as installed: {column}" for column in _RESIDENT)]
        lines = [[count, *resident(point["alone"])[:2], *resident(point["installed"])]
                 for count, point in points.items()]
    else:
        helped = any("helper" in point for point in points.values())
        columns = [unit, *_RESIDENT, *(_HELPER if helped else [])]
        lines = [[f"{int(count):,}", *resident(point), *_helper(point)]
                 for count, point in points.items()]
    table = ["| " + " | ".join(columns) + " |", "|" + "---|" * len(columns),
             *("| " + " | ".join(line) + " |" for line in lines)]
    return f"\n### {title}\n\n{told}\n\n" + "\n".join(table) + "\n"


def resident(point):
    """Its mean costs: what comes once in several samples is to be in them."""
    group = point["groups"]["tidewell"]
    cpu, wakeups = (statistics.mean(window[name] for window in group["windows"])
                    for name in ("cpu", "wakeups"))
    return [f"{cpu:.3f}", f"{wakeups:.1f}", f"{group['pss'] / 1024:.1f}",
            f"{group['private'] / 1024:.2f}"]


def _helper(point):
    if "helper" not in point:
        return []
    return [_cost(point["helper"][route]) for route in ("bpf", "diag")]


def _cost(cost):
    if not cost:
        return "refused"
    spent = sorted(cost["milliseconds"])
    return (f"{statistics.median(spent):.1f} ({spent[0]:.1f} - {spent[-1]:.1f}), "
            f"{cost['peak'] / 1024:.1f}")
