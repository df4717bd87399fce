"""Runs the tests of a file in a network of their own: nothing leaves the machine."""

import os
import pathlib
import shutil
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "world"))

from harness import world  # noqa: E402

INSIDE = "TIDEWELL_DESKTOP_WORLD"

# Some programs of a desktop refuse root. For them root is called by another number.
_AS_USER = ["unshare", "--user", "--map-user=1000", "--map-group=1000"]

# What flows meanwhile, in bytes per second, so that there is something to see.
_DOWNLOAD, _UPLOAD, _FRAME = 1_530_000, 124_000, 1400


def main(programs, as_user=False):
    """Runs the calling file's tests, or skips them with the reason."""
    if INSIDE in os.environ:
        unittest.main(verbosity=2)
    missing = [program for program in programs if not shutil.which(program)]
    reason = f"{', '.join(missing)} not installed" if missing else world.check()
    if not reason and as_user and subprocess.run([*_AS_USER, "true"], capture_output=True).returncode:
        reason = "this machine forbids user namespaces"
    if reason:
        print(f"skipped: {reason}")
        sys.exit(77)
    sys.exit(_run_inside(_AS_USER if as_user else []))


def senders(where):
    """Starts traffic in a world, down and up; to be stopped."""
    return [where.sender("net", _DOWNLOAD, 86400, _FRAME), where.sender("user", _UPLOAD, 86400, _FRAME)]


def _run_inside(wrapper):
    place = world.World()
    traffic = []
    try:
        place.do("delay", 14)
        traffic = senders(place)
        command = [*wrapper, sys.executable, *sys.argv]
        environment = dict(os.environ, **{INSIDE: place.name})
        return subprocess.run(place.command("user", *command), env=environment).returncode
    finally:
        for sender in traffic:
            sender.stop()
        place.down()
