#include "xsd2c/xsd/schema_file.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <limits>
#include <memory>
#include <string_view>
#include <system_error>

namespace xsd2c {
namespace {

struct CloseFile {
    void operator()(std::FILE *file) const noexcept { std::fclose(file); }
};

bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool isSchemeChar(char c) {
    return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
}

// "http" of "http://example.com/a.xsd"; "" if a location has no scheme.
std::string_view schemeOf(std::string_view location) {
    std::size_t length = 0;
    while (length < location.size() && isSchemeChar(location[length])) ++length;
    const bool scheme = length > 0 && isLetter(location.front()) && length < location.size() &&
                        location[length] == ':';
    return scheme ? location.substr(0, length) : std::string_view();
}

}  // namespace

std::optional<std::string> readFile(const std::string &path, std::string &reason) {
    const std::unique_ptr<std::FILE, CloseFile> file{std::fopen(path.c_str(), "rb")};
    if (!file) {
        reason = std::strerror(errno);
        return std::nullopt;
    }
    std::string bytes;
    char piece[65536];
    std::size_t got;
    while ((got = std::fread(piece, 1, sizeof piece, file.get())) > 0) {
        bytes.append(piece, got);
        // The library counts in 32 bits.
        if (bytes.size() > std::numeric_limits<std::int32_t>::max()) {
            reason = std::strerror(EFBIG);
            return std::nullopt;
        }
    }
    if (std::ferror(file.get())) {
        reason = std::strerror(errno);
        return std::nullopt;
    }
    return bytes;
}

std::string fileIdentity(const std::string &path) {
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(path, error);
    return error ? path : real.string();
}

std::optional<std::string> pathOfLocation(const std::string &location,
                                          const std::string &document) {
    constexpr std::string_view kFileUrl = "file:///";
    if (location.compare(0, kFileUrl.size(), kFileUrl) == 0) {
        return location.substr(kFileUrl.size() - 1);
    }
    if (!schemeOf(location).empty()) return std::nullopt;
    const std::size_t slash = document.rfind('/');
    if (slash == std::string::npos || location.compare(0, 1, "/") == 0) return location;
    return document.substr(0, slash + 1) + location;
}

}  // namespace xsd2c
