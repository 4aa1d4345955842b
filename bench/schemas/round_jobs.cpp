// "round": the whole round of a request, see round.h.
#include <cstdio>

#include "round.h"
#include "schema_jobs.h"
#include "switch_document.h"

namespace bench {
namespace {

constexpr std::size_t kRequestSize = 4000;

class ServeRequest final : public Work {
  public:
    ServeRequest(std::unique_ptr<Round> round, std::string request)
        : round_(std::move(round)), request_(std::move(request)) {}
    bool run() override { return round_->serve(request_, nullptr); }

  private:
    std::unique_ptr<Round> round_;
    std::string request_;
};

// From the root on: some write a declaration before it, some a line end behind it.
std::string_view rootOf(std::string_view answer) {
    const std::size_t start = answer.find("<answer");
    const std::size_t end = answer.rfind('>');
    return start < end && end != answer.npos ? answer.substr(start, end + 1 - start)
                                             : std::string_view();
}

// The answer of one contestant; empty if it fails or does not refuse a mistake.
std::string answerOf(const RoundKind &kind, const std::string &request) {
    const std::unique_ptr<Round> round = kind.make();
    std::string answer;
    if (!round || !round->serve(request, &answer)) return {};
    if (kind.validates && round->serve(makeSwitch(kRequestSize, false), nullptr)) return {};
    return std::string(rootOf(answer));
}

// Whether a contestant answers as the first one does.
bool takesPart(const RoundKind &kind, const std::string &request) {
    static const std::string first = answerOf(*kRoundKinds[0], request);
    const std::string answer = answerOf(kind, request);
    if (!answer.empty() && answer == first) return true;
    std::fprintf(stderr, "round: %s answers\n%s\nand %s\n%s\n", kRoundKinds[0]->name, first.c_str(),
                 kind.name, answer.c_str());
    return false;
}

std::unique_ptr<Work> prepare(const RoundKind &kind) {
    const std::string request = makeSwitch(kRequestSize, true);
    std::unique_ptr<Round> round = takesPart(kind, request) ? kind.make() : nullptr;
    if (!round) return nullptr;
    return std::make_unique<ServeRequest>(std::move(round), request);
}

}  // namespace

void addRoundJobs(Jobs &jobs) {
    const std::size_t bytes = makeSwitch(kRequestSize, true).size();
    for (const RoundKind *kind : kRoundKinds) {
        jobs.push_back({std::string("round/switch/4k/") + kind->name, bytes, Place::kHere,
                        [kind] { return prepare(*kind); }});
    }
}

}  // namespace bench
