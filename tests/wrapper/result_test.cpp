#include <gtest/gtest.h>

#include <memory>
#include <type_traits>
#include <utility>

#include "tests/wrapper/documents.h"

namespace {

using compactxml::Error;
using compactxml::Exception;
using compactxml::Result;

const Error kError{XML_REFUSED, "what is wrong"};

TEST(WrapperResult, HoldsAValue) {
    Result<std::string> result(std::string("value"));
    ASSERT_TRUE(result);
    EXPECT_EQ(result.error().code, XML_OK);
    EXPECT_EQ(result.value(), "value");
    EXPECT_EQ(*result, "value");
    EXPECT_EQ(result->size(), 5U);
    result.value() += "s";
    *result += "!";
    const Result<std::string> &same = result;
    EXPECT_EQ(same.value(), "values!");
    EXPECT_EQ(*same, "values!");
    EXPECT_EQ(same->size(), 7U);
}

TEST(WrapperResult, GivesItsValueAway) {
    EXPECT_EQ(*Result<std::unique_ptr<int>>(std::make_unique<int>(7)).value(), 7);
    Result<std::unique_ptr<int>> result(std::make_unique<int>(8));
    const std::unique_ptr<int> value = *std::move(result);
    EXPECT_EQ(*value, 8);
}

// Runs something that must throw kError.
template <class Work>
void expectThrown(const Work &work) {
    try {
        work();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const Exception &exception) {
        EXPECT_STREQ(exception.what(), "what is wrong");
        EXPECT_EQ(exception.error().code, XML_REFUSED);
        EXPECT_EQ(exception.error().message, "what is wrong");
    }
}

TEST(WrapperResult, ThrowsItsErrorInsteadOfAValue) {
    Result<std::string> result(kError);
    const Result<std::string> &same = result;
    EXPECT_FALSE(result);
    EXPECT_EQ(result.error().message, "what is wrong");
    expectThrown([&] { static_cast<void>(result.value()); });
    expectThrown([&] { static_cast<void>(*result); });
    expectThrown([&] { static_cast<void>(result->size()); });
    expectThrown([&] { static_cast<void>(same.value()); });
    expectThrown([&] { static_cast<void>(*same); });
    expectThrown([&] { static_cast<void>(same->size()); });
    expectThrown([&] { static_cast<void>(std::move(result).value()); });
    expectThrown([&] { static_cast<void>(*std::move(result)); });
}

TEST(WrapperResult, MayHaveNothingToHold) {
    const Result<void> good;
    EXPECT_TRUE(good);
    EXPECT_NO_THROW(good.value());
    const Result<void> bad(kError);
    EXPECT_FALSE(bad);
    EXPECT_EQ(bad.error().code, XML_REFUSED);
    expectThrown([&] { bad.value(); });
}

TEST(WrapperResult, ExceptionsAreCopiedWithoutThrowing) {
    EXPECT_TRUE(std::is_nothrow_copy_constructible_v<Exception>);
    EXPECT_TRUE((std::is_base_of_v<std::runtime_error, Exception>));
}

}  // namespace
