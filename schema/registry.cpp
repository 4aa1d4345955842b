#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "compactxml.h"

namespace cxml {
namespace {

constexpr std::uint32_t kFirstCapacity = 32;
constexpr std::uint32_t kQualified = 1, kUnqualified = 2;

SchemaObjectList *listOf(SchemaRoot *root, std::int32_t kind) {
    switch (kind) {
        case SCHEMA_KIND_SIMPLE_TYPE:
            return &root->simpleTypes;
        case SCHEMA_KIND_ATTRIBUTE:
            return &root->attributes;
        case SCHEMA_KIND_ELEMENT:
            return &root->elements;
        case SCHEMA_KIND_COMPLEX_TYPE:
            return &root->complexTypes;
        case SCHEMA_KIND_ATTRIBUTE_GROUP:
            return &root->attributeGroups;
        default:
            return nullptr;
    }
}

bool grow(SchemaObjectList *list) {
    if (list->capacity > UINT32_MAX / 2) return false;
    const std::uint32_t capacity = list->capacity == 0 ? kFirstCapacity : 2 * list->capacity;
    const std::uint64_t bytes = std::uint64_t{capacity} * sizeof(void *);
    if (static_cast<std::size_t>(bytes) != bytes) return false;
    // Slots behind the count are not read, so that only a first array is cleared.
    void *block = list->capacity == 0
                      ? std::calloc(capacity, sizeof(void *))
                      : std::realloc(static_cast<void *>(list->items), capacity * sizeof(void *));
    if (!block) return false;
    list->items = static_cast<const void **>(block);
    list->capacity = capacity;
    return true;
}

void release(SchemaObjectList *list) {
    std::free(static_cast<void *>(list->items));
    *list = {nullptr, 0, 0};
}

}  // namespace
}  // namespace cxml

using namespace cxml;

void Schema_InitRoot(SchemaRoot *root) noexcept {
    if (!root) return;
    // Intended: what a root in use holds is not released.
    *root = SchemaRoot{};
    root->attributeFormDefault = kUnqualified;
    root->elementFormDefault = kQualified;
    SchemaReg_xml_schema_buildin(root);
}

void Schema_ExitRoot(SchemaRoot *root) noexcept {
    if (root) SchemaDereg_xml_schema_buildin(root);
}

uint32_t Schema_RegTopObject(SchemaRoot *root, const SchemaTopObject *topObject) noexcept {
    if (!root || !topObject) return XML_REFUSED;
    SchemaObjectList *list = listOf(root, topObject->kind);
    if (!list || (list->count == list->capacity && !grow(list))) return XML_REFUSED;
    list->items[list->count++] = topObject->object;
    return XML_OK;
}

uint32_t Schema_DeregTopObject(SchemaRoot *root, const SchemaTopObject *topObject) noexcept {
    SchemaObjectList *list = root && topObject ? listOf(root, topObject->kind) : nullptr;
    if (!list) return XML_OK;
    for (std::uint32_t i = 0; i < list->count; ++i) {
        if (list->items[i] != topObject->object) continue;
        // Intended: the last object takes the place of the one that goes.
        list->items[i] = list->items[list->count - 1];
        list->items[--list->count] = nullptr;
        break;
    }
    if (list->count == 0) release(list);
    return XML_OK;
}
