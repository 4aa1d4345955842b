// parser/namespace_scope.h - the prefixes that are bound where a walk over elements stands.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "compactxml.h"
#include "io/keyed_hash.h"
#include "io/memory.h"

// One binding of a prefix, in scope from the element that declares it to that element's end. The
// first three fields are those of the context's list, newest first.
struct XML_Parser_Ns {
    XML_Parser_Ns *next;
    const char *prefix;  // null for the default namespace
    const char *namespaceName;
    // Filled in by the scope:
    XML_Parser_Ns *shadowed;  // what the same prefix was bound to before, or null
    XML_Parser_Ns *nextInBucket;
    std::size_t ordinal;  // bindings in scope before this one
    std::uint64_t prefixHash;
    std::size_t prefixLength;
    std::uint64_t prefixKey;  // see prefixKey() below
    // For comparing long names in constant time; see NamespaceScope::isSameName.
    std::size_t nameLength;
    std::uint64_t nameHash;
    bool nameHashed;
    // What the binding stands for in the tree, for the builder.
    XML_DOM_NsDecl *declaration;
};

namespace cxml {

// Fixed by Namespaces in XML 1.0, 3.
inline constexpr char kXmlNamespace[] = "http://www.w3.org/XML/1998/namespace";
inline constexpr char kXmlnsNamespace[] = "http://www.w3.org/2000/xmlns/";

// Eight bytes that are equal for equal prefixes, and for no others of the same length up to 8.
inline std::uint64_t prefixKey(const char *prefix, std::size_t length) noexcept {
    if (length >= sizeof(std::uint64_t)) {
        std::uint64_t word;
        std::memcpy(&word, prefix, sizeof word);
        return word;
    }
    if (length >= sizeof(std::uint32_t)) {
        std::uint32_t first;
        std::uint32_t last;
        std::memcpy(&first, prefix, sizeof first);
        std::memcpy(&last, prefix + length - sizeof last, sizeof last);
        return std::uint64_t{first} << 32 | last;
    }
    if (length == 0) return 0;
    const auto byte = [prefix](std::size_t i) { return static_cast<unsigned char>(prefix[i]); };
    return std::uint64_t{byte(0)} << 16 | std::uint64_t{byte(length / 2)} << 8 | byte(length - 1);
}

inline bool hasPrefix(const XML_Parser_Ns *binding, const char *prefix, std::size_t length,
                      std::uint64_t key) noexcept {
    return binding->prefixLength == length && binding->prefixKey == key &&
           (length <= sizeof key || std::memcmp(binding->prefix, prefix, length) == 0);
}

// A stack of bindings with the newest one of each prefix at hand. A few bindings, which is what
// documents have, are walked; many are found through a hash table, so that neither their number nor
// the depth at which they were made matters.
class NamespaceScope {
  public:
    NamespaceScope() noexcept = default;
    NamespaceScope(const NamespaceScope &) = delete;
    NamespaceScope &operator=(const NamespaceScope &) = delete;
    ~NamespaceScope() { pop(0); }

    // Binds a prefix (null or empty for the default namespace) with copies of both strings. Null
    // for exhausted memory.
    XML_Parser_Ns *push(const char *prefix, const char *namespaceName) noexcept;
    // Ends the newest bindings until so many are left.
    void pop(std::size_t left) noexcept {
        if (count() > left) popBindings(left);
    }

    std::size_t count() const noexcept { return count_; }
    XML_Parser_Ns *newest() const noexcept { return newest_; }

    // The newest binding of a prefix, or null.
    XML_Parser_Ns *find(const char *prefix, std::size_t length) noexcept {
        if (length == 0) return default_;
        // Elements have the prefix of the one before more often than not.
        const std::uint64_t key = prefixKey(prefix, length);
        if (found_ && hasPrefix(found_, prefix, length, key)) return found_;
        return found_ = findAnew(prefix, length, key);
    }
    XML_Parser_Ns *findByText(const char *prefix) noexcept {  // null and "" are the default
        return find(prefix, prefix ? std::strlen(prefix) : 0);
    }
    XML_Parser_Ns *findDefault() const noexcept { return default_; }

    // Whether two bindings have equal namespace names, without reading long names again and again.
    bool isSameName(XML_Parser_Ns *a, XML_Parser_Ns *b) noexcept;

    KeyedHash &hash() noexcept { return hash_; }
    // Equal for equal namespace names; 0 for no binding.
    std::uint64_t hashOfName(XML_Parser_Ns *binding) noexcept;

  private:
    XML_Parser_Ns *findAnew(const char *prefix, std::size_t length, std::uint64_t key) noexcept;
    void popBindings(std::size_t left) noexcept;
    bool makeBuckets(std::size_t count) noexcept;
    XML_Parser_Ns **slotOf(XML_Parser_Ns *binding) noexcept;

    static constexpr std::size_t kWalked = 8;

    XML_Parser_Ns *newest_ = nullptr;
    XML_Parser_Ns *default_ = nullptr;
    XML_Parser_Ns *found_ = nullptr;  // what was found last, or null
    std::size_t count_ = 0;
    XML_Parser_Ns **buckets_ = nullptr;  // a power of two, or none while few bindings are walked
    std::size_t bucketCount_ = 0;
    KeyedHash hash_;
};

}  // namespace cxml
