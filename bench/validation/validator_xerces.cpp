// Xerces-C validates while it parses; it keeps no tree that could be validated by itself.
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/common/Grammar.hpp>

#include "validator.h"

namespace bench {
namespace {

using namespace xercesc;

class ErrorCount : public DefaultHandler {
  public:
    void error(const SAXParseException &) override { ++errors; }
    void fatalError(const SAXParseException &) override { ++errors; }
    int errors = 0;
};

SAX2XMLReader *reader;
ErrorCount handler;

void prepare(const std::string &schemaFile) {
    XMLPlatformUtils::Initialize();
    reader = XMLReaderFactory::createXMLReader(XMLPlatformUtils::fgMemoryManager,
                                               new XMLGrammarPoolImpl);
    reader->setFeature(XMLUni::fgSAX2CoreNameSpaces, true);
    reader->setFeature(XMLUni::fgSAX2CoreValidation, true);
    reader->setFeature(XMLUni::fgXercesSchema, true);
    reader->setFeature(XMLUni::fgXercesUseCachedGrammarInParse, true);
    reader->setErrorHandler(&handler);
    const Grammar *grammar =
        reader->loadGrammar(schemaFile.c_str(), Grammar::SchemaGrammarType, true);
    if (grammar && handler.errors == 0) return;
    std::fprintf(stderr, "Xerces-C does not read %s\n", schemaFile.c_str());
    std::exit(1);
}

bool readAndValidate(std::string_view document) {
    handler.errors = 0;
    MemBufInputSource source(reinterpret_cast<const XMLByte *>(document.data()), document.size(),
                             "document");
    reader->parse(source);
    return handler.errors == 0;
}

}  // namespace

const Validator kXercesValidator = {"xerces-c", XERCES_FULLVERSIONDOT, prepare, nullptr, nullptr,
                                    nullptr,    readAndValidate};

}  // namespace bench
