// Xerces-C: SAX2 callbacks that do nothing, and validation while it parses.
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/common/Grammar.hpp>

#include "validator.h"
#include "xerces_errors.h"

namespace bench {
namespace {

using namespace xercesc;

class XercesSax2Validator final : public Validator {
  public:
    explicit XercesSax2Validator(const Schema &schema)
        : reader_(
              XMLReaderFactory::createXMLReader(XMLPlatformUtils::fgMemoryManager, &grammars_)) {
        reader_->setFeature(XMLUni::fgSAX2CoreNameSpaces, true);
        reader_->setFeature(XMLUni::fgSAX2CoreValidation, true);
        reader_->setFeature(XMLUni::fgXercesSchema, true);
        reader_->setFeature(XMLUni::fgXercesUseCachedGrammarInParse, true);
        reader_->setErrorHandler(&errors_);
        ready_ =
            reader_->loadGrammar(schema.file, Grammar::SchemaGrammarType, true) && errors_.none();
    }
    bool ready() const { return ready_; }

    bool readAndValidate(std::string_view document) override {
        errors_.resetErrors();
        const MemBufInputSource source(reinterpret_cast<const XMLByte *>(document.data()),
                                       document.size(), "document");
        reader_->parse(source);
        return errors_.none();
    }

  private:
    XMLGrammarPoolImpl grammars_;
    XercesErrors errors_;
    std::unique_ptr<SAX2XMLReader> reader_;
    bool ready_;
};

std::unique_ptr<Validator> make(const Schema &schema) {
    startXerces();
    auto validator = std::make_unique<XercesSax2Validator>(schema);
    if (!validator->ready()) return nullptr;
    return validator;
}

}  // namespace

const ValidatorKind kXercesSax2Validator = {"xerces-sax2", nullptr, make};

}  // namespace bench
