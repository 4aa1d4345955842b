// schema/choice_memo.h - which alternative of a long choice an element took before.
#pragma once

#include <cstddef>
#include <cstdint>

#include "compactxml.h"
#include "io/memory.h"

namespace cxml {

// Remembers choices by group, name and namespace, which are all that they depend on. Short choices are
// searched as fast.
class ChoiceMemo {
  public:
    static constexpr std::uint32_t kLeastParticles = 9;

    struct Choice {
        const SchemaModelGroup *group;
        const char *name;  // of the element that chose, in the document
        const char *ns;
        const SchemaTypedRef *particle;  // null when none fits
    };

    // What was chosen before; null for nothing that is known. The name is not null.
    const Choice *find(const SchemaModelGroup &group, const char *name, const char *ns) noexcept;
    // Takes a choice in place of another one. Forgets it for want of memory.
    void put(const Choice &choice) noexcept;

  private:
    bool provide(std::size_t slots) noexcept;
    std::size_t slotOf(const SchemaModelGroup &group, const char *name) const noexcept;

    GrowingArray<Choice> choices_;  // none, or a power of two of them
};

}  // namespace cxml
