#include "fuzz/support/converters.h"

#include <iconv.h>

#include <vector>

#include "tests/support/reference_iconv.h"

namespace fuzz {
namespace {

// Closed at the end of the program, so that a leak checker sees nothing of it.
class Converters {
  public:
    Converters() {
        for (std::uint32_t encoding = 0; encoding < support::kEncodingCount; ++encoding) {
            const char *name = support::encodingName(encoding);
            open("UCS-4", name);
            open(name, "UCS-4");
        }
    }
    ~Converters() {
        for (iconv_t converter : open_) iconv_close(converter);
    }
    Converters(const Converters &) = delete;
    Converters &operator=(const Converters &) = delete;

  private:
    void open(const char *to, const char *from) {
        const iconv_t converter = iconv_open(to, from);
        if (converter != iconv_t(-1)) open_.push_back(converter);
    }

    std::vector<iconv_t> open_;
};

}  // namespace

void holdConverters() {
    static const Converters held;
}

}  // namespace fuzz
