// tools/xsd2c/records/content_check.h - whether the validator can match a content model.
#pragma once

#include <set>
#include <string>
#include <tuple>

#include "xsd2c/records/substitutions.h"
#include "xsd2c/xsd/components.h"

namespace xsd2c {

class ContentCheck {
  public:
    ContentCheck(const Substitutions &substitutions, Diagnostics &diagnostics)
        : substitutions_(substitutions), diagnostics_(diagnostics) {}

    // Tells of models that are ambiguous, and of those that the validator would judge wrongly.
    //   name  what the type is called in messages
    void check(const ComplexType &type, const std::string &name);

  private:
    const Substitutions &substitutions_;
    Diagnostics &diagnostics_;
    // The pairs of places that have been told of.
    std::set<std::tuple<const std::string *, int, int, const std::string *, int, int>> ambiguities_;
};

}  // namespace xsd2c
