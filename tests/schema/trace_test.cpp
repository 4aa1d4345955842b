// The debug trace: what stands on standard output, byte for byte.
#include "schema/trace.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "compactxml.h"
#include "tests/support/schema_maker.h"
#include "tests/support/written.h"

namespace {

using support::NodePtr;
using support::parsed;
using support::SchemaMaker;
using support::verdict;

// Restores the state that all validations share.
class TraceState {
  public:
    TraceState() : before_(cxml::g_SchemaDebugState) {}
    TraceState(const TraceState &) = delete;
    TraceState &operator=(const TraceState &) = delete;
    ~TraceState() { cxml::g_SchemaDebugState = before_; }

  private:
    cxml::SchemaDebugState before_;
};

std::uint32_t indent() {
    return cxml::g_SchemaDebugState.indent;
}

// What some code writes to standard output.
template <class Code>
std::string printedBy(const Code &code) {
    std::FILE *file = std::tmpfile();
    if (!file) return "(no file)";
    std::fflush(stdout);
    const int before = dup(STDOUT_FILENO);
    if (before < 0 || dup2(fileno(file), STDOUT_FILENO) < 0) return "(not redirected)";
    code();
    std::fflush(stdout);
    dup2(before, STDOUT_FILENO);
    close(before);
    std::string printed;
    std::rewind(file);
    for (int c; (c = std::fgetc(file)) != EOF;) printed += static_cast<char>(c);
    std::fclose(file);
    return printed;
}

// The line of a node, behind the start of a line.
std::string nodeLine(const XML_DOM_Node *node, const std::string &function, const std::string &path,
                     const std::string &value, const std::string &ns) {
    const std::string text = ("[" + path + "], Value=[" + value + "]").substr(0, 1023);
    return "func=" + function + ",current node=" + text + ",ns=[" + ns + "],addr=[" +
           std::to_string(reinterpret_cast<unsigned long>(node)) + "]";
}

TEST(Trace, Switch) {
    const TraceState restored;
    // Nobody has switched it on so far.
    EXPECT_EQ(Schema_Debug_Enable(1), 0u);
    EXPECT_EQ(Schema_Debug_Enable(1), 1u);
    EXPECT_EQ(Schema_Debug_Enable(2), 1u);
    EXPECT_EQ(Schema_Debug_Enable(0), 2u);
    EXPECT_EQ(Schema_Debug_Enable(0xFFFFFFFF), 0u);
    EXPECT_EQ(Schema_Debug_Enable(0x10000), 0xFFFFu);
    EXPECT_EQ(Schema_Debug_Enable(0x10001), 0u);
    EXPECT_EQ(Schema_Debug_Enable(0), 1u);
}

TEST(Trace, NothingWhenOff) {
    const TraceState restored;
    SchemaMaker schema;
    schema.addElement("r", "seq(a)");
    const NodePtr tree = parsed("<r><a>text</a></r>");
    for (const std::uint32_t flag : {0u, 2u, 0x10000u, 0xFFFFu}) {
        Schema_Debug_Enable(flag);
        EXPECT_EQ(printedBy([&] {
                      Schema_Debug_ShowMsg("%s", "message");
                      Schema_Debug_ShowMsgLine("%s", "message");
                      Schema_Debug_ShowNode(tree.get(), "function");
                      Schema_Debug_ShowNode(nullptr, "function");
                      Schema_Debug_ShowNode(tree.get(), nullptr);
                      Schema_Debug_ListTopObjects(&schema.root());
                      EXPECT_EQ(verdict(tree.get(), schema.root()), "valid");
                  }),
                  "")
            << flag;
    }
}

TEST(Trace, Messages) {
    const TraceState restored;
    Schema_Debug_Enable(1);
    cxml::g_SchemaDebugState.indent = 0;
    EXPECT_EQ(printedBy([] { Schema_Debug_ShowMsg("plain"); }), "plain");
    EXPECT_EQ(printedBy([] { Schema_Debug_ShowMsg("%s", ""); }), "");
    EXPECT_EQ(printedBy([] { Schema_Debug_ShowMsg("%d%% of %s", 5, "%s%n"); }), "5% of %s%n");
    EXPECT_EQ(printedBy([] { Schema_Debug_ShowMsgLine("plain"); }), "\r\nplain");
    EXPECT_EQ(printedBy([] { Schema_Debug_ShowMsgLine("%s", ""); }), "\r\n");
    EXPECT_EQ(printedBy([] {
                  Schema_Debug_BlankAdd();
                  Schema_Debug_ShowMsg("a");
                  Schema_Debug_ShowMsgLine("b");
                  Schema_Debug_BlankAdd();
                  Schema_Debug_BlankAdd();
                  Schema_Debug_ShowMsg("c");
                  Schema_Debug_ShowMsgLine("d%u", 1u);
                  Schema_Debug_BlankSub();
                  Schema_Debug_ShowMsgLine("e");
                  Schema_Debug_BlankSub();
                  Schema_Debug_BlankSub();
                  Schema_Debug_ShowMsgLine("f");
              }),
              "a\r\n  bc\r\n      d1\r\n    e\r\nf");
    // A format that is missing prints nothing.
    const char *const volatile none = nullptr;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
    EXPECT_EQ(printedBy([&] {
                  Schema_Debug_ShowMsg(none);
                  Schema_Debug_ShowMsgLine(none);
              }),
              "");
#pragma GCC diagnostic pop
}

TEST(Trace, MessagesAreCut) {
    const TraceState restored;
    Schema_Debug_Enable(1);
    cxml::g_SchemaDebugState.indent = 2;
    for (const std::size_t length : {0u, 1u, 1022u, 1023u, 1024u, 1025u, 5000u}) {
        const std::string text(length, 'm');
        const std::string cut = text.substr(0, 1023);
        EXPECT_EQ(printedBy([&] { Schema_Debug_ShowMsg("%s", text.c_str()); }), cut) << length;
        // The start of the line does not count.
        EXPECT_EQ(printedBy([&] { Schema_Debug_ShowMsgLine("%s", text.c_str()); }),
                  "\r\n    " + cut)
            << length;
        EXPECT_EQ(printedBy([&] { Schema_Debug_ShowMsg("<%s>", text.c_str()); }),
                  ("<" + text + ">").substr(0, 1023))
            << length;
    }
}

// The indentation counts up and down, whether the trace is on or off, and has no lower bound.
TEST(Trace, Indentation) {
    const TraceState restored;
    for (const std::uint32_t flag : {0u, 1u}) {
        Schema_Debug_Enable(flag);
        cxml::g_SchemaDebugState.indent = 0;
        Schema_Debug_BlankAdd();
        Schema_Debug_BlankAdd();
        EXPECT_EQ(indent(), 2u);
        Schema_Debug_BlankSub();
        EXPECT_EQ(indent(), 1u);
        Schema_Debug_BlankSub();
        Schema_Debug_BlankSub();
        EXPECT_EQ(indent(), 0xFFFFFFFFu);
        Schema_Debug_BlankSub();
        EXPECT_EQ(indent(), 0xFFFFFFFEu);
        Schema_Debug_BlankAdd();
        Schema_Debug_BlankAdd();
        EXPECT_EQ(indent(), 0u);
    }
}

TEST(Trace, Nodes) {
    const TraceState restored;
    Schema_Debug_Enable(1);
    const NodePtr tree = parsed(
        "<r xmlns='urn:d' xmlns:p='urn:p'><p:a>first<b/>second</p:a><b xmlns=''>%s</b>"
        "<c><![CDATA[data]]></c></r>");
    const XML_DOM_Node *a = XML_DOM_GetFirstChild(tree.get());
    const XML_DOM_Node *b = XML_DOM_GetNextSibling(a);
    const XML_DOM_Node *c = XML_DOM_GetNextSibling(b);
    const XML_DOM_Node *text = XML_DOM_GetFirstChild(a);
    const NodePtr alone(XML_DOM_CreateElementNode("alone"));
    const struct {
        const XML_DOM_Node *node;
        const char *path, *value, *ns;
    } cases[] = {
        {tree.get(), "/r", "", "urn:d"}, {a, "/r/a[1]", "first", "urn:p"},
        {b, "/r/b[1]", "%s", ""},        {c, "/r/c[1]", "", "urn:d"},
        {text, "/r/a[1]", "", "urn:d"},  {alone.get(), "/alone", "", ""},
    };
    for (const auto &row : cases) {
        cxml::g_SchemaDebugState.indent = 0;
        EXPECT_EQ(printedBy([&] { Schema_Debug_ShowNode(row.node, "function"); }),
                  "\r\n" + nodeLine(row.node, "function", row.path, row.value, row.ns));
        cxml::g_SchemaDebugState.indent = 3;
        EXPECT_EQ(printedBy([&] { Schema_Debug_ShowNode(row.node, "f"); }),
                  "\r\n      " + nodeLine(row.node, "f", row.path, row.value, row.ns));
        EXPECT_EQ(printedBy([&] { Schema_Debug_ShowNode(row.node, nullptr); }),
                  "\r\n      " + nodeLine(row.node, "", row.path, row.value, row.ns));
    }
    EXPECT_EQ(printedBy([] { Schema_Debug_ShowNode(nullptr, "function"); }), "");
}

TEST(Trace, LongNodes) {
    const TraceState restored;
    Schema_Debug_Enable(1);
    cxml::g_SchemaDebugState.indent = 0;
    for (const std::size_t length : {1u, 509u, 510u, 511u, 599u, 2000u}) {
        const std::string name(length, 'n');
        // The path is cut to 511 bytes, path and value together to 1023.
        const std::string path = ("/" + name).substr(0, 511);
        for (const std::size_t valueLength :
             {0u, 400u, 498u, 499u, 500u, 501u, 1008u, 1009u, 1010u, 1011u, 5000u}) {
            const std::string value(valueLength, 'v');
            const NodePtr tree = parsed("<" + name + ">" + value + "</" + name + ">");
            EXPECT_EQ(printedBy([&] { Schema_Debug_ShowNode(tree.get(), "function"); }),
                      "\r\n" + nodeLine(tree.get(), "function", path, value, ""))
                << length << " and " << valueLength;
        }
    }
    // Function and namespace are not.
    const std::string long1(1500, 'f'), long2(1500, 'u');
    const NodePtr tree = parsed("<r xmlns='" + long2 + "'/>");
    EXPECT_EQ(printedBy([&] { Schema_Debug_ShowNode(tree.get(), long1.c_str()); }),
              "\r\n" + nodeLine(tree.get(), long1, "/r", "", long2));
}

TEST(Trace, TopObjects) {
    const TraceState restored;
    Schema_Debug_Enable(1);
    cxml::g_SchemaDebugState.indent = 2;  // does not count here
    SchemaRoot root{};
    const auto listed = [&] { return printedBy([&] { Schema_Debug_ListTopObjects(&root); }); };
    EXPECT_EQ(listed(), "\r\nTop Elements count=0\r\n");
    Schema_InitRoot(&root);
    EXPECT_EQ(listed(), "\r\nTop Elements count=0\r\n");

    const std::string longName(1500, 'n');
    SchemaElementDecl decls[4] = {SchemaMaker::plain("a"), SchemaMaker::plain("b"),
                                  SchemaMaker::plain("c"), SchemaMaker::plain(longName.c_str())};
    decls[0].targetNamespace = "urn:a";
    decls[1].targetNamespace = "";
    decls[2].targetNamespace = "urn:%s";
    decls[2].alternativeNamespace = "urn:alt";
    decls[3].targetNamespace = "urn:d";
    std::vector<SchemaTopObject> tops;
    for (const SchemaElementDecl &decl : decls) tops.push_back({&decl, SCHEMA_KIND_ELEMENT});
    for (int i = 0; i < 3; ++i) ASSERT_EQ(Schema_RegTopObject(&root, &tops[i]), XML_OK);
    const SchemaAttributeDecl attribute{};
    const SchemaTopObject attributeTop{&attribute, SCHEMA_KIND_ATTRIBUTE};
    ASSERT_EQ(Schema_RegTopObject(&root, &attributeTop), XML_OK);
    EXPECT_EQ(listed(), "\r\nTop Elements count=3\r\n[urn:a][a]\r\n[][b]\r\n[urn:%s][c]\r\n");
    // In the order of the registry: the last takes the place of the one removed.
    Schema_DeregTopObject(&root, &tops[0]);
    EXPECT_EQ(listed(), "\r\nTop Elements count=2\r\n[urn:%s][c]\r\n[][b]\r\n");
    // A declaration without namespace and name; a line longer than a message.
    const SchemaElementDecl nothing{};
    const SchemaTopObject nothingTop{&nothing, SCHEMA_KIND_ELEMENT};
    ASSERT_EQ(Schema_RegTopObject(&root, &nothingTop), XML_OK);
    ASSERT_EQ(Schema_RegTopObject(&root, &tops[3]), XML_OK);
    EXPECT_EQ(listed(), "\r\nTop Elements count=4\r\n[urn:%s][c]\r\n[][b]\r\n[][]\r\n" +
                            ("[urn:d][" + longName).substr(0, 1023));
    for (const SchemaTopObject &top : {tops[1], tops[2], tops[3], nothingTop, attributeTop}) {
        Schema_DeregTopObject(&root, &top);
    }
    Schema_ExitRoot(&root);
    EXPECT_EQ(listed(), "\r\nTop Elements count=0\r\n");
    EXPECT_EQ(printedBy([] { Schema_Debug_ListTopObjects(nullptr); }), "");
}

// A validation shows each element that it checks, deeper ones further in.
class TracedValidation : public testing::Test {
  protected:
    TracedValidation() {
        SchemaElementDecl number = SchemaMaker::ofSimple("n", &kInt);
        schema_.declare(number);
        schema_.declare(SchemaMaker::plain("untyped"));
        SchemaComplexType type{};
        type.particle = schema_.model("seq(n{0,u})");
        schema_.declare(SchemaMaker::ofComplex("box", schema_.complexType(type)));
        schema_.addElement("r", "seq(box{0,u}, untyped{0,1}, n{0,u}, any{0,1})");
        Schema_Debug_Enable(1);
        cxml::g_SchemaDebugState.indent = 0;
    }

    struct Line {
        int depth;
        const char *path, *value;
    };

    // Without the addresses, which differ.
    static std::string withoutAddresses(std::string printed) {
        constexpr char kBegin[] = ",addr=[";
        for (std::size_t at = 0; (at = printed.find(kBegin, at)) != std::string::npos;) {
            at += sizeof kBegin - 1;
            printed.erase(at, printed.find(']', at) - at);
        }
        return printed;
    }

    void expectTrace(const char *document, const std::string &expectedVerdict,
                     const std::vector<Line> &lines, int indented = 0) {
        std::string said;
        const std::string printed = printedBy([&] { said = verdict(document, schema_.root()); });
        EXPECT_EQ(said.substr(0, expectedVerdict.size()), expectedVerdict) << document;
        std::string expected;
        for (const Line &line : lines) {
            expected +=
                "\r\n" + std::string(2 * static_cast<std::size_t>(line.depth + indented), ' ');
            expected += std::string("func=Schema_CheckElement,current node=[") + line.path +
                        "], Value=[" + line.value + "],ns=[],addr=[]";
        }
        EXPECT_EQ(withoutAddresses(printed), expected) << document;
        EXPECT_EQ(indent(), static_cast<std::uint32_t>(indented)) << document;
    }

    static constexpr SchemaSimpleType kInt{nullptr,         nullptr, "int", nullptr,
                                           SCHEMA_TYPE_INT, 0,       0,     0};
    const TraceState restored_;
    SchemaMaker schema_;
};

TEST_F(TracedValidation, Lines) {
    expectTrace("<r/>", "valid", {{0, "/r", ""}});
    expectTrace("<r><n>1</n></r>", "valid", {{0, "/r", ""}, {1, "/r/n[1]", "1"}});
    expectTrace("<r><box><n>1</n><n>2</n></box><box/><n>3</n></r>", "valid",
                {{0, "/r", ""},
                 {1, "/r/box[1]", ""},
                 {2, "/r/box[1]/n[1]", "1"},
                 {2, "/r/box[1]/n[2]", "2"},
                 {1, "/r/box[2]", ""},
                 {1, "/r/n[1]", "3"}});
    // What has no declaration is not checked.
    expectTrace("<r><untyped>u<z/></untyped><n>3</n><skipped><n>x</n></skipped></r>", "valid",
                {{0, "/r", ""}, {1, "/r/untyped[1]", "u"}, {1, "/r/n[1]", "3"}});
}

TEST_F(TracedValidation, Errors) {
    // Nothing is shown behind an error, and the indentation is what it was before.
    expectTrace("<q/>", "12", {});
    expectTrace("<r>text</r>", "9 node=/r:", {{0, "/r", "text"}});
    expectTrace("<r><box><n>x</n><n>2</n></box><n>3</n></r>", "3 node=/r/box[1]/n[1]",
                {{0, "/r", ""}, {1, "/r/box[1]", ""}, {2, "/r/box[1]/n[1]", "x"}});
    expectTrace("<r><box><n>1</n><z/></box><n>3</n></r>", "6 node=/r/box[1]/z[1]",
                {{0, "/r", ""}, {1, "/r/box[1]", ""}, {2, "/r/box[1]/n[1]", "1"}});
    expectTrace("<r k='1'><n>1</n></r>", "7 node=/r", {{0, "/r", ""}, {1, "/r/n[1]", "1"}});
    for (const int indented : {1, 4}) {
        cxml::g_SchemaDebugState.indent = static_cast<std::uint32_t>(indented);
        expectTrace("<r><box><n>x</n></box></r>", "3 node=/r/box[1]/n[1]",
                    {{0, "/r", ""}, {1, "/r/box[1]", ""}, {2, "/r/box[1]/n[1]", "x"}}, indented);
        expectTrace("<r><box><n>1</n></box></r>", "valid",
                    {{0, "/r", ""}, {1, "/r/box[1]", ""}, {2, "/r/box[1]/n[1]", "1"}}, indented);
    }
}

}  // namespace
