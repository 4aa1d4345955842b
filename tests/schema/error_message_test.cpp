// What is said of an error, given its record.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "compactxml.h"
#include "tests/support/written.h"

namespace {

using support::NodePtr;
using support::parsed;

constexpr char kUntouched = '#';

// The message, or what else came of it. Checks that nothing is written behind size bytes.
std::string described(const SchemaErrorInfo &error, std::uint32_t size = 8000) {
    std::string buffer(size + 8, kUntouched);
    const std::uint32_t result = Schema_GetErrorDesc(&error, size, buffer.data());
    if (buffer.substr(size) != std::string(8, kUntouched)) return "(too much)";
    if (result != XML_OK) return result == XML_REFUSED ? "(refused)" : "(?)";
    if (buffer == std::string(size + 8, kUntouched)) return "(untouched)";
    const std::size_t end = buffer.find('\0');
    return end < size ? buffer.substr(0, end) : "(not terminated)";
}

struct MessageCase {
    std::uint32_t code;
    bool hasNode;
    const char *name, *ns, *attrName, *attrNs, *text;
    const char *message;
};

constexpr MessageCase kCases[] = {
    {0, true, "n", "u", "a", "v", "t", "(untouched)"},
    {0, false, nullptr, nullptr, nullptr, nullptr, "", "(untouched)"},
    {1, true, "n", "u", nullptr, nullptr, "", "Expecting element 'u':'n' under element '/r/a[1]'."},
    {1, true, "n", "", "x", "y", "z", "Expecting element '':'n' under element '/r/a[1]'."},
    {1, true, "n", nullptr, nullptr, nullptr, "",
     "Expecting element '':'n' under element '/r/a[1]'."},
    {1, false, nullptr, nullptr, nullptr, nullptr, "", "Expecting element '':'' under element ''."},
    {2, true, nullptr, nullptr, "a", nullptr, "",
     "The element '/r/a[1]' should have an attribute 'a'."},
    {2, true, "x", "y", "a", "", "z", "The element '/r/a[1]' should have an attribute 'a'."},
    {2, true, nullptr, nullptr, "a", "u", "",
     "The element '/r/a[1]' should have an attribute 'u':'a'."},
    {2, false, nullptr, nullptr, nullptr, nullptr, "",
     "The element '' should have an attribute ''."},
    {2, false, nullptr, nullptr, nullptr, "u", "",
     "The element '' should have an attribute 'u':''."},
    {3, true, "n", nullptr, nullptr, nullptr, "Why.",
     "The value of element '/r/a[1]' is invalid. Why."},
    {3, true, nullptr, nullptr, nullptr, nullptr, "",
     "The value of element '/r/a[1]' is invalid. "},
    {3, false, nullptr, nullptr, nullptr, nullptr, "100%s",
     "The value of element '' is invalid. 100%s"},
    {4, true, nullptr, nullptr, "a", nullptr, "Why.",
     "The value of attribute 'a' for element '/r/a[1]' is invalid. Why."},
    {4, true, nullptr, nullptr, "a", "", "Why.",
     "The value of attribute 'a' for element '/r/a[1]' is invalid. Why."},
    {4, true, nullptr, nullptr, "a", "u", "Why.",
     "The value of attribute 'u':'a' for element '/r/a[1]' is invalid. Why."},
    {4, false, nullptr, nullptr, nullptr, nullptr, "",
     "The value of attribute '' for element '' is invalid. "},
    {4, false, nullptr, nullptr, nullptr, "u", "",
     "The value of attribute 'u':'' for element '' is invalid. "},
    {5, true, "n", "u", nullptr, nullptr, "",
     "The number of occurrences of element '/r/a[1]/n' is invalid."},
    {5, true, nullptr, nullptr, nullptr, nullptr, "",
     "The number of occurrences of element '/r/a[1]/' is invalid."},
    {5, false, "n", nullptr, nullptr, nullptr, "",
     "The number of occurrences of element '/n' is invalid."},
    // Cut at the last slash; the names are those of the node.
    {6, true, "n", "u", "a", "v", "t", "Unexpected element '':'a' under element '/r"},
    {6, true, nullptr, nullptr, nullptr, nullptr, "",
     "Unexpected element '':'a' under element '/r"},
    {6, false, "n", "u", nullptr, nullptr, "", "Unexpected element '':'' under element ''."},
    {7, true, nullptr, nullptr, "a", nullptr, "", "Unexpected attribute 'a' of element '/r/a[1]'."},
    {7, true, "x", "y", "a", "", "z", "Unexpected attribute 'a' of element '/r/a[1]'."},
    {7, true, nullptr, nullptr, "a", "u", "", "Unexpected attribute 'u':'a' of element '/r/a[1]'."},
    {7, false, nullptr, nullptr, nullptr, nullptr, "", "Unexpected attribute '' of element ''."},
    {7, false, nullptr, nullptr, nullptr, "u", "", "Unexpected attribute 'u':'' of element ''."},
    {8, true, "x", "y", "a", "v", "t", "The child elements of '/r/a[1]' are invalid."},
    {8, false, nullptr, nullptr, nullptr, nullptr, "", "The child elements of '' are invalid."},
    {9, true, nullptr, nullptr, nullptr, nullptr, "",
     "Element '/r/a[1]' can not have a textual child element."},
    {9, false, nullptr, nullptr, nullptr, nullptr, "",
     "Element '' can not have a textual child element."},
    {10, true, nullptr, nullptr, nullptr, nullptr, "",
     "Element '/r/a[1]' can not have a child element."},
    {10, false, nullptr, nullptr, nullptr, nullptr, "", "Element '' can not have a child element."},
    {11, true, nullptr, nullptr, nullptr, nullptr, "",
     "Required child elements are missing for element '/r/a[1]'."},
    {11, false, nullptr, nullptr, nullptr, nullptr, "",
     "Required child elements are missing for element ''."},
    {12, true, "x", "y", "a", "v", "t", "The root element of XML document is invalid."},
    {12, false, nullptr, nullptr, nullptr, nullptr, "",
     "The root element of XML document is invalid."},
    {13, true, "n", "u", "a", "v", "t", "(refused)"},
    {14, false, nullptr, nullptr, nullptr, nullptr, "", "(refused)"},
    {0x10001, true, nullptr, nullptr, nullptr, nullptr, "", "(refused)"},
    {0xFFFFFFFF, true, nullptr, nullptr, nullptr, nullptr, "", "(refused)"},
};

TEST(ErrorMessage, Table) {
    const NodePtr document = parsed("<r><a/></r>");
    for (const MessageCase &row : kCases) {
        SchemaErrorInfo error{};
        error.code = row.code;
        error.node = row.hasNode ? XML_DOM_GetFirstChild(document.get()) : nullptr;
        error.name = row.name;
        error.ns = row.ns;
        error.attrName = row.attrName;
        error.attrNs = row.attrNs;
        std::strcpy(error.text, row.text);
        EXPECT_EQ(described(error), row.message) << row.code << (row.hasNode ? "" : ", no node");
        EXPECT_EQ(described(error, 512), row.message) << row.code << ", 512 bytes";
    }
}

TEST(ErrorMessage, Refusals) {
    SchemaErrorInfo error{};
    char buffer[1024];
    for (const std::uint32_t code : {0u, 12u}) {
        error.code = code;
        for (const std::uint32_t size : {0u, 1u, 100u, 511u}) {
            std::memset(buffer, kUntouched, sizeof buffer);
            EXPECT_EQ(Schema_GetErrorDesc(&error, size, buffer), XML_REFUSED) << size;
            EXPECT_EQ(std::string(buffer, sizeof buffer), std::string(sizeof buffer, kUntouched));
        }
        for (const std::uint32_t size : {512u, 513u, 1024u}) {
            EXPECT_EQ(Schema_GetErrorDesc(&error, size, buffer), XML_OK) << size;
        }
        EXPECT_EQ(Schema_GetErrorDesc(nullptr, 1024, buffer), XML_REFUSED);
        EXPECT_EQ(Schema_GetErrorDesc(&error, 1024, nullptr), XML_REFUSED);
    }
    // A code that is none leaves the buffer as it was.
    error.code = 13;
    std::memset(buffer, kUntouched, sizeof buffer);
    EXPECT_EQ(Schema_GetErrorDesc(&error, sizeof buffer, buffer), XML_REFUSED);
    EXPECT_EQ(std::string(buffer, sizeof buffer), std::string(sizeof buffer, kUntouched));
}

// Messages are cut to the buffer, wherever that is.
TEST(ErrorMessage, NamesCutToTheBuffer) {
    const NodePtr document = parsed("<r><a/></r>");
    for (const std::size_t length : {460u, 463u, 464u, 466u, 467u, 511u, 512u, 700u}) {
        const std::string name(length, 'n');
        SchemaErrorInfo error{};
        error.node = XML_DOM_GetFirstChild(document.get());
        error.name = error.attrName = name.c_str();
        const std::string expecting =
            "Expecting element '':'" + name + "' under element '/r/a[1]'.";
        const std::string attribute = "Unexpected attribute '" + name + "' of element '/r/a[1]'.";
        for (const std::uint32_t size : {512u, 513u, 600u, 8000u}) {
            error.code = 1;
            EXPECT_EQ(described(error, size), expecting.substr(0, size - 1)) << length;
            error.code = 7;
            EXPECT_EQ(described(error, size), attribute.substr(0, size - 1)) << length;
        }
    }
}

TEST(ErrorMessage, TextsCutToTheBuffer) {
    const NodePtr document = parsed("<r><a/></r>");
    for (const std::size_t length : {467u, 468u, 469u, 470u, 512u, 980u, 981u, 1022u, 1023u}) {
        SchemaErrorInfo error{};
        error.node = XML_DOM_GetFirstChild(document.get());
        error.code = 3;
        std::memset(error.text, 't', length);
        const std::string value =
            "The value of element '/r/a[1]' is invalid. " + std::string(length, 't');
        for (const std::uint32_t size : {512u, 1024u, 8000u}) {
            EXPECT_EQ(described(error, size), value.substr(0, size - 1)) << length;
        }
    }
}

// A path has 511 bytes.
TEST(ErrorMessage, LongPaths) {
    for (const std::size_t length : {509u, 510u, 511u, 512u, 2000u}) {
        const std::string name(length, 'n');
        const NodePtr document = parsed("<" + name + "/>");
        SchemaErrorInfo error{};
        error.code = 8;
        error.node = document.get();
        const std::string whole = "/" + name;
        EXPECT_EQ(described(error),
                  "The child elements of '" + whole.substr(0, 511) + "' are invalid.")
            << length;
        EXPECT_EQ(
            described(error, 512),
            ("The child elements of '" + whole.substr(0, 511) + "' are invalid.").substr(0, 511))
            << length;
    }
    // Cut within a step, too.
    const std::string name(200, 'n');
    const NodePtr document =
        parsed("<" + name + "><" + name + "><" + name + "/></" + name + "></" + name + ">");
    SchemaErrorInfo error{};
    error.node = XML_DOM_GetFirstChild(XML_DOM_GetFirstChild(document.get()));
    const std::string parent = "/" + name + "/" + name + "[1]";
    const std::string path = (parent + "/" + name + "[1]").substr(0, 511);
    error.code = 9;
    EXPECT_EQ(described(error), "Element '" + path + "' can not have a textual child element.");
    error.code = 6;
    EXPECT_EQ(described(error), "Unexpected element '':'" + name + "' under element '" + parent);
}

struct UnexpectedCase {
    const char *what;
    std::string document;  // its first child is the unexpected one
    std::string whole;     // the message before it is cut
};

// The message of code 6 ends before its last slash, wherever that stands.
TEST(ErrorMessage, UnexpectedElements) {
    const std::string longNs(600, 'n'), slashes = "http://" + std::string(400, 'h') + "/x/";
    const std::string almost = "urn:" + std::string(440, 'n');
    const std::string deep(300, 'p');
    const UnexpectedCase cases[] = {
        {"no namespace", "<r><a/></r>", "Unexpected element '':'a' under element '/r/a[1]'."},
        {"namespace with slashes", "<r><a xmlns='http://u/v/w/'/></r>",
         "Unexpected element 'http://u/v/w/':'a' under element '/r/a[1]'."},
        {"prefix", "<r><p:a xmlns:p='urn:/p'/></r>",
         "Unexpected element 'urn:/p':'a' under element '/r/a[1]'."},
        {"inherited", "<r xmlns='urn:t'><a/></r>",
         "Unexpected element 'urn:t':'a' under element '/r/a[1]'."},
        {"undeclared", "<r xmlns='urn:t'><a xmlns=''/></r>",
         "Unexpected element '':'a' under element '/r/a[1]'."},
        {"second of its name", "<r><a/></r>", "Unexpected element '':'a' under element '/r/a[1]'."},
        {"path cut", "<r><a xmlns='" + slashes + "'><b/></a></r>",
         "Unexpected element '" + slashes + "':'a' under element '/r/a[1]'."},
        {"path almost cut", "<r><a xmlns='" + almost + "'/></r>",
         "Unexpected element '" + almost + "':'a' under element '/r/a[1]'."},
        {"no slash left", "<r><a xmlns='" + longNs + "'/></r>",
         "Unexpected element '" + longNs + "':'a' under element '/r/a[1]'."},
        {"slash behind the end", "<r><a xmlns='" + longNs + "/'/></r>",
         "Unexpected element '" + longNs + "/':'a' under element '/r/a[1]'."},
        {"long parent", "<" + deep + "><" + deep + "/></" + deep + ">",
         "Unexpected element '':'" + deep + "' under element '" +
             ("/" + deep + "/" + deep + "[1]").substr(0, 511) + "'."},
    };
    for (const UnexpectedCase &row : cases) {
        const NodePtr document = parsed(row.document);
        ASSERT_TRUE(document) << row.what;
        SchemaErrorInfo error{};
        error.code = 6;
        error.node = XML_DOM_GetFirstChild(document.get());
        for (const std::uint32_t size : {512u, 513u, 514u, 520u, 560u, 640u, 8000u}) {
            std::string message = row.whole.substr(0, size - 1);
            message = message.substr(0, message.rfind('/'));
            EXPECT_EQ(described(error, size), message) << row.what << ", " << size;
        }
    }
}

TEST(ErrorMessage, UnexpectedRoot) {
    const NodePtr document = parsed("<r xmlns='urn:t'/>");
    SchemaErrorInfo error{};
    error.code = 6;
    error.node = document.get();
    EXPECT_EQ(described(error), "Unexpected element 'urn:t':'r' under element '");
}

}  // namespace
