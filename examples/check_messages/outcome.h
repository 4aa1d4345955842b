// outcome.h - what the library says of a document: when it is parsed, built into a tree, or validated.
#pragma once
#include <compactxml.h>

#include <functional>
#include <string>

namespace messages {

// The report of a parse.
struct Report {
    int reports = 0, code = 0, line = 0, column = 0;
    std::string message;
    int statusToSet = 0;  // what the callback at the start of the document is to store
};
Report parse(const std::string &document, int statusToSet = 0);

// The text in the error buffer of a build that fails; empty if it does not.
std::string buildError(const std::string &document);

// The verdict of the validator.
struct Verdict {
    bool readable = false;
    std::uint32_t code = 0;
    std::string message;
    std::string reason;  // what the check of a value said
    std::string place;   // the path of the element, and which child or attribute it is about
};

// examples/schemas/messages.xsd, registered for as long as it lives.
class Schemas {
  public:
    Schemas();
    Schemas(const Schemas &) = delete;
    Schemas &operator=(const Schemas &) = delete;
    ~Schemas();

    Verdict validate(const std::string &document) const;

  private:
    SchemaRoot root_;
};

// Whether nothing can be cut out of a document without losing what makes it worth showing.
bool isShortest(const std::string &document, const std::function<bool(const std::string &)> &shows);

}  // namespace messages
