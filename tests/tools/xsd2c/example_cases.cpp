#include "example_cases.h"

#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "markup.h"

namespace examples {
namespace {

constexpr char kBlanks[] = " \t\r";

// How reasons begin that lie with xmllint alone.
constexpr char kXmllintIsWrong[] = "libxml2-";

[[noreturn]] void fail(const std::string &file, int line, const std::string &what) {
    throw std::runtime_error(file + ":" + std::to_string(line) + ": " + what);
}

std::string readFile(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error(path + ": cannot be read");
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Divides at the first of these separators; the second half is empty without one.
std::pair<std::string_view, std::string_view> divided(std::string_view text,
                                                      std::string_view separator) {
    const std::size_t at = text.find(separator);
    if (at == std::string_view::npos) return {trimmed(text), {}};
    return {trimmed(text.substr(0, at)), trimmed(text.substr(at + separator.size()))};
}

// A value in quotation marks has its blanks at both ends.
std::string unquoted(std::string_view value) {
    const bool quoted = value.size() >= 2 && value.starts_with('"') && value.ends_with('"');
    return std::string(quoted ? value.substr(1, value.size() - 2) : value);
}

std::vector<std::string_view> columnsOf(std::string_view line) {
    std::vector<std::string_view> columns;
    for (;;) {
        const std::size_t bar = line.find('|');
        columns.push_back(trimmed(line.substr(0, bar)));
        if (bar == std::string_view::npos) return columns;
        line.remove_prefix(bar + 1);
    }
}

// ---- paths ----

struct Step {
    std::string_view name;  // local
    std::size_t position;   // from 1
};

Step stepOf(std::string_view text) {
    const auto [name, position] = divided(text, "[");
    const std::size_t number =
        position.empty() ? 1 : std::strtoul(std::string(position).c_str(), nullptr, 10);
    return {name, number};
}

std::string_view localNameOf(std::string_view document, const ElementMarkup &element) {
    std::string_view name = document.substr(element.begin + 1, element.nameEnd - element.begin - 1);
    name.remove_prefix(name.find(':') + 1);  // npos + 1 is 0
    return name;
}

// The child of an element that a step names.
std::size_t childAt(std::string_view document, const std::vector<ElementMarkup> &elements,
                    std::size_t parent, Step step) {
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (elements[i].parent != parent) continue;
        if (localNameOf(document, elements[i]) == step.name && --step.position == 0) return i;
    }
    return ElementMarkup::kNone;
}

ElementMarkup elementAt(std::string_view document, std::string_view path) {
    const std::vector<ElementMarkup> elements = elementsOf(document);
    std::size_t found = ElementMarkup::kNone;
    if (!path.starts_with('/')) throw std::runtime_error("a path begins with a slash");
    for (std::string_view rest = path; !rest.empty();) {
        rest.remove_prefix(1);
        const std::string_view step = rest.substr(0, rest.find('/'));
        rest.remove_prefix(step.size());
        found = childAt(document, elements, found, stepOf(step));
        if (found == ElementMarkup::kNone) {
            throw std::runtime_error("no element " + std::string(path));
        }
    }
    return elements[found];
}

const AttributeMarkup *attributeOf(std::string_view document, const ElementMarkup &element,
                                   std::string_view name) {
    for (const AttributeMarkup &attribute : element.attributes) {
        const std::size_t length = attribute.nameEnd - attribute.begin;
        if (document.substr(attribute.begin, length) == name) return &attribute;
    }
    return nullptr;
}

// ---- edits ----

std::string spliced(std::string_view document, std::size_t begin, std::size_t end,
                    std::string_view text) {
    return std::string(document.substr(0, begin)) + std::string(text) +
           std::string(document.substr(end));
}

// Replaces a part of an element's content, which an empty tag does not have yet.
std::string withContent(std::string_view document, const ElementMarkup &element, std::size_t begin,
                        std::size_t end, const std::string &text) {
    if (!element.isEmptyTag) return spliced(document, begin, end, text);
    const std::string name(document.substr(element.begin + 1, element.nameEnd - element.begin - 1));
    return spliced(document, element.end - 2, element.end, ">" + text + "</" + name + ">");
}

std::string withName(std::string_view document, const ElementMarkup &element,
                     const std::string &name) {
    std::string result(document);
    if (!element.isEmptyTag) {
        result = spliced(result, element.contentEnd, element.end, "</" + name + ">");
    }
    return spliced(result, element.begin + 1, element.nameEnd, name);
}

std::string repeated(std::string_view document, const ElementMarkup &element,
                     const std::string &count) {
    const std::string_view text = document.substr(element.begin, element.end - element.begin);
    std::string copies;
    for (unsigned long left = std::strtoul(count.c_str(), nullptr, 10); left > 1; --left) {
        copies += text;
    }
    return spliced(document, element.end, element.end, copies);
}

std::string swapped(std::string_view document, ElementMarkup first, ElementMarkup second) {
    if (second.begin < first.begin) std::swap(first, second);
    if (second.begin < first.end) throw std::runtime_error("one element within the other");
    const std::string before(document.substr(first.begin, first.end - first.begin));
    const std::string_view behind = document.substr(second.begin, second.end - second.begin);
    return spliced(spliced(document, second.begin, second.end, before), first.begin, first.end,
                   behind);
}

std::string editedElement(std::string_view document, const Edit &edit) {
    const ElementMarkup element = elementAt(document, edit.path);
    const std::size_t content = element.tagEnd, contentEnd = element.contentEnd;
    if (edit.verb == "set") return withContent(document, element, content, contentEnd, edit.value);
    if (edit.verb == "prepend") return withContent(document, element, content, content, edit.value);
    if (edit.verb == "append") {
        return withContent(document, element, contentEnd, contentEnd, edit.value);
    }
    if (edit.verb == "before") return spliced(document, element.begin, element.begin, edit.value);
    if (edit.verb == "after") return spliced(document, element.end, element.end, edit.value);
    if (edit.verb == "replace") return spliced(document, element.begin, element.end, edit.value);
    if (edit.verb == "delete") return spliced(document, element.begin, element.end, "");
    if (edit.verb == "rename") return withName(document, element, edit.value);
    if (edit.verb == "repeat") return repeated(document, element, edit.value);
    if (edit.verb == "swap") return swapped(document, element, elementAt(document, edit.value));
    throw std::runtime_error("no such edit: " + edit.verb);
}

std::string editedAttribute(std::string_view document, const Edit &edit, std::size_t at) {
    const ElementMarkup element = elementAt(document, edit.path.substr(0, at));
    const std::string name = edit.path.substr(at + 2);
    const AttributeMarkup *attribute = attributeOf(document, element, name);
    if (edit.verb == "set") {
        if (attribute) {
            return spliced(document, attribute->valueBegin, attribute->valueEnd, edit.value);
        }
        const std::string added = " " + name + "=\"" + edit.value + "\"";
        return spliced(document, element.nameEnd, element.nameEnd, added);
    }
    if (!attribute) throw std::runtime_error("no attribute " + edit.path);
    if (edit.verb == "rename") {
        return spliced(document, attribute->begin, attribute->nameEnd, edit.value);
    }
    if (edit.verb != "delete") throw std::runtime_error("no edit of attributes: " + edit.verb);
    return spliced(document, attribute->begin, attribute->valueEnd + 1, "");
}

// ---- files of cases ----

class Reader {
  public:
    explicit Reader(const std::string &path)
        : file_(path), directory_(path.substr(0, path.rfind('/') + 1)) {}

    std::vector<Case> read() {
        const std::string text = readFile(file_);
        for (std::size_t at = 0; at < text.size();) {
            std::size_t end = text.find('\n', at);
            if (end == std::string::npos) end = text.size();
            ++line_;
            takeLine(trimmed(std::string_view(text).substr(at, end - at)));
            at = end + 1;
        }
        return std::move(cases_);
    }

  private:
    void takeLine(std::string_view line) {
        if (line.empty() || line.starts_with('#')) return;
        if (line.find('|') == std::string_view::npos) {
            takeSetting(line);
        } else {
            takeCase(columnsOf(line));
        }
    }

    void takeSetting(std::string_view line) {
        const auto [name, value] = divided(line, " ");
        if (name == "schema" && !value.empty()) {
            schema_ = directory_ + std::string(value);
        } else if (name == "base" && !value.empty() && !schema_.empty()) {
            base_ = directory_ + std::string(value);
            Case itself = start("valid");
            itself.what = "the base document";
            first_ = cases_.size();
            cases_.push_back(std::move(itself));
        } else {
            fail(file_, line_, "neither 'schema FILE', 'base FILE' behind it, nor a case");
        }
    }

    // A case that has no edits yet. The first column: a verdict and why others say something else.
    Case start(std::string_view column) const {
        Case one;
        one.file = file_;
        one.line = line_;
        one.schema = schema_;
        one.base = base_;
        auto [word, rest] = divided(column, " ");
        bool xmllintIsWrong = false, hasReason = false;
        while (!rest.empty()) {
            const auto [reason, others] = divided(rest, " ");
            (reason.starts_with(kXmllintIsWrong) ? xmllintIsWrong : hasReason) = true;
            one.reasons.emplace_back(reason);
            rest = others;
        }
        const bool differs = word == "refused" || word == "accepted";
        if (!differs && word != "valid" && word != "invalid") {
            fail(file_, line_, "no verdict: " + std::string(word));
        }
        if (differs != hasReason)
            fail(file_, line_, "a difference has a reason, all else has none");
        one.valid = word == "valid" || word == "accepted";
        one.validByXmlSchema = one.valid != differs;
        one.validByXmllint = one.validByXmlSchema != xmllintIsWrong;
        return one;
    }

    void takeCase(const std::vector<std::string_view> &columns) {
        if (columns.size() < 2 || (columns[0] != "+" && columns.size() < 3)) {
            fail(file_, line_, "a column is missing");
        }
        if (columns[0] == "+") return takeFurtherEdit(columns);
        if (base_.empty()) fail(file_, line_, "a case before the base document");
        const Edit edit = editOf(columns[2]);
        first_ = cases_.size();
        Case one = start(columns[0]);
        one.edits = {edit};
        const int alternatives = static_cast<int>(columns.size()) - 2;
        for (int i = 1; i <= alternatives; ++i) {
            std::string &value = one.edits[0].value;
            if (i > 1) value = unquoted(columns[static_cast<std::size_t>(i) + 1]);
            one.alternative = alternatives == 1 ? 0 : i;
            one.what = columns[1];
            if (alternatives > 1) one.what += value.empty() ? ": (empty)" : ": " + value;
            cases_.push_back(one);
        }
    }

    // One that all cases of the line before have in common.
    void takeFurtherEdit(const std::vector<std::string_view> &columns) {
        if (columns.size() != 2 || first_ == cases_.size()) {
            fail(file_, line_, "'+ | EDIT' behind a case");
        }
        for (std::size_t i = first_; i < cases_.size(); ++i) {
            cases_[i].edits.push_back(editOf(columns[1]));
        }
    }

    static Edit editOf(std::string_view text) {
        const auto [verb, rest] = divided(text, " ");
        const auto [path, value] = divided(rest, "=");
        return {std::string(verb), std::string(path), unquoted(value)};
    }

    std::string file_;
    std::string directory_;
    int line_ = 0;
    std::string schema_;
    std::string base_;
    std::vector<Case> cases_;
    std::size_t first_ = 0;  // case of the last line
};

}  // namespace

std::vector<Case> readCases(const std::string &path) {
    return Reader(path).read();
}

std::string edited(std::string_view document, const Edit &edit) {
    const std::size_t at = edit.path.find("/@");
    std::string result = at == std::string::npos ? editedElement(document, edit)
                                                 : editedAttribute(document, edit, at);
    if (result == document) throw std::runtime_error("an edit that changes nothing");
    return result;
}

std::string documentOf(const Case &one) {
    std::string document = readFile(one.base);
    for (const Edit &edit : one.edits) {
        try {
            document = edited(document, edit);
        } catch (const std::runtime_error &error) {
            fail(one.file, one.line, error.what());
        }
    }
    return document;
}

}  // namespace examples
