// How a key finds its handler, what its failure does, and what happens to keys that the table does not hold.
#include "tests/unit/sensor/WriteTest.h"

#include <climits>
#include <cstring>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

class WriteDispatch : public WriteTest {
protected:
    static constexpr u32 kUnknown = 4711;

    static std::string condition() { return "-1 != findFromKeyCmdMap(m_pKeyCmdMap, nKey, stKeyCmdTmp)"; }
    static std::string announced(const std::string& p_strWhat) {
        return messages::trace("====================== set " + p_strWhat + " =====================\n");
    }
};

TEST_F(WriteDispatch, SendsTheCommandOfTheKeysRow) {
    EXPECT_EQ(0, write({{KEY_IRIS_UP, 1}, {KEY_WHITE_MODE, 2}, {2570, 1}}));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 83 = 1", "ia ch0 set 169 = 2", "ia ch0 set 2048 = 1"));
}

TEST_F(WriteDispatch, HandsTheHandlerTheEntrysOwnValue) {
    std::vector<KeyVal> vecList = {{KEY_BRIGHTNESS, 7}};
    void* pSeen = nullptr;
    camera.onDriver(KEY_BRIGHTNESS, IA_CMD_OPT_SET, [&](int, void* p_pData) {
        pSeen = p_pData;
        return 0;
    });
    EXPECT_EQ(0, write(vecList));
    EXPECT_EQ(&vecList[0].value, pSeen);
}

TEST_F(WriteDispatch, AnnouncesWhatItSendsAtLevelSix) {
    root.debugLevel(6);
    EXPECT_THAT(outputOf([&] {
                    write({{KEY_IRIS_UP, 0xFFFFFFFFu}}, false);
                }),
                StartsWith(announced("KEY_IRIS_UP (17,-1) func:&ISensorController::doIaCmd_User ia_cmd:83")));
    EXPECT_THAT(
        outputOf([&] {
            write({{KEY_PANO_SAVE, 1}}, false);
        }),
        StartsWith(announced("KEY_PANO_SAVE (9001,1) func:&ISensorController::doIaCmd_PanoTuning ia_cmd:9001")));
}

TEST_F(WriteDispatch, AnnouncesATwinUnderItsBaseKey) {
    root.debugLevel(6);
    cached(0, KEY_LIGHT_TYPE, 2);
    EXPECT_THAT(outputOf([&] {
                    write({{KEY_WHITE_MODE_INTELL, 3}});
                }),
                StartsWith(announced("KEY_WHITE_MODE (171,3) func:&ISensorController::doIaCmd ia_cmd:169")));
}

TEST_F(WriteDispatch, AnnouncesNothingAtLevelFive) {
    root.debugLevel(5);
    EXPECT_EQ("\n", outputOf([&] { write({{KEY_BRIGHTNESS, 7}}); }));
}

TEST_F(WriteDispatch, IgnoresActionsWhileASchemeIsApplied) {
    probe.setLastScheme(0);
    probe.setFlags(SensorControllerProbe::switching_flag);
    EXPECT_EQ(0, write({{KEY_IRIS_UP, 1}}, false));
    probe.clearFlags(SensorControllerProbe::switching_flag);
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

// --- Failures ---

TEST_F(WriteDispatch, AnyFailureEndsTheWalkWithTheNegatedKey) {
    for (const int nResult : {-1, -2, -3, -4, -5, -6, 1, 7}) {
        SCOPED_TRACE(nResult);
        camera.clear();
        camera.driverFails(KEY_BRIGHTNESS, IA_CMD_OPT_SET, nResult);
        EXPECT_EQ(-34, write({{KEY_BRIGHTNESS, 7}, {KEY_CONTRAST, 8}}));
        EXPECT_EQ(1u, camera.transcript().size());
        EXPECT_EQ(50u, probe.valueIn(0, KEY_BRIGHTNESS));
    }
}

TEST_F(WriteDispatch, ExplainsUnsupportedBusyAndInvalidAtLevelSix) {
    root.debugLevel(6);
    for (const int nResult : {-1, -4, -5}) {
        SCOPED_TRACE(nResult);
        camera.driverFails(85, IA_CMD_OPT_SET, nResult);
        const std::string strOut = messages::anyLine(outputOf([&] {
            EXPECT_EQ(-83, write({{KEY_IRIS_SIZE, 0xFFFFFFFEu}}));
        }));
        EXPECT_THAT(strOut, testing::EndsWith(
                                messages::error(in("setParameters"),
                                                "set KEY_IRIS_SIZE (83,-2) func:&ISensorController::doIaCmd ia_cmd:85 "
                                                "~~~failed ia_ret=" +
                                                    std::to_string(nResult) + "\n")));
    }
    EXPECT_EQ("", root.errorLog());
}

TEST_F(WriteDispatch, ExplainsNoOtherFailure) {
    root.debugLevel(6);
    for (const int nResult : {-2, -3, -6, 1, 5}) {
        SCOPED_TRACE(nResult);
        camera.driverFails(KEY_BRIGHTNESS, IA_CMD_OPT_SET, nResult);
        EXPECT_THAT(outputOf([&] { EXPECT_EQ(-34, write({{KEY_BRIGHTNESS, 7}})); }), Not(HasSubstr("failed")));
    }
}

TEST_F(WriteDispatch, ExplainsNothingAtLevelFive) {
    root.debugLevel(5);
    camera.driverFails(KEY_BRIGHTNESS, IA_CMD_OPT_SET, -5);
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(-34, write({{KEY_BRIGHTNESS, 7}})); }));
}

TEST_F(WriteDispatch, AHandlersFailureCountsLikeTheDrivers) {
    root.debugLevel(6);
    camera.videoFails(2368, -5);
    EXPECT_THAT(
        outputOf([&] {
            EXPECT_EQ(-2368, write({{KEY_WDR_MODE, 1}}));
        }),
        HasSubstr("set KEY_WDR_MODE (2368,1) func:&ISensorController::doHwdr ia_cmd:2368 ~~~failed ia_ret=-5\n"));
    EXPECT_EQ(0u, probe.valueIn(0, KEY_WDR_MODE));
}

TEST_F(WriteDispatch, ReturnsTheKeyNotTheCommand) {
    camera.driverFails(83, IA_CMD_OPT_SET, -3);
    EXPECT_EQ(-17, write({{KEY_IRIS_UP, 1}}));
}

TEST_F(WriteDispatch, AFailureIsTheSameWithoutCaching) {
    camera.driverFails(KEY_BRIGHTNESS, IA_CMD_OPT_SET, -3);
    EXPECT_EQ(-34, write({{KEY_BRIGHTNESS, 7}, {KEY_CONTRAST, 8}}, false));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 7 failed -3"));
}

// --- Keys that the table does not hold ---

TEST_F(WriteDispatch, AnUnknownKeyIsReportedAndSentUnderItsOwnNumber) {
    const std::string strOut = messages::anyLine(outputOf([&] {
        EXPECT_EQ(0, write({{KEY_BRIGHTNESS, 7}, {kUnknown, 8}, {KEY_CONTRAST, 9}}));
    }));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 7", "ia ch0 set 4711 = 8", "ia ch0 set 2353 = 9"));
    EXPECT_EQ(messages::assertion(in("setParameters"), condition()) + messages::detail("p_pKeyval[1].key(4711)") + "\n",
              strOut);
    EXPECT_EQ(messages::loggedAssertion(in("setParameters"), condition()) + "[sensor assert] p_pKeyval[1].key(4711)\n",
              messages::anyLine(root.errorLog()));
}

TEST_F(WriteDispatch, AnUnknownKeyIsNoActionAndIsSentWhileASchemeIsApplied) {
    root.debugLevel(-1);
    probe.setLastScheme(0);
    probe.setFlags(SensorControllerProbe::switching_flag);
    EXPECT_EQ(0, write({{kUnknown, 8}}));
    probe.clearFlags(SensorControllerProbe::switching_flag);
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 4711 = 8"));
}

TEST_F(WriteDispatch, AnUnknownKeyIsTracedAtLevelSix) {
    root.debugLevel(6);
    EXPECT_THAT(messages::anyLine(outputOf([&] {
                    write({{kUnknown, 8}}, false);
                })),
                StartsWith(messages::trace("cand not find key-cmd while key=4711\n") +
                           messages::assertion(in("setParameters"), condition()) +
                           messages::detail("p_pKeyval[0].key(4711)") + messages::trace("not find (4711) \n") +
                           announced("unknow key (4711,8) func:ISensorController::doIaCmd ia_cmd:4711")));
}

TEST_F(WriteDispatch, AnUnknownKeyThatTheSetsHoldIsRecorded) {
    controller.uinit();
    build(1, {{kUnknown, 1}});
    EXPECT_EQ(0, write({{kUnknown, 8}}));
    EXPECT_EQ(8u, probe.valueIn(0, kUnknown));
    camera.clear();
    EXPECT_EQ(0, write({{kUnknown, 8}}));
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(WriteDispatch, AnUnknownKeyThatFailsEndsTheWalkWithItsNumber) {
    root.debugLevel(6);
    camera.driverFails(kUnknown, IA_CMD_OPT_SET, -1);
    EXPECT_THAT(outputOf([&] {
                    EXPECT_EQ(-4711, write({{kUnknown, 8}, {KEY_BRIGHTNESS, 7}}));
                }),
                HasSubstr("set unknow key (4711,8) func:ISensorController::doIaCmd ia_cmd:4711 ~~~failed ia_ret=-1\n"));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 4711 = 8 failed -1"));
}

// The driver takes these for records: a version text, the list of its commands, a sensor check, the heater's byte.
TEST_F(WriteDispatch, ADriverThatFillsAWholeRecordForAnUnknownKeyReachesNothingBehindTheValue) {
    root.debugLevel(-1);
    for (const u32 nKey : {2496u, 4112u, 2816u, 1606u, kUnknown}) {
        camera.onDriver(nKey, IA_CMD_OPT_SET, [](int, void* p_pData) {
            std::memset(p_pData, 0x5A, sizeof(ia_dynamic_params_attr_st));
            return IA_OK;
        });
        std::vector<KeyVal> vecList = {{nKey, 1}, {KEY_CONTRAST, 9}};
        EXPECT_EQ(0, write(vecList)) << nKey;
        EXPECT_EQ(0x5A5A5A5Au, vecList[0].value) << "the value itself is the driver's to change";
        EXPECT_EQ(u32{KEY_CONTRAST}, vecList[1].key) << nKey;
        EXPECT_EQ(9u, vecList[1].value) << nKey;
        EXPECT_EQ(0, controller.setParameter(static_cast<int>(nKey), 1, true)) << nKey;
    }
}

TEST_F(WriteDispatch, WhatTheDriverReadsBehindTheValueOfAnUnknownKeyIsCleared) {
    root.debugLevel(-1);
    std::vector<int> vecRead;
    camera.onDriver(2816, IA_CMD_OPT_SET, [&](int, void* p_pData) {
        const int* const pWords = static_cast<const int*>(p_pData);
        vecRead.assign(pWords, pWords + sizeof(ia_dynamic_params_attr_st) / sizeof(int));
        return IA_OK;
    });
    EXPECT_EQ(0, write({{2816, 7}, {KEY_CONTRAST, 9}}));
    std::vector<int> vecExpected(69, 0);
    vecExpected[0] = 7;
    EXPECT_EQ(vecExpected, vecRead);
}

TEST_F(WriteDispatch, AnUnknownKeysValueIsRecordedAsTheDriverLeftIt) {
    controller.uinit();
    build(1, {{kUnknown, 1}});
    root.debugLevel(-1);
    camera.onDriver(kUnknown, IA_CMD_OPT_SET, [](int, void* p_pData) {
        *static_cast<int*>(p_pData) += 1;
        return IA_OK;
    });
    EXPECT_EQ(0, write({{kUnknown, 8}}));
    EXPECT_EQ(9u, probe.valueIn(0, kUnknown));
}

// Every row without a handler is kept from here by the steps before; a row that one day is not must do no harm.
TEST_F(WriteDispatch, ARowWithoutAHandlerIsOnlyRecorded) {
    const_cast<keycmd*>(probe.keyCmdMap())[0].pfnHandler = nullptr;
    EXPECT_EQ(0, write({{KEY_BRIGHTNESS, 7}, {KEY_CONTRAST, 8}}));
    EXPECT_THAT(camera.transcript(), testing::ElementsAre("ia ch0 set 2353 = 8"));
    EXPECT_EQ(7u, probe.valueIn(0, KEY_BRIGHTNESS));
}

TEST_F(WriteDispatch, AnUnknownKeyAbortsWhenAssertionsAreEnabled) {
    root.debugLevel(1, true);
    EXPECT_DEATH(write({{kUnknown, 8}}), abortIn("setParameters"));
}

TEST_F(WriteDispatch, AKnownKeyDoesNotAbortWhenAssertionsAreEnabled) {
    root.debugLevel(1, true);
    camera.driverFails(KEY_BRIGHTNESS, IA_CMD_OPT_SET, -5);
    EXPECT_EQ(-34, write({{KEY_BRIGHTNESS, 7}}));
    EXPECT_EQ("", root.errorLog());
}

TEST_F(WriteDispatch, AnUnknownKeyIsStillSentAtANegativeLevel) {
    root.debugLevel(-1);
    EXPECT_EQ("\n", outputOf([&] { EXPECT_EQ(0, write({{kUnknown, 8}})); }));
    EXPECT_EQ("", root.errorLog());
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 4711 = 8"));
}

TEST_F(WriteDispatch, TheTwinsWithoutARowAreNoKeysOfTheirOwn) {
    cached(0, KEY_LIGHT_TYPE, 2);
    EXPECT_EQ("\n", outputOf([&] { EXPECT_EQ(0, write({{201, 1}, {202, 1}, {204, 1}, {205, 1}})); }));
    EXPECT_EQ(4u, camera.transcript().size());
}

// --- Numbers at the edge ---

TEST_F(WriteDispatch, KeyZeroIsUnknownAndSentAsCommandZero) {
    EXPECT_THAT(outputOf([&] {
                    EXPECT_EQ(0, write({{0, 8}, {KEY_BRIGHTNESS, 7}}));
                }),
                HasSubstr("p_pKeyval[0].key(0)"));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 0 = 8", "ia ch0 set 34 = 7"));
}

TEST_F(WriteDispatch, AKeyZeroThatFailsEndsTheWalkThoughItsNegatedKeyIsZero) {
    root.debugLevel(-1);
    controller.uinit();
    build(1, {{0, 1}, {KEY_BRIGHTNESS, 50}});
    camera.driverFails(0, IA_CMD_OPT_SET, -3);
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(0, write({{0, 8}, {KEY_BRIGHTNESS, 7}})); }));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 0 = 8 failed -3"));
    EXPECT_EQ(1u, probe.valueIn(0, 0));
}

TEST_F(WriteDispatch, ANegativeKeyThatFailsReturnsAPositiveNumber) {
    root.debugLevel(-1);
    for (const int nKey : {-5, -2384, INT_MIN + 1}) {
        camera.driverFails(static_cast<u32>(nKey), IA_CMD_OPT_SET, -3);
        EXPECT_EQ(-nKey, controller.setParameter(nKey, 1, true));
    }
    camera.driverFails(0x80000000u, IA_CMD_OPT_SET, -3);
    EXPECT_EQ(INT_MIN, controller.setParameter(INT_MIN, 1, true));
}

TEST_F(WriteDispatch, CarriesAllBitsOfAValue) {
    EXPECT_EQ(0, write({{KEY_BRIGHTNESS, 0x80000000u}, {KEY_CONTRAST, 0xFFFFFFFFu}}));
    EXPECT_EQ(0x80000000u, probe.valueIn(0, KEY_BRIGHTNESS));
    EXPECT_EQ(0xFFFFFFFFu, probe.valueIn(0, KEY_CONTRAST));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = -2147483648", "ia ch0 set 2353 = -1"));
}

}  // namespace
