#include "apps/camerad/access/Rules.h"

#include "tests/unit/camerad/access/AccessTest.h"

namespace camerad {
namespace {

using ::testing::HasSubstr;

TEST(Names, AreShortAndPlain) {
    for (const std::string& name : {std::string("a"), std::string("Admin"), std::string("back-up_2.example"),
                                    std::string(32, 'x'), std::string("."), std::string("-")}) {
        EXPECT_TRUE(isName(name)) << name;
        EXPECT_EQ(refusedAs([&] { requireName(name, "A name"); }), "") << name;
    }
    for (const std::string& name :
         {std::string(), std::string(33, 'x'), std::string("two words"), std::string("a/b"), std::string("a:b"),
          std::string("J\xC3\xBCrgen"), std::string("a\0b", 3), std::string("a\n"), std::string("<b>")}) {
        EXPECT_FALSE(isName(name)) << name;
        EXPECT_EQ(refusedAs([&] { requireName(name, "A name"); }), "bad-name") << name;
    }
}

TEST(Names, AreExplained) {
    const Refusal refusal = refusalOf([] { requireName("", "The name of a token"); });
    EXPECT_EQ(refusal.kind(), Refusal::Kind::BadValue);
    EXPECT_THAT(refusal.what(), HasSubstr("The name of a token has 1 to 32 characters"));
    EXPECT_THAT(refusal.what(), HasSubstr("hyphen"));
}

TEST(Passwords, AreTextOfEightTo256Bytes) {
    for (const std::string& password :
         {std::string("12345678"), std::string(256, 'x'), std::string("gr\xC3\xBC\xC3\x9F dich"),
          std::string("\xF0\x9F\x93\xB7\xF0\x9F\x93\xB7"), std::string("        "),
          std::string("\xE2\x82\xAC 5 \xC2\xA0 !"), std::string("\xEF\xBF\xBD\xED\x9F\xBF\xEE\x80\x80")}) {
        EXPECT_EQ(refusedAs([&] { requirePassword(password); }), "") << password;
    }
}

TEST(Passwords, AreRefusedWithTheRule) {
    struct Row {
        std::string strPassword;
        const char* szRule;
    };
    for (const Row& row : {
             Row{"", "at least 8"},
             Row{"1234567", "at least 8"},
             Row{std::string(257, 'x'), "at most 256 bytes"},
             Row{"12345678\n", "control characters"},
             Row{std::string("12345678\0", 9), "control characters"},
             Row{"12345678\x7F", "control characters"},
             Row{"12345678\xC2\x85", "control characters"},  // U+0085
             Row{"12345678\x80", "UTF-8"},                   // a middle without a beginning
             Row{"12345678\xC3", "UTF-8"},                   // cut short
             Row{"12345678\xE2\x82", "UTF-8"},               // cut short
             Row{"12345678\xF0\x9F\x93", "UTF-8"},           // cut short
             Row{"1234567\xC3(8", "UTF-8"},                  // another letter in the middle
             Row{"12345678\xC0\xAF", "UTF-8"},               // longer than it has to be
             Row{"12345678\xE0\x80\xAF", "UTF-8"},           // longer than it has to be
             Row{"12345678\xF0\x80\x80\xAF", "UTF-8"},       // longer than it has to be
             Row{"12345678\xED\xA0\x80", "UTF-8"},           // half of a pair
             Row{"12345678\xF4\x90\x80\x80", "UTF-8"},       // beyond the last character
             Row{"12345678\xF8\x88\x80\x80\x80", "UTF-8"},   // five bytes
             Row{"12345678\xFF", "UTF-8"},
         }) {
        const Refusal refusal = refusalOf([&] { requirePassword(row.strPassword); });
        EXPECT_EQ(refusal.type(), "bad-password") << row.strPassword;
        EXPECT_EQ(refusal.kind(), Refusal::Kind::BadValue) << row.strPassword;
        EXPECT_THAT(refusal.what(), HasSubstr(row.szRule)) << row.strPassword;
    }
}

}  // namespace
}  // namespace camerad
