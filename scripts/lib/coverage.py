#!/usr/bin/env python3
"""coverage.py - what the tests reach of the library, from gcovr's JSON.

usage: coverage.py COVERAGE.json EXCEPTIONS.txt

Prints lines and branches by file, then each line that was not reached or whose branches were not all
taken. An exception is a line "FILE: CODE # REASON"; the code is that of the line without what is blank
at its ends, and stands for all lines of the file that are equal. Fails for a line that was not reached
and is no exception, for an exception that is none, and below 98 % of the branches.
"""
import json
import sys

LEAST_BRANCHES = 98.0


class File:
    """The counts of one file, lines that stand in several functions' copies taken together."""

    def __init__(self, name, lines):
        self.name = name
        self.lines = {}     # number: times reached
        self.branches = {}  # number: times each branch was taken
        for line in lines:
            if line.get("gcovr/noncode"):
                continue
            number = line["line_number"]
            self.lines[number] = self.lines.get(number, 0) + line["count"]
            taken = [branch["count"] for branch in line["branches"]]
            if taken:
                self.branches.setdefault(number, []).extend(taken)
        with open(name, encoding="utf-8") as source:
            self.text = [""] + [text.strip() for text in source]

    def reached(self):
        return sum(1 for count in self.lines.values() if count)

    def all_branches(self):
        return [taken for branches in self.branches.values() for taken in branches]


def read_exceptions(path):
    """{(file, code): reason}"""
    exceptions = {}
    with open(path, encoding="utf-8") as lines:
        for line in lines:
            if not line.strip() or line.startswith("#"):
                continue
            where, _, reason = line.rstrip("\n").rpartition(" # ")
            name, _, code = where.partition(": ")
            exceptions[name, code.strip()] = reason
    return exceptions


def percent(part, whole):
    return 100.0 * part / whole if whole else 100.0


def main():
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    with open(sys.argv[1], encoding="utf-8") as data:
        files = [File(entry["file"], entry["lines"]) for entry in json.load(data)["files"]]
    exceptions = read_exceptions(sys.argv[2])
    used = set()
    failed = False
    totals = [0, 0, 0, 0]
    partly = []
    print(f"{'':<34}{'lines':>14}{'branches':>16}")
    for file in sorted(files, key=lambda file: file.name):
        branches = file.all_branches()
        taken = sum(1 for count in branches if count)
        counts = [file.reached(), len(file.lines), taken, len(branches)]
        totals = [a + b for a, b in zip(totals, counts)]
        print(f"{file.name:<34}{counts[0]:>6} of {counts[1]:>4}{counts[2]:>8} of {counts[3]:>4}")
        for number, count in sorted(file.lines.items()):
            key = file.name, file.text[number]
            if count == 0 and key in exceptions:
                used.add(key)
            elif count == 0:
                failed = True
                partly.append(f"{file.name}:{number}: NOT REACHED: {file.text[number]}")
            elif 0 in file.branches.get(number, []):
                missed = file.branches[number].count(0)
                partly.append(f"{file.name}:{number}: {missed} of "
                              f"{len(file.branches[number])} branches not taken: {file.text[number]}")
    print("\n".join([""] + partly))
    for key in exceptions.keys() - used:
        print(f"{key[0]}: reached, or not there, and yet an exception: {key[1]}")
        failed = True
    lines, branches = percent(*totals[:2]), percent(*totals[2:])
    print(f"\nlines {lines:.2f} % of {totals[1]}, {len(used)} exceptions told; "
          f"branches {branches:.2f} % of {totals[3]}")
    return 1 if failed or branches < LEAST_BRANCHES else 0


if __name__ == "__main__":
    sys.exit(main())
