// Documents written in each of the thirteen encodings: buffers, byte order marks, final NULs, and
// text that does not convert.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/model_serializer.h"
#include "tests/support/model_stream.h"
#include "tests/support/owners.h"
#include "tests/support/reference_iconv.h"
#include "tests/support/sample_trees.h"

namespace {

using support::convertWhole;
using support::kEncodingCount;
using support::ModelSerializer;
using support::ModelStream;
using support::NodePtr;
using support::TextPtr;

// What a call that fills a buffer did: its result, and the buffer with the NUL at its end.
struct Written {
    std::uint32_t result = XML_OK;
    std::uint32_t length = 0;
    std::string bytes;
};

using Call = std::function<std::uint32_t(char **, std::uint32_t *)>;

// The size of a NUL in an encoding.
std::size_t nulSize(std::uint32_t encoding) {
    return support::encode(encoding, U"aa")->size() - support::encode(encoding, U"a")->size();
}

Written written(std::uint32_t encoding, const Call &call) {
    support::FaultyHeap heap(0);
    Written outcome;
    char *buffer = nullptr;
    outcome.length = 0xDEAD;
    outcome.result = call(&buffer, &outcome.length);
    if (outcome.result != XML_OK) {
        EXPECT_EQ(buffer, nullptr);
        EXPECT_EQ(outcome.length, 0xDEADu);
    } else {
        const TextPtr owner(buffer);
        std::size_t size = outcome.length + nulSize(encoding);
        if (outcome.length == 0) {
            // A byte order mark may stand before the NUL though nothing was written.
            size = convertWhole(XML_ENCODING_GB18030, encoding, {"\0", 1}).bytes.size();
        }
        outcome.bytes.assign(buffer, size);
    }
    EXPECT_EQ(heap.blocksInUse(), 0u);
    return outcome;
}

// The same by the model: every piece through a model stream, then one NUL.
Written modelled(std::uint32_t encoding,
                 const std::function<ModelSerializer::Sum(const ModelSerializer &)> &body) {
    Written outcome;
    ModelStream stream(XML_ENCODING_GB18030, encoding);
    ModelSerializer::Sum sum =
        body(ModelSerializer([&stream](std::string_view piece) { return stream.append(piece); }));
    outcome.length = static_cast<std::uint32_t>(stream.content().size());
    sum += stream.append({"\0", 1});
    if (!stream.pending().empty()) sum += XML_REFUSED;  // the NUL itself did not come out
    outcome.result = sum == 0 ? XML_OK : XML_REFUSED;
    outcome.bytes = stream.content();
    return outcome;
}

// Whether a call fails; what it then returns is compared further below.
void expectSame(const Written &actual, const Written &expected) {
    EXPECT_EQ(actual.result == XML_OK, expected.result == XML_OK);
    if (actual.result != XML_OK || expected.result != XML_OK) return;
    EXPECT_EQ(actual.length, expected.length);
    EXPECT_EQ(actual.bytes, expected.bytes);
}

// All the functions that fill a buffer, on one node.
void compareAll(const XML_DOM_Node *node) {
    std::uint32_t encoding = XML_DOM_GetEncoding(node);
    if (encoding == XML_ENCODING_UNKNOWN) encoding = XML_ENCODING_UTF_8;
    for (const std::uint32_t flags : {0u, 1u}) {
        expectSame(written(encoding,
                           [&](char **buffer, std::uint32_t *length) {
                               return XML_DOM_TranslateStr(node, flags, buffer, length);
                           }),
                   modelled(encoding, [&](const ModelSerializer &model) {
                       return model.document(node, flags);
                   }));
        // The functions that return the buffer tell a failure by null alone.
        const Written begin = modelled(encoding, [&](const ModelSerializer &model) {
            const bool declared = node->docInfo && (flags & 1) == 0;
            const ModelSerializer::Sum sum = declared ? model.declaration(node) : 0;
            return sum + model.begin(node, false);
        });
        expectSame(written(encoding,
                           [&](char **buffer, std::uint32_t *length) {
                               *buffer = XML_DOM_NodeBegin2Str(node, flags, length);
                               return *buffer ? XML_OK : begin.result;
                           }),
                   begin);
    }
    expectSame(
        written(encoding,
                [&](char **buffer, std::uint32_t *length) {
                    return XML_DOM_TranslateStr4AllChild(node, buffer, length);
                }),
        modelled(encoding, [&](const ModelSerializer &model) { return model.children(node); }));
    const Written end =
        modelled(encoding, [&](const ModelSerializer &model) { return model.end(node, false); });
    expectSame(written(encoding,
                       [&](char **buffer, std::uint32_t *length) {
                           *buffer = XML_DOM_NodeEnd2Str(node, length);
                           return *buffer ? XML_OK : end.result;
                       }),
               end);
}

TEST(SerializerEncoding, EveryEncodingAsTheModelWritesIt) {
    for (std::uint32_t encoding = 0; encoding < kEncodingCount; ++encoding) {
        SCOPED_TRACE(support::encodingName(encoding));
        const NodePtr root = support::richDocument(encoding);
        compareAll(root.get());
        for (const XML_DOM_Node *child = root->firstChild; child; child = child->nextSibling) {
            compareAll(child);
        }
    }
}

TEST(SerializerEncoding, TheWholeTextIsOneConversion) {
    const NodePtr root = support::richDocument();
    for (std::uint32_t encoding = 0; encoding < kEncodingCount; ++encoding) {
        ASSERT_EQ(XML_DOM_SetEncoding(root.get(), encoding), XML_OK);
        const std::string text =
            "<?xml version=\"1.0\" encoding=\"" + std::string(support::encodingName(encoding)) +
            "\"?><r xmlns:p=\"urn:p\" xmlns=\"urn:d\" a=\"1\" p:b=\"&lt;&amp;&gt;\">"
            "<p:e>&#x20;x&lt;y&#x20;</p:e>mixed \xD6\xD0\xCE\xC4<c><![CDATA[]] & <]]></c><empty/>"
            "<![CDATA[]]></r>";
        const std::string expected =
            convertWhole(XML_ENCODING_GB18030, encoding, text + '\0').bytes;
        const Written outcome = written(encoding, [&](char **buffer, std::uint32_t *length) {
            return XML_DOM_TranslateStr(root.get(), 0, buffer, length);
        });
        EXPECT_EQ(outcome.bytes, expected) << encoding;
        EXPECT_EQ(outcome.length, expected.size() - nulSize(encoding)) << encoding;
    }
}

TEST(SerializerEncoding, RandomTreesAsTheModelWritesThem) {
    for (std::uint32_t seed = 0; seed < 390; ++seed) {
        const NodePtr root = support::randomTree(seed * 2, seed % 3 != 0);
        const std::uint32_t encoding = seed % kEncodingCount;
        SCOPED_TRACE(testing::Message() << seed << " " << support::encodingName(encoding));
        ASSERT_EQ(XML_DOM_SetEncoding(root.get(), encoding), XML_OK);
        compareAll(root.get());
        if (root->firstChild) compareAll(root->firstChild);
    }
}

TEST(SerializerEncoding, WithoutADocumentItIsUtf8) {
    const NodePtr node(XML_DOM_CreateElementWithText("a", "\xD6\xD0"));
    compareAll(node.get());
    const Written outcome = written(0, [&](char **buffer, std::uint32_t *length) {
        return XML_DOM_TranslateStr(node.get(), 0, buffer, length);
    });
    EXPECT_EQ(outcome.bytes, std::string("<a>\xE4\xB8\xAD</a>\0", 11));
}

// Intended: the length never counts the NUL, but what the conversion puts in front of the NUL is in
// the buffer all the same.
TEST(SerializerEncoding, NothingWrittenIsANulWithWhatTheEncodingPutsBeforeIt) {
    const NodePtr root(XML_DOM_CreateElementWithText("a", "t"));
    ASSERT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
    for (std::uint32_t encoding = 0; encoding < kEncodingCount; ++encoding) {
        SCOPED_TRACE(support::encodingName(encoding));
        ASSERT_EQ(XML_DOM_SetEncoding(root.get(), encoding), XML_OK);
        const std::string nul = convertWhole(XML_ENCODING_GB18030, encoding, {"\0", 1}).bytes;
        EXPECT_GE(nul.size(), nulSize(encoding));
        const Written end = written(encoding, [&](char **buffer, std::uint32_t *length) {
            *buffer = XML_DOM_NodeEnd2Str(root->firstChild, length);
            return *buffer ? XML_OK : XML_REFUSED;
        });
        EXPECT_EQ(end.result, XML_OK);
        EXPECT_EQ(end.length, 0u);
        EXPECT_EQ(end.bytes, nul);
        const Written none = written(encoding, [&](char **buffer, std::uint32_t *length) {
            return XML_DOM_TranslateStr4AllChild(root->firstChild, buffer, length);
        });
        EXPECT_EQ(none.result, XML_OK);
        EXPECT_EQ(none.length, 0u);
        EXPECT_EQ(none.bytes, nul);
    }
}

TEST(SerializerEncoding, EveryBufferInUtf16BeginsWithAMark) {
    const NodePtr root(XML_DOM_CreateElementWithText("a", "t"));
    ASSERT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
    for (const std::uint32_t encoding : {XML_ENCODING_UTF_16, XML_ENCODING_UTF_32}) {
        ASSERT_EQ(XML_DOM_SetEncoding(root.get(), encoding), XML_OK);
        const std::string one = *support::encode(encoding, U"a");
        const std::string mark = one.substr(0, one.size() - nulSize(encoding));
        std::uint32_t length = 0;
        const TextPtr begin(XML_DOM_NodeBegin2Str(root.get(), 1, &length));
        EXPECT_EQ(std::string(begin.get(), length), *support::encode(encoding, U"<a>"));
        const TextPtr end(XML_DOM_NodeEnd2Str(root.get(), &length));
        EXPECT_EQ(std::string(end.get(), length), *support::encode(encoding, U"</a>"));
        EXPECT_EQ(std::string(end.get(), mark.size()), mark);
    }
}

TEST(SerializerEncoding, ACharacterThatTheEncodingLacksFailsTheCall) {
    struct Row {
        std::uint32_t encoding;
        const char *text;  // GB18030
        bool written;
    };
    constexpr Row kRows[] = {
        {XML_ENCODING_GB2312, "\xD6\xD0", true},
        {XML_ENCODING_GB2312, "\xA8\xA6", true},
        {XML_ENCODING_GB2312, "\x94\x39\xFC\x36", false},  // U+1F600
        {XML_ENCODING_GBK, "\x94\x39\xFC\x36", false},
        {XML_ENCODING_UTF_8, "\x94\x39\xFC\x36", true},
        {XML_ENCODING_UTF_16BE, "\x94\x39\xFC\x36", true},
        {XML_ENCODING_GB18030, "\xFF", true},  // no conversion, no check
        {XML_ENCODING_UTF_8, "\xFF", false},
        {XML_ENCODING_UTF_16, "\xFF", false},
    };
    for (const Row &row : kRows) {
        SCOPED_TRACE(testing::Message() << row.encoding << testing::PrintToString(row.text));
        // In a text, in a value, in CDATA, and in a name.
        for (int place = 0; place < 4; ++place) {
            const NodePtr root(XML_DOM_CreateElementNodeInner(place == 3 ? row.text : "a"));
            ASSERT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
            ASSERT_EQ(XML_DOM_SetEncoding(root.get(), row.encoding), XML_OK);
            if (place == 0) {
                XML_DOM_AddChildNode(root.get(), XML_DOM_CreateTextNode(row.text));
            } else if (place == 1) {
                XML_DOM_AddAttrInner(root.get(), "x", row.text);
            } else if (place == 2) {
                XML_DOM_AddChildNode(root.get(), XML_DOM_CreateCDataNode(row.text));
            }
            char *const untouched = reinterpret_cast<char *>(root.get());
            char *buffer = untouched;
            std::uint32_t length = 77;
            const std::uint32_t result = XML_DOM_TranslateStr(root.get(), 0, &buffer, &length);
            EXPECT_EQ(result == XML_OK, row.written);
            EXPECT_EQ(buffer == untouched, !row.written);
            EXPECT_EQ(length == 77, !row.written);
            if (row.written) TextPtr(buffer).reset();
            compareAll(root.get());
        }
    }
}

// Intended: a tree is read as GB18030 whoever made it, so UTF-8 put in by hand comes out as other
// characters.
TEST(SerializerEncoding, Utf8PutInByHandIsTakenForGb18030) {
    const NodePtr node(XML_DOM_CreateElementWithText("a", "\xC3\xA9"));
    std::uint32_t length = 0;
    char *buffer = nullptr;
    ASSERT_EQ(XML_DOM_TranslateStr(node.get(), 0, &buffer, &length), XML_OK);
    EXPECT_EQ(TextPtr(buffer).get(), std::string("<a>\xE8\x8C\x85</a>"));
}

// A result other than 0 is the sum of the results of all writes.
TEST(SerializerEncoding, FailuresAddUp) {
    struct Row {
        const char *what, *first, *second;
        std::uint32_t failures;
    };
    constexpr Row kRows[] = {
        {"nothing fails", "a", "b", 0},
        {"an attribute", "\xFF", "b", 1},
        {"an attribute of two pieces that fail", "\xFF<\xFF", "b", 1},
        {"a text", "a", "\xFF", 1},
        {"a text in two pieces of which the first fails", "a", "\xFF<\xFF", 1},
        {"an attribute and a text", "\xFF", "\xFF", 2},
    };
    for (const Row &row : kRows) {
        const NodePtr root(XML_DOM_CreateElementNode("a"));
        ASSERT_NE(XML_DOM_AddAttrInner(root.get(), "x", row.first), nullptr);
        ASSERT_EQ(XML_DOM_AddChildNode(root.get(), XML_DOM_CreateTextNode(row.second)), XML_OK);
        char *buffer = nullptr;
        EXPECT_EQ(XML_DOM_TranslateStr(root.get(), 0, &buffer, nullptr), row.failures * XML_REFUSED)
            << row.what;
        TextPtr(buffer).reset();
    }
}

// A character that is never completed is noticed by the final NUL at the latest.
TEST(SerializerEncoding, ACutCharacterAtTheVeryEndFails) {
    for (const char *value :
         {"\xD6", "a\xD6", "\x81\x30\x81", "text \x81", "\x81\x30", "a\x81\x30"}) {
        SCOPED_TRACE(testing::PrintToString(value));
        const NodePtr text(XML_DOM_CreateTextNode(value));
        char *buffer = nullptr;
        EXPECT_NE(XML_DOM_TranslateStr(text.get(), 0, &buffer, nullptr), XML_OK);
        EXPECT_FALSE(TextPtr(buffer));
        EXPECT_FALSE(TextPtr(XML_DOM_NodeBegin2Str(text.get(), 0, nullptr)));
    }
}

}  // namespace
