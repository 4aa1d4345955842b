// encoding.h - the encodings of the documents, and converting between them.
#pragma once

#include <string>
#include <string_view>

namespace bench {

enum class Encoding : unsigned { utf8 = 1, utf16le = 2, gb18030 = 4 };  // bits of a set

// The name that iconv and XML declarations know it by.
const char *encodingName(Encoding encoding);

// The whole text through iconv in one call. Text that does not convert comes out as a question
// mark, on which no other contestant agrees.
std::string converted(std::string_view text, Encoding from, Encoding to);

// The same for UTF-16 in the order of this machine, as some libraries hand it out.
std::string utf8Of(const char16_t *text, std::size_t length);

}  // namespace bench
