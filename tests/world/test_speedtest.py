#!/usr/bin/python3
"""The speed test on a shaped line: its helper, and the resident that starts it."""

import json
import os
import pathlib
import signal
import subprocess
import time

from harness import case, quality
from harness.session import wait_until
from harness.speedtest import SpeedTestCase
from harness.world import CONTROL

# Of 1514 bytes that the shaper counts, TCP delivers 1448.
SHARE = 1448 / 1514


class TheLine(SpeedTestCase):
    def test_is_measured_within_two_percent_although_the_servers_name_comes_and_goes(self):
        self.world.do("rate", 40, 15, 40)
        helper = self.start_helper()
        time.sleep(2)
        self.server.name_host("")  # later lookups fail
        self.finish(helper)
        self.assertEqual(self.status, 0, self.output)
        self.assert_near(self.measured("Downlink capacity"), 40 * SHARE, 2)
        self.assert_near(self.measured("Uplink capacity"), 15 * SHARE, 2)
        # An idle round trip takes 0.1 ms; under load the queues hold 40 ms.
        self.assertGreater(self.measured("Responsiveness"), 400)
        self.assertLess(self.measured("Responsiveness"), 1600)
        self.assertLess(self.seconds, 30)

    def test_that_goes_down_gives_no_number(self):
        self.world.do("rate", 40, 15, 40)
        helper = self.start_helper()
        time.sleep(3)
        self.world.do("carrier", "off")
        output, errors = self.finish(helper)
        self.assertRegex(errors, "^networkQuality: the (line|server) [^\n]*\n$")
        self.assertEqual(output, errors.replace("networkQuality", "Failure", 1))
        self.assertLess(self.seconds, 12)
        self.assertNotEqual(self.status, 0)


class TheHelper(SpeedTestCase):
    def end_after(self, seconds, **changes):
        """Asks it to end after some seconds. Returns its output."""
        helper = self.start_helper(**changes)
        time.sleep(seconds)
        asked = time.monotonic()
        os.kill(helper.pid, signal.SIGTERM)
        output, errors = self.finish(helper, 5)
        self.assertEqual(errors, "")
        self.assertLess(time.monotonic() - asked, 0.2)
        return output

    def test_that_is_asked_to_end_tells_what_it_has_measured_so_far(self):
        self.world.do("rate", 40, 15, 40)
        self.end_after(3.5)
        self.assert_near(self.measured("Downlink capacity"), 40 * SHARE, 10)
        self.assertIsNone(self.measured("Uplink capacity"))

    def test_that_is_asked_to_end_before_it_has_begun_says_nothing(self):
        self.world.do("probe", "unreachable")
        self.world.run("net", "nft", "add rule inet world input tcp dport { 8443, 53 } drop")
        self.world.run("net", "nft", "add rule inet world input udp dport 53 drop")
        self.assertEqual(self.end_after(0.5), "", "while it connects")
        self.server.name_host("")
        self.assertEqual(self.end_after(0.5), "", "while it looks a name up")

    def test_finds_its_server_in_the_users_configuration(self):
        folder = self.server.folder / ".config" / "tidewell"
        folder.mkdir(parents=True)
        (folder / "speedtest.conf").write_text(
            f"# nobody listens there\nhttps://{quality.HOST}:9/configuration\n")
        _, errors = self.finish(self.start_helper(TIDEWELL_SPEEDTEST_CONFIG=""))
        self.assertIn("cannot be reached", errors)

    def test_takes_no_other_arguments(self):
        result = subprocess.run([quality.HELPER, "-x"], capture_output=True, text=True)
        self.assertEqual((result.returncode, result.stdout), (2, ""))


class TheResident(case.ResidentTestCase):
    def setUp(self):
        super().setUp()
        self.server = quality.QualityServer(self.world)
        self.addCleanup(self.server.close)
        environment = self.server.environment()
        for name in ("TIDEWELL_SPEEDTEST_CONFIG", "SSL_CERT_FILE"):
            self.session.environment[name] = environment[name]

    def helpers(self):
        """How many helpers run in this world."""
        names = [pathlib.Path(f"/proc/{pid}/comm") for pid in subprocess.run(
            ["ip", "netns", "pids", f"tidewell-{self.world.name}-user"], check=True,
            capture_output=True, text=True).stdout.split()]
        return sum(name.exists() and name.read_text() == "networkQuality\n" for name in names)

    def test_publishes_what_one_helper_has_measured(self):
        self.world.do("rate", 20, 8, 40)
        self.begin()
        for _ in range(2):
            self.session.busctl("call", "RunSpeedTest")
        wait_until(lambda: self.helpers() == 1, 2, "the helper")
        self.watch.until(lambda: self.watch.values.get("SpeedTestIsRunning"), 2, "the beginning")
        self.session.busctl("call", "RunSpeedTest")
        joined = self.world.start("user", CONTROL, "speedtest", "--json", env=self.session.environment,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.addCleanup(SpeedTestCase.end, joined)
        time.sleep(1)
        self.assertEqual(self.helpers(), 1)
        self.assertEqual(len(os.listdir(f"/proc/{self.session.resident.pid}/task")), 1)
        self.watch.until(lambda: not self.watch.values["SpeedTestIsRunning"], 45, "the end")
        text = self.session.busctl("get-property", "LastSpeedTest", "--json=short")
        (at, down, up, rpm), = json.loads(text)["data"]
        self.assertLess(abs(at - time.time()), 2)
        self.assertLess(abs(down / (20 * SHARE) - 1) * 100, 2)
        self.assertLess(abs(up / (8 * SHARE) - 1) * 100, 2)
        self.assertGreater(rpm, 100)
        self.assertEqual(json.loads(joined.communicate(timeout=2)[0]),
                         {"time": at, "downloadMbps": down, "uploadMbps": up, "responsiveness": rpm})
        self.assert_ends_well()

    def test_says_why_a_test_failed_and_keeps_the_last_measurement(self):
        self.world.do("rate", 40, 15, 40)
        self.begin()
        self.assertEqual(self.values_after_a_test()[0], "")
        self.server.name_host("")
        reason, last, measured = self.values_after_a_test()
        self.assertEqual(reason, "the configuration document is of no use: "
                                 "the server's name leads nowhere")
        self.assertEqual(last[0][1:], [0, 0, 0])
        self.assertGreater(measured[0][1], 30)

    def values_after_a_test(self):
        """The reason of a failure, the last result and the last measurement."""
        self.session.busctl("call", "RunSpeedTest")
        self.watch.until(lambda: self.watch.values.get("SpeedTestIsRunning"), 2, "the beginning")
        self.watch.until(lambda: not self.watch.values["SpeedTestIsRunning"], 45, "the end")
        return [json.loads(self.session.busctl("get-property", name, "--json=short"))["data"]
                for name in ("SpeedTestFailure", "LastSpeedTest", "LastMeasuredSpeedTest")]

    def test_takes_its_helper_along_when_it_ends(self):
        self.begin()
        self.session.busctl("call", "RunSpeedTest")
        wait_until(lambda: self.helpers() == 1, 2, "the helper")
        time.sleep(1)
        self.assert_ends_well()
        self.assertEqual(self.helpers(), 0)


if __name__ == "__main__":
    case.main("nghttpd", "openssl", "busctl")
