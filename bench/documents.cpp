#include "documents.h"

#include <map>
#include <memory>
#include <optional>

#include "files.h"
#include "generate.h"

namespace bench {
namespace {

struct Recipe {
    std::string_view name;
    Kind kind;
    Encoding encoding;
};

constexpr Recipe kRecipes[] = {
    {"rpc", Kind::rpc, Encoding::utf8},
    {"configuration", Kind::configuration, Encoding::utf8},
    {"configuration-utf16le", Kind::configuration, Encoding::utf16le},
    {"configuration-gb18030", Kind::mixedConfiguration, Encoding::gb18030},
    {"chinese", Kind::chinese, Encoding::utf8},
    {"chinese-gb18030", Kind::chinese, Encoding::gb18030},
    {"text", Kind::text, Encoding::utf8},
    {"attributes", Kind::attributes, Encoding::utf8},
};

// The size is that of the text in UTF-8, whatever the encoding makes of it.
std::string madeBy(const Recipe &recipe, std::size_t size) {
    std::string bytes = generate(recipe.kind, size);
    if (recipe.encoding == Encoding::utf8) return bytes;
    constexpr std::string_view kDeclared = "UTF-8";
    bytes.replace(bytes.find(kDeclared), kDeclared.size(), encodingName(recipe.encoding));
    return converted(bytes, Encoding::utf8, recipe.encoding);
}

std::optional<Document> make(const std::string &label) {
    const std::size_t slash = label.find('/');
    if (slash == label.npos) return std::nullopt;
    const std::string kind = label.substr(0, slash);
    const std::string size = label.substr(slash + 1);
    if (kind == "file") {
        std::string bytes = readPackagedFile(size);
        if (bytes.empty()) return std::nullopt;
        return Document{label, Encoding::utf8, false, std::move(bytes)};
    }
    for (const Recipe &recipe : kRecipes) {
        if (kind != recipe.name || parseSize(size) == 0) continue;
        const bool chinese =
            recipe.kind == Kind::chinese || recipe.kind == Kind::mixedConfiguration;
        return Document{label, recipe.encoding, chinese, madeBy(recipe, parseSize(size))};
    }
    return std::nullopt;
}

}  // namespace

std::size_t parseSize(std::string_view text) {
    std::size_t size = 0;
    std::size_t i = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9' && size < 100000000; ++i) {
        size = size * 10 + static_cast<std::size_t>(text[i] - '0');
    }
    const std::string_view unit = text.substr(i);
    const std::size_t factor = unit.empty() ? 1 : unit == "k" ? 1000 : unit == "M" ? 1000000 : 0;
    // Libraries take lengths of 31 bits.
    return size <= 500000000u / (factor ? factor : 1) ? size * factor : 0;
}

const Document *findDocument(const std::string &label) {
    static std::map<std::string, std::unique_ptr<const Document>, std::less<>> kept;
    std::unique_ptr<const Document> &slot = kept[label];
    if (slot) return slot.get();
    std::optional<Document> made = make(label);
    if (!made) return nullptr;
    slot = std::make_unique<const Document>(std::move(*made));
    return slot.get();
}

std::vector<std::string> usualDocuments() {
    std::vector<std::string> labels = {
        "rpc/4k",
        "configuration/1M",
        "configuration/10M",
        "text/1M",
        "configuration-utf16le/10M",
        "configuration-gb18030/10M",
        "attributes/1M",
        "chinese/1M",
        "chinese-gb18030/1M",
    };
    for (const std::string &name : packagedFiles()) labels.push_back("file/" + name);
    return labels;
}

std::vector<std::string> smallDocuments() {
    return {"rpc/4k",        "configuration/4k", "text/4k",
            "attributes/4k", "chinese/4k",       "chinese-gb18030/4k"};
}

std::vector<std::string> growthDocuments() {
    std::vector<std::string> labels;
    for (const char *kind : {"configuration", "text", "attributes", "chinese"}) {
        for (const char *size : {"/10k", "/100k", "/1M"})
            labels.push_back(std::string(kind) + size);
    }
    labels.emplace_back("configuration/10M");
    return labels;
}

std::vector<std::string> largeDocuments() {
    return {"configuration/100M"};
}

}  // namespace bench
