// Each form of expect, once where it holds and once where it does not.
#include "tests/unit/sensorctl/ProgramRun.h"

#include <gmock/gmock.h>

namespace {

struct ExpectRow {
    const char* szName;
    std::string strBefore;
    std::string strHolds;
    std::string strFails;
};

void PrintTo(const ExpectRow& p_stRow, std::ostream* p_pStream) {
    *p_pStream << p_stRow.szName;
}

class Expectation : public testing::TestWithParam<ExpectRow> {};

TEST_P(Expectation, TellsTrueFromFalse) {
    const DeviceTree tree;
    const ProgramResult good = runScript(tree, GetParam().strBefore + "expect " + GetParam().strHolds + "\n");
    EXPECT_EQ(good.nStatus, 0) << good.strErrors;
    EXPECT_THAT(good.strOutput, testing::HasSubstr("  as expected: "));
    const DeviceTree other;
    const ProgramResult bad = runScript(other, GetParam().strBefore + "expect " + GetParam().strFails + "\n");
    EXPECT_EQ(bad.nStatus, 1);
    EXPECT_THAT(bad.strErrors, testing::HasSubstr("expected "));
    EXPECT_THAT(bad.strErrors, testing::HasSubstr(", found "));
}

INSTANTIATE_TEST_SUITE_P(
    Program, Expectation,
    testing::Values(ExpectRow{"Sent", "setDNState 1\n", "sent set 153 1", "sent set 153 0"},
                    ExpectRow{"SentLooksAtTheLatestCommandOnly", "setDNState 1\nirisUp\n", "sent set 83 1",
                              "sent set 153 1"},
                    ExpectRow{"SentLooksPastCommandsThatOnlyLook", "setDNState 1\nstatus\ndriver 153\n",
                              "sent set 153 1", "silent"},
                    ExpectRow{"Silent", "uinit\n", "silent", "sent set"},
                    ExpectRow{"SilentWithWords", "setDNState 1\n", "silent set 16", "silent set 153"},
                    ExpectRow{"Count", "irisUp\n", "count 2", "count 1"},
                    ExpectRow{"CountWithWords", "irisUp\n", "count 1 set 83", "count 2 set 83"},
                    ExpectRow{"Transcript", "setDNState 1\nirisUp\n", "transcript set 153 1", "transcript set 84"},
                    ExpectRow{"Answer", "setDNState 1\ngetDNState\n", "answer state 1", "answer state 0"},
                    ExpectRow{"AnswerOfACommandThatOnlyLooks", "machine\n", "answer code 1001", "answer code 1002"},
                    ExpectRow{"Scheme", "init\nscheme 2\n", "scheme 2", "scheme 0"},
                    ExpectRow{"Mode", "init\nmode auto\n", "mode 1", "mode 0"},
                    ExpectRow{"Driver", "setDNState 1\n", "driver 153 1", "driver 153 0"},
                    ExpectRow{"File", "init\n", "file 2 brightness 50", "file 2 brightness 51"},
                    ExpectRow{"Style", "init\n", "style 'id=\"34\"'", "style 'id=\"123456\"'"},
                    ExpectRow{"Fail", "", "fail set brightness 60", "fail echo fine"},
                    ExpectRow{"FailOfBadArguments", "", "fail scheme x y", "fail expect fail nonsense"}),
    [](const auto& p_stInfo) { return p_stInfo.param.szName; });

TEST(Expect, AnAnswerWithoutTheFieldIsRefusedWithTheNearestOne) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "getZoomValue\nexpect answer postion 1\n");
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_THAT(run.strErrors, testing::HasSubstr("no field \"postion\"; did you mean \"position\"?"));
}

TEST(Expect, FailuresAreNestedUpToABound) {
    const DeviceTree tree;
    const auto nested = [](std::size_t p_nTimes) {
        std::string line;
        for (std::size_t i = 0; i < p_nTimes; ++i) {
            line += "expect fail ";
        }
        return line;
    };
    EXPECT_EQ(runScript(tree, nested(16) + "echo fine\n").nStatus, 0);
    for (const std::size_t tooMany : {17U, 18U, 80000U}) {
        const ProgramResult run = runScript(tree, nested(tooMany) + "echo fine\n");
        EXPECT_EQ(run.nStatus, 1);
        EXPECT_THAT(run.strErrors, testing::HasSubstr("expect fail is nested too deeply"));
    }
}

TEST(Expect, WhatIsFoundIsShownShort) {
    const DeviceTree tree;
    const ProgramResult run = runScript(tree, "init\nexpect sent nothing\n");
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_THAT(run.strErrors, testing::HasSubstr("found \"ia ch0 commands -> 49 50 82 1537 = 0\", \""));
    EXPECT_THAT(run.strErrors, testing::ContainsRegex("\" and [0-9]+ more"));
}

TEST(Expect, DriverAndFilesWithoutTheValueAreFailures) {
    const DeviceTree tree;
    for (const char* line : {"expect driver 99999 1", "expect file 0 brightness 1", "init\nexpect file 0 12 1"}) {
        EXPECT_EQ(runScript(tree, std::string(line) + "\n").nStatus, 1) << line;
    }
}

}  // namespace
