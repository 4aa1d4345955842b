"""test_callgrind.py - instructions by shared library, from callgrind's output."""
import unittest

import callgrind

# The program (10) calls the library (200 + 4, in two functions), which calls malloc (30).
OUTPUT = """# callgrind format
version: 1
pid: 1
positions: line
events: Ir
summary: 244

ob=(1) /tmp/program
fl=(1) main.cpp
fn=(1) bench_measured_run
10 8
+2 2
cob=(2) /tmp/libcompactxml.so.1.0.0
cfi=(2) lexer.cpp
cfn=(2) parse
calls=1 20
* 234

ob=(3) /usr/lib/libc.so.6
fl=(3) malloc.c
fn=(3) malloc
0 30

ob=(2)
fl=(2)
fn=(2)
20 150
-1 50
cob=(3)
cfi=(3)
cfn=(3)
calls=7 0
20 30
cfn=(4) inner
calls=1 40
20 4

fn=(4)
40 4
totals: 244
"""


class CallgrindTest(unittest.TestCase):
    def test_counts_what_is_executed_in_each_file_once(self):
        costs = callgrind.instructions_by_object(OUTPUT)
        self.assertEqual(costs, {"/tmp/program": 10, "/tmp/libcompactxml.so.1.0.0": 204,
                                 "/usr/lib/libc.so.6": 30})

    def test_a_job_without_bytes_is_counted_by_the_run(self):
        self.assertEqual(callgrind.Count("a/b/c/d", 0, 500, 400).per_byte(500), 500)
        self.assertEqual(callgrind.Count("a/b/c/d", 100, 500, 400).per_byte(500), 5)

    def test_takes_names_apart(self):
        count = callgrind.Count("parse/rpc/4k/expat", 1, 1, 0)
        self.assertEqual((count.job, count.document, count.contestant),
                         ("parse", "rpc/4k", "expat"))


if __name__ == "__main__":
    unittest.main()
