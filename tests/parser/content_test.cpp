// Elements with their content: tags, attributes, text, references and CDATA sections.
#include <string>
#include <string_view>

#include "gtest/gtest.h"
#include "tests/support/expectations.h"

using namespace std::string_view_literals;
using support::expectAccepted;
using support::expectRefused;
using support::printable;
using support::Refusal;

namespace {

// An element without prefix, namespace and declarations.
std::string start(const std::string &name, const std::string &attributes = "") {
    return "startElementNs \"" + name + "\" prefix null uri null ns [] attrs [" + attributes + "]";
}

std::string end(const std::string &name) {
    return "endElementNs \"" + name + "\" prefix null uri null";
}

std::string characters(std::string_view text) {
    return "characters \"" + printable(text) + "\" " + std::to_string(text.size());
}

std::string cdata(std::string_view text) {
    return "cdataBlock \"" + printable(text) + "\" " + std::to_string(text.size());
}

// ---------------------------------------------------------------- tags

TEST(Content, TagsAccepted) {
    constexpr struct {
        const char *document;
        const char *attributes;
    } kTags[] = {
        {"<a/>", ""},
        {"<a />", ""},
        {"<a\r\n\t />", ""},
        {"<a></a>", ""},
        {"<a ></a >", ""},
        {"<a\n></a\r\n\t>", ""},
        {"<a b='1'/>", "b=\"1\""},
        {"<a b=\"1\" />", "b=\"1\""},
        {"<a\nb\n=\n'1'\n></a>", "b=\"1\""},
        {"<a b='' c=\"\"></a>", "b=\"\" c=\"\""},
        {"<a b='1' c='2' d='3'/>", "b=\"1\" c=\"2\" d=\"3\""},
        {"<a b='\"' c=\"'\"/>", "b=\"\"\" c=\"'\""},
        {"<a b='>' c='/>' d=']]>'/>", "b=\">\" c=\"/>\" d=\"]]>\""},
        {"<a b='--><?p?>'/>", nullptr},
        // Neither line ends nor white space of a value change.
        {"<a b=' 1  2 '/>", "b=\" 1  2 \""},
        {"<a b='\r\n\t\r\n\r'/>", R"(b="\x0D\x0A\x09\x0D\x0A\x0D")"},
        {"<a b='&lt;&gt;&amp;&apos;&quot;'/>", "b=\"<>&'\"\""},
        {"<a b='&#65;&#x42;&#x6a;&#x6A;'/>", "b=\"ABjj\""},
        {"<a b='&#10;&#13;&#9;'/>", R"(b="\x0A\x0D\x09")"},
        {"<a b='x&amp;amp;y'/>", "b=\"x&amp;y\""},
        {"<a b='\xC1\x81\xF8\x90\x80\x80'/>", R"(b="\xC1\x81\xF8\x90\x80\x80")"},
        // Names differ by case, and one may begin with the other.
        {"<a b='1' B='2' bb='3'/>", "b=\"1\" B=\"2\" bb=\"3\""},
        {"<a xml='1' xmlnsx='2' Xmlns='3'/>", "xml=\"1\" xmlnsx=\"2\" Xmlns=\"3\""},
    };
    for (const auto &row : kTags) {
        const std::string document = row.document;
        if (row.attributes) {
            expectAccepted({row.document, document, {start("a", row.attributes), end("a")}});
        } else {
            // A "<" may not stand in a value, whatever it begins.
            expectRefused({row.document, document, 38, 1, 10});
        }
    }
}

TEST(Content, TagsRefused) {
    constexpr Refusal kTags[] = {
        {"lone <", "<", 77, 1, 2},
        {"blank behind <", "< a/>", 9, 1, 2},
        {"<>", "<></>", 9, 1, 2},
        {"colon first", "<:a/>", 9, 1, 2},
        {"name ends at a NUL", "<a\0/>"sv, 65, 1, 3},
        {"name ends at a stray byte", "<a\x80/>", 65, 1, 3},
        {"name ends at a surrogate", "<a\xED\xA0\x80/>", 65, 1, 3},
        {"name begins with a surrogate", "<\xED\xA0\x80/>", 9, 1, 2},
        {"second colon", "<a:b:c xmlns:a='u'/>", 65, 1, 5},
        {"slash and blank", "<a/ >", 65, 1, 3},
        {"slash behind a blank", "<a / >", 9, 1, 4},
        {"slash at the end", "<a /", 9, 1, 4},
        {"< in a tag", "<a <b/>", 9, 1, 4},
        {"digit as attribute", "<a 1='1'/>", 9, 1, 4},
        {"quote as attribute", "<a 'b'/>", 9, 1, 4},
        {"colon as attribute", "<a :b='1'/>", 9, 1, 4},
        {"attribute at the end", "<a b", 75, 1, 5},
        {"attribute and blank at the end", "<a b ", 75, 1, 6},
        {"attribute without value", "<a b/>", 75, 1, 5},
        {"two words", "<a b c='1'/>", 75, 1, 6},
        {"second colon in an attribute", "<a b:c:d='1'/>", 75, 1, 7},
        {"number as value", "<a b=1/>", 33, 1, 6},
        {"reference as value", "<a b=&quot;1&quot;/>", 33, 1, 6},
        {"other quote", "<a b='1\"/>", 34, 1, 11},
        {"end in a value", "<a b='1&amp;", 34, 1, 13},
        {"end behind a value", "<a b='1'", 65, 1, 9},
        {"end behind a value and a blank", "<a b='1' ", 77, 1, 10},
        {"no blank between attributes", "<a b='1'c='2'/>", 65, 1, 9},
        {"form feed between attributes", "<a b='1'\fc='2'/>", 65, 1, 9},
        {"< in a value", "<a b='1<2'/>", 38, 1, 8},
        {"CDATA in a value", "<a b='<![CDATA[x]]>'/>", 38, 1, 7},
        {"NUL in a value", "<a b='\0'/>"sv, 9, 1, 7},
        {"U+FFFE in a value", "<a b='\xEF\xBF\xBE'/>", 9, 1, 7},
        {"unknown entity in a value", "<a b='&nbsp;'/>", 26, 1, 8},
        {"lone & in a value", "<a b='&'/>", 26, 1, 8},
        {"illegal reference in a value", "<a b='&#x0;'/>", 9, 1, 12},
        {"same attribute", "<a x=\"1\" x=\"2\"/>", 42, 1, 15},
        {"same attribute, others between", "<a x='1' y='' z='' x='2'>", 42, 1, 25},
        {"end tag of another element", "<a></b>", 76, 1, 6},
        {"end tag with a shorter name", "<ab></a>", 76, 1, 7},
        {"end tag in upper case", "<a></A>", 76, 1, 6},
        {"end tag with a blank", "<a></ a>", 76, 1, 6},
        {"end tag without a name", "<a></>", 76, 1, 6},
        {"end tag at the end", "<a></", 76, 1, 6},
        {"end tag with half a name", "<abc></ab", 76, 1, 8},
        {"end tag with a longer name", "<a></ab>", 77, 1, 7},
        {"end tag with a prefix", "<a></a:b>", 77, 1, 7},
        {"end tag with an attribute", "<a></a b='1'>", 77, 1, 8},
        {"end tag with a slash", "<a></a/>", 77, 1, 7},
        {"end tag without >", "<a></a \n", 77, 2, 1},
        {"crossing", "<a><b></a></b>", 76, 1, 9},
        {"inner one open", "<a><b></b>", 77, 1, 11},
        {"a character split by the end tag", "<a\xC3\xA9></a\xC3", 76, 1, 7},
        {"another character of the same first byte", "<a\xC3\xA9></a\xC3\xA8>", 76, 1, 7},
    };
    for (const Refusal &refusal : kTags) expectRefused(refusal);
}

// ---------------------------------------------------------------- text

TEST(Content, TextTrimmedOfRawBlanks) {
    const struct {
        const char *name;
        const char *content;
        std::vector<std::string> calls;
    } kTexts[] = {
        {"nothing", "", {}},
        {"blanks", "   ", {}},
        {"all blanks", " \t\r\n \r\n", {}},
        {"blanks at both ends", "  hi &amp; bye  ", {characters("hi & bye")}},
        {"lines at both ends", "\r\n\tx\r\n", {characters("x")}},
        {"blanks inside", "a  b\t\nc", {characters("a  b\t\nc")}},
        {"line ends stay as they are", "a\rb\nc\r\nd", {characters("a\rb\nc\r\nd")}},
        {"no-break space is no blank", "\xC2\xA0", {characters("\xC2\xA0")}},
        {"U+0085 is no blank", "\xC2\x85x\xE2\x80\xA8", {characters("\xC2\x85x\xE2\x80\xA8")}},
        {"a reference is no blank", "&#32;", {characters(" ")}},
        {"references at both ends", "&#32;x&#x20;", {characters(" x ")}},
        {"blanks outside references", "  &#9;x&#10;\n ", {characters("\tx\n")}},
        {"blanks between references", "&#32; &#32;", {characters("   ")}},
        {"blanks behind the last reference", " x &#32; \t", {characters("x  ")}},
        {"blanks before the first reference", " \n &#13; x", {characters("\r x")}},
        {"entity at the end", "x &lt; ", {characters("x <")}},
        {"split by an element",
         " x <b/> y ",
         {characters("x"), start("b"), end("b"), characters("y")}},
        {"split by a comment", "x<!--c--> ", {characters("x"), "comment \"c\""}},
        {"split by an instruction",
         " <?p?> x",
         {"processingInstruction \"p\" null", characters("x")}},
        {"split by CDATA",
         " x <![CDATA[ y ]]> z ",
         {characters("x"), cdata(" y "), characters("z")}},
        {"blanks between elements",
         "\n <b/>\n <b/>\n",
         {start("b"), end("b"), start("b"), end("b")}},
        {"brackets", "]", {characters("]")}},
        {"two brackets", "]] ]]", {characters("]] ]]")}},
        {"brackets and >", "]>]] >]&gt;", {characters("]>]] >]>")}},
        {"]]> through references", "]]&gt;&#93;]>]&#93;>", {characters("]]>]]>]]>")}},
        {"quotes and slashes", "\"'/>=?--", {characters("\"'/>=?--")}},
        {"DEL", "\x7F", {characters("\x7F")}},
        {"bytes unchanged", "\xC1\x81 \xF8\x90\x80\x80", {characters("\xC1\x81 \xF8\x90\x80\x80")}},
        {"blanks in two bytes are characters",
         "\xC0\xA0x\xC0\xA0",
         {characters("\xC0\xA0x\xC0\xA0")}},
    };
    for (const auto &row : kTexts) {
        std::vector<std::string> calls = row.calls;
        calls.insert(calls.begin(), start("a"));
        calls.push_back(end("a"));
        expectAccepted({row.name, "<a>" + std::string(row.content) + "</a>", calls});
    }
}

TEST(Content, TextRefused) {
    constexpr Refusal kTexts[] = {
        {"]]> alone", "<a>]]></a>", 62, 1, 4},
        {"]]> inside", "<a>x]]>y</a>", 62, 1, 5},
        {"]]> behind blanks", "<a> \n ]]></a>", 62, 2, 2},
        {"]]]>", "<a>]]]></a>", 62, 1, 5},
        {"]]> behind a reference", "<a>&#93;]]></a>", 62, 1, 9},
        {"NUL", "<a>\0</a>"sv, 9, 1, 4},
        {"backspace", "<a>x \b</a>", 9, 1, 6},
        {"vertical tab behind blanks", "<a> \n\v</a>", 9, 2, 1},
        {"surrogate", "<a>\xED\xA0\x80</a>", 9, 1, 4},
        {"last surrogate", "<a>\xED\xBF\xBF</a>", 9, 1, 4},
        {"overlong", "<a>\xE0\x80\x80</a>", 9, 1, 4},
        {"overlong of four bytes", "<a>\xF0\x8F\xBF\xBF</a>", 9, 1, 4},
        {"U+FFFE", "<a>\xEF\xBF\xBE</a>", 9, 1, 4},
        {"U+FFFF", "<a>\xEF\xBF\xBF</a>", 9, 1, 4},
        {"above U+10FFFF", "<a>\xF4\x90\x80\x80</a>", 9, 1, 4},
        {"far above U+10FFFF", "<a>\xF5\x80\x80\x80</a>", 9, 1, 4},
        {"FF", "<a>\xFF\xBF\xBF\xBF</a>", 9, 1, 4},
        {"U+0000 in two bytes", "<a>\xC0\x80</a>", 9, 1, 4},
        {"U+0000 in four bytes", "<a>\xF8\x80\x80\x80</a>", 9, 1, 4},
        {"stray continuation", "<a>x\xBF</a>", 9, 1, 5},
        {"lead without continuation", "<a>\xC3</a>", 9, 1, 4},
        {"two leads", "<a>\xC3\xC3\xA9</a>", 9, 1, 4},
        {"third byte is none", "<a>\xE4\xB8 </a>", 9, 1, 4},
        {"fourth byte is none", "<a>\xF0\x90\x80 </a>", 9, 1, 4},
        {"text at the end", "<a>x", 77, 1, 5},
        {"cut character at the end", "<a>x\xF0\x90\x80", 9, 1, 5},
        {"lead at the end", "<a>x\xC3", 9, 1, 5},
    };
    for (const Refusal &refusal : kTexts) expectRefused(refusal);
}

// ---------------------------------------------------------------- references

std::string inText(std::string_view reference) {
    return "<a>" + std::string(reference) + "</a>";
}

std::string inValue(std::string_view reference) {
    return "<a b='" + std::string(reference) + "'/>";
}

TEST(Content, ReferencesAccepted) {
    const std::string zeros(10000, '0');
    const struct {
        std::string reference;
        std::string_view bytes;
    } kReferences[] = {
        {"&lt;", "<"},
        {"&gt;", ">"},
        {"&amp;", "&"},
        {"&apos;", "'"},
        {"&quot;", "\""},
        {"&#9;", "\t"},
        {"&#xA;", "\n"},
        {"&#xd;", "\r"},
        {"&#x20;", " "},
        {"&#x7F;", "\x7F"},
        {"&#x80;", "\xC2\x80"},
        {"&#233;", "\xC3\xA9"},
        {"&#x7FF;", "\xDF\xBF"},
        {"&#x800;", "\xE0\xA0\x80"},
        {"&#x4E2d;", "\xE4\xB8\xAD"},
        {"&#xD7FF;", "\xED\x9F\xBF"},
        {"&#xE000;", "\xEE\x80\x80"},
        {"&#xFFFD;", "\xEF\xBF\xBD"},
        {"&#65536;", "\xF0\x90\x80\x80"},
        {"&#x10FFFF;", "\xF4\x8F\xBF\xBF"},
        {"&#0065;", "A"},
        {"&#x00000000000000000041;", "A"},
        {"&#" + zeros + "65;", "A"},
        {"&#x" + zeros + "41;", "A"},
        {"&#38;#65;", "&#65;"},
        {"&#60;b&#62;", "<b>"},
    };
    for (const auto &row : kReferences) {
        const std::string name = row.reference.substr(0, 30);
        const std::string value = std::string("b=\"") + printable(row.bytes) + '"';
        expectAccepted(
            {name.c_str(), inText(row.reference), {start("a"), characters(row.bytes), end("a")}});
        expectAccepted({name.c_str(), inValue(row.reference), {start("a", value), end("a")}});
        const std::string twice = std::string(row.bytes) + std::string(row.bytes);
        expectAccepted({name.c_str(),
                        inText(row.reference + row.reference),
                        {start("a"), characters(twice), end("a")}});
    }
}

TEST(Content, ReferencesRefused) {
    const std::string nines(10000, '9');
    const struct {
        std::string reference;
        int code;
        int characters;  // of the reference that are read before the parse fails
    } kReferences[] = {
        {"&#0;", 9, 4},
        {"&#x0;", 9, 5},
        {"&#;", 9, 3},
        {"&#x;", 9, 4},
        {"&#8;", 9, 4},
        {"&#x1F;", 9, 6},
        {"&#xD800;", 9, 8},
        {"&#xDFFF;", 9, 8},
        {"&#xFFFE;", 9, 8},
        {"&#xFFFF;", 9, 8},
        {"&#x110000;", 9, 10},
        {"&#1114112;", 9, 10},
        // 65 more than a power of two: what is left of them in a narrow integer is an "A".
        {"&#4294967361;", 9, 13},
        {"&#x100000041;", 9, 13},
        {"&#18446744073709551681;", 9, 23},
        {"&#x10000000000000041;", 9, 21},
        {"&#" + nines + ";", 9, 10003},
        {"&#x" + nines + ";", 9, 10004},
        {"&#" + nines, 25, 10002},
        {"&#X41;", 25, 2},
        {"&#65", 25, 4},
        {"&#65 ;", 25, 4},
        {"&#", 25, 2},
        {"&#x", 25, 3},
        {"&#x4g;", 25, 4},
        {"&#a;", 25, 2},
        {"&#-1;", 25, 2},
        {"&# 65;", 25, 2},
        {"&#x 41;", 25, 3},
        {"&#6&#53;", 25, 3},
        {"&#\xEF\xBC\x96\xEF\xBC\x95;", 25, 2},  // full-width digits
        {"&", 26, 1},
        {"&;", 26, 1},
        {"& ", 26, 1},
        {"&foo;", 26, 1},
        {"&lt", 26, 1},
        {"&lt ;", 26, 1},
        {"&LT;", 26, 1},
        {"&Amp;", 26, 1},
        {"&amp ", 26, 1},
        {"&apos", 26, 1},
        {"&quott;", 26, 1},
        {"&ltt;", 26, 1},
        {"&&amp;", 26, 1},
    };
    for (const auto &row : kReferences) {
        const std::string name = row.reference.substr(0, 30);
        expectRefused({name.c_str(), inText(row.reference), row.code, 1, row.characters + 4});
        expectRefused({name.c_str(), inValue(row.reference), row.code, 1, row.characters + 7});
        // Behind a line break, and with nothing behind it.
        const std::string cut = "<a>x\n" + row.reference;
        expectRefused({name.c_str(), cut, row.code, 2, row.characters + 1});
    }
}

// Every reference cut off at every byte: the digits and the names end with the input.
TEST(Content, ReferencesCutOff) {
    constexpr Refusal kCut[] = {
        {"hexadecimal digits", "<a>&#x41", 25, 1, 9},
        {"decimal digits", "<a>&#65", 25, 1, 8},
        {"no digits", "<a>&#", 25, 1, 6},
        {"only x", "<a>&#x", 25, 1, 7},
        {"lt", "<a>&lt", 26, 1, 5},
        {"amp", "<a>&amp", 26, 1, 5},
        {"value", "<a b='&#x41", 25, 1, 12},
        {"quot in a value", "<a b='&quot", 26, 1, 8},
        {"a in a value", "<a b='&a", 26, 1, 8},
        {"behind ;", "<a>&#65;", 77, 1, 9},
    };
    for (const Refusal &refusal : kCut) expectRefused(refusal);
}

// ---------------------------------------------------------------- CDATA sections

TEST(Content, CdataAccepted) {
    constexpr std::string_view kSections[] = {
        "",          " ",
        "x",         " \r\n\tx ",
        "]",         "]]",
        "]]]]",      "]>",
        "]] >",      "<b>&c;</b>",
        "<![CDATA[", "-->",
        "?>",        "\x7F",
        "&#65;",     "&amp;",
        "]]]] ]>",   "\xE4\xB8\xAD",
        "\xC1\x81",  "\xF8\x90\x80\x80",
    };
    for (const std::string_view section : kSections) {
        const std::string text = "<![CDATA[" + std::string(section) + "]]>";
        const std::string name = printable(section);
        expectAccepted(
            {name.c_str(), "<a>" + text + "</a>", {start("a"), cdata(section), end("a")}});
        expectAccepted({name.c_str(),
                        "<a>" + text + text + "</a>",
                        {start("a"), cdata(section), cdata(section), end("a")}});
        expectAccepted({name.c_str(),
                        "<a> " + text + " x " + text + "<b/></a>",
                        {start("a"), cdata(section), characters("x"), cdata(section), start("b"),
                         end("b"), end("a")}});
    }
}

TEST(Content, CdataRefused) {
    constexpr Refusal kSections[] = {
        {"lower case", "<a><![cdata[x]]></a>", 9, 1, 5},
        {"blank", "<a><![CDATA [x]]></a>", 9, 1, 5},
        {"cut off", "<a><![CDATA", 9, 1, 5},
        {"lone <!", "<a><!", 9, 1, 5},
        {"no end", "<a><![CDATA[x", 63, 1, 14},
        {"one bracket", "<a><![CDATA[x]", 63, 1, 15},
        {"two brackets", "<a><![CDATA[x]]", 63, 1, 16},
        {"blank in the end", "<a><![CDATA[x]] ></a>", 63, 1, 22},
        {"line in the section", "<a><![CDATA[\r\n x", 63, 2, 3},
        {"NUL", "<a><![CDATA[\0]]></a>"sv, 9, 1, 13},
        {"control character", "<a><![CDATA[x\x1E]]></a>", 9, 1, 14},
        {"cut character", "<a><![CDATA[\xE4\xB8]]></a>", 9, 1, 13},
        {"surrogate", "<a><![CDATA[\xED\xB0\x80]]></a>", 9, 1, 13},
        {"in the prolog", "<![CDATA[]]><a/>", 9, 1, 2},
        {"behind the root", "<a/><![CDATA[]]>", 5, 1, 5},
    };
    for (const Refusal &refusal : kSections) expectRefused(refusal);
}

// ---------------------------------------------------------------- nesting

std::string elementName(int level) {
    std::string name = std::to_string(level);
    name.insert(name.begin(), 'e');
    return name;
}

TEST(Content, Nesting) {
    std::string document;
    std::vector<std::string> calls;
    for (int level = 0; level < 40; ++level) {
        const std::string name = elementName(level);
        document += "<" + name + ">";
        calls.push_back(start(name));
    }
    for (int level = 40; level-- > 0;) {
        const std::string name = elementName(level);
        document += "</" + name + ">";
        calls.push_back(end(name));
    }
    expectAccepted({"forty levels", document, calls});
    expectAccepted(
        {"equal names",
         "<a><a><a/></a><a></a></a>",
         {start("a"), start("a"), start("a"), end("a"), end("a"), start("a"), end("a"), end("a")}});
}

// Names longer than what is read ahead are compared as they come in, with the outcome that they have
// in memory, wherever in the buffer the end tag begins.
TEST(Content, LongEndTagsFromEverySource) {
    const std::string ascii(1500, 'n');
    std::string wide;
    for (int i = 0; i < 500; ++i) wide += "\xE4\xB8\xAD";
    const struct {
        std::string name, close;
        bool accepted;
    } kTags[] = {
        {ascii, "</" + ascii + ">", true},
        {wide, "</" + wide + ">", true},
        {"p:" + wide, "</p:" + wide + ">", true},
        {ascii, "</" + ascii.substr(1), false},
        {ascii, "</" + ascii.substr(1) + "m>", false},
        // The last character is longer than what the name has left for it.
        {wide + "n", "</" + wide + "\xE4\xB8\xAD>", false},
        {wide, "</" + wide.substr(0, 1497) + "nnn>", false},
        // Cut off between two characters, and within one.
        {wide, "</" + wide.substr(0, 1200), false},
        {wide, "</" + wide.substr(0, 1201), false},
        {wide, "</" + wide.substr(0, 1202), false},
    };
    for (const auto &tag : kTags) {
        for (std::size_t before = 0; before < 2100; before += 61) {
            const std::string document =
                "<" + tag.name + " xmlns:p='u'>" + std::string(before, ' ') + tag.close;
            const support::RecordedParse whole = support::record(support::memoryFeed(document));
            ASSERT_EQ(whole.result, tag.accepted ? XML_OK : XML_REFUSED) << whole.text;
            if (!tag.accepted) {
                ASSERT_NE(whole.text.find("tag name mismatch."), std::string::npos) << whole.text;
            }
            for (const support::Feed &feed :
                 {support::fileFeed(document), support::listInPieces(document, 61)}) {
                const support::RecordedParse parse = support::record(feed);
                ASSERT_TRUE(support::sameOutcome(whole, parse))
                    << feed.name() << ", " << before << "\nmemory gives " << whole.text
                    << "\nthis one " << parse.text;
            }
        }
    }
}

// The refills of such a comparison leave in the buffer what a message shows of the text before it.
TEST(Content, LongEndTagsAreQuotedWithWhatStandsBefore) {
    const std::string name(70, 'n');
    for (const std::string text : {"", "0123456789", "0123456789012345678901234567890123456789"}) {
        const std::string before = "<" + name + ">" + text + "</";
        const std::string document = before + name.substr(4);
        const std::string quoted = before.substr(before.size() - 32);
        for (const support::Feed &feed :
             {support::memoryFeed(document), support::fileFeed(document),
              support::listInPieces(document, 61), support::listInPieces(document, 1)}) {
            const support::RecordedParse parse = support::record(feed);
            EXPECT_NE(parse.text.find(":\"" + quoted + "nnn"), std::string::npos)
                << feed.name() << ": " << parse.text;
        }
    }
}

}  // namespace
