#include "parser/grammar.h"
#include "parser/lexer.h"

namespace cxml {
namespace {

// Copies what lies between the mark and length bytes on into the scratch buffer, with a NUL.
bool copyFromMark(Parser *parser, std::size_t length) {
    const auto *bytes = reinterpret_cast<const char *>(parser->input->mark);
    return parser->scratch.append(bytes, length) && parser->scratch.append('\0');
}

std::size_t lengthFromMark(const Parser *parser) {
    return static_cast<std::size_t>(parser->input->cur - parser->input->mark);
}

Code reportInstruction(Parser *parser, const char *target, const char *data) {
    if (parser->handler && parser->handler->processingInstruction) {
        settlePosition(parser);
        parser->handler->processingInstruction(parser, target, data);
    }
    return parser->status;
}

// Reads up to "?>", which follows at the end.
Code passInstructionData(Parser *parser) {
    for (;;) {
        const Code code = takeUntil<'?'>(parser, Keep::kMark, nullptr);
        if (code != kAccepted) return code;
        if (follows(parser, "?>")) return kAccepted;
        if (atEnd(parser)) return kInstructionNotClosed;
        skipAscii(parser, 1, Keep::kMark);
    }
}

}  // namespace

Code XML_Parser_ParseMisc(Parser *parser) noexcept {
    for (;;) {
        XML_Parser_SkipBlanks(parser, Keep::kNothing);
        Code code = kAccepted;
        if (follows(parser, "<!--")) {
            code = XML_Parser_ParseComment(parser);
        } else if (follows(parser, "<?")) {
            code = XML_Parser_ParsePI(parser);
        } else {
            return kAccepted;
        }
        if (code != kAccepted) return code;
    }
}

Code XML_Parser_ParseComment(Parser *parser) noexcept {
    skipAscii(parser, 4);
    parser->input->mark = parser->input->cur;
    for (;;) {
        const Code code = takeUntil<'-'>(parser, Keep::kMark, nullptr);
        if (code != kAccepted) return code;
        if (follows(parser, "-->")) break;
        if (atEnd(parser)) return kCommentNotClosed;
        if (follows(parser, "--")) return kHyphensInComment;
        skipAscii(parser, 1, Keep::kMark);
    }
    const std::size_t length = lengthFromMark(parser);
    skipAscii(parser, 3, Keep::kMark);
    if (!parser->handler || !parser->handler->comment) return kAccepted;
    parser->scratch.truncate(0);
    if (!copyFromMark(parser, length)) return kNoMemory;
    settlePosition(parser);
    parser->handler->comment(parser, parser->scratch.data());
    return parser->status;
}

Code XML_Parser_ParsePI(Parser *parser) noexcept {
    skipAscii(parser, 2);
    if (atEnd(parser)) return kNoTarget;
    parser->scratch.truncate(0);
    Code code = XML_Parser_ReadName(parser, &parser->scratch);
    if (code != kAccepted) return code;
    if (std::strcmp(parser->scratch.data(), "xml") == 0) return kNoTarget;

    if (follows(parser, "?>")) {
        code = reportInstruction(parser, parser->scratch.data(), nullptr);
    } else {
        if (!isBlankNext(parser)) return kSpaceExpected;
        XML_Parser_SkipBlanks(parser, Keep::kNothing);
        code = passInstructionData(parser);
        if (code != kAccepted) return code;
        const std::size_t dataAt = parser->scratch.size();
        if (!copyFromMark(parser, lengthFromMark(parser))) return kNoMemory;
        code = reportInstruction(parser, parser->scratch.data(), parser->scratch.data() + dataAt);
    }
    skipAscii(parser, 2);  // also after a callback that failed: the report points behind it
    return code;
}

}  // namespace cxml
