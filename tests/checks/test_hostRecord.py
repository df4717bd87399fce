#!/usr/bin/python3
"""The table of desktops is made from the tests' records."""

import json
import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "desktop"))

import hostRecord  # noqa: E402

DOCUMENT = """# Desktops

{table}

More text.
"""


class HostRecord(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.records = pathlib.Path(folder.name) / "records"
        self.records.mkdir()
        self.document = pathlib.Path(folder.name) / "hosts.md"
        (self.document.parent / "images").mkdir()

    def record(self, desktop, **row):
        (self.records / f"{desktop}.json").write_text(json.dumps(row))

    def write_table(self):
        self.document.write_text(DOCUMENT.format(table="\n".join(hostRecord.table(self.records))))

    def rows(self):
        return [line for line in self.document.read_text().splitlines() if line.startswith("|")][2:]

    def test_rows_of_desktops_without_a_new_record_stay_in_order(self):
        (self.records / "host-b.png").touch()
        for desktop in ("a", "b", "c"):
            self.record(desktop, item=f"old {desktop}")
        self.write_table()
        before = self.rows()
        hostRecord.replace_in(self.document, self.records)
        self.assertEqual(self.rows(), before)
        for desktop in ("a", "b"):
            (self.records / f"{desktop}.json").unlink()
        self.record("c", item="new")
        self.record("aa", item="new")
        hostRecord.replace_in(self.document, self.records)
        self.assertEqual(len(self.rows()), 4)
        self.assertEqual([self.rows()[0], self.rows()[2]], before[:2])
        self.assertIn("| aa | new |", self.rows()[1])
        self.assertIn("| c | new |", self.rows()[3])
        self.assertTrue(self.document.read_text().endswith("\n\nMore text.\n"))

    def test_pictures_without_a_row_go(self):
        for desktop in ("a", "b"):
            (self.records / f"host-{desktop}.png").touch()
            self.record(desktop)
        self.write_table()
        hostRecord.replace_in(self.document, self.records)
        pictures = self.document.parent / hostRecord._PICTURES
        (pictures / "host-old.png").touch()
        hostRecord.replace_in(self.document, self.records)
        self.assertEqual(sorted(file.name for file in pictures.iterdir()), ["host-a.png", "host-b.png"])


if __name__ == "__main__":
    unittest.main()
