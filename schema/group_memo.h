// schema/group_memo.h - what was found out about model groups before.
#pragma once

#include <cstddef>
#include <cstdint>

#include "compactxml.h"

namespace cxml {

// How many particles of a group cannot match nothing.
std::uint32_t countRequired(const SchemaModelGroup &group) noexcept;

// Remembers that number by the address of the group, which is static: it takes a walk through the group
// and those within it, and is asked for every element of a type.
class GroupMemo {
  public:
    std::uint32_t required(const SchemaModelGroup &group) noexcept {
        const auto address = reinterpret_cast<std::uintptr_t>(&group);
        Answer &answer = answers_[(address >> 5 ^ address >> 9) % kSlots];
        if (answer.group != &group) answer = {&group, countRequired(group)};
        return answer.required;
    }

  private:
    struct Answer {
        const SchemaModelGroup *group;
        std::uint32_t required;
    };
    static constexpr std::size_t kSlots = 32;

    Answer answers_[kSlots] = {};
};

}  // namespace cxml
