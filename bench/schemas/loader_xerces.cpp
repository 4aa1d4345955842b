#include <memory>
#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/common/Grammar.hpp>

#include "loader.h"
#include "xerces_errors.h"

namespace bench {
namespace {

using namespace xercesc;

bool load(const std::string &file) {
    startXerces();
    XMLGrammarPoolImpl grammars;
    XercesErrors errors;
    const std::unique_ptr<SAX2XMLReader> reader{
        XMLReaderFactory::createXMLReader(XMLPlatformUtils::fgMemoryManager, &grammars)};
    reader->setFeature(XMLUni::fgSAX2CoreNameSpaces, true);
    reader->setFeature(XMLUni::fgXercesSchema, true);
    reader->setErrorHandler(&errors);
    return reader->loadGrammar(file.c_str(), Grammar::SchemaGrammarType, true) && errors.none();
}

}  // namespace

const Loader kXercesLoader = {"xerces", load};

}  // namespace bench
