#!/usr/bin/env python3
"""report.py - writes docs/performance.md and its charts from the figures of a run.

usage: report.py RESULTS.json NOTES.md PERFORMANCE.md

Takes what results.py keeps of a run; what was not measured is left out. Charts are put into a
directory beside the report. The notes, which are written by hand, become its last part.
"""
import os
import sys

import growth
import instructions
import machine
import report_charts
import results
import runs as bench_runs
import targets

INTRODUCTION = """# Performance

Written by `scripts/bench --report` from one run, whose figures are kept in
[`bench/results.json`](../bench/results.json); changes by hand are lost, but for the last part, which
is [`bench/notes.md`](../bench/notes.md). What the jobs, contestants and documents are stands in
[`bench/README.md`](../bench/README.md)."""

READING = """Every figure is the median over the repetitions of this one run, which are interleaved
in random order; what follows `±` is half the distance between the fastest and the slowest. MB are
1,000,000 bytes, of the document, or of the output when a tree is written. The figures of two
contestants in one line may be compared; figures of different machines may not."""

JOB_TEXT = {
    "parse": ("Parsing with callbacks", "One parse of a document in memory, with callbacks that "
              "count. All bytes are checked and handed over once, nothing is kept."),
    "build+delete": ("Making a tree and freeing it", "In a process that has made and freed trees "
                     "before, as one that runs for long has. Each node and each string of this "
                     "library's tree is a heap block of its own, so that the heap's own time, "
                     "`heap-floor` below, is the most that can be reached; pugixml and RapidXML "
                     "take memory by the page and leave strings where the document is."),
    "build+delete-fresh": ("Making a tree and freeing it, in a fresh process",
                           "The first tree of a process, which pays for its pages of memory."),
    "serialize": ("Writing a tree to memory", "The most compact form, in the document's encoding; "
                  "this library's tree is held in GB18030 and converted on the way."),
    "select-near": ("Selecting a near element", "A child of the first child, by path."),
    "select-far": ("Selecting a far element", "An element in the middle, behind many siblings."),
    "select-last": ("Selecting the last element", "Behind all of its siblings."),
    "validate": ("Validating a tree", "The tree is there and the schema is compiled."),
    "build+validate+delete": ("Reading and validating", "From the text in memory to the verdict, "
                              "with all that is needed for it made and freed. Streams keep no "
                              "tree."),
    "round": ("The whole round of a request", "A request of 4 kB is parsed, five values are "
              "selected, it is validated, an answer is written, all is freed. pugixml, which "
              "does not validate, does the rest."),
    "load-schema": ("Making a schema ready", "From a schema document to one that validates, and "
                    "giving it up again. `compactxml-unit` registers what xsd2c compiled before, "
                    "as programs do."),
    "register": ("Registering schemas of 10 to 10,000 declarations", "What a program pays at its "
                 "start for what xsd2c compiled before. The peers have nothing like it: they read "
                 "the schema document each time (`load-schema`)."),
    "load-library": ("Loading the library", "`dlopen` and `dlclose` in a process that has loaded "
                     "nothing yet."),
    "limit": ("Limits of the machine", "What nobody can go below: copying the document, looking "
              "for a byte that it does not hold, finding every `<`, `>` and `&` by 16 bytes at a "
              "time, and the `malloc` and `free` calls of this library's tree, alone "
              "(`heap-floor-forward`: freed in the order of the document instead)."),
    "limit-fresh": ("Limits in a fresh process", "The same heap calls as the first ones of a "
                    "process."),
}


def table(headings, rows, left=1):
    """A table in Markdown; all columns but the first ones are for numbers."""
    rule = [":--" if column < left else "--:" for column in range(len(headings))]
    return "\n".join("| " + " | ".join(row) + " |" for row in [headings, rule, *rows])


def names_in_order(by_documents):
    """Contestants of a job: this library first, then from the fastest to the slowest."""
    speed = {}
    for by_contestant in by_documents:
        for rank, (name, _) in enumerate(sorted(by_contestant.items(),
                                                key=lambda item: item[1].median)):
            speed.setdefault(name, []).append(rank)
    return sorted(speed, key=lambda name: (not name.startswith(bench_runs.OURS),
                                           sum(speed[name]) / len(speed[name]), name))


def figure_text(figure, timed):
    if figure is None:
        return ""
    value = (bench_runs.time_text(figure.median) if timed or not figure.size
             else f"{figure.rate / 1e6:,.1f}")
    return f"{value} ±{figure.spread:.0%}"


def job_table(runs, job):
    documents = runs.documents(job)
    names = names_in_order([runs.figures[job, document] for document in documents])
    timed = job in report_charts.TIMED
    rows = [[document, *(figure_text(runs.figure(job, document, name), timed) for name in names)]
            for document in documents]
    unit = "" if timed else "MB/s"
    return table([unit, *(f"`{name}`" for name in names)], rows)


def job_section(runs, job, charts):
    title, text = JOB_TEXT.get(job, (job, ""))
    parts = [f"### {title}: `{job}`", text]
    name = report_charts.file_name(job)
    if name in charts:
        parts.append(f"![{title}](performance/{name})")
    if job == "build+delete" and "chinese.svg" in charts:
        parts.append("![Chinese text](performance/chinese.svg)")
    return "\n\n".join([*parts, job_table(runs, job)])


def target_section(runs, libraries):
    rows = targets.rows(runs, machine.our_size(libraries))
    return "\n\n".join([
        "## Targets",
        "This library's speed over that of another, for each document that both can do: the "
        "median over the documents, and the lowest with its document. 2 means half the time.",
        table(targets.HEADINGS, rows, left=2) if rows else "No target was measured in this run."])


def loss_section(runs):
    """Tells by whom, and where, this library is beaten."""
    grouped = {}
    for job, document, name, ratio in targets.losses(runs):
        grouped.setdefault((job, name), []).append((document, ratio))
    lines = []
    for (job, name), found in grouped.items():
        both = sum(1 for (of_job, _), figures in runs.figures.items()
                   if of_job == job and name in figures and bench_runs.OURS in figures)
        where = ", ".join(document for document, _ in found) if len(found) < both else (
            "every document" if both > 1 else found[0][0])
        ends = dict.fromkeys(f"{end(ratio for _, ratio in found):.2f}" for end in (min, max))
        lines.append(f"- `{job}`: `{name}` on {where}; this library has {' to '.join(ends)} of "
                     "its speed")
    if not lines:
        return "## Where this library is behind\n\nNowhere in this run."
    return ("## Where this library is behind\n\nContestants with a better median than this "
            "library's. They do not all do the same: pugixml and RapidXML resolve no namespaces, "
            "check less and keep their strings where the document is.\n\n" + "\n".join(lines))


def growth_section(figures, charts):
    parts = ["## How the cost grows",
             f"What a byte costs this library as documents grow; level means within "
             f"{growth.TOLERANCE:.0%} over all sizes. Times hold what the caches and the heap of "
             "the machine make of larger documents (`heap-floor` is the heap alone), "
             "instructions do not."]
    if "growth.svg" in charts:
        parts.append("![Growth](performance/growth.svg)")
    costs = (("nanoseconds for each byte", growth.by_time(figures.grown)),
             ("instructions for each byte", growth.by_instructions(figures.grown_counts)),
             ("bytes of heap for each byte", growth.by_heap(figures.heap)),
             ("nanoseconds for each declaration", growth.by_declaration(figures.runs)))
    for heading, found in costs:
        if found:
            headings = ("job", "document", heading, *growth.HEADINGS[3:])
            parts.append(table(headings, [growth.cells(line) for line in found], left=3))
    return "\n\n".join(parts)


def heap_section(heap):
    rows = [(use["job"], use["document"], f"`{use['contestant']}`", f"{use['calls']:,}",
             f"{use['peak_bytes'] / use['document_bytes']:.2f}",
             f"{use['kept_bytes'] / use['document_bytes']:.2f}", f"{use['kept_blocks']:,}")
            for use in heap]
    headings = ("job", "document", "contestant", "calls", "peak/byte", "kept/byte", "blocks kept")
    return "\n\n".join([
        "## Memory",
        "Calls of `malloc` and its kin for one parse or one tree, the most bytes in use at a time "
        "and those that a finished tree keeps, for each byte of the document, as the heap rounds "
        "them. A tree that refers to the document needs that as well.",
        table(headings, rows, left=3)])


def library_section(libraries):
    rows = [(f"`{library.name}`", f"{library.loaded:,}", f"{library.stripped:,}",
             ", ".join(library.needs), f"{library.with_needs:,}") for library in libraries]
    return "\n\n".join([
        "## Size of the libraries",
        "Bytes of text + data, bytes of the stripped file, what the loader must find "
        "(`readelf -d`), and text + data with all of that and what it needs in its turn, but for "
        "the C library. RapidXML is compiled into the program that uses it.",
        table(("library", "text + data", "file", "needs", "with what it needs"), rows)])


def instruction_section(counts):
    parts = ["## Instructions",
             "Instructions for each byte of the document (of the run, where bytes mean nothing), "
             "counted by callgrind, in all and, in brackets, inside this library alone; the rest "
             "is the heap, the string functions of the C library and the caller. They do not "
             "depend on what else the machine does."]
    for job, by_document in instructions.table(counts).items():
        names = sorted({name for found in by_document.values() for name in found},
                       key=lambda name: (not name.startswith(bench_runs.OURS), name))
        rows = [[document, *(instruction_text(found.get(name)) for name in names)]
                for document, found in by_document.items()]
        parts.append(table([f"`{job}`", *(f"`{name}`" for name in names)], rows))
    return "\n\n".join(parts)


def instruction_text(count):
    if count is None:
        return ""
    digits = 2 if count.size else 0
    inside = f" ({count.per_byte(count.library):,.{digits}f})" if count.library else ""
    return f"{count.per_byte(count.all):,.{digits}f}{inside}"


def compose(figures, charts, notes):
    """The report as Markdown."""
    runs, libraries = figures.runs, figures.libraries
    jobs = [job for job in runs.jobs() if not job.startswith("limit")]
    limits = [job for job in runs.jobs() if job.startswith("limit")]
    summary = ["![Beside its peers](performance/summary.svg)"] if "summary.svg" in charts else []
    parts = [INTRODUCTION, table(("", ""), figures.about.items(), left=2), READING, *summary,
             target_section(runs, libraries), loss_section(runs), "## Jobs",
             *(job_section(runs, job, charts) for job in jobs + limits)]
    if figures.grown.figures or figures.grown_counts:
        parts.append(growth_section(figures, charts))
    if figures.heap:
        parts.append(heap_section(figures.heap))
    if libraries:
        parts.append(library_section(libraries))
    if figures.counts:
        parts.append(instruction_section(figures.counts))
    return "\n\n".join([*parts, notes.strip()]) + "\n"


def pages(figures, notes, name):
    """{file name: content} of the report and its charts, which go into a directory of that name."""
    charts = report_charts.all_charts(figures)
    found = {os.path.join(name, chart): content for chart, content in charts.items()}
    return {f"{name}.md": compose(figures, charts, notes), **found}


def main(arguments):
    if len(arguments) != 4:
        sys.exit(__doc__)
    results_path, notes_path, report_path = arguments[1:]
    with open(notes_path, encoding="utf-8") as file:
        notes = file.read()
    directory, name = os.path.split(os.path.splitext(report_path)[0])
    written = pages(results.read(results_path), notes, name)
    os.makedirs(os.path.join(directory, name), exist_ok=True)
    for path, content in written.items():
        with open(os.path.join(directory, path), "w", encoding="utf-8") as file:
            file.write(content)
    print(f"written: {report_path} and {len(written) - 1} charts in {directory}/{name}/")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
