// Keys that the write path treats in their own way: those of the second channel, of day and night and of the limited
// infrared power.
#include "tests/unit/sensor/WriteTest.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class WriteCouplings : public WriteTest {};

// --- The second channel ---

class SecondChannel : public WriteTest {
protected:
    SecondChannel() { controller.setChannelID(2); }
};

TEST_F(SecondChannel, MirrorGoesToItsHandler) {
    cached(0, KEY_BEAWAY, 1);
    EXPECT_EQ(0, write({{KEY_MIRROR, 1}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("video ch2 2384 = 2", "ia ch1 set 2384 = 2"));
    EXPECT_EQ(1u, probe.valueIn(0, KEY_MIRROR));
}

TEST_F(SecondChannel, AntiShakeGoesToItsHandler) {
    EXPECT_EQ(0, write({{KEY_ANTI_SHAKE_SWITCH, 1}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("video ch2 2416 = 1", "ia ch1 set 2416 = 1"));
    EXPECT_EQ(1u, probe.valueIn(0, KEY_ANTI_SHAKE_SWITCH));
}

TEST_F(SecondChannel, ColourModeAndTemperatureStripGoToTheVideoModuleOnly) {
    EXPECT_EQ(0, write({{KEY_NONE_COLOR_MODE, 3}, {KEY_TEMPERATURE_STRIP_SWITCH, 1}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("video ch2 8201 = 3", "video ch2 8217 = 1"));
    EXPECT_EQ(3u, probe.valueIn(0, KEY_NONE_COLOR_MODE));
    EXPECT_EQ(1u, probe.valueIn(0, KEY_TEMPERATURE_STRIP_SWITCH));
}

TEST_F(SecondChannel, MirrorIsRecordedThoughItsHandlerFailed) {
    camera.driverFails(2384, IA_CMD_OPT_SET, -5);
    EXPECT_EQ(0, write({{KEY_MIRROR, 1}, {KEY_BRIGHTNESS, 7}}));
    EXPECT_EQ(1u, probe.valueIn(0, KEY_MIRROR));
    EXPECT_EQ(7u, probe.valueIn(0, KEY_BRIGHTNESS));
}

TEST_F(SecondChannel, NoResultOfTheseKeysIsChecked) {
    root.debugLevel(5);
    camera.driverFails(2416, IA_CMD_OPT_SET, -5);
    camera.videoFails(8201, 5);
    camera.videoFails(8217, 6);
    EXPECT_EQ("\n", outputOf([&] {
                  EXPECT_EQ(
                      0,
                      write({{KEY_ANTI_SHAKE_SWITCH, 1}, {KEY_NONE_COLOR_MODE, 3}, {KEY_TEMPERATURE_STRIP_SWITCH, 1}}));
              }));
    EXPECT_EQ(1u, probe.valueIn(0, KEY_ANTI_SHAKE_SWITCH));
    EXPECT_EQ(3u, probe.valueIn(0, KEY_NONE_COLOR_MODE));
    EXPECT_EQ(1u, probe.valueIn(0, KEY_TEMPERATURE_STRIP_SWITCH));
}

TEST_F(SecondChannel, TheseKeysAreNotAnnouncedAsSent) {
    root.debugLevel(6);
    EXPECT_EQ("\n", outputOf([&] { write({{KEY_NONE_COLOR_MODE, 3}, {KEY_TEMPERATURE_STRIP_SWITCH, 1}}); }));
}

TEST_F(SecondChannel, WithoutCachingTheseKeysAreAppliedAndNotRecorded) {
    EXPECT_EQ(0, write({{KEY_MIRROR, 1}, {KEY_NONE_COLOR_MODE, 3}}, false));
    EXPECT_THAT(camera.transcript(), ElementsAre("video ch2 2384 = 1", "ia ch1 set 2384 = 1", "video ch2 8201 = 3"));
    EXPECT_EQ(0u, probe.valueIn(0, KEY_MIRROR));
    EXPECT_EQ(0u, probe.valueIn(0, KEY_NONE_COLOR_MODE));
}

TEST_F(SecondChannel, AValueInForceIsLeftOutHereToo) {
    EXPECT_EQ(0, write({{KEY_MIRROR, 0}, {KEY_ANTI_SHAKE_SWITCH, 0}, {KEY_NONE_COLOR_MODE, 0}}));
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(SecondChannel, EveryOtherKeyTakesTheOrdinaryPath) {
    EXPECT_EQ(0, write({{KEY_BRIGHTNESS, 7}, {KEY_BEAWAY, 1}}));
    EXPECT_THAT(driverCalls(), ElementsAre("ia ch1 set 34 = 7", "ia ch1 set 2384 = 0", "ia ch1 set 2385 = 1"));
}

TEST_F(WriteCouplings, OnEveryOtherChannelTheKeysOfTheSecondOneTakeTheOrdinaryPath) {
    for (const int nChannel : {1, 3, 4}) {
        SCOPED_TRACE(nChannel);
        controller.setChannelID(nChannel);
        camera.clear();
        EXPECT_EQ(0, write({{KEY_NONE_COLOR_MODE, 3}, {KEY_TEMPERATURE_STRIP_SWITCH, 1}}, false));
        const std::string strChannel = "ia ch" + std::to_string(nChannel - 1);
        EXPECT_THAT(camera.transcript(), ElementsAre(strChannel + " set 8201 = 3", strChannel + " set 8217 = 1"));
    }
    camera.driverFails(2384, IA_CMD_OPT_SET, -5);
    EXPECT_EQ(-2384, write({{KEY_MIRROR, 1}}));
    EXPECT_EQ(0u, probe.valueIn(0, KEY_MIRROR));
}

// --- Switching by day and night ---

constexpr u32 kDayNightKeys[] = {144, 145, 146, 149, 150, 151, 152};

class DayNightSwitching : public WriteTest {
protected:
    DayNightSwitching() { probe.setSwitching(false, true); }
};

TEST_F(DayNightSwitching, AKeyOfSchemeZeroIsSentAndHoldsForSchemeOneToo) {
    for (const u32 nKey : kDayNightKeys) {
        SCOPED_TRACE(nKey);
        camera.clear();
        const u32 nOld = probe.valueIn(2, nKey);
        EXPECT_EQ(0, write({{nKey, 77}}));
        EXPECT_EQ(1u, camera.linesLike("ia ch0 set " + std::to_string(nKey) + " = ").size());
        EXPECT_THAT(inAllSchemes(nKey), ElementsAre(77, 77, nOld, nOld));
    }
}

TEST_F(DayNightSwitching, AKeyOfAnotherSchemeIsOnlyRecorded) {
    for (const u32 nKey : kDayNightKeys) {
        SCOPED_TRACE(nKey);
        const u32 nOld = probe.valueIn(0, nKey);
        probe.setCurScheme(2);
        EXPECT_EQ(0, write({{nKey, 77}}));
        EXPECT_THAT(inAllSchemes(nKey), ElementsAre(nOld, nOld, 77, nOld));
        probe.setCurScheme(1);
        EXPECT_EQ(0, write({{nKey, 78}}));
        EXPECT_THAT(inAllSchemes(nKey), ElementsAre(nOld, 78, 77, nOld));
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(DayNightSwitching, WithoutCachingAKeyOfAnotherSchemeDoesNothing) {
    probe.setCurScheme(2);
    EXPECT_EQ(0, write({{KEY_DTN_THR, 77}}, false));
    EXPECT_THAT(inAllSchemes(KEY_DTN_THR), ElementsAre(30, 30, 30, 30));
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(DayNightSwitching, WithoutCachingAKeyOfSchemeZeroStillReachesSchemeOne) {
    EXPECT_EQ(0, write({{KEY_DTN_THR, 77}}, false));
    EXPECT_THAT(inAllSchemes(KEY_DTN_THR), ElementsAre(30, 77, 30, 30));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 145 = 77 60 0"));
}

TEST_F(DayNightSwitching, SchemeOneHasTheValueThoughTheDriverFailed) {
    camera.driverFails(145, IA_CMD_OPT_SET, -3);
    EXPECT_EQ(-145, write({{KEY_DTN_THR, 77}}));
    EXPECT_THAT(inAllSchemes(KEY_DTN_THR), ElementsAre(30, 77, 30, 30));
}

TEST_F(DayNightSwitching, SchemeOneHasTheValueBeforeItIsSent) {
    u32 nInSchemeOne = 0;
    camera.onDriver(145, IA_CMD_OPT_SET, [&](int, void*) {
        nInSchemeOne = probe.valueIn(1, KEY_DTN_THR);
        return 0;
    });
    write({{KEY_DTN_THR, 77}});
    EXPECT_EQ(77u, nInSchemeOne);
}

TEST_F(DayNightSwitching, WithoutASchemeAKeyIsNeitherSentNorRecorded) {
    probe.setCurScheme(-1);
    EXPECT_EQ(0, write({{KEY_DTN_THR, 77}, {KEY_BRIGHTNESS, 7}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 7"));
    EXPECT_THAT(inAllSchemes(KEY_DTN_THR), ElementsAre(30, 30, 30, 30));
}

TEST_F(DayNightSwitching, InTheFactorySetAKeyIsNeitherSentNorRecorded) {
    probe.setCurScheme(3);
    EXPECT_EQ(0, write({{KEY_DTN_THR, 77}}));
    EXPECT_THAT(camera.transcript(), IsEmpty());
    EXPECT_THAT(inAllSchemes(KEY_DTN_THR), ElementsAre(30, 30, 30, 30));
}

TEST_F(DayNightSwitching, EveryOtherKeyTakesTheOrdinaryPath) {
    probe.setCurScheme(2);
    EXPECT_EQ(0, write({{KEY_DN_SENSITIVITY, 7}, {KEY_DELAY, 8}, {KEY_BRIGHTNESS, 9}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 154 = 0 0 7", "ia ch0 set 147 = 8", "ia ch0 set 34 = 9"));
    EXPECT_THAT(inAllSchemes(KEY_DN_SENSITIVITY), ElementsAre(5, 5, 7, 5));
}

TEST_F(DayNightSwitching, SchemeZeroSharesNoOtherKey) {
    EXPECT_EQ(0, write({{KEY_DN_SENSITIVITY, 7}, {KEY_DELAY, 8}}));
    EXPECT_THAT(inAllSchemes(KEY_DN_SENSITIVITY), ElementsAre(7, 5, 5, 5));
    EXPECT_THAT(inAllSchemes(KEY_DELAY), ElementsAre(8, 4, 4, 4));
}

TEST_F(WriteCouplings, UnderAnyOtherSwitchingTheDayNightKeysTakeTheOrdinaryPath) {
    for (const bool bSchedule : {false, true}) {
        probe.setSwitching(bSchedule, false);
        camera.clear();
        for (const u32 nKey : kDayNightKeys) {
            SCOPED_TRACE(nKey);
            const u32 nNew = bSchedule ? 77 : 78;
            const u32 nOld = probe.valueIn(0, nKey);
            probe.setCurScheme(2);
            EXPECT_EQ(0, write({{nKey, nNew}}));
            EXPECT_THAT(inAllSchemes(nKey), ElementsAre(nOld, nOld, nNew, nOld));
            EXPECT_EQ(1u, camera.linesLike("ia ch0 set " + std::to_string(nKey) + " = ").size());
        }
    }
}

class DayNightFewSchemes : public DayNightSwitching {
protected:
    void rebuild(u32 p_nSchemeSum) {
        controller.uinit();
        build(p_nSchemeSum, records());
    }
};

TEST_F(DayNightFewSchemes, WithOneUserSchemeTheFactorySetStandsInForSchemeOne) {
    rebuild(1);
    EXPECT_EQ(0, write({{KEY_DTN_THR, 77}}));
    EXPECT_EQ(77u, probe.valueIn(0, KEY_DTN_THR));
    EXPECT_EQ(77u, probe.valueIn(1, KEY_DTN_THR));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 145 = 77 60 0"));
}

TEST_F(DayNightFewSchemes, WithoutUserSchemesThereIsNoSchemeOneToStoreIn) {
    rebuild(0);
    EXPECT_EQ(0, write({{KEY_DTN_THR, 77}}));
    EXPECT_EQ(30u, probe.valueIn(0, KEY_DTN_THR));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 145 = 77 60 0"));
}

// --- Limited infrared power ---

class LimitedPower : public WriteTest {
protected:
    LimitedPower() { probe.setLimitedIrPower(true); }

    static std::string condition() { return "QVS_SUCCESS == doIaCmd(p_pKeyval[i].key, IA_CMD_OPT_GET, &nVal)"; }

    // Sets without the two powers.
    void buildWithoutPowers() {
        controller.uinit();
        build(1, {{KEY_BRIGHTNESS, 50}});
    }
};

TEST_F(LimitedPower, MeantTheListsFirstKeyIsReturnedNotTheOffendingOne) {
    EXPECT_EQ(-34, write({{KEY_BRIGHTNESS, 7}, {KEY_IR_MANUAL_STRG_NEAR, 41}, {KEY_CONTRAST, 1}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 7"));
    EXPECT_EQ(7u, probe.valueIn(0, KEY_BRIGHTNESS));
    EXPECT_EQ(20u, probe.valueIn(0, KEY_IR_MANUAL_STRG_NEAR));
    EXPECT_EQ(128u, probe.valueIn(0, KEY_CONTRAST));
}

TEST_F(LimitedPower, AHundredTogetherPasses) {
    EXPECT_EQ(0, write({{KEY_BRIGHTNESS, 7}, {KEY_IR_MANUAL_STRG_NEAR, 40}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 7", "ia ch0 set 163 = 40"));
}

TEST_F(LimitedPower, FarIsLimitedByNear) {
    EXPECT_EQ(-167, write({{KEY_IR_MANUAL_STRG_FAR, 81}}));
    EXPECT_EQ(0, write({{KEY_IR_MANUAL_STRG_FAR, 80}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 167 = 80"));
}

TEST_F(LimitedPower, RefusesWithoutAMessageOrANewline) {
    root.debugLevel(6);
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(-163, write({{KEY_IR_MANUAL_STRG_NEAR, 41}})); }));
    EXPECT_EQ("", root.errorLog());
}

TEST_F(LimitedPower, RefusesBeforeTheTwinOfTheKeyIsTouched) {
    EXPECT_EQ(-163, write({{KEY_IR_MANUAL_STRG_NEAR, 41}}));
    EXPECT_EQ(25u, probe.valueIn(0, KEY_IR_MANUAL_STRG_NEAR_INTELL));
}

TEST_F(LimitedPower, HoldsWithoutCachingToo) {
    EXPECT_EQ(-34, write({{KEY_BRIGHTNESS, 7}, {KEY_IR_MANUAL_STRG_NEAR, 41}}, false));
}

TEST_F(LimitedPower, HoldsUnderTheIntelligentLightToo) {
    cached(0, KEY_LIGHT_TYPE, 2);
    EXPECT_EQ(-163, write({{KEY_IR_MANUAL_STRG_NEAR, 41}}));
}

TEST_F(LimitedPower, AListThatBeginsWithKeyZeroEndsThereAllTheSame) {
    EXPECT_EQ("", outputOf([&] {
                  camera.driverHolds(0, 0, 0);
                  KeyVal aList[] = {{0, 0}, {KEY_IR_MANUAL_STRG_NEAR, 41}, {KEY_CONTRAST, 1}};
                  root.debugLevel(-1);
                  EXPECT_EQ(0, probe.setParameters(aList, 3, true));
              }));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 0 = 0"));
    EXPECT_EQ(20u, probe.valueIn(0, KEY_IR_MANUAL_STRG_NEAR));
}

TEST_F(LimitedPower, AddsInThirtyTwoBits) {
    EXPECT_EQ(0, write({{KEY_IR_MANUAL_STRG_NEAR, 0xFFFFFFF0u}}));     // 60 more wraps to 44
    EXPECT_EQ(-163, write({{KEY_IR_MANUAL_STRG_NEAR, 0xFFFFFFC3u}}));  // 60 more is 0xFFFFFFFF
}

TEST_F(LimitedPower, APartnerOfMinusOneCountsAsUnknown) {
    cached(0, KEY_IR_MANUAL_STRG_FAR, 0xFFFFFFFFu);
    EXPECT_EQ(0, write({{KEY_IR_MANUAL_STRG_NEAR, 500}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 163 = 500"));
}

TEST_F(LimitedPower, LimitsNoOtherKey) {
    EXPECT_EQ(0, write({{KEY_IR_MANUAL_STRG_MEDIUM, 200}, {KEY_WHITE_MANUAL_STRG, 200}}));
    cached(0, KEY_LIGHT_TYPE, 2);
    EXPECT_EQ(0, write({{KEY_IR_MANUAL_STRG_NEAR_INTELL, 200}, {KEY_IR_MANUAL_STRG_FAR_INTELL, 200}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 165 = 200", "ia ch0 set 170 = 200", "ia ch0 set 163 = 200",
                                                 "ia ch0 set 167 = 200"));
}

TEST_F(LimitedPower, LimitsNothingOnOtherHardware) {
    probe.setLimitedIrPower(false);
    EXPECT_EQ(0, write({{KEY_IR_MANUAL_STRG_NEAR, 200}, {KEY_IR_MANUAL_STRG_FAR, 200}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 163 = 200", "ia ch0 set 167 = 200"));
}

TEST_F(LimitedPower, TakesThePartnerOfTheCurrentScheme) {
    cached(1, KEY_IR_MANUAL_STRG_FAR, 10);
    probe.setCurScheme(1);
    EXPECT_EQ(0, write({{KEY_IR_MANUAL_STRG_NEAR, 90}}));
    EXPECT_EQ(-163, write({{KEY_IR_MANUAL_STRG_NEAR, 91}}));
}

TEST_F(LimitedPower, MeantWithoutAPartnerTheDriverIsAskedForTheEntrysOwnKey) {
    buildWithoutPowers();
    camera.driverHolds(0, 163, 60);
    const std::string strOut = outputOf([&] {
        EXPECT_EQ(-34, write({{KEY_BRIGHTNESS, 7}, {KEY_IR_MANUAL_STRG_NEAR, 41}}));
    });
    EXPECT_EQ("### KEY_IR_MANUAL_STRG_FAR doIaCmd sucess\n", strOut);
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 7", "ia ch0 get 163 -> 60"));
    camera.driverHolds(0, 167, 60);
    camera.clear();
    EXPECT_EQ("### KEY_IR_MANUAL_STRG_NEAR doIaCmd sucess\n\n", outputOf([&] {
                  EXPECT_EQ(0, write({{KEY_IR_MANUAL_STRG_FAR, 40}}));
              }));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 167 -> 60", "ia ch0 set 167 = 40"));
}

TEST_F(LimitedPower, TheLightTypeIsTheOneBeforeThePowerWasAskedFor) {
    controller.uinit();
    build(1, {{KEY_LIGHT_TYPE, 0}});
    camera.onDriver(163, IA_CMD_OPT_GET, [this](int, void* data) {
        probe.setKeyValToCache(0, KEY_LIGHT_TYPE, 2, true);
        *static_cast<int*>(data) = 10;
        return 0;
    });
    EXPECT_EQ(0, write({{KEY_IR_MANUAL_STRG_NEAR, 40}}));
    EXPECT_EQ(2u, probe.valueIn(0, KEY_LIGHT_TYPE));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 163 -> 10", "ia ch0 set 163 = 40"));
}

TEST_F(LimitedPower, ADriverThatDoesNotAnswerIsReportedAndLimitsNothing) {
    buildWithoutPowers();
    camera.driverFails(163, IA_CMD_OPT_GET, -3);
    camera.driverFails(167, IA_CMD_OPT_GET, -3);
    EXPECT_EQ(messages::assertion(in("setParameters"), condition()) + messages::detail("get key(-1) val from 2a err") +
                  "### KEY_IR_MANUAL_STRG_FAR doIaCmd error\n\n",
              messages::anyLine(outputOf([&] {
                  EXPECT_EQ(0, write({{KEY_IR_MANUAL_STRG_NEAR, 500}}));
              })));
    EXPECT_EQ(
        messages::loggedAssertion(in("setParameters"), condition()) + "[sensor assert] get key(-1) val from 2a err\n",
        messages::anyLine(root.errorLog()));
    EXPECT_THAT(outputOf([&] {
                    EXPECT_EQ(0, write({{KEY_IR_MANUAL_STRG_FAR, 500}}));
                }),
                HasSubstr("\033[0m### KEY_IR_MANUAL_STRG_NEAR doIaCmd error\n"));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 163 failed -3", "ia ch0 set 163 = 500",
                                                 "ia ch0 get 167 failed -3", "ia ch0 set 167 = 500"));
}

TEST_F(LimitedPower, WhatAFailingDriverWroteCountsAsThePartner) {
    buildWithoutPowers();
    camera.onDriver(163, IA_CMD_OPT_GET, [](int, void* p_pData) {
        *static_cast<int*>(p_pData) = 60;
        return -3;
    });
    EXPECT_THAT(outputOf([&] {
                    EXPECT_EQ(-163, write({{KEY_IR_MANUAL_STRG_NEAR, 41}}));
                }),
                HasSubstr("get key(60) val from 2a err"));
    EXPECT_EQ(0, write({{KEY_IR_MANUAL_STRG_NEAR, 40}}));
}

TEST_F(LimitedPower, WhatTheDriverAnswersOnlyLimitsTheKeyAndIsNotRecorded) {
    buildWithoutPowers();
    camera.driverHolds(0, 163, 60);
    std::vector<KeyVal> vecList = {{KEY_IR_MANUAL_STRG_NEAR, 40}};
    EXPECT_EQ(0, write(vecList));
    EXPECT_EQ(40u, vecList[0].value);
}

TEST_F(LimitedPower, ASilentDriverAbortsWhenAssertionsAreEnabled) {
    buildWithoutPowers();
    root.debugLevel(1, true);
    camera.driverFails(163, IA_CMD_OPT_GET, -3);
    EXPECT_DEATH(write({{KEY_IR_MANUAL_STRG_NEAR, 1}}), abortIn("setParameters"));
}

}  // namespace
