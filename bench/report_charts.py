"""report_charts.py - the charts of docs/performance.md: which there are, and what they show."""
import chart
import growth
import runs as bench_runs

# Documents by job. Of a group's documents the first one that was measured is shown.
REQUEST, LARGE, REAL = ("rpc/4k",), ("configuration/10M", "configuration/1M"), ("file/iso-codes",)
BAR_CHARTS = (
    ("parse", "Parsing with callbacks", (REQUEST, LARGE, REAL)),
    ("build+delete", "Making a tree and freeing it", (REQUEST, LARGE, REAL)),
    ("build+delete-fresh", "Making a tree and freeing it, in a fresh process",
     (REQUEST, LARGE, REAL)),
    ("serialize", "Writing a tree to memory", (REQUEST, LARGE, REAL)),
    ("select-far", "Selecting an element in the middle", (("configuration/1M", "rpc/4k"),)),
    ("validate", "Validating a tree", (("ports/4k",), ("ports/10M", "ports/1M"), ("switch/4k",),
                                       ("switch/1M",))),
    ("build+validate+delete", "Making a tree, validating and freeing it",
     (("ports/4k",), ("ports/10M", "ports/1M"), ("switch/4k",))),
    ("round", "The whole round of a request", (("ports/4k", "rpc/4k", "switch/4k"),)),
)
CHINESE = ("build+delete", "Chinese text: making a tree and freeing it",
           (("chinese/1M",), ("chinese-gb18030/1M",)))
# One document for each job, and of a peer that has several ways the one most like this library's.
SUMMARY = (("parse", LARGE), ("build+delete", LARGE), ("serialize", LARGE),
           ("build+validate+delete", ("ports/10M", "ports/1M")))
SUMMARY_LEAVES_OUT = ("pugixml-in-place",)
# The limits that belong beside a job's contestants, since a tree cannot be had for less.
LIMITS = {"build+delete": ("limit", "heap-floor"),
          "build+delete-fresh": ("limit-fresh", "heap-floor")}
# Told by time: a rate of bytes means nothing to them.
TIMED = ("select-near", "select-far", "select-last", "round", "load-schema", "register",
         "load-library")
GROWTH_JOBS = ("parse", "build+delete", "serialize", "validate", "build+validate+delete",
               "limit (heap-floor)")
GROWTH_KINDS = ("configuration", "ports")


def _contestants(runs, job, document):
    """Pairs of a name and its figure, the job's limits included, with the color of each."""
    for name, figure in runs.figures[job, document].items():
        ours = name.startswith(bench_runs.OURS)
        yield name, figure, chart.OURS if ours else chart.PEER
    limit_job, prefix = LIMITS.get(job, ("", ""))
    for name, figure in runs.figures.get((limit_job, document), {}).items():
        if name.startswith(prefix):
            yield name, figure, chart.LIMIT


def _rate_row(name, figure, color):
    return name, figure.rate / 1e6, figure.worst_rate / 1e6, figure.best_rate / 1e6, color


def _time_row(name, figure, color):
    return (name, figure.median * 1e6, min(figure.times) * 1e6, max(figure.times) * 1e6, color)


def _groups(runs, job, document_groups):
    """(document, rows) for each group of which a document was measured, the fastest row first."""
    timed = job in TIMED
    groups = []
    for documents in document_groups:
        document = next((label for label in documents if (job, label) in runs.figures), None)
        if document:
            rows = [(_time_row if timed else _rate_row)(*row)
                    for row in _contestants(runs, job, document)]
            groups.append((document, sorted(rows, key=lambda row: (row[1] if timed else -row[1],
                                                                   row[0]))))
    return groups


def bar_chart(runs, job, title, document_groups, note):
    """The chart of a job; nothing if none of the documents was measured."""
    groups = _groups(runs, job, document_groups)
    if not groups:
        return None
    unit = ("microseconds (shorter is faster)" if job in TIMED
            else "MB/s (longer is faster; 1 MB is 1,000,000 bytes)")
    return chart.bars(title, unit, groups,
                      f"{job}: medians, with the fastest and slowest repetition", note)


def summary_chart(runs, note):
    """Four jobs side by side, for those who look at one chart only."""
    groups = []
    for job, documents in SUMMARY:
        for document, rows in _groups(runs, job, [documents]):
            rows = [row for row in rows
                    if row[4] != chart.LIMIT and row[0] not in SUMMARY_LEAVES_OUT]
            groups.append((f"{job}, {document}", rows))
    if len(groups) < len(SUMMARY):
        return None
    return chart.panels("CompactXML beside its peers", "MB/s (longer is faster)", groups,
                        "medians, with the fastest and slowest repetition", note)


def growth_chart(runs, note):
    """The cost of a byte by size, for the kinds of documents that every job knows."""
    chosen = [line for line in growth.by_time(runs)
              if line.job in GROWTH_JOBS and line.kind in GROWTH_KINDS]
    if not chosen:
        return None
    series = [(f"{line.job}" if line.kind == GROWTH_KINDS[0] else f"{line.job}, {line.kind}",
               line.costs) for line in chosen]
    return chart.lines("What a byte costs as documents grow", "nanoseconds for each byte", series,
                       "compactxml, configuration unless told; a level line is what is wanted",
                       note)


def file_name(job):
    return job.replace("+", "-") + ".svg"


def note_of(about):
    """What a chart was measured with: the day, the machine, the compiler and its flags."""
    machine, _, _ = about.get("machine", "").partition(";")
    return ", ".join(text for text in (about.get("date", "")[:10], machine,
                                       about.get("compiler")) if text)


def all_charts(results):
    """{file name: SVG} of all that this run has figures for."""
    note = note_of(results.about)
    charts = {file_name(job): bar_chart(results.runs, job, title, documents, note)
              for job, title, documents in BAR_CHARTS}
    charts["chinese.svg"] = bar_chart(results.runs, *CHINESE, note)
    charts["summary.svg"] = summary_chart(results.runs, note)
    charts["growth.svg"] = growth_chart(results.grown, note)
    return {name: content for name, content in charts.items() if content}
