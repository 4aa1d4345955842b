#include <gtest/gtest.h>

#include <fstream>
#include <ostream>
#include <sstream>
#include <stdexcept>

#include "tests/support/faults.h"
#include "tests/wrapper/documents.h"

namespace {

using namespace compactxml;
using wrapper::parsed;
using wrapper::written;

constexpr std::string_view kDocument = "<a><b c='1'>text<d/></b><e/><f>more</f></a>";

TEST(WrapperSink, GetsTheDocument) {
    Document document = parsed(kDocument);
    std::string text;
    const auto append = [&text](std::string_view piece) {
        text += piece;
        return true;
    };
    document.writeTo(append).value();
    EXPECT_EQ(text, document.write().value().view());
    text.clear();
    document.root().child("b").writeTo(append, XML_DOM_NO_DECLARATION).value();
    EXPECT_EQ(text, "<b c=\"1\">text<d/></b>");
    text.clear();
    document.setEncoding(XML_ENCODING_UTF_16BE).value();
    document.writeTo(append).value();
    EXPECT_EQ(text, document.write().value().view());
}

TEST(WrapperSink, MayBeAStreamOrAnyFunction) {
    const Document document = parsed(kDocument);
    std::ostringstream stream;
    document
        .writeTo([&stream](std::string_view piece) -> std::ostream & { return stream << piece; },
                 XML_DOM_NO_DECLARATION)
        .value();
    EXPECT_EQ(stream.str(), written(document));
    struct Counter {
        std::size_t bytes = 0;
        bool operator()(std::string_view piece) {
            bytes += piece.size();
            return true;
        }
    } counter;
    document.writeTo(counter, XML_DOM_NO_DECLARATION).value();
    EXPECT_EQ(counter.bytes, written(document).size());
    std::size_t moved = 0;
    document
        .writeTo([&moved, owned = std::make_unique<int>(1)](std::string_view) {
            return moved += static_cast<std::size_t>(*owned), true;
        })
        .value();
    EXPECT_GT(moved, 0U);
}

TEST(WrapperSink, IsNotCalledAgainAfterItEnded) {
    const Document document = parsed(kDocument);
    std::size_t pieces = 0;
    document.writeTo([&pieces](std::string_view) { return ++pieces, true; }).value();
    ASSERT_GT(pieces, 10U);
    for (std::size_t last = 1; last <= pieces; ++last) {
        std::size_t calls = 0;
        const Result<void> result =
            document.writeTo([&](std::string_view) { return ++calls != last; });
        ASSERT_FALSE(result);
        EXPECT_EQ(calls, last);
        EXPECT_EQ(result.error().code, XML_REFUSED);
        EXPECT_EQ(result.error().message, "the sink ended it");
    }
}

TEST(WrapperSink, MayThrow) {
    const Document document = parsed(kDocument);
    std::size_t pieces = 0;
    document.writeTo([&pieces](std::string_view) { return ++pieces, true; }).value();
    for (std::size_t last = 1; last <= pieces; ++last) {
        std::size_t calls = 0;
        const auto sink = [&](std::string_view) {
            if (++calls == last) throw std::length_error("full");
            return true;
        };
        const support::FaultyHeap heap(0);
        EXPECT_THROW(static_cast<void>(document.writeTo(sink)), std::length_error);
        EXPECT_EQ(calls, last);
        EXPECT_EQ(heap.blocksInUse(), 0U);
    }
    EXPECT_EQ(written(document), written(parsed(kDocument)));
}

TEST(WrapperSink, MayThrowAnything) {
    const Document document = parsed(kDocument);
    EXPECT_THROW(static_cast<void>(document.writeTo([](std::string_view) -> bool { throw 7; })),
                 int);
}

TEST(WrapperSink, IsNotAskedForAnEmptyNode) {
    bool called = false;
    const Result<void> result =
        Node().writeTo([&called](std::string_view) { return called = true; });
    EXPECT_FALSE(result);
    EXPECT_FALSE(called);
    EXPECT_EQ(result.error().message, "cannot write");
}

}  // namespace
