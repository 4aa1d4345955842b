// What a document becomes in the tree, however it is handed over.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "compactxml.h"
#include "gtest/gtest.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"
#include "tests/support/namespaces.h"
#include "tests/support/owners.h"
#include "tests/support/reference_iconv.h"
#include "tests/support/texts.h"
#include "tests/support/tree_dump.h"

namespace {

using support::Feed;
using support::gb;
using support::NodePtr;
using support::printable;
using support::RecordedBuild;

using namespace std::string_literals;

NodePtr build(const Feed &feed) {
    char error[512] = "";
    NodePtr tree(feed.build(sizeof error, error));
    EXPECT_TRUE(tree) << printable(error);
    return tree;
}

// ---------------------------------------------------------------- documents and trees

struct Built {
    const char *name;
    std::string document;
    std::string nodes;  // as describeTree shows them, below its first line
};

const std::vector<Built> &documents() {
    static const std::vector<Built> table{
        {"an empty element", "<a/>", "a\n"},
        {"an element that ends at once", "<a></a>", "a\n"},
        {"text", "<a>b</a>", "a\n  \"b\"\n"},
        {"blanks at both ends are dropped", "<a> \t\r\n b c \n</a>", "a\n  \"b c\"\n"},
        {"blanks alone are no text", "<a> <b> </b> </a>", "a\n  b\n"},
        {"a blank by reference is text", "<a>&#32;</a>", "a\n  \" \"\n"},
        {"references protect the blanks at the ends", "<a> &#x20; x &#x0a; </a>",
         "a\n  \"  x \\x0A\"\n"},
        {"every reference", "<a>&lt;&gt;&amp;&apos;&quot;&#65;&#x4e2D;</a>",
         "a\n  \"<>&'\"A" + printable(gb("中")) + "\"\n"},
        {"line breaks inside stay as they are", "<a>x\r\ny\rz\nw</a>",
         "a\n  \"x\\x0D\\x0Ay\\x0Dz\\x0Aw\"\n"},
        {"runs around a comment are not merged", "<a>x<!--c-->y</a>", "a\n  \"x\"\n  \"y\"\n"},
        {"runs around an instruction are not merged", "<a>x<?p q?>y</a>", "a\n  \"x\"\n  \"y\"\n"},
        {"a blank run between two comments is nothing", "<a>x<!----> <!---->y</a>",
         "a\n  \"x\"\n  \"y\"\n"},
        {"two blank runs by reference are two nodes", "<a>&#32;<!----> &#9;</a>",
         "a\n  \" \"\n  \"\\x09\"\n"},
        {"CDATA between text", "<a>x<![CDATA[<y>&amp;]]>z</a>",
         "a\n  \"x\"\n  CDATA \"<y>&amp;\"\n  \"z\"\n"},
        {"CDATA keeps its blanks", "<a><![CDATA[ \n ]]></a>", "a\n  CDATA \" \\x0A \"\n"},
        {"an empty CDATA section", "<a><![CDATA[]]></a>", "a\n  CDATA \"\"\n"},
        {"two CDATA sections in a row", "<a><![CDATA[x]]><![CDATA[]]><![CDATA[y]]></a>",
         "a\n  CDATA \"x\"\n  CDATA \"\"\n  CDATA \"y\"\n"},
        {"CDATA that ends in brackets", "<a><![CDATA[x]]]]></a>", "a\n  CDATA \"x]]\"\n"},
        {"children and siblings", "<a><b><c/>t</b><d/>u</a>",
         "a\n  b\n    c\n    \"t\"\n  d\n  \"u\"\n"},
        {"attributes in the document's order", "<a z='1' y=\"\" x=' 2 '/>",
         "a attrs [z=\"1\" y=\"\" x=\" 2 \"]\n"},
        {"line breaks in a value stay as they are", "<a b='x\r\n\ty'/>",
         "a attrs [b=\"x\\x0D\\x0A\\x09y\"]\n"},
        {"a prefix", "<p:a xmlns:p='u'><p:b p:c='1' d='2'/></p:a>",
         "p:a ns [p=\"u\"]\n  p:b attrs [p:c=\"1\" d=\"2\"]\n"},
        {"a prefix declared behind its use", "<p:a p:b='1' xmlns:p='u'/>",
         "p:a ns [p=\"u\"] attrs [p:b=\"1\"]\n"},
        {"declarations in the document's order", "<a xmlns:z='1' xmlns='2' xmlns:y='3'/>",
         "a ns [z=\"1\" =\"2\" y=\"3\"]\n"},
        {"a default namespace taken back", "<a xmlns='u'><b xmlns=''><c/></b></a>",
         "a ns [=\"u\"]\n  b ns [=\"\"]\n    c\n"},
        {"a prefix redeclared at each level and back again",
         "<p:a xmlns:p='1'><p:b xmlns:p='2'><p:c xmlns:p='3' p:x=''/><p:d/></p:b><p:e/></p:a>",
         "p:a ns [p=\"1\"]\n  p:b ns [p=\"2\"]\n    p:c ns [p=\"3\"] attrs [p:x=\"\"]\n"
         "    p:d\n  p:e\n"},
        {"the prefix xml without a declaration", "<a xml:lang='zh'><xml:b/></a>",
         "a attrs [xml:lang=\"zh\"]\n  xml:b\n"},
        {"the prefix xml with its declaration",
         "<a xmlns:xml='http://www.w3.org/XML/1998/namespace' xml:b=''/>",
         "a ns [xml=\"http://www.w3.org/XML/1998/namespace\"] attrs [xml:b=\"\"]\n"},
        {"one local name in two namespaces", "<a p:b='1' q:b='2' b='3' xmlns:p='u' xmlns:q='v'/>",
         "a ns [p=\"u\" q=\"v\"] attrs [p:b=\"1\" q:b=\"2\" b=\"3\"]\n"},
        {"what stands outside the root",
         "<?xml version='1.0' standalone='yes'?><!--c--><?p?><!DOCTYPE a [<!ENTITY b 'c'>]>"
         "<a/><!--c--><?p?>\n",
         "a\n"},
        {"Chinese names and values", "<设备 名='交换机'>端口<![CDATA[一]]></设备>",
         printable(gb("设备")) + " attrs [" + printable(gb("名")) + "=\"" +
             printable(gb("交换机")) + "\"]\n  \"" + printable(gb("端口")) + "\"\n  CDATA \"" +
             printable(gb("一")) + "\"\n"},
        {"Chinese prefix and namespace name", "<前:a xmlns:前='空间' 前:b=''/>",
         printable(gb("前")) + ":a ns [" + printable(gb("前")) + "=\"" + printable(gb("空间")) +
             "\"] attrs [" + printable(gb("前")) + ":b=\"\"]\n"},
        {"characters of four bytes in the tree", "<a>ö😀𠀀</a>",
         "a\n  \"" + printable(gb("ö😀𠀀")) + "\"\n"},
    };
    return table;
}

TEST(Builder, BuildsTheSameTreeFromEveryFeed) {
    for (const Built &row : documents()) {
        const RecordedBuild expected{true, "encoding 0 version \"1.0\"\n" + row.nodes, ""};
        for (const Feed &feed : support::everyFeed(row.document)) {
            EXPECT_EQ(support::recordBuild(feed), expected) << row.name << ", " << feed.name();
        }
    }
}

TEST(Builder, LinksTheTreeSoundly) {
    for (const Built &row : documents()) {
        const NodePtr tree = build(support::memoryFeed(row.document));
        ASSERT_TRUE(tree) << row.name;
        EXPECT_EQ(support::brokenLink(tree.get()), "") << row.name;
        EXPECT_EQ(support::wrongNamespace(tree.get()), "") << row.name;
    }
}

TEST(Builder, LongTokensArriveWhole) {
    for (const std::size_t size : {255, 256, 257, 1023, 1024, 1025, 5000, 70000}) {
        const std::string run(size, 'x');
        const std::string document = "<" + run + " " + run + "='" + run + "'>" + run + "<![CDATA[" +
                                     run + "]]></" + run + ">";
        const std::string nodes = "encoding 0 version \"1.0\"\n" + run + " attrs [" + run + "=\"" +
                                  run + "\"]\n  \"" + run + "\"\n  CDATA \"" + run + "\"\n";
        for (const Feed &feed : support::mainFeeds(document)) {
            EXPECT_EQ(support::recordBuild(feed).tree, nodes) << size << ", " << feed.name();
        }
    }
}

// The converter works in chunks of 256 bytes; characters must survive any place in them.
TEST(Builder, LongTextOfMixedCharactersArrivesWhole) {
    for (std::size_t shift = 0; shift < 8; ++shift) {
        std::string text(shift, 'x');
        for (int i = 0; i < 300; ++i) text += "ö中😀a";
        const NodePtr tree = build(support::memoryFeed("<a b='" + text + "'>" + text + "</a>"));
        ASSERT_TRUE(tree);
        EXPECT_EQ(XML_DOM_GetFirstTextChildValue(tree.get()), gb(text)) << shift;
        EXPECT_EQ(XML_DOM_GetNodeAttrValByName(tree.get(), "b"), gb(text)) << shift;
    }
}

TEST(Builder, DefaultNamespacesAreResolvedWhenAsked) {
    const NodePtr tree = build(support::memoryFeed("<a xmlns='u'><b><c xmlns=''/></b></a>"));
    ASSERT_TRUE(tree);
    const XML_DOM_Node *b = tree->firstChild;
    EXPECT_EQ(b->ns, nullptr);
    const char *prefix = "unset";
    const char *name = nullptr;
    EXPECT_EQ(XML_DOM_GetNodeNameSpace(b, &prefix, &name), XML_OK);
    EXPECT_EQ(prefix, nullptr);
    EXPECT_STREQ(name, "u");
    EXPECT_EQ(XML_DOM_GetNodeNameSpace(b->firstChild, nullptr, &name), XML_OK);
    EXPECT_STREQ(name, "");
}

TEST(Builder, MakesOneDocumentOwnedByItsRoot) {
    const NodePtr tree = build(support::memoryFeed("<a><b/></a>"));
    ASSERT_TRUE(tree && tree->docInfo);
    EXPECT_EQ(tree->docInfo->root, tree.get());
    EXPECT_EQ(XML_DOM_GetRoot(tree->firstChild), tree.get());
    EXPECT_STREQ(XML_DOM_GetVersion(tree->firstChild), "1.0");
    EXPECT_EQ(tree->parent, nullptr);
}

TEST(Builder, KeepsNothingOfTheCallersDocument) {
    std::string document = "<a xmlns:p='u' p:b='v'>text<![CDATA[data]]></a>";
    const NodePtr tree(XML_DOM_BuildTreeByMem(
        document.data(), static_cast<std::uint32_t>(document.size()), 0, nullptr));
    document.assign(document.size(), '#');
    EXPECT_EQ(support::describeTree(tree.get()),
              "encoding 0 version \"1.0\"\na ns [p=\"u\"] attrs [p:b=\"v\"]\n  \"text\"\n"
              "  CDATA \"data\"\n");
}

// ---------------------------------------------------------------- encodings

struct Encoded {
    const char *declared;  // null: a document without a declaration
    std::uint32_t bytes;   // the encoding its bytes are in
    std::string mark;
    std::uint32_t recorded;
};

const std::vector<Encoded> &encodings() {
    static const std::vector<Encoded> table{
        {"UTF-8", XML_ENCODING_UTF_8, "", 0},
        {"UTF-8", XML_ENCODING_UTF_8, "\xEF\xBB\xBF", 0},
        {"utf-8", XML_ENCODING_UTF_8, "", 0},
        {"UTF-16LE", XML_ENCODING_UTF_16LE, "", 1},
        {"UTF-16LE", XML_ENCODING_UTF_16LE, "\xFF\xFE", 1},
        {"UTF-16BE", XML_ENCODING_UTF_16BE, "", 2},
        {"UTF-16BE", XML_ENCODING_UTF_16BE, "\xFE\xFF", 2},
        {"GB2312", XML_ENCODING_GB2312, "", 3},
        {"gb2312", XML_ENCODING_GB2312, "", 3},
        {"UTF-32LE", XML_ENCODING_UTF_32LE, "", 4},
        {"UTF-32LE", XML_ENCODING_UTF_32LE, "\xFF\xFE\0\0"s, 4},
        {"UTF-32BE", XML_ENCODING_UTF_32BE, "", 5},
        {"UTF-32BE", XML_ENCODING_UTF_32BE, "\0\0\xFE\xFF"s, 5},
        {"UTF-16", XML_ENCODING_UTF_16LE, "", 6},
        {"UTF-16", XML_ENCODING_UTF_16LE, "\xFF\xFE", 6},
        {"UTF-16", XML_ENCODING_UTF_16BE, "", 6},
        {"UTF-16", XML_ENCODING_UTF_16BE, "\xFE\xFF", 6},
        {"UTF-32", XML_ENCODING_UTF_32LE, "", 7},
        {"UTF-32", XML_ENCODING_UTF_32LE, "\xFF\xFE\0\0"s, 7},
        {"UTF-32", XML_ENCODING_UTF_32BE, "", 7},
        {"UTF-32", XML_ENCODING_UTF_32BE, "\0\0\xFE\xFF"s, 7},
        {"GBK", XML_ENCODING_GBK, "", 8},
        {"GB18030", XML_ENCODING_GB18030, "", 9},
        {"UCS-4", XML_ENCODING_UTF_32BE, "", 10},
        {"UCS-4", XML_ENCODING_UTF_32BE, "\0\0\xFE\xFF"s, 10},
        {"UCS-4", XML_ENCODING_UTF_32LE, "", 10},
        {"UCS-4", XML_ENCODING_UTF_32LE, "\xFF\xFE\0\0"s, 10},
        {"UCS-4BE", XML_ENCODING_UTF_32BE, "", 11},
        {"UCS-4BE", XML_ENCODING_UTF_32BE, "\0\0\xFE\xFF"s, 11},
        {"UCS-4LE", XML_ENCODING_UTF_32LE, "", 12},
        {"Ucs-4le", XML_ENCODING_UTF_32LE, "\xFF\xFE\0\0"s, 12},
        // Without a declaration the stream's encoding counts, which a mark alone sets ...
        {nullptr, XML_ENCODING_UTF_8, "", 0},
        {nullptr, XML_ENCODING_UTF_8, "\xEF\xBB\xBF", 0},
        {nullptr, XML_ENCODING_UTF_16LE, "\xFF\xFE", 1},
        {nullptr, XML_ENCODING_UTF_16BE, "\xFE\xFF", 2},
        {nullptr, XML_ENCODING_UTF_32LE, "\xFF\xFE\0\0"s, 4},
        {nullptr, XML_ENCODING_UTF_32BE, "\0\0\xFE\xFF"s, 5},
        // ... intended: what is found out from the first bytes is read so but recorded as UTF-8.
        {nullptr, XML_ENCODING_UTF_16LE, "", 0},
        {nullptr, XML_ENCODING_UTF_16BE, "", 0},
        {nullptr, XML_ENCODING_UTF_32LE, "", 0},
        {nullptr, XML_ENCODING_UTF_32BE, "", 0},
    };
    return table;
}

TEST(Builder, RecordsTheDocumentsEncodingAndVersion) {
    const std::string body = "<配置 名='交换机'><b>端口 一</b></配置>";
    const std::string nodes = support::describeTree(build(support::memoryFeed(body)).get())
                                  .substr(std::string("encoding 0").size());
    for (const Encoded &row : encodings()) {
        std::vector<std::string> prologs;
        if (row.declared) {
            const std::string declaration = "<?xml version='1.0' encoding='"s + row.declared + "'";
            prologs = {declaration + "?>", declaration + " standalone='no' ?>\r\n"};
        } else {
            // A mark-less UTF-16 document is recognised by its first two characters, "<?".
            prologs = {"<?xml version='1.0'?>", "<?pi?>"};
        }
        for (const std::string &prolog : prologs) {
            const std::string document = row.mark + support::inEncoding(row.bytes, prolog + body);
            const RecordedBuild expected{true, "encoding " + std::to_string(row.recorded) + nodes,
                                         ""};
            for (const Feed &feed : support::everyFeed(document)) {
                EXPECT_EQ(support::recordBuild(feed), expected)
                    << prolog << " in " << row.bytes << " behind mark \"" << printable(row.mark)
                    << "\", " << feed.name();
            }
        }
    }
}

TEST(Builder, LongDocumentsInEveryEncodingArriveWhole) {
    std::string body = "<a>";
    for (int i = 0; i < 400; ++i) {
        body +=
            "<b 名='值" + std::to_string(i) + "'>交换机端口" + std::string(i % 7, 'x') + "</b>\n";
    }
    body += "</a>";
    const std::string nodes = support::describeTree(build(support::memoryFeed(body)).get())
                                  .substr(std::string("encoding 0").size());
    for (const Encoded &row : encodings()) {
        if (!row.declared) continue;
        const std::string text = "<?xml version='1.0' encoding='"s + row.declared + "'?>" + body;
        const std::string document = row.mark + support::inEncoding(row.bytes, text);
        for (const Feed &feed : support::mainFeeds(document)) {
            const RecordedBuild built = support::recordBuild(feed);
            EXPECT_EQ(built.error, "") << row.declared << ", " << feed.name();
            EXPECT_TRUE(built.tree == "encoding " + std::to_string(row.recorded) + nodes)
                << row.declared << " in " << row.bytes << ", " << feed.name();
        }
    }
}

// ---------------------------------------------------------------- what the tree cannot hold

// Forty blanks put what stands before them out of the snippet that a message quotes.
const std::string kFar(40, ' ');

support::Conversion toTree(const std::string &utf8) {
    return support::convertWhole(XML_ENCODING_UTF_8, XML_ENCODING_GB18030, utf8);
}

bool refusedInTheBuilder(const std::string &error) {
    const std::string_view begin = "The Line 1 Column ";
    const std::string_view end = "\", internal error.";
    return error.starts_with(begin) && error.ends_with(end);
}

// Some private-use code points have no form in GB18030, which ones depends on the platform. Such a
// document is well-formed but has no tree.
TEST(Builder, RefusesExactlyTheCharactersWithoutAFormInTheTreesEncoding) {
    std::vector<std::uint32_t> codePoints;
    for (std::uint32_t c = 0xE000; c <= 0xFFFD; ++c) codePoints.push_back(c);
    for (std::uint32_t c = 0x10000; c <= 0x10FFFF; c += 0x3FFF) codePoints.push_back(c);
    codePoints.insert(codePoints.end(), {0x9, 0xA, 0xD, 0x7F, 0x80, 0xA0, 0xD7FF, 0x1FFFE, 0x20000,
                                         0x10FFFD, 0x10FFFF});
    for (const std::uint32_t c : codePoints) {
        const bool blank = c == 0x9 || c == 0xA || c == 0xD;
        const std::string character = blank ? "&#" + std::to_string(c) + ";" : support::utf8(c);
        const support::Conversion own = toTree(support::utf8(c));
        const Feed feed = support::memoryFeed("<a>" + character + kFar + "</a>");
        XML_SAX_Handler plain{};
        EXPECT_EQ(feed.parse(&plain), XML_OK) << c;
        char error[512] = "";
        const NodePtr tree(feed.build(sizeof error, error));
        EXPECT_EQ(tree != nullptr, own.error == 0) << std::hex << c << ' ' << printable(error);
        if (tree) {
            EXPECT_EQ(XML_DOM_GetFirstTextChildValue(tree.get()), own.bytes) << std::hex << c;
        } else {
            EXPECT_TRUE(refusedInTheBuilder(error)) << std::hex << c << ' ' << printable(error);
        }
    }
}

struct Place {
    const char *name;
    std::string before;
    std::string between;  // stands twice around what follows, for names
    std::string after;
    bool counted;  // converted by its length alone, without a NUL behind it
};

// The parser accepts these lead bytes and passes the bytes on; the converter judges them. None of
// them may leave anything behind that meets the next string.
TEST(Builder, RefusesMalformedSequencesWhereverTheyStand) {
    const std::vector<std::string> sequences{"\xF8\x90\x80\x80",
                                             "\xFC\x84\x80\x80",
                                             "\xC1\x81",
                                             "\xFB\x90\x80\x80",
                                             "\xF8\x90\x80\x80\xF8\x90\x80\x80",
                                             "\xFC\x84\x80\x80z",
                                             "x\xF8\x90\x80\x80"};
    const std::vector<Place> places{
        {"text", "<a>x ", "", kFar + "</a>", true},
        {"text before a child", "<a>", "", kFar + "<b/></a>", true},
        {"value", "<a v='", "", "'" + kFar + "/>", false},
        {"second value", "<a u='1' v='x", "", "' w='2'" + kFar + "/>", false},
        {"namespace name", "<a xmlns:p='u", "", "'" + kFar + "/>", false},
        {"CDATA", "<a><![CDATA[", "", "]]>" + kFar + "</a>", true},
        {"element name", "<n", kFar + ">" + kFar + "</n", ">", false},
        {"attribute name", "<a n", "", "='1'" + kFar + "/>", false},
        {"prefix", "<a xmlns:n", "", "='u'" + kFar + "/>", false},
    };
    for (const Place &place : places) {
        for (const std::string &sequence : sequences) {
            std::string document = "<r>" + place.before + sequence;
            if (!place.between.empty()) document += place.between + sequence;
            document += place.after + "<b>more</b><c d='e'>text</c><c d='e'/></r>";
            const support::Conversion own = toTree(place.counted ? sequence : sequence + '\0');
            for (const Feed &feed : support::mainFeeds(document)) {
                const std::string label =
                    place.name + (" \"" + printable(sequence)) + "\", " + feed.name();
                XML_SAX_Handler plain{};
                const bool wellFormed = feed.parse(&plain) == XML_OK;
                support::FaultyHeap heap(0);
                const RecordedBuild built = support::recordBuild(feed);
                EXPECT_EQ(heap.blocksInUse(), 0u) << label;
                EXPECT_EQ(built.built, wellFormed && own.error == 0) << label;
                if (built.built || !wellFormed) continue;
                // A CDATA section is handed over right behind it, so the snippet quotes it.
                const bool quoted = std::string_view(place.name) == "CDATA";
                EXPECT_TRUE(quoted ? built.error == "failed to convert encoding."
                                   : refusedInTheBuilder(built.error))
                    << label << ": " << printable(built.error);
            }
        }
    }
}

TEST(Builder, PlainParsesAcceptTheLeadBytesThatTheTreeCannotHold) {
    for (const std::string sequence : {"\xF8\x90\x80\x80", "\xFC\x84\x80\x80", "\xC1\x81"}) {
        for (const char *around : {"<a>x", "<a>", "<a><![CDATA["}) {
            const std::string end = std::string_view(around).ends_with('[') ? "]]></a>" : "</a>";
            XML_SAX_Handler plain{};
            EXPECT_EQ(support::memoryFeed(around + sequence + end).parse(&plain), XML_OK)
                << printable(sequence);
        }
    }
}

// ---------------------------------------------------------------- refused documents

TEST(Builder, LeavesNothingBehindWhenADocumentEndsAnywhere) {
    const std::string document =
        "<?xml version='1.0' encoding='UTF-8'?><!DOCTYPE a [ <!ELEMENT a ANY> ]><p:a xmlns:p='u'>"
        "<!--c--><b x='1' p:y='中'>&lt;t&#x4E2D;</b><![CDATA[d]]><?p i?></p:a><!--e-->";
    const std::size_t rootEnds = document.find("</p:a>") + 6;
    for (std::size_t length = 1; length <= document.size(); ++length) {
        // Behind the root a document may stop, but not in the middle of the comment.
        const bool whole = length == rootEnds || length == document.size();
        for (const Feed &feed : support::mainFeeds(document.substr(0, length))) {
            support::FaultyHeap heap(0);
            support::FaultyFiles files({});
            const RecordedBuild built = support::recordBuild(feed);
            EXPECT_EQ(built.built, whole) << length << ", " << feed.name();
            EXPECT_EQ(built.error.empty(), whole) << length << ", " << feed.name();
            EXPECT_EQ(heap.blocksInUse(), 0u) << length << ", " << feed.name();
            EXPECT_EQ(files.openDescriptors(), 0) << length << ", " << feed.name();
        }
    }
}

TEST(Builder, AcceptsAMissingErrorBuffer) {
    for (const char *document : {"<a/>", "<a>", "<a><b></a>"}) {
        for (const Feed &feed : support::mainFeeds(document)) {
            for (const std::uint32_t size : {0u, 512u}) {
                support::FaultyHeap heap(0);
                XML_DOM_Node *root = feed.build(size, nullptr);
                EXPECT_EQ(root != nullptr, std::string_view(document) == "<a/>") << document;
                XML_DOM_DelNode(root);
                EXPECT_EQ(heap.blocksInUse(), 0u) << document;
            }
        }
    }
}

TEST(Builder, LeavesTheErrorBufferAloneWhenAllIsWell) {
    for (const Feed &feed : support::mainFeeds("<a/>")) {
        char error[8] = "keep me";
        const NodePtr tree(feed.build(sizeof error, error));
        EXPECT_TRUE(tree) << feed.name();
        EXPECT_STREQ(error, "keep me") << feed.name();
    }
}

}  // namespace
