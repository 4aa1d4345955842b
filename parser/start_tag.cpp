#include <bit>
#include <climits>

#include "io/wrapping.h"
#include "parser/grammar.h"
#include "parser/lexer.h"

namespace cxml {
namespace {

// Up to so many attributes are compared pair by pair, more are looked up in a table.
constexpr std::size_t kComparedInPairs = 16;

// What a prefix is bound to; null if it is not. A name without a prefix is in the default
// namespace.
XML_Parser_Ns *XML_Parser_LookupNamespace(Parser *parser, const char *prefix, std::size_t length) {
    XML_Parser_Ns *binding = parser->scope.find(prefix, length);
    if (!binding && length == 3 && std::memcmp(prefix, "xml", 3) == 0) return &parser->xmlBinding;
    return binding;
}

// Reads a value up to its closing quote into the scratch buffer, with a NUL.
template <Byte kQuote>
Code readValue(Parser *parser) {
    for (;;) {
        Code code = takeUntil<kQuote, '<', '&'>(parser, Keep::kSnippet, &parser->scratch);
        if (code != kAccepted) return code;
        switch (peek(parser)) {
            case kQuote:
                skipAscii(parser, 1);
                return parser->scratch.append('\0') ? kAccepted : kNoMemory;
            case '<':
                return kLessThanInValue;
            case '&':
                code = readReference(parser, &parser->scratch);
                break;
            default:
                return kQuoteNotClosed;
        }
        if (code != kAccepted) return code;
    }
}

// Reads name, "=" and value; name and value come to stand at the end of their buffers.
Code readAttribute(Parser *parser, QName *name, std::size_t *valueAt) {
    const Code code = XML_Parser_ReadQName(parser, &parser->tagNames, name);
    if (code != kAccepted) return code;
    XML_Parser_SkipBlanks(parser, Keep::kSnippet);
    if (peek(parser) != '=') return kEqualsExpected;
    skipAscii(parser, 1);
    XML_Parser_SkipBlanks(parser, Keep::kSnippet);
    const int quote = peek(parser);
    if (quote != '"' && quote != '\'') return kQuoteNotOpened;
    skipAscii(parser, 1);
    // Intended: without a buffer to begin with the message is another than when it cannot grow.
    if (!parser->scratch.allocated() && !parser->scratch.reserve(1)) return kInternalError;
    *valueAt = parser->scratch.size();
    return quote == '"' ? readValue<'"'>(parser) : readValue<'\''>(parser);
}

// Binds a prefix (null for the default namespace) to the value that has been read.
Code declareNamespace(Parser *parser, const char *prefix, const char *namespaceName) {
    if (XML_CheckNamespace(prefix, namespaceName) != XML_OK) return kBadNamespace;
    const std::size_t before = parser->open.back().bindings;
    const XML_Parser_Ns *same = parser->scope.find(prefix, prefix ? std::strlen(prefix) : 0);
    if (same && same->ordinal >= before) return kAttributeRedefined;
    if (!parser->scope.push(prefix, namespaceName)) return kNoMemory;
    parser->namespaces = parser->scope.newest();
    return kAccepted;
}

bool isNamed(const char *text, std::size_t length, const char *name) {
    return length == std::strlen(name) && std::memcmp(text, name, length) == 0;
}

// Reads one attribute and keeps it, or binds what it declares.
Code parseAttribute(Parser *parser) {
    QName name;
    std::size_t valueAt = 0;
    const Code code = readAttribute(parser, &name, &valueAt);
    if (code != kAccepted) return code;

    const char *names = parser->tagNames.data();
    const char *prefix = name.prefix(names);
    const char *local = name.local(names);
    const bool declaresPrefix = prefix && isNamed(prefix, name.prefixLength(), "xmlns");
    if (declaresPrefix || (!prefix && isNamed(local, name.localLength, "xmlns"))) {
        const char *value = parser->scratch.data() + valueAt;
        const Code declared = declareNamespace(parser, declaresPrefix ? local : nullptr, value);
        parser->tagNames.truncate(name.at);
        parser->scratch.truncate(valueAt);
        return declared;
    }
    XML_Parser_Attr *attribute = parser->tagAttributes.add();
    if (!attribute) return kNoMemory;
    const std::size_t valueLength = parser->scratch.size() - valueAt - 1;
    *attribute = {nullptr, nullptr, name, valueAt, valueLength};
    return kAccepted;
}

// Finds the bindings of prefixed attributes and lays out what the callback gets: five pointers for
// each attribute. The strings move no more.
[[gnu::noinline]] Code resolveAttributes(Parser *parser) {
    const std::size_t count = parser->tagAttributes.size();
    if (!parser->attributeArgs.reserve(count * 5)) return kNoMemory;
    const char *const names = parser->tagNames.data();
    const char *const values = parser->scratch.data();
    const char **args = parser->attributeArgs.data();
    XML_Parser_Attr *const attributes = parser->tagAttributes.data();
    for (std::size_t i = 0; i < count; ++i, args += 5) {
        XML_Parser_Attr &attribute = attributes[i];
        const QName name = attribute.name;
        attribute.next = i != 0 ? &attributes[i - 1] : nullptr;
        attribute.binding = nullptr;
        args[0] = name.local(names);
        args[1] = name.prefix(names);
        args[2] = nullptr;
        args[3] = values + attribute.valueAt;
        args[4] = args[3] + attribute.valueLength;
        if (args[1]) {
            attribute.binding = XML_Parser_LookupNamespace(parser, args[1], name.prefixLength());
            if (!attribute.binding) return kUnboundPrefix;
            args[2] = attribute.binding->namespaceName;
        }
    }
    parser->attributes = count != 0 ? &attributes[count - 1] : nullptr;
    return kAccepted;
}

bool isSameAttribute(Parser *parser, const XML_Parser_Attr &a, const XML_Parser_Attr &b) {
    const char *const names = parser->tagNames.data();
    return a.name.localLength == b.name.localLength &&
           std::memcmp(a.name.local(names), b.name.local(names), a.name.localLength) == 0 &&
           parser->scope.isSameName(a.binding, b.binding);
}

// One of 64, by the length and the ends of the local name: equal names have the same, others seldom.
unsigned nameClass(const char *names, const XML_Parser_Attr &attribute) {
    const char *local = attribute.name.local(names);
    const auto first = static_cast<unsigned char>(local[0]);
    const auto last = static_cast<unsigned char>(local[attribute.name.localLength - 1]);
    return (attribute.name.localLength * 7 + first * 5u + last) % 64;
}

Code findDuplicateInPairs(Parser *parser) {
    const XML_Parser_Attr *const attributes = parser->tagAttributes.data();
    std::uint64_t seen = 0;
    for (std::size_t i = 0; i < parser->tagAttributes.size(); ++i) {
        const std::uint64_t bit = std::uint64_t{1}
                                  << nameClass(parser->tagNames.data(), attributes[i]);
        for (std::size_t j = 0; (seen & bit) != 0 && j < i; ++j) {
            if (isSameAttribute(parser, attributes[i], attributes[j])) return kAttributeRedefined;
        }
        seen |= bit;
    }
    return kAccepted;
}

// Open addressing; a slot holds an attribute's number + 1. The same local name in n namespaces
// fills one run of slots only if the hash leaves the namespace out, so it takes part.
Code findDuplicateByTable(Parser *parser) {
    GrowingArray<XML_Parser_Attr> &attributes = parser->tagAttributes;
    GrowingArray<std::uint32_t> &table = parser->attributeTable;
    if (attributes.size() > UINT32_MAX / 4) return kNoMemory;
    const std::size_t size = std::bit_ceil(attributes.size() * 2);
    table.truncate(0);
    if (!table.reserve(size)) return kNoMemory;
    std::memset(table.data(), 0, size * sizeof(std::uint32_t));
    const char *const names = parser->tagNames.data();
    for (std::size_t i = 0; i < attributes.size(); ++i) {
        const XML_Parser_Attr &attribute = attributes[i];
        const char *local = attribute.name.local(names);
        std::uint64_t hash = parser->scope.hash()(local, attribute.name.localLength);
        hash = wrappingSum(hash, parser->scope.hashOfName(attribute.binding));
        std::size_t slot = hash & (size - 1);
        while (std::uint32_t taken = table.data()[slot]) {
            if (isSameAttribute(parser, attribute, attributes[taken - 1])) {
                return kAttributeRedefined;
            }
            slot = (slot + 1) & (size - 1);
        }
        table.data()[slot] = static_cast<std::uint32_t>(i + 1);
    }
    return kAccepted;
}

Code findDuplicate(Parser *parser) {
    if (parser->tagAttributes.size() < 2) return kAccepted;
    return parser->tagAttributes.size() <= kComparedInPairs ? findDuplicateInPairs(parser)
                                                            : findDuplicateByTable(parser);
}

// Prefix and namespace name of each binding that this tag made, in the order of the document.
bool fillDeclarationArgs(Parser *parser, std::size_t count) {
    GrowingArray<const char *> &args = parser->declarationArgs;
    args.truncate(0);
    if (!args.reserve(count * 2)) return false;
    const XML_Parser_Ns *binding = parser->scope.newest();
    const char **pair = args.data() + 2 * count;
    for (; pair != args.data(); binding = binding->next) {
        *--pair = binding->namespaceName;
        *--pair = binding->prefix;
    }
    return true;
}

Code reportStart(Parser *parser, const OpenElement &element, const char *local,
                 const char *prefix) {
    const XML_SAX_Handler *handler = parser->handler;
    if (!handler || !handler->startElementNs) return kAccepted;
    const std::size_t declarations = parser->scope.count() - element.bindings;
    const std::size_t attributes = parser->tagAttributes.size();
    if (declarations > INT_MAX || attributes > INT_MAX / 5) return kNoMemory;
    if (declarations != 0 && !fillDeclarationArgs(parser, declarations)) return kNoMemory;
    settlePosition(parser);
    handler->startElementNs(parser, local, prefix,
                            element.binding ? element.binding->namespaceName : nullptr,
                            static_cast<int>(declarations), parser->declarationArgs.data(),
                            static_cast<int>(attributes), 0, parser->attributeArgs.data());
    return parser->status;
}

bool atTagEnd(const Parser *parser) {
    return peek(parser) == '>' || follows(parser, "/>");
}

Code readAttributes(Parser *parser) {
    while (!atTagEnd(parser)) {
        if (!isBlankNext(parser)) return kSpaceExpected;
        XML_Parser_SkipBlanks(parser, Keep::kSnippet);
        if (atTagEnd(parser)) return kAccepted;
        if (atEnd(parser)) return kTagNotFinished;
        const Code code = parseAttribute(parser);
        if (code != kAccepted) return code;
    }
    return kAccepted;
}

}  // namespace

Code finishTag(Parser *parser) noexcept {
    Code code = kAccepted;
    if (!parser->tagAttributes.empty()) {
        code = resolveAttributes(parser);
        if (code == kAccepted) code = findDuplicate(parser);
        if (code != kAccepted) return code;
    }
    OpenElement &element = parser->open.back();
    const char *local = element.name.local(parser->openNames.data());
    const char *prefix = nullptr;
    if (element.name.localOffset != 0) {
        prefix = local - element.name.localOffset;
        element.binding = XML_Parser_LookupNamespace(parser, prefix, element.name.localOffset - 1);
        if (!element.binding) return kUnboundPrefix;
    } else {
        element.binding = parser->scope.findDefault();
    }
    code = reportStart(parser, element, local, prefix);
    parser->attributes = nullptr;
    return code;
}

Code parseStartTag(Parser *parser) noexcept {
    skipAscii(parser, 1);  // "<"
    if (atEnd(parser)) return kTagNotFinished;
    QName name;
    Code code = XML_Parser_ReadQName(parser, &parser->openNames, &name);
    if (code == kAccepted && !beginTag(parser, name, false)) code = kNoMemory;
    if (code == kAccepted) code = readAttributes(parser);
    return code == kAccepted ? finishTag(parser) : code;
}

}  // namespace cxml

using namespace cxml;

uint32_t XML_CheckNamespace(const char *prefix, const char *uri) noexcept {
    if (!uri) return XML_REFUSED;
    const bool hasPrefix = prefix && prefix[0] != '\0';
    const bool isXmlPrefix = XML_Strcmp(prefix, "xml") == 0;
    const bool isXmlName = std::strcmp(uri, kXmlNamespace) == 0;
    const bool valid = !(hasPrefix && uri[0] == '\0') && XML_Strcmp(prefix, "xmlns") != 0 &&
                       std::strcmp(uri, kXmlnsNamespace) != 0 && isXmlPrefix == isXmlName;
    return valid ? XML_OK : XML_REFUSED;
}
