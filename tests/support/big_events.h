// tests/support/big_events.h - what a parse of a huge document tells, without keeping any of it.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>

#include "compactxml.h"

namespace support {

// Counts callbacks, and measures the longest string of all that they get.
class BigEvents {
  public:
    BigEvents() {
        handler_.userData = this;
        handler_.characters = [](XML_Parser_Ctx *context, const char *text, int length) {
            take(context, text, static_cast<std::uint64_t>(length));
        };
        handler_.cdataBlock = [](XML_Parser_Ctx *context, const char *text, int length) {
            take(context, text, static_cast<std::uint64_t>(length));
        };
        handler_.comment = [](XML_Parser_Ctx *context, const char *text) {
            take(context, text, std::strlen(text));
        };
        handler_.processingInstruction = [](XML_Parser_Ctx *context, const char *,
                                            const char *data) {
            take(context, data, std::strlen(data));
        };
        handler_.startElementNs = [](XML_Parser_Ctx *context, const char *localName, const char *,
                                     const char *, int, const char **, int attributeCount, int,
                                     const char **attributes) {
            ++of(context).elements;
            take(context, localName, std::strlen(localName));
            for (int i = 0; i < attributeCount; ++i, attributes += 5) {
                take(context, attributes[0], std::strlen(attributes[0]));
                take(context, attributes[3],
                     static_cast<std::uint64_t>(attributes[4] - attributes[3]));
            }
        };
        handler_.endElementNs = [](XML_Parser_Ctx *context, const char *localName, const char *,
                                   const char *) {
            take(context, localName, std::strlen(localName));
        };
        handler_.error = report;
    }
    BigEvents(const BigEvents &) = delete;
    BigEvents &operator=(const BigEvents &) = delete;

    XML_SAX_Handler *handler() { return &handler_; }

    std::uint64_t calls = 0;
    std::uint64_t elements = 0;
    std::uint64_t longest = 0;  // bytes of a string
    bool sound = true;          // the ends of each were what the document has there
    std::int32_t code = 0;      // of the error
    std::int32_t line = 0;
    std::int32_t column = 0;

  private:
    static BigEvents &of(XML_Parser_Ctx *context) {
        return *static_cast<BigEvents *>(context->handler->userData);
    }
    static void report(XML_Parser_Ctx *context, const char *, ...) {
        BigEvents &events = of(context);
        events.code = context->status;
        events.line = context->line;
        events.column = context->column;
    }
    static void take(XML_Parser_Ctx *context, const char *text, std::uint64_t length) {
        BigEvents &events = of(context);
        ++events.calls;
        if (length > events.longest) events.longest = length;
        if (length > 1000) {
            events.sound = events.sound && text[0] == 'a' && text[length / 2] == 'a' &&
                           text[length - 1] == 'a';
        }
    }

    XML_SAX_Handler handler_{};
};

}  // namespace support
