// The builder's callbacks, driven by hand: they hold also where the library's parser never leads.
#include <climits>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "compactxml.h"
#include "dom/builder.h"
#include "gtest/gtest.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"
#include "tests/support/namespaces.h"
#include "tests/support/texts.h"
#include "tests/support/tree_dump.h"

namespace {

using namespace cxml;

using support::describeTree;
using support::gb;
using support::printable;

struct Declaration {
    const char *prefix;
    const char *namespaceName;
};

struct Attribute {
    const char *name;
    const char *prefix;
    const char *value;
};

// A build as the entry points set it up, without a parse.
class HandBuild {
  public:
    explicit HandBuild(std::uint32_t errorSize = sizeof error) {
        std::memset(static_cast<void *>(&handler), 0xAA, sizeof handler);
        result = XML_DOM_BuildInit(&handler, &state, errorSize, errorSize ? error : nullptr);
        context.handler = &handler;
        context.version = "1.0";
        context.line = 1;
        context.column = 1;
    }
    ~HandBuild() {
        if (result != XML_OK) return;
        XML_DOM_DelNode(state.root);
        XML_DOM_BuildFini(&handler);
    }
    HandBuild(const HandBuild &) = delete;
    HandBuild &operator=(const HandBuild &) = delete;

    // Each returns the status that the callback left, and sets it back to 0.
    std::int32_t start(const char *name, const char *prefix = nullptr,
                       const std::vector<Declaration> &declarations = {},
                       const std::vector<Attribute> &attributes = {}) {
        std::vector<const char *> pairs;
        for (const Declaration &declaration : declarations) {
            pairs.insert(pairs.end(), {declaration.prefix, declaration.namespaceName});
        }
        std::vector<const char *> groups;
        for (const Attribute &attribute : attributes) {
            const char *end = attribute.value ? std::strchr(attribute.value, '\0') : nullptr;
            // The namespace name is the parser's business: the tree resolves prefixes itself.
            groups.insert(groups.end(), {attribute.name, attribute.prefix, "not looked at",
                                         attribute.value, end});
        }
        handler.startElementNs(&context, name, prefix, "not looked at",
                               static_cast<int>(declarations.size()), pairs.data(),
                               static_cast<int>(attributes.size()), 0, groups.data());
        return status();
    }
    std::int32_t end() {
        handler.endElementNs(&context, "ignored", "ignored", "ignored");
        return status();
    }
    std::int32_t text(const char *bytes, int length) {
        handler.characters(&context, bytes, length);
        return status();
    }
    std::int32_t cdata(const char *bytes, int length) {
        handler.cdataBlock(&context, bytes, length);
        return status();
    }
    std::int32_t endDocument() {
        handler.endDocument(&context);
        return status();
    }

    std::uint32_t result = XML_REFUSED;
    XML_SAX_Handler handler;
    XML_DOM_BuildState state;
    XML_Parser_Ctx context{};
    char error[128] = "";

  private:
    std::int32_t status() {
        const std::int32_t status = context.status;
        context.status = 0;
        return status;
    }
};

// ---------------------------------------------------------------- set-up

TEST(BuilderCallbacks, SetUpFillsHandlerAndState) {
    HandBuild build;
    ASSERT_EQ(build.result, XML_OK);
    XML_SAX_Handler expected{};
    expected.userData = &build.state;
    expected.startElementNs = XML_SAX_StartElementNs;
    expected.endElementNs = XML_SAX_EndElementNs;
    expected.characters = XML_SAX_Characters;
    expected.cdataBlock = XML_SAX_CData;
    expected.error = XML_SAX_Error;
    expected.endDocument = XML_SAX_EndDocument;
    EXPECT_EQ(std::memcmp(&build.handler, &expected, sizeof expected), 0);
    EXPECT_EQ(build.state.root, nullptr);
    EXPECT_EQ(build.state.current, nullptr);
    EXPECT_NE(build.state.nameStream, nullptr);
    EXPECT_NE(build.state.valueStream, nullptr);
    EXPECT_NE(build.state.nameStream, build.state.valueStream);
    EXPECT_EQ(build.state.errorBuffer, build.error);
    EXPECT_EQ(build.state.errorSize, sizeof build.error);
}

TEST(BuilderCallbacks, SetUpRefusesWithoutMemoryAndKeepsNone) {
    for (std::size_t k = 1;; ++k) {
        support::FaultyHeap heap(k);
        {
            const HandBuild build;
            EXPECT_EQ(build.result, heap.failed() ? XML_REFUSED : XML_OK) << k;
        }
        EXPECT_EQ(heap.blocksInUse(), 0u) << k;
        if (!heap.failed()) {
            EXPECT_GT(k, 1u);
            break;
        }
    }
}

TEST(BuilderCallbacks, TearDownLeavesTheTree) {
    XML_SAX_Handler handler;
    XML_DOM_BuildState state;
    ASSERT_EQ(XML_DOM_BuildInit(&handler, &state, 0, nullptr), XML_OK);
    XML_Parser_Ctx context{};
    context.handler = &handler;
    XML_SAX_StartElementNs(&context, "a", nullptr, nullptr, 0, nullptr, 0, 0, nullptr);
    XML_DOM_Node *root = state.root;
    XML_DOM_BuildFini(&handler);
    EXPECT_EQ(describeTree(root), "encoding 0 version \"1.0\"\na\n");
    XML_DOM_DelNode(root);
}

TEST(BuilderCallbacks, RefuseAMissingContext) {
    XML_SAX_StartElementNs(nullptr, "a", nullptr, nullptr, 0, nullptr, 0, 0, nullptr);
    XML_SAX_EndElementNs(nullptr, "a", nullptr, nullptr);
    XML_SAX_Characters(nullptr, "a", 1);
    XML_SAX_CData(nullptr, "a", 1);
    XML_SAX_EndDocument(nullptr);
    XML_SAX_Error(nullptr, "%d", 1);
}

// ---------------------------------------------------------------- elements

TEST(BuilderCallbacks, FollowTheOpenElements) {
    HandBuild build;
    EXPECT_EQ(build.start("a"), 0);
    XML_DOM_Node *a = build.state.root;
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(build.state.current, a);
    EXPECT_EQ(build.start("b"), 0);
    EXPECT_EQ(build.state.root, a);
    EXPECT_EQ(build.state.current, a->firstChild);
    EXPECT_EQ(build.end(), 0);
    EXPECT_EQ(build.state.current, a);
    EXPECT_EQ(build.end(), 0);
    EXPECT_EQ(build.state.current, nullptr);
    // Behind the root there is nothing to leave, and that does not fail.
    EXPECT_EQ(build.end(), 0);
    EXPECT_EQ(build.state.current, nullptr);
    EXPECT_EQ(describeTree(a), "encoding 0 version \"1.0\"\na\n  b\n");
}

TEST(BuilderCallbacks, RefuseASecondTopLevelElement) {
    HandBuild build;
    build.start("a");
    build.end();
    support::FaultyHeap heap(0);
    EXPECT_EQ(build.start("b", nullptr, {{"p", "u"}}, {{"x", nullptr, "1"}}), 1);
    EXPECT_EQ(describeTree(build.state.root), "encoding 0 version \"1.0\"\na\n");
    EXPECT_EQ(build.state.root->nextSibling, nullptr);
    EXPECT_EQ(build.state.current, nullptr);
}

TEST(BuilderCallbacks, FreeTheSecondTopLevelElement) {
    support::FaultyHeap heap(0);
    {
        HandBuild build;
        build.start("a");
        build.end();
        EXPECT_EQ(build.start("b"), 1);
        EXPECT_EQ(build.text("t", 1), 1);
    }
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

TEST(BuilderCallbacks, RefuseWhatHasNoName) {
    HandBuild build;
    EXPECT_EQ(build.start(nullptr), 1);
    EXPECT_EQ(build.state.root, nullptr);
    EXPECT_EQ(build.state.current, nullptr);
    EXPECT_EQ(build.start("a", nullptr, {}, {{nullptr, nullptr, "v"}}), 1);
    EXPECT_EQ(build.start("b", nullptr, {}, {{"x", nullptr, nullptr}}), 1);
    EXPECT_EQ(build.start("c", nullptr, {{"p", nullptr}}), 1);
}

TEST(BuilderCallbacks, LeaveNoRootBehindWhenTheFirstElementFails) {
    // The state is made before memory runs out, so every failure is that of the first element.
    std::size_t failures = 0;
    for (std::size_t k = 1;; ++k) {
        HandBuild build;
        support::FaultyHeap heap(k);
        const std::int32_t status = build.start("a");
        EXPECT_EQ(status, heap.failed() ? 1 : 0) << k;
        EXPECT_EQ(build.state.root, build.state.current) << k;
        if (!heap.failed()) break;
        ++failures;
        EXPECT_EQ(build.state.root, nullptr) << k;
    }
    EXPECT_GE(failures, 3u);  // the node, its name and the document
}

TEST(BuilderCallbacks, ConvertEveryString) {
    HandBuild build;
    EXPECT_EQ(build.start("元素", "前", {{"前", "空间"}, {nullptr, "默认"}},
                          {{"名", "前", "值"}, {"ö", nullptr, "😀"}}),
              0);
    const std::string p = printable(gb("前"));
    EXPECT_EQ(describeTree(build.state.root),
              "encoding 0 version \"1.0\"\n" + p + ":" + printable(gb("元素")) + " ns [" + p +
                  "=\"" + printable(gb("空间")) + "\" =\"" + printable(gb("默认")) + "\"] attrs [" +
                  p + ":" + printable(gb("名")) + "=\"" + printable(gb("值")) + "\" " +
                  printable(gb("ö")) + "=\"" + printable(gb("😀")) + "\"]\n");
    EXPECT_EQ(support::wrongNamespace(build.state.root), "");
}

TEST(BuilderCallbacks, RefuseStringsThatDoNotConvert) {
    // Invalid, incomplete before the NUL, and one that an iconv may take for incomplete.
    for (const char *bad : {"\xFF", "a\xE4\xB8", "\xF8\x90\x80\x80"}) {
        support::FaultyHeap heap(0);
        {
            HandBuild build;
            EXPECT_EQ(build.start(bad), 1);
            EXPECT_EQ(build.state.root, nullptr);
            EXPECT_EQ(build.start("a"), 0);
            EXPECT_EQ(build.start("b", bad), 1);
            EXPECT_EQ(build.start("c", nullptr, {{bad, "u"}}), 1);
            EXPECT_EQ(build.start("d", nullptr, {{"p", bad}}), 1);
            EXPECT_EQ(build.start("e", nullptr, {}, {{bad, nullptr, "v"}}), 1);
            EXPECT_EQ(build.start("f", nullptr, {}, {{"n", nullptr, bad}}), 1);
            EXPECT_EQ(build.start("g", nullptr, {}, {{"n", bad, "v"}}), 1);
        }
        EXPECT_EQ(heap.blocksInUse(), 0u) << printable(bad);
    }
}

// ---------------------------------------------------------------- namespaces

TEST(BuilderCallbacks, RefuseAPrefixDeclaredTwice) {
    const std::vector<std::vector<Declaration>> twice{
        {{"p", "u"}, {"p", "v"}},
        {{"p", "u"}, {"q", "v"}, {"p", "u"}},
        {{nullptr, "u"}, {nullptr, "u"}},
        {{nullptr, "u"}, {"", "v"}},  // no prefix and the empty prefix are the same
    };
    for (const auto &declarations : twice) {
        HandBuild build;
        EXPECT_EQ(build.start("a", nullptr, declarations), 1);
        HandBuild below;
        EXPECT_EQ(below.start("a", nullptr, {declarations.front()}), 0);
        EXPECT_EQ(below.start("b", nullptr, declarations), 1);
    }
}

TEST(BuilderCallbacks, ManyDeclarationsOnOneElement) {
    std::vector<std::string> prefixes;
    for (int i = 0; i < 200; ++i) prefixes.push_back("p" + std::to_string(i));
    std::vector<Declaration> declarations;
    for (const std::string &prefix : prefixes) declarations.push_back({prefix.c_str(), "u"});
    HandBuild build;
    EXPECT_EQ(build.start("a", "p0", declarations, {{"x", "p199", ""}}), 0);
    EXPECT_EQ(build.start("b", "p100", declarations), 0);
    EXPECT_EQ(support::wrongNamespace(build.state.root), "");
    for (const std::size_t again : {0, 1, 100, 199}) {
        std::vector<Declaration> twice = declarations;
        twice.push_back(declarations[again]);
        HandBuild refused;
        EXPECT_EQ(refused.start("a", nullptr, twice), 1) << again;
    }
}

TEST(BuilderCallbacks, RefuseAnUndeclaredPrefix) {
    HandBuild build;
    EXPECT_EQ(build.start("a", "p"), 1);
    HandBuild attribute;
    EXPECT_EQ(attribute.start("a", nullptr, {{"q", "u"}}, {{"x", "p", "1"}}), 1);
    HandBuild later;
    EXPECT_EQ(later.start("a"), 0);
    EXPECT_EQ(later.start("b", nullptr, {{"p", "u"}}), 0);
    EXPECT_EQ(later.end(), 0);
    EXPECT_EQ(later.start("c", "p"), 1);  // declared on b alone
}

TEST(BuilderCallbacks, ResolvePrefixesFromTheNearestElement) {
    HandBuild build;
    const std::vector<Attribute> attributes{{"x", "p", "1"}, {"y", "q", "2"}};
    EXPECT_EQ(build.start("a", "p", {{"p", "1"}, {"q", "2"}}, attributes), 0);
    EXPECT_EQ(build.start("b", "p", {{"p", "3"}}, attributes), 0);
    EXPECT_EQ(build.start("c", "q", {{"q", "4"}, {"p", "5"}}, attributes), 0);
    EXPECT_EQ(build.end(), 0);
    EXPECT_EQ(build.start("d", "q", {}, attributes), 0);
    EXPECT_EQ(build.end(), 0);
    EXPECT_EQ(build.end(), 0);
    EXPECT_EQ(build.start("e", "p", {}, attributes), 0);
    EXPECT_EQ(support::wrongNamespace(build.state.root), "");
    EXPECT_EQ(support::brokenLink(build.state.root), "");
    const XML_DOM_Node *e = build.state.current;
    EXPECT_STREQ(e->ns->namespaceName, "1");
    const XML_DOM_Node *d = build.state.root->firstChild->lastChild;
    EXPECT_STREQ(d->name, "d");
    EXPECT_STREQ(d->ns->namespaceName, "2");
    EXPECT_STREQ(d->firstAttr->ns->namespaceName, "3");
}

TEST(BuilderCallbacks, AMissingAndAnEmptyPrefixLeaveTheFieldNull) {
    HandBuild build;
    EXPECT_EQ(build.start("a", "", {{nullptr, "u"}}, {{"x", "", ""}, {"y", nullptr, ""}}), 0);
    EXPECT_EQ(build.state.root->ns, nullptr);
    EXPECT_EQ(build.state.root->firstAttr->ns, nullptr);
    EXPECT_EQ(build.state.root->lastAttr->ns, nullptr);
}

TEST(BuilderCallbacks, ThePrefixXmlIsBuiltInButMayBeDeclared) {
    HandBuild build;
    EXPECT_EQ(build.start("a", "xml", {}, {{"lang", "xml", "zh"}}), 0);
    ASSERT_NE(build.state.root->ns, nullptr);
    EXPECT_EQ(build.state.root->ns, build.state.root->firstAttr->ns);
    EXPECT_STREQ(build.state.root->ns->namespaceName, "http://www.w3.org/XML/1998/namespace");
    EXPECT_EQ(build.start("b", nullptr, {{"xml", "other"}}), 0);
    EXPECT_EQ(build.start("c", "xml"), 0);
    EXPECT_STREQ(build.state.current->ns->namespaceName, "other");
    EXPECT_EQ(build.state.current->ns, build.state.root->firstChild->firstNsDecl);
}

TEST(BuilderCallbacks, DoNotLookForDuplicateAttributes) {
    HandBuild build;
    EXPECT_EQ(build.start("a", nullptr, {}, {{"x", nullptr, "1"}, {"x", nullptr, "2"}}), 0);
    EXPECT_EQ(describeTree(build.state.root),
              "encoding 0 version \"1.0\"\na attrs [x=\"1\" x=\"2\"]\n");
}

// ---------------------------------------------------------------- text

TEST(BuilderCallbacks, EveryCallMakesItsOwnText) {
    HandBuild build;
    build.start("a");
    EXPECT_EQ(build.text("x", 1), 0);
    EXPECT_EQ(build.text("y", 1), 0);
    EXPECT_EQ(build.text(" \t\r\n", 4), 0);
    EXPECT_EQ(build.text(" ", 1), 0);
    EXPECT_EQ(build.cdata("z", 1), 0);
    EXPECT_EQ(build.cdata(" ", 1), 0);
    EXPECT_EQ(build.text("longer than told", 6), 0);
    EXPECT_EQ(build.text("中文", 3), 0);
    EXPECT_EQ(describeTree(build.state.root),
              "encoding 0 version \"1.0\"\na\n  \"x\"\n  \"y\"\n  \" \\x09\\x0D\\x0A\"\n  \" \"\n"
              "  CDATA \"z\"\n  CDATA \" \"\n  \"longer\"\n  \"" +
                  printable(gb("中")) + "\"\n");
    EXPECT_EQ(support::brokenLink(build.state.root), "");
}

TEST(BuilderCallbacks, AFirstByteOfNulDropsTheText) {
    HandBuild build;
    // Even where text is refused.
    EXPECT_EQ(build.text("\0abc", 4), 0);
    EXPECT_EQ(build.cdata("", 0), 0);
    build.start("a");
    EXPECT_EQ(build.text("\0abc", 4), 0);
    EXPECT_EQ(build.cdata("\0abc", 4), 0);
    EXPECT_EQ(build.text("", 0), 0);
    EXPECT_EQ(describeTree(build.state.root), "encoding 0 version \"1.0\"\na\n");
}

TEST(BuilderCallbacks, ALaterNulIsAByteLikeAnyOther) {
    HandBuild build;
    build.start("a");
    EXPECT_EQ(build.text("b\0c", 3), 0);
    ASSERT_NE(build.state.root->firstChild, nullptr);
    EXPECT_EQ(std::memcmp(build.state.root->firstChild->value, "b\0c", 4), 0);
}

TEST(BuilderCallbacks, ALengthOfZeroIsAnEmptyText) {
    HandBuild build;
    build.start("a");
    EXPECT_EQ(build.cdata("]]>", 0), 0);
    EXPECT_EQ(build.text("<", 0), 0);
    EXPECT_EQ(describeTree(build.state.root),
              "encoding 0 version \"1.0\"\na\n  CDATA \"\"\n  \"\"\n");
}

TEST(BuilderCallbacks, RefuseTextOutsideTheRoot) {
    HandBuild build;
    EXPECT_EQ(build.text("x", 1), 1);
    EXPECT_EQ(build.cdata("x", 1), 1);
    EXPECT_EQ(build.cdata("x", 0), 1);
    EXPECT_EQ(build.text(" ", 1), 1);
    build.start("a");
    build.end();
    EXPECT_EQ(build.text("x", 1), 1);
    EXPECT_EQ(build.cdata("x", 1), 1);
    EXPECT_EQ(describeTree(build.state.root), "encoding 0 version \"1.0\"\na\n");
}

TEST(BuilderCallbacks, RefuseNegativeLengths) {
    HandBuild build;
    build.start("a");
    for (const int length : {-1, -4, INT_MIN}) {
        EXPECT_EQ(build.text("x", length), 1) << length;
        EXPECT_EQ(build.cdata("x", length), 1) << length;
    }
    EXPECT_EQ(describeTree(build.state.root), "encoding 0 version \"1.0\"\na\n");
}

TEST(BuilderCallbacks, RefuseTextThatDoesNotConvert) {
    // Invalid, or nothing but the beginning of a character. The last two are what an iconv may
    // wait behind for more bytes than any encoding has to a character.
    for (const char *bad : {"\xFF", "a\xC1\x81", "\xE4\xB8", "\xF0\x9F\x98", "\xC3",
                            "x\xF8\x90\x80\x80", "x\xFC\x84\x80\x80"}) {
        support::FaultyHeap heap(0);
        {
            HandBuild build;
            build.start("a");
            const int length = static_cast<int>(std::strlen(bad));
            EXPECT_EQ(build.text(bad, length), 1) << printable(bad);
            EXPECT_EQ(describeTree(build.state.root), "encoding 0 version \"1.0\"\na\n");
        }
        EXPECT_EQ(heap.blocksInUse(), 0u) << printable(bad);
    }
}

// ---------------------------------------------------------------- the end of the document

TEST(BuilderCallbacks, TheEndRecordsEveryEncoding) {
    for (std::uint32_t encoding = 0; encoding <= 14; ++encoding) {
        HandBuild build;
        build.start("a");
        build.context.encoding = encoding;
        EXPECT_EQ(build.endDocument(), encoding < XML_ENCODING_UNKNOWN ? 0 : 1) << encoding;
        if (encoding >= XML_ENCODING_UNKNOWN) continue;
        EXPECT_EQ(XML_DOM_GetEncoding(build.state.root), encoding);
    }
}

TEST(BuilderCallbacks, TheEndRefusesEveryOtherVersion) {
    struct Row {
        const char *version;
        std::int32_t status;
    };
    for (const Row &row :
         {Row{"1.0", 0}, Row{"1.1", 1}, Row{"1.00", 1}, Row{"", 1}, Row{nullptr, 1}}) {
        HandBuild build;
        build.start("a");
        build.end();
        build.context.version = row.version;
        EXPECT_EQ(build.endDocument(), row.status) << (row.version ? row.version : "null");
        EXPECT_STREQ(XML_DOM_GetVersion(build.state.root), "1.0");
    }
}

TEST(BuilderCallbacks, TheEndRefusesBothAtOnceAndADocumentWithoutRoot) {
    HandBuild build;
    EXPECT_EQ(build.endDocument(), 1);
    build.start("a");
    build.context.encoding = XML_ENCODING_UNKNOWN;
    build.context.version = "1.1";
    EXPECT_EQ(build.endDocument(), 1);
}

// ---------------------------------------------------------------- errors

TEST(BuilderCallbacks, AnErrorTellsTheCallerAndFreesTheTree) {
    support::FaultyHeap heap(0);
    {
        HandBuild build;
        build.start("a", "p", {{"p", "u"}}, {{"x", nullptr, "1"}});
        build.start("b");
        build.text("t", 1);
        const auto current = reinterpret_cast<std::uintptr_t>(build.state.current);
        const std::size_t before = heap.blocksInUse();
        build.handler.error(&build.context, "%s %d %c", "文", 7, '!');
        EXPECT_EQ(build.error, gb("文 7 !"));
        EXPECT_EQ(build.state.root, nullptr);
        EXPECT_LT(heap.blocksInUse(), before);
        // Intended: the open element is not reset, nobody asks for it again.
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(build.state.current), current);
    }
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

TEST(BuilderCallbacks, AnErrorBeforeTheRoot) {
    HandBuild build;
    build.handler.error(&build.context, "The Line %d Column %d :\"%s\", %s", 3, 5, "x", "y.");
    EXPECT_STREQ(build.error, "The Line 3 Column 5 :\"x\", y.");
    EXPECT_EQ(build.state.root, nullptr);
}

TEST(BuilderCallbacks, AnErrorWithoutABufferStillFreesTheTree) {
    support::FaultyHeap heap(0);
    {
        HandBuild build(0);
        build.start("a");
        build.handler.error(&build.context, "%s", "told to nobody");
        EXPECT_EQ(build.state.root, nullptr);
        EXPECT_STREQ(build.error, "");
    }
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

TEST(BuilderCallbacks, AnErrorThatDoesNotConvert) {
    HandBuild build;
    build.handler.error(&build.context, "%s", "\xFF");
    EXPECT_STREQ(build.error, "failed to convert encoding.");
}

// A wide character that the locale has no bytes for is what formatted printing fails of.
TEST(BuilderCallbacks, AnErrorThatCannotBePrintedIsEmpty) {
    HandBuild build;
    build.start("a");
    build.handler.error(&build.context, "some %lc more", static_cast<wint_t>(0x4E2D));
    EXPECT_STREQ(build.error, "");
    EXPECT_EQ(build.state.root, nullptr);
}

TEST(BuilderCallbacks, AnErrorWithoutMemoryKeepsTheMessageAsItWas) {
    HandBuild build;
    build.start("a");
    support::FaultyHeap heap(1, true);
    build.handler.error(&build.context, "%s", "中文");
    EXPECT_STREQ(build.error, "中文");
    EXPECT_EQ(build.state.root, nullptr);
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

TEST(BuilderCallbacks, ErrorsAreCutToTheBuffer) {
    const std::string message(300, 'm');
    for (std::uint32_t size = 1; size <= 128; ++size) {
        HandBuild build(size);
        std::memset(build.error, '#', sizeof build.error);
        build.handler.error(&build.context, "%s", message.c_str());
        EXPECT_EQ(std::string(build.error), message.substr(0, size - 1));
        if (size < sizeof build.error) {
            EXPECT_EQ(build.error[size], '#') << size;
        }
    }
}

}  // namespace
