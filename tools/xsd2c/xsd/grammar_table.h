// tools/xsd2c/xsd/grammar_table.h - the attributes and the content of each element of XML Schema
// (XML Schema 1.0 Structures, appendix A).
#pragma once

#include <vector>

#include "xsd2c/xsd/grammar.h"

namespace xsd2c {

enum class ValueKind {
    kText,       // white space stays
    kCollapsed,  // anything else
    kBoolean,
    kName,   // without a colon
    kQName,  // with a prefix that is declared
    kQNames,
    kMinOccurs,
    kMaxOccurs,
    kZeroOrOne,
    kOne,
    kForm,
    kUse,
    kProcess,
    kNamespaces,
    kElementBlock,
    kDerivations,  // by extension and restriction
    kSimpleFinal,  // by restriction, list and union
    kSchemaFinal,
};

struct AttributeRule {
    const char *name;
    ValueKind kind;
    bool required = false;
};

enum class Times {
    kOptional,
    kOnce,
    kAny,
    kMany,   // at least once
    kAlone,  // optional; nothing may follow
};

// Elements of which one may stand at a place in the content, and how often.
struct Slot {
    Times times;
    std::vector<Construct> constructs;
};

struct Rule {
    Construct construct;
    const char *name;  // without prefix
    std::vector<AttributeRule> attributes;
    std::vector<Slot> content;  // in this order
};

const Rule &ruleOf(Construct construct);

}  // namespace xsd2c
