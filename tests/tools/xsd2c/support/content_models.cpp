#include "tests/tools/xsd2c/support/content_models.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <stdexcept>

namespace support {

using xsd2c::kUnbounded;
using xsd2c::Term;
using xsd2c::Wildcard;

namespace {

// They stand for the elements of other namespaces.
constexpr char kOfV = 'v', kOfOthers = 'w';

Term::Kind kindOf(std::string_view word) {
    if (word == "seq") return Term::Kind::kSequence;
    if (word == "choice") return Term::Kind::kChoice;
    return word == "all" ? Term::Kind::kAll : Term::Kind::kElement;
}

bool isGroup(const Term &term) {
    return term.kind != Term::Kind::kElement && term.kind != Term::Kind::kWildcard;
}

}  // namespace

const char *namespaceOf(char letter) {
    switch (letter) {
        case 'x':
        case 'y':
            return "u";
        case kOfV:
            return "v";
        case kOfOthers:
            return "w";
        default:
            return "";
    }
}

std::string lettersOf(const Term &particle) {
    std::string letters;
    for (const Term::Name &name : particle.names) letters += name.local;
    if (!particle.wildcard) return letters;
    const Wildcard &wildcard = *particle.wildcard;
    for (const char letter : std::string(kLetters) + kOfV + kOfOthers) {
        const std::string ns = namespaceOf(letter);
        const bool admitted =
            wildcard.names == Wildcard::Names::kAny ||
            (wildcard.names == Wildcard::Names::kOther && !ns.empty() && ns != wildcard.targetNs) ||
            std::count(wildcard.listed.begin(), wildcard.listed.end(), ns) > 0;
        if (admitted) letters += letter;
    }
    return letters;
}

// Reads a content model, by plain descent.
class ContentModelReader {
  public:
    ContentModelReader(const ContentModels &models, std::string_view text)
        : models_(models), text_(text) {}

    Term particle() {
        Term term;
        while (peek() == ' ') ++at_;
        term.place.line = 1;
        term.place.column = static_cast<int>(at_) + 1;
        const std::string name = word();
        term.kind = kindOf(name);
        if (term.kind == Term::Kind::kElement) setLeaf(name, &term);
        if (peek() == '{') {
            term.minOccurs = number('{');
            term.maxOccurs = number(',');
            expect('}');
        }
        if (!isGroup(term)) return term;
        expect('(');
        while (peek() != ')') {
            term.children.push_back(particle());
            if (peek() == ',') ++at_;
        }
        expect(')');
        return term;
    }
    void expectEnd() {
        if (at_ != text_.size()) fail();
    }

  private:
    [[noreturn]] void fail() const {
        throw std::logic_error("content model: " + std::string(text_));
    }
    char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }
    void expect(char c) {
        if (peek() != c) fail();
        ++at_;
    }
    std::string word() {
        const std::size_t begin = at_;
        while (at_ < text_.size() && !std::strchr(" ,(){}", text_[at_])) ++at_;
        if (begin == at_) fail();
        return std::string(text_.substr(begin, at_ - begin));
    }
    std::uint32_t number(char before) {
        expect(before);
        const std::string digits = word();
        return digits == "u" ? kUnbounded : static_cast<std::uint32_t>(std::stoul(digits));
    }
    void setLeaf(const std::string &name, Term *term) const {
        for (const auto &[known, wildcard] : models_.wildcards_) {
            if (known != name) continue;
            term->kind = Term::Kind::kWildcard;
            term->wildcard = &wildcard;
            return;
        }
        for (const char letter : name) {
            term->names.push_back({namespaceOf(letter), std::string(1, letter)});
        }
    }

    const ContentModels &models_;
    std::string_view text_;
    std::size_t at_ = 0;
};

ContentModels::ContentModels() {
    const auto add = [this](const char *name, Wildcard::Names names,
                            std::vector<std::string> listed, const char *targetNs) {
        Wildcard wildcard;
        wildcard.names = names;
        wildcard.listed = std::move(listed);
        wildcard.targetNs = targetNs;
        wildcards_.emplace_back(name, wildcard);
    };
    add("any", Wildcard::Names::kAny, {}, "u");
    add("other", Wildcard::Names::kOther, {}, "");
    add("otherU", Wildcard::Names::kOther, {}, "u");
    add("listU", Wildcard::Names::kListed, {"u"}, "u");
    add("listV", Wildcard::Names::kListed, {"v"}, "u");
    add("none", Wildcard::Names::kListed, {""}, "u");
    add("both", Wildcard::Names::kListed, {"u", ""}, "u");
}

Term ContentModels::read(std::string_view text) {
    ContentModelReader reader(*this, text);
    Term model = reader.particle();
    reader.expectEnd();
    return model;
}

std::string RandomModels::bounds(const ModelTaste &taste) {
    constexpr const char *kBounds[] = {"",      "",      "",      "{0,1}", "{0,1}", "{0,u}",
                                       "{1,u}", "{1,2}", "{2,2}", "{0,2}", "{2,3}", "{1,3}",
                                       "{3,3}", "{0,3}", "{2,u}", "{3,u}"};
    const bool simple = taste.simpleBounds || below(2) == 0;
    return kBounds[below(simple ? 7 : std::size(kBounds))];
}

std::string RandomModels::group(const ModelTaste &taste, int depth) {
    const std::uint32_t kind = below(taste.kinds);
    if (kind == 2) return allGroup(taste);
    std::string text = (kind == 0 ? "seq" : "choice") + bounds(taste);
    const char *separator = "(";
    for (std::uint32_t i = 1 + below(3); i > 0; --i) {
        text += separator;
        const bool nested = depth > 0 && below(5) < 2;
        if (nested) {
            text += group(taste, depth - 1);
        } else {
            text += oneOf(taste.particles) + bounds(taste);
        }
        separator = ",";
    }
    return text + ")";
}

std::string RandomModels::allGroup(const ModelTaste &taste) {
    std::string text = below(2) == 0 ? "all" : "all{0,1}";
    const char *separator = "(";
    for (std::uint32_t i = 1 + below(3); i > 0; --i) {
        text += separator + oneOf(taste.particles) + (below(2) == 0 ? "" : "{0,1}");
        separator = ",";
    }
    return text + ")";
}

}  // namespace support
