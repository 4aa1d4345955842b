// validator.h - one way of validating documents by one schema, which is measured.
#pragma once

#include <memory>
#include <string_view>

#include "schema.h"

namespace bench {

// The schema is ready for use, and so is all that a program would keep between two documents.
class Validator {
  public:
    Validator() = default;
    Validator(const Validator &) = delete;
    Validator &operator=(const Validator &) = delete;
    virtual ~Validator() = default;

    // Reads a document, validates it and gives up what was made of it; whether it is valid.
    virtual bool readAndValidate(std::string_view document) = 0;

    // Only where a tree can be validated that is there already: makes the one that the next
    // function looks at; false on failure.
    virtual bool keepTree(std::string_view) { return false; }
    virtual bool validateTree() { return false; }
};

struct ValidatorKind {
    const char *reader;  // its name where it begins with the text
    const char *tree;    // its name where a tree is there; null if it has none
    // Null if the library does not take the schema.
    std::unique_ptr<Validator> (*make)(const Schema &schema);
};

extern const ValidatorKind kCompactXmlValidator;
#ifdef BENCH_HAS_LIBXML2
extern const ValidatorKind kLibxml2DomValidator, kLibxml2StreamValidator;
#endif
#ifdef BENCH_HAS_XERCES
extern const ValidatorKind kXercesSax2Validator, kXercesDomValidator;
#endif

inline constexpr const ValidatorKind *kValidatorKinds[] = {
    &kCompactXmlValidator,
#ifdef BENCH_HAS_LIBXML2
    &kLibxml2DomValidator, &kLibxml2StreamValidator,
#endif
#ifdef BENCH_HAS_XERCES
    &kXercesSax2Validator, &kXercesDomValidator,
#endif
};

}  // namespace bench
