#include "parser/namespace_scope.h"

#include <cstdlib>
#include <cstring>

namespace cxml {
namespace {

// One block for the record and both strings.
XML_Parser_Ns *newBinding(const char *prefix, const char *namespaceName) {
    const std::size_t prefixLength = prefix ? std::strlen(prefix) : 0;
    const std::size_t nameLength = std::strlen(namespaceName);
    constexpr std::size_t kFixed = sizeof(XML_Parser_Ns) + 2;
    // The sum of two lengths in memory does not wrap; a block may still not hold them both.
    if (prefixLength + nameLength > PTRDIFF_MAX - kFixed) return nullptr;
    void *block = std::malloc(kFixed + prefixLength + nameLength);
    if (!block) return nullptr;
    auto *binding = static_cast<XML_Parser_Ns *>(block);
    auto *strings = static_cast<char *>(block) + sizeof(XML_Parser_Ns);
    *binding = {};
    binding->namespaceName = strings;
    std::memcpy(strings, namespaceName, nameLength + 1);
    if (prefixLength != 0) {
        strings += nameLength + 1;
        binding->prefix = strings;
        std::memcpy(strings, prefix, prefixLength + 1);
    }
    binding->prefixLength = prefixLength;
    binding->prefixKey = prefixKey(prefix, prefixLength);
    binding->nameLength = nameLength;
    return binding;
}

}  // namespace

XML_Parser_Ns *NamespaceScope::findAnew(const char *prefix, std::size_t length,
                                        std::uint64_t key) noexcept {
    if (bucketCount_ == 0) {
        XML_Parser_Ns *binding = newest_;
        while (binding && !hasPrefix(binding, prefix, length, key)) binding = binding->next;
        return binding;
    }
    const std::uint64_t hash = hash_(prefix, length);
    XML_Parser_Ns *binding = buckets_[hash & (bucketCount_ - 1)];
    while (binding && !(binding->prefixHash == hash && hasPrefix(binding, prefix, length, key))) {
        binding = binding->nextInBucket;
    }
    return binding;
}

// Where the table points at the binding that stands for its prefix.
XML_Parser_Ns **NamespaceScope::slotOf(XML_Parser_Ns *binding) noexcept {
    XML_Parser_Ns **slot = &buckets_[binding->prefixHash & (bucketCount_ - 1)];
    while (*slot != binding) slot = &(*slot)->nextInBucket;
    return slot;
}

// A table with at least so many buckets, holding the newest binding of each prefix.
bool NamespaceScope::makeBuckets(std::size_t count) noexcept {
    std::size_t size = 4 * kWalked;
    while (size < count) size *= 2;
    auto **buckets = static_cast<XML_Parser_Ns **>(std::calloc(size, sizeof(XML_Parser_Ns *)));
    if (!buckets) return false;
    // Newest first: whatever a newer binding shadows is marked by the time the walk gets there.
    for (XML_Parser_Ns *binding = newest_; binding; binding = binding->next) {
        binding->nextInBucket = nullptr;
    }
    std::free(buckets_);
    buckets_ = buckets;
    bucketCount_ = size;
    for (XML_Parser_Ns *binding = newest_; binding; binding = binding->next) {
        if (binding->prefixLength == 0) continue;
        binding->prefixHash = hash_(binding->prefix, binding->prefixLength);
        XML_Parser_Ns **bucket = &buckets_[binding->prefixHash & (size - 1)];
        XML_Parser_Ns *same = *bucket;
        while (same &&
               !(same->prefixHash == binding->prefixHash &&
                 hasPrefix(same, binding->prefix, binding->prefixLength, binding->prefixKey))) {
            same = same->nextInBucket;
        }
        if (same) continue;
        binding->nextInBucket = *bucket;
        *bucket = binding;
    }
    return true;
}

XML_Parser_Ns *NamespaceScope::push(const char *prefix, const char *namespaceName) noexcept {
    // Twice as many buckets as bindings can there be before the next table is made.
    const std::size_t next = count() + 1;
    if (next > kWalked && next * 2 > bucketCount_ && !makeBuckets(next * 4)) return nullptr;
    XML_Parser_Ns *binding = newBinding(prefix, namespaceName);
    if (!binding) return nullptr;
    binding->next = newest_;
    binding->ordinal = count();
    binding->shadowed = find(binding->prefix, binding->prefixLength);
    newest_ = binding;
    found_ = nullptr;
    ++count_;
    if (binding->prefixLength == 0) {
        default_ = binding;
    } else if (bucketCount_ != 0) {
        if (binding->shadowed) {
            binding->prefixHash = binding->shadowed->prefixHash;
            XML_Parser_Ns **slot = slotOf(binding->shadowed);
            binding->nextInBucket = binding->shadowed->nextInBucket;
            *slot = binding;
        } else {
            binding->prefixHash = hash_(binding->prefix, binding->prefixLength);
            XML_Parser_Ns **bucket = &buckets_[binding->prefixHash & (bucketCount_ - 1)];
            binding->nextInBucket = *bucket;
            *bucket = binding;
        }
    }
    return binding;
}

void NamespaceScope::popBindings(std::size_t left) noexcept {
    found_ = nullptr;
    while (count() > left) {
        XML_Parser_Ns *binding = newest_;
        if (binding->prefixLength == 0) {
            default_ = binding->shadowed;
        } else if (bucketCount_ != 0) {
            XML_Parser_Ns **slot = slotOf(binding);
            if (binding->shadowed) {
                binding->shadowed->nextInBucket = binding->nextInBucket;
                *slot = binding->shadowed;
            } else {
                *slot = binding->nextInBucket;
            }
        }
        newest_ = binding->next;
        --count_;
        std::free(binding);
    }
    if (left == 0) {
        std::free(buckets_);
        buckets_ = nullptr;
        bucketCount_ = 0;
    }
}

std::uint64_t NamespaceScope::hashOfName(XML_Parser_Ns *binding) noexcept {
    if (!binding) return 0;
    if (!binding->nameHashed) {
        binding->nameHash = hash_(binding->namespaceName, binding->nameLength);
        binding->nameHashed = true;
    }
    return binding->nameHash;
}

bool NamespaceScope::isSameName(XML_Parser_Ns *a, XML_Parser_Ns *b) noexcept {
    if (a == b) return true;
    if (!a || !b || a->nameLength != b->nameLength) return false;
    // Long names that differ only at their ends must not be read to the end for every tag.
    return hashOfName(a) == hashOfName(b) &&
           std::memcmp(a->namespaceName, b->namespaceName, a->nameLength) == 0;
}

}  // namespace cxml
