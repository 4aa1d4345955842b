// Failing memory: a job is done with one allocation, or all from one on, refused. It then gives
// what it gives otherwise or is refused, and leaves nothing behind.
#include <cstring>
#include <string>

#include "compactxml.h"
#include "everything.h"
#include "fuzz/support/converters.h"
#include "fuzz/support/document.h"
#include "fuzz/support/require.h"
#include "fuzz/support/target.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"
#include "tests/support/owners.h"
#include "tests/support/tree_dump.h"

namespace {

using support::FaultyHeap;
using support::NodePtr;

struct Fault {
    std::size_t failAt;
    bool persistent;
};

// What became of a job: refused, or an answer to compare.
struct Outcome {
    bool refused = true;
    std::string answer;
};

// Does a job with all memory there and then with a fault. The job frees what it makes.
template <typename Job>
void requireSafe(const Fault &fault, const char *name, Job job) {
    const Outcome expected = job();
    Outcome outcome;
    bool failed = false, optional = false;
    std::size_t blocks = 0;
    {
        const FaultyHeap heap(fault.failAt, fault.persistent);
        outcome = job();
        failed = heap.failed();
        optional = heap.failedOptionally();
        blocks = heap.blocksInUse();
    }
    fuzz::requireOr(blocks == 0, "memory is lost", [name] { return std::string(name); });
    if (!failed || optional || !outcome.refused) {
        fuzz::require(outcome.refused == expected.refused, name);
        fuzz::requireSame(expected.answer, outcome.answer, name);
    }
}

// A tree as text through operator new, which is not part of the account.
std::string shown(const XML_DOM_Node *root) {
    return support::describeTree(root);
}

Outcome build(const support::Feed &feed) {
    char error[512] = "";
    const NodePtr root(feed.build(sizeof error, error));
    return {root == nullptr, root ? shown(root.get()) : ""};
}

Outcome parse(const support::Feed &feed) {
    const support::RecordedParse parse = record(feed);
    if (parse.result != XML_OK) return {};
    std::string calls;
    for (const std::string &call : parse.calls) calls += call + '\n';
    return {false, calls};
}

Outcome write(const XML_DOM_Node *root) {
    char *text = nullptr;
    std::uint32_t length = 0;
    if (XML_DOM_TranslateStr(root, 0, &text, &length) != XML_OK) return {};
    const support::TextPtr owner(text);
    return {false, {text, length}};
}

Outcome copy(const XML_DOM_Node *root) {
    const NodePtr copy(XML_DOM_CopyRoot(root));
    if (!copy || XML_DOM_CopySubTree(copy.get(), root) != XML_OK) return {};
    return {false, shown(copy.get())};
}

// An edit that is refused changes nothing.
Outcome edit(XML_DOM_Node *root, unsigned kind) {
    const std::string before = support::dumpTree(root);
    Outcome outcome;
    if (kind % 4 == 0) {
        outcome.refused = XML_DOM_AddAttr(root, nullptr, "added", "value") == nullptr;
        if (!outcome.refused) XML_DOM_DelAttr(root, nullptr, "added");
    } else if (kind % 4 == 1) {
        const NodePtr child(XML_DOM_CreateElementWithText("child", "text"));
        outcome.refused = child == nullptr;
    } else if (kind % 4 == 2) {
        const std::string name = root->name;
        outcome.refused = XML_DOM_SetNodeName(root, "renamed") != XML_OK;
        // The name that was is longer or shorter, so setting it again takes memory as well.
        if (!outcome.refused) return {false, root->name};
    } else {
        outcome.refused = XML_DOM_AddNodeNameSpace(root, "added", "urn:added") != XML_OK;
        if (!outcome.refused) return {false, "declared"};
    }
    if (outcome.refused) {
        fuzz::requireSame(before, support::dumpTree(root), "a refused edit changed the tree");
    }
    return outcome;
}

Outcome validate(XML_DOM_Node *root) {
    SchemaRoot schema;
    Schema_InitRoot(&schema);
    const bool registered = SchemaReg_everything(&schema) == XML_OK;
    SchemaErrorInfo info{};
    const bool done = registered && Schema_ValidateXml(root, &schema, &info) == XML_OK;
    Outcome outcome{!done, std::to_string(info.code) + ' ' + info.text};
    fuzz::require(done || !registered || info.code == 0, "an error of a validation that failed");
    if (registered && done && info.code == 0) outcome.answer = "valid";
    SchemaDereg_everything(&schema);
    Schema_ExitRoot(&schema);
    if (outcome.refused) outcome.answer.clear();
    return outcome;
}

Outcome append(std::string_view bytes, std::uint32_t target) {
    const support::StreamPtr stream(XML_IO_MemOutStreamCreate(XML_ENCODING_UTF_8, target));
    if (!stream) return {};
    for (std::size_t at = 0; at < bytes.size(); at += 100) {
        const std::string_view piece = bytes.substr(at, 100);
        const auto length = static_cast<std::uint32_t>(piece.size());
        if (XML_IO_OutStreamAppend(stream.get(), piece.data(), length) != XML_OK) return {};
    }
    std::uint32_t length = 0;
    const char *data = XML_IO_MemOutStreamGetBuf(stream.get(), &length);
    return {false, data ? std::string(data, length) : ""};
}

void testTree(const support::Feed &feed, const Fault &fault, unsigned job, unsigned kind) {
    const NodePtr root(feed.build(0, nullptr));
    if (!root) return;
    switch (job) {
        case 3:
            return requireSafe(fault, "writing", [&] { return write(root.get()); });
        case 4:
            return requireSafe(fault, "copying", [&] { return copy(root.get()); });
        case 5:
            return requireSafe(fault, "validating", [&] { return validate(root.get()); });
        default:
            break;
    }
    // Of two edits the second finds what the first has done, so each has a tree of its own, which
    // is freed outside of the account that its blocks belong to.
    NodePtr tree(feed.build(0, nullptr));
    const FaultyHeap heap(fault.failAt, fault.persistent);
    edit(tree.get(), kind);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    fuzz::holdConverters();
    fuzz::FuzzInput input(data, size);
    const unsigned job = input.byte() % 8, kind = input.byte();
    const bool persistent = input.flag();
    const Fault fault{1u + input.pair() % 600, persistent};
    const fuzz::Document document(input);
    if (document.bytes().empty()) return 0;
    const bool cut = (kind & 0x80) != 0;
    const support::Feed feed = cut ? document.cut() : document.memory();
    switch (job) {
        case 0:
        case 1:
            requireSafe(fault, "building", [&] { return build(feed); });
            break;
        case 2:
            requireSafe(fault, "parsing", [&] { return parse(feed); });
            break;
        case 7:
            requireSafe(fault, "appending", [&] { return append(document.bytes(), kind % 13); });
            break;
        default:
            testTree(feed, fault, job, kind);
    }
    return 0;
}
