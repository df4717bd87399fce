"""The test cases' base: a fresh world, and a session in it, for every test."""

import os
import shutil
import sys
import unittest

from . import world
from .session import Session

# Whether to run the long forms of the tests: a minute of traffic, an outage of twenty seconds.
LONG = os.environ.get("TIDEWELL_LONG") == "1"


class WorldTestCase(unittest.TestCase):
    def setUp(self):
        self.world = world.World()
        self.addCleanup(self.world.down)


class ResidentTestCase(WorldTestCase):
    INTERVAL = 1.0

    def setUp(self):
        super().setUp()
        self.session = Session(self.world)
        self.addCleanup(self.session.close)
        self.session.prefer(refreshInterval=self.INTERVAL)

    def start(self, *wrapper):
        """Starts a bus, then a watch, which misses nothing, then the resident."""
        self.session.start_bus()
        self.session.start_watch()
        self.session.start_resident(*wrapper)

    @property
    def watch(self):
        return self.session.watch

    def send(self, where, rate, **options):
        """Constant traffic until the test ends."""
        self.addCleanup(self.world.sender(where, rate, **options).stop)

    def begin(self, *wrapper):
        """Starts everything and waits for the first reading."""
        self.start(*wrapper)
        return self.watch.next_samples(1, 5 + self.INTERVAL, after=0)[0]

    def text_becomes(self, text, timeout=5):
        self.watch.until(lambda: self.watch.values.get("MenubarText") == text, timeout,
                         f"the text {text}")

    def assert_alive(self):
        self.assertIsNone(self.session.resident.poll(), "the resident has ended")

    def assert_ends_well(self):
        """SIGTERM ends the resident within a second, with status 0."""
        status, seconds = self.session.end_resident()
        self.assertEqual(status, 0)
        self.assertLess(seconds, 1.0)


def main(*programs):
    """Runs the tests of a file, or skips them where the machine forbids worlds or lacks programs."""
    missing = [program for program in ("busctl", *programs) if not shutil.which(program)]
    reason = f"{', '.join(missing)} not installed" if missing else world.check()
    if reason:
        print(f"skipped: {reason}")
        sys.exit(77)
    unittest.main(verbosity=2)
