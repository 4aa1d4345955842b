// tools/cxml/trail.h - the path of where a walk stands, without a climb at each node.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "text.h"

namespace tool {

// Counts children by their names: the position of each in the path of XML_DOM_GetXPath. Not a hash
// table, for which documents can be made that are slow.
class Positions {
  public:
    std::size_t next(const XML_DOM_Node *element) {
        return ++counts_[XML_DOM_GetNodeName(element)];
    }

  private:
    std::map<std::string_view, std::size_t> counts_;
};

// The steps from the root to a node.
class Trail {
  public:
    // Of a path that is longer only the last step is shown: with all of it at each node, the output
    // for a document would be the longer the deeper it is.
    static constexpr std::size_t kShownBytes = 1000;

    // The position of the root is 0: it has none.
    void enter(const XML_DOM_Node *element, std::size_t position) {
        starts_.push_back(path_.size());
        path_ += "/" + printable(toUtf8(XML_DOM_GetNodeName(element)));
        if (position != 0) path_ += "[" + std::to_string(position) + "]";
    }
    void leave() {
        path_.resize(starts_.back());
        starts_.pop_back();
    }
    std::string shown() const {
        return path_.size() <= kShownBytes ? path_ : "..." + path_.substr(starts_.back());
    }

  private:
    std::string path_;
    std::vector<std::size_t> starts_;
};

}  // namespace tool
