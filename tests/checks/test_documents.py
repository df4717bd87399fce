#!/usr/bin/python3
"""The check of the documents finds mistakes."""

import pathlib
import tempfile
import unittest

import documents


class Documents(unittest.TestCase):
    """A small repository without faults, in which each test makes one."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name).resolve()
        self.write("README.md", "[guide](docs/guide.md#first-steps) [page](docs/architecture.md)\n"
                   "![it](docs/images/it.png) `scripts/build dev` [out](https://example.org/no)\n")
        self.write("CONTRIBUTING.md", "```sh\n./run  # then fuzz/corpus/TARGET\n```\n")
        self.write("CHANGELOG.md", "")
        self.write("SECURITY.md", "")
        self.write("docs/guide.md", "# Guide\n\n## First steps\n\n`speed` and `base/File.h`\n")
        self.write("docs/architecture.md",
                   "[base](../src/base) [settings](../src/settings) `~/src/other`\n")
        self.write("docs/images/it.png", "")
        self.write("scripts/build", "")
        self.write("run", "")
        self.write("fuzz/corpus/one/input", "")
        self.write("src/base/File.h", "")
        self.write("src/settings/AppSettings.h", 'constexpr Preference<bool> speed{"speed", true};')

    def write(self, path, text):
        file = self.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)

    def add(self, path, text):
        self.write(path, (self.root / path).read_text() + text)

    def faults(self):
        found = [fault for document in documents.documents(self.root)
                 for fault in documents.faults_of(self.root, document)]
        return [*found, *documents.unlinked(self.root), *documents.unmentioned(self.root)]

    def test_finds_nothing_where_nothing_is_wrong(self):
        self.assertEqual(self.faults(), [])

    def test_finds_links_that_lead_nowhere(self):
        for document, link in [
            ("README.md", "[a](docs/no.md)"),
            ("README.md", "[a](docs/guide.md#last-steps)"),
            ("docs/guide.md", "![a](images/no.png)"),
            ("docs/guide.md", "[a](#no)"),
        ]:
            with self.subTest(link):
                self.setUp()
                self.add(document, link)
                self.assertEqual(len(self.faults()), 1)

    def test_finds_named_paths_that_are_not_there(self):
        for code in ["`scripts/no`", "`sudo scripts/no now`", "`./no`", "```sh\n./no\n```",
                     "`src/base/No.h`", "`fuzz/no/TARGET`", "`docs/no/`"]:
            with self.subTest(code):
                self.setUp()
                self.add("CONTRIBUTING.md", f"\n{code}\n")
                self.assertEqual(len(self.faults()), 1)

    def test_finds_what_nobody_has_a_link_to(self):
        self.write("docs/lonely.md", "")
        self.write("docs/images/below/lonely.png", "")
        self.assertEqual(len(self.faults()), 2)

    def test_finds_rooms_and_preferences_that_are_left_out(self):
        self.write("src/attic/File.h", "")
        self.add("src/settings/AppSettings.h", '\nconstexpr Preference<int> more{"more", 1};')
        self.assertEqual([fault.split()[-1] for fault in self.faults()], ["src/attic", "more"])


if __name__ == "__main__":
    unittest.main()
