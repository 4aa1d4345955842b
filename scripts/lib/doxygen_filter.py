#!/usr/bin/env python3
"""doxygen_filter.py - gives Doxygen the comments of a header in the form that it reads.

usage: doxygen_filter.py HEADER

Prints the header with the same declarations in the same order. Banners become groups, the first comment
the main page, and of an entry the first sentence becomes the brief description, a list of arguments the
parameters, and what begins with "Returns", "Refuses", "Cost:" or "Intended:" a section of its own. An
entry stands before each of its declarations.
"""
import re
import sys

import header_entries

_FIRST_SENTENCE = re.compile(r".*?[.](?=\s|$)|.*", re.DOTALL)
_TRAILING = re.compile(r"(?<=\S)([ \t]*)/\* (.*?)[ \n]\*/", re.DOTALL)
# Two fields of a type with one comment, which Doxygen would give to the second alone.
_PAIR = re.compile(r"^( *)(const char )(\*\w+), (\*\w+);( */\* .*?\*/)",
                   re.MULTILINE | re.DOTALL)
_TITLES = {"refuses": r"\par Refusals", "cost": r"\par Cost", "intended": r"\note"}
_WORDS = {"returns": "Returns ", "refuses": "Refuses ", "cost": "Cost: ", "intended": "Intended: "}


def escaped(text, known=frozenset()):
    """Text in which Doxygen finds nothing of its own but links to functions. It would leave the escapes
    between quotation marks as they are."""
    text = re.sub(r"([\\@&$#<>%])", r"\\\1", text).replace('"', "&quot;")
    return re.sub(r"\b\w+_\w+\b", lambda match: rf"\ref {match[0]}" if match[0] in known
                  else match[0], text)


def capital(text):
    return text[:1].upper() + text[1:]


def group_name(title):
    return re.sub(r"\W+", "_", title)


def list_text(block, known):
    rows = "\n".join(f"<dt>{escaped(name)}</dt><dd>{escaped(meaning, known)}</dd>"
                     for name, meaning in block)
    return f"<dl>\n{rows}\n</dl>"


def comment(*paragraphs):
    """A comment for Doxygen; such text never holds the end of one."""
    return "/** " + "\n\n".join(paragraph for paragraph in paragraphs if paragraph) + " */\n"


def body(text, known):
    """All of a text in its order, for pages, groups and records."""
    return [escaped(block, known) if isinstance(block, str) else list_text(block, known)
            for block in text.blocks]


def first_sentence(text):
    """The first sentence and what follows it."""
    sentence = _FIRST_SENTENCE.match(text)[0]
    return sentence, text[len(sentence):].strip()


def function_comment(text, known):
    """The entry of a function."""
    brief, rest = first_sentence(text.blocks[0])
    details, parts = [], {}
    for paragraph in [rest, *(block for block in text.blocks[1:] if isinstance(block, str))]:
        for kind, sentences in header_entries.sections(paragraph):
            if kind:
                words = capital(sentences.removeprefix(_WORDS[kind]))
                parts.setdefault(kind, []).append(escaped(words, known))
            else:
                details.append(escaped(sentences, known))
    arguments = [rf"\param {name} {escaped(meaning, known)}"
                 for block in text.lists() for name, meaning in block]
    returns = [r"\return " + " ".join(parts["returns"])] if "returns" in parts else []
    sections = [f"{_TITLES[kind]}\n{' '.join(parts[kind])}" for kind in _TITLES if kind in parts]
    return comment(rf"\brief {escaped(brief, known)}", *details, "\n".join(arguments), *returns,
                   *sections)


def documented(code, known):
    """Declarations with the comments behind their parts as Doxygen wants them."""
    code = _PAIR.sub(r"\1\2\3;\5\n\1\2\4;\5", code)
    return _TRAILING.sub(lambda match: f"{match[1]}/**< {escaped(' '.join(match[2].split()), known)} */",
                         code)


def declarations(code):
    """The exported declarations of an entry, one by one, with what stands before each."""
    return [piece for piece in re.split(r"(?<=;)\n", code) if piece.strip()]


def entry_text(entry, known):
    own = known - {name for _, name, _ in entry.functions}
    if entry.functions:
        text = function_comment(entry.text, own) if entry.text else ""
        return "".join(f"{text}{declaration}\n" for declaration in declarations(entry.code))
    if entry.code.startswith("#endif"):
        return entry.code
    code = documented(entry.code, known)
    if entry.text is None:
        return code
    brief, rest = first_sentence(entry.text.blocks[0])
    more = [escaped(rest, known),
            *body(header_entries.Text(entry.text.blocks[1:]), known)]
    if "#define" in code:
        title = escaped(brief.removesuffix("."))
        return comment(rf"\name {title}", *more, "@{") + code + comment("@}")
    return comment(rf"\brief {escaped(brief, known)}", *more) + code


def filtered(header):
    """The header as Doxygen is to read it."""
    entries = header_entries.read(header)
    known = frozenset(name for entry in entries for _, name, _ in entry.functions)
    top, *others = entries
    title, purpose = top.text.blocks[0].split(" - ", 1)
    groups = dict.fromkeys(entry.group for entry in others if entry.group)
    texts = [comment(r"\mainpage", escaped(capital(purpose)),
                     *body(header_entries.Text(top.text.blocks[1:]), known),
                     "<ul>\n" + "\n".join(rf"<li>\ref {group_name(group)}</li>"
                                          for group in groups) + "\n</ul>"),
             comment(rf"\file {title}", rf"\brief {escaped(capital(purpose))}"), top.code]
    group = ""
    for entry in others:
        # The braces of extern "C" close behind the last group, as they open before the first.
        wanted = "" if entry.code.startswith("#") and "#endif" in entry.code else entry.group
        if group and wanted != group:
            texts.append(comment("@}"))
        if wanted and wanted != group:
            about = body(entry.group_text, known) if entry.group_text else []
            texts.append(comment(rf"\defgroup {group_name(wanted)} {capital(wanted)}", *about, "@{"))
        group = wanted
        texts.append(entry_text(entry, known))
    return "\n".join(texts)


def main(arguments):
    if len(arguments) != 2:
        sys.exit(__doc__)
    with open(arguments[1], encoding="utf-8") as file:
        print(filtered(file.read()))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
