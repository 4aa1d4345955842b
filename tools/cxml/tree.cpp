#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "commands.h"
#include "document.h"
#include "failure.h"
#include "output.h"
#include "summary.h"
#include "text.h"
#include "trail.h"
#include "walk.h"

namespace tool {
namespace {

constexpr std::size_t kIndent = 2;            // blanks for each level
constexpr std::size_t kIndentedLevels = 32;   // deeper ones are indented like the last of them
constexpr std::size_t kPathColumn = 48;       // of a longer line the path follows behind two blanks
constexpr std::string_view kHidden = " ...";  // there are elements below that are not shown

bool hasElements(const XML_DOM_Node *node) {
    const XML_DOM_Node *child = XML_DOM_GetFirstChild(node);
    while (child && XML_DOM_GetNodeType(child) != XML_DOM_NODE_ELEMENT) {
        child = XML_DOM_GetNextSibling(child);
    }
    return child != nullptr;
}

// Writes a line for each element: what it is, indented, and its path.
class Outline {
  public:
    Outline(Output &output, std::optional<std::size_t> levels) : output_(output), levels_(levels) {}

    bool enter(const XML_DOM_Node *node, std::size_t depth) {
        if (XML_DOM_GetNodeType(node) != XML_DOM_NODE_ELEMENT) return false;
        trail_.enter(node, depth == 0 ? 0 : positions_.back().next(node));
        positions_.emplace_back();
        const bool down = !levels_ || depth + 1 < *levels_;
        std::string line(kIndent * std::min(depth, kIndentedLevels), ' ');
        line += summaryOf(node);
        if (!down && hasElements(node)) line += kHidden;
        const std::size_t width = displayWidth(line);
        line.append(std::max(kPathColumn, width + kIndent) - width, ' ');
        output_.write(line + trail_.shown() + "\n");
        return down;
    }

    void leave(const XML_DOM_Node *node, std::size_t) {
        if (XML_DOM_GetNodeType(node) != XML_DOM_NODE_ELEMENT) return;
        positions_.pop_back();
        trail_.leave();
    }

  private:
    Output &output_;
    std::optional<std::size_t> levels_;
    Trail trail_;
    std::vector<Positions> positions_;  // of the children of each open element
};

}  // namespace

int runTree(const TreeOptions &options) {
    const Tree root = loadDocument(options.file, kRefused);
    Output output("");
    walk(root.get(), Outline(output, options.depth));
    output.commit();
    return kSuccess;
}

}  // namespace tool
