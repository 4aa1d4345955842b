// generate.h - documents made by rule, so that every machine measures the same bytes.
#pragma once

#include <cstddef>
#include <string>

namespace bench {

// rpc                 a NETCONF request: nested elements, namespaces, short values
// configuration       interfaces, VLANs, routes and access lists of a switch: indented, namespaces
//                     declared at the root, prefixed names, a few attributes, short texts,
//                     references
// mixedConfiguration  the same with a description in Chinese now and then
// chinese             the same with all names and descriptions in Chinese
// text                long paragraphs with a reference now and then, hardly any markup
// attributes          empty elements with a dozen attributes each
enum class Kind { rpc, configuration, mixedConfiguration, chinese, text, attributes };

// In UTF-8, about size bytes. The same kind and size give the same bytes each time and everywhere.
std::string generate(Kind kind, std::size_t size);

}  // namespace bench
