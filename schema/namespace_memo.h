// schema/namespace_memo.h - answers of the namespace-match rule that were given before.
#pragma once

#include <cstddef>
#include <cstdint>

#include "schema/namespace_match.h"

namespace cxml {

// Remembers answers by the addresses of the two names, which stay where they are as long as a document
// and its schema do: most elements of a document ask the same few questions.
class NamespaceMemo {
  public:
    // As Schema_NamespaceMatch without a target namespace.
    bool matches(const char *instanceNs, const char *constraint) noexcept {
        Answer &answer = answers_[slotOf(instanceNs, constraint)];
        if (!answer.known || answer.instanceNs != instanceNs || answer.constraint != constraint) {
            answer = {instanceNs, constraint, true,
                      Schema_NamespaceMatch(instanceNs, constraint, nullptr, nullptr)};
        }
        return answer.matches;
    }

  private:
    struct Answer {
        const char *instanceNs, *constraint;
        bool known, matches;
    };
    static constexpr std::size_t kSlots = 16;

    static std::size_t slotOf(const char *a, const char *b) noexcept {
        const auto bits = reinterpret_cast<std::uintptr_t>(a) ^ reinterpret_cast<std::uintptr_t>(b);
        return (bits ^ bits >> 4 ^ bits >> 8) % kSlots;
    }

    Answer answers_[kSlots] = {};
};

}  // namespace cxml
