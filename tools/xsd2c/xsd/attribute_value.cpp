#include "xsd2c/xsd/attribute_value.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "xsd2c/xsd/components.h"
#include "xsd2c/xsd/xml_text.h"

namespace xsd2c {
namespace {

using Texts = std::vector<std::string_view>;

bool isOneOf(std::string_view value, const Texts &texts) {
    return std::find(texts.begin(), texts.end(), value) != texts.end();
}

bool isAllOrListOf(const std::string &value, const Texts &texts) {
    if (value == "#all") return true;
    const std::vector<std::string> list = words(value);
    return std::all_of(list.begin(), list.end(),
                       [&](const std::string &word) { return isOneOf(word, texts); });
}

bool isQName(std::string_view value) {
    const std::size_t colon = value.find(':');
    if (colon == std::string_view::npos) return isNcName(value);
    return isNcName(value.substr(0, colon)) && isNcName(value.substr(colon + 1));
}

bool areQNames(const std::string &value) {
    const std::vector<std::string> list = words(value);
    return std::all_of(list.begin(), list.end(), isQName);
}

bool areNamespaces(const std::string &value) {
    if (value == "##any" || value == "##other") return true;
    const std::vector<std::string> list = words(value);
    return std::all_of(list.begin(), list.end(), [](const std::string &word) {
        return word.compare(0, 2, "##") != 0 || word == "##targetNamespace" || word == "##local";
    });
}

bool isOccurs(const std::string &value, std::uint32_t least, std::uint32_t most) {
    const std::optional<std::uint32_t> number = parseOccurs(value);
    return number && *number >= least && *number <= most;
}

bool isValid(ValueKind kind, const std::string &value) {
    switch (kind) {
        case ValueKind::kText:
        case ValueKind::kCollapsed:
            return true;
        case ValueKind::kBoolean:
            return isOneOf(value, {"true", "false", "1", "0"});
        case ValueKind::kName:
            return isNcName(value);
        case ValueKind::kQName:
            return isQName(value);
        case ValueKind::kQNames:
            return areQNames(value);
        case ValueKind::kMinOccurs:
            return isOccurs(value, 0, kUnbounded - 1);
        case ValueKind::kMaxOccurs:
            return isOccurs(value, 0, kUnbounded);
        case ValueKind::kZeroOrOne:
            return isOccurs(value, 0, 1);
        case ValueKind::kOne:
            return isOccurs(value, 1, 1);
        case ValueKind::kForm:
            return isOneOf(value, {"qualified", "unqualified"});
        case ValueKind::kUse:
            return isOneOf(value, {"optional", "required", "prohibited"});
        case ValueKind::kProcess:
            return isOneOf(value, {"strict", "lax", "skip"});
        case ValueKind::kNamespaces:
            return areNamespaces(value);
        case ValueKind::kElementBlock:
            return isAllOrListOf(value, {"extension", "restriction", "substitution"});
        case ValueKind::kDerivations:
            return isAllOrListOf(value, {"extension", "restriction"});
        case ValueKind::kSimpleFinal:
            return isAllOrListOf(value, {"restriction", "list", "union"});
        case ValueKind::kSchemaFinal:
            return isAllOrListOf(value, {"extension", "restriction", "list", "union"});
    }
    return true;
}

std::string_view expected(ValueKind kind) {
    switch (kind) {
        case ValueKind::kText:
        case ValueKind::kCollapsed:
            return "not a text";
        case ValueKind::kBoolean:
            return "not a boolean";
        case ValueKind::kName:
            return "not a name without a colon";
        case ValueKind::kQName:
            return "not a qualified name";
        case ValueKind::kQNames:
            return "not a list of qualified names";
        case ValueKind::kMinOccurs:
            return "not a number from 0 to 4294967294";
        case ValueKind::kMaxOccurs:
            return "not 'unbounded' or a number from 0 to 4294967294";
        case ValueKind::kZeroOrOne:
            return "not 0 or 1, as within 'all'";
        case ValueKind::kOne:
            return "not 1, as for 'all'";
        case ValueKind::kForm:
            return "not 'qualified' or 'unqualified'";
        case ValueKind::kUse:
            return "not 'optional', 'required' or 'prohibited'";
        case ValueKind::kProcess:
            return "not 'strict', 'lax' or 'skip'";
        case ValueKind::kNamespaces:
            return "not '##any', '##other' or a list of namespaces";
        case ValueKind::kElementBlock:
            return "not '#all' or a list of 'extension', 'restriction' and 'substitution'";
        case ValueKind::kDerivations:
            return "not '#all' or a list of 'extension' and 'restriction'";
        case ValueKind::kSimpleFinal:
            return "not '#all' or a list of 'restriction', 'list' and 'union'";
        case ValueKind::kSchemaFinal:
            return "not '#all' or a list of 'extension', 'restriction', 'list' and 'union'";
    }
    return "";
}

}  // namespace

std::string_view whatIsWrong(ValueKind kind, const std::string &value) {
    return isValid(kind, value) ? std::string_view() : expected(kind);
}

std::optional<std::uint32_t> parseOccurs(std::string_view value) {
    if (value == "unbounded") return kUnbounded;
    const bool negative = !value.empty() && value.front() == '-';
    if (negative || (!value.empty() && value.front() == '+')) value.remove_prefix(1);
    if (value.empty()) return std::nullopt;
    std::uint64_t number = 0;
    for (const char c : value) {
        if (c < '0' || c > '9') return std::nullopt;
        number = number * 10 + static_cast<std::uint64_t>(c - '0');
        if (number >= kUnbounded || (negative && number != 0)) return std::nullopt;
    }
    return static_cast<std::uint32_t>(number);
}

SplitName splitName(std::string_view qName) {
    const std::size_t colon = qName.find(':');
    if (colon == std::string_view::npos) return {{}, qName};
    return {qName.substr(0, colon), qName.substr(colon + 1)};
}

}  // namespace xsd2c
