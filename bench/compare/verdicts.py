"""Where Tidewell leads and where not, by the figures; and why not, and what comes next."""

import summary

WORDS = {"leads": "leads", "level": "level", "behind": "**does not lead**", None: ""}
NAMES = {"cpu": "processor time", "wakeups": "wake-ups", "pss": "PSS", "private": "private memory",
         "error": "rate error of what is shown"}

# (reason, next step) of each criterion, and where a program has one of its own.
_LIBRARIES = ("Measure on Debian 13, whose libsystemd is said to load them only when they are needed; "
              "there see which pages of libsystemd and libstdc++ are still touched, and why.")
_SPLIT = ("Split a sample's processor time into counters, announcement and picture, and shorten the "
          "longest.")
_REASONS = {
    "cpu": ("Each sample goes over the session bus to whoever follows, and a new text to the panel, "
            "which asks for its picture; the other draws its number itself, or prints it.", _SPLIT),
    "wakeups": ("A sample is one wake-up. A new text is announced as a new picture and a new tool tip, "
                "and the panel's questions after that are one or two more.",
                "Answer what a panel asks after both announcements at one waking."),
    "pss": ("Tidewell maps the libraries of C++ and of the bus, and those that the latter brings "
            "along, fourteen in all; the other does with fewer, or shares them with more programs "
            "of this session.", _LIBRARIES),
    "private": ("One half is heap and stacks (bus, 300 samples, threads), the other the relocated "
                "tables of fourteen libraries, most of which come along with libsystemd.", _LIBRARIES),
    "error": ("The text in the panel has two or three digits, so that it keeps its width and is read "
              "at a glance. The bus and the windows have the exact number (see the table).",
              "None while nobody asks: more digits would be a preference."),
}
_RARELY = ("It looks every few seconds and writes to its database every few minutes; it shows nothing "
           "by itself.",
           "None: who wants that chooses a longer interval (see the curve).")
_OF_PROGRAMS = {
    ("cpu", "vnstatd"): _RARELY,
    ("wakeups", "vnstatd"): _RARELY,
    ("cpu", "bwm-ng"): ("It reads one file and prints one line: no bus, no item, no look at routes and "
                        "settings.", _SPLIT),
    ("pss", "bwm-ng"): ("It is a C program that maps little more than the C library.", _LIBRARIES),
}
_PROBE = ("With every fifth sample ping is run, a process each time, to tell the line's latency; the "
          "other tells none.",
          "An echo request from a socket of the resident's own, where the kernel lets users send "
          "them, would save the process.")
_PANEL = ("The panel asks for the item's properties and draws it anew whenever the text changes, which "
          "in this measurement it does with every sample. The plugin or program beside it draws "
          "within its own process.",
          "None on this side: without the announcements of tool tip and menu, which was tried, the "
          "panel took a twentieth less. The rest is its own drawing of a picture that is new.")
_PANEL_MEMORY = ("What the panel keeps of the item (picture, tool tip, menu) comes on top.",
                 "Offer the picture in fewer sizes to panels that show one.")

# Ours that are compared, and what explains them where the resident alone is not to blame.
OURS = ("Tidewell, rates alone", "Tidewell, as installed",
        "Tidewell, rates alone, with its item in the Xfce panel",
        "Tidewell, as installed, with its item in the Xfce panel")
RESIDENTS, WHOLES = OURS[:2], OURS[2:]


def short(ours):
    return ours.removeprefix("Tidewell, ").replace(", with its item in the Xfce panel",
                                                   " in the panel")


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
        return _PANEL_MEMORY
    return _OF_PROGRAMS.get((criterion, peer), _REASONS[criterion])


def _shown_error(rows, ours):
    """That of the text in the panel, as others are judged by what they show."""
    return rows.get(WHOLES[OURS.index(ours) % 2], {}).get("error")
