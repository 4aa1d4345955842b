#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "compactxml.h"
#include "io/string_block.h"

namespace cxml {
namespace {

constexpr std::size_t kPathBytes = 1024;  // longer paths are cut, NUL included
constexpr std::size_t kStepBytes = sizeof DOM_XPath_Cursor{}.step;  // longer steps likewise

// The name in one step of a path, which is not terminated.
struct StepName {
    const char *text;
    std::size_t length;

    // Whether a name is this one; null is an empty name.
    bool is(const char *name) const {
        if (!name) return length == 0;
        for (std::size_t i = 0; i < length; ++i) {
            if (name[i] != text[i]) return false;
        }
        return name[length] == '\0';
    }
};

StepName stepOf(const DOM_XPath_Cursor *cursor) {
    return {cursor->step, std::strlen(cursor->step)};
}

// A path of which a part has been read.
struct PathRest {
    const char *at;  // null when the path is used up
    const char *end;

    // Takes the text up to the next slash, or to the end. A slash is never a part of another
    // character in GB18030, UTF-8 or any encoding of a tree.
    StepName takeStep() {
        const char *const from = at;
        const char *to = from;
        while (to != end && *to != '/') ++to;
        at = to == end ? nullptr : to + 1;
        const auto length = static_cast<std::size_t>(to - from);
        return {from, length < kStepBytes ? length : kStepBytes - 1};
    }

    // The name of a root step, in front of which a slash may stand; empty behind the last slash.
    StepName takeRootStep() {
        if (at != end && *at == '/') ++at;
        if (at != end) return takeStep();
        at = nullptr;
        return {"", 0};
    }

    bool beginsAtRoot() const { return at != end && *at == '/'; }
};

// A step's name in a form in which many names are quickly held to it: none of the branches depends on
// how far a name is the same.
class NameTest {
  public:
    explicit NameTest(const StepName &step) : step_(step) {
#ifdef COMPACTXML_STRING_BLOCKS
        alignas(StringBlock) Byte first[StringBlock::kBytes] = {};
        std::memcpy(first, step.text, step.length < sizeof first ? step.length : sizeof first);
        first_ = StringBlock::load(first);
#endif
    }

    bool is(const char *name) const {
#ifdef COMPACTXML_STRING_BLOCKS
        const auto *bytes = reinterpret_cast<const Byte *>(name);
        if (name && StringBlock::isBoundary(bytes)) {
            if (!StringBlock::load(bytes).beginsAs(first_, step_.length + 1)) return false;
            if (step_.length < StringBlock::kBytes) return true;
        }
#endif
        return step_.is(name);
    }

  private:
    StepName step_;
#ifdef COMPACTXML_STRING_BLOCKS
    StringBlock first_;
#endif
};

XML_DOM_Node *findChild(const XML_DOM_Node *node, const StepName &step) {
    if (step.length == 0) return nullptr;
    const NameTest test{step};
    XML_DOM_Node *child = node->firstChild;
    while (child && !test.is(child->name)) child = child->nextSibling;
    return child;
}

XML_DOM_Node *findRoot(const XML_DOM_Node *node, const StepName &step) {
    XML_DOM_Node *root = XML_DOM_GetRoot(node);
    if (!root || XML_Strcmp(root->name, node->name) != 0) return nullptr;
    return step.length == 0 || step.is(root->name) ? root : nullptr;
}

// The path that a cursor has still to read.
PathRest restOf(const DOM_XPath_Cursor *cursor) {
    return {cursor->rest, cursor->rest + std::strlen(cursor->rest)};
}

// What has been taken becomes the cursor's step.
void moveOn(DOM_XPath_Cursor *cursor, const PathRest &rest, const StepName &step) {
    std::memcpy(cursor->step, step.text, step.length);
    cursor->step[step.length] = '\0';
    cursor->rest = rest.at ? cursor->rest + (rest.at - cursor->rest) : nullptr;
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
    PathRest rest{path, path + strnlen(path, kPathBytes - 1)};
    // The result is the caller's to change, as the tree is.
    auto *current = const_cast<XML_DOM_Node *>(context);
    while (current && rest.at) {
        current = rest.beginsAtRoot() ? findRoot(current, rest.takeRootStep())
                                      : findChild(current, rest.takeStep());
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
    PathRest rest = restOf(cursor);
    const StepName step = rest.takeStep();
    moveOn(cursor, rest, step);
    return 1;
}

uint32_t DOM_XPath_ParseNextXPath4Root(DOM_XPath_Cursor *cursor) noexcept {
    if (!cursor || !cursor->rest) return 0;
    cursor->flags |= DOM_XPATH_ROOT_STEP;
    PathRest rest = restOf(cursor);
    const StepName step = rest.takeRootStep();
    if (rest.at || step.length != 0) {
        moveOn(cursor, rest, step);
    } else {
        cursor->rest = nullptr;  // Intended: a slash with nothing behind it leaves the step
    }
    return 1;
}

XML_DOM_Node *DOM_XPath_GetNodeFromContext(const XML_DOM_Node *node,
                                           const DOM_XPath_Cursor *cursor) noexcept {
    if (!node || !cursor) return nullptr;
    if (cursor->flags & DOM_XPATH_ROOT_STEP) return DOM_XPath_GetRootElement(node, cursor);
    if (cursor->flags & DOM_XPATH_NO_NODE) return nullptr;
    return findChild(node, stepOf(cursor));
}

XML_DOM_Node *DOM_XPath_GetRootElement(const XML_DOM_Node *node,
                                       const DOM_XPath_Cursor *cursor) noexcept {
    if (!node || !cursor) return nullptr;
    return findRoot(node, stepOf(cursor));
}
