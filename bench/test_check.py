"""test_check.py - when the comparison with the figures that are checked in fails."""
import os
import tempfile
import unittest

import check
from callgrind import Count

NAME = "parse/rpc/4k/compactxml"


def compared(library, figure):
    return check.compare([Count(NAME, 1000, library + 500, library)],
                         {NAME: {"library": figure, "all": 0}})


class CheckTest(unittest.TestCase):
    def test_a_growth_of_more_than_a_twentieth_is_an_error(self):
        self.assertEqual(compared(10490, 10.0)[1], [])
        errors = compared(10510, 10.0)[1]
        self.assertEqual(len(errors), 1)
        self.assertIn(NAME, errors[0])

    def test_a_fall_is_told(self):
        lines, errors = compared(9400, 10.0)
        self.assertEqual(errors, [])
        self.assertIn("--update", lines[-1])
        self.assertEqual(len(compared(9600, 10.0)[0]), 1)

    def test_what_the_heap_needs_does_not_count(self):
        count = Count(NAME, 1000, 999999, 10000)
        self.assertEqual(check.compare([count], {NAME: {"library": 10.0, "all": 1.0}})[1], [])

    def test_a_job_that_is_gone_is_an_error_and_a_new_one_is_not(self):
        lines, errors = check.compare([Count("round/a/4k/compactxml", 1, 1, 1)],
                                      {NAME: {"library": 1.0, "all": 1.0}})
        self.assertEqual(errors, [f"{NAME} is not measured any more"])
        self.assertIn("new", lines[0])

    def test_figures_written_are_equal_to_what_was_counted(self):
        counts = [Count(NAME, 1000, 10, 7), Count("select-far/rpc/4k/compactxml", 0, 200, 150)]
        figures = check.as_figures(counts)
        self.assertEqual(figures["select-far/rpc/4k/compactxml"], {"library": 150, "all": 200})
        self.assertEqual(check.compare(counts, figures)[1], [])

    def test_chooses_small_documents_that_are_the_same_everywhere(self):
        jobs = {NAME: 4000, "parse/rpc/4k/expat": 4000, "parse/text/1M/compactxml": 1000000,
                "parse/file/xkb-data/compactxml": 5000, "load-schema/a/1/compactxml": 0}
        self.assertEqual(check.names_to_check(jobs), [NAME])

    def test_knows_the_compiler_of_a_build(self):
        with tempfile.TemporaryDirectory() as build:
            os.makedirs(f"{build}/CMakeFiles/3.25.1")
            with open(f"{build}/CMakeCache.txt", "w", encoding="utf-8") as file:
                file.write("CMAKE_CACHE_MAJOR_VERSION:INTERNAL=3\n"
                           "CMAKE_CACHE_MINOR_VERSION:INTERNAL=25\n"
                           "CMAKE_CACHE_PATCH_VERSION:INTERNAL=1\n")
            with open(f"{build}/CMakeFiles/3.25.1/CMakeCXXCompiler.cmake", "w",
                      encoding="utf-8") as file:
                file.write('set(CMAKE_CXX_COMPILER_ID "GNU")\n'
                           'set(CMAKE_CXX_COMPILER_VERSION "12.2.0")\n'
                           'set(CMAKE_CXX_COMPILER_VERSION_INTERNAL "")\n')
            self.assertEqual(check.compiler_key(build, "riscv64"), "riscv64 GNU 12")


if __name__ == "__main__":
    unittest.main()
