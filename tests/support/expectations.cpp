#include "tests/support/expectations.h"

#include "gtest/gtest.h"
#include "tests/support/parser_model.h"

namespace support {

namespace {

struct Message {
    int code;
    std::string_view text;
};

constexpr Message kMessages[] = {
    {2, "memory allocation failed."},
    {72, "start tag expected, '<' not found."},
    {4, "document is empty."},
    {5, "extra content at the end of the document."},
    {9, "invalid character."},
    {32, "unsupported encoding."},
    {33, "string not started expecting \" or '."},
    {34, "string not closed expecting \" or '."},
    {45, "comment not terminated."},
    {46, "no target name."},
    {47, "expecting an end tag for style-sheet."},
    {57, "parsing XML declaration: '?>' expected."},
    {61, "DOCTYPE improperly terminated."},
    {65, "expecting a space."},
    {25, "expecting a ';'."},
    {75, "expecting a '='."},
    {78, "standalone accepts only yes or no."},
    {80, "comment must not contain '--' (double-hyphen)."},
    {96, "missing version in text declaration."},
    {97, "unsupported version."},
    {42, "attribute redefined."},
    {41, "attribute without value."},
    {63, "CData not finished."},
    {1, "internal error."},
    {68, "name required."},
    {35, "namespace declare error."},
    {76, "tag name mismatch."},
    {77, "tag not finished."},
    {26, "undeclared entity."},
    {62, "sequence ']]>' not allowed in content."},
    {201, "namespace prefix is not defined."},
    {1500, "transition IO stream enCoding error."},
    {38, "unescaped '<' not allowed in attributes values"},
};

void checkRefused(const Refusal &refusal, const RecordedParse &parse) {
    SCOPED_TRACE(testing::Message() << refusal.name << ": " << printable(refusal.document) << "\n"
                                    << parse);
    EXPECT_EQ(parse.result, XML_REFUSED);
    EXPECT_EQ(parse.errors, 1);
    EXPECT_EQ(parse.format, "The Line %d Column %d :\"%s\", %s");
    EXPECT_EQ(parse.status, refusal.code);
    EXPECT_EQ(parse.line, refusal.line);
    EXPECT_EQ(parse.column, refusal.column);
    EXPECT_EQ(parse.contextLine, refusal.line);
    EXPECT_EQ(parse.contextColumn, refusal.column);
    EXPECT_EQ(parse.message, messageOf(refusal.code));
    EXPECT_LE(parse.snippet.size(), 63u);
    EXPECT_TRUE(parse.breaches.empty());
    if (!refusal.snippet.empty()) {
        EXPECT_EQ(parse.snippet,
                  refusal.snippet == kWholeDocument ? refusal.document : refusal.snippet);
    }
}

void expectLikeModel(const char *name, std::string_view document, const RecordedParse &parse) {
    if (!modelSpeaksFor(document)) return;
    const RecordedParse model = modelParse(document);
    EXPECT_TRUE(sameOutcome(model, parse) && model.snippet == parse.snippet)
        << name << ": " << printable(document) << "\nThe model gives " << model << "\nsnippet \""
        << printable(model.snippet) << "\"\nthe library gives " << parse;
}

}  // namespace

std::string_view messageOf(int code) {
    for (const Message &message : kMessages) {
        if (message.code == code) return message.text;
    }
    return "unknown error occurred.";
}

const std::vector<int> &messageCodes() {
    static const std::vector<int> codes = [] {
        std::vector<int> all;
        for (const Message &message : kMessages) all.push_back(message.code);
        return all;
    }();
    return codes;
}

RecordedParse expectSameThroughFeeds(const std::vector<Feed> &feeds, const std::string &name) {
    const RecordedParse first = record(feeds.front());
    for (const Feed &feed : feeds) {
        const RecordedParse parse = record(feed);
        const bool same = sameOutcome(first, parse);
        EXPECT_TRUE(same) << name << "\n"
                          << feeds.front().name() << " gives " << first << "\n"
                          << feed.name() << " gives " << parse;
        // One feed that differs tells enough: the others mostly differ with it.
        if (!same) break;
    }
    return first;
}

RecordedParse expectSameThroughEveryFeed(std::string_view document, const std::string &name) {
    const bool isLong = document.size() > 4096;
    const RecordedParse parse =
        expectSameThroughFeeds(isLong ? mainFeeds(document) : everyFeed(document), name);
    expectLikeModel(name.c_str(), document, parse);
    return parse;
}

void expectRefused(const Refusal &refusal) {
    const RecordedParse parse = expectSameThroughEveryFeed(refusal.document, refusal.name);
    checkRefused(refusal, parse);
}

std::vector<std::string> callsOf(std::string_view document) {
    RecordOptions options;
    options.positions = false;
    return record(memoryFeed(document), options).calls;
}

void expectAccepted(const Acceptance &acceptance) {
    const RecordedParse parse = expectSameThroughEveryFeed(acceptance.document, acceptance.name);
    SCOPED_TRACE(testing::Message()
                 << acceptance.name << ": " << printable(acceptance.document) << "\n"
                 << parse);
    EXPECT_EQ(parse.result, XML_OK);
    EXPECT_EQ(parse.errors, 0);
    EXPECT_TRUE(parse.breaches.empty());
    std::vector<std::string> expected = acceptance.calls;
    if (expected.empty() || expected.front().rfind("startDocument", 0) != 0) {
        expected.insert(expected.begin(), "startDocument encoding 0 version \"1.0\"");
    }
    if (expected.back().rfind("endDocument", 0) != 0) {
        expected.push_back("endDocument encoding 0 version \"1.0\"");
    }
    EXPECT_EQ(callsOf(acceptance.document), expected);
}

}  // namespace support
