// The XML declaration, comments, processing instructions and the document type declaration.
#include <string>
#include <string_view>

#include "gtest/gtest.h"
#include "tests/support/expectations.h"

using namespace std::string_view_literals;
using support::Acceptance;
using support::expectAccepted;
using support::expectRefused;
using support::Refusal;

namespace {

const std::string kStartA = R"(startElementNs "a" prefix null uri null ns [] attrs [])";
const std::string kEndA = R"(endElementNs "a" prefix null uri null)";

std::string startDocument(int encoding) {
    return "startDocument encoding " + std::to_string(encoding) + " version \"1.0\"";
}

std::string endDocument(int encoding) {
    return "endDocument encoding " + std::to_string(encoding) + " version \"1.0\"";
}

// ---------------------------------------------------------------- the declaration

TEST(Prolog, DeclarationsAccepted) {
    constexpr struct {
        const char *declaration;
        int encoding;
    } kDeclarations[] = {
        {"", 0},
        {"<?xml version='1.0'?>", 0},
        {"<?xml version=\"1.0\"?>", 0},
        {"<?xml version='1.0' ?>", 0},
        {"<?xml\tversion\r\n=\n'1.0'\t\r\n?>", 0},
        {"<?xml version='1.0' standalone='yes'?>", 0},
        {"<?xml version='1.0' standalone = \"no\" ?>", 0},
        {"<?xml version='1.0'\nstandalone\n=\n'no'\n?>", 0},
        {"<?xml version='1.0' encoding='UTF-8'?>", 0},
        {"<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"no\"?>", 0},
        {"<?xml version='1.0' encoding = 'uTf-8' standalone='yes'?>", 0},
        {"<?xml version='1.0' encoding\t=\r\n\"UTF-8\"\n?>", 0},
        {"<?xml version='1.0' encoding='GB2312'?>", 3},
        {"<?xml version='1.0' encoding='gb2312' ?>", 3},
        {"<?xml version='1.0' encoding='GBK'?>", 8},
        {"<?xml version='1.0' encoding='gbk' standalone='no'?>", 8},
        {"<?xml version='1.0' encoding='GB18030'?>", 9},
        {"<?xml version='1.0' encoding='Gb18030'   standalone='yes'?>", 9},
    };
    for (const auto &row : kDeclarations) {
        for (const char *space : {"", "\n \t\r"}) {
            expectAccepted(
                {row.declaration,
                 row.declaration + std::string(space) + "<a/>",
                 {startDocument(row.encoding), kStartA, kEndA, endDocument(row.encoding)}});
        }
    }
}

constexpr Refusal kDeclarationRefusals[] = {
    {"nothing behind <?xml", "<?xml", 65, 1, 6},
    {"end behind <?xml", "<?xml?><a/>", 65, 1, 6},
    {"no blank behind <?xml", "<?xmlversion='1.0'?><a/>", 65, 1, 6},
    {"form feed is no blank", "<?xml\fversion='1.0'?><a/>", 65, 1, 6},
    {"no-break space is no blank", "<?xml\xC2\xA0version='1.0'?><a/>", 65, 1, 6},
    {"colon behind <?xml", "<?xml:a version='1.0'?><a/>", 65, 1, 6},
    {"no version", "<?xml ?><a/>", 96, 1, 7},
    {"encoding first", "<?xml encoding='UTF-8'?><a/>", 96, 1, 7},
    {"upper case version", "<?xml Version='1.0'?><a/>", 96, 1, 7},
    {"version cut off", "<?xml versio", 96, 1, 7},
    {"no =", "<?xml version '1.0'?><a/>", 75, 1, 15},
    {"longer word", "<?xml versions='1.0'?><a/>", 75, 1, 14},
    {"end behind version", "<?xml version", 75, 1, 14},
    {"end behind =", "<?xml version= ", 33, 1, 16},
    {"no quote", "<?xml version=`1.0`?><a/>", 33, 1, 15},
    {"end behind the quote", "<?xml version='", 97, 1, 16},
    {"version cut off in the quotes", "<?xml version='1.", 97, 1, 16},
    {"version 1.1", "<?xml version=\"1.1\"?><a/>", 97, 1, 16},
    {"version 1", "<?xml version='1'?><a/>", 97, 1, 16},
    {"blank before the version", "<?xml version=' 1.0'?><a/>", 97, 1, 16},
    {"version 1.00", "<?xml version='1.00'?><a/>", 34, 1, 19},
    {"blank behind the version", "<?xml version='1.0 '?><a/>", 34, 1, 19},
    {"mixed quotes", "<?xml version=\"1.0'?><a/>", 34, 1, 19},
    {"end behind 1.0", "<?xml version='1.0", 34, 1, 19},
    {"no blank before encoding", "<?xml version='1.0'encoding='UTF-8'?><a/>", 65, 1, 20},
    {"lone ?", "<?xml version='1.0'?", 65, 1, 20},
    {"lone ? behind a blank", "<?xml version='1.0' ?", 57, 1, 21},
    {"> without ?", "<?xml version='1.0'><a/>", 65, 1, 20},
    {"end behind the version", "<?xml version='1.0'", 57, 1, 20},
    {"end behind a blank", "<?xml version='1.0'\n", 57, 2, 1},
    {"another word", "<?xml version='1.0' foo='bar'?><a/>", 57, 1, 21},
    {"version twice", "<?xml version='1.0' version='1.0'?><a/>", 57, 1, 21},
    {"upper case encoding", "<?xml version='1.0' ENCODING='UTF-8'?><a/>", 57, 1, 21},
    {"encoding without =", "<?xml version='1.0' encoding 'UTF-8'?><a/>", 75, 1, 30},
    {"end behind encoding", "<?xml version='1.0' encoding", 75, 1, 29},
    {"encoding without quote", "<?xml version='1.0' encoding=UTF-8?><a/>", 33, 1, 30},
    {"end behind encoding=", "<?xml version='1.0' encoding=", 33, 1, 30},
    {"end behind the encoding's quote", "<?xml version='1.0' encoding='", 34, 1, 31},
    {"end in the encoding", "<?xml version='1.0' encoding='UTF-8", 34, 1, 36},
    {"other quote at the end", "<?xml version='1.0' encoding='UTF-8\"?>", 34, 1, 39},
    {"unknown encoding", "<?xml version='1.0' encoding='latin1'?><a/>", 32, 1, 37},
    {"no alias", "<?xml version='1.0' encoding='UTF8'?><a/>", 32, 1, 35},
    {"empty encoding", "<?xml version='1.0' encoding=''?><a/>", 32, 1, 31},
    {"blank behind the encoding", "<?xml version='1.0' encoding='UTF-8 '?><a/>", 32, 1, 37},
    {"blank before the encoding", "<?xml version='1.0' encoding=' UTF-8'?><a/>", 32, 1, 37},
    {"prefix of an encoding", "<?xml version='1.0' encoding='UTF-'?><a/>", 32, 1, 35},
    {"encoding and more", "<?xml version='1.0' encoding='UTF-88'?><a/>", 32, 1, 37},
    {"NUL in the encoding", "<?xml version='1.0' encoding='UTF-8\0'?><a/>"sv, 32, 1, 37},
    {"lines in the encoding", "<?xml version='1.0' encoding='\r\nU\nTF-8'?><a/>", 32, 3, 5},
    {"end behind the encoding", "<?xml version='1.0' encoding='UTF-8'", 57, 1, 37},
    {"no blank behind the encoding", "<?xml version='1.0' encoding='UTF-8'x?><a/>", 65, 1, 37},
    {"another word behind the encoding", "<?xml version='1.0' encoding='UTF-8' x?><a/>", 57, 1, 38},
    {"encoding twice", "<?xml version='1.0' encoding='GBK' encoding='GBK'?><a/>", 57, 1, 36},
    {"encoding behind standalone", "<?xml version='1.0' standalone='no' encoding='GBK'?><a/>", 57,
     1, 37},
    {"standalone without =", "<?xml version='1.0' standalone?><a/>", 75, 1, 31},
    {"standalone without quote", "<?xml version='1.0' standalone=no?><a/>", 33, 1, 32},
    {"end behind standalone=", "<?xml version='1.0' standalone=", 33, 1, 32},
    {"neither yes nor no", "<?xml version='1.0' standalone='maybe'?><a/>", 78, 1, 33},
    {"upper case yes", "<?xml version='1.0' standalone='Yes'?><a/>", 78, 1, 33},
    {"empty standalone", "<?xml version='1.0' standalone=''?><a/>", 78, 1, 33},
    {"end in standalone", "<?xml version='1.0' standalone='ye", 78, 1, 33},
    {"yes and more", "<?xml version='1.0' standalone='yes '?><a/>", 34, 1, 36},
    {"no and more", "<?xml version='1.0' standalone='none'?><a/>", 34, 1, 35},
    {"other quote behind yes", "<?xml version='1.0' standalone='yes\"?><a/>", 34, 1, 36},
    {"end behind no", "<?xml version='1.0' standalone=\"no", 34, 1, 35},
    {"end behind standalone", "<?xml version='1.0' standalone='no'", 57, 1, 36},
    {"word behind standalone", "<?xml version='1.0' standalone='no' x?><a/>", 57, 1, 37},
    {"blank inside the end", "<?xml version='1.0' standalone='no' ? ><a/>", 57, 1, 37},
    {"declaration behind a blank", " <?xml version='1.0'?><a/>", 46, 1, 7},
    {"declaration behind a comment", "<!----><?xml version='1.0'?><a/>", 46, 1, 13},
    {"declaration behind a declaration", "<?xml version='1.0'?><?xml version='1.0'?><a/>", 46, 1,
     27},
    {"style sheet first", "<?xml-stylesheet href='a'?><a/>", 65, 1, 6},
};

TEST(Prolog, DeclarationsRefused) {
    for (const Refusal &refusal : kDeclarationRefusals) {
        expectRefused(refusal);
        // A declaration that fails, fails before the first callback. One that is read too late is
        // an instruction like any other.
        if (refusal.code == 46) continue;
        const auto parse = support::record(support::memoryFeed(refusal.document));
        EXPECT_TRUE(parse.calls.empty()) << refusal.name;
    }
}

// Nothing judges the characters of a declared encoding, so a byte that begins no character takes
// the one behind it along, be it the closing quote. At the end of the input there is none to take.
TEST(Prolog, StrayBytesInTheEncoding) {
    constexpr Refusal kStray[] = {
        {"quote passed over", "<?xml version='1.0' encoding='\x80'?><a b='c'/>", 32, 1, 39},
        {"two bytes passed over", "<?xml version='1.0' encoding='\xA0''?><a b='c'/>", 32, 1, 39},
        {"end passed over", "<?xml version='1.0' encoding='\xF0", 34, 1, 32},
        {"end nearly reached", "<?xml version='1.0' encoding='\xE4\xB8'", 34, 1, 32},
        {"continuation last", "<?xml version='1.0' encoding='UTF-8\xB8", 34, 1, 37},
    };
    for (const Refusal &refusal : kStray) expectRefused(refusal);
}

// Only these six bytes in front make a declaration.
TEST(Prolog, NoDeclaration) {
    expectAccepted({"upper case",
                    "<?XML version='1.0'?><a/>",
                    {R"(processingInstruction "XML" "version='1.0'")", kStartA, kEndA}});
    expectAccepted(
        {"upper case, wrong version",
         "<?Xml version='2.0' encoding='x'?><a/>",
         {R"(processingInstruction "Xml" "version='2.0' encoding='x'")", kStartA, kEndA}});
    expectAccepted({"style sheet behind a line",
                    "\n<?xml-stylesheet href=\"a\"?><a/>",
                    {R"(processingInstruction "xml-stylesheet" "href="a"")", kStartA, kEndA}});
    expectAccepted({"style sheet behind the declaration",
                    "<?xml version='1.0'?><?xml-stylesheet?><a/>",
                    {R"(processingInstruction "xml-stylesheet" null)", kStartA, kEndA}});
    expectAccepted({"declaration behind a byte order mark",
                    "\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-8'?><a/>",
                    {kStartA, kEndA}});
}

// ---------------------------------------------------------------- comments

TEST(Prolog, CommentsAccepted) {
    constexpr struct {
        const char *comment;
        const char *text;
    } kComments[] = {
        {"<!---->", ""},
        {"<!-- -->", " "},
        {"<!--a-->", "a"},
        {"<!-- a  b -->", " a  b "},
        {"<!--\r\n\ta\r-->", R"(\x0D\x0A\x09a\x0D)"},
        {"<!--a- -->", "a- "},
        {"<!-- - - -->", " - - "},
        {"<!--- -->", "- "},
        {"<!-->-->", ">"},
        {"<!--->-->", "->"},
        {"<!--<!-a->-->", "<!-a->"},
        {"<!--<?p?>&b;]]><![CDATA[-->", "<?p?>&b;]]><![CDATA["},
        {"<!--\xE4\xB8\xAD\xF0\x90\x80\x80-->", R"(\xE4\xB8\xAD\xF0\x90\x80\x80)"},
        {"<!--\xC1\x81\xF8\x90\x80\x80-->", R"(\xC1\x81\xF8\x90\x80\x80)"},
    };
    for (const auto &row : kComments) {
        const std::string call = "comment \"" + std::string(row.text) + '"';
        const std::string comment = row.comment;
        expectAccepted({"before the root", comment + "<a/>", {call, kStartA, kEndA}});
        expectAccepted({"in the root", "<a>" + comment + "</a>", {kStartA, call, kEndA}});
        expectAccepted({"behind the root", "<a/>" + comment, {kStartA, kEndA, call}});
        expectAccepted(
            {"behind a DOCTYPE", "<!DOCTYPE a>" + comment + "<a/>", {call, kStartA, kEndA}});
        expectAccepted({"twice",
                        comment + "\n" + comment + "\n<a/>\n" + comment,
                        {call, call, kStartA, kEndA, call}});
    }
}

TEST(Prolog, CommentsRefused) {
    constexpr Refusal kComments[] = {
        {"<!- is none", "<!-a--><a/>", 9, 1, 2},
        {"not terminated", "<!--a<a/>", 45, 1, 10},
        {"one hyphen", "<!--a-", 45, 1, 7},
        {"two hyphens", "<!--a--", 80, 1, 6},
        {"blank before >", "<!--a-- ><a/>", 80, 1, 6},
        {"three hyphens", "<!--a---><a/>", 80, 1, 6},
        {"--> directly behind hyphen", "<!----->", 80, 1, 5},
        {"hyphens behind blanks", "<!-- \n --a--><a/>", 80, 2, 2},
        {"NUL", "<!--a\0b--><a/>"sv, 9, 1, 6},
        {"surrogate", "<!--\xED\xA0\x80--><a/>", 9, 1, 5},
        {"U+FFFE", "<!--a\xEF\xBF\xBE--><a/>", 9, 1, 6},
        {"above U+10FFFF", "<!--a\xF4\x90\x80\x80--><a/>", 9, 1, 6},
        {"cut character", "<!--a\xE4\xB8-->", 9, 1, 6},
        {"cut character at the end", "<!--a\xF0\x90\x80", 9, 1, 6},
    };
    for (const Refusal &refusal : kComments) expectRefused(refusal);
}

// ---------------------------------------------------------------- processing instructions

TEST(Prolog, InstructionsAccepted) {
    constexpr struct {
        const char *instruction;
        const char *target;
        const char *data;
    } kInstructions[] = {
        {"<?p?>", "\"p\"", "null"},
        {"<?p ?>", "\"p\"", "\"\""},
        {"<?p \r\n\t?>", "\"p\"", "\"\""},
        {"<?p d?>", "\"p\"", "\"d\""},
        {"<?p  d  e ?>", "\"p\"", "\"d  e \""},
        {"<?p\td\r\ne\r?>", "\"p\"", R"("d\x0D\x0Ae\x0D")"},
        {"<?p d?e>f?>", "\"p\"", "\"d?e>f\""},
        {"<?p ?\?>", "\"p\"", "\"?\""},
        {"<?p ?\?\?>", "\"p\"", "\"??\""},
        {"<?p ? ?>", "\"p\"", "\"? \""},
        {"<?p <a b='c'>&d;]]>--?>", "\"p\"", "\"<a b='c'>&d;]]>--\""},
        {"<?XML?>", "\"XML\"", "null"},
        {"<?xMl d?>", "\"xMl\"", "\"d\""},
        {"<?p.1-_?>", "\"p.1-_\"", "null"},
        {"<?\xE4\xB8\xAD \xE6\x96\x87?>", R"("\xE4\xB8\xAD")", R"("\xE6\x96\x87")"},
        {"<?\xC1\x81 \xF8\x90\x80\x80?>", R"("\xC1\x81")", R"("\xF8\x90\x80\x80")"},
    };
    for (const auto &row : kInstructions) {
        const std::string call =
            "processingInstruction " + std::string(row.target) + ' ' + row.data;
        const std::string instruction = row.instruction;
        expectAccepted({"before the root", instruction + "<a/>", {call, kStartA, kEndA}});
        expectAccepted({"in the root", "<a>" + instruction + "</a>", {kStartA, call, kEndA}});
        expectAccepted({"behind the root", "<a/>" + instruction, {kStartA, kEndA, call}});
        expectAccepted(
            {"behind a DOCTYPE", "<!DOCTYPE a> " + instruction + " <a/>", {call, kStartA, kEndA}});
        expectAccepted({"twice",
                        instruction + instruction + "<a/> " + instruction,
                        {call, call, kStartA, kEndA, call}});
    }
    // Targets that only begin like the declaration are targets behind the very first byte.
    expectAccepted(
        {"xmlx", "\n<?xmlx?><a/>", {R"(processingInstruction "xmlx" null)", kStartA, kEndA}});
    expectAccepted(
        {"xml-", "<a><?xml- d?></a>", {kStartA, R"(processingInstruction "xml-" "d")", kEndA}});
}

TEST(Prolog, InstructionsRefused) {
    constexpr Refusal kInstructions[] = {
        {"end behind <?", "<a/><?", 46, 1, 7},
        {"blank before the target", "<? p?><a/>", 9, 1, 3},
        {"no target", "<?\?><a/>", 9, 1, 3},
        {"digit", "<?1?><a/>", 9, 1, 3},
        {"colon first", "<?:p?><a/>", 9, 1, 3},
        {"colon", "<?a:b?><a/>", 65, 1, 4},
        {"colon behind xml", "<a><?xml:b?></a>", 46, 1, 9},
        {"end behind the target", "<?p", 65, 1, 4},
        {"? behind the target", "<?p?", 65, 1, 4},
        {"?? behind the target", "<?p?\?><a/>", 65, 1, 4},
        {"> behind the target", "<?p><a/>", 65, 1, 4},
        {"quote behind the target", "<?p'd'?><a/>", 65, 1, 4},
        {"no end", "<?p d", 47, 1, 6},
        {"no end behind blanks", "<?p d \n\n ", 47, 3, 2},
        {"half an end", "<?p d?", 47, 1, 7},
        {"blank in the end", "<?p d? >", 47, 1, 9},
        {"NUL in the data", "<?p d\0?><a/>"sv, 9, 1, 6},
        {"NUL in the target", "<?p\0?><a/>"sv, 65, 1, 4},
        {"illegal data first", "<?p \x1F?><a/>", 9, 1, 5},
        {"illegal data behind a blank", "<?p d \xEF\xBF\xBF?><a/>", 9, 1, 7},
        {"cut character", "<?p \xE4\xB8?>", 9, 1, 5},
        {"xml before the root", "<!--c--><?xml d?><a/>", 46, 1, 14},
        {"xml in the root", "<a><?xml version='1.0'?></a>", 46, 1, 9},
        {"xml behind the root", "<a/>\n<?xml version='1.0'?>", 46, 2, 6},
    };
    for (const Refusal &refusal : kInstructions) expectRefused(refusal);
}

// ---------------------------------------------------------------- document type declarations

TEST(Prolog, DoctypesAccepted) {
    constexpr const char *kDoctypes[] = {
        "<!DOCTYPE a>",
        "<!DOCTYPE >",
        "<!DOCTYPE\n>",
        "<!DOCTYPE\ta\r\nSYSTEM 'a.dtd'>",
        "<!DOCTYPE a PUBLIC '-//x//EN' \"y\" >",
        "<!DOCTYPE a ']'>",
        "<!DOCTYPE a <<&?!>",
        "<!DOCTYPE a []>",
        "<!DOCTYPE a[]>",
        "<!DOCTYPE a [] \t\r\n>",
        "<!DOCTYPE a [<!ENTITY x '>'><!ELEMENT a (b|c)*>]>",
        "<!DOCTYPE a [\n<!ATTLIST a b CDATA #IMPLIED>\n<!-- c -->\n<?p d?>\n]>",
        "<!DOCTYPE a [ [ [>>> ]>",
        // The first "]" is followed by something else, which is passed over.
        "<!DOCTYPE a [ ]x]>",
        "<!DOCTYPE a [ ] x > ]>",
        "<!DOCTYPE a [ ]]]>",
        "<!DOCTYPE a [ ]] ] >",
        // A "[" counts wherever it stands, in a literal as well.
        "<!DOCTYPE a SYSTEM '['>]>",
        "<!DOCTYPE [a]>",
        "<!DOCTYPE a \xE4\xB8\xAD\xC1\x81>",
    };
    for (const char *doctype : kDoctypes) {
        const std::string d = doctype;
        expectAccepted({"alone", d + "<a/>", {kStartA, kEndA}});
        expectAccepted({"between comments",
                        "<!--x-->" + d + "<!--y--><a/>",
                        {R"(comment "x")", R"(comment "y")", kStartA, kEndA}});
        expectAccepted({"behind the declaration",
                        "<?xml version='1.0'?>\n" + d + "\n<?p?>\n<a/>",
                        {R"(processingInstruction "p" null)", kStartA, kEndA}});
    }
}

// A "]" and a ">" end a declaration inside literals as well. Parsers that
// read the declaration see the root a; intended here, and told to callers.
TEST(Prolog, DoctypesThatOthersReadDifferently) {
    expectAccepted({"in a literal",
                    "<!DOCTYPE a [ <!ENTITY x ']><evil/><?y '> ]><a/><?z ?>",
                    {R"(startElementNs "evil" prefix null uri null ns [] attrs [])",
                     R"(endElementNs "evil" prefix null uri null)",
                     R"(processingInstruction "y" "'> ]><a/><?z ")"}});
    expectAccepted({"in a system identifier",
                    "<!DOCTYPE b SYSTEM '><a/><?x '><b/><?y ?>",
                    {kStartA, kEndA, R"(processingInstruction "x" "'><b/><?y ")"}});
}

TEST(Prolog, DoctypesRefused) {
    constexpr Refusal kDoctypes[] = {
        {"lower case", "<!doctype a><a/>", 9, 1, 2},
        {"cut off", "<!DOCTYP", 9, 1, 2},
        {"end behind the word", "<!DOCTYPE", 65, 1, 10},
        {"> behind the word", "<!DOCTYPE><a/>", 65, 1, 10},
        {"[ behind the word", "<!DOCTYPE[]><a/>", 65, 1, 10},
        {"no end", "<!DOCTYPE a", 61, 1, 12},
        {"no end behind blanks", "<!DOCTYPE a \n ", 61, 2, 2},
        {"> in a literal ends it", "<!DOCTYPE a 'x>y'><a/>", 72, 1, 16},
        {"[ in a literal asks for ]", "<!DOCTYPE a '['><a/>", 61, 1, 21},
        {"subset without end", "<!DOCTYPE a [<!ENTITY b 'c'>\n><a/>", 61, 2, 6},
        {"subset without >", "<!DOCTYPE a [] <a/", 61, 1, 19},
        {"] at the end", "<!DOCTYPE a []", 61, 1, 15},
        {"] and blanks at the end", "<!DOCTYPE a [] \n", 61, 2, 1},
        {"]]> passes over the second ]", "<!DOCTYPE a []]><a/>", 61, 1, 21},
        {"] ] > passes over the second ]", "<!DOCTYPE a [] ] ><a/>", 61, 1, 23},
        {"] x > is no end", "<!DOCTYPE a []x><a/>", 61, 1, 21},
        {"illegal character", "<!DOCTYPE a \x01><a/>", 9, 1, 13},
        {"illegal character in the subset", "<!DOCTYPE a [\n\x0B]><a/>", 9, 2, 1},
        {"illegal character behind ]", "<!DOCTYPE a [] \x1F><a/>", 9, 1, 16},
        {"NUL", "<!DOCTYPE a\0><a/>"sv, 9, 1, 12},
        {"cut character", "<!DOCTYPE a \xE4\xB8", 9, 1, 13},
        {"second DOCTYPE", "<!DOCTYPE a>\n<!DOCTYPE a><a/>", 9, 2, 2},
        {"in the root", "<a><!DOCTYPE a></a>", 9, 1, 5},
        {"behind the root", "<a/><!DOCTYPE a>", 5, 1, 5},
        {"nothing behind it", "<!DOCTYPE a> <!--c-->", 4, 1, 22},
        {"text behind it", "<!DOCTYPE a>\nb<a/>", 72, 2, 1},
    };
    for (const Refusal &refusal : kDoctypes) expectRefused(refusal);
}

// ---------------------------------------------------------------- around the root

TEST(Prolog, AroundTheRoot) {
    expectAccepted(
        {"everything",
         "\r\n<!--1--> <?p 2?>\t<!DOCTYPE a>\n<?p 3?><!--4--> <a/> \n<!--5--><?p 6?> ",
         {R"(comment "1")", R"(processingInstruction "p" "2")", R"(processingInstruction "p" "3")",
          R"(comment "4")", kStartA, kEndA, R"(comment "5")", R"(processingInstruction "p" "6")"}});
    constexpr Refusal kAround[] = {
        {"text before the root", "<!--c-->x<a/>", 72, 1, 9},
        {"reference before the root", "&#32;<a/>", 72, 1, 1},
        {"end tag before the root", "</a>", 9, 1, 2},
        {"lone <!", "<!", 9, 1, 2},
        {"form feed before the root", "\f<a/>", 72, 1, 1},
        {"NUL before the root", "\0<a/>"sv, 72, 1, 1},
        {"text behind the root", "<a/> x", 5, 1, 6},
        {"reference behind the root", "<a/>&#32;", 5, 1, 5},
        {"end tag behind the root", "<a/></a>", 5, 1, 5},
        {"< behind the root", "<a/><", 5, 1, 5},
        {"half a comment behind the root", "<a/><!-", 5, 1, 5},
        {"stray byte behind the root", "<a/>\n\x80", 5, 2, 1},
    };
    for (const Refusal &refusal : kAround) expectRefused(refusal);
}

}  // namespace
