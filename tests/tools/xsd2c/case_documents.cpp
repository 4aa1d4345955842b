// Writes the documents of cases, to be validated by programs.
//
//   case_documents DIRECTORY CASES...
//
// Prints a line for each, with tabulators between: the verdicts of CompactXML, of XML Schema and of
// xmllint ("valid" or "invalid"), the schema, the document, and the place and words of the case.
// Ends with 1 when a file of cases is not as it should be, a document not well-formed included.
#include <cstdint>
#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>

#include "compactxml.h"
#include "example_cases.h"

namespace {

const char *word(bool valid) {
    return valid ? "valid" : "invalid";
}

// "switch-17.xml", "switch-17-2.xml".
std::string fileName(const examples::Case &one) {
    const std::size_t begin = one.file.rfind('/') + 1;  // npos + 1 is 0
    std::string name = one.file.substr(begin, one.file.rfind('.') - begin);
    name += "-" + std::to_string(one.line);
    if (one.alternative != 0) name += "-" + std::to_string(one.alternative);
    return name + ".xml";
}

void write(const examples::Case &one, const std::string &directory) {
    const std::string place = one.file + ":" + std::to_string(one.line);
    const std::string document = examples::documentOf(one);
    const auto length = static_cast<std::uint32_t>(document.size());
    if (XML_Parser_ByMem(document.data(), length, nullptr) != XML_OK) {
        throw std::runtime_error(place + ": '" + one.what + "' is not well-formed");
    }
    const std::string path = directory + "/" + fileName(one);
    std::ofstream file(path, std::ios::binary);
    file << document;
    if (!file.flush()) throw std::runtime_error(path + ": cannot be written");
    std::printf("%s\t%s\t%s\t%s\t%s\t%s: %s\n", word(one.valid), word(one.validByXmlSchema),
                word(one.validByXmllint), one.schema.c_str(), path.c_str(), place.c_str(),
                one.what.c_str());
}

}  // namespace

int main(int argc, char **argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: case_documents DIRECTORY CASES...\n");
        return 2;
    }
    int status = 0;
    for (int i = 2; i < argc; ++i) {
        try {
            for (const examples::Case &one : examples::readCases(argv[i])) {
                try {
                    write(one, argv[1]);
                } catch (const std::exception &error) {
                    std::fprintf(stderr, "%s\n", error.what());
                    status = 1;
                }
            }
        } catch (const std::exception &error) {
            std::fprintf(stderr, "%s\n", error.what());
            status = 1;
        }
    }
    return std::fflush(stdout) == 0 ? status : 1;
}
