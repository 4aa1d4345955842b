// cxml print: documents compactly, indented and in other encodings.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "tests/tools/support/run.h"

namespace {

constexpr const char *kEncodings[] = {"UTF-8",    "UTF-16LE", "UTF-16BE", "GB2312", "UTF-32LE",
                                      "UTF-32BE", "UTF-16",   "UTF-32",   "GBK",    "GB18030",
                                      "UCS-4",    "UCS-4BE",  "UCS-4LE"};

constexpr CommandCase kCompact[] = {
    {"no blanks between elements",
     "printf '<a>\\n  <b x=\"1\"></b>\\n  <!-- c --><c/> text </a>\\n' | cxml print -",
     "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a><b x=\"1\"/><c/>text</a>", "", 0},
    {"no declaration", "printf '<a><b/></a>' | cxml print --no-declaration -", "<a><b/></a>", "",
     0},
    {"escapes",
     "printf '<a x=\"&lt;&gt;&amp;&apos;\">&lt;&gt;&amp;&quot;</a>' |"
     " cxml print --no-declaration -",
     "<a x=\"&lt;&gt;&amp;'\">&lt;&gt;&amp;\"</a>", "", 0},
    {"quotes in values, which the library does not escape",
     "printf \"<a x='1\\\"2' xmlns:n='u\\\"v'/>\" | cxml print --no-declaration -",
     "<a xmlns:n=\"u&quot;v\" x=\"1&quot;2\"/>", "", 0},
    {"blanks at the ends of texts and values",
     "printf '<a x=\" 1\\t\">&#x20;&#10;b&#9;</a>' | cxml print --no-declaration -",
     "<a x=\"&#x20;1&#x09;\">&#x20;\nb&#x09;</a>", "", 0},
    {"sections stay", "printf '<a><![CDATA[<&]]]]></a>' | cxml print --no-declaration -",
     "<a><![CDATA[<&]]]]></a>", "", 0},
    {"prefixes and declarations",
     "printf '<p:a xmlns:p=\"u\" xmlns=\"v\" p:x=\"1\" xml:lang=\"zh\"><b/></p:a>' |"
     " cxml print --no-declaration -",
     "<p:a xmlns:p=\"u\" xmlns=\"v\" p:x=\"1\" xml:lang=\"zh\"><b/></p:a>", "", 0},
    {"refused", "cxml print broken.xml", "", "broken.xml:4:29: tag name mismatch.\n", 1},
    {"refused, with a file to write", "cxml print -o out.xml broken.xml; echo $?; ls out.xml",
     "1\n",
     "broken.xml:4:29: tag name mismatch.\n"
     "ls: cannot access 'out.xml': No such file or directory\n",
     2},
    {"not there", "cxml print nothere.xml", "", "cxml: nothere.xml: No such file or directory\n",
     2},
    {"unknown encoding", "cxml print --encoding EBCDIC nothere.xml", "",
     "cxml: unknown encoding 'EBCDIC'; there are UTF-8, UTF-16LE, UTF-16BE, GB2312, UTF-32LE, "
     "UTF-32BE, UTF-16, UTF-32, GBK, GB18030, UCS-4, UCS-4BE, UCS-4LE\n",
     2},
    {"the encoding's name in lower case",
     "printf '<a/>' | cxml print --encoding utf-16le - | iconv -f UTF-16LE",
     "<?xml version=\"1.0\" encoding=\"UTF-16LE\"?><a/>", "", 0},
    {"the document's encoding is kept", "cxml print switch.gb18030.xml | head -c 40",
     "<?xml version=\"1.0\" encoding=\"GB18030\"?>", "", 0},
};

TEST(Print, Compact) {
    expectCommands(kCompact);
}

constexpr CommandCase kIndented[] = {
    {"elements on lines of their own",
     "printf '<a><b><c/><d x=\"1\"/></b><e/></a>' | cxml print --indent 2 -",
     "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
     "<a>\n  <b>\n    <c/>\n    <d x=\"1\"/>\n  </b>\n  <e/>\n</a>\n",
     "", 0},
    {"line breaks alone", "printf '<a><b><c/></b></a>' | cxml print --indent 0 --no-declaration -",
     "<a>\n<b>\n<c/>\n</b>\n</a>\n", "", 0},
    {"elements with text on one line",
     "printf '<a><b>1</b><c>x<d><e/></d></c><f><![CDATA[]]></f><g><h/></g></a>' |"
     " cxml print --indent 1 --no-declaration -",
     "<a>\n <b>1</b>\n <c>x<d><e/></d></c>\n <f><![CDATA[]]></f>\n <g>\n  <h/>\n </g>\n</a>\n", "",
     0},
    {"text behind an element",
     "printf '<a><b><c/></b>x</a>' | cxml print --indent 4 --no-declaration -",
     "<a><b><c/></b>x</a>\n", "", 0},
    {"escapes",
     "printf \"<a x='&lt;1\\\"&#10;'><b>&#32;&gt;</b></a>\" |"
     " cxml print --indent 16 --no-declaration -",
     "<a x=\"&lt;1&quot;&#x0a;\">\n                <b>&#x20;&gt;</b>\n</a>\n", "", 0},
    {"the root alone", "printf '<a/>' | cxml print --indent 2 --no-declaration -", "<a/>\n", "", 0},
    // 80 blanks are the most: five levels of 16.
    {"deep levels are not moved further",
     "printf '<a><b><c><d><e><f><g/></f></e></d></c></b></a>' |"
     " cxml print --indent 16 --no-declaration - | sed -n 's/^\\( *\\)<\\([efg]\\).*/\\2\\1./p' |"
     " awk '{print substr($0,1,1), length($0)-2}'",
     "e 64\nf 80\ng 80\n", "", 0},
};

TEST(Print, Indented) {
    expectCommands(kIndented);
}

// The two writers, the library's and the one that indents, write the same characters and byte order
// marks in every encoding: a document of one element on one line comes out equal but for the line
// breaks, which are taken out of the text in UTF-8.
TEST(Print, WritersAgreeInEveryEncoding) {
    for (const std::string encoding : kEncodings) {
        const std::string line =
            "printf '<a p=\"\\344\\270\\255\">\\346\\226\\207&amp;<b/>&#x20;</a>' >a.xml;"
            " cxml print --no-declaration --encoding " +
            encoding +
            " a.xml >compact;"
            " cxml print --no-declaration --indent 2 --encoding " +
            encoding +
            " a.xml >indented;"
            " n=$(wc -c <compact); head -c $n indented | cmp - compact &&"
            " tail -c +$((n + 1)) indented | od -An -tx1 | tr -d ' 0\\n'";
        const Result result = runLine(line);
        EXPECT_EQ(result.out, "a") << encoding;  // one line break, whatever its width
        EXPECT_EQ(result.err, "") << encoding;
    }
}

TEST(Print, EveryEncodingIsReadBack) {
    for (const std::string encoding : kEncodings) {
        for (const std::string style : {"", "--indent 2 "}) {
            // Without the characters of the example that the older Chinese encodings lack.
            const std::string line =
                "iconv -c -f UTF-8 -t GB2312 switch.xml | iconv -f GB2312 "
                "-t UTF-8 >a.xml; cxml print " +
                style + "--encoding " + encoding +
                " -o x.xml a.xml && cxml check --stats x.xml | grep enc;"
                " cxml print --encoding UTF-8 x.xml >back;"
                " cxml print a.xml | cmp - back";
            const Result result = runLine(line);
            EXPECT_EQ(result.out, "  encoding    " + encoding + "\n") << style;
            EXPECT_EQ(result.err, "") << encoding << style;
            EXPECT_EQ(result.status, 0) << encoding << style;
        }
    }
}

TEST(Print, WhatIsPrintedIsReadBack) {
    constexpr CommandCase kCases[] = {
        {"indented and compact again",
         "cxml print --indent 3 switch.xml | cxml print - >a; cxml print switch.xml | cmp - a", "",
         "", 0},
        {"compact twice",
         "cxml print switch.xml | cxml print - >a; cxml print switch.xml | cmp - a", "", "", 0},
        {"values with quotes and blanks",
         "printf \"<a x=' 1\\\"2 '>&#32; x &#10;<b/>&#9;</a>\" >a.xml; cxml print a.xml >b.xml;"
         " cxml print --indent 2 b.xml >c.xml; cxml print c.xml | cmp - b.xml",
         "", "", 0},
    };
    expectCommands(kCases);
}

constexpr CommandCase kMissing[] = {
    {"in a text",
     "printf '<a><b/><b>x\\360\\237\\230\\200</b></a>' >e.xml;"
     " cxml print --encoding GB2312 e.xml",
     "", "cxml: e.xml: GB2312 has no character for U+1F600 in /a/b[2]\n", 1},
    {"in a value",
     "printf '<a><b x=\"\\360\\237\\230\\200\"/></a>' >e.xml;"
     " cxml print --encoding GBK e.xml",
     "", "cxml: e.xml: GBK has no character for U+1F600 in /a/b[1]\n", 1},
    {"in a namespace name",
     "printf '<a xmlns:n=\"\\303\\277\"/>' >e.xml;"
     " cxml print --encoding GB2312 e.xml",
     "", "cxml: e.xml: GB2312 has no character for U+00FF in /a\n", 1},
    {"in a section, indented",
     "printf '<a><![CDATA[\\344\\270\\255\\343\\220\\200]]></a>' >e.xml;"
     " cxml print --indent 2 --encoding GB2312 e.xml",
     "", "cxml: e.xml: GB2312 has no character for U+3400 in /a\n", 1},
    {"from standard input", "printf '<a>\\360\\237\\230\\200</a>' | cxml print --encoding GBK -",
     "", "cxml: standard input: GBK has no character for U+1F600 in /a\n", 1},
    {"no file is left",
     "printf '<a>\\360\\237\\230\\200</a>' >e.xml; rm switch*.xml broken.xml;"
     " cxml print --encoding GBK -o f.xml e.xml; ls -A",
     "e.xml\n", "cxml: e.xml: GBK has no character for U+1F600 in /a\n", 0},
    {"a file that is there stays",
     "printf '<a>\\360\\237\\230\\200</a>' >e.xml; echo old >f.xml;"
     " cxml print --encoding GBK -o f.xml e.xml; cat f.xml",
     "old\n", "cxml: e.xml: GBK has no character for U+1F600 in /a\n", 0},
};

TEST(Print, CharactersThatTheEncodingLacks) {
    expectCommands(kMissing);
}

#ifdef __GLIBC__
// U+E78D has no form in GB18030 here, so no tree can hold it; it is reported as the parser's errors
// are. What refuses is the text before the column.
TEST(Print, CharactersThatTreesLack) {
    constexpr CommandCase kCases[] = {
        {"well-formed all the same", "printf '<a>\\356\\236\\215</a>' >e.xml; cxml check e.xml", "",
         "", 0},
        {"text", "printf '<a>\\n<b>\\356\\236\\215x</b></a>' >e.xml; cxml print e.xml", "",
         "e.xml:2:6: a character has no form in GB18030, in which trees are held.\n", 1},
        {"value",
         "printf '<a><b x=\"\\356\\236\\215\"/></a>' >e.xml; cxml print -o f.xml e.xml; ls f.xml",
         "",
         "e.xml:1:12: a character has no form in GB18030, in which trees are held.\n"
         "ls: cannot access 'f.xml': No such file or directory\n",
         2},
    };
    expectCommands(kCases);
}
#endif

TEST(Print, MillionNestedElements) {
    const auto start = std::chrono::steady_clock::now();
    const Result result = runLine(
        "{ yes '<a>' | head -n 999999; echo '<b/>'; yes '</a>' | head -n 999999; } >deep.xml;"
        " cxml print --no-declaration deep.xml >flat; tr -d '\\n' <deep.xml | cmp - flat;"
        " cxml print --indent 2 --no-declaration deep.xml | tr -d ' \\n' | cmp - flat");
    [[maybe_unused]] const std::chrono::duration<double> time =
        std::chrono::steady_clock::now() - start;
    EXPECT_EQ(result.out + result.err, "");
    EXPECT_EQ(result.status, 0);
#ifndef CXML_INSTRUMENTED
    EXPECT_LT(time.count(), 20);
#endif
}

}  // namespace
