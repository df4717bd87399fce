"""Machines of a world with file systems and a system bus of their own, for network daemons."""

import os
import pathlib
import re
import shutil
import subprocess
import tempfile

from . import world as worlds
from .session import BUS_CONFIGURATION, wait_until

OWN_SYSTEM = worlds.HERE / "ownSystem"
UNPACKED = pathlib.Path(os.environ.get(
    "TIDEWELL_DAEMONS", worlds.HERE.parent.parent / "build" / "daemons"))

_BUS = "/run/dbus/system_bus_socket"


def why_none(programs):
    """None if these programs can be run on machines here, otherwise the reason."""
    advice = "scripts/installPackages --into build/daemons daemons"
    if not UNPACKED.is_dir():
        return f"the network managers are not unpacked ({advice})"
    look = 'for each; do command -v "$each" || echo "no $each"; done'
    command = ["unshare", "--mount", OWN_SYSTEM, UNPACKED, "sh", "-c", look, "sh", *programs]
    result = subprocess.run(command, capture_output=True, text=True)
    if result.returncode:
        return f"no file systems of their own for machines: {result.stderr.strip()}"
    missing = re.findall("^no (.*)$", result.stdout, re.M)
    return f"{', '.join(missing)} not unpacked ({advice})" if missing else None


class Machine:
    """One of a world's namespaces with its own /etc, /run and /var/lib. Ends with the world."""

    def __init__(self, world, where):
        self._holder = world.start(
            where, "unshare", "--mount", OWN_SYSTEM, UNPACKED, "sleep", "infinity",
            stdout=subprocess.PIPE, text=True)
        if self._holder.stdout.readline() != "ready\n":
            raise AssertionError(f"no machine at {where}")
        self.logs = pathlib.Path(tempfile.mkdtemp(prefix="machine"))
        # Enters without a process in between, which would take the signals that are meant for the command.
        # The root is that of the tests, which may run in a chroot.
        self.entry = ["nsenter", "-t", str(self._holder.pid), "--mount", "--net", "--root", "--wd"]
        self._started = []

    def run(self, *command, check=True):
        """Runs a command to its end. Returns what it printed."""
        result = subprocess.run([*self.entry, *map(str, command)], text=True, capture_output=True)
        if check and result.returncode:
            raise AssertionError(f"{command}: {result.stdout}{result.stderr}")
        return result.stdout

    def start(self, program, *arguments, **options):
        """Starts a daemon, which logs into a file of its name."""
        log = self.logs / pathlib.Path(program).name
        with open(log, "ab") as output:
            process = subprocess.Popen([*self.entry, program, *map(str, arguments)], stdout=output,
                                       stderr=output, stdin=subprocess.DEVNULL, **options)
        self._started.append(process)
        return process

    def stop(self, process):
        process.terminate()
        process.wait(10)
        self._started.remove(process)

    def write(self, path, text):
        """Writes a file of the machine."""
        subprocess.run([*self.entry, "sh", "-c", 'mkdir -p "${1%/*}" && cat >"$1"', "sh", path],
                       input=text, text=True, check=True)

    def start_system_bus(self):
        configuration = BUS_CONFIGURATION.replace(">session<", ">system<").replace(
            "<allow own", '<allow user="*"/><allow own')
        self.write("/etc/systemBus.conf", configuration.format(path=_BUS))
        self.start("dbus-daemon", "--nofork", "--nosyslog", "--config-file=/etc/systemBus.conf")
        wait_until(lambda: self.has_name("org.freedesktop.DBus"), 5, "the system bus")

    def has_name(self, name):
        """Whether somebody owns a name of the system bus."""
        return "true" in self.run("busctl", "call", "org.freedesktop.DBus", "/", "org.freedesktop.DBus",
                                  "NameHasOwner", "s", name, check=False)

    def close(self):
        for process in (*self._started, self._holder):
            process.kill()
            process.wait()
        self._holder.stdout.close()
        shutil.rmtree(self.logs, ignore_errors=True)
