// Xerces-C: SAX2 callbacks with namespaces, and its DOM.
#include <memory>
#include <mutex>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufFormatTarget.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "contestant.h"

namespace bench {
namespace {

namespace xc = xercesc;

static_assert(sizeof(XMLCh) == sizeof(char16_t));

void prepare() {
    static std::once_flag once;
    std::call_once(once, [] { xc::XMLPlatformUtils::Initialize(); });
}

std::string utf8(const XMLCh *text) {
    return utf8Of(reinterpret_cast<const char16_t *>(text), xc::XMLString::stringLen(text));
}

xc::MemBufInputSource inputOf(std::string_view document) {
    return {reinterpret_cast<const XMLByte *>(document.data()), document.size(), "document"};
}

// Xerces-C hands out UTF-16. It is converted only where contestants are compared, not while time is
// taken.
void countElement(Tally &tally, const XMLCh *name) {
    tally.element(tally.exact ? utf8(name).c_str() : "");
}

void countAttribute(Tally &tally, const XMLCh *name, const XMLCh *value) {
    if (tally.exact) {
        tally.attribute(utf8(name).c_str(), std::string_view(utf8(value)));
    } else {
        tally.attribute("", std::string_view());
    }
}

void countText(Tally &tally, const XMLCh *text, XMLSize_t length) {
    if (tally.exact) {
        const std::string bytes = utf8Of(reinterpret_cast<const char16_t *>(text), length);
        tally.text(bytes.data(), bytes.size());
    } else {
        tally.text("", 2 * length);
    }
}

// ---- callbacks ------------------------------------------------------------------------------

class Handler : public xc::DefaultHandler {
  public:
    explicit Handler(Tally &tally) : tally_(tally) {}

    void startElement(const XMLCh *, const XMLCh *localName, const XMLCh *,
                      const xc::Attributes &attributes) override {
        countElement(tally_, localName);
        for (XMLSize_t i = 0; i < attributes.getLength(); ++i) {
            countAttribute(tally_, attributes.getLocalName(i), attributes.getValue(i));
        }
    }
    void characters(const XMLCh *text, const XMLSize_t length) override {
        countText(tally_, text, length);
    }

  private:
    Tally &tally_;
};

bool parse(std::string_view document, Tally &tally) {
    prepare();
    const std::unique_ptr<xc::SAX2XMLReader> reader(xc::XMLReaderFactory::createXMLReader());
    reader->setFeature(xc::XMLUni::fgSAX2CoreNameSpaces, true);
    reader->setFeature(xc::XMLUni::fgSAX2CoreValidation, false);
    reader->setFeature(xc::XMLUni::fgXercesSchema, false);
    reader->setFeature(xc::XMLUni::fgXercesLoadExternalDTD, false);
    Handler handler(tally);
    reader->setContentHandler(&handler);
    reader->setErrorHandler(&handler);  // throws where a document is not well formed
    try {
        reader->parse(inputOf(document));
    } catch (...) {
        return false;
    }
    return true;
}

// ---- tree -----------------------------------------------------------------------------------

void *build(std::span<char> document, Encoding) {
    prepare();
    xc::XercesDOMParser parser;
    parser.setValidationScheme(xc::XercesDOMParser::Val_Never);
    parser.setDoNamespaces(true);
    parser.setDoSchema(false);
    parser.setLoadExternalDTD(false);
    parser.setCreateEntityReferenceNodes(false);
    parser.setCreateCommentNodes(false);
    xc::HandlerBase errors;  // throws, as above
    parser.setErrorHandler(&errors);
    try {
        parser.parse(inputOf({document.data(), document.size()}));
    } catch (...) {
        return nullptr;
    }
    return parser.adoptDocument();
}

void destroy(void *tree) {
    static_cast<xc::DOMDocument *>(tree)->release();
}

void countNode(const xc::DOMNode &node, Tally &tally) {
    if (node.getNodeType() == xc::DOMNode::ELEMENT_NODE) {
        countElement(tally, node.getLocalName());
        const xc::DOMNamedNodeMap &attributes = *node.getAttributes();
        for (XMLSize_t i = 0; i < attributes.getLength(); ++i) {
            const xc::DOMNode &attribute = *attributes.item(i);
            // The tree keeps namespace declarations among the attributes.
            if (xc::XMLString::equals(attribute.getNamespaceURI(), xc::XMLUni::fgXMLNSURIName)) {
                continue;
            }
            countAttribute(tally, attribute.getLocalName(), attribute.getNodeValue());
        }
    } else if (node.getNodeType() == xc::DOMNode::TEXT_NODE ||
               node.getNodeType() == xc::DOMNode::CDATA_SECTION_NODE) {
        countText(tally, node.getNodeValue(), xc::XMLString::stringLen(node.getNodeValue()));
    }
}

void count(const void *tree, Tally &tally) {
    const xc::DOMNode *const root =
        static_cast<const xc::DOMDocument *>(tree)->getDocumentElement();
    for (const xc::DOMNode *node = root; node;) {
        countNode(*node, tally);
        if (node->getFirstChild()) {
            node = node->getFirstChild();
            continue;
        }
        while (node != root && !node->getNextSibling()) node = node->getParentNode();
        node = node == root ? nullptr : node->getNextSibling();
    }
}

struct Release {
    void operator()(auto *object) const { object->release(); }
};

std::size_t serialize(const void *tree, Encoding encoding, std::string *copy) {
    static const XMLCh kLs[] = {'L', 'S', 0};
    auto *implementation = xc::DOMImplementationRegistry::getDOMImplementation(kLs);
    const std::unique_ptr<xc::DOMLSSerializer, Release> serializer(
        implementation->createLSSerializer());
    const std::unique_ptr<xc::DOMLSOutput, Release> output(implementation->createLSOutput());
    xc::MemBufFormatTarget target;
    output->setByteStream(&target);
    XMLCh name[16];
    xc::XMLString::transcode(encodingName(encoding), name, 15);
    output->setEncoding(name);
    try {
        if (!serializer->write(static_cast<const xc::DOMDocument *>(tree), output.get())) return 0;
    } catch (...) {
        return 0;
    }
    if (copy) {
        copy->assign(reinterpret_cast<const char *>(target.getRawBuffer()), target.getLen());
    }
    return target.getLen();
}

constexpr const char *kVersion = "Xerces-C " XERCES_FULLVERSIONDOT;

}  // namespace

const Contestant kXercesSax = {
    .name = "xerces-sax2",
    .version = kVersion,
    .encodings = kAnyEncoding,
    .parse = parse,
};

const Contestant kXercesDom = {
    .name = "xerces-dom",
    .version = kVersion,
    .encodings = kAnyEncoding,
    .build = build,
    .destroy = destroy,
    .count = count,
    .serialize = serialize,
};

}  // namespace bench
