// parser/name_check.h - whether a text is a name.
#pragma once

namespace cxml {

// kUnknown: there was no memory for the converter that tells of names beyond ASCII.
enum class NameCheck { kName, kNoName, kUnknown };

// As XML_CheckQName; the name is not null.
NameCheck checkName(const char *name) noexcept;

}  // namespace cxml
