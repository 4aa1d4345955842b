// The validator, with a recursive schema of every feature (schemas/everything.xsd): documents that
// follow the schema are accepted, those that break it in a way that is known are not, and whatever
// the verdict, it is the same each time and for what is written of the tree and read again.
#include <cstring>
#include <string>

#include "compactxml.h"
#include "everything.h"
#include "fuzz/support/converters.h"
#include "fuzz/support/document_writer.h"
#include "fuzz/support/fuzz_input.h"
#include "fuzz/support/require.h"
#include "fuzz/support/target.h"
#include "tests/support/owners.h"

namespace {

using fuzz::Expected;
using support::NodePtr;

constexpr std::uint32_t kHighestCode = 12, kUnknownRoot = 12;

const SchemaRoot &schema() {
    static SchemaRoot root;
    static const bool ready = [] {
        Schema_InitRoot(&root);
        return SchemaReg_everything(&root) == XML_OK;
    }();
    fuzz::require(ready, "the schema is not registered");
    return root;
}

std::string shown(const char *text) {
    return text ? text : "(null)";
}

std::string pathOf(const XML_DOM_Node *node) {
    char path[4096] = "";
    XML_DOM_GetXPath(node, sizeof path, path);
    return path;
}

struct Verdict {
    bool valid;
    std::string text;  // all there is to know of it
};

Verdict verdictOf(XML_DOM_Node *document, std::uint32_t mode) {
    SchemaErrorInfo info;
    std::memset(&info, 0xA5, sizeof info);
    fuzz::require(Schema_ValidateXmlEx(document, &schema(), mode, &info) == XML_OK,
                  "a document is not looked at");
    fuzz::require(info.code <= kHighestCode, "an unknown code");
    char message[2048];
    std::strcpy(message, "untouched");
    fuzz::require(Schema_GetErrorDesc(&info, sizeof message, message) == XML_OK,
                  "an error without a description");
    if (info.code == 0) {
        const bool zeros = !info.node && !info.name && !info.ns && !info.attrName && !info.attrNs;
        fuzz::require(zeros, "an error's fields without an error");
        fuzz::require(std::strcmp(message, "untouched") == 0, "a message without an error");
        return {true, "valid"};
    }
    fuzz::require(std::strcmp(message, "untouched") != 0, "an error without a message");
    fuzz::require(std::memchr(info.text, 0, sizeof info.text) != nullptr, "a text without end");
    // A root that no schema knows is told without its place.
    fuzz::requireOr((info.node == nullptr) == (info.code == kUnknownRoot),
                    "an error without a place", [&] { return std::string(message); });
    fuzz::require(!info.node || XML_DOM_GetRoot(info.node) == document, "an error in another tree");
    const std::string path = info.node ? pathOf(info.node) : "";
    return {false, std::to_string(info.code) + ' ' + path + ' ' + shown(info.name) + '{' +
                       shown(info.ns) + "} " + shown(info.attrName) + '{' + shown(info.attrNs) +
                       "} " + info.text + '\n' + message};
}

struct Shape {
    bool hasQuote = false;
    bool hasTextsSideBySide = false;
};

// Whether a tree comes out of a document that is written of it as it was.
uint32_t look(XML_DOM_Node *node, void *userData, uint32_t) {
    Shape &shape = *static_cast<Shape *>(userData);
    for (const XML_DOM_Attr *attr = node->firstAttr; attr; attr = attr->next) {
        shape.hasQuote |= std::strchr(attr->value, '"') != nullptr;
    }
    for (const XML_DOM_NsDecl *decl = node->firstNsDecl; decl; decl = decl->next) {
        shape.hasQuote |= std::strchr(decl->namespaceName, '"') != nullptr;
    }
    shape.hasTextsSideBySide |= node->type == XML_DOM_NODE_TEXT && node->nextSibling &&
                                node->nextSibling->type == XML_DOM_NODE_TEXT;
    return 0;
}

void requireSameWhenReadAgain(XML_DOM_Node *document, const Verdict &verdict) {
    Shape shape;
    fuzz::require(XML_DOM_ScanTree(document, look, &shape) == XML_OK, "no scan");
    if (shape.hasQuote || shape.hasTextsSideBySide) return;
    char *text = nullptr;
    std::uint32_t length = 0;
    if (XML_DOM_TranslateStr(document, 0, &text, &length) != XML_OK) return;
    const support::TextPtr owner(text);
    const NodePtr again(XML_DOM_BuildTreeByMem(text, length, 0, nullptr));
    fuzz::requireOr(again != nullptr, "what was written is not read",
                    [&] { return std::string(text, length); });
    fuzz::requireSame(verdict.text, verdictOf(again.get(), 0).text,
                      "the document read again has another verdict");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    fuzz::holdConverters();
    fuzz::FuzzInput input(data, size);
    std::string text;
    Expected expected = Expected::kUnknown;
    const bool written = input.byte() % 4 != 3;
    if (written) {
        fuzz::DocumentWriter writer(schema(), input);
        text = writer.write();
        expected = writer.expected();
    } else {
        text = input.rest();
    }
    const NodePtr document(
        XML_DOM_BuildTreeByMem(text.data(), static_cast<std::uint32_t>(text.size()), 0, nullptr));
    fuzz::requireOr(document || !written, "the document is not built", [&] { return text; });
    if (!document) return 0;

    const Verdict verdict = verdictOf(document.get(), 0);
    const auto details = [&] { return verdict.text + '\n' + text; };
    fuzz::requireOr(expected != Expected::kValid || verdict.valid,
                    "a document that follows the schema is refused", details);
    fuzz::requireOr(expected != Expected::kInvalid || !verdict.valid,
                    "a document that breaks the schema is accepted", details);
    fuzz::requireSame(verdict.text, verdictOf(document.get(), 0).text,
                      "the second verdict differs");
    // No declaration of this schema has another namespace for mode 1.
    fuzz::requireSame(verdict.text, verdictOf(document.get(), 1).text, "mode 1 differs");
    requireSameWhenReadAgain(document.get(), verdict);
    return 0;
}
