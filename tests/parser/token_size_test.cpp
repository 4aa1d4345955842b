// Tokens as long as the buffers of a stream, a byte shorter and longer, at every place relative to
// the windows that a file or a list is read in.
#include <string>
#include <string_view>
#include <vector>

#include "gtest/gtest.h"
#include "tests/support/expectations.h"
#include "tests/support/parser_model.h"
#include "tests/support/small_stack.h"

using support::Feed;
using support::record;
using support::RecordedParse;
using support::RecordOptions;

namespace {

constexpr std::size_t kSizes[] = {63, 64, 65, 1023, 1024, 1025};

// A token of a size that ends in another way than it goes on, so that a lost byte shows.
std::string token(std::size_t size) {
    std::string text;
    for (std::size_t i = 0; text.size() < size; ++i) {
        text += 't';
        text += std::to_string(i % 1000);
    }
    text.resize(size - 1);
    return text + 'z';
}

std::string in(std::string_view before, std::size_t size, std::string_view behind) {
    return std::string(before) + token(size) + std::string(behind);
}

struct Shape {
    const char *name;
    std::string (*piece)(std::size_t size);  // part of the content of an element
    std::size_t step = 1;                    // between the alignments that are tried
};

constexpr Shape kShapes[] = {
    {"element name", [](std::size_t n) { return in("<", n, "/>"); }},
    {"element name of ideographs",
     [](std::size_t n) {
         std::string name;
         while (name.size() + 3 <= n) name += "\xE4\xB8\xAD";
         name += std::string(n - name.size(), 'x');
         return "<" + name + " " + name + "=''></" + name + ">";
     }},
    {"end tag", [](std::size_t n) { return in("<", n, ">") + in("</", n, "  >"); }},
    {"prefix and local name",
     [](std::size_t n) {
         return in("<", n, ":") + token(n) + in(" xmlns:", n, "='u'>") + in("</", n, ":") +
                token(n) + ">";
     },
     5},
    {"attribute name", [](std::size_t n) { return in("<b ", n, "='1'/>"); }},
    {"attribute value", [](std::size_t n) { return in("<b c='", n, "' d=''/>"); }},
    {"value of references",
     [](std::size_t n) {
         std::string text = "<b c='";
         while (text.size() + 5 < n) text += "&lt;";
         return text + "' d='&#65;'/>";
     },
     5},
    {"namespace name", [](std::size_t n) { return in("<p:b xmlns:p='", n, "'/>"); }, 5},
    {"text", [](std::size_t n) { return in("", n, "<b/>"); }},
    {"text of blanks", [](std::size_t n) { return std::string(n, ' ') + "<b/>"; }, 5},
    {"text with blanks behind",
     [](std::size_t n) { return std::string("x").append(n - 1, '\n') + "<b/>"; }, 5},
    {"text of ideographs",
     [](std::size_t n) {
         std::string text;
         while (text.size() + 3 <= n) text += "\xE4\xB8\xAD";
         return text + std::string(n - text.size(), 'x') + "<b/>";
     }},
    {"comment", [](std::size_t n) { return in("<!--", n, "-->"); }},
    {"target", [](std::size_t n) { return in("<?", n, "?>"); }},
    {"instruction", [](std::size_t n) { return in("<?p ", n, "?>"); }},
    {"CDATA", [](std::size_t n) { return in("<![CDATA[", n, "]]>"); }},
    {"blanks in a tag", [](std::size_t n) { return "<b" + std::string(n, ' ') + "c='1'/>"; }, 5},
    {"blanks in an end tag", [](std::size_t n) { return "<b></b" + std::string(n, '\t') + ">"; },
     5},
    {"digits", [](std::size_t n) { return "&#" + std::string(n, '0') + "65;<b/>"; }, 5},
};

// All sizes of one shape in one element.
std::string document(const Shape &shape, std::size_t blanks) {
    std::string text = std::string(blanks, ' ') + "<a>";
    for (const std::size_t size : kSizes) text += shape.piece(size);
    return text + "</a>\n&";
}

// Blanks in front move all tokens through all places; of the parse they move nothing but columns.
TEST(TokenSize, EveryAlignment) {
    constexpr std::size_t kStride = support::kSanitized ? 5 : 1;
    RecordOptions options;
    options.positions = false;
    for (const Shape &shape : kShapes) {
        const std::string first = document(shape, 0);
        const RecordedParse model = support::modelParse(first);
        ASSERT_EQ(model.status, 5) << shape.name << model;
        ASSERT_TRUE(support::sameOutcome(model, record(support::memoryFeed(first)))) << shape.name;
        const RecordedParse expected = support::modelParse(first, options);
        for (std::size_t blanks = 0; blanks < 1024; blanks += kStride * shape.step) {
            const std::string text = std::string(blanks, ' ') + first;
            std::vector<Feed> feeds{support::listFeed(text)};
            if (blanks % 32 == 0 || blanks > 956) feeds.push_back(support::fileFeed(text));
            for (const Feed &feed : feeds) {
                const RecordedParse parse = record(feed, options);
                ASSERT_TRUE(support::sameOutcome(expected, parse))
                    << shape.name << ", " << blanks << " blanks, " << feed.name() << "\nexpected "
                    << expected << "\ngot " << parse;
            }
        }
    }
}

// With positions, at the alignments around the edges and through all kinds of lists.
TEST(TokenSize, Positions) {
    for (const Shape &shape : kShapes) {
        for (const std::size_t blanks : {1, 897, 959, 960, 1000, 1023}) {
            const std::string text = document(shape, blanks);
            const RecordedParse model = support::modelParse(text);
            for (const Feed &feed : support::mainFeeds(text)) {
                const RecordedParse parse = record(feed);
                ASSERT_TRUE(support::sameOutcome(model, parse))
                    << shape.name << ", " << blanks << " blanks, " << feed.name()
                    << "\nThe model gives " << model << "\nthe library gives " << parse;
            }
        }
    }
}

// A DOCTYPE stands before the root, and only once.
TEST(TokenSize, Doctype) {
    for (const std::size_t size : kSizes) {
        for (std::size_t blanks = 0; blanks < 1024; blanks += blanks % 64 < 8 ? 1 : 7) {
            for (const bool subset : {false, true}) {
                const std::string text = std::string(blanks, '\n') +
                                         in("<!DOCTYPE ", size, subset ? " [" : "") +
                                         (subset ? in("", size, "> ]\n>") : ">") + "<a/>&";
                const RecordedParse parse = record(support::listFeed(text));
                ASSERT_EQ(parse.status, 5) << size << ' ' << blanks << parse;
                ASSERT_EQ(parse.line, static_cast<int>(blanks) + (subset ? 2 : 1));
                ASSERT_EQ(parse.column, static_cast<int>(subset ? 6 : size + 16));
                if (blanks % 64 != 0) continue;
                const RecordedParse file = record(support::fileFeed(text));
                ASSERT_TRUE(support::sameOutcome(parse, file)) << file;
                ASSERT_TRUE(support::sameOutcome(support::modelParse(text), file)) << file;
            }
        }
    }
}

// Names that differ in their last byte only, or in one half, whatever the buffer holds of them.
TEST(TokenSize, EndTagsCompareWholeNames) {
    for (const std::size_t size : kSizes) {
        const std::string name = token(size);
        std::string other = name;
        other.back() = 'y';
        const std::string shorter = name.substr(0, size - 1);
        const struct {
            std::string start;
            std::string end;
            int code;
        } kRows[] = {
            {name, name, 0},
            {name, other, 76},
            {name, shorter, 76},
            {name, name + "z", 77},
            {"p:" + name, "p:" + name, 0},
            {"p:" + name, "p:" + other, 76},
            {"p:" + name, name, 76},
            {name + ":a", name + ":a", 0},
            {name + ":a", other + ":a", 76},
            {name + ":a", name, 76},
            {name + ":a", shorter + ":a", 76},
        };
        for (const auto &row : kRows) {
            const std::string prefix = row.start.substr(0, row.start.find(':'));
            const std::string declared = prefix == row.start ? "" : " xmlns:" + prefix + "='u'";
            for (std::size_t blanks = 0; blanks < 1024; blanks += 146) {
                const std::string text = "<" + row.start + declared + ">" +
                                         std::string(blanks, ' ') + "</" + row.end + ">";
                const RecordedParse model = support::modelParse(text);
                ASSERT_EQ(model.status, row.code) << size << ' ' << row.end << model;
                for (const Feed &feed : {support::memoryFeed(text), support::fileFeed(text),
                                         support::listFeed(text), support::listInPieces(text, 1)}) {
                    const RecordedParse parse = record(feed);
                    ASSERT_TRUE(support::sameOutcome(model, parse))
                        << size << ", " << blanks << " blanks, " << feed.name()
                        << "\nThe model gives " << model << "\nthe library gives " << parse;
                }
            }
        }
    }
}

}  // namespace
