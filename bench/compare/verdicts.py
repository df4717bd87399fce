"""Where Tidewell leads and where not, by the figures; and why not, and what comes next."""

import summary

WORDS = {"leads": "leads", "level": "level", "behind": "**does not lead**", None: ""}
NAMES = {"cpu": "processor time", "wakeups": "wake-ups", "pss": "PSS", "private": "private memory",
         "error": "rate error of what is shown"}

# (reason, next step) of each criterion, and where a program has one of its own.
_REASONS = {
    "cpu": ("Each sample that changes the text goes over the session bus, to the panel and to whoever "
            "else follows; the other draws its number itself, or prints it.",
            "Split a sample's processor time into counters, announcement and picture, and shorten "
            "the longest."),
    "wakeups": ("A sample is taken on a thread of its own and told by the main one, which then answers "
                "the panel's questions about the new text: up to three wake-ups for one sample.",
                "Take the sample on the main thread where nothing can block it: one wake-up fewer."),
    "pss": ("Tidewell maps the libraries of C++ and of the bus, which the other does without or shares "
            "with more programs of this session.",
            "See which pages of libsystemd and libstdc++ are touched after the start, and why."),
    "private": ("Two libraries' relocated tables, the last 300 samples and three threads' stacks are "
                "written memory; the other has fewer of each.",
                "Count the written pages by library, and link statically what is mostly tables."),
    "error": ("The text in the panel has two or three digits, so that it keeps its width and is read "
              "at a glance. The bus and the windows have the exact number (see the table).",
              "None while nobody asks: more digits would be a preference."),
}
_OF_PROGRAMS = {
    ("cpu", "vnstatd"): (
        "It looks rarely, for its database, and shows nothing by itself.",
        "None: who wants that chooses a longer interval (see the curve)."),
    ("wakeups", "vnstatd"): (
        "It looks rarely, for its database, and shows nothing by itself.",
        "None: who wants that chooses a longer interval (see the curve)."),
    ("cpu", "bwm-ng"): (
        "It reads one file and prints one line: no bus, no item, no look at routes and settings.",
        "Split a sample's processor time into counters, announcement and picture, and shorten the "
        "longest."),
    ("pss", "bwm-ng"): (
        "It is a C program that maps little more than the C library.",
        "See which pages of libsystemd and libstdc++ are touched after the start, and why."),
}
_PROBE = ("A fifth of the samples comes with a run of ping, a process each time, to tell the line's "
          "latency; the other tells none.",
          "An echo request from a socket of the resident's own, where the kernel lets users send "
          "them, would save the process.")
_PANEL = ("The panel asks for everything about the item and draws it anew whenever the text changes, "
          "which in this measurement it does with every sample.",
          "Look at which of the announced changes make it ask twice; leave out the picture where a "
          "panel shows the label.")

# Ours that are compared, and what explains them where the resident alone is not to blame.
OURS = ("Tidewell, rates alone", "Tidewell, as installed",
        "Tidewell, rates alone, with its item in the Xfce panel",
        "Tidewell, as installed, with its item in the Xfce panel")
RESIDENTS, WHOLES = OURS[:2], OURS[2:]


def compare(rows, ours):
    """{(peer, criterion): verdict} of one of ours against every other program."""
    if ours not in rows:
        return {}
    found = {}
    for peer in (name for name in rows if name not in OURS):
        for criterion in summary.CRITERIA:
            figure = rows[ours].get(criterion)
            if criterion == "error":
                figure = _shown_error(rows, ours)
            found[peer, criterion] = summary.verdict(figure, rows[peer].get(criterion), criterion)
    return found


def reason(ours, criterion, peer, rows):
    """(reason, next step) of where it does not lead."""
    if criterion in ("cpu", "wakeups"):
        base = RESIDENTS[OURS.index(ours) % 2]
        if ours in WHOLES and compare(rows, base).get((peer, criterion)) != "behind":
            return _PANEL
        if ours == RESIDENTS[1] and compare(rows, RESIDENTS[0]).get((peer, criterion)) != "behind":
            return _PROBE
    if ours in WHOLES and criterion in ("pss", "private") and (
            compare(rows, RESIDENTS[OURS.index(ours) % 2]).get((peer, criterion)) != "behind"):
        return ("The panel keeps the item's pictures and its menu.",
                "Send the picture in the one size that the panel shows.")
    return _OF_PROGRAMS.get((criterion, peer), _REASONS[criterion])


def _shown_error(rows, ours):
    """That of the text in the panel, as others are judged by what they show."""
    return rows.get(WHOLES[OURS.index(ours) % 2], {}).get("error")
