#include "path.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include "failure.h"
#include "text.h"

namespace tool {
namespace {

// What XML_DOM_SelectSingleNode reads of a path and of a step, in bytes.
constexpr std::size_t kLibraryPath = 1023;
constexpr std::size_t kLibraryStep = sizeof(DOM_XPath_Cursor::step) - 1;

struct Step {
    bool root = false;  // stands behind a slash of its own
    std::string name;   // in GB18030
    std::size_t position = 1;
};

[[noreturn]] void refuse(std::string_view path) {
    throw Failure(kTrouble, "'" + std::string(path) + "' is no path");
}

// Reads "[n]"; a number that no position reaches becomes the greatest one.
std::size_t readPosition(std::string_view brackets, std::string_view path) {
    if (brackets.size() < 3 || brackets.back() != ']') refuse(path);
    constexpr std::size_t kMost = std::numeric_limits<std::size_t>::max();
    std::size_t position = 0;
    for (const char c : brackets.substr(1, brackets.size() - 2)) {
        if (c < '0' || c > '9') refuse(path);
        const auto digit = static_cast<std::size_t>(c - '0');
        position = position > (kMost - digit) / 10 ? kMost : position * 10 + digit;
    }
    if (position == 0) refuse(path);
    return position;
}

// Divides a path into steps, in UTF-8: in GB18030 the bytes of brackets are also parts of
// characters. With positions an empty step cannot be meant.
std::vector<Step> readSteps(std::string_view path, bool positions) {
    std::vector<Step> steps;
    std::string_view rest = path;
    for (bool more = true; more;) {
        Step step;
        step.root = rest.starts_with('/');
        if (step.root) rest.remove_prefix(1);
        const std::size_t slash = rest.find('/');
        const std::string_view text = rest.substr(0, slash);
        more = slash != std::string_view::npos;
        if (more) rest.remove_prefix(slash + 1);
        const std::size_t bracket = text.find('[');
        step.name = toTree(text.substr(0, bracket), "the path");
        if (bracket != std::string_view::npos) {
            step.position = readPosition(text.substr(bracket), path);
        }
        if (positions && (step.name.empty() || (step.root && !steps.empty()))) refuse(path);
        steps.push_back(std::move(step));
    }
    return steps;
}

bool isNamed(const XML_DOM_Node *node, const std::string &name) {
    const char *own = XML_DOM_GetNodeName(node);
    return own && name == own;
}

// Applies a step as DOM_XPath_GetNodeFromContext does, and its position.
XML_DOM_Node *applyStep(XML_DOM_Node *root, XML_DOM_Node *node, const Step &step) {
    if (step.root) {
        const bool atRoot = isNamed(node, XML_DOM_GetNodeName(root)) &&
                            (step.name.empty() || isNamed(root, step.name));
        return atRoot && step.position == 1 ? root : nullptr;
    }
    if (step.name.empty()) return nullptr;
    std::size_t left = step.position;
    XML_DOM_Node *child = XML_DOM_GetFirstChild(node);
    while (child && !(isNamed(child, step.name) && --left == 0)) {
        child = XML_DOM_GetNextSibling(child);
    }
    return child;
}

bool isCutByLibrary(const std::string &treePath) {
    if (treePath.size() > kLibraryPath) return true;
    for (std::size_t at = 0; at < treePath.size();) {
        const std::size_t slash = std::min(treePath.find('/', at), treePath.size());
        if (slash - at > kLibraryStep) return true;
        at = slash + 1;
    }
    return false;
}

}  // namespace

XML_DOM_Node *findNode(XML_DOM_Node *root, std::string_view path) {
    if (path.empty()) throw Failure(kTrouble, "an empty path selects nothing");
    const bool positions = path.find('[') != std::string_view::npos;
    if (!positions) {
        const std::string treePath = toTree(path, "the path");
        if (!isCutByLibrary(treePath)) return XML_DOM_SelectSingleNode(root, treePath.c_str());
    }
    XML_DOM_Node *node = root;
    for (const Step &step : readSteps(path, positions)) {
        node = applyStep(root, node, step);
        if (!node) break;
    }
    return node;
}

XML_DOM_Node *requireNode(XML_DOM_Node *root, std::string_view path, const std::string &fileName) {
    XML_DOM_Node *node = findNode(root, path);
    if (!node) throw Failure(kRefused, fileName + ": no element " + std::string(path));
    return node;
}

std::string pathOf(const XML_DOM_Node *node) {
    // Room for any position of each step, so that the library neither cuts nor is asked twice.
    std::size_t room = 2;
    for (const XML_DOM_Node *n = node; n; n = XML_DOM_GetNodeParent(n)) {
        const char *name = XML_DOM_GetNodeName(n);
        if (name) room += std::strlen(name) + std::strlen("/[4294967295]");
    }
    room = std::min<std::size_t>(room, std::numeric_limits<std::uint32_t>::max());
    std::string path(room, '\0');
    path.resize(XML_DOM_GetXPath(node, static_cast<std::uint32_t>(room), path.data()));
    return printable(toUtf8(path));
}

std::string qualifiedName(const XML_DOM_Node *element) {
    // Not XML_DOM_GetNodeNameSpace, which for a name without a prefix climbs to the root.
    const char *prefix = element->ns ? element->ns->prefix : nullptr;
    const char *name = XML_DOM_GetNodeName(element);
    if (!prefix || *prefix == '\0') return printable(toUtf8(name));
    return printable(toUtf8(prefix)) + ":" + printable(toUtf8(name));
}

}  // namespace tool
