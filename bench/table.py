#!/usr/bin/env python3
"""Prints the results of the benchmark program as tables.

usage: table.py RESULTS.json [HEAP.jsonl]

Each figure is the median over the repetitions; best is the fastest of them, and spread half the
distance between it and the slowest. The ratio is the contestant's time over this library's: above 1 this library is
the faster one.
"""
import collections
import json
import re
import statistics
import subprocess
import sys

OURS = "compactxml"


def read_runs(results):
    """Returns {(job, document): {contestant: [(seconds, bytes per second)]}} and the errors."""
    unit = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}
    runs = collections.defaultdict(lambda: collections.defaultdict(list))
    errors = set()
    for entry in results["benchmarks"]:
        if entry["run_type"] != "iteration":
            continue
        job, kind, size, contestant = entry["run_name"].split("/")
        if entry.get("error_occurred"):
            errors.add(f"{entry['run_name']}: {entry.get('error_message', 'failed')}")
            continue
        seconds = entry["cpu_time"] * unit[entry["time_unit"]]
        runs[job, f"{kind}/{size}"][contestant].append((seconds, entry["bytes_per_second"]))
    return runs, sorted(errors)


def document_order(label):
    kind, size = label.split("/")
    digits, letter = re.fullmatch(r"(\d+)([kM]?)", size).groups()
    return kind, int(digits) * {"": 1, "k": 1000, "M": 1000000}[letter]


def time_text(seconds):
    return f"{seconds * 1e3:.2f} ms" if seconds >= 1e-3 else f"{seconds * 1e6:.2f} us"


def cpu_model():
    try:
        with open("/proc/cpuinfo", encoding="utf-8") as file:
            return re.search(r"model name\s*: (.*)", file.read()).group(1)
    except (OSError, AttributeError):
        return "unknown processor"


def print_context(context, runs):
    print(f"machine   {context['num_cpus']} x {cpu_model()}, {context['mhz_per_cpu']} MHz; load "
          f"{context['load_avg'][0]:.2f} at the start")
    print(f"compiler  {context['compiler']}, {context['flags'].strip()}")
    print(f"date      {context['date']}")
    versions = {context[name] for by_name in runs.values() for name in by_name if name in context}
    print(f"peers     {', '.join(sorted(versions - {'this library'})) or 'none'}, as packaged")


def print_runs(job, document, by_contestant):
    middles = {name: [statistics.median(values) for values in zip(*samples)]
               for name, samples in by_contestant.items()}
    ours = middles.get(OURS)
    print(f"\n{job} {document}")
    print(f"  {'':<22}{'MB/s':>9}{'best':>9}{'spread':>9}{'time':>13}{'ratio':>8}")
    for name, (seconds, rate) in sorted(middles.items(), key=lambda item: item[1][0]):
        times = [sample[0] for sample in by_contestant[name]]
        best = max(sample[1] for sample in by_contestant[name])
        spread = (max(times) - min(times)) / 2 / seconds
        ratio = f"{seconds / ours[0]:.2f}" if ours else ""
        print(f"  {name:<22}{rate / 1e6:>9.1f}{best / 1e6:>9.1f}{spread:>9.1%}"
              f"{time_text(seconds):>13}{ratio:>8}")


def print_heap(lines):
    print("\nheap, for one parse or one tree; bytes as the heap rounds them")
    print(f"  {'':<38}{'calls':>9}{'peak':>12}{'kept':>12}{'kept/byte':>11}")
    for line in lines:
        use = json.loads(line)
        name = f"{use['job']} {use['document']} {use['contestant']}"
        kept = use["kept_bytes"] / use["document_bytes"]
        print(f"  {name:<38}{use['calls']:>9}{use['peak_bytes']:>12}{use['kept_bytes']:>12}"
              f"{kept:>11.2f}")


def print_library_sizes(program):
    try:
        linked = subprocess.run(["ldd", program], check=True, capture_output=True, text=True).stdout
        paths = [path for path in re.findall(r"=> (\S+)", linked)
                 if re.search(r"lib(compactxml|expat|pugixml|tinyxml2|xml2|xerces-c)[^/]*\.so", path)]
        rows = subprocess.run(["size", *paths], check=True, capture_output=True, text=True).stdout
    except (OSError, subprocess.CalledProcessError):
        return
    print("\nlibraries, bytes of code, constants and data")
    for row in rows.splitlines()[1:]:
        text, data, bss, _, _, path = row.split(maxsplit=5)
        print(f"  {path.rsplit('/', 1)[-1]:<22}{int(text) + int(data) + int(bss):>9}")


def main(arguments):
    if len(arguments) not in (2, 3):
        sys.exit(__doc__)
    with open(arguments[1], encoding="utf-8") as file:
        text = file.read()
    if not text:
        sys.exit("table.py: nothing was measured")
    results = json.loads(text)
    runs, errors = read_runs(results)
    print_context(results["context"], runs)
    for job in ("parse", "build+delete", "serialize", "validate", "read+validate", "load", "limit"):
        for (run_job, document), by_contestant in sorted(
                runs.items(), key=lambda item: document_order(item[0][1])):
            if run_job == job:
                print_runs(job, document, by_contestant)
    if len(arguments) == 3:
        with open(arguments[2], encoding="utf-8") as file:
            print_heap(file.read().splitlines())
    print_library_sizes(results["context"]["executable"])
    for error in errors:
        print(f"FAILED {error}", file=sys.stderr)
    return 1 if errors or not runs else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
