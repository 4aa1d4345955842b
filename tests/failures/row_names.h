// tests/failures/row_names.h - what the tests over all rows share.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/failures/row.h"

namespace failures {

inline std::string nameOf(const Row &row) {
    return row.function + (row.scenario.empty() ? "" : " (" + row.scenario + ")");
}

// What a row prints on standard output while this lives is thrown away.
class Silence {
  public:
    explicit Silence(const Row &row) : wanted_(row.prints) {
        if (wanted_) testing::internal::CaptureStdout();
    }
    ~Silence() {
        if (wanted_) testing::internal::GetCapturedStdout();
    }
    Silence(const Silence &) = delete;
    Silence &operator=(const Silence &) = delete;

  private:
    bool wanted_;
};

}  // namespace failures
