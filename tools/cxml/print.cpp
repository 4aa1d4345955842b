#include "commands.h"
#include "compactxml.h"
#include "document.h"
#include "failure.h"
#include "output.h"
#include "text.h"
#include "writer.h"

namespace tool {
namespace {

std::uint32_t readEncoding(const std::string &name) {
    const std::uint32_t encoding = XML_DOM_EncodingStrToEnum(name.c_str());
    if (encoding != XML_ENCODING_UNKNOWN) return encoding;
    std::string known;
    for (std::uint32_t i = 0; i < XML_ENCODING_UNKNOWN; ++i) {
        known += (i == 0 ? "" : ", ") + std::string(XML_DOM_EncodingEnumToStr(i));
    }
    throw Failure(kTrouble, "unknown encoding '" + name + "'; there are " + known);
}

}  // namespace

int runPrint(const PrintOptions &options) {
    const std::uint32_t encoding =
        options.encoding.empty() ? XML_ENCODING_UNKNOWN : readEncoding(options.encoding);
    const Tree tree = loadDocument(options.file, kRefused);
    if (encoding != XML_ENCODING_UNKNOWN) XML_DOM_SetEncoding(tree.get(), encoding);
    WriteStyle style;
    style.indent = options.indent.value_or(WriteStyle::kCompact);
    style.declaration = !options.noDeclaration;
    Output output{options.output};
    const std::string name = options.file == "-" ? "standard input" : options.file;
    writeTree(tree.get(), style, name, output);
    output.commit();
    return kSuccess;
}

}  // namespace tool
