"""Runs the tests of a file in a network of their own: nothing leaves the machine."""

import os
import pathlib
import shutil
import signal
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "world"))

from harness import world  # noqa: E402

INSIDE = "TIDEWELL_DESKTOP_WORLD"

# For programs that refuse root: root under the number of another user, who exists on every system.
AS_USER = ["unshare", "--user", "--map-user=1", "--map-group=1"]

# Traffic during the tests, in bytes per second down and up.
TRAFFIC = {"net": 1_530_000, "user": 124_000}
FRAME = 1400


def main(programs, as_user=False, traffic=True):
    """Runs the calling file's tests, or skips them with the reason.

    `programs` are needed; `as_user` is for what refuses root; `traffic` flows all the time, or is
    left to the tests.
    """
    if INSIDE in os.environ:
        unittest.main(verbosity=2)
    missing = [program for program in programs if not shutil.which(program)]
    reason = f"{', '.join(missing)} not installed" if missing else world.check()
    if not reason and as_user and not _allows_another_number():
        reason = "this machine forbids user namespaces"
    if reason:
        print(f"skipped: {reason}")
        sys.exit(77)
    sys.exit(_run_inside(AS_USER if as_user else [], TRAFFIC if traffic else {}))


def _allows_another_number():
    return subprocess.run([*AS_USER, "true"], capture_output=True).returncode == 0


def send(children, traffic):
    """Starts traffic, given in bytes per second by where it comes from: "net" or "user"."""
    inside = [world.SCRIPT, "exec", os.environ[INSIDE]]
    return [children.start([*inside, where, *world.sender(where, rate, frame=FRAME)], dict(os.environ))
            for where, rate in traffic.items()]


def do(*verb):
    """One of the verbs of the world's script, for the world that the tests are in."""
    world.World(os.environ[INSIDE]).do(*verb)


def _run_inside(wrapper, traffic):
    place = world.World()
    senders = []
    try:
        place.do("delay", 14)
        senders = [place.sender(where, rate, 86400, frame=FRAME) for where, rate in traffic.items()]
        command = [*wrapper, sys.executable, *sys.argv]
        environment = dict(os.environ, **{INSIDE: place.name})
        tests = subprocess.Popen(place.command("user", *command), env=environment)
        # The world is also removed when a test takes too long and is stopped.
        signal.signal(signal.SIGTERM, lambda *_: tests.terminate())
        return tests.wait()
    finally:
        for sender in senders:
            sender.stop()
        place.down()
