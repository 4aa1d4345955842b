#include "tests/threads/jobs.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "tests/schema/feature_schema.h"
#include "tests/support/written.h"

namespace threads {
namespace {

using support::NodePtr;
using support::parsed;

// ---------------------------------------------------------------- the schema

const SchemaFacet kPattern = {"^([A-Z]{2}-)?[0-9]{1,3}$", SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING};

// A registered element <code> whose values have to match.
const SchemaElementDecl &codeElement() {
    static const SchemaSimpleType *const kBase = Schema_BLDIN_string();
    static const SchemaSimpleType kType = {.members = &kBase,
                                           .facets = &kPattern,
                                           .name = "code",
                                           .ns = nullptr,
                                           .builtinCode = 0,
                                           .facetCount = 1,
                                           .memberCount = 0,
                                           .flags16 = 0};
    static const SchemaElementDecl kDecl = [] {
        SchemaElementDecl decl{};
        decl.name = "code";
        decl.type = &kType;
        decl.typeKind = SCHEMA_KIND_SIMPLE_TYPE;
        decl.minOccurs = decl.maxOccurs = 1;
        return decl;
    }();
    return kDecl;
}

// ---------------------------------------------------------------- the jobs

std::string featureDocument(std::size_t number) {
    constexpr const char *kContents[] = {
        "<base id='1'><name>n</name><limit>50</limit><range>80,443</range></base>",
        "<base id='x'><name>n</name></base>",
        "<extended id='1'><name>n</name><until>2026-01-02</until></extended>",
        "<value unit='pps'>-5</value><small>7</small>",
        "<small>101</small>",
        "<member>yes</member>",
        "<fixed>v1</fixed><o:one/>",
    };
    return "<features xmlns='urn:features' xmlns:f='urn:features' xmlns:o='urn:other'>" +
           std::string(kContents[number % std::size(kContents)]) + "</features>";
}

std::string codeDocument(std::size_t number) {
    return number % 2 == 0 ? "<code>AB-" + std::to_string(number) + "</code>" : "<code>AB-x</code>";
}

void tell(std::string &told, std::string_view what) {
    told += what;
    told += '\n';
}

void validate(std::string &told, const std::string &document, const SchemaRoot &root) {
    const NodePtr tree = parsed(document);
    SchemaErrorInfo error;
    const std::uint32_t result = Schema_ValidateXml(tree.get(), &root, &error);
    char message[1024] = "";
    Schema_GetErrorDesc(&error, sizeof message, message);
    tell(told, std::to_string(result) + ' ' + std::to_string(error.code) + ' ' + message);
}

void parse(std::string &told, const std::string &document) {
    XML_SAX_Handler handler{};
    std::string calls;
    handler.userData = &calls;
    handler.startElementNs = [](XML_Parser_Ctx *context, const char *name, const char *,
                                const char *, int, const char **, int, int, const char **) {
        *static_cast<std::string *>(context->handler->userData) += name;
    };
    handler.characters = [](XML_Parser_Ctx *context, const char *text, int length) {
        static_cast<std::string *>(context->handler->userData)
            ->append(text, static_cast<std::size_t>(length));
    };
    const std::uint32_t result =
        XML_Parser_ByMem(document.data(), static_cast<std::uint32_t>(document.size()), &handler);
    tell(told, std::to_string(result) + ' ' + calls);
}

// Text of many languages, which is converted to the tree's encoding and to another one.
std::string textDocument(std::size_t number) {
    std::string text = "<r xmlns:p='urn:p'>";
    for (std::size_t i = 0; i < 40; ++i) {
        text += "<p:item n='" + std::to_string(i * number) +
                "'>中文 \xC3\xA5 \xF0\x9F\x98\x80 &lt;" + std::string(number, 'x') + "</p:item>";
    }
    return text + "</r>";
}

void edit(XML_DOM_Node *root, std::size_t number) {
    const NodePtr extra(XML_DOM_CopyNode(root->firstChild));
    XML_DOM_CopySubTree(root->lastChild, root);
    XML_DOM_AddAttr(root, nullptr, "number", std::to_string(number).c_str());
    XML_DOM_AddNodeNameSpace(root, "q", "urn:q");
    XML_DOM_SetNodeNameSpace(root, "q");
    XML_DOM_InsertBeforeNode(root->firstChild, XML_DOM_CreateElementWithText("first", "text"));
    for (std::size_t i = 0; i < number; ++i) XML_DOM_DelNode(root->lastChild->lastChild);
}

void buildAndWrite(std::string &told, std::size_t number) {
    const NodePtr tree = parsed(textDocument(number));
    if (!tree) return tell(told, "not built");
    edit(tree.get(), number);
    const char *text = XML_DOM_GetSelectSingleNodeText(tree.get(), "/r/item");
    tell(told, text ? text : "nothing selected");
    constexpr std::uint32_t kEncodings[] = {XML_ENCODING_UTF_8,    XML_ENCODING_UTF_16LE,
                                            XML_ENCODING_UTF_16BE, XML_ENCODING_GB18030,
                                            XML_ENCODING_UTF_32,   XML_ENCODING_UCS_4BE};
    XML_DOM_SetEncoding(tree.get(), kEncodings[number % std::size(kEncodings)]);
    char *written = nullptr;
    std::uint32_t length = 0;
    const std::uint32_t result = XML_DOM_TranslateStr(tree.get(), 0, &written, &length);
    const support::TextPtr owner(written);
    tell(told, std::to_string(result));
    if (result != XML_OK) return;
    tell(told, {written, length});
    const NodePtr again(XML_DOM_BuildTreeByMem(written, length, 0, nullptr));
    tell(told, again ? support::written(again.get()) : "not built again");
}

}  // namespace

FilledRoot::FilledRoot() {
    Schema_InitRoot(&root_);
    for (std::uint32_t i = 0; i < featureSchemaCount; ++i) {
        filled_ = Schema_RegTopObject(&root_, &featureSchema[i]) == XML_OK && filled_;
    }
    const SchemaTopObject code = {&codeElement(), SCHEMA_KIND_ELEMENT};
    filled_ = Schema_RegTopObject(&root_, &code) == XML_OK && filled_;
}

FilledRoot::~FilledRoot() {
    const SchemaTopObject code = {&codeElement(), SCHEMA_KIND_ELEMENT};
    Schema_DeregTopObject(&root_, &code);
    for (std::uint32_t i = featureSchemaCount; i-- > 0;) {
        Schema_DeregTopObject(&root_, &featureSchema[i]);
    }
    Schema_ExitRoot(&root_);
}

std::string doJobs(std::size_t number, const SchemaRoot &root) {
    std::string told;
    validate(told, featureDocument(number), root);
    validate(told, codeDocument(number), root);
    parse(told, textDocument(number));
    buildAndWrite(told, number);
    tell(told, std::to_string(XML_IsMatchRegex("^[0-9]+$", std::to_string(number).c_str())));
    return told;
}

}  // namespace threads
