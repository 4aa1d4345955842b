// agreement.h - no time is printed for contestants that do not read the same document.
#pragma once

#include "documents.h"
#include "tally.h"

namespace bench {

// Runs each job of each contestant once on the document: what the parses call back with, what the
// trees hold, and what every parse finds in every serialized tree. All must be equal in the number
// of elements and attributes, in the bytes of text that are not white space, and in the digest of
// local names, attribute values and text.
//
// Returns what they agree on. If they do not, says who differs and ends the program. A document
// that was checked before is not checked again.
const Tally &requireAgreement(const Document &document);

}  // namespace bench
