// The tables of the validator: codes, and what the checks of values say.
#include <compactxml.h>

#include <algorithm>
#include <iterator>
#include <string_view>

#include "outcome.h"
#include "tables.h"

namespace messages {
namespace {

struct CodeCase {
    std::uint32_t code;
    const char *what;
    const char *document;
};

constexpr CodeCase kCodeCases[] = {
    {0, "nothing: it is valid", "<empty/>"},
    {1, "an element is missing before another one", "<pair><b/></pair>"},
    {1, "an element of an `all` group is missing", "<all/>"},
    {2, "an attribute is missing", "<vlan/>"},
    {2, "an attribute with a namespace is missing", "<note/>"},
    {3, "the value of an element", "<byte/>"},
    {4, "the value of an attribute", "<vlan id=\"\"/>"},
    {4, "the value of an attribute with a namespace", "<note xml:lang=\"\"/>"},
    {5, "too few of an element, at the end", "<pair><a/></pair>"},
    {5, "a sequence is missing as a whole: the name is that of the parent", "<pair/>"},
    {5, "an element of an `all` group is there twice", "<all><a/><a/></all>"},
    {6, "an element that is not expected", "<pair><a/><b/><b/></pair>"},
    {6, "an element in one of a simple type", "<byte><x/></byte>"},
    {7, "an attribute that is not expected", "<empty x=\"\"/>"},
    {7, "an attribute with a namespace that is not expected", "<empty xml:x=\"\"/>"},
    {8, "too few for a wildcard", "<any><x/></any>"},
    {9, "text where there may be none", "<empty>x</empty>"},
    {10, "elements where there may be none", "<empty><x/></empty>"},
    {11, "nothing of a choice", "<choice/>"},
    {12, "no declaration of the root element", "<x/>"},
};

// A reason that a value is refused with.
struct ValueCase {
    const char *check;
    const char *document;
    const char *reason;
};

constexpr ValueCase kValueCases[] = {
    {"`length`", "<length/>", "The length must be equal to 2."},
    {"`maxLength`", "<maxLength>xx</maxLength>", "The length must be less than or equal to 1."},
    {"`minLength`", "<minLength/>", "The length must be greater than or equal to 1."},
    {"`maxExclusive`", "<maxExclusive>5</maxExclusive>", "The value must be less than 5."},
    {"`maxInclusive`", "<maxInclusive>6</maxInclusive>",
     "The value must be less than or equal to 5."},
    {"`minExclusive`", "<minExclusive>5</minExclusive>", "The value must be greater than 5."},
    {"`minInclusive`", "<minInclusive>4</minInclusive>",
     "The value must be greater than or equal to 5."},
    {"`pattern`", "<pattern/>", "The value does not match the regular expression."},
    {"`enumeration`", "<enumeration/>", "The value does not match the enumeration."},
    {"union", "<union/>", " does not match any member of union"},
    {"fixed value", "<fixed a=\"\"/>", "must equal 1"},
    {"fixed value, empty", "<fixed b=\"x\"/>", "must be empty"},
    {"`xml:lang`", "<empty xml:lang=\"\"/>",
     " is not a valid value for http://www.w3.org/XML/1998/namespace:lang"},
    {"`OID`", "<oid/>", "Invalid OID"},
    {"`_Ipv6Address`", "<ipv6/>", "Invalid IPv6"},
    {"`IPV6_ADDR_PREFIX`", "<prefix/>", "Invalid IPv6 prefix"},
    {"`_PortRange`", "<ports/>", "Invalid PortRange"},
    {"`_VlanRange`", "<vlans/>", "Invalid VlanRange"},
    {"`_Ipv4Mask`", "<mask/>", "Invalid IPv4 mask"},
    {"`_IfIndexRange`", "<indices/>", "Invalid IfIndexRange"},
};

constexpr std::uint32_t kLastTypeCode = 46;

// A built-in type that schemas have: its code, its name there, and a value that it does not have.
struct TypeCase {
    std::uint32_t code;
    const char *name;
    const char *wrong = "x";
};

constexpr TypeCase kTypeCases[] = {
    {SCHEMA_TYPE_BYTE, "byte"},
    {SCHEMA_TYPE_SHORT, "short"},
    {SCHEMA_TYPE_UNSIGNED_BYTE, "unsignedByte"},
    {SCHEMA_TYPE_UNSIGNED_SHORT, "unsignedShort"},
    {SCHEMA_TYPE_INT, "int"},
    {SCHEMA_TYPE_LONG, "long"},
    {SCHEMA_TYPE_UNSIGNED_INT, "unsignedInt"},
    {SCHEMA_TYPE_UNSIGNED_LONG, "unsignedLong"},
    {SCHEMA_TYPE_INTEGER, "integer"},
    {SCHEMA_TYPE_POSITIVE_INTEGER, "positiveInteger"},
    {SCHEMA_TYPE_NON_POSITIVE_INTEGER, "nonPositiveInteger"},
    {SCHEMA_TYPE_NEGATIVE_INTEGER, "negativeInteger"},
    {SCHEMA_TYPE_NON_NEGATIVE_INTEGER, "nonNegativeInteger"},
    {SCHEMA_TYPE_DURATION, "duration"},
    {SCHEMA_TYPE_DATE_TIME, "dateTime"},
    {SCHEMA_TYPE_DATE, "date"},
    {SCHEMA_TYPE_TIME, "time"},
    {SCHEMA_TYPE_G_YEAR, "gYear"},
    {SCHEMA_TYPE_G_MONTH, "gMonth"},
    {SCHEMA_TYPE_G_DAY, "gDay"},
    {SCHEMA_TYPE_G_YEAR_MONTH, "gYearMonth"},
    {SCHEMA_TYPE_G_MONTH_DAY, "gMonthDay"},
    {SCHEMA_TYPE_BOOLEAN, "boolean"},
    {SCHEMA_TYPE_HEX_BINARY, "hexBinary"},
    {SCHEMA_TYPE_BASE64_BINARY, "base64Binary"},
    {SCHEMA_TYPE_ANY_URI, "anyURI"},
    {SCHEMA_TYPE_QNAME, "QName", "1"},
    {SCHEMA_TYPE_LANGUAGE, "language"},
};

class ValidatorTables {
  public:
    explicit ValidatorTables(const std::set<Pieces> &known) : known_(known) {}

    Shown make() {
        shown_.tables = {codes(), values(), types(), records()};
        return shown_;
    }

  private:
    Table codes();
    Table values();
    Table types();
    Table records();

    Verdict show(const std::string &document);
    bool saysTheSame(const Verdict &one, const Verdict &other) const;

    const std::set<Pieces> &known_;
    const Schemas schemas_;
    Shown shown_;
};

bool ValidatorTables::saysTheSame(const Verdict &one, const Verdict &other) const {
    return one.readable && one.code == other.code && one.place == other.place &&
           kindOf(known_, one.message) == kindOf(known_, other.message) &&
           kindOf(known_, one.reason) == kindOf(known_, other.reason);
}

// Validates a document of which no part may be enough, and takes down what is said of it.
Verdict ValidatorTables::show(const std::string &document) {
    Verdict verdict = schemas_.validate(document);
    expect(verdict.readable, document + " is not read");
    const bool isSmallest =
        verdict.code == 0 || isShortest(document, [&](const std::string &shorter) {
            return saysTheSame(schemas_.validate(shorter), verdict);
        });
    expect(isSmallest, "a part of " + document + " gives the same message");
    // Intended: the message of code 6 is cut before its end.
    shown_.messages.insert(verdict.code == 6 ? verdict.message + "'." : verdict.message);
    if (!verdict.reason.empty()) shown_.messages.insert(verdict.reason);
    return verdict;
}

Table ValidatorTables::codes() {
    Table table{"validator", {"code", "what is wrong", "smallest document", "message"}, {}};
    for (const CodeCase &one : kCodeCases) {
        const Verdict verdict = show(one.document);
        expect(verdict.code == one.code,
               std::string(one.document) + " gives " + std::to_string(verdict.code));
        table.rows.push_back({std::to_string(verdict.code), one.what, documentCell(one.document),
                              verdict.message.empty() ? "none" : messageCell(verdict.message)});
    }
    return table;
}

Table ValidatorTables::values() {
    Table table{"values", {"check", "smallest document", "reason"}, {}};
    for (const ValueCase &one : kValueCases) {
        const Verdict verdict = show(one.document);
        expect(verdict.reason == one.reason,
               std::string(one.document) + " gives \"" + verdict.reason + "\"");
        table.rows.push_back({one.check, documentCell(one.document), messageCell(verdict.reason)});
    }
    return table;
}

// What is said of a wrong value and of an empty one, which two types have.
Table ValidatorTables::types() {
    Table table{"types", {"smallest document", "reason", "reason when empty"}, {}};
    for (const TypeCase &one : kTypeCases) {
        const std::string name = one.name;
        std::string document = "<" + name + ">";
        document.append(one.wrong).append("</").append(name).append(">");
        const Verdict verdict = show(document), empty = show("<" + name + "/>");
        expect(verdict.code == 3 && empty.code == (name == "base64Binary" ? 0u : 3u), name);
        table.rows.push_back({documentCell(document), messageCell(verdict.reason),
                              empty.code == 0 ? "valid" : messageCell(empty.reason)});
    }
    expect(show("<string/>").code == 0, "an empty string");
    return table;
}

// Reasons that no schema gives, for xsd2c does not write the records that they need.
Table ValidatorTables::records() {
    Table table{"records", {"record", "check of a value", "reason"}, {}};
    char reason[512] = "";
    const SchemaFacet facet = {"2", SCHEMA_FACET_TOTAL_DIGITS, SCHEMA_TYPE_INT};
    expect(Schema_CheckFacet(&facet, "1", sizeof reason, reason) == XML_REFUSED, "total digits");
    shown_.messages.insert(reason);
    table.rows.push_back({"a facet `{\"2\", SCHEMA_FACET_TOTAL_DIGITS, SCHEMA_TYPE_INT}`",
                          "`Schema_CheckFacet` of `1`", messageCell(reason)});
    for (std::uint32_t code = SCHEMA_TYPE_ANY_SIMPLE_TYPE + 1; code <= kLastTypeCode; ++code) {
        const bool isInSchemas =
            code == SCHEMA_TYPE_STRING ||
            std::any_of(std::begin(kTypeCases), std::end(kTypeCases),
                        [code](const TypeCase &one) { return one.code == code; });
        if (isInSchemas) continue;
        SchemaSimpleType type{};
        type.builtinCode = code;
        expect(Schema_CheckBaseType(&type, "1", sizeof reason, reason) == 0, std::to_string(code));
        table.rows.push_back({"a simple type with `builtinCode` " + std::to_string(code),
                              "`Schema_CheckBaseType` of `1`", messageCell(reason)});
    }
    const SchemaSimpleType beyond = {nullptr,           nullptr, nullptr, nullptr,
                                     kLastTypeCode + 1, 0,       0,       0};
    Schema_CheckBaseType(&beyond, "1", sizeof reason, reason);
    expect(std::string_view(reason) == "1 is an invalid value of  type value.",
           "there are more types than this knows");
    return table;
}

}  // namespace

Shown validatorTables(const std::set<Pieces> &known) {
    return ValidatorTables(known).make();
}

}  // namespace messages
