// pugixml with its default options, parsing a copy that it makes or the caller's buffer in place.
#include <cstring>
#include <memory>
#include <pugixml.hpp>

#include "contestant.h"

namespace bench {
namespace {

void *built(std::unique_ptr<pugi::xml_document> tree, const pugi::xml_parse_result &result) {
    return result ? tree.release() : nullptr;
}

pugi::xml_encoding pugiEncoding(Encoding encoding) {
    return encoding == Encoding::utf16le ? pugi::encoding_utf16_le : pugi::encoding_utf8;
}

void *buildCopying(std::span<char> document, Encoding encoding) {
    auto tree = std::make_unique<pugi::xml_document>();
    const pugi::xml_parse_result result = tree->load_buffer(
        document.data(), document.size(), pugi::parse_default, pugiEncoding(encoding));
    return built(std::move(tree), result);
}

void *buildInPlace(std::span<char> document, Encoding encoding) {
    auto tree = std::make_unique<pugi::xml_document>();
    const pugi::xml_parse_result result = tree->load_buffer_inplace(
        document.data(), document.size(), pugi::parse_default, pugiEncoding(encoding));
    return built(std::move(tree), result);
}

void destroy(void *tree) {
    delete static_cast<pugi::xml_document *>(tree);
}

class Counter : public pugi::xml_tree_walker {
  public:
    explicit Counter(Tally &tally) : tally_(tally) {}

    bool for_each(pugi::xml_node &node) override {
        switch (node.type()) {
            case pugi::node_element:
                tally_.element(node.name(), ':');
                for (const pugi::xml_attribute &attribute : node.attributes()) {
                    // To pugixml a namespace declaration is an attribute like any other.
                    if (std::strncmp(attribute.name(), "xmlns", 5) == 0) continue;
                    tally_.attribute(attribute.name(), attribute.value(), ':');
                }
                break;
            case pugi::node_pcdata:
            case pugi::node_cdata:
                tally_.text(node.value(), std::strlen(node.value()));
                break;
            default:
                break;
        }
        return true;
    }

  private:
    Tally &tally_;
};

void count(const void *tree, Tally &tally) {
    Counter counter(tally);
    pugi::xml_node(*static_cast<const pugi::xml_document *>(tree)).traverse(counter);
}

class StringWriter : public pugi::xml_writer {
  public:
    explicit StringWriter(std::string &out) : out_(out) {}
    void write(const void *data, std::size_t size) override {
        out_.append(static_cast<const char *>(data), size);
    }

  private:
    std::string &out_;
};

std::size_t serialize(const void *tree, Encoding encoding, std::string *copy) {
    std::string out;
    StringWriter writer(out);
    static_cast<const pugi::xml_document *>(tree)->save(writer, "", pugi::format_raw,
                                                        pugiEncoding(encoding));
    if (copy) *copy = out;
    return out.size();
}

constexpr const char *kVersion = "pugixml " BENCH_TEXT(PUGIXML_VERSION);
constexpr unsigned kUnicode = setOf(Encoding::utf8, Encoding::utf16le);

}  // namespace

const Contestant kPugixmlCopying = {
    .name = "pugixml-copying",
    .version = kVersion,
    .encodings = kUnicode,
    .build = buildCopying,
    .destroy = destroy,
    .count = count,
    .serialize = serialize,
};

// The tree is the same, so writing it is measured once.
const Contestant kPugixmlInPlace = {
    .name = "pugixml-in-place",
    .version = kVersion,
    .encodings = kUnicode,
    .consumesInput = true,
    .build = buildInPlace,
    .destroy = destroy,
    .count = count,
};

}  // namespace bench
