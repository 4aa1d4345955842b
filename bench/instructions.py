#!/usr/bin/env python3
"""instructions.py - instructions per byte of the input, counted and shown.

usage: instructions.py PROGRAM OUTPUT.jsonl REGEX [PROGRAM'S OPTION]...

Counts one run of each of the program's jobs whose name the expression is found in, writes a line
for each to the output and prints a table. Jobs in a process of their own are left out.
"""
import dataclasses
import json
import re
import sys

import callgrind
import runs as bench_runs

# Another process is what is measured there, which is not counted.
APART = re.compile(r"build\+delete-fresh|limit-fresh|load-library")


def chosen(names, expression):
    """The names that can be counted and that the expression is found in."""
    return [name for name in names
            if re.search(expression, name) and not APART.fullmatch(name.split("/")[0])]


def table(counts):
    """Groups counts: {job: {document: {contestant: Count}}}, in the order of showing."""
    grouped = {}
    order = {job: index for index, job in enumerate(bench_runs.JOBS)}
    for count in sorted(counts, key=lambda count: (order.get(count.job, len(order)),
                                                   bench_runs.document_order(count.document))):
        grouped.setdefault(count.job, {}).setdefault(count.document, {})[count.contestant] = count
    return grouped


def print_table(counts):
    """Prints what each contestant needs for each byte, and in all for one without bytes."""
    print("\ninstructions per byte of the document (of the run, where bytes mean nothing);\n"
          "library: inside libcompactxml.so; ratio: the contestant's over this library's")
    for job, by_document in table(counts).items():
        for document, by_contestant in by_document.items():
            print(f"\n{job} {document}")
            print(f"  {'':<22}{'all':>13}{'library':>13}{'ratio':>8}")
            ours = by_contestant.get(bench_runs.OURS)
            for name, count in sorted(by_contestant.items(), key=lambda item: item[1].all):
                ratio = f"{count.all / ours.all:.2f}" if ours else ""
                library = f"{count.per_byte(count.library):.2f}" if count.library else ""
                print(f"  {name:<22}{count.per_byte(count.all):>13.2f}{library:>13}{ratio:>8}")


def as_count(line):
    """A count from a line that this program wrote."""
    return callgrind.Count(**line)


def main(arguments):
    if len(arguments) < 4:
        sys.exit(__doc__)
    program, output, expression, *options = arguments[1:]
    names = chosen(callgrind.list_jobs(program, options), expression)
    counts = []
    with open(output, "w", encoding="utf-8") as file:
        for count in callgrind.count_all(program, names):
            counts.append(count)
            file.write(json.dumps(dataclasses.asdict(count)) + "\n")
    if not counts:
        sys.exit("instructions.py: nothing to count")
    print_table(counts)
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main(sys.argv))
    except callgrind.CallgrindError as error:
        sys.exit(f"instructions.py: {error}")
