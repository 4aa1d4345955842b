#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "compactxml.h"
#include "io/memory.h"

namespace cxml {
namespace {

constexpr std::size_t kPathBytes = 1024;  // longer paths are cut, NUL included

// Takes the text up to the next slash, or to the end, as the step, and moves rest behind it. A
// slash is never a part of another character in GB18030, UTF-8 or any encoding of a tree.
void takeStep(DOM_XPath_Cursor *cursor, char *from) {
    char *slash = std::strchr(from, '/');
    const std::size_t length = slash ? static_cast<std::size_t>(slash - from) : std::strlen(from);
    const std::size_t kept = length < sizeof cursor->step ? length : sizeof cursor->step - 1;
    std::memcpy(cursor->step, from, kept);
    cursor->step[kept] = '\0';
    cursor->rest = slash ? slash + 1 : nullptr;
}

// Reads the selected text as sscanf would with one conversion, but without measuring all of it
// first. Numbers out of range become the nearest one without a word, so errno keeps its value.
template <class Number>
uint32_t readNumber(const XML_DOM_Node *context, const char *path, Number *valueOut,
                    Number (*read)(const char *, char **, int)) {
    const char *text = XML_DOM_GetSelectSingleNodeText(context, path);
    if (!text || !valueOut) return XML_REFUSED;
    const int before = errno;
    char *end = nullptr;
    const Number value = read(text, &end, 10);
    errno = before;
    if (end == text) return XML_REFUSED;
    *valueOut = value;
    return XML_OK;
}

}  // namespace
}  // namespace cxml

using namespace cxml;

XML_DOM_Node *XML_DOM_SelectSingleNode(const XML_DOM_Node *context, const char *path) noexcept {
    if (!context || !path) return nullptr;
    char copy[kPathBytes];
    copyBounded(copy, sizeof copy, path);
    DOM_XPath_Cursor cursor;
    cursor.rest = copy;
    // The result is the caller's to change, as the tree is.
    auto *current = const_cast<XML_DOM_Node *>(context);
    while (current && DOM_XPath_ParseNextXPathContext(&cursor) == 1) {
        current = DOM_XPath_GetNodeFromContext(current, &cursor);
    }
    return current;
}

const char *XML_DOM_GetSelectSingleNodeText(const XML_DOM_Node *context,
                                            const char *path) noexcept {
    return XML_DOM_GetFirstTextChildValue(XML_DOM_SelectSingleNode(context, path));
}

uint32_t XML_DOM_GetSelectSingleNodeAsInt64(const XML_DOM_Node *context, const char *path,
                                            long long *valueOut) noexcept {
    return readNumber(context, path, valueOut, std::strtoll);
}

uint32_t XML_DOM_GetSelectSingleNodeAsUInt64(const XML_DOM_Node *context, const char *path,
                                             unsigned long long *valueOut) noexcept {
    return readNumber(context, path, valueOut, std::strtoull);
}

uint32_t DOM_XPath_ParseNextXPathContext(DOM_XPath_Cursor *cursor) noexcept {
    if (!cursor) return 0;
    cursor->flags = 0;
    cursor->step[0] = '\0';
    if (!cursor->rest) return 0;
    if (*cursor->rest == '/') return DOM_XPath_ParseNextXPath4Root(cursor);
    takeStep(cursor, cursor->rest);
    return 1;
}

uint32_t DOM_XPath_ParseNextXPath4Root(DOM_XPath_Cursor *cursor) noexcept {
    if (!cursor || !cursor->rest) return 0;
    cursor->flags |= DOM_XPATH_ROOT_STEP;
    char *name = *cursor->rest == '/' ? cursor->rest + 1 : cursor->rest;
    if (*name == '\0') {
        cursor->rest = nullptr;
    } else {
        takeStep(cursor, name);
    }
    return 1;
}

XML_DOM_Node *DOM_XPath_GetNodeFromContext(const XML_DOM_Node *node,
                                           const DOM_XPath_Cursor *cursor) noexcept {
    if (!node || !cursor) return nullptr;
    if (cursor->flags & DOM_XPATH_ROOT_STEP) return DOM_XPath_GetRootElement(node, cursor);
    if ((cursor->flags & DOM_XPATH_NO_NODE) || cursor->step[0] == '\0') return nullptr;
    XML_DOM_Node *child = node->firstChild;
    while (child && XML_Strcmp(child->name, cursor->step) != 0) child = child->nextSibling;
    return child;
}

XML_DOM_Node *DOM_XPath_GetRootElement(const XML_DOM_Node *node,
                                       const DOM_XPath_Cursor *cursor) noexcept {
    XML_DOM_Node *root = XML_DOM_GetRoot(node);
    if (!root || !cursor || XML_Strcmp(root->name, node->name) != 0) return nullptr;
    return cursor->step[0] == '\0' || XML_Strcmp(root->name, cursor->step) == 0 ? root : nullptr;
}
