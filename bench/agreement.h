// agreement.h - no time is printed for contestants that do not read the same document.
#pragma once

#include "documents.h"
#include "tally.h"

namespace bench {

// Runs each job of each contestant that takes the document once on it: what the parses call back
// with, what the trees hold, and what the parses find in each serialized tree. All must be equal in
// the number of elements and attributes, in the bytes of text that are not white space, and in the
// digest of local names, attribute values and text. What is serialized of a large document is read
// again by this library alone.
//
// Returns what they agree on; null if they do not, and says who differs. A document that was
// checked before is not checked again.
const Tally *agreement(const Document &document);

// From now on only this library and one contestant must agree, for a program that does one job of
// that contestant and counts its instructions.
void agreeOnlyWith(std::string_view contestant);

}  // namespace bench
