"""callgrind.py - counts the instructions of one run of one job.

The program is run under valgrind with --once, and only what happens inside its function
bench_measured_run counts: neither getting ready nor the run that warms up.
"""
import collections
import concurrent.futures
import dataclasses
import json
import os
import re
import subprocess
import tempfile

LIBRARY = "libcompactxml.so"


@dataclasses.dataclass
class Count:
    """The instructions of one run of a job."""
    name: str  # job/kind/size/contestant
    size: int  # bytes of the document; 0 if a rate means nothing
    all: int
    library: int  # those of them that are executed inside this library

    @property
    def job(self):
        return self.name.split("/")[0]

    @property
    def document(self):
        return "/".join(self.name.split("/")[1:3])

    @property
    def contestant(self):
        return self.name.split("/")[3]

    def per_byte(self, instructions):
        """For a job without bytes the instructions of the run."""
        return instructions / (self.size or 1)


class CallgrindError(Exception):
    """A run that failed, or whose instructions cannot be told."""


def instructions_by_object(text):
    """Adds up callgrind's output: instructions by the file that they were executed in.

    A line of costs that follows a "calls=" line tells what the called function cost with all that
    it called, which is counted where it was executed already.
    """
    names = {}
    current = None
    costs = collections.Counter()
    called = False
    for line in text.splitlines():
        if match := re.match(r"ob=\((\d+)\)(?: (.*))?$", line):
            if match[2]:
                names[match[1]] = match[2]
            current = names[match[1]]
        elif match := re.match(r"cob=\((\d+)\) (.*)$", line):
            names[match[1]] = match[2]  # a name may be told first where the file is called
        elif line.startswith("calls="):
            called = True
        elif match := re.match(r"[+\-*\d]\S* (\d+)$", line):
            if not called:
                costs[current] += int(match[1])
            called = False
    return costs


def list_jobs(program, options):
    """The names of the program's jobs with the bytes of their documents."""
    output = subprocess.run([program, *options, "--list"], check=True, capture_output=True,
                            text=True).stdout
    jobs = {}
    for line in output.splitlines():
        name, size = line.rsplit(maxsplit=1)
        jobs[name] = int(size)
    return jobs


def count(program, name):
    """Counts one run of a job, whose name tells the program all it must know."""
    with tempfile.TemporaryDirectory() as directory:
        path = os.path.join(directory, "callgrind.out")
        run = subprocess.run(
            ["valgrind", "--tool=callgrind", "--toggle-collect=bench_measured_run",
             f"--callgrind-out-file={path}", program, f"--once={name}"],
            check=False, capture_output=True, text=True)
        told = [json.loads(line) for line in run.stdout.splitlines() if line.startswith("{")]
        if run.returncode != 0 or not told or not told[-1].get("ok"):
            raise CallgrindError(f"{name} failed\n{run.stderr.strip()}")
        with open(path, encoding="utf-8", errors="replace") as file:
            costs = instructions_by_object(file.read())
    if not costs:
        raise CallgrindError(f"{name}: nothing was counted")
    library = sum(cost for path, cost in costs.items()
                  if os.path.basename(path).startswith(LIBRARY))
    return Count(name, told[-1]["bytes"], sum(costs.values()), library)


def count_all(program, names):
    """Counts one run of each job, as many at a time as there are processors; yields counts."""
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        yield from pool.map(lambda name: count(program, name), names)
