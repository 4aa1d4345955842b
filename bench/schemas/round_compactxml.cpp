#include <cstdlib>

#include "compactxml.h"
#include "round.h"
#include "schema.h"

namespace bench {
namespace {

using Values = const char *[kSelected];

bool addValues(XML_DOM_Node *answer, const Values &values) {
    for (std::size_t i = 0; i < kSelected; ++i) {
        XML_DOM_Node *child = XML_DOM_CreateElementWithText(kSelections[i].name, values[i]);
        if (XML_DOM_AddChildNode(answer, child) != XML_OK) {
            XML_DOM_DelNode(child);
            return false;
        }
    }
    return true;
}

bool write(const XML_DOM_Node *answer, std::string *copy) {
    char *bytes = nullptr;
    std::uint32_t length = 0;
    if (XML_DOM_TranslateStr(answer, 0, &bytes, &length) != XML_OK) return false;
    if (copy) copy->assign(bytes, length);
    std::free(bytes);
    return true;
}

bool answerWith(const Values &values, std::string *copy) {
    XML_DOM_Node *answer = XML_DOM_CreateElementNode(kAnswerName);
    const bool done = XML_DOM_SetRoot(answer) == XML_OK &&
                      XML_DOM_AddNodeNameSpace(answer, nullptr, kAnswerNamespace) == XML_OK &&
                      addValues(answer, values) && write(answer, copy);
    XML_DOM_DelNode(answer);
    return done;
}

class CompactXmlRound final : public Round {
  public:
    CompactXmlRound() {
        Schema_InitRoot(&root_);
        ready_ = kSwitchSchema.registerUnit(&root_) == XML_OK;
    }
    ~CompactXmlRound() override {
        kSwitchSchema.deregisterUnit(&root_);
        Schema_ExitRoot(&root_);
    }
    bool ready() const { return ready_; }

    bool serve(std::string_view request, std::string *copy) override {
        XML_DOM_Node *tree = XML_DOM_BuildTreeByMem(
            request.data(), static_cast<std::uint32_t>(request.size()), 0, nullptr);
        Values values;
        const bool done =
            tree && select(tree, values) && validate(tree) && answerWith(values, copy);
        XML_DOM_DelNode(tree);
        return done;
    }

  private:
    static bool select(const XML_DOM_Node *tree, Values &values) {
        for (std::size_t i = 0; i < kSelected; ++i) {
            values[i] = XML_DOM_GetSelectSingleNodeText(tree, kSelections[i].path);
            if (!values[i]) return false;
        }
        return true;
    }
    bool validate(XML_DOM_Node *tree) const {
        SchemaErrorInfo error;
        return Schema_ValidateXml(tree, &root_, &error) == XML_OK && error.code == 0;
    }

    SchemaRoot root_;
    bool ready_;
};

std::unique_ptr<Round> make() {
    auto round = std::make_unique<CompactXmlRound>();
    if (!round->ready()) return nullptr;
    return round;
}

}  // namespace

const RoundKind kCompactXmlRound = {"compactxml", true, make};

}  // namespace bench
