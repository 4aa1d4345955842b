// Documents of gigabytes made of many small things.
#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "gtest/gtest.h"
#include "tests/support/big_events.h"
#include "tests/support/faults.h"
#include "tests/support/huge_list.h"

namespace {

using support::BigEvents;
using support::FaultyHeap;
using support::HugeList;
using support::HugeString;
using support::kHugeBlock;

constexpr std::uint64_t k32 = std::uint64_t{1} << 32;

// An element of 1 KiB with its line break.
std::string kilobyte() {
    return "<b>" + std::string(1024 - 8, 'a') + "</b>\n";
}

TEST(HugeDocument, OfManyElementsIsReadWhole) {
    HugeList document(kilobyte());
    document.add("<a>").repeat(k32 + kHugeBlock).add("</a >?");
    const FaultyHeap heap(0);
    BigEvents events;
    EXPECT_EQ(XML_Parser_ByMemList(document.list(), events.handler()), XML_REFUSED);
    const std::uint64_t elements = (k32 + kHugeBlock) / 1024;
    EXPECT_EQ(events.elements, elements + 1);
    EXPECT_EQ(events.calls, 3 * elements + 2);
    EXPECT_EQ(events.code, 5);
    EXPECT_EQ(events.line, static_cast<std::int32_t>(elements + 1));
    EXPECT_EQ(events.column, 6);
    EXPECT_LE(heap.largestBlock(), 4096u);
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

// One chunk of the greatest length there is, and another one.
TEST(HugeDocument, InAChunkOfFourGigabytesIsReadWhole) {
    const std::string head = "<a>" + std::string(1024 - 3, ' ');
    const HugeString bytes({.length = k32, .filler = kilobyte(), .head = head});
    ASSERT_TRUE(bytes.text());
    XML_IO_MemChunk rest = {nullptr, 4, reinterpret_cast<const unsigned char *>("</a>")};
    XML_IO_MemChunk first = {&rest, UINT32_MAX,
                             reinterpret_cast<const unsigned char *>(bytes.text())};
    const XML_IO_MemList list = {&first};
    BigEvents events;
    EXPECT_EQ(XML_Parser_ByMemList(&list, events.handler()), XML_OK);
    EXPECT_EQ(events.elements, k32 / 1024);
}

TEST(HugeDocument, FileIsReadWhole) {
    const std::string path = testing::TempDir() + "compactxml_huge_" + std::to_string(getpid());
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    ASSERT_GE(fd, 0);
    const std::string block = support::hugeBlock(kilobyte());
    bool written = write(fd, "<a>", 3) == 3;
    for (std::uint64_t left = k32; written && left != 0; left -= block.size()) {
        written = write(fd, block.data(), block.size()) == static_cast<ssize_t>(block.size());
    }
    written = written && write(fd, "</a>", 4) == 4;
    close(fd);
    BigEvents events;
    const std::uint32_t result = XML_Parser_ByFile(path.c_str(), events.handler());
    unlink(path.c_str());
    ASSERT_TRUE(written);
    EXPECT_EQ(result, XML_OK);
    EXPECT_EQ(events.elements, k32 / 1024 + 1);
    EXPECT_EQ(events.calls, 3 * (k32 / 1024) + 2);
}

// ---- lines and columns --------------------------------------------------------------------------

struct Place {
    std::int32_t line, column;
    bool operator==(const Place &) const = default;
};

// Where an error behind so many bytes of a filler is reported.
Place placeBehind(std::string_view filler, std::uint64_t bytes) {
    HugeList document(filler);
    document.add("<a>").repeat(bytes).add("<1/></a>");
    BigEvents events;
    EXPECT_EQ(XML_Parser_ByMemList(document.list(), events.handler()), XML_REFUSED);
    EXPECT_EQ(events.code, 9);
    return {events.line, events.column};
}

TEST(HugePosition, ColumnsStopAtTheGreatestNumber) {
    constexpr std::uint64_t kBefore = 5;  // "<a>" and "<", and the first column is 1
    EXPECT_EQ(placeBehind(" ", INT32_MAX - kBefore - 1), (Place{1, INT32_MAX - 1}));
    EXPECT_EQ(placeBehind(" ", INT32_MAX - kBefore), (Place{1, INT32_MAX}));
    EXPECT_EQ(placeBehind(" ", INT32_MAX - kBefore + 1), (Place{1, INT32_MAX}));
    EXPECT_EQ(placeBehind(" ", k32 + 1), (Place{1, INT32_MAX}));
    // Characters, not bytes.
    EXPECT_EQ(placeBehind("\xC3\xA9", 1000), (Place{1, 505}));
}

TEST(HugePosition, LinesStopAtTheGreatestNumber) {
    EXPECT_EQ(placeBehind("\n", INT32_MAX - 1), (Place{INT32_MAX, 2}));
    EXPECT_EQ(placeBehind("\n", INT32_MAX), (Place{INT32_MAX, 2}));
    EXPECT_EQ(placeBehind("\n", k32 + 1), (Place{INT32_MAX, 2}));
}

// ---- encodings ------------------------------------------------------------------------------------

constexpr std::string_view kUtf16Head("\xFF\xFE<\0a\0>\0", 8);
constexpr std::string_view kUtf16Tail("<\0/\0a\0>\0", 8);

// Of n bytes in memory, read as UTF-16, a text.
void expectUtf16(std::string_view character, std::uint64_t length, std::int32_t code) {
    const HugeString document(
        {.length = length, .filler = character, .head = kUtf16Head, .tail = kUtf16Tail});
    ASSERT_TRUE(document.text());
    const FaultyHeap heap(0);
    BigEvents events;
    const std::uint32_t result =
        XML_Parser_ByMem(document.text(), static_cast<std::uint32_t>(length), events.handler());
    EXPECT_EQ(heap.blocksInUse(), 0u);
    EXPECT_EQ(result, code == 0 ? XML_OK : XML_REFUSED);
    EXPECT_EQ(events.code, code);
    if (code == 0) {
        EXPECT_EQ(events.longest, (length - 16) / 2);
    }
}

TEST(HugeEncoding, MemoryOfAsciiIsConverted) {
    expectUtf16(std::string_view("a\0", 2), k32 - 2, 0);
}

// Six gigabytes of UTF-8 find no room in 32 bits.
TEST(HugeEncoding, MemoryThatGrowsBeyondFourGigabytesIsRefused) {
    expectUtf16("\x2D\x4E", k32 - 2, 2);
}

TEST(HugeEncoding, ListIsConverted) {
    std::string element;
    for (const char c : kilobyte()) (element += c) += '\0';
    HugeList document(element);
    document.add(kUtf16Head).repeat(k32 + kHugeBlock).add(kUtf16Tail);
    BigEvents events;
    EXPECT_EQ(XML_Parser_ByMemList(document.list(), events.handler()), XML_OK);
    EXPECT_EQ(events.elements, (k32 + kHugeBlock) / 2048 + 1);
}

}  // namespace
