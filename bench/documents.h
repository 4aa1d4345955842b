// documents.h - the documents that are measured, made by rule so that every machine has the same.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace bench {

// configuration  interfaces, VLANs, routes and access lists of a switch: indented, namespaces
//                declared at the root, prefixed names, a few attributes, short texts, references
// text           long paragraphs with a reference now and then, hardly any markup
// attributes     empty elements with a dozen attributes each
// chinese        the configuration with names and descriptions in Chinese, in UTF-8
enum class Kind { configuration, text, attributes, chinese };

inline constexpr Kind kKinds[] = {Kind::configuration, Kind::text, Kind::attributes, Kind::chinese};

struct Document {
    Kind kind;
    std::size_t size;   // what was asked for
    std::string label;  // such as "configuration/10M"
    std::string bytes;  // the document, at least size bytes and hardly more
};

std::string_view kindName(Kind kind);

// A size as people write it: "4k", "1M". parseSize gives 0 for anything that is not a size.
std::string sizeName(std::size_t size);
std::size_t parseSize(std::string_view text);

// The same kind and size give the same bytes each time and everywhere.
std::string makeDocument(Kind kind, std::size_t size);

// Makes the document at the first call and keeps it.
const Document &document(Kind kind, std::size_t size);

}  // namespace bench
