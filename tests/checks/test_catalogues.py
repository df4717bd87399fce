#!/usr/bin/python3
"""The catalogues of the texts: test_catalogues.py BUILD TIDEWELLCTL"""

import os
import pathlib
import re
import subprocess
import sys
import unittest
import xml.etree.ElementTree

ROOT = pathlib.Path(__file__).resolve().parents[2]
LANGUAGES = (ROOT / "po" / "LINGUAS").read_text(encoding="utf-8").split()
XML_LANGUAGE = "{http://www.w3.org/XML/1998/namespace}lang"


class Catalogues(unittest.TestCase):
    def output(self, *command, **variables):
        return subprocess.run(command, capture_output=True, text=True, check=False,
                              env={**os.environ, **variables})  # fmt: skip

    def test_template_has_the_texts_of_the_sources(self):
        made = self.output(ROOT / "scripts" / "updateCatalogues", "--check")
        self.assertEqual(made.returncode, 0, made.stdout + made.stderr)

    def test_every_catalogue_translates_every_text(self):
        self.assertEqual(LANGUAGES, sorted(path.stem for path in (ROOT / "po").glob("*.po")))
        for language in LANGUAGES:
            compared = self.output("msgcmp", ROOT / "po" / f"{language}.po", ROOT / "po" / "tidewell.pot")
            self.assertEqual(compared.returncode, 0, compared.stderr)

    def test_translations_have_the_places_of_the_texts(self):
        for language in LANGUAGES:
            listed = self.output("msgcat", "--no-wrap", ROOT / "po" / f"{language}.po").stdout
            for entry in listed.split("\n\n")[1:]:
                english, _, other = entry.partition("\nmsgstr ")
                places = re.findall(r"%\d", english.partition("msgid ")[2])
                self.assertEqual(sorted(places), sorted(re.findall(r"%\d", other)), entry)

    def test_menu_entry_is_in_every_language(self):
        entry = (BUILD / "po" / "com.halden.Tidewell.desktop").read_text(encoding="utf-8")
        for language in LANGUAGES:
            for key in ("GenericName", "Comment", "Keywords"):
                self.assertIn(f"\n{key}[{language}]=", entry)
        self.assertIn("\nName=Tidewell\n", entry)

    def test_entry_of_the_software_catalogue_is_in_every_language(self):
        tree = xml.etree.ElementTree.parse(BUILD / "po" / "com.halden.Tidewell.metainfo.xml")
        summaries = {item.get(XML_LANGUAGE) for item in tree.getroot().findall("summary")}
        self.assertEqual(summaries, {None, *LANGUAGES})
        self.assertEqual(tree.getroot().findtext("id"), "com.halden.Tidewell")

    def test_control_program_speaks_the_users_language(self):
        german = self.output(CONTROL, "nonsense", LC_ALL="C.UTF-8", LANGUAGE="de")
        self.assertEqual(german.stderr, "tidewellctl: unbekannter Befehl „nonsense“; siehe „tidewellctl --help“\n")
        self.assertEqual(german.returncode, 2)
        english = self.output(CONTROL, "nonsense", LC_ALL="C", LANGUAGE="de")
        self.assertEqual(english.stderr, 'tidewellctl: unknown command "nonsense"; try "tidewellctl --help"\n')

    def test_a_locale_that_is_not_installed_means_english(self):
        shown = self.output(CONTROL, "nonsense", LC_ALL="xx_XX.UTF-8", LANGUAGE="de")
        self.assertEqual(shown.stderr, 'tidewellctl: unknown command "nonsense"; try "tidewellctl --help"\n')


if __name__ == "__main__":
    BUILD, CONTROL = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    unittest.main(argv=sys.argv[:1])
