// libxml2: its tree, compiled XPath expressions, schema.
#include <libxml/tree.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include "libxml2_schema.h"
#include "round.h"
#include "schema.h"

namespace bench {
namespace {

const xmlChar *text(const char *bytes) {
    return reinterpret_cast<const xmlChar *>(bytes);
}

using Values = const xmlChar *[kSelected];

// In XPath a name without a prefix is in no namespace, so the system's bear one here.
constexpr const char *kPaths[kSelected] = {
    "/sw:switch/sw:system/sw:hostname", "/sw:switch/sw:system/sw:serial",
    "/sw:switch/vlan:vlans/vlan:vlan[1]/vlan:description",
    "/sw:switch/if:interfaces/if:interface[1]/if:description",
    "/sw:switch/rt:routing/rt:static/rt:route[1]/rt:note"};
constexpr const char *kPrefixes[][2] = {{"sw", "urn:example:switch:1"},
                                        {"vlan", "urn:example:switch:vlans:1"},
                                        {"if", "urn:example:switch:interfaces:1"},
                                        {"rt", "urn:example:switch:routing:1"}};

// The text of the first element; it belongs to the tree.
const xmlChar *valueOf(const xmlXPathObject *selected) {
    if (!selected || xmlXPathNodeSetIsEmpty(selected->nodesetval)) return nullptr;
    const xmlNode *child = selected->nodesetval->nodeTab[0]->children;
    return child ? child->content : nullptr;
}

bool write(xmlDocPtr answer, std::string *copy) {
    xmlChar *bytes = nullptr;
    int length = 0;
    xmlDocDumpFormatMemoryEnc(answer, &bytes, &length, "UTF-8", 0);
    if (!bytes) return false;
    if (copy) copy->assign(reinterpret_cast<const char *>(bytes), static_cast<std::size_t>(length));
    xmlFree(bytes);
    return true;
}

bool answerWith(const Values &values, std::string *copy) {
    xmlDocPtr answer = xmlNewDoc(text("1.0"));
    xmlNodePtr root = xmlNewDocNode(answer, nullptr, text(kAnswerName), nullptr);
    xmlDocSetRootElement(answer, root);
    xmlNsPtr space = xmlNewNs(root, text(kAnswerNamespace), nullptr);
    xmlSetNs(root, space);
    for (std::size_t i = 0; i < kSelected; ++i) {
        xmlNewTextChild(root, space, text(kSelections[i].name), values[i]);
    }
    const bool done = write(answer, copy);
    xmlFreeDoc(answer);
    return done;
}

class Libxml2Round final : public Round {
  public:
    Libxml2Round() : schema_(kSwitchSchema.file), xpath_(xmlXPathNewContext(nullptr)) {
        for (const auto &[prefix, space] : kPrefixes) {
            xmlXPathRegisterNs(xpath_, text(prefix), text(space));
        }
        for (std::size_t i = 0; i < kSelected; ++i) {
            paths_[i] = xmlXPathCtxtCompile(xpath_, text(kPaths[i]));
        }
    }
    ~Libxml2Round() override {
        for (xmlXPathCompExprPtr path : paths_) xmlXPathFreeCompExpr(path);
        xmlXPathFreeContext(xpath_);
    }
    bool ready() const { return schema_.context() != nullptr; }

    bool serve(std::string_view request, std::string *copy) override {
        xmlDocPtr tree = readLibxml2Tree(request);
        Values values;
        const bool done = tree && select(tree, values) &&
                          xmlSchemaValidateDoc(schema_.context(), tree) == 0 &&
                          answerWith(values, copy);
        xmlFreeDoc(tree);
        return done;
    }

  private:
    bool select(xmlDocPtr tree, Values &values) {
        xpath_->doc = tree;
        xpath_->node = reinterpret_cast<xmlNodePtr>(tree);
        for (std::size_t i = 0; i < kSelected; ++i) {
            xmlXPathObjectPtr selected = xmlXPathCompiledEval(paths_[i], xpath_);
            values[i] = valueOf(selected);
            xmlXPathFreeObject(selected);
            if (!values[i]) return false;
        }
        return true;
    }

    Libxml2Schema schema_;
    xmlXPathContextPtr xpath_;
    xmlXPathCompExprPtr paths_[kSelected];
};

std::unique_ptr<Round> make() {
    auto round = std::make_unique<Libxml2Round>();
    if (!round->ready()) return nullptr;
    return round;
}

}  // namespace

const RoundKind kLibxml2Round = {"libxml2", true, make};

}  // namespace bench
