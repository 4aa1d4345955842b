// tools/xsd2c/records/greedy.h - content models that the validator would judge wrongly.
#pragma once

#include <string>
#include <vector>

#include "xsd2c/records/determinism.h"
#include "xsd2c/xsd/diagnostics.h"

namespace xsd2c {

// The validator gives each child to a particle when it comes to it and never takes that back. So it
// refuses what is valid where only later children show how many repetitions of a group there were:
// with ((a | b){2,3})* the children a a a b are two repetitions of two, but it takes three of them
// for the first one and finds the second one too short. It accepts nothing that is not valid.
struct GreedyFailure {
    Place place;       // of the group
    std::string text;  // what is wrong with it
};

// The groups of a content model that the validator may judge wrongly although the model has no
// ambiguities: they have to repeat, but not without end, within a group that may repeat. Such are
// rare. Some are named although all is well with them; none is left out. The records must have the
// groups that the model has; a choice of elements may stand for one with several names.
std::vector<GreedyFailure> findGreedyFailures(const Term &model);

}  // namespace xsd2c
