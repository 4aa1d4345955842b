// The memory of converted characters against the converter alone: every character both ways, what is
// no character, and too little room.
#include "io/char_memo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "io/converter.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"
#include "tests/support/reference_iconv.h"
#include "tests/support/small_stack.h"

using namespace std::string_view_literals;
using cxml::CharMemo;
using cxml::ConvertResult;
using cxml::ConvertSpan;
using support::FaultyHeap;

namespace {

// What one call did.
struct Step {
    ConvertResult result;
    std::size_t consumed;
    std::string bytes;
    bool operator==(const Step &) const = default;
};

std::ostream &operator<<(std::ostream &out, const Step &step) {
    return out << "result " << static_cast<int>(step.result) << ", " << step.consumed
               << " bytes read, \"" << support::printable(step.bytes) << "\" written";
}

template <class Convert>
Step stepOf(const Convert &convert, std::string_view input, std::size_t room) {
    // Of exactly the size, so that an address sanitizer sees a byte too many.
    const auto from = std::make_unique<char[]>(input.size());
    const auto to = std::make_unique<char[]>(room);
    std::copy(input.begin(), input.end(), from.get());
    ConvertSpan span{from.get(), input.size(), to.get(), room};
    const ConvertResult result = convert(&span);
    const std::size_t consumed = input.size() - span.inputLeft;
    const std::size_t written = room - span.outputLeft;
    EXPECT_EQ(span.input, from.get() + consumed);
    EXPECT_EQ(span.output, to.get() + written);
    return {result, consumed, std::string(to.get(), std::min(room, written))};
}

// More than is converted before there is a table.
const std::string &longText() {
    static const std::string text(cxml::kBytesWithoutTable, 'x');
    return text;
}

#ifdef __s390x__
constexpr bool kLooksAhead = true;
#else
constexpr bool kLooksAhead = false;
#endif

// A converter with a memory that is in use, and one without.
class Pair {
  public:
    Pair(std::uint32_t source, std::uint32_t target)
        : alone_(cxml::openConverter(source, target)),
          helped_(cxml::openConverter(source, target)) {
        memo_.begin(source, target);
        EXPECT_NE(alone_, cxml::kNoConverter);
        // The first call counts the bytes, the second one makes the table.
        for (int i = 0; i < 2; ++i) withMemo(longText(), 2 * longText().size());
    }
    ~Pair() {
        memo_.end();
        cxml::closeConverter(helped_);
        cxml::closeConverter(alone_);
    }
    Pair(const Pair &) = delete;
    Pair &operator=(const Pair &) = delete;

    Step withMemo(std::string_view input, std::size_t room) {
        return stepOf([this](ConvertSpan *span) { return memo_.convert(helped_, span); }, input,
                      room);
    }
    Step alone(std::string_view input, std::size_t room) {
        return stepOf([this](ConvertSpan *span) { return cxml::convert(alone_, span); }, input,
                      room);
    }
    void expectSame(std::string_view input, std::size_t room) {
        const Step known = withMemo(input, room);
        Step own = alone(input, room);
        // Before a piece of a character that the output has no room for, some converters ask for
        // room and others, as glibc's of UTF-16 on s390x, for the rest of it; and there also before
        // a character with what is none behind it.
        const bool isAnswer = own.result == ConvertResult::kInputIncomplete ||
                              (kLooksAhead && own.result == ConvertResult::kInvalid);
        if (isAnswer && own.bytes.size() == room && known.result == ConvertResult::kOutputFull) {
            own.result = known.result;
        }
        ASSERT_EQ(known, own) << support::printable(input) << " into " << room << " bytes";
    }

  private:
    void *alone_;
    void *helped_;
    CharMemo memo_{};
};

struct Direction {
    std::uint32_t source;
    std::uint32_t target;
};
constexpr Direction kDirections[] = {
    {XML_ENCODING_UTF_8, XML_ENCODING_GB18030},  {XML_ENCODING_GB18030, XML_ENCODING_UTF_8},
    {XML_ENCODING_GBK, XML_ENCODING_UTF_8},      {XML_ENCODING_GB2312, XML_ENCODING_UTF_8},
    {XML_ENCODING_UTF_16LE, XML_ENCODING_UTF_8}, {XML_ENCODING_UTF_16BE, XML_ENCODING_UTF_8}};

// Code points in an encoding.
std::string encoded(std::uint32_t encoding, std::u32string_view text) {
    return support::encode(encoding, text).value_or("");
}

// Texts of 64 characters each, which the second time are known. Those that an encoding lacks are
// left out.
TEST(CharMemo, EveryCharacterBothWays) {
    constexpr std::size_t kTogether = 64;
    for (const Direction &direction : kDirections) {
        Pair pair(direction.source, direction.target);
        std::size_t converted = 0;
        const auto expectSame = [&](const std::u32string &characters) {
            const std::string text = encoded(direction.source, characters);
            const Step expected = pair.alone(text, kTogether * 4);
            EXPECT_EQ(pair.withMemo(text, kTogether * 4), expected) << characters[0] + 0u;
            EXPECT_EQ(pair.withMemo(text, kTogether * 4), expected) << characters[0] + 0u;
            const bool whole = !text.empty() && expected.result == ConvertResult::kDone;
            if (whole) converted += characters.size();
            return whole;
        };
        // A memory that meets too many strangers rests for a while: this is what it knows.
        const std::string known =
            encoded(direction.source, std::u32string(8 * kTogether, U'\u4E2D'));
        for (char32_t first = 0; first < 0x110000; first += kTogether) {
            if (first >= 0xD800 && first < 0xE000) continue;  // no characters
            const bool isLacking =
                direction.source == XML_ENCODING_GBK || direction.source == XML_ENCODING_GB2312;
            if (isLacking && first >= 0x10000) break;
            // Instrumented code is slow: of what lies beyond 16 bits an eighth must do.
            if (support::kSanitized && first >= 0x10000 && first / kTogether % 8 != 0) continue;
            std::u32string characters;
            while (characters.size() < kTogether) {
                characters += first + static_cast<char32_t>(characters.size());
            }
            if (!expectSame(characters)) {
                for (const char32_t c : characters) expectSame(std::u32string(1, c));
            }
            pair.withMemo(known, 4 * known.size());
        }
        EXPECT_GT(converted, 7000u);  // GB2312 has the fewest
    }
}

// Every sequence of two bytes, and longer ones at random among bytes that characters have.
TEST(CharMemo, WhatIsNoCharacterIsTheConvertersToTell) {
    for (const Direction &direction : kDirections) {
        Pair pair(direction.source, direction.target);
        for (unsigned first = 0x80; first < 0x100; ++first) {
            const std::string one(1, static_cast<char>(first));
            ASSERT_NO_FATAL_FAILURE(pair.expectSame(one, 8));
            for (unsigned second = 0; second < 0x100; ++second) {
                ASSERT_NO_FATAL_FAILURE(pair.expectSame(one + static_cast<char>(second), 8));
            }
        }
        std::mt19937 random(3);
        for (int round = 0; round < 50000; ++round) {
            std::string text;
            for (std::size_t left = 1 + random() % 6; left != 0; --left) {
                const auto byte = [&random](unsigned first, unsigned count) {
                    return static_cast<char>(first + random() % count);
                };
                const char bytes[] = {byte(0x81, 0x7E), byte('0', 10), byte(0x80, 0x40),
                                      byte(0, 0x100)};
                text += bytes[random() % 4];
            }
            ASSERT_NO_FATAL_FAILURE(pair.expectSame(text, random() % 9));
        }
    }
}

TEST(CharMemo, EveryRoomAndEveryCut) {
    constexpr std::u32string_view kText = U"a\u00E9\u4E2D\u6587\uFFFD\U00020000z\U0001F600";
    for (const Direction &direction : kDirections) {
        Pair pair(direction.source, direction.target);
        const std::string text = encoded(direction.source, kText);
        for (std::size_t from = 0; from <= text.size(); ++from) {
            for (std::size_t length = 0; from + length <= text.size(); ++length) {
                for (std::size_t room = 0; room <= 2 * length + 1; ++room) {
                    ASSERT_NO_FATAL_FAILURE(pair.expectSame(text.substr(from, length), room));
                }
            }
        }
    }
}

// Characters that share a place of the table push each other out: more of them than it has places,
// again and again.
TEST(CharMemo, CharactersPushEachOtherOut) {
    for (const Direction &direction : kDirections) {
        Pair pair(direction.source, direction.target);
        std::mt19937 random(5);
        for (int round = 0; round < 100; ++round) {
            std::u32string characters;
            for (int i = 0; i < 300; ++i) {
                characters += static_cast<char32_t>(0x4E00 + random() % 0x5000);
                if (random() % 4 == 0)
                    characters += static_cast<char32_t>(0x10000 + random() % 4096);
            }
            const std::string text = encoded(direction.source, characters);
            ASSERT_NO_FATAL_FAILURE(pair.expectSame(text, 4 * characters.size()));
        }
    }
}

TEST(CharMemo, OtherPairsAndShortTextsTakeNoMemory) {
    const auto allocations = [](std::uint32_t source, std::uint32_t target, std::size_t length) {
        void *converter = cxml::openConverter(source, target);
        EXPECT_NE(converter, cxml::kNoConverter);
        CharMemo memo{};
        memo.begin(source, target);
        const std::string text(length, '\0');  // whole characters in every encoding
        std::vector<char> room(4 * length + 8);
        std::size_t count = 0;
        for (int i = 0; i < 2; ++i) {
            FaultyHeap heap(0);
            ConvertSpan span{text.data(), text.size(), room.data(), room.size()};
            EXPECT_EQ(memo.convert(converter, &span), ConvertResult::kDone);
            count += heap.allocations();
        }
        memo.end();
        cxml::closeConverter(converter);
        return count;
    };
    EXPECT_EQ(allocations(XML_ENCODING_GB18030, XML_ENCODING_UTF_8, 2000), 0u);
    EXPECT_EQ(allocations(XML_ENCODING_GB18030, XML_ENCODING_UTF_8, cxml::kBytesWithoutTable), 1u);
    EXPECT_EQ(allocations(XML_ENCODING_UTF_8, XML_ENCODING_GB18030, cxml::kBytesWithoutTable), 1u);
    EXPECT_EQ(allocations(XML_ENCODING_UTF_32LE, XML_ENCODING_UTF_8, 100000), 0u);
    EXPECT_EQ(allocations(XML_ENCODING_UTF_8, XML_ENCODING_UTF_16LE, 100000), 0u);
}

// There is no table then; the text is converted all the same.
TEST(CharMemo, WithoutMemoryTheConverterDoesItAll) {
    for (const Direction &direction : kDirections) {
        void *converter = cxml::openConverter(direction.source, direction.target);
        ASSERT_NE(converter, cxml::kNoConverter);
        CharMemo memo{};
        memo.begin(direction.source, direction.target);
        const std::string text = encoded(direction.source, std::u32string(3000, U'\u4E2D'));
        const std::string expected = encoded(direction.target, std::u32string(3000, U'\u4E2D'));
        int failures = 0;
        for (int i = 0; i < 5; ++i) {
            std::string room(expected.size(), '\0');
            ConvertSpan span{text.data(), text.size(), room.data(), room.size()};
            FaultyHeap heap(1, true);
            EXPECT_EQ(memo.convert(converter, &span), ConvertResult::kDone);
            failures += heap.failed() ? 1 : 0;
            EXPECT_EQ(span.outputLeft, 0u);
            EXPECT_EQ(room, expected);
        }
        EXPECT_EQ(failures, 1);  // it is not asked for again
        memo.end();
        cxml::closeConverter(converter);
    }
}

// Through the stream, which cuts characters where its buffers end.
TEST(CharMemo, LongDocumentsReadTheSame) {
    std::u32string text = U"<r>";
    for (char32_t c = 0x4E00; c < 0x6000; ++c) {
        std::u32string piece = {c, c % 7 == 0 ? U'\U00020000' : U'x', c};
        if (c % 5 == 0) piece = U"<e a=\"" + piece + U"\"/>\n";
        text += piece;
    }
    text += U"</r>";
    const std::string document =
        encoded(XML_ENCODING_GB18030, U"<?xml version=\"1.0\" encoding=\"GB18030\"?>" + text);
    // The same as if it had been UTF-8 from the beginning, but for what it says of itself.
    const std::string plain =
        encoded(XML_ENCODING_UTF_8, U"<?xml version=\"1.0\" encoding=\"UTF-8\"?>  " + text);
    const support::RecordedBuild expected = support::recordBuild(support::memoryFeed(plain));
    ASSERT_TRUE(expected.built) << expected.error;
    const auto nodes = [](const support::RecordedBuild &build) {
        return build.tree.substr(build.tree.find('\n'));
    };
    for (const support::Feed &feed : support::mainFeeds(document)) {
        const support::RecordedBuild build = support::recordBuild(feed);
        ASSERT_TRUE(build.built) << build.error;
        EXPECT_EQ(nodes(build), nodes(expected)) << feed.name();
    }
}

// What comes out of a converter is remembered only if it is one character: here it is for another
// encoding than the memory was told.
TEST(CharMemo, OnlyCharactersAreRemembered) {
    const std::string text = encoded(XML_ENCODING_GBK, std::u32string(100, U'\u4E2D'));
    void *const converter = cxml::openConverter(XML_ENCODING_GBK, XML_ENCODING_UTF_16LE);
    ASSERT_NE(converter, cxml::kNoConverter);
    CharMemo memo{};
    memo.begin(XML_ENCODING_GBK, XML_ENCODING_UTF_8);
    const auto withMemo = [&](ConvertSpan *span) { return memo.convert(converter, span); };
    for (int i = 0; i < 2; ++i) stepOf(withMemo, longText(), 2 * longText().size());
    const Step expected = {ConvertResult::kDone, text.size(),
                           encoded(XML_ENCODING_UTF_16LE, std::u32string(100, U'\u4E2D'))};
    for (int i = 0; i < 2; ++i) EXPECT_EQ(stepOf(withMemo, text, 400), expected);
    memo.end();
    cxml::closeConverter(converter);
}

}  // namespace
