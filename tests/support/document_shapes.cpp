#include "tests/support/document_shapes.h"

#include <ostream>

namespace support {
namespace {

// The i-th name of those that a hash of the form h * factor + byte takes for one and the same.
std::string collidingName(std::size_t i, const char *zero, const char *one) {
    std::string name;
    for (int bit = 0; bit < 17; ++bit) name += (i >> bit) & 1 ? one : zero;
    return name;
}

std::string collidingAttributes(std::size_t n, const char *zero, const char *one) {
    std::string text = "<a";
    for (std::size_t i = 0; i < n; ++i) text += ' ' + collidingName(i, zero, one) + "=''";
    return text + "/>";
}

const DocumentShape kStructures[] = {
    {"Attributes", kItems,
     [](std::size_t n) {
         return "<a" + join(n, [](const std::string &i) { return " x" + i + "='v'"; }) + "/>";
     }},
    {"AttributesLastTwoEqual", kItems,
     [](std::size_t n) {
         return "<a" + join(n, [](const std::string &i) { return " x" + i + "='v'"; }) +
                " last='1' last='2'/>";
     },
     "attribute redefined."},
    {"AttributesOfOneNameInManyNamespaces", kItems,
     [](std::size_t n) {
         return "<a" +
                join(n,
                     [](const std::string &i) {
                         return " xmlns:p" + i + "='u" + i + "' p" + i + ":x=''";
                     }) +
                "/>";
     }},
    {"AttributesEqualByNamespaceAtTheEnd", kItems,
     [](std::size_t n) {
         return "<a" +
                join(n,
                     [](const std::string &i) {
                         return " xmlns:p" + i + "='u" + i + "' p" + i + ":x=''";
                     }) +
                " xmlns:q='u0' q:x=''/>";
     },
     "attribute redefined."},
    {"AttributesThatCollideByFactor31", kItems,
     [](std::size_t n) { return collidingAttributes(n, "Aa", "BB"); }},
    {"AttributesThatCollideByFactor33", kItems,
     [](std::size_t n) { return collidingAttributes(n, "Az", "BY"); }},
    {"Declarations", kItems,
     [](std::size_t n) {
         return "<a" + join(n, [](const std::string &i) { return " xmlns:p" + i + "='u'"; }) + "/>";
     }},
    {"DeclarationsLastTwoEqual", kItems,
     [](std::size_t n) {
         return "<a" + join(n, [](const std::string &i) { return " xmlns:p" + i + "='u'"; }) +
                " xmlns:last='1' xmlns:last='2'/>";
     },
     "attribute redefined."},
    {"NestedDeclarationsUsingTheOutermostPrefix", kItems,
     [](std::size_t n) {
         return "<p:a xmlns:p='u'>" +
                join(n, [](const std::string &i) { return "<p:b p:c='' xmlns:q" + i + "='v'>"; }) +
                times(n, "</p:b>") + "</p:a>";
     }},
    {"NestedDeclarationsThenSiblingsUsingTheOutermost", kItems,
     [](std::size_t n) {
         return "<p:a xmlns:p='u'>" +
                join(n, [](const std::string &i) { return "<b xmlns:q" + i + "='v'>"; }) +
                times(n, "<p:c p:d=''/>") + times(n, "</b>") + "</p:a>";
     }},
    {"NestedRedeclarationsOfOnePrefix", kItems,
     [](std::size_t n) {
         return join(n, [](const std::string &i) { return "<p:a xmlns:p='u" + i + "' p:x=''>"; }) +
                times(n, "</p:a>");
     }},
    {"NestedRedeclarationsOfTheDefault", kItems,
     [](std::size_t n) {
         return join(n, [](const std::string &i) { return "<a xmlns='u" + i + "'>"; }) +
                times(n, "</a>");
     }},
    {"SiblingsRedeclaringOnePrefix", kItems,
     [](std::size_t n) { return "<a>" + times(n, "<p:b xmlns:p='u' p:c=''/>") + "</a>"; }},
    {"UnprefixedElementsUnderManyBindings", kItems,
     [](std::size_t n) {
         return "<a" + join(n, [](const std::string &i) { return " xmlns:p" + i + "='u'"; }) + ">" +
                times(n, "<b c=''/>") + "</a>";
     }},
    {"PrefixedElementsUnderManyBindings", kItems,
     [](std::size_t n) {
         return "<a" + join(n, [](const std::string &i) { return " xmlns:p" + i + "='u'"; }) + ">" +
                join(n, [](const std::string &i) { return "<p0:b p" + i + ":c=''/>"; }) + "</a>";
     }},
    {"Siblings", kItems, [](std::size_t n) { return "<a>" + times(n, "<b>t</b>") + "</a>"; }},
    {"SiblingsOfDifferentNames", kItems,
     [](std::size_t n) {
         return "<a>" + join(n, [](const std::string &i) { return "<b" + i + "/>"; }) + "</a>";
     }},
    {"SiblingsWithAttributes", kItems,
     [](std::size_t n) { return "<a>" + times(n, "<b c='1' d='&lt;' e='3'>t</b>\n") + "</a>"; }},
    {"Nested", kItems, [](std::size_t n) { return nested(n, "<a>", "</a>"); }},
    {"NestedWithText", kItems, [](std::size_t n) { return nested(n, "<a>x", "y</a>"); }},
    {"NestedAndUnfinished", kItems, [](std::size_t n) { return times(n, "<a b='c'>"); },
     "tag not finished."},
    {"NestedDeclarationsAndUnfinished", kItems,
     [](std::size_t n) { return times(n, "<p:a xmlns:p='u'>"); }, "tag not finished."},
    {"Comments", kItems, [](std::size_t n) { return "<a>" + times(n, "t<!--c-->") + "</a>"; }},
    {"Instructions", kItems, [](std::size_t n) { return "<a>" + times(n, "t<?p q?>") + "</a>"; }},
    {"CDataSections", kItems,
     [](std::size_t n) { return "<a>" + times(n, "<![CDATA[x]]>") + "</a>"; }},
    {"MiscellaneaAroundTheRoot", kItems,
     [](std::size_t n) { return times(n, "<!--c--> <?p?>") + "<a/>" + times(n, "<!--c--> "); }},
};

const DocumentShape kTokens[] = {
    {"Text", kBytes, [](std::size_t n) { return "<a>" + times(n, "t") + "</a>"; }},
    {"TextOfWords", kBytes, [](std::size_t n) { return "<a>" + times(n / 2, "t ") + "</a>"; }},
    {"TextOfReferences", kBytes,
     [](std::size_t n) { return "<a>" + times(n / 5, "&amp;") + "</a>"; }},
    {"TextOfCharacterReferences", kBytes,
     [](std::size_t n) { return "<a>" + times(n / 8, "&#x4E2D;") + "</a>"; }},
    {"TextOfLines", kBytes, [](std::size_t n) { return "<a>x" + times(n, "\n") + "x</a>"; }},
    {"TextOfCarriageReturns", kBytes,
     [](std::size_t n) { return "<a>x" + times(n / 2, "\r\n") + "x</a>"; }},
    {"TextOfMultibyteCharacters", kBytes,
     [](std::size_t n) { return "<a>" + times(n / 3, "中") + "</a>"; }},
    {"TextOfBrackets", kBytes, [](std::size_t n) { return "<a>" + times(n / 2, "] ") + "</a>"; }},
    {"Value", kBytes, [](std::size_t n) { return "<a b='" + times(n, "v") + "'/>"; }},
    {"ValueOfReferences", kBytes,
     [](std::size_t n) { return "<a b='" + times(n / 4, "&lt;") + "'/>"; }},
    {"ValueOfMultibyteCharacters", kBytes,
     [](std::size_t n) { return "<a b='" + times(n / 3, "中") + "'/>"; }},
    {"NamespaceName", kBytes, [](std::size_t n) { return "<a xmlns='" + times(n, "v") + "'/>"; }},
    {"Comment", kBytes, [](std::size_t n) { return "<a><!--" + times(n, "c") + "--></a>"; }},
    {"CommentOfHyphens", kBytes,
     [](std::size_t n) { return "<a><!--" + times(n / 2, "- ") + "--></a>"; }},
    {"CData", kBytes, [](std::size_t n) { return "<a><![CDATA[" + times(n, "c") + "]]></a>"; }},
    {"CDataOfBrackets", kBytes,
     [](std::size_t n) { return "<a><![CDATA[" + times(n, "]") + "]]></a>"; }},
    {"InstructionData", kBytes, [](std::size_t n) { return "<a><?p " + times(n, "?") + "?></a>"; }},
    {"InstructionTarget", kBytes, [](std::size_t n) { return "<a><?" + times(n, "p") + "?></a>"; }},
    {"Doctype", kBytes, [](std::size_t n) { return "<!DOCTYPE " + times(n, "d") + "><a/>"; }},
    {"DoctypeSubset", kBytes,
     [](std::size_t n) { return "<!DOCTYPE d [" + times(n / 4, ">[]x") + "]><a/>"; }},
    {"ElementName", kBytes,
     [](std::size_t n) {
         const std::string name(n / 2, 'n');
         return "<" + name + "></" + name + ">";
     }},
    {"AttributeName", kBytes, [](std::size_t n) { return "<a " + times(n, "n") + "=''/>"; }},
    {"Prefix", kBytes,
     [](std::size_t n) {
         const std::string name(n / 3, 'n');
         return "<" + name + ":a xmlns:" + name + "='u'></" + name + ":a>";
     }},
    {"NameOfMultibyteCharacters", kBytes,
     [](std::size_t n) { return "<" + times(n / 3, "名") + "/>"; }},
    {"BlanksInProlog", kBytes, [](std::size_t n) { return times(n, " ") + "<a/>"; }},
    {"BlanksInText", kBytes, [](std::size_t n) { return "<a>x" + times(n, " ") + "y</a>"; }},
    {"BlanksBehindText", kBytes, [](std::size_t n) { return "<a>x" + times(n, " \n") + "</a>"; }},
    {"BlanksInATag", kBytes, [](std::size_t n) { return "<a" + times(n, " ") + "b = ''/>"; }},
    {"BlanksInAnEndTag", kBytes, [](std::size_t n) { return "<a></a" + times(n, "\t") + ">"; }},
    {"BlanksBehindTheRoot", kBytes, [](std::size_t n) { return "<a/>" + times(n, "\n"); }},
    {"DigitsOfAReference", kBytes,
     [](std::size_t n) { return "<a>&#" + times(n, "0") + "65;</a>"; }},
};

}  // namespace

std::string times(std::size_t n, std::string_view piece) {
    std::string text;
    text.reserve(n * piece.size());
    for (std::size_t i = 0; i < n; ++i) text += piece;
    return text;
}

std::string nested(std::size_t n, std::string_view start, std::string_view end) {
    return times(n, start) + times(n, end);
}

std::ostream &operator<<(std::ostream &out, const DocumentShape &shape) {
    return out << shape.name;
}

std::span<const DocumentShape> structures() {
    return kStructures;
}

std::span<const DocumentShape> tokens() {
    return kTokens;
}

}  // namespace support
