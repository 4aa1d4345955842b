#include "tools/cxml/path.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <string_view>

#include "tools/cxml/document.h"
#include "tools/cxml/failure.h"

namespace {

using tool::findNode;

constexpr char kDocument[] =
    "<r><a n='1'/>text<b/><a n='2'><c n='3'/><c n='4'/></a>"
    "<r n='5'><r n='6'/></r><端口 n='7'/><端口 n='8'><口径 n='9'/></端口><p:q xmlns:p='u' "
    "n='10'/></r>";

tool::Tree build(std::string_view text) {
    return tool::Tree{
        XML_DOM_BuildTreeByMem(text.data(), static_cast<std::uint32_t>(text.size()), 0, nullptr)};
}

struct Case {
    const char *path;
    const char *number;  // the attribute n of what is selected, "" for the root, null for nothing
};

constexpr Case kSelected[] = {
    // without positions
    {"/", ""},
    {"/r", ""},
    {"a", "1"},
    {"/r/a", "1"},
    {"/r/r", "5"},
    {"r", "5"},
    {"r/r", "6"},
    {"端口", "7"},
    {"/r/端口", "7"},
    {"q", "10"},
    {"//r", "5"},
    {"r//r", ""},
    {"a/c", nullptr},
    {"/a", nullptr},
    {"a/", nullptr},
    {"p:q", nullptr},
    {"text", nullptr},
    {"a//r", nullptr},
    {"端", nullptr},
    {"/r/", nullptr},
    {"a]", nullptr},
    // with positions
    {"a[1]", "1"},
    {"a[2]", "2"},
    {"a[02]", "2"},
    {"/r[1]", ""},
    {"/r[1]/a[2]/c[2]", "4"},
    {"a[2]/c", "3"},
    {"a[2]/c[1]", "3"},
    {"/r/r[1]/r[1]", "6"},
    {"端口[2]", "8"},
    {"端口[2]/口径[1]", "9"},
    {"/r/q[1]", "10"},
    {"a[3]", nullptr},
    {"a[1]/c[1]", nullptr},
    {"/r[2]", nullptr},
    {"/a[1]", nullptr},
    {"b[2]", nullptr},
    {"a[18446744073709551617]", nullptr},
    {"/r/text[1]", nullptr},
};

TEST(ToolPath, SelectsOneElement) {
    const tool::Tree root = build(kDocument);
    ASSERT_TRUE(root);
    for (const Case &c : kSelected) {
        const XML_DOM_Node *node = findNode(root.get(), c.path);
        if (!c.number) {
            EXPECT_FALSE(node) << c.path;
        } else if (*c.number == '\0') {
            EXPECT_EQ(node, root.get()) << c.path;
        } else {
            ASSERT_TRUE(node) << c.path;
            EXPECT_STREQ(XML_DOM_GetNodeAttrValByName(node, "n"), c.number) << c.path;
        }
    }
}

constexpr Case kNoPaths[] = {
    {"", "an empty path selects nothing"},
    {"a[", "'a[' is no path"},
    {"a[]", "'a[]' is no path"},
    {"a[0]", "'a[0]' is no path"},
    {"a[00]", "'a[00]' is no path"},
    {"a[-1]", "'a[-1]' is no path"},
    {"a[+1]", "'a[+1]' is no path"},
    {"a[ 1]", "'a[ 1]' is no path"},
    {"a[1", "'a[1' is no path"},
    {"a[1]b", "'a[1]b' is no path"},
    {"a[1][2]", "'a[1][2]' is no path"},
    {"a[@n='1']", "'a[@n='1']' is no path"},
    {"[1]", "'[1]' is no path"},
    {"/[1]", "'/[1]' is no path"},
    {"a[1]/", "'a[1]/' is no path"},
    {"a[1]//c", "'a[1]//c' is no path"},
    {"//a[1]", "'//a[1]' is no path"},
    {"a\xFF", "the path is not UTF-8 text: a\xEF\xBF\xBD"},
    {"a\xFF[1]", "the path is not UTF-8 text: a\xEF\xBF\xBD"},
};

TEST(ToolPath, RefusesWhatIsNoPath) {
    const tool::Tree root = build(kDocument);
    for (const Case &c : kNoPaths) {
        try {
            findNode(root.get(), c.path);
            ADD_FAILURE() << c.path;
        } catch (const tool::Failure &failure) {
            EXPECT_STREQ(failure.what(), c.number) << c.path;
            EXPECT_EQ(failure.status(), tool::kTrouble) << c.path;
        }
    }
}

TEST(ToolPath, RequiresAnElement) {
    const tool::Tree root = build(kDocument);
    EXPECT_EQ(tool::requireNode(root.get(), "/r", "f.xml"), root.get());
    try {
        tool::requireNode(root.get(), "x/y", "f.xml");
        ADD_FAILURE();
    } catch (const tool::Failure &failure) {
        EXPECT_STREQ(failure.what(), "f.xml: no element x/y");
        EXPECT_EQ(failure.status(), tool::kRefused);
    }
}

// The library cuts paths at 1023 bytes and steps at 255; the tool does not.
TEST(ToolPath, ReadsLongPaths) {
    for (const std::size_t bytes : {254u, 255u, 256u, 1022u, 1023u, 1024u, 5000u}) {
        const std::string name(bytes, 'x');
        const tool::Tree root = build("<r><" + name + "><" + name + "y/></" + name + "></r>");
        ASSERT_TRUE(root);
        XML_DOM_Node *child = XML_DOM_GetFirstChild(root.get());
        EXPECT_EQ(findNode(root.get(), name), child) << bytes;
        EXPECT_EQ(findNode(root.get(), "/r/" + name), child) << bytes;
        EXPECT_FALSE(findNode(root.get(), name + "z")) << bytes;
        EXPECT_FALSE(findNode(root.get(), name.substr(1))) << bytes;
        EXPECT_EQ(findNode(root.get(), name + "/" + name + "y"), XML_DOM_GetFirstChild(child))
            << bytes;
    }
}

TEST(ToolPath, ReadsDeepPaths) {
    constexpr std::size_t kLevels = 2000;
    std::string text, path;
    for (std::size_t i = 0; i < kLevels; ++i) {
        text += "<口>";
        path += "/口";
    }
    for (std::size_t i = 0; i < kLevels; ++i) text += "</口>";
    const tool::Tree root = build(text);
    ASSERT_TRUE(root);
    XML_DOM_Node *node = findNode(root.get(), path);
    ASSERT_TRUE(node);
    EXPECT_FALSE(XML_DOM_GetFirstChild(node));
    EXPECT_FALSE(findNode(root.get(), path + "/口"));
    EXPECT_EQ(findNode(root.get(), tool::pathOf(node)), node);
}

TEST(ToolPath, TellsWhereANodeStands) {
    const tool::Tree root = build(kDocument);
    EXPECT_EQ(tool::pathOf(root.get()), "/r");
    EXPECT_EQ(tool::pathOf(findNode(root.get(), "a[2]/c[2]")), "/r/a[2]/c[2]");
    EXPECT_EQ(tool::pathOf(findNode(root.get(), "端口[2]/口径")), "/r/端口[2]/口径[1]");
    EXPECT_EQ(tool::pathOf(findNode(root.get(), "q")), "/r/q[1]");
    const XML_DOM_Node *text = XML_DOM_GetNextSibling(XML_DOM_GetFirstChild(root.get()));
    ASSERT_EQ(XML_DOM_GetNodeType(text), XML_DOM_NODE_TEXT);
    EXPECT_EQ(tool::pathOf(text), "/r");
}

TEST(ToolPath, NamesHaveTheirPrefix) {
    const tool::Tree root = build(kDocument);
    EXPECT_EQ(tool::qualifiedName(root.get()), "r");
    EXPECT_EQ(tool::qualifiedName(findNode(root.get(), "端口")), "端口");
    EXPECT_EQ(tool::qualifiedName(findNode(root.get(), "q")), "p:q");
}

}  // namespace
