#include "io/converter.h"

#include <iconv.h>

#include <cerrno>

#include "dom/encoding.h"

namespace cxml {

void *openConverter(std::uint32_t source, std::uint32_t target) noexcept {
    const char *from = XML_DOM_EncodingEnumToStr(source);
    const char *to = XML_DOM_EncodingEnumToStr(target);
    if (!from || !to) return kNoConverter;
    return static_cast<void *>(iconv_open(to, from));
}

void closeConverter(void *converter) noexcept {
    if (converter != kNoConverter) iconv_close(static_cast<iconv_t>(converter));
}

ConvertResult convert(void *converter, ConvertSpan *span) noexcept {
    // iconv takes its input as char ** although it never writes there.
    auto *input = const_cast<char *>(span->input);
    const std::size_t result = iconv(static_cast<iconv_t>(converter), &input, &span->inputLeft,
                                     &span->output, &span->outputLeft);
    span->input = input;
    if (result != static_cast<std::size_t>(-1)) return ConvertResult::kDone;
    if (errno == E2BIG) return ConvertResult::kOutputFull;
    if (errno == EINVAL) return ConvertResult::kInputIncomplete;
    return ConvertResult::kInvalid;
}

bool takesWholeTexts(std::uint32_t source, std::uint32_t target) noexcept {
    const auto isEither = [](std::uint32_t encoding) {
        return encoding == XML_ENCODING_GB2312 || encoding == XML_ENCODING_GBK;
    };
    return isEither(source) && isEither(target);
}

void resetConverter(void *converter) noexcept {
    iconv(static_cast<iconv_t>(converter), nullptr, nullptr, nullptr, nullptr);
}

}  // namespace cxml
