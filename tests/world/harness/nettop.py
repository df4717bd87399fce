"""The helper that lists programs, and programs for it to list."""

import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

from . import world

HELPER = pathlib.Path(world.RESIDENT).parent.parent / "libexec/tidewell/nettop"
CROWD = pathlib.Path(world.SCRIPT).parent / "crowd.py"
CAPABILITIES = "cap_bpf,cap_net_admin,cap_perfmon=p"
SERVER_PORT = 7000

# `ip netns exec` mounts another /sys, without control groups.
WITH_GROUPS = 'mount -t cgroup2 none /sys/fs/cgroup && exec "$@"'

# Loading the eBPF programs takes at most so many seconds. What starts after that and ends within a second
# lies completely inside the measured second.
LEAD = 0.2


def why_no_bpf():
    """None if the kernel accepts the programs, otherwise the reason."""
    result = subprocess.run([HELPER, "--route=bpf"], capture_output=True, text=True)
    return None if result.returncode == 0 else result.stderr.strip()


class Run:
    """A run of the helper, which starts now."""

    def __init__(self, command):
        self._began = time.monotonic()
        self.process = subprocess.Popen(
            [str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        time.sleep(LEAD)

    def finish(self):
        """Waits for its end. Then there are `text`, `rows`, `errors`, `status` and `seconds`."""
        output, errors = self.process.communicate(timeout=10)
        self.seconds = time.monotonic() - self._began
        self.status = self.process.returncode
        self.text = output.decode()
        self.errors = errors.decode()
        lines = [line.split(",") for line in self.text.splitlines()[1:]]
        self.rows = [(name.split(".")[0], int(name.split(".")[1]), int(received), int(sent))
                     for name, received, sent, _ in lines]
        return self

    def of(self, process):
        """(received, sent) of a process."""
        return next((row[2:] for row in self.rows if row[1] == process), (0, 0))

    def named(self, name):
        """(received, sent) of all rows of a name."""
        rows = [row for row in self.rows if row[0] == name]
        return sum(row[2] for row in rows), sum(row[3] for row in rows)


def run(route=None, wrapper=(), helper=HELPER):
    return Run([*wrapper, helper, *([f"--route={route}"] if route else [])])


class Privileged:
    """A copy of the helper with its capabilities, which others may run."""

    def __init__(self):
        self._folder = tempfile.TemporaryDirectory()
        os.chmod(self._folder.name, 0o755)
        self.path = pathlib.Path(self._folder.name) / "nettop"
        shutil.copy(HELPER, self.path)
        subprocess.run(["setcap", CAPABILITIES, self.path], check=True)

    def close(self):
        self._folder.cleanup()


def as_user(number, *options):
    return ["setpriv", f"--reuid={number}", f"--regid={number}", "--clear-groups", *options]


def as_nobody(*options):
    return as_user(65534, *options)


def crowd(this_world, where, *arguments):
    """One of crowd.py's verbs in a namespace, once it is ready."""
    process = this_world.start(where, sys.executable, CROWD, *map(str, arguments),
                               stdout=subprocess.PIPE, text=True)
    if process.stdout.readline() != "ready\n":
        raise AssertionError(f"crowd.py {arguments} is not ready")
    return process


def end(process):
    process.terminate()
    process.wait()
    process.stdout.close()


class Talker:
    def __init__(self, this_world, protocol, host, port, count, hold=2, program=None):
        self.process = this_world.start("user", program or world.tool("talker"), protocol, host,
                                        port, count, hold, stdout=subprocess.PIPE, text=True)
        self.said = json.loads(self.process.stdout.readline())

    def close(self):
        self.process.kill()
        self.process.wait()
        self.process.stdout.close()
