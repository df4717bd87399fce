"""A user's session in a test world: a private bus, private folders, and the resident."""

import json
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import tempfile
import threading
import time

from .world import RESIDENT

NAME, PATH = "com.halden.Tidewell", "/com/halden/Tidewell"
_SIGNALS = [f"--match=type='signal',{rule}" for rule in (
    f"path='{PATH}'", f"member='NameOwnerChanged',arg0='{NAME}'")]

BUS_CONFIGURATION = """<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path={path}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


class Session:
    def __init__(self, world):
        self.world = world
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="session"))
        for name in ("home", "config", "runtime"):
            (self.folder / name).mkdir(mode=0o700)
        self.bus_path = self.folder / "bus"
        (self.folder / "bus.conf").write_text(BUS_CONFIGURATION.format(path=self.bus_path))
        self.environment = {
            "PATH": os.environ["PATH"],
            "HOME": str(self.folder / "home"),
            "XDG_CONFIG_HOME": str(self.folder / "config"),
            "XDG_RUNTIME_DIR": str(self.folder / "runtime"),
            "DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.bus_path}",
            # A user whose language has a decimal comma and its own word for "time".
            "LANG": "de_DE.UTF-8",
            "LANGUAGE": "de",
            **{key: value for key, value in os.environ.items() if key.endswith("SAN_OPTIONS")},
        }
        self.bus = None
        self.watch = None
        self.resident = None

    def start_bus(self):
        self.bus_path.unlink(missing_ok=True)
        self.bus = subprocess.Popen(
            ["dbus-daemon", "--nofork", "--nosyslog", f"--config-file={self.folder}/bus.conf"],
            env=self.environment, stderr=subprocess.DEVNULL,
        )
        self.wait_for_bus()

    def wait_for_bus(self):
        """Until something listens at the bus's address. Its file appears a moment earlier."""
        def listens():
            with socket.socket(socket.AF_UNIX) as client:
                return client.connect_ex(str(self.bus_path)) == 0
        wait_until(listens, 5, "the bus")

    def kill_bus(self):
        self.bus.kill()
        self.bus.wait()
        self.bus = None

    def start_watch(self):
        """A fresh watch: its samples count from here."""
        self.stop_watch()
        self.watch = Watch(self.environment)

    def stop_watch(self):
        if self.watch:
            self.watch.stop()
            self.watch = None

    def prefer(self, **preferences):
        write_preferences(self.folder / "config", **preferences)

    def start_resident(self, *wrapper):
        """Starts the resident, through a wrapping command if there is one."""
        self.resident = self.world.start(
            "user", *wrapper, RESIDENT, env=self.environment,
            stdin=subprocess.DEVNULL, start_new_session=True,
        )

    def busctl(self, verb, *arguments):
        """What busctl prints of a call or a property of the resident."""
        return subprocess.run(
            ["busctl", "--user", verb, NAME, PATH, NAME, *arguments], env=self.environment,
            check=True, capture_output=True, text=True).stdout.strip()

    def end_resident(self, timeout=5):
        """Ends the resident. Returns its exit status and the seconds that it took."""
        started = time.monotonic()
        self.resident.send_signal(signal.SIGTERM)
        status = self.resident.wait(timeout)
        self.resident = None
        return status, time.monotonic() - started

    def close(self):
        for process in (self.resident, self.bus):
            if process and process.poll() is None:
                process.kill()
                process.wait()
        self.stop_watch()
        shutil.rmtree(self.folder, ignore_errors=True)


class Sample:
    def __init__(self, number, fields):
        self.number = number  # of this watch, from 1
        (self.timestamp, self.download, self.upload,
         self.latency, self.jitter, self.loss) = fields

    def __repr__(self):
        return (f"#{self.number} down {self.download} up {self.upload} latency {self.latency} "
                f"jitter {self.jitter} loss {self.loss}")


class Watch:
    """What the resident says on the bus, from the watch's start."""

    def __init__(self, environment):
        self.samples = []
        self.values = {}  # the properties' present values
        self.owners = []  # every appearance (True) and disappearance (False)
        self.windows = []  # those that were asked for
        self._news = threading.Condition()
        self._busctl = ["busctl", "--user", "--json=short", "--auto-start=no"]
        self._environment = {**environment, "LC_ALL": "C"}
        self._process = subprocess.Popen(
            [*self._busctl, *_SIGNALS, "monitor"], env=self._environment, text=True,
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self._has_begun = threading.Event()
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()
        wait_until(self._sees_signals, 5, "the watch of the bus")
        self._read_values()

    def stop(self):
        self._process.kill()
        self._process.wait()
        self._reader.join()
        self._process.stdout.close()

    def until(self, condition, timeout, what):
        """Waits until the condition, which is checked after each event, is true. Returns its value."""
        with self._news:
            result = self._news.wait_for(condition, timeout)
        if not result:
            raise AssertionError(
                f"{what}: not within {timeout} s; values {self.values}, last {self.samples[-3:]}")
        return result

    def next_samples(self, count, timeout, after=None):
        """The first samples that were taken wholly after a moment (default: now)."""
        after = time.time() if after is None else after

        def found():
            return [sample for sample in self.samples if sample.timestamp > after][:count]

        self.until(lambda: len(found()) == count, timeout, f"{count} samples")
        return found()

    def _sees_signals(self):
        subprocess.run(["busctl", "--user", "emit", PATH, "test.Watch", "Begins"], env=self._environment)
        return self._has_begun.wait(0.01)

    def _read(self):
        for line in self._process.stdout:
            self._has_begun.set()
            message = json.loads(line)
            member, data = message["member"], message["payload"]["data"]
            if member == "NameOwnerChanged" and data[2]:
                self._read_values()
                continue
            with self._news:
                if member == "NameOwnerChanged":
                    self.owners.append(False)
                elif member == "SampleAdded":
                    self.samples.append(Sample(len(self.samples) + 1, data))
                elif member == "WindowRequested":
                    self.windows.append(data[0])
                elif member == "PropertiesChanged" and data[0] == NAME:
                    self.values.update({name: value["data"] for name, value in data[1].items()})
                self._news.notify_all()

    def _read_values(self):
        """Reads all properties of a resident that has appeared."""
        reply = subprocess.run(
            [*self._busctl, "call", NAME, PATH, "org.freedesktop.DBus.Properties", "GetAll", "s", NAME],
            env=self._environment, capture_output=True, text=True)
        if reply.returncode == 0:
            values, = json.loads(reply.stdout)["data"]
            with self._news:
                self.owners.append(True)
                self.values.update({name: value["data"] for name, value in values.items()})
                self._news.notify_all()


def write_preferences(configuration, **preferences):
    """Replaces the preferences file atomically, as an editor does."""
    file = pathlib.Path(configuration) / "tidewell/preferences.toml"
    file.parent.mkdir(exist_ok=True)
    lines = [f"{key} = {json.dumps(value)}\n" for key, value in preferences.items()]
    file.with_suffix(".new").write_text("".join(lines))
    file.with_suffix(".new").rename(file)


def wait_until(condition, timeout, what):
    """Waits until the condition holds, by polling."""
    end = time.monotonic() + timeout
    while not condition():
        if time.monotonic() > end:
            raise AssertionError(f"{what}: not within {timeout} s")
        time.sleep(0.005)
