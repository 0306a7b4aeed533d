#include <gtest/gtest.h>

#include <algorithm>

#include "Kestrin_Strings.h"
#include "Scripts.h"
#include "cropUtil.h"

namespace {

TEST(Text, RowsOfTheStringTableThatLookAlikeAreDifferentRows) {
    EXPECT_STREQ(GetStringPtr(1), GetStringPtr(8));
    EXPECT_NE(GetStringPtr(1), GetStringPtr(8));
    EXPECT_STREQ(GetStringPtr(18), "Menu_Cmd");
    EXPECT_STREQ(GetStringPtr(21), "Kestrin Null");
}

TEST(Text, SprintOSIgnoresTheSize) {
    char buffer[32] = "";
    EXPECT_EQ(cropUtil::SprintOS(buffer, 2, "%d and %s", -12, "more"), 12);
    EXPECT_STREQ(buffer, "-12 and more");
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

TEST(Text, ScriptsAreEmbeddedWithTheirBlanksAndEscapes) {
    const std::string question = scripts::resolutionQuestion;
    EXPECT_EQ(question.size(), 1684U);
    EXPECT_EQ(std::count(question.begin(), question.end(), '\n'), 63);
    EXPECT_NE(question.find("undefined, \n\"Kestrin requires"), std::string::npos);
    EXPECT_NE(question.find(R"(".\n\nWould you like ")"), std::string::npos);
    EXPECT_EQ(std::string(scripts::preferences).find("@KESTRIN"), std::string::npos);
    EXPECT_NE(std::string(scripts::notCroppedAlert).find("\n\tnamesA.push("), std::string::npos);
}

}  // namespace
