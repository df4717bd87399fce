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

# Of each of its modes, what the helper says of it, and within how many seconds.
REFUSED = {
    "http1": ("does not speak HTTP/2", 2),
    "redirect": ("redirects", 2),
    "headers": ("", 10),
    "silent": ("does not answer in time", 10),
    "stalls": ("moves nothing", 10),
    "trickles": ("moves nothing", 8),
    "closes": ("breaks the connection off", 3),
    "short": ("", 3),
    "tiny": ("too short", 3),
    "hugeSmall": ("too long", 3),
}


class BadServerCase(SpeedTestCase):
    bad = None

    def setUp(self):
        super().setUp()
        self.addCleanup(self.end_bad)

    def end_bad(self):
        """Returns what it has printed."""
        if self.bad:
            self.bad.kill()
            printed, _ = self.bad.communicate()
            self.bad = None
            return printed

    def measure_by(self, mode):
        """What the helper says of a server that misbehaves."""
        self.end_bad()
        self.bad = self.world.start("net", "/usr/bin/python3", BAD_SERVER,
                                    self.server.authority.server_certificate,
                                    self.server.authority.key, BAD_PORT, mode,
                                    stdout=subprocess.PIPE, text=True)
        self.server.wait_for(BAD_PORT)
        (self.server.documents / "bad").write_text(quality.document(BAD_PORT))
        address = f"https://{quality.HOST}:{quality.PORT}/bad"
        return self.finish(self.start_helper(TIDEWELL_SPEEDTEST_CONFIG=address))


class ABadServer(BadServerCase):
    def assert_refused(self, reason, output, errors, seconds):
        self.assertRegex(errors, rf"^networkQuality: [^\n]*{reason}[^\n]*\n$")
        self.assertEqual(output, errors.replace("networkQuality", "Failure", 1))
        self.assertLess(self.seconds, seconds)
        self.assertEqual(self.status, 1)

    def test_that_misbehaves_gives_no_number(self):
        for mode, (reason, seconds) in REFUSED.items():
            with self.subTest(mode):
                self.assert_refused(reason, *self.measure_by(mode), seconds)

    def test_that_refuses_uploads_gives_the_download_alone(self):
        output, errors = self.measure_by("refuses")
        self.assertIn("status 413", errors)
        self.assertIsNotNone(self.measured("Downlink capacity"))
        self.assertIsNone(self.measured("Uplink capacity"), output)

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


class AQuickUpload(BadServerCase):
    def test_that_is_disputed_when_it_is_over_has_been_carried(self):
        self.world.do("rate", 100, 2000, 20)
        output, errors = self.measure_by("disputes")
        self.assertGreater(self.end_bad().count("disputed"), 3,
                           "as many as broken connections would be forgiven")
        self.assertEqual(errors, "")
        self.assertIsNotNone(self.measured("Uplink capacity"), output)


if __name__ == "__main__":
    case.main("nghttpd", "openssl")
