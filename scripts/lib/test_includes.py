"""test_includes.py - what scripts/check-includes finds, and what it has nothing against."""
import os
import subprocess
import sys
import tempfile
import unittest

SCRIPT = os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "check-includes")
DRAWING = """
 │ top/        what is above │──▶ bottom/  low/
 ├───────────────────────────┤
 │ low/        below         │──▶ low/part
 ├───────────────────────────┤
 │ low/part    a file        │
 ├───────────────────────────┤
 │ tools/bottom/   far below │
 │ include/    the header    │
"""
SOURCES = {
    "top/a.cpp": '#include "low/a.h"\n#include <vector>\n#  include "top/a.h"\n',
    "top/a.h": '#include "public.h"\n#include "bottom/a.h"\n',
    "low/a.h": '#include "part.h"\n// #include "top/a.h"\n',
    "low/part.h": '#include "public.h"\n',
    "tools/bottom/a.h": "",
    "include/public.h": "",
}


class IncludesTest(unittest.TestCase):
    def check(self, changed=None, drawing=DRAWING):
        """Runs the check over the sources, some of them changed; gives its result and what it says."""
        with tempfile.TemporaryDirectory() as root:
            for path, text in {**SOURCES, **(changed or {}), "docs/design.md": drawing}.items():
                os.makedirs(os.path.dirname(os.path.join(root, path)), exist_ok=True)
                with open(os.path.join(root, path), "w", encoding="utf-8") as file:
                    file.write(text)
            run = subprocess.run([sys.executable, SCRIPT, root], capture_output=True, text=True,
                                 check=False, env={**os.environ, "PYTHONIOENCODING": "utf-8"})
        return run.returncode, run.stdout + run.stderr

    def assert_refused(self, said, changed=None, drawing=DRAWING):
        result, text = self.check(changed, drawing)
        self.assertIn(said, text)
        self.assertEqual(result, 1)

    def test_accepts_what_is_drawn(self):
        self.assertEqual(self.check(), (0, "check-includes: 6 includes in 6 files\n"))

    def test_refuses_an_include_without_an_arrow(self):
        self.assert_refused("low/a.cpp includes top/a.h: low/ has no arrow to top/",
                            {"low/a.cpp": '#include "top/a.h"\n'})
        self.assert_refused("low/part has no arrow to low/", {"low/part.cpp": '#include "a.h"\n'})

    def test_refuses_an_arrow_for_nothing(self):
        self.assert_refused("the arrow from low/ to low/part is there for nothing",
                            {"low/a.h": ""})

    def test_refuses_a_circle_within_a_part(self):
        self.assert_refused("in a circle: top/b.h includes top/c.h includes top/d.h includes top/b.h",
                            {"top/b.h": '#include "top/c.h"\n', "top/c.h": '#include "top/d.h"\n',
                             "top/d.h": '#include "top/b.h"\n'})

    def test_refuses_what_cannot_be_found(self):
        self.assert_refused("top/b.h includes lost.h, which is not there",
                            {"top/b.h": '#include "lost.h"\n'})
        self.assert_refused("tools/other/a.h belongs to no part", {"tools/other/a.h": "",
                            "tools/bottom/b.h": '#include "tools/other/a.h"\n'})

    def test_refuses_a_drawing_that_leads_up_or_is_not_there(self):
        self.assert_refused("no part below low/part is the top/ of its arrow",
                            drawing=DRAWING.replace("a file        │", "a file        │──▶ top/"))
        self.assert_refused("no drawing", drawing="")


if __name__ == "__main__":
    unittest.main()
