"""test_report.py - the report and its charts are whole whatever was measured."""
import json
import os
import tempfile
import unittest
from xml.etree import ElementTree

import chart
import report
import report_charts
import results
import runs as bench_runs
from callgrind import Count
from machine import Library

HERE = os.path.dirname(os.path.realpath(__file__))

def measured():
    found = bench_runs.Runs()
    for job, document in (("parse", "configuration/1M"), ("round", "ports/4k"),
                          ("build+delete", "configuration/10k"),
                          ("build+delete", "configuration/1M")):
        found.figures[job, document] = {
            name: bench_runs.Figure([time * 0.9, time, time * 1.2], 1000000)
            for name, time in (("compactxml", 0.002), ("a<b&c", 0.004), ("fast", 0.001))}
    return found


def of_runs(runs, grown):
    about = {"machine": "2 x Some, 1 MHz; load 1", "compiler": "GNU 12, -O3",
             "date": "2026-01-02T03:04:05"}
    return results.Results(about, [], runs, grown, [], [], [])


class ReportTest(unittest.TestCase):
    def test_charts_are_well_formed_and_tell_what_they_were_measured_with(self):
        charts = report_charts.all_charts(of_runs(measured(), measured()))
        self.assertEqual(set(charts),
                         {"parse.svg", "round.svg", "build-delete.svg", "growth.svg"})
        for content in charts.values():
            root = ElementTree.fromstring(content)
            self.assertTrue(root.tag.endswith("svg"))
            self.assertNotIn("script", content)
            self.assertIn(">2026-01-02, 2 x Some, 1 MHz, GNU 12, -O3<", content)

    def test_every_color_but_that_of_lines_has_one_for_dark_pages(self):
        content = report_charts.all_charts(of_runs(measured(), measured()))["parse.svg"]
        colors = {element.get(kind) for element in ElementTree.fromstring(content).iter()
                  for kind in ("fill", "stroke")} - {None}
        self.assertLessEqual(colors, set(chart.DARK))
        self.assertGreaterEqual(len(colors), 5)

    def test_no_chart_without_figures(self):
        nothing = of_runs(bench_runs.Runs(), bench_runs.Runs())
        self.assertEqual(report_charts.all_charts(nothing), {})

    def test_the_page_and_the_charts_in_docs_are_those_of_the_results_kept(self):
        with open(os.path.join(HERE, "notes.md"), encoding="utf-8") as file:
            notes = file.read()
        kept = results.read(os.path.join(HERE, "results.json"))
        docs = os.path.join(HERE, "..", "docs")
        wanted = report.pages(kept, notes, "performance")
        for path, content in wanted.items():
            with open(os.path.join(docs, path), encoding="utf-8") as file:
                self.assertEqual(file.read(), content, f"{path}: scripts/bench --from-results")
            self.assertLess(len(content), 40000 if path.endswith(".svg") else 200000)
        self.assertEqual({path for path in wanted if path.endswith(".svg")},
                         {os.path.join("performance", name)
                          for name in os.listdir(os.path.join(docs, "performance"))})

    def test_results_come_back_as_they_were_kept(self):
        library = Library("libcompactxml.so.1", 1, 2, ["libc.so.6"], 3)
        count = Count("parse/text/4k/expat", 4000, 12, 0)
        use = {"job": "build", "document": "text/4k", "contestant": "expat", "kept_bytes": 1}
        kept = results.Results({"date": "today"}, [library], measured(), bench_runs.Runs(), [use],
                               [count], [])
        text = results.as_text(kept)
        self.assertEqual(json.loads(text)["growth"], [])
        with tempfile.NamedTemporaryFile("w", suffix=".json", encoding="utf-8") as file:
            file.write(text)
            file.flush()
            found = results.read(file.name)
        self.assertEqual(results.as_text(found), text)
        self.assertEqual((found.libraries, found.counts, found.heap), ([library], [count], [use]))
        self.assertEqual(set(found.runs.figures), set(measured().figures))
        self.assertAlmostEqual(found.runs.figure("parse", "configuration/1M").spread, 0.15)

    def test_of_many_repetitions_the_ends_and_the_median_are_kept(self):
        runs = bench_runs.Runs()
        runs.figures["parse", "text/1M"] = {"expat": bench_runs.Figure([5, 1, 4, 2, 9], 10)}
        lines = json.loads(results.as_text(of_runs(runs, bench_runs.Runs())))["figures"]
        self.assertEqual(lines, [["parse", "text/1M", "expat", 10, 1, 4, 9]])

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
