#include "libxml2_schema.h"
#include "loader.h"

namespace bench {
namespace {

bool load(const std::string &file) {
    const Libxml2Schema schema(file.c_str());
    return schema.context() != nullptr;
}

}  // namespace

const Loader kLibxml2Loader = {"libxml2", load};

}  // namespace bench
