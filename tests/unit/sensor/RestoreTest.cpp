// Sending a value of the current scheme to the driver again.
#include "technic/QVMutex.h"
#include "tests/unit/sensor/SmallSets.h"

using messages::anyLine;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

class Restore : public SmallSets {
protected:
    static std::vector<KeyVal> restoredRecords() {
        std::vector<KeyVal> vecRecords = records();
        vecRecords.insert(vecRecords.end(), {{KEY_AUTO_FOCUS_MODE, 2},
                                             {KEY_EXPOSE_MODE, 3},
                                             {KEY_WDR_MODE, 1},
                                             {KEY_LIGHT_TYPE, 0},
                                             {KEY_IR_MODE, 1},
                                             {KEY_IR_MODE_INTELL, 4},
                                             {4711, 6},
                                             {2816, 7},
                                             {KEY_BRIGHTNESS, 99}});
        return vecRecords;
    }
    Restore() {
        controller.uinit();
        build(kFactory, restoredRecords());
    }

    int restored(u32 p_nKey) {
        return quietly([&] { return controller.restore(static_cast<int>(p_nKey)); });
    }

    static std::string detail(int p_nKey) {
        return "restore key(" + std::to_string(p_nKey) + ") failed! make sure it is sensor ui key \n";
    }
};

TEST_F(Restore, AValueIsSentAgainAlthoughMemoryHoldsIt) {
    EXPECT_EQ("\n", outputOf([&] { EXPECT_EQ(0, controller.restore(KEY_BRIGHTNESS)); }));
    EXPECT_EQ(0, restored(KEY_BRIGHTNESS));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 50", "ia ch0 set 34 = 50"));
    EXPECT_EQ("", root.errorLog());
}

TEST_F(Restore, TheValueIsThatOfTheCurrentSchemeTheFactorySetIncluded) {
    for (u32 nScheme = 0; nScheme <= kFactory; ++nScheme) {
        cached(nScheme, KEY_BRIGHTNESS, 60 + nScheme);
    }
    for (u32 nScheme = 0; nScheme <= kFactory; ++nScheme) {
        probe.setCurScheme(static_cast<int>(nScheme));
        EXPECT_EQ(0, restored(KEY_BRIGHTNESS));
    }
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 60", "ia ch0 set 34 = 61", "ia ch0 set 34 = 62"));
}

TEST_F(Restore, TheValueInMemoryCountsNotTheStoredOne) {
    root.write(parameterFile(0), fileOf(with(restoredRecords(), KEY_CONTRAST, 1)));
    EXPECT_EQ(0, restored(KEY_CONTRAST));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 2353 = 128"));
}

TEST_F(Restore, OnlyTheFirstRecordWithTheKeyIsSent) {
    EXPECT_EQ(0, restored(KEY_BRIGHTNESS));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 50"));
}

TEST_F(Restore, AHandlersKeyGoesThroughItsHandler) {
    EXPECT_EQ(0, restored(KEY_WDR_MODE));
    EXPECT_THAT(camera.transcript(),
                ElementsAre("video ch1 2370 = 0", "video ch1 2368 = 1", "ia ch0 set 2368 = 1", "video ch1 2370 = 1"));
}

// The handler is handed the set's own record.
TEST_F(Restore, AControlThatIsNotOfferedIsSwitchedOffInTheSet) {
    controller.setShowWDRFalg(false);
    EXPECT_EQ(0, restored(KEY_WDR_MODE));
    EXPECT_THAT(camera.transcript(), IsEmpty());
    EXPECT_EQ(0u, probe.valueIn(0, KEY_WDR_MODE));
}

TEST_F(Restore, AFailureIsTheNegatedKeyAndKeepsTheValue) {
    camera.driverFails(KEY_CONTRAST, IA_CMD_OPT_SET, -5);
    EXPECT_EQ(-2353, restored(KEY_CONTRAST));
    EXPECT_EQ(128u, probe.valueIn(0, KEY_CONTRAST));
    EXPECT_FALSE(lockIsHeld());
}

TEST_F(Restore, AKeyThatIsOnlyStoredSucceedsAndIsNotSent) {
    for (const u32 nKey : {8000u, 8001u, 8002u, 8003u, 8004u}) {
        EXPECT_EQ(0, restored(nKey));
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(Restore, ALightKeyThatDoesNotCountUnderTheCurrentLightIsNotSent) {
    EXPECT_EQ(0, restored(KEY_IR_MODE_INTELL));
    cached(0, KEY_LIGHT_TYPE, 2);
    EXPECT_EQ(0, restored(KEY_IR_MODE));
    EXPECT_THAT(camera.transcript(), IsEmpty());
    EXPECT_EQ(0, restored(KEY_IR_MODE_INTELL));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 161 = 4"));
}

TEST_F(Restore, AKeyWithoutARowIsSentUnderItsOwnNumber) {
    root.debugLevel(-1);
    EXPECT_EQ(0, restored(4711));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 4711 = 6"));
}

TEST_F(Restore, ADriverThatFillsAWholeRecordReachesNothingBehindTheValue) {
    root.debugLevel(-1);
    camera.onDriver(2816, IA_CMD_OPT_SET, fillLargestRecord);
    const std::string strBefore = setAsFile(0);
    EXPECT_EQ(0, restored(2816));
    EXPECT_EQ(static_cast<u32>(kFilled), probe.valueIn(0, 2816));
    cached(0, 2816, 7);
    EXPECT_EQ(strBefore, setAsFile(0));
    EXPECT_EQ(strBefore, setAsFile(1));
}

TEST_F(Restore, AKeyThatTheSchemeLacksIsAnAssertionAndMinusOne) {
    for (const int nKey : {2337, 0, -1}) {
        EXPECT_EQ(messages::assertion(in("restore"), "-1 != nPos") + messages::detail(detail(nKey)),
                  anyLine(outputOf([&] { EXPECT_EQ(-1, controller.restore(nKey)); })));
    }
    EXPECT_THAT(anyLine(root.errorLog()), StartsWith(messages::loggedAssertion(in("restore"), "-1 != nPos") +
                                                     messages::loggedDetail(detail(2337))));
    EXPECT_THAT(camera.transcript(), IsEmpty());
    EXPECT_FALSE(lockIsHeld());
}

TEST_F(Restore, AKeyThatTheSchemeLacksEndsTheProcessWhileAssertionsAreEnabled) {
    root.debugLevel(1, true);
    EXPECT_DEATH(controller.restore(2337), abortIn("restore"));
}

TEST_F(Restore, TheKeyIsAnnouncedAtLevelSix) {
    root.debugLevel(6);
    EXPECT_THAT(anyLine(outputOf([&] { controller.restore(KEY_BRIGHTNESS); })),
                StartsWith(messages::debug(in("restore"), "p_nKey(34)\n") +
                           messages::trace("====================== set KEY_BRIGHTNESS (34,50) "
                                           "func:&ISensorController::doIaCmd ia_cmd:34 =====================\n")));
    EXPECT_EQ(messages::debug(in("restore"), "p_nKey(2337)\n") + messages::assertion(in("restore"), "-1 != nPos") +
                  messages::detail(detail(2337)),
              anyLine(outputOf([&] { controller.restore(2337); })));
}

TEST_F(Restore, WithoutASchemeItReportsAndGivesMinusOne) {
    applyNoScheme();
    EXPECT_EQ(messages::assertion(in("restore"), "-1 != nPos") + messages::detail(detail(34)),
              anyLine(outputOf([&] { EXPECT_EQ(-1, controller.restore(KEY_BRIGHTNESS)); })));
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(Restore, AControllerThatIsNotInitialisedRefuses) {
    root.debugLevel(6);
    ISensorController fresh;
    controller.uinit();
    for (ISensorController* const pController : {&fresh, &controller}) {
        EXPECT_EQ(refused("restore"), anyLine(outputOf([&] { EXPECT_EQ(-1, pController->restore(34)); })));
        EXPECT_EQ(refused("restore"), anyLine(outputOf([&] { EXPECT_FALSE(pController->restoreAeMode()); })));
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
    EXPECT_EQ("", root.errorLog());
    EXPECT_FALSE(lockIsHeld());
}

TEST_F(Restore, TheLockIsHeldWhileTheDriverIsSet) {
    std::vector<bool> vecHeld;
    camera.onDriver(KEY_BRIGHTNESS, IA_CMD_OPT_SET, [&](int, void*) {
        vecHeld.push_back(lockIsHeld());
        return IA_OK;
    });
    restored(KEY_BRIGHTNESS);
    EXPECT_THAT(vecHeld, ElementsAre(true));
    EXPECT_FALSE(lockIsHeld());
}

TEST_F(Restore, ItWaitsForTheLock) {
    EXPECT_DEATH(
        {
            const QVMutexManager guard(&probe.mutex(), "the test", 7);
            controller.restore(8001);
        },
        kLockedTwice);
}

// --- The two modes ---

TEST_F(Restore, TheFocusModeIsSentFirstThenTheExposureMode) {
    EXPECT_TRUE(quietly([&] { return controller.restoreAeMode(); }));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 1536 = 2", "ia ch0 set 16 = 3"));
}

TEST_F(Restore, WhenTheFocusModeFailsTheExposureModeIsNotSent) {
    camera.driverFails(KEY_AUTO_FOCUS_MODE, IA_CMD_OPT_SET, -3);
    EXPECT_FALSE(quietly([&] { return controller.restoreAeMode(); }));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 1536 = 2 failed -3"));
}

TEST_F(Restore, WhenTheExposureModeFailsTheResultIsFalse) {
    camera.driverFails(KEY_EXPOSE_MODE, IA_CMD_OPT_SET, -3);
    EXPECT_FALSE(quietly([&] { return controller.restoreAeMode(); }));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 1536 = 2", "ia ch0 set 16 = 3 failed -3"));
}

TEST_F(Restore, ASchemeWithoutAFocusModeFailsAtOnce) {
    controller.uinit();
    build(1, {{KEY_EXPOSE_MODE, 3}});
    EXPECT_EQ(messages::assertion(in("restore"), "-1 != nPos") + messages::detail(detail(1536)),
              anyLine(outputOf([&] { EXPECT_FALSE(controller.restoreAeMode()); })));
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(Restore, UnderTheLensLockTheFocusModeCountsAsSent) {
    lockLens();
    EXPECT_TRUE(quietly([&] { return controller.restoreAeMode(); }));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 16 = 3"));
}

TEST_F(Restore, TheLockIsTakenForEachOfTheTwo) {
    std::vector<bool> vecHeld;
    const auto note = [&](int, void*) {
        vecHeld.push_back(lockIsHeld());
        return IA_OK;
    };
    camera.onDriver(KEY_AUTO_FOCUS_MODE, IA_CMD_OPT_SET, note);
    camera.onDriver(KEY_EXPOSE_MODE, IA_CMD_OPT_SET, note);
    EXPECT_TRUE(quietly([&] { return controller.restoreAeMode(); }));
    EXPECT_THAT(vecHeld, ElementsAre(true, true));
    EXPECT_FALSE(lockIsHeld());
}

}  // namespace
