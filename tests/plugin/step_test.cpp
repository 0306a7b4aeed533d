#include <gtest/gtest.h>

#include "Operation.h"

namespace {

TEST(Step, RunsOnlyUntilTheFirstFailureAndKeepsItsName) {
    int made = 0;
    const A_Err error = operation(nullptr, [&](AEGP_SuiteHandler& suites, Result& result) {
        step(result, "first", [&] { return ++made, A_Err{A_Err_NONE}; });
        step(result, "second", [&] { return ++made, A_Err{4}; });
        step(result, "third", [&] { return ++made, A_Err{5}; });
        EXPECT_STREQ(result.failedStep(), "second");
        suites.ItemSuite8();  // a missing suite does not hide the failure
    });
    EXPECT_EQ(error, 4);
    EXPECT_EQ(made, 2);
}

}  // namespace
