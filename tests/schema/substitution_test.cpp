// Abstract elements and the members of their substitution groups.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "compactxml.h"
#include "tests/support/schema_maker.h"

namespace {

using support::SchemaMaker;
using support::verdict;

constexpr SchemaSimpleType kInt{nullptr, nullptr, "int", nullptr, SCHEMA_TYPE_INT, 0, 0, 0};

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

class GroupSchema : public SchemaMaker {
  public:
    const SchemaElementDecl *top(const SchemaElementDecl &decl) {
        const SchemaElementDecl *made = element(decl);
        add(made, SCHEMA_KIND_ELEMENT);
        return made;
    }
    // What a name stands for in content models: a reference to a top-level element.
    void refer(const char *name, const SchemaElementDecl *to) {
        SchemaElementDecl particle = plain(name);
        particle.ref = to;
        declare(particle);
    }
};

SchemaElementDecl abstractly(SchemaElementDecl decl) {
    decl.abstract = 1;
    return decl;
}

SchemaElementDecl in(const char *ns, SchemaElementDecl decl) {
    decl.targetNamespace = ns;
    return decl;
}

SchemaElementDecl of(const char *head, SchemaElementDecl decl, const char *headNs = nullptr) {
    decl.substitutionGroupName = head;
    decl.substitutionGroupNamespace = headNs;
    return decl;
}

SchemaElementDecl plain(const char *name) {
    return SchemaMaker::plain(name);
}

SchemaElementDecl number(const char *name) {
    return SchemaMaker::ofSimple(name, &kInt);
}

#define NO_INT "x is an invalid value of int type value."
#define INT_AT(path, name)                                                       \
    "3 node=" path " name=" name " text=" NO_INT ": The value of element '" path \
    "' is invalid. " NO_INT
// Not in place of the abstract element: told with its name.
#define NO_MEMBER(parent, name)                                                  \
    "6 node=/" parent "/" name "[1] name=" name ": Unexpected element '':'" name \
    "' under element '/" parent
// After everything expected.
#define LEFT_OVER(path, name, parent) \
    "6 node=" path ": Unexpected element '':'" name "' under element '/" parent

TEST(Substitution, ByReference) {
    GroupSchema schema;
    schema.refer("h", schema.top(abstractly(plain("h"))));
    schema.top(of("h", plain("m")));
    schema.top(of("h", number("n")));
    schema.top(of("m", plain("mm")));
    schema.top(of("h", abstractly(plain("dead"))));
    schema.top(plain("z"));
    schema.addElement("one", "seq(h)");
    schema.addElement("two", "seq(h{2,2})");
    schema.addElement("maybe", "seq(h{0,1})");
    schema.addElement("many", "seq(h{0,u})");
    schema.addElement("choice", "choice(x, h)");
    schema.addElement("all", "all(x, h)");
    constexpr DocumentCase kCases[] = {
        {"<one><m/></one>", "valid"},
        {"<one><n>5</n></one>", "valid"},
        {"<one><n>x</n></one>", INT_AT("/one/n[1]", "n")},
        {"<one><h/></one>", NO_MEMBER("one", "h")},
        {"<one><z/></one>", NO_MEMBER("one", "z")},
        {"<one><unknown/></one>", NO_MEMBER("one", "unknown")},
        {"<one><z xmlns='urn:z'/></one>",
         "6 node=/one/z[1] name=z ns=urn:z: Unexpected element 'urn:z':'z' under element '/one"},
        {"<one><m xmlns='urn:z'/></one>",
         "6 node=/one/m[1] name=m ns=urn:z: Unexpected element 'urn:z':'m' under element '/one"},
        {"<one><z xmlns=''/></one>",
         "6 node=/one/z[1] name=z ns=: Unexpected element '':'z' under element '/one"},
        {"<one><m xmlns=''/></one>", "valid"},
        // One level deep: a member of a member is none.
        {"<one><mm/></one>", NO_MEMBER("one", "mm")},
        // A member that is abstract stands in place, but may not.
        {"<one><dead/></one>", LEFT_OVER("/one/dead[1]", "dead", "one")},
        {"<one><dead k='1'>x</dead></one>", LEFT_OVER("/one/dead[1]", "dead", "one")},
        {"<one/>",
         "5 node=/one name=one: The number of occurrences of element '/one/one' is invalid."},
        {"<one><m/><m/></one>", LEFT_OVER("/one/m[2]", "m", "one")},
        {"<two><m/><n>5</n></two>", "valid"},
        {"<two><n>5</n><n>x</n></two>", INT_AT("/two/n[2]", "n")},
        {"<two><m/></two>",
         "5 node=/two name=h: The number of occurrences of element '/two/h' is invalid."},
        {"<two><m/><z/></two>", NO_MEMBER("two", "z")},
        {"<two><n>x</n><z/></two>", INT_AT("/two/n[1]", "n")},
        {"<maybe/>", "valid"},
        {"<maybe><m/></maybe>", "valid"},
        {"<maybe><z/></maybe>", LEFT_OVER("/maybe/z[1]", "z", "maybe")},
        {"<many><m/><n>5</n><m/><n>6</n></many>", "valid"},
        {"<many><m/><dead/><n>x</n></many>", LEFT_OVER("/many/dead[1]", "dead", "many")},
        {"<choice><n>x</n></choice>", INT_AT("/choice/n[1]", "n")},
        {"<choice><h/></choice>",
         "11 node=/choice: Required child elements are missing for element '/choice'."},
        {"<all><m/><x/></all>", "valid"},
        {"<all><x/><n>x</n></all>", INT_AT("/all/n[1]", "n")},
        {"<all><x/></all>", "1 node=/all name=h: Expecting element '':'h' under element '/all'."},
        {"<all><m/><x/><n>5</n></all>",
         "5 node=/all name=h: The number of occurrences of element '/all/h' is invalid."},
    };
    expectVerdicts(schema, kCases);
}

// A local declaration that is abstract itself: what does not fit is told as for any other.
TEST(Substitution, Direct) {
    GroupSchema schema;
    schema.declare(abstractly(plain("d")));
    schema.declare(in("urn:t", abstractly(plain("q"))));
    SchemaElementDecl notAbstract = plain("two");
    notAbstract.abstract = 2;
    schema.declare(notAbstract);
    schema.top(of("d", number("m")));
    schema.top(of("q", in("urn:u", plain("mq")), "urn:t"));
    schema.top(of("two", plain("m2")));
    schema.addElement("r", "seq(d)");
    schema.addElement("rq", "seq(q)");
    schema.addElement("r2", "seq(two)");
    constexpr DocumentCase kCases[] = {
        {"<r><m>5</m></r>", "valid"},
        {"<r><m>x</m></r>", INT_AT("/r/m[1]", "m")},
        {"<r><d/></r>", "1 node=/r name=d: Expecting element '':'d' under element '/r'."},
        {"<r><z/></r>", "1 node=/r name=d: Expecting element '':'d' under element '/r'."},
        {"<rq><mq xmlns='urn:u'/></rq>", "valid"},
        {"<rq><mq/></rq>",
         "1 node=/rq name=q ns=urn:t: Expecting element 'urn:t':'q' under element '/rq'."},
        {"<rq><q xmlns='urn:t'/></rq>",
         "1 node=/rq name=q ns=urn:t: Expecting element 'urn:t':'q' under element '/rq'."},
        {"<r2><two/></r2>", "valid"},
        {"<r2><m2/></r2>", "1 node=/r2 name=two: Expecting element '':'two' under element '/r2'."},
    };
    expectVerdicts(schema, kCases);
}

// The head has to be abstract.
TEST(Substitution, HeadThatIsNotAbstract) {
    GroupSchema schema;
    schema.refer("p", schema.top(plain("p")));
    schema.top(of("p", plain("q")));
    schema.addElement("r", "seq(p)");
    constexpr DocumentCase kCases[] = {
        {"<r><p/></r>", "valid"},
        {"<r><q/></r>", "1 node=/r name=p: Expecting element '':'p' under element '/r'."},
    };
    expectVerdicts(schema, kCases);
}

TEST(Substitution, AbstractMembers) {
    GroupSchema schema;
    schema.refer("h", schema.top(abstractly(plain("h"))));
    // Another declaration of the same name stands for the member.
    schema.top(of("h", abstractly(plain("a"))));
    schema.top(of("a", number("a")));
    // It is abstract too, and nothing but itself stands for it.
    schema.top(of("h", abstractly(plain("b"))));
    schema.top(of("b", abstractly(plain("b"))));
    // The one that is not abstract comes first.
    schema.top(of("h", number("c")));
    schema.top(of("h", abstractly(plain("c"))));
    // Head and member of its own group.
    schema.refer("self", schema.top(of("self", abstractly(plain("self")))));
    schema.addElement("r", "seq(h)");
    schema.addElement("s", "seq(self)");
    constexpr DocumentCase kCases[] = {
        {"<r><a>5</a></r>", "valid"},
        {"<r><a>x</a></r>", INT_AT("/r/a[1]", "a")},
        {"<r><b/></r>", LEFT_OVER("/r/b[1]", "b", "r")},
        {"<r><c>5</c></r>", "valid"},
        {"<r><c>x</c></r>", INT_AT("/r/c[1]", "c")},
        {"<s><self/></s>", NO_MEMBER("s", "self")},
    };
    expectVerdicts(schema, kCases);
}

TEST(Substitution, Namespaces) {
    GroupSchema schema;
    const auto alternative = [](const char *ns, SchemaElementDecl decl) {
        decl.alternativeNamespace = ns;
        return decl;
    };
    schema.refer("h", schema.top(in("urn:h", abstractly(plain("h")))));
    schema.refer("e", schema.top(in("", abstractly(plain("e")))));
    SchemaElementDecl unqualified = of("h", in("urn:t", number("m")), "urn:h");
    unqualified.form = 2;
    schema.top(unqualified);
    schema.top(of("h", plain("noHead")));
    schema.top(of("h", plain("wrong"), "urn:t"));
    schema.top(of("h", in("##any", plain("any")), "urn:h"));
    schema.top(of("h", alternative("urn:alt", in("urn:t", plain("alt"))), "urn:h"));
    schema.top(of("h", alternative("", in("urn:t", plain("same"))), "urn:h"));
    schema.top(of("h", alternative("urn:alt", plain("none")), "urn:h"));
    schema.top(of("e", plain("me")));
    schema.addElement("r", "seq(h)");
    schema.addElement("re", "seq(e)");
#define NO_MEMBER_IN(ns, name)                                                          \
    "6 node=/r/" name "[1] name=" name " ns=" ns ": Unexpected element '" ns "':'" name \
    "' under element '/r"
    constexpr DocumentCase kCases[] = {
        // The member's own namespace counts, whatever its form.
        {"<r><m xmlns='urn:t'>5</m></r>", "valid"},
        {"<r><t:m xmlns:t='urn:t'>x</t:m></r>", INT_AT("/r/m[1]", "m")},
        {"<r><m>5</m></r>", NO_MEMBER("r", "m")},
        {"<r><m xmlns='urn:h'>5</m></r>", NO_MEMBER_IN("urn:h", "m")},
        // That of the head has to be named.
        {"<r><noHead/></r>", NO_MEMBER("r", "noHead")},
        {"<r><wrong/></r>", NO_MEMBER("r", "wrong")},
        {"<re><me/></re>", "valid"},
        // A keyword is a name here.
        {"<r><any/></r>", NO_MEMBER("r", "any")},
        {"<r><any xmlns='urn:t'/></r>", NO_MEMBER_IN("urn:t", "any")},
        {"<r><any xmlns='##any'/></r>", "valid"},
        // In mode 1 the alternative one counts.
        {"<r><alt xmlns='urn:t'/></r>", "valid", 0},
        {"<r><alt xmlns='urn:alt'/></r>", NO_MEMBER_IN("urn:alt", "alt"), 0},
        {"<r><alt xmlns='urn:t'/></r>", NO_MEMBER_IN("urn:t", "alt"), 1},
        {"<r><alt xmlns='urn:alt'/></r>", "valid", 1},
        {"<r><alt xmlns='urn:alt'/></r>", NO_MEMBER_IN("urn:alt", "alt"), 2},
        {"<r><same xmlns='urn:t'/></r>", "valid", 1},
        {"<r><none xmlns='urn:alt'/></r>", "valid", 1},
        {"<r><none/></r>", NO_MEMBER("r", "none"), 1},
        {"<r><none/></r>", "valid", 0},
    };
    expectVerdicts(schema, kCases);
}

TEST(Substitution, FirstMember) {
    GroupSchema schema;
    schema.refer("h", schema.top(abstractly(plain("h"))));
    schema.top(number("m"));  // of no group
    schema.top(of("other", number("m")));
    schema.top(of("h", plain("m")));
    schema.top(of("h", number("m")));
    schema.addElement("r", "seq(h)");
    EXPECT_EQ(verdict("<r><m>x</m></r>", schema.root()), "valid");
}

// The root is looked up by its own name: only a member of that name can stand for it.
TEST(Substitution, Root) {
    GroupSchema schema;
    schema.top(abstractly(plain("h")));
    schema.top(in("urn:t", abstractly(plain("q"))));
    schema.top(of("h", number("m")));
    schema.top(abstractly(plain("same")));
    schema.top(of("same", number("same")));
    schema.top(abstractly(plain("dead")));
    schema.top(of("dead", abstractly(plain("dead"))));
    constexpr DocumentCase kCases[] = {
        {"<h/>", "1 name=h: Expecting element '':'h' under element ''."},
        {"<q xmlns='urn:t'/>",
         "1 name=q ns=urn:t: Expecting element 'urn:t':'q' under element ''."},
        {"<m>5</m>", "valid"},
        {"<m>x</m>", INT_AT("/m", "m")},
        {"<same>5</same>", "valid"},
        {"<same>x</same>", INT_AT("/same", "same")},
        {"<dead/>", "6 node=/dead: Unexpected element '':'dead' under element '"},
    };
    expectVerdicts(schema, kCases);
}

// A wildcard finds a declaration by its name; if that is abstract, a member of that name is needed.
TEST(Substitution, BelowWildcards) {
    GroupSchema schema;
    schema.top(abstractly(plain("h")));
    schema.top(of("h", number("m")));
    schema.top(abstractly(plain("same")));
    schema.top(of("same", number("same")));
    schema.wildcard({nullptr, "##any", 1, 1, 0});
    schema.addElement("r", "seq(any)");
    constexpr DocumentCase kCases[] = {
        {"<r><h/></r>", LEFT_OVER("/r/h[1]", "h", "r")},
        {"<r><m>5</m></r>", "valid"},
        {"<r><m>x</m></r>", INT_AT("/r/m[1]", "m")},
        {"<r><same>5</same></r>", "valid"},
        {"<r><same>x</same></r>", INT_AT("/r/same[1]", "same")},
    };
    expectVerdicts(schema, kCases);
}

}  // namespace
