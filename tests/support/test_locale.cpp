// Runs all tests in the locale that the variable COMPACTXML_TEST_LOCALE names, if it is set.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>

namespace {

class TestLocale : public testing::Environment {
  public:
    void SetUp() override {
        const char *name = std::getenv("COMPACTXML_TEST_LOCALE");
        if (!name) return;
        ASSERT_TRUE(std::setlocale(LC_ALL, name)) << "no locale " << name;
    }
};

[[maybe_unused]] const testing::Environment *const kTestLocale =
    testing::AddGlobalTestEnvironment(new TestLocale);

}  // namespace
