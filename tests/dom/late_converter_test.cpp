// Converters are opened for the first text that needs one, which only their absence shows.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "compactxml.h"
#include "io/output_stream.h"
#include "tests/support/faults.h"
#include "tests/support/owners.h"

namespace {

using support::MissingConverters;

struct Built {
    XML_DOM_Node *root;
    std::string error;
};

Built build(const std::string &document) {
    char error[256] = "";
    XML_DOM_Node *root = XML_DOM_BuildTreeByMem(
        document.data(), static_cast<std::uint32_t>(document.size()), sizeof error, error);
    return {root, error};
}

TEST(LateConverter, AsciiIsBuiltAndWrittenWithoutOne) {
    const std::string document = "<a xmlns:p=\"u\"><p:b c=\"d &lt;\">text</p:b></a>";
    const MissingConverters missing;
    const Built built = build(document);
    ASSERT_NE(built.root, nullptr) << built.error;
    char *text = nullptr;
    std::uint32_t length = 0;
    ASSERT_EQ(XML_DOM_TranslateStr(built.root, XML_DOM_NO_DECLARATION, &text, &length), XML_OK);
    EXPECT_EQ(std::string(text, length), document);
    std::free(text);
    XML_DOM_DelNode(built.root);
    EXPECT_EQ(missing.wanted(), 0u);
}

TEST(LateConverter, OtherTextFailsTheBuildAsTheSetUpDoes) {
    for (const char *document :
         {"<a>\xC3\xA9</a>", "<a>&#233;</a>", "<a b=\"\xC3\xA9\"/>", "<a \xC3\xA9=\"\"/>",
          "<\xC3\xA9/>", "<a xmlns=\"\xC3\xA9\"/>", "<a xmlns:\xC3\xA9=\"u\"/>",
          "<a><![CDATA[\xC3\xA9]]></a>", "<a><b/>text<c>\xC3\xA9</c></a>"}) {
        support::FaultyHeap heap(0);
        {
            const MissingConverters missing;
            const Built built = build(document);
            EXPECT_EQ(built.root, nullptr) << document;
            EXPECT_EQ(built.error, "Failed to initialize DOM SAX.") << document;
            EXPECT_GT(missing.wanted(), 0u) << document;
        }
        EXPECT_EQ(heap.blocksInUse(), 0u) << document;
    }
}

// What is wrong with the document is told as ever, even behind text that was converted.
TEST(LateConverter, AFaultyDocumentIsToldWithItsOwnMessage) {
    const MissingConverters missing;
    const Built built = build("<a></b>");
    EXPECT_EQ(built.root, nullptr);
    EXPECT_EQ(built.error, "The Line 1 Column 6 :\"<a></b>\", tag name mismatch.");
}

TEST(LateConverter, OtherTextCannotBeWritten) {
    const Built built = build("<a>\xC3\xA9</a>");
    ASSERT_NE(built.root, nullptr);
    const MissingConverters missing;
    char *text = nullptr;
    std::uint32_t length = 7;
    EXPECT_NE(XML_DOM_TranslateStr(built.root, 0, &text, &length), XML_OK);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(length, 7u);
    XML_DOM_DelNode(built.root);
}

// A stream that was to convert and cannot does not pass for one that need not.
TEST(LateConverter, AStreamWithoutOneStillConverts) {
    const MissingConverters missing;
    const support::StreamPtr stream(
        cxml::XML_IO_MemOutStreamCreateLate(XML_ENCODING_GB18030, XML_ENCODING_UTF_8));
    ASSERT_TRUE(stream);
    EXPECT_TRUE(cxml::XML_IO_Converts(stream.get()));
    EXPECT_FALSE(cxml::XML_IO_FailedToOpen(stream.get()));
    EXPECT_EQ(XML_IO_OutStreamAppend(stream.get(), "\xD6\xD0", 2), XML_REFUSED);
    EXPECT_TRUE(cxml::XML_IO_FailedToOpen(stream.get()));
    EXPECT_TRUE(cxml::XML_IO_Converts(stream.get()));
    EXPECT_EQ(XML_IO_OutStreamAppend(stream.get(), "ab", 2), XML_OK);
}

// Streams of programs say at once what they cannot do.
TEST(LateConverter, OutputStreamsOpenTheirsAtOnce) {
    const MissingConverters missing;
    EXPECT_EQ(XML_IO_MemOutStreamCreate(XML_ENCODING_UTF_8, XML_ENCODING_GB18030), nullptr);
    EXPECT_EQ(missing.wanted(), 1u);
}

}  // namespace
