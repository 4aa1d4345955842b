"""report_charts.py - the charts of docs/performance.md: which there are, and what they show."""
import chart
import growth
import runs as bench_runs

# Of each job the first document that was measured is shown.
BAR_CHARTS = (
    ("parse", "Parsing with callbacks", ("configuration/10M", "configuration/1M")),
    ("build+delete", "Making a tree and freeing it", ("configuration/10M", "configuration/1M")),
    ("build+delete-fresh", "Making a tree and freeing it, in a fresh process",
     ("configuration/10M", "configuration/1M")),
    ("serialize", "Writing a tree to memory", ("configuration/10M", "configuration/1M")),
    ("select-far", "Selecting an element in the middle", ("configuration/1M", "rpc/4k")),
    ("validate", "Validating a tree", ("ports/10M", "ports/1M")),
    ("build+validate+delete", "Making a tree, validating and freeing it",
     ("ports/10M", "ports/1M")),
    ("round", "The whole round of a request", ("ports/4k", "rpc/4k", "switch/4k")),
)
CHINESE = ("build+delete", "Chinese text: making a tree and freeing it",
           ("chinese/1M", "chinese-gb18030/1M"))
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


def bar_chart(runs, job, title, documents):
    """The chart of a job; nothing if none of the documents was measured."""
    document = next((label for label in documents if (job, label) in runs.figures), None)
    if document is None:
        return None
    timed = job in TIMED
    rows = [(_time_row if timed else _rate_row)(*row)
            for row in _contestants(runs, job, document)]
    rows.sort(key=lambda row: row[1], reverse=not timed)
    unit = ("microseconds (shorter is faster)" if timed
            else "MB/s (longer is faster; 1 MB is 1,000,000 bytes)")
    return chart.bars(title, unit, rows,
                      f"{job}, {document}: medians, with the fastest and slowest repetition")


def growth_chart(runs):
    """The cost of a byte by size, for the kinds of documents that every job knows."""
    chosen = [line for line in growth.by_time(runs)
              if line.job in GROWTH_JOBS and line.kind in GROWTH_KINDS]
    if not chosen:
        return None
    series = [(f"{line.job}" if line.kind == GROWTH_KINDS[0] else f"{line.job}, {line.kind}",
               line.costs) for line in chosen]
    return chart.lines("What a byte costs as documents grow", "nanoseconds for each byte", series,
                       "compactxml, configuration unless told; a level line is what is wanted")


def file_name(job):
    return job.replace("+", "-") + ".svg"


def all_charts(runs, grown):
    """{file name: SVG} of all that this run has figures for."""
    charts = {file_name(job): bar_chart(runs, job, title, documents)
              for job, title, documents in BAR_CHARTS}
    charts["chinese.svg"] = bar_chart(runs, *CHINESE)
    charts["growth.svg"] = growth_chart(grown)
    return {name: content for name, content in charts.items() if content}
