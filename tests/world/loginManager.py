#!/usr/bin/python3
"""A stand-in for the login manager on the system bus. Tells everybody that the machine falls asleep at SIGUSR1,
and that it has woken at SIGUSR2. Sleeping itself is the test's."""

import os
import signal

from gi.repository import Gio, GLib

NAME, PATH = "org.freedesktop.login1", "/org/freedesktop/login1"
MANAGER = f"{NAME}.Manager"
DESCRIPTION = f"""<node><interface name='{MANAGER}'>
<method name='Inhibit'>
  <arg type='s' direction='in'/><arg type='s' direction='in'/>
  <arg type='s' direction='in'/><arg type='s' direction='in'/>
  <arg type='h' direction='out'/>
</method>
<signal name='PrepareForSleep'><arg type='b'/></signal>
<signal name='PrepareForShutdown'><arg type='b'/></signal>
<property name='PreparingForSleep' type='b' access='read'/>
</interface></node>"""

asleep = False
locks = []


def answer(_bus, _sender, _path, _interface, _method, _arguments, call):
    """Gives out an inhibitor's lock. The other end stays open until this process ends."""
    reading, writing = os.pipe()
    locks.append(reading)
    call.return_value_with_unix_fd_list(GLib.Variant("(h)", (0,)), Gio.UnixFDList.new_from_array([writing]))


def prepare(bus, sleeping):
    global asleep
    asleep = sleeping
    bus.emit_signal(None, PATH, MANAGER, "PrepareForSleep", GLib.Variant("(b)", (sleeping,)))
    return True


def main():
    bus = Gio.bus_get_sync(Gio.BusType.SYSTEM)
    manager = Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0]
    bus.register_object(PATH, manager, answer, lambda *_: GLib.Variant("b", asleep), None)
    for number, sleeping in ((signal.SIGUSR1, True), (signal.SIGUSR2, False)):
        GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, number, prepare, bus, sleeping)
    Gio.bus_own_name_on_connection(bus, NAME, Gio.BusNameOwnerFlags.NONE, None, None)
    GLib.MainLoop().run()


main()
