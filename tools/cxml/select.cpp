#include <cstdint>
#include <cstdio>
#include <new>
#include <string>
#include <vector>

#include "commands.h"
#include "copy.h"
#include "document.h"
#include "failure.h"
#include "output.h"
#include "path.h"
#include "summary.h"
#include "text.h"
#include "writer.h"

namespace tool {
namespace {

// Reads the text of an element as the library reads the integer that a path selects, from a document
// that holds this text alone: not every element that people select has a path which the library
// knows.
template <class Number>
std::string readNumber(const XML_DOM_Node *node,
                       std::uint32_t (*read)(const XML_DOM_Node *, const char *, Number *)) {
    const char *text = XML_DOM_GetFirstTextChildValue(node);
    if (!text) return "";
    const Tree holder{XML_DOM_CreateElementWithText("number", text)};
    if (XML_DOM_SetRoot(holder.get()) != XML_OK) throw std::bad_alloc();
    Number number{};
    return read(holder.get(), "/", &number) == XML_OK ? std::to_string(number) : "";
}

class Selection {
  public:
    explicit Selection(const SelectOptions &options)
        : show_(options.show),
          name_(options.file == "-" ? "standard input" : options.file),
          output_("") {}

    // Shows what a path selects, or tells that it selects nothing.
    void show(const std::string &path, const XML_DOM_Node *node) {
        if (!node) {
            complain("no element " + path);
        } else if (show_ == Show::kText) {
            writeLine(toUtf8(textOf(node)));
        } else if (show_ == Show::kPath) {
            writeLine(pathOf(node));
        } else if (show_ == Show::kXml) {
            const Tree copy = copyDetached(node, nullptr);
            if (XML_DOM_SetRoot(copy.get()) != XML_OK) throw std::bad_alloc();
            writeTree(copy.get(), {.declaration = false}, name_, output_);
            output_.write("\n");
        } else if (show_ != Show::kExists) {
            showNumber(path, node);
        }
    }

    int finish() {
        output_.commit();
        return status_;
    }

  private:
    void showNumber(const std::string &path, const XML_DOM_Node *node) {
        const std::string number = show_ == Show::kInt
                                       ? readNumber(node, XML_DOM_GetSelectSingleNodeAsInt64)
                                       : readNumber(node, XML_DOM_GetSelectSingleNodeAsUInt64);
        if (number.empty()) {
            complain(path + " is no integer");
        } else {
            writeLine(number);
        }
    }

    void writeLine(const std::string &text) {
        output_.write(text);
        output_.write("\n");
    }

    void complain(const std::string &what) {
        status_ = kRefused;
        if (show_ == Show::kExists) return;
        std::fprintf(stderr, "cxml: %s\n", printable(name_ + ": " + what).c_str());
    }

    Show show_;
    std::string name_;
    Output output_;
    int status_ = kSuccess;
};

}  // namespace

int runSelect(const SelectOptions &options) {
    const Tree root = loadDocument(options.file, kRefused);
    // All before the first is shown: what is no path at all ends the command.
    std::vector<const XML_DOM_Node *> nodes;
    for (const std::string &path : options.paths) nodes.push_back(findNode(root.get(), path));
    Selection selection(options);
    for (std::size_t i = 0; i < nodes.size(); ++i) selection.show(options.paths[i], nodes[i]);
    return selection.finish();
}

}  // namespace tool
