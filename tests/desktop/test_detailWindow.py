#!/usr/bin/python3
"""A downloading program and a speed test, as the details show them."""

import os
import re
import subprocess

import apart
import xfce
from children import wait_until
from harness import quality, world
from windowCase import DETAIL, PROGRAM, WindowCase

# Mbit/s of the line, and the largest error of a measurement in percent, on a busy machine.
DOWN, UP, OFF = 40, 15, 10
# Of 1514 bytes that the line counts, TCP delivers 1448.
SHARE = 1448 / 1514

RUN_NOW = ("push button", "Run Now")


class Details(WindowCase):
    def setUp(self):
        self.world = world.World(os.environ[apart.INSIDE])
        self.world.do("rate", DOWN, UP, 40)
        self.server = quality.QualityServer(self.world)
        self.addCleanup(self.server.close)
        super().setUp()
        self.open(DETAIL)

    def command(self):
        """Where the server's name is known."""
        names = ["TIDEWELL_SPEEDTEST_CONFIG", "SSL_CERT_FILE"]
        settings = [f"{name}={self.server.environment()[name]}" for name in names]
        return self.world.command("user", "env", *settings, PROGRAM)

    def download(self):
        program = self.world.start(
            "user", "curl", "--silent", "--insecure", "--output", "/dev/null", "--limit-rate", "1M",
            f"https://{quality.ADDRESS}:{quality.PORT}/large", stdout=subprocess.DEVNULL)
        self.addCleanup(program.wait)
        self.addCleanup(program.kill)
        return program

    def test_the_processes_name_the_program_that_downloads(self):
        program = self.download()
        self.reader.press("page tab", "Processes")
        row = self.reader.wait_to_read("curl, ", 20)
        self.assertRegex(row, rf"^curl, PID {program.pid}, download \d+(\.\d)? [KM]B/s, "
                              r"upload \d+(\.\d)? KB/s, total \d+ [KM]B, usage \d+ %$")
        self.reader.press("page tab", "Overview")
        self.reader.wait_to_read("curl, ")

    def test_a_speed_test_that_is_started_here_shows_its_result_here(self):
        self.reader.press("page tab", "Diagnostics")
        self.reader.wait_to_read("No speed test run yet.")
        self.reader.press(*RUN_NOW)
        self.reader.wait_to_read("Running speed test...")
        self.assertIsNone(self.reader.find(*RUN_NOW))
        wait_until(lambda: self.get("SpeedTestIsRunning") == "boolean false", 45, "result")
        self.assert_near(self.figure(r"Download (\d+\.\d) Mbps"), DOWN * SHARE)
        self.assert_near(self.figure(r"Upload (\d+\.\d) Mbps"), UP * SHARE)
        self.assertGreater(self.figure(r"Responsiveness (\d+) RPM"), 0)
        self.reader.wait_to_read("Tested At ")
        self.assertIsNotNone(self.reader.find(*RUN_NOW))

    def figure(self, pattern):
        text = self.reader.wait_to_read(pattern.split()[0] + " ")
        found = re.fullmatch(pattern, text)
        self.assertTrue(found, text)
        return float(found[1])

    def assert_near(self, value, truth):
        self.assertLess(abs(value / truth - 1) * 100, OFF, f"{value}, not {truth}")


if __name__ == "__main__":
    apart.main([*xfce.DISPLAY.PROGRAMS, "xfwm4", "xfce4-panel", "nghttpd", "openssl", "curl"],
               traffic=False)
