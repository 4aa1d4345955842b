// The built-in schema, xml_schema_buildin, in the form that xsd2c gives to all schemas.
#include "compactxml.h"
#include "io/wrapping.h"

const char *g_szGatherXsd_xml_schema_buildin = "____xsd2c_xsd_filename____:xml_schema_buildin.xsd";

namespace cxml {
namespace {

constexpr char kNamespace[] = "http://www.w3.org/2001/XMLSchema";

constexpr SchemaSimpleType simpleType(const char *name, uint32_t code) {
    return {nullptr, nullptr, name, kNamespace, code, 0, 0, 0};
}

// In the order of registration. Constant, so that roots may be set up in several threads at once.
constexpr struct {
    SchemaSimpleType anySimpleType_;
    SchemaSimpleType byte_;
    SchemaSimpleType short_;
    SchemaSimpleType unsignedByte_;
    SchemaSimpleType unsignedShort_;
    SchemaSimpleType int_;
    SchemaSimpleType long_;
    SchemaSimpleType unsignedInt_;
    SchemaSimpleType unsignedLong_;
    SchemaSimpleType integer_;
    SchemaSimpleType positiveInteger_;
    SchemaSimpleType nonPositiveInteger_;
    SchemaSimpleType negativeInteger_;
    SchemaSimpleType nonNegativeInteger_;
    SchemaSimpleType duration_;
    SchemaSimpleType dateTime_;
    SchemaSimpleType date_;
    SchemaSimpleType time_;
    SchemaSimpleType gYear_;
    SchemaSimpleType gMonth_;
    SchemaSimpleType gDay_;
    SchemaSimpleType gYearMonth_;
    SchemaSimpleType gMonthDay_;
    SchemaSimpleType string_;
    SchemaSimpleType boolean_;
    SchemaSimpleType hexBinary_;
    SchemaSimpleType base64Binary_;
    SchemaSimpleType anyURI_;
    SchemaSimpleType QName_;
    SchemaSimpleType language_;
    SchemaComplexType anyType_;
} kTypes = {
    simpleType("anySimpleType", SCHEMA_TYPE_ANY_SIMPLE_TYPE),
    simpleType("byte", SCHEMA_TYPE_BYTE),
    simpleType("short", SCHEMA_TYPE_SHORT),
    simpleType("unsignedByte", SCHEMA_TYPE_UNSIGNED_BYTE),
    simpleType("unsignedShort", SCHEMA_TYPE_UNSIGNED_SHORT),
    simpleType("int", SCHEMA_TYPE_INT),
    simpleType("long", SCHEMA_TYPE_LONG),
    simpleType("unsignedInt", SCHEMA_TYPE_UNSIGNED_INT),
    simpleType("unsignedLong", SCHEMA_TYPE_UNSIGNED_LONG),
    simpleType("integer", SCHEMA_TYPE_INTEGER),
    simpleType("positiveInteger", SCHEMA_TYPE_POSITIVE_INTEGER),
    simpleType("nonPositiveInteger", SCHEMA_TYPE_NON_POSITIVE_INTEGER),
    simpleType("negativeInteger", SCHEMA_TYPE_NEGATIVE_INTEGER),
    simpleType("nonNegativeInteger", SCHEMA_TYPE_NON_NEGATIVE_INTEGER),
    simpleType("duration", SCHEMA_TYPE_DURATION),
    simpleType("dateTime", SCHEMA_TYPE_DATE_TIME),
    simpleType("date", SCHEMA_TYPE_DATE),
    simpleType("time", SCHEMA_TYPE_TIME),
    simpleType("gYear", SCHEMA_TYPE_G_YEAR),
    simpleType("gMonth", SCHEMA_TYPE_G_MONTH),
    simpleType("gDay", SCHEMA_TYPE_G_DAY),
    simpleType("gYearMonth", SCHEMA_TYPE_G_YEAR_MONTH),
    simpleType("gMonthDay", SCHEMA_TYPE_G_MONTH_DAY),
    simpleType("string", SCHEMA_TYPE_STRING),
    simpleType("boolean", SCHEMA_TYPE_BOOLEAN),
    simpleType("hexBinary", SCHEMA_TYPE_HEX_BINARY),
    simpleType("base64Binary", SCHEMA_TYPE_BASE64_BINARY),
    simpleType("anyURI", SCHEMA_TYPE_ANY_URI),
    simpleType("QName", SCHEMA_TYPE_QNAME),
    simpleType("language", SCHEMA_TYPE_LANGUAGE),
    {nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, "anyType", kNamespace, 0, 0, 0},
};

constexpr SchemaTopObject kTopObjects[] = {
    {&kTypes.anySimpleType_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.byte_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.short_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.unsignedByte_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.unsignedShort_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.int_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.long_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.unsignedInt_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.unsignedLong_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.integer_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.positiveInteger_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.nonPositiveInteger_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.negativeInteger_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.nonNegativeInteger_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.duration_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.dateTime_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.date_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.time_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.gYear_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.gMonth_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.gDay_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.gYearMonth_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.gMonthDay_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.string_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.boolean_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.hexBinary_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.base64Binary_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.anyURI_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.QName_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.language_, SCHEMA_KIND_SIMPLE_TYPE},
    {&kTypes.anyType_, SCHEMA_KIND_COMPLEX_TYPE},
};

}  // namespace
}  // namespace cxml

using namespace cxml;

const SchemaSimpleType *Schema_BLDIN_anySimpleType(void) noexcept {
    return &kTypes.anySimpleType_;
}
const SchemaSimpleType *Schema_BLDIN_byte(void) noexcept {
    return &kTypes.byte_;
}
const SchemaSimpleType *Schema_BLDIN_short(void) noexcept {
    return &kTypes.short_;
}
const SchemaSimpleType *Schema_BLDIN_unsignedByte(void) noexcept {
    return &kTypes.unsignedByte_;
}
const SchemaSimpleType *Schema_BLDIN_unsignedShort(void) noexcept {
    return &kTypes.unsignedShort_;
}
const SchemaSimpleType *Schema_BLDIN_int(void) noexcept {
    return &kTypes.int_;
}
const SchemaSimpleType *Schema_BLDIN_long(void) noexcept {
    return &kTypes.long_;
}
const SchemaSimpleType *Schema_BLDIN_unsignedInt(void) noexcept {
    return &kTypes.unsignedInt_;
}
const SchemaSimpleType *Schema_BLDIN_unsignedLong(void) noexcept {
    return &kTypes.unsignedLong_;
}
const SchemaSimpleType *Schema_BLDIN_integer(void) noexcept {
    return &kTypes.integer_;
}
const SchemaSimpleType *Schema_BLDIN_positiveInteger(void) noexcept {
    return &kTypes.positiveInteger_;
}
const SchemaSimpleType *Schema_BLDIN_nonPositiveInteger(void) noexcept {
    return &kTypes.nonPositiveInteger_;
}
const SchemaSimpleType *Schema_BLDIN_negativeInteger(void) noexcept {
    return &kTypes.negativeInteger_;
}
const SchemaSimpleType *Schema_BLDIN_nonNegativeInteger(void) noexcept {
    return &kTypes.nonNegativeInteger_;
}
const SchemaSimpleType *Schema_BLDIN_duration(void) noexcept {
    return &kTypes.duration_;
}
const SchemaSimpleType *Schema_BLDIN_dateTime(void) noexcept {
    return &kTypes.dateTime_;
}
const SchemaSimpleType *Schema_BLDIN_date(void) noexcept {
    return &kTypes.date_;
}
const SchemaSimpleType *Schema_BLDIN_time(void) noexcept {
    return &kTypes.time_;
}
const SchemaSimpleType *Schema_BLDIN_gYear(void) noexcept {
    return &kTypes.gYear_;
}
const SchemaSimpleType *Schema_BLDIN_gMonth(void) noexcept {
    return &kTypes.gMonth_;
}
const SchemaSimpleType *Schema_BLDIN_gDay(void) noexcept {
    return &kTypes.gDay_;
}
const SchemaSimpleType *Schema_BLDIN_gYearMonth(void) noexcept {
    return &kTypes.gYearMonth_;
}
const SchemaSimpleType *Schema_BLDIN_gMonthDay(void) noexcept {
    return &kTypes.gMonthDay_;
}
const SchemaSimpleType *Schema_BLDIN_string(void) noexcept {
    return &kTypes.string_;
}
const SchemaSimpleType *Schema_BLDIN_boolean(void) noexcept {
    return &kTypes.boolean_;
}
const SchemaSimpleType *Schema_BLDIN_hexBinary(void) noexcept {
    return &kTypes.hexBinary_;
}
const SchemaSimpleType *Schema_BLDIN_base64Binary(void) noexcept {
    return &kTypes.base64Binary_;
}
const SchemaSimpleType *Schema_BLDIN_anyURI(void) noexcept {
    return &kTypes.anyURI_;
}
const SchemaSimpleType *Schema_BLDIN_QName(void) noexcept {
    return &kTypes.QName_;
}
const SchemaSimpleType *Schema_BLDIN_language(void) noexcept {
    return &kTypes.language_;
}
const SchemaComplexType *Schema_BLDIN_anyType(void) noexcept {
    return &kTypes.anyType_;
}

COMPACTXML_WRAPS uint32_t SchemaReg_xml_schema_buildin(SchemaRoot *root) noexcept {
    uint32_t result = XML_OK;
    for (const SchemaTopObject &object : kTopObjects) result += Schema_RegTopObject(root, &object);
    return result;
}

uint32_t SchemaDereg_xml_schema_buildin(SchemaRoot *root) noexcept {
    uint32_t result = XML_OK;
    for (const SchemaTopObject &object : kTopObjects) result = Schema_DeregTopObject(root, &object);
    return result;
}
