// Discarding what was not stored: the current scheme's file is read back and what differs is sent.
#include "technic/QVMutex.h"
#include "tests/unit/sensor/SmallSets.h"

#include <unistd.h>

#include <atomic>
#include <fstream>
#include <thread>

using messages::anyLine;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr u32 kRollback = SensorControllerProbe::rollback_flag;

class Rollback : public SmallSets {
protected:
    void stored(u32 p_nScheme, const std::vector<KeyVal>& p_vecRecords, const std::string& p_strKind = "sensor") {
        root.write(parameterFile(p_nScheme, p_strKind), fileOf(p_vecRecords));
    }
    bool rolledBack() {
        return quietly([&] { return controller.resetToLastParameters(); });
    }
    // Other sets than the small ones, stored as they are.
    void rebuild(const std::vector<KeyVal>& p_vecMore) {
        std::vector<KeyVal> vecRecords = records();
        vecRecords.insert(vecRecords.end(), p_vecMore.begin(), p_vecMore.end());
        controller.uinit();
        build(kFactory, vecRecords);
        stored(0, vecRecords);
    }
    void expectEnded() {
        EXPECT_EQ(SensorControllerProbe::inited_flag, probe.flags());
        EXPECT_FALSE(lockIsHeld());
    }

    static const messages::Place& reading() {
        static const messages::Place stPlace{"SensorFile.cpp", "keyValFromFile"};
        return stPlace;
    }
    static std::string readDetail(int p_nSize) {
        return "file_name(/mnt/mtd/code/config_file/sensor0.cfg) nSize(" + std::to_string(p_nSize) +
               ") sizeof(KeyVal) = 8, p_nKeyValNum(9)\n";
    }
};

// --- What comes back ---

TEST_F(Rollback, ExactlyTheChangedKeyIsSentAgainWithItsStoredValue) {
    stored(0, records());
    EXPECT_EQ(0, quietly([&] { return controller.setParameter(KEY_BRIGHTNESS, 7, true); }));
    camera.clear();
    EXPECT_EQ("\n", outputOf([&] { EXPECT_TRUE(controller.resetToLastParameters()); }));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 50"));
    EXPECT_EQ(fileOf(records()), setAsFile(0));
    EXPECT_EQ(fileOf(records()), root.read(parameterFile(0))) << "the file is only read";
    EXPECT_EQ("", root.errorLog());
    expectEnded();
}

TEST_F(Rollback, NothingIsSentWhenNothingDiffers) {
    stored(0, records());
    EXPECT_TRUE(rolledBack());
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(Rollback, WhatWasStoredIsWhatComesBack) {
    cached(0, KEY_BRIGHTNESS, 7);
    EXPECT_EQ(0, controller.flush());
    cached(0, KEY_BRIGHTNESS, 8);
    cached(0, KEY_SCHEME_END_HOUR, 99);
    EXPECT_TRUE(rolledBack());
    EXPECT_EQ(fileOf(with(records(), KEY_BRIGHTNESS, 7)), setAsFile(0));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 7"));
}

TEST_F(Rollback, OnlyTheCurrentSchemeComesBack) {
    stored(0, with(records(), KEY_BRIGHTNESS, 60));
    stored(1, with(records(), KEY_BRIGHTNESS, 61));
    probe.setCurScheme(1);
    EXPECT_TRUE(rolledBack());
    EXPECT_EQ(50u, probe.valueIn(0, KEY_BRIGHTNESS));
    EXPECT_EQ(61u, probe.valueIn(1, KEY_BRIGHTNESS));
    EXPECT_EQ(50u, probe.valueIn(kFactory, KEY_BRIGHTNESS));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 61"));
}

TEST_F(Rollback, ASwitchStoresNothingAndUnsavedValuesWaitForTheirScheme) {
    stored(0, records());
    cached(0, KEY_BRIGHTNESS, 60);
    EXPECT_TRUE(quietly([&] { return controller.setParamScheme(1); }));
    EXPECT_EQ(fileOf(records()), root.read(parameterFile(0)));
    EXPECT_FALSE(root.exists(parameterFile(1)));
    EXPECT_EQ(60u, probe.valueIn(0, KEY_BRIGHTNESS));
    EXPECT_TRUE(quietly([&] { return controller.setParamScheme(0); }));
    camera.clear();
    EXPECT_TRUE(rolledBack());
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 50"));
}

TEST_F(Rollback, TheSecondChannelHasFilesOfItsOwnName) {
    controller.setChannelID(2);
    stored(0, with(records(), KEY_BRIGHTNESS, 60));
    stored(0, with(records(), KEY_BRIGHTNESS, 61), "sensor-thermal");
    EXPECT_TRUE(rolledBack());
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch1 set 34 = 61"));
}

TEST_F(Rollback, SwitchingFollowsTheStoredModeAgain) {
    probe.setSwitching(false, true);
    cached(0, KEY_SCHEME_MODE, 2);
    stored(0, with(records(), KEY_SCHEME_MODE, 1));
    EXPECT_TRUE(rolledBack());
    EXPECT_TRUE(probe.scheduleSwitch());
    EXPECT_FALSE(probe.dnSchemeSwitch());
    EXPECT_EQ(1u, probe.valueIn(0, KEY_SCHEME_MODE));
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

// --- While it runs ---

TEST_F(Rollback, TheFlagIsSetAndTheLockHeldWhileTheDriverIsSet) {
    stored(0, with(records(), KEY_BRIGHTNESS, 60));
    u32 nFlags = 0;
    bool bHeld = false;
    camera.onDriver(KEY_BRIGHTNESS, IA_CMD_OPT_SET, [&](int, void*) {
        nFlags = probe.flags();
        bHeld = lockIsHeld();
        return IA_OK;
    });
    EXPECT_TRUE(rolledBack());
    EXPECT_EQ(SensorControllerProbe::inited_flag | kRollback, nFlags);
    EXPECT_TRUE(bHeld);
    expectEnded();
}

TEST_F(Rollback, TheBackgroundThreadStartsNoSwitchMeanwhile) {
    stored(0, with(records(), KEY_BRIGHTNESS, 60));
    probe.setParamModeDirectly(1);
    probe.setSwitching(false, true);
    camera.driverHolds(0, 153, 1);  // night: scheme 1
    int nScheme = -7;
    camera.onDriver(KEY_BRIGHTNESS, IA_CMD_OPT_SET, [&](int, void*) {
        probe.sensorThread();
        nScheme = probe.curScheme();
        return IA_OK;
    });
    EXPECT_TRUE(rolledBack());
    EXPECT_EQ(0, nScheme);
    outputOf([&] { probe.sensorThread(); });
    EXPECT_EQ(1, probe.curScheme()) << "afterwards it does";
}

TEST_F(Rollback, OneShotActionsAreNotRepeatedButTakenOver) {
    stored(0, with(with(records(), KEY_IRIS_UP, 1), KEY_BRIGHTNESS, 60));
    EXPECT_TRUE(rolledBack());
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 60"));
    EXPECT_EQ(1u, probe.valueIn(0, KEY_IRIS_UP));
}

TEST_F(Rollback, FailuresOfTheDayNightThresholdsDoNotCount) {
    rebuild({{KEY_DTN_THR, 30}, {KEY_NTD_THR, 60}});
    cached(0, KEY_DTN_THR, 31);
    camera.driverFails(KEY_DTN_THR, IA_CMD_OPT_SET, -5);
    EXPECT_TRUE(rolledBack());
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 145 = 30 60 0 failed -5"));
    EXPECT_EQ(30u, probe.valueIn(0, KEY_DTN_THR));
}

// --- What fails ---

TEST_F(Rollback, AFailureEndsItThereAndClearsTheFlag) {
    std::vector<KeyVal> vecStored = with(with(records(), KEY_BRIGHTNESS, 60), KEY_CONTRAST, 61);
    stored(0, with(vecStored, KEY_MAX_SHUTTER, 62));
    camera.driverFails(KEY_CONTRAST, IA_CMD_OPT_SET, -3);
    EXPECT_EQ("", outputOf([&] { EXPECT_FALSE(controller.resetToLastParameters()); }));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 60", "ia ch0 set 2353 = 61 failed -3"));
    EXPECT_EQ(60u, probe.valueIn(0, KEY_BRIGHTNESS));
    EXPECT_EQ(128u, probe.valueIn(0, KEY_CONTRAST));
    EXPECT_EQ(200u, probe.valueIn(0, KEY_MAX_SHUTTER));
    expectEnded();
}

TEST_F(Rollback, MeantAMissingFileIsReportedAndTheScratchSetAppliedAsItIs) {
    fillScratch(3);
    EXPECT_EQ(messages::assertion(reading(), "file.open(file_name)") +
                  messages::detail("file_name(/mnt/mtd/code/config_file/sensor0.cfg)\n") +
                  messages::assertion(reading(), "nSize == sizeof(KeyVal)*p_nKeyValNum") +
                  messages::detail(readDetail(-1)) + "\n",
              anyLine(outputOf([&] { EXPECT_TRUE(controller.resetToLastParameters()); })));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 3", "ia ch0 set 2353 = 3", "ia ch0 set 49 = 3"));
    EXPECT_EQ(3u, probe.valueIn(0, KEY_SCHEME_END_HOUR));
    expectEnded();
}

TEST_F(Rollback, OfAShortFileTheRecordsThatItHoldsAreAppliedAndThenTheScratchSet) {
    fillScratch(3);
    stored(0, {{KEY_BRIGHTNESS, 60}, {KEY_CONTRAST, 61}});
    EXPECT_EQ(messages::assertion(reading(), "nSize == sizeof(KeyVal)*p_nKeyValNum") +
                  messages::detail(readDetail(16)) + "\n",
              anyLine(outputOf([&] { EXPECT_TRUE(controller.resetToLastParameters()); })));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 60", "ia ch0 set 2353 = 61", "ia ch0 set 34 = 3",
                                                 "ia ch0 set 2353 = 3", "ia ch0 set 49 = 3"));
    expectEnded();
}

TEST_F(Rollback, OfALongerFileTheFirstRecordsAreApplied) {
    std::vector<KeyVal> vecLonger = with(records(), KEY_BRIGHTNESS, 60);
    vecLonger.push_back({KEY_CONTRAST, 61});
    stored(0, vecLonger);
    EXPECT_EQ("\n", outputOf([&] { EXPECT_TRUE(controller.resetToLastParameters()); }));
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 60"));
    EXPECT_EQ("", root.errorLog());
}

TEST_F(Rollback, AMissingFileEndsTheProcessWhileAssertionsAreEnabled) {
    root.debugLevel(1, true);
    EXPECT_DEATH(controller.resetToLastParameters(), "SensorFile.cpp:[0-9]+: .*keyValFromFile.*Assertion");
}

TEST_F(Rollback, KeysOfTheFileThatTheSetLacksAreSentAndRecordedNowhere) {
    std::vector<KeyVal> vecStored = records();
    vecStored[5] = {KEY_SATURATION, 60};
    vecStored[6] = {4711, 61};
    stored(0, vecStored);
    root.debugLevel(-1);
    EXPECT_TRUE(rolledBack());
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 2337 = 60", "ia ch0 set 4711 = 61"));
    EXPECT_EQ(fileOf(records()), setAsFile(0));
}

// A broken file may name any number; the driver takes some for records.
TEST_F(Rollback, ADriverThatFillsAWholeRecordReachesNothingBehindTheValue) {
    std::vector<KeyVal> vecStored = records();
    vecStored.back() = {2496, 1};
    stored(0, vecStored);
    camera.onDriver(2496, IA_CMD_OPT_SET, fillLargestRecord);
    root.debugLevel(-1);
    EXPECT_TRUE(rolledBack());
    EXPECT_EQ(2496u, probe.scratch()[8].key);
    EXPECT_EQ(static_cast<u32>(kFilled), probe.scratch()[8].value);
    EXPECT_EQ(fileOf(records()), setAsFile(0));
}

// --- Nothing to go back to ---

TEST_F(Rollback, TheFactorySchemeHasNothingToGoBackToAndIsTrueWithoutTheLock) {
    stored(kFactory, with(records(), KEY_BRIGHTNESS, 60));
    probe.setCurScheme(static_cast<int>(kFactory));
    {
        const QVMutexManager guard(&probe.mutex(), "the test", 7);  // a second lock would end the process
        EXPECT_EQ("", outputOf([&] { EXPECT_TRUE(controller.resetToLastParameters()); }));
        applyNoScheme();
        EXPECT_EQ("", outputOf([&] { EXPECT_TRUE(controller.resetToLastParameters()); }));
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
    EXPECT_EQ("", root.errorLog());
    expectEnded();
}

TEST_F(Rollback, AControllerThatIsNotInitialisedHasNothingToGoBackTo) {
    ISensorController fresh;
    controller.uinit();
    EXPECT_TRUE(fresh.resetToLastParameters());
    EXPECT_TRUE(controller.resetToLastParameters());
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

// Only while the host takes the controller down under another call of its own.
TEST_F(Rollback, AControllerThatLosesItsSetsMeanwhileRefuses) {
    controller.uinit();
    probe.setCurScheme(0);
    root.debugLevel(6);
    EXPECT_EQ(messages::debug(in("resetToLastParameters"), "\n") + refused("resetToLastParameters"),
              anyLine(outputOf([&] { EXPECT_FALSE(controller.resetToLastParameters()); })));
    EXPECT_EQ(0u, probe.flags() & kRollback);
    EXPECT_FALSE(lockIsHeld());
    applyNoScheme();
}

// The other thread sleeps only once it waits for the lock; on a machine that never says so, it looks at the scheme
// later, and the result is the same.
TEST_F(Rollback, ASwitchToTheFactorySchemeWhileItWaitsForTheLockLeavesNothingToGoBackTo) {
    stored(0, with(records(), KEY_BRIGHTNESS, 60));
    stored(kFactory, with(records(), KEY_BRIGHTNESS, 61));
    std::atomic<pid_t> nThread{0};
    std::thread host;
    bool bResult = false;
    {
        const QVMutexManager guard(&probe.mutex(), "the test", 7);
        host = std::thread([&] {
            nThread = gettid();
            bResult = controller.resetToLastParameters();
        });
        const auto sleeps = [&] {
            std::ifstream file("/proc/self/task/" + std::to_string(nThread) + "/stat");
            std::string strWord;
            return 0 != nThread && file >> strWord >> strWord >> strWord && "S" == strWord;
        };
        for (int nSeen = 0, nLooks = 0; nSeen < 20 && nLooks < 20000; ++nLooks) {
            nSeen = sleeps() ? nSeen + 1 : 0;
            std::this_thread::yield();
        }
        probe.setCurScheme(static_cast<int>(kFactory));
    }
    host.join();
    EXPECT_TRUE(bResult);
    EXPECT_THAT(camera.transcript(), IsEmpty());
    EXPECT_EQ("", root.errorLog());
    expectEnded();
}

// --- What is said, and the lock ---

TEST_F(Rollback, ItBeginsWithAnEmptyLineAtLevelSix) {
    stored(0, records());
    root.debugLevel(6);
    EXPECT_THAT(anyLine(outputOf([&] { controller.resetToLastParameters(); })),
                StartsWith(messages::debug(in("resetToLastParameters"), "\n")));
    probe.setCurScheme(static_cast<int>(kFactory));
    EXPECT_EQ(messages::debug(in("resetToLastParameters"), "\n"),
              anyLine(outputOf([&] { controller.resetToLastParameters(); })));
    root.debugLevel(5);
    EXPECT_EQ("", outputOf([&] { controller.resetToLastParameters(); }));
}

TEST_F(Rollback, ItWaitsForTheLock) {
    stored(0, records());
    EXPECT_DEATH(
        {
            const QVMutexManager guard(&probe.mutex(), "the test", 7);
            controller.resetToLastParameters();
        },
        kLockedTwice);
}

}  // namespace
