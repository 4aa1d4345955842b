"""test_targets.py - what is made of a run's ratios."""
import unittest

import runs as bench_runs
import targets


def measured(by_job):
    """Figures from {(job, document): {contestant: seconds}}."""
    found = bench_runs.Runs()
    found.figures = {key: {name: bench_runs.Figure([seconds], 1000)
                           for name, seconds in by_contestant.items()}
                     for key, by_contestant in by_job.items()}
    return found


def outcome(found, job, against):
    return next(outcome for outcome in targets.outcomes(found)
                if (outcome.target.job, outcome.target.against) == (job, against))


class TargetsTest(unittest.TestCase):
    def test_takes_the_median_over_documents_and_the_lowest(self):
        found = measured({("parse", f"text/{size}"): {"compactxml": 1.0, "libxml2-sax2": ratio}
                          for size, ratio in (("1k", 2.0), ("10k", 2.6), ("1M", 3.0))})
        beside = outcome(found, "parse", "libxml2 SAX2")
        self.assertEqual(beside.median, 2.6)
        self.assertEqual(beside.lowest, ("text/1k", 2.0))
        self.assertEqual(beside.misses, [])

    def test_compares_with_the_fastest_peer(self):
        found = measured({("parse", "text/1k"): {"compactxml": 1.0, "libxml2-sax2": 1.4,
                                                 "expat": 5.0}})
        beside = outcome(found, "parse", "fastest peer")
        self.assertEqual(beside.lowest[1], 1.4)
        self.assertEqual(beside.misses, ["lowest"])

    def test_finds_the_heap_floor_among_the_limits(self):
        found = measured({("build+delete", "text/1k"): {"compactxml": 2.0},
                          ("limit", "text/1k"): {"heap-floor": 1.2, "heap-floor-forward": 0.5}})
        beside = outcome(found, "build+delete", "heap floor")
        self.assertEqual(beside.lowest[1], 0.6)
        self.assertEqual(beside.misses, ["median", "lowest"])

    def test_equal_is_not_faster(self):
        found = measured({("select-far", "rpc/4k"): {"compactxml": 1.0, "pugixml-path": 1.0}})
        self.assertEqual(outcome(found, "select-far", "pugixml's path").misses, ["median"])

    def test_chinese_targets_look_at_chinese_documents_alone(self):
        found = measured({("parse", "text/1k"): {"compactxml": 1.0, "libxml2-sax2": 9.0},
                          ("parse", "chinese/1k"): {"compactxml": 1.0, "libxml2-sax2": 2.0}})
        beside = outcome(found, "parse", "fastest converting peer, Chinese")
        self.assertEqual(beside.ratios, {"chinese/1k": 2.0})

    def test_a_peer_that_has_nothing_to_convert_is_not_one_that_converts(self):
        built = {"compactxml": 1.0, "pugixml-iconv": 0.1, "pugixml-iconv-utf8": 2.0}
        found = measured({("build+delete", "chinese-gb18030/1k"): built})
        beside = outcome(found, "build+delete", "fastest converting peer, Chinese")
        self.assertEqual(beside.lowest[1], 2.0)

    def test_leaves_out_what_was_not_measured(self):
        self.assertEqual(targets.outcomes(measured({("parse", "text/1k"): {"expat": 1.0}})), [])

    def test_the_size_has_a_target_too(self):
        met = {size: targets.rows(measured({}), size)[0][-1] for size in (150000, 150001, 180001)}
        self.assertEqual(list(met.values()), ["yes", "no, but below the second", "no"])

    def test_tells_by_whom_this_library_is_beaten(self):
        found = measured({("parse", "text/1k"): {"compactxml": 2.0, "expat": 1.0, "slow": 3.0},
                          ("limit", "text/1k"): {"memcpy": 0.1}})
        self.assertEqual(targets.losses(found), [("parse", "text/1k", "expat", 0.5)])


if __name__ == "__main__":
    unittest.main()
