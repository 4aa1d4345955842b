// tools/xsd2c/c/c_records.h - the C code of records.
#pragma once

#include <cstddef>
#include <string>

#include "xsd2c/records/records.h"

namespace xsd2c {

// The definition of the constant `records`, an object that holds all records of a unit, and before
// it those of the texts that are too long to stand in it.
std::string recordsCode(const Records &records);

// Where a record lies: it is records.MEMBER[NUMBER].
struct Location {
    const char *member;
    std::size_t number;
};

// Of a record that is there.
Location locate(const Records &records, const SchemaTypedRef &record);

// An initializer of SchemaTypedRef or SchemaTopObject.
std::string typedRefCode(const Records &records, const SchemaTypedRef &record);

}  // namespace xsd2c
