// libxml2: validation of the parser's events, without a tree.
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include "libxml2_schema.h"
#include "validator.h"

namespace bench {
namespace {

class Libxml2StreamValidator final : public Validator {
  public:
    explicit Libxml2StreamValidator(const Schema &schema) : schema_(schema.file) {}
    bool ready() const { return schema_.context() != nullptr; }

    bool readAndValidate(std::string_view document) override {
        xmlParserCtxtPtr parser =
            xmlCreateMemoryParserCtxt(document.data(), static_cast<int>(document.size()));
        if (!parser) return false;
        xmlCtxtUseOptions(parser, XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_NOERROR);
        const bool valid = validate(parser);
        xmlFreeParserCtxt(parser);
        return valid;
    }

  private:
    // The schema takes the place of the callbacks that would build a tree.
    bool validate(xmlParserCtxtPtr parser) {
        xmlSAXHandlerPtr own = parser->sax;
        void *data = parser->userData;
        xmlSAXHandlerPtr handler = nullptr;
        parser->sax = nullptr;
        xmlSchemaSAXPlugPtr plug = xmlSchemaSAXPlug(schema_.context(), &handler, &data);
        parser->sax = handler;
        parser->userData = data;
        const bool read = plug && xmlParseDocument(parser) == 0;
        xmlSchemaSAXUnplug(plug);
        parser->sax = own;
        parser->userData = parser;
        return read && xmlSchemaIsValid(schema_.context()) == 1;
    }

    Libxml2Schema schema_;
};

std::unique_ptr<Validator> make(const Schema &schema) {
    auto validator = std::make_unique<Libxml2StreamValidator>(schema);
    if (!validator->ready()) return nullptr;
    return validator;
}

}  // namespace

const ValidatorKind kLibxml2StreamValidator = {"libxml2-stream", nullptr, make};

}  // namespace bench
