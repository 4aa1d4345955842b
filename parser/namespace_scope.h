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

    std::size_t count() const noexcept { return newest_ ? newest_->ordinal + 1 : 0; }
    XML_Parser_Ns *newest() const noexcept { return newest_; }

    // The newest binding of a prefix, or null.
    XML_Parser_Ns *find(const char *prefix, std::size_t length) noexcept;
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
    void popBindings(std::size_t left) noexcept;
    bool makeBuckets(std::size_t count) noexcept;
    XML_Parser_Ns **slotOf(XML_Parser_Ns *binding) noexcept;

    static constexpr std::size_t kWalked = 8;

    XML_Parser_Ns *newest_ = nullptr;
    XML_Parser_Ns *default_ = nullptr;
    XML_Parser_Ns **buckets_ = nullptr;  // a power of two, or none while few bindings are walked
    std::size_t bucketCount_ = 0;
    KeyedHash hash_;
};

}  // namespace cxml
