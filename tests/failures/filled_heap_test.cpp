// What lies in fresh and in freed memory changes nothing: all results are the same, byte for byte,
// whether blocks are filled with A5, with 5A or not at all.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/failures/attempt.h"
#include "tests/failures/row.h"
#include "tests/failures/row_names.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"
#include "tests/support/sample_trees.h"
#include "tests/support/schema_maker.h"

namespace {

using support::FilledHeap;

constexpr unsigned char kFills[] = {0xA5, 0x5A};

TEST(FilledHeap, EveryFunctionGivesTheSame) {
    for (const failures::Row &row : failures::allRows()) {
        SCOPED_TRACE(failures::nameOf(row));
        const failures::Silence silence(row);
        const failures::Attempt plain = failures::attempt(row, {});
        for (const unsigned char byte : kFills) {
            const FilledHeap fill(byte);
            const failures::Attempt filled = failures::attempt(row, {});
            EXPECT_EQ(filled.answer, plain.answer);
            EXPECT_EQ(filled.account, plain.account);
            EXPECT_EQ(filled.bytes, plain.bytes);
            EXPECT_EQ(filled.reached.allocations, plain.reached.allocations);
        }
    }
}

// What some code gives is compared with itself, under each fill.
template <class Code>
void expectSameUnderEachFill(const Code &code) {
    const std::string plain = code();
    for (const unsigned char byte : kFills) {
        const FilledHeap fill(byte);
        const std::string filled = code();
        EXPECT_GT(fill.bytesFilled(), 0u);
        EXPECT_EQ(filled, plain);
    }
}

std::string parsedAndBuilt(const support::Feed &feed) {
    const support::RecordedParse parse = support::record(feed);
    std::string all = std::to_string(parse.result) + parse.text;
    for (const std::string &call : parse.calls) all += call + "\n";
    const support::RecordedBuild build = support::recordBuild(feed);
    return all + build.tree + build.error;
}

std::vector<std::string> documents() {
    std::vector<std::string> all = {"<a b='1' b='2'/>", "<a>\xFF</a>", "<p:a/>", "x",
                                    "<!DOCTYPE a [<!ENTITY b 'c'>]><a>&b;</a>"};
    for (const char *encoding : {"UTF-8", "GBK", "GB18030", ""}) {
        const std::string whole = failures::sampleDocument(encoding);
        all.push_back(whole);
        for (std::size_t size = 1; size < whole.size(); size += 83) {
            all.push_back(whole.substr(0, size));
        }
    }
    return all;
}

TEST(FilledHeap, ParsesAndBuildsAreTheSame) {
    for (const std::string &document : documents()) {
        for (const support::Feed &feed :
             {support::memoryFeed(document), support::fileFeed(document),
              support::listInPieces(document, 65)}) {
            SCOPED_TRACE(feed.name());
            expectSameUnderEachFill([&feed] { return parsedAndBuilt(feed); });
        }
    }
}

// A tree with much of everything, written in an encoding, with its copies.
std::string writtenAndCopied(std::uint32_t seed, std::uint32_t encoding) {
    const support::NodePtr tree = support::randomTree(seed, seed % 3 != 0);
    XML_DOM_SetEncoding(tree.get(), encoding);
    const support::NodePtr copy(XML_DOM_CopyNode(tree.get()));
    if (copy) XML_DOM_CopySubTree(copy.get(), tree.get());
    std::string all = support::describeTree(copy.get());
    for (const XML_DOM_Node *node : {tree.get(), copy.get()}) {
        char *text = nullptr;
        std::uint32_t length = 0;
        const std::uint32_t result = XML_DOM_TranslateStr(node, 0, &text, &length);
        const support::TextPtr owner(text);
        all += std::to_string(result) + (text ? std::string(text, length) : "(none)");
    }
    return all;
}

TEST(FilledHeap, WrittenTreesAreTheSame) {
    for (std::uint32_t seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(seed);
        expectSameUnderEachFill(
            [seed] { return writtenAndCopied(seed, seed % XML_ENCODING_UNKNOWN); });
    }
}

TEST(FilledHeap, ValidationsAreTheSame) {
    const std::vector<std::string> contents = {"",
                                               "<a/><b/>",
                                               "<b/><b/><c/>",
                                               "<a/><x/><y/><c/>",
                                               "<a/><b/><b/><b/><b/>",
                                               "text",
                                               "<a k='1'/><c/><c/>",
                                               "<d><f/><e/></d><c/>"};
    for (const char *model : {"seq(a, b{0,u}, c)", "seq(choice{0,u}(a, b), any{0,2}, c{0,1})",
                              "choice(seq{1,2}(a, b{1,3}), seq(d, c{1,u}))",
                              "seq{0,u}(choice(a, seq(b, b)), c{0,u})"}) {
        for (const std::string &content : contents) {
            SCOPED_TRACE(std::string(model) + " " + content);
            expectSameUnderEachFill([&] {
                support::SchemaMaker schema;
                SchemaComplexType all{};
                all.particle = schema.model("all(e, f{0,1})");
                schema.declare(support::SchemaMaker::ofComplex("d", schema.complexType(all)));
                schema.addElement("r", model);
                return support::verdict("<r>" + content + "</r>", schema.root());
            });
        }
    }
}

}  // namespace
