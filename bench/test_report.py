"""test_report.py - the report and its charts are whole whatever was measured."""
import unittest
from xml.etree import ElementTree

import chart
import report
import report_charts
import runs as bench_runs


def measured():
    found = bench_runs.Runs()
    for job, document in (("parse", "configuration/1M"), ("round", "ports/4k"),
                          ("build+delete", "configuration/10k"),
                          ("build+delete", "configuration/1M")):
        found.figures[job, document] = {
            name: bench_runs.Figure([time * 0.9, time, time * 1.2], 1000000)
            for name, time in (("compactxml", 0.002), ("a<b&c", 0.004), ("fast", 0.001))}
    return found


class ReportTest(unittest.TestCase):
    def test_charts_are_well_formed(self):
        charts = report_charts.all_charts(measured(), measured())
        self.assertEqual(set(charts),
                         {"parse.svg", "round.svg", "build-delete.svg", "growth.svg"})
        for content in charts.values():
            root = ElementTree.fromstring(content)
            self.assertTrue(root.tag.endswith("svg"))
            self.assertNotIn("script", content)

    def test_no_chart_without_figures(self):
        self.assertEqual(report_charts.all_charts(bench_runs.Runs(), bench_runs.Runs()), {})

    def test_axes_reach_the_largest_value_in_round_steps(self):
        for largest in (0.003, 1, 7.2, 35.2, 518, 2531, 99999):
            marks = chart.ticks(largest)
            self.assertGreaterEqual(marks[-1] * 1.001, largest)
            self.assertLess(marks[-1] / largest, 1.5)
            self.assertLessEqual(len(marks), 8)

    def test_numbers_have_three_digits(self):
        self.assertEqual([chart.number(value) for value in (0, 0.1234, 35.24, 518.7, 2531.3)],
                         ["0", "0.123", "35.2", "519", "2,531"])

    def test_this_library_comes_first_in_a_table_and_others_by_speed(self):
        heading = report.job_table(measured(), "parse").splitlines()[0]
        self.assertEqual(heading, "| MB/s | `compactxml` | `fast` | `a<b&c` |")

    def test_tells_where_this_library_is_behind(self):
        section = report.loss_section(measured())
        self.assertIn("- `build+delete`: `fast` on every document; this library has 0.50 of its "
                      "speed", section)
        self.assertNotIn("a<b&c", section)
        self.assertIn("Nowhere", report.loss_section(bench_runs.Runs()))


if __name__ == "__main__":
    unittest.main()
