// Paths: selection, paths of nodes, scans and numbers, each beside a plain twin, and paths applied
// step by step beside paths applied at once.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "fuzz/support/converters.h"
#include "fuzz/support/fuzz_input.h"
#include "fuzz/support/require.h"
#include "fuzz/support/target.h"
#include "tests/support/owners.h"

namespace {

using Nodes = std::vector<XML_DOM_Node *>;

constexpr std::size_t kMostPath = 1023, kMostStep = 255;

std::string text(const char *s) {
    return s ? s : "";
}

void collect(XML_DOM_Node *node, Nodes *nodes) {
    nodes->push_back(node);
    for (XML_DOM_Node *child = XML_DOM_GetFirstChild(node); child;
         child = XML_DOM_GetNextSibling(child)) {
        collect(child, nodes);
    }
}

// ---------------------------------------------------------------- the twins

XML_DOM_Node *rootByName(XML_DOM_Node *node, const std::string &step) {
    XML_DOM_Node *root = XML_DOM_GetRoot(node);
    if (!root || text(XML_DOM_GetNodeName(node)) != XML_DOM_GetNodeName(root)) return nullptr;
    return step.empty() || step == XML_DOM_GetNodeName(root) ? root : nullptr;
}

XML_DOM_Node *childByName(XML_DOM_Node *node, const std::string &step) {
    if (step.empty()) return nullptr;
    for (XML_DOM_Node *child = XML_DOM_GetFirstChild(node); child;
         child = XML_DOM_GetNextSibling(child)) {
        const char *name = XML_DOM_GetNodeName(child);
        if (name && step == name) return child;
    }
    return nullptr;
}

// A path taken apart: a slash in front of a step makes it a step to the root, and one slash behind
// a step only divides.
XML_DOM_Node *selectSlowly(XML_DOM_Node *node, std::string path) {
    path = path.substr(0, kMostPath);
    for (bool last = false; node && !last;) {
        const bool root = path.starts_with('/');
        if (root) path.erase(0, 1);
        const std::size_t slash = path.find('/');
        last = slash == path.npos;
        const std::string step = path.substr(0, slash).substr(0, kMostStep);
        path = last ? "" : path.substr(slash + 1);
        // A slash at the very end names the root and leaves nothing.
        node = root ? rootByName(node, step) : childByName(node, step);
    }
    return node;
}

std::string pathSlowly(const XML_DOM_Node *node) {
    const XML_DOM_Node *parent = XML_DOM_GetNodeParent(node);
    const std::string above = parent ? pathSlowly(parent) : "";
    const char *name = XML_DOM_GetNodeName(node);
    if (!name) return above;
    if (!parent) return "/" + text(name);
    unsigned position = 1;
    for (const XML_DOM_Node *other = XML_DOM_GetFirstChild(parent); other != node;
         other = XML_DOM_GetNextSibling(other)) {
        if (XML_DOM_GetNodeName(other) && text(XML_DOM_GetNodeName(other)) == name) ++position;
    }
    return above + "/" + name + "[" + std::to_string(position) + "]";
}

// ---------------------------------------------------------------- what is compared

void requirePath(const XML_DOM_Node *node, std::size_t size) {
    const std::string whole = pathSlowly(node);
    // One byte more, which must stay as it is.
    std::vector<char> buffer(size + 1, '#');
    const auto room = static_cast<std::uint32_t>(size);
    const std::uint32_t length = XML_DOM_GetXPath(node, room, buffer.data());
    fuzz::require(buffer[size] == '#', "a path beyond its buffer");
    if (size == 0) return fuzz::require(length == 0, "a path in no room");
    fuzz::requireSame(whole.substr(0, size - 1), buffer.data(), "another path");
    fuzz::require(length == std::strlen(buffer.data()), "another length of a path");
}

void requireSteps(XML_DOM_Node *context, const std::string &path, const XML_DOM_Node *expected) {
    if (path.size() > kMostPath) return;
    std::vector<char> copy(path.c_str(), path.c_str() + path.size() + 1);
    DOM_XPath_Cursor cursor{};
    cursor.rest = copy.data();
    const XML_DOM_Node *node = context;
    while (node && DOM_XPath_ParseNextXPathContext(&cursor) == 1) {
        node = DOM_XPath_GetNodeFromContext(node, &cursor);
    }
    fuzz::requireOr(node == expected, "steps lead elsewhere than the path", [&] { return path; });
    fuzz::requireSame(path, copy.data(), "the path was changed");
}

void requireNumbers(const XML_DOM_Node *context, const std::string &path, const char *value) {
    long long expected = -77, got = -77;
    const bool number = value && std::sscanf(value, "%lld", &expected) == 1;
    fuzz::require(
        (XML_DOM_GetSelectSingleNodeAsInt64(context, path.c_str(), &got) == XML_OK) == number &&
            got == expected,
        "another number");
    unsigned long long expectedUnsigned = 77, gotUnsigned = 77;
    const bool isUnsigned = value && std::sscanf(value, "%llu", &expectedUnsigned) == 1;
    fuzz::require((XML_DOM_GetSelectSingleNodeAsUInt64(context, path.c_str(), &gotUnsigned) ==
                   XML_OK) == isUnsigned &&
                      gotUnsigned == expectedUnsigned,
                  "another unsigned number");
}

void requireSelection(XML_DOM_Node *context, const std::string &path) {
    const XML_DOM_Node *expected = selectSlowly(context, path);
    const XML_DOM_Node *found = XML_DOM_SelectSingleNode(context, path.c_str());
    fuzz::requireOr(found == expected, "another node is selected", [&] { return path; });
    requireSteps(context, path, expected);
    const char *value = nullptr;
    for (const XML_DOM_Node *child = XML_DOM_GetFirstChild(found); child && !value;
         child = XML_DOM_GetNextSibling(child)) {
        if (XML_DOM_GetNodeType(child) == XML_DOM_NODE_TEXT) value = XML_DOM_GetNodeValue(child);
    }
    fuzz::require(XML_DOM_GetSelectSingleNodeText(context, path.c_str()) == value, "another text");
    requireNumbers(context, path, value);
}

struct Scan {
    Nodes seen;
    std::size_t most;
};

uint32_t visit(XML_DOM_Node *node, void *userData, uint32_t) {
    Scan &scan = *static_cast<Scan *>(userData);
    scan.seen.push_back(node);
    return scan.seen.size() == scan.most ? 7 : 0;
}

void requireScan(XML_DOM_Node *node, std::size_t most) {
    Nodes expected;
    for (XML_DOM_Node *one = node; one; one = XML_DOM_GetNextSibling(one)) collect(one, &expected);
    Scan scan{{}, most};
    const std::uint32_t result = XML_DOM_ScanTree(node, visit, &scan);
    const bool ended = most != 0 && most <= expected.size();
    fuzz::require(result == (ended ? XML_REFUSED : XML_OK), "another end of a scan");
    if (ended) expected.resize(most);
    fuzz::require(scan.seen == expected, "another order of a scan");
}

// Steps that lead to a node from above it, with what the input makes of them.
std::string somePath(fuzz::FuzzInput &input, const XML_DOM_Node *node) {
    const unsigned kind = input.byte() % 8;
    if (kind == 0) return std::string(input.string());
    std::string path;
    for (const XML_DOM_Node *up = node; up && XML_DOM_GetNodeParent(up);
         up = XML_DOM_GetNodeParent(up)) {
        path = text(XML_DOM_GetNodeName(up)) + (path.empty() ? "" : "/" + path);
    }
    if (kind == 1) path = '/' + text(XML_DOM_GetNodeName(XML_DOM_GetRoot(node))) + '/' + path;
    if (kind == 2 && !path.empty()) {
        path.insert(input.below(path.size()), 1, static_cast<char>(1 + input.byte() % 255));
    }
    if (kind == 3) path += std::string(200 + input.byte() * 4, 'a');
    if (kind == 4) path = std::string(input.string()) + path;
    if (kind == 5) path.resize(input.below(path.size() + 1));
    return path;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    fuzz::holdConverters();
    fuzz::FuzzInput input(data, size);
    const std::string document(input.string());
    const support::NodePtr root(XML_DOM_BuildTreeByMem(
        document.data(), static_cast<std::uint32_t>(document.size()), 0, nullptr));
    if (!root) return 0;
    Nodes nodes;
    collect(root.get(), &nodes);
    for (int i = 0; i < 40 && (i == 0 || !input.empty()); ++i) {
        XML_DOM_Node *node = nodes[input.below(nodes.size())];
        XML_DOM_Node *context = input.flag() ? root.get() : nodes[input.below(nodes.size())];
        requireSelection(context, somePath(input, node));
        requirePath(node, input.below(600));
        requireScan(node, input.byte() % 16);
    }
    return 0;
}
