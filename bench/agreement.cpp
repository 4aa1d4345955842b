#include "agreement.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <map>
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

    const Tally &result() const {
        if (!ok_ || agreed_.elements == 0) {
            std::fprintf(stderr, "%s: the contestants do not agree, so nothing is measured\n",
                         document_.label.c_str());
            std::exit(EXIT_FAILURE);
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

void checkParses(Check &check, std::string_view document, const std::string &of) {
    for (const Contestant *contestant : kContestants) {
        if (!contestant->parse) continue;
        Tally tally = exactTally();
        const bool done = contestant->parse(document, tally);
        check.add(contestant->name + std::string(" parsing ") + of, done, tally);
    }
}

void checkTree(Check &check, const Document &document, const Contestant &contestant) {
    const std::string name = contestant.name;
    std::string bytes = document.bytes;
    void *tree = contestant.build(bytes);
    Tally tally = exactTally();
    if (tree) contestant.count(tree, tally);
    check.add(name + " building", tree != nullptr, tally);
    if (tree && contestant.serialize) {
        std::string out;
        const std::size_t length = contestant.serialize(tree, &out);
        if (length == 0 || length != out.size()) check.add(name + " serializing", false, tally);
        checkParses(check, out, "the output of " + name);
    }
    if (tree) contestant.destroy(tree);
}

}  // namespace

const Tally &requireAgreement(const Document &document) {
    static std::map<const Document *, Tally> agreed;
    const auto found = agreed.find(&document);
    if (found != agreed.end()) return found->second;

    Check check(document);
    checkParses(check, document.bytes, "the document");
    for (const Contestant *contestant : kContestants) {
        if (contestant->build) checkTree(check, document, *contestant);
    }
    return agreed[&document] = check.result();
}

}  // namespace bench
