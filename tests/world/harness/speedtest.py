"""The base of the tests of the speed test's helper: a server in a world, and the helper."""

import re
import subprocess
import time

from . import case, quality


class SpeedTestCase(case.WorldTestCase):
    def setUp(self):
        super().setUp()
        self.server = quality.QualityServer(self.world)
        self.addCleanup(self.server.close)

    def start_helper(self, **changes):
        environment = {**self.server.environment(), **changes}
        self.began = time.monotonic()
        process = self.world.start("user", quality.HELPER, "-s", "-v", env=environment, text=True,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.addCleanup(self.end, process)
        return process

    def finish(self, process, timeout=45):
        """Waits for its end. Returns its output and its errors."""
        output, errors = process.communicate(timeout=timeout)
        self.seconds = time.monotonic() - self.began
        self.status = process.returncode
        self.output = output
        self.assertLess(len(output) + len(errors), 2000)
        return output, errors

    def measured(self, name):
        """The number in a line of the output, or None."""
        found = re.search(rf"^{name}: (?:\w+ \()?([\d.]+) (?:Mbps|RPM\))$", self.output, re.M)
        return float(found[1]) if found else None

    def assert_near(self, value, truth, percent):
        self.assertIsNotNone(value, self.output)
        self.assertLess(abs(value - truth) / truth * 100, percent, f"{value}, not {truth}")

    @staticmethod
    def end(process):
        if process.poll() is None:
            process.kill()
            process.wait()
        for pipe in (process.stdout, process.stderr):
            pipe.close()
