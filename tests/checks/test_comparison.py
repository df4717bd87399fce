#!/usr/bin/env python3
"""What bench/compare makes of texts and figures."""

import pathlib
import sys
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent.parent / "bench/compare"))

import curves  # noqa: E402
import meter  # noqa: E402
import readings  # noqa: E402
import summary  # noqa: E402
import table  # noqa: E402
import verdicts  # noqa: E402


class Readings(unittest.TestCase):
    def test_conky_is_in_kibibytes(self):
        self.assertEqual(readings.conky("conky: hello\n net 1.5 0.5\nnet 2.0 1.0\nnet 2"),
                         [(1536.0, 512.0), (2048.0, 1024.0)])

    def test_polybar_is_in_thousands(self):
        self.assertEqual(readings.polybar("%{r}net 1.2 MB/s 345 KB/s%{PR}\n%{r}net 7 B/s   0 B/s"),
                         [(1_200_000.0, 345_000.0), (7.0, 0.0)])

    def test_bwm_ng_names_what_is_sent_first(self):
        text = "00;9\n1.5;eth0;345.00;1235.00;1580.00\n1.5;total;1.00;2.00;3.00\n"
        self.assertEqual(readings.bwm_ng(text), [(1235.0, 345.0)])

    def test_nethogs_tells_the_sum_of_its_rows(self):
        text = ("2/0\t9\t9\n\nRefreshing:\na b/1/0\t1\t2\nunknown UDP/0/0\t0.5\t4\n\nRefreshing:\n"
                "\nRefreshing:\nc/2/0\t1e-1\t0\n")
        self.assertEqual(readings.nethogs(text), [(6144.0, 1536.0), (0.0, 102.4)])

    def test_vnstat_tells_documents_one_after_the_other(self):
        one = '{"rx":{"bytespersecond":5},"tx":{"bytespersecond":3}}'
        self.assertEqual(readings.vnstat(f"hello\n{one}\n{one}\n"), [(5.0, 3.0)] * 2)

    def test_tidewells_samples_are_the_last_ones(self):
        text = '{"type":"a(dxxddd)","data":[[1.5,10,20,0,0,0],[2.5,30,40,0,0,0]]}'
        self.assertEqual(readings.samples(text, last=1), [(30.0, 40.0)])

    def test_the_panels_text_is_in_thousands(self):
        self.assertEqual(readings.panel_text('s "↓1.2M ↑345K"'), [(1_200_000.0, 345_000.0)])


def group(cpu, pss=1024, private=512, wakeups=(1.0, 1.0, 1.0)):
    windows = [{"cpu": c, "wakeups": w, "others": 5.0} for c, w in zip(cpu, wakeups)]
    return {"windows": windows, "pss": pss, "private": private, "processes": 1}


class Summary(unittest.TestCase):
    def test_windows_have_a_mean_and_ends(self):
        found = summary.figures(group([0.125, 0.0, 0.625], pss=2048))
        self.assertEqual(found["cpu"], (0.25, 0.0, 0.625))
        self.assertEqual((found["pss"][0], found["private"][0]), (2.0, 0.5))

    def test_a_difference_is_as_uncertain_as_both_together(self):
        more, less = {"cpu": (5.0, 4.0, 7.0)}, {"cpu": (2.0, 1.0, 3.0)}
        self.assertEqual(summary.minus(more, less), {"cpu": (3.0, 1.0, 6.0)})

    def test_errors_are_of_both_directions(self):
        rates = {"shown": [[100, 180], [101, 200]], "truth": [100, 200]}
        self.assertEqual(summary.error(rates), (2.75, 0.0, 10.0))
        self.assertIsNone(summary.error({"shown": [], "truth": [1, 1]}))

    def test_overlapping_windows_are_level(self):
        def verdict(ours, theirs):
            return summary.verdict(ours, theirs, "cpu")
        self.assertEqual(verdict((1, 0, 2), (4, 3, 5)), "leads")
        self.assertEqual(verdict((4, 3, 5), (1, 0, 2)), "behind")
        self.assertEqual(verdict((2, 1, 3), (4, 3, 5)), "level")
        self.assertEqual(verdict((4, 3, 5), (2, 1, 3)), "level")
        self.assertIsNone(verdict(None, (1, 1, 1)))

    def test_near_memory_is_level(self):
        def verdict(ours, theirs):
            return summary.verdict((ours,) * 3, (theirs,) * 3, "pss")
        self.assertEqual([verdict(94, 100), verdict(96, 100), verdict(104, 100), verdict(106, 100)],
                         ["leads", "level", "level", "behind"])

    def test_accuracies_are_compared_by_points(self):
        def verdict(ours, theirs):
            return summary.verdict((ours, 0, 9), (theirs, 0, 9), "error")
        self.assertEqual([verdict(1.0, 1.3), verdict(1.1, 1.2), verdict(1.2, 1.1), verdict(1.3, 1.0)],
                         ["leads", "level", "level", "behind"])

    def test_panels_count_by_what_they_spend_more(self):
        rows = summary.rows(results())
        self.assertAlmostEqual(rows["Xfce's netload plugin"]["cpu"][0], 0.2)
        whole = rows["Tidewell, rates alone, with its item in the Xfce panel"]
        self.assertAlmostEqual(whole["cpu"][0], 0.05 + 0.1)
        self.assertAlmostEqual(whole["pss"][0], 1 + 2)


def results():
    """As `measure` keeps them."""
    def run(**groups):
        return {"seconds": 40, "settle": 12, "groups": groups}
    exact = {"shown": [[1000, 100]], "truth": [1000, 100]}
    rounded = {"shown": [[1000, 110]], "truth": [1000, 100]}
    return {
        "Tidewell, rates alone": {**run(
            tidewell=group([0.05] * 3), panel=group([1.1] * 3, pss=12 * 1024)),
            "rates": exact, "text": rounded},
        "Xfce panel": run(panel=group([1.0] * 3, pss=10 * 1024)),
        "Xfce panel with netload": {**run(panel=group([1.2] * 3, pss=11 * 1024)), "version": "1.4"},
        "light": {**run(program=group([0.01] * 3, pss=300)), "rates": exact},
        "heavy": {**run(program=group([2.0] * 3, pss=9000, wakeups=(9, 9, 9))), "version": "2.0",
                  "command": "heavy -v", "interval": "1 s"},
        "broken": {"error": "FileNotFoundError: broken"},
    }


class Verdicts(unittest.TestCase):
    def test_follow_the_figures(self):
        found = verdicts.compare(summary.rows(results()), "Tidewell, rates alone")
        self.assertEqual(found["heavy", "cpu"], "leads")
        self.assertEqual(found["light", "cpu"], "behind")
        self.assertEqual(found["heavy", "wakeups"], "leads")
        self.assertEqual(found["light", "wakeups"], "level")

    def test_accuracy_is_that_of_the_text_in_the_panel(self):
        found = verdicts.compare(summary.rows(results()), "Tidewell, rates alone")
        self.assertEqual(found["light", "error"], "behind")
        self.assertIsNone(found["heavy", "error"])

    def test_every_place_has_a_reason(self):
        rows = summary.rows(results())
        for ours in verdicts.OURS:
            for criterion in summary.CRITERIA:
                why, after = verdicts.reason(ours, criterion, "light", rows)
                self.assertTrue(why and after)

    def test_the_panel_is_to_blame_only_for_what_the_resident_is_not(self):
        rows = summary.rows(results())
        whole, alone = verdicts.WHOLES[0], verdicts.RESIDENTS[0]
        self.assertEqual(verdicts.compare(rows, whole)["light", "cpu"], "behind")
        self.assertEqual(verdicts.reason(whole, "cpu", "light", rows),
                         verdicts.reason(alone, "cpu", "light", rows))
        rows["light"]["cpu"] = (0.1, 0.1, 0.1)
        self.assertNotEqual(verdicts.reason(whole, "cpu", "light", rows),
                            verdicts.reason(alone, "cpu", "light", rows))


class Table(unittest.TestCase):
    def test_tells_figures_verdicts_reasons_and_failures(self):
        text = table.text(results())
        self.assertIn("| heavy | 2.000 | 9.0 | 8.8 | 0.5 | not readable |", text)
        self.assertIn("| light | **does not lead** | level | **does not lead** |", text)
        self.assertIn("| processor time | rates alone, rates alone in the panel: light |", text)
        self.assertIn("- broken: FileNotFoundError: broken", text)
        self.assertIn("| heavy | 2.0 | `heavy -v` | 1 s |", text)

    def test_no_zero_has_a_sign(self):
        self.assertEqual(table.span((-0.0001, -0.2, 0.1), 1), "0.0 (-0.2 - 0.1)")
        self.assertEqual(table.span((1.0, 1.0, 1.0), 2), "1.00")

    def test_says_nothing_of_what_was_not_measured(self):
        self.assertNotIn("How it grows", table.text(results()))

    def test_curves_have_the_helpers_cost(self):
        point = {"groups": {"tidewell": group([0.0, 0.6, 0.0])}, "helper": {
            "bpf": {"milliseconds": [3.0, 1.0, 2.0], "peak": 1024}, "diag": None}}
        text = curves.curves({"growth sockets": {"points": {"1000": point}}})
        self.assertIn("| 1,000 | 0.200 | 1.0 | 1.0 | 0.50 | 2.0 (1.0 - 3.0), 1.0 | refused |", text)


class Meter(unittest.TestCase):
    def test_a_thread_counts_from_its_birth(self):
        before = meter.Reading(10.0, 1_000_000_000, {1: 5, 2: 7}, 100.0)
        after = meter.Reading(20.0, 1_500_000_000, {1: 15, 3: 4}, 102.5)
        found = meter.window(before, after)
        self.assertAlmostEqual(found["cpu"], 5.0)
        self.assertAlmostEqual(found["wakeups"], 1.4)
        self.assertAlmostEqual(found["others"], 20.0)


if __name__ == "__main__":
    unittest.main()
