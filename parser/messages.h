// parser/messages.h - why a parse ends.
#pragma once

#include <cstdint>

namespace cxml {

// The numbers are part of the interface: callers see them as the context's status.
enum ErrorCode : std::int32_t {
    kAccepted = 0,
    kInternalError = 1,
    kNoMemory = 2,
    kDocumentEmpty = 4,
    kExtraContent = 5,
    kInvalidChar = 9,
    kReferenceNotClosed = 25,
    kUndeclaredEntity = 26,
    kUnsupported = 32,
    kQuoteNotOpened = 33,
    kQuoteNotClosed = 34,
    kBadNamespace = 35,
    kLessThanInValue = 38,
    kNoValue = 41,
    kAttributeRedefined = 42,
    kCommentNotClosed = 45,
    kNoTarget = 46,
    kInstructionNotClosed = 47,
    kDeclarationNotClosed = 57,
    kDoctypeNotClosed = 61,
    kCDataEndInText = 62,
    kCDataNotClosed = 63,
    kSpaceExpected = 65,
    kNameRequired = 68,
    kStartTagExpected = 72,
    kEqualsExpected = 75,
    kTagMismatch = 76,
    kTagNotFinished = 77,
    kBadStandalone = 78,
    kHyphensInComment = 80,
    kVersionMissing = 96,
    kBadVersion = 97,
    kUnboundPrefix = 201,
    kConversionFailed = 1500,
};

// The message of a code, also of one that a callback has made up.
const char *messageOf(std::int32_t code) noexcept;

}  // namespace cxml
