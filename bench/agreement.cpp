#include "agreement.h"

#include <cinttypes>
#include <cstdio>
#include <map>
#include <optional>
#include <string>

#include "contestant.h"

namespace bench {
namespace {

class Check {
  public:
    explicit Check(const Document &document) : document_(document) {}

    void add(const std::string &what, bool done, const Tally &tally) {
        if (!done) {
            std::fprintf(stderr, "%s: %s failed\n", document_.label.c_str(), what.c_str());
            ok_ = false;
        } else if (whats_ == 0) {
            agreed_ = tally;
            first_ = what;
        } else if (!(tally == agreed_)) {
            print(first_, agreed_);
            print(what, tally);
            ok_ = false;
        }
        ++whats_;
    }

    std::optional<Tally> result() const {
        if (!ok_ || agreed_.elements == 0) {
            std::fprintf(stderr, "%s: the contestants do not agree, so nothing is measured\n",
                         document_.label.c_str());
            return std::nullopt;
        }
        std::fprintf(stderr,
                     "%s: %zu bytes; %d readings agree on %" PRIu64 " elements, %" PRIu64
                     " attributes, %" PRIu64 " bytes of text\n",
                     document_.label.c_str(), document_.bytes.size(), whats_, agreed_.elements,
                     agreed_.attributes, agreed_.textBytes);
        return agreed_;
    }

  private:
    void print(const std::string &what, const Tally &tally) const {
        std::fprintf(stderr,
                     "%s: %s: %" PRIu64 " elements, %" PRIu64 " attributes, %" PRIu64
                     " bytes of text, digest %016" PRIx64 "\n",
                     document_.label.c_str(), what.c_str(), tally.elements, tally.attributes,
                     tally.textBytes, tally.digest);
    }

    const Document &document_;
    Tally agreed_;
    std::string first_;
    int whats_ = 0;
    bool ok_ = true;
};

Tally exactTally() {
    Tally tally;
    tally.exact = true;
    return tally;
}

std::string_view onlyWith;  // empty for all

bool takesPart(const Contestant &contestant) {
    return onlyWith.empty() || &contestant == &kCompactXml || contestant.name == onlyWith;
}

void checkParse(Check &check, const Contestant &contestant, std::string_view bytes,
                const std::string &of) {
    Tally tally = exactTally();
    const bool done = contestant.parse(bytes, tally);
    check.add(contestant.name + std::string(" parsing ") + of, done, tally);
}

void checkParses(Check &check, const Document &document) {
    for (const Contestant *contestant : contestants()) {
        if (!contestant->parse || !takesPart(*contestant) || !contestant->takes(document)) continue;
        checkParse(check, *contestant, document.bytes, "the document");
    }
}

void checkOutput(Check &check, const Document &document, const Contestant &writer,
                 const void *tree) {
    std::string out;
    const std::size_t length = writer.serialize(tree, document.encoding, &out);
    if (length == 0 || length != out.size()) {
        check.add(std::string(writer.name) + " serializing", false, Tally());
        return;
    }
    const std::string of = std::string("the output of ") + writer.name;
    for (const Contestant *reader : contestants()) {
        if (!reader->parse || !takesPart(*reader) || !reader->takes(document)) continue;
        if (document.isLarge() && reader != &kCompactXml) continue;
        checkParse(check, *reader, out, of);
    }
}

void checkTree(Check &check, const Document &document, const Contestant &contestant) {
    std::string bytes = document.bytes;
    void *tree = contestant.build(bytes, document.encoding);
    Tally tally = exactTally();
    if (tree) contestant.count(tree, tally);
    check.add(std::string(contestant.name) + " building", tree != nullptr, tally);
    if (tree && contestant.serialize) checkOutput(check, document, contestant, tree);
    if (tree) contestant.destroy(tree);
}

}  // namespace

const Tally *agreement(const Document &document) {
    static std::map<const Document *, std::optional<Tally>> agreed;
    const auto [at, isNew] = agreed.try_emplace(&document);
    if (isNew) {
        Check check(document);
        checkParses(check, document);
        for (const Contestant *contestant : contestants()) {
            if (contestant->build && takesPart(*contestant) && contestant->takes(document)) {
                checkTree(check, document, *contestant);
            }
        }
        at->second = check.result();
    }
    return at->second ? &*at->second : nullptr;
}

void agreeOnlyWith(std::string_view contestant) {
    onlyWith = contestant;
}

}  // namespace bench
