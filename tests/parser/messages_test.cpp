// Every message of the parser, provoked by its smallest document and by one that fails on a later
// line: code, line, column, text and the piece of the document that it quotes.
#include <string>
#include <string_view>

#include "gtest/gtest.h"
#include "tests/support/expectations.h"

using namespace std::string_view_literals;
using support::kWholeDocument;
using support::Refusal;

namespace {

constexpr Refusal kRefusals[] = {
    // ---- the document as a whole
    {"4 white space", " ", 4, 1, 2, kWholeDocument},
    {"4 one line break", "\n", 4, 2, 1, kWholeDocument},
    {"4 comment and line", "<!--c-->\n<?p?> ", 4, 2, 7, kWholeDocument},
    {"4 declaration alone", "<?xml version='1.0'?>", 4, 1, 22, kWholeDocument},
    {"4 after a DOCTYPE", "<!DOCTYPE a>\r\n", 4, 2, 1, kWholeDocument},
    {"72 a word", "a", 72, 1, 1, kWholeDocument},
    {"72 three letters", "abc", 72, 1, 1, kWholeDocument},
    {"72 third line, fifth character", "<!--1-->\r\n<!--2-->\r\n    x", 72, 3, 5, kWholeDocument},
    {"72 a character of three bytes", "\xE4\xB8\xAD<a/>", 72, 1, 1, kWholeDocument},
    {"5 second element", "<a/><b/>", 5, 1, 5, kWholeDocument},
    {"5 text", "<a/>b", 5, 1, 5, kWholeDocument},
    {"5 second element, later line", "<a></a>\n\n <b/>", 5, 3, 2, kWholeDocument},
    {"5 NUL behind the root", "<a/>\0"sv, 5, 1, 5, "<a/>"},
    {"5 CDATA behind the root", "<a/>\n<![CDATA[x]]>", 5, 2, 1, kWholeDocument},
    {"5 DOCTYPE behind the root", "<a/>\n<!DOCTYPE a>", 5, 2, 1, kWholeDocument},

    // ---- characters
    {"9 element name", "<1/>", 9, 1, 2, kWholeDocument},
    {"9 element name, later line", "<a>\n<-b/></a>", 9, 2, 2, kWholeDocument},
    {"9 control character in text", "<a>\x01</a>", 9, 1, 4, kWholeDocument},
    {"9 control character, later line", "<a>\r\rx\x0C</a>", 9, 3, 2, kWholeDocument},
    {"9 in a comment", "<!--\x02-->", 9, 1, 5, kWholeDocument},
    {"9 in CDATA", "<a>\n<![CDATA[x\x7F\x1F]]></a>", 9, 2, 12, kWholeDocument},
    {"9 in an attribute value", "<a b='\x03'/>", 9, 1, 7, kWholeDocument},
    {"9 in an instruction", "<?p \x04?>", 9, 1, 5, kWholeDocument},
    {"9 in a DOCTYPE", "<!DOCTYPE a\n\x05>", 9, 2, 1, kWholeDocument},
    {"9 no character at all", "<a>\x80</a>", 9, 1, 4, kWholeDocument},
    {"9 part of a character at the end", "<a>\xE4\xB8", 9, 1, 4, "<a>"},
    {"9 illegal reference stands behind its ;", "<a>&#0;</a>", 9, 1, 8, kWholeDocument},
    {"9 illegal reference, later line", "<a>\n&#xFFFF;</a>", 9, 2, 9, kWholeDocument},
    {"9 reference without digits", "<a>&#;</a>", 9, 1, 7, kWholeDocument},
    {"9 after a colon", "<a:1/>", 9, 1, 4, kWholeDocument},
    {"9 CDATA before the root", "<![CDATA[x]]>", 9, 1, 2, kWholeDocument},

    // ---- quoted strings
    {"33 attribute", "<a b=c", 33, 1, 6, kWholeDocument},
    {"33 attribute at the end", "<a b=", 33, 1, 6, kWholeDocument},
    {"33 attribute, later line", "<a\nb=\n\tc/>", 33, 3, 2, kWholeDocument},
    {"33 version", "<?xml version=1.0?>", 33, 1, 15, kWholeDocument},
    {"33 encoding", "<?xml version='1.0'\nencoding=UTF-8?>", 33, 2, 10, kWholeDocument},
    {"33 standalone", "<?xml version='1.0' standalone=yes?>", 33, 1, 32, kWholeDocument},
    {"34 attribute", "<a b='", 34, 1, 7, kWholeDocument},
    {"34 attribute, later line", "<a b='\nc\"/>", 34, 2, 5, kWholeDocument},
    {"34 version", "<?xml version='1.0", 34, 1, 19, kWholeDocument},
    {"34 mixed quotes", "<?xml version=\"1.0'?>", 34, 1, 19, kWholeDocument},
    {"34 encoding", "<?xml version='1.0'\nencoding='UTF-8?>", 34, 2, 18,
     " version='1.0'\nencoding='UTF-8?>"},
    {"34 standalone", "<?xml version='1.0' standalone='yes", 34, 1, 36,
     "ml version='1.0' standalone='yes"},

    // ---- comments and instructions
    {"45 comment", "<!--", 45, 1, 5, kWholeDocument},
    {"45 > is content", "<!-->", 45, 1, 6, kWholeDocument},
    {"45 -> is content", "<!--->", 45, 1, 7, kWholeDocument},
    {"45 in content, later line", "<a>\n<!-- -", 45, 2, 7, kWholeDocument},
    {"45 behind the root", "<a/>\n<!--x", 45, 2, 6, kWholeDocument},
    {"80 comment", "<!------>", 80, 1, 5, kWholeDocument},
    {"80 at the end", "<!--a--", 80, 1, 6, kWholeDocument},
    {"80 later line", "<!--a\n -- -->", 80, 2, 2, kWholeDocument},
    {"80 before --->", "<a><!--a---></a>", 80, 1, 9, kWholeDocument},
    {"46 at the end", "<?", 46, 1, 3, kWholeDocument},
    {"46 declaration behind a blank", " <?xml version='1.0'?><a/>", 46, 1, 7, kWholeDocument},
    {"46 declaration in content", "<a>\n<?xml?></a>", 46, 2, 6, kWholeDocument},
    {"46 declaration behind the root", "<a/><?xml ?>", 46, 1, 10, kWholeDocument},
    {"47 no data", "<?p ", 47, 1, 5, kWholeDocument},
    {"47 data", "<?p a?", 47, 1, 7, kWholeDocument},
    {"47 later line", "<a>\n<?p \r\nb> ", 47, 3, 4, kWholeDocument},

    // ---- the declaration and the DOCTYPE
    {"32 unknown encoding", "<?xml version='1.0' encoding='x'?>", 32, 1, 32, kWholeDocument},
    {"32 later line", "<?xml version='1.0'\nencoding=\"latin1\"?><a/>", 32, 2, 17,
     "l version='1.0'\nencoding=\"latin1\"?><a/>"},
    {"32 no encoding", "<?xml version='1.0'\n\nencoding=''?>", 32, 3, 11, kWholeDocument},
    {"57 version alone", "<?xml version='1.0'", 57, 1, 20, kWholeDocument},
    {"57 another word", "<?xml version='1.0' x?>", 57, 1, 21, kWholeDocument},
    {"57 after the encoding", "<?xml version='1.0' encoding='gbk'\nx", 57, 2, 1,
     "ml version='1.0' encoding='gbk'\nx"},
    {"57 after standalone", "<?xml version='1.0' standalone='no'x", 57, 1, 36,
     "ml version='1.0' standalone='no'x"},
    {"57 half an end", "<?xml version='1.0'\n ?", 57, 2, 2, kWholeDocument},
    {"61 DOCTYPE", "<!DOCTYPE ", 61, 1, 11, kWholeDocument},
    {"61 internal subset", "<!DOCTYPE a [>\n", 61, 2, 1, kWholeDocument},
    {"61 ]]> is no end", "<!DOCTYPE a []]>", 61, 1, 17, kWholeDocument},
    {"75 attribute", "<a b>", 75, 1, 5, kWholeDocument},
    {"75 attribute, later line", "<a\nb\n c='1'/>", 75, 3, 2, kWholeDocument},
    {"75 version", "<?xml version?>", 75, 1, 14, kWholeDocument},
    {"75 encoding", "<?xml version='1.0'\nencoding", 75, 2, 9, kWholeDocument},
    {"75 standalone", "<?xml version='1.0' standalone ?>", 75, 1, 32, kWholeDocument},
    {"78 standalone", "<?xml version='1.0' standalone='", 78, 1, 33, kWholeDocument},
    {"78 upper case, later line", "<?xml version='1.0'\nstandalone='YES'?>", 78, 2, 13,
     kWholeDocument},
    {"96 no version", "<?xml ", 96, 1, 7, kWholeDocument},
    {"96 encoding alone, later line", "<?xml\nencoding='UTF-8'?>", 96, 2, 1, kWholeDocument},
    {"97 version 1.1", "<?xml version='1.1'?>", 97, 1, 16, kWholeDocument},
    {"97 empty version, later line", "<?xml version\r\n=\n\"\"?>", 97, 3, 2, kWholeDocument},

    // ---- spaces
    {"65 behind <?xml", "<?xml", 65, 1, 6, kWholeDocument},
    {"65 style sheet at the very beginning", "<?xml-stylesheet href='a'?>", 65, 1, 6,
     kWholeDocument},
    {"65 behind the version", "<?xml version='1.0'x", 65, 1, 20, kWholeDocument},
    {"65 behind the encoding", "<?xml\nversion='1.0' encoding='utf-8'standalone", 65, 2, 31,
     "l\nversion='1.0' encoding='utf-8'standalone"},
    {"65 behind a target", "<?p", 65, 1, 4, kWholeDocument},
    {"65 colon in a target", "<?a:b?>", 65, 1, 4, kWholeDocument},
    {"65 behind <!DOCTYPE", "<!DOCTYPE", 65, 1, 10, kWholeDocument},
    {"65 behind <!DOCTYPE, later line", "\n<!DOCTYPEa>", 65, 2, 10, kWholeDocument},
    {"65 name at the end", "<a", 65, 1, 3, kWholeDocument},
    {"65 between attributes", "<a b='1'c='2'/>", 65, 1, 9, kWholeDocument},
    {"65 between attributes, later line", "<a\n b='\n'c='2'/>", 65, 3, 2, kWholeDocument},
    {"65 lone slash", "<a/", 65, 1, 3, kWholeDocument},

    // ---- references and text
    {"25 decimal", "<a>&#65", 25, 1, 8, kWholeDocument},
    {"25 hexadecimal", "<a>&#x", 25, 1, 7, kWholeDocument},
    {"25 upper case X", "<a>&#X41;</a>", 25, 1, 6, kWholeDocument},
    {"25 later line", "<a b='\n&#x4G;'/>", 25, 2, 5, kWholeDocument},
    {"26 stands behind the &", "<a>&b;</a>", 26, 1, 5, kWholeDocument},
    {"26 & at the end", "<a>&", 26, 1, 5, kWholeDocument},
    {"26 in a value, later line", "<a b='\r\n&amp'/>", 26, 2, 2, kWholeDocument},
    {"62 text", "<a>]]>", 62, 1, 4, kWholeDocument},
    {"62 later line", "<a>x\n y]]>z</a>", 62, 2, 3, kWholeDocument},
    {"63 CDATA", "<a><![CDATA[", 63, 1, 13, kWholeDocument},
    {"63 later line", "<a><![CDATA[]]\n] ]>", 63, 2, 5, kWholeDocument},
    {"38 value", "<a b='<", 38, 1, 7, kWholeDocument},
    {"38 later line", "<a b='\n\n<'/>", 38, 3, 1, kWholeDocument},

    // ---- names, tags and namespaces
    {"68 element", "<a:", 68, 1, 4, kWholeDocument},
    {"68 attribute, later line", "<a\nb:", 68, 2, 3, kWholeDocument},
    {"42 same name", "<a b='' b=''/>", 42, 1, 13, kWholeDocument},
    {"42 stands before the end of the tag", "<a\nb=''\nb='' />", 42, 3, 6, kWholeDocument},
    {"42 same namespace name", "<a p:b='' q:b='' xmlns:p='u'\nxmlns:q='u'/>", 42, 2, 12,
     "' q:b='' xmlns:p='u'\nxmlns:q='u'/>"},
    {"42 declaration stands behind its quote", "<a xmlns:p='u' xmlns:p='v' />", 42, 1, 27,
     kWholeDocument},
    {"42 default declared twice, later line", "<a xmlns=''\nxmlns=''\n>", 42, 2, 9, kWholeDocument},
    {"35 stands behind the quote", "<a xmlns:p='' />", 35, 1, 14, kWholeDocument},
    {"35 later line", "<a>\n<b xmlns:xml='u'\n/></a>", 35, 2, 17, kWholeDocument},
    {"201 element", "<p:a/>", 201, 1, 5, kWholeDocument},
    {"201 attribute, later line", "<a>\n<b p:c=''>", 201, 2, 10, kWholeDocument},
    {"76 other name", "<a></b>", 76, 1, 6, kWholeDocument},
    {"76 later line", "<a>\n<b></a></b>", 76, 2, 6, kWholeDocument},
    {"76 before another prefix", "<p:a xmlns:p='u'></q:a>", 76, 1, 20, kWholeDocument},
    {"76 before a prefix without its colon", "<p:a xmlns:p='u'>\n</pa>", 76, 2, 3, kWholeDocument},
    {"76 behind the right prefix", "<p:a xmlns:p='u'></p:b>", 76, 1, 22, kWholeDocument},
    {"77 lone <", "<", 77, 1, 2, kWholeDocument},
    {"77 blank behind the name", "<a ", 77, 1, 4, kWholeDocument},
    {"77 no end tag", "<a>", 77, 1, 4, kWholeDocument},
    {"77 no end tag, text on a later line", "<a>\nb\n", 77, 3, 1, kWholeDocument},
    {"77 end tag cut off", "<a></a", 77, 1, 7, kWholeDocument},
    {"77 longer name in the end tag", "<a></ab>", 77, 1, 7, kWholeDocument},
    {"77 blank in the end tag, later line", "<a>\n</a\n b>", 77, 3, 2, kWholeDocument},

    // ---- which of two errors
    {"the first of two", "<a b='<' c=d></b>", 38, 1, 7, kWholeDocument},
    {"201 before 42, prefix first", "<a p:b='' c='' c=''/>", 201, 1, 20, kWholeDocument},
    {"201 before 42, prefix last", "<a c='' c='' p:b=''/>", 201, 1, 20, kWholeDocument},
    {"42 before 201 of the element", "<p:a c='' c=''/>", 42, 1, 15, kWholeDocument},
    {"35 before 42 of the same tag", "<a c='' c='' xmlns:p=''/>", 35, 1, 24, kWholeDocument},
    {"35 before 42 of the same attribute", "<a xmlns:p='u' xmlns:p=''/>", 35, 1, 26,
     kWholeDocument},
    {"201 in a tag before 76 of its end", "<a b:c=''></d>", 201, 1, 10, kWholeDocument},
};

TEST(ParserMessages, Documents) {
    for (const Refusal &refusal : kRefusals) support::expectRefused(refusal);
}

// Every code of the table that a document can provoke is among the rows above.
TEST(ParserMessages, DocumentsCoverTheTable) {
    for (const int code : support::messageCodes()) {
        // 1 and 2 are exhausted memory or a callback's, 41 no rule uses, 1500 is conversion.
        if (code == 1 || code == 2 || code == 41 || code == 1500) continue;
        int rows = 0;
        int laterRows = 0;
        for (const Refusal &refusal : kRefusals) {
            rows += refusal.code == code;
            laterRows += refusal.code == code && refusal.line > 1;
        }
        EXPECT_GE(rows, 2) << code;
        EXPECT_GE(laterRows, 1) << code;
    }
}

// Only a list or a file can be empty: a buffer of no bytes is refused before there is a parse.
TEST(ParserMessages, EmptyDocument) {
    support::expectRefused({"no bytes", "", 4, 1, 1});
    const support::RecordedParse parse = support::record(support::listFeed(""));
    EXPECT_EQ(parse.text, "The Line 1 Column 1 :\"\", document is empty.");
    EXPECT_EQ(parse.calls.size(), 1u);  // startDocument
}

TEST(ParserMessages, WholeText) {
    const support::RecordedParse parse =
        support::record(support::memoryFeed("<a>\n<b c='\xE4\xB8\xAD<'/>"));
    EXPECT_EQ(parse.text,
              "The Line 2 Column 8 :\"<a>\n<b c='\xE4\xB8\xAD<'/>\", "
              "unescaped '<' not allowed in attributes values");
}

// A callback's number stands for the code, so every row of the table can be asked for.
TEST(ParserMessages, EveryCodeAsStatus) {
    std::vector<int> codes = support::messageCodes();
    codes.insert(codes.end(), {3, 6, 100, 65535, 65536, -1, -9, 2147483647, -2147483647 - 1});
    for (const int code : codes) {
        support::RecordOptions options;
        options.stopSlot = support::Slot::kStartElementNs;
        options.stopStatus = code;
        const support::RecordedParse parse = support::record(support::memoryFeed("\n<a>"), options);
        EXPECT_EQ(parse.result, XML_REFUSED);
        EXPECT_EQ(parse.status, code);
        EXPECT_EQ(parse.message, support::messageOf(code));
        EXPECT_EQ(parse.text,
                  "The Line 2 Column 3 :\"\n<a>\", " + std::string(support::messageOf(code)));
        EXPECT_TRUE(parse.breaches.empty());
    }
}

// A byte order mark is no character: columns count from behind it, and the text quotes it only as
// long as the buffer holds it.
TEST(ParserMessages, ByteOrderMark) {
    constexpr Refusal kMarked[] = {
        {"mark alone", "\xEF\xBB\xBF", 4, 1, 1, kWholeDocument},
        {"mark and a word",
         "\xEF\xBB\xBF"
         "abc",
         72, 1, 1, kWholeDocument},
        {"mark and a second line", "\xEF\xBB\xBF<a>\n</b>", 76, 2, 3, kWholeDocument},
        {"two marks", "\xEF\xBB\xBF\xEF\xBB\xBF<a/>", 72, 1, 1, kWholeDocument},
    };
    for (const Refusal &refusal : kMarked) support::expectRefused(refusal);
}

}  // namespace
