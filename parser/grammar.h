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

// start_tag.cpp: a start tag up to but without its ">" or "/>", and startElementNs. The element is
// then the innermost open one.
Code parseStartTag(Parser *parser) noexcept;

}  // namespace cxml
