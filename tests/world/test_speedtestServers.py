#!/usr/bin/python3
"""The speed test's helper against servers that misbehave."""

import pathlib
import subprocess
import tempfile
import unittest

from harness import case, quality
from harness.speedtest import SpeedTestCase

BAD_PORT = 8444
BAD_SERVER = str(pathlib.Path(__file__).resolve().parent / "badServer.py")


class ABadServer(SpeedTestCase):
    def measure_by(self, mode):
        """What the helper says of a server that misbehaves."""
        self.bad = self.world.start("net", "/usr/bin/python3", BAD_SERVER,
                                    self.server.authority.server_certificate,
                                    self.server.authority.key, BAD_PORT, mode,
                                    stdout=subprocess.PIPE, text=True)
        self.addCleanup(self.bad.stdout.close)
        self.addCleanup(self.bad.wait)
        self.addCleanup(self.bad.kill)
        self.server.wait_for(BAD_PORT)
        (self.server.documents / "bad").write_text(quality.document(BAD_PORT))
        address = f"https://{quality.HOST}:{quality.PORT}/bad"
        return self.finish(self.start_helper(TIDEWELL_SPEEDTEST_CONFIG=address))

    def assert_refused(self, reason, output, errors, seconds):
        self.assertEqual(output, "")
        self.assertRegex(errors, rf"^networkQuality: [^\n]*{reason}[^\n]*\n$")
        self.assertLess(self.seconds, seconds)
        self.assertEqual(self.status, 1)

    def test_that_speaks_no_http2_is_refused(self):
        self.assert_refused("does not speak HTTP/2", *self.measure_by("http1"), 2)

    def test_that_redirects_is_refused(self):
        self.assert_refused("redirects", *self.measure_by("redirect"), 2)

    def test_that_never_ends_its_headers_is_refused(self):
        self.assert_refused("", *self.measure_by("headers"), 10)

    def test_that_says_nothing_is_given_up(self):
        self.assert_refused("does not answer in time", *self.measure_by("silent"), 10)

    def test_that_stalls_gives_no_number(self):
        self.assert_refused("moves nothing", *self.measure_by("stalls"), 10)

    def test_that_trickles_gives_no_number(self):
        self.assert_refused("moves nothing", *self.measure_by("trickles"), 8)

    def test_that_breaks_off_gives_no_number(self):
        self.assert_refused("breaks the connection off", *self.measure_by("closes"), 3)

    def test_that_sends_less_than_it_announced_gives_no_number(self):
        self.assert_refused("", *self.measure_by("short"), 3)

    def test_whose_downloads_have_the_wrong_size_gives_no_number(self):
        self.assert_refused("too short", *self.measure_by("tiny"), 3)

    def test_whose_small_download_is_large_is_refused(self):
        self.assert_refused("too long", *self.measure_by("hugeSmall"), 3)

    def test_that_refuses_uploads_gives_the_download_alone(self):
        output, errors = self.measure_by("refuses")
        self.assertIn("status 413", errors)
        self.assertIsNotNone(self.measured("Downlink capacity"))
        self.assertIsNone(self.measured("Uplink capacity"), output)

    def test_that_disputes_an_upload_when_it_is_over_has_carried_it(self):
        self.world.do("rate", 100, 2000, 20)
        output, errors = self.measure_by("disputes")
        self.bad.kill()
        disputes = self.bad.stdout.read().count("disputed")
        self.assertGreater(disputes, 3, "more than connections that break would be forgiven")
        self.assertEqual(errors, "")
        self.assertIsNotNone(self.measured("Uplink capacity"), output)

    @unittest.skipUnless(case.LONG, "the long form")
    def test_that_praises_what_it_does_not_take_gives_the_download_alone(self):
        output, errors = self.measure_by("early")
        self.assertRegex(errors, "does not take what is sent|the transfer fails")
        self.assertIsNotNone(self.measured("Downlink capacity"))
        self.assertIsNone(self.measured("Uplink capacity"), output)

    def test_that_cannot_prove_who_it_is_is_refused(self):
        with tempfile.TemporaryDirectory() as folder:
            stranger = quality.Authority(folder)
            output = self.finish(self.start_helper(SSL_CERT_FILE=str(stranger.certificate)))
        self.assert_refused("cannot prove who it is", *output, 2)
        self.assert_refused("cannot prove who it is", *self.finish(self.start_helper(
            TIDEWELL_SPEEDTEST_CONFIG=f"https://{quality.ADDRESS}:{quality.PORT}/configuration")), 2)

    def test_that_is_not_to_be_found_is_said_to_be(self):
        self.server.name_host("")
        self.assert_refused("leads nowhere", *self.finish(self.start_helper()), 10)
        self.server.name_host("198.51.100.2")
        address = f"https://{quality.HOST}:9/configuration"
        self.assert_refused("cannot be reached", *self.finish(self.start_helper(
            TIDEWELL_SPEEDTEST_CONFIG=address)), 3)

    def test_may_not_hide_behind_a_useless_document(self):
        for text in ("", "[]", quality.document(host="speed.example", upload_url="http://x/"),
                     " " * 100_000):
            (self.server.documents / "configuration").write_text(text)
            self.assert_refused("configuration document", *self.finish(self.start_helper()), 2)
        for address in ("http://speed.example/", "file:///etc/passwd", "speed.example", "-v"):
            self.assert_refused("https://", *self.finish(self.start_helper(
                TIDEWELL_SPEEDTEST_CONFIG=address)), 2)


if __name__ == "__main__":
    case.main("nghttpd", "openssl")
