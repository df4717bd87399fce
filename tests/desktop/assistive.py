#!/usr/bin/python3
"""What an assistive program sees and does through AT-SPI.

Each line of its input is a request, answered by one line, in JSON:

    ["look"]                  each visible element of Tidewell's windows
    ["press", ROLE, TITLE]    presses the first element of that role and title; whether it exists
"""

import json
import os
import sys
import warnings

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

# The oldest supported system lacks the newer names of these functions.
warnings.simplefilter("ignore", DeprecationWarning)

APPLICATION = "Tidewell"

# Names in newer versions of the library.
OLD_ROLE_NAMES = {"button": "push button"}


def elements(top, window=""):
    """An element and all below it, as far as they show, each with its window's title."""
    states = top.get_state_set()
    is_application = top.get_role() == Atspi.Role.APPLICATION
    if not is_application and not states.contains(Atspi.StateType.VISIBLE):
        return
    if not is_application:
        window = window or top.get_name()
        yield top, window
    for index in range(top.get_child_count()):
        child = top.get_child_at_index(index)
        if child:
            yield from elements(child, window)


def windows():
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if application and application.get_name() == APPLICATION:
            yield from elements(application)


def labels(element):
    """The names of an element's labels."""
    return [relation.get_target(index).get_name() for relation in element.get_relation_set()
            if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY
            for index in range(relation.get_n_targets())]


def title(element):
    """An element's label. Without one, its own name, which otherwise is its value."""
    return " ".join(labels(element)) or element.get_name()


def role(element):
    name = element.get_role_name()
    return OLD_ROLE_NAMES.get(name, name)


def description(element, window):
    action = element.get_action_iface()
    box = element.get_component_iface().get_extents(Atspi.CoordType.SCREEN)
    states = element.get_state_set()
    return {
        "window": window,
        "role": role(element),
        "title": title(element),
        "name": element.get_name(),
        "description": element.get_description(),
        "actions": [action.get_action_name(i) for i in range(action.get_n_actions())] if action else [],
        "box": [box.x, box.y, box.width, box.height],
        "focusable": states.contains(Atspi.StateType.FOCUSABLE),
        "focused": states.contains(Atspi.StateType.FOCUSED),
        "checked": states.contains(Atspi.StateType.CHECKED),
    }


def press(wanted, name):
    for element, _ in windows():
        if role(element) == wanted and title(element) == name:
            return element.get_action_iface().do_action(0)
    return False


def answer(verb, *arguments):
    if verb == "press":
        return press(*arguments)
    return [description(element, window) for element, window in windows()]


def main():
    for line in sys.stdin:
        # One process for each request: the library caches elements and can crash when they vanish.
        child = os.fork()
        if child == 0:
            print(json.dumps(answer(*json.loads(line))), flush=True)
            os._exit(0)
        if os.waitpid(child, 0)[1] != 0:
            print("null", flush=True)


main()
