#include "failure.h"

#include <cstring>

namespace tool {

Failure systemFailure(const std::string &name, int error) {
    return {kTrouble, name + ": " + std::strerror(error)};
}

}  // namespace tool
