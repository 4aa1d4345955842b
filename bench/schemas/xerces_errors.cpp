#include "xerces_errors.h"

#include <xercesc/util/PlatformUtils.hpp>

namespace bench {

void startXerces() {
    static const bool started = (xercesc::XMLPlatformUtils::Initialize(), true);
    static_cast<void>(started);
}

}  // namespace bench
