#include "apps/camerad/host/PlainText.h"

#include <gtest/gtest.h>

using camerad::charactersOf;
using camerad::isPlainText;
using camerad::plainLine;

namespace {

TEST(PlainText, IsUtf8WithoutControlCharacters) {
    for (const char* good : {"", "a b", "\xC3\xBC", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xED\x9F\xBF"}) {
        EXPECT_TRUE(isPlainText(good)) << good;
    }
    for (const char* bad :
         {"\n", "\x7F", "\xC2\x85", "\xC3", "\x80", "\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xED\xA0\x80",
          "\xF0\x80\x80\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xE2\x82", "a\x1B[31m"}) {
        EXPECT_FALSE(isPlainText(bad)) << bad;
    }
}

TEST(PlainText, CountsCharacters) {
    EXPECT_EQ(4u, charactersOf("a\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80"));
}

TEST(PlainText, BecomesOneLine) {
    EXPECT_EQ("red text end", plainLine("\x1B[0m\x1B[31mred\ttext\nend\x1B[0m", 100));
    EXPECT_EQ("a?b", plainLine("a\xFF"
                               "b",
                               100));
    EXPECT_EQ("ab", plainLine("ab\xC3\xBC", 3)) << "no half characters";
    EXPECT_EQ("", plainLine("\x1B[", 100));
}

TEST(PlainText, OfATimeOfDay) {
    EXPECT_EQ("00:00", camerad::clockText(0));
    EXPECT_EQ("06:05", camerad::clockText(365));
    EXPECT_EQ("24:00", camerad::clockText(1440));
}

}  // namespace
