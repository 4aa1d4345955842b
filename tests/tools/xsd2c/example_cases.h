// tests/tools/xsd2c/example_cases.h - documents that are made from a base document by small edits,
// with what validators say of them. examples/schemas/README.md describes the notation.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace examples {

// One change of a document's text: "set PATH = VALUE" and the like.
struct Edit {
    std::string verb;
    std::string path;
    std::string value;
};

struct Case {
    std::string file;  // in which it stands
    int line = 0;
    int alternative = 0;  // from 1, where a line stands for several cases; 0 where it does not
    std::string schema;   // paths of files
    std::string base;
    std::string what;
    bool valid = false;                // by CompactXML
    bool validByXmlSchema = false;     // by XML Schema 1.0
    bool validByXmllint = false;       // by the xmllint of libxml2
    std::vector<std::string> reasons;  // why they are not all the same
    std::vector<Edit> edits;           // none: the base document itself
};

// The cases of a file, each base document first. Throws std::runtime_error, with the place in the
// file, for what does not follow the notation.
std::vector<Case> readCases(const std::string &path);

// The document (UTF-8) that a case speaks of. Throws std::runtime_error for an edit that cannot be
// made, and for one that changes nothing.
std::string documentOf(const Case &one);

// Makes one edit; what documentOf does for each.
std::string edited(std::string_view document, const Edit &edit);

}  // namespace examples
