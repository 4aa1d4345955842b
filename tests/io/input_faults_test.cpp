// Input streams while memory is exhausted and files fail.
#include <cerrno>
#include <cstring>
#include <string>
#include <string_view>

#include "gtest/gtest.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"
#include "tests/support/open_stream.h"

using namespace std::string_view_literals;
using support::bytes;
using support::FaultyFiles;
using support::FaultyHeap;
using support::Feed;
using support::OpenStream;
using support::readers;

namespace {

TEST(InputFaults, OpeningSurvivesEachFailedAllocation) {
    for (const std::string_view text : {"<a/>"sv, "\xFF\xFE<\0a\0/\0>\0"sv, "\xEF\xBB\xBF<a/>"sv}) {
        for (const Feed &feed :
             {support::memoryFeed(text), support::fileFeed(text), support::listFeed(text)}) {
            for (std::size_t nth = 1;; ++nth) {
                FaultyFiles files({});
                FaultyHeap heap(nth);
                XML_IO_InStream *stream = feed.open();
                const bool failed = heap.failed();
                if (stream) {
                    // A conversion that finds no memory leaves a stream that says so.
                    const bool plainMemory =
                        feed.kind() == Feed::Kind::kMemory && stream->encoding == 0;
                    EXPECT_EQ(stream->state, failed ? 2u : plainMemory ? 1u : 0u);
                    if (failed) {
                        EXPECT_EQ(stream->encoding, 0u);
                        XML_IO_Grow(stream);
                        EXPECT_EQ(XML_IO_SwitchEncoding(stream, 1), 2u);
                        EXPECT_EQ(stream->state, 2u);
                    }
                } else {
                    EXPECT_TRUE(failed);
                }
                feed.close(stream);
                EXPECT_EQ(heap.blocksInUse(), 0u) << feed.name() << ", allocation " << nth;
                EXPECT_EQ(files.openDescriptors(), 0);
                if (!failed) break;
                ASSERT_LT(nth, 20u);
            }
        }
    }
}

TEST(InputFaults, RefillSurvivesAFailedAllocation) {
    const std::string text = bytes(5000);
    for (const Feed &feed : readers(text)) {
        FaultyFiles files({});
        XML_IO_InStream *stream = feed.open();
        ASSERT_NE(stream, nullptr);
        stream->cur = stream->end - 10;
        {
            FaultyHeap none(1, true);
            XML_IO_Grow(stream);
            EXPECT_EQ(stream->state, 2u);
            EXPECT_EQ(stream->end - stream->cur, 10);
            EXPECT_EQ(std::memcmp(stream->base, text.data(), 1024), 0);
            XML_IO_Grow(stream);
            EXPECT_EQ(stream->end - stream->cur, 10);
        }
        feed.close(stream);
        EXPECT_EQ(files.openDescriptors(), 0);
    }
}

TEST(InputFaults, DescriptorsAreClosed) {
    const Feed feed = support::fileFeed("<a/>");
    {
        FaultyFiles files({.failOpen = true});
        EXPECT_EQ(feed.open(), nullptr);
        EXPECT_EQ(files.openDescriptors(), 0);
    }
    for (std::size_t nth = 1; nth <= 2; ++nth) {
        // No record, no buffer: the descriptor was open already.
        FaultyFiles files({});
        FaultyHeap heap(nth);
        EXPECT_EQ(feed.open(), nullptr) << nth;
        EXPECT_EQ(files.openDescriptors(), 0) << nth;
    }
    FaultyFiles files({});
    XML_IO_InStream *stream = feed.open();
    EXPECT_EQ(files.openDescriptors(), 1);
    feed.close(stream);
    EXPECT_EQ(files.openDescriptors(), 0);
}

// A pipe or a socket gives fewer bytes than it was asked for; the buffer is filled all the same.
TEST(InputFaults, ShortReads) {
    const std::string text = "\xEF\xBB\xBF" + bytes(3000);
    const Feed feed = support::fileFeed(text);
    for (const std::size_t most : {1, 2, 3, 63, 64, 65, 1000, 1023}) {
        FaultyFiles files({.shortCount = most});
        const OpenStream stream(feed);
        EXPECT_EQ(stream->cur - stream->base, 3) << most;
        EXPECT_GE(stream.available(), 64u);
        std::string seen;
        while (stream.available() > 0) {
            EXPECT_TRUE(stream.available() >= 64 || seen.size() + stream.available() == 3000);
            seen += *stream->cur++;
            stream->mark = stream->cur;
            XML_IO_Grow(stream.get());
        }
        EXPECT_EQ(seen, text.substr(3)) << most;
        EXPECT_EQ(stream->state, 1u);
    }
}

// Intended: a read error is the end of the input.
TEST(InputFaults, ReadErrors) {
    const std::string text = bytes(5000);
    const Feed feed = support::fileFeed(text);
    for (const int error : {EIO, EISDIR, EINTR, 0}) {
        {
            FaultyFiles files({.failAt = 1, .failErrno = error});
            const OpenStream stream(feed);
            ASSERT_NE(stream.get(), nullptr);
            EXPECT_EQ(stream->state, 1u) << error;
            EXPECT_EQ(stream.available(), 0u);
        }
        FaultyFiles files({.failAt = 2, .failErrno = error});
        const OpenStream stream(feed);
        EXPECT_EQ(stream->state, 0u);
        stream->cur = stream->mark = stream->end - 5;
        XML_IO_Grow(stream.get());
        EXPECT_EQ(stream->state, 1u) << error;
        EXPECT_EQ(stream.unread(), text.substr(1019, 5));
    }
}

// A directory opens but does not read.
TEST(InputFaults, Directory) {
    XML_IO_InStream *stream = XML_IO_ByFile(".");
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(stream->state, 1u);
    EXPECT_EQ(stream->cur, stream->end);
    XML_IO_DestroyByFile(stream);
}

}  // namespace
