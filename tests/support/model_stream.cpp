#include "tests/support/model_stream.h"

#include <cerrno>

#include "compactxml.h"
#include "tests/support/reference_iconv.h"

namespace support {
namespace {

// No encoding known here needs more bytes than this in front of the one that completes a character.
constexpr std::size_t kLongestTail = 3;

// One iconv call into a fresh chunk.
struct Step {
    Step(iconv_t converter, std::string_view bytes) {
        // Read where it stands, as the stream does: some machines' UCS-4 converters of glibc let
        // 80 xx xx xx pass where it is not aligned for words, and refuse it where it is.
        char *in = const_cast<char *>(bytes.data());
        char *out = chunk;
        std::size_t room = sizeof chunk;
        left = bytes.size();
        const bool failed = iconv(converter, &in, &left, &out, &room) == std::size_t(-1);
        error = failed ? errno : 0;
        produced = std::string_view(chunk, sizeof chunk - room);
    }
    Step(const Step &) = delete;
    Step &operator=(const Step &) = delete;

    char chunk[256];
    std::string_view produced;
    std::size_t left = 0;
    int error = 0;
};

}  // namespace

ModelStream::ModelStream(std::uint32_t sourceEncoding, std::uint32_t targetEncoding) {
    if (sourceEncoding == targetEncoding) return;
    const char *from = encodingName(sourceEncoding);
    const char *to = encodingName(targetEncoding);
    if (from && to) converter_ = iconv_open(to, from);
    open_ = converter_ != iconv_t(-1);
}

ModelStream::~ModelStream() {
    if (converter_ != iconv_t(-1)) iconv_close(converter_);
}

std::uint32_t ModelStream::append(std::string_view bytes, bool safe) {
    if (bytes.empty()) return XML_OK;
    if (!pending_.empty()) {
        if (const std::uint32_t result = flushPending(&bytes); result != XML_OK) return result;
        if (bytes.empty()) return XML_OK;
    }
    return convert(bytes, safe);
}

std::string ModelStream::detach() {
    capacity_ = 0;
    std::string taken;
    taken.swap(content_);
    return taken;
}

std::uint32_t ModelStream::convert(std::string_view bytes, bool safe) {
    if (converter_ == iconv_t(-1)) {
        sink(bytes);
        return XML_OK;
    }
    for (;;) {
        const Step step(converter_, bytes);
        const std::string_view tail = bytes.substr(bytes.size() - step.left);
        if (step.error == EINVAL && tail.size() > kLongestTail) return XML_REFUSED;
        if (step.error != 0 && step.error != E2BIG && step.error != EINVAL) return XML_REFUSED;
        sink(step.produced);
        if (step.error == EINVAL) pending_ = safe ? std::string(tail.size(), '?') : tail;
        if (step.error != E2BIG) return XML_OK;
        bytes = tail;
    }
}

std::uint32_t ModelStream::flushPending(std::string_view *bytes) {
    std::size_t take = bytes->size();
    if (pending_.size() + take >= 4) take = 4 - pending_.size();
    const std::string joined = pending_ + std::string(bytes->substr(0, take));
    const Step step(converter_, joined);
    std::size_t used = take;
    if (step.error == EINVAL && take == bytes->size()) {
        if (step.left > kLongestTail) return XML_REFUSED;
        pending_ = joined.substr(joined.size() - step.left);
    } else if (step.error == EINVAL) {
        if (step.left > take) return XML_REFUSED;
        used = take - step.left;
        pending_.clear();
    } else if (step.error != 0) {
        return XML_REFUSED;
    } else {
        pending_.clear();
    }
    sink(step.produced);
    bytes->remove_prefix(used);
    return XML_OK;
}

void ModelStream::sink(std::string_view bytes) {
    if (bytes.empty()) return;
    chunks_.push_back(bytes.size());
    const std::uint64_t need = content_.size() + 1 + bytes.size();
    if (capacity_ < need) capacity_ = static_cast<std::uint32_t>((need & ~0x3FFull) + 0x400);
    content_ += bytes;
}

}  // namespace support
