#include "tests/failures/stage.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "tests/support/sample_trees.h"
#include "tests/support/texts.h"
#include "tests/support/tree_dump.h"
#include "tests/support/written.h"

namespace failures {
namespace {

using support::Feed;

std::string contentOf(const XML_IO_OutStream *stream) {
    if (!stream || stream->kind != 0) return "";
    const auto *buffer = reinterpret_cast<const XML_IO_MemBuf *>(stream->target);
    return {buffer->data ? buffer->data : "", buffer->length};
}

std::string contentOf(const support::TemporaryFile *file) {
    if (!file) return "";
    std::ifstream stream(file->path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string stateOf(const XML_IO_InStream *stream) {
    if (!stream) return "no stream";
    return "state " + std::to_string(stream->state) + " encoding " +
           std::to_string(stream->encoding) + " kept " + std::to_string(stream->cur - stream->mark);
}

std::string listOf(const SchemaObjectList &list) {
    return std::to_string(list.count) + (list.items ? " " : " none ");
}

std::string listsOf(const SchemaRoot &root) {
    return listOf(root.simpleTypes) + listOf(root.attributes) + listOf(root.elements) +
           listOf(root.complexTypes) + listOf(root.attributeGroups);
}

std::string textOf(const char *text) {
    return text ? text : "(null)";
}

// Patterns: one that the library matches by itself, and one that only the C library can.
const SchemaFacet kPatterns[] = {
    {"^[a-z]{1,8}$", SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING},
    {"^([(])\\1*x$", SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING},
};
const SchemaSimpleType *const kStringBase[] = {Schema_BLDIN_string()};
const SchemaSimpleType kPatterned[] = {
    {kStringBase, &kPatterns[0], "name", nullptr, 0, 1, 1, 0},
    {kStringBase, &kPatterns[1], "other", nullptr, 0, 1, 1, 0},
};

}  // namespace

OpenBuild::OpenBuild() {
    EXPECT_EQ(cxml::XML_DOM_BuildInit(&handler, &state, sizeof error, error), XML_OK);
    context.handler = &handler;
    context.version = "1.0";
    const char *declaration[] = {"p", "urn:p"};
    XML_SAX_StartElementNs(&context, "a", nullptr, nullptr, 1, declaration, 0, 0, nullptr);
    EXPECT_EQ(context.status, 0);
}

OpenBuild::~OpenBuild() {
    XML_DOM_DelNode(state.root);
    cxml::XML_DOM_BuildFini(&handler);
}

Stage::~Stage() {
    std::free(text_);
    XML_IO_OutStreamDestroy(out_);
    if (input) feed->close(input);
    for (SchemaObjectList *list : {&bareRoot.simpleTypes, &bareRoot.complexTypes}) {
        std::free(static_cast<void *>(list->items));
    }
}

void Stage::prepareTree(std::uint32_t encoding) {
    root = support::richDocument(encoding);
    element = root->firstChild;
    text = element->firstChild;
    // Enough for several growths of what is written.
    for (int i = 0; i < 40; ++i) {
        XML_DOM_Node *more = XML_DOM_CreateElementWithText("more", "\xD6\xD0 and so on");
        EXPECT_EQ(XML_DOM_AddChildNode(root.get(), more), XML_OK);
    }
    loose.reset(XML_DOM_CreateElementNode("loose"));
}

void Stage::prepareFeed(Feed::Kind kind, std::string_view document) {
    if (kind == Feed::Kind::kMemory) feed = support::memoryFeed(document);
    if (kind == Feed::Kind::kFile) feed = support::fileFeed(document.substr(0, fileLimit_));
    if (kind == Feed::Kind::kList) feed = support::listInPieces(document, 700);
}

void Stage::prepareInput(Feed::Kind kind, std::string_view document) {
    prepareFeed(kind, document);
    input = feed->open();
    EXPECT_NE(input, nullptr);
}

void Stage::prepareMemoryOutput(std::uint32_t source, std::uint32_t target) {
    output.reset(XML_IO_MemOutStreamCreate(source, target));
    EXPECT_EQ(XML_IO_OutStreamAppend(output.get(), "before ", 7), XML_OK);
}

void Stage::prepareOutputPath() {
    outputFile = std::make_unique<support::TemporaryFile>("");
}

void Stage::prepareFileOutput(std::uint32_t source, std::uint32_t target) {
    prepareOutputPath();
    output.reset(XML_IO_FileOutStreamCreate(outputFile->path(), source, target));
    EXPECT_EQ(XML_IO_OutStreamAppend(output.get(), "before ", 7), XML_OK);
}

void Stage::prepareSchema() {
    schema = std::make_unique<support::SchemaMaker>();
    support::SchemaMaker &maker = *schema;
    maker.declare(support::SchemaMaker::ofSimple("name", &kPatterned[0]));
    maker.declare(support::SchemaMaker::ofSimple("other", &kPatterned[1]));
    maker.declare(support::SchemaMaker::ofSimple("qname", Schema_BLDIN_QName()));
    SchemaComplexType all{};
    all.particle = maker.model("all(x, y{0,1})");
    maker.declare(support::SchemaMaker::ofComplex("d", maker.complexType(all)));
    maker.addElement("r",
                     "seq(choice{0,u}(name, other, qname, d, seq(x, z{0,u})), any{2,2}, "
                     "choice(end, seq{1,2}(e{0,u}, f)))");
    std::string document = "<r>";
    for (int i = 0; i < 3; ++i) {
        document += "<name>abc</name><other>(x</other><qname>\xE4\xB8\xAD\xE6\x96\x87</qname>";
        document += "<d><y/><x/></d><x/><z/><z/>";
    }
    root = support::parsed(document + "<any1/><any2/><e/><e/><f/><f/></r>");
    EXPECT_TRUE(root);
}

std::string Stage::image() const {
    std::string all = support::dumpTree(root.get()) + support::dumpTree(loose.get());
    all += listsOf(bareRoot);
    if (schema) all += listsOf(schema->root());
    all += std::to_string(report.code) + textOf(report.name) + report.text;
    return all + buffer;
}

std::string Stage::bytes() const {
    if (input) {
        return {reinterpret_cast<const char *>(input->mark),
                static_cast<std::size_t>(input->end - input->mark)};
    }
    return contentOf(output.get()) + contentOf(outputFile.get());
}

std::string Stage::heldBack() const {
    if (!output) return "";
    return {reinterpret_cast<const char *>(output->pendingBytes), output->pendingCount};
}

long Stage::openFiles() const {
    const bool reads = input && feed->kind() == Feed::Kind::kFile;
    return (reads ? 1 : 0) + (output && output->kind == 1 ? 1 : 0);
}

std::string Stage::account() const {
    std::string all = support::describeTree(root.get()) + support::describeTree(loose.get()) +
                      support::describeTree(node.get());
    all += "text " + (text_ ? std::string(text_, length_) : "none") + "\nstreams " + heldBack() +
           contentOf(out_) + (out_ ? " one\n" : " none\n") + stateOf(input) + "\n" + bytes() +
           "\ntold " + told + "\nnote " + note + "\n";
    if (build) all += support::describeTree(build->state.root) + build->error;
    all += listsOf(bareRoot);
    if (schema) all += listsOf(schema->root());
    all += std::to_string(report.code) + textOf(report.name) + report.text;
    return all + buffer;
}

std::string sampleDocument(std::string_view encoding) {
    std::string text =
        "<!-- 注释 --><?target data?><!DOCTYPE 配置 [<!ENTITY a 'b'>]>\n"
        "<p:配置 xmlns:p='空间' xmlns='urn:d' p:名='交换机' a='&lt;&#x4E8C;'>\n";
    for (int i = 0; i < 20; ++i) {
        text +=
            "<端口 id='" + std::to_string(i) + "' xmlns:q='urn:q'>虚拟 &amp; 局域网<q:b/></端口>";
    }
    text += std::string(700, 't') + "<![CDATA[<数据>]]><c v='" + std::string(600, 'v') + "'/>";
    text += "</p:配置>\n<!-- end -->";
    if (encoding.empty()) return "\xFF\xFE" + support::inEncoding(XML_ENCODING_UTF_16LE, text);
    text = "<?xml version='1.0' encoding='" + std::string(encoding) + "'?>\n" + text;
    return support::inEncoding(XML_DOM_EncodingStrToEnum(std::string(encoding).c_str()), text);
}

}  // namespace failures
