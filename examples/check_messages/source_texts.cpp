#include "source_texts.h"

#include <algorithm>
#include <filesystem>
#include <numeric>

#include "file.h"

namespace messages {
namespace {

// Goes through source text and collects literals.
class Scanner {
  public:
    explicit Scanner(const std::string &source) : source_(source) {}

    std::set<Pieces> scan() {
        while (at_ < source_.size()) step();
        flush();
        return found_;
    }

  private:
    bool startsWith(const char *text) const { return source_.compare(at_, 2, text) == 0; }
    void skipTo(const char *end) {
        const std::size_t found = source_.find(end, at_);
        at_ = found == std::string::npos ? source_.size() : found;
    }

    void step() {
        const char c = source_[at_];
        if (startsWith("//") || c == '#') return skipTo("\n");
        if (startsWith("/*")) return skipTo("*/");
        if (c == '"') return pieces_.push_back(literal());
        if (c == '\'') {
            literal();
            return;
        }
        if (c == '{' || c == '}' || c == ';') flush();
        ++at_;
    }

    // Reads a literal, which begins with the mark that ends it, without its backslashes.
    std::string literal() {
        const char mark = source_[at_++];
        std::string text;
        for (; at_ < source_.size() && source_[at_] != mark; ++at_) {
            if (source_[at_] == '\\') ++at_;
            text += source_[at_];
        }
        ++at_;
        return text;
    }

    void flush() {
        const auto hasBlank = [](const std::string &piece) {
            return piece.find(' ') != std::string::npos;
        };
        if (std::any_of(pieces_.begin(), pieces_.end(), hasBlank)) found_.insert(pieces_);
        pieces_.clear();
    }

    const std::string &source_;
    std::size_t at_ = 0;
    Pieces pieces_;
    std::set<Pieces> found_;
};

std::size_t fixedBytes(const Pieces &message) {
    return std::accumulate(
        message.begin(), message.end(), std::size_t{0},
        [](std::size_t sum, const std::string &piece) { return sum + piece.size(); });
}

}  // namespace

std::set<Pieces> messagesOf(const std::string &source) {
    return Scanner(source).scan();
}

std::set<Pieces> messagesIn(const std::string &directory, const std::string &leftOut) {
    std::set<Pieces> all;
    for (const auto &entry : std::filesystem::directory_iterator(directory)) {
        const std::filesystem::path &path = entry.path();
        if (path.extension() != ".cpp" || path.filename() == leftOut) continue;
        all.merge(messagesOf(readFile(path.string())));
    }
    return all;
}

bool fits(const Pieces &message, const std::string &text) {
    std::size_t at = 0;
    for (const std::string &piece : message) {
        at = text.find(piece, at);
        if (at == std::string::npos) return false;
        at += piece.size();
    }
    return true;
}

Pieces kindOf(const std::set<Pieces> &known, const std::string &text) {
    Pieces best;
    for (const Pieces &message : known) {
        if (fits(message, text) && fixedBytes(message) > fixedBytes(best)) best = message;
    }
    return best;
}

}  // namespace messages
