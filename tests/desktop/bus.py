"""The session bus as the tests and the demonstration see it, through dbus-send and dbus-monitor."""

import re
import subprocess
from pathlib import Path

TIDEWELL = ("com.halden.Tidewell", "/com/halden/Tidewell", "com.halden.Tidewell")
WATCHER = (
    "org.kde.StatusNotifierWatcher",
    "/StatusNotifierWatcher",
    "org.kde.StatusNotifierWatcher",
)
_BUS = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus")
_STRING = re.compile(r'string "(.*)"$', re.MULTILINE)


def call(environment, where, member, *arguments):
    """The text of a method's reply, or None when there was none."""
    name, path, interface = where
    reply = subprocess.run(
        ["dbus-send", "--session", "--print-reply=literal", "--reply-timeout=2000",
         f"--dest={name}", path, f"{interface}.{member}", *arguments],
        env=environment, text=True, capture_output=True, check=False,
    )  # fmt: skip
    return reply.stdout.strip() if reply.returncode == 0 else None


def owner(environment, name):
    """The unique name that owns a well-known one, or None."""
    return call(environment, _BUS, "GetNameOwner", f"string:{name}")


def process(environment, name):
    """The name of the process that owns a well-known name, or None."""
    answer = call(environment, _BUS, "GetConnectionUnixProcessID", f"string:{name}")
    return Path(f"/proc/{answer.split()[-1]}/comm").read_text().strip() if answer else None


def get(environment, where, name):
    """A property as dbus-send prints it, or None. Starts no program that is not there."""
    there = owner(environment, where[0])
    if there is None:
        return None
    properties = (there, where[1], "org.freedesktop.DBus.Properties")
    reply = call(environment, properties, "Get", f"string:{where[2]}", f"string:{name}")
    return re.sub(r"^variant\s+", "", reply) if reply is not None else None


def live_text(environment):
    """The text in the panel now, or None while nobody publishes it."""
    return get(environment, TIDEWELL, "MenubarText")


def registered_items(environment):
    """The items that the panel's watcher knows."""
    return (get(environment, WATCHER, "RegisteredStatusNotifierItems") or "").strip("array []").split()


def choose_row(environment, label):
    """Chooses a row of the item's menu, as a host does."""
    menu = (TIDEWELL[0], "/MenuBar", "com.canonical.dbusmenu")
    layout = call(environment, menu, "GetLayout", "int32:0", "int32:-1", "array:string:")
    row = layout[: layout.index(label)].count("struct") - 1
    call(environment, menu, "Event", f"int32:{row}", "string:clicked", "variant:int32:0", "uint32:0")


def watch_live_text(children, environment):
    """Starts a process whose lines live_text_in() understands."""
    rule = "type='signal',interface='org.freedesktop.DBus.Properties',path='{}'".format(TIDEWELL[1])
    return children.start(
        ["stdbuf", "-oL", "dbus-monitor", "--session", rule], environment,
        stdout=subprocess.PIPE, text=True,
    )  # fmt: skip


def live_texts_in(lines):
    """Each live text announced in dbus-monitor's lines, as it comes."""
    named = False
    for line in lines:
        text = _STRING.search(line)
        if named and text:
            yield text.group(1)
        named = bool(text) and text.group(1) == "MenubarText"
