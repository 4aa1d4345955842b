#include "tests/support/schema_maker.h"

#include <cstring>
#include <stdexcept>

#include "tests/support/written.h"

namespace support {

// Reads a content model, by plain descent.
class ModelReader {
  public:
    ModelReader(SchemaMaker &maker, std::string_view text) : maker_(maker), text_(text) {}

    SchemaTypedRef particle() {
        const std::string name = word();
        const bool group = peek() == '(' || name == "seq" || name == "choice" || name == "all";
        if (group) return modelGroup(name);
        const Bounds bounds = readBounds();
        if (name == "any") {
            maker_.wildcards_.push_back(maker_.wildcard_);
            maker_.wildcards_.back().minOccurs = bounds.min;
            maker_.wildcards_.back().maxOccurs = bounds.max;
            return {&maker_.wildcards_.back(), SCHEMA_KIND_ELEMENT_WILDCARD};
        }
        const auto known = maker_.declared_.find(name);
        SchemaElementDecl decl =
            known != maker_.declared_.end() ? known->second : SchemaMaker::plain(maker_.keep(name));
        decl.minOccurs = bounds.min;
        decl.maxOccurs = bounds.max;
        return {maker_.element(decl), SCHEMA_KIND_ELEMENT};
    }

    void expectEnd() {
        if (peek() != '\0') throw std::logic_error("content model: " + std::string(text_));
    }

  private:
    struct Bounds {
        std::uint32_t min, max;
    };

    SchemaTypedRef modelGroup(const std::string &name) {
        SchemaModelGroup group{};
        const Bounds bounds = readBounds();
        group.minOccurs = bounds.min;
        group.maxOccurs = bounds.max;
        group.compositor = name == "seq"      ? SCHEMA_KIND_SEQUENCE
                           : name == "choice" ? SCHEMA_KIND_CHOICE
                           : name == "all"    ? SCHEMA_KIND_ALL
                                              : 0;
        std::vector<SchemaTypedRef> particles;
        expect('(');
        while (peek() != ')') {
            particles.push_back(particle());
            if (peek() == ',') expect(',');
        }
        expect(')');
        maker_.particles_.push_back(std::move(particles));
        group.particles = maker_.particles_.back().data();
        group.particleCount = static_cast<std::uint32_t>(maker_.particles_.back().size());
        maker_.groups_.push_back(group);
        return {&maker_.groups_.back(), SCHEMA_KIND_MODEL_GROUP};
    }

    Bounds readBounds() {
        if (peek() != '{') return {1, 1};
        expect('{');
        const std::uint32_t min = number();
        expect(',');
        const std::uint32_t max = number();
        expect('}');
        return {min, max};
    }

    std::uint32_t number() {
        const std::string digits = word();
        return digits == "u" ? SchemaMaker::kUnbounded
                             : static_cast<std::uint32_t>(std::stoul(digits));
    }

    std::string word() {
        peek();
        const std::size_t begin = at_;
        while (at_ < text_.size() && !std::strchr(" ,(){}", text_[at_])) ++at_;
        if (begin == at_) throw std::logic_error("content model: " + std::string(text_));
        return std::string(text_.substr(begin, at_ - begin));
    }

    char peek() {
        while (at_ < text_.size() && text_[at_] == ' ') ++at_;
        return at_ < text_.size() ? text_[at_] : '\0';
    }

    void expect(char c) {
        if (peek() != c) throw std::logic_error("content model: " + std::string(text_));
        ++at_;
    }

    SchemaMaker &maker_;
    std::string_view text_;
    std::size_t at_ = 0;
};

SchemaMaker::SchemaMaker() : wildcard_{nullptr, "##any", 1, 1, 2} {
    Schema_InitRoot(&root_);
}

SchemaMaker::~SchemaMaker() {
    for (const SchemaTypedRef &object : registered_) Schema_DeregTopObject(&root_, &object);
    Schema_ExitRoot(&root_);
}

const char *SchemaMaker::keep(std::string_view text) {
    texts_.emplace_back(text);
    return texts_.back().c_str();
}

const SchemaModelGroup *SchemaMaker::model(std::string_view text) {
    if (text.empty()) return nullptr;
    ModelReader reader{*this, text};
    const SchemaTypedRef particle = reader.particle();
    reader.expectEnd();
    if (particle.kind != SCHEMA_KIND_MODEL_GROUP) throw std::logic_error("no group");
    return static_cast<const SchemaModelGroup *>(particle.object);
}

SchemaElementDecl *SchemaMaker::element(const SchemaElementDecl &decl) {
    return &elements_.emplace_back(decl);
}

SchemaAttributeDecl *SchemaMaker::attribute(const SchemaAttributeDecl &decl) {
    return &attributes_.emplace_back(decl);
}

SchemaComplexType *SchemaMaker::complexType(const SchemaComplexType &type) {
    return &complexTypes_.emplace_back(type);
}

SchemaDerivation *SchemaMaker::derivation(const SchemaDerivation &derivation) {
    return &derivations_.emplace_back(derivation);
}

SchemaSimpleType *SchemaMaker::simpleType(const SchemaSimpleType &type) {
    return &simpleTypes_.emplace_back(type);
}

SchemaAttributeGroup *SchemaMaker::attributeGroup(const SchemaAttributeGroup &group) {
    return &attributeGroups_.emplace_back(group);
}

SchemaWildcard *SchemaMaker::attributeWildcard(const SchemaWildcard &wildcard) {
    return &attributeWildcards_.emplace_back(wildcard);
}

const SchemaAttributeDecl *const *SchemaMaker::uses(
    const std::vector<const SchemaAttributeDecl *> &list) {
    return useLists_.emplace_back(list).data();
}

const SchemaAttributeGroup *const *SchemaMaker::groups(
    const std::vector<const SchemaAttributeGroup *> &list) {
    return groupLists_.emplace_back(list).data();
}

void SchemaMaker::add(const void *object, std::int32_t kind) {
    registered_.push_back({object, kind});
    if (Schema_RegTopObject(&root_, &registered_.back()) != XML_OK) {
        throw std::logic_error("not registered");
    }
}

SchemaElementDecl *SchemaMaker::addElement(const char *name, std::string_view modelText,
                                           bool mixed) {
    SchemaComplexType type{};
    type.particle = model(modelText);
    type.mixed = mixed ? 1 : 0;
    SchemaElementDecl *decl = element(ofComplex(keep(name), complexType(type)));
    add(decl, SCHEMA_KIND_ELEMENT);
    return decl;
}

SchemaElementDecl SchemaMaker::plain(const char *name) {
    SchemaElementDecl decl{};
    decl.name = name;
    decl.minOccurs = 1;
    decl.maxOccurs = 1;
    return decl;
}

SchemaElementDecl SchemaMaker::ofSimple(const char *name, const SchemaSimpleType *type) {
    SchemaElementDecl decl = plain(name);
    decl.type = type;
    decl.typeKind = SCHEMA_KIND_SIMPLE_TYPE;
    return decl;
}

SchemaElementDecl SchemaMaker::ofComplex(const char *name, const SchemaComplexType *type) {
    SchemaElementDecl decl = plain(name);
    decl.type = type;
    decl.typeKind = SCHEMA_KIND_COMPLEX_TYPE;
    return decl;
}

std::string verdict(XML_DOM_Node *document, const SchemaRoot &root, std::uint32_t mode) {
    SchemaErrorInfo error;
    std::memset(static_cast<void *>(&error), 0x5A, sizeof error);
    std::string said;
    if (Schema_ValidateXmlEx(document, &root, mode, &error) != XML_OK) said = "refused ";
    const auto field = [&said](const char *label, const char *value) {
        if (value) said += std::string(" ") + label + "=" + value;
    };
    if (error.code == 0) {
        // A valid document leaves nothing behind.
        const SchemaErrorInfo zeros{};
        const bool cleared = std::memcmp(&error, &zeros, sizeof error) == 0;
        return said + (cleared ? "valid" : "valid, but the record is not cleared");
    }
    said += std::to_string(error.code);
    char path[512] = "";
    if (error.node) XML_DOM_GetXPath(error.node, sizeof path, path);
    field("node", error.node ? path : nullptr);
    field("name", error.name);
    field("ns", error.ns);
    field("attr", error.attrName);
    field("attrNs", error.attrNs);
    field("text", error.text[0] ? error.text : nullptr);
    char message[4096] = "unset";
    if (Schema_GetErrorDesc(&error, sizeof message, message) != XML_OK) return said + ": refused";
    return said + ": " + message;
}

std::string verdict(std::string_view document, const SchemaRoot &root, std::uint32_t mode) {
    const NodePtr tree = parsed(document);
    if (!tree) throw std::logic_error("not well-formed: " + std::string(document));
    return verdict(tree.get(), root, mode);
}

}  // namespace support
