#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <type_traits>
#include <utility>

#include "tests/wrapper/documents.h"

namespace {

using namespace compactxml;
using wrapper::kWithNul;
using wrapper::parsed;
using wrapper::written;

TEST(WrapperDocument, IsParsed) {
    const Document document = parse("<a b='1'>c</a>").value();
    EXPECT_TRUE(document);
    EXPECT_EQ(document.root().name(), "a");
    EXPECT_EQ(written(document), "<a b=\"1\">c</a>");
}

TEST(WrapperDocument, IsRefusedWithAMessage) {
    const Result<Document> document = parse("<a>\n</b>");
    ASSERT_FALSE(document);
    EXPECT_EQ(document.error().code, XML_REFUSED);
    EXPECT_TRUE(document.error().message.starts_with("The Line 2 Column "))
        << document.error().message;
    EXPECT_TRUE(document.error().message.ends_with("tag name mismatch."))
        << document.error().message;
    EXPECT_EQ(parse("").error().message, "Invalid parameter.");
    EXPECT_EQ(parse(std::string_view()).error().message, "Invalid parameter.");
    EXPECT_THROW(static_cast<void>(parse("<").value()), Exception);
}

TEST(WrapperDocument, MessagesAreUtf8) {
    EXPECT_NE(parse("<端口></b>").error().message.find("<端口></b>"), std::string::npos)
        << parse("<端口></b>").error().message;
    // The library quotes at most 63 bytes and cuts at a character.
    std::string text = "<a>";
    for (int i = 0; i < 60; ++i) text += "口";
    EXPECT_NE(parse(text + "</b>").error().message.find("口口"), std::string::npos);
}

TEST(WrapperDocument, IsParsedFromPieces) {
    const std::array<std::string_view, 4> pieces{"<a><b>of", "", "fice</", "b></a>"};
    EXPECT_EQ(written(parse(pieces).value()), "<a><b>office</b></a>");
    const std::vector<std::string_view> broken{"<a>", "</b>"};
    EXPECT_TRUE(parse(broken).error().message.ends_with("tag name mismatch."));
    EXPECT_FALSE(parse(std::span<const std::string_view>()));
}

TEST(WrapperDocument, IsReadFromAFile) {
    const std::string path = testing::TempDir() + "wrapper_document.xml";
    std::ofstream(path, std::ios::binary) << "<a>端口</a>";
    const Document document = readFile(path).value();
    EXPECT_EQ(document.root().textUtf8().value(), "端口");
    std::ofstream(path, std::ios::binary) << "<a>";
    EXPECT_TRUE(readFile(path).error().message.starts_with("The Line 1 Column "));
    std::remove(path.c_str());
    EXPECT_EQ(readFile(path).error().message, "cannot open the file");
}

TEST(WrapperDocument, NamesOfFilesAreNotCut) {
    const std::string path = testing::TempDir() + "wrapper_cut.xml";
    std::ofstream(path) << "<a/>";
    EXPECT_TRUE(readFile(path));
    EXPECT_EQ(readFile(path + '\0' + "x").error().message, "Invalid parameter.");
    std::remove(path.c_str());
}

TEST(WrapperDocument, MovesAndIsNotCopied) {
    static_assert(!std::is_copy_constructible_v<Document>);
    static_assert(!std::is_copy_assignable_v<Document>);
    static_assert(std::is_nothrow_move_constructible_v<Document>);
    Document first = parsed("<first/>");
    const Element root = first.root();
    Document second = std::move(first);
    EXPECT_EQ(second.root(), root);
    second = parsed("<second/>");
    EXPECT_EQ(second.root().name(), "second");
    const Document third(second.release());
    EXPECT_EQ(third.root().name(), "second");
    EXPECT_FALSE(second);
}

template <class D>
concept HasRoot = requires(D document) {
    std::forward<D>(document).root();
};
static_assert(HasRoot<Document &> && HasRoot<const Document &>);
static_assert(!HasRoot<Document> && !HasRoot<const Document>);  // a temporary takes its nodes along

TEST(WrapperDocument, ANullOneRefusesEverything) {
    Document document;
    EXPECT_FALSE(document);
    EXPECT_FALSE(document.root());
    EXPECT_EQ(document.get(), nullptr);
    EXPECT_EQ(document.encoding(), XML_ENCODING_UNKNOWN);
    EXPECT_EQ(document.encodingName(), "");
    EXPECT_FALSE(document.setEncoding(XML_ENCODING_UTF_8));
    EXPECT_FALSE(document.write());
    EXPECT_FALSE(document.writeTo([](std::string_view) { return true; }));
    EXPECT_FALSE(document.clone());
}

TEST(WrapperDocument, IsMadeFromNothing) {
    const Document document = Document::create("config").value();
    EXPECT_EQ(document.write().value().view(),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?><config/>");
    EXPECT_FALSE(Document::create(""));
    EXPECT_FALSE(Document::create("a b"));
    EXPECT_FALSE(Document::create(kWithNul));
}

TEST(WrapperDocument, IsClonedWithItsEncoding) {
    Document document = parsed("<p:a xmlns:p='urn:p' b='1'><c/>text</p:a>");
    document.setEncoding(XML_ENCODING_GBK).value();
    Document copy = document.clone().value();
    EXPECT_NE(copy.root(), document.root());
    EXPECT_EQ(copy.write().value().view(), document.write().value().view());
    copy.root().setText("other").value();
    EXPECT_EQ(document.root().text(), "text");
}

TEST(WrapperDocument, IsWrittenInItsEncoding) {
    Document document = parsed("<a>端口</a>");
    EXPECT_EQ(document.encodingName(), "UTF-8");
    EXPECT_EQ(document.write().value().view(),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a>端口</a>");
    document.setEncoding(XML_ENCODING_GB18030).value();
    EXPECT_EQ(document.encoding(), XML_ENCODING_GB18030);
    EXPECT_EQ(document.write(XML_DOM_NO_DECLARATION).value().view(), "<a>\xb6\xcb\xbf\xda</a>");
    EXPECT_FALSE(document.setEncoding(XML_ENCODING_UNKNOWN));
    EXPECT_EQ(document.encoding(), XML_ENCODING_GB18030);
}

TEST(WrapperDocument, BuffersHoldNulBytes) {
    Document document = parsed("<a/>");
    document.setEncoding(XML_ENCODING_UTF_16LE).value();
    Buffer buffer = document.write(XML_DOM_NO_DECLARATION).value();
    EXPECT_EQ(buffer.view(), std::string_view("<\0a\0/\0>\0", 8));
    EXPECT_EQ(buffer.size(), 8U);
    const Buffer moved = std::move(buffer);
    EXPECT_EQ(std::string_view(moved).size(), 8U);
    EXPECT_EQ(moved.data()[0], '<');
    EXPECT_EQ(Buffer().view(), "");
}

TEST(WrapperDocument, TextBeyondTheEncodingIsRefused) {
    Document document = parsed("<a>\xf0\x9f\x98\x80</a>");  // an emoji
    document.setEncoding(XML_ENCODING_GB2312).value();
    const Result<Buffer> buffer = document.write();
    ASSERT_FALSE(buffer);
    EXPECT_NE(buffer.error().code, XML_OK);
    EXPECT_NE(buffer.error().message, "");
}

}  // namespace
