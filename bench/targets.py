"""targets.py - what this library is meant to reach beside its peers, and whether it does.

Compares the figures of a run with the ratios that are aimed at.
"""
import dataclasses
import statistics

import runs as bench_runs

CHINESE = ("chinese", "chinese-gb18030", "configuration-gb18030")
PUGIXML = ("pugixml-raw", "pugixml", "pugixml-copying", "pugixml-in-place")
# Those that bring a document into an encoding of their own before they are done; the first one
# holds GB18030 and converts nothing of a document that is in it.
CONVERTING = ("pugixml-iconv", "pugixml-iconv-utf8", "libxml2-sax2", "libxml2-dom", "xerces-sax2",
              "xerces-dom")
LIBXML2 = ("libxml2", "libxml2-dom")
VALIDATING = ("libxml2", "libxml2-dom", "libxml2-stream", "xerces", "xerces-sax2", "xerces-dom")
SIZE_TARGET = 150000
SIZE_FLOOR = 180000


@dataclasses.dataclass(frozen=True)
class Target:
    """A ratio of speeds, this library's over the fastest of some contestants."""
    job: str
    against: str  # as it is shown
    contestants: tuple = ()  # all peers of the job if there are none
    median: float | None = None  # at least this over all documents
    least: float | None = None  # and at least this for each
    above: bool = False  # the median must be above its figure, not equal to it
    kinds: tuple = ()  # of documents; all if there are none
    limit_job: str = ""  # the job that the contestants are found in, if it is another one


TARGETS = (
    Target("parse", "libxml2 SAX2", ("libxml2-sax2",), median=2.5),
    Target("parse", "Expat", ("expat",), median=5.0),
    Target("parse", "fastest peer", least=1.5),
    Target("build+delete", "heap floor", ("heap-floor",), 0.85, 0.7, limit_job="limit"),
    Target("build+delete", "libxml2 tree", ("libxml2-dom",), median=1.3),
    Target("build+delete", "TinyXML-2", ("tinyxml2",), median=1.3),
    Target("build+delete-fresh", "heap floor", ("heap-floor",), 0.85, 0.7,
           limit_job="limit-fresh"),
    Target("build+delete-fresh", "libxml2 tree", ("libxml2-dom",), median=1.3),
    Target("build+delete-fresh", "TinyXML-2", ("tinyxml2",), median=1.3),
    Target("serialize", "pugixml raw", PUGIXML, 1.0, 0.8),
    Target("serialize", "libxml2", ("libxml2-dom",), median=3.0),
    Target("select-near", "pugixml's path", ("pugixml-path",), 1.0, 1.0, above=True),
    Target("select-far", "pugixml's path", ("pugixml-path",), 1.0, 1.0, above=True),
    Target("validate", "libxml2", LIBXML2, 5.0, 3.0),
    Target("build+validate+delete", "fastest of libxml2 and Xerces-C", VALIDATING, 2.0, 1.5),
    Target("parse", "fastest converting peer, Chinese", CONVERTING, 1.0, 1.0, above=True,
           kinds=CHINESE),
    Target("build+delete", "fastest converting peer, Chinese", CONVERTING, 1.0, 1.0, above=True,
           kinds=CHINESE),
)


@dataclasses.dataclass
class Outcome:
    """How a target was met: the ratio by document."""
    target: Target
    ratios: dict

    @property
    def median(self):
        return statistics.median(self.ratios.values())

    @property
    def lowest(self):
        """The document with the lowest ratio, and the ratio."""
        return min(self.ratios.items(), key=lambda item: item[1])

    @property
    def misses(self):
        """Says what is missed; nothing if the target is met."""
        missed = []
        wanted = self.target.median
        if wanted is not None and (self.median <= wanted if self.target.above
                                   else self.median < wanted):
            missed.append("median")
        if self.target.least is not None and self.lowest[1] < self.target.least:
            missed.append("lowest")
        return missed


def _peers(runs, target, document):
    found = runs.figures.get((target.limit_job or target.job, document), {})
    names = target.contestants or [name for name in found
                                   if not name.startswith(bench_runs.OURS)]
    if document.split("/")[0].endswith("-gb18030"):
        names = [name for name in names if name != "pugixml-iconv"]
    return [found[name] for name in names if name in found]


def ratios(runs, target):
    """This library's speed over the fastest peer's, for each document that both did."""
    result = {}
    for document in runs.documents(target.job):
        ours = runs.figure(target.job, document)
        peers = _peers(runs, target, document)
        if ours and peers and (not target.kinds or document.split("/")[0] in target.kinds):
            result[document] = min(peer.median for peer in peers) / ours.median
    return result


def outcomes(runs):
    """What became of each target; those without a figure in this run are left out."""
    compared = ((target, ratios(runs, target)) for target in TARGETS)
    return [Outcome(target, by_document) for target, by_document in compared if by_document]


def _figure_text(value, above=False):
    if value is None:
        return ""
    return f"{'> ' if above else ''}{value:.2f}"


HEADINGS = ("job", "beside", "documents", "median", "lowest", "where", "target", "none below",
            "met")


def rows(runs, library_bytes=None):
    """The table of targets as rows of text."""
    table = []
    for outcome in outcomes(runs):
        target = outcome.target
        document, lowest = outcome.lowest
        met = "no, " + " and ".join(outcome.misses) if outcome.misses else "yes"
        table.append((target.job, target.against, str(len(outcome.ratios)),
                      f"{outcome.median:.2f}", f"{lowest:.2f}", document,
                      _figure_text(target.median, target.above), _figure_text(target.least), met))
    if library_bytes is not None:
        met = "yes" if library_bytes <= SIZE_TARGET else (
            "no, but below the second" if library_bytes <= SIZE_FLOOR else "no")
        table.append(("library", "text + data, stripped", "", f"{library_bytes / 1000:.1f} kB", "",
                      "", f"{SIZE_TARGET // 1000} kB", f"{SIZE_FLOOR // 1000} kB", met))
    return table


def losses(runs):
    """Where a peer is faster: (job, document, contestant, this library's speed over its)."""
    found = []
    for (job, document), by_contestant in runs.figures.items():
        ours = by_contestant.get(bench_runs.OURS)
        if ours is None or job.startswith("limit"):
            continue
        for name, figure in by_contestant.items():
            ratio = figure.median / ours.median
            if ratio < 1 and not name.startswith(bench_runs.OURS):
                found.append((job, document, name, ratio))
    order = {job: index for index, job in enumerate(bench_runs.JOBS)}
    return sorted(found, key=lambda row: (order.get(row[0], len(order)), row[3]))
