#include "platform/StringHandler.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Pieces = std::vector<std::string>;

Pieces split(const std::string& p_strText, const std::string& p_strSeparator) {
    Pieces vecPieces;
    StringHandler::split(p_strText, vecPieces, p_strSeparator);
    return vecPieces;
}

TEST(StringHandlerTest, SplitsBetweenSeparators) {
    const struct {
        const char* text;
        const char* separator;
        Pieces pieces;
    } rows[] = {
        {"34,2337", ",", {"34", "2337"}},
        {"34", ",", {"34"}},
        {"", ",", {}},
        {",", ",", {}},
        {"34,,2337", ",", {"34", "2337"}},
        {",34,", ",", {"34"}},
        {" 34 , 2337 ", ",", {" 34 ", " 2337 "}},
        {" , ", ",", {" ", " "}},
        {"a)(b)(c", ")(", {"a", "b", "c"}},
        {"a)(b", "(", {"a)", "b"}},
        {"aaaa", "aa", {}},
        {"aaa", "aa", {"a"}},
        {"a,b", "", {"a,b"}},
        {"", "", {}},
        {"ab", "abc", {"ab"}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(split(row.text, row.separator), row.pieces) << row.text << " at " << row.separator;
    }
}

TEST(StringHandlerTest, SplitAppends) {
    Pieces vecPieces = {"before"};
    StringHandler::split("a,b", vecPieces, ",");
    EXPECT_EQ(vecPieces, (Pieces{"before", "a", "b"}));
}

TEST(StringHandlerTest, TheTextMayStandInTheList) {
    Pieces vecPieces = {"a,b,c,d,e,f"};
    StringHandler::split(vecPieces[0], vecPieces, ",");
    EXPECT_EQ(vecPieces, (Pieces{"a,b,c,d,e,f", "a", "b", "c", "d", "e", "f"}));
}

TEST(StringHandlerTest, SplitKeepsZeroBytes) {
    EXPECT_EQ(split(std::string("a\0b,c", 5), ","), (Pieces{std::string("a\0b", 3), "c"}));
}

TEST(StringHandlerTest, ReadsNumbers) {
    const struct {
        const char* text;
        bool right;
        int value;
    } rows[] = {
        {"34", true, 34},
        {"-5", true, -5},
        {" 7", true, 7},
        {"12abc", true, 12},
        {"abc", false, 0},
        {"", false, 0},
        {"2147483647", true, 2147483647},
        {"2147483648", false, 2147483647},  // what the extraction stores
    };
    for (const auto& row : rows) {
        int nValue = 99;
        EXPECT_EQ(StringHandler::str2type(row.text, nValue), row.right) << row.text;
        EXPECT_EQ(nValue, "" == std::string(row.text) ? nValue : row.value) << row.text;
    }
}

TEST(StringHandlerTest, ReadsOtherTypes) {
    unsigned nUnsigned = 0;
    EXPECT_TRUE(StringHandler::str2type("4294967295", nUnsigned));
    EXPECT_EQ(nUnsigned, 4294967295U);
    std::string strWord;
    EXPECT_TRUE(StringHandler::str2type("two words", strWord));
    EXPECT_EQ(strWord, "two");
}

}  // namespace
