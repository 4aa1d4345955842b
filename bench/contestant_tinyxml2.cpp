// TinyXML-2 with its default options.
#include <tinyxml2.h>

#include <cstring>
#include <memory>

#include "contestant.h"

namespace bench {
namespace {

void *build(std::span<char> document, Encoding) {
    auto tree = std::make_unique<tinyxml2::XMLDocument>();
    if (tree->Parse(document.data(), document.size()) != tinyxml2::XML_SUCCESS) return nullptr;
    return tree.release();
}

void destroy(void *tree) {
    delete static_cast<tinyxml2::XMLDocument *>(tree);
}

class Counter : public tinyxml2::XMLVisitor {
  public:
    explicit Counter(Tally &tally) : tally_(tally) {}

    bool VisitEnter(const tinyxml2::XMLElement &element,
                    const tinyxml2::XMLAttribute *attribute) override {
        tally_.element(element.Name(), ':');
        for (; attribute; attribute = attribute->Next()) {
            // To TinyXML-2 a namespace declaration is an attribute like any other.
            if (std::strncmp(attribute->Name(), "xmlns", 5) == 0) continue;
            tally_.attribute(attribute->Name(), attribute->Value(), ':');
        }
        return true;
    }
    bool VisitEnter(const tinyxml2::XMLDocument &) override { return true; }
    bool Visit(const tinyxml2::XMLText &text) override {
        tally_.text(text.Value(), std::strlen(text.Value()));
        return true;
    }

  private:
    Tally &tally_;
};

void count(const void *tree, Tally &tally) {
    Counter counter(tally);
    static_cast<const tinyxml2::XMLDocument *>(tree)->Accept(&counter);
}

std::size_t serialize(const void *tree, Encoding, std::string *copy) {
    tinyxml2::XMLPrinter printer(nullptr, /* compact */ true);
    static_cast<const tinyxml2::XMLDocument *>(tree)->Print(&printer);
    const auto length = static_cast<std::size_t>(printer.CStrSize()) - 1;
    if (copy) copy->assign(printer.CStr(), length);
    return length;
}

}  // namespace

const Contestant kTinyXml2 = {
    .name = "tinyxml2",
    .version = "TinyXML-2 " BENCH_TEXT(TINYXML2_MAJOR_VERSION) "." BENCH_TEXT(
        TINYXML2_MINOR_VERSION) "." BENCH_TEXT(TINYXML2_PATCH_VERSION),
    .build = build,
    .destroy = destroy,
    .count = count,
    .serialize = serialize,
};

}  // namespace bench
