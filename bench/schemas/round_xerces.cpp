// Xerces-C: its tree, validated while it is built. Its XPath knows little, so that the tree is
// walked by hand.
#include <algorithm>
#include <vector>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufFormatTarget.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/common/Grammar.hpp>

#include "round.h"
#include "schema.h"
#include "xerces_errors.h"

namespace bench {
namespace {

using namespace xercesc;

using Text = std::basic_string<XMLCh>;
using Values = const XMLCh *[kSelected];

Text utf16(std::string_view ascii) {
    return Text(ascii.begin(), ascii.end());
}

// The steps of a path, in UTF-16 once and for all.
std::vector<Text> steps(std::string_view path) {
    std::vector<Text> names;
    while (!path.empty()) {
        path.remove_prefix(1);
        const std::size_t length = std::min(path.find('/'), path.size());
        names.push_back(utf16(path.substr(0, length)));
        path.remove_prefix(length);
    }
    return names;
}

// The text of the first element at each step; it belongs to the tree. Null if there is none.
const XMLCh *select(const DOMElement *element, const std::vector<Text> &names) {
    for (std::size_t i = 1; element && i < names.size(); ++i) {
        element = element->getFirstElementChild();
        while (element && names[i] != element->getLocalName()) {
            element = element->getNextElementSibling();
        }
    }
    const DOMNode *text = element ? element->getFirstChild() : nullptr;
    return text ? text->getNodeValue() : nullptr;
}

class XercesRound final : public Round {
  public:
    XercesRound()
        : parser_(nullptr, XMLPlatformUtils::fgMemoryManager, &grammars_),
          implementation_(DOMImplementationRegistry::getDOMImplementation(utf16("LS").c_str())),
          serializer_(implementation_->createLSSerializer()),
          output_(implementation_->createLSOutput()) {
        parser_.setDoNamespaces(true);
        parser_.setDoSchema(true);
        parser_.setValidationScheme(XercesDOMParser::Val_Always);
        parser_.setIncludeIgnorableWhitespace(false);
        parser_.useCachedGrammarInParse(true);
        parser_.setErrorHandler(&errors_);
        output_->setByteStream(&target_);
        output_->setEncoding(utf16("UTF-8").c_str());
        for (const Selection &selection : kSelections) {
            paths_.push_back(steps(selection.path));
            names_.push_back(utf16(selection.name));
        }
        ready_ = parser_.loadGrammar(kSwitchSchema.file, Grammar::SchemaGrammarType, true) &&
                 errors_.none();
    }
    ~XercesRound() override {
        output_->release();
        serializer_->release();
    }
    bool ready() const { return ready_; }

    bool serve(std::string_view request, std::string *copy) override {
        errors_.resetErrors();
        const MemBufInputSource source(reinterpret_cast<const XMLByte *>(request.data()),
                                       request.size(), "request");
        parser_.parse(source);
        const DOMDocument *tree = parser_.getDocument();
        Values values;
        const bool done =
            errors_.none() && tree && selectAll(tree, values) && answerWith(values, copy);
        parser_.resetDocumentPool();
        return done;
    }

  private:
    bool selectAll(const DOMDocument *tree, Values &values) const {
        for (std::size_t i = 0; i < kSelected; ++i) {
            values[i] = select(tree->getDocumentElement(), paths_[i]);
            if (!values[i]) return false;
        }
        return true;
    }
    bool answerWith(const Values &values, std::string *copy) {
        DOMDocument *answer =
            implementation_->createDocument(space_.c_str(), answerName_.c_str(), nullptr);
        for (std::size_t i = 0; i < kSelected; ++i) {
            DOMElement *child = answer->createElementNS(space_.c_str(), names_[i].c_str());
            child->appendChild(answer->createTextNode(values[i]));
            answer->getDocumentElement()->appendChild(child);
        }
        target_.reset();
        const bool done = serializer_->write(answer, output_);
        answer->release();
        if (copy) {
            copy->assign(reinterpret_cast<const char *>(target_.getRawBuffer()), target_.getLen());
        }
        return done;
    }

    XMLGrammarPoolImpl grammars_;
    XercesErrors errors_;
    XercesDOMParser parser_;
    DOMImplementation *implementation_;
    DOMLSSerializer *serializer_;
    DOMLSOutput *output_;
    MemBufFormatTarget target_;
    const Text space_ = utf16(kAnswerNamespace), answerName_ = utf16(kAnswerName);
    std::vector<std::vector<Text>> paths_;
    std::vector<Text> names_;
    bool ready_;
};

std::unique_ptr<Round> make() {
    startXerces();
    auto round = std::make_unique<XercesRound>();
    if (!round->ready()) return nullptr;
    return round;
}

}  // namespace

const RoundKind kXercesRound = {"xerces-dom", true, make};

}  // namespace bench
