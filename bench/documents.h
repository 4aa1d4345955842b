// documents.h - the documents that are measured: generated ones, and files of Debian's packages.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "encoding.h"

namespace bench {

struct Document {
    std::string label;  // "configuration/10M", "file/iso-codes": a kind and a size
    Encoding encoding = Encoding::utf8;
    bool chinese = false;  // made of Chinese text, wholly or now and then
    std::string bytes;

    std::string_view kind() const { return std::string_view(label).substr(0, label.find('/')); }
    bool isLarge() const { return bytes.size() >= 50000000; }  // some jobs leave it out
};

// A size as people write it: "4k", "1M". 0 for anything that is not a size.
std::size_t parseSize(std::string_view text);

// Makes or reads the document at the first call and keeps it. Null if there is no such document on
// this machine.
const Document *findDocument(const std::string &label);

// The usual documents, those below 100 kB, those by which one sees how the cost grows, and the one
// that takes long. Files that are not there are left out.
std::vector<std::string> usualDocuments();
std::vector<std::string> smallDocuments();
std::vector<std::string> growthDocuments();
std::vector<std::string> largeDocuments();

}  // namespace bench
