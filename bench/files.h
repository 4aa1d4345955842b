// files.h - real documents, out of Debian's packages.
#pragma once

#include <string>
#include <vector>

namespace bench {

// The names, such as "iso-codes", of those that are installed.
std::vector<std::string> packagedFiles();

// Reads one of them and prepares it as below; empty if it is not there.
std::string readPackagedFile(const std::string &name);

// A document without its document type declaration (XML 1.0, 2.8). Contestants differ in what they
// do with one: some add the default attributes it declares, some do not read it to its end.
std::string withoutDoctype(std::string document);

// A document with an apostrophe for each reference to a quotation mark. This library writes
// quotation marks in attribute values as they are (compactxml.h), so that what it writes could not
// be read again.
std::string withoutQuotes(std::string document);

}  // namespace bench
