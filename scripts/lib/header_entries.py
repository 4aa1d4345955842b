"""header_entries.py - the comments of include/compactxml.h, taken apart.

Reads the header into groups, which banners begin, and entries: a comment with the declarations right
below it. What an entry's text says is told apart by the words with which its sentences begin.
"""
import dataclasses
import re

# A comment of its own from the first column on, an empty line, or a declaration with what follows it.
_PIECE = re.compile(r"""
    (?P<comment>^/\*.*?\*/[ \t]*\n)
  | (?P<empty>^[ \t]*\n)
  | (?P<line>^(?:[^\n/]|/(?!\*)|/\*.*?\*/)*\n)
""", re.MULTILINE | re.DOTALL | re.VERBOSE)
_BANNER = re.compile(r"/\* -{8,} (.*)")
_COMMENT = re.compile(r"/\*.*?\*/", re.DOTALL)
# How the part of an entry begins that tells what a call gives back, refuses, costs, or does on purpose.
_SECTIONS = {"Returns": "returns", "Null": "returns", "Refuses": "refuses", "Cost:": "cost",
             "Intended:": "intended"}
_SECTION = re.compile(r"(?:(?<=[.:)]) |^)(?=(?:Returns|Null|Refuses|Cost:|Intended:)(?:\s|$))")


@dataclasses.dataclass
class Text:
    """What a comment says: paragraphs of prose, and lists of a name with what it means."""
    blocks: list  # of str, or of list of (name, str)

    def lists(self):
        return [block for block in self.blocks if isinstance(block, list)]

    def prose(self):
        return [block for block in self.blocks if isinstance(block, str)]


@dataclasses.dataclass
class Entry:
    """A comment and the declarations below it; one of the two may be missing."""
    group: str  # title of the banner above
    group_text: Text | None
    text: Text | None
    comment: str  # as it stands in the header
    code: str
    line: int

    @property
    def functions(self):
        """(result, name, names of the parameters) of each exported function that is declared."""
        found = []
        for declaration in _COMMENT.sub(" ", self.code).split(";"):
            match = re.search(r"COMPACTXML_API\s+(?!extern)(.*?)(\w+)\s*\((.*)\)\s*"
                              r"COMPACTXML_NOEXCEPT\s*$", declaration, re.DOTALL)
            if match:
                result, name, parameters = match.groups()
                names = [re.search(r"(\w+)\s*$", parameter)[1] for parameter in parameters.split(",")
                         if parameter.strip() not in ("void", "...")]
                found.append((" ".join(result.split()), name, names))
        return found

    @property
    def variables(self):
        """Names of the exported variables that are declared."""
        return re.findall(r"COMPACTXML_API\s+extern\s[^;]*?(\w+)\s*;", self.code)


def read_text(comment):
    """Takes a comment apart. A list is indented by three blanks, its meanings by more."""
    lines = [re.sub(r"^ ?\* ?", "", line.rstrip())
             for line in re.sub(r"^/\*", "*", comment.strip()).removesuffix("*/").splitlines()]
    blocks = []
    fresh = True
    for line in lines:
        item = re.match(r" {2}(\S+(?: \S+)*?) {2,}(\S.*)", line)
        if not line.strip():
            fresh = True
        elif item and (fresh or (blocks and isinstance(blocks[-1], list))):
            if fresh and not (blocks and isinstance(blocks[-1], list)):
                blocks.append([])
            blocks[-1].append((item[1], item[2].strip()))
            fresh = False
        elif blocks and isinstance(blocks[-1], list) and line.startswith("    ") and not fresh:
            name, meaning = blocks[-1][-1]
            blocks[-1][-1] = name, f"{meaning} {line.strip()}"
        elif fresh or isinstance(blocks[-1], list):
            blocks.append(line.strip())
            fresh = False
        else:
            blocks[-1] += " " + line.strip()
    return Text(blocks)


def read_banner(comment):
    """The title of a banner and the text below it; nothing if the comment is no banner."""
    match = _BANNER.match(comment)
    if not match:
        return None
    title, _, body = comment[match.start(1):].partition("\n")
    return title.removesuffix("*/").strip(), read_text("/*\n" + body) if body.strip() else None


def sections(paragraph):
    """Pairs of a kind ("" for what has none) and the sentences of that kind, in their order."""
    found = []
    for piece in _SECTION.split(paragraph):
        if piece:
            found.append((_SECTIONS.get(piece.split(" ", 1)[0], ""), piece.strip()))
    return found


def read(header):
    """The entries of a header, in their order: also what has no comment, and comments that stand alone."""
    entries = []
    group, group_text = "", None
    comment, code, line = "", "", 1
    begun = 1

    def finish():
        nonlocal comment, code
        if comment or code.strip():
            entries.append(Entry(group, group_text, read_text(comment) if comment else None, comment,
                                 code, begun))
        comment = code = ""

    open_braces = False
    for match in _PIECE.finditer(header):
        piece = match[0]
        banner = read_banner(piece) if match["comment"] else None
        if match["line"] or (open_braces and not match["comment"]):
            if not comment and not code:
                begun = line
            code += piece
            bare = _COMMENT.sub("", code)
            open_braces = bare.count("{") > bare.count("}") and 'extern "C"' not in bare
        elif open_braces:
            code += piece
        else:
            finish()
            begun = line
            if banner:
                group, group_text = banner
            elif match["comment"]:
                comment = piece
        line += piece.count("\n")
    finish()
    return entries
