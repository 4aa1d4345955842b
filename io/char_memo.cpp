#include "io/char_memo.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "compactxml.h"
#include "io/byte_scan.h"
#include "io/wrapping.h"

namespace cxml {

// One entry for each of so many groups of characters: the one that was met last. A character is
// its bytes, the first one highest; 0 is none.
struct CharTable {
    static constexpr unsigned kBits = 12;

    struct Entry {
        std::uint32_t character;
        Byte converted[4];
    };
    Entry entries[std::size_t{1} << kBits];
    std::int32_t strangers;  // that were met lately, weighed against those known

    Entry &entryOf(std::uint32_t character) {
        return entries[wrappingProduct(character, 0x9E3779B1u) >> (32 - kBits)];
    }
};

constinit const std::size_t kCharTableBytes = sizeof(CharTable);

namespace {

// A table is of no use where most characters are strangers: then the converter gets as many bytes as
// in the beginning before it is tried again.
constexpr std::int32_t kStrangerWeighs = 8;
constexpr std::int32_t kTooManyStrangers = 1024;

// Each source tells how many bytes the character at p takes, 0 if it is not whole or is for the
// converter to judge, and passes over ASCII.

void pass(ConvertSpan *span, std::size_t input, std::size_t output) {
    span->input += input;
    span->inputLeft -= input;
    span->output += output;
    span->outputLeft -= output;
}

struct AsciiCompatible {
    static constexpr std::size_t kUnit = 1;
    static bool isAscii(const Byte *p) { return *p < 0x80; }
    static void copyAscii(ConvertSpan *span) {
        const std::size_t most = std::min(span->inputLeft, span->outputLeft);
        const auto *p = reinterpret_cast<const Byte *>(span->input);
        const auto length = static_cast<std::size_t>(scanForNear<NotAscii>(p, p + most) - p);
        std::memcpy(span->output, span->input, length);
        pass(span, length, length);
    }
};

struct Utf8 : AsciiCompatible {
    static std::size_t length(const Byte *p, std::size_t left) {
        std::size_t length = 0;
        if (*p >= 0xC2) length = *p < 0xE0 ? 2 : *p < 0xF0 ? 3 : *p < 0xF5 ? 4 : 0;
        return length <= left ? length : 0;
    }
};

// Two bytes each; GB2312 has some of these characters.
struct Gbk : AsciiCompatible {
    static std::size_t length(const Byte *p, std::size_t left) {
        return *p < 0x81 || *p > 0xFE || left < 2 ? 0 : 2;
    }
};

struct Gb18030 : AsciiCompatible {
    static std::size_t length(const Byte *p, std::size_t left) {
        if (Gbk::length(p, left) == 0) return 0;
        const std::size_t length = p[1] >= '0' && p[1] <= '9' ? 4 : 2;
        return length <= left ? length : 0;
    }
};

template <bool kBigEndian>
struct Utf16 {
    static constexpr std::size_t kUnit = 2;
    static unsigned unit(const Byte *p) {
        return static_cast<unsigned>(kBigEndian ? p[0] << 8 | p[1] : p[1] << 8 | p[0]);
    }
    static bool isAscii(const Byte *p) { return unit(p) < 0x80; }
    static void copyAscii(ConvertSpan *span) {
        const std::size_t most = std::min(span->inputLeft / kUnit, span->outputLeft);
        const auto *p = reinterpret_cast<const Byte *>(span->input);
        std::size_t length = 0;
        for (; length < most && isAscii(p + kUnit * length); ++length) {
            span->output[length] = static_cast<char>(unit(p + kUnit * length));
        }
        pass(span, kUnit * length, length);
    }
    static std::size_t length(const Byte *p, std::size_t left) {
        if (unit(p) < 0xD800 || unit(p) > 0xDFFF) return 2;
        const bool isPair = left >= 4 && unit(p) < 0xDC00 && (unit(p + 2) & 0xFC00) == 0xDC00;
        return isPair ? 4 : 0;
    }
};

std::uint32_t characterAt(const Byte *p, std::size_t length) {
    std::uint32_t character = 0;
    for (std::size_t i = 0; i < length; ++i) character = character << 8 | p[i];
    return character;
}

// Has one character converted. False if what comes out is not one character.
template <class Target>
bool learn(void *converter, const Byte *p, std::size_t length, CharTable::Entry *entry) {
    char converted[sizeof entry->converted];
    ConvertSpan span{reinterpret_cast<const char *>(p), length, converted, sizeof converted};
    if (convert(converter, &span) != ConvertResult::kDone) return false;
    const std::size_t size = sizeof converted - span.outputLeft;
    const auto *bytes = reinterpret_cast<const Byte *>(converted);
    if (size == 0 || Target::length(bytes, size) != size) return false;
    entry->character = characterAt(p, length);
    std::memcpy(entry->converted, converted, size);
    return true;
}

// More than any character, and whole units of any encoding.
constexpr std::size_t kConverterStep = 64;

// Whether a conversion ended because its input did.
bool wantsMore(ConvertResult result) {
    return result == ConvertResult::kDone || result == ConvertResult::kInputIncomplete;
}

// The converter gets little at a time: some convert far ahead and do it all again when the output is
// full.
ConvertResult convertInWindows(void *converter, ConvertSpan *span) {
    for (;;) {
        const std::size_t window =
            std::max(span->outputLeft / 2 / kConverterStep * kConverterStep, kConverterStep);
        const std::size_t before = span->inputLeft;
        const std::size_t kept = before > window ? before - window : 0;
        span->inputLeft -= kept;
        const ConvertResult result = convert(converter, span);
        span->inputLeft += kept;
        // No character fills a window: a converter that waits for more of it would wait for ever.
        if (kept == 0 || span->inputLeft == before || !wantsMore(result)) return result;
    }
}

// Stops at the end, where the output is full, and at what is not in the table and cannot be.
template <class Source, class Target>
ConvertResult convertKnown(CharTable *table, void *converter, ConvertSpan *span) {
    while (span->inputLeft >= Source::kUnit) {
        const auto *p = reinterpret_cast<const Byte *>(span->input);
        if (Source::isAscii(p)) {
            if (span->outputLeft == 0) return ConvertResult::kOutputFull;
            Source::copyAscii(span);
            continue;
        }
        const std::size_t length = Source::length(p, span->inputLeft);
        if (length == 0) return ConvertResult::kInvalid;
        CharTable::Entry &entry = table->entryOf(characterAt(p, length));
        if (entry.character == characterAt(p, length)) {
            if (table->strangers > 0) --table->strangers;
        } else {
            table->strangers += kStrangerWeighs;
            if (table->strangers > kTooManyStrangers ||
                !learn<Target>(converter, p, length, &entry)) {
                return ConvertResult::kInvalid;
            }
        }
        const std::size_t size = Target::length(entry.converted, sizeof entry.converted);
        if (size > span->outputLeft) return ConvertResult::kOutputFull;
        for (std::size_t i = 0; i < size; ++i) {
            span->output[i] = static_cast<char>(entry.converted[i]);
        }
        pass(span, length, size);
    }
    return span->inputLeft == 0 ? ConvertResult::kDone : ConvertResult::kInvalid;
}

}  // namespace

void CharMemo::begin(std::uint32_t source, std::uint32_t target) noexcept {
    bytesLeft_ = kBytesWithoutTable;
    pair_ = Pair::kOther;
    takesWhole_ = takesWholeTexts(source, target);
    if (target == XML_ENCODING_GB18030) {
        if (source == XML_ENCODING_UTF_8) pair_ = Pair::kUtf8ToGb18030;
    } else if (target == XML_ENCODING_UTF_8) {
        switch (source) {
            case XML_ENCODING_GB18030:
                pair_ = Pair::kGb18030ToUtf8;
                break;
            case XML_ENCODING_GBK:
            case XML_ENCODING_GB2312:
                pair_ = Pair::kGbkToUtf8;
                break;
            case XML_ENCODING_UTF_16LE:
                pair_ = Pair::kUtf16LeToUtf8;
                break;
            case XML_ENCODING_UTF_16BE:
                pair_ = Pair::kUtf16BeToUtf8;
                break;
            default:
                break;
        }
    }
}

void CharMemo::end() noexcept {
    std::free(table_);
    table_ = nullptr;
}

// Without memory there is none, and the converter does it all.
bool CharMemo::hasTable() noexcept {
    if (pair_ == Pair::kOther || bytesLeft_ != 0) return false;
    if (!table_) table_ = static_cast<CharTable *>(std::calloc(1, sizeof(CharTable)));
    if (!table_) pair_ = Pair::kOther;
    return table_ != nullptr;
}

ConvertResult CharMemo::convertByTable(void *converter, ConvertSpan *span) noexcept {
    switch (pair_) {
        case Pair::kUtf8ToGb18030:
            return convertKnown<Utf8, Gb18030>(table_, converter, span);
        case Pair::kGb18030ToUtf8:
            return convertKnown<Gb18030, Utf8>(table_, converter, span);
        case Pair::kGbkToUtf8:
            return convertKnown<Gbk, Utf8>(table_, converter, span);
        case Pair::kUtf16LeToUtf8:
            return convertKnown<Utf16<false>, Utf8>(table_, converter, span);
        default:  // kUtf16BeToUtf8: other pairs have no table
            return convertKnown<Utf16<true>, Utf8>(table_, converter, span);
    }
}

ConvertResult CharMemo::convert(void *converter, ConvertSpan *span) noexcept {
    if (takesWhole_) return cxml::convert(converter, span);
    for (;;) {
        std::size_t piece = span->inputLeft;
        if (hasTable()) {
            const ConvertResult result = convertByTable(converter, span);
            if (result != ConvertResult::kInvalid) return result;
            if (table_->strangers > kTooManyStrangers) {
                table_->strangers = 0;
                bytesLeft_ = kBytesWithoutTable;
            } else {
                piece = kConverterStep;  // with what the table does not know
            }
        }
        if (pair_ != Pair::kOther && bytesLeft_ != 0) {
            piece = std::max<std::size_t>(bytesLeft_, kConverterStep);
        }
        const std::size_t before = span->inputLeft;
        const std::size_t kept = before > piece ? before - piece : 0;
        span->inputLeft -= kept;
        const ConvertResult result = convertInWindows(converter, span);
        span->inputLeft += kept;
        const std::size_t used = before - span->inputLeft;
        if (pair_ != Pair::kOther) bytesLeft_ -= std::min<std::size_t>(used, bytesLeft_);
        if (kept == 0 || used == 0 || !wantsMore(result)) return result;
    }
}

}  // namespace cxml
