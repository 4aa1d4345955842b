// tools/xsd2c/xsd/model_walk.h - over the particles of a content model.
#pragma once

#include <cstddef>
#include <utility>
#include <variant>
#include <vector>

#include "xsd2c/xsd/components.h"

namespace xsd2c {

// Calls visit(particle, depth) for a particle and all those that are written within it; not for
// those of named groups. The depth of the first is given, others are deeper by 1 each.
template <class Visit>
void walkParticles(const Particle &first, std::size_t depth, Visit visit) {
    std::vector<std::pair<const Particle *, std::size_t>> open = {{&first, depth}};
    while (!open.empty()) {
        const auto [particle, level] = open.back();
        open.pop_back();
        visit(*particle, level);
        const auto *const *group = std::get_if<const ModelGroup *>(&particle->term);
        if (!group) continue;
        for (const Particle &child : (*group)->particles) open.emplace_back(&child, level + 1);
    }
}

// The same for the particles of a group, at depth 1.
template <class Visit>
void walkParticles(const ModelGroup &group, Visit visit) {
    for (const Particle &particle : group.particles) walkParticles(particle, 1, visit);
}

}  // namespace xsd2c
