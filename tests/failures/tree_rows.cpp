// The functions that make, change, look at and copy trees.
#include "tests/failures/row.h"

namespace failures {
namespace {

constexpr char kChinese[] = "\xB6\xCB\xBF\xDA";

void bare(Stage &) {}
void tree(Stage &s) {
    s.prepareTree();
}
void looseChildren(Stage &s) {
    s.prepareTree();
    XML_DOM_AddChildNode(s.loose.get(), XML_DOM_CreateElementWithText("one", "1"));
    XML_DOM_AddChildNode(s.loose.get(), XML_DOM_CreateElementWithText("two", "2"));
}
// A path that has to be read step by step.
void numbers(Stage &s) {
    s.prepareTree();
    XML_DOM_AddChildNode(s.element, XML_DOM_CreateElementWithText("n", " -12 "));
}

// A call that must not fail whatever is short, and of which nothing is to be seen but this.
template <class Result>
Answer tells(Stage &s, const Result &result) {
    s.told += result;
    return Answer::kGood;
}

std::string shown(const char *value) {
    return value ? value : "(null)";
}
std::string shown(const XML_DOM_Node *found) {
    return found ? shown(found->name) + "/" + shown(found->value) : "(no node)";
}
std::string shown(const XML_DOM_Attr *found) {
    return found ? std::string(found->name) + "=" + found->value : "(no attribute)";
}
std::string shown(std::uint32_t number) {
    return std::to_string(number);
}
std::string shown(int number) {
    return std::to_string(number);
}

std::uint32_t visit(XML_DOM_Node *node, void *told, std::uint32_t) {
    *static_cast<std::string *>(told) += shown(node) + " ";
    return 0;
}

template <class Step>
Answer alongPath(Stage &s, const char *path, const Step &step) {
    DOM_XPath_Cursor cursor{};
    std::string copy = path;
    cursor.rest = copy.data();
    return step(s, &cursor);
}

Answer give(Stage &s, bool done) {
    // The node belongs to the tree from now on.
    if (done) s.loose.release();
    return done ? Answer::kGood : Answer::kWrong;
}

void addMakers(std::vector<Row> *rows) {
    const std::vector<Row> makers = {
        {"XML_DOM_CreateElementNode", "ASCII", bare,
         [](Stage &s) { return node(s, XML_DOM_CreateElementNode("name")); }},
        {"XML_DOM_CreateElementNode", "Chinese", bare,
         [](Stage &s) { return node(s, XML_DOM_CreateElementNode(kChinese)); }},
        {"XML_DOM_CreateElementNodeInner", "", bare,
         [](Stage &s) { return node(s, XML_DOM_CreateElementNodeInner("1")); }},
        {"XML_DOM_CreateTextualNodeInner", "", bare,
         [](Stage &s) { return node(s, XML_DOM_CreateTextualNodeInner(2, "abc", 3)); }},
        {"XML_DOM_CreateTextNode", "", bare,
         [](Stage &s) { return node(s, XML_DOM_CreateTextNode("")); }},
        {"XML_DOM_CreateCDataNode", "", bare,
         [](Stage &s) { return node(s, XML_DOM_CreateCDataNode("abc")); }},
        {"XML_DOM_CreateElementWithText", "", bare,
         [](Stage &s) { return node(s, XML_DOM_CreateElementWithText(kChinese, "t")); }},
        {"XML_DOM_CreateElementWithText", "no text", bare,
         [](Stage &s) { return node(s, XML_DOM_CreateElementWithText("a", nullptr)); }},
        {"XML_DOM_CreateElementWithCData", "", bare,
         [](Stage &s) { return node(s, XML_DOM_CreateElementWithCData("a", "t")); }},
        {"XML_DOM_SetRoot", "", tree,
         [](Stage &s) { return code(XML_DOM_SetRoot(s.loose.get())); }},
        {"XML_DOM_SetNodeName", "ASCII", tree,
         [](Stage &s) { return code(XML_DOM_SetNodeName(s.element, "other")); }},
        {"XML_DOM_SetNodeName", "Chinese", tree,
         [](Stage &s) { return code(XML_DOM_SetNodeName(s.element, kChinese)); }},
        {"XML_DOM_SetNodeValue", "", tree,
         [](Stage &s) { return code(XML_DOM_SetNodeValue(s.text, "other")); }},
        {"XML_DOM_AddAttr", "", tree,
         [](Stage &s) { return pointer(XML_DOM_AddAttr(s.element, nullptr, "new", "v")); }},
        {"XML_DOM_AddAttr", "behind others, with a prefix", tree,
         [](Stage &s) { return pointer(XML_DOM_AddAttr(s.root.get(), "p", "new", "v")); }},
        {"XML_DOM_AddAttr", "Chinese", tree,
         [](Stage &s) { return pointer(XML_DOM_AddAttr(s.element, "xml", kChinese, "v")); }},
        {"XML_DOM_AddAttrInner", "", tree,
         [](Stage &s) { return pointer(XML_DOM_AddAttrInner(s.element, "n", "v")); }},
        {"XML_DOM_AddNodeNameSpace", "", tree,
         [](Stage &s) { return code(XML_DOM_AddNodeNameSpace(s.element, "n", "u")); }},
        {"XML_DOM_AddNodeNameSpace", "default", tree,
         [](Stage &s) { return code(XML_DOM_AddNodeNameSpace(s.element, nullptr, nullptr)); }},
        {"XML_DOM_SetNodeDefineNsVal", "new", tree,
         [](Stage &s) { return code(XML_DOM_SetNodeDefineNsVal(s.root.get(), "n", "u")); }},
        {"XML_DOM_SetNodeDefineNsVal", "replacing", tree,
         [](Stage &s) { return code(XML_DOM_SetNodeDefineNsVal(s.root.get(), "p", "other")); }},
        {"XML_DOM_AddNodeNameSpaceInner", "new", tree,
         [](Stage &s) { return code(XML_DOM_AddNodeNameSpaceInner(s.root.get(), "n", "", 0)); }},
        {"XML_DOM_AddNodeNameSpaceInner", "replacing", tree,
         [](Stage &s) { return code(XML_DOM_AddNodeNameSpaceInner(s.root.get(), "p", "u", 1)); }},
        {"XML_DOM_CopyNode", "root", tree,
         [](Stage &s) { return node(s, XML_DOM_CopyNode(s.root.get())); }},
        needless({"XML_DOM_CopyNode", "prefixes from above", tree,
                  [](Stage &s) { return node(s, XML_DOM_CopyNode(s.element)); }}),
        {"XML_DOM_CopyNode", "text", tree,
         [](Stage &s) { return node(s, XML_DOM_CopyNode(s.text)); }},
        {"XML_DOM_CopyRoot", "", tree, [](Stage &s) { return node(s, XML_DOM_CopyRoot(s.text)); }},
        needless({"XML_DOM_CopySubTree", "", tree,
                  [](Stage &s) { return code(XML_DOM_CopySubTree(s.loose.get(), s.root.get())); }}),
        needless({"XML_DOM_CopySubTree", "into itself", tree,
                  [](Stage &s) { return code(XML_DOM_CopySubTree(s.root.get(), s.root.get())); }}),
    };
    rows->insert(rows->end(), makers.begin(), makers.end());
}

// What needs no memory: it succeeds where there is none.
void addOthers(std::vector<Row> *rows) {
    const auto add = [rows](const char *function, void (*prepare)(Stage &),
                            Answer (*call)(Stage &)) {
        rows->push_back({function, "", prepare, call, false});
    };
    // The converter that tells of a name beyond ASCII is all that it needs.
    add("XML_CheckQName", bare, [](Stage &) { return code(XML_CheckQName(kChinese)); });
    add("XML_CheckNamespace", bare, [](Stage &) { return code(XML_CheckNamespace("p", "u")); });
    add("XML_Strcmp", bare, [](Stage &s) { return tells(s, shown(XML_Strcmp("a", "a"))); });
    add("XML_DOM_EncodingEnumToStr", bare,
        [](Stage &s) { return tells(s, shown(XML_DOM_EncodingEnumToStr(9))); });
    add("XML_DOM_EncodingStrToEnum", bare,
        [](Stage &s) { return tells(s, shown(XML_DOM_EncodingStrToEnum("gbk"))); });
    add("XML_DOM_GetRoot", tree, [](Stage &s) { return tells(s, shown(XML_DOM_GetRoot(s.text))); });
    add("XML_DOM_GetVersion", tree,
        [](Stage &s) { return tells(s, shown(XML_DOM_GetVersion(s.text))); });
    add("XML_DOM_GetEncoding", tree,
        [](Stage &s) { return tells(s, shown(XML_DOM_GetEncoding(s.text))); });
    add("XML_DOM_SetEncoding", tree, [](Stage &s) { return code(XML_DOM_SetEncoding(s.text, 9)); });
    add("XML_DOM_SetVersion", tree,
        [](Stage &s) { return code(XML_DOM_SetVersion(s.text, "1.0")); });
    add("XML_DOM_GetNodeParent", tree,
        [](Stage &s) { return tells(s, shown(XML_DOM_GetNodeParent(s.text))); });
    add("XML_DOM_GetFirstChild", tree,
        [](Stage &s) { return tells(s, shown(XML_DOM_GetFirstChild(s.element))); });
    add("XML_DOM_GetNextSibling", tree,
        [](Stage &s) { return tells(s, shown(XML_DOM_GetNextSibling(s.element))); });
    add("XML_DOM_GetNodeType", tree,
        [](Stage &s) { return tells(s, shown(XML_DOM_GetNodeType(s.text))); });
    add("XML_DOM_GetNodeName", tree,
        [](Stage &s) { return tells(s, shown(XML_DOM_GetNodeName(s.element))); });
    add("XML_DOM_GetNodeValue", tree,
        [](Stage &s) { return tells(s, shown(XML_DOM_GetNodeValue(s.text))); });
    add("XML_DOM_GetFirstTextChildValue", tree,
        [](Stage &s) { return tells(s, shown(XML_DOM_GetFirstTextChildValue(s.element))); });
    add("XML_DOM_GetFirstCDataChildValue", tree,
        [](Stage &s) { return tells(s, shown(XML_DOM_GetFirstCDataChildValue(s.root.get()))); });
    add("XML_DOM_AddChildNode", tree,
        [](Stage &s) { return give(s, XML_DOM_AddChildNode(s.element, s.loose.get()) == XML_OK); });
    add("XML_DOM_InsertBeforeNode", tree, [](Stage &s) {
        return give(s, XML_DOM_InsertBeforeNode(s.element, s.loose.get()) == XML_OK);
    });
    add("XML_DOM_Clip", tree, [](Stage &s) {
        XML_DOM_Clip(s.element);
        return node(s, s.element);
    });
    add("XML_DOM_DelNode", tree,
        [](Stage &s) { return nothing([&] { XML_DOM_DelNode(s.element); }); });
    add("XML_DOM_AdoptChildren", looseChildren,
        [](Stage &s) { return code(XML_DOM_AdoptChildren(s.loose.get(), s.element)); });
    add("XML_DOM_GetXPath", tree, [](Stage &s) {
        return good(XML_DOM_GetXPath(s.root->lastChild, sizeof s.buffer, s.buffer) != 0);
    });
    add("XML_DOM_ScanTree", tree,
        [](Stage &s) { return code(XML_DOM_ScanTree(s.root.get(), visit, &s.told)); });
    add("XML_DOM_SelectSingleNode", tree,
        [](Stage &s) { return tells(s, shown(XML_DOM_SelectSingleNode(s.root.get(), "more"))); });
    add("XML_DOM_GetSelectSingleNodeText", tree, [](Stage &s) {
        return tells(s, shown(XML_DOM_GetSelectSingleNodeText(s.root.get(), "more")));
    });
    add("XML_DOM_GetSelectSingleNodeAsInt64", numbers, [](Stage &s) {
        long long value = 0;
        const Answer answer = code(XML_DOM_GetSelectSingleNodeAsInt64(s.element, "n", &value));
        s.told = std::to_string(value);
        return answer;
    });
    add("XML_DOM_GetSelectSingleNodeAsUInt64", numbers, [](Stage &s) {
        unsigned long long value = 0;
        const Answer answer = code(XML_DOM_GetSelectSingleNodeAsUInt64(s.element, "n", &value));
        s.told = std::to_string(value);
        return answer;
    });
    add("DOM_XPath_ParseNextXPathContext", bare, [](Stage &s) {
        return alongPath(s, "a/b", [](Stage &stage, DOM_XPath_Cursor *cursor) {
            while (DOM_XPath_ParseNextXPathContext(cursor)) stage.told += cursor->step;
            return Answer::kGood;
        });
    });
    add("DOM_XPath_ParseNextXPath4Root", bare, [](Stage &s) {
        return alongPath(s, "/a/b", [](Stage &stage, DOM_XPath_Cursor *cursor) {
            while (DOM_XPath_ParseNextXPath4Root(cursor)) stage.told += cursor->step;
            return Answer::kGood;
        });
    });
    add("DOM_XPath_GetNodeFromContext", tree, [](Stage &s) {
        return alongPath(s, "more", [](Stage &stage, DOM_XPath_Cursor *cursor) {
            DOM_XPath_ParseNextXPathContext(cursor);
            return tells(stage, shown(DOM_XPath_GetNodeFromContext(stage.root.get(), cursor)));
        });
    });
    add("DOM_XPath_GetRootElement", tree, [](Stage &s) {
        return alongPath(s, "/r", [](Stage &stage, DOM_XPath_Cursor *cursor) {
            DOM_XPath_ParseNextXPath4Root(cursor);
            return tells(stage, shown(DOM_XPath_GetRootElement(stage.root.get(), cursor)));
        });
    });
    add("XML_DOM_SetAttrNsInner", tree,
        [](Stage &s) { return code(XML_DOM_SetAttrNsInner(s.root->firstAttr, "p")); });
    add("XML_DOM_DelAttr", tree,
        [](Stage &s) { return nothing([&] { XML_DOM_DelAttr(s.root.get(), "p", "b"); }); });
    add("XML_DOM_GetFirstAttr", tree,
        [](Stage &s) { return tells(s, shown(XML_DOM_GetFirstAttr(s.root.get()))); });
    add("XML_DOM_GetNextAttr", tree,
        [](Stage &s) { return tells(s, shown(XML_DOM_GetNextAttr(s.root->firstAttr))); });
    add("XML_DOM_GetAttrValByHandle", tree,
        [](Stage &s) { return tells(s, shown(XML_DOM_GetAttrValByHandle(s.root->firstAttr))); });
    add("XML_DOM_GetAttrNameSpace", tree, [](Stage &s) {
        const char *name = nullptr, *ns = nullptr;
        const Answer answer = code(XML_DOM_GetAttrNameSpace(s.root->lastAttr, &name, &ns));
        s.told = shown(name) + shown(ns);
        return answer;
    });
    add("XML_DOM_GetNodeNsAttribute", tree, [](Stage &s) {
        return tells(s, shown(XML_DOM_GetNodeNsAttribute(s.root.get(), "urn:p", "b")));
    });
    add("XML_DOM_GetNodeAttrValByName", tree,
        [](Stage &s) { return tells(s, shown(XML_DOM_GetNodeAttrValByName(s.root.get(), "a"))); });
    add("XML_DOM_SetNodeNameSpace", tree,
        [](Stage &s) { return code(XML_DOM_SetNodeNameSpace(s.root.get(), "p")); });
    add("XML_DOM_GetNodeNameSpace", tree, [](Stage &s) {
        const char *prefix = nullptr, *ns = nullptr;
        const Answer answer = code(XML_DOM_GetNodeNameSpace(s.element, &prefix, &ns));
        s.told = shown(prefix) + shown(ns);
        return answer;
    });
}

}  // namespace

std::vector<Row> treeRows() {
    std::vector<Row> rows;
    addMakers(&rows);
    addOthers(&rows);
    return rows;
}

}  // namespace failures
