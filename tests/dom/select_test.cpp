// Selecting one element by a path, reading its text, and the steps by themselves.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/owners.h"
#include "tests/support/texts.h"
#include "tests/support/tree_dump.h"
#include "tests/support/written.h"

namespace {

using support::NodePtr;
using support::parsed;

// The value of the attribute id of what a path selects, or "-".
std::string selected(const XML_DOM_Node *context, const std::string &path) {
    const XML_DOM_Node *node = XML_DOM_SelectSingleNode(context, path.c_str());
    if (!node) return "-";
    const char *id = XML_DOM_GetNodeAttrValByName(node, "id");
    return id ? id : "?";
}

// ---------------------------------------------------------------- paths

constexpr char kDocument[] =
    "<r id='0' xmlns:p='u'>text"
    "<a id='1'><b id='2'/><r id='3'><c id='4'/></r></a>"
    "<a id='5'><only id='6'/></a>"
    "<p:q id='7'><![CDATA[a]]></p:q>"
    "<a.b id='8'/></r>";

struct PathCase {
    const char *context, *path, *id;
};
constexpr PathCase kPaths[] = {
    {"/", "/", "0"},
    {"/", "/r", "0"},
    {"/", "/r/a", "1"},
    {"/", "a", "1"},
    {"/", "a/b", "2"},
    {"/", "/r/a/b", "2"},
    {"/", "a.b", "8"},
    {"/", "q", "7"},       // local names, without prefix
    {"/", "p:q", "-"},     // a prefix is no part of them
    {"/", "a/only", "-"},  // the first a has none, and the second is not tried
    {"/", "r", "-"},
    {"/", "A", "-"},
    {"/", "aa", "-"},
    {"/", "", "-"},
    {"/", "a/", "-"},
    {"/", "/r/", "-"},
    {"/", "./a", "-"},
    {"/", "a/..", "-"},
    {"/", "*", "-"},
    {"/", "a[1]", "-"},
    {"/", "a/@id", "-"},
    {"/", " a", "-"},
    // A slash behind a slash begins at the root again, if the node so far bears its name.
    {"/", "//", "-"},  // an empty root step takes in both slashes, an empty step follows
    {"/", "///", "0"},
    {"/", "//r", "-"},
    {"/", "//a", "1"},
    {"/", "/r//r", "0"},
    {"/", "/r//r/a", "1"},
    {"/", "/r//a", "-"},
    {"/", "a//b", "-"},
    {"/", "a//", "-"},
    {"/", "a/r//r", "0"},
    {"/", "a/r//r/a/b", "2"},
    {"/", "a/r//", "0"},
    // From elsewhere.
    {"a", "b", "2"},
    {"a", "/r", "-"},
    {"a", "/", "-"},
    {"a", "/a", "-"},
    {"a/r", "c", "4"},
    {"a/r", "/r", "0"},  // deep down, but named as the root is
    {"a/r", "/", "0"},
    {"a/r", "/r/a", "1"},
    {"a/r", "/r/c", "-"},
    {"a/b", "x", "-"},
};

TEST(SelectSingleNode, Paths) {
    const NodePtr root = parsed(kDocument);
    const std::string before = support::dumpTree(root.get());
    for (const PathCase &row : kPaths) {
        const XML_DOM_Node *context = XML_DOM_SelectSingleNode(root.get(), row.context);
        ASSERT_TRUE(context) << row.context;
        EXPECT_EQ(selected(context, row.path), row.id)
            << "\"" << row.path << "\" from " << row.context;
    }
    EXPECT_EQ(support::dumpTree(root.get()), before);
}

TEST(SelectSingleNode, WithoutADocumentThereIsNoRoot) {
    const NodePtr loose(XML_DOM_CreateElementWithText("r", "t"));
    EXPECT_EQ(XML_DOM_SelectSingleNode(loose.get(), "/"), nullptr);
    EXPECT_EQ(XML_DOM_SelectSingleNode(loose.get(), "/r"), nullptr);
    EXPECT_EQ(XML_DOM_SelectSingleNode(loose.get(), ""), nullptr);
    XML_DOM_AddChildNode(loose.get(), XML_DOM_CreateElementNode("a"));
    EXPECT_EQ(XML_DOM_SelectSingleNode(loose.get(), "a"), loose->lastChild);
}

TEST(SelectSingleNode, FromATextOnlyWhatARootStepOfNoNameGives) {
    const NodePtr root = parsed("<r>t</r>");
    EXPECT_EQ(XML_DOM_SelectSingleNode(root->firstChild, "a"), nullptr);
    EXPECT_EQ(XML_DOM_SelectSingleNode(root->firstChild, "/"), nullptr);
    EXPECT_EQ(XML_DOM_SelectSingleNode(root->firstChild, "/r"), nullptr);
}

TEST(SelectSingleNode, NamesInGB18030) {
    // Second bytes that are letters, '|' and '~'; four-byte characters with digits in them.
    const NodePtr root(XML_DOM_CreateElementNode("r"));
    ASSERT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
    for (const char *name : {"\x81\x41", "\x81\x7C", "\x81\x7E", "\x81\x30\x84\x36", "A\x81\x5C"}) {
        XML_DOM_Node *node = XML_DOM_CreateElementNodeInner(name);
        ASSERT_EQ(XML_DOM_AddChildNode(root.get(), node), XML_OK);
        EXPECT_EQ(XML_DOM_SelectSingleNode(root.get(), name), node);
        EXPECT_EQ(XML_DOM_SelectSingleNode(root.get(), (std::string("/r/") + name).c_str()), node);
    }
    EXPECT_EQ(XML_DOM_SelectSingleNode(root.get(), "A"), nullptr);
}

TEST(SelectSingleNode, StepsAreCutAt255BytesAndPathsAt1023) {
    const auto elementOf = [](std::size_t length, XML_DOM_Node *parent) {
        XML_DOM_Node *node = XML_DOM_CreateElementNodeInner(std::string(length, 'n').c_str());
        XML_DOM_AddChildNode(parent, node);
        return node;
    };
    const NodePtr root(XML_DOM_CreateElementNode("r"));
    ASSERT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
    XML_DOM_Node *of254 = elementOf(254, root.get());
    XML_DOM_Node *of255 = elementOf(255, root.get());
    elementOf(256, root.get());
    const auto select = [&](const std::string &path) {
        return XML_DOM_SelectSingleNode(root.get(), path.c_str());
    };
    EXPECT_EQ(select(std::string(254, 'n')), of254);
    for (const std::size_t length : {255, 256, 1022, 1023, 1024, 5000}) {
        EXPECT_EQ(select(std::string(length, 'n')), of255) << length;
        EXPECT_EQ(select("/r/" + std::string(length, 'n')), of255) << length;
    }
    EXPECT_EQ(select(std::string(256, 'n') + "/x"), nullptr);
    // A cut step is followed by what stands behind its slash.
    ASSERT_EQ(XML_DOM_AddChildNode(of255, XML_DOM_CreateElementNode("x")), XML_OK);
    EXPECT_EQ(select(std::string(256, 'n') + "/x"), of255->firstChild);
    EXPECT_EQ(select(std::string(1021, 'n') + "/x"), of255->firstChild);
    // One byte more and the name behind the slash is gone, which leaves an empty step.
    EXPECT_EQ(select(std::string(1022, 'n') + "/x"), nullptr);
    EXPECT_EQ(select(std::string(1023, 'n') + "/x"), of255);
}

// Names that are the same up to some byte, of lengths around that of a block.
TEST(SelectSingleNode, NamesThatDifferAnywhere) {
    for (std::size_t length = 1; length <= 40; ++length) {
        const NodePtr root(XML_DOM_CreateElementNode("r"));
        const auto add = [&](const std::string &name) {
            XML_DOM_Node *node = XML_DOM_CreateElementNodeInner(name.c_str());
            EXPECT_EQ(XML_DOM_AddChildNode(root.get(), node), XML_OK);
            return node;
        };
        const std::string name(length, 'n');
        ASSERT_EQ(XML_DOM_AddChildNode(root.get(), XML_DOM_CreateTextNode("nnn")), XML_OK);
        for (std::size_t at = 0; at < length; ++at) {
            std::string other = name;
            other[at] = 'm';
            add(other);
        }
        if (length > 1) add(name.substr(1));
        add(name + 'n');
        EXPECT_EQ(XML_DOM_SelectSingleNode(root.get(), name.c_str()), nullptr) << length;
        XML_DOM_Node *wanted = add(name);
        add(name);
        EXPECT_EQ(XML_DOM_SelectSingleNode(root.get(), name.c_str()), wanted) << length;
    }
}

// A tree may hold strings that the library did not allocate where it would.
TEST(SelectSingleNode, NamesAnywhereInMemory) {
    const NodePtr root(XML_DOM_CreateElementNode("r"));
    XML_DOM_Node *node = XML_DOM_CreateElementNode("name");
    ASSERT_EQ(XML_DOM_AddChildNode(root.get(), node), XML_OK);
    char *const own = node->name;
    for (std::size_t offset = 0; offset < 16; ++offset) {
        alignas(16) char memory[40] = {};
        std::memset(memory, 'x', sizeof memory - 1);
        std::strcpy(memory + offset, "name");
        node->name = memory + offset;
        EXPECT_EQ(XML_DOM_SelectSingleNode(root.get(), "name"), node) << offset;
        EXPECT_EQ(XML_DOM_SelectSingleNode(root.get(), "nam"), nullptr) << offset;
        EXPECT_EQ(XML_DOM_SelectSingleNode(root.get(), "names"), nullptr) << offset;
    }
    node->name = own;
}

TEST(SelectSingleNode, ALongWayDown) {
    const NodePtr root = parsed("<r/>");
    XML_DOM_Node *node = root.get();
    std::string path;
    for (int level = 0; level < 512; ++level) {
        XML_DOM_Node *child = XML_DOM_CreateElementNode("e");
        ASSERT_EQ(XML_DOM_AddChildNode(node, child), XML_OK);
        node = child;
        path += level == 0 ? "e" : "/e";
    }
    ASSERT_EQ(path.size(), 1023u);
    EXPECT_EQ(XML_DOM_SelectSingleNode(root.get(), path.c_str()), node);
    EXPECT_EQ(XML_DOM_SelectSingleNode(root.get(), (path + "x").c_str()), node);
    EXPECT_EQ(XML_DOM_SelectSingleNode(root.get(), ("/r/" + path).c_str()), nullptr);
}

// ---------------------------------------------------------------- texts and numbers

TEST(SelectedText, IsTheFirstTextChild) {
    const NodePtr root = parsed(
        "<r><a>one<x/>two</a><b><![CDATA[c]]></b><c><![CDATA[c]]>text</c><d/><e><x>t</x></e></r>");
    const auto text = [&](const char *path) {
        return XML_DOM_GetSelectSingleNodeText(root.get(), path);
    };
    EXPECT_STREQ(text("a"), "one");
    EXPECT_EQ(text("a"), root->firstChild->firstChild->value);
    EXPECT_EQ(text("b"), nullptr);
    EXPECT_STREQ(text("c"), "text");
    EXPECT_EQ(text("d"), nullptr);
    EXPECT_EQ(text("e"), nullptr);
    EXPECT_STREQ(text("e/x"), "t");
    EXPECT_EQ(text("f"), nullptr);
    EXPECT_EQ(text("a/"), nullptr);
}

constexpr const char *kNumbers[] = {
    "0",
    "42",
    " 42",
    " 42abc",
    "\t\n\v\f\r 7",
    "-1",
    "+1",
    "- 1",
    "+-1",
    "--1",
    "abc",
    "",
    " ",
    "-",
    "+",
    ".5",
    "1.5",
    "0x10",
    "0b11",
    "010",
    "1e3",
    "1,000",
    "\xC2\xA0"
    "1",
    "\xA1\xA1"
    "1",
    "9223372036854775807",
    "9223372036854775808",
    "-9223372036854775808",
    "-9223372036854775809",
    "18446744073709551615",
    "18446744073709551616",
    "-18446744073709551615",
    "-18446744073709551616",
    "99999999999999999999999999999999999999",
    "00000000000000000000000001",
    "-99999999999999999999999999999999999999",
};

TEST(SelectedNumber, AsScanfReadsIt) {
    for (const char *text : kNumbers) {
        SCOPED_TRACE(text);
        const NodePtr root(XML_DOM_CreateElementNode("r"));
        ASSERT_EQ(XML_DOM_AddChildNode(root.get(), XML_DOM_CreateElementWithText("n", text)),
                  XML_OK);
        errno = 0;
        long long expected = 4711, value = 4711;
        const bool converts = std::sscanf(text, "%lld", &expected) == 1;
        errno = EBADF;
        EXPECT_EQ(XML_DOM_GetSelectSingleNodeAsInt64(root.get(), "n", &value),
                  converts ? XML_OK : XML_REFUSED);
        EXPECT_EQ(value, expected);
        unsigned long long expectedUnsigned = 4711, valueUnsigned = 4711;
        const bool convertsUnsigned = std::sscanf(text, "%llu", &expectedUnsigned) == 1;
        EXPECT_EQ(XML_DOM_GetSelectSingleNodeAsUInt64(root.get(), "n", &valueUnsigned),
                  convertsUnsigned ? XML_OK : XML_REFUSED);
        EXPECT_EQ(valueUnsigned, expectedUnsigned);
    }
}

TEST(SelectedNumber, WhatIsTold) {
    const NodePtr root = parsed("<r><a>x</a><b>-1</b><c/><d><![CDATA[5]]></d></r>");
    XML_DOM_SetNodeValue(root->firstChild->firstChild, " 42abc");
    long long value = 0;
    unsigned long long valueUnsigned = 0;
    EXPECT_EQ(XML_DOM_GetSelectSingleNodeAsInt64(root.get(), "a", &value), XML_OK);
    EXPECT_EQ(value, 42);
    EXPECT_EQ(XML_DOM_GetSelectSingleNodeAsUInt64(root.get(), "b", &valueUnsigned), XML_OK);
    EXPECT_EQ(valueUnsigned, 18446744073709551615u);
    EXPECT_EQ(XML_DOM_GetSelectSingleNodeAsInt64(root.get(), "b", &value), XML_OK);
    EXPECT_EQ(value, -1);
    for (const char *path : {"c", "d", "e", ""}) {
        EXPECT_EQ(XML_DOM_GetSelectSingleNodeAsInt64(root.get(), path, &value), XML_REFUSED);
        EXPECT_EQ(XML_DOM_GetSelectSingleNodeAsUInt64(root.get(), path, &valueUnsigned),
                  XML_REFUSED);
    }
    EXPECT_EQ(value, -1);
    EXPECT_EQ(XML_DOM_GetSelectSingleNodeAsInt64(root.get(), "a", nullptr), XML_REFUSED);
    EXPECT_EQ(XML_DOM_GetSelectSingleNodeAsUInt64(root.get(), "a", nullptr), XML_REFUSED);
}

TEST(SelectedNumber, LeavesErrnoAlone) {
    const NodePtr root = parsed("<r>99999999999999999999999</r>");
    const NodePtr parent(XML_DOM_CreateElementNode("p"));
    long long value = 0;
    errno = EBADF;
    EXPECT_EQ(XML_DOM_GetSelectSingleNodeAsInt64(root.get(), "/", &value), XML_OK);
    EXPECT_EQ(value, INT64_MAX);
    EXPECT_EQ(errno, EBADF);
}

// ---------------------------------------------------------------- the steps by themselves

struct Parsed {
    std::uint32_t result;
    const char *step;
    std::uint32_t flags;
    const char *rest;  // null when used up
};
struct ParseCase {
    const char *path;
    Parsed steps[5];
};
constexpr Parsed kEnd = {0, "", 0, nullptr};
constexpr ParseCase kParses[] = {
    {"", {{1, "", 0, nullptr}, kEnd, kEnd}},
    {"a", {{1, "a", 0, nullptr}, kEnd, kEnd}},
    {"a/b", {{1, "a", 0, "b"}, {1, "b", 0, nullptr}, kEnd}},
    {"a/", {{1, "a", 0, ""}, {1, "", 0, nullptr}, kEnd}},
    {"/", {{1, "", 1, nullptr}, kEnd, kEnd}},
    {"/r", {{1, "r", 1, nullptr}, kEnd, kEnd}},
    {"/r/a", {{1, "r", 1, "a"}, {1, "a", 0, nullptr}, kEnd}},
    {"/r/", {{1, "r", 1, ""}, {1, "", 0, nullptr}, kEnd}},
    {"//", {{1, "", 1, ""}, {1, "", 0, nullptr}, kEnd}},
    {"a//b", {{1, "a", 0, "/b"}, {1, "b", 1, nullptr}, kEnd}},
    {"a//b//c", {{1, "a", 0, "/b//c"}, {1, "b", 1, "/c"}, {1, "c", 1, nullptr}, kEnd}},
    {"///r", {{1, "", 1, "/r"}, {1, "r", 1, nullptr}, kEnd}},
};

TEST(XPathCursor, StepsOfPaths) {
    for (const ParseCase &row : kParses) {
        SCOPED_TRACE(row.path);
        std::string copy = row.path;
        DOM_XPath_Cursor cursor{};
        cursor.rest = copy.data();
        for (const Parsed &expected : row.steps) {
            if (!expected.step) break;
            EXPECT_EQ(DOM_XPath_ParseNextXPathContext(&cursor), expected.result);
            EXPECT_STREQ(cursor.step, expected.step);
            EXPECT_EQ(cursor.flags, expected.flags);
            if (expected.rest) {
                EXPECT_STREQ(cursor.rest, expected.rest);
            } else {
                EXPECT_EQ(cursor.rest, nullptr);
            }
            EXPECT_EQ(copy, row.path);  // the path is as it was between calls
        }
    }
}

TEST(XPathCursor, ClearsWhatTheLastStepLeft) {
    char path[] = "a";
    DOM_XPath_Cursor cursor{};
    cursor.rest = path;
    cursor.flags = 0xFFFFFFFFu;
    std::strcpy(cursor.step, "old");
    EXPECT_EQ(DOM_XPath_ParseNextXPathContext(&cursor), 1u);
    EXPECT_EQ(cursor.flags, 0u);
    EXPECT_STREQ(cursor.step, "a");
    cursor.flags = 2;
    EXPECT_EQ(DOM_XPath_ParseNextXPathContext(&cursor), 0u);
    EXPECT_EQ(cursor.flags, 0u);
    EXPECT_STREQ(cursor.step, "");
}

TEST(XPathCursor, ARootStepByItself) {
    char path[] = "/r/a", slash[] = "/", bare[] = "r", empty[] = "";
    DOM_XPath_Cursor cursor{};
    cursor.rest = path;
    EXPECT_EQ(DOM_XPath_ParseNextXPath4Root(&cursor), 1u);
    EXPECT_STREQ(cursor.step, "r");
    EXPECT_STREQ(cursor.rest, "a");
    EXPECT_EQ(cursor.flags, DOM_XPATH_ROOT_STEP);
    cursor.rest = slash;
    EXPECT_EQ(DOM_XPath_ParseNextXPath4Root(&cursor), 1u);
    EXPECT_STREQ(cursor.step, "r");  // nothing stands behind the slash: the step stays
    EXPECT_EQ(cursor.rest, nullptr);
    EXPECT_EQ(DOM_XPath_ParseNextXPath4Root(&cursor), 0u);
    // Callers that give something else than a slash must not be read past its end.
    cursor.rest = bare;
    EXPECT_EQ(DOM_XPath_ParseNextXPath4Root(&cursor), 1u);
    EXPECT_STREQ(cursor.step, "r");
    cursor.rest = empty;
    EXPECT_EQ(DOM_XPath_ParseNextXPath4Root(&cursor), 1u);
    EXPECT_EQ(cursor.rest, nullptr);
    EXPECT_EQ(DOM_XPath_ParseNextXPath4Root(nullptr), 0u);
    EXPECT_EQ(DOM_XPath_ParseNextXPathContext(nullptr), 0u);
}

struct StepCase {
    const char *from, *step;
    std::uint32_t flags;
    const char *id;
};
constexpr StepCase kSteps[] = {
    {"/", "a", 0, "1"},
    {"/", "", 0, "-"},
    {"/", "a", DOM_XPATH_NO_NODE, "-"},
    {"/", "a", 0x80000000u, "1"},
    {"/", "r", DOM_XPATH_ROOT_STEP, "0"},
    {"/", "", DOM_XPATH_ROOT_STEP, "0"},
    {"/", "a", DOM_XPATH_ROOT_STEP, "-"},
    {"/", "r", DOM_XPATH_ROOT_STEP | DOM_XPATH_NO_NODE, "0"},  // the root step is asked first
    {"a", "r", 0, "3"},
    {"a", "", DOM_XPATH_ROOT_STEP, "-"},
    {"a/r", "", DOM_XPATH_ROOT_STEP, "0"},
};

TEST(XPathCursor, ApplyingAStep) {
    const NodePtr root = parsed(kDocument);
    for (const StepCase &row : kSteps) {
        SCOPED_TRACE(std::string(row.from) + " " + row.step);
        const XML_DOM_Node *from = XML_DOM_SelectSingleNode(root.get(), row.from);
        DOM_XPath_Cursor cursor{};
        std::strcpy(cursor.step, row.step);
        cursor.flags = row.flags;
        const XML_DOM_Node *node = DOM_XPath_GetNodeFromContext(from, &cursor);
        EXPECT_EQ(node ? XML_DOM_GetNodeAttrValByName(node, "id") : std::string("-"), row.id);
        if (row.flags & DOM_XPATH_ROOT_STEP) {
            EXPECT_EQ(DOM_XPath_GetRootElement(from, &cursor), node);
        }
    }
    DOM_XPath_Cursor cursor{};
    EXPECT_EQ(DOM_XPath_GetNodeFromContext(nullptr, &cursor), nullptr);
    EXPECT_EQ(DOM_XPath_GetNodeFromContext(root.get(), nullptr), nullptr);
    EXPECT_EQ(DOM_XPath_GetRootElement(nullptr, &cursor), nullptr);
    EXPECT_EQ(DOM_XPath_GetRootElement(root.get(), nullptr), nullptr);
}

TEST(SelectSingleNode, AllocatesNothing) {
    const NodePtr root = parsed(kDocument);
    const support::FaultyHeap heap(1, true);
    EXPECT_TRUE(XML_DOM_SelectSingleNode(root.get(), "/r/a/r/c"));
    EXPECT_EQ(heap.allocations(), 0u);
}

}  // namespace
