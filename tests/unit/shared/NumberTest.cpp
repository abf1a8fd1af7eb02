#include "apps/shared/Number.h"

#include "apps/shared/CommandError.h"

#include <gmock/gmock.h>

namespace apps {
namespace {

using testing::HasSubstr;

struct GoodRow {
    const char* szWord;
    std::int64_t nNumber;
};

class GoodNumber : public testing::TestWithParam<GoodRow> {};

TEST_P(GoodNumber, IsRead) {
    EXPECT_EQ(parseInt(GetParam().szWord, "N"), GetParam().nNumber);
}

INSTANTIATE_TEST_SUITE_P(Number, GoodNumber,
                         testing::Values(GoodRow{"0", 0}, GoodRow{"60", 60}, GoodRow{"-5", -5}, GoodRow{"+7", 7},
                                         GoodRow{"007", 7}, GoodRow{"0x1F", 31}, GoodRow{"0XfF", 255},
                                         GoodRow{"-0x10", -16}, GoodRow{"2147483647", 2147483647},
                                         GoodRow{"-2147483648", -2147483648LL}));

class BadNumber : public testing::TestWithParam<const char*> {};

TEST_P(BadNumber, IsRefusedAndQuoted) {
    try {
        parseInt(GetParam(), "the value");
        FAIL() << "taken: " << GetParam();
    } catch (const CommandError& error) {
        EXPECT_THAT(error.what(), HasSubstr("the value must be"));
        EXPECT_THAT(error.what(), HasSubstr("\"" + std::string(GetParam()).substr(0, 80)));
    }
}

INSTANTIATE_TEST_SUITE_P(Number, BadNumber,
                         testing::Values("", "-", "+", "abc", "12a", "1.5", "1 ", " 1", "0x", "0xG", "--1",
                                         "2147483648", "-2147483649", "0x80000000", "18446744073709551676",
                                         "99999999999999999999999999999999999999999"));

TEST(Number, TheRangeStandsInTheRefusal) {
    try {
        parseNumber("9", "the channel", 1, 4);
        FAIL();
    } catch (const CommandError& error) {
        EXPECT_STREQ(error.what(), "the channel must be from 1 to 4, not \"9\"");
    }
}

TEST(Number, BothEndsOfTheRangeBelongToIt) {
    EXPECT_EQ(parseNumber("1", "N", 1, 4), 1);
    EXPECT_EQ(parseNumber("4", "N", 1, 4), 4);
    EXPECT_THROW(parseNumber("0", "N", 1, 4), CommandError);
    EXPECT_THROW(parseNumber("5", "N", 1, 4), CommandError);
}

TEST(Number, DecimalsMayHaveAFractionAndASign) {
    EXPECT_DOUBLE_EQ(parseDecimal("0.5", "LUX", 0, 10), 0.5);
    EXPECT_DOUBLE_EQ(parseDecimal("10", "LUX", 0, 10), 10);
    EXPECT_DOUBLE_EQ(parseDecimal("-12.25", "CELSIUS", -60, 85), -12.25);
}

TEST(Number, DecimalsThatAreNoNumbersAreRefused) {
    for (const char* word : {"", ".", "1.2.3", "nan", "inf", "1e3", "0x1p3", "1,5", "five", "1 2"}) {
        EXPECT_THROW(parseDecimal(word, "LUX", 0, 1e9), CommandError) << word;
    }
    EXPECT_THROW(parseDecimal("10.5", "LUX", 0, 10), CommandError);
    EXPECT_THROW(parseDecimal("-1", "LUX", 0, 10), CommandError);
}

TEST(Number, SwitchesHaveWordsAndDigits) {
    for (const char* word : {"1", "on", "ON", "true", "yes"}) {
        EXPECT_TRUE(parseSwitch(word, "the flag")) << word;
    }
    for (const char* word : {"0", "off", "False", "no"}) {
        EXPECT_FALSE(parseSwitch(word, "the flag")) << word;
    }
    EXPECT_THROW(parseSwitch("2", "the flag"), CommandError);
    EXPECT_THROW(parseSwitch("", "the flag"), CommandError);
}

TEST(Number, AWordLooksLikeANumberByItsBeginning) {
    EXPECT_TRUE(looksLikeNumber("12x"));
    EXPECT_TRUE(looksLikeNumber("-1"));
    EXPECT_FALSE(looksLikeNumber("-x"));
    EXPECT_FALSE(looksLikeNumber("-"));
    EXPECT_FALSE(looksLikeNumber(""));
}

}  // namespace
}  // namespace apps
