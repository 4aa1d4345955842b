#include "fuzz/support/document.h"

#include "tests/support/reference_iconv.h"

namespace fuzz {
namespace {

constexpr std::size_t kLongDocument = std::size_t{70} << 10;

// One of 32 inputs is long; a character '0' stands for none.
std::string repeated(std::string_view text, unsigned how, unsigned where, unsigned length) {
    if ((how & 31) != 31 || text.empty()) return std::string(text);
    const std::size_t at = where * text.size() / 256;
    const std::string_view piece = text.substr(at, 1 + length);
    std::string result(text.substr(0, at));
    const std::size_t most = kLongDocument + how / 32 * 4096;
    while (result.size() < most) result += piece;
    return result += text.substr(at);
}

// The text, which should be UTF-8, in another encoding. What does not convert stays as it is.
std::string transcoded(std::string_view text, unsigned how) {
    const std::uint32_t encoding = how % 32;
    const char *name = support::encodingName(encoding);
    if (!name) return std::string(text);
    std::string document;
    if (how & 0x80) document = "<?xml version='1.0' encoding='" + std::string(name) + "'?>";
    document += text;
    const support::Conversion converted =
        support::convertWhole(XML_ENCODING_UTF_8, encoding, document);
    return converted.bytes + document.substr(converted.consumed);
}

}  // namespace

Document::Document(FuzzInput &input) {
    const unsigned encoding = input.byte();
    const unsigned how = input.byte(), where = input.byte(), length = input.byte();
    cuts_ = input.text(4);
    bytes_ = transcoded(repeated(input.rest(), how, where, length), encoding);
}

support::Feed Document::cut() const {
    std::vector<std::string_view> pieces;
    std::string_view rest = bytes_;
    const std::size_t unit = isLong() ? 67 : 1;
    std::size_t emptyOnes = 0;
    for (std::size_t i = 0; !rest.empty(); ++i) {
        std::size_t length =
            cuts_.empty() ? 0 : static_cast<unsigned char>(cuts_[i % cuts_.size()]);
        length *= unit;
        // A chunk may be empty, but not all of them.
        if (length == 0 && ++emptyOnes % 4 == 0) length = 300 * unit;
        pieces.push_back(rest.substr(0, length));
        rest.remove_prefix(pieces.back().size());
    }
    return support::makeList("cut list", pieces);
}

support::Feed Document::finelyCut() const {
    return support::listInPieces(bytes_, isLong() ? 61 : 1);
}

}  // namespace fuzz
