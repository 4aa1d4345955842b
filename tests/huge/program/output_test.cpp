// Output of gigabytes: all of it, or a refusal that leaves the stream as it was.
#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "gtest/gtest.h"
#include "tests/support/faults.h"
#include "tests/support/huge_string.h"
#include "tests/support/owners.h"

namespace {

using support::FaultyHeap;
using support::HugeString;
using support::HugeText;
using support::NodePtr;
using support::StreamPtr;
using support::TextPtr;

constexpr std::uint64_t k31 = std::uint64_t{1} << 31;
constexpr std::uint64_t k32 = std::uint64_t{1} << 32;
// What a memory stream holds at most: with the NUL, 1 KiB less than 32 bits count.
constexpr std::uint64_t kMostHeld = k32 - 1 - 1024 - 1;

std::uint32_t append(const StreamPtr &stream, const HugeString &text, std::uint64_t length) {
    return XML_IO_OutStreamAppend(stream.get(), text.text(), static_cast<std::uint32_t>(length));
}

// The bytes that a memory stream holds, which end in one of its own.
std::uint64_t held(const StreamPtr &stream, char last) {
    std::uint32_t length = 0;
    const char *bytes = XML_IO_MemOutStreamGetBuf(stream.get(), &length);
    if (!bytes) return 0;
    EXPECT_EQ(bytes[length], '\0');
    EXPECT_EQ(bytes[length - 1], last);
    return length;
}

class HugeMemoryOutput : public testing::TestWithParam<std::uint64_t> {};

TEST_P(HugeMemoryOutput, IsHeldOrRefused) {
    const std::uint64_t length = GetParam();
    const HugeString text;
    ASSERT_TRUE(text.text());
    const FaultyHeap heap(0);
    {
        const StreamPtr stream(XML_IO_MemOutStreamCreate(XML_ENCODING_UTF_8, XML_ENCODING_UTF_8));
        ASSERT_EQ(XML_IO_OutStreamAppend(stream.get(), "bc", 2), XML_OK);
        const bool fits = 2 + length <= kMostHeld;
        EXPECT_EQ(append(stream, text, length), fits ? XML_OK : XML_REFUSED);
        EXPECT_EQ(held(stream, fits ? 'a' : 'c'), fits ? 2 + length : 2);
        EXPECT_EQ(XML_IO_OutStreamAppend(stream.get(), "d", 1),
                  2 + length != kMostHeld ? XML_OK : XML_REFUSED);
    }
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

// The same in pieces, and with a conversion that leaves it as it is.
TEST_P(HugeMemoryOutput, InPiecesIsHeldOrRefused) {
    const HugeString text;
    ASSERT_TRUE(text.text());
    constexpr std::uint64_t kPiece = std::uint64_t{1} << 28;
    for (const std::uint32_t target : {XML_ENCODING_UTF_8, XML_ENCODING_GB18030}) {
        const FaultyHeap heap(0);
        {
            const StreamPtr stream(XML_IO_MemOutStreamCreate(XML_ENCODING_UTF_8, target));
            std::uint64_t done = 0;
            std::uint32_t status = XML_OK;
            for (std::uint64_t left = GetParam(); left != 0 && status == XML_OK;) {
                const std::uint64_t piece = left < kPiece ? left : kPiece;
                status = append(stream, text, piece);
                left -= piece;
                if (status == XML_OK) done += piece;
            }
            EXPECT_EQ(status, GetParam() <= kMostHeld ? XML_OK : XML_REFUSED);
            if (target == XML_ENCODING_UTF_8) {
                EXPECT_EQ(held(stream, 'a'), done);
            }
            EXPECT_LE(held(stream, 'a'), kMostHeld);
            EXPECT_GE(held(stream, 'a'), done);
        }
        EXPECT_EQ(heap.blocksInUse(), 0u);
    }
}

INSTANTIATE_TEST_SUITE_P(Huge, HugeMemoryOutput,
                         testing::Values(k31 - 1, k31, kMostHeld - 2, kMostHeld - 1, k32 - 1));

TEST(HugeWidenedOutput, ThatIsWidenedBeyondFourGigabytesIsRefused) {
    const HugeString text;
    ASSERT_TRUE(text.text());
    for (const std::uint32_t target : {XML_ENCODING_UTF_16BE, XML_ENCODING_UTF_32LE}) {
        const StreamPtr stream(XML_IO_MemOutStreamCreate(XML_ENCODING_UTF_8, target));
        EXPECT_EQ(append(stream, text, k31), XML_REFUSED);
        std::uint32_t length = 0;
        XML_IO_MemOutStreamGetBuf(stream.get(), &length);
        EXPECT_LE(length, kMostHeld);
        EXPECT_GT(length, kMostHeld - 1024);
        EXPECT_EQ(length % 4, 0u);
    }
}

// ---- files --------------------------------------------------------------------------------------

// A file whose bytes are counted and forgotten; its name is that of a pipe.
class CountingFile {
  public:
    CountingFile() {
        open_ = pipe2(ends_, O_CLOEXEC) == 0 &&
                pthread_create(&reader_, nullptr, &CountingFile::read, this) == 0;
    }
    bool isOpen() const { return open_; }
    std::string path() const { return "/proc/self/fd/" + std::to_string(ends_[1]); }

    // What has been written, when no stream is open any more.
    std::uint64_t finish() {
        close(ends_[1]);
        pthread_join(reader_, nullptr);
        close(ends_[0]);
        return isRegular_ ? bytes_ : 0;
    }

  private:
    static void *read(void *self) {
        auto &file = *static_cast<CountingFile *>(self);
        static char buffer[1 << 16];
        ssize_t got = 0;
        while ((got = ::read(file.ends_[0], buffer, sizeof buffer)) > 0) {
            const auto count = static_cast<std::size_t>(got);
            file.bytes_ += count;
            // One character again and again, of one byte or two.
            const bool same = count < 2 || std::memcmp(buffer, buffer + 2, count - 2) == 0;
            file.isRegular_ = file.isRegular_ && same && std::memchr(buffer, 'a', 2);
        }
        return nullptr;
    }

    int ends_[2];
    pthread_t reader_;
    std::uint64_t bytes_ = 0;
    bool isRegular_ = true;
    bool open_;
};

// Appends a text to such a file, and more of it.
void expectWritten(std::uint32_t target, std::uint64_t length, std::uint64_t width) {
    CountingFile file;
    ASSERT_TRUE(file.isOpen());
    const HugeString text;
    ASSERT_TRUE(text.text());
    {
        const StreamPtr stream(
            XML_IO_FileOutStreamCreate(file.path().c_str(), XML_ENCODING_UTF_8, target));
        ASSERT_TRUE(stream);
        EXPECT_EQ(append(stream, text, length), XML_OK);
        EXPECT_EQ(append(stream, text, 2), XML_OK);
    }
    EXPECT_EQ(file.finish(), width * (length + 2));
}

class HugePlainFileOutput : public testing::TestWithParam<std::uint64_t> {};

TEST_P(HugePlainFileOutput, IsWrittenWhole) {
    expectWritten(XML_ENCODING_UTF_8, GetParam(), 1);
}
TEST(HugeFileOutput, ThatIsWidenedBeyondFourGigabytesIsWrittenWhole) {
    expectWritten(XML_ENCODING_UTF_16LE, k31, 2);
}

INSTANTIATE_TEST_SUITE_P(Huge, HugePlainFileOutput, testing::Values(k31 - 1, k31, k32 - 1));

// ---- trees ----------------------------------------------------------------------------------------

// An element whose text is made while it is written.
class BigElement {
  public:
    explicit BigElement(const HugeText &text) : text_(text), root_(XML_DOM_CreateElementNode("e")) {
        XML_DOM_AddChildNode(root_.get(), XML_DOM_CreateTextNode("t"));
        state_.userData = this;
        state_.textCallback = [](XML_DOM_Node *, XML_DOM_TranslateState *, void *self) {
            return static_cast<BigElement *>(self)->text_.text();
        };
    }
    bool isThere() const { return text_.text() && root_; }
    XML_DOM_Node *node() { return root_.get(); }

    std::uint32_t write(char **bufferOut, std::uint32_t *lengthOut) {
        return XML_DOM_TranslateStrEx(root_.get(), 0, &state_, bufferOut, lengthOut);
    }

  private:
    HugeString text_;
    NodePtr root_;
    XML_DOM_TranslateState state_{};
};

constexpr std::uint64_t kMarkup = 7;  // <e></e>

// Expects an output of so many bytes, or a refusal.
void expectSerialized(const HugeText &text, std::uint64_t length) {
    BigElement element(text);
    ASSERT_TRUE(element.isThere());
    const FaultyHeap heap(0);
    char *buffer = nullptr;
    std::uint32_t written = 0;
    const bool fits = length + 1 <= kMostHeld;  // with the NUL that closes it
    EXPECT_EQ(element.write(&buffer, &written) == XML_OK, fits);
    ASSERT_EQ(buffer != nullptr, fits);
    if (fits) {
        EXPECT_EQ(written, length);
        EXPECT_EQ(std::string_view(buffer, 4), text.filler[0] == 'a' ? "<e>a" : "<e>&");
        EXPECT_STREQ(buffer + length - 4, "</e>");
    }
    std::free(buffer);
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

class HugeSerializedText : public testing::TestWithParam<std::uint64_t> {};

TEST_P(HugeSerializedText, IsHandedOverOrRefused) {
    expectSerialized({.length = GetParam() - kMarkup}, GetParam());
}

INSTANTIATE_TEST_SUITE_P(Huge, HugeSerializedText,
                         testing::Values(k31 - 1, k31, kMostHeld - 1, kMostHeld, k32 - 1, k32,
                                         k32 + 1, k32 + kMarkup, k32 + kMarkup + 1));

TEST(HugeSerialized, TextThatReferencesMakeLongIsHandedOverOrRefused) {
    expectSerialized({.length = std::uint64_t{1} << 29, .filler = "<"}, k31 + kMarkup);
    // Counted in 32 bits, this would be next to nothing.
    expectSerialized({.length = std::uint64_t{1} << 30, .filler = "<"}, k32 + kMarkup);
}

struct Pieces {
    std::uint64_t count, bytes;
};
std::uint32_t takePiece(void *context, const char *, std::uint32_t length) {
    auto &pieces = *static_cast<Pieces *>(context);
    ++pieces.count;
    pieces.bytes += length;
    return XML_OK;
}

// A function gets what is too long for a buffer, as long as no piece is.
TEST(HugeSerialized, TreeGoesToAFunctionWhole) {
    constexpr std::uint64_t kTexts = 5, kLength = 1'000'000'000;
    const NodePtr root(XML_DOM_CreateElementNode("e"));
    for (std::uint64_t i = 0; i < kTexts; ++i) {
        const HugeString text({.length = kLength});
        ASSERT_TRUE(text.text());
        XML_DOM_Node *child = XML_DOM_CreateTextNode(text.text());
        ASSERT_TRUE(child);
        ASSERT_EQ(XML_DOM_AddChildNode(root.get(), child), XML_OK);
    }
    Pieces pieces{};
    EXPECT_EQ(XML_DOM_OutPutTranslateStr(root.get(), 0, takePiece, &pieces), XML_OK);
    EXPECT_EQ(pieces.bytes, kTexts * kLength + kMarkup);
    const FaultyHeap heap(0);
    char *buffer = nullptr;
    std::uint32_t length = 12345;
    EXPECT_NE(XML_DOM_TranslateStr(root.get(), 0, &buffer, &length), XML_OK);
    EXPECT_EQ(buffer, nullptr);
    EXPECT_EQ(length, 12345u);
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

TEST(HugeSerialized, TextOfFourGigabytesIsNoPiece) {
    for (const std::uint64_t length : {k32 - 1, k32, k32 + 1}) {
        const HugeString text({.length = length});
        ASSERT_TRUE(text.text());
        Pieces pieces{};
        EXPECT_EQ(XML_OutTextString(text.text(), takePiece, &pieces),
                  length < k32 ? XML_OK : XML_REFUSED);
        EXPECT_EQ(pieces.bytes, length < k32 ? length : 0);
    }
}

}  // namespace
