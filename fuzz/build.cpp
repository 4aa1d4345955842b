// The builder and the serializer: the same tree for every way of handing a document over, and what
// is written of a tree gives that tree again.
#include <cstring>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "fuzz/support/converters.h"
#include "fuzz/support/document.h"
#include "fuzz/support/require.h"
#include "fuzz/support/target.h"
#include "tests/support/feeds.h"
#include "tests/support/model_serializer.h"
#include "tests/support/namespaces.h"
#include "tests/support/owners.h"
#include "tests/support/tree_dump.h"

namespace {

using support::NodePtr;
using support::RecordedBuild;

constexpr std::string_view kNoConversion = "transition IO stream enCoding error.";
constexpr std::string_view kUnconvertible = "failed to convert encoding.";

// A message without the piece of the document that it quotes, which depends on the buffers.
std::string withoutSnippet(const std::string &error) {
    const std::size_t begin = error.find(":\""), end = error.rfind("\", ");
    if (begin == error.npos || end == error.npos || end < begin) return error;
    return error.substr(0, begin) + error.substr(end);
}

void requireSameBuild(const RecordedBuild &first, const RecordedBuild &other, const char *text) {
    fuzz::require(first.built == other.built, text);
    fuzz::requireSame(first.tree, other.tree, text);
    // What a message quotes may be unconvertible where the other way quotes something else.
    if (other.error == kUnconvertible) return;
    fuzz::requireSame(withoutSnippet(first.error), withoutSnippet(other.error), text);
}

bool hasQuote(const char *text) {
    return std::strchr(text, '"') != nullptr;
}

// Quotation marks are not escaped, so that values which hold them do not come out well-formed.
uint32_t findQuote(XML_DOM_Node *node, void *found, uint32_t) {
    for (const XML_DOM_Attr *attr = node->firstAttr; attr; attr = attr->next) {
        *static_cast<bool *>(found) |= hasQuote(attr->value);
    }
    for (const XML_DOM_NsDecl *decl = node->firstNsDecl; decl; decl = decl->next) {
        *static_cast<bool *>(found) |= hasQuote(decl->namespaceName);
    }
    return 0;
}

// Texts that only a comment or the like kept apart are one text when they are read again.
uint32_t joinTexts(XML_DOM_Node *parent, void *, uint32_t) {
    XML_DOM_Node *child = parent->firstChild;
    while (child && child->nextSibling) {
        XML_DOM_Node *next = child->nextSibling;
        if (child->type != XML_DOM_NODE_TEXT || next->type != XML_DOM_NODE_TEXT) {
            child = next;
            continue;
        }
        const std::string joined = std::string(child->value) + next->value;
        fuzz::require(XML_DOM_SetNodeValue(child, joined.c_str()) == XML_OK, "no text is set");
        XML_DOM_DelNode(next);
    }
    return 0;
}

// What is written of a node; false when it is refused.
bool write(const XML_DOM_Node *node, uint32_t flags, std::string *written) {
    char *text = nullptr;
    std::uint32_t length = 0;
    if (XML_DOM_TranslateStr(node, flags, &text, &length) != XML_OK) {
        fuzz::require(text == nullptr, "a refusal that gives a text");
        return false;
    }
    const support::TextPtr owner(text);
    *written = std::string(text, length);
    return true;
}

uint32_t collect(void *context, const char *bytes, uint32_t length) {
    static_cast<std::string *>(context)->append(bytes, length);
    return 0;
}

// All encodings hold ASCII, and these every character.
bool holdsEverything(std::uint32_t encoding) {
    return encoding != XML_ENCODING_GB2312 && encoding != XML_ENCODING_GBK;
}

bool isAscii(const std::string &text) {
    for (const char c : text) {
        if (static_cast<unsigned char>(c) >= 0x80) return false;
    }
    return true;
}

// In GB18030 nothing is converted, so the pieces are those of the model.
void requireModelWrites(XML_DOM_Node *root) {
    const std::uint32_t before = XML_DOM_GetEncoding(root);
    fuzz::require(XML_DOM_SetEncoding(root, XML_ENCODING_GB18030) == XML_OK, "no encoding is set");
    std::string expected, written;
    const support::ModelSerializer model([&expected](std::string_view piece) {
        expected += piece;
        return 0u;
    });
    fuzz::require(model.document(root, 0) == 0, "the model fails");
    fuzz::require(write(root, 0, &written), "nothing is written in GB18030");
    fuzz::requireSame(written, expected, "the model writes something else");
    fuzz::require(XML_DOM_SetEncoding(root, before) == XML_OK, "no encoding is set");
}

void requireRoundTrip(XML_DOM_Node *root, bool ascii) {
    std::string written;
    if (!write(root, 0, &written)) {
        fuzz::require(!holdsEverything(XML_DOM_GetEncoding(root)) || !ascii,
                      "ASCII text is not written");
        return;
    }
    std::string pieces;
    fuzz::require(XML_DOM_OutPutTranslateStr(root, 0, collect, &pieces) == XML_OK,
                  "a sink is refused what a buffer is given");
    fuzz::requireSame(written, pieces, "the pieces are not the whole");

    bool quote = false;
    fuzz::require(XML_DOM_ScanTree(root, findQuote, &quote) == XML_OK, "no scan");
    if (quote) return;
    char error[512] = "";
    const NodePtr again(XML_DOM_BuildTreeByMem(
        written.data(), static_cast<std::uint32_t>(written.size()), sizeof error, error));
    fuzz::requireOr(again != nullptr, "what was written cannot be read",
                    [&] { return written + "\n" + error; });
    fuzz::require(XML_DOM_ScanTree(root, joinTexts, nullptr) == XML_OK, "no scan");
    fuzz::requireSame(support::describeTree(root), support::describeTree(again.get()),
                      "the tree read again is another");
    std::string writtenAgain;
    fuzz::require(write(again.get(), 0, &writtenAgain), "the tree read again is not written");
    // A blank at the end of a text is escaped no longer where another text follows it now.
    fuzz::require(write(root, 0, &written), "the joined tree is not written");
    fuzz::requireSame(written, writtenAgain, "the tree read again is written differently");
}

void requireCopy(const XML_DOM_Node *root) {
    const std::string before = support::describeTree(root);
    const NodePtr copy(XML_DOM_CopyRoot(root));
    fuzz::require(copy != nullptr, "the root is not copied");
    fuzz::require(XML_DOM_CopySubTree(copy.get(), root) == XML_OK, "the tree is not copied");
    fuzz::requireSame(before, support::describeTree(copy.get()), "the copy is another tree");
    fuzz::requireSame(before, support::describeTree(root), "the copy changed the tree");
    fuzz::requireSame("", support::brokenLink(copy.get()), "the copy has a broken link");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    fuzz::holdConverters();
    fuzz::FuzzInput input(data, size);
    const unsigned ways = input.byte();
    const fuzz::Document document(input);
    if (document.bytes().empty()) return 0;

    char error[512] = "";
    const NodePtr root(document.memory().build(sizeof error, error));
    const RecordedBuild first{root != nullptr, support::describeTree(root.get()), error};
    const RecordedBuild cut = support::recordBuild(document.cut());
    // All bytes of a memory must convert, and those of a file as far as they are read. What tells
    // so may quote bytes that do not convert either.
    if (!first.error.ends_with(kNoConversion) && first.error != kUnconvertible) {
        requireSameBuild(first, cut, "a list differs from memory");
    }
    if ((ways & 3) == 3) {
        requireSameBuild(cut, support::recordBuild(document.finelyCut()), "two cuts differ");
    }
    if ((ways & 12) == 12) {
        requireSameBuild(cut, support::recordBuild(document.file()), "a file differs from a list");
    }
    fuzz::require(root != nullptr || error[0] != '\0', "a refusal without a message");
    if (!root) return 0;

    fuzz::require(error[0] == '\0', "a message without a refusal");
    fuzz::require(document.memory().parse(nullptr) == XML_OK, "the parser refuses what is built");
    fuzz::requireSame("", support::brokenLink(root.get()), "a broken link");
    if (!document.isLong()) {
        fuzz::requireSame("", support::wrongNamespace(root.get()), "a wrong namespace");
        requireModelWrites(root.get());
        requireCopy(root.get());
    }
    requireRoundTrip(root.get(), isAscii(first.tree));
    return 0;
}
