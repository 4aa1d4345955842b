"""growth.py - whether the cost of a byte stays the same while documents grow.

A job is level with a kind of document when the dearest byte costs at most 15 % more than the
cheapest, over all sizes.
"""
import dataclasses

import runs as bench_runs

TOLERANCE = 0.15
HEAP_FLOOR = "heap-floor"
SCHEMA_JOBS = ("load-schema", "register")


@dataclasses.dataclass
class Line:
    """One job with one kind of document: the cost of a byte by the document's size."""
    job: str
    kind: str
    costs: list  # (label of the size, size, cost of a byte), from small to large

    @property
    def swing(self):
        """How much dearer the dearest byte is than the cheapest, as a part of it."""
        each = [cost for _, _, cost in self.costs]
        return max(each) / min(each) - 1

    @property
    def level(self):
        return self.swing <= TOLERANCE


def _lines(found):
    """Makes lines of {(job, kind): {label: cost}}; one size alone does not tell of growth."""
    result = []
    order = {job: index for index, job in enumerate(bench_runs.JOBS)}
    for (job, kind), by_label in sorted(
            found.items(), key=lambda item: (order.get(item[0][0].split(" ")[0], len(order)),
                                             item[0])):
        costs = sorted(((label, bench_runs.size_of(label), cost)
                        for label, cost in by_label.items()), key=lambda cost: cost[1])
        if len(costs) > 1:
            result.append(Line(job, kind, costs))
    return result


def _add(found, job, document, cost):
    kind, label = document.split("/")
    if bench_runs.size_of(label) is not None:
        found.setdefault((job, kind), {})[label] = cost


def by_time(runs):
    """Nanoseconds for each byte: this library's, and those of the heap's calls alone."""
    found = {}
    for (job, document), by_contestant in runs.figures.items():
        name, shown = bench_runs.OURS, job
        if job.startswith("limit"):
            name, shown = HEAP_FLOOR, f"{job} ({HEAP_FLOOR})"
        figure = by_contestant.get(name)
        if figure and figure.size:
            _add(found, shown, document, figure.median * 1e9 / figure.size)
    return _lines(found)


def by_declaration(runs):
    """Nanoseconds for each declaration of the schemas that are made in several sizes."""
    found = {}
    for (job, document), by_contestant in runs.figures.items():
        declarations = bench_runs.size_of(document)
        for name, figure in by_contestant.items():
            if job in SCHEMA_JOBS and document.startswith("generated/") and declarations:
                _add(found, f"{job} {name}", document, figure.median * 1e9 / declarations)
    return _lines(found)


def by_instructions(counts):
    """Instructions for each byte, of this library with all that it calls."""
    found = {}
    for count in counts:
        if count.contestant == bench_runs.OURS and count.size:
            _add(found, count.job, count.document, count.per_byte(count.all))
    return _lines(found)


def by_heap(uses):
    """Bytes of heap kept for each byte of the document."""
    found = {}
    for use in uses:
        if use["contestant"] == bench_runs.OURS and use["kept_bytes"]:
            _add(found, use["job"], use["document"], use["kept_bytes"] / use["document_bytes"])
    return _lines(found)


def cells(line):
    """What is shown of a line: job, kind, the costs, the swing and whether it is level."""
    costs = "  ".join(f"{label} {cost:.2f}" for label, _, cost in line.costs)
    return (line.job, line.kind, costs, f"{line.swing:.0%}", "yes" if line.level else "no")


HEADINGS = ("job", "document", "by size", "apart", "level")
