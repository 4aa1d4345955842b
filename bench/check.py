#!/usr/bin/env python3
"""check.py - compares instructions per byte with the figures that are checked in.

usage: check.py BUILD FIGURES.json [--update]

Counts this library's jobs on small documents. What is compared is counted inside the library
alone, since the heap and the string functions are the machine's. Figures belong to an architecture
and a compiler; for others there are none and all is well. A growth of more than 5 % is an error,
a fall is told. --update takes today's figures over.
"""
import json
import platform
import re
import sys

import callgrind

TOLERANCE = 0.05
LARGEST = 100000
# The small documents, and one more way into the converter. They are made by rule, the same on every
# machine; files of packages are not.
CHOICES = (["--small"], ["--document=configuration-utf16le/4k"])
CHECKED = re.compile(r"(parse|build\+delete|serialize|select-\w+|validate|round)/.*/compactxml")


def names_to_check(jobs):
    """This library's jobs with documents that are small enough to take no time."""
    return [name for name, size in jobs.items()
            if size <= LARGEST and CHECKED.fullmatch(name) and not name.split("/")[1] == "file"]


def compiler_key(build, architecture=platform.machine()):
    """The architecture and the compiler's name and major version, as the build tells them."""
    found = {}
    version = f"{build}/CMakeCache.txt"
    with open(version, encoding="utf-8") as file:
        cache = file.read()
    release = ".".join(re.search(rf"(?m)^CMAKE_CACHE_{part}_VERSION:INTERNAL=(\d+)$", cache)[1]
                       for part in ("MAJOR", "MINOR", "PATCH"))
    with open(f"{build}/CMakeFiles/{release}/CMakeCXXCompiler.cmake", encoding="utf-8") as file:
        for name, value in re.findall(r'set\(CMAKE_CXX_COMPILER_(ID|VERSION) "([^"]*)"\)',
                                      file.read()):
            found[name] = value
    return f"{architecture} {found['ID']} {found['VERSION'].split('.')[0]}"


def growth(count, figure):
    """How much more is needed than the figure says, as a part of it."""
    return count.per_byte(count.library) / figure["library"] - 1


def compare(counts, figures):
    """Compares counts with figures by name; returns the lines to print and what went wrong."""
    lines, errors, fallen = [], [], []
    for count in counts:
        figure = figures.get(count.name)
        change = growth(count, figure) if figure else None
        told = "new" if figure is None else f"{change:+.1%}"
        lines.append(f"  {count.name:<52}{count.per_byte(count.library):>12.2f}"
                     f"{count.per_byte(count.all):>12.2f}{told:>9}")
        if change is not None and change > TOLERANCE:
            errors.append(f"{count.name} needs {change:.1%} more instructions: "
                          f"{count.per_byte(count.library):.2f} a byte, not {figure['library']}")
        elif change is not None and change < -TOLERANCE:
            fallen.append(count.name)
    measured = {count.name for count in counts}
    errors += [f"{name} is not measured any more" for name in figures if name not in measured]
    if fallen:
        lines.append(f"needs more than {TOLERANCE:.0%} less: {', '.join(fallen)}; "
                     "take the new figures over with scripts/bench --check --update")
    if any(count.name not in figures for count in counts):
        lines.append("new ones are taken over with scripts/bench --check --update")
    return lines, errors


def as_figures(counts):
    """What is checked in of counts: instructions per byte, or per run where bytes mean nothing."""
    return {count.name: {"library": round(count.per_byte(count.library), 3),
                         "all": round(count.per_byte(count.all), 3)} for count in counts}


def main(arguments):
    if len(arguments) not in (3, 4) or arguments[3:] not in ([], ["--update"]):
        sys.exit(__doc__)
    build, path = arguments[1:3]
    try:
        with open(path, encoding="utf-8") as file:
            known = json.load(file)
    except FileNotFoundError:
        known = {}
    program = f"{build}/bench/compactxml_bench"
    jobs = {}
    for options in CHOICES:
        jobs.update(callgrind.list_jobs(program, options))
    counts = list(callgrind.count_all(program, names_to_check(jobs)))
    if not counts:
        sys.exit("check.py: nothing to count")
    key = compiler_key(build)
    lines, errors = compare(counts, known.get(key, {}))
    print(f"instructions per byte of the document, {key}")
    print(f"  {'':<52}{'library':>12}{'all':>12}{'change':>9}")
    print("\n".join(lines))
    if arguments[3:]:
        known[key] = as_figures(counts)
        with open(path, "w", encoding="utf-8") as file:
            json.dump(known, file, indent=2, sort_keys=True)
            file.write("\n")
        print(f"written to {path}")
        return 0
    if key not in known:
        print(f"there are no figures for {key} yet: nothing to compare with")
        return 0
    for error in errors:
        print(f"FAILED {error}", file=sys.stderr)
    return 1 if errors else 0


if __name__ == "__main__":
    try:
        sys.exit(main(sys.argv))
    except callgrind.CallgrindError as error:
        sys.exit(f"check.py: {error}")
