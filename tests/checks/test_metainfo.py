#!/usr/bin/python3
"""Software catalogues accept the entry, with the packager's addresses and without them."""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
VERSION = re.search(r"project\(Tidewell VERSION ([0-9.]+)", (ROOT / "CMakeLists.txt").read_text())[1]
ADDRESSES = ["-DTIDEWELL_HOMEPAGE=https://tidewell.example",
             "-DTIDEWELL_PICTURES=https://tidewell.example/pictures"]
# The identifier is also the name on the bus, where capitals are usual.
ACCEPTED = {"cid-contains-uppercase-letter"}


class Metainfo(unittest.TestCase):
    def setUp(self):
        self.folder = self.enterContext(tempfile.TemporaryDirectory())
        self.entry = pathlib.Path(self.folder, "com.halden.Tidewell.metainfo.xml")

    def make(self, *options):
        subprocess.run(["cmake", f"-DPROJECT_VERSION={VERSION}", *options, "-P", ROOT / "packaging/metainfo.cmake"],
                       cwd=self.folder, check=True, stdout=subprocess.DEVNULL)
        self.entry.with_suffix(".xml.in").rename(self.entry)
        return self.entry.read_text()

    def complaints(self):
        """The validator's tags. It exits with 3 on errors and with 0 on hints."""
        said = subprocess.run(["appstreamcli", "validate", "--pedantic", "--no-net", "--no-color", self.entry],
                              capture_output=True, text=True)
        self.assertIn("Validation", said.stdout, said.stderr)
        return set(re.findall(r"^[EWIP]: \S+ ([\w-]+)", said.stdout, re.MULTILINE)) - ACCEPTED

    def test_is_complete_with_addresses(self):
        self.make(*ADDRESSES)
        self.assertEqual(self.complaints(), set())

    def test_names_the_pictures_that_are_there(self):
        for picture in re.findall(r"https://tidewell.example/pictures/(.+)</image>", self.make(*ADDRESSES)):
            self.assertTrue((ROOT / "docs/images" / picture).exists(), picture)

    def test_has_no_addresses_unless_they_are_given(self):
        self.assertNotIn("<url", self.make())
        self.assertLessEqual(self.complaints(), {"url-homepage-missing"})  # newer validators say so

    def test_names_the_version(self):
        self.assertIn(f'<release version="{VERSION}" date="', self.make())


if __name__ == "__main__":
    if not shutil.which("appstreamcli"):
        print("skipped: no appstreamcli")
        sys.exit(77)
    unittest.main(verbosity=2)
