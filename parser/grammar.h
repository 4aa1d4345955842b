// parser/grammar.h - the productions of a document, each read from where it begins.
//
// Every function returns a code of messages.h, and 0 or the context's status after a callback.
#pragma once

#include <cstdint>

#include "parser/context.h"
#include "parser/messages.h"

namespace cxml {

// A callback's status ends the parse under any number, so results are wider than ErrorCode.
using Code = std::int32_t;

// markup.cpp: what may stand before, in and after the root element.
Code XML_Parser_ParseMisc(Parser *parser) noexcept;
Code XML_Parser_ParseComment(Parser *parser) noexcept;
Code XML_Parser_ParsePI(Parser *parser) noexcept;

// prolog.cpp: what stands before the root element alone.
Code sniffEncoding(Parser *parser) noexcept;
Code XML_Parser_ParseXmlDecl(Parser *parser) noexcept;
Code XML_Parser_SkipDoctype(Parser *parser) noexcept;

// content.cpp: one element with everything in it, the input standing at its "<".
Code XML_Parser_ParseElement(Parser *parser) noexcept;
// Ends the innermost open element: reports it and forgets its name and bindings.
Code endElement(Parser *parser) noexcept;

// plain_content.cpp: content as most of it is written, as far as it goes, in a fraction of the time.
// What stands at the read position then is for the functions above.
Code parsePlainContent(Parser *parser) noexcept;

// start_tag.cpp: a start tag up to but without its ">" or "/>", and startElementNs. The element is
// then the innermost open one.
Code parseStartTag(Parser *parser) noexcept;
// What is done with a start tag before its attributes are read and after: an element whose name is
// in openNames is opened (false for exhausted memory), and its attributes, which have been kept, are
// resolved and all is reported.
inline bool beginTag(Parser *parser, const QName &name, bool isPlain) noexcept {
    OpenElement *element = parser->open.add();
    if (!element) return false;
    *element = {name, isPlain, parser->scope.count(), nullptr};
    parser->tagAttributes.truncate(0);
    parser->tagNames.truncate(0);
    parser->scratch.truncate(0);
    return true;
}
Code finishTag(Parser *parser) noexcept;

}  // namespace cxml
