// Finding element declarations along a path of names, and checking values against them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "tests/support/faults.h"

namespace {

constexpr char kUntouched = '#';
constexpr std::int32_t kSimple = SCHEMA_KIND_SIMPLE_TYPE, kComplex = SCHEMA_KIND_COMPLEX_TYPE;

// ---------------------------------------------------------------- a schema

// Each simple type says in its message which declaration was found: it has one value, its name.
#define ONE_VALUE(variable, text)                                                                 \
    constexpr SchemaFacet variable##Facet = {text, SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING}; \
    constexpr SchemaSimpleType variable = {nullptr, &variable##Facet, nullptr, nullptr, 0, 1, 0, 0}

ONE_VALUE(kFirst, "first");
ONE_VALUE(kSecond, "second");
ONE_VALUE(kThird, "third");
ONE_VALUE(kFourth, "fourth");

constexpr SchemaElementDecl element(const char *name, const void *type, std::int32_t typeKind,
                                    const SchemaElementDecl *ref = nullptr) {
    return {ref, name,     nullptr, nullptr, nullptr, type, nullptr, 1,
            1,   typeKind, 0,       0,       0,       0,    nullptr};
}
constexpr SchemaComplexType complex(const SchemaModelGroup *particle,
                                    const SchemaDerivation *content = nullptr) {
    return {nullptr, nullptr, content, particle, nullptr, nullptr, nullptr, nullptr, 0, 0, 0};
}
constexpr SchemaDerivation derivation(std::int32_t kind, const void *base, std::int32_t baseKind,
                                      const SchemaModelGroup *particle) {
    return {nullptr, nullptr, nullptr, particle, nullptr, nullptr, base, kind, baseKind, 0, 0, 0};
}
template <std::size_t count>
constexpr SchemaModelGroup group(const SchemaTypedRef (&particles)[count],
                                 std::int32_t compositor = SCHEMA_KIND_SEQUENCE) {
    return {particles, 1, 1, count, compositor};
}
constexpr SchemaTypedRef particle(const SchemaElementDecl &decl) {
    return {&decl, SCHEMA_KIND_ELEMENT};
}
constexpr SchemaTypedRef particle(const SchemaModelGroup &inner) {
    return {&inner, SCHEMA_KIND_MODEL_GROUP};
}

// Leaves.
constexpr SchemaElementDecl kA = element("a", &kFirst, kSimple);
constexpr SchemaElementDecl kASecond = element("a", &kSecond, kSimple);
constexpr SchemaElementDecl kB = element("b", &kSecond, kSimple);
constexpr SchemaElementDecl kC = element("c", &kThird, kSimple);
constexpr SchemaElementDecl kD = element("d", &kFourth, kSimple);
constexpr SchemaElementDecl kNumber = element("number", nullptr, kSimple);
constexpr SchemaElementDecl kUntyped = element("untyped", nullptr, kComplex);
constexpr SchemaElementDecl kNameless = element(nullptr, &kFirst, kSimple);

// A flat sequence, with a wildcard, a declaration without a name and one that is missing in it.
constexpr SchemaElementWildcard kAny = {nullptr, "##any", 0, 1, 2};
constexpr SchemaTypedRef kFlatParticles[] = {{&kAny, SCHEMA_KIND_ELEMENT_WILDCARD},
                                             {nullptr, SCHEMA_KIND_ELEMENT},
                                             particle(kNameless),
                                             particle(kA),
                                             particle(kB),
                                             particle(kASecond),
                                             particle(kNumber),
                                             particle(kUntyped)};
constexpr SchemaModelGroup kFlatGroup = group(kFlatParticles);
constexpr SchemaComplexType kFlat = complex(&kFlatGroup);
constexpr SchemaElementDecl kFlatElement = element("flat", &kFlat, kComplex);

// Groups in groups: ((c), a-second), a, d.
constexpr SchemaTypedRef kInnermost[] = {particle(kC)};
constexpr SchemaModelGroup kInnermostGroup = group(kInnermost, SCHEMA_KIND_ALL);
constexpr SchemaTypedRef kInner[] = {particle(kInnermostGroup), particle(kASecond)};
constexpr SchemaModelGroup kInnerGroup = group(kInner, SCHEMA_KIND_CHOICE);
constexpr SchemaModelGroup kEmptyGroup = {nullptr, 1, 1, 0, SCHEMA_KIND_SEQUENCE};
constexpr SchemaTypedRef kNestedParticles[] = {particle(kEmptyGroup), particle(kInnerGroup),
                                               particle(kA), particle(kD)};
constexpr SchemaModelGroup kNestedGroup = group(kNestedParticles);
constexpr SchemaComplexType kNested = complex(&kNestedGroup);
constexpr SchemaElementDecl kNestedElement = element("nested", &kNested, kComplex);

// Derived: what the base has comes first; own particles follow.
constexpr SchemaTypedRef kBaseParticles[] = {particle(kA), particle(kFlatElement)};
constexpr SchemaModelGroup kBaseGroup = group(kBaseParticles);
constexpr SchemaComplexType kBase = complex(&kBaseGroup);
constexpr SchemaTypedRef kMoreParticles[] = {particle(kASecond), particle(kC)};
constexpr SchemaModelGroup kMoreGroup = group(kMoreParticles);
constexpr SchemaDerivation kExtension =
    derivation(SCHEMA_KIND_COMPLEX_EXTENSION, &kBase, kComplex, &kMoreGroup);
constexpr SchemaComplexType kDerived = complex(nullptr, &kExtension);
constexpr SchemaElementDecl kDerivedElement = element("derived", &kDerived, kComplex);

constexpr SchemaElementDecl kThirdC = element("c", &kFourth, kSimple);
constexpr SchemaTypedRef kStillMore[] = {particle(kThirdC), particle(kD)};
constexpr SchemaModelGroup kStillMoreGroup = group(kStillMore);
constexpr SchemaDerivation kRestriction =
    derivation(SCHEMA_KIND_COMPLEX_RESTRICTION, &kDerived, kComplex, &kStillMoreGroup);
constexpr SchemaComplexType kTwice =
    complex(&kFlatGroup, &kRestriction);  // the particle is not its
constexpr SchemaElementDecl kTwiceElement = element("twice", &kTwice, kComplex);

// Derived without particles of its own, from nothing, and from a simple type.
constexpr SchemaDerivation kPlain =
    derivation(SCHEMA_KIND_COMPLEX_EXTENSION, &kBase, kComplex, nullptr);
constexpr SchemaComplexType kPlainType = complex(nullptr, &kPlain);
constexpr SchemaElementDecl kPlainElement = element("plain", &kPlainType, kComplex);
constexpr SchemaDerivation kBaseless =
    derivation(SCHEMA_KIND_COMPLEX_EXTENSION, nullptr, kComplex, &kMoreGroup);
constexpr SchemaComplexType kBaselessType = complex(nullptr, &kBaseless);
constexpr SchemaElementDecl kBaselessElement = element("baseless", &kBaselessType, kComplex);
constexpr SchemaDerivation kSimpleContent =
    derivation(SCHEMA_KIND_SIMPLE_EXTENSION, &kFirst, kSimple, nullptr);
constexpr SchemaComplexType kSimpleContentType = complex(nullptr, &kSimpleContent);
constexpr SchemaElementDecl kSimpleContentElement =
    element("content", &kSimpleContentType, kComplex);
constexpr SchemaComplexType kEmptyType = complex(nullptr);
constexpr SchemaElementDecl kEmptyElement = element("empty", &kEmptyType, kComplex);

// References: to a simple and a complex element, under another name or none of their own.
constexpr SchemaElementDecl kRefA = element(nullptr, nullptr, 0, &kA);
constexpr SchemaElementDecl kRefNested = element("other", &kSecond, kSimple, &kNestedElement);
constexpr SchemaTypedRef kRefParticles[] = {particle(kRefA), particle(kRefNested)};
constexpr SchemaModelGroup kRefGroup = group(kRefParticles);
constexpr SchemaComplexType kRefs = complex(&kRefGroup);
constexpr SchemaElementDecl kRefsElement = element("refs", &kRefs, kComplex);

// An element in itself.
extern const SchemaComplexType kTree;
constexpr SchemaElementDecl kTreeElement = element("tree", &kTree, kComplex);
constexpr SchemaTypedRef kTreeParticles[] = {particle(kTreeElement), particle(kC)};
constexpr SchemaModelGroup kTreeGroup = group(kTreeParticles);
constexpr SchemaComplexType kTree = complex(&kTreeGroup);

// Top level: two of one name, a simple one, a reference.
constexpr SchemaElementDecl kTopA = element("top", &kThird, kSimple);
constexpr SchemaElementDecl kTopASecond = element("top", &kFourth, kSimple);
constexpr SchemaElementDecl kTopRef = element(nullptr, nullptr, 0, &kD);
constexpr SchemaElementDecl kDotted = element("x.y", &kFirst, kSimple);
constexpr SchemaElementDecl kEmptyName = element("", &kFlat, kComplex);

class Root {
  public:
    Root() {
        Schema_InitRoot(&root_);
        for (const SchemaElementDecl *decl : kTop) {
            const SchemaTopObject request = {decl, SCHEMA_KIND_ELEMENT};
            Schema_RegTopObject(&root_, &request);
        }
    }
    ~Root() {
        for (const SchemaElementDecl *decl : kTop) {
            const SchemaTopObject request = {decl, SCHEMA_KIND_ELEMENT};
            Schema_DeregTopObject(&root_, &request);
        }
        Schema_ExitRoot(&root_);
    }
    Root(const Root &) = delete;
    Root &operator=(const Root &) = delete;
    const SchemaRoot *get() const { return &root_; }

  private:
    static constexpr const SchemaElementDecl *kTop[] = {
        &kNameless,     &kTopA,         &kFlatElement,     &kNestedElement, &kDerivedElement,
        &kTwiceElement, &kPlainElement, &kBaselessElement, &kEmptyElement,  &kSimpleContentElement,
        &kRefsElement,  &kTreeElement,  &kTopASecond,      &kTopRef,        &kUntyped,
        &kDotted};
    SchemaRoot root_;
};

// ---------------------------------------------------------------- paths

struct Case {
    const char *path;
    // The one value of the declaration's simple type; "*" for a declaration that has no simple type
    // or takes everything, and "-" for none.
    std::string_view value;
};

constexpr Case kPaths[] = {
    {"top", "third"},  // the first registered
    {"flat", "*"},
    {"flat.a", "first"},  // the first declared
    {"flat.b", "second"},
    {"flat.number", "*"},
    {"flat.untyped", "*"},
    {"untyped", "*"},
    {"content", "*"},
    {"empty", "*"},
    {"d", "fourth"},  // through a reference
    // Groups are entered, in order.
    {"nested.c", "third"},
    {"nested.a", "second"},
    {"nested.d", "fourth"},
    // Base types come first.
    {"derived.a", "first"},
    {"derived.c", "third"},
    {"derived.flat", "*"},
    {"derived.flat.b", "second"},
    {"twice.a", "first"},
    {"twice.c", "third"},
    {"twice.d", "fourth"},
    {"twice.flat.a", "first"},
    {"twice.b", "-"},
    {"plain.a", "first"},
    {"plain.flat.a", "first"},
    {"plain.c", "-"},
    {"baseless.a", "second"},
    {"baseless.c", "third"},
    // References stand for what they refer to.
    {"refs.a", "first"},
    {"refs.nested", "*"},
    {"refs.nested.c", "third"},
    {"refs.other", "-"},
    // As deep as the path.
    {"tree", "*"},
    {"tree.tree.tree.tree.c", "third"},
    {"tree.tree.c.tree", "-"},
    // Not there.
    {"a", "-"},
    {"b", "-"},
    {"Flat", "-"},
    {"fla", "-"},
    {"flats", "-"},
    {"flat.A", "-"},
    {"flat.c", "-"},
    {"flat.flat", "-"},
    {"flat.a.b", "-"},
    {"flat.untyped.a", "-"},
    {"flat.number.a", "-"},
    {"flat.any", "-"},
    {"flat.##any", "-"},
    {"empty.a", "-"},
    {"content.a", "-"},
    {"top.a", "-"},
    {"nested.b", "-"},
    {"string", "-"},
    {"anyType", "-"},
    // Names are what stands between the dots, as it is.
    {"", "-"},
    {".", "-"},
    {"..", "-"},
    {".flat", "-"},
    {"flat.", "-"},
    {"flat..a", "-"},
    {"flat.a.", "-"},
    {".flat.a", "-"},
    {"flat/a", "-"},
    {" flat", "-"},
    {"flat ", "-"},
    {"flat .a", "-"},
    {"flat. a", "-"},
    {"p:flat", "-"},
    {"x.y", "-"},
};

TEST(ElementPath, Table) {
    const Root root;
    for (const Case &row : kPaths) {
        SCOPED_TRACE(row.path);
        const bool found = row.value != "-";
        // Without a value or a buffer it is only looked for.
        char buffer[64];
        std::memset(buffer, kUntouched, sizeof buffer);
        const auto check = [&](const char *value, char *out) {
            const support::FaultyHeap heap(0);
            const std::uint32_t result =
                Schema_CheckAttrsAsElement(root.get(), row.path, value, sizeof buffer, out);
            EXPECT_EQ(heap.allocations(), 0u);
            return result;
        };
        EXPECT_EQ(check(nullptr, nullptr), found ? XML_OK : XML_REFUSED);
        EXPECT_EQ(check(nullptr, buffer), found ? XML_OK : XML_REFUSED);
        EXPECT_EQ(check("no such value", nullptr), found ? XML_OK : XML_REFUSED);
        if (found && row.value != "*") {
            EXPECT_EQ(check(std::string(row.value).c_str(), buffer), XML_OK);
        }
        EXPECT_TRUE(std::all_of(std::begin(buffer), std::end(buffer),
                                [](char c) { return c == kUntouched; }));
        EXPECT_EQ(check("no such value", buffer), row.value == "*" ? XML_OK : XML_REFUSED);
        if (found && row.value != "*") {
            EXPECT_STREQ(buffer, "The value does not match the enumeration.");
        } else {
            EXPECT_EQ(buffer[0], kUntouched);
        }
    }
}

TEST(ElementPath, LongNames) {
    const Root root;
    const std::string longName(5000, 'x');
    for (const std::string &path :
         {longName, "flat." + longName, longName + ".a", "flat.a" + longName}) {
        EXPECT_EQ(Schema_CheckAttrsAsElement(root.get(), path.c_str(), nullptr, 0, nullptr),
                  XML_REFUSED);
    }
    std::string deep = "tree";
    for (int i = 0; i < 100000; ++i) deep += ".tree";
    EXPECT_EQ(Schema_CheckAttrsAsElement(root.get(), deep.c_str(), nullptr, 0, nullptr), XML_OK);
    EXPECT_EQ(Schema_CheckAttrsAsElement(root.get(), (deep + ".c").c_str(), nullptr, 0, nullptr),
              XML_OK);
    EXPECT_EQ(Schema_CheckAttrsAsElement(root.get(), (deep + ".d").c_str(), nullptr, 0, nullptr),
              XML_REFUSED);
}

// The order of registration decides, and changes where an object fills a hole.
TEST(ElementPath, FirstRegistered) {
    SchemaRoot root{};
    const SchemaTopObject first = {&kTopA, SCHEMA_KIND_ELEMENT};
    const SchemaTopObject second = {&kTopASecond, SCHEMA_KIND_ELEMENT};
    char buffer[64];
    EXPECT_EQ(Schema_CheckAttrsAsElement(&root, "top", nullptr, 0, nullptr), XML_REFUSED);
    Schema_RegTopObject(&root, &second);
    Schema_RegTopObject(&root, &first);
    EXPECT_EQ(Schema_CheckAttrsAsElement(&root, "top", "fourth", sizeof buffer, buffer), XML_OK);
    EXPECT_EQ(Schema_CheckAttrsAsElement(&root, "top", "third", sizeof buffer, buffer),
              XML_REFUSED);
    Schema_DeregTopObject(&root, &second);
    EXPECT_EQ(Schema_CheckAttrsAsElement(&root, "top", "third", sizeof buffer, buffer), XML_OK);
    Schema_DeregTopObject(&root, &first);
    EXPECT_EQ(Schema_CheckAttrsAsElement(&root, "top", "third", sizeof buffer, buffer),
              XML_REFUSED);
}

// A path splits at every dot, so that a name with one is never found; an empty name is a name.
TEST(ElementPath, OddNames) {
    SchemaRoot root{};
    const SchemaTopObject empty = {&kEmptyName, SCHEMA_KIND_ELEMENT};
    Schema_RegTopObject(&root, &empty);
    EXPECT_EQ(Schema_CheckAttrsAsElement(&root, "", nullptr, 0, nullptr), XML_OK);
    EXPECT_EQ(Schema_CheckAttrsAsElement(&root, ".a", nullptr, 0, nullptr), XML_OK);
    EXPECT_EQ(Schema_CheckAttrsAsElement(&root, ".", nullptr, 0, nullptr), XML_REFUSED);
    Schema_DeregTopObject(&root, &empty);
}

// The kind of a type decides what is read of it: neither of these has what the other kind would
// find at the same place.
TEST(ElementPath, KindsOfTypesAreApart) {
    SchemaSimpleType simple{};
    simple.name = reinterpret_cast<const char *>(&kExtension);
    simple.ns = reinterpret_cast<const char *>(&kFlatGroup);
    SchemaComplexType mixed = kFlat;
    mixed.unread5 = &kFlat;
    const SchemaElementDecl decls[] = {element("s", &simple, kSimple),
                                       element("m", &mixed, kComplex)};
    static_assert(offsetof(SchemaSimpleType, name) == offsetof(SchemaComplexType, content));
    static_assert(offsetof(SchemaSimpleType, ns) == offsetof(SchemaComplexType, particle));
    static_assert(offsetof(SchemaSimpleType, builtinCode) == offsetof(SchemaComplexType, unread5));
    SchemaRoot root{};
    for (const SchemaElementDecl &decl : decls) {
        const SchemaTopObject request = {&decl, SCHEMA_KIND_ELEMENT};
        Schema_RegTopObject(&root, &request);
    }
    char buffer[128] = "untouched";
    EXPECT_EQ(Schema_CheckAttrsAsElement(&root, "s", nullptr, 0, nullptr), XML_OK);
    EXPECT_EQ(Schema_CheckAttrsAsElement(&root, "s.a", nullptr, 0, nullptr), XML_REFUSED);
    EXPECT_EQ(Schema_CheckAttrsAsElement(&root, "m.a", nullptr, 0, nullptr), XML_OK);
    EXPECT_EQ(Schema_CheckAttrsAsElement(&root, "m", "value", sizeof buffer, buffer), XML_OK);
    EXPECT_STREQ(buffer, "untouched");
    for (const SchemaElementDecl &decl : decls) {
        const SchemaTopObject request = {&decl, SCHEMA_KIND_ELEMENT};
        Schema_DeregTopObject(&root, &request);
    }
}

// ---------------------------------------------------------------- values

TEST(ElementPath, ValuesOfBuiltInTypes) {
    const SchemaElementDecl decl = element("n", Schema_BLDIN_byte(), kSimple);
    SchemaRoot root{};
    const SchemaTopObject request = {&decl, SCHEMA_KIND_ELEMENT};
    Schema_RegTopObject(&root, &request);
    struct ValueCase {
        const char *value, *message;
    };
    static constexpr ValueCase kValues[] = {
        {"127", ""},
        {"-128", ""},
        {"128", "128 is an invalid value of byte type value."},
        {"x", "x is an invalid value of byte type value."},
        {"", "byte cannot be empty."},
    };
    for (const ValueCase &row : kValues) {
        char buffer[200] = "";
        EXPECT_EQ(Schema_CheckAttrsAsElement(&root, "n", row.value, sizeof buffer, buffer),
                  *row.message == '\0' ? XML_OK : XML_REFUSED)
            << row.value;
        EXPECT_STREQ(buffer, row.message);
    }
    // Cut to the buffer.
    char buffer[12];
    std::memset(buffer, kUntouched, sizeof buffer);
    EXPECT_EQ(Schema_CheckAttrsAsElement(&root, "n", "", 8, buffer), XML_REFUSED);
    EXPECT_EQ(std::string_view(buffer, sizeof buffer), std::string_view("byte ca\0####", 12));
    std::memset(buffer, kUntouched, sizeof buffer);
    EXPECT_EQ(Schema_CheckAttrsAsElement(&root, "n", "", 0, buffer), XML_REFUSED);
    EXPECT_EQ(buffer[0], kUntouched);
    Schema_DeregTopObject(&root, &request);
}

// A fixed value and occurrences are the business of validation.
TEST(ElementPath, ChecksTheTypeAlone) {
    SchemaElementDecl decl = element("n", Schema_BLDIN_byte(), kSimple);
    decl.fixedValue = "5";
    decl.hasFixed = 1;
    decl.minOccurs = decl.maxOccurs = 0;
    decl.abstract = 1;
    decl.targetNamespace = "urn:t";
    SchemaRoot root{};
    const SchemaTopObject request = {&decl, SCHEMA_KIND_ELEMENT};
    Schema_RegTopObject(&root, &request);
    char buffer[64];
    EXPECT_EQ(Schema_CheckAttrsAsElement(&root, "n", "6", sizeof buffer, buffer), XML_OK);
    Schema_DeregTopObject(&root, &request);
}

TEST(ElementPath, MissingArguments) {
    const Root root;
    char buffer[64] = "untouched";
    EXPECT_EQ(Schema_CheckAttrsAsElement(nullptr, "flat.a", "first", sizeof buffer, buffer),
              XML_REFUSED);
    EXPECT_EQ(Schema_CheckAttrsAsElement(root.get(), nullptr, "first", sizeof buffer, buffer),
              XML_REFUSED);
    EXPECT_EQ(Schema_CheckAttrsAsElement(nullptr, nullptr, nullptr, 0, nullptr), XML_REFUSED);
    EXPECT_STREQ(buffer, "untouched");
}

}  // namespace
