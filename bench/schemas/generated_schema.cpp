#include "generated_schema.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace bench {
namespace {

// Types with an attribute and two elements each, and an element for every type: groups of five.
// What remains are elements of a built-in type.
std::string schemaText(int declarations) {
    std::string text =
        "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\" targetNamespace=\"urn:many\" "
        "xmlns=\"urn:many\" elementFormDefault=\"qualified\">\n";
    int i = 0;
    for (; i + 5 <= declarations; i += 5) {
        const std::string number = std::to_string(i);
        text +=
            "<xs:complexType name=\"t" + number + "\"><xs:sequence><xs:element name=\"a" + number +
            "\" type=\"xs:unsignedShort\"/><xs:element name=\"b" + number +
            "\" type=\"xs:string\" minOccurs=\"0\"/></xs:sequence><xs:attribute name=\"id\" "
            "type=\"xs:unsignedInt\" use=\"required\"/></xs:complexType>\n<xs:element name=\"e" +
            number + "\" type=\"t" + number + "\"/>\n";
    }
    for (; i < declarations; ++i) {
        text += "<xs:element name=\"e" + std::to_string(i) + "\" type=\"xs:string\"/>\n";
    }
    return text + "</xs:schema>\n";
}

bool writeAndClose(int file, std::string_view text) {
    std::size_t written = 0;
    while (written < text.size()) {
        const ssize_t step = write(file, text.data() + written, text.size() - written);
        if (step <= 0) break;
        written += static_cast<std::size_t>(step);
    }
    return close(file) == 0 && written == text.size();
}

std::string nameTemplate() {
    const char *directory = std::getenv("TMPDIR");
    return std::string(directory ? directory : "/tmp") + "/compactxml-bench-" +
           std::string(6, 'X') + ".xsd";
}

}  // namespace

GeneratedSchema::GeneratedSchema(int declarations) : file_(nameTemplate()) {
    const int file = mkstemps(file_.data(), sizeof ".xsd" - 1);
    ready_ = file >= 0 && writeAndClose(file, schemaText(declarations));
    if (!ready_) std::perror(file_.c_str());
}

GeneratedSchema::~GeneratedSchema() {
    unlink(file_.c_str());
}

}  // namespace bench
