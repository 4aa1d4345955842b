#include <cstdio>
#include <new>
#include <string>

#include "commands.h"
#include "compactxml.h"
#include "document.h"
#include "failure.h"
#include "output.h"
#include "schemas.h"
#include "text.h"

namespace tool {
namespace {

enum class Verdict { kValid, kInvalid, kNotRead };

std::string pathOf(const XML_DOM_Node *node) {
    char path[512] = "";
    XML_DOM_GetXPath(node, sizeof path, path);
    return toUtf8(path);
}

// "FILE: PATH: MESSAGE", with the path of what the message speaks of.
void report(const std::string &name, const XML_DOM_Node *root, const SchemaErrorInfo &error) {
    char message[2048] = "";
    Schema_GetErrorDesc(&error, sizeof message, message);
    const std::string line = (name == "-" ? "standard input" : name) + ": " +
                             pathOf(error.node ? error.node : root) + ": " + toUtf8(message);
    std::fputs((printable(line) + "\n").c_str(), stderr);
}

Verdict validateFile(const std::string &name, const Schemas &schemas) {
    const Tree tree = loadDocument(name, kRefused);
    SchemaErrorInfo error{};
    if (Schema_ValidateXml(tree.get(), &schemas.root(), &error) != XML_OK) throw std::bad_alloc();
    if (error.code == 0) return Verdict::kValid;
    report(name, tree.get(), error);
    return Verdict::kInvalid;
}

// One file that cannot be read does not keep the others from being validated.
Verdict tryFile(const std::string &name, const Schemas &schemas) {
    try {
        return validateFile(name, schemas);
    } catch (const Failure &failure) {
        if (failure.status() == kRefused) return Verdict::kInvalid;
        const std::string line = "cxml: " + printable(failure.what()) + "\n";
        std::fputs(line.c_str(), stderr);
        return Verdict::kNotRead;
    }
}

}  // namespace

int runValidate(const ValidateOptions &options) {
    Schemas schemas;
    for (const std::string &path : options.schemas) schemas.addDocument(path);
    for (const std::string &path : options.plugins) schemas.addPlugin(path);
    std::size_t valid = 0, invalid = 0, notRead = 0;
    for (const std::string &name : options.files) {
        switch (tryFile(name, schemas)) {
            case Verdict::kValid:
                ++valid;
                break;
            case Verdict::kInvalid:
                ++invalid;
                break;
            case Verdict::kNotRead:
                ++notRead;
                break;
        }
    }
    const std::size_t files = options.files.size();
    if (files > 1) {
        Output output("");
        output.write(std::to_string(files) + " files, " + std::to_string(valid) + " valid, " +
                     std::to_string(invalid) + " invalid");
        if (notRead != 0) output.write(", " + std::to_string(notRead) + " not read");
        output.write("\n");
        output.commit();
    }
    if (notRead != 0) return kTrouble;
    return invalid != 0 ? kRefused : kSuccess;
}

}  // namespace tool
