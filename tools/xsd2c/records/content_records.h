// tools/xsd2c/records/content_records.h - compiles content models.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <utility>

#include "xsd2c/records/records.h"
#include "xsd2c/records/substitutions.h"
#include "xsd2c/xsd/components.h"

namespace xsd2c {

class ContentRecords {
  public:
    // The record of a declaration, which may be filled later.
    using ElementRecord = std::function<SchemaElementDecl *(const ElementDecl &)>;

    ContentRecords(Records &records, Diagnostics &diagnostics, const Substitutions &substitutions,
                   ElementRecord element)
        : records_(records),
          diagnostics_(diagnostics),
          substitutions_(substitutions),
          element_(std::move(element)) {}

    // What a type itself says of its content; null if that is nothing.
    const SchemaModelGroup *own(const ComplexType &type);
    // The same with what it extends.
    const SchemaModelGroup *whole(const ComplexType &type);
    // Mixed content without elements is a model of no particles: without a model there is no text.
    const SchemaModelGroup *noElements();
    // Any elements, laxly.
    const SchemaModelGroup *anything();
    const SchemaModelGroup *definition(const GroupDefinition &definition);

  private:
    struct Particles {
        const SchemaTypedRef *first;
        std::uint32_t count;
    };

    const SchemaModelGroup *modelGroup(const Particle &particle);
    SchemaModelGroup *addGroup(const ModelGroup &group, std::uint32_t least, std::uint32_t most);
    SchemaTypedRef particle(const Particle &particle);
    SchemaTypedRef elementParticle(const Particle &particle, const ElementDecl &decl);
    const SchemaElementDecl *reference(const ElementDecl &decl, std::uint32_t least,
                                       std::uint32_t most);
    SchemaTypedRef wildcardParticle(const Particle &particle, const Wildcard &wildcard);
    void checkAll(const ModelGroup &group);

    Records &records_;
    Diagnostics &diagnostics_;
    const Substitutions &substitutions_;
    ElementRecord element_;
    std::unordered_map<const ModelGroup *, Particles> particles_;
    std::unordered_map<const GroupDefinition *, const SchemaModelGroup *> definitions_;
    const SchemaModelGroup *emptySequence_ = nullptr;
    const SchemaModelGroup *anyContent_ = nullptr;
};

}  // namespace xsd2c
