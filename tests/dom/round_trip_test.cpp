// Build, serialize and build again: the second tree is the first one.
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "compactxml.h"
#include "gtest/gtest.h"
#include "tests/support/feeds.h"
#include "tests/support/namespaces.h"
#include "tests/support/owners.h"
#include "tests/support/reference_iconv.h"
#include "tests/support/texts.h"
#include "tests/support/tree_dump.h"

namespace {

using support::describeTree;
using support::gb;
using support::kEncodingCount;
using support::NodePtr;
using support::printable;

using namespace std::string_literals;

std::string serialize(const XML_DOM_Node *node, std::uint32_t flags = 0) {
    char *text = nullptr;
    std::uint32_t length = 0;
    EXPECT_EQ(XML_DOM_TranslateStr(node, flags, &text, &length), XML_OK);
    const support::TextPtr owner(text);
    return text ? std::string(text, length) : std::string();
}

NodePtr build(const support::Feed &feed) {
    char error[512] = "";
    NodePtr tree(feed.build(sizeof error, error));
    EXPECT_TRUE(tree) << printable(error);
    return tree;
}

// The tree that the written form of a tree gives, through every source alike.
std::string rebuilt(const std::string &document) {
    std::string first;
    for (const support::Feed &feed : support::mainFeeds(document)) {
        const std::string tree = describeTree(build(feed).get());
        if (first.empty()) first = tree;
        EXPECT_EQ(tree, first) << feed.name();
    }
    return first;
}

void expectRoundTrip(const XML_DOM_Node *root, const std::string &label) {
    const std::string document = serialize(root);
    EXPECT_EQ(rebuilt(document), describeTree(root)) << label << ": " << printable(document);
}

NodePtr document(const char *name) {
    NodePtr root(XML_DOM_CreateElementNode(name));
    EXPECT_TRUE(root);
    EXPECT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
    return root;
}

NodePtr documentWithText(const std::string &text) {
    NodePtr root = document("a");
    EXPECT_EQ(XML_DOM_AddChildNode(root.get(), XML_DOM_CreateTextNode(text.c_str())), XML_OK);
    return root;
}

// ---------------------------------------------------------------- texts

TEST(RoundTrip, TextsOfBlanksAlone) {
    const std::string blanks = " \t\r\n";
    for (std::size_t length = 1; length <= 4; ++length) {
        for (unsigned pattern = 0; pattern < 1u << (2 * length); ++pattern) {
            std::string text;
            for (std::size_t i = 0; i < length; ++i) text += blanks[(pattern >> (2 * i)) & 3];
            expectRoundTrip(documentWithText(text).get(), printable(text));
        }
    }
}

TEST(RoundTrip, TextsThatNeedCare) {
    const std::vector<std::string> texts{"  a  ",
                                         "\ta\n",
                                         "\r\n\r\na b\r\n\r\n",
                                         " a",
                                         "a ",
                                         "]]>",
                                         "a]]>b",
                                         "]]]>>",
                                         "]]",
                                         "]",
                                         ">",
                                         " ]]> ",
                                         "&",
                                         "&amp;",
                                         "&#32;",
                                         "<",
                                         "<a>",
                                         "</a>",
                                         "<![CDATA[x]]>",
                                         "<!--",
                                         "\"'",
                                         "a\rb\nc\td",
                                         "\x7F",
                                         std::string(300, ' '),
                                         std::string(300, '&'),
                                         std::string(2000, ']') + '>',
                                         gb("中"),
                                         gb(" 中文 "),
                                         gb("ö"),
                                         gb("ö😀𠀀中"),
                                         gb("中]]>文"),
                                         gb("&中<"),
                                         gb("\u00A0a\u00A0"),
                                         gb("\u3000"),
                                         gb("\u0085\u2028")};
    for (const std::string &text : texts) {
        expectRoundTrip(documentWithText(text).get(), printable(text));
        const NodePtr root = document("a");
        ASSERT_NE(XML_DOM_AddAttr(root.get(), nullptr, "b",
                                  text.find('"') == std::string::npos ? text.c_str() : ""),
                  nullptr);
        expectRoundTrip(root.get(), "value " + printable(text));
    }
}

TEST(RoundTrip, CDataSections) {
    for (const std::string text :
         {"", " ", "  x  ", "<&>", "]]", "]] >", "\r\n", "]]&gt;", "a", "&#x20;"}) {
        const NodePtr root = document("a");
        XML_DOM_AddChildNode(root.get(), XML_DOM_CreateCDataNode(text.c_str()));
        XML_DOM_AddChildNode(root.get(), XML_DOM_CreateTextNode(" t "));
        XML_DOM_AddChildNode(root.get(), XML_DOM_CreateCDataNode(text.c_str()));
        expectRoundTrip(root.get(), printable(text));
    }
}

// Every legal character that the tree can hold, in text, value and CDATA at once.
TEST(RoundTrip, EveryKindOfCharacter) {
    std::vector<std::uint32_t> codePoints{0x9, 0xA, 0xD};
    for (std::uint32_t c = 0x20; c <= 0x7FF; ++c) codePoints.push_back(c);
    for (std::uint32_t c = 0x800; c <= 0xFFFD; c += 37) codePoints.push_back(c);
    for (std::uint32_t c = 0x10000; c <= 0x10FFFF; c += 0x1FFF) codePoints.push_back(c);
    std::string all;
    std::size_t held = 0;
    for (const std::uint32_t c : codePoints) {
        if (c >= 0xD800 && c < 0xE000) continue;
        const support::Conversion tree =
            support::convertWhole(XML_ENCODING_UTF_8, XML_ENCODING_GB18030, support::utf8(c));
        if (tree.error != 0) continue;
        if (c != '"') all += tree.bytes;
        ++held;
    }
    EXPECT_GT(held, 3000u);
    const NodePtr root = documentWithText(all);
    XML_DOM_AddChildNode(root.get(), XML_DOM_CreateCDataNode(all.c_str()));
    XML_DOM_AddAttr(root.get(), nullptr, "b", all.c_str());
    for (const std::uint32_t encoding :
         {XML_ENCODING_UTF_8, XML_ENCODING_UTF_16LE, XML_ENCODING_UTF_16BE, XML_ENCODING_UTF_32LE,
          XML_ENCODING_UTF_32BE, XML_ENCODING_GB18030}) {
        XML_DOM_SetEncoding(root.get(), encoding);
        const std::string text = serialize(root.get());
        // Compared as a whole first: the trees are long to print.
        EXPECT_TRUE(rebuilt(text) == describeTree(root.get())) << encoding;
    }
}

// ---------------------------------------------------------------- encodings

// What every one of the encodings can write.
constexpr const char *kCommonDocument =
    "<p:配置 xmlns:p='空间' xmlns='u' 名='交换机'><端口 p:速率=' 千兆 '>&#32;一&lt;二 ]]&gt; "
    "</端口>"
    "<b/><![CDATA[<中文>]]>&#10;</p:配置>";

// A mark in front of what is written in an encoding, where there is one that is recognised.
std::vector<std::string> marks(std::uint32_t encoding, const std::string &written) {
    switch (encoding) {
        case XML_ENCODING_UTF_8:
            return {"\xEF\xBB\xBF"};
        case XML_ENCODING_UTF_16LE:
            return {"\xFF\xFE"};
        case XML_ENCODING_UTF_16BE:
            return {"\xFE\xFF"};
        case XML_ENCODING_UTF_32LE:
        case XML_ENCODING_UCS_4LE:
            return {"\xFF\xFE\0\0"s};
        case XML_ENCODING_UTF_32BE:
        case XML_ENCODING_UCS_4BE:
            return {"\0\0\xFE\xFF"s};
        case XML_ENCODING_UCS_4:
            return {written.front() == '\0' ? "\0\0\xFE\xFF"s : "\xFF\xFE\0\0"s};
        default:
            return {};  // no mark, or the platform writes one itself
    }
}

TEST(RoundTrip, EveryEncodingWithAndWithoutAMark) {
    const NodePtr root = build(support::memoryFeed(kCommonDocument));
    ASSERT_TRUE(root);
    for (std::uint32_t encoding = 0; encoding < kEncodingCount; ++encoding) {
        ASSERT_EQ(XML_DOM_SetEncoding(root.get(), encoding), XML_OK);
        const std::string expected = describeTree(root.get());
        EXPECT_TRUE(expected.starts_with("encoding " + std::to_string(encoding) + " "));
        const std::string written = serialize(root.get());
        EXPECT_EQ(rebuilt(written), expected) << support::encodingName(encoding);
        for (const std::string &mark : marks(encoding, written)) {
            EXPECT_EQ(rebuilt(mark + written), expected)
                << support::encodingName(encoding) << " behind a mark";
        }
    }
}

TEST(RoundTrip, FromEveryEncodingToEveryOther) {
    NodePtr tree = build(support::memoryFeed(kCommonDocument));
    ASSERT_TRUE(tree);
    for (std::uint32_t from = 0; from < kEncodingCount; ++from) {
        for (std::uint32_t to = 0; to < kEncodingCount; ++to) {
            XML_DOM_SetEncoding(tree.get(), from);
            tree = build(support::memoryFeed(serialize(tree.get())));
            ASSERT_TRUE(tree) << from << " to " << to;
            ASSERT_EQ(XML_DOM_GetEncoding(tree.get()), from);
            XML_DOM_SetEncoding(tree.get(), to);
            const std::string expected = describeTree(tree.get());
            tree = build(support::memoryFeed(serialize(tree.get())));
            ASSERT_TRUE(tree) << from << " to " << to;
            EXPECT_EQ(describeTree(tree.get()), expected) << from << " to " << to;
        }
    }
}

// Without a declaration only a mark tells the encoding.
TEST(RoundTrip, WithoutADeclarationBehindAMark) {
    const NodePtr root = build(support::memoryFeed(kCommonDocument));
    ASSERT_TRUE(root);
    for (const std::uint32_t encoding :
         {XML_ENCODING_UTF_8, XML_ENCODING_UTF_16LE, XML_ENCODING_UTF_16BE, XML_ENCODING_UTF_32LE,
          XML_ENCODING_UTF_32BE}) {
        XML_DOM_SetEncoding(root.get(), encoding);
        const std::string written = serialize(root.get(), XML_DOM_NO_DECLARATION);
        for (const std::string &mark : marks(encoding, written)) {
            EXPECT_EQ(rebuilt(mark + written), describeTree(root.get())) << encoding;
        }
    }
}

TEST(RoundTrip, WritingIsStable) {
    for (std::uint32_t encoding = 0; encoding < kEncodingCount; ++encoding) {
        const NodePtr root = build(support::memoryFeed(kCommonDocument));
        ASSERT_TRUE(root);
        XML_DOM_SetEncoding(root.get(), encoding);
        const std::string once = serialize(root.get());
        const NodePtr again = build(support::memoryFeed(once));
        ASSERT_TRUE(again);
        EXPECT_TRUE(serialize(again.get()) == once) << encoding;
    }
}

// ---------------------------------------------------------------- random trees

// Grows random trees by the library's own checked functions, the same ones in every run.
class TreeGrower {
  public:
    TreeGrower(std::uint32_t seed, std::uint32_t encoding) : random_(seed), encoding_(encoding) {}

    NodePtr grow() {
        NodePtr root(XML_DOM_CreateElementNode(name().c_str()));
        if (!root || XML_DOM_SetRoot(root.get()) != XML_OK) return nullptr;
        XML_DOM_SetEncoding(root.get(), encoding_);
        std::vector<XML_DOM_Node *> elements{root.get()};
        dress(root.get());
        for (std::uint32_t i = 1 + below(40); i > 0; --i) {
            XML_DOM_Node *parent = elements[below(static_cast<std::uint32_t>(elements.size()))];
            addChild(parent, elements);
        }
        return root;
    }

  private:
    std::uint32_t below(std::uint32_t limit) {
        return static_cast<std::uint32_t>(random_() % limit);
    }

    std::string name() {
        static const char *const kNames[] = {"a", "b", "c-1", "_x.2", "端口", "名", "长一点的名字"};
        return gb(kNames[below(7)]);
    }

    std::string prefix() {
        static const char *const kPrefixes[] = {"", "p", "q", "前缀", "xml"};
        return gb(kPrefixes[below(5)]);
    }

    std::string text(bool quotes) {
        static const char *const kCommon[] = {" ",    "\t",     "\r\n",       "x",   "y z",
                                              "<",    ">",      "&",          "]]>", "'",
                                              "中文", "交换机", "0123456789", "&lt;"};
        static const char *const kWide[] = {"ö",      "é\u0301", "😀",         "𠀀",
                                            "\u3000", "臺灣",    "\U0010FFFD"};
        const bool wide = encoding_ != XML_ENCODING_GB2312 && encoding_ != XML_ENCODING_GBK;
        std::string text;
        for (std::uint32_t i = 1 + below(6); i > 0; --i) {
            const std::uint32_t kind = below(20);
            if (kind == 0 && quotes)
                text += '"';
            else if (kind < 5 && wide)
                text += kWide[below(7)];
            else
                text += kCommon[below(14)];
        }
        return gb(text);
    }

    void dress(XML_DOM_Node *element) {
        for (std::uint32_t i = below(3); i > 0; --i) {
            const std::string declared = prefix();
            if (declared == "xml") continue;
            XML_DOM_AddNodeNameSpace(element, declared.c_str(), ("urn:" + text(false)).c_str());
        }
        // Refused, and left without, when nobody above has declared it.
        XML_DOM_SetNodeNameSpace(element, prefix().c_str());
        for (std::uint32_t i = below(4); i > 0; --i) {
            XML_DOM_AddAttr(element, prefix().c_str(), name().c_str(), text(false).c_str());
        }
    }

    void addChild(XML_DOM_Node *parent, std::vector<XML_DOM_Node *> &elements) {
        const std::uint32_t kind = below(4);
        XML_DOM_Node *child = nullptr;
        if (kind == 0) {
            // Two texts in a row would be one when they are read back.
            if (parent->lastChild && parent->lastChild->type == XML_DOM_NODE_TEXT) return;
            child = XML_DOM_CreateTextNode(text(true).c_str());
        } else if (kind == 1) {
            std::string section = text(true);
            if (section.find("]]>") != std::string::npos) section.clear();
            child = XML_DOM_CreateCDataNode(section.c_str());
        } else {
            child = XML_DOM_CreateElementNode(name().c_str());
        }
        ASSERT_NE(child, nullptr);
        ASSERT_EQ(XML_DOM_AddChildNode(parent, child), XML_OK);
        if (child->type != XML_DOM_NODE_ELEMENT) return;
        dress(child);
        elements.push_back(child);
    }

    std::mt19937 random_;
    std::uint32_t encoding_;
};

TEST(RoundTrip, RandomTrees) {
    std::size_t bytes = 0;
    for (std::uint32_t seed = 1; seed <= 60; ++seed) {
        for (std::uint32_t encoding = 0; encoding < kEncodingCount; ++encoding) {
            const NodePtr root = TreeGrower(seed * 16 + encoding, encoding).grow();
            ASSERT_TRUE(root);
            ASSERT_EQ(support::brokenLink(root.get()), "");
            const std::string written = serialize(root.get());
            const NodePtr again = build(support::memoryFeed(written));
            ASSERT_TRUE(again) << "seed " << seed << ", encoding " << encoding;
            ASSERT_EQ(describeTree(again.get()), describeTree(root.get()))
                << "seed " << seed << ", encoding " << encoding;
            ASSERT_EQ(support::brokenLink(again.get()), "");
            ASSERT_EQ(support::wrongNamespace(again.get()), "");
            ASSERT_TRUE(serialize(again.get()) == written);
            bytes += written.size();
        }
    }
    EXPECT_GT(bytes, 500000u);
}

TEST(RoundTrip, RandomTreesThroughEverySource) {
    for (std::uint32_t seed = 1; seed <= 13; ++seed) {
        const NodePtr root = TreeGrower(seed, seed % kEncodingCount).grow();
        ASSERT_TRUE(root);
        expectRoundTrip(root.get(), "seed " + std::to_string(seed));
    }
}

}  // namespace
