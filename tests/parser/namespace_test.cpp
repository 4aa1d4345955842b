// Namespaces in a parse: declarations, scopes, what a prefix resolves to and what is refused.
#include <string>

#include "gtest/gtest.h"
#include "tests/support/expectations.h"

using support::expectAccepted;
using support::expectRefused;
using support::Refusal;

namespace {

#define XML_URI "http://www.w3.org/XML/1998/namespace"
#define XMLNS_URI "http://www.w3.org/2000/xmlns/"

std::string quotedOrNull(const char *s) {
    return s ? '"' + std::string(s) + '"' : "null";
}

std::string start(const char *name, const char *prefix, const char *uri,
                  const std::string &declarations = "", const std::string &attributes = "") {
    return "startElementNs " + quotedOrNull(name) + " prefix " + quotedOrNull(prefix) + " uri " +
           quotedOrNull(uri) + " ns [" + declarations + "] attrs [" + attributes + "]";
}

std::string end(const char *name, const char *prefix, const char *uri) {
    return "endElementNs " + quotedOrNull(name) + " prefix " + quotedOrNull(prefix) + " uri " +
           quotedOrNull(uri);
}

TEST(ParserNamespaces, Resolved) {
    expectAccepted({"prefix",
                    "<p:a xmlns:p='u'></p:a>",
                    {start("a", "p", "u", "p=\"u\""), end("a", "p", "u")}});
    expectAccepted({"default",
                    "<a xmlns='u'/>",
                    {start("a", nullptr, "u", "=\"u\""), end("a", nullptr, "u")}});
    expectAccepted({"no attribute takes the default",
                    "<a b='1' xmlns='u'/>",
                    {start("a", nullptr, "u", "=\"u\"", "b=\"1\""), end("a", nullptr, "u")}});
    expectAccepted({"declared behind its use",
                    "<p:a p:b='1' xmlns:p='u'/>",
                    {start("a", "p", "u", "p=\"u\"", "p:b{u}=\"1\""), end("a", "p", "u")}});
    expectAccepted({"pairs in the order of the document",
                    "<a xmlns:p='1' b='' xmlns='2' p:c='' xmlns:q='3'/>",
                    {start("a", nullptr, "2", "p=\"1\" =\"2\" q=\"3\"", "b=\"\" p:c{1}=\"\""),
                     end("a", nullptr, "2")}});
    expectAccepted({"references in a namespace name",
                    "<p:a xmlns:p='u&amp;v&#x20;'/>",
                    {start("a", "p", "u&v ", "p=\"u&v \""), end("a", "p", "u&v ")}});
    expectAccepted(
        {"xmlns as a local name",
         "<p:xmlns xmlns:p='u' p:xmlns='v'/>",
         {start("xmlns", "p", "u", "p=\"u\"", "p:xmlns{u}=\"v\""), end("xmlns", "p", "u")}});
    expectAccepted({"names that only begin with xmlns",
                    "<a xmlnsx='' xmln='' x:xmlns='' xmlns:x='u'/>",
                    {start("a", nullptr, nullptr, "x=\"u\"", R"(xmlnsx="" xmln="" x:xmlns{u}="")"),
                     end("a", nullptr, nullptr)}});
    expectAccepted({"prefix of several bytes",
                    "<\xE4\xB8\xAD:a xmlns:\xE4\xB8\xAD='u'></\xE4\xB8\xAD:a>",
                    {start("a", R"(\xE4\xB8\xAD)", "u", "\xE4\xB8\xAD=\"u\""),
                     end("a", R"(\xE4\xB8\xAD)", "u")}});
    expectAccepted({"prefixes that begin alike",
                    "<p:a xmlns:p='1' xmlns:pp='2' pp:b='' p:c=''/>",
                    {start("a", "p", "1", "p=\"1\" pp=\"2\"", "pp:b{2}=\"\" p:c{1}=\"\""),
                     end("a", "p", "1")}});
}

TEST(ParserNamespaces, UndeclaredDefault) {
    expectAccepted(
        {"alone", "<a xmlns=''/>", {start("a", nullptr, "", "=\"\""), end("a", nullptr, "")}});
    expectAccepted({"inside a default namespace",
                    "<a xmlns='u'><b xmlns=''><c/></b><d/></a>",
                    {start("a", nullptr, "u", "=\"u\""), start("b", nullptr, "", "=\"\""),
                     start("c", nullptr, ""), end("c", nullptr, ""), end("b", nullptr, ""),
                     start("d", nullptr, "u"), end("d", nullptr, "u"), end("a", nullptr, "u")}});
}

TEST(ParserNamespaces, RedeclaredAndRestored) {
    expectAccepted({"at every level",
                    "<p:a xmlns:p='1'><p:a xmlns:p='2'><p:a xmlns:p='3'/><p:a/></p:a><p:a/></p:a>",
                    {start("a", "p", "1", "p=\"1\""), start("a", "p", "2", "p=\"2\""),
                     start("a", "p", "3", "p=\"3\""), end("a", "p", "3"), start("a", "p", "2"),
                     end("a", "p", "2"), end("a", "p", "2"), start("a", "p", "1"),
                     end("a", "p", "1"), end("a", "p", "1")}});
    expectAccepted(
        {"default at every level",
         "<a xmlns='1'><a xmlns='2'><a/></a><a xmlns='3'/></a>",
         {start("a", nullptr, "1", "=\"1\""), start("a", nullptr, "2", "=\"2\""),
          start("a", nullptr, "2"), end("a", nullptr, "2"), end("a", nullptr, "2"),
          start("a", nullptr, "3", "=\"3\""), end("a", nullptr, "3"), end("a", nullptr, "1")}});
    expectAccepted({"two prefixes at different levels",
                    "<a xmlns:p='1' xmlns:q='2'><b xmlns:q='3' p:x='' q:x=''/><q:c p:x=''/></a>",
                    {start("a", nullptr, nullptr, "p=\"1\" q=\"2\""),
                     start("b", nullptr, nullptr, "q=\"3\"", "p:x{1}=\"\" q:x{3}=\"\""),
                     end("b", nullptr, nullptr), start("c", "q", "2", "", "p:x{1}=\"\""),
                     end("c", "q", "2"), end("a", nullptr, nullptr)}});
    expectRefused({"gone behind its element", "<a><p:b xmlns:p='1'/><p:c/></a>", 201, 1, 26});
    expectRefused(
        {"gone behind its end tag", "<a><p:b xmlns:p='1'></p:b><b p:c=''/></a>", 201, 1, 36});
}

// At every level: a binding is gone behind its element, and the one that it hid is back.
TEST(ParserNamespaces, GoneAtEveryLevel) {
    for (int level = 1; level <= 12; ++level) {
        std::string before;
        std::string behind;
        for (int i = 0; i < level; ++i) {
            before += "<a>";
            behind += "</a>";
        }
        const std::string sibling = "<b xmlns:p='1' xmlns='2'><p:c/></b>";
        expectRefused({"used by a sibling", before + sibling + "<p:d/>" + behind, 201, 1,
                       3 * level + static_cast<int>(sibling.size()) + 5});
        expectRefused({"used by an attribute of a sibling",
                       before + sibling + "<d p:e=''/>" + behind, 201, 1,
                       3 * level + static_cast<int>(sibling.size()) + 10});
        const std::string inner = "<o xmlns:p='0'>" + before + sibling + "<p:d/>" + behind + "</o>";
        const support::RecordedParse parse = support::expectSameThroughEveryFeed(inner, "hidden");
        EXPECT_EQ(parse.result, XML_OK);
        bool found = false;
        for (const std::string &call : parse.calls) {
            found |=
                call.rfind("startElementNs \"d\" prefix \"p\" uri \"0\" ns [] attrs []", 0) == 0;
        }
        EXPECT_TRUE(found) << parse;
    }
}

TEST(ParserNamespaces, XmlPrefix) {
    expectAccepted({"built in",
                    "<a xml:lang='de'/>",
                    {start("a", nullptr, nullptr, "", "xml:lang{" XML_URI "}=\"de\""),
                     end("a", nullptr, nullptr)}});
    expectAccepted({"of an element",
                    "<xml:a></xml:a>",
                    {start("a", "xml", XML_URI), end("a", "xml", XML_URI)}});
    expectAccepted({"declared rightly",
                    "<a xmlns:xml='" XML_URI "' xml:b=''/>",
                    {start("a", nullptr, nullptr, "xml=\"" XML_URI "\"", "xml:b{" XML_URI "}=\"\""),
                     end("a", nullptr, nullptr)}});
    expectAccepted({"neither prefix nor name but alike",
                    "<a xmlns:xmlx='" XML_URI "x' xmlns:x='xml'/>",
                    {start("a", nullptr, nullptr, "xmlx=\"" XML_URI "x\" x=\"xml\""),
                     end("a", nullptr, nullptr)}});
}

TEST(ParserNamespaces, Refused) {
    constexpr Refusal kRefusals[] = {
        {"prefix with an empty name", "<a xmlns:p=''/>", 35, 1, 14},
        {"xml with another name", "<a xmlns:xml='other'/>", 35, 1, 21},
        {"xml with an empty name", "<a xmlns:xml=''/>", 35, 1, 16},
        {"xml with half its name", "<a xmlns:xml='http://www.w3.org/XML/1998/namespac'/>", 35, 1,
         51},
        {"another prefix with the name of xml", "<a xmlns:p='" XML_URI "'/>", 35, 1, 50},
        {"default with the name of xml", "<a xmlns='" XML_URI "'/>", 35, 1, 48},
        {"xmlns as a prefix", "<a xmlns:xmlns='u'/>", 35, 1, 19},
        {"xmlns with its own name", "<a xmlns:xmlns='" XMLNS_URI "'/>", 35, 1, 47},
        {"prefix with the name of xmlns", "<a xmlns:p='" XMLNS_URI "'/>", 35, 1, 43},
        {"default with the name of xmlns", "<a xmlns='" XMLNS_URI "'/>", 35, 1, 41},
        {"refused before the tag ends", "<a xmlns:p='' b c d", 35, 1, 14},
        {"same prefix twice", "<a xmlns:p='u' xmlns:p='u'/>", 42, 1, 27},
        {"same prefix twice, others between", "<a xmlns:p='u' xmlns:q='u' b='' xmlns:p='v'/>", 42,
         1, 44},
        {"default twice", "<a xmlns='u' xmlns='v'/>", 42, 1, 23},
        {"xml twice", "<a xmlns:xml='" XML_URI "' xmlns:xml='" XML_URI "'/>", 42, 1, 101},
        {"element without declaration", "<p:a/>", 201, 1, 5},
        {"element without declaration, open", "<p:a></p:a>", 201, 1, 5},
        {"attribute without declaration", "<a p:b=''/>", 201, 1, 10},
        {"default does not bind a prefix", "<a xmlns='u' p:b=''/>", 201, 1, 20},
        {"xmlns as the prefix of an element", "<xmlns:a/>", 201, 1, 9},
        {"prefixes differ by case", "<P:a xmlns:p='u'/>", 201, 1, 17},
        {"declared by a child only", "<p:a><b xmlns:p='u'/></p:a>", 201, 1, 5},
        {"same name in one namespace", "<a p:x=\"1\" q:x=\"2\" xmlns:p=\"u\" xmlns:q=\"u\"/>", 42,
         1, 43},
        {"same prefixed name twice", "<a xmlns:p='u' p:x='' p:x=''/>", 42, 1, 29},
        {"same name through an outer prefix", "<a xmlns:p='u'><b xmlns:q='u' p:x='' q:x=''/></a>",
         42, 1, 44},
        {"xml: twice", "<a xml:b='' xml:b=''/>", 42, 1, 21},
    };
    for (const Refusal &refusal : kRefusals) expectRefused(refusal);
}

TEST(ParserNamespaces, NotDuplicates) {
    expectAccepted({"one name in two namespaces",
                    "<a p:x='1' q:x='2' xmlns:p='u' xmlns:q='v'/>",
                    {start("a", nullptr, nullptr, "p=\"u\" q=\"v\"", "p:x{u}=\"1\" q:x{v}=\"2\""),
                     end("a", nullptr, nullptr)}});
    expectAccepted({"with and without prefix",
                    "<a x='1' p:x='2' xmlns:p='u'/>",
                    {start("a", nullptr, nullptr, "p=\"u\"", "x=\"1\" p:x{u}=\"2\""),
                     end("a", nullptr, nullptr)}});
    // An attribute without a prefix has no namespace, whatever the default is.
    expectAccepted({"without prefix inside the default",
                    "<a x='1' p:x='2' xmlns:p='u' xmlns='u'/>",
                    {start("a", nullptr, "u", "p=\"u\" =\"u\"", "x=\"1\" p:x{u}=\"2\""),
                     end("a", nullptr, "u")}});
    expectAccepted(
        {"one prefix at two levels",
         "<a xmlns:p='u'><b xmlns:p='u'/></a>",
         {start("a", nullptr, nullptr, "p=\"u\""), start("b", nullptr, nullptr, "p=\"u\""),
          end("b", nullptr, nullptr), end("a", nullptr, nullptr)}});
    expectAccepted(
        {"halves that join alike",
         "<a pq:r='1' p:qr='2' xmlns:p='u' xmlns:pq='v'/>",
         {start("a", nullptr, nullptr, "p=\"u\" pq=\"v\"", "pq:r{v}=\"1\" p:qr{u}=\"2\""),
          end("a", nullptr, nullptr)}});
    expectAccepted(
        {"namespace and name that join alike",
         "<a p:c='1' q:bc='2' xmlns:p='ab' xmlns:q='a'/>",
         {start("a", nullptr, nullptr, "p=\"ab\" q=\"a\"", "p:c{ab}=\"1\" q:bc{a}=\"2\""),
          end("a", nullptr, nullptr)}});
}

// Duplicates are found wherever the two stand, for few attributes and for many.
TEST(ParserNamespaces, DuplicatesAmongMany) {
    for (const int count : {2, 7, 8, 9, 10, 16, 17, 33, 200}) {
        std::string tag = "<a xmlns:p='u' xmlns:q='u'";
        std::vector<std::string> names;
        for (int i = 0; i < count; ++i) {
            names.push_back((i % 2 ? "p:n" : "n") + std::to_string(i));
            tag += " " + names.back() + "=''";
        }
        EXPECT_EQ(XML_Parser_ByMem((tag + "/>").c_str(), static_cast<std::uint32_t>(tag.size() + 2),
                                   nullptr),
                  XML_OK)
            << count;
        for (int twin : {0, 1, count / 2, count - 1}) {
            // The same name in the same namespace, by the other prefix where it has one.
            std::string name = names[static_cast<std::size_t>(twin)];
            if (name[0] == 'p') name[0] = 'q';
            const std::string document = tag + " " + name + "=''/>";
            const support::RecordedParse parse = support::record(support::memoryFeed(document));
            EXPECT_EQ(parse.status, 42) << count << ", twin of " << twin;
            EXPECT_EQ(parse.column, static_cast<int>(document.size()) - 1);
        }
        std::string declarations = "<a";
        for (int i = 0; i < count; ++i) declarations += " xmlns:p" + std::to_string(i) + "='u'";
        for (int twin : {0, 1, count / 2, count - 1}) {
            const std::string document =
                declarations + " xmlns:p" + std::to_string(twin) + "='v'/>";
            const support::RecordedParse parse = support::record(support::memoryFeed(document));
            EXPECT_EQ(parse.status, 42) << count << ", twin of declaration " << twin;
            EXPECT_EQ(parse.column, static_cast<int>(document.size()) - 1);
        }
    }
}

}  // namespace
