// validator.h - one way of validating documents, which is measured.
#pragma once

#include <string>
#include <string_view>

namespace bench {

// Null where a library does not offer it. Schemas are compiled before the first of these calls.
struct Validator {
    const char *name;
    const char *version;
    void (*prepare)(const std::string &schemaFile);
    void *(*build)(std::string_view document);  // a tree, or null
    bool (*validate)(void *tree);               // whether it is valid
    void (*destroy)(void *tree);
    // Reads and validates a document in the way that the library does best; whether it is valid.
    bool (*readAndValidate)(std::string_view document);
};

extern const Validator kCompactXmlValidator;
#ifdef BENCH_HAS_LIBXML2
extern const Validator kLibxml2Validator;
#endif
#ifdef BENCH_HAS_XERCES
extern const Validator kXercesValidator;
#endif

}  // namespace bench
