#include <cstdint>

#include "compactxml.h"
#include "schema/message.h"
#include "schema/network_type.h"
#include "schema/same_text.h"
#include "schema/value_check.h"

namespace cxml {
namespace {

bool isUnion(const SchemaSimpleType &type) {
    return type.memberCount >= 2;
}

// Members are tried in order; what one says stays in the buffer when a later one fits.
bool checkUnion(const SchemaSimpleType &type, const char *value, const ValueCheck &check) {
    for (std::uint32_t i = 0; type.members && i < type.memberCount; ++i) {
        if (checkSimpleType(type.members[i], value, check)) return true;
    }
    writeMessage(check.buffer, check.size, {value, " does not match any member of union"});
    return false;
}

bool checkRestriction(const SchemaSimpleType &type, const char *value, const ValueCheck &check) {
    // Without a base the type restricts anySimpleType, which has every value.
    if (type.members && !checkSimpleType(type.members[0], value, check)) return false;
    return !type.facets || checkFacets(type.facets, type.facetCount, value, check);
}

}  // namespace

// Calls itself for members and bases: as deep as the schema, which is not input, nests types.
bool checkSimpleType(const SchemaSimpleType *type, const char *value,
                     const ValueCheck &check) noexcept {
    if (!type) return true;
    if (!value) value = "";
    if (isUnion(*type)) return checkUnion(*type, value, check);
    if (type->builtinCode != 0) {
        return checkBaseType(type->builtinCode, value, check);
    }
    // Intended: a type of network equipment has neither base nor facets that count.
    if (mayBeNetworkType(type->name)) {
        if (const SchemaKestType *row = Schema_FoundKestBltInType(type->name, type->ns)) {
            return Schema_checkKestBltInType(row, value, check.size, check.buffer) == 1;
        }
    }
    return checkRestriction(*type, value, check);
}

std::uint32_t checkSimpleContent(const SchemaComplexType *type, const char *value,
                                 const ValueCheck &check, bool *valid) noexcept {
    if (!value) value = "";
    const SchemaDerivation *content = type ? type->content : nullptr;
    if (!content || (content->derivationKind != SCHEMA_KIND_SIMPLE_RESTRICTION &&
                     content->derivationKind != SCHEMA_KIND_SIMPLE_EXTENSION)) {
        return XML_NO_VALUE;
    }
    if (content->baseTypeKind == SCHEMA_KIND_SIMPLE_TYPE) {
        *valid =
            checkSimpleType(static_cast<const SchemaSimpleType *>(content->baseType), value, check);
    } else {
        const auto *base = static_cast<const SchemaComplexType *>(content->baseType);
        const std::uint32_t result = checkSimpleContent(base, value, check, valid);
        if (result != XML_OK) return result;
    }
    if (*valid && content->derivationKind == SCHEMA_KIND_SIMPLE_RESTRICTION && content->facets) {
        *valid = checkFacets(content->facets, content->facetCount, value, check);
    }
    return XML_OK;
}

bool Schema_CheckFixedValue(const char *fixedValue, const char *value,
                            const ValueCheck &check) noexcept {
    if (isSameText(fixedValue, value)) return true;
    if (!fixedValue || *fixedValue == '\0') {
        writeMessage(check.buffer, check.size, {"must be empty"});
    } else {
        writeMessage(check.buffer, check.size, {"must equal ", fixedValue});
    }
    return false;
}

}  // namespace cxml

using namespace cxml;

void Schema_CheckSimpleType(const SchemaSimpleType *type, const char *value, uint32_t size,
                            SchemaValidateContext *context, char *buffer) noexcept {
    if (!type || !context || !buffer) return;
    if (!checkSimpleType(type, value, {size, buffer, nullptr})) context->valid = 0;
}

uint32_t Schema_checkValueOfElement(const SchemaTypedRef *type, const char *value, uint32_t size,
                                    char *buffer) noexcept {
    if (!type || !type->object || !buffer) return XML_REFUSED;
    const ValueCheck check = {size, buffer, nullptr};
    if (type->kind == SCHEMA_KIND_SIMPLE_TYPE) {
        const auto *simple = static_cast<const SchemaSimpleType *>(type->object);
        return checkSimpleType(simple, value, check) ? XML_OK : XML_REFUSED;
    }
    const auto *complex = static_cast<const SchemaComplexType *>(type->object);
    bool valid = true;
    const uint32_t result = checkSimpleContent(complex, value, check, &valid);
    return valid ? result : XML_REFUSED;
}
