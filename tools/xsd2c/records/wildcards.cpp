#include "xsd2c/records/wildcards.h"

#include <algorithm>

namespace xsd2c {
namespace {

using Names = Wildcard::Names;

bool lists(const Wildcard &wildcard, const std::string &ns) {
    return std::find(wildcard.listed.begin(), wildcard.listed.end(), ns) != wildcard.listed.end();
}

Wildcard with(const Wildcard &wildcard, Names names, const std::vector<std::string> &listed = {}) {
    Wildcard result = wildcard;
    result.names = names;
    result.listed = listed;
    return result;
}

// The wildcard a, for which the namespaces that it speaks of stand as b has them.
Wildcard as(const Wildcard &a, const Wildcard &b) {
    Wildcard result = with(a, b.names, b.listed);
    result.targetNs = b.targetNs;
    return result;
}

bool isExcluded(const Wildcard &other, const std::string &ns) {
    return ns.empty() || ns == other.targetNs;
}

}  // namespace

std::optional<Wildcard> intersected(const Wildcard &a, const Wildcard &b) {
    if (b.names == Names::kAny) return a;
    if (a.names == Names::kAny) return as(a, b);
    if (a.names == Names::kOther && b.names == Names::kOther) {
        if (a.targetNs == b.targetNs || b.targetNs.empty()) return a;
        if (a.targetNs.empty()) return as(a, b);
        return std::nullopt;
    }
    std::vector<std::string> both;
    const Wildcard &listing = a.names == Names::kListed ? a : b;
    const Wildcard &second = &listing == &a ? b : a;
    for (const std::string &ns : listing.listed) {
        const bool admitted =
            second.names == Names::kOther ? !isExcluded(second, ns) : lists(second, ns);
        if (admitted) both.push_back(ns);
    }
    return with(a, Names::kListed, both);
}

std::optional<Wildcard> united(const Wildcard &a, const Wildcard &b) {
    if (a.names == Names::kAny) return a;
    if (b.names == Names::kAny) return as(a, b);
    if (a.names == Names::kListed && b.names == Names::kListed) {
        std::vector<std::string> either = a.listed;
        for (const std::string &ns : b.listed) {
            if (!lists(a, ns)) either.push_back(ns);
        }
        return with(a, Names::kListed, either);
    }
    if (a.names == Names::kOther && b.names == Names::kOther) {
        if (a.targetNs == b.targetNs) return a;
        Wildcard absentAlone = with(a, Names::kOther);  // both but exclude the absent namespace
        absentAlone.targetNs.clear();
        return absentAlone;
    }
    const Wildcard &other = a.names == Names::kOther ? a : b;
    const Wildcard &listing = &other == &a ? b : a;
    const bool hasTarget = other.targetNs.empty() || lists(listing, other.targetNs);
    const bool hasAbsent = lists(listing, "");
    if (hasTarget && hasAbsent) return with(a, Names::kAny);
    if (hasAbsent) return std::nullopt;
    Wildcard result = as(a, other);
    if (hasTarget) result.targetNs.clear();
    return result;
}

std::string constraintOf(const Wildcard &wildcard) {
    if (wildcard.names == Names::kAny) return "##any";
    if (wildcard.names == Names::kOther) return "##other";
    // No namespace at all: not even the absent one, which is the empty name, but a name that no
    // document can hold.
    if (wildcard.listed.empty()) return "\x01";
    std::string names;
    // The absent namespace in front, where it is an empty name before the first blank.
    if (lists(wildcard, "") && wildcard.listed.size() > 1) names = " ";
    for (const std::string &ns : wildcard.listed) {
        if (ns.empty()) continue;
        if (!names.empty() && names.back() != ' ') names += ' ';
        names += ns;
    }
    return names;
}

}  // namespace xsd2c
