// Wildcards for elements: which children they take, and against what these are checked.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "compactxml.h"
#include "tests/support/schema_maker.h"

namespace {

using support::SchemaMaker;
using support::verdict;

constexpr SchemaSimpleType kInt{nullptr, nullptr, "int", nullptr, SCHEMA_TYPE_INT, 0, 0, 0};
constexpr SchemaSimpleType kString{nullptr, nullptr, "string", nullptr, SCHEMA_TYPE_STRING,
                                   0,       0,       0};
constexpr std::int32_t kStrict = 0, kLax = 1, kSkip = 2;

class WildcardSchema : public SchemaMaker {
  public:
    // Top-level elements of a simple type.
    void top(const char *ns, const char *name, const SchemaSimpleType *type,
             const char *alternative = nullptr) {
        SchemaElementDecl decl = ofSimple(name, type);
        decl.targetNamespace = ns;
        decl.alternativeNamespace = alternative;
        add(element(decl), SCHEMA_KIND_ELEMENT);
    }
    // An element whose content has wildcards: "any" in the model.
    void parent(const char *name, std::int32_t process, const char *constraint = "##any",
                const char *target = nullptr, const char *model = "seq(any)") {
        wildcard({target, constraint, 1, 1, process});
        addElement(name, model);
    }
};

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

#define NO_INT "x is an invalid value of int type value."
#define VALUE_OF(parent, child)                                   \
    "3 node=/" parent "/" child "[1] name=" child " text=" NO_INT \
    ": The value of element '/" parent "/" child "[1]' is invalid. " NO_INT
#define WRONG_CHILDREN(element) \
    "8 node=/" element ": The child elements of '/" element "' are invalid."

// In the order of registration: int in urn:t before string in none of known; only in urn:u; late in
// none after urn:t.
TEST(Wildcards, ProcessContents) {
    WildcardSchema schema;
    schema.top("urn:t", "known", &kInt);
    schema.top(nullptr, "known", &kString);
    schema.top("urn:u", "only", &kInt);
    schema.top(nullptr, "none", &kInt);
    schema.parent("strict", kStrict);
    schema.parent("three", 3);
    schema.parent("lax", kLax);
    schema.parent("skip", kSkip);
    constexpr DocumentCase kCases[] = {
        // Strict: there has to be a declaration.
        {"<strict/>",
         "5 node=/strict name=strict: The number of occurrences of element '/strict/strict' is "
         "invalid."},
        {"<strict><known xmlns='urn:t'>5</known></strict>", "valid"},
        {"<strict><known xmlns='urn:t'>x</known></strict>", VALUE_OF("strict", "known")},
        {"<strict><t:known xmlns:t='urn:t'>x</t:known></strict>", VALUE_OF("strict", "known")},
        {"<strict><known xmlns='urn:u'>5</known></strict>", WRONG_CHILDREN("strict")},
        {"<strict><z/></strict>", WRONG_CHILDREN("strict")},
        {"<strict><z xmlns='urn:t'/></strict>", WRONG_CHILDREN("strict")},
        {"<strict><Known xmlns='urn:t'>5</Known></strict>", WRONG_CHILDREN("strict")},
        {"<three><z/></three>", WRONG_CHILDREN("three")},
        {"<three><known xmlns='urn:t'>x</known></three>", VALUE_OF("three", "known")},
        // Without a namespace the first declaration of that name is found, in whatever namespace.
        {"<strict><known>x</known></strict>", VALUE_OF("strict", "known")},
        {"<strict><known>5</known></strict>", "valid"},
        {"<strict><only>5</only></strict>", "valid"},
        {"<strict><only>x</only></strict>", VALUE_OF("strict", "only")},
        {"<strict><none>x</none></strict>", VALUE_OF("strict", "none")},
        // The empty namespace is one to look in.
        {"<strict><known xmlns=''>x</known></strict>", "valid"},
        {"<strict><only xmlns=''>5</only></strict>", WRONG_CHILDREN("strict")},
        {"<strict xmlns:t='urn:t'><t:only>5</t:only></strict>", WRONG_CHILDREN("strict")},
        // Lax: where there is one, it counts.
        {"<lax><known xmlns='urn:t'>5</known></lax>", "valid"},
        {"<lax><known xmlns='urn:t'>x</known></lax>", VALUE_OF("lax", "known")},
        {"<lax><known xmlns='urn:u'>x</known></lax>", "valid"},
        {"<lax><z k='1'>x<a/></z></lax>", "valid"},
        {"<lax><only>x</only></lax>", VALUE_OF("lax", "only")},
        {"<lax><only xmlns=''>x</only></lax>", "valid"},
        {"<lax><known xmlns=''>x</known></lax>", "valid"},
        {"<lax><none>x</none></lax>", VALUE_OF("lax", "none")},
        // Below what is not known nothing is looked at.
        {"<lax><z><known xmlns='urn:t'>x</known></z></lax>", "valid"},
        // Skip: no declaration counts.
        {"<skip><known xmlns='urn:t' k='1'>x</known></skip>", "valid"},
        {"<skip><z/></skip>", "valid"},
        {"<skip><only><a/></only></skip>", "valid"},
        {"<skip/>",
         "5 node=/skip name=skip: The number of occurrences of element '/skip/skip' is invalid."},
    };
    expectVerdicts(schema, kCases);
}

#define NS " xmlns:t='urn:t' xmlns:u='urn:u' xmlns:v='urn:v'"

TEST(Wildcards, Namespaces) {
    WildcardSchema schema;
    schema.top("urn:t", "known", &kInt);
    schema.top("urn:u", "known", &kInt);
    schema.top(nullptr, "known", &kInt);
    schema.parent("other", kStrict, "##other", "urn:t");
    schema.parent("otherLax", kLax, "##other", "urn:t");
    schema.parent("otherSkip", kSkip, "##other", "urn:t");
    schema.parent("otherNull", kSkip, "##other");
    schema.parent("list", kStrict, "urn:t urn:u", "urn:t");
    schema.parent("listSkip", kSkip, "urn:t urn:u");
    schema.parent("listNone", kSkip, "urn:t  urn:u");
    schema.parent("one", kLax, "urn:u");
    schema.parent("noNs", kStrict, nullptr);
    schema.parent("emptyNs", kStrict, "");
    schema.parent("local", kSkip, "##local");
    schema.parent("target", kSkip, "##targetNamespace", "urn:t");
    constexpr DocumentCase kCases[] = {
        {"<other" NS "><u:known>5</u:known></other>", "valid"},
        {"<other" NS "><u:known>x</u:known></other>", VALUE_OF("other", "known")},
        {"<other" NS "><t:known>5</t:known></other>", WRONG_CHILDREN("other")},
        {"<other" NS "><v:known>5</v:known></other>", WRONG_CHILDREN("other")},
        {"<other><known>5</known></other>", WRONG_CHILDREN("other")},
        {"<otherLax" NS "><u:known>x</u:known></otherLax>", VALUE_OF("otherLax", "known")},
        {"<otherLax" NS "><v:known>x</v:known></otherLax>", "valid"},
        {"<otherLax" NS "><t:known>5</t:known></otherLax>", WRONG_CHILDREN("otherLax")},
        {"<otherLax><known>5</known></otherLax>", WRONG_CHILDREN("otherLax")},
        // The empty namespace is one, and not the target's.
        {"<otherLax><known xmlns=''>x</known></otherLax>", VALUE_OF("otherLax", "known")},
        {"<otherSkip" NS "><u:known>x</u:known></otherSkip>", "valid"},
        {"<otherSkip" NS "><t:z/></otherSkip>", WRONG_CHILDREN("otherSkip")},
        {"<otherSkip><z/></otherSkip>", WRONG_CHILDREN("otherSkip")},
        {"<otherNull" NS "><t:z/></otherNull>", "valid"},
        {"<otherNull><z/></otherNull>", WRONG_CHILDREN("otherNull")},
        {"<otherNull><z xmlns=''/></otherNull>", WRONG_CHILDREN("otherNull")},
        {"<list" NS "><t:known>5</t:known></list>", "valid"},
        {"<list" NS "><u:known>5</u:known></list>", "valid"},
        {"<list" NS "><u:known>x</u:known></list>", VALUE_OF("list", "known")},
        {"<list" NS "><v:known>5</v:known></list>", WRONG_CHILDREN("list")},
        {"<list" NS "><t:z/></list>", WRONG_CHILDREN("list")},
        {"<list><known>5</known></list>", WRONG_CHILDREN("list")},
        {"<listSkip" NS "><t:z/></listSkip>", "valid"},
        {"<listSkip" NS "><v:z/></listSkip>", WRONG_CHILDREN("listSkip")},
        {"<listSkip><z/></listSkip>", WRONG_CHILDREN("listSkip")},
        {"<listNone><z/></listNone>", "valid"},
        {"<one" NS "><u:known>x</u:known></one>", VALUE_OF("one", "known")},
        {"<one" NS "><u:z/></one>", "valid"},
        {"<one" NS "><t:z/></one>", WRONG_CHILDREN("one")},
        {"<noNs><known>5</known></noNs>", "valid"},
        {"<noNs><known>x</known></noNs>", VALUE_OF("noNs", "known")},
        {"<noNs><known xmlns=''>x</known></noNs>", VALUE_OF("noNs", "known")},
        {"<noNs><z/></noNs>", WRONG_CHILDREN("noNs")},
        {"<noNs" NS "><t:known>5</t:known></noNs>", WRONG_CHILDREN("noNs")},
        {"<emptyNs><known>5</known></emptyNs>", "valid"},
        {"<emptyNs" NS "><t:known>5</t:known></emptyNs>", WRONG_CHILDREN("emptyNs")},
        // These keywords are names like others.
        {"<local><z/></local>", WRONG_CHILDREN("local")},
        {"<local><z xmlns='##local'/></local>", "valid"},
        {"<target" NS "><t:z/></target>", WRONG_CHILDREN("target")},
        {"<target><z xmlns='##targetNamespace'/></target>", "valid"},
    };
    expectVerdicts(schema, kCases);
}

#define LEFT_OVER(path, name, parent) \
    "6 node=" path ": Unexpected element '':'" name "' under element '/" parent

TEST(Wildcards, Bounds) {
    WildcardSchema schema;
    schema.top(nullptr, "n", &kInt);
    schema.parent("two", kSkip, "##any", nullptr, "seq(any{2,3})");
    schema.parent("many", kStrict, "##any", nullptr, "seq(any{0,u}, z{0,1})");
    schema.parent("none", kSkip, "##any", nullptr, "seq(a{0,1}, any{0,0})");
    schema.parent("after", kLax, "##any", nullptr, "seq(a, any)");
    schema.parent("choice", kStrict, "##any", nullptr, "choice(any, a)");
    schema.parent("repeat", kStrict, "##any", nullptr, "choice{0,2}(any, a)");
    constexpr DocumentCase kCases[] = {
        {"<two><a/></two>", WRONG_CHILDREN("two")},
        {"<two><a/><b/></two>", "valid"},
        {"<two><a/><b/><c/></two>", "valid"},
        {"<two><a/><b/><c/><d/></two>", LEFT_OVER("/two/d[1]", "d", "two")},
        {"<two>x<a/></two>", "9 node=/two: Element '/two' can not have a textual child element."},
        {"<many/>", "valid"},
        {"<many><n>1</n><n>2</n><n>3</n></many>", "valid"},
        {"<many><n>1</n><z/></many>", "valid"},
        {"<many><z/><n>1</n></many>", LEFT_OVER("/many/n[1]", "n", "many")},
        // A child that was taken is checked before what is wrong with those after it.
        {"<many><n>x</n><q/></many>", VALUE_OF("many", "n")},
        {"<many><n>1</n><q/></many>", LEFT_OVER("/many/q[1]", "q", "many")},
        {"<none><a/></none>", "valid"},
        {"<none><a/><b/></none>", WRONG_CHILDREN("none")},
        {"<after><a/></after>", WRONG_CHILDREN("after")},
        {"<after><a/><n>x</n></after>", VALUE_OF("after", "n")},
        {"<after><a/><b/></after>", "valid"},
        {"<after><b/></after>",
         "1 node=/after name=a: Expecting element '':'a' under element "
         "'/after'."},
        // In a choice it has to take the child.
        {"<choice><n>x</n></choice>", VALUE_OF("choice", "n")},
        {"<choice><a/></choice>", "valid"},
        {"<choice><z/></choice>",
         "11 node=/choice: Required child elements are missing for element '/choice'."},
        {"<repeat><n>1</n><a/></repeat>", "valid"},
        {"<repeat><a/><n>x</n></repeat>", VALUE_OF("repeat", "n")},
        {"<repeat><a/><n>1</n><n>2</n></repeat>", LEFT_OVER("/repeat/n[2]", "n", "repeat")},
    };
    expectVerdicts(schema, kCases);
}

// The declaration of a child may have content and attributes of its own.
TEST(Wildcards, ChildrenWithContent) {
    WildcardSchema schema;
    schema.top(nullptr, "n", &kInt);
    schema.addElement("box", "seq(inner)");
    schema.parent("lax", kLax, "##any", nullptr, "seq(any{0,u})");
    schema.parent("nest", kLax, "##any", nullptr, "seq(any{0,u})");
    schema.parent("skip", kSkip, "##any", nullptr, "seq(any{0,u})");
    constexpr DocumentCase kCases[] = {
        {"<lax><box><inner/></box></lax>", "valid"},
        {"<lax><box><other/></box></lax>",
         "1 node=/lax/box[1] name=inner: Expecting element '':'inner' under element "
         "'/lax/box[1]'."},
        {"<lax><box k='1'><inner/></box></lax>",
         "7 node=/lax/box[1] attr=k: Unexpected attribute 'k' of element '/lax/box[1]'."},
        {"<lax><z/><box k='1'><inner/></box></lax>",
         "7 node=/lax/box[1] attr=k: Unexpected attribute 'k' of element '/lax/box[1]'."},
        {"<lax><nest><nest><n>x</n></nest></nest></lax>",
         "3 node=/lax/nest[1]/nest[1]/n[1] name=n text=" NO_INT
         ": The value of element '/lax/nest[1]/nest[1]/n[1]' is invalid. " NO_INT},
        {"<lax><nest><skip><n>x</n></skip></nest></lax>", "valid"},
        {"<lax><nest><z><n>x</n></z></nest></lax>", "valid"},
    };
    expectVerdicts(schema, kCases);
}

// The declarations are found by their namespaces as a schema writes them: one, several, any, other.
TEST(Wildcards, DeclarationsOfManyNamespaces) {
    WildcardSchema schema;
    schema.top("urn:p urn:q", "list", &kInt);
    schema.top("##any", "any", &kInt);
    schema.top("##other", "other", &kInt);
    schema.top("urn:t", "alt", &kInt, "urn:alt");
    schema.top("urn:t", "same", &kInt, "");
    schema.parent("r", kStrict);
    schema.parent("anyList", kStrict, "urn:q urn:z");
    constexpr DocumentCase kCases[] = {
        {"<r><list xmlns='urn:p'>5</list></r>", "valid"},
        {"<r><list xmlns='urn:q'>x</list></r>", VALUE_OF("r", "list")},
        {"<r><list xmlns='urn:z'>5</list></r>", WRONG_CHILDREN("r")},
        {"<r><list>x</list></r>", VALUE_OF("r", "list")},
        {"<anyList><list xmlns='urn:q'>x</list></anyList>", VALUE_OF("anyList", "list")},
        {"<anyList><list xmlns='urn:z'>5</list></anyList>", WRONG_CHILDREN("anyList")},
        {"<r><any xmlns='urn:z'>x</any></r>", VALUE_OF("r", "any")},
        {"<r><any>x</any></r>", VALUE_OF("r", "any")},
        {"<r><other xmlns='urn:z'>x</other></r>", VALUE_OF("r", "other")},
        {"<r><other xmlns=''>5</other></r>", WRONG_CHILDREN("r")},
        {"<r><other>x</other></r>", VALUE_OF("r", "other")},
        // In mode 1 by the alternative namespace.
        {"<r><alt xmlns='urn:t'>x</alt></r>", VALUE_OF("r", "alt"), 0},
        {"<r><alt xmlns='urn:alt'>5</alt></r>", WRONG_CHILDREN("r"), 0},
        {"<r><alt xmlns='urn:t'>5</alt></r>", WRONG_CHILDREN("r"), 1},
        {"<r><alt xmlns='urn:alt'>x</alt></r>", VALUE_OF("r", "alt"), 1},
        {"<r><same xmlns='urn:t'>x</same></r>", VALUE_OF("r", "same"), 1},
    };
    expectVerdicts(schema, kCases);
}

}  // namespace
