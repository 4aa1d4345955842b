// Looking up element declarations along a path of names.
#include <cstdint>
#include <cstring>
#include <string_view>

#include "compactxml.h"
#include "schema/value_check.h"

namespace cxml {
namespace {

// The declaration that counts: a reference stands for what it refers to.
const SchemaElementDecl *resolved(const SchemaElementDecl *decl) {
    return decl && decl->ref ? decl->ref : decl;
}

bool isNamed(const SchemaElementDecl *decl, std::string_view name) {
    return decl && decl->name && name == decl->name;
}

const SchemaElementDecl *findTop(const SchemaRoot *root, std::string_view name) {
    for (std::uint32_t i = 0; i < root->elements.count; ++i) {
        const auto *decl = static_cast<const SchemaElementDecl *>(root->elements.items[i]);
        if (isNamed(resolved(decl), name)) return resolved(decl);
    }
    return nullptr;
}

// The searches below call themselves for groups in groups and for base types: as deep as the
// schema, which is not input.
const SchemaElementDecl *findInGroup(const SchemaModelGroup *group, std::string_view name) {
    for (std::uint32_t i = 0; group && group->particles && i < group->particleCount; ++i) {
        const SchemaTypedRef &particle = group->particles[i];
        const SchemaElementDecl *found = nullptr;
        if (particle.kind == SCHEMA_KIND_ELEMENT) {
            const auto *decl = resolved(static_cast<const SchemaElementDecl *>(particle.object));
            if (isNamed(decl, name)) found = decl;
        } else if (particle.kind == SCHEMA_KIND_MODEL_GROUP) {
            found = findInGroup(static_cast<const SchemaModelGroup *>(particle.object), name);
        }
        if (found) return found;
    }
    return nullptr;
}

const SchemaElementDecl *findInType(const SchemaComplexType *type, std::string_view name) {
    if (!type) return nullptr;
    const SchemaDerivation *content = type->content;
    if (!content) return findInGroup(type->particle, name);
    if (content->baseTypeKind == SCHEMA_KIND_COMPLEX_TYPE) {
        const auto *base = static_cast<const SchemaComplexType *>(content->baseType);
        if (const SchemaElementDecl *found = findInType(base, name)) return found;
    }
    return findInGroup(content->particle, name);
}

const SchemaElementDecl *findChild(const SchemaElementDecl *parent, std::string_view name) {
    if (parent->typeKind == SCHEMA_KIND_SIMPLE_TYPE) return nullptr;
    return findInType(static_cast<const SchemaComplexType *>(parent->type), name);
}

const SchemaElementDecl *findAlong(const SchemaRoot *root, std::string_view path) {
    const SchemaElementDecl *decl = nullptr;
    for (bool first = true;; first = false) {
        const std::size_t dot = path.find('.');
        const std::string_view name = path.substr(0, dot);
        decl = first ? findTop(root, name) : findChild(decl, name);
        if (!decl || dot == std::string_view::npos) return decl;
        path.remove_prefix(dot + 1);
    }
}

}  // namespace
}  // namespace cxml

using namespace cxml;

uint32_t Schema_CheckAttrsAsElement(const SchemaRoot *root, const char *path, const char *value,
                                    uint32_t size, char *buffer) noexcept {
    if (!root || !path) return XML_REFUSED;
    const SchemaElementDecl *decl = findAlong(root, path);
    if (!decl) return XML_REFUSED;
    if (!value || !buffer || decl->typeKind != SCHEMA_KIND_SIMPLE_TYPE) return XML_OK;
    const auto *type = static_cast<const SchemaSimpleType *>(decl->type);
    return checkSimpleType(type, value, {size, buffer, nullptr}) ? XML_OK : XML_REFUSED;
}
