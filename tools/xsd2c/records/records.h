// tools/xsd2c/records/records.h - the compiled form of a schema: the records of the validator, in
// memory.
//
// They can be registered with a root as they are, and written as C. Texts are GB18030.
#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "compactxml.h"

namespace xsd2c {

// Records of one type, singly or as arrays. They stay where they are, and have numbers in the order
// in which they were added.
template <class T>
class Pool {
  public:
    // An array, all zero; null if it would have no entry.
    T *add(std::size_t count = 1) {
        if (count == 0) return nullptr;
        blocks_.emplace_back(count);
        T *first = blocks_.back().data();
        firstNumbers_.emplace(first, size_);
        size_ += count;
        return first;
    }
    T *add(const std::vector<T> &records) {
        T *first = add(records.size());
        std::copy(records.begin(), records.end(), first);
        return first;
    }

    std::size_t size() const noexcept { return size_; }

    // The number of a record of this pool.
    std::size_t numberOf(const T *record) const {
        const auto block = std::prev(firstNumbers_.upper_bound(record));
        return block->second + static_cast<std::size_t>(record - block->first);
    }

    // Calls visit(record) for each, by number.
    template <class Visit>
    void forEach(Visit visit) const {
        for (const std::vector<T> &block : blocks_) {
            for (const T &record : block) visit(record);
        }
    }

  private:
    std::deque<std::vector<T>> blocks_;
    std::map<const T *, std::size_t, std::less<>> firstNumbers_;
    std::size_t size_ = 0;
};

// A component that the unit offers by name.
struct TopObject {
    SchemaTypedRef object{};  // SCHEMA_KIND_SIMPLE_TYPE, _COMPLEX_TYPE, _ELEMENT, _ATTRIBUTE,
                              // _ATTRIBUTE_GROUP or _MODEL_GROUP
    std::string name;         // UTF-8, as in the schema
    std::string ns;

    // Model groups stand in content models alone.
    bool isRegistered() const noexcept { return object.kind != SCHEMA_KIND_MODEL_GROUP; }
};

struct Records {
    Records() = default;
    Records(const Records &) = delete;
    Records &operator=(const Records &) = delete;

    // A text that lives as long as the records; equal texts are one.
    const char *text(std::string_view gb18030) { return texts_.emplace(gb18030).first->c_str(); }
    // The same of a namespace name or another text that is null where there is none.
    const char *textOrNull(std::string_view gb18030) {
        return gb18030.empty() ? nullptr : text(gb18030);
    }

    Pool<SchemaFacet> facets;
    Pool<SchemaSimpleType> simpleTypes;
    Pool<const SchemaSimpleType *> members;  // arrays of SchemaSimpleType::members
    Pool<SchemaAttributeDecl> attributes;
    Pool<const SchemaAttributeDecl *> attributeUses;
    Pool<SchemaWildcard> attributeWildcards;
    Pool<SchemaAttributeGroup> attributeGroups;
    Pool<const SchemaAttributeGroup *> attributeGroupRefs;
    Pool<SchemaElementDecl> elements;
    Pool<SchemaElementWildcard> elementWildcards;
    Pool<SchemaTypedRef> particles;
    Pool<SchemaModelGroup> modelGroups;
    Pool<SchemaDerivation> derivations;
    Pool<SchemaComplexType> complexTypes;

    std::vector<TopObject> top;  // in document order, which is that of registration

    // What a record stands for, in words for whoever reads the generated code: "element vlan".
    std::unordered_map<const void *, std::string> labels;

  private:
    std::unordered_set<std::string> texts_;  // its elements stay where they are
};

}  // namespace xsd2c
