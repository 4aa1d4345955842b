// Trees that are written, searched, edited and deleted: the work for each node or byte does not hang
// on how many there are.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "compactxml.h"
#include "tests/hostile/work.h"
#include "tests/support/document_shapes.h"
#include "tests/support/owners.h"
#include "tests/support/reference_iconv.h"
#include "tests/support/texts.h"
#include "tests/support/written.h"

namespace {

using hostile::effortOf;
using hostile::staysLevel;
using support::nested;
using support::NodePtr;
using support::parsed;
using support::times;

// ---------------------------------------------------------------- writing

struct Text {
    const char *name;
    const char *piece;  // in UTF-8
};
constexpr Text kTexts[] = {
    {"plain", "abc"},         {"angle brackets", "<>"}, {"ampersands", "&&&"},
    {"line ends", "\r\n\t "}, {"two bytes", "中文"},    {"four bytes", "\xF0\x9F\x98\x80\xC3\xA5"},
    {"mixed", "a<中&\n"},
};

// A root with the text in a child, in a CDATA section and as the value of an attribute.
NodePtr treeOf(const std::string &text, std::uint32_t encoding) {
    NodePtr root(XML_DOM_CreateElementWithText("r", text.c_str()));
    EXPECT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
    EXPECT_EQ(XML_DOM_SetEncoding(root.get(), encoding), XML_OK);
    EXPECT_EQ(XML_DOM_AddChildNode(root.get(), XML_DOM_CreateCDataNode(text.c_str())), XML_OK);
    EXPECT_TRUE(XML_DOM_AddAttr(root.get(), nullptr, "a", text.c_str()));
    return root;
}

bool write(const XML_DOM_Node *root) {
    char *buffer = nullptr;
    std::uint32_t length = 0;
    if (XML_DOM_TranslateStr(root, 0, &buffer, &length) != XML_OK) return false;
    const support::TextPtr owner(buffer);
    return XML_DOM_OutPutTranslateStr(
               root, 0, [](void *, const char *, std::uint32_t) { return XML_OK; }, nullptr) ==
           XML_OK;
}

class HostileOutput : public testing::TestWithParam<std::uint32_t> {};

TEST_P(HostileOutput, OfALongText) {
    constexpr std::size_t kPieces = 4000;
    const std::uint32_t encoding = GetParam();
    for (const Text &text : kTexts) {
        if (support::convertWhole(XML_ENCODING_UTF_8, encoding, text.piece).error != 0) continue;
        const std::string piece = support::gb(text.piece);
        const NodePtr one = treeOf(times(kPieces, piece), encoding);
        const NodePtr eight = treeOf(times(hostile::kGrowth * kPieces, piece), encoding);
        const auto effort = [&](const NodePtr &tree, std::size_t pieces) {
            return effortOf(pieces * piece.size(), [&] { EXPECT_TRUE(write(tree.get())); });
        };
        EXPECT_TRUE(staysLevel(effort(one, kPieces), effort(eight, hostile::kGrowth * kPieces)))
            << text.name;
    }
}

// A stream that is fed byte by byte, so that characters are cut everywhere.
TEST_P(HostileOutput, InSingleBytes) {
    constexpr std::size_t kPieces = 2000;
    const std::uint32_t encoding = GetParam();
    for (const Text &text : kTexts) {
        if (support::convertWhole(XML_ENCODING_UTF_8, encoding, text.piece).error != 0) continue;
        const std::string piece = support::gb(text.piece);
        const auto effort = [&](std::size_t pieces) {
            const std::string bytes = times(pieces, piece);
            return effortOf(bytes.size(), [&] {
                const support::StreamPtr stream(
                    XML_IO_MemOutStreamCreate(XML_ENCODING_GB18030, encoding));
                for (const char &byte : bytes) {
                    ASSERT_EQ(XML_IO_OutStreamAppend(stream.get(), &byte, 1), XML_OK);
                }
            });
        };
        EXPECT_TRUE(staysLevel(effort(kPieces), effort(hostile::kGrowth * kPieces))) << text.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Encodings, HostileOutput,
                         testing::Range(std::uint32_t{0}, support::kEncodingCount),
                         [](const auto &encoding) {
                             return "Number" + std::to_string(encoding.param);
                         });

// Documents of every shape, as text again.
TEST(HostileTrees, WrittenAgain) {
    constexpr std::size_t kItems = 500, kBytes = 120000;
    for (const auto shapes : {support::structures(), support::tokens()}) {
        for (const support::DocumentShape &shape : shapes) {
            if (shape.message) continue;
            // Conversion begins behind the first texts, so that both must be well beyond them.
            const std::size_t n = shape.unit == support::kItems ? kItems : kBytes;
            const NodePtr one = parsed(shape.document(n));
            const NodePtr eight = parsed(shape.document(hostile::kGrowth * n));
            const auto effort = [](const NodePtr &tree, std::size_t size) {
                return effortOf(size, [&] { EXPECT_TRUE(write(tree.get())); });
            };
            EXPECT_TRUE(staysLevel(effort(one, n), effort(eight, hostile::kGrowth * n)))
                << shape.name;
        }
    }
}

// ---------------------------------------------------------------- searching

struct Tree {
    const char *name;
    std::string (*document)(std::size_t n);
};
constexpr Tree kTrees[] = {
    {"siblings", [](std::size_t n) { return "<r>" + times(n, "<e/>") + "<last/></r>"; }},
    {"long names that differ at their ends",
     [](std::size_t n) {
         const std::string name(200, 'n');
         return "<r>" + times(n / 16, "<" + name + "x/>") + "<last/></r>";
     }},
    {"texts between siblings",
     [](std::size_t n) { return "<r>" + times(n, "t<e/><![CDATA[c]]>") + "<last/></r>"; }},
    {"levels", [](std::size_t n) { return "<r>" + nested(n, "<e>", "</e>") + "<last/></r>"; }},
    {"levels that end in the searched one",
     [](std::size_t n) {
         return "<r>" + times(n, "<e>") + "<last/>" + times(n, "</e>") + "<last/></r>";
     }},
    {"attributes",
     [](std::size_t n) {
         return "<r><e/><last" +
                support::join(n, [](const std::string &i) { return " a" + i + "=''"; }) + "/></r>";
     }},
};

XML_DOM_Node *lastChildOf(const NodePtr &tree) {
    return tree->lastChild;
}

void expectLevel(void (*job)(const NodePtr &tree)) {
    constexpr std::size_t kNodes = 2000;
    for (const Tree &shape : kTrees) {
        const NodePtr one = parsed(shape.document(kNodes));
        const NodePtr eight = parsed(shape.document(hostile::kGrowth * kNodes));
        ASSERT_TRUE(one && eight);
        EXPECT_TRUE(staysLevel(effortOf(kNodes, [&] { job(one); }),
                               effortOf(hostile::kGrowth * kNodes, [&] { job(eight); })))
            << shape.name;
    }
}

// So often that the shortest of searches is work that counts.
template <typename Search>
void often(Search search) {
    for (int i = 0; i < 64; ++i) search();
}

TEST(HostileTrees, Selected) {
    expectLevel([](const NodePtr &tree) {
        often([&] {
            EXPECT_EQ(XML_DOM_SelectSingleNode(tree.get(), "last"), lastChildOf(tree));
            EXPECT_EQ(XML_DOM_SelectSingleNode(tree.get(), "/r/last"), lastChildOf(tree));
            EXPECT_FALSE(XML_DOM_SelectSingleNode(tree.get(), "last/missing"));
        });
    });
}

// A path of as many steps as fit.
TEST(HostileTrees, SelectedByTheLongestPath) {
    const NodePtr tree = parsed("<r>" + nested(600, "<e>", "</e>") + "</r>");
    const auto effort = [&](std::size_t steps) {
        const std::string path = "e" + times(steps - 1, "/e");
        return effortOf(steps, [&] {
            often([&] { EXPECT_TRUE(XML_DOM_SelectSingleNode(tree.get(), path.c_str())); });
        });
    };
    EXPECT_TRUE(staysLevel(effort(64), effort(hostile::kGrowth * 64)));
}

TEST(HostileTrees, ShownByTheirPaths) {
    expectLevel([](const NodePtr &tree) {
        often([&] {
            char path[512];
            EXPECT_GT(XML_DOM_GetXPath(lastChildOf(tree), sizeof path, path), 0u);
        });
        XML_DOM_Node *deepest = tree.get();
        while (deepest->firstChild) deepest = deepest->firstChild;
        std::vector<char> path(1 << 20);
        EXPECT_GT(XML_DOM_GetXPath(deepest, static_cast<std::uint32_t>(path.size()), path.data()),
                  0u);
    });
}

// ---------------------------------------------------------------- editing

// A node is found from the front: each of those at the end costs one look at every sibling, and no more
// for the last than for others.
TEST(HostileTrees, ClippedFromTheBack) {
    expectLevel([](const NodePtr &tree) {
        for (int i = 0; i < 16 && tree->lastChild != tree->firstChild; ++i) {
            const NodePtr last(tree->lastChild);
            XML_DOM_Clip(last.get());
            EXPECT_FALSE(last->parent);
        }
    });
}

TEST(HostileTrees, ClippedFromTheFront) {
    expectLevel([](const NodePtr &tree) {
        while (tree->firstChild) {
            const NodePtr first(tree->firstChild);
            XML_DOM_Clip(first.get());
        }
        EXPECT_FALSE(tree->lastChild);
    });
}

TEST(HostileTrees, GrownAtTheEnd) {
    EXPECT_TRUE(staysLevel(effortOf(500,
                                    [] {
                                        const NodePtr tree = parsed("<r/>");
                                        for (int i = 0; i < 500; ++i) {
                                            XML_DOM_AddChildNode(tree.get(),
                                                                 XML_DOM_CreateElementNode("e"));
                                        }
                                    }),
                           effortOf(4000, [] {
                               const NodePtr tree = parsed("<r/>");
                               for (int i = 0; i < 4000; ++i) {
                                   XML_DOM_AddChildNode(tree.get(), XML_DOM_CreateElementNode("e"));
                               }
                           })));
}

TEST(HostileTrees, InsertedBeforeTheLast) {
    expectLevel([](const NodePtr &tree) {
        for (int i = 0; i < 16; ++i) {
            XML_DOM_Node *added = XML_DOM_CreateElementNode("e");
            EXPECT_EQ(XML_DOM_InsertBeforeNode(tree->lastChild, added), XML_OK);
        }
    });
}

}  // namespace
