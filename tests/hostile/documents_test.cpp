// Documents of every shape, in every encoding and in one-byte chunks, cost as much for each of their
// bytes when there are eight times as many of them.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "tests/hostile/work.h"
#include "tests/support/document_shapes.h"
#include "tests/support/feeds.h"
#include "tests/support/reference_iconv.h"
#include "tests/support/texts.h"

namespace {

using hostile::effortOf;
using hostile::staysLevel;
using support::DocumentShape;
using support::Feed;

// The shorter document is long enough for whatever begins later than at the first byte.
constexpr std::size_t kItems = 1000;
constexpr std::size_t kBytes = 30000;
constexpr std::size_t kPieceShare = 2;  // lists of one-byte chunks get a document so much smaller

std::string declaredIn(std::uint32_t encoding, const std::string &document) {
    const std::string declaration =
        std::string("<?xml version='1.0' encoding='") + support::encodingName(encoding) + "'?>";
    return support::inEncoding(encoding, declaration + document);
}

// Every encoding that has the characters of the document.
bool canHold(std::uint32_t encoding, const std::string &document) {
    return support::convertWhole(XML_ENCODING_UTF_8, encoding, document).error == 0;
}

// Of those that differ in how they are converted, each has to do with every shape; of the others with
// these, one for each kind of token.
bool isWanted(const DocumentShape &shape, std::uint32_t encoding) {
    if (encoding == XML_ENCODING_UTF_8 || encoding == XML_ENCODING_GB18030) return true;
    for (const char *name :
         {"Attributes", "Nested", "Siblings", "TextOfMultibyteCharacters", "Value", "Comment",
          "CData", "InstructionData", "Doctype", "ElementName"}) {
        if (shape.name == std::string_view(name)) return true;
    }
    return false;
}

struct Document {
    Document(const DocumentShape &shape, std::uint32_t encoding, std::size_t n, bool inPieces)
        : Document(declaredIn(encoding, shape.document(n)), inPieces) {}

    std::size_t bytes;
    Feed feed;

  private:
    Document(const std::string &text, bool inPieces)
        : bytes(text.size()),
          feed(inPieces ? support::listInPieces(text, 1) : support::memoryFeed(text)) {}
};

void expectLevel(const DocumentShape &shape, std::uint32_t encoding, bool inPieces) {
    const std::size_t whole = shape.unit == support::kItems ? kItems : kBytes;
    const std::size_t n = inPieces ? whole / kPieceShare : whole;
    const Document one(shape, encoding, n, inPieces);
    const Document eight(shape, encoding, hostile::kGrowth * n, inPieces);
    SCOPED_TRACE(std::string(shape.name) + (inPieces ? " in pieces" : ""));
    const bool accepted = shape.message == nullptr;
    const auto level = [&](const auto &job) {
        return staysLevel(effortOf(one.bytes, [&] { job(one.feed); }),
                          effortOf(eight.bytes, [&] { job(eight.feed); }));
    };
    EXPECT_TRUE(level([&](const Feed &feed) {
        EXPECT_EQ(feed.parse(nullptr) == XML_OK, accepted);
    })) << "parse";
    EXPECT_TRUE(level([&](const Feed &feed) {
        XML_DOM_Node *root = feed.build(0, nullptr);
        XML_DOM_DelNode(root);
        EXPECT_EQ(root != nullptr, accepted);
    })) << "build and delete";
}

class HostileDocuments : public testing::TestWithParam<std::uint32_t> {};

TEST_P(HostileDocuments, CostTheSameForEachByte) {
    const std::uint32_t encoding = GetParam();
    for (const auto shapes : {support::structures(), support::tokens()}) {
        for (const DocumentShape &shape : shapes) {
            if (!isWanted(shape, encoding) || !canHold(encoding, shape.document(16))) continue;
            for (const bool inPieces : {false, true}) expectLevel(shape, encoding, inPieces);
        }
    }
}

// So long that a buffer which grew in small steps would be moved more often than its bytes are read.
TEST(HostileTokens, OfMegabytesInPieces) {
    constexpr std::size_t kLong = 250000, kPiece = 1000;
    for (const DocumentShape &shape : support::tokens()) {
        const auto effort = [&](std::size_t n) {
            const std::string document = shape.document(n);
            const Feed feed = support::listInPieces(document, kPiece);
            return effortOf(document.size(), [&] { EXPECT_EQ(feed.parse(nullptr), XML_OK); });
        };
        EXPECT_TRUE(staysLevel(effort(kLong), effort(hostile::kGrowth * kLong))) << shape.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Encodings, HostileDocuments,
                         testing::Range(std::uint32_t{0}, support::kEncodingCount),
                         [](const auto &encoding) {
                             return "Number" + std::to_string(encoding.param);
                         });

}  // namespace
