#include <memory>
#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/common/Grammar.hpp>

#include "loader.h"

namespace bench {
namespace {

using namespace xercesc;

bool load(const std::string &schemaFile) {
    static const bool initialized = (XMLPlatformUtils::Initialize(), true);
    XMLGrammarPoolImpl pool;
    const std::unique_ptr<SAX2XMLReader> reader{
        XMLReaderFactory::createXMLReader(XMLPlatformUtils::fgMemoryManager, &pool)};
    reader->setFeature(XMLUni::fgSAX2CoreNameSpaces, true);
    reader->setFeature(XMLUni::fgXercesSchema, true);
    return initialized &&
           reader->loadGrammar(schemaFile.c_str(), Grammar::SchemaGrammarType, true) != nullptr;
}

}  // namespace

const Loader kXercesLoader = {"xerces-c", XERCES_FULLVERSIONDOT, load};

}  // namespace bench
