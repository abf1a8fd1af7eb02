// Keys that need more than their own value: records of several keys, keys that the video module must know, keys that
// change each other.
#include "tests/unit/sensor/ControllerTest.h"
#include "tests/unit/sensor/KeyCmdRows.h"

#include <cstring>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class SpecialKeyHandlers : public ControllerTest {
protected:
    SpecialKeyHandlers() {
        build(2, {{KEY_DTN_THR, 30},
                  {KEY_NTD_THR, 60},
                  {KEY_DN_SENSITIVITY, 5},
                  {KEY_DTN_H, 17},
                  {KEY_DTN_M, 10},
                  {KEY_NTD_H, 6},
                  {KEY_NTD_M, 20},
                  {KEY_MIRROR, 0},
                  {KEY_BEAWAY, 0},
                  {KEY_WDR_MODE, 0}});
    }
    ~SpecialKeyHandlers() override { setshowBeawayFalg(true); }

    // Calls the handler that the table names for the key.
    int handle(u32 p_nKey, u32 p_nValue, u32 p_nDir = IA_CMD_OPT_SET) {
        m_nValue = p_nValue;
        return probe.call(probe.handlerOf(p_nKey), p_nKey, p_nDir, &m_nValue);
    }

    void cached(u32 p_nKey, u32 p_nValue) { probe.setKeyValToCache(0, p_nKey, p_nValue, false); }

    void expectReported(const std::string& p_strFunction, const std::string& p_strCondition,
                        const std::string& p_strOut) {
        EXPECT_EQ(messages::assertion(in(p_strFunction), p_strCondition), messages::anyLine(p_strOut));
        EXPECT_EQ(messages::loggedAssertion(in(p_strFunction), p_strCondition), messages::anyLine(root.errorLog()));
    }

    u32 m_nValue = 0;  // of the latest call, as the handler left it
};

// --- Keys that the video module must know ---

TEST_F(SpecialKeyHandlers, ImageShiftGoesToTheDriverAndThenToTheVideoModule) {
    for (const u32 nKey : {2432u, 2436u, 2439u}) {
        SCOPED_TRACE(nKey);
        camera.clear();
        EXPECT_EQ(0, handle(nKey, 7));
        const std::string strKey = std::to_string(nKey);
        EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set " + strKey + " = 7", "video ch1 " + strKey + " = 7"));
    }
}

TEST_F(SpecialKeyHandlers, ImageShiftTellsTheValueThatTheDriverLeft) {
    camera.onDriver(2436, IA_CMD_OPT_SET, [](int, void* p_pData) {
        *static_cast<int*>(p_pData) = 8;
        return 0;
    });
    EXPECT_EQ(0, handle(2436, 7));
    EXPECT_THAT(notifications(), ElementsAre("video ch1 2436 = 8"));
}

TEST_F(SpecialKeyHandlers, ImageShiftIsNotifiedThoughTheDriverFailed) {
    camera.driverFails(2436, IA_CMD_OPT_SET, -3);
    const std::string strOut = outputOf([&] { EXPECT_EQ(0, handle(2436, 7)); });
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 2436 = 7 failed -3", "video ch1 2436 = 7"));
    expectReported("doImageAdjust", "QVS_SUCCESS == doIaCmd(p_nKey, p_nDir, p_pVal)", strOut);
}

TEST_F(SpecialKeyHandlers, ImageShiftReturnsTheNotificationsResult) {
    camera.videoFails(2436, 5);
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(5, handle(2436, 7)); }));
    camera.driverFails(2436, IA_CMD_OPT_SET, -3);
    EXPECT_EQ(5, handle(2436, 7));
}

TEST_F(SpecialKeyHandlers, MeantTheAntiShakeSwitchGoesToTheVideoModuleFirst) {
    EXPECT_EQ(0, handle(KEY_ANTI_SHAKE_SWITCH, 1));
    EXPECT_THAT(camera.transcript(), ElementsAre("video ch1 2416 = 1", "ia ch0 set 2416 = 1"));
}

TEST_F(SpecialKeyHandlers, AntiShakeSwitchIsSentThoughTheNotificationFailed) {
    camera.videoFails(2416, 5);
    const std::string strOut = outputOf([&] { EXPECT_EQ(0, handle(KEY_ANTI_SHAKE_SWITCH, 1)); });
    EXPECT_THAT(camera.transcript(), ElementsAre("video ch1 2416 = 1 failed 5", "ia ch0 set 2416 = 1"));
    expectReported("doDIS", "QVS_SUCCESS == notifyToVideo(p_nKey, *(u32*)p_pVal)", strOut);
}

TEST_F(SpecialKeyHandlers, AntiShakeSwitchReturnsTheDriversResultWithoutAReport) {
    camera.driverFails(2416, IA_CMD_OPT_SET, -5);
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(-5, handle(KEY_ANTI_SHAKE_SWITCH, 1)); }));
}

TEST_F(SpecialKeyHandlers, PanoramaKeysNeverReachTheDriver) {
    int nKeys = 0;
    for (const KeyCmdRow& stRow : kKeyCmdRows) {
        if (nullptr == stRow.handler || 0 != std::strcmp("doIaCmd_PanoTuning", stRow.handler)) {
            continue;
        }
        ++nKeys;
        SCOPED_TRACE(stRow.name);
        camera.clear();
        EXPECT_EQ(0, handle(stRow.key, 7));
        EXPECT_THAT(camera.transcript(), ElementsAre("video ch1 " + std::to_string(stRow.key) + " = 7"));
    }
    EXPECT_EQ(34, nKeys);
}

TEST_F(SpecialKeyHandlers, PanoramaKeySucceedsThoughItsNotificationFailed) {
    camera.videoFails(9000, -1);
    const std::string strOut = outputOf([&] { EXPECT_EQ(0, handle(KEY_PANO_STITCH_DIST, 7)); });
    expectReported("doIaCmd_PanoTuning", "QVS_SUCCESS == notifyToVideo(nKey, nVal)", strOut);
}

TEST_F(SpecialKeyHandlers, TestParametersAreOnlyNotifiedAndNothingIsReported) {
    for (const u32 nKey : {190u, 191u, 192u, 193u}) {
        SCOPED_TRACE(nKey);
        camera.clear();
        camera.videoFails(static_cast<int>(nKey), 5);
        EXPECT_EQ("", outputOf([&] { EXPECT_EQ(0, handle(nKey, 7)); }));
        EXPECT_THAT(camera.transcript(), ElementsAre("video ch1 " + std::to_string(nKey) + " = 7 failed 5"));
    }
    EXPECT_EQ("", root.errorLog());
}

// --- Wide dynamic range ---

TEST_F(SpecialKeyHandlers, WideDynamicRangeIsFramedByTheBeginAndTheEndOfTheChange) {
    EXPECT_EQ(0, handle(KEY_WDR_MODE, 1));
    EXPECT_THAT(camera.transcript(),
                ElementsAre("video ch1 2370 = 0", "video ch1 2368 = 1", "ia ch0 set 2368 = 1", "video ch1 2370 = 1"));
}

TEST_F(SpecialKeyHandlers, WideDynamicRangeThatIsNotOfferedIsOffAndSendsNothing) {
    controller.setShowWDRFalg(false);
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(0, handle(KEY_WDR_MODE, 1)); }));
    EXPECT_EQ(0u, m_nValue);
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(SpecialKeyHandlers, WideDynamicRangeKeepsItsValueWhileItIsOffered) {
    handle(KEY_WDR_MODE, 3);
    EXPECT_EQ(3u, m_nValue);
}

TEST_F(SpecialKeyHandlers, WideDynamicRangeReportsTheDriversFailureButReturnsTheNotifications) {
    camera.driverFails(2368, IA_CMD_OPT_SET, -5);
    const std::string strOut = outputOf([&] { EXPECT_EQ(0, handle(KEY_WDR_MODE, 1)); });
    EXPECT_THAT(camera.transcript(), ElementsAre("video ch1 2370 = 0", "video ch1 2368 = 1",
                                                 "ia ch0 set 2368 = 1 failed -5", "video ch1 2370 = 1"));
    expectReported("doHwdr", "QVS_SUCCESS == doIaCmd(p_nKey, p_nDir, p_pVal)", strOut);
}

TEST_F(SpecialKeyHandlers, WideDynamicRangeGoesOnWhenAllNotificationsFail) {
    camera.videoFails(2370, 9);
    camera.videoFails(2368, 5);
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(5, handle(KEY_WDR_MODE, 1)); }));
    EXPECT_THAT(camera.transcript(), ElementsAre("video ch1 2370 = 0 failed 9", "video ch1 2368 = 1 failed 5",
                                                 "ia ch0 set 2368 = 1", "video ch1 2370 = 1 failed 9"));
}

// --- Day and night ---

TEST_F(SpecialKeyHandlers, DayToNightThresholdTravelsWithTheOther) {
    EXPECT_EQ(0, handle(KEY_DTN_THR, 31));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 145 = 31 60 0"));
}

TEST_F(SpecialKeyHandlers, NightToDayThresholdTravelsWithTheOther) {
    EXPECT_EQ(0, handle(KEY_NTD_THR, 61));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 146 = 30 61 0"));
}

TEST_F(SpecialKeyHandlers, SensitivityTravelsAlone) {
    EXPECT_EQ(0, handle(KEY_DN_SENSITIVITY, 6));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 154 = 0 0 6"));
}

TEST_F(SpecialKeyHandlers, TimesTravelTogether) {
    EXPECT_EQ(0, handle(KEY_DTN_H, 18));
    EXPECT_EQ(0, handle(KEY_DTN_M, 11));
    EXPECT_EQ(0, handle(KEY_NTD_H, 7));
    EXPECT_EQ(0, handle(KEY_NTD_M, 21));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 149 = 18 10 6 20", "ia ch0 set 150 = 17 11 6 20",
                                                 "ia ch0 set 151 = 17 10 7 20", "ia ch0 set 152 = 17 10 6 21"));
}

TEST_F(SpecialKeyHandlers, TimeOfAnyOtherKeyIsTheNightToDayMinute) {
    u32 nValue = 33;
    dn_time_st stSeen{};
    camera.onDriver(4711, IA_CMD_OPT_SET, [&](int, void* p_pData) {
        stSeen = *static_cast<const dn_time_st*>(p_pData);
        return 0;
    });
    EXPECT_EQ(0, probe.call(probe.handlerOf(KEY_DTN_H), 4711, IA_CMD_OPT_SET, &nValue));
    EXPECT_EQ(17u, stSeen.d2n_hour);
    EXPECT_EQ(10u, stSeen.d2n_min);
    EXPECT_EQ(6u, stSeen.n2d_hour);
    EXPECT_EQ(33u, stSeen.n2d_min);
}

TEST_F(SpecialKeyHandlers, CompanionsComeFromTheCurrentScheme) {
    probe.setKeyValToCache(1, KEY_NTD_THR, 66, false);
    probe.setKeyValToCache(1, KEY_NTD_M, 44, false);
    probe.setCurScheme(1);
    handle(KEY_DTN_THR, 31);
    handle(KEY_DTN_H, 18);
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 145 = 31 66 0", "ia ch0 set 149 = 18 10 6 44"));
}

TEST_F(SpecialKeyHandlers, CompanionsThatAreNotThereAreZero) {
    probe.setCurScheme(-1);
    handle(KEY_DTN_THR, 31);
    handle(KEY_NTD_THR, 61);
    handle(KEY_NTD_H, 7);
    handle(KEY_MIRROR, 1);
    handle(KEY_BEAWAY, 1);
    EXPECT_THAT(driverCalls(),
                ElementsAre("ia ch0 set 145 = 31 0 0", "ia ch0 set 146 = 0 61 0", "ia ch0 set 151 = 0 0 7 0",
                            "ia ch0 set 2384 = 1", "ia ch0 set 2384 = 0", "ia ch0 set 2385 = 1"));
}

TEST_F(SpecialKeyHandlers, DayAndNightReturnTheDriversResultWithoutAReport) {
    for (const u32 nKey : {145u, 146u, 154u, 149u, 150u, 151u, 152u}) {
        SCOPED_TRACE(nKey);
        camera.driverFails(nKey, IA_CMD_OPT_SET, -5);
        EXPECT_EQ("", outputOf([&] { EXPECT_EQ(-5, handle(nKey, 1)); }));
        EXPECT_EQ(1u, m_nValue);
    }
}

TEST_F(SpecialKeyHandlers, ThresholdsIgnoreTheDriversFailureDuringARollback) {
    probe.setFlags(SensorControllerProbe::rollback_flag);
    for (const u32 nKey : {145u, 146u, 154u}) {
        camera.driverFails(nKey, IA_CMD_OPT_SET, -5);
        EXPECT_EQ(0, handle(nKey, 61)) << nKey;
    }
    EXPECT_THAT(camera.transcript(),
                ElementsAre("ia ch0 set 145 = 61 60 0 failed -5", "ia ch0 set 146 = 30 61 0 failed -5",
                            "ia ch0 set 154 = 0 0 61 failed -5"));
    probe.clearFlags(SensorControllerProbe::rollback_flag);
}

TEST_F(SpecialKeyHandlers, TimesDoNotIgnoreTheDriversFailureDuringARollback) {
    probe.setFlags(SensorControllerProbe::rollback_flag);
    camera.driverFails(149, IA_CMD_OPT_SET, -5);
    EXPECT_EQ(-5, handle(KEY_DTN_H, 18));
    probe.clearFlags(SensorControllerProbe::rollback_flag);
}

TEST_F(SpecialKeyHandlers, ThresholdsDoNotIgnoreAFailureInAnyOtherState) {
    probe.setFlags(~SensorControllerProbe::rollback_flag);
    camera.driverFails(145, IA_CMD_OPT_SET, -5);
    EXPECT_EQ(-5, handle(KEY_DTN_THR, 1));
    probe.clearFlags(~SensorControllerProbe::inited_flag);
}

TEST_F(SpecialKeyHandlers, ThresholdsAreShownAtLevelSix) {
    root.debugLevel(6);
    EXPECT_THAT(messages::anyLine(outputOf([&] { handle(KEY_NTD_THR, 61); })),
                testing::StartsWith(messages::debug(in("doDNThr"),
                                                    "m_nCurScheme(0) dn_thr_st.d2n_thr(30) "
                                                    "dn_thr_st.n2d_thr(61)  "
                                                    "dn_thr_st.dn_sensitivity(0)\n")));
    EXPECT_THAT(messages::anyLine(outputOf([&] { handle(KEY_DN_SENSITIVITY, 4000000000u); })),
                HasSubstr("dn_thr_st.d2n_thr(0) dn_thr_st.n2d_thr(0)  dn_thr_st.dn_sensitivity(4000000000)\n"));
    root.debugLevel(5);
    EXPECT_EQ("", outputOf([&] { handle(KEY_NTD_THR, 61); }));
}

TEST_F(SpecialKeyHandlers, TimesAreShownAtLevelSix) {
    root.debugLevel(6);
    probe.setCurScheme(1);
    EXPECT_THAT(messages::anyLine(outputOf([&] { handle(KEY_DTN_H, 18); })),
                testing::StartsWith(messages::debug(in("doDNTime"),
                                                    "m_nCurScheme(1) dn_time_st.d2n_hour(18) dn_time_st.d2n_min(10) "
                                                    "dn_time_st.n2d_hour(6) dn_time_st.n2d_min(20) \n")));
    root.debugLevel(5);
    EXPECT_EQ("", outputOf([&] { handle(KEY_DTN_H, 18); }));
}

// --- Mirror and beaway ---

TEST_F(SpecialKeyHandlers, MirrorDirectionsChangePlacesWhileBeawayIsOn) {
    struct Row {
        u32 beaway;
        u32 mirror;
        int sent;
    };
    const Row aRows[] = {{0, 0, 0}, {0, 1, 1}, {0, 2, 2}, {0, 3, 3}, {1, 0, 0},           {1, 1, 2},
                         {1, 2, 1}, {1, 3, 3}, {2, 1, 2}, {2, 2, 1}, {0xFFFFFFFFu, 1, 2}, {1, 0xFFFFFFFFu, -1}};
    for (const Row& stRow : aRows) {
        SCOPED_TRACE("beaway " + std::to_string(stRow.beaway) + " mirror " + std::to_string(stRow.mirror));
        camera.clear();
        cached(KEY_BEAWAY, stRow.beaway);
        EXPECT_EQ(0, handle(KEY_MIRROR, stRow.mirror));
        const std::string strSent = std::to_string(stRow.sent);
        EXPECT_THAT(camera.transcript(), ElementsAre("video ch1 2384 = " + strSent, "ia ch0 set 2384 = " + strSent));
        EXPECT_EQ(stRow.mirror, m_nValue);
    }
}

TEST_F(SpecialKeyHandlers, MirrorIsSentThoughItsNotificationFailed) {
    camera.videoFails(2384, 5);
    const std::string strOut = outputOf([&] { EXPECT_EQ(0, handle(KEY_MIRROR, 1)); });
    EXPECT_THAT(driverCalls(), ElementsAre("ia ch0 set 2384 = 1"));
    expectReported("doMirror", "QVS_SUCCESS == notifyToVideo(p_nKey, nMirror)", strOut);
}

TEST_F(SpecialKeyHandlers, MirrorReturnsTheDriversResultWithoutAReport) {
    camera.driverFails(2384, IA_CMD_OPT_SET, -5);
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(-5, handle(KEY_MIRROR, 1)); }));
}

TEST_F(SpecialKeyHandlers, MirrorIsShownAtLevelSix) {
    root.debugLevel(6);
    cached(KEY_BEAWAY, 1);
    EXPECT_THAT(messages::anyLine(outputOf([&] { handle(KEY_MIRROR, 1); })),
                testing::StartsWith(messages::debug(in("doMirror"), "nMirror(1 --> 2), nBeaway:1\n")));
    root.debugLevel(5);
    EXPECT_EQ("", outputOf([&] { handle(KEY_MIRROR, 1); }));
}

TEST_F(SpecialKeyHandlers, MirrorDoesNotFollowWhetherBeawayIsOffered) {
    setshowBeawayFalg(false);
    cached(KEY_BEAWAY, 1);
    handle(KEY_MIRROR, 1);
    EXPECT_THAT(driverCalls(), ElementsAre("ia ch0 set 2384 = 2"));
}

TEST_F(SpecialKeyHandlers, BeawayTakesTheMirrorAlong) {
    cached(KEY_MIRROR, 2);
    EXPECT_EQ(0, handle(KEY_BEAWAY, 1));
    EXPECT_THAT(camera.transcript(),
                ElementsAre("video ch1 2384 = 1", "video ch1 2385 = 1", "ia ch0 set 2384 = 1", "ia ch0 set 2385 = 1"));
    EXPECT_EQ(2u, probe.valueIn(0, KEY_MIRROR));
    EXPECT_EQ(1u, m_nValue);
}

TEST_F(SpecialKeyHandlers, BeawaySwitchedOffSendsTheMirrorAsItIs) {
    cached(KEY_MIRROR, 2);
    cached(KEY_BEAWAY, 1);
    EXPECT_EQ(0, handle(KEY_BEAWAY, 0));
    EXPECT_THAT(camera.transcript(),
                ElementsAre("video ch1 2384 = 2", "video ch1 2385 = 0", "ia ch0 set 2384 = 2", "ia ch0 set 2385 = 0"));
}

TEST_F(SpecialKeyHandlers, BeawayThatIsNotOfferedIsOffAndSendsNothing) {
    setshowBeawayFalg(false);
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(0, handle(KEY_BEAWAY, 1)); }));
    EXPECT_EQ(0u, m_nValue);
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(SpecialKeyHandlers, BeawayGoesOnThroughFailedNotificationsAndReportsBoth) {
    camera.videoFails(2384, 5);
    camera.videoFails(2385, 6);
    const std::string strMirror = "QVS_SUCCESS == notifyToVideo(IA_CMD_UI_MIRROR, nMirror)";
    const std::string strBeaway = "QVS_SUCCESS == notifyToVideo(p_nKey, nBeaway)";
    const std::string strOut = messages::anyLine(outputOf([&] { EXPECT_EQ(0, handle(KEY_BEAWAY, 1)); }));
    EXPECT_EQ(messages::assertion(in("doBeaway"), strMirror) + messages::assertion(in("doBeaway"), strBeaway), strOut);
    EXPECT_EQ(
        messages::loggedAssertion(in("doBeaway"), strMirror) + messages::loggedAssertion(in("doBeaway"), strBeaway),
        messages::anyLine(root.errorLog()));
    EXPECT_THAT(camera.transcript(), ElementsAre("video ch1 2384 = 0 failed 5", "video ch1 2385 = 1 failed 6",
                                                 "ia ch0 set 2384 = 0", "ia ch0 set 2385 = 1"));
}

TEST_F(SpecialKeyHandlers, BeawayIgnoresAFailedMirror) {
    camera.driverFails(2384, IA_CMD_OPT_SET, -3);
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(0, handle(KEY_BEAWAY, 1)); }));
    EXPECT_THAT(driverCalls(), ElementsAre("ia ch0 set 2384 = 0 failed -3", "ia ch0 set 2385 = 1"));
}

TEST_F(SpecialKeyHandlers, BeawayReturnsTheDriversResult) {
    camera.driverFails(2385, IA_CMD_OPT_SET, -5);
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(-5, handle(KEY_BEAWAY, 1)); }));
}

// --- All of them ---

TEST_F(SpecialKeyHandlers, PassTheOptionOnToTheDriver) {
    for (const u32 nKey : {2368u, 2432u, 2416u, 145u, 149u, 2384u, 2385u}) {
        SCOPED_TRACE(nKey);
        camera.clear();
        EXPECT_EQ(0, handle(nKey, 0, IA_CMD_OPT_GET));
        EXPECT_EQ(1u, camera.linesLike("ia ch0 get " + std::to_string(nKey) + " ").size()) << camera.text();
        EXPECT_THAT(camera.linesLike("ia ch0 set"), IsEmpty());
    }
}

TEST_F(SpecialKeyHandlers, SucceedWithoutAVideoModule) {
    controller.setVideoStreamModule(nullptr);
    EXPECT_EQ("", outputOf([&] {
                  for (const u32 nKey : {2368u, 2432u, 2416u, 190u, 9000u, 2384u, 2385u}) {
                      EXPECT_EQ(0, handle(nKey, 1)) << nKey;
                  }
              }));
    EXPECT_THAT(notifications(), IsEmpty());
}

TEST_F(SpecialKeyHandlers, AbortOnAFailedStepWhenAssertionsAreEnabled) {
    root.debugLevel(1, true);
    camera.driverFails(2368, IA_CMD_OPT_SET, -3);
    EXPECT_DEATH(handle(KEY_WDR_MODE, 1), abortIn("doHwdr"));
    camera.driverFails(2432, IA_CMD_OPT_SET, -3);
    EXPECT_DEATH(handle(KEY_CAP_OFF_ADJ_DIRECTION, 1), abortIn("doImageAdjust"));
    camera.videoFails(2416, 5);
    EXPECT_DEATH(handle(KEY_ANTI_SHAKE_SWITCH, 1), abortIn("doDIS"));
    camera.videoFails(9000, 5);
    EXPECT_DEATH(handle(KEY_PANO_STITCH_DIST, 1), abortIn("doIaCmd_PanoTuning"));
    camera.videoFails(2385, 5);
    EXPECT_DEATH(handle(KEY_BEAWAY, 1), abortIn("doBeaway"));
    camera.videoFails(2384, 5);
    EXPECT_DEATH(handle(KEY_MIRROR, 1), abortIn("doMirror"));
    EXPECT_DEATH(handle(KEY_BEAWAY, 1), abortIn("doBeaway"));
}

TEST_F(SpecialKeyHandlers, DoNotAbortWhenNothingFailsOrNothingIsReported) {
    root.debugLevel(1, true);
    EXPECT_EQ(0, handle(KEY_WDR_MODE, 1));
    camera.driverFails(2384, IA_CMD_OPT_SET, -3);
    EXPECT_EQ(-3, handle(KEY_MIRROR, 1));
    EXPECT_EQ(0, handle(KEY_BEAWAY, 1));
    camera.videoFails(190, 5);
    EXPECT_EQ(0, handle(KEY_TEST_PARAM1, 1));
}

// --- The two display switches ---

TEST(ShowFlags, BeawayIsOfferedFromTheStart) {
    EXPECT_TRUE(getshowBeawayFalg());
    EXPECT_TRUE(g_bShoWBeawayFalg);
}

TEST_F(SpecialKeyHandlers, WhetherWideDynamicRangeIsOfferedIsAChannelsOwn) {
    ISensorController other;
    bool bShow = false;
    EXPECT_TRUE(controller.getShowWDRFalg(bShow));
    EXPECT_TRUE(bShow);
    EXPECT_TRUE(controller.setShowWDRFalg(false));
    EXPECT_TRUE(controller.getShowWDRFalg(bShow));
    EXPECT_FALSE(bShow);
    EXPECT_TRUE(other.getShowWDRFalg(bShow));
    EXPECT_TRUE(bShow);
}

TEST_F(SpecialKeyHandlers, MeantTheLastChannelDecidesForAllWhetherBeawayIsOffered) {
    ISensorController other;
    bool bShow = true;
    EXPECT_TRUE(other.setShowBeawayFalg(false));
    EXPECT_TRUE(controller.getShowBeawayFalg(bShow));
    EXPECT_FALSE(bShow);
    EXPECT_FALSE(getshowBeawayFalg());
    setshowBeawayFalg(true);
    EXPECT_TRUE(other.getShowBeawayFalg(bShow));
    EXPECT_TRUE(bShow);
    EXPECT_TRUE(g_bShoWBeawayFalg);
}

TEST(DayNightRecords, HaveTheirFieldsInOrder) {
    EXPECT_EQ(0u, offsetof(dn_thr_st, d2n_thr));
    EXPECT_EQ(4u, offsetof(dn_thr_st, n2d_thr));
    EXPECT_EQ(8u, offsetof(dn_thr_st, dn_sensitivity));
    EXPECT_EQ(12u, sizeof(dn_thr_st));
    EXPECT_EQ(0u, offsetof(dn_time_st, d2n_hour));
    EXPECT_EQ(4u, offsetof(dn_time_st, d2n_min));
    EXPECT_EQ(8u, offsetof(dn_time_st, n2d_hour));
    EXPECT_EQ(12u, offsetof(dn_time_st, n2d_min));
    EXPECT_EQ(16u, sizeof(dn_time_st));
}

}  // namespace
