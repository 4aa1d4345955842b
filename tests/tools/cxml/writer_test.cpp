// Trees that no document gives, written so that they are read back.
#include "tools/cxml/writer.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tools/cxml/document.h"
#include "tools/cxml/escaping.h"
#include "tools/cxml/failure.h"

namespace {

using tool::Tree;

// In GB18030 the last byte of this character looks like a bracket.
constexpr char kBracketByte[] = "\x81]";

TEST(Escaping, FindsTheEndOfASection) {
    const struct {
        const char *content;
        std::size_t at;
    } cases[] = {
        {"", std::string::npos},
        {"]]", std::string::npos},
        {"]>", std::string::npos},
        {"]]>", 0},
        {"]]]>", 1},
        {"a]]>]]>", 1},
        {"\x81]]>", std::string::npos},  // the character, then "]>"
        {"\x81]]]>", 2},
        {"\x81\x30\x81\x30]]>", 4},
        {"]]\x81]]>", std::string::npos},
    };
    for (const auto &c : cases) EXPECT_EQ(tool::findSectionEnd(c.content), c.at) << c.content;
}

std::string wrapped(const std::string &content) {
    std::string all;
    tool::wrapSection(content, [&](std::string_view piece) { all += piece; });
    return all;
}

TEST(Escaping, DividesSections) {
    EXPECT_EQ(wrapped(""), "<![CDATA[]]>");
    EXPECT_EQ(wrapped("a]]b"), "<![CDATA[a]]b]]>");
    EXPECT_EQ(wrapped("a]]>b"), "<![CDATA[a]]]]><![CDATA[>b]]>");
    EXPECT_EQ(wrapped("]]>]]>"), "<![CDATA[]]]]><![CDATA[>]]]]><![CDATA[>]]>");
}

Tree newRoot(const char *name) {
    Tree root{XML_DOM_CreateElementNode(name)};
    EXPECT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
    return root;
}

std::string written(const XML_DOM_Node *node, const tool::WriteStyle &style) {
    std::string path =
        (std::filesystem::temp_directory_path() / "cxml-writer-").string() + std::string(6, 'X');
    const int file = mkstemp(path.data());
    EXPECT_GE(file, 0);
    close(file);
    std::string text;
    try {
        tool::Output output{path};
        tool::writeTree(node, style, "doc", output);
        output.commit();
        std::ifstream stream(path, std::ios::binary);
        text.assign(std::istreambuf_iterator<char>(stream), {});
        // Whatever was written is a document.
        const Tree back = tool::loadDocument(path, tool::kRefused);
        EXPECT_TRUE(back);
    } catch (const tool::Failure &failure) {
        text = std::string("failed: ") + failure.what();
    }
    std::filesystem::remove(path);
    return text;
}

TEST(Writer, DividesSectionsInBothStyles) {
    const Tree root = newRoot("a");
    XML_DOM_AddChildNode(root.get(), XML_DOM_CreateCDataNode("x]]>y"));
    tool::WriteStyle style;
    style.declaration = false;
    EXPECT_EQ(written(root.get(), style), "<a><![CDATA[x]]]]><![CDATA[>y]]></a>");
    style.indent = 2;
    EXPECT_EQ(written(root.get(), style), "<a><![CDATA[x]]]]><![CDATA[>y]]></a>\n");
}

TEST(Writer, WritesElementsBelowTheRoot) {
    const Tree root = newRoot("a");
    XML_DOM_Node *child = XML_DOM_CreateElementNode("b");
    XML_DOM_AddChildNode(root.get(), child);
    XML_DOM_AddChildNode(child, XML_DOM_CreateElementWithText("c", "1"));
    tool::WriteStyle style;
    EXPECT_EQ(written(child, style), "<b><c>1</c></b>");
    style.indent = 1;
    EXPECT_EQ(written(child, style), "<b>\n <c>1</c>\n</b>\n");
}

TEST(Writer, RefusesTextThatIsNotInTheTreesEncoding) {
    const Tree root = newRoot("a");
    XML_DOM_AddChildNode(root.get(), XML_DOM_CreateTextNode("ok\xFF\xFF"));
    EXPECT_EQ(written(root.get(), {}), "failed: doc: UTF-8 has no character for U+FFFD in /a");
}

TEST(Writer, KeepsCharactersWithBytesThatLookLikeMarkup) {
    const Tree root = newRoot("a");
    XML_DOM_AddChildNode(root.get(),
                         XML_DOM_CreateCDataNode((std::string(kBracketByte) + "]>").c_str()));
    tool::WriteStyle style;
    style.declaration = false;
    style.indent = 0;
    EXPECT_EQ(written(root.get(), style), "<a><![CDATA[\xE4\xB9\x9A]>]]></a>\n");
}

}  // namespace
