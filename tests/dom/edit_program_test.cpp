// Random programs of edits, run on the library and on a model of it (support/tree_model.h): after
// every operation both must have answered the same and hold the same trees.
#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/owners.h"
#include "tests/support/small_stack.h"
#include "tests/support/tree_model.h"

namespace {

using support::ModelNode;

constexpr const char *kNames[] = {"a", "b", "c", "d-1", "_e", "xmlns", "", "1a", "a:b", "a b"};
constexpr std::size_t kGoodNames = 5;
constexpr const char *kValues[] = {"v", "", " ", "  blank ", "<&>", "a long text & more", "]]"};
constexpr const char *kPrefixes[] = {"p", "q", "", "xml", "r"};
constexpr const char *kNamespaces[] = {"urn:1", "urn:2", "", "urn:<3>"};
constexpr const char *kPaths[] = {"a",    "b",    "a/b", "a/a", "/", "/a",
                                  "/a/b", "a//a", "",    "a/",  "//"};
constexpr std::size_t kMostNodes = support::kSanitized ? 60 : 120;

// Runs operations one by one. Each first asks the library, sometimes with an allocation failing,
// then does the same to the model.
class Program {
  public:
    explicit Program(std::uint32_t seed) : random_(seed) {}
    ~Program() {
        // Whatever order of the trees: nothing reads a declaration while deleting.
        for (ModelNode *top : forest_.tops()) XML_DOM_DelNode(top->real);
    }
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    void step();
    void expectSame(bool texts);
    std::size_t refusals() const { return refusals_; }
    std::size_t failures() const { return failures_; }

  private:
    std::size_t below(std::size_t bound) {
        return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random_);
    }
    template <std::size_t N>
    const char *any(const char *const (&texts)[N]) {
        return texts[below(N)];
    }
    const char *name() { return below(4) ? kNames[below(kGoodNames)] : any(kNames); }
    ModelNode *node() {
        const auto nodes = forest_.nodes();
        return nodes[below(nodes.size())];
    }
    ModelNode *element() {
        ModelNode *found = node();
        for (int i = 0; i < 4 && found->type != XML_DOM_NODE_ELEMENT; ++i) found = node();
        return found;
    }

    // Calls the library, now and then with an allocation that fails. True when it was refused for
    // that: the model then stays as it is, too.
    template <class Call>
    bool refusedForMemory(Call call) {
        const support::FaultyHeap heap(below(8) ? 0 : 1 + below(12));
        const bool done = call();
        if (!done) ++refusals_;
        if (!heap.failed() || done) return false;
        ++failures_;
        return true;
    }
    // The same for the two kinds of results, which are compared.
    template <class Real, class Model>
    void code(Real real, Model model) {
        std::uint32_t result = XML_OK;
        if (refusedForMemory([&] { return (result = real()) == XML_OK; })) return;
        EXPECT_EQ(result, model());
    }
    template <class Real, class Model>
    void made(Real real, Model model) {
        XML_DOM_Node *node = nullptr;
        if (refusedForMemory([&] { return (node = real()) != nullptr; })) return;
        ModelNode *expected = model();
        ASSERT_EQ(node != nullptr, expected != nullptr);
        if (expected) expected->real = node;
    }

    void createOne();
    void changeLinks(std::size_t kind);
    void copyOne();
    void changeNode();
    void ask();

    std::mt19937 random_;
    support::ModelForest forest_;
    std::size_t refusals_ = 0, failures_ = 0;
};

void Program::createOne() {
    const std::string elementName = name(), value = any(kValues);
    switch (below(5)) {
        case 0:
        case 1:
            made([&] { return XML_DOM_CreateElementNode(elementName.c_str()); },
                 [&] { return forest_.create(XML_DOM_NODE_ELEMENT, elementName); });
            break;
        case 2:
            made([&] { return XML_DOM_CreateTextNode(value.c_str()); },
                 [&] { return forest_.create(XML_DOM_NODE_TEXT, value); });
            break;
        case 3:
            made([&] { return XML_DOM_CreateCDataNode(value.c_str()); },
                 [&] { return forest_.create(XML_DOM_NODE_CDATA, value); });
            break;
        default:
            made([&] { return XML_DOM_CreateElementWithText(elementName.c_str(), value.c_str()); },
                 [&] { return forest_.createWithText(elementName, XML_DOM_NODE_TEXT, value); });
    }
}

void Program::changeLinks(std::size_t kind) {
    ModelNode *one = node(), *other = element();
    switch (kind) {
        case 0:
            code([&] { return XML_DOM_AddChildNode(other->real, one->real); },
                 [&] { return forest_.append(other, one); });
            break;
        case 1: {
            // Nothing is asked of the node that is inserted, so it must be a good one.
            const auto tops = forest_.tops();
            ModelNode *top = tops[below(tops.size())];
            for (const ModelNode *up = other; up; up = up->parent) {
                if (up == top) return;
            }
            if (top->isRoot) return;
            code([&] { return XML_DOM_InsertBeforeNode(other->real, top->real); },
                 [&] { return forest_.insertBefore(other, top); });
            break;
        }
        case 2:
            XML_DOM_Clip(one->real);
            forest_.clip(one);
            break;
        case 3: {
            // Often, so that there are children left to adopt, from where there are few.
            ModelNode *from = element();
            code([&] { return XML_DOM_AdoptChildren(from->real, one->real); },
                 [&] { return forest_.adopt(from, one); });
            break;
        }
        default:
            if (forest_.isUsedFromOutside(one)) return;
            XML_DOM_DelNode(one->real);
            forest_.remove(one);
    }
}

void Program::copyOne() {
    ModelNode *source = node(), *target = element();
    switch (below(4)) {
        case 0:
            made([&] { return XML_DOM_CopyNode(source->real); },
                 [&] { return forest_.copyNode(source); });
            break;
        case 1:
            made([&] { return XML_DOM_CopyRoot(source->real); },
                 [&] { return forest_.copyRoot(source); });
            break;
        default:
            source = element();
            code([&] { return XML_DOM_CopySubTree(target->real, source->real); },
                 [&] { return forest_.copySubTree(target, source); });
    }
}

void Program::changeNode() {
    ModelNode *one = element();
    const std::string newName = name(), value = any(kValues), prefix = any(kPrefixes);
    const std::string uri = any(kNamespaces);
    switch (below(9)) {
        case 0:
            code([&] { return XML_DOM_SetNodeName(one->real, newName.c_str()); },
                 [&] { return forest_.rename(one, newName); });
            break;
        case 1:
            one = node();
            code([&] { return XML_DOM_SetNodeValue(one->real, value.c_str()); },
                 [&] { return forest_.setValue(one, value); });
            break;
        case 2:
            if (one->type != XML_DOM_NODE_ELEMENT) return;  // not asked by the library
            code(
                [&] {
                    return XML_DOM_AddAttr(one->real, prefix.c_str(), newName.c_str(),
                                           value.c_str())
                               ? XML_OK
                               : XML_REFUSED;
                },
                [&] {
                    return forest_.addAttr(one, prefix, newName, value) ? XML_OK : XML_REFUSED;
                });
            break;
        case 3:
            XML_DOM_DelAttr(one->real, prefix.c_str(), newName.c_str());
            forest_.deleteAttr(one, prefix, newName);
            break;
        case 4:
            if (one->type != XML_DOM_NODE_ELEMENT) return;
            code([&] { return XML_DOM_AddNodeNameSpace(one->real, prefix.c_str(), uri.c_str()); },
                 [&] { return forest_.declare(one, prefix, uri, false); });
            break;
        case 5:
            if (one->type != XML_DOM_NODE_ELEMENT) return;
            code([&] { return XML_DOM_SetNodeDefineNsVal(one->real, prefix.c_str(), uri.c_str()); },
                 [&] { return forest_.declare(one, prefix, uri, true); });
            break;
        case 6:
            code([&] { return XML_DOM_SetNodeNameSpace(one->real, prefix.c_str()); },
                 [&] { return forest_.setPrefix(one, prefix); });
            break;
        case 7:
            code([&] { return XML_DOM_SetRoot(one->real); }, [&] { return forest_.makeRoot(one); });
            break;
        default: {
            // Encodings in which ASCII is one byte, so that texts can be compared.
            constexpr std::uint32_t kEncodings[] = {XML_ENCODING_UTF_8, XML_ENCODING_GBK,
                                                    XML_ENCODING_GB18030, XML_ENCODING_UNKNOWN};
            const std::uint32_t encoding = kEncodings[below(std::size(kEncodings))];
            code([&] { return XML_DOM_SetEncoding(one->real, encoding); },
                 [&] { return forest_.setEncoding(one, encoding); });
        }
    }
}

void Program::ask() {
    const ModelNode *one = node();
    const std::string path = any(kPaths);
    const ModelNode *expected = forest_.select(one, path);
    EXPECT_EQ(XML_DOM_SelectSingleNode(one->real, path.c_str()),
              expected ? expected->real : nullptr)
        << path;
    char buffer[4096];
    const std::uint32_t length = XML_DOM_GetXPath(one->real, sizeof buffer, buffer);
    EXPECT_EQ(std::string(buffer, length), support::modelPath(one).substr(0, sizeof buffer - 1));
}

void Program::step() {
    const std::size_t nodes = forest_.nodes().size();
    if (nodes < 2) return createOne();
    if (nodes > kMostNodes) return changeLinks(4);
    const std::size_t kind = below(20);
    if (kind < 4) return createOne();
    if (kind < 7) return changeLinks(0);
    if (kind < 11) return changeLinks(kind - 6);
    if (kind < 13) return copyOne();
    if (kind < 19) return changeNode();
    ask();
}

void Program::expectSame(bool texts) {
    for (ModelNode *top : forest_.tops()) {
        ASSERT_NE(top->real, nullptr);
        ASSERT_EQ(support::differenceOf(top, top->real), "");
        if (!texts) continue;
        char *text = nullptr;
        std::uint32_t length = 0;
        ASSERT_EQ(XML_DOM_TranslateStr(top->real, 0, &text, &length), XML_OK);
        const support::TextPtr owner(text);
        ASSERT_EQ(std::string(text, length), support::modelText(top));
    }
}

// Ten programs of 10,000 operations.
class EditProgram : public testing::TestWithParam<std::uint32_t> {};

TEST_P(EditProgram, AgreesWithTheModel) {
    Program program(GetParam());
    for (int operation = 0; operation < 10000; ++operation) {
        program.step();
        program.expectSame(operation % 4 == 0);
        if (HasFailure()) FAIL() << "operation " << operation;
    }
    // The programs would prove little if nearly everything or nothing of them were refused.
    EXPECT_GT(program.refusals(), 1000u);
    EXPECT_LT(program.refusals(), 6000u);
    EXPECT_GT(program.failures(), 20u);
}

INSTANTIATE_TEST_SUITE_P(Seeds, EditProgram, testing::Range(1u, 11u));

}  // namespace
