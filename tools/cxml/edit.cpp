#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "commands.h"
#include "copy.h"
#include "document.h"
#include "failure.h"
#include "output.h"
#include "path.h"
#include "text.h"
#include "writer.h"

namespace tool {
namespace {

using Kind = EditOperation::Kind;

// An operation as it was typed, for messages.
std::string describe(const EditOperation &operation) {
    constexpr const char *kNames[] = {"--set", "--add", "--delete", "--rename", "--attr", "--copy"};
    std::string text = kNames[static_cast<std::size_t>(operation.kind)];
    for (const std::string &argument : operation.arguments) text += " '" + argument + "'";
    return text;
}

[[noreturn]] void refuse(const std::string &reason) {
    throw Failure(kRefused, reason);
}

// A name and what is behind the first "=" outside brackets, if there is one.
struct Assignment {
    std::string name;
    std::optional<std::string> value;
};

Assignment divide(const std::string &text) {
    int brackets = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '[') ++brackets;
        if (text[i] == ']') --brackets;
        if (text[i] == '=' && brackets <= 0) return {text.substr(0, i), text.substr(i + 1)};
    }
    return {text, std::nullopt};
}

// A value in the encoding of the tree. What XML has no place for is refused here, since it would be
// written as it is and never be read again.
std::string checkedValue(const std::string &value) {
    const std::string result = toTree(value, "the value");
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char c = value[i];
        const bool control = static_cast<unsigned char>(c) < 0x20 && !std::strchr("\t\n\r", c);
        const std::string_view three = std::string_view(value).substr(i, 3);
        if (control || three == "\xEF\xBF\xBE" || three == "\xEF\xBF\xBF") {
            refuse("the value has a character that XML does not allow");
        }
    }
    return result;
}

// "name" or "prefix:name", in the encoding of the tree.
struct Name {
    std::string prefix;
    std::string local;
};

Name checkedName(const std::string &name) {
    const std::size_t colon = name.find(':');
    Name result;
    if (colon != std::string::npos) result.prefix = toTree(name.substr(0, colon), "the name");
    result.local = toTree(name.substr(colon == std::string::npos ? 0 : colon + 1), "the name");
    if ((colon != std::string::npos && XML_CheckQName(result.prefix.c_str()) != XML_OK) ||
        XML_CheckQName(result.local.c_str()) != XML_OK) {
        refuse("'" + name + "' is no name");
    }
    return result;
}

void setPrefix(XML_DOM_Node *element, const std::string &prefix) {
    if (prefix.empty() || XML_DOM_SetNodeNameSpace(element, prefix.c_str()) == XML_OK) return;
    refuse("the prefix '" + toUtf8(prefix) + "' is not declared");
}

void addText(XML_DOM_Node *element, const std::string &text) {
    if (text.empty()) return;
    Tree node{XML_DOM_CreateTextNode(text.c_str())};
    requireMemory(XML_DOM_AddChildNode(element, node.get()) == XML_OK);
    node.release();
}

// Replaces all texts of an element by one in front of what else it holds.
void setText(XML_DOM_Node *element, const std::string &text) {
    // Always taken from the front of one node and put behind those of another, neither of which has
    // anything above it: linear for any number of children at any depth.
    const Tree all{XML_DOM_CreateElementNodeInner("all")};
    const Tree kept{XML_DOM_CreateElementNodeInner("kept")};
    requireMemory(all && kept);
    XML_DOM_AdoptChildren(element, all.get());
    while (XML_DOM_Node *child = XML_DOM_GetFirstChild(all.get())) {
        XML_DOM_Clip(child);
        if (XML_DOM_GetNodeType(child) == XML_DOM_NODE_ELEMENT) {
            XML_DOM_AddChildNode(kept.get(), child);
        } else {
            XML_DOM_DelNode(child);
        }
    }
    addText(element, text);
    XML_DOM_AdoptChildren(kept.get(), element);
}

// Sets an attribute, or removes it without a value. One that is there keeps its place and prefix.
void setAttribute(XML_DOM_Node *element, const std::string &name,
                  const std::optional<std::string> &value) {
    const auto [prefix, local] = checkedName(name);
    const std::string treeValue = checkedValue(value.value_or(""));
    // A probe tells the namespace of the prefix, and carries the value to the attribute that is
    // there. No attribute of a document has its name.
    constexpr char kProbe[] = " ";
    XML_DOM_Attr *probe = XML_DOM_AddAttrInner(element, kProbe, treeValue.c_str());
    requireMemory(probe != nullptr);
    if (XML_DOM_SetAttrNsInner(probe, prefix.c_str()) != XML_OK) {
        refuse("the prefix '" + toUtf8(prefix) + "' is not declared");
    }
    const char *wanted = nullptr;
    XML_DOM_GetAttrNameSpace(probe, nullptr, &wanted);
    XML_DOM_Attr *found = XML_DOM_GetFirstAttr(element);
    for (; found; found = XML_DOM_GetNextAttr(found)) {
        const char *other = nullptr;
        const char *namespaceName = nullptr;
        XML_DOM_GetAttrNameSpace(found, &other, &namespaceName);
        if (local == other && XML_Strcmp(namespaceName, wanted) == 0) break;
    }
    if (found) std::swap(found->value, probe->value);
    XML_DOM_DelAttr(element, prefix.c_str(), kProbe);
    if (found && !value) {
        XML_DOM_DelAttr(element, found->ns ? found->ns->prefix : nullptr, local.c_str());
    } else if (!value) {
        refuse("no attribute " + name);
    } else if (!found &&
               !XML_DOM_AddAttr(element, prefix.c_str(), local.c_str(), treeValue.c_str())) {
        refuse("'" + name + "' is no name of an attribute");
    }
}

// A document that is being edited.
class Edit {
  public:
    Edit(XML_DOM_Node *root, std::string fileName) : root_(root), fileName_(std::move(fileName)) {}

    void apply(const EditOperation &operation) {
        const std::vector<std::string> &typed = operation.arguments;
        switch (operation.kind) {
            case Kind::kSet: {
                const auto [path, value] = divide(typed[0]);
                setText(find(path), checkedValue(*value));
                break;
            }
            case Kind::kAdd:
                add(find(typed[0]), divide(typed[1]));
                break;
            case Kind::kDelete:
                remove(find(typed[0]));
                break;
            case Kind::kRename: {
                const auto [path, name] = divide(typed[0]);
                rename(find(path), *name);
                break;
            }
            case Kind::kAttribute: {
                const auto [name, value] = divide(typed[1]);
                setAttribute(find(typed[0]), name, value);
                break;
            }
            case Kind::kCopy: {
                const XML_DOM_Node *from = find(typed[0]);
                copyInto(find(typed[1]), from);
                break;
            }
        }
    }

  private:
    XML_DOM_Node *find(const std::string &path) {
        XML_DOM_Node *node = findNode(root_, path);
        if (!node) refuse("no element " + path + " in " + fileName_);
        return node;
    }

    static void add(XML_DOM_Node *parent, const Assignment &added) {
        const Name name = checkedName(added.name);
        const std::string text = checkedValue(added.value.value_or(""));
        Tree owner{XML_DOM_CreateElementNode(name.local.c_str())};
        requireMemory(XML_DOM_AddChildNode(parent, owner.get()) == XML_OK);
        XML_DOM_Node *element = owner.release();
        setPrefix(element, name.prefix);
        addText(element, text);
    }

    void remove(XML_DOM_Node *element) {
        if (element == root_) refuse("the root cannot be deleted");
        XML_DOM_DelNode(element);
    }

    static void rename(XML_DOM_Node *element, const std::string &newName) {
        const Name name = checkedName(newName);
        setPrefix(element, name.prefix);
        requireMemory(XML_DOM_SetNodeName(element, name.local.c_str()) == XML_OK);
    }

    XML_DOM_Node *root_;
    std::string fileName_;
};

// What can be told to be wrong before any document is read.
void checkUsage(const EditOptions &options) {
    if (options.operations.empty())
        throw Failure(kTrouble, "edit needs an operation, such as --set");
    if (options.inPlace && !options.output.empty()) {
        throw Failure(kTrouble, "--in-place and -o exclude each other");
    }
    if (options.inPlace && options.file == "-") {
        throw Failure(kTrouble, "--in-place needs a file, not standard input");
    }
    for (const EditOperation &operation : options.operations) {
        const bool assigns = operation.kind == Kind::kSet || operation.kind == Kind::kRename;
        if (assigns && !divide(operation.arguments[0]).value) {
            throw Failure(kTrouble, describe(operation) + ": there is no '=' behind the path");
        }
    }
}

}  // namespace

int runEdit(const EditOptions &options) {
    checkUsage(options);
    const std::string name = options.file == "-" ? "standard input" : options.file;
    const Tree root = loadDocument(options.file, kRefused);
    Edit edit(root.get(), name);
    for (const EditOperation &operation : options.operations) {
        try {
            edit.apply(operation);
        } catch (const Failure &failure) {
            throw Failure(failure.status(), describe(operation) + ": " + failure.what());
        }
    }
    Output output(options.inPlace ? options.file : options.output);
    writeTree(root.get(), {}, name, output);
    output.commit();
    return kSuccess;
}

}  // namespace tool
