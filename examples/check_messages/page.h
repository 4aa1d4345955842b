// page.h - the page with the tables in it.
#pragma once
#include <string>

#include "table.h"

namespace messages {

// A page with the table put between its comments, "<!-- generated: NAME -->" and "<!-- generated end -->";
// the page as it is if it has no such comments, which is reported.
std::string filled(const std::string &page, const Table &table);

// The first line in which two texts differ, as both have it; empty if they are equal.
std::string firstDifference(const std::string &is, const std::string &shouldBe);

}  // namespace messages
