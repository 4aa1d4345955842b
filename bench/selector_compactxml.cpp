// This library's paths, which are read anew for each selection.
#include "compactxml.h"
#include "selector.h"

namespace bench {
namespace {

class PathSelection : public Selection {
  public:
    PathSelection(const Document &document, const Route &route)
        : root_(XML_DOM_BuildTreeByMem(document.bytes.data(),
                                       static_cast<std::uint32_t>(document.bytes.size()), 0,
                                       nullptr)),
          path_(route.names) {}
    ~PathSelection() override { XML_DOM_DelNode(root_); }

    const char *text() override { return XML_DOM_GetSelectSingleNodeText(root_, path_.c_str()); }

  private:
    XML_DOM_Node *root_;
    std::string path_;
};

std::unique_ptr<Selection> select(const Document &document, const Route &route) {
    return std::make_unique<PathSelection>(document, route);
}

}  // namespace

const Selector kCompactXmlSelector = {.name = "compactxml", .select = select};

}  // namespace bench
