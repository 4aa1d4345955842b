#!/usr/bin/env python3
"""results.py - the figures of a run, kept in a file from which the report can be written again.

usage: results.py BUILD COMMAND RESULTS.json

Takes what scripts/bench left in the build directory; what is not there is left out. Of the repetitions
of a figure the fastest, the median and the slowest are kept, to eight digits.
"""
import dataclasses
import json
import os
import sys

import instructions
import machine
import runs as bench_runs
from callgrind import Count


@dataclasses.dataclass
class Results:
    """All that a report is written from."""
    about: dict  # machine, system, compiler, date, peers and command, as they are shown
    libraries: list  # of machine.Library
    runs: bench_runs.Runs
    grown: bench_runs.Runs
    heap: list  # a dict for each parse or tree
    counts: list  # of callgrind.Count
    grown_counts: list


def collect(build, command):
    """The results that a run left in a build directory."""
    def found(name):
        path = os.path.join(build, name)
        return [path] if os.path.exists(path) else []

    def counts(name):
        return [instructions.as_count(line) for path in found(name)
                for line in bench_runs.read_lines(path)]

    runs = bench_runs.read(found("bench.json"))
    if not runs.figures:
        sys.exit("results.py: nothing was measured")
    return Results({**dict(machine.description(runs)), "command": f"`{command}`"},
                   machine.libraries(runs.context["executable"]), runs,
                   bench_runs.read(found("growth.json")),
                   [use for path in found("heap.jsonl") for use in bench_runs.read_lines(path)],
                   counts("instructions.jsonl"), counts("growth-instructions.jsonl"))


def _figure_lines(runs):
    """A list for each figure: job, document, contestant, bytes, and three times in seconds."""
    for job, document in ((job, document) for job in runs.jobs() for document in runs.documents(job)):
        for name, figure in sorted(runs.figures[job, document].items()):
            times = (min(figure.times), figure.median, max(figure.times))
            yield [job, document, name, figure.size, *(float(f"{time:.8g}") for time in times)]


def _runs(lines):
    runs = bench_runs.Runs()
    for job, document, name, size, *times in lines:
        runs.figures.setdefault((job, document), {})[name] = bench_runs.Figure(times, size)
    return runs


def as_text(results):
    """The results as JSON, with each figure on a line of its own."""
    parts = {
        "about": results.about,
        "libraries": [dataclasses.asdict(library) for library in results.libraries],
        "figures": list(_figure_lines(results.runs)),
        "growth": list(_figure_lines(results.grown)),
        "heap": results.heap,
        "instructions": [dataclasses.asdict(count) for count in results.counts],
        "growth_instructions": [dataclasses.asdict(count) for count in results.grown_counts],
    }
    texts = []
    for key, value in parts.items():
        lines = (",\n".join(json.dumps(line) for line in value) if isinstance(value, list)
                 else json.dumps(value, indent=1)[2:-2])
        ends = "[]" if isinstance(value, list) else "{}"
        texts.append(f"{json.dumps(key)}: {ends[0]}\n{lines}\n{ends[1]}")
    return "{\n" + ",\n".join(texts) + "\n}\n"


def read(path):
    """The results that as_text wrote into a file."""
    with open(path, encoding="utf-8") as file:
        parts = json.load(file)
    return Results(parts["about"], [machine.Library(**library) for library in parts["libraries"]],
                   _runs(parts["figures"]), _runs(parts["growth"]), parts["heap"],
                   [Count(**count) for count in parts["instructions"]],
                   [Count(**count) for count in parts["growth_instructions"]])


def main(arguments):
    if len(arguments) != 4:
        sys.exit(__doc__)
    build, command, path = arguments[1:]
    text = as_text(collect(build, command))
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    print(f"written: {path}")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
