// tests/tools/xsd2c/support/built_unit.h - units in C, compiled and loaded into the test.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "compactxml.h"
#include "xsd2c/c/c_unit.h"

namespace support {

// A unit that has been compiled and loaded.
class BuiltUnit {
  public:
    // From the path of a shared object; throws what is wrong with it.
    explicit BuiltUnit(const std::string &object);
    BuiltUnit(const BuiltUnit &) = delete;
    BuiltUnit &operator=(const BuiltUnit &) = delete;
    ~BuiltUnit();

    // Calls SchemaReg_... or SchemaDereg_...
    std::uint32_t call(const std::string &function, SchemaRoot *root) const;
    // What an accessor returns.
    const void *access(const std::string &accessor) const;
    // The address of a function or variable.
    void *address(const std::string &name) const;

  private:
    void *handle_;
};

// Writes the two files of a unit, compiles them with each compiler there is, for C and for C++, and
// calls check for each result. Warnings are failures; so is a machine without a compiler for C or
// without one for C++.
void withEachCompiler(const xsd2c::UnitName &unit, const xsd2c::Records &records,
                      const std::function<void(const BuiltUnit &)> &check);

// The dump of the records registered as they are.
std::string dumpInMemory(const xsd2c::Records &records);

// The dump of what a unit registers. Expects that nothing of it is left afterwards.
std::string dumpBuilt(const BuiltUnit &built, const xsd2c::UnitName &unit);

// Expects that the unit registers the same as the records do, whatever compiler makes it.
void expectSameRecords(const xsd2c::UnitName &unit, const xsd2c::Records &records);

}  // namespace support
