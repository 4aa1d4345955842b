// io/output_stream.h - output streams as the library's own callers use them.
#pragma once

#include <memory>

#include "compactxml.h"

namespace cxml {

struct DestroyOutStream {
    void operator()(XML_IO_OutStream *stream) const noexcept { XML_IO_OutStreamDestroy(stream); }
};
using OutStreamOwner = std::unique_ptr<XML_IO_OutStream, DestroyOutStream>;

}  // namespace cxml
