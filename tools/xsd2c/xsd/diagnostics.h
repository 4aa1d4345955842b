// tools/xsd2c/xsd/diagnostics.h - what is wrong with a schema, and what of it is not enforced.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <unordered_set>
#include <vector>

namespace xsd2c {

// Where a construct begins: the "<" of its start tag, or as near to what is wrong as is known.
struct Place {
    const std::string *file = nullptr;  // as named on the command line or found from there
    int line = 0;                       // from 1; 0 for the file as a whole
    int column = 0;                     // from 1, in characters
};

// "FILE:LINE:COLUMN", or "FILE" for a file as a whole.
std::string placeText(const Place &place);

// Collects what there is to say, so that all of a schema's mistakes are told and not the first
// alone, each of them once: a document that is included for two namespaces is read twice. Texts are
// UTF-8, without a full stop.
class Diagnostics {
  public:
    explicit Diagnostics(bool strict = false) : strict_(strict) {}

    // What makes the schema unusable.
    void error(const Place &place, const std::string &text);

    // What the compiled records cannot hold, such as "the default value of attribute 'mtu'":
    // "... is not enforced", as a warning, or as an error when that was asked for.
    void notEnforced(const Place &place, const std::string &what);

    bool failed() const noexcept { return errors_ != 0; }
    std::size_t errors() const noexcept { return errors_; }
    std::size_t warnings() const noexcept { return entries_.size() - errors_; }

    // "FILE:LINE:COLUMN: error: TEXT" and "FILE:LINE:COLUMN: warning: TEXT", a line each, in the
    // order of the files and of the places in them; "FILE: error: TEXT" without a line. Control
    // characters that a schema may have put there are made visible.
    std::string text() const;

  private:
    struct Entry {
        Place place;
        bool isError;
        std::string text;
    };
    void add(const Place &place, bool isError, std::string text);

    std::vector<Entry> entries_;
    std::unordered_set<std::string> told_;
    std::size_t errors_ = 0;
    bool strict_;
};

}  // namespace xsd2c
