#include "sensor/config/DetailField.h"

#include "tests/support/Messages.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr u32 kUntouched = 0xA5A5A5A5u;

class DetailField : public testing::Test {
protected:
    TestRoot m_objRoot;
};

struct NumberRow {
    const char* szDetail;
    const char* szField;
    int nResult;
    u32 nNumber;
};

TEST_F(DetailField, IsTheNumberOfItsGroup) {
    const std::vector<NumberRow> rows = {
        {"(max_scheme=4)", "max_scheme", 0, 4},
        {"(max_scheme=4)(isInfrared=1)", "isInfrared", 0, 1},
        {"(a=1)(b=2)(c=3)", "b", 0, 2},
        {"(a=1)(a=2)", "a", 0, 1},
        {"a=7)", "a", 0, 7},
        {"text (a=7) text", "a", 0, 7},
        {"(a=0)", "a", 0, 0},
        {"(a=-1)", "a", 0, 0xFFFFFFFFu},
        {"(a=+12)", "a", 0, 12},
        {"(a= 12)", "a", 0, 12},
        {"(a=12x)", "a", 0, 12},
        {"(a=x)", "a", 0, 0},
        {"(a=)", "a", 0, 0},
        {"(a = 5 )", "a", 0, 5},
        {"(a=999999999)", "a", 0, 999999999},
        {"(a=-99999999)", "a", 0, static_cast<u32>(-99999999)},
        {"(A=1)", "a", -1, kUntouched},
        {"(b=1)", "a", -1, kUntouched},
        {"", "a", -1, kUntouched},
        {"a", "a", -1, kUntouched},
        {"(a)", "a", -1, kUntouched},
        {"(a=5", "a", -1, kUntouched},
        {")a=5", "a", -1, kUntouched},
        {"(b=5)a", "a", -1, kUntouched},
        {"(max_schem=4)", "max_scheme", -1, kUntouched},
    };
    for (const NumberRow& row : rows) {
        u32 nNumber = kUntouched;
        EXPECT_EQ(row.nResult, getDetailFieldTou32(row.szDetail, row.szField, &nNumber)) << row.szDetail;
        EXPECT_EQ(row.nNumber, nNumber) << row.szDetail;
    }
}

TEST_F(DetailField, WithoutAClosingParenthesisBehindItsEqualIsNotFound) {
    u32 nNumber = kUntouched;
    EXPECT_EQ(-1, getDetailFieldTou32("(isInfrared=1)(max_scheme=4", "max_scheme", &nNumber));
    EXPECT_EQ(kUntouched, nNumber);
}

TEST_F(DetailField, MeantItsNameIsFoundAnywhere) {
    const std::vector<NumberRow> rows = {
        {"(not_max_scheme=6)", "max_scheme", 0, 6},                // inside a longer name
        {"(max_scheme_old=6)(max_scheme=2)", "max_scheme", 0, 6},  // at the start of one
        {"(label=max_scheme)(size=9)", "max_scheme", 0, 9},        // inside a value: the next group's number
        {"(max_scheme)(size=9)", "max_scheme", 0, 9},              // without a value of its own
        {"(a=1)(b=2)", "", 0, 1},                                  // an empty name is everywhere
    };
    for (const NumberRow& row : rows) {
        u32 nNumber = kUntouched;
        EXPECT_EQ(row.nResult, getDetailFieldTou32(row.szDetail, row.szField, &nNumber)) << row.szDetail;
        EXPECT_EQ(row.nNumber, nNumber) << row.szDetail;
    }
}

TEST_F(DetailField, LongerThanNineCharactersIsCutAndReported) {
    m_objRoot.debugLevel(6);
    u32 nNumber = kUntouched;
    const std::string strShown =
        outputOf([&] { EXPECT_EQ(0, getDetailFieldTou32("(max_scheme=1234567890)", "max_scheme", &nNumber)); });
    EXPECT_EQ(123456789u, nNumber);
    EXPECT_EQ(messages::error({"sensor.cpp", "getDetailFieldToStr"},
                              "value of detail field max_scheme is longer than 9 characters\n"),
              messages::anyLine(strShown));

    EXPECT_EQ("",
              outputOf([&] { EXPECT_EQ(0, getDetailFieldTou32("(max_scheme=123456789)", "max_scheme", &nNumber)); }));
    EXPECT_EQ(123456789u, nNumber);
}

TEST_F(DetailField, OfAnyLengthStaysInItsBuffer) {
    for (const std::size_t nLength : {10u, 11u, 100u, 1000000u}) {
        u32 nNumber = kUntouched;
        EXPECT_EQ(0, getDetailFieldTou32(("(a=" + std::string(nLength, '7') + ")").c_str(), "a", &nNumber));
        EXPECT_EQ(777777777u, nNumber) << nLength;
    }
}

// --- As text ---

std::unique_ptr<char[]> markedBuffer() {
    auto pBuffer = std::make_unique<char[]>(kDetailFieldSize);
    std::memset(pBuffer.get(), '#', kDetailFieldSize);
    return pBuffer;
}

std::string contentOf(const std::unique_ptr<char[]>& p_pBuffer) {
    return {p_pBuffer.get(), kDetailFieldSize};
}

TEST_F(DetailField, AsTextIsCopiedWithoutATerminator) {
    const auto pBuffer = markedBuffer();
    EXPECT_EQ(0, getDetailFieldToStr("(kind=dome)", "kind", pBuffer.get()));
    EXPECT_EQ("dome######", contentOf(pBuffer));
    EXPECT_EQ(0, getDetailFieldToStr("(kind=)", "kind", pBuffer.get()));
    EXPECT_EQ("dome######", contentOf(pBuffer));
    EXPECT_EQ(0, getDetailFieldToStr("(kind= a=(b )", "kind", pBuffer.get()));
    EXPECT_EQ(" a=(b ####", contentOf(pBuffer));
}

TEST_F(DetailField, AsTextHoldsNineCharactersAtMost) {
    m_objRoot.debugLevel(6);
    auto pBuffer = markedBuffer();
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(0, getDetailFieldToStr("(kind=abcdefghi)", "kind", pBuffer.get())); }));
    EXPECT_EQ("abcdefghi#", contentOf(pBuffer));
    for (const char* szDetail : {"(kind=abcdefghij)", "(kind=abcdefghijklmnopqrstuvwxyz)"}) {
        pBuffer = markedBuffer();
        const std::string strShown =
            outputOf([&] { EXPECT_EQ(0, getDetailFieldToStr(szDetail, "kind", pBuffer.get())); });
        EXPECT_EQ("abcdefghi#", contentOf(pBuffer));
        EXPECT_EQ(messages::error({"sensor.cpp", "getDetailFieldToStr"},
                                  "value of detail field kind is longer than 9 characters\n"),
                  messages::anyLine(strShown));
    }
}

TEST_F(DetailField, ThatIsNotFoundLeavesTheBufferAlone) {
    const auto pBuffer = markedBuffer();
    for (const char* szDetail : {"", "(size=1)", "(kind", "(kind)", "(kind=", "(kind=dome"}) {
        EXPECT_EQ(-1, getDetailFieldToStr(szDetail, "kind", pBuffer.get())) << szDetail;
        EXPECT_EQ("##########", contentOf(pBuffer)) << szDetail;
    }
}

}  // namespace
