"""test_header.py - how the comments of a header are read, checked and handed to Doxygen."""
import importlib.machinery
import importlib.util
import os
import unittest

import doxygen_filter
import header_entries

HERE = os.path.dirname(os.path.realpath(__file__))
ROOT = os.path.join(HERE, "..", "..")
HEADER = '''/* some.h - things.
 *
 * What holds:
 *
 *   Results      A number is 0
 *                or not.
 */
#ifndef SOME_H
#define SOME_H
extern "C" {

/* ---------------------------------------------------------------- making things
 *
 * A group's own words.
 */

/* Kinds. More of them. */
#define KIND_ONE 1 /* the first, <one> */
#define KIND_TWO 2

/* A thing. */
struct Thing {
    const char *name, *ns; /* both of
                              them */

    int size;
};

/* Makes a thing "like/this". It is new.
 *
 *   name         may be null; see 50 %
 *                and more
 *   size         of it
 *
 * Not a list:   x. Returns the thing. Cost: one
 * step. Refuses what is wrong. Intended: odd. */
COMPACTXML_API Thing *make_thing(const char *name,
                                 uint32_t size) COMPACTXML_NOEXCEPT;

/* ---------------------------------------------------------------- others */

/* Counts. Null as make_thing. */
COMPACTXML_API uint32_t count_one(void) COMPACTXML_NOEXCEPT;
COMPACTXML_PRINTF(1, 2)
COMPACTXML_API uint32_t count_two(const char *format, ...) COMPACTXML_NOEXCEPT;
/* Names it. */
COMPACTXML_API extern const char *the_name;

#ifdef __cplusplus
}
#endif

#endif /* SOME_H */
'''


def load_check():
    """scripts/check-header as a module."""
    path = os.path.join(HERE, "..", "check-header")
    loader = importlib.machinery.SourceFileLoader("check_header", path)
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("check_header", loader))
    loader.exec_module(module)
    return module


def real_header():
    with open(os.path.join(ROOT, "include", "compactxml.h"), encoding="utf-8") as file:
        return file.read()


def entry_of(name, header=HEADER):
    return next(entry for entry in header_entries.read(header)
                if name in [function for _, function, _ in entry.functions])


class EntriesTest(unittest.TestCase):
    def test_reads_functions_with_their_parameters(self):
        self.assertEqual(entry_of("make_thing").functions,
                         [("Thing *", "make_thing", ["name", "size"])])

    def test_one_entry_stands_for_all_declarations_below_it(self):
        entry = entry_of("count_two")
        self.assertEqual(entry.functions, [("uint32_t", "count_one", []),
                                           ("uint32_t", "count_two", ["format"])])
        self.assertEqual((entry.group, entry.group_text), ("others", None))
        self.assertEqual(header_entries.read(HEADER)[-3].variables, ["the_name"])

    def test_reads_paragraphs_and_lists(self):
        text = entry_of("make_thing").text
        self.assertEqual(text.blocks, [
            'Makes a thing "like/this". It is new.',
            [("name", "may be null; see 50 % and more"), ("size", "of it")],
            "Not a list:   x. Returns the thing. Cost: one step. Refuses what is wrong. "
            "Intended: odd."])
        self.assertEqual(entry_of("make_thing").group_text.blocks, ["A group's own words."])

    def test_tells_sentences_apart(self):
        self.assertEqual(header_entries.sections("It is. Returns a (Null) thing. It Returns: x. "
                                                 "Null for 0. Cost: 1."),
                         [("", "It is."), ("returns", "Returns a (Null) thing. It Returns: x."),
                          ("returns", "Null for 0."), ("cost", "Cost: 1.")])

    def test_loses_nothing_of_the_header(self):
        lines = real_header().splitlines()
        for entry in header_entries.read(real_header()):
            kept = (entry.comment + entry.code).splitlines()
            self.assertEqual(lines[entry.line - 1:entry.line - 1 + len(kept)], kept)


class CheckTest(unittest.TestCase):
    def assert_found(self, said, header, exported=()):
        names = {"make_thing", "count_one", "count_two", "the_name", *exported}
        self.assertEqual([line.split(": ", 1)[-1] for line in
                          load_check().complaints(header, names)], said)

    def test_accepts_what_is_documented(self):
        self.assert_found([f"{name} does not tell what it returns when it refuses"
                           for name in ("make_thing", "count_one", "count_two")], HEADER)
        self.assert_found([], HEADER.replace("Returns the thing", "Returns the thing or null"))

    def test_finds_what_is_missing(self):
        header = HEADER.replace("Returns the thing", "Null if not")
        self.assert_found(["make_thing has no argument nome"], header.replace(" name    ", " nome    "))
        self.assert_found(["the_name has no entry"], header.replace("/* Names it. */\n", "\n"))
        self.assert_found(["lost is exported and not declared"], header, ["lost"])
        self.assert_found(["count_three is declared and not exported",
                           "count_two is exported and not declared"][::-1],
                          header.replace("count_two", "count_three"))

    def test_follows_entries_that_name_others_but_not_in_a_circle(self):
        header = HEADER.replace("Returns the thing", "Null if not")
        others = header.replace("Null as make_thing", "Counts as {}")
        self.assert_found(["count_one does not tell what it returns when it refuses",
                           "count_two does not tell what it returns when it refuses"],
                          others.replace("{}", "count_two"))


class FilterTest(unittest.TestCase):
    def test_gives_an_entry_its_sections(self):
        text = doxygen_filter.filtered(HEADER)
        self.assertIn('''/** \\brief Makes a thing &quot;like/this&quot;.

It is new.

Not a list:   x.

\\param name may be null; see 50 \\% and more
\\param size of it

\\return The thing.

\\par Refusals
What is wrong.

\\par Cost
One step.

\\note
Odd. */
COMPACTXML_API Thing *make_thing(''', text)

    def test_repeats_an_entry_and_refers_to_functions(self):
        text = doxygen_filter.filtered(HEADER)
        self.assertEqual(text.count("/** \\brief Counts.\n\n\\return Null as \\ref make_thing. */\nC"), 2)

    def test_documents_constants_and_fields(self):
        text = doxygen_filter.filtered(HEADER)
        self.assertIn("/** \\name Kinds\n\nMore of them.\n\n@{ */\n"
                      "#define KIND_ONE 1 /**< the first, \\<one\\> */\n#define KIND_TWO 2\n"
                      "/** @} */", text)
        self.assertIn("    const char *name; /**< both of them */\n"
                      "    const char *ns; /**< both of them */\n", text)

    def test_opens_and_closes_groups(self):
        text = doxygen_filter.filtered(HEADER)
        self.assertLess(text.index('extern "C"'), text.index("\\defgroup making_things Making things"))
        self.assertEqual(text.count("@{"), 3)
        self.assertEqual(text.count("@}"), 3)
        self.assertLess(text.rindex("@}"), text.index("#ifdef __cplusplus"))
        self.assertIn("/** \\mainpage\n\nThings.", text)

    def test_keeps_every_declaration_of_the_real_header(self):
        def declared(text):
            return sorted(line for line in header_entries._COMMENT.sub("", text).splitlines()
                          if "COMPACTXML_API" in line)
        self.assertEqual(declared(doxygen_filter.filtered(real_header())), declared(real_header()))


if __name__ == "__main__":
    unittest.main()
