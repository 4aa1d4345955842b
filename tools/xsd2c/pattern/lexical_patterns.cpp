#include <string>
#include <string_view>

#include "xsd2c/pattern/char_classes.h"
#include "xsd2c/pattern/ere.h"
#include "xsd2c/pattern/gb18030_classes.h"
#include "xsd2c/pattern/pattern.h"

namespace xsd2c {
namespace {

Ere anyNumberOf(const Ere &item) {
    return repeat(item, 0, std::nullopt);
}
Ere someOf(const Ere &item) {
    return repeat(item, 1, std::nullopt);
}

Ere whiteSpace() {
    return ereOfChars(whiteSpaceChars(), true);
}

Ere nameToken() {
    static const Ere ere = someOf(ereOfChars(nameChars(), false));
    return ere;
}

Ere name() {
    return ereOfChars(nameStartChars(), false) + anyNumberOf(ereOfChars(nameChars(), false));
}

Ere nameWithoutColon() {
    const CharSet colon = {{':', ':'}};
    static const Ere ere = ereOfChars(nameStartChars().minus(colon), false) +
                           anyNumberOf(ereOfChars(nameChars().minus(colon), false));
    return ere;
}

Ere qualifiedName() {
    return optional(nameWithoutColon() + Ere::literal(":")) + nameWithoutColon();
}

// One item or more.
Ere listOf(const Ere &item) {
    return anyNumberOf(whiteSpace()) + item + anyNumberOf(someOf(whiteSpace()) + item) +
           anyNumberOf(whiteSpace());
}

Ere sign() {
    return optional(ereOfChars({{'+', '+'}, {'-', '-'}}, true));
}

Ere decimal() {
    const Ere digits = someOf(Ere::digits('0', '9'));
    const Ere point = Ere::literal(".");
    return sign() + alternatives({digits + optional(point + anyNumberOf(Ere::digits('0', '9'))),
                                  point + digits});
}

Ere floatingPoint() {
    const Ere exponent =
        ereOfChars({{'E', 'E'}, {'e', 'e'}}, true) + sign() + someOf(Ere::digits('0', '9'));
    return alternatives({decimal() + optional(exponent),
                         optional(Ere::literal("-")) + Ere::literal("INF"), Ere::literal("NaN")});
}

// Bytes of characters above U+007F are no white space, so that bytes do here for characters.
Ere bytesBut(const char *ascii) {
    ByteSet bytes;
    bytes.set();
    bytes.reset(0);
    for (; *ascii != '\0'; ++ascii) bytes.reset(static_cast<unsigned char>(*ascii));
    return Ere::oneOf(bytes);
}

Ere token() {
    const Ere word = someOf(bytesBut(" \t\n\r"));
    return optional(word + anyNumberOf(Ere::literal(" ") + word));
}

}  // namespace

std::string lexicalPattern(std::string_view builtin) {
    if (builtin == "decimal") return decimal().text();
    if (builtin == "float" || builtin == "double") return floatingPoint().text();
    if (builtin == "normalizedString") return anyNumberOf(bytesBut("\t\n\r")).text();
    if (builtin == "token") return token().text();
    if (builtin == "NMTOKEN") return nameToken().text();
    if (builtin == "NMTOKENS") return listOf(nameToken()).text();
    if (builtin == "Name") return name().text();
    if (builtin == "NOTATION") return qualifiedName().text();
    if (builtin == "NCName" || builtin == "ID" || builtin == "IDREF" || builtin == "ENTITY") {
        return nameWithoutColon().text();
    }
    if (builtin == "IDREFS" || builtin == "ENTITIES") return listOf(nameWithoutColon()).text();
    return {};
}

}  // namespace xsd2c
