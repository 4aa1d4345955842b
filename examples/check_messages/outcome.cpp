#include "outcome.h"

#include <cstdarg>

#include "messages.h"
#include "table.h"
#include "tree_tools.h"

namespace messages {
namespace {

std::uint32_t sizeOf(const std::string &document) {
    return static_cast<std::uint32_t>(document.size());
}

Report &reportOf(const XML_Parser_Ctx *context) {
    return *static_cast<Report *>(context->handler->userData);
}

void onError(XML_Parser_Ctx *context, const char *format, ...) {
    Report &report = reportOf(context);
    va_list arguments;
    va_start(arguments, format);
    report.line = va_arg(arguments, int);
    report.column = va_arg(arguments, int);
    (void)va_arg(arguments, const char *);  // the snippet
    report.message = va_arg(arguments, const char *);
    va_end(arguments);
    report.code = context->status;
    ++report.reports;
}

}  // namespace

Report parse(const std::string &document, int statusToSet) {
    Report report;
    report.statusToSet = statusToSet;
    XML_SAX_Handler handler{};
    handler.userData = &report;
    handler.error = onError;
    handler.startDocument = [](XML_Parser_Ctx *context) {
        context->status = reportOf(context).statusToSet;
    };
    XML_Parser_ByMem(document.data(), sizeOf(document), &handler);
    return report;
}

std::string buildError(const std::string &document) {
    char error[256] = "";
    const demo::Owned<XML_DOM_Node> root{
        XML_DOM_BuildTreeByMem(document.data(), sizeOf(document), sizeof error, error)};
    return root ? "" : error;
}

Schemas::Schemas() {
    Schema_InitRoot(&root_);
    expect(SchemaReg_messages(&root_) == XML_OK, "the schema is not registered");
}

Schemas::~Schemas() {
    SchemaDereg_messages(&root_);
    Schema_ExitRoot(&root_);
}

Verdict Schemas::validate(const std::string &document) const {
    Verdict verdict;
    const demo::Owned<XML_DOM_Node> root{
        XML_DOM_BuildTreeByMem(document.data(), sizeOf(document), 0, nullptr)};
    SchemaErrorInfo error;
    verdict.readable = Schema_ValidateXml(root.get(), &root_, &error) == XML_OK;
    if (!verdict.readable) return verdict;
    char message[1024] = "";
    expect(Schema_GetErrorDesc(&error, sizeof message, message) == XML_OK, "no message");
    verdict.code = error.code;
    verdict.message = message;
    verdict.reason = error.text;
    char path[256] = "";
    XML_DOM_GetXPath(error.node, sizeof path, path);
    verdict.place = path;
    for (const char *name : {error.name, error.attrName}) {
        if (name) verdict.place += std::string(" ") + name;
    }
    return verdict;
}

bool isShortest(const std::string &document,
                const std::function<bool(const std::string &)> &shows) {
    for (std::size_t first = 0; first < document.size(); ++first) {
        for (std::size_t count = 1; first + count <= document.size(); ++count) {
            if (shows(std::string(document).erase(first, count))) return false;
        }
    }
    return true;
}

}  // namespace messages
