// tools/cxml/writer.h - writes a tree as text.
#pragma once

#include <string>

#include "compactxml.h"
#include "output.h"

namespace tool {

struct WriteStyle {
    static constexpr int kCompact = -1;
    int indent = kCompact;  // blanks for each level, or kCompact for no line breaks at all
    bool declaration = true;
};

// Writes a node and all below it in the encoding of its document; after the XML declaration if it
// is a root and the style has one. With indentation each element begins a line, but elements with
// text (and all in them) stay on one line, so that the text is read back as it was.
//
// Compact text is that of XML_DOM_OutPutTranslateStr. Where that would not be read back as it was,
// that is for attribute values with quotation marks, the same text is written with those escaped.
// Fails with kRefused and "NAME: ENCODING has no character for ... in PATH" when a text does not
// convert.
void writeTree(const XML_DOM_Node *node, const WriteStyle &style, const std::string &name,
               Output &output);

}  // namespace tool
