// Small parts: the start, steps, texts.

#include <gtest/gtest.h>

#include <algorithm>

#include "Kestrin.h"
#include "Operation.h"
#include "cropUtil.h"
#include "platform/FakeHost.h"

namespace {

TEST(Start, TheCommandStandsAtTheBottomOfTheLayerMenuBehindALine) {
    StartHost host;
    EXPECT_EQ(EntryPointFunc(host.basic(), 0, 0, 9, nullptr), 0);
    EXPECT_EQ(host.calls(),
              (std::vector<std::string>{"insert 0 - into 5 at -1", "number", "insert 77 Kestrin into 5 at -1",
                                        "command hook", "menu hook", "idle hook"}));
}

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

TEST(Text, UTF16EndsAtTheLengthInCharacters) {
    A_UTF16Char units[5];
    std::fill(std::begin(units), std::end(units), A_UTF16Char{7});
    cropUtil::copyConvertStringLiteralIntoUTF16(L"", units);
    EXPECT_EQ(units[0], 0);
    EXPECT_EQ(units[1], 7);
    if constexpr (sizeof(wchar_t) == 4) {  // elsewhere a wide character is a UTF-16 unit already
        cropUtil::copyConvertStringLiteralIntoUTF16(L"a\u00e9\U0001F600", units);
        EXPECT_EQ(units[1], 0xE9);
        EXPECT_EQ(units[2], 0xD83D);
        EXPECT_EQ(units[3], 0);
        EXPECT_EQ(units[4], 7);
    }
}

}  // namespace
