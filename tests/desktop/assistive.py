#!/usr/bin/python3
"""What an assistive program sees of the windows and can do with them, through AT-SPI.

    assistive.py look             one JSON object for each visible element of Tidewell's windows
    assistive.py press ROLE NAME  presses the first element of that role and name
"""

import json
import sys
import warnings

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

# Newer names of its functions are not there yet on the oldest system that this runs on.
warnings.simplefilter("ignore", DeprecationWarning)

APPLICATION = "tidewell-windows"


def elements(top):
    """An element and all below it, as far as they show."""
    states = top.get_state_set()
    if top.get_role() != Atspi.Role.APPLICATION and not states.contains(Atspi.StateType.VISIBLE):
        return
    yield top
    for index in range(top.get_child_count()):
        child = top.get_child_at_index(index)
        if child:
            yield from elements(child)


def windows():
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if application and application.get_name() == APPLICATION:
            yield from elements(application)


def description(element):
    action = element.get_action_iface()
    states = element.get_state_set()
    return {
        "role": element.get_role_name(),
        "name": element.get_name(),
        "description": element.get_description(),
        "actions": [action.get_action_name(i) for i in range(action.get_n_actions())] if action else [],
        "focusable": states.contains(Atspi.StateType.FOCUSABLE),
        "checked": states.contains(Atspi.StateType.CHECKED),
    }


def press(role, name):
    for element in windows():
        if element.get_role_name() == role and element.get_name() == name:
            return element.get_action_iface().do_action(0)
    return False


def main():
    if sys.argv[1] == "press":
        sys.exit(0 if press(*sys.argv[2:]) else 1)
    for element in windows():
        print(json.dumps(description(element)))


main()
