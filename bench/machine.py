"""machine.py - the machine, the peers and the libraries that a run was made with.

Asks the system about what a figure depends on.
"""
import dataclasses
import os
import re
import subprocess
import tempfile

_MEASURED = r"lib(compactxml|expat|pugixml|tinyxml2|xml2|xerces-c)[^/]*\.so"
# The C library and what belongs to it, which every process has, and the loader.
_C_LIBRARY = r"(libc|libm|libdl|libpthread|ld-linux[^.]*|ld-musl[^.]*)\.so"


def processor():
    """The processor's name, as far as the system tells one."""
    try:
        with open("/proc/cpuinfo", encoding="utf-8", errors="replace") as file:
            return re.search(r"(?m)^(?:model name|Model|cpu)\s*: (.*)", file.read())[1]
    except (OSError, TypeError):
        return os.uname().machine


def peer_versions(runs):
    """What the contestants call themselves, each once."""
    names = {name for by_contestant in runs.figures.values() for name in by_contestant}
    versions = {runs.context[name] for name in names if name in runs.context}
    return sorted(versions - {"this library"})


def description(runs):
    """Pairs of a heading and a text: all that is told of a run before its figures."""
    context = runs.context
    load = ", ".join(f"{value:.2f}" for value in context["load_avg"][:1])
    peers = ", ".join(peer_versions(runs)) or "none"
    uname = os.uname()
    return [
        ("machine", f"{context['num_cpus']} x {processor()}, {context['mhz_per_cpu']} MHz; load "
                    f"{load or 'unknown'} at the start"),
        ("system", f"{uname.sysname} {uname.release}, {uname.machine}, {c_library()}"),
        ("compiler", f"{context['compiler']}, {context['flags'].strip()}"),
        ("date", context["date"]),
        ("peers", f"{peers}, as packaged"),
    ]


def c_library():
    try:
        return os.confstr("CS_GNU_LIBC_VERSION") or "unknown C library"
    except (ValueError, OSError):
        return "unknown C library"


def _output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True,
                          env={**os.environ, "LC_ALL": "C"}).stdout


@dataclasses.dataclass
class Library:
    """A shared library: its size, and what must be there for it to run."""
    name: str
    loaded: int  # bytes of code, constants and initialized data
    stripped: int  # bytes of the file without its symbols for the linker
    needs: list  # named in the file itself
    with_needs: int  # as loaded, with all that it brings along but for the C library


def _linked(path):
    return re.findall(r"=> (/\S+)", _output("ldd", path))


def _text_and_data(path):
    text, data = _output("size", path).splitlines()[1].split()[:2]
    return int(text) + int(data)


def _stripped_size(path):
    with tempfile.NamedTemporaryFile() as file:
        _output("strip", "--strip-all", "-o", file.name, path)
        return os.path.getsize(file.name)


def _library(path):
    others = [other for other in _linked(path)
              if not re.match(_C_LIBRARY, os.path.basename(other))]
    loaded = _text_and_data(path)
    return Library(
        name=os.path.basename(path), loaded=loaded, stripped=_stripped_size(path),
        needs=re.findall(r"\(NEEDED\).*\[(.*)\]", _output("readelf", "-d", path)),
        with_needs=loaded + sum(_text_and_data(other) for other in others))


def libraries(program):
    """The measured libraries that a program is linked with; none if that cannot be told."""
    try:
        found = [_library(path) for path in _linked(program) if re.search(_MEASURED, path)]
    except (OSError, subprocess.CalledProcessError):
        return []
    return sorted(found, key=lambda library: library.loaded)


def our_size(found):
    """The size of this library among others, None if it is not there."""
    return next((library.loaded for library in found
                 if library.name.startswith("libcompactxml")), None)
