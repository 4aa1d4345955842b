#!/usr/bin/env python3
"""table.py - prints the results of the benchmark program as tables.

usage: table.py [--growth] RESULTS.json... [HEAP.jsonl] [INSTRUCTIONS.jsonl]

Each figure is the median over the repetitions; best is the fastest of them, and spread half the
distance between it and the slowest. The ratio is the contestant's time over this library's: above
1 this library is the faster one. With --growth the cost of a byte is shown by size instead.
"""
import sys

import growth
import instructions
import machine
import runs as bench_runs
import targets


def print_rows(headings, rows):
    """Prints rows of text in columns that are as wide as they must be."""
    table = [headings, *rows]
    widths = [max(len(row[column]) for row in table) for column in range(len(headings))]
    for row in table:
        print("  " + "  ".join(cell.ljust(width) for cell, width in zip(row, widths)).rstrip())


def print_description(runs):
    for heading, text in machine.description(runs):
        print(f"{heading:<10}{text}")


def print_job(job, document, by_contestant):
    ours = by_contestant.get(bench_runs.OURS)
    print(f"\n{job} {document}")
    print(f"  {'':<22}{'MB/s':>9}{'best':>9}{'spread':>9}{'time':>13}{'ratio':>8}")
    for name, figure in sorted(by_contestant.items(), key=lambda item: item[1].median):
        ratio = f"{figure.median / ours.median:.2f}" if ours else ""
        rates = (f"{figure.rate / 1e6:>9.1f}{figure.best_rate / 1e6:>9.1f}" if figure.size
                 else f"{'':>18}")
        print(f"  {name:<22}{rates}{figure.spread:>9.1%}"
              f"{bench_runs.time_text(figure.median):>13}{ratio:>8}")


def print_heap(uses):
    print("\nheap, for one parse or one tree; bytes as the heap rounds them")
    print(f"  {'':<44}{'calls':>9}{'peak':>12}{'kept':>12}{'blocks':>9}{'kept/byte':>11}")
    for use in uses:
        name = f"{use['job']} {use['document']} {use['contestant']}"
        kept = use["kept_bytes"] / use["document_bytes"]
        print(f"  {name:<44}{use['calls']:>9}{use['peak_bytes']:>12}{use['kept_bytes']:>12}"
              f"{use['kept_blocks']:>9}{kept:>11.2f}")


def print_libraries(found):
    print("\nlibraries: bytes of text + data, of the stripped file, and of text + data with all "
          "that is\nneeded beside the C library")
    for library in found:
        print(f"  {library.name:<22}{library.loaded:>9}{library.stripped:>10}"
              f"{library.with_needs:>10}  needs {', '.join(library.needs)}")


def print_targets(runs, found):
    rows = targets.rows(runs, machine.our_size(found))
    if rows:
        print("\ntargets: this library's speed over that of the others, medians of this run")
        print_rows(targets.HEADINGS, rows)


def print_growth(runs, heap, counts):
    for heading, lines in (("nanoseconds", growth.by_time(runs)),
                           ("instructions", growth.by_instructions(counts)),
                           ("bytes of heap kept", growth.by_heap(heap))):
        if lines:
            print(f"\n{heading} for each byte of the document; level: within "
                  f"{growth.TOLERANCE:.0%}")
            print_rows(growth.HEADINGS, [growth.cells(line) for line in lines])


def print_all(runs, heap, counts):
    for job in runs.jobs():
        for document in runs.documents(job):
            print_job(job, document, runs.figures[job, document])
    if heap:
        print_heap(heap)
    if counts:
        instructions.print_table(counts)
    found = machine.libraries(runs.context["executable"])
    if found:
        print_libraries(found)
    print_targets(runs, found)


def main(arguments):
    paths = [path for path in arguments[1:] if path != "--growth"]
    if not paths:
        sys.exit(__doc__)
    runs = bench_runs.read(path for path in paths if path.endswith(".json"))
    lines = [line for path in paths if path.endswith(".jsonl")
             for line in bench_runs.read_lines(path)]
    heap = [line for line in lines if "kept_bytes" in line]
    counts = [instructions.as_count(line) for line in lines if "library" in line]
    if not runs.context:
        sys.exit("table.py: nothing was measured")
    print_description(runs)
    if "--growth" in arguments:
        print_growth(runs, heap, counts)
    else:
        print_all(runs, heap, counts)
    for error in runs.errors:
        print(f"FAILED {error}", file=sys.stderr)
    return 1 if runs.errors or not runs.figures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
