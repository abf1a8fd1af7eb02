// The walk over a list of parameters: what is left out, what is only stored, what is recorded, and what one entry does
// to the next.
#include "tests/unit/sensor/WriteTest.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

class WriteWalk : public WriteTest {};

// --- Order, end and result ---

TEST_F(WriteWalk, HandlesEntriesInTheOrderOfTheList) {
    EXPECT_EQ(0, write({{KEY_CONTRAST, 1}, {KEY_BRIGHTNESS, 2}, {KEY_SATURATION, 3}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 2353 = 1", "ia ch0 set 34 = 2", "ia ch0 set 2337 = 3"));
    EXPECT_EQ(1u, probe.valueIn(0, KEY_CONTRAST));
    EXPECT_EQ(2u, probe.valueIn(0, KEY_BRIGHTNESS));
    EXPECT_EQ(3u, probe.valueIn(0, KEY_SATURATION));
}

TEST_F(WriteWalk, EndsWithANewlineAtEveryLevel) {
    for (const int nLevel : {-1, 0, 1, 5}) {
        SCOPED_TRACE(nLevel);
        root.debugLevel(nLevel);
        EXPECT_EQ("\n", outputOf([&] { write({{KEY_BRIGHTNESS, 1}, {KEY_CONTRAST, 2}}, false); }));
    }
}

TEST_F(WriteWalk, AnEmptyListPrintsItsNewlineAndSucceeds) {
    for (const bool bCache : {false, true}) {
        EXPECT_EQ("\n", outputOf([&] { EXPECT_EQ(0, probe.setParameters(nullptr, 0, bCache)); }));
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(WriteWalk, HandlesNoMoreEntriesThanCounted) {
    KeyVal aList[] = {{KEY_BRIGHTNESS, 1}, {KEY_CONTRAST, 2}};
    EXPECT_EQ(0, probe.setParameters(aList, 1, true));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 1"));
}

TEST_F(WriteWalk, PrintsNoNewlineWhenItStopsEarly) {
    camera.driverFails(KEY_CONTRAST, IA_CMD_OPT_SET, -3);
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(-2353, write({{KEY_BRIGHTNESS, 1}, {KEY_CONTRAST, 2}})); }));
}

TEST_F(WriteWalk, KeepsWhatWasAppliedBeforeAFailureAndLeavesTheRest) {
    camera.driverFails(KEY_CONTRAST, IA_CMD_OPT_SET, -3);
    EXPECT_EQ(-2353, write({{KEY_BRIGHTNESS, 1}, {KEY_CONTRAST, 2}, {KEY_SATURATION, 3}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 1", "ia ch0 set 2353 = 2 failed -3"));
    EXPECT_EQ(1u, probe.valueIn(0, KEY_BRIGHTNESS));
    EXPECT_EQ(128u, probe.valueIn(0, KEY_CONTRAST));
    EXPECT_EQ(128u, probe.valueIn(0, KEY_SATURATION));
}

// --- Values that are in force already ---

TEST_F(WriteWalk, AValueThatIsInForceIsNeitherSentNorNotified) {
    cached(0, KEY_MIRROR, 1);
    EXPECT_EQ(0, write({{KEY_BRIGHTNESS, 50}, {KEY_MIRROR, 1}, {KEY_CONTRAST, 1}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 2353 = 1"));
}

TEST_F(WriteWalk, TracesAValueThatIsInForceAtLevelSix) {
    root.debugLevel(6);
    EXPECT_EQ(messages::trace("ignore, (34,50) is newest, m_nFlags.switching_flag(0), m_nLastScheme(-1), "
                              "m_nCurScheme(0)!!!\n") +
                  "\n",
              outputOf([&] {
                  write({{KEY_BRIGHTNESS, 50}});
              }));
    root.debugLevel(5);
    EXPECT_EQ("\n", outputOf([&] { write({{KEY_BRIGHTNESS, 50}}); }));
}

TEST_F(WriteWalk, TracesLargeNumbersWithoutSign) {
    root.debugLevel(6);
    cached(0, KEY_BRIGHTNESS, 0xFFFFFFFEu);
    EXPECT_THAT(outputOf([&] {
                    write({{KEY_BRIGHTNESS, 0xFFFFFFFEu}});
                }),
                HasSubstr("ignore, (34,4294967294) is newest"));
}

TEST_F(WriteWalk, DuringASwitchOnlyWhatDiffersFromTheLastSchemeIsSent) {
    root.debugLevel(6);
    cached(1, KEY_BRIGHTNESS, 70);
    cached(1, KEY_CONTRAST, 90);
    probe.setCurScheme(1);
    probe.setLastScheme(0);
    probe.setFlags(SensorControllerProbe::switching_flag);
    std::string strOut = outputOf([&] { write({{KEY_BRIGHTNESS, 50}, {KEY_CONTRAST, 90}}); });
    probe.clearFlags(SensorControllerProbe::switching_flag);
    EXPECT_THAT(strOut, testing::StartsWith(messages::trace("ignore, (34,50) is newest, m_nFlags.switching_flag(1), "
                                                            "m_nLastScheme(0), m_nCurScheme(1)!!!\n")));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 2353 = 90"));
    EXPECT_EQ(70u, probe.valueIn(1, KEY_BRIGHTNESS));  // left out of everything, not recorded either
}

TEST_F(WriteWalk, WithoutCachingAValueInForceIsSentAgainAndNothingIsRecorded) {
    EXPECT_EQ(0, write({{KEY_BRIGHTNESS, 50}, {KEY_CONTRAST, 1}}, false));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 50", "ia ch0 set 2353 = 1"));
    EXPECT_THAT(inAllSchemes(KEY_CONTRAST), ElementsAre(128, 128, 128, 128));
}

TEST_F(WriteWalk, AValueOfAnotherSchemeIsNotInForce) {
    cached(1, KEY_BRIGHTNESS, 70);
    EXPECT_EQ(0, write({{KEY_BRIGHTNESS, 70}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 70"));
}

TEST_F(WriteWalk, WithoutASchemeEveryKeyIsSentAndNothingIsRecorded) {
    root.debugLevel(5);
    probe.setCurScheme(-1);
    EXPECT_EQ("\n", outputOf([&] { EXPECT_EQ(0, write({{KEY_BRIGHTNESS, 50}, {KEY_CONTRAST, 1}})); }));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 50", "ia ch0 set 2353 = 1"));
    EXPECT_THAT(inAllSchemes(KEY_CONTRAST), ElementsAre(128, 128, 128, 128));
}

// --- The scheme mode ---

TEST_F(WriteWalk, TheModeOfSchemeZeroChoosesTheSourceAndIsCopiedToTheOtherUserSchemes) {
    EXPECT_EQ(0, write({{KEY_SCHEME_MODE, 2}}));
    EXPECT_FALSE(probe.scheduleSwitch());
    EXPECT_TRUE(probe.dnSchemeSwitch());
    EXPECT_THAT(inAllSchemes(KEY_SCHEME_MODE), ElementsAre(2, 2, 2, 0));
    EXPECT_EQ(0, write({{KEY_SCHEME_MODE, 1}}));
    EXPECT_TRUE(probe.scheduleSwitch());
    EXPECT_FALSE(probe.dnSchemeSwitch());
    EXPECT_THAT(inAllSchemes(KEY_SCHEME_MODE), ElementsAre(1, 1, 1, 0));
    EXPECT_EQ(0, write({{KEY_SCHEME_MODE, 0}}));
    EXPECT_FALSE(probe.scheduleSwitch());
    EXPECT_FALSE(probe.dnSchemeSwitch());
    EXPECT_THAT(inAllSchemes(KEY_SCHEME_MODE), ElementsAre(0, 0, 0, 0));
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(WriteWalk, MeantAnUnknownModeIsKeptInSchemeZeroAndIsZeroInTheOthers) {
    for (const u32 nMode : {7u, 3u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(nMode);
        write({{KEY_SCHEME_MODE, 1}});
        EXPECT_EQ(0, write({{KEY_SCHEME_MODE, nMode}}));
        EXPECT_FALSE(probe.scheduleSwitch());
        EXPECT_FALSE(probe.dnSchemeSwitch());
        EXPECT_THAT(inAllSchemes(KEY_SCHEME_MODE), ElementsAre(nMode, 0, 0, 0));
    }
}

TEST_F(WriteWalk, MeantTheModeOfAnotherSchemeChangesOnlyItsEntry) {
    write({{KEY_SCHEME_MODE, 1}});
    probe.setCurScheme(1);
    EXPECT_EQ(0, write({{KEY_SCHEME_MODE, 2}}));
    EXPECT_TRUE(probe.scheduleSwitch());
    EXPECT_FALSE(probe.dnSchemeSwitch());
    EXPECT_THAT(inAllSchemes(KEY_SCHEME_MODE), ElementsAre(1, 2, 1, 0));
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(WriteWalk, TheModeActsWithoutCachingButIsNotRecordedInSchemeZero) {
    EXPECT_EQ(0, write({{KEY_SCHEME_MODE, 2}}, false));
    EXPECT_TRUE(probe.dnSchemeSwitch());
    EXPECT_THAT(inAllSchemes(KEY_SCHEME_MODE), ElementsAre(0, 2, 2, 0));
}

TEST_F(WriteWalk, AModeThatIsInForceActsNoMore) {
    cached(0, KEY_SCHEME_MODE, 2);
    EXPECT_EQ(0, write({{KEY_SCHEME_MODE, 2}}));
    EXPECT_FALSE(probe.dnSchemeSwitch());
    EXPECT_THAT(inAllSchemes(KEY_SCHEME_MODE), ElementsAre(2, 0, 0, 0));
}

TEST_F(WriteWalk, TheModeActsWithoutSchemeOrInTheFactorySetNoMoreThanInAnotherScheme) {
    for (const int nScheme : {-1, 3}) {
        SCOPED_TRACE(nScheme);
        probe.setCurScheme(nScheme);
        EXPECT_EQ(0, write({{KEY_SCHEME_MODE, 2}}));
        EXPECT_FALSE(probe.dnSchemeSwitch());
        EXPECT_THAT(inAllSchemes(KEY_SCHEME_MODE), ElementsAre(0, 0, 0, 0));
    }
}

class WriteFewSchemes : public WriteTest {
protected:
    void rebuild(u32 p_nSchemeSum) {
        controller.uinit();
        build(p_nSchemeSum, records());
    }
};

TEST_F(WriteFewSchemes, WithOneUserSchemeTheModeStaysOutOfTheFactorySet) {
    rebuild(1);
    EXPECT_EQ(0, write({{KEY_SCHEME_MODE, 2}}));
    EXPECT_TRUE(probe.dnSchemeSwitch());
    EXPECT_EQ(2u, probe.valueIn(0, KEY_SCHEME_MODE));
    EXPECT_EQ(0u, probe.valueIn(1, KEY_SCHEME_MODE));
}

TEST_F(WriteFewSchemes, WithoutUserSchemesNothingIsRecorded) {
    rebuild(0);
    EXPECT_EQ(0, write({{KEY_SCHEME_MODE, 2}, {KEY_BRIGHTNESS, 7}}));
    EXPECT_TRUE(probe.dnSchemeSwitch());
    EXPECT_EQ(0u, probe.valueIn(0, KEY_SCHEME_MODE));
    EXPECT_EQ(50u, probe.valueIn(0, KEY_BRIGHTNESS));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 7"));
}

// --- Keys that are only stored ---

TEST_F(WriteWalk, ScheduleAndSpareKeysAreRecordedAndNeverSent) {
    for (const u32 nKey : {8001u, 8002u, 8003u, 8004u, 10u, 11u}) {
        SCOPED_TRACE(nKey);
        EXPECT_EQ(0, write({{nKey, 77}}));
        EXPECT_EQ(77u, probe.valueIn(0, nKey));
        EXPECT_EQ(0, write({{nKey, 78}}, false));
        EXPECT_EQ(77u, probe.valueIn(0, nKey));
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(WriteWalk, KeysThatAreOnlyStoredAreNotAnnouncedAsSent) {
    root.debugLevel(6);
    EXPECT_EQ("\n", outputOf([&] { write({{KEY_SCHEME_START_HOUR, 7}, {KEY_EMPTY1, 1}, {KEY_SCHEME_MODE, 1}}); }));
}

// --- Recording ---

TEST_F(WriteWalk, RecordsInTheCurrentSchemeOnly) {
    probe.setCurScheme(1);
    EXPECT_EQ(0, write({{KEY_BRIGHTNESS, 7}}));
    EXPECT_THAT(inAllSchemes(KEY_BRIGHTNESS), ElementsAre(50, 7, 50, 50));
}

TEST_F(WriteWalk, RecordsTheValueThatTheHandlerLeft) {
    camera.onDriver(KEY_BRIGHTNESS, IA_CMD_OPT_SET, [](int, void* p_pData) {
        *static_cast<int*>(p_pData) = 44;
        return 0;
    });
    std::vector<KeyVal> vecList = {{KEY_BRIGHTNESS, 7}};
    EXPECT_EQ(0, write(vecList));
    EXPECT_EQ(44u, probe.valueIn(0, KEY_BRIGHTNESS));
    EXPECT_EQ(44u, vecList[0].value);
}

TEST_F(WriteWalk, AFunctionThatIsNotOfferedIsRecordedAsOff) {
    controller.setShowWDRFalg(false);
    setshowBeawayFalg(false);
    cached(0, KEY_WDR_MODE, 1);
    cached(0, KEY_BEAWAY, 1);
    std::vector<KeyVal> vecList = {{KEY_WDR_MODE, 2}, {KEY_BEAWAY, 2}};
    EXPECT_EQ(0, write(vecList));
    EXPECT_EQ(0u, probe.valueIn(0, KEY_WDR_MODE));
    EXPECT_EQ(0u, probe.valueIn(0, KEY_BEAWAY));
    EXPECT_EQ(0u, vecList[0].value);
    EXPECT_EQ(0u, vecList[1].value);
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(WriteWalk, AKeyThatTheSetsLackIsAppliedAndOnlySaidToBeUnrecorded) {
    root.debugLevel(6);
    std::string strOut = messages::anyLine(outputOf([&] {
        EXPECT_EQ(0, write({{KEY_BRIGHTNESS, 7}, {KEY_GAMMA, 0xFFFFFFFEu}}));
    }));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 7", "ia ch0 set 2528 = -2"));
    EXPECT_THAT(strOut,
                testing::EndsWith(messages::debug(in("setParameters"),
                                                  "SET_KEY_VAL FAILED, m_nCurScheme(0), p_pKeyval[1].key(2528), "
                                                  "p_pKeyval[1].value(-2),  maybe jixin\n") +
                                  "\n"));
    EXPECT_EQ("", root.errorLog());
    root.debugLevel(5);
    EXPECT_EQ("\n", outputOf([&] { write({{KEY_GAMMA, 3}}); }));
}

TEST_F(WriteWalk, NothingIsSaidAboutAnUnrecordedKeyWithoutCaching) {
    root.debugLevel(6);
    EXPECT_THAT(outputOf([&] { write({{KEY_GAMMA, 3}}, false); }), Not(HasSubstr("SET_KEY_VAL FAILED")));
}

TEST_F(WriteWalk, InTheFactorySetAValueIsAppliedAndSilentlyNotRecorded) {
    root.debugLevel(6);
    probe.setCurScheme(3);
    const std::string strOut = outputOf([&] { EXPECT_EQ(0, write({{KEY_BRIGHTNESS, 7}, {KEY_GAMMA, 3}})); });
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 7", "ia ch0 set 2528 = 3"));
    EXPECT_THAT(inAllSchemes(KEY_BRIGHTNESS), ElementsAre(50, 50, 50, 50));
    EXPECT_THAT(strOut, Not(HasSubstr("SET_KEY_VAL FAILED")));
}

TEST_F(WriteWalk, InTheFactorySetAValueInForceIsLeftOut) {
    probe.setCurScheme(3);
    EXPECT_EQ(0, write({{KEY_BRIGHTNESS, 50}}));
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

// --- One entry and the next ---

TEST_F(WriteWalk, AnEntryIsComparedWithWhatTheEntryBeforeItRecorded) {
    EXPECT_EQ(0, write({{KEY_BRIGHTNESS, 7}, {KEY_BRIGHTNESS, 7}, {KEY_BRIGHTNESS, 50}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 7", "ia ch0 set 34 = 50"));
}

TEST_F(WriteWalk, ALaterEntrySeesTheCompanionsThatAnEarlierOneRecorded) {
    EXPECT_EQ(0, write({{KEY_DTN_THR, 31}, {KEY_NTD_THR, 61}, {KEY_BEAWAY, 1}, {KEY_MIRROR, 1}}));
    EXPECT_THAT(driverCalls(), ElementsAre("ia ch0 set 145 = 31 60 0", "ia ch0 set 146 = 31 61 0",
                                           "ia ch0 set 2384 = 0", "ia ch0 set 2385 = 1", "ia ch0 set 2384 = 2"));
}

TEST_F(WriteWalk, WithoutCachingALaterEntrySeesTheOldCompanions) {
    EXPECT_EQ(0, write({{KEY_DTN_THR, 31}, {KEY_NTD_THR, 61}}, false));
    EXPECT_THAT(driverCalls(), ElementsAre("ia ch0 set 145 = 31 60 0", "ia ch0 set 146 = 30 61 0"));
}

TEST_F(WriteWalk, MeantASetThatIsItsOwnListIsWalkedInPlaceSoThatAHandlersZeroIsSeenByLaterEntries) {
    setshowBeawayFalg(false);
    controller.uinit();
    build(1, {{KEY_BEAWAY, 1}, {KEY_MIRROR, 1}});
    EXPECT_EQ(0, probe.setParameters(probe.set(0), 2, false));
    EXPECT_THAT(driverCalls(), ElementsAre("ia ch0 set 2384 = 1"));  // with beaway still on it would be 2
    EXPECT_EQ(0u, probe.valueIn(0, KEY_BEAWAY));
}

TEST_F(WriteWalk, MeantASetThatIsItsOwnListIsWalkedInPlaceSoThatAForcedStoreIsSeenByLaterEntries) {
    const std::vector<KeyVal> vecRecords = {{KEY_LIGHT_TYPE, 2},
                                            {KEY_IR_MANUAL_STRG_NEAR_INTELL, 44},
                                            {KEY_IR_MANUAL_STRG_NEAR, 20},
                                            {KEY_IR_MANUAL_STRG_FAR, 60}};
    controller.uinit();
    build(1, vecRecords);
    probe.setLimitedIrPower(true);
    // The twin forces 44 into the base key, which is then too much; as a copy the base key still has its 20.
    EXPECT_EQ(0, write(std::vector<KeyVal>(vecRecords.begin(), vecRecords.begin() + 3), false));
    cached(0, KEY_IR_MANUAL_STRG_NEAR, 20);
    EXPECT_EQ(-224, probe.setParameters(probe.set(0), 3, false));
    EXPECT_EQ(44u, probe.set(0)[2].value);
}

TEST_F(WriteWalk, MeantAValueForcedIntoALaterRecordOfTheListIsTheOneThatIsHandled) {
    controller.uinit();
    build(2, {{KEY_DTN_THR, 30}});
    probe.setSwitching(false, true);
    cached(0, KEY_DTN_THR, 41);
    EXPECT_EQ(0, probe.setParameters(probe.set(0), 2, false));  // the set of scheme 1 lies behind that of scheme 0
    EXPECT_THAT(driverCalls(), ElementsAre("ia ch0 set 145 = 41 0 0", "ia ch0 set 145 = 41 0 0"));
}

TEST_F(WriteWalk, TheLightTypeOfAnEarlierEntryHoldsForLaterOnesOnlyOnceItIsRecorded) {
    EXPECT_EQ(0, write({{KEY_LIGHT_TYPE, 2}, {KEY_IR_MODE, 1}}, false));
    EXPECT_THAT(driverCalls(), ElementsAre("ia ch0 set 224 = 2", "ia ch0 set 161 = 1"));
    camera.clear();
    EXPECT_EQ(0, write({{KEY_LIGHT_TYPE, 2}, {KEY_IR_MODE, 3}}));
    EXPECT_THAT(driverCalls(), ElementsAre("ia ch0 set 224 = 2"));
}

TEST_F(WriteWalk, TheModeOfAnEarlierEntryHoldsForLaterOnes) {
    EXPECT_EQ(0, write({{KEY_SCHEME_MODE, 2}, {KEY_DTN_THR, 31}}));
    EXPECT_THAT(inAllSchemes(KEY_DTN_THR), ElementsAre(31, 31, 30, 30));
}

TEST_F(WriteWalk, ALimitSeesThePartnerThatAnEarlierEntryRecorded) {
    probe.setLimitedIrPower(true);
    EXPECT_EQ(0, write({{KEY_IR_MANUAL_STRG_FAR, 10}, {KEY_IR_MANUAL_STRG_NEAR, 90}}));
    EXPECT_THAT(driverCalls(), ElementsAre("ia ch0 set 167 = 10", "ia ch0 set 163 = 90"));
}

}  // namespace
