// pugixml with iconv in front of it, for documents of Chinese text. It takes the bytes of a
// document as they are, and no byte of a GB18030 character is "<" or "&", so its tree can hold
// GB18030 as this library's does; or UTF-8, made of a document in GB18030.
#include <iconv.h>

#include <cstring>
#include <memory>
#include <pugixml.hpp>

#include "contestant.h"

namespace bench {
namespace {

// Converts in one call into a block of pugixml's heap, which the tree then owns and parses in
// place.
void *buildConverted(std::span<char> document, const char *from, const char *to) {
    const std::size_t capacity = 2 * document.size();
    auto *text = static_cast<char *>(pugi::get_memory_allocation_function()(capacity));
    if (!text) return nullptr;
    const iconv_t converter = iconv_open(to, from);
    char *source = document.data();
    char *target = text;
    std::size_t left = document.size();
    std::size_t room = capacity;
    const bool ok = converter != iconv_t(-1) && iconv(converter, &source, &left, &target, &room) !=
                                                    static_cast<std::size_t>(-1);
    if (converter != iconv_t(-1)) iconv_close(converter);
    if (!ok) {
        pugi::get_memory_deallocation_function()(text);
        return nullptr;
    }
    auto tree = std::make_unique<pugi::xml_document>();
    return tree->load_buffer_inplace_own(text, capacity - room, pugi::parse_default,
                                         pugi::encoding_utf8)
               ? tree.release()
               : nullptr;
}

void *buildAsIs(std::span<char> document, Encoding) {
    auto tree = std::make_unique<pugi::xml_document>();
    return tree->load_buffer_inplace(document.data(), document.size(), pugi::parse_default,
                                     pugi::encoding_utf8)
               ? tree.release()
               : nullptr;
}

void *buildGb18030(std::span<char> document, Encoding) {
    return buildConverted(document, "UTF-8", "GB18030");
}

void *buildUtf8(std::span<char> document, Encoding) {
    return buildConverted(document, "GB18030", "UTF-8");
}

void destroy(void *tree) {
    delete static_cast<pugi::xml_document *>(tree);
}

class Counter : public pugi::xml_tree_walker {
  public:
    Counter(Tally &tally, Encoding held) : tally_(tally), held_(held) {}

    bool for_each(pugi::xml_node &node) override {
        if (node.type() == pugi::node_element) {
            tally_.element(node.name(), ':');
            for (const pugi::xml_attribute &attribute : node.attributes()) {
                if (std::strncmp(attribute.name(), "xmlns", 5) == 0) continue;
                tally_.attribute(attribute.name(), utf8(attribute.value()).c_str(), ':');
            }
        } else if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata) {
            const std::string text = utf8(node.value());
            tally_.text(text.data(), text.size());
        }
        return true;
    }

  private:
    std::string utf8(const char *text) const { return converted(text, held_, Encoding::utf8); }

    Tally &tally_;
    Encoding held_;
};

template <Encoding kHeld>
void count(const void *tree, Tally &tally) {
    Counter counter(tally, kHeld);
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

// Writes what the tree holds, and converts it in one call if the document was something else. The
// declaration that pugixml would write names no encoding.
template <Encoding kHeld>
std::size_t serialize(const void *tree, Encoding encoding, std::string *copy) {
    std::string out = "<?xml version=\"1.0\" encoding=\"";
    out.append(encodingName(encoding)).append("\"?>");
    StringWriter writer(out);
    static_cast<const pugi::xml_document *>(tree)->save(
        writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
    if (encoding != kHeld) out = converted(out, kHeld, encoding);
    if (copy) *copy = out;
    return out.size();
}

constexpr const char *kVersion = "pugixml " BENCH_TEXT(PUGIXML_VERSION) " behind iconv";
constexpr const char *kDirectVersion = "pugixml " BENCH_TEXT(PUGIXML_VERSION);

}  // namespace

const Contestant kPugixmlIconv = {
    .name = "pugixml-iconv",
    .version = kVersion,
    .encodings = kUtf8Alone,
    .onlyChinese = true,
    .build = buildGb18030,
    .destroy = destroy,
    .count = count<Encoding::gb18030>,
    .serialize = serialize<Encoding::gb18030>,
};

const Contestant kPugixmlGb18030 = {
    .name = "pugixml-gb18030",
    .version = kDirectVersion,
    .encodings = setOf(Encoding::gb18030),
    .onlyChinese = true,
    .consumesInput = true,
    .build = buildAsIs,
    .destroy = destroy,
    .count = count<Encoding::gb18030>,
    .serialize = serialize<Encoding::gb18030>,
};

const Contestant kPugixmlIconvUtf8 = {
    .name = "pugixml-iconv-utf8",
    .version = kVersion,
    .encodings = setOf(Encoding::gb18030),
    .onlyChinese = true,
    .build = buildUtf8,
    .destroy = destroy,
    .count = count<Encoding::utf8>,
    .serialize = serialize<Encoding::utf8>,
};

}  // namespace bench
