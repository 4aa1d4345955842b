#include "xsd2c/xsd/grammar.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "xsd2c/xsd/attribute_value.h"
#include "xsd2c/xsd/components.h"
#include "xsd2c/xsd/grammar_table.h"
#include "xsd2c/xsd/xml_text.h"

namespace xsd2c {
namespace {

class GrammarCheck {
  public:
    explicit GrammarCheck(Diagnostics &diagnostics) : diagnostics_(diagnostics) {}
    void check(SourceElement &root);

  private:
    void checkElement(SourceElement &element);
    void checkAttributes(SourceElement &element);
    void checkValue(SourceElement &element, SourceAttribute &attribute, ValueKind kind);
    void checkPrefixes(const SourceElement &element, SourceAttribute &attribute);
    void checkContent(SourceElement &element);
    void checkCombinations(const SourceElement &element);
    void checkDeclaration(const SourceElement &element, bool mayRefer);
    void checkReference(const SourceElement &element);
    void checkOneOf(const SourceElement &element, const char *attribute, const char *children,
                    bool child);
    void checkOccurs(const SourceElement &element);
    void checkFacetsOnce(const SourceElement &element);

    void error(const SourceElement &element, const std::string &text) {
        diagnostics_.error(element.place, text);
    }

    Diagnostics &diagnostics_;
    std::vector<SourceElement *> open_;
};

std::string quotedName(const SourceElement &element) {
    return "'" + element.name + "'";
}

bool isFacet(Construct construct) {
    return construct >= Construct::kLength && construct <= Construct::kFractionDigits;
}

bool hasChild(const SourceElement &element, Construct first, Construct last) {
    return std::any_of(element.children.begin(), element.children.end(),
                       [&](const SourceElement *child) {
                           return child->construct >= first && child->construct <= last;
                       });
}

bool hasChild(const SourceElement &element, Construct construct) {
    return hasChild(element, construct, construct);
}

void GrammarCheck::checkPrefixes(const SourceElement &element, SourceAttribute &attribute) {
    for (const std::string &name : words(attribute.value)) {
        const std::string_view prefix = splitName(name).prefix;
        if (prefix.empty() || findNamespace(element.scope, prefix)) continue;
        error(element, "prefix " + quoted(prefix) + " is not declared");
        attribute.valid = false;
    }
}

void GrammarCheck::checkValue(SourceElement &element, SourceAttribute &attribute, ValueKind kind) {
    if (kind == ValueKind::kText) return;
    attribute.value = collapsed(attribute.value);
    const std::string_view wrong = whatIsWrong(kind, attribute.value);
    if (!wrong.empty()) {
        attribute.valid = false;
        error(element, "attribute '" + attribute.name + "' is " + quoted(attribute.value) + ", " +
                           std::string(wrong));
        return;
    }
    const bool named = kind == ValueKind::kQName || kind == ValueKind::kQNames;
    if (named) checkPrefixes(element, attribute);
}

void GrammarCheck::checkAttributes(SourceElement &element) {
    const Rule &rule = ruleOf(element.construct);
    std::vector<SourceAttribute> allowed;
    for (SourceAttribute &attribute : element.attributes) {
        const auto found = std::find_if(
            rule.attributes.begin(), rule.attributes.end(),
            [&](const AttributeRule &candidate) { return candidate.name == attribute.name; });
        if (found == rule.attributes.end()) {
            error(element,
                  "attribute '" + attribute.name + "' is not allowed on " + quotedName(element));
            continue;
        }
        checkValue(element, attribute, found->kind);
        allowed.push_back(std::move(attribute));
    }
    element.attributes = std::move(allowed);
    for (const AttributeRule &wanted : rule.attributes) {
        if (!wanted.required || element.has(wanted.name)) continue;
        error(element,
              "attribute '" + std::string(wanted.name) + "' is missing on " + quotedName(element));
    }
}

std::string namesOf(const Slot &slot) {
    std::vector<std::string> names;
    for (const Construct construct : slot.constructs) {
        names.push_back("'" + std::string(ruleOf(construct).name) + "'");
    }
    std::string text = names.front();
    for (std::size_t i = 1; i < names.size(); ++i) {
        text += (i + 1 == names.size() ? " or " : ", ") + names[i];
    }
    return text;
}

// Fits the children of an element into the slots of its content, one after the other.
class ContentMatch {
  public:
    explicit ContentMatch(const Rule &rule) : content_(rule.content) {}

    // What a child is; nothing if it may not stand here.
    std::optional<Construct> take(const SourceElement &child) {
        if (child.ns != kSchemaNamespace) return std::nullopt;
        for (std::size_t i = at_; i < content_.size(); ++i) {
            const bool full = i == at_ && taken_ && content_[i].times != Times::kAny &&
                              content_[i].times != Times::kMany;
            if (full) continue;
            const std::optional<Construct> construct = findIn(content_[i], child.name);
            if (!construct) continue;
            noteMissing(i);
            at_ = content_[i].times == Times::kAlone ? content_.size() : i;
            taken_ = true;
            return construct;
        }
        return std::nullopt;
    }

    // What should have stood before a child that came, or before the end.
    std::vector<const Slot *> missing() {
        noteMissing(content_.size());
        return missing_;
    }

  private:
    static std::optional<Construct> findIn(const Slot &slot, std::string_view name) {
        for (const Construct construct : slot.constructs) {
            if (ruleOf(construct).name == name) return construct;
        }
        return std::nullopt;
    }

    void noteMissing(std::size_t end) {
        for (std::size_t i = at_; i < end; ++i) {
            if (i == at_ && taken_) continue;
            const Times times = content_[i].times;
            if (times == Times::kOnce || times == Times::kMany) missing_.push_back(&content_[i]);
        }
        if (at_ < end) taken_ = false;
    }

    const std::vector<Slot> &content_;
    std::size_t at_ = 0;
    bool taken_ = false;  // the slot at at_ has a child
    std::vector<const Slot *> missing_;
};

void GrammarCheck::checkContent(SourceElement &element) {
    if (element.hasText) error(element, "text is not allowed within " + quotedName(element));
    if (element.construct == Construct::kAppinfo ||
        element.construct == Construct::kDocumentation) {
        return;
    }
    ContentMatch match{ruleOf(element.construct)};
    std::vector<SourceElement *> allowed;
    for (SourceElement *child : element.children) {
        const std::optional<Construct> construct = match.take(*child);
        if (!construct) {
            const bool ours = child->ns == kSchemaNamespace;
            error(*child, quoted(ours ? child->name : child->shown) +
                              " is not allowed here: within " + quotedName(element));
        } else if (*construct == Construct::kRedefine) {
            error(*child, "redefine is not supported");
        } else {
            child->construct = *construct;
            allowed.push_back(child);
        }
    }
    // A child that is not allowed is often the one that is missing, misspelt.
    const bool complete = allowed.size() == element.children.size();
    element.children = std::move(allowed);
    if (!complete) return;
    for (const Slot *slot : match.missing()) {
        error(element, namesOf(*slot) + " is missing within " + quotedName(element));
    }
}

// A declaration that refers to another one says nothing else of it.
void GrammarCheck::checkReference(const SourceElement &element) {
    for (const char *name : {"name", "type", "form", "nillable", "block"}) {
        if (element.has(name)) {
            error(element, "attribute '" + std::string(name) + "' is not allowed beside 'ref'");
        }
    }
    if (element.name == "element") {
        for (const char *name : {"default", "fixed"}) {
            if (element.has(name)) {
                error(element, "attribute '" + std::string(name) + "' is not allowed beside 'ref'");
            }
        }
    }
    for (const SourceElement *child : element.children) {
        if (child->construct == Construct::kAnnotation) continue;
        error(*child, quotedName(*child) + " is not allowed beside 'ref'");
    }
}

void GrammarCheck::checkDeclaration(const SourceElement &element, bool mayRefer) {
    if (element.has("default") && element.has("fixed")) {
        error(element, "attributes 'default' and 'fixed' exclude each other");
    }
    const std::string *use = element.value("use");
    if (element.has("default") && use && *use != "optional") {
        error(element, "an attribute with a default value is not '" + *use + "'");
    }
    if (mayRefer && element.has("ref")) {
        checkReference(element);
        return;
    }
    if (mayRefer && !element.has("name")) {
        error(element, "attribute 'name' or 'ref' is missing on " + quotedName(element));
    }
    if (!element.has("type")) return;
    for (const SourceElement *child : element.children) {
        if (child->construct == Construct::kLocalSimpleType ||
            child->construct == Construct::kLocalComplexType) {
            error(element, "attribute 'type' and " + quotedName(*child) + " exclude each other");
        }
    }
}

// Something is named by an attribute or written within.
void GrammarCheck::checkOneOf(const SourceElement &element, const char *attribute,
                              const char *children, bool child) {
    const bool given = element.has(attribute);
    if (given && child) {
        error(element, "attribute '" + std::string(attribute) + "' and '" + children +
                           "' exclude each other");
    } else if (!given && !child) {
        error(element, "attribute '" + std::string(attribute) + "' or '" + children +
                           "' is missing on " + quotedName(element));
    }
}

void GrammarCheck::checkOccurs(const SourceElement &element) {
    if (!element.has("minOccurs") && !element.has("maxOccurs")) return;
    const std::string *minText = element.value("minOccurs");
    const std::string *maxText = element.value("maxOccurs");
    if (element.has("minOccurs") && !minText) return;
    if (element.has("maxOccurs") && !maxText) return;
    const std::uint32_t least = minText ? *parseOccurs(*minText) : 1;
    const std::uint32_t most = maxText ? *parseOccurs(*maxText) : 1;
    if (least <= most) return;
    error(element,
          "minOccurs " + std::to_string(least) + " is more than maxOccurs " + std::to_string(most));
}

void GrammarCheck::checkFacetsOnce(const SourceElement &element) {
    std::unordered_set<std::string_view> seen;
    for (const SourceElement *child : element.children) {
        const Construct construct = child->construct;
        if (!isFacet(construct) || construct == Construct::kPattern ||
            construct == Construct::kEnumeration) {
            continue;
        }
        if (!seen.insert(child->name).second) {
            error(*child, "facet " + quotedName(*child) + " is given twice");
        }
    }
}

void GrammarCheck::checkCombinations(const SourceElement &element) {
    switch (element.construct) {
        case Construct::kTopElement:
        case Construct::kTopAttribute:
            checkDeclaration(element, false);
            break;
        case Construct::kLocalElement:
        case Construct::kElementOfAll:
        case Construct::kLocalAttribute:
            checkDeclaration(element, true);
            break;
        case Construct::kList:
            checkOneOf(element, "itemType", "simpleType",
                       hasChild(element, Construct::kLocalSimpleType));
            break;
        case Construct::kSimpleRestriction:
            checkOneOf(element, "base", "simpleType",
                       hasChild(element, Construct::kLocalSimpleType));
            break;
        case Construct::kUnion: {
            const std::string *members = element.value("memberTypes");
            const bool named = members ? !members->empty() : element.has("memberTypes");
            if (!named && !hasChild(element, Construct::kLocalSimpleType)) {
                error(element, "'union' has no member types");
            }
            break;
        }
        case Construct::kSchema: {
            const std::string *ns = element.value("targetNamespace");
            if (ns && ns->empty()) error(element, "attribute 'targetNamespace' is empty");
            break;
        }
        default:
            break;
    }
    checkOccurs(element);
    checkFacetsOnce(element);
}

void GrammarCheck::checkElement(SourceElement &element) {
    checkAttributes(element);
    checkContent(element);
    checkCombinations(element);
    for (SourceElement *child : element.children) open_.push_back(child);
}

void GrammarCheck::check(SourceElement &root) {
    open_.push_back(&root);
    while (!open_.empty()) {
        SourceElement &element = *open_.back();
        open_.pop_back();
        checkElement(element);
    }
}

}  // namespace

bool checkGrammar(SourceTree &tree, Diagnostics &diagnostics) {
    SourceElement &root = *tree.root;
    if (root.name != "schema" || root.ns != kSchemaNamespace) {
        diagnostics.error(root.place, "the root element is " + quoted(root.shown) +
                                          ", not 'schema' of " + kSchemaNamespace);
        return false;
    }
    root.construct = Construct::kSchema;
    GrammarCheck(diagnostics).check(root);
    return true;
}

}  // namespace xsd2c
