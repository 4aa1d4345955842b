#include "selector.h"

namespace bench {

std::string asXPath(const std::string &route) {
    std::string xpath;
    for (const char c : route) {
        if (c == '/') xpath += "[1]";
        xpath += c;
    }
    return xpath + "[1]";
}

}  // namespace bench
