#include "schema/choice_memo.h"

#include <cstring>

#include "io/wrapping.h"
#include "schema/same_text.h"

namespace cxml {

// Begins anew with more slots; what was remembered is found out again.
bool ChoiceMemo::provide(std::size_t slots) noexcept {
    if (choices_.size() >= slots) return true;
    choices_.truncate(0);
    if (!choices_.reserve(slots)) return false;
    choices_.extend(slots);
    std::memset(static_cast<void *>(choices_.data()), 0, slots * sizeof(Choice));
    return true;
}

std::size_t ChoiceMemo::slotOf(const SchemaModelGroup &group, const char *name) const noexcept {
    auto hash = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(&group) >> 4);
    for (; *name != '\0'; ++name) hash = fnvStep(hash, static_cast<unsigned char>(*name));
    return (hash ^ hash >> 15) & (choices_.size() - 1);
}

const ChoiceMemo::Choice *ChoiceMemo::find(const SchemaModelGroup &group, const char *name,
                                           const char *ns) noexcept {
    if (choices_.empty()) return nullptr;
    const Choice &choice = choices_[slotOf(group, name)];
    const bool known = choice.group == &group && choice.ns == ns && isSameText(choice.name, name);
    return known ? &choice : nullptr;
}

void ChoiceMemo::put(const Choice &choice) noexcept {
    constexpr std::size_t kLeastSlots = 32, kMostSlots = 4096;
    std::size_t slots = kLeastSlots;
    while (slots < kMostSlots && slots < 2 * std::size_t{choice.group->particleCount}) slots *= 2;
    if (provide(slots)) choices_[slotOf(*choice.group, choice.name)] = choice;
}

}  // namespace cxml
