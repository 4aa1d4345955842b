"""runs.py - the figures of a run, read from what the benchmark program writes.

Reads Google Benchmark's JSON into figures by job, document and contestant.
"""
import dataclasses
import json
import re
import statistics

OURS = "compactxml"
JOBS = ("parse", "build+delete", "build+delete-fresh", "serialize", "select-near", "select-far",
        "select-last", "validate", "build+validate+delete", "round", "load-schema", "register",
        "load-library", "limit", "limit-fresh")
_SECONDS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}
_FACTORS = {"": 1, "k": 1000, "M": 1000000}


@dataclasses.dataclass
class Figure:
    """What one contestant took for one job with one document, once for each repetition."""
    times: list  # seconds
    size: float = 0.0  # bytes that a rate counts; 0 if a rate means nothing

    @property
    def median(self):
        return statistics.median(self.times)

    @property
    def spread(self):
        """Half the distance between the fastest and the slowest, as a part of the median."""
        return (max(self.times) - min(self.times)) / 2 / self.median

    @property
    def rate(self):
        """Bytes a second."""
        return self.size / self.median

    @property
    def best_rate(self):
        return self.size / min(self.times)

    @property
    def worst_rate(self):
        return self.size / max(self.times)


class Runs:
    """Figures by (job, document) and contestant, with what the program told of itself."""

    def __init__(self):
        self.context = {}
        self.figures = {}  # (job, document): {contestant: Figure}
        self.errors = []

    def add(self, results):
        """Takes the results of one run of the program, as read from its JSON."""
        self.context = self.context or results["context"]
        for entry in results["benchmarks"]:
            if entry["run_type"] == "iteration":
                self._add_entry(entry)

    def _add_entry(self, entry):
        name = entry["run_name"].split("/")
        job, kind, size, contestant = name[:4]
        if entry.get("error_occurred"):
            error = f"{'/'.join(name[:4])}: {entry.get('error_message', 'failed')}"
            if error not in self.errors:
                self.errors.append(error)
            return
        # Google Benchmark names what it was told to count behind the name.
        clock = "real_time" if {"manual_time", "real_time"} & set(name[4:]) else "cpu_time"
        seconds = entry[clock] * _SECONDS[entry["time_unit"]]
        by_contestant = self.figures.setdefault((job, f"{kind}/{size}"), {})
        figure = by_contestant.setdefault(contestant, Figure([]))
        figure.times.append(seconds)
        figure.size = round(entry.get("bytes_per_second", 0.0) * seconds)

    def documents(self, job):
        """The documents of a job, in the order in which they are shown."""
        return sorted((document for of_job, document in self.figures if of_job == job),
                      key=document_order)

    def jobs(self):
        """The jobs that were run, the known ones first and in their order."""
        found = {job for job, _ in self.figures}
        return [job for job in JOBS if job in found] + sorted(found - set(JOBS))

    def figure(self, job, document, contestant=OURS):
        return self.figures.get((job, document), {}).get(contestant)


def read(paths):
    """Reads the results of one or more runs, whose figures are put side by side."""
    runs = Runs()
    for path in paths:
        with open(path, encoding="utf-8") as file:
            text = file.read()
        if text:  # nothing is written when no name matched
            runs.add(json.loads(text))
    return runs


def read_lines(path):
    """Reads a file with one JSON value on each line."""
    with open(path, encoding="utf-8") as file:
        return [json.loads(line) for line in file if line.strip()]


def size_of(label):
    """The number in a document's label, as in "configuration/10M"; None if it has none."""
    match = re.fullmatch(r"(\d+)([kM]?)", label.split("/")[-1])
    return int(match[1]) * _FACTORS[match[2]] if match else None


def document_order(label):
    """Sorts by kind and size, with real files, which have names and no sizes, at the end."""
    kind, tail = label.split("/")
    size = size_of(label)
    return size is None, kind, size or 0, tail


def time_text(seconds):
    for unit, factor in (("ms", 1e3), ("us", 1e6)):
        if seconds * factor >= 1:
            return f"{seconds * factor:.2f} {unit}"
    return f"{seconds * 1e9:.1f} ns"
