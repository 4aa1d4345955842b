// Runs a fuzz target over files, and over all files of directories, as libFuzzer would.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/support/target.h"

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesOf(const fs::path &path) {
    std::vector<fs::path> files;
    if (fs::is_directory(path)) {
        for (const fs::directory_entry &entry : fs::directory_iterator(path)) {
            if (entry.is_regular_file()) files.push_back(entry.path());
        }
        std::sort(files.begin(), files.end());
    } else if (fs::exists(path)) {
        files.push_back(path);
    }
    return files;
}

void run(const fs::path &path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    // A block of its own of exactly this size, so that a sanitizer sees a read beyond it.
    const std::vector<std::uint8_t> block(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(block.data(), block.size());
}

}  // namespace

int main(int count, char **arguments) {
    std::size_t files = 0;
    for (int i = 1; i < count; ++i) {
        for (const fs::path &path : filesOf(arguments[i])) {
            // Written before it is run, so that a crash tells the file.
            std::printf("%s\n", path.c_str());
            std::fflush(stdout);
            run(path);
            ++files;
        }
    }
    std::printf("%zu files\n", files);
    return files == 0;
}
