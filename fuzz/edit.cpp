// Edits: a tree built from a document, changed by whatever the input says, beside a slow model of
// it. After every operation both have answered the same and hold the same trees. Uses that the
// header calls illegal are left out.
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "fuzz/support/converters.h"
#include "fuzz/support/fuzz_input.h"
#include "fuzz/support/require.h"
#include "fuzz/support/target.h"
#include "tests/support/owners.h"
#include "tests/support/tree_model.h"

namespace {

using support::ModelNode;

constexpr const char *kNames[] = {"a", "b", "c", "p", "xmlns", "", "1a", "a:b", "d-1", "_e"};
constexpr const char *kPrefixes[] = {"", "p", "q", "xml", "r"};
constexpr const char *kUris[] = {"urn:1", "urn:2", "", "urn:<3>"};
constexpr std::uint32_t kEncodings[] = {XML_ENCODING_UTF_8, XML_ENCODING_GBK, XML_ENCODING_GB18030,
                                        XML_ENCODING_UNKNOWN};
constexpr std::size_t kMostNodes = 60, kMostOperations = 100;

// What the model can say: names of ASCII, and no declaration of the prefix "xml".
bool isForModel(std::string_view document) {
    for (const char c : document) {
        if (static_cast<unsigned char>(c) >= 0x80) return false;
    }
    return document.find("xmlns:xml") == document.npos;
}

// What the model's texts can be compared for: blanks at the ends of a text are spaces alone.
bool isPlain(std::string_view document) {
    return document.find_first_of("\t\r\n&") == document.npos &&
           document.find("encoding") == document.npos;
}

class Editor {
  public:
    explicit Editor(fuzz::FuzzInput &input) : input_(input) {}
    ~Editor() {
        // In any order: nothing reads a declaration while deleting.
        for (const ModelNode *top : forest_.tops()) XML_DOM_DelNode(top->real);
    }
    Editor(const Editor &) = delete;
    Editor &operator=(const Editor &) = delete;

    void build(std::string_view document);
    void run();

  private:
    ModelNode *modelOf(XML_DOM_Node *real, ModelNode *parent);
    void operate();
    void create(unsigned kind);
    void link(unsigned kind);
    void insert(unsigned kind);
    void remove(unsigned kind);
    void copy(unsigned kind);
    void rename(unsigned kind);
    void attribute(unsigned add);
    void declare(unsigned replace);
    void document(unsigned root);
    void ask(unsigned kind);
    void compare();

    ModelNode *pick(const std::vector<ModelNode *> &nodes) {
        return nodes[input_.below(nodes.size())];
    }
    ModelNode *node() { return pick(forest_.nodes()); }
    ModelNode *element() {
        std::vector<ModelNode *> elements;
        for (ModelNode *node : forest_.nodes()) {
            if (node->type == XML_DOM_NODE_ELEMENT) elements.push_back(node);
        }
        return elements.empty() ? nullptr : pick(elements);
    }
    std::string value() {
        std::string text(input_.text(input_.byte() % 8));
        for (char &c : text) c = static_cast<char>(' ' + static_cast<unsigned char>(c) % 95);
        return text;
    }

    static void same(std::uint32_t real, std::uint32_t model, const char *what) {
        fuzz::requireOr(real == model, what, [&] {
            return "library " + std::to_string(real) + ", model " + std::to_string(model);
        });
    }
    static void made(XML_DOM_Node *real, ModelNode *model, const char *what) {
        fuzz::require((real != nullptr) == (model != nullptr), what);
        if (model) model->real = real;
    }

    fuzz::FuzzInput &input_;
    support::ModelForest forest_;
    bool texts_ = true;
};

// ---------------------------------------------------------------- the model of what was built

ModelNode *Editor::modelOf(XML_DOM_Node *real, ModelNode *parent) {
    const bool isElement = real->type == XML_DOM_NODE_ELEMENT;
    ModelNode *model = forest_.create(real->type, isElement ? real->name : real->value);
    fuzz::require(model != nullptr, "a name that the model refuses");
    model->real = real;
    if (parent) same(XML_OK, forest_.append(parent, model), "the model refuses a child");
    for (const XML_DOM_NsDecl *decl = real->firstNsDecl; decl; decl = decl->next) {
        same(XML_OK,
             forest_.declare(model, decl->prefix ? decl->prefix : "", decl->namespaceName, false),
             "the model refuses a declaration");
    }
    if (real->ns) {
        same(XML_OK, forest_.setPrefix(model, real->ns->prefix), "the model refuses a prefix");
    }
    for (const XML_DOM_Attr *attr = real->firstAttr; attr; attr = attr->next) {
        fuzz::require(
            forest_.addAttr(model, attr->ns ? attr->ns->prefix : "", attr->name, attr->value),
            "the model refuses an attribute");
    }
    for (XML_DOM_Node *child = real->firstChild; child; child = child->nextSibling) {
        modelOf(child, model);
    }
    return model;
}

void Editor::build(std::string_view document) {
    if (!isForModel(document)) return;
    const std::string text(document);
    XML_DOM_Node *root =
        XML_DOM_BuildTreeByMem(text.data(), static_cast<std::uint32_t>(text.size()), 0, nullptr);
    if (!root) return;
    texts_ = isPlain(document);
    ModelNode *model = modelOf(root, nullptr);
    model->isRoot = true;
    model->encoding = XML_DOM_GetEncoding(root);
    compare();
}

// ---------------------------------------------------------------- operations

void Editor::create(unsigned kind) {
    const std::string name = input_.any(kNames), text = value();
    switch (kind) {
        case 0:
            return made(XML_DOM_CreateElementNode(name.c_str()),
                        forest_.create(XML_DOM_NODE_ELEMENT, name), "create an element");
        case 1:
            return made(XML_DOM_CreateTextNode(text.c_str()),
                        forest_.create(XML_DOM_NODE_TEXT, text), "create a text");
        case 2:
            return made(XML_DOM_CreateElementWithCData(name.c_str(), text.c_str()),
                        forest_.createWithText(name, XML_DOM_NODE_CDATA, text),
                        "create an element with CDATA");
        default:
            return made(XML_DOM_CreateElementWithText(name.c_str(), text.c_str()),
                        forest_.createWithText(name, XML_DOM_NODE_TEXT, text),
                        "create an element with text");
    }
}

void Editor::link(unsigned kind) {
    ModelNode *to = node(), *from = node();
    if (kind == 0) {
        same(XML_DOM_AddChildNode(to->real, from->real), forest_.append(to, from), "add a child");
    } else if (kind == 1) {
        XML_DOM_Clip(from->real);
        forest_.clip(from);
    } else {
        same(XML_DOM_AdoptChildren(from->real, to->real), forest_.adopt(from, to),
             "adopt children");
    }
}

// Nothing is asked of the node that is inserted, so it must be detached, no root and not above.
void Editor::insert(unsigned) {
    ModelNode *reference = node(), *top = pick(forest_.tops());
    const ModelNode *highest = reference;
    while (highest->parent) highest = highest->parent;
    if (highest == top || top->isRoot) return;
    same(XML_DOM_InsertBeforeNode(reference->real, top->real), forest_.insertBefore(reference, top),
         "insert a node");
}

void Editor::remove(unsigned) {
    ModelNode *gone = node();
    if (forest_.isUsedFromOutside(gone)) return;
    XML_DOM_DelNode(gone->real);
    forest_.remove(gone);
}

void Editor::copy(unsigned kind) {
    ModelNode *source = node(), *target = node();
    if (kind == 0) {
        made(XML_DOM_CopyNode(source->real), forest_.copyNode(source), "copy a node");
    } else if (kind == 1) {
        made(XML_DOM_CopyRoot(source->real), forest_.copyRoot(source), "copy a root");
    } else if (forest_.nodes().size() < kMostNodes) {
        same(XML_DOM_CopySubTree(target->real, source->real), forest_.copySubTree(target, source),
             "copy children");
    }
}

void Editor::rename(unsigned) {
    ModelNode *one = node();
    const std::string name = input_.any(kNames), text = value();
    same(XML_DOM_SetNodeName(one->real, name.c_str()), forest_.rename(one, name), "rename");
    same(XML_DOM_SetNodeValue(one->real, text.c_str()), forest_.setValue(one, text), "set a text");
}

void Editor::attribute(unsigned add) {
    ModelNode *one = element();
    if (!one) return;
    const std::string prefix = input_.any(kPrefixes), name = input_.any(kNames), text = value();
    if (add) {
        const bool added =
            XML_DOM_AddAttr(one->real, prefix.c_str(), name.c_str(), text.c_str()) != nullptr;
        same(added, forest_.addAttr(one, prefix, name, text), "add an attribute");
    } else {
        XML_DOM_DelAttr(one->real, prefix.c_str(), name.c_str());
        forest_.deleteAttr(one, prefix, name);
    }
}

void Editor::declare(unsigned replace) {
    ModelNode *one = element();
    if (!one) return;
    const std::string prefix = input_.any(kPrefixes), uri = input_.any(kUris);
    // What these are bound to is not looked at here but where a document is read.
    auto *const call = replace ? XML_DOM_SetNodeDefineNsVal : XML_DOM_AddNodeNameSpace;
    if (prefix != "xml") {
        same(call(one->real, prefix.c_str(), uri.c_str()),
             forest_.declare(one, prefix, uri, replace), "declare a prefix");
    }
    const std::string used = input_.any(kPrefixes);
    same(XML_DOM_SetNodeNameSpace(one->real, used.c_str()), forest_.setPrefix(one, used),
         "set a prefix");
}

void Editor::document(unsigned root) {
    ModelNode *one = node();
    if (root) {
        same(XML_DOM_SetRoot(one->real), forest_.makeRoot(one), "make a root");
    } else {
        const std::uint32_t encoding = input_.any(kEncodings);
        same(XML_DOM_SetEncoding(one->real, encoding), forest_.setEncoding(one, encoding),
             "set an encoding");
    }
}

void Editor::ask(unsigned) {
    const ModelNode *one = node();
    std::string path;
    for (unsigned steps = input_.byte() % 4; steps > 0; --steps) {
        path += input_.any(kNames);
        if (input_.flag()) path += '/';
    }
    const ModelNode *expected = forest_.select(one, path);
    fuzz::requireOr(
        XML_DOM_SelectSingleNode(one->real, path.c_str()) == (expected ? expected->real : nullptr),
        "another node is selected", [&] { return path; });
    char buffer[8192];
    const std::uint32_t length = XML_DOM_GetXPath(one->real, sizeof buffer, buffer);
    fuzz::requireSame({buffer, length}, support::modelPath(one), "another path");
}

void Editor::operate() {
    struct Operation {
        unsigned weight;
        void (Editor::*run)(unsigned kind);
        unsigned kind;
    };
    static constexpr Operation kOperations[] = {
        {1, &Editor::create, 0},   {1, &Editor::create, 1},    {1, &Editor::create, 2},
        {1, &Editor::create, 3},   {3, &Editor::link, 0},      {1, &Editor::link, 1},
        {1, &Editor::link, 2},     {2, &Editor::insert, 0},    {2, &Editor::remove, 0},
        {1, &Editor::copy, 0},     {1, &Editor::copy, 1},      {3, &Editor::copy, 2},
        {1, &Editor::rename, 0},   {3, &Editor::attribute, 1}, {1, &Editor::attribute, 0},
        {2, &Editor::declare, 0},  {1, &Editor::declare, 1},   {2, &Editor::document, 1},
        {1, &Editor::document, 0}, {3, &Editor::ask, 0}};
    unsigned place = input_.byte() % 32;
    for (const Operation &operation : kOperations) {
        if (place < operation.weight) return (this->*operation.run)(operation.kind);
        place -= operation.weight;
    }
    fuzz::fail("the weights of the operations are not 32 together");
}

void Editor::compare() {
    for (ModelNode *top : forest_.tops()) {
        fuzz::require(top->real != nullptr, "a tree of the model alone");
        fuzz::requireSame("", support::differenceOf(top, top->real), "the trees differ");
        if (!texts_) continue;
        char *text = nullptr;
        std::uint32_t length = 0;
        same(XML_DOM_TranslateStr(top->real, 0, &text, &length), XML_OK, "write a tree");
        const support::TextPtr owner(text);
        fuzz::requireSame({text, length}, support::modelText(top), "the texts differ");
    }
}

void Editor::run() {
    if (forest_.tops().empty()) create(0);
    for (std::size_t i = 0; i < kMostOperations && !input_.empty(); ++i) {
        const std::size_t nodes = forest_.nodes().size();
        if (nodes == 0) {
            create(0);
            if (forest_.tops().empty()) return;
        } else if (nodes > kMostNodes) {
            remove(0);
        } else {
            operate();
        }
        compare();
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    fuzz::holdConverters();
    fuzz::FuzzInput input(data, size);
    Editor editor(input);
    editor.build(input.string());
    editor.run();
    return 0;
}
