#include "files.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

#include "contestant.h"

namespace bench {
namespace {

namespace fs = std::filesystem;

// Either one file, or the largest file of a directory whose name ends so and which this library
// reads. Files of equal size are taken by name.
struct Packaged {
    const char *name;
    const char *path;
    const char *ending;  // null for one file
};

constexpr Packaged kPackaged[] = {
    {"shared-mime-info", "/usr/share/mime/packages/freedesktop.org.xml", nullptr},
    {"xkb-data", "/usr/share/X11/xkb/rules/base.xml", nullptr},
    {"iso-codes", "/usr/share/xml/iso-codes/iso_639-3.xml", nullptr},
    {"unicode-cldr-core", "/usr/share/unicode/cldr/common", ".xml"},
    {"scap-security-guide", "/usr/share/xml/scap/ssg/content", "-ds.xml"},
};

std::string readWhole(const fs::path &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

struct Candidate {
    std::uintmax_t size;
    fs::path path;
};

std::vector<Candidate> candidates(const Packaged &packaged) {
    std::vector<Candidate> found;
    std::error_code failed;  // a directory that is not there has no files
    for (fs::recursive_directory_iterator at(packaged.path, failed), end; !failed && at != end;
         at.increment(failed)) {
        std::error_code unreadable;
        if (!at->path().string().ends_with(packaged.ending)) continue;
        if (!at->is_regular_file(unreadable)) continue;
        found.push_back({at->file_size(unreadable), at->path()});
    }
    std::sort(found.begin(), found.end(), [](const Candidate &a, const Candidate &b) {
        return a.size != b.size ? a.size > b.size : a.path < b.path;
    });
    return found;
}

std::string prepared(const fs::path &path) {
    return withoutQuotes(withoutDoctype(readWhole(path)));
}

bool isRead(const std::string &document) {
    Tally tally;
    return !document.empty() && kCompactXml.parse(document, tally);
}

std::string read(const Packaged &packaged) {
    if (!packaged.ending) return prepared(packaged.path);
    for (const Candidate &candidate : candidates(packaged)) {
        std::string document = prepared(candidate.path);
        if (isRead(document)) return document;
    }
    return {};
}

constexpr std::string_view kDoctype = "<!DOCTYPE";

// Behind the next such end; npos if there is none.
std::size_t after(std::string_view text, std::string_view end, std::size_t from) {
    const std::size_t found = text.find(end, from);
    return found == text.npos ? text.npos : found + end.size();
}

// npos if something else follows the comments and processing instructions at the beginning.
std::size_t doctypeBegin(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size()) {
        const std::string_view rest = text.substr(at);
        if (rest.starts_with(kDoctype)) return at;
        if (rest.starts_with("<!--")) {
            at = after(text, "-->", at + 4);
        } else if (rest.starts_with("<?")) {
            at = after(text, "?>", at + 2);
        } else if (rest.front() == '<') {
            break;
        } else {
            ++at;
        }
    }
    return text.npos;
}

// The end of a document type declaration: a ">" outside of brackets, literals, comments and
// processing instructions.
std::size_t doctypeEnd(std::string_view text, std::size_t at) {
    bool inSubset = false;
    while (at < text.size()) {
        const char c = text[at];
        if (text.substr(at).starts_with("<!--")) {
            at = after(text, "-->", at + 4);
        } else if (text.substr(at).starts_with("<?")) {
            at = after(text, "?>", at + 2);
        } else if (c == '"' || c == '\'') {
            at = after(text, std::string_view(&text[at], 1), at + 1);
        } else {
            if (c == '[' || c == ']') inSubset = c == '[';
            ++at;
            if (c == '>' && !inSubset) return at;
        }
    }
    return text.npos;
}

}  // namespace

std::string withoutQuotes(std::string document) {
    constexpr std::string_view kQuote = "&quot;";
    constexpr std::string_view kApostrophe = "&apos;";
    static_assert(kQuote.size() == kApostrophe.size());
    for (std::size_t at = 0; (at = document.find(kQuote, at)) != document.npos;) {
        document.replace(at, kQuote.size(), kApostrophe);
    }
    return document;
}

std::vector<std::string> packagedFiles() {
    std::vector<std::string> names;
    for (const Packaged &packaged : kPackaged) {
        std::error_code failed;
        if (fs::exists(packaged.path, failed)) names.emplace_back(packaged.name);
    }
    return names;
}

std::string readPackagedFile(const std::string &name) {
    for (const Packaged &packaged : kPackaged) {
        if (name == packaged.name) return read(packaged);
    }
    return {};
}

std::string withoutDoctype(std::string document) {
    const std::size_t begin = doctypeBegin(document);
    if (begin == document.npos) return document;
    const std::size_t end = doctypeEnd(document, begin + kDoctype.size());
    if (end == document.npos) return {};
    document.erase(begin, end - begin);
    return document;
}

}  // namespace bench
