// Input streams: how they open, when they refill, what they keep, and how they end.
#include <fcntl.h>

#include <cstring>
#include <random>
#include <string>
#include <string_view>

#include "gtest/gtest.h"
#include "tests/support/feeds.h"
#include "tests/support/open_stream.h"

using namespace std::string_view_literals;
using support::bytes;
using support::Feed;
using support::OpenStream;
using support::readers;

namespace {

void *const kNoConverter = reinterpret_cast<void *>(static_cast<std::intptr_t>(-1));

void expectNoConversion(const XML_IO_InStream *stream) {
    EXPECT_EQ(stream->encoding, XML_ENCODING_UTF_8);
    EXPECT_EQ(stream->converter, kNoConverter);
    EXPECT_EQ(stream->rawBase, nullptr);
    EXPECT_EQ(stream->rawMark, nullptr);
    EXPECT_EQ(stream->rawCur, nullptr);
    EXPECT_EQ(stream->rawEnd, nullptr);
    EXPECT_EQ(stream->rawCapacity, 0u);
}

// ---------------------------------------------------------------- opening

TEST(InputStream, Refused) {
    const char byte = 'a';
    EXPECT_EQ(XML_IO_ByMem(nullptr, 1), nullptr);
    EXPECT_EQ(XML_IO_ByMem(&byte, 0), nullptr);
    EXPECT_EQ(XML_IO_ByMem(nullptr, 0), nullptr);
    EXPECT_EQ(XML_IO_ByFile(nullptr), nullptr);
    EXPECT_EQ(XML_IO_ByFile(""), nullptr);
    EXPECT_EQ(XML_IO_ByFile("no/such/file.xml"), nullptr);
    EXPECT_EQ(XML_IO_ByMemList(nullptr), nullptr);
    XML_IO_Grow(nullptr);
    XML_IO_DestroyByMem(nullptr);
    XML_IO_DestroyByFile(nullptr);
    XML_IO_DestroyByMemList(nullptr);
}

TEST(InputStream, MemoryIsUsedInPlace) {
    const std::string text = bytes(3000);
    XML_IO_InStream *stream = XML_IO_ByMem(text.data(), 3000);
    ASSERT_NE(stream, nullptr);
    const auto *buffer = reinterpret_cast<const unsigned char *>(text.data());
    EXPECT_EQ(stream->base, buffer);
    EXPECT_EQ(stream->mark, buffer);
    EXPECT_EQ(stream->cur, buffer);
    EXPECT_EQ(stream->end, buffer + 3000);
    EXPECT_EQ(stream->capacity, 3000u);
    EXPECT_EQ(stream->readFn, nullptr);
    EXPECT_EQ(stream->state, 1u);
    expectNoConversion(stream);
    // Nothing more comes, however little is left.
    stream->cur = stream->end - 1;
    XML_IO_Grow(stream);
    EXPECT_EQ(stream->base, buffer);
    EXPECT_EQ(stream->cur, buffer + 2999);
    EXPECT_EQ(stream->end, buffer + 3000);
    XML_IO_DestroyByMem(stream);
}

TEST(InputStream, FileAndListHoldTheFirst1024Bytes) {
    for (const std::size_t size : {1, 2, 63, 64, 65, 1000, 1023, 1024, 1025, 3000}) {
        const std::string text = bytes(size);
        for (const Feed &feed : support::everyFeed(text)) {
            if (feed.kind() == Feed::Kind::kMemory) continue;
            const OpenStream stream(feed);
            ASSERT_NE(stream.get(), nullptr);
            EXPECT_EQ(stream->state, 0u) << feed.name();
            EXPECT_EQ(stream->capacity, 1024u);
            EXPECT_EQ(stream->mark, stream->base);
            EXPECT_EQ(stream->cur, stream->base);
            EXPECT_EQ(stream.unread(), std::string_view(text).substr(0, 1024)) << feed.name();
            EXPECT_NE(stream->readFn, nullptr);
            expectNoConversion(stream.get());
        }
    }
}

TEST(InputStream, EmptySources) {
    const Feed feeds[] = {support::fileFeed(""), support::listFeed(""),
                          support::makeList("one empty chunk", {""sv}),
                          support::makeList("three empty chunks", {""sv, ""sv, ""sv})};
    for (const Feed &feed : feeds) {
        const OpenStream stream(feed);
        ASSERT_NE(stream.get(), nullptr) << feed.name();
        EXPECT_EQ(stream->state, 1u) << feed.name();
        EXPECT_EQ(stream.available(), 0u);
        EXPECT_EQ(stream->capacity, 1024u);
        EXPECT_EQ(XML_IO_Strncmp(stream.get(), "a", 1), 0);
        EXPECT_EQ(XML_IO_Strncmp(stream.get(), "a", 0), 1);
        XML_IO_Grow(stream.get());
        EXPECT_EQ(stream->state, 1u);
    }
}

// A chunk of no bytes needs no data.
TEST(InputStream, EmptyChunksWithoutData) {
    const unsigned char text[] = {'<', 'a', '/', '>'};
    XML_IO_MemChunk last{nullptr, 0, nullptr};
    XML_IO_MemChunk second{&last, 2, text + 2};
    XML_IO_MemChunk gap{&second, 0, nullptr};
    XML_IO_MemChunk first{&gap, 2, text};
    XML_IO_MemChunk front{&first, 0, nullptr};
    const XML_IO_MemList list{&front};
    XML_IO_InStream *stream = XML_IO_ByMemList(&list);
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(stream->end - stream->cur, 4);
    EXPECT_EQ(std::memcmp(stream->cur, text, 4), 0);
    XML_IO_DestroyByMemList(stream);
    EXPECT_EQ(XML_Parser_ByMemList(&list, nullptr), XML_OK);
    const XML_IO_MemList none{&last};
    stream = XML_IO_ByMemList(&none);
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(stream->state, 1u);
    XML_IO_DestroyByMemList(stream);
}

TEST(InputStream, FileDescriptorAndListCursor) {
    {
        int fd = -1;
        {
            const OpenStream stream(support::fileFeed("<a/>"));
            fd = static_cast<int>(stream->source);
            EXPECT_GE(::fcntl(fd, F_GETFD), 0);
        }
        EXPECT_EQ(::fcntl(fd, F_GETFD), -1);
    }
    const std::string text = bytes(1030);
    const auto cursorOf = [](const OpenStream &stream) {
        return reinterpret_cast<const XML_IO_MemListCursor *>(stream->source);
    };
    const std::string_view view = text;
    {
        const OpenStream stream(
            support::makeList("inside the second", {view.substr(0, 1000), view.substr(1000)}));
        ASSERT_NE(cursorOf(stream)->chunk, nullptr);
        EXPECT_EQ(cursorOf(stream)->chunk->length, 30u);
        EXPECT_EQ(cursorOf(stream)->position, 24u);
    }
    {
        // A chunk that is used up is left behind at once.
        const OpenStream stream(
            support::makeList("before the second", {view.substr(0, 1024), view.substr(1024)}));
        ASSERT_NE(cursorOf(stream)->chunk, nullptr);
        EXPECT_EQ(cursorOf(stream)->chunk->length, 6u);
        EXPECT_EQ(cursorOf(stream)->position, 0u);
    }
    {
        const OpenStream stream(support::makeList("all of it", {view.substr(0, 10)}));
        EXPECT_EQ(cursorOf(stream)->chunk, nullptr);
    }
    {
        // What the reader gives when it is called by hand.
        const OpenStream stream(support::listInPieces(text, 7));
        unsigned char buffer[16];
        EXPECT_EQ(stream->readFn(stream->source, 4, buffer), 4u);
        EXPECT_EQ(std::memcmp(buffer, text.data() + 1024, 4), 0);
        EXPECT_EQ(stream->readFn(stream->source, 16, buffer), 2u);
        EXPECT_EQ(std::memcmp(buffer, text.data() + 1028, 2), 0);
        EXPECT_EQ(stream->readFn(stream->source, 16, buffer), 0u);
    }
}

// ---------------------------------------------------------------- byte order marks

TEST(InputStream, ByteOrderMarks) {
    constexpr struct {
        const char *name;
        std::string_view source;
        std::uint32_t encoding;
        std::string_view text;  // in UTF-8, behind the mark
    } kRows[] = {
        {"UTF-8", "\xEF\xBB\xBF<a/>"sv, 0, "<a/>"},
        {"UTF-8 mark alone", "\xEF\xBB\xBF"sv, 0, ""},
        {"UTF-8 mark twice", "\xEF\xBB\xBF\xEF\xBB\xBFx"sv, 0, "\xEF\xBB\xBFx"},
        {"two thirds of it", "\xEF\xBB"sv, 0, "\xEF\xBB"},
        {"another third byte", "\xEF\xBB\xBEx"sv, 0, "\xEF\xBB\xBEx"},
        {"UTF-16LE", "\xFF\xFE<\0a\0"sv, 1, "<a"},
        {"UTF-16LE mark alone", "\xFF\xFE"sv, 1, ""},
        {"UTF-16BE", "\xFE\xFF\0<\x4E\x2D"sv, 2, "<\xE4\xB8\xAD"},
        {"UTF-16BE mark alone", "\xFE\xFF"sv, 2, ""},
        {"UTF-32LE before UTF-16LE", "\xFF\xFE\0\0<\0\0\0"sv, 4, "<"},
        {"UTF-32LE mark alone", "\xFF\xFE\0\0"sv, 4, ""},
        {"UTF-32BE", "\0\0\xFE\xFF\0\0\0<\0\1\xF6\0"sv, 5, "<\xF0\x9F\x98\x80"},
        {"UTF-32BE mark alone", "\0\0\xFE\xFF"sv, 5, ""},
        {"UTF-16LE and another character", "\xFF\xFE\0\1"sv, 1, "\xC4\x80"},
        {"three quarters of UTF-32BE", "\0\0\xFE"sv, 0, "\0\0\xFE"sv},
        {"one byte", "\xFF"sv, 0, "\xFF"},
        {"one other byte", "\xFE"sv, 0, "\xFE"},
        {"swapped", "\xFE\xFE"sv, 0, "\xFE\xFE"},
        {"none", "<a/>"sv, 0, "<a/>"},
    };
    for (const auto &row : kRows) {
        for (const Feed &feed : support::everyFeed(row.source)) {
            SCOPED_TRACE(row.name + (", " + feed.name()));
            const OpenStream stream(feed);
            ASSERT_NE(stream.get(), nullptr);
            EXPECT_EQ(stream->encoding, row.encoding);
            EXPECT_EQ(stream.unread(), row.text);
            EXPECT_EQ(stream->mark, stream->cur);
            EXPECT_LE(stream->state, 1u);
            EXPECT_EQ(stream->converter == kNoConverter, row.encoding == 0);
            if (row.encoding == 0) {
                // The mark stays in the buffer, before what is still needed.
                EXPECT_EQ(stream->cur - stream->base,
                          static_cast<std::ptrdiff_t>(row.source.size() - row.text.size()));
            } else {
                EXPECT_EQ(stream->cur, stream->base);
                EXPECT_NE(stream->rawBase, nullptr);
                EXPECT_EQ(stream->rawMark, stream->rawEnd);
            }
            XML_IO_Grow(stream.get());
            EXPECT_EQ(stream->state, 1u);
            EXPECT_EQ(stream.unread(), row.text);
        }
    }
}

// A character that the whole of a memory does not complete fails at once; a file or a list might
// still complete it, and ends when it does not.
TEST(InputStream, OddByteBehindTheMark) {
    constexpr struct {
        std::string_view source;
        std::size_t characters;  // whole ones behind the mark
    } kRows[] = {
        {"\xFF\xFE\0"sv, 0},          {"\xFE\xFF\0"sv, 0},    {"\xFF\xFE<\0a"sv, 1},
        {"\xFE\xFF\0<\xD8\x3D"sv, 1}, {"\xFF\xFE\0\0<"sv, 0}, {"\xFF\xFE\0\0<\0\0\0a"sv, 1},
        {"\0\0\xFE\xFF\0\0"sv, 0},
    };
    for (const auto &row : kRows) {
        for (const Feed &feed : support::everyFeed(row.source)) {
            SCOPED_TRACE(support::printable(row.source) + ", " + feed.name());
            const OpenStream stream(feed);
            if (feed.kind() == Feed::Kind::kMemory) {
                EXPECT_EQ(stream->state, 4u);
                expectNoConversion(stream.get());
                EXPECT_EQ(stream.used(), row.source.size());
                continue;
            }
            EXPECT_EQ(stream->state, 0u);
            EXPECT_NE(stream->encoding, 0u);
            EXPECT_EQ(stream.available(), row.characters);
            XML_IO_Grow(stream.get());
            EXPECT_EQ(stream->state, 1u);
            EXPECT_EQ(stream.available(), row.characters);
        }
    }
}

// ---------------------------------------------------------------- refilling

TEST(InputStream, RefillsBelow64Bytes) {
    const std::string text = bytes(5000);
    for (const Feed &feed : readers(text)) {
        SCOPED_TRACE(feed.name());
        const OpenStream stream(feed);
        // With 64 bytes ahead nothing happens.
        stream->cur = stream->mark = stream->end - 64;
        XML_IO_Grow(stream.get());
        EXPECT_EQ(stream->cur - stream->base, 960);
        EXPECT_EQ(stream.available(), 64u);
        // With 63 what lies before the mark is dropped and the room is filled.
        stream->cur = stream->mark = stream->end - 63;
        XML_IO_Grow(stream.get());
        EXPECT_EQ(stream->mark, stream->base);
        EXPECT_EQ(stream->cur, stream->base);
        EXPECT_EQ(stream->capacity, 1024u);
        EXPECT_EQ(stream.unread(), text.substr(961, 1024));
        EXPECT_EQ(stream->state, 0u);
        // Again, keeping 100 bytes.
        stream->cur = stream->end - 1;
        stream->mark = stream->cur - 100;
        XML_IO_Grow(stream.get());
        EXPECT_EQ(stream->mark, stream->base);
        EXPECT_EQ(stream.kept(), 100u);
        EXPECT_EQ(stream->capacity, 1024u);
        EXPECT_EQ(std::string_view(reinterpret_cast<char *>(stream->mark), 1024),
                  text.substr(1884, 1024));
        // Nothing ahead at all.
        stream->cur = stream->mark = stream->end;
        XML_IO_Grow(stream.get());
        EXPECT_EQ(stream.unread(), text.substr(2908, 1024));
    }
}

TEST(InputStream, EnlargesOnlyWithoutRoomFor64Bytes) {
    const std::string text = bytes(5000);
    for (const Feed &feed : readers(text)) {
        SCOPED_TRACE(feed.name());
        {
            // One byte is dropped: 63 ahead and room for one more are enough.
            const OpenStream stream(feed);
            stream->cur = stream->end - 63;
            stream->mark = stream->base + 1;
            XML_IO_Grow(stream.get());
            EXPECT_EQ(stream->capacity, 1024u);
            EXPECT_EQ(stream.available(), 64u);
            EXPECT_EQ(stream.used(), 1024u);
        }
        {
            // Nothing can be dropped: 1024 bytes more.
            const OpenStream stream(feed);
            stream->cur = stream->end - 63;
            XML_IO_Grow(stream.get());
            EXPECT_EQ(stream->capacity, 2048u);
            EXPECT_EQ(stream.used(), 2048u);
            EXPECT_EQ(stream.kept(), 961u);
            // And so on in steps of 1024, up to the end of the source.
            for (std::size_t capacity = 3072; capacity <= 5120; capacity += 1024) {
                stream->cur = stream->end - 10;
                XML_IO_Grow(stream.get());
                EXPECT_EQ(stream->capacity, capacity);
                EXPECT_EQ(stream.used(), std::min<std::size_t>(capacity, 5000));
                EXPECT_EQ(stream->state, 0u);
            }
            EXPECT_EQ(std::string_view(reinterpret_cast<char *>(stream->base), 5000), text);
            // 120 bytes of room: no need to enlarge, but nothing comes.
            stream->cur = stream->end - 10;
            XML_IO_Grow(stream.get());
            EXPECT_EQ(stream->capacity, 5120u);
            EXPECT_EQ(stream->state, 1u);
            EXPECT_EQ(stream.available(), 10u);
        }
    }
}

TEST(InputStream, EndOfTheSource) {
    for (const std::size_t size : {1, 63, 64, 100, 1023, 1024, 1025, 1500, 2048}) {
        const std::string text = bytes(size);
        for (const Feed &feed : readers(text)) {
            SCOPED_TRACE(feed.name() + " of " + std::to_string(size));
            const OpenStream stream(feed);
            std::string seen;
            while (stream->state == 0) {
                const std::size_t step = std::min<std::size_t>(stream.available(), 7);
                seen += stream.unread().substr(0, step);
                stream->cur += step;
                stream->mark = stream->cur;
                XML_IO_Grow(stream.get());
            }
            EXPECT_EQ(stream->state, 1u);
            // Once the source is exhausted the buffer stays where it is.
            const unsigned char *base = stream->base;
            const std::string left(stream.unread());
            XML_IO_Grow(stream.get());
            EXPECT_EQ(stream->base, base);
            EXPECT_EQ(stream.unread(), left);
            EXPECT_EQ(seen + left, text);
            EXPECT_LT(left.size(), 64u);
        }
    }
}

// At random: whatever is kept and passed over, the bytes from mark to end are those of the source,
// at least 64 lie ahead, and the capacity is no larger than what is kept asks for.
TEST(InputStream, RandomWalk) {
    const std::string text = bytes(40000);
    std::mt19937 random(5);
    for (const Feed &feed : readers(text)) {
        for (int walk = 0; walk < 20; ++walk) {
            const OpenStream stream(feed);
            std::size_t at = 0;
            std::size_t mark = 0;
            std::size_t most = 1024;
            while (at < text.size()) {
                const std::size_t step = random() % (walk % 2 ? 4 : 130) + 1;
                at += std::min(step, stream.available());
                stream->cur += std::min(step, stream.available());
                if (random() % 50 == 0) {
                    mark = at - random() % (at - mark + 1);
                    stream->mark = stream->cur - (at - mark);
                }
                XML_IO_Grow(stream.get());
                most = std::max<std::size_t>(most, at - mark + 64 + 1024);
                ASSERT_EQ(stream.kept(), at - mark);
                ASSERT_LE(at + stream.available(), text.size());
                ASSERT_TRUE(stream.available() >= 64 || at + stream.available() == text.size())
                    << feed.name() << " at " << at;
                ASSERT_EQ(std::memcmp(stream->mark, text.data() + mark,
                                      static_cast<std::size_t>(stream->end - stream->mark)),
                          0);
                ASSERT_EQ(stream->capacity % 1024, 0u);
                ASSERT_LE(stream->capacity, most + 1024);
                ASSERT_LE(stream.used(), stream->capacity);
            }
        }
    }
}

// States above 1 are final for refilling.
TEST(InputStream, FinalStates) {
    const std::string text = bytes(3000);
    for (const std::uint32_t state : {1u, 2u, 3u, 4u}) {
        const OpenStream stream(support::listFeed(text));
        stream->state = state;
        stream->cur = stream->end - 1;
        XML_IO_Grow(stream.get());
        EXPECT_EQ(stream->state, state);
        EXPECT_EQ(stream.available(), 1u);
        EXPECT_EQ(stream->cur - stream->base, 1023);
    }
}

// ---------------------------------------------------------------- comparing

TEST(InputStream, Compare) {
    constexpr struct {
        std::string_view text;
        const char *with;
        std::uint32_t n;
        int equal;
        int equalIgnoringCase;
    } kRows[] = {
        {"<?xml ", "<?xml", 5, 1, 1},
        {"<?xml", "<?xml", 5, 1, 1},
        {"<?xm", "<?xml", 5, 0, 0},  // too few bytes, though those that are there match
        {"<?xm", "<?xml", 4, 1, 1},
        {"<?XML", "<?xml", 5, 0, 1},
        {"<?xmL", "<?XMl", 5, 0, 1},
        {"<?xmk", "<?xml", 5, 0, 0},
        {"a", "b", 0, 1, 1},
        {"a", "", 0, 1, 1},
        {"a", "b", 1, 0, 0},
        {"a", "a", 2, 0, 0},
        {"ab", "a", 1, 1, 1},
        {"ab", "a", 2, 0, 0},
        {"@", "`", 1, 0, 0},
        {"[", "{", 1, 0, 0},
        {"\x1A", ":", 1, 0, 0},
        {"Zz", "zZ", 2, 0, 1},
        {"\xC3\x89", "\xC3\xA9", 2, 0, 0},  // no letters of any 8-bit set
        {"\xE9", "\xC9", 1, 0, 0},
        {"\xFF", "\xFF", 1, 1, 1},
        {"\xFF", "\x7F", 1, 0, 0},
        // Both stop at a NUL, as the C library's do.
        {"ab\0cd"sv, "ab\0xy", 5, 1, 1},
        {"aB\0cd"sv, "Ab", 4, 0, 1},
        {"ab\0cd"sv, "abc", 3, 0, 0},
    };
    for (const auto &row : kRows) {
        for (const Feed &feed : {support::memoryFeed(row.text), support::listFeed(row.text)}) {
            SCOPED_TRACE(support::printable(row.text) + " and " + row.with);
            const OpenStream stream(feed);
            EXPECT_EQ(XML_IO_Strncmp(stream.get(), row.with, row.n), row.equal);
            EXPECT_EQ(XML_IO_Strncasecmp(stream.get(), row.with, row.n), row.equalIgnoringCase);
            EXPECT_EQ(stream.unread(), row.text);
        }
    }
    const OpenStream stream(support::memoryFeed("a"));
    EXPECT_EQ(XML_IO_Strncmp(nullptr, "a", 1), 0);
    EXPECT_EQ(XML_IO_Strncmp(stream.get(), nullptr, 1), 0);
    EXPECT_EQ(XML_IO_Strncasecmp(nullptr, "a", 1), 0);
    EXPECT_EQ(XML_IO_Strncasecmp(stream.get(), nullptr, 1), 0);
}

// Comparing never refills: what is not buffered does not match.
TEST(InputStream, CompareDoesNotRefill) {
    const std::string text(2000, 'a');
    const OpenStream stream(support::listFeed(text));
    stream->cur = stream->end - 3;
    EXPECT_EQ(XML_IO_Strncmp(stream.get(), "aaa", 3), 1);
    EXPECT_EQ(XML_IO_Strncmp(stream.get(), "aaaa", 4), 0);
    EXPECT_EQ(XML_IO_Strncasecmp(stream.get(), "AAAA", 4), 0);
    EXPECT_EQ(stream.available(), 3u);
    XML_IO_Grow(stream.get());
    EXPECT_EQ(XML_IO_Strncmp(stream.get(), "aaaa", 4), 1);
}

}  // namespace
