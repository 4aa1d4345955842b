// file.h - whole files as strings.
#pragma once
#include <fstream>
#include <iterator>
#include <string>

namespace messages {

// The bytes of a file; empty if it cannot be read.
inline std::string readFile(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace messages
