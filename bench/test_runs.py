"""test_runs.py - figures as they are read from Google Benchmark's results."""
import unittest

import runs


def entry(name, cpu, real=0.0, rate=0.0, **more):
    return {"run_name": name, "run_type": "iteration", "cpu_time": cpu, "real_time": real,
            "time_unit": "us", "bytes_per_second": rate, **more}


def results(*entries):
    return {"context": {"date": "today"}, "benchmarks": list(entries)}


class RunsTest(unittest.TestCase):
    def test_takes_the_median_and_the_spread_of_repetitions(self):
        found = runs.Runs()
        found.add(results(*(entry("parse/text/1M/expat", cpu, rate=1e12 / cpu)
                            for cpu in (90, 100, 130))))
        figure = found.figure("parse", "text/1M", "expat")
        self.assertAlmostEqual(figure.median, 100e-6)
        self.assertAlmostEqual(figure.spread, 0.2)
        self.assertEqual(figure.size, 1000000)
        self.assertAlmostEqual(figure.rate, 1e10)
        self.assertGreater(figure.best_rate, figure.worst_rate)

    def test_takes_the_clock_that_the_program_counted_with(self):
        found = runs.Runs()
        found.add(results(entry("limit-fresh/rpc/4k/heap-floor/manual_time", 1, real=7),
                          entry("limit/rpc/4k/heap-floor", 1, real=7)))
        self.assertAlmostEqual(found.figure("limit-fresh", "rpc/4k", "heap-floor").median, 7e-6)
        self.assertAlmostEqual(found.figure("limit", "rpc/4k", "heap-floor").median, 1e-6)

    def test_leaves_out_aggregates_and_tells_errors_once(self):
        found = runs.Runs()
        failed = entry("parse/rpc/4k/expat", 1, error_occurred=True, error_message="no")
        found.add(results(failed, failed, {"run_type": "aggregate", "run_name": "x"}))
        self.assertEqual(found.figures, {})
        self.assertEqual(found.errors, ["parse/rpc/4k/expat: no"])

    def test_orders_documents_by_kind_and_size_and_files_last(self):
        labels = ["file/xkb-data", "text/1M", "rpc/4k", "text/10k", "text/500"]
        self.assertEqual(sorted(labels, key=runs.document_order),
                         ["rpc/4k", "text/500", "text/10k", "text/1M", "file/xkb-data"])

    def test_shows_times_in_a_unit_that_fits(self):
        self.assertEqual(runs.time_text(0.0125), "12.50 ms")
        self.assertEqual(runs.time_text(1.5e-6), "1.50 us")
        self.assertEqual(runs.time_text(89e-9), "89.0 ns")


if __name__ == "__main__":
    unittest.main()
