// Which elements are those of a declaration: names, forms, default namespaces, the two modes.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "compactxml.h"
#include "tests/support/schema_maker.h"
#include "tests/support/written.h"

namespace {

using support::NodePtr;
using support::SchemaMaker;
using support::verdict;

constexpr SchemaSimpleType kInt{nullptr, nullptr, "int", nullptr, SCHEMA_TYPE_INT, 0, 0, 0};
constexpr std::uint32_t kByDefault = 0, kQualified = 1, kUnqualified = 2;

SchemaElementDecl in(const char *ns, SchemaElementDecl decl, std::int32_t form = kByDefault) {
    decl.targetNamespace = ns;
    decl.form = form;
    return decl;
}

SchemaElementDecl alternatively(const char *ns, SchemaElementDecl decl) {
    decl.alternativeNamespace = ns;
    return decl;
}

SchemaElementDecl plain(const char *name) {
    return SchemaMaker::plain(name);
}

struct DocumentCase {
    const char *document, *verdict;
    std::uint32_t mode = 0;
};

template <std::size_t count>
void expectVerdicts(SchemaMaker &schema, const DocumentCase (&cases)[count]) {
    for (const DocumentCase &row : cases) {
        EXPECT_EQ(verdict(row.document, schema.root(), row.mode), row.verdict)
            << row.document << " in mode " << row.mode;
    }
}

struct FormCase {
    std::uint32_t formDefault;
    const char *document, *verdict;
};

#define EXPECTING(parent, name) \
    "1 node=/" parent " name=" name ": Expecting element '':'" name "' under element '/" parent "'."
#define EXPECTING_NS(parent, ns, name)                                              \
    "1 node=/" parent " name=" name " ns=" ns ": Expecting element '" ns "':'" name \
    "' under element '/" parent "'."
#define T " xmlns:t='urn:t'"
#define NO_ROOT "12: The root element of XML document is invalid."

TEST(ElementMatch, Forms) {
    SchemaMaker schema;
    for (std::int32_t form = 0; form <= 2; ++form) {
        schema.declare(in("urn:t", plain("a"), form));
        schema.addElement(schema.keep("f" + std::to_string(form)), "seq(a)")->form = kUnqualified;
    }
    // A reference has the form and the namespace of what it refers to.
    SchemaElementDecl ref = in("urn:x", plain("own"), kQualified);
    ref.ref = schema.element(in("urn:t", plain("a"), kUnqualified));
    schema.declare(ref);
    schema.addElement("r2", "seq(own)")->form = kUnqualified;
    ref = in("urn:x", plain("own"), kUnqualified);
    ref.ref = schema.element(in("urn:t", plain("a"), kQualified));
    schema.declare(ref);
    schema.addElement("r1", "seq(own)")->form = kUnqualified;
    constexpr FormCase kCases[] = {
        // As the default says.
        {kQualified, "<f0" T "><t:a/></f0>", "valid"},
        {kQualified, "<f0><a xmlns='urn:t'/></f0>", "valid"},
        {kQualified, "<f0><a/></f0>", EXPECTING_NS("f0", "urn:t", "a")},
        {kQualified, "<f0><a xmlns='urn:u'/></f0>", EXPECTING_NS("f0", "urn:t", "a")},
        {kQualified, "<f0" T "><t:A/></f0>", EXPECTING_NS("f0", "urn:t", "a")},
        {kUnqualified, "<f0><a/></f0>", "valid"},
        {kUnqualified, "<f0><a xmlns=''/></f0>", "valid"},
        {kUnqualified, "<f0" T "><t:a/></f0>", EXPECTING("f0", "a")},
        {kByDefault, "<f0><a/></f0>", "valid"},
        {kByDefault, "<f0" T "><t:a/></f0>", EXPECTING("f0", "a")},
        // Always.
        {kQualified, "<f1" T "><t:a/></f1>", "valid"},
        {kUnqualified, "<f1" T "><t:a/></f1>", "valid"},
        {kUnqualified, "<f1><a/></f1>", EXPECTING_NS("f1", "urn:t", "a")},
        {kQualified, "<f1><a/></f1>", EXPECTING_NS("f1", "urn:t", "a")},
        // Never.
        {kQualified, "<f2><a/></f2>", "valid"},
        {kUnqualified, "<f2><a/></f2>", "valid"},
        {kQualified, "<f2" T "><t:a/></f2>", EXPECTING("f2", "a")},
        {kUnqualified, "<f2" T "><t:a/></f2>", EXPECTING("f2", "a")},
        // References.
        {kQualified, "<r2><a/></r2>", "valid"},
        {kQualified, "<r2" T "><t:a/></r2>", EXPECTING("r2", "a")},
        {kUnqualified, "<r1" T "><t:a/></r1>", "valid"},
        {kUnqualified, "<r1><a/></r1>", EXPECTING_NS("r1", "urn:t", "a")},
        {kUnqualified, "<r1><own/></r1>", EXPECTING_NS("r1", "urn:t", "a")},
    };
    for (const FormCase &row : kCases) {
        schema.root().elementFormDefault = row.formDefault;
        EXPECT_EQ(verdict(row.document, schema.root()), row.verdict)
            << row.document << " with the default " << row.formDefault;
    }
}

// The bounds are those of a reference, what is checked is what it refers to.
TEST(ElementMatch, References) {
    SchemaMaker schema;
    SchemaElementDecl global = SchemaMaker::ofSimple("g", &kInt);
    global.minOccurs = 7;
    global.maxOccurs = 7;
    SchemaElementDecl ref = plain("own");
    ref.ref = schema.element(global);
    ref.hasFixed = 1;
    ref.fixedValue = "6";
    ref.nillable = 1;
    schema.declare(ref);
    schema.addElement("r", "seq(own{1,2})");
    constexpr DocumentCase kCases[] = {
        {"<r><g>5</g></r>", "valid"},
        {"<r><g>5</g><g>5</g></r>", "valid"},
        {"<r><g>5</g><g>5</g><g>5</g></r>",
         "6 node=/r/g[3]: Unexpected element '':'g' under element '/r"},
        {"<r><own>5</own></r>", EXPECTING("r", "g")},
        {"<r><g/></r>",
         "3 node=/r/g[1] name=g text=int cannot be empty.: The value of element '/r/g[1]' is "
         "invalid. int cannot be empty."},
    };
    expectVerdicts(schema, kCases);
}

// The namespace of a declaration may be any or several.
TEST(ElementMatch, ManyNamespaces) {
    SchemaMaker schema;
    schema.declare(in("##any", plain("every")));
    schema.declare(in("##other", plain("other")));
    schema.declare(in("urn:t urn:u", plain("list")));
    schema.declare(in("", plain("none")));
    schema.addElement("ra", "seq(every)");
    schema.addElement("ro", "seq(other)");
    schema.addElement("rl", "seq(list)");
    schema.addElement("rn", "seq(none)");
    constexpr DocumentCase kCases[] = {
        {"<ra><every/></ra>", "valid"},
        {"<ra><every xmlns='urn:t'/></ra>", "valid"},
        {"<ra><b/></ra>", EXPECTING_NS("ra", "##any", "every")},
        {"<ro><other xmlns='urn:t'/></ro>", "valid"},
        {"<ro><other/></ro>", EXPECTING_NS("ro", "##other", "other")},
        {"<ro><other xmlns=''/></ro>", EXPECTING_NS("ro", "##other", "other")},
        {"<rl><list xmlns='urn:u'/></rl>", "valid"},
        {"<rl><list xmlns='urn:t'/></rl>", "valid"},
        {"<rl><list xmlns='urn:v'/></rl>", EXPECTING_NS("rl", "urn:t urn:u", "list")},
        {"<rl><list/></rl>", EXPECTING_NS("rl", "urn:t urn:u", "list")},
        {"<rn><none/></rn>", "valid"},
        {"<rn><none xmlns=''/></rn>", "valid"},
        {"<rn><none xmlns='urn:t'/></rn>", EXPECTING_NS("rn", "", "none")},
        // An element in a namespace of that name is one of all declarations.
        {"<rl><list xmlns='##any'/></rl>", "valid"},
        {"<rn><none xmlns='##any'/></rn>", "valid"},
    };
    expectVerdicts(schema, kCases);
}

TEST(ElementMatch, Modes) {
    SchemaMaker schema;
    const auto target = [](const char *name) { return in("urn:t", plain(name)); };
    schema.declare(alternatively("urn:alt", target("a")));
    schema.declare(alternatively("", target("b")));
    schema.declare(target("c"));
    SchemaElementDecl unqualified = alternatively("urn:alt", target("d"));
    unqualified.form = kUnqualified;
    schema.declare(unqualified);
    SchemaElementDecl ref = alternatively("urn:own", plain("e"));
    ref.ref = schema.element(alternatively("urn:alt", target("e")));
    schema.declare(ref);
    schema.declare(alternatively("##any", target("f")));
    for (const char *name : {"a", "b", "c", "d", "e", "f"}) {
        schema.addElement(schema.keep(std::string("r") + name), "seq(" + std::string(name) + ")");
    }
    schema.addElement("all", "all(a)");
    constexpr DocumentCase kCases[] = {
        {"<ra><a xmlns='urn:t'/></ra>", "valid", 0},
        {"<ra><a xmlns='urn:alt'/></ra>", EXPECTING_NS("ra", "urn:t", "a"), 0},
        {"<ra><a xmlns='urn:alt'/></ra>", "valid", 1},
        {"<ra><a xmlns='urn:t'/></ra>", EXPECTING_NS("ra", "urn:alt", "a"), 1},
        // Other modes are no other than 0; 16 bits are kept.
        {"<ra><a xmlns='urn:t'/></ra>", "valid", 2},
        {"<ra><a xmlns='urn:alt'/></ra>", EXPECTING_NS("ra", "urn:t", "a"), 2},
        {"<ra><a xmlns='urn:t'/></ra>", "valid", 0xFFFFFFFF},
        {"<ra><a xmlns='urn:t'/></ra>", "valid", 0x10000},
        {"<ra><a xmlns='urn:alt'/></ra>", "valid", 0x10001},
        // Without an alternative namespace.
        {"<rb><b xmlns='urn:t'/></rb>", "valid", 1},
        {"<rb><b/></rb>", EXPECTING_NS("rb", "urn:t", "b"), 1},
        {"<rc><c xmlns='urn:t'/></rc>", "valid", 1},
        // Unqualified all the same.
        {"<rd><d/></rd>", "valid", 1},
        {"<rd><d xmlns='urn:alt'/></rd>", EXPECTING("rd", "d"), 1},
        {"<rd><d/></rd>", "valid", 0},
        // By reference.
        {"<re><e xmlns='urn:alt'/></re>", "valid", 1},
        {"<re><e xmlns='urn:own'/></re>", EXPECTING_NS("re", "urn:alt", "e"), 1},
        {"<re><e xmlns='urn:t'/></re>", "valid", 0},
        {"<rf><f/></rf>", "valid", 1},
        {"<rf><f/></rf>", EXPECTING_NS("rf", "urn:t", "f"), 0},
        {"<all/>", EXPECTING_NS("all", "urn:t", "a"), 0},
        {"<all/>", EXPECTING_NS("all", "urn:alt", "a"), 1},
    };
    expectVerdicts(schema, kCases);
}

// The root is looked up by its target namespace in both modes; then it must be what its declaration
// says, as a child must.
TEST(ElementMatch, Roots) {
    SchemaMaker schema;
    const auto top = [&](const SchemaElementDecl &decl) {
        schema.add(schema.element(decl), SCHEMA_KIND_ELEMENT);
    };
    const auto number = [](const char *name) { return SchemaMaker::ofSimple(name, &kInt); };
    top(in("urn:t", plain("R")));
    top(alternatively("urn:alt", in("urn:t", plain("alt"))));
    top(alternatively("", in("urn:t", plain("empty"))));
    top(alternatively("urn:t", in("urn:t", plain("same"))));
    top(alternatively("##any", in("urn:t", plain("any"))));
    top(in("urn:t", plain("qualified"), kQualified));
    top(in("urn:t", plain("unqualified"), kUnqualified));
    top(in(nullptr, plain("none"), kUnqualified));
    top(in("##any", plain("anywhere")));
    top(in("##other", plain("other")));
    top(in("urn:t urn:u", plain("list")));
    top(in("urn:t", number("first")));
    top(in("##any", plain("first")));
    SchemaElementDecl maybe = in("urn:t", number("maybe"), kUnqualified);
    maybe.minOccurs = 0;
    top(maybe);
    SchemaElementDecl never = in("urn:t", number("never"));
    never.minOccurs = never.maxOccurs = 0;
    top(never);
    SchemaElementDecl two = in("urn:t", number("two"));
    two.minOccurs = two.maxOccurs = 2;
    top(two);
#define ROOT(ns, name) \
    "1 name=" name " ns=" ns ": Expecting element '" ns "':'" name "' under element ''."
    constexpr DocumentCase kCases[] = {
        {"<R xmlns='urn:t'/>", "valid"},
        {"<t:R" T "/>", "valid"},
        {"<R xmlns='urn:t'/>", "valid", 1},
        {"<R/>", NO_ROOT},
        {"<R xmlns='urn:u'/>", NO_ROOT},
        {"<R xmlns=''/>", NO_ROOT},
        {"<r xmlns='urn:t'/>", NO_ROOT},
        {"<R" T "/>", NO_ROOT},
        {"<alt xmlns='urn:t'/>", "valid", 0},
        {"<alt xmlns='urn:alt'/>", NO_ROOT, 0},
        {"<alt xmlns='urn:t'/>", ROOT("urn:alt", "alt"), 1},
        {"<alt xmlns='urn:alt'/>", NO_ROOT, 1},
        {"<alt xmlns='urn:t'/>", "valid", 2},
        {"<empty xmlns='urn:t'/>", "valid", 1},
        {"<same xmlns='urn:t'/>", "valid", 1},
        {"<any xmlns='urn:t'/>", "valid", 1},
        {"<qualified xmlns='urn:t'/>", "valid"},
        // Looked up by a namespace that it may not have.
        {"<unqualified xmlns='urn:t'/>",
         "1 name=unqualified: Expecting element '':'unqualified' under element ''."},
        {"<unqualified/>", NO_ROOT},
        {"<none/>", "valid"},
        {"<none xmlns=''/>", "valid"},
        {"<none xmlns='urn:t'/>", NO_ROOT},
        {"<anywhere/>", "valid"},
        {"<anywhere xmlns='urn:z'/>", "valid"},
        {"<other xmlns='urn:z'/>", "valid"},
        {"<other/>", NO_ROOT},
        {"<other xmlns=''/>", NO_ROOT},
        {"<list xmlns='urn:u'/>", "valid"},
        {"<list xmlns='urn:v'/>", NO_ROOT},
        // The first one counts.
        {"<first xmlns='urn:t'>5</first>", "valid"},
        {"<first xmlns='urn:t'>x</first>",
         "3 node=/first name=first text=x is an invalid value of int type value.: The value of "
         "element '/first' is invalid. x is an invalid value of int type value."},
        {"<first xmlns='urn:u'>x</first>", "valid"},
        // Bounds: a root that need not be there may be another, which then is not looked at.
        {"<maybe xmlns='urn:t'>x</maybe>", "valid"},
        {"<never xmlns='urn:t'>5</never>",
         "5 name=never: The number of occurrences of element '/never' is invalid."},
        {"<two xmlns='urn:t'>5</two>",
         "5 name=two: The number of occurrences of element '/two' is invalid."},
        {"<two xmlns='urn:t'>x</two>",
         "3 node=/two name=two text=x is an invalid value of int type value.: The value of "
         "element '/two' is invalid. x is an invalid value of int type value."},
    };
    expectVerdicts(schema, kCases);

    schema.root().elementFormDefault = kUnqualified;
    constexpr DocumentCase kUnqualifiedCases[] = {
        {"<R xmlns='urn:t'/>", "1 name=R: Expecting element '':'R' under element ''."},
        {"<R/>", NO_ROOT},
        {"<qualified xmlns='urn:t'/>", "valid"},
        {"<none/>", "valid"},
        {"<anywhere/>", "valid"},
        {"<anywhere xmlns='urn:z'/>",
         "1 name=anywhere: Expecting element '':'anywhere' under "
         "element ''."},
    };
    expectVerdicts(schema, kUnqualifiedCases);
}

// A tree need not be a whole document. Default namespaces from above it count.
TEST(ElementMatch, RootWithinADocument) {
    SchemaMaker schema;
    schema.declare(in("urn:t", plain("a")));
    SchemaElementDecl *inner = schema.addElement("inner", "seq(a)");
    inner->targetNamespace = "urn:t";
    const auto said = [&](const char *document) {
        const NodePtr tree = support::parsed(document);
        return verdict(XML_DOM_GetFirstChild(XML_DOM_GetFirstChild(tree.get())), schema.root());
    };
    EXPECT_EQ(said("<d xmlns='urn:t'><m><inner><a/></inner></m></d>"), "valid");
    EXPECT_EQ(said("<d xmlns='urn:u'><m xmlns='urn:t'><inner><a/></inner></m></d>"), "valid");
    EXPECT_EQ(said("<d xmlns='urn:t'><m xmlns='urn:u'><inner><a/></inner></m></d>"), NO_ROOT);
    EXPECT_EQ(said("<d xmlns:t='urn:t'><m><t:inner><t:a/></t:inner></m></d>"), "valid");
    EXPECT_EQ(said("<d xmlns='urn:t'><m><inner><b/></inner></m></d>"),
              EXPECTING_NS("d/m[1]/inner[1]", "urn:t", "a"));
    inner->form = kUnqualified;
    EXPECT_EQ(said("<d xmlns='urn:t'><m><inner><a/></inner></m></d>"),
              "1 node=/d/m[1] name=inner: Expecting element '':'inner' under element '/d/m[1]'.");
}

// R, n and a in urn:t; c unqualified.
TEST(ElementMatch, DefaultNamespaces) {
    SchemaMaker schema;
    schema.declare(in("urn:t", plain("a")));
    schema.declare(in(nullptr, plain("c"), kUnqualified));
    SchemaElementDecl *root = schema.addElement("R", "seq(n{0,1}, a{0,u}, c{0,1})");
    root->targetNamespace = "urn:t";
    SchemaElementDecl n = in("urn:t", SchemaMaker::ofComplex("n", nullptr));
    n.type = root->type;
    // n has the content of R: the particle of n has to have the type, too.
    SchemaElementDecl nested = n;
    schema.declare(nested);
    SchemaElementDecl *outer = schema.addElement("D", "seq(n{0,1}, a{0,u})");
    outer->targetNamespace = "urn:t";
#define LEFT_OVER(path, name, ns, parent) \
    "6 node=" path ": Unexpected element '" ns "':'" name "' under element '" parent
    constexpr DocumentCase kCases[] = {
        {"<R xmlns='urn:t'><a/><a/></R>", "valid"},
        {"<t:R" T "><t:a/></t:R>", "valid"},
        {"<t:R" T " xmlns='urn:t'><a/></t:R>", "valid"},
        {"<t:R" T "><a/></t:R>", LEFT_OVER("/R/a[1]", "a", "", "/R")},
        {"<t:R" T " xmlns='urn:u'><a/></t:R>", LEFT_OVER("/R/a[1]", "a", "urn:u", "/R")},
        {"<R xmlns='urn:t'><a xmlns='urn:u'/></R>", LEFT_OVER("/R/a[1]", "a", "urn:u", "/R")},
        {"<R xmlns='urn:t'><a xmlns=''/></R>", LEFT_OVER("/R/a[1]", "a", "", "/R")},
        {"<R xmlns='urn:t'><a xmlns='urn:t'/></R>", "valid"},
        {"<R xmlns='urn:t'><c xmlns=''/></R>", "valid"},
        {"<R xmlns='urn:t'><c/></R>", LEFT_OVER("/R/c[1]", "c", "urn:t", "/R")},
        {"<t:R" T "><c/></t:R>", "valid"},
        // A prefix counts more than a default.
        {"<R xmlns='urn:t'><x:a xmlns:x='urn:t' xmlns='urn:u'/><a/></R>", "valid"},
        {"<R xmlns='urn:t' xmlns:x='urn:u'><x:a/></R>", LEFT_OVER("/R/a[1]", "a", "urn:u", "/R")},
        // Deeper, and back again.
        {"<D xmlns='urn:t'><n><a/></n><a/></D>", "valid"},
        {"<D xmlns='urn:t'><n><a xmlns='urn:u'/></n></D>",
         LEFT_OVER("/D/n[1]/a[1]", "a", "urn:u", "/D/n[1]")},
        {"<D xmlns='urn:t'" T "><t:n xmlns='urn:u'><t:a/></t:n><a/></D>", "valid"},
        {"<D xmlns='urn:t'" T "><t:n xmlns='urn:u'><a/></t:n><a/></D>",
         LEFT_OVER("/D/n[1]/a[1]", "a", "urn:u", "/D/n[1]")},
        {"<D xmlns='urn:t'" T "><t:n xmlns=''><c/></t:n><a/></D>", "valid"},
        {"<D xmlns='urn:t'" T "><t:n xmlns=''><a/></t:n><a/></D>",
         LEFT_OVER("/D/n[1]/a[1]", "a", "", "/D/n[1]")},
        {"<t:D" T " xmlns='urn:u'><n xmlns='urn:t'><a/></n><t:a/></t:D>", "valid"},
        {"<t:D" T " xmlns='urn:u'><n xmlns='urn:t'><a/></n><a/></t:D>",
         LEFT_OVER("/D/a[1]", "a", "urn:u", "/D")},
    };
    expectVerdicts(schema, kCases);
}

// The default namespace of the root reaches down to where another one begins.
TEST(ElementMatch, DefaultNamespacesDeepDown) {
    constexpr int kDepth = 60, kChange = 40;
    SchemaMaker schema;
    SchemaElementDecl *n = schema.element(in("urn:t", plain("n")));
    SchemaElementDecl ref = plain("n");
    ref.ref = n;
    schema.declare(ref);
    SchemaComplexType type{};
    type.particle = schema.model("seq(n{0,1})");
    *n = in("urn:t", SchemaMaker::ofComplex("n", schema.complexType(type)));
    schema.add(n, SCHEMA_KIND_ELEMENT);
    const auto said = [&](const std::string &changed) {
        std::string document = "<n xmlns='urn:t' xmlns:t='urn:t'>", end = "</n>";
        for (int depth = 1; depth <= kDepth; ++depth) {
            if (depth == kChange) {
                document += "<" + changed + ">";
                end = "</" + changed.substr(0, changed.find(' ')) + ">" + end;
            } else {
                document += "<n>";
                end = "</n>" + end;
            }
        }
        return verdict(document + end, schema.root());
    };
    const auto path = [](int depth) {
        std::string text = "/n";
        for (int i = 0; i < depth; ++i) text += "/n[1]";
        return text;
    };
    const auto unexpected = [&](int depth, const std::string &ns) {
        return "6 node=" + path(depth) + ": Unexpected element '" + ns + "':'n' under element '" +
               path(depth - 1);
    };
    EXPECT_EQ(said("n"), "valid");
    EXPECT_EQ(said("t:n"), "valid");
    EXPECT_EQ(said("n xmlns='urn:t'"), "valid");
    EXPECT_EQ(said("n xmlns='urn:u'"), unexpected(kChange, "urn:u"));
    EXPECT_EQ(said("n xmlns=''"), unexpected(kChange, ""));
    EXPECT_EQ(said("t:n xmlns='urn:u'"), unexpected(kChange + 1, "urn:u"));
    EXPECT_EQ(said("t:n xmlns=''"), unexpected(kChange + 1, ""));
}

}  // namespace
