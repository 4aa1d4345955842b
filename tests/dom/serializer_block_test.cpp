// Writing straight into the output's block: lengths around every boundary that a writer may have, with
// what needs thought at every position, and with memory that runs out at every growth.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/model_serializer.h"
#include "tests/support/model_stream.h"
#include "tests/support/owners.h"
#include "tests/support/reference_iconv.h"

namespace {

using support::ModelSerializer;
using support::ModelStream;
using support::NodePtr;
using support::TextPtr;

// Without a conversion, with one that leaves ASCII alone, and with one that does not.
constexpr std::uint32_t kEncodings[] = {XML_ENCODING_GB18030, XML_ENCODING_UTF_8, XML_ENCODING_GBK,
                                        XML_ENCODING_UTF_16LE};

// An element r with an attribute and a text; a document if it can have an encoding.
NodePtr document(const std::string &text, std::uint32_t encoding, const char *name = "r") {
    NodePtr root(XML_DOM_CreateElementNodeInner(name));
    EXPECT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
    EXPECT_EQ(XML_DOM_SetEncoding(root.get(), encoding), XML_OK);
    EXPECT_NE(XML_DOM_AddAttrInner(root.get(), "a", text.c_str()), nullptr);
    EXPECT_EQ(XML_DOM_AddChildNode(root.get(), XML_DOM_CreateTextNode(text.c_str())), XML_OK);
    EXPECT_EQ(XML_DOM_AddChildNode(root.get(), XML_DOM_CreateCDataNode(text.c_str())), XML_OK);
    return root;
}

// What the model writes, or "failed".
std::string modelled(const XML_DOM_Node *root) {
    ModelStream stream(XML_ENCODING_GB18030, XML_DOM_GetEncoding(root));
    const ModelSerializer model([&stream](std::string_view piece) { return stream.append(piece); });
    const bool written = model.document(root, 0) == 0;
    return written && stream.pending().empty() ? stream.content() : "failed";
}

std::string written(const XML_DOM_Node *root) {
    char *buffer = nullptr;
    std::uint32_t length = 0;
    if (XML_DOM_TranslateStr(root, 0, &buffer, &length) != XML_OK) {
        EXPECT_EQ(buffer, nullptr);
        return "failed";
    }
    const TextPtr owner(buffer);
    EXPECT_EQ(buffer[length], '\0');
    return std::string(buffer, length);
}

void compare(const XML_DOM_Node *root) {
    const std::string expected = modelled(root);
    const std::string actual = written(root);
    ASSERT_EQ(actual.size(), expected.size());
    ASSERT_TRUE(actual == expected);
}

TEST(SerializerBlock, TextsOfEveryLengthUpToThreeBlocks) {
    for (const std::uint32_t encoding : kEncodings) {
        for (std::size_t length = 0; length <= 50; ++length) {
            SCOPED_TRACE(testing::Message() << encoding << ' ' << length);
            compare(document(std::string(length, 'x'), encoding).get());
            compare(document(' ' + std::string(length, 'x') + '\t', encoding).get());
        }
    }
}

// Lengths at which a part of the text ends at the end of what has been allocated.
TEST(SerializerBlock, TextsAroundTheCapacity) {
    for (const std::uint32_t encoding : kEncodings) {
        for (const std::size_t around : {256, 512, 1024, 2048, 4096, 65536}) {
            // Long ones take their time, and what differs with the encoding shows in short ones.
            const std::size_t step = around < 65536 || encoding == kEncodings[0] ? 1 : 10;
            for (std::size_t length = around - 90; length <= around + 10; length += step) {
                SCOPED_TRACE(testing::Message() << encoding << ' ' << length);
                compare(document(std::string(length, 'x'), encoding).get());
                compare(document(std::string(length, 'x') + "<\xD6\xD0 ", encoding).get());
            }
        }
    }
}

constexpr const char *kInsertions[] = {"<",         ">",         "&",
                                       " ",         "\n",        "<>&",
                                       "< ",        " <",        "\xD6\xD0",
                                       "\x81\x7E",  "\x81\x30",  "\xD6\xD0\xCE\xC4",
                                       "\xD6",      "\xFF",      "\x94\x39\xFC\x36",
                                       "<\xD6\xD0", "\xD6\xD0 ", "\xD6\xD0<\xCE\xC4&"};

TEST(SerializerBlock, WhatNeedsThoughtAtEveryPosition) {
    for (const std::uint32_t encoding : kEncodings) {
        for (const char *insertion : kInsertions) {
            for (std::size_t length = 0; length <= 40; length += 8) {
                for (std::size_t at = 0; at <= length; ++at) {
                    SCOPED_TRACE(testing::Message() << encoding << ' ' << length << ' ' << at << ' '
                                                    << testing::PrintToString(insertion));
                    std::string text(length, 'x');
                    text.insert(at, insertion);
                    compare(document(text, encoding).get());
                }
            }
        }
    }
}

TEST(SerializerBlock, NamesAndPrefixesOfEveryLength) {
    for (const std::uint32_t encoding : kEncodings) {
        for (std::size_t length = 1; length <= 70; ++length) {
            for (const std::size_t prefixLength : {0, 1, 14, 15, 16, 17, 31, 32, 33, 64}) {
                for (const char *end : {"", "\xD6\xD0"}) {
                    SCOPED_TRACE(testing::Message()
                                 << encoding << ' ' << length << ' ' << prefixLength << end);
                    const std::string name = std::string(length, 'n') + end;
                    const std::string prefix = std::string(prefixLength, 'p') + end;
                    const NodePtr root = document("t", encoding, name.c_str());
                    ASSERT_EQ(XML_DOM_AddNodeNameSpaceInner(root.get(), prefix.c_str(), "u", 0),
                              XML_OK);
                    root->ns = root->firstNsDecl;
                    XML_DOM_Attr *attribute = XML_DOM_AddAttrInner(root.get(), name.c_str(), "v");
                    ASSERT_NE(attribute, nullptr);
                    attribute->ns = root->firstNsDecl;
                    compare(root.get());
                }
            }
        }
    }
}

// Every number of bytes in front of a name, so that room ends in each of its parts.
TEST(SerializerBlock, NamesWhereRoomEnds) {
    for (const std::uint32_t encoding : kEncodings) {
        for (std::size_t filling = 880; filling <= 1030; ++filling) {
            SCOPED_TRACE(testing::Message() << encoding << ' ' << filling);
            const NodePtr root(XML_DOM_CreateElementNode("r"));
            ASSERT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
            ASSERT_EQ(XML_DOM_SetEncoding(root.get(), encoding), XML_OK);
            ASSERT_EQ(XML_DOM_AddNodeNameSpace(root.get(), "prefix", "u"), XML_OK);
            ASSERT_EQ(XML_DOM_AddChildNode(
                          root.get(), XML_DOM_CreateTextNode(std::string(filling, 'x').c_str())),
                      XML_OK);
            for (int i = 0; i < 3; ++i) {
                XML_DOM_Node *child = XML_DOM_CreateElementWithText("element", "a<b");
                ASSERT_EQ(XML_DOM_AddChildNode(root.get(), child), XML_OK);
                ASSERT_EQ(XML_DOM_SetNodeNameSpace(child, "prefix"), XML_OK);
                ASSERT_NE(XML_DOM_AddAttr(child, "prefix", "attribute", " v "), nullptr);
            }
            compare(root.get());
        }
    }
}

// A character of which the rest would have to come from another piece fails, or is completed, as
// the pieces one by one would have it.
TEST(SerializerBlock, CharactersCutOffAtTheEndOfATextOrName) {
    for (const std::uint32_t encoding : kEncodings) {
        for (const char *cut : {"\xD6", "\x81\x30", "\x81\x30\x81", "\x81", "ok"}) {
            for (const char *next : {"\xD0", "0", "\x30", "\x81\x30", "x"}) {
                SCOPED_TRACE(testing::Message() << encoding << testing::PrintToString(cut)
                                                << testing::PrintToString(next));
                const NodePtr root = document("t", encoding);
                for (const char *text : {cut, next, cut, "plain"}) {
                    ASSERT_EQ(XML_DOM_AddChildNode(root.get(), XML_DOM_CreateTextNode(text)),
                              XML_OK);
                }
                compare(root.get());
                compare(document(std::string(cut) + "<" + next, encoding, next).get());
            }
        }
    }
}

// Two texts with a character between them, which goes through the stream by itself: so what follows
// begins at every distance from the end of the block.
TEST(SerializerBlock, CharactersInTwoTextsAtTheEndOfTheBlock) {
    for (const std::uint32_t encoding : kEncodings) {
        for (std::size_t filling = 980; filling <= 1030; ++filling) {
            SCOPED_TRACE(testing::Message() << encoding << ' ' << filling);
            const NodePtr root(XML_DOM_CreateElementNode("r"));
            ASSERT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
            ASSERT_EQ(XML_DOM_SetEncoding(root.get(), encoding), XML_OK);
            const std::string first = std::string(filling, 'x') + "\x81\x30";
            for (const char *text : {first.c_str(), "\x84\x36", "x", "yz"}) {
                ASSERT_EQ(XML_DOM_AddChildNode(root.get(), XML_DOM_CreateTextNode(text)), XML_OK);
            }
            compare(root.get());
        }
    }
}

// With memory for one allocation less each time: refused with nothing left behind, or done in spite
// of it, if what failed was not needed.
TEST(SerializerBlock, MemoryThatRunsOut) {
    for (const std::uint32_t encoding : kEncodings) {
        for (const std::size_t count : {1, 60, 4000}) {
            const NodePtr root = document("text \xD6\xD0 & more", encoding);
            for (std::size_t i = 0; i < count; ++i) {
                XML_DOM_Node *child = XML_DOM_CreateElementWithText("element", "a \xD6\xD0 text");
                ASSERT_EQ(XML_DOM_AddChildNode(root.get(), child), XML_OK);
            }
            const std::string expected = modelled(root.get());
            std::size_t refusals = 0;
            for (const bool persistent : {false, true}) {
                for (std::size_t nth = 1;; ++nth) {
                    SCOPED_TRACE(testing::Message() << encoding << ' ' << count << ' ' << nth);
                    support::FaultyHeap heap(nth, persistent);
                    char *buffer = nullptr;
                    std::uint32_t length = 0;
                    const std::uint32_t result =
                        XML_DOM_TranslateStr(root.get(), 0, &buffer, &length);
                    const bool failed = heap.failed();
                    if (result == XML_OK) {
                        ASSERT_TRUE(std::string(buffer, length) == expected);
                        std::free(buffer);
                    } else {
                        ASSERT_TRUE(failed);
                        ASSERT_EQ(buffer, nullptr);
                        ++refusals;
                    }
                    ASSERT_EQ(heap.blocksInUse(), 0u);
                    if (!failed) break;
                }
            }
            EXPECT_GE(refusals, 4u);
        }
    }
}

// What follows a failed piece in TranslateStrEx is the callback's to see.
TEST(SerializerBlock, NoTextIsAskedForBehindOneThatFails) {
    const NodePtr root(XML_DOM_CreateElementNode("r"));
    for (const char *text : {"a", "\xFF", "c"}) {
        ASSERT_EQ(XML_DOM_AddChildNode(root.get(), XML_DOM_CreateTextNode(text)), XML_OK);
    }
    std::string asked;
    XML_DOM_TranslateState state{};
    state.userData = &asked;
    state.textCallback = [](XML_DOM_Node *node, XML_DOM_TranslateState *, void *userData) {
        *static_cast<std::string *>(userData) += node->value;
        return static_cast<const char *>(node->value);
    };
    char *buffer = nullptr;
    EXPECT_EQ(XML_DOM_TranslateStrEx(root.get(), 0, &state, &buffer, nullptr), XML_REFUSED);
    EXPECT_EQ(buffer, nullptr);
    EXPECT_EQ(asked, "a\xFF");
}

}  // namespace
