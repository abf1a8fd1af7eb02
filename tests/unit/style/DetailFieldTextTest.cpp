#include "sensor/config/DetailField.h"
#include "tests/support/Messages.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

// The ten characters that a field goes through, as a caller keeps them.
struct Field {
    char text[kDetailFieldSize];
    int result;

    Field(const char* p_szDetail, const char* p_szName, char p_cBefore = '\0') {
        std::memset(text, p_cBefore, sizeof(text));
        result = getDetailFieldToStr(p_szDetail, p_szName, text);
    }
};

}  // namespace

TEST(DetailFieldText, IsTheValueBetweenEqualSignAndParenthesis) {
    const Field field("(max_scheme=4)(lens=wide)", "lens");
    EXPECT_EQ(0, field.result);
    EXPECT_STREQ("wide", field.text);
}

TEST(DetailFieldText, OfAnEmptyValueIsFoundAndEmpty) {
    const Field field("(lens=)(max_scheme=4)", "lens");
    EXPECT_EQ(0, field.result);
    EXPECT_STREQ("", field.text);
}

TEST(DetailFieldText, KeepsBlanksAndSigns) {
    EXPECT_STREQ(" -1,a ", Field("(lens= -1,a )", "lens").text);
}

TEST(DetailFieldText, WithoutItsNameIsNotFound) {
    const Field field("(max_scheme=4)", "lens", 'x');
    EXPECT_EQ(-1, field.result);
    EXPECT_EQ("xxxxxxxxxx", std::string(field.text, sizeof(field.text)));
}

TEST(DetailFieldText, WithoutAnEqualSignBehindTheNameIsNotFound) {
    const Field field("(max_scheme=4)(lens)", "lens", 'x');
    EXPECT_EQ(-1, field.result);
    EXPECT_EQ("xxxxxxxxxx", std::string(field.text, sizeof(field.text)));
}

TEST(DetailFieldText, WithoutAParenthesisBehindTheEqualSignIsNotFound) {
    const Field field("(max_scheme=4)(lens=wide", "lens", 'x');
    EXPECT_EQ(-1, field.result);
    EXPECT_EQ("xxxxxxxxxx", std::string(field.text, sizeof(field.text)));
}

TEST(DetailFieldText, OfAnEmptyDetailIsNotFound) {
    EXPECT_EQ(-1, Field("", "lens").result);
}

TEST(DetailFieldText, OfANameThatStandsTwiceIsTheFirst) {
    EXPECT_STREQ("wide", Field("(lens=wide)(lens=tele)", "lens").text);
}

TEST(DetailFieldText, MeantANameMatchesTheEndOfALongerName) {
    EXPECT_STREQ("far", Field("(backlens=far)(lens=wide)", "lens").text);
}

TEST(DetailFieldText, MeantANameMatchesInsideAValue) {
    EXPECT_STREQ("4", Field("(kind=lens)(max_scheme=4)(lens=wide)", "lens").text);
}

TEST(DetailFieldText, MeantTheEqualSignMayBelongToALaterGroup) {
    EXPECT_STREQ("4", Field("(lens)(max_scheme=4)", "lens").text);
}

TEST(DetailFieldText, MeantNoTerminatorIsWritten) {
    const Field field("(lens=wide)", "lens", 'x');
    EXPECT_EQ("widexxxxxx", std::string(field.text, sizeof(field.text)));
}

TEST(DetailFieldText, OfNineCharactersIsWhole) {
    const TestRoot root;
    root.debugLevel(6);
    EXPECT_EQ("", outputOf([] { EXPECT_STREQ("123456789", Field("(lens=123456789)", "lens").text); }));
}

TEST(DetailFieldText, LongerThanNineCharactersIsCutAndReported) {
    const TestRoot root;
    root.debugLevel(6);
    const std::string strOut = outputOf([] {
        const Field field("(lens=1234567890abcdef)", "lens");
        EXPECT_EQ(0, field.result);
        EXPECT_STREQ("123456789", field.text);
    });
    EXPECT_EQ(messages::error({"sensor.cpp", "getDetailFieldToStr"},
                              "value of detail field lens is longer than 9 characters\n"),
              messages::anyLine(strOut));
}
