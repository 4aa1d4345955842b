// Output streams: what they hold, refuse, hold back and convert. File streams have a file of their
// own, and so has the comparison of every pair of encodings.
#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "io/output_stream.h"
#include "tests/support/faults.h"
#include "tests/support/huge_string.h"
#include "tests/support/owners.h"

namespace {

using support::FaultyHeap;
using support::StreamPtr;
using support::TextPtr;

constexpr std::uint32_t kUtf8 = XML_ENCODING_UTF_8;
constexpr std::uint32_t kGb = XML_ENCODING_GB18030;

StreamPtr memoryStream(std::uint32_t source = kUtf8, std::uint32_t target = kUtf8) {
    return StreamPtr(XML_IO_MemOutStreamCreate(source, target));
}

std::uint32_t append(const StreamPtr &stream, std::string_view bytes) {
    return XML_IO_OutStreamAppend(stream.get(), bytes.data(),
                                  static_cast<std::uint32_t>(bytes.size()));
}

std::uint32_t appendSafe(const StreamPtr &stream, std::string_view bytes) {
    return XML_IO_OutStreamAppendSafe(stream.get(), bytes.data(),
                                      static_cast<std::uint32_t>(bytes.size()));
}

const XML_IO_MemBuf *record(const StreamPtr &stream) {
    return reinterpret_cast<const XML_IO_MemBuf *>(stream->target);
}

std::string content(const StreamPtr &stream) {
    std::uint32_t length = 0xDEAD;
    const char *data = XML_IO_MemOutStreamGetBuf(stream.get(), &length);
    EXPECT_EQ(data == nullptr, length == 0);
    if (!data) return "";
    EXPECT_EQ(data[length], '\0');
    EXPECT_EQ(record(stream)->data, data);
    EXPECT_EQ(record(stream)->length, length);
    EXPECT_LT(length, record(stream)->capacity);
    return std::string(data, length);
}

std::string heldBack(const StreamPtr &stream) {
    std::string bytes;
    for (std::uint32_t i = 0; i < stream->pendingCount && i < 4; ++i) {
        bytes += static_cast<char>(stream->pendingBytes[i]);
    }
    EXPECT_LT(stream->pendingCount, 4u);
    return bytes;
}

// ---- creation ------------------------------------------------------------------------------

TEST(OutputStream, FreshMemoryStream) {
    const StreamPtr stream = memoryStream();
    ASSERT_TRUE(stream);
    EXPECT_EQ(stream->kind, 0u);
    EXPECT_EQ(stream->pendingCount, 0u);
    EXPECT_EQ(stream->converter, reinterpret_cast<void *>(-1));
    EXPECT_EQ(record(stream)->data, nullptr);
    EXPECT_EQ(record(stream)->length, 0u);
    EXPECT_EQ(record(stream)->capacity, 0u);
    std::uint32_t length = 7;
    EXPECT_EQ(XML_IO_MemOutStreamGetBuf(stream.get(), &length), nullptr);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(XML_IO_MemOutStreamGetBuf(stream.get(), nullptr), nullptr);
}

TEST(OutputStream, PairsOfEncodings) {
    struct Row {
        std::uint32_t source, target;
        bool created, converts;
    };
    constexpr Row kRows[] = {
        {0, 0, true, false},
        {9, 9, true, false},
        {13, 13, true, false},
        {14, 14, true, false},
        {0xFFFFFFFFu, 0xFFFFFFFFu, true, false},
        {0, 9, true, true},
        {9, 0, true, true},
        {9, 5, true, true},
        {0, 13, false, false},
        {13, 0, false, false},
        {13, 14, false, false},
        {9, 200, false, false},
        {0xFFFFFFFFu, 9, false, false},
    };
    for (const Row &row : kRows) {
        const StreamPtr stream = memoryStream(row.source, row.target);
        EXPECT_EQ(stream != nullptr, row.created) << row.source << " to " << row.target;
        if (!stream) continue;
        EXPECT_EQ(stream->converter != reinterpret_cast<void *>(-1), row.converts);
    }
}

TEST(OutputStream, UnknownEqualEncodingsPassEveryByte) {
    const StreamPtr stream = memoryStream(XML_ENCODING_UNKNOWN, XML_ENCODING_UNKNOWN);
    std::string all;
    for (int c = 0; c < 256; ++c) all += static_cast<char>(static_cast<unsigned char>(c));
    EXPECT_EQ(append(stream, all), XML_OK);
    EXPECT_EQ(append(stream, all), XML_OK);
    EXPECT_EQ(content(stream), all + all);
}

TEST(OutputStream, EveryPairOfKnownEncodingsOpens) {
    for (std::uint32_t source = 0; source < XML_ENCODING_UNKNOWN; ++source) {
        for (std::uint32_t target = 0; target < XML_ENCODING_UNKNOWN; ++target) {
            EXPECT_TRUE(memoryStream(source, target)) << source << " to " << target;
        }
    }
}

// ---- arguments -----------------------------------------------------------------------------

TEST(OutputStream, NothingToAppendIsSuccessEvenWithoutAStream) {
    EXPECT_EQ(XML_IO_OutStreamAppend(nullptr, nullptr, 0), XML_OK);
    EXPECT_EQ(XML_IO_OutStreamAppend(nullptr, nullptr, 3), XML_OK);
    EXPECT_EQ(XML_IO_OutStreamAppend(nullptr, "abc", 0), XML_OK);
    EXPECT_EQ(XML_IO_OutStreamAppendSafe(nullptr, nullptr, 3), XML_OK);
    EXPECT_EQ(XML_IO_OutStreamAppendSafe(nullptr, "abc", 0), XML_OK);
    EXPECT_EQ(XML_IO_OutStreamAppendString(nullptr, nullptr), XML_OK);
    EXPECT_EQ(XML_IO_OutStreamAppendString(nullptr, ""), XML_OK);
    EXPECT_EQ(XML_IO_OutStreamAppend(nullptr, "abc", 3), XML_REFUSED);
    EXPECT_EQ(XML_IO_OutStreamAppendSafe(nullptr, "abc", 3), XML_REFUSED);
    EXPECT_EQ(XML_IO_OutStreamAppendString(nullptr, "abc"), XML_REFUSED);
}

TEST(OutputStream, NothingToAppendChangesNothing) {
    const StreamPtr stream = memoryStream(kUtf8, kGb);
    EXPECT_EQ(append(stream, "a\xE4"), XML_OK);
    EXPECT_EQ(XML_IO_OutStreamAppend(stream.get(), nullptr, 3), XML_OK);
    EXPECT_EQ(XML_IO_OutStreamAppend(stream.get(), "abc", 0), XML_OK);
    EXPECT_EQ(XML_IO_OutStreamAppendSafe(stream.get(), nullptr, 3), XML_OK);
    EXPECT_EQ(XML_IO_OutStreamAppendSafe(stream.get(), "abc", 0), XML_OK);
    EXPECT_EQ(XML_IO_OutStreamAppendString(stream.get(), nullptr), XML_OK);
    EXPECT_EQ(XML_IO_OutStreamAppendString(stream.get(), ""), XML_OK);
    EXPECT_EQ(content(stream), "a");
    EXPECT_EQ(heldBack(stream), "\xE4");
}

TEST(OutputStream, MissingStreamLeavesTheLengthAlone) {
    std::uint32_t length = 42;
    EXPECT_EQ(XML_IO_MemOutStreamGetBuf(nullptr, &length), nullptr);
    EXPECT_EQ(XML_IO_MemOutStreamDetachBuf(nullptr, &length), nullptr);
    EXPECT_EQ(length, 42u);
    EXPECT_EQ(XML_IO_MemOutStreamGetBuf(nullptr, nullptr), nullptr);
    EXPECT_EQ(XML_IO_MemOutStreamDetachBuf(nullptr, nullptr), nullptr);
    XML_IO_MemOutStreamCleanBuf(nullptr);
    XML_IO_FileOutStreamFlush(nullptr);
    XML_IO_OutStreamDestroy(nullptr);
}

TEST(OutputStream, FlushOfAMemoryStreamDoesNothing) {
    const StreamPtr stream = memoryStream();
    const support::FaultyFiles files({});
    EXPECT_EQ(append(stream, "a"), XML_OK);
    XML_IO_FileOutStreamFlush(stream.get());
    EXPECT_EQ(files.syncs(), 0u);
    EXPECT_EQ(files.writes(), 0u);
    EXPECT_EQ(content(stream), "a");
}

TEST(OutputStream, AppendStringStopsAtTheNul) {
    const StreamPtr stream = memoryStream();
    EXPECT_EQ(XML_IO_OutStreamAppendString(stream.get(), "abc\0def"), XML_OK);
    EXPECT_EQ(XML_IO_OutStreamAppendString(stream.get(), "g"), XML_OK);
    EXPECT_EQ(content(stream), "abcg");
}

TEST(OutputStream, AppendStringHoldsBackTheBytesThemselves) {
    const StreamPtr stream = memoryStream(kUtf8, kGb);
    EXPECT_EQ(XML_IO_OutStreamAppendString(stream.get(), "\xE4\xB8"), XML_OK);
    EXPECT_EQ(heldBack(stream), "\xE4\xB8");
    EXPECT_EQ(XML_IO_OutStreamAppendString(stream.get(), "\xAD"), XML_OK);
    EXPECT_EQ(content(stream), "\xD6\xD0");
}

TEST(OutputStream, LengthsBeyond32BitsAreRefusedBeforeAnythingIsRead) {
    const StreamPtr stream = memoryStream();
    EXPECT_EQ(append(stream, "abc"), XML_OK);
    for (const std::uint32_t length : {0xFFFFFFFFu, 0xFFFFFFFCu, 0xFFFFFFFBu, 0xFFFFFC00u}) {
        EXPECT_EQ(XML_IO_OutStreamAppend(stream.get(), "short", length), XML_REFUSED) << length;
    }
    EXPECT_EQ(content(stream), "abc");
    EXPECT_EQ(record(stream)->capacity, 1024u);
    EXPECT_EQ(append(stream, "d"), XML_OK);
    EXPECT_EQ(content(stream), "abcd");
}

TEST(OutputStream, AppendStringRefusesFourGigabytes) {
    const support::HugeString huge;
    if (!huge.text()) return;  // no room for such a string, so none can be handed in
    const StreamPtr stream = memoryStream();
    EXPECT_EQ(append(stream, "abc"), XML_OK);
    EXPECT_EQ(XML_IO_OutStreamAppendString(stream.get(), huge.text()), XML_REFUSED);
    EXPECT_EQ(content(stream), "abc");
}

// ---- the buffer ----------------------------------------------------------------------------

TEST(OutputStream, CapacityGrowsOnlyWhenItMustAndInSteps) {
    struct Row {
        std::uint32_t source;
        std::size_t before, appended;
        std::uint32_t capacity;
    };
    // Without a converter an append arrives whole; with one in pieces of 256 bytes, so that the
    // last piece alone decides. Room for length + 1 is enough; a growth leaves some to spare.
    constexpr Row kRows[] = {
        {kGb, 0, 1, 1024},      {kGb, 0, 1022, 1024},   {kGb, 0, 1023, 2048},
        {kGb, 0, 1024, 2048},   {kGb, 1, 1021, 1024},   {kGb, 1, 1022, 1024},
        {kGb, 1, 1023, 2048},   {kGb, 1, 1024, 2048},   {kGb, 0, 2046, 2048},
        {kGb, 0, 2047, 3072},   {kGb, 0, 2048, 3072},   {kGb, 1023, 1, 2048},
        {kGb, 1022, 1, 1024},   {kGb, 1022, 2, 2048},   {kGb, 1, 2047, 3072},
        {kUtf8, 0, 1, 1024},    {kUtf8, 0, 1022, 1024}, {kUtf8, 0, 1023, 1024},
        {kUtf8, 0, 1024, 2048}, {kUtf8, 1, 1022, 1024}, {kUtf8, 1, 1023, 2048},
        {kUtf8, 1, 1024, 2048}, {kUtf8, 1, 1021, 1024}, {kUtf8, 0, 2047, 2048},
        {kUtf8, 0, 2048, 3072},
    };
    for (const Row &row : kRows) {
        SCOPED_TRACE(testing::Message()
                     << row.source << ": " << row.before << " and " << row.appended);
        const StreamPtr stream = memoryStream(row.source, kGb);
        EXPECT_EQ(append(stream, std::string(row.before, 'b')), XML_OK);
        EXPECT_EQ(append(stream, std::string(row.appended, 'a')), XML_OK);
        EXPECT_EQ(record(stream)->capacity, row.capacity);
        EXPECT_EQ(content(stream), std::string(row.before, 'b') + std::string(row.appended, 'a'));
    }
}

TEST(OutputStream, ByteByByteTheCapacityFollowsTheLength) {
    const StreamPtr stream = memoryStream();
    for (std::uint32_t length = 1; length <= 5000; ++length) {
        ASSERT_EQ(append(stream, "x"), XML_OK);
        ASSERT_EQ(record(stream)->capacity, (length / 1024 + 1) * 1024) << length;
    }
}

TEST(OutputStream, CleanKeepsTheAllocation) {
    const StreamPtr stream = memoryStream();
    EXPECT_EQ(append(stream, std::string(3000, 'x')), XML_OK);
    const char *data = record(stream)->data;
    XML_IO_MemOutStreamCleanBuf(stream.get());
    EXPECT_EQ(record(stream)->data, data);
    EXPECT_EQ(record(stream)->capacity, 3072u);
    EXPECT_EQ(record(stream)->length, 0u);
    EXPECT_EQ(content(stream), "");
    EXPECT_EQ(append(stream, "ab"), XML_OK);
    EXPECT_EQ(content(stream), "ab");
    EXPECT_EQ(record(stream)->data, data);
    EXPECT_EQ(record(stream)->capacity, 3072u);
}

TEST(OutputStream, DetachHandsTheBufferOver) {
    StreamPtr stream = memoryStream();
    EXPECT_EQ(append(stream, "abc"), XML_OK);
    std::uint32_t length = 0;
    const TextPtr taken(XML_IO_MemOutStreamDetachBuf(stream.get(), &length));
    ASSERT_TRUE(taken);
    EXPECT_EQ(length, 3u);
    EXPECT_STREQ(taken.get(), "abc");
    EXPECT_EQ(record(stream)->data, nullptr);
    EXPECT_EQ(record(stream)->length, 0u);
    EXPECT_EQ(record(stream)->capacity, 0u);
    EXPECT_EQ(append(stream, "de"), XML_OK);
    EXPECT_EQ(content(stream), "de");
    EXPECT_EQ(record(stream)->capacity, 1024u);
    stream.reset();
    EXPECT_STREQ(taken.get(), "abc");
}

// The block may be larger than the capacity told; one that will not shrink is handed over as it is.
TEST(OutputStream, DetachHandsOverABlockThatDoesNotShrink) {
    std::string source, expected;
    for (int i = 0; i < 300; ++i) {
        source += "\xD6\xD0";
        expected += "\xE4\xB8\xAD";
    }
    StreamPtr stream = memoryStream(kGb, kUtf8);
    ASSERT_EQ(cxml::XML_IO_AppendWhole(stream.get(), source.data(),
                                       static_cast<std::uint32_t>(source.size())),
              XML_OK);
    const char *data = record(stream)->data;
    EXPECT_EQ(record(stream)->capacity, 1024u);
    std::uint32_t length = 0;
    TextPtr taken;
    {
        const FaultyHeap heap(1, true);
        taken.reset(XML_IO_MemOutStreamDetachBuf(stream.get(), &length));
        EXPECT_TRUE(heap.failed());
    }
    EXPECT_EQ(taken.get(), data);
    EXPECT_EQ(std::string(taken.get(), length), expected);
    EXPECT_EQ(record(stream)->data, nullptr);
}

TEST(OutputStream, DetachOfAnEmptiedStreamFreesTheOldBlock) {
    FaultyHeap heap(0);
    StreamPtr stream = memoryStream();
    const std::size_t empty = heap.blocksInUse();
    EXPECT_EQ(append(stream, "abc"), XML_OK);
    XML_IO_MemOutStreamCleanBuf(stream.get());
    EXPECT_GT(heap.blocksInUse(), empty);
    std::uint32_t length = 9;
    EXPECT_EQ(XML_IO_MemOutStreamDetachBuf(stream.get(), &length), nullptr);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(heap.blocksInUse(), empty);
    EXPECT_EQ(record(stream)->data, nullptr);
    EXPECT_EQ(record(stream)->capacity, 0u);
    EXPECT_EQ(XML_IO_MemOutStreamDetachBuf(stream.get(), nullptr), nullptr);  // and once more
    EXPECT_EQ(append(stream, "x"), XML_OK);
    stream.reset();
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

TEST(OutputStream, FailedGrowthLeavesTheContent) {
    const StreamPtr stream = memoryStream();
    {
        FaultyHeap heap(1);
        EXPECT_EQ(append(stream, "first"), XML_REFUSED);
        EXPECT_TRUE(heap.failed());
    }
    EXPECT_EQ(content(stream), "");
    EXPECT_EQ(record(stream)->capacity, 0u);
    EXPECT_EQ(append(stream, "abc"), XML_OK);
    const std::string much(std::size_t{8} << 20, 'x');
    {
        FaultyHeap heap(1, true);
        EXPECT_EQ(append(stream, much), XML_REFUSED);
        EXPECT_TRUE(heap.failed());
    }
    EXPECT_EQ(content(stream), "abc");
    EXPECT_EQ(record(stream)->capacity, 1024u);
    EXPECT_EQ(append(stream, much), XML_OK);
    EXPECT_EQ(content(stream), "abc" + much);
}

TEST(OutputStream, CreationSurvivesEachFailedAllocation) {
    for (const std::uint32_t target : {kUtf8, kGb, XML_ENCODING_UNKNOWN}) {
        for (const bool persistent : {false, true}) {
            for (std::size_t nth = 1;; ++nth) {
                FaultyHeap heap(nth, persistent);
                StreamPtr stream = memoryStream(kUtf8, target);
                if (!heap.failed()) {
                    EXPECT_EQ(stream != nullptr, target != XML_ENCODING_UNKNOWN);
                    stream.reset();
                    EXPECT_EQ(heap.blocksInUse(), 0u);
                    break;
                }
                EXPECT_FALSE(stream);
                EXPECT_EQ(heap.blocksInUse(), 0u);
            }
        }
    }
}

// ---- bytes held back -----------------------------------------------------------------------

TEST(OutputStream, SplitCharacterIsCompletedByTheNextAppend) {
    const StreamPtr stream = memoryStream(kUtf8, kGb);
    EXPECT_EQ(append(stream, "\xC3"), XML_OK);
    EXPECT_EQ(heldBack(stream), "\xC3");
    EXPECT_EQ(content(stream), "");
    EXPECT_EQ(append(stream, "\xA9"), XML_OK);
    EXPECT_EQ(heldBack(stream), "");
    EXPECT_EQ(content(stream), "\xA8\xA6");
}

// Intended: the safe variant holds back question marks, so that the character can never be
// completed.
TEST(OutputStream, SafeAppendHoldsBackQuestionMarks) {
    const StreamPtr stream = memoryStream(kUtf8, kGb);
    EXPECT_EQ(appendSafe(stream, "a\xC3"), XML_OK);
    EXPECT_EQ(heldBack(stream), "?");
    EXPECT_EQ(append(stream, "\xA9"), XML_REFUSED);
    EXPECT_EQ(content(stream), "a");
    EXPECT_EQ(heldBack(stream), "?");  // a failed append keeps what was held back
    EXPECT_EQ(append(stream, "b"), XML_OK);
    EXPECT_EQ(content(stream), "a?b");
    EXPECT_EQ(appendSafe(stream, "\xF0\x9F\x98"), XML_OK);
    EXPECT_EQ(heldBack(stream), "???");
    EXPECT_EQ(appendSafe(stream, "c"), XML_OK);
    EXPECT_EQ(content(stream), "a?b???c");
    EXPECT_EQ(appendSafe(stream, "\xE4\xB8\xAD"), XML_OK);  // whole characters are not touched
    EXPECT_EQ(content(stream), "a?b???c\xD6\xD0");
}

TEST(OutputStream, HeldBackBytesThatNothingCompletesAreNeverWritten) {
    FaultyHeap heap(0);
    StreamPtr stream = memoryStream(kUtf8, kGb);
    EXPECT_EQ(append(stream, "ab\xE4\xB8"), XML_OK);
    EXPECT_EQ(content(stream), "ab");
    stream.reset();
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

TEST(OutputStream, CleanAndDetachKeepHeldBackBytes) {
    const StreamPtr stream = memoryStream(kUtf8, kGb);
    EXPECT_EQ(append(stream, "ab\xE4\xB8"), XML_OK);
    XML_IO_MemOutStreamCleanBuf(stream.get());
    EXPECT_EQ(heldBack(stream), "\xE4\xB8");
    EXPECT_EQ(append(stream, "\xAD\xE4"), XML_OK);
    EXPECT_EQ(content(stream), "\xD6\xD0");
    const TextPtr taken(XML_IO_MemOutStreamDetachBuf(stream.get(), nullptr));
    EXPECT_STREQ(taken.get(), "\xD6\xD0");
    EXPECT_EQ(heldBack(stream), "\xE4");
    EXPECT_EQ(append(stream, "\xB8\xAD"), XML_OK);
    EXPECT_EQ(content(stream), "\xD6\xD0");
}

TEST(OutputStream, HeldBackBytesWithExactlyFourTogether) {
    // The four-byte character U+1F600 in UTF-8, cut everywhere, also into three and four appends.
    const std::string whole = "\xF0\x9F\x98\x80";
    const std::string converted = "\x94\x39\xFC\x36";
    for (unsigned cuts = 0; cuts < 8; ++cuts) {
        const StreamPtr stream = memoryStream(kUtf8, kGb);
        std::string piece;
        for (std::size_t i = 0; i < whole.size(); ++i) {
            piece += whole[i];
            if (i + 1 < whole.size() && (cuts >> i & 1u) == 0) continue;
            ASSERT_EQ(append(stream, piece), XML_OK) << cuts;
            piece.clear();
            ASSERT_EQ(heldBack(stream), i + 1 < whole.size() ? whole.substr(0, i + 1) : "");
        }
        EXPECT_EQ(content(stream), converted) << cuts;
    }
}

TEST(OutputStream, TheRestOfACompletingAppendIsConvertedToo) {
    struct Row {
        const char *first, *second, *held, *result;
    };
    constexpr Row kRows[] = {
        {"\xE4", "\xB8\xAD", "", "\xD6\xD0"},
        {"\xE4", "\xB8\xAD!", "", "\xD6\xD0!"},
        {"\xE4", "\xB8\xAD!?", "", "\xD6\xD0!?"},
        {"\xE4", "\xB8\xAD\xE4", "\xE4", "\xD6\xD0"},
        {"\xE4", "\xB8\xAD\xE4\xB8\xAD", "", "\xD6\xD0\xD6\xD0"},
        {"\xE4", "\xB8\xAD\xE4\xB8", "\xE4\xB8", "\xD6\xD0"},
        {"\xE4\xB8", "\xAD\xC3", "\xC3", "\xD6\xD0"},
        {"\xE4\xB8", "\xAD\xC3\xA9", "", "\xD6\xD0\xA8\xA6"},
        {"\xC3", "\xA9\xE4\xB8", "\xE4\xB8", "\xA8\xA6"},
        {"\xC3", "\xA9\xE4\xB8\xAD", "", "\xA8\xA6\xD6\xD0"},
        {"\xC3",
         "\xA9"
         "abcdef",
         "",
         "\xA8\xA6"
         "abcdef"},
        {"\xF0\x9F\x98", "\x80\xF0\x9F", "\xF0\x9F", "\x94\x39\xFC\x36"},
    };
    for (const Row &row : kRows) {
        const StreamPtr stream = memoryStream(kUtf8, kGb);
        EXPECT_EQ(append(stream, row.first), XML_OK);
        EXPECT_EQ(append(stream, row.second), XML_OK) << testing::PrintToString(row.second);
        EXPECT_EQ(heldBack(stream), row.held) << testing::PrintToString(row.second);
        EXPECT_EQ(content(stream), row.result) << testing::PrintToString(row.second);
    }
}

TEST(OutputStream, InvalidCompletionIsRefusedAndWritesNothing) {
    for (const char *second : {"x", "\xE4", "\xFF",
                               "\xB8"
                               "x",
                               "\xB8\xC3", "xyz", "\xB8\xFF\xAD"}) {
        SCOPED_TRACE(testing::PrintToString(second));
        const StreamPtr stream = memoryStream(kUtf8, kGb);
        EXPECT_EQ(append(stream, "ab\xE4"), XML_OK);
        EXPECT_EQ(append(stream, second), XML_REFUSED);
        EXPECT_EQ(content(stream), "ab");
        EXPECT_EQ(heldBack(stream), "\xE4");
        EXPECT_EQ(append(stream, "\xB8\xAD"), XML_OK);
        EXPECT_EQ(content(stream), "ab\xD6\xD0");
    }
}

// iconv asks for more after five- and six-byte forms that are older than today's UTF-8. Holding
// them back would take more than the three bytes that any character here can need.
TEST(OutputStream, TailsLongerThanThreeBytesAreInvalid) {
    struct Row {
        const char *bytes;
        std::uint32_t result;
        const char *held;
    };
    constexpr Row kRows[] = {
        {"\xF8\x90\x80\x80", XML_REFUSED, ""},     {"\xFC\x84\x80\x80\x80", XML_REFUSED, ""},
        {"\xFC\x84\x80\x80", XML_REFUSED, ""},     {"x\xF8\x90\x80\x80", XML_REFUSED, ""},
        {"x\xF8\x90\x80", XML_OK, "\xF8\x90\x80"}, {"x\xFC\x84\x80", XML_OK, "\xFC\x84\x80"},
    };
    for (const bool safe : {false, true}) {
        for (const Row &row : kRows) {
            SCOPED_TRACE(testing::PrintToString(row.bytes));
            const StreamPtr stream = memoryStream(kUtf8, kGb);
            EXPECT_EQ(append(stream, "before"), XML_OK);
            EXPECT_EQ(safe ? appendSafe(stream, row.bytes) : append(stream, row.bytes), row.result);
            const std::string held = row.held;
            EXPECT_EQ(heldBack(stream), safe ? std::string(held.size(), '?') : held);
            EXPECT_EQ(content(stream), row.result == XML_OK ? "beforex" : "before");
            if (row.result == XML_OK) continue;
            EXPECT_EQ(append(stream, "!"), XML_OK);
            EXPECT_EQ(content(stream), "before!");
        }
    }
}

TEST(OutputStream, TailsThatGrowBeyondThreeBytesAreInvalid) {
    for (const char *next : {"\x80", "\x80\x80", "\x80\x80\x80",
                             "\x80"
                             "more text"}) {
        for (const char *first : {"\xF8\x90\x80", "\xFC\x84\x80"}) {
            const StreamPtr stream = memoryStream(kUtf8, kGb);
            EXPECT_EQ(append(stream, "ab"), XML_OK);
            EXPECT_EQ(append(stream, first), XML_OK);
            EXPECT_EQ(append(stream, next), XML_REFUSED) << testing::PrintToString(next);
            EXPECT_EQ(content(stream), "ab");
            EXPECT_EQ(heldBack(stream), first);
        }
    }
}

// ---- invalid text --------------------------------------------------------------------------

TEST(OutputStream, InvalidTextDropsTheCurrentChunkButNotEarlierOnes) {
    struct Row {
        std::size_t good;  // ASCII bytes in front of the invalid one
        std::size_t kept;
    };
    constexpr Row kRows[] = {{0, 0},     {1, 0},     {100, 0},   {255, 0},    {257, 256},
                             {511, 256}, {513, 512}, {600, 512}, {1025, 1024}};
    for (const Row &row : kRows) {
        SCOPED_TRACE(row.good);
        const StreamPtr stream = memoryStream(kUtf8, kGb);
        EXPECT_EQ(append(stream, "<"), XML_OK);
        EXPECT_EQ(append(stream, std::string(row.good, 'a') + "\xFF" + "tail"), XML_REFUSED);
        EXPECT_EQ(content(stream), "<" + std::string(row.kept, 'a'));
        EXPECT_EQ(append(stream, ">"), XML_OK);
        EXPECT_EQ(content(stream), "<" + std::string(row.kept, 'a') + ">");
    }
}

TEST(OutputStream, CharactersThatTheTargetLacksAreRefused) {
    const StreamPtr stream = memoryStream(kUtf8, XML_ENCODING_GB2312);
    EXPECT_EQ(append(stream, "\xE4\xB8\xAD"), XML_OK);
    EXPECT_EQ(append(stream, "\xF0\x9F\x98\x80"), XML_REFUSED);
    EXPECT_EQ(append(stream, "ok"), XML_OK);
    EXPECT_EQ(content(stream), "\xD6\xD0ok");
}

// A converter that waits for more, however much it gets, is looking at no character.
TEST(OutputStream, AConverterThatNeverHasEnough) {
    std::string text;
    for (int i = 0; i < 300; ++i) text += "\xD6\xD0";
    support::FaultyConverters converters;
    const StreamPtr stream = memoryStream(kGb, kUtf8);
    if (converters.opens() == 0) GTEST_SKIP() << "iconv has another name here";
    converters.begin({}, {1, true, EINVAL});
    EXPECT_EQ(append(stream, text), XML_REFUSED);
    EXPECT_EQ(content(stream), "");
    EXPECT_EQ(heldBack(stream), "");
    converters.begin({}, {});
    EXPECT_EQ(append(stream, text), XML_OK);
    EXPECT_EQ(content(stream).size(), 900u);
}

TEST(OutputStream, WithoutConversionNothingIsInvalidOrHeldBack) {
    const StreamPtr stream = memoryStream(kUtf8, kUtf8);
    EXPECT_EQ(append(stream, "\xFF\xE4"), XML_OK);
    EXPECT_EQ(appendSafe(stream, "\xE4\xB8"), XML_OK);
    EXPECT_EQ(content(stream), "\xFF\xE4\xE4\xB8");
    EXPECT_EQ(stream->pendingCount, 0u);
}

TEST(OutputStream, FailedGrowthWhileCompletingACharacter) {
    const StreamPtr stream = memoryStream(kUtf8, kGb);
    EXPECT_EQ(append(stream, "\xE4\xB8"), XML_OK);
    {
        FaultyHeap heap(1);
        EXPECT_EQ(append(stream, "\xAD"), XML_REFUSED);
        EXPECT_TRUE(heap.failed());
    }
    EXPECT_EQ(content(stream), "");
    EXPECT_EQ(heldBack(stream), "");  // the character was converted; only its writing failed
    EXPECT_EQ(append(stream, "ok"), XML_OK);
    EXPECT_EQ(content(stream), "ok");
}

}  // namespace
