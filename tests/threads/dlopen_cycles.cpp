// dlopen_cycles LIBRARY KILOBYTES: loads the library, uses it and unloads it 1,000 times. What the process
// holds of memory must not grow by more than so much, and what it holds of open files not at all.
#include <dirent.h>
#include <dlfcn.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "compactxml.h"
#include "tests/schema/feature_schema.h"

namespace {

constexpr int kCycles = 1000;
constexpr int kWarmUp = 100;  // what the C library keeps once it has it

const char kDocument[] =
    "<?xml version='1.0' encoding='UTF-8'?><features xmlns='urn:features' xmlns:o='urn:other'>"
    "<value unit='pps'>-5</value><small>7</small><o:one>\xE4\xB8\xAD\xF0\x9F\x98\x80</o:one>"
    "</features>";

// The functions in use, found by their names.
class Library {
  public:
    explicit Library(const char *path) : handle_(::dlopen(path, RTLD_NOW | RTLD_LOCAL)) {}
    ~Library() {
        if (handle_) ::dlclose(handle_);
    }
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;

    bool loaded() const { return handle_; }

    template <typename Function>
    Function find(const char *name) const {
        auto function = reinterpret_cast<Function>(::dlsym(handle_, name));
        if (!function) std::abort();
        return function;
    }

  private:
    void *handle_;
};

// Takes the type of a function, not the function: the program is linked without the library.
#define FIND(library, function) library.find<decltype(&function)>(#function)

// Whether a document is parsed, built, valid and written.
bool use(const Library &library) {
    constexpr auto kLength = static_cast<std::uint32_t>(sizeof kDocument - 1);
    if (FIND(library, XML_Parser_ByMem)(kDocument, kLength, nullptr) != XML_OK) return false;
    XML_DOM_Node *root = FIND(library, XML_DOM_BuildTreeByMem)(kDocument, kLength, 0, nullptr);
    if (!root) return false;

    SchemaRoot schemas;
    FIND(library, Schema_InitRoot)(&schemas);
    bool good = true;
    for (std::uint32_t i = 0; i < featureSchemaCount; ++i) {
        good = FIND(library, Schema_RegTopObject)(&schemas, &featureSchema[i]) == XML_OK && good;
    }
    SchemaErrorInfo error;
    good = FIND(library, Schema_ValidateXml)(root, &schemas, &error) == XML_OK && good;
    good = error.code == 0 && good;
    for (std::uint32_t i = 0; i < featureSchemaCount; ++i) {
        FIND(library, Schema_DeregTopObject)(&schemas, &featureSchema[i]);
    }
    FIND(library, Schema_ExitRoot)(&schemas);

    FIND(library, XML_DOM_SetEncoding)(root, XML_ENCODING_UTF_16LE);
    char *text = nullptr;
    std::uint32_t length = 0;
    good = FIND(library, XML_DOM_TranslateStr)(root, 0, &text, &length) == XML_OK && good;
    std::free(text);
    FIND(library, XML_DOM_DelNode)(root);
    return good && length != 0;
}

bool cycle(const char *path) {
    const Library library(path);
    return library.loaded() && use(library);
}

bool isLoaded(const char *path) {
    void *handle = ::dlopen(path, RTLD_NOW | RTLD_NOLOAD);
    if (handle) ::dlclose(handle);
    return handle;
}

// Both in /proc, as of Linux; -1 where there is none.
long residentKilobytes() {
    long size = 0, resident = -1;
    if (std::FILE *file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &size, &resident) != 2) resident = -1;
        std::fclose(file);
    }
    return resident < 0 ? -1 : resident * (::sysconf(_SC_PAGESIZE) / 1024);
}

int openFiles() {
    DIR *directory = ::opendir("/proc/self/fd");
    if (!directory) return -1;
    int count = 0;
    while (::readdir(directory)) ++count;
    ::closedir(directory);
    return count;
}

}  // namespace

int main(int count, char **arguments) {
    if (count != 3) return 2;
    const char *path = arguments[1];
    const long allowedKilobytes = std::atol(arguments[2]);
    long kilobytes = 0;
    int files = 0;
    for (int i = 0; i < kCycles; ++i) {
        if (i == kWarmUp) {
            kilobytes = residentKilobytes();
            files = openFiles();
        }
        if (!cycle(path)) {
            std::fprintf(stderr, "dlopen_cycles: failed in cycle %d\n", i);
            return 1;
        }
    }
    const long more = residentKilobytes() - kilobytes;
    const int moreFiles = openFiles() - files;
    std::printf("%d cycles, still loaded: %d; behind the first %d: %ld kB and %d files more\n",
                kCycles, isLoaded(path), kWarmUp, more, moreFiles);
    return more <= allowedKilobytes && moreFiles == 0 ? 0 : 1;
}
