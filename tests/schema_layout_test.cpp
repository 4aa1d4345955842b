// The binary interface of compiled schemas: order, width, place and type of every field, for pointers
// of 4 and 8 bytes. Generated code carries all of this in itself.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "compactxml.h"
#include "tests/support/layout.h"

namespace {

// Without noexcept, which callers write in C cannot say.
using CheckOperation = std::uint32_t (*)(const char *value, std::uint32_t size, char *buffer);

FIELD_AT(SchemaFacet, value, 0, 0);
FIELD_AT(SchemaFacet, kind, 4, 8);
FIELD_AT(SchemaFacet, baseCode, 8, 12);
SIZE_IS(SchemaFacet, 12, 16);
FIELD_IS(SchemaFacet, value, const char *);
FIELD_IS(SchemaFacet, kind, std::uint32_t);
FIELD_IS(SchemaFacet, baseCode, std::uint32_t);

FIELD_AT(SchemaSimpleType, members, 0, 0);
FIELD_AT(SchemaSimpleType, facets, 4, 8);
FIELD_AT(SchemaSimpleType, name, 8, 16);
FIELD_AT(SchemaSimpleType, ns, 12, 24);
FIELD_AT(SchemaSimpleType, builtinCode, 16, 32);
FIELD_AT(SchemaSimpleType, facetCount, 20, 36);
FIELD_AT(SchemaSimpleType, memberCount, 24, 40);
FIELD_AT(SchemaSimpleType, flags16, 28, 44);
SIZE_IS(SchemaSimpleType, 32, 48);
FIELD_IS(SchemaSimpleType, members, const SchemaSimpleType *const *);
FIELD_IS(SchemaSimpleType, facets, const SchemaFacet *);
FIELD_IS(SchemaSimpleType, name, const char *);
FIELD_IS(SchemaSimpleType, ns, const char *);
FIELD_IS(SchemaSimpleType, builtinCode, std::uint32_t);
FIELD_IS(SchemaSimpleType, facetCount, std::uint32_t);
FIELD_IS(SchemaSimpleType, memberCount, std::uint32_t);
FIELD_IS(SchemaSimpleType, flags16, std::uint16_t);

FIELD_AT(SchemaDateTimeValue, year, 0, 0);
FIELD_AT(SchemaDateTimeValue, month, 2, 2);
FIELD_AT(SchemaDateTimeValue, day, 4, 4);
FIELD_AT(SchemaDateTimeValue, hour, 6, 6);
FIELD_AT(SchemaDateTimeValue, minute, 8, 8);
FIELD_AT(SchemaDateTimeValue, second, 10, 10);
FIELD_AT(SchemaDateTimeValue, tzHour, 12, 12);
FIELD_AT(SchemaDateTimeValue, tzMinute, 14, 14);
FIELD_AT(SchemaDateTimeValue, fraction, 16, 16);
FIELD_AT(SchemaDateTimeValue, tzSign, 37, 37);
SIZE_IS(SchemaDateTimeValue, 38, 38);
FIELD_IS(SchemaDateTimeValue, year, std::uint16_t);
FIELD_IS(SchemaDateTimeValue, month, std::uint16_t);
FIELD_IS(SchemaDateTimeValue, day, std::uint16_t);
FIELD_IS(SchemaDateTimeValue, hour, std::uint16_t);
FIELD_IS(SchemaDateTimeValue, minute, std::uint16_t);
FIELD_IS(SchemaDateTimeValue, second, std::uint16_t);
FIELD_IS(SchemaDateTimeValue, tzHour, std::uint16_t);
FIELD_IS(SchemaDateTimeValue, tzMinute, std::uint16_t);
FIELD_IS(SchemaDateTimeValue, fraction, char[21]);
FIELD_IS(SchemaDateTimeValue, tzSign, char);

FIELD_AT(SchemaDurationValue, years, 0, 0);
FIELD_AT(SchemaDurationValue, months, 2, 2);
FIELD_AT(SchemaDurationValue, days, 4, 4);
FIELD_AT(SchemaDurationValue, hours, 6, 6);
FIELD_AT(SchemaDurationValue, minutes, 8, 8);
FIELD_AT(SchemaDurationValue, seconds, 10, 10);
SIZE_IS(SchemaDurationValue, 12, 12);
FIELD_IS(SchemaDurationValue, years, std::uint16_t);
FIELD_IS(SchemaDurationValue, months, std::uint16_t);
FIELD_IS(SchemaDurationValue, days, std::uint16_t);
FIELD_IS(SchemaDurationValue, hours, std::uint16_t);
FIELD_IS(SchemaDurationValue, minutes, std::uint16_t);
FIELD_IS(SchemaDurationValue, seconds, std::uint16_t);

FIELD_AT(SchemaKestType, check, 0, 0);
FIELD_AT(SchemaKestType, namespaceName, 4, 8);
FIELD_AT(SchemaKestType, typeName, 8, 16);
SIZE_IS(SchemaKestType, 12, 24);
FIELD_IS(SchemaKestType, check, CheckOperation);
FIELD_IS(SchemaKestType, namespaceName, const char *);
FIELD_IS(SchemaKestType, typeName, const char *);

FIELD_AT(SchemaSplitState, item, 0, 0);
FIELD_AT(SchemaSplitState, rest, 4, 8);
FIELD_AT(SchemaSplitState, separator, 8, 16);
FIELD_AT(SchemaSplitState, size, 12, 24);
SIZE_IS(SchemaSplitState, 16, 32);
FIELD_IS(SchemaSplitState, item, char *);
FIELD_IS(SchemaSplitState, rest, const char *);
FIELD_IS(SchemaSplitState, separator, const char *);
FIELD_IS(SchemaSplitState, size, std::uint32_t);

FIELD_AT(SchemaTypedRef, object, 0, 0);
FIELD_AT(SchemaTypedRef, kind, 4, 8);
SIZE_IS(SchemaTypedRef, 8, 16);
FIELD_IS(SchemaTypedRef, object, const void *);
FIELD_IS(SchemaTypedRef, kind, std::int32_t);

FIELD_AT(SchemaElementDecl, ref, 0, 0);
FIELD_AT(SchemaElementDecl, name, 4, 8);
FIELD_AT(SchemaElementDecl, targetNamespace, 8, 16);
FIELD_AT(SchemaElementDecl, substitutionGroupName, 12, 24);
FIELD_AT(SchemaElementDecl, substitutionGroupNamespace, 16, 32);
FIELD_AT(SchemaElementDecl, type, 20, 40);
FIELD_AT(SchemaElementDecl, fixedValue, 24, 48);
FIELD_AT(SchemaElementDecl, minOccurs, 28, 56);
FIELD_AT(SchemaElementDecl, maxOccurs, 32, 60);
FIELD_AT(SchemaElementDecl, typeKind, 36, 64);
FIELD_AT(SchemaElementDecl, form, 40, 68);
FIELD_AT(SchemaElementDecl, hasFixed, 44, 72);
FIELD_AT(SchemaElementDecl, abstract, 48, 76);
FIELD_AT(SchemaElementDecl, nillable, 50, 78);
FIELD_AT(SchemaElementDecl, alternativeNamespace, 52, 80);
SIZE_IS(SchemaElementDecl, 56, 88);
FIELD_IS(SchemaElementDecl, ref, const SchemaElementDecl *);
FIELD_IS(SchemaElementDecl, name, const char *);
FIELD_IS(SchemaElementDecl, targetNamespace, const char *);
FIELD_IS(SchemaElementDecl, substitutionGroupName, const char *);
FIELD_IS(SchemaElementDecl, substitutionGroupNamespace, const char *);
FIELD_IS(SchemaElementDecl, type, const void *);
FIELD_IS(SchemaElementDecl, fixedValue, const char *);
FIELD_IS(SchemaElementDecl, minOccurs, std::uint32_t);
FIELD_IS(SchemaElementDecl, maxOccurs, std::uint32_t);
FIELD_IS(SchemaElementDecl, typeKind, std::int32_t);
FIELD_IS(SchemaElementDecl, form, std::int32_t);
FIELD_IS(SchemaElementDecl, hasFixed, std::int32_t);
FIELD_IS(SchemaElementDecl, abstract, std::uint16_t);
FIELD_IS(SchemaElementDecl, nillable, std::uint16_t);
FIELD_IS(SchemaElementDecl, alternativeNamespace, const char *);

FIELD_AT(SchemaAttributeDecl, ref, 0, 0);
FIELD_AT(SchemaAttributeDecl, type, 4, 8);
FIELD_AT(SchemaAttributeDecl, name, 8, 16);
FIELD_AT(SchemaAttributeDecl, targetNamespace, 12, 24);
FIELD_AT(SchemaAttributeDecl, fixedValue, 16, 32);
FIELD_AT(SchemaAttributeDecl, use, 20, 40);
FIELD_AT(SchemaAttributeDecl, form, 24, 44);
FIELD_AT(SchemaAttributeDecl, hasFixed, 28, 48);
SIZE_IS(SchemaAttributeDecl, 32, 56);
FIELD_IS(SchemaAttributeDecl, ref, const SchemaAttributeDecl *);
FIELD_IS(SchemaAttributeDecl, type, const SchemaSimpleType *);
FIELD_IS(SchemaAttributeDecl, name, const char *);
FIELD_IS(SchemaAttributeDecl, targetNamespace, const char *);
FIELD_IS(SchemaAttributeDecl, fixedValue, const char *);
FIELD_IS(SchemaAttributeDecl, use, std::int32_t);
FIELD_IS(SchemaAttributeDecl, form, std::int32_t);
FIELD_IS(SchemaAttributeDecl, hasFixed, std::int32_t);

FIELD_AT(SchemaWildcard, targetNamespace, 0, 0);
FIELD_AT(SchemaWildcard, namespaceConstraint, 4, 8);
FIELD_AT(SchemaWildcard, processContents, 8, 16);
SIZE_IS(SchemaWildcard, 12, 24);
FIELD_IS(SchemaWildcard, targetNamespace, const char *);
FIELD_IS(SchemaWildcard, namespaceConstraint, const char *);
FIELD_IS(SchemaWildcard, processContents, std::int32_t);

FIELD_AT(SchemaElementWildcard, targetNamespace, 0, 0);
FIELD_AT(SchemaElementWildcard, namespaceConstraint, 4, 8);
FIELD_AT(SchemaElementWildcard, minOccurs, 8, 16);
FIELD_AT(SchemaElementWildcard, maxOccurs, 12, 20);
FIELD_AT(SchemaElementWildcard, processContents, 16, 24);
SIZE_IS(SchemaElementWildcard, 20, 32);
FIELD_IS(SchemaElementWildcard, targetNamespace, const char *);
FIELD_IS(SchemaElementWildcard, namespaceConstraint, const char *);
FIELD_IS(SchemaElementWildcard, minOccurs, std::uint32_t);
FIELD_IS(SchemaElementWildcard, maxOccurs, std::uint32_t);
FIELD_IS(SchemaElementWildcard, processContents, std::int32_t);

FIELD_AT(SchemaAttributeGroup, attributeUses, 0, 0);
FIELD_AT(SchemaAttributeGroup, attributeGroups, 4, 8);
FIELD_AT(SchemaAttributeGroup, attributeWildcard, 8, 16);
FIELD_AT(SchemaAttributeGroup, ref, 12, 24);
FIELD_AT(SchemaAttributeGroup, unread5, 16, 32);
FIELD_AT(SchemaAttributeGroup, unread6, 20, 40);
FIELD_AT(SchemaAttributeGroup, attributeUseCount, 24, 48);
FIELD_AT(SchemaAttributeGroup, attributeGroupCount, 28, 52);
SIZE_IS(SchemaAttributeGroup, 32, 56);
FIELD_IS(SchemaAttributeGroup, attributeUses, const SchemaAttributeDecl *const *);
FIELD_IS(SchemaAttributeGroup, attributeGroups, const SchemaAttributeGroup *const *);
FIELD_IS(SchemaAttributeGroup, attributeWildcard, const SchemaWildcard *);
FIELD_IS(SchemaAttributeGroup, ref, const SchemaAttributeGroup *);
FIELD_IS(SchemaAttributeGroup, unread5, const void *);
FIELD_IS(SchemaAttributeGroup, unread6, const void *);
FIELD_IS(SchemaAttributeGroup, attributeUseCount, std::uint32_t);
FIELD_IS(SchemaAttributeGroup, attributeGroupCount, std::uint32_t);

FIELD_AT(SchemaModelGroup, particles, 0, 0);
FIELD_AT(SchemaModelGroup, minOccurs, 4, 8);
FIELD_AT(SchemaModelGroup, maxOccurs, 8, 12);
FIELD_AT(SchemaModelGroup, particleCount, 12, 16);
FIELD_AT(SchemaModelGroup, compositor, 16, 20);
SIZE_IS(SchemaModelGroup, 20, 24);
FIELD_IS(SchemaModelGroup, particles, const SchemaTypedRef *);
FIELD_IS(SchemaModelGroup, minOccurs, std::uint32_t);
FIELD_IS(SchemaModelGroup, maxOccurs, std::uint32_t);
FIELD_IS(SchemaModelGroup, particleCount, std::uint32_t);
FIELD_IS(SchemaModelGroup, compositor, std::int32_t);

FIELD_AT(SchemaComplexType, attributeUses, 0, 0);
FIELD_AT(SchemaComplexType, attributeGroups, 4, 8);
FIELD_AT(SchemaComplexType, content, 8, 16);
FIELD_AT(SchemaComplexType, particle, 12, 24);
FIELD_AT(SchemaComplexType, unread5, 16, 32);
FIELD_AT(SchemaComplexType, attributeWildcard, 20, 40);
FIELD_AT(SchemaComplexType, name, 24, 48);
FIELD_AT(SchemaComplexType, targetNamespace, 28, 56);
FIELD_AT(SchemaComplexType, attributeUseCount, 32, 64);
FIELD_AT(SchemaComplexType, attributeGroupCount, 36, 68);
FIELD_AT(SchemaComplexType, mixed, 40, 72);
SIZE_IS(SchemaComplexType, 44, 80);
FIELD_IS(SchemaComplexType, attributeUses, const SchemaAttributeDecl *const *);
FIELD_IS(SchemaComplexType, attributeGroups, const SchemaAttributeGroup *const *);
FIELD_IS(SchemaComplexType, content, const SchemaDerivation *);
FIELD_IS(SchemaComplexType, particle, const SchemaModelGroup *);
FIELD_IS(SchemaComplexType, unread5, const void *);
FIELD_IS(SchemaComplexType, attributeWildcard, const SchemaWildcard *);
FIELD_IS(SchemaComplexType, name, const char *);
FIELD_IS(SchemaComplexType, targetNamespace, const char *);
FIELD_IS(SchemaComplexType, attributeUseCount, std::uint32_t);
FIELD_IS(SchemaComplexType, attributeGroupCount, std::uint32_t);
FIELD_IS(SchemaComplexType, mixed, std::uint16_t);

FIELD_AT(SchemaDerivation, attributeWildcard, 0, 0);
FIELD_AT(SchemaDerivation, attributeUses, 4, 8);
FIELD_AT(SchemaDerivation, attributeGroups, 8, 16);
FIELD_AT(SchemaDerivation, particle, 12, 24);
FIELD_AT(SchemaDerivation, unread5, 16, 32);
FIELD_AT(SchemaDerivation, facets, 20, 40);
FIELD_AT(SchemaDerivation, baseType, 24, 48);
FIELD_AT(SchemaDerivation, derivationKind, 28, 56);
FIELD_AT(SchemaDerivation, baseTypeKind, 32, 60);
FIELD_AT(SchemaDerivation, attributeUseCount, 36, 64);
FIELD_AT(SchemaDerivation, facetCount, 40, 68);
FIELD_AT(SchemaDerivation, attributeGroupCount, 44, 72);
SIZE_IS(SchemaDerivation, 48, 80);
FIELD_IS(SchemaDerivation, attributeWildcard, const SchemaWildcard *);
FIELD_IS(SchemaDerivation, attributeUses, const SchemaAttributeDecl *const *);
FIELD_IS(SchemaDerivation, attributeGroups, const SchemaAttributeGroup *const *);
FIELD_IS(SchemaDerivation, particle, const SchemaModelGroup *);
FIELD_IS(SchemaDerivation, unread5, const void *);
FIELD_IS(SchemaDerivation, facets, const SchemaFacet *);
FIELD_IS(SchemaDerivation, baseType, const void *);
FIELD_IS(SchemaDerivation, derivationKind, std::int32_t);
FIELD_IS(SchemaDerivation, baseTypeKind, std::int32_t);
FIELD_IS(SchemaDerivation, attributeUseCount, std::uint32_t);
FIELD_IS(SchemaDerivation, facetCount, std::uint32_t);
FIELD_IS(SchemaDerivation, attributeGroupCount, std::uint32_t);

FIELD_AT(SchemaObjectList, items, 0, 0);
FIELD_AT(SchemaObjectList, capacity, 4, 8);
FIELD_AT(SchemaObjectList, count, 8, 12);
SIZE_IS(SchemaObjectList, 12, 16);
FIELD_IS(SchemaObjectList, items, const void **);
FIELD_IS(SchemaObjectList, capacity, std::uint32_t);
FIELD_IS(SchemaObjectList, count, std::uint32_t);

FIELD_AT(SchemaRoot, simpleTypes, 0, 0);
FIELD_AT(SchemaRoot, attributes, 12, 16);
FIELD_AT(SchemaRoot, elements, 24, 32);
FIELD_AT(SchemaRoot, complexTypes, 36, 48);
FIELD_AT(SchemaRoot, spare, 48, 64);
FIELD_AT(SchemaRoot, attributeGroups, 60, 80);
FIELD_AT(SchemaRoot, attributeFormDefault, 72, 96);
FIELD_AT(SchemaRoot, elementFormDefault, 76, 100);
SIZE_IS(SchemaRoot, 80, 104);
FIELD_IS(SchemaRoot, simpleTypes, SchemaObjectList);
FIELD_IS(SchemaRoot, attributes, SchemaObjectList);
FIELD_IS(SchemaRoot, elements, SchemaObjectList);
FIELD_IS(SchemaRoot, complexTypes, SchemaObjectList);
FIELD_IS(SchemaRoot, spare, SchemaObjectList);
FIELD_IS(SchemaRoot, attributeGroups, SchemaObjectList);
FIELD_IS(SchemaRoot, attributeFormDefault, std::uint32_t);
FIELD_IS(SchemaRoot, elementFormDefault, std::uint32_t);

FIELD_AT(SchemaErrorInfo, code, 0, 0);
FIELD_AT(SchemaErrorInfo, node, 4, 8);
FIELD_AT(SchemaErrorInfo, name, 8, 16);
FIELD_AT(SchemaErrorInfo, ns, 12, 24);
FIELD_AT(SchemaErrorInfo, attrName, 16, 32);
FIELD_AT(SchemaErrorInfo, attrNs, 20, 40);
FIELD_AT(SchemaErrorInfo, text, 24, 48);
SIZE_IS(SchemaErrorInfo, 1048, 1072);
FIELD_IS(SchemaErrorInfo, code, std::uint32_t);
FIELD_IS(SchemaErrorInfo, node, XML_DOM_Node *);
FIELD_IS(SchemaErrorInfo, name, const char *);
FIELD_IS(SchemaErrorInfo, ns, const char *);
FIELD_IS(SchemaErrorInfo, attrName, const char *);
FIELD_IS(SchemaErrorInfo, attrNs, const char *);
FIELD_IS(SchemaErrorInfo, text, char[1024]);

FIELD_AT(SchemaValidateContext, code, 0, 0);
FIELD_AT(SchemaValidateContext, node, 4, 8);
FIELD_AT(SchemaValidateContext, name, 8, 16);
FIELD_AT(SchemaValidateContext, ns, 12, 24);
FIELD_AT(SchemaValidateContext, attrName, 16, 32);
FIELD_AT(SchemaValidateContext, attrNs, 20, 40);
FIELD_AT(SchemaValidateContext, text, 24, 48);
FIELD_AT(SchemaValidateContext, root, 1048, 1072);
FIELD_AT(SchemaValidateContext, cursor, 1052, 1080);
FIELD_AT(SchemaValidateContext, docRoot, 1056, 1088);
FIELD_AT(SchemaValidateContext, matched, 1060, 1096);
FIELD_AT(SchemaValidateContext, valid, 1064, 1100);
FIELD_AT(SchemaValidateContext, mode, 1066, 1102);
SIZE_IS(SchemaValidateContext, 1068, 1104);
FIELD_IS(SchemaValidateContext, code, std::uint32_t);
FIELD_IS(SchemaValidateContext, node, XML_DOM_Node *);
FIELD_IS(SchemaValidateContext, name, const char *);
FIELD_IS(SchemaValidateContext, ns, const char *);
FIELD_IS(SchemaValidateContext, attrName, const char *);
FIELD_IS(SchemaValidateContext, attrNs, const char *);
FIELD_IS(SchemaValidateContext, text, char[1024]);
FIELD_IS(SchemaValidateContext, root, const SchemaRoot *);
FIELD_IS(SchemaValidateContext, cursor, SchemaContentCursor *);
FIELD_IS(SchemaValidateContext, docRoot, XML_DOM_Node *);
FIELD_IS(SchemaValidateContext, matched, std::uint32_t);
FIELD_IS(SchemaValidateContext, valid, std::uint16_t);
FIELD_IS(SchemaValidateContext, mode, std::uint16_t);

// What a root is asked to take is the same pair.
static_assert(std::is_same_v<SchemaTopObject, SchemaTypedRef>);

// A validation begins with what it reports.
#define SAME_PLACE(field)                                                             \
    static_assert(                                                                    \
        offsetof(SchemaValidateContext, field) == offsetof(SchemaErrorInfo, field) && \
        std::is_same_v<decltype(SchemaValidateContext::field), decltype(SchemaErrorInfo::field)>)
SAME_PLACE(code);
SAME_PLACE(node);
SAME_PLACE(name);
SAME_PLACE(ns);
SAME_PLACE(attrName);
SAME_PLACE(attrNs);
SAME_PLACE(text);

// Plain C records, whatever the language that includes the header.
IS_PLAIN(SchemaFacet);
IS_PLAIN(SchemaSimpleType);
IS_PLAIN(SchemaDateTimeValue);
IS_PLAIN(SchemaDurationValue);
IS_PLAIN(SchemaKestType);
IS_PLAIN(SchemaSplitState);
IS_PLAIN(SchemaTypedRef);
IS_PLAIN(SchemaElementDecl);
IS_PLAIN(SchemaAttributeDecl);
IS_PLAIN(SchemaWildcard);
IS_PLAIN(SchemaElementWildcard);
IS_PLAIN(SchemaAttributeGroup);
IS_PLAIN(SchemaModelGroup);
IS_PLAIN(SchemaComplexType);
IS_PLAIN(SchemaDerivation);
IS_PLAIN(SchemaObjectList);
IS_PLAIN(SchemaRoot);
IS_PLAIN(SchemaErrorInfo);
IS_PLAIN(SchemaValidateContext);

// Values that compiled schemas and callers carry in themselves.
static_assert(XML_NO_VALUE == 0x40010008);
static_assert(SCHEMA_KIND_ELEMENT_WILDCARD == 2 && SCHEMA_KIND_ATTRIBUTE == 5);
static_assert(SCHEMA_KIND_ATTRIBUTE_GROUP == 6 && SCHEMA_KIND_COMPLEX_RESTRICTION == 7);
static_assert(SCHEMA_KIND_COMPLEX_EXTENSION == 8 && SCHEMA_KIND_COMPLEX_TYPE == 9);
static_assert(SCHEMA_KIND_MODEL_GROUP == 10 && SCHEMA_KIND_ALL == 11 && SCHEMA_KIND_CHOICE == 12);
static_assert(SCHEMA_KIND_SEQUENCE == 13 && SCHEMA_KIND_ELEMENT == 14);
static_assert(SCHEMA_KIND_SIMPLE_RESTRICTION == 26 && SCHEMA_KIND_SIMPLE_EXTENSION == 27);
static_assert(SCHEMA_KIND_SIMPLE_TYPE == 29);
static_assert(SCHEMA_FACET_ENUMERATION == 15 && SCHEMA_FACET_LENGTH == 17);
static_assert(SCHEMA_FACET_MAX_EXCLUSIVE == 18 && SCHEMA_FACET_MAX_INCLUSIVE == 19);
static_assert(SCHEMA_FACET_MAX_LENGTH == 20 && SCHEMA_FACET_MIN_EXCLUSIVE == 21);
static_assert(SCHEMA_FACET_MIN_INCLUSIVE == 22 && SCHEMA_FACET_MIN_LENGTH == 23);
static_assert(SCHEMA_FACET_PATTERN == 24 && SCHEMA_FACET_TOTAL_DIGITS == 25);
static_assert(SCHEMA_TYPE_ANY_SIMPLE_TYPE == 1 && SCHEMA_TYPE_BYTE == 3 && SCHEMA_TYPE_SHORT == 4);
static_assert(SCHEMA_TYPE_UNSIGNED_BYTE == 5 && SCHEMA_TYPE_UNSIGNED_SHORT == 6);
static_assert(SCHEMA_TYPE_INT == 7 && SCHEMA_TYPE_LONG == 8 && SCHEMA_TYPE_UNSIGNED_INT == 9);
static_assert(SCHEMA_TYPE_UNSIGNED_LONG == 10 && SCHEMA_TYPE_INTEGER == 11);
static_assert(SCHEMA_TYPE_POSITIVE_INTEGER == 12 && SCHEMA_TYPE_NON_POSITIVE_INTEGER == 13);
static_assert(SCHEMA_TYPE_NEGATIVE_INTEGER == 14 && SCHEMA_TYPE_NON_NEGATIVE_INTEGER == 15);
static_assert(SCHEMA_TYPE_DURATION == 19 && SCHEMA_TYPE_DATE_TIME == 20 && SCHEMA_TYPE_DATE == 21);
static_assert(SCHEMA_TYPE_TIME == 22 && SCHEMA_TYPE_G_YEAR == 23 && SCHEMA_TYPE_G_MONTH == 24);
static_assert(SCHEMA_TYPE_G_DAY == 25 && SCHEMA_TYPE_G_YEAR_MONTH == 26);
static_assert(SCHEMA_TYPE_G_MONTH_DAY == 27 && SCHEMA_TYPE_STRING == 28);
static_assert(SCHEMA_TYPE_BOOLEAN == 29 && SCHEMA_TYPE_HEX_BINARY == 30);
static_assert(SCHEMA_TYPE_BASE64_BINARY == 31 && SCHEMA_TYPE_ANY_URI == 32);
static_assert(SCHEMA_TYPE_QNAME == 33 && SCHEMA_TYPE_LANGUAGE == 34);

// Results and arguments, as callers were compiled with them.
template <class... Arguments>
using Checks = std::uint32_t (*)(Arguments...) noexcept;
static_assert(std::is_same_v<decltype(&Schema_CheckFacet),
                             Checks<const SchemaFacet *, const char *, std::uint32_t, char *>>);
static_assert(std::is_same_v<decltype(&Schema_checkValueOfElement),
                             Checks<const SchemaTypedRef *, const char *, std::uint32_t, char *>>);
static_assert(
    std::is_same_v<decltype(&Schema_CheckAttrsAsElement),
                   Checks<const SchemaRoot *, const char *, const char *, std::uint32_t, char *>>);
static_assert(
    std::is_same_v<decltype(&Schema_RegTopObject), Checks<SchemaRoot *, const SchemaTopObject *>>);
static_assert(std::is_same_v<decltype(&Schema_DeregTopObject),
                             Checks<SchemaRoot *, const SchemaTopObject *>>);
static_assert(
    std::is_same_v<decltype(&Schema_CmpDateTime),
                   int (*)(const SchemaDateTimeValue *, const SchemaDateTimeValue *) noexcept>);
static_assert(
    std::is_same_v<decltype(&Schema_BLDIN_string), const SchemaSimpleType *(*)() noexcept>);
static_assert(
    std::is_same_v<decltype(&Schema_BLDIN_anyType), const SchemaComplexType *(*)() noexcept>);
static_assert(std::is_same_v<decltype(g_szGatherXsd_xml_schema_buildin), const char *>);

// The fields that compilers see are the ones that the library reads and writes.
TEST(SchemaLayout, TheLibraryAgrees) {
    unsigned char bytes[support::pick(80, 104)];
    std::memset(bytes, 0xAB, sizeof bytes);
    alignas(SchemaRoot) unsigned char record[sizeof bytes];
    std::memcpy(record, bytes, sizeof bytes);
    auto *root = reinterpret_cast<SchemaRoot *>(record);
    Schema_InitRoot(root);
    const auto number = [&record](std::size_t offset) {
        std::uint32_t value = 0;
        std::memcpy(&value, record + offset, sizeof value);
        return value;
    };
    EXPECT_EQ(number(support::pick(8, 12)), 30u);  // simple types, in a list of 32
    EXPECT_EQ(number(support::pick(4, 8)), 32u);
    EXPECT_EQ(number(support::pick(3 * 12 + 8, 3 * 16 + 12)), 1u);  // complex types
    EXPECT_EQ(number(support::pick(72, 96)), 2u);                   // attributes are unqualified
    EXPECT_EQ(number(support::pick(76, 100)), 1u);                  // elements are qualified
    Schema_ExitRoot(root);

    const auto *type = reinterpret_cast<const unsigned char *>(Schema_BLDIN_language());
    std::uint32_t code = 0;
    std::memcpy(&code, type + support::pick(16, 32), sizeof code);
    EXPECT_EQ(code, 34u);
    const char *name = nullptr;
    std::memcpy(&name, type + support::pick(8, 16), sizeof name);
    EXPECT_STREQ(name, "language");
}

}  // namespace
