// switch_to and LPR_switch_to: one scheme takes the place of another.
#include "tests/unit/schemes/SchemeCamera.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class SchemeSwitch : public SchemeCamera {};

TEST_F(SchemeSwitch, SendsOnlyTheKeysInWhichTheNewSchemeDiffers) {
    build(3);
    probe.setCurScheme(0);
    probe.setKeyValToCache(1, KEY_CONTRAST, 7, true);
    EXPECT_EQ(0, probe.switch_to(1, false));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 2353 = 7"));
    EXPECT_EQ(1, probe.curScheme());
    EXPECT_EQ(0, probe.lastScheme());
}

TEST_F(SchemeSwitch, ToAnIdenticalSchemeSendsNothing) {
    build(3);
    probe.setCurScheme(0);
    EXPECT_EQ(0, probe.switch_to(2, false));
    EXPECT_THAT(camera.transcript(), IsEmpty());
    EXPECT_EQ(2, probe.curScheme());
}

TEST_F(SchemeSwitch, ForcedSendsEveryKeyAndRecordsNothing) {
    // Recording would copy the second record of a key over the first one.
    probe.buildSets(3, {{KEY_BRIGHTNESS, 50}, {KEY_DN_MODE, 1}, {KEY_BRIGHTNESS, 60}});
    probe.setCurScheme(0);
    EXPECT_EQ(0, probe.switch_to(1, true));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 50", "ia ch0 set 144 = 1", "ia ch0 set 34 = 60"));
    EXPECT_EQ(50u, probe.valueIn(1, KEY_BRIGHTNESS));
}

TEST_F(SchemeSwitch, ForcedIgnoresAFailure) {
    build(2);
    probe.setCurScheme(0);
    camera.driverFails(KEY_BRIGHTNESS, IA_CMD_OPT_SET, -3);
    const std::string strOut = outputOf([&] { EXPECT_EQ(0, probe.switch_to(1, true)); });
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 50 failed -3"));
    EXPECT_EQ("", strOut);
    EXPECT_EQ("", root.errorLog());
    EXPECT_EQ(1, probe.curScheme());
}

TEST_F(SchemeSwitch, ThatFailsIsReportedAndStaysSwitched) {
    build(2);
    probe.setCurScheme(0);
    probe.setKeyValToCache(1, KEY_BRIGHTNESS, 9, true);
    probe.setKeyValToCache(1, KEY_CONTRAST, 7, true);
    camera.driverFails(KEY_BRIGHTNESS, IA_CMD_OPT_SET, -3);
    const std::string strOut = outputOf([&] { EXPECT_EQ(0, probe.switch_to(1, false)); });
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 9 failed -3"));
    EXPECT_EQ(1, probe.curScheme());
    EXPECT_EQ(0u, probe.flags() & SensorControllerProbe::switching_flag);
    EXPECT_THAT(strOut, HasSubstr("fun:switch_to line:"));
    EXPECT_THAT(strOut, HasSubstr("\nQVS_SUCCESS == setParameters(m_ppUserKeyVal[m_nCurScheme], m_nKeyValSum, true)   "
                                  "~~~Assertion failed.\n\033[0m\033[0m\033[31mm_nCurScheme(1) "
                                  "m_nKeyValSum(8)\n\033[0m"));
    EXPECT_THAT(root.errorLog(), HasSubstr("[sensor assert] m_nCurScheme(1) m_nKeyValSum(8)\n"));
}

TEST_F(SchemeSwitch, WithEnabledAbortAFailureAbortsThroughTheCLibrary) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    build(2);
    root.debugLevel(1, true);
    probe.setCurScheme(0);
    probe.setKeyValToCache(1, KEY_BRIGHTNESS, 9, true);
    camera.driverFails(KEY_BRIGHTNESS, IA_CMD_OPT_SET, -3);
    EXPECT_DEATH(probe.switch_to(1, false), "ISensorController.cpp:[0-9]+: .*switch_to.*Assertion `bRet' failed");
}

TEST_F(SchemeSwitch, MarksItselfWhileItRuns) {
    build(2);
    probe.setCurScheme(0);
    u32 nFlags = 0;
    int nCurrent = -2;
    int nLast = -2;
    camera.onDriver(KEY_CONTRAST, IA_CMD_OPT_SET, [&](int, void*) {
        nFlags = probe.flags();
        nCurrent = probe.curScheme();
        nLast = probe.lastScheme();
        return 0;
    });
    probe.switch_to(1, true);
    EXPECT_EQ(SensorControllerProbe::switching_flag, nFlags & SensorControllerProbe::switching_flag);
    EXPECT_EQ(1, nCurrent);
    EXPECT_EQ(0, nLast);
    EXPECT_EQ(0u, probe.flags() & SensorControllerProbe::switching_flag);
}

TEST_F(SchemeSwitch, RecordsWhatTheDriverMadeOfAValue) {
    build(2);
    probe.setCurScheme(0);
    probe.setKeyValToCache(1, KEY_CONTRAST, 300, true);
    camera.onDriver(KEY_CONTRAST, IA_CMD_OPT_SET, [](int, void* data) {
        *static_cast<int*>(data) = 255;
        return 0;
    });
    probe.switch_to(1, false);
    EXPECT_EQ(255u, probe.valueIn(1, KEY_CONTRAST));
}

TEST_F(SchemeSwitch, FromNoSchemeSendsEveryKey) {
    build(2);
    ASSERT_EQ(-1, probe.curScheme());
    probe.switch_to(0, false);
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 50", "ia ch0 set 144 = 1", "ia ch0 set 2353 = 128"));
    EXPECT_EQ(0, probe.curScheme());
    EXPECT_EQ(-1, probe.lastScheme());
}

TEST_F(SchemeSwitch, ToTheFactorySchemeAppliesItAndRecordsNothingInIt) {
    build(2);
    probe.setCurScheme(0);
    probe.setKeyValToCache(2, KEY_CONTRAST, 300, true);
    camera.onDriver(KEY_CONTRAST, IA_CMD_OPT_SET, [](int, void*) { return 0; });
    const std::string strOut = outputOf([&] { probe.switch_to(2, false); });
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 2353 = 300"));
    EXPECT_EQ(2, probe.curScheme());
    EXPECT_EQ("\n", strOut);
}

TEST_F(SchemeSwitch, OutsideTheTableIsRefusedAndChangesNothing) {
    build(2);
    probe.setCurScheme(1);
    probe.setLastScheme(0);
    for (const int nScheme : {-1, 3, 1000000, -2147483647}) {
        for (const bool bForce : {false, true}) {
            EXPECT_EQ(0, probe.switch_to(nScheme, bForce)) << nScheme;
        }
        EXPECT_EQ(0, probe.LPR_switch_to(nScheme)) << nScheme;
        EXPECT_EQ(1, probe.curScheme()) << nScheme;
        EXPECT_EQ(0, probe.lastScheme()) << nScheme;
        EXPECT_EQ(0u, probe.flags() & SensorControllerProbe::switching_flag) << nScheme;
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(SchemeSwitch, OutsideTheTableIsReported) {
    build(2);
    root.debugLevel(6);
    EXPECT_THAT(outputOf([&] { probe.switch_to(3, false); }), HasSubstr("there is no scheme 3 to switch to\n"));
}

TEST_F(SchemeSwitch, SaysFromWhereToWhereAtDebugLevel) {
    build(2);
    probe.setCurScheme(0);
    root.debugLevel(6);
    const std::string strOut = outputOf([&] { probe.switch_to(1, false); });
    EXPECT_THAT(strOut, HasSubstr("\033[0m\033[0m[sensor dbg] file:ISensorController.cpp fun:switch_to line:"));
    EXPECT_THAT(strOut, HasSubstr("\nswitch_to(): 0 -> 1\n\033[0m"));
}

TEST_F(SchemeSwitch, SaysNothingBelowDebugLevelButTheNewlineOfTheWalk) {
    build(2);
    probe.setCurScheme(0);
    root.debugLevel(5);
    EXPECT_EQ("\n", outputOf([&] { probe.switch_to(1, false); }));
}

TEST_F(SchemeSwitch, OfAPlateCameraSendsEveryKeyWithTheDayNightModeSwitchedOff) {
    build(2);
    probe.setCurScheme(0);
    EXPECT_EQ(0, probe.LPR_switch_to(1));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 50", "ia ch0 set 144 = 0", "ia ch0 set 2353 = 128"));
    EXPECT_EQ(1, probe.curScheme());
    EXPECT_EQ(0, probe.lastScheme());
}

TEST_F(SchemeSwitch, OfAPlateCameraLeavesTheStoredDayNightMode) {
    build(2);
    probe.setCurScheme(0);
    probe.LPR_switch_to(1);
    EXPECT_EQ(1u, probe.valueIn(1, KEY_DN_MODE));
    EXPECT_EQ(1u, probe.valueIn(0, KEY_DN_MODE));
}

TEST_F(SchemeSwitch, OfAPlateCameraSwitchesOffOnlyTheFirstDayNightRecord) {
    std::vector<KeyVal> vecRecords = records();
    vecRecords.push_back({KEY_DN_MODE, 5});
    probe.buildSets(2, vecRecords);
    probe.setCurScheme(0);
    probe.LPR_switch_to(1);
    EXPECT_THAT(camera.linesLike("ia ch0 set 144"), ElementsAre("ia ch0 set 144 = 0", "ia ch0 set 144 = 5"));
}

TEST_F(SchemeSwitch, OfAPlateCameraWithoutADayNightRecordIsAPlainOne) {
    probe.buildSets(2, {{KEY_BRIGHTNESS, 50}});
    probe.setCurScheme(0);
    probe.LPR_switch_to(1);
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 50"));
}

TEST_F(SchemeSwitch, OfAPlateCameraNeverReportsAFailureAndPrintsNoDebugLineOfItsOwn) {
    build(2);
    probe.setCurScheme(0);
    camera.driverFails(KEY_BRIGHTNESS, IA_CMD_OPT_SET, -3);
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(0, probe.LPR_switch_to(1)); }));
    root.debugLevel(6);
    EXPECT_THAT(outputOf([&] { probe.LPR_switch_to(1); }), testing::Not(HasSubstr("switch_to")));
    EXPECT_EQ(1, probe.curScheme());
    EXPECT_EQ(0u, probe.flags() & SensorControllerProbe::switching_flag);
}

TEST_F(SchemeSwitch, OneShotActionsOfASetAreNotReplayed) {
    probe.buildSets(2, {{KEY_LENS_RESET, 1}, {KEY_BRIGHTNESS, 50}});
    probe.switch_to(0, false);
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 50"));
}

TEST_F(SchemeSwitch, WithNoUserSchemeTheFactorySetIsSchemeZero) {
    build(0);
    EXPECT_EQ(0, probe.switch_to(0, false));
    EXPECT_EQ(0, probe.curScheme());
    EXPECT_THAT(camera.transcript(), testing::SizeIs(3));
    EXPECT_EQ(0, probe.switch_to(1, false));
    EXPECT_EQ(0, probe.curScheme());
}

}  // namespace
