// pugixml, which has no schemas: all of the round but the validation.
#include <pugixml.hpp>

#include "round.h"

namespace bench {
namespace {

using Values = const char *[kSelected];

class StringWriter final : public pugi::xml_writer {
  public:
    void write(const void *bytes, std::size_t size) override {
        text_.append(static_cast<const char *>(bytes), size);
    }
    const std::string &text() const { return text_; }

  private:
    std::string text_;
};

void answerWith(const Values &values, std::string *copy) {
    pugi::xml_document answer;
    pugi::xml_node root = answer.append_child(kAnswerName);
    root.append_attribute("xmlns").set_value(kAnswerNamespace);
    for (std::size_t i = 0; i < kSelected; ++i) {
        root.append_child(kSelections[i].name).text().set(values[i]);
    }
    StringWriter writer;
    answer.save(writer, "", pugi::format_raw, pugi::encoding_utf8);
    if (copy) *copy = writer.text();
}

class PugixmlRound final : public Round {
  public:
    bool serve(std::string_view request, std::string *copy) override {
        pugi::xml_document tree;
        Values values;
        if (!tree.load_buffer(request.data(), request.size(), pugi::parse_default,
                              pugi::encoding_utf8) ||
            !select(tree, values)) {
            return false;
        }
        answerWith(values, copy);
        return true;
    }

  private:
    static bool select(const pugi::xml_document &tree, Values &values) {
        for (std::size_t i = 0; i < kSelected; ++i) {
            const pugi::xml_node node = tree.first_element_by_path(kSelections[i].prefixedPath);
            values[i] = node.text().get();
            if (!node || !*values[i]) return false;
        }
        return true;
    }
};

std::unique_ptr<Round> make() {
    return std::make_unique<PugixmlRound>();
}

}  // namespace

const RoundKind kPugixmlRound = {"pugixml-unvalidated", false, make};

}  // namespace bench
