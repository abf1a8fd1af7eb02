// Reading parameters back: one, or a list of them.
#include "technic/QVMutex.h"
#include "tests/unit/sensor/SmallSets.h"

#include <cstring>

using messages::anyLine;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class ParameterRead : public SmallSets {
protected:
    static constexpr char kReadFailed[] = "QVS_SUCCESS == doIaCmd(p_nKey, IA_CMD_OPT_GET, &p_nVal)";

    // What a read gives; the holder starts as told.
    int valueOf(int p_nKey, int p_nHolder = 4711) {
        EXPECT_TRUE(controller.getParameter(p_nKey, p_nHolder));
        return p_nHolder;
    }

    static std::string begin(int p_nCmd, int p_nValue) {
        return messages::debug(in("doIaCmd"), "====================== cmd:" + std::to_string(p_nCmd) +
                                                  " dir:1 val:" + std::to_string(p_nValue) +
                                                  " ======m_nCameraID=(1)===============begin\n");
    }
    static std::string end(int p_nCmd, int p_nValue) {
        return messages::debug(in("doIaCmd"), "====================== cmd:" + std::to_string(p_nCmd) + " dir:1 val:" +
                                                  std::to_string(p_nValue) + " =====================end\n");
    }
};

// --- From the set ---

TEST_F(ParameterRead, AKeyOfTheSetIsAnsweredFromTheSetAndTheDriverIsNotAsked) {
    camera.driverHolds(0, KEY_BRIGHTNESS, 99);
    EXPECT_EQ(50, valueOf(KEY_BRIGHTNESS));
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(ParameterRead, TheSetOfTheCurrentSchemeAnswers) {
    for (u32 nScheme = 0; nScheme <= kFactory; ++nScheme) {
        cached(nScheme, KEY_BRIGHTNESS, 60 + nScheme);
    }
    for (int nScheme = 0; nScheme <= static_cast<int>(kFactory); ++nScheme) {
        probe.setCurScheme(nScheme);
        EXPECT_EQ(60 + nScheme, valueOf(KEY_BRIGHTNESS));
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(ParameterRead, AWrittenValueIsReadBack) {
    EXPECT_EQ(0, quietly([&] { return controller.setParameter(KEY_BRIGHTNESS, -7, true); }));
    EXPECT_EQ(-7, valueOf(KEY_BRIGHTNESS));
}

TEST_F(ParameterRead, TheFirstOfTwoRecordsWithTheKeyAnswers) {
    controller.uinit();
    build(1, {{KEY_BRIGHTNESS, 1}, {KEY_BRIGHTNESS, 2}});
    EXPECT_EQ(1, valueOf(KEY_BRIGHTNESS));
}

TEST_F(ParameterRead, AnInfraredKeyOfTheSetIsAnsweredFromTheSet) {
    controller.uinit();
    build(1, {{KEY_IR_SWITCH, 1}, {KEY_IR_MANUAL_STRG_FAR, 60}});
    EXPECT_EQ(1, valueOf(160));
    EXPECT_EQ(60, valueOf(167));
}

// --- From the driver ---

TEST_F(ParameterRead, AKeyThatTheSetLacksIsReadFromTheDriver) {
    camera.driverHolds(0, KEY_SATURATION, -3);
    EXPECT_EQ(-3, valueOf(KEY_SATURATION));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 2337 -> -3"));
}

TEST_F(ParameterRead, TheDriverIsAskedOnTheControllersChannel) {
    controller.setChannelID(3);
    camera.driverHolds(2, KEY_SATURATION, 5);
    EXPECT_EQ(5, valueOf(KEY_SATURATION));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch2 get 2337 -> 5"));
}

// Its row says command 168 for key 170.
TEST_F(ParameterRead, MeantTheDriverIsAskedForTheKeyItselfAndNotForTheCommandOfItsRow) {
    camera.driverHolds(0, KEY_WHITE_SWITCH, 77);
    EXPECT_EQ(77, valueOf(KEY_WHITE_SWITCH));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 170 -> 77"));
}

TEST_F(ParameterRead, MeantFiveInfraredKeysThatTheSetLacksReadAsMinusOneWithoutAskingTheDriver) {
    for (const int nKey : {160, 161, 163, 165, 167}) {
        camera.driverHolds(0, static_cast<u32>(nKey), 12);
        EXPECT_EQ(-1, valueOf(nKey)) << nKey;
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(ParameterRead, TheirNeighboursAskTheDriver) {
    for (const int nKey : {158, 159, 162, 164, 166, 168, 169, 171, 32, 192}) {
        camera.driverHolds(0, static_cast<u32>(nKey), nKey + 1000);
        EXPECT_EQ(nKey + 1000, valueOf(nKey));
    }
    EXPECT_EQ(10u, camera.linesLike("ia ch0 get ").size());
}

TEST_F(ParameterRead, AnyNumberMayBeRead) {
    for (const int nKey : {0, -1, 0x7FFFFFFF, static_cast<int>(0x80000000u)}) {
        camera.driverHolds(0, static_cast<u32>(nKey), 6);
        EXPECT_EQ(6, valueOf(nKey)) << nKey;
    }
}

TEST_F(ParameterRead, TheDriverFindsTheCallersValueInItsPlace) {
    int nFound = 0;
    camera.onDriver(KEY_SATURATION, IA_CMD_OPT_GET, [&](int, void* p_pData) {
        nFound = *static_cast<int*>(p_pData);
        return IA_OK;
    });
    EXPECT_EQ(1234, valueOf(KEY_SATURATION, 1234));
    EXPECT_EQ(1234, nFound);
}

TEST_F(ParameterRead, AKeyThatTheLensLockHoldsBackSucceedsAndLeavesTheValue) {
    lockLens();
    EXPECT_EQ(33, valueOf(KEY_MZ_POSITION, 33));
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

// The driver takes these for records: a version text, the list of its commands, a sensor check, the heater's byte.
TEST_F(ParameterRead, ADriverThatFillsAWholeRecordReachesNothingBehindTheValue) {
    for (const int nKey : {2496, 4112, 2816, 1606, 4711}) {
        camera.onDriver(static_cast<u32>(nKey), IA_CMD_OPT_GET, fillLargestRecord);
        int aValues[] = {1, 2, 3};
        EXPECT_TRUE(controller.getParameter(nKey, aValues[1])) << nKey;
        EXPECT_THAT(aValues, ElementsAre(1, kFilled, 3)) << nKey;
    }
}

TEST_F(ParameterRead, RecordsOfTheDriverReadAsTheirFirstWord) {
    EXPECT_EQ(0x6F636572, valueOf(2496)) << "reco";
    camera.dynamicCommands({49, 50, 82});
    EXPECT_EQ(3, valueOf(4112));
    camera.driverHolds(0, 1606, 1);
    EXPECT_EQ(1, valueOf(1606, 0));
    EXPECT_EQ(0x12345601, valueOf(1606, 0x12345678)) << "the driver writes one byte";
}

// --- Failures ---

TEST_F(ParameterRead, AFailureOfTheDriverIsAnAssertionAndFalse) {
    camera.driverFails(KEY_SATURATION, IA_CMD_OPT_GET, -3);
    int nVal = 8;
    const std::string strOut = anyLine(outputOf([&] { EXPECT_FALSE(controller.getParameter(KEY_SATURATION, nVal)); }));
    EXPECT_EQ(8, nVal);
    EXPECT_EQ(messages::assertion(in("getParameter"), kReadFailed) + messages::detail("get key(2337) val from 2a err"),
              strOut);
    EXPECT_EQ(messages::loggedAssertion(in("getParameter"), kReadFailed) +
                  messages::loggedDetail("get key(2337) val from 2a err") + "\n",
              anyLine(root.errorLog()));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 2337 failed -3"));
    EXPECT_FALSE(lockIsHeld());
}

TEST_F(ParameterRead, AFailureLeavesTheValueAsTheDriverLeftIt) {
    root.debugLevel(-1);
    camera.onDriver(KEY_SATURATION, IA_CMD_OPT_GET, [](int, void* p_pData) {
        *static_cast<int*>(p_pData) = 5;
        return 2;
    });
    int nVal = 8;
    EXPECT_FALSE(controller.getParameter(KEY_SATURATION, nVal));
    EXPECT_EQ(5, nVal);
}

TEST_F(ParameterRead, AFailureEndsTheProcessWhileAssertionsAreEnabled) {
    camera.driverFails(KEY_SATURATION, IA_CMD_OPT_GET, -3);
    root.debugLevel(1, true);
    int nVal = 0;
    EXPECT_DEATH(controller.getParameter(KEY_SATURATION, nVal), abortIn("getParameter"));
}

TEST_F(ParameterRead, ASuccessIsSilentAtLevelFive) {
    root.debugLevel(5);
    EXPECT_EQ("", outputOf([&] { valueOf(KEY_BRIGHTNESS); }));
    EXPECT_EQ("", outputOf([&] { valueOf(KEY_SATURATION); }));
    EXPECT_EQ("", root.errorLog());
}

TEST_F(ParameterRead, TheKeyIsAnnouncedAtLevelSix) {
    root.debugLevel(6);
    EXPECT_EQ(messages::debug(in("getParameter"), "p_nKey(34)\n"), anyLine(outputOf([&] { valueOf(KEY_BRIGHTNESS); })));
    camera.driverHolds(0, KEY_SATURATION, 9);
    EXPECT_EQ(messages::debug(in("getParameter"), "p_nKey(2337)\n") + begin(2337, 4711) + end(2337, 9),
              anyLine(outputOf([&] { valueOf(KEY_SATURATION); })));
}

// --- Without a scheme, without sets ---

TEST_F(ParameterRead, WithoutASchemeTheDriverAnswersWhatItMay) {
    applyNoScheme();
    camera.driverHolds(0, KEY_BRIGHTNESS, 99);
    EXPECT_EQ(99, valueOf(KEY_BRIGHTNESS));
    EXPECT_EQ(-1, valueOf(KEY_IR_MANUAL_STRG_MEDIUM));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 34 -> 99"));
}

TEST_F(ParameterRead, AControllerThatIsNotInitialisedRefusesAndTouchesNothing) {
    root.debugLevel(6);
    ISensorController fresh;
    controller.uinit();
    for (ISensorController* const pController : {&fresh, &controller}) {
        for (const int nKey : {34, 165, 2337}) {
            int nVal = 8;
            EXPECT_EQ(refused("getParameter"),
                      anyLine(outputOf([&] { EXPECT_FALSE(pController->getParameter(nKey, nVal)); })));
            EXPECT_EQ(8, nVal);
        }
    }
    EXPECT_FALSE(lockIsHeld());
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

// --- The lock ---

TEST_F(ParameterRead, TheLockIsHeldWhileTheDriverIsAsked) {
    std::vector<bool> vecHeld;
    camera.onDriver(KEY_SATURATION, IA_CMD_OPT_GET, [&](int, void*) {
        vecHeld.push_back(lockIsHeld());
        return IA_OK;
    });
    valueOf(KEY_SATURATION);
    EXPECT_THAT(vecHeld, ElementsAre(true));
    EXPECT_FALSE(lockIsHeld());
}

TEST_F(ParameterRead, AReadFromTheSetWaitsForTheLock) {
    EXPECT_DEATH(
        {
            const QVMutexManager guard(&probe.mutex(), "the test", 7);
            valueOf(KEY_BRIGHTNESS);
        },
        kLockedTwice);
}

}  // namespace
