// Output streams to files: how the file is opened, written, synced and closed, and what fails.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/owners.h"

namespace {

using support::FaultyFiles;
using support::FaultyHeap;
using support::FilePlan;
using support::StreamPtr;

class FileOutputStream : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = testing::TempDir() + "compactxml-out-" + std::string(6, 'X');
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        directory_ = pattern;
        path_ = directory_ + "/out.xml";
    }
    void TearDown() override { std::filesystem::remove_all(directory_); }

    std::string read() const {
        std::ifstream file(path_, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    void write(std::string_view text) const { std::ofstream(path_, std::ios::binary) << text; }
    StreamPtr create(std::uint32_t source = 0, std::uint32_t target = 0) const {
        return StreamPtr(XML_IO_FileOutStreamCreate(path_.c_str(), source, target));
    }
    static std::uint32_t append(const StreamPtr &stream, std::string_view bytes) {
        return XML_IO_OutStreamAppend(stream.get(), bytes.data(),
                                      static_cast<std::uint32_t>(bytes.size()));
    }

    std::string directory_, path_;
};

TEST_F(FileOutputStream, FreshStream) {
    const StreamPtr stream = create();
    ASSERT_TRUE(stream);
    EXPECT_EQ(stream->kind, 1u);
    EXPECT_EQ(stream->pendingCount, 0u);
    EXPECT_EQ(stream->converter, reinterpret_cast<void *>(-1));
    const int flags = fcntl(static_cast<int>(stream->target), F_GETFL);
    ASSERT_NE(flags, -1);
    EXPECT_EQ(flags & O_ACCMODE, O_WRONLY);
    EXPECT_NE(flags & O_APPEND, 0);
    EXPECT_EQ(read(), "");
}

TEST_F(FileOutputStream, EachAppendReachesTheFileAtOnce) {
    const StreamPtr stream = create();
    EXPECT_EQ(append(stream, "abc"), XML_OK);
    EXPECT_EQ(read(), "abc");
    EXPECT_EQ(XML_IO_OutStreamAppendString(stream.get(), "def"), XML_OK);
    EXPECT_EQ(read(), "abcdef");
    EXPECT_EQ(XML_IO_OutStreamAppendSafe(stream.get(), "g\0h", 3), XML_OK);
    EXPECT_EQ(read(), std::string("abcdefg\0h", 9));
}

// Intended: an existing file keeps its content.
TEST_F(FileOutputStream, AppendsToAnExistingFile) {
    write("old;");
    StreamPtr stream = create();
    EXPECT_EQ(read(), "old;");
    EXPECT_EQ(append(stream, "new;"), XML_OK);
    stream.reset();
    EXPECT_EQ(read(), "old;new;");
    stream = create();
    EXPECT_EQ(append(stream, "newer"), XML_OK);
    EXPECT_EQ(read(), "old;new;newer");
    // Each write goes to the end, wherever that is by then.
    std::ofstream(path_, std::ios::binary | std::ios::app) << "|other|";
    EXPECT_EQ(append(stream, "last"), XML_OK);
    EXPECT_EQ(read(), "old;new;newer|other|last");
}

TEST_F(FileOutputStream, ModeOfANewFile) {
    struct Row {
        mode_t mask, mode;
    };
    constexpr Row kRows[] = {{0, 0640}, {022, 0640}, {027, 0640}, {077, 0600}};
    for (const Row &row : kRows) {
        const mode_t before = umask(row.mask);
        const StreamPtr stream = create();
        umask(before);
        ASSERT_TRUE(stream);
        struct stat status {};
        ASSERT_EQ(stat(path_.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, row.mode) << std::oct << row.mask;
        std::filesystem::remove(path_);
    }
}

TEST_F(FileOutputStream, ModeOfAnExistingFileStays) {
    write("x");
    ASSERT_EQ(chmod(path_.c_str(), 0600), 0);
    EXPECT_TRUE(create());
    struct stat status {};
    ASSERT_EQ(stat(path_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u);
}

TEST_F(FileOutputStream, PairsOfEncodings) {
    struct Row {
        std::uint32_t source, target;
        bool created;
    };
    constexpr Row kRows[] = {{13, 13, true}, {14, 14, true}, {9, 0, true},
                             {0, 13, false}, {13, 0, false}, {200, 9, false}};
    for (const Row &row : kRows) {
        FaultyFiles files({});
        FaultyHeap heap(0);
        StreamPtr stream = create(row.source, row.target);
        EXPECT_EQ(stream != nullptr, row.created) << row.source << " to " << row.target;
        // The file is there in any case: it is opened before the encodings are looked at.
        EXPECT_TRUE(std::filesystem::remove(path_));
        stream.reset();
        EXPECT_EQ(files.openDescriptors(), 0);
        EXPECT_EQ(heap.blocksInUse(), 0u);
    }
}

TEST_F(FileOutputStream, FilesThatDoNotOpen) {
    const std::string missing = directory_ + "/missing/out.xml";
    const char *const kPaths[] = {nullptr, "", directory_.c_str(), missing.c_str()};
    for (const char *path : kPaths) {
        FaultyFiles files({});
        FaultyHeap heap(0);
        EXPECT_EQ(XML_IO_FileOutStreamCreate(path, 0, 0), nullptr);
        EXPECT_EQ(XML_IO_FileOutStreamCreate(path, 0, 9), nullptr);
        EXPECT_EQ(files.openDescriptors(), 0);
        EXPECT_EQ(heap.blocksInUse(), 0u);
    }
    FilePlan plan;
    plan.failOpen = true;
    FaultyFiles noDescriptors(plan);
    FaultyHeap heap(0);
    EXPECT_EQ(create(), nullptr);
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

TEST_F(FileOutputStream, CreationSurvivesEachFailedAllocation) {
    for (const bool persistent : {false, true}) {
        for (std::size_t nth = 1;; ++nth) {
            FaultyFiles files({});
            FaultyHeap heap(nth, persistent);
            StreamPtr stream = create(0, 9);
            if (heap.failed()) {
                EXPECT_FALSE(stream);
                EXPECT_EQ(files.openDescriptors(), 0);
            } else {
                EXPECT_TRUE(stream);
            }
            stream.reset();
            EXPECT_EQ(heap.blocksInUse(), 0u);
            EXPECT_EQ(files.openDescriptors(), 0);
            if (!heap.failed()) break;
        }
    }
}

TEST_F(FileOutputStream, MemoryOperationsLeaveItAlone) {
    const StreamPtr stream = create();
    EXPECT_EQ(append(stream, "abc"), XML_OK);
    std::uint32_t length = 42;
    EXPECT_EQ(XML_IO_MemOutStreamGetBuf(stream.get(), &length), nullptr);
    EXPECT_EQ(XML_IO_MemOutStreamDetachBuf(stream.get(), &length), nullptr);
    XML_IO_MemOutStreamCleanBuf(stream.get());
    EXPECT_EQ(length, 42u);
    EXPECT_EQ(append(stream, "def"), XML_OK);
    EXPECT_EQ(read(), "abcdef");
}

TEST_F(FileOutputStream, OnlyFlushSyncs) {
    FaultyFiles files({});
    StreamPtr stream = create();
    EXPECT_EQ(append(stream, "abc"), XML_OK);
    EXPECT_EQ(files.syncs(), 0u);
    XML_IO_FileOutStreamFlush(stream.get());
    EXPECT_EQ(files.syncs(), 1u);
    XML_IO_FileOutStreamFlush(stream.get());
    EXPECT_EQ(files.syncs(), 2u);
    stream.reset();
    EXPECT_EQ(files.syncs(), 2u);
    EXPECT_EQ(files.openDescriptors(), 0);
}

TEST_F(FileOutputStream, WithoutADescriptorThereIsNothingToFlushOrClose) {
    FaultyFiles files({});
    StreamPtr stream = create();
    close(static_cast<int>(stream->target));
    stream->target = static_cast<std::uintptr_t>(-1);
    XML_IO_FileOutStreamFlush(stream.get());
    EXPECT_EQ(files.syncs(), 0u);
    stream.reset();
    EXPECT_EQ(files.openDescriptors(), 0);
}

// ---- writing -------------------------------------------------------------------------------

TEST_F(FileOutputStream, OneWriteForEachChunk) {
    const StreamPtr plain = create();
    const StreamPtr converting = create(0, 9);
    FaultyFiles files({});
    EXPECT_EQ(append(plain, std::string(600, 'a')), XML_OK);
    EXPECT_EQ(files.writes(), 1u);
    EXPECT_EQ(append(converting, std::string(600, 'b')), XML_OK);
    EXPECT_EQ(files.writes(), 1u + 3u);  // 256, 256 and 88 bytes
    EXPECT_EQ(append(converting, "\xE4"), XML_OK);
    EXPECT_EQ(files.writes(), 4u);  // nothing to write yet
    EXPECT_EQ(append(converting, "\xB8\xAD"), XML_OK);
    EXPECT_EQ(files.writes(), 5u);
    EXPECT_EQ(read(), std::string(600, 'a') + std::string(600, 'b') + "\xD6\xD0");
}

TEST_F(FileOutputStream, ShortWritesAreContinued) {
    const StreamPtr stream = create();
    FilePlan plan;
    plan.shortCount = 7;
    FaultyFiles files(plan);
    std::string text;
    for (int i = 0; i < 100; ++i) text += static_cast<char>('a' + i % 26);
    EXPECT_EQ(append(stream, text), XML_OK);
    EXPECT_EQ(files.writes(), 15u);
    EXPECT_EQ(read(), text);
}

TEST_F(FileOutputStream, InterruptedWritesAreRetried) {
    const StreamPtr stream = create();
    for (std::size_t nth = 1; nth <= 4; ++nth) {
        FilePlan plan;
        plan.shortCount = 2;
        plan.failAt = nth;
        plan.failErrno = EINTR;
        FaultyFiles files(plan);
        EXPECT_EQ(append(stream, "abcdef;"), XML_OK) << nth;
        EXPECT_EQ(files.writes(), 5u) << nth;
    }
    EXPECT_EQ(read(), "abcdef;abcdef;abcdef;abcdef;");
}

TEST_F(FileOutputStream, FailedWrites) {
    struct Row {
        const char *what;
        int error;  // 0: write returns 0, which would otherwise go on for ever
    };
    constexpr Row kRows[] = {
        {"EIO", EIO}, {"ENOSPC", ENOSPC}, {"EAGAIN", EAGAIN}, {"returns 0", 0}};
    for (const Row &row : kRows) {
        for (std::size_t nth = 1; nth <= 3; ++nth) {
            SCOPED_TRACE(testing::Message() << row.what << " at write " << nth);
            StreamPtr stream = create();
            {
                FilePlan plan;
                plan.shortCount = 2;
                plan.failAt = nth;
                plan.failErrno = row.error;
                FaultyFiles files(plan);
                EXPECT_EQ(append(stream, "abcdef"), XML_REFUSED);
                EXPECT_EQ(files.writes(), nth);  // nothing is tried after a failure
            }
            EXPECT_EQ(read(), std::string("abcdef").substr(0, (nth - 1) * 2));
            EXPECT_EQ(append(stream, "!"), XML_OK);  // the stream stays usable
            std::filesystem::remove(path_);
        }
    }
}

TEST_F(FileOutputStream, AFailedChunkEndsTheAppend) {
    for (std::size_t nth = 1; nth <= 3; ++nth) {
        const StreamPtr stream = create(0, 9);
        {
            FilePlan plan;
            plan.failAt = nth;
            plan.failErrno = EIO;
            FaultyFiles files(plan);
            EXPECT_EQ(append(stream, std::string(700, 'a')), XML_REFUSED);
            EXPECT_EQ(files.writes(), nth);
        }
        EXPECT_EQ(read(), std::string((nth - 1) * 256, 'a'));
        std::filesystem::remove(path_);
    }
}

TEST_F(FileOutputStream, InvalidTextAfterFullChunks) {
    const StreamPtr stream = create(0, 9);
    EXPECT_EQ(append(stream, std::string(600, 'a') + "\xFF"), XML_REFUSED);
    EXPECT_EQ(read(), std::string(512, 'a'));
    EXPECT_EQ(append(stream, "\xE4\xB8\xAD"), XML_OK);
    EXPECT_EQ(read(), std::string(512, 'a') + "\xD6\xD0");
}

TEST_F(FileOutputStream, HeldBackBytesAreNotWrittenOnClosing) {
    StreamPtr stream = create(0, 9);
    EXPECT_EQ(append(stream, "ab\xE4\xB8"), XML_OK);
    XML_IO_FileOutStreamFlush(stream.get());
    stream.reset();
    EXPECT_EQ(read(), "ab");
}

}  // namespace
