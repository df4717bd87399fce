#!/usr/bin/python3
"""What bench/compare makes of texts and figures, and that the documents claim what was measured."""

import pathlib
import re
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path[:0] = [str(ROOT / name) for name in ("bench", "bench/compare", "tests/world", "tests/desktop")]

import meter  # noqa: E402
import readings  # noqa: E402
import report  # noqa: E402
import table  # noqa: E402

SHOWN = [
    (readings.conky, "conky: hello\n net 1.5 0.5\nnet 2.0 1.0\nnet 2", [(1536, 512), (2048, 1024)]),
    (readings.polybar, "%{r}net 1.2 MB/s 345 KB/s%{PR}\n%{r}net 7 B/s   0 B/s",
     [(1_200_000, 345_000), (7, 0)]),
    (readings.bwm_ng, "00;9\n1.5;eth0;345.00;1235.00;1580.00\n1.5;total;1.00;2.00;3.00\n",
     [(1235, 345)]),
    (readings.nethogs, "2/0\t9\t9\n\nRefreshing:\na b/1/0\t1\t2\nunknown UDP/0/0\t0.5\t4\n\n"
     "Refreshing:\n\nRefreshing:\nc/2/0\t1e-1\t0\n", [(6144, 1536), (0, 102.4)]),
    (readings.vnstat, 'hello\n{"rx":{"bytespersecond":5},"tx":{"bytespersecond":3}}\n{"rx":'
     '{"ratestring":"6 B/s","bytespersecond":6},\n"tx":{"bytespersecond":4}}', [(5, 3), (6, 4)]),
    (lambda text: readings.samples(text, last=1),
     '{"type":"a(dxxddd)","data":[[1.5,10,20,0,0,0],[2.5,30,40,0,0,0]]}', [(30, 40)]),
    (readings.panel_text, 's "↓1.2M ↑345K"', [(1_200_000, 345_000)]),
]
# Figures of Tidewell and of another program, as (mean, least, most).
VERDICTS = {
    "cpu": [((1, 0, 2), (4, 3, 5), "leads"), ((4, 3, 5), (1, 0, 2), "**does not lead**"),
            ((2, 1, 3), (4, 3, 5), "level"), ((4, 3, 5), (2, 1, 3), "level"), (None, (1, 1, 1), "")],
    "pss": [((94,), (100,), "leads"), ((96,), (100,), "level"), ((104,), (100,), "level"),
            ((106,), (100,), "**does not lead**")],
    "error": [((1.0,), (1.3,), "leads"), ((1.1,), (1.2,), "level"), ((1.2,), (1.1,), "level"),
              ((1.3,), (1.0,), "**does not lead**")],
}


def figures(cpu, memory=1.0, error=0.0):
    return {"cpu": [cpu] * 3, "wakeups": [1.0] * 3, "others": [5.0] * 3, "pss": [memory] * 3,
            "private": [memory] * 3, "error": [error] * 3}


class Comparison(unittest.TestCase):
    def test_reads_the_rates_that_programs_print(self):
        for read, text, rates in SHOWN:
            self.assertEqual(read(text), rates)

    def test_verdicts_follow_the_figures(self):
        for criterion, cases in VERDICTS.items():
            for ours, theirs, verdict in cases:
                self.assertEqual(table.verdict(ours, theirs, criterion), verdict)

    def test_a_thread_counts_from_its_start(self):
        before = meter.Reading(10.0, 1_000_000_000, {1: 5, 2: 7}, 100.0)
        after = meter.Reading(20.0, 1_500_000_000, {1: 15, 3: 4}, 102.5)
        self.assertEqual(meter.window(before, after), (5.0, 1.4, 20.0))

    def test_an_item_costs_what_its_panel_spends_more(self):
        found = table.blocks({"machine": "", "Xfce panel": {"panel": figures(1.0)}, "conky": {
            "program": figures(0.1)}, "Tidewell, as installed": {
                "program": figures(0.05), "panel": figures(1.5, 3.0), "text": [1.0] * 3}})
        self.assertIn("in the Xfce panel | 0.550 | 1.0 | 3.0 | 3.0 | 1.00", found["programs"])
        self.assertEqual(found["verdicts"].count("| conky | leads | level | level | level | **"), 1)
        self.assertEqual(table.figure((-0.0001, -0.2, 0.1), 1), "0.0 (-0.2 - 0.1)")

    def test_the_documents_claim_what_was_measured(self):
        blocks = report.blocks((ROOT / "docs/comparison.md").read_text())
        self.assertEqual(set(blocks), {"programs", "verdicts", "versions", *table._GROWTH})
        rows = {name: list(map(float, re.findall(r"\| ([\d.]+)", line))) for name, line in re.findall(
            r"^\| (Tidewell[^|]*?) (\|.*)$", blocks["programs"], re.MULTILINE)}
        self.assertEqual(len(rows), 4)
        for file in ("README.md", "packaging/com.halden.Tidewell.metainfo.xml.in"):
            self.assertRegex((ROOT / file).read_text(), r"about two\s+megabytes of\s+memory")
        processor, _, memory, *_ = rows["Tidewell, as installed"]
        self.assertEqual(round(memory), 2)
        self.assertRegex((ROOT / "README.md").read_text(), r"about a tenth of a percent of a processor")
        self.assertAlmostEqual(processor, 0.1, delta=0.05)


if __name__ == "__main__":
    unittest.main()
