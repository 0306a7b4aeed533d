#include <gtest/gtest.h>

#include <algorithm>

#include "cropUtil.h"

namespace {

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
