#pragma once
// A fixture base for tests that walk an assertion path: assertions throw std::runtime_error while the
// test runs, and the previous assertion function comes back in tear-down.

#include <tov/utils/Assertion.h>

#include <gtest/gtest.h>

namespace tov {
namespace testing {

class AssertionTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        previous = utils::getAssertionFailedFunction();
        utils::setAssertionFailedFunction(utils::throwOnAssertionFailed);
    }

    void TearDown() override { utils::setAssertionFailedFunction(previous); }

private:
    utils::AssertionFailedFunction previous = nullptr;
};

} // namespace testing
} // namespace tov

// Expects `statement` to fail an assertion with exactly `text`.
#define EXPECT_ASSERTION(statement, text)                                                                              \
    do {                                                                                                               \
        try {                                                                                                          \
            statement;                                                                                                 \
            ADD_FAILURE() << "no assertion from " #statement;                                                          \
        } catch (const std::runtime_error& failure) {                                                                  \
            EXPECT_STREQ(text, failure.what());                                                                        \
        }                                                                                                              \
    } while (false)
