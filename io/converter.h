// io/converter.h - iconv descriptors by encoding number.
#pragma once

#include <cstddef>
#include <cstdint>

namespace cxml {

// What a record's converter field holds when no conversion runs.
inline void *const kNoConverter = reinterpret_cast<void *>(std::intptr_t{-1});

// How one call of the converter ended.
enum class ConvertResult { kDone, kOutputFull, kInputIncomplete, kInvalid };

// Input and output of one call, both moved along by it.
struct ConvertSpan {
    const char *input;
    std::size_t inputLeft;
    char *output;
    std::size_t outputLeft;
};

// A converter between two encodings; kNoConverter if one is unknown or iconv lacks the pair.
void *openConverter(std::uint32_t source, std::uint32_t target) noexcept;
void closeConverter(void *converter) noexcept;  // does nothing for kNoConverter
ConvertResult convert(void *converter, ConvertSpan *span) noexcept;

// Whether a text has to be converted in one call: between GB2312 and GBK glibc converts directly, and
// what comes out depends on where a call's input ends.
bool takesWholeTexts(std::uint32_t source, std::uint32_t target) noexcept;

// Back to the state of a fresh converter.
void resetConverter(void *converter) noexcept;

}  // namespace cxml
