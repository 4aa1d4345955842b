"""test_growth.py - when a cost counts as level."""
import unittest

import growth
from callgrind import Count


def counts(*per_byte):
    sizes = ((f"{10 ** power}k", 10 ** power * 1000) for power in range(1, len(per_byte) + 1))
    return [Count(f"parse/text/{label}/compactxml", size, round(size * cost), 1)
            for (label, size), cost in zip(sizes, per_byte)]


class GrowthTest(unittest.TestCase):
    def test_is_level_within_fifteen_percent_between_any_two_sizes(self):
        self.assertTrue(growth.by_instructions(counts(10, 11.4, 10))[0].level)
        line = growth.by_instructions(counts(10.5, 9.5, 11.5))[0]
        self.assertFalse(line.level)
        self.assertAlmostEqual(line.swing, 11.5 / 9.5 - 1)

    def test_shows_sizes_from_small_to_large(self):
        line = growth.by_instructions(reversed(counts(1, 2, 3)))[0]
        self.assertEqual([cost[0] for cost in line.costs], ["10k", "100k", "1000k"])
        self.assertEqual(growth.cells(line)[-1], "no")

    def test_one_size_and_other_contestants_tell_nothing(self):
        other = [Count("parse/text/1M/expat", 1000000, 1, 0)]
        self.assertEqual(growth.by_instructions(counts(10) + other), [])

    def test_heap_is_compared_by_what_is_kept(self):
        uses = [{"job": "build", "document": f"text/{label}", "contestant": "compactxml",
                 "document_bytes": size, "kept_bytes": size * 5}
                for label, size in (("4k", 4000), ("1M", 1000000))]
        self.assertTrue(growth.by_heap(uses)[0].level)


if __name__ == "__main__":
    unittest.main()
