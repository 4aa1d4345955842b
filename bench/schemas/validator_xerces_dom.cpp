// Xerces-C: its tree, validated while it is built; it validates no tree that is there already.
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/validators/common/Grammar.hpp>

#include "validator.h"
#include "xerces_errors.h"

namespace bench {
namespace {

using namespace xercesc;

class XercesDomValidator final : public Validator {
  public:
    explicit XercesDomValidator(const Schema &schema)
        : parser_(nullptr, XMLPlatformUtils::fgMemoryManager, &grammars_) {
        parser_.setDoNamespaces(true);
        parser_.setDoSchema(true);
        parser_.setValidationScheme(XercesDOMParser::Val_Always);
        parser_.setIncludeIgnorableWhitespace(false);
        parser_.useCachedGrammarInParse(true);
        parser_.setErrorHandler(&errors_);
        ready_ =
            parser_.loadGrammar(schema.file, Grammar::SchemaGrammarType, true) && errors_.none();
    }
    bool ready() const { return ready_; }

    bool readAndValidate(std::string_view document) override {
        errors_.resetErrors();
        const MemBufInputSource source(reinterpret_cast<const XMLByte *>(document.data()),
                                       document.size(), "document");
        parser_.parse(source);
        const bool valid = errors_.none() && parser_.getDocument();
        parser_.resetDocumentPool();
        return valid;
    }

  private:
    XMLGrammarPoolImpl grammars_;
    XercesErrors errors_;
    XercesDOMParser parser_;
    bool ready_;
};

std::unique_ptr<Validator> make(const Schema &schema) {
    startXerces();
    auto validator = std::make_unique<XercesDomValidator>(schema);
    if (!validator->ready()) return nullptr;
    return validator;
}

}  // namespace

const ValidatorKind kXercesDomValidator = {"xerces-dom", nullptr, make};

}  // namespace bench
