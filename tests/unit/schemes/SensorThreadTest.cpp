// One cycle of the background thread after the other.
#include "tests/unit/schemes/SchemeCamera.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr u32 kDayNightState = 153;

class SensorThread : public SchemeCamera {
protected:
    SensorThread() {
        build(3);
        probe.setCurScheme(0);
        for (u32 i = 0; i < 3; ++i) {
            probe.setKeyValToCache(i, KEY_CONTRAST, 100 + i, true);
        }
        window(0, 6, 0, 8, 0);
        window(1, 12, 0, 13, 0);
        window(2, 13, 0, 14, 0);
        probe.setParamModeDirectly(1);
    }

    void cycle() { EXPECT_EQ(0, probe.sensorThread()); }
    void night(bool p_bNight) { camera.driverHolds(0, kDayNightState, p_bNight ? 1 : 0); }
    std::vector<std::string> sets() { return camera.linesLike("ia ch0 set"); }
};

TEST_F(SensorThread, WaitsOneSecondACycle) {
    const INT64 nStart = platform::Clock::monotonicMicroseconds();
    cycle();
    EXPECT_EQ(1000000, platform::Clock::monotonicMicroseconds() - nStart);
}

TEST_F(SensorThread, MeantDuringAResetItDoesNotPauseAndDoesNotSwitch) {
    probe.setSwitching(false, true);
    night(true);
    probe.setFlags(SensorControllerProbe::resetting_flag);
    const INT64 nStart = platform::Clock::monotonicMicroseconds();
    cycle();
    EXPECT_EQ(nStart, platform::Clock::monotonicMicroseconds());
    EXPECT_EQ(0, probe.curScheme());
    EXPECT_THAT(sets(), IsEmpty());
    probe.clearFlags(SensorControllerProbe::resetting_flag);
    cycle();
    EXPECT_EQ(1, probe.curScheme());
}

TEST_F(SensorThread, OnlyAResetTakesThePauseAway) {
    probe.setFlags(SensorControllerProbe::rollback_flag | SensorControllerProbe::switching_flag);
    const INT64 nStart = platform::Clock::monotonicMicroseconds();
    cycle();
    EXPECT_EQ(1000000, platform::Clock::monotonicMicroseconds() - nStart);
}

TEST_F(SensorThread, InManualModeNeverSwitches) {
    probe.setParamModeDirectly(0);
    night(true);
    clockShows(12, 30);
    for (const bool bDayNight : {false, true}) {
        for (const bool bPlates : {false, true}) {
            probe.setSwitching(!bDayNight, bDayNight);
            probe.setLPRDevice(bPlates);
            cycle();
        }
    }
    EXPECT_THAT(camera.transcript(), IsEmpty());
    EXPECT_EQ(0, probe.curScheme());
    EXPECT_EQ(255u, probe.lastSchedule());
}

TEST_F(SensorThread, AnyOtherModeIsAutomatic) {
    probe.setSwitching(false, true);
    probe.setParamModeDirectly(2);
    night(true);
    cycle();
    EXPECT_EQ(1, probe.curScheme());
}

TEST_F(SensorThread, WithoutASourceSwitchesNothingAndAsksNobody) {
    clockShows(12, 30);
    night(true);
    cycle();
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(SensorThread, FollowsDayAndNight) {
    probe.setSwitching(false, true);
    night(true);
    cycle();
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 153 -> 1", "ia ch0 set 2353 = 101"));
    EXPECT_EQ(1, probe.curScheme());
    camera.clear();
    cycle();
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 153 -> 1")) << "one query a cycle, no switch";
    camera.clear();
    night(false);
    cycle();
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 153 -> 0", "ia ch0 set 2353 = 100"));
    EXPECT_EQ(0, probe.curScheme());
}

TEST_F(SensorThread, AnyStateButZeroIsNight) {
    probe.setSwitching(false, true);
    camera.driverHolds(0, kDayNightState, -7);
    cycle();
    EXPECT_EQ(1, probe.curScheme());
}

TEST_F(SensorThread, ADriverThatDoesNotAnswerCountsAsDay) {
    probe.setSwitching(false, true);
    probe.setCurScheme(1);
    camera.driverFails(kDayNightState, IA_CMD_OPT_GET, -1);
    cycle();
    EXPECT_EQ(0, probe.curScheme());
}

TEST_F(SensorThread, MeantTheResultOfTheQueryIsNotLookedAt) {
    probe.setSwitching(false, true);
    camera.onDriver(kDayNightState, IA_CMD_OPT_GET, [](int, void* data) {
        *static_cast<int*>(data) = 1;
        return -3;
    });
    cycle();
    EXPECT_EQ(1, probe.curScheme());
}

TEST_F(SensorThread, DayAndNightComeBeforeTheSchedule) {
    probe.setSwitching(true, true);
    clockShows(13, 30);
    night(true);
    cycle();
    EXPECT_EQ(1, probe.curScheme());
}

TEST_F(SensorThread, DoesNotSwitchWhileSomebodyElseIsBusy) {
    night(true);
    clockShows(12, 30);
    for (const u32 nBit : {SensorControllerProbe::resetting_flag, SensorControllerProbe::rollback_flag,
                           SensorControllerProbe::switching_flag}) {
        probe.setFlags(nBit);
        probe.setLPRDevice(false);
        probe.setSwitching(false, true);
        cycle();
        probe.setSwitching(true, false);
        cycle();
        probe.setLPRDevice(true);
        cycle();
        clockShows(9, 0);
        cycle();
        clockShows(12, 30);
        probe.clearFlags(nBit);
    }
    EXPECT_THAT(sets(), IsEmpty());
    EXPECT_EQ(0, probe.curScheme());
    EXPECT_EQ(255u, probe.lastSchedule()) << "a cycle that may not switch leaves it untouched";
}

TEST_F(SensorThread, SaysWhenItSwitchesByItself) {
    probe.setSwitching(false, true);
    night(true);
    root.debugLevel(6);
    const std::string strOut = outputOf([&] { cycle(); });
    EXPECT_THAT(messages::anyLine(strOut),
                HasSubstr(messages::debug({"ISensorController.cpp", "sensorThread"}, "SCHEME: auto switch_to(1)\n")));
}

TEST_F(SensorThread, FollowsTheScheduleByDifference) {
    probe.setSwitching(true, false);
    clockShows(12, 0);
    cycle();
    EXPECT_THAT(sets(), ElementsAre("ia ch0 set 2353 = 101"));
    EXPECT_EQ(1, probe.curScheme());
    camera.clear();
    clockShows(13, 0);
    cycle();
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 2353 = 102")) << "no driver query";
    EXPECT_EQ(2, probe.curScheme());
}

TEST_F(SensorThread, OutsideEveryWindowSchemeZeroIsAppliedAndStays) {
    probe.setSwitching(true, false);
    probe.setCurScheme(2);
    clockShows(20, 0);
    cycle();
    EXPECT_EQ(0, probe.curScheme());
    camera.clear();
    cycle();
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(SensorThread, AnOrdinaryDeviceLeavesTheLastScheduleAlone) {
    probe.setSwitching(true, false);
    clockShows(12, 0);
    cycle();
    EXPECT_EQ(255u, probe.lastSchedule());
}

class PlateThread : public SensorThread {
protected:
    PlateThread() {
        probe.setSwitching(true, false);
        for (u32 i = 0; i < 3; ++i) {
            probe.setKeyValToCache(i, KEY_SCHEME_MODE, 1, true);  // an application of scheme 0 takes its mode
        }
        probe.setLPRDevice(true);
    }
};

TEST_F(PlateThread, FirstCycleOutsideTheWindowsAppliesEvenTheCurrentScheme) {
    clockShows(20, 0);
    cycle();
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 153 -> 0", "ia ch0 set 34 = 50", "ia ch0 set 144 = 0",
                                                 "ia ch0 set 2353 = 100"));
    EXPECT_EQ(0u, probe.lastSchedule());
    camera.clear();
    cycle();
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 153 -> 0"));
}

TEST_F(PlateThread, OutsideTheWindowsItFollowsDayAndNight) {
    clockShows(20, 0);
    cycle();
    night(true);
    camera.clear();
    cycle();
    EXPECT_THAT(sets(), ElementsAre("ia ch0 set 34 = 50", "ia ch0 set 144 = 0", "ia ch0 set 2353 = 101"));
    EXPECT_EQ(1, probe.curScheme());
}

TEST_F(PlateThread, EnteringAWindowSendsEveryKeyAndTheNextWindowOnlyWhatDiffers) {
    clockShows(9, 0);
    cycle();
    camera.clear();
    clockShows(12, 0);
    cycle();
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 34 = 50", "ia ch0 set 144 = 1", "ia ch0 set 2353 = 101"));
    EXPECT_EQ(1u, probe.lastSchedule());
    EXPECT_EQ(1, probe.curScheme());
    camera.clear();
    cycle();
    EXPECT_THAT(camera.transcript(), IsEmpty());
    clockShows(13, 0);
    cycle();
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 set 2353 = 102"));
    EXPECT_EQ(2, probe.curScheme());
    camera.clear();
    clockShows(14, 0);
    cycle();
    EXPECT_THAT(camera.transcript(), ElementsAre("ia ch0 get 153 -> 0", "ia ch0 set 34 = 50", "ia ch0 set 144 = 0",
                                                 "ia ch0 set 2353 = 100"));
    EXPECT_EQ(0u, probe.lastSchedule());
}

TEST_F(PlateThread, EnteringAWindowOfTheCurrentSchemeStillSendsEveryKey) {
    clockShows(6, 0);
    cycle();
    EXPECT_THAT(sets(), SizeIs(3));
    EXPECT_EQ(0, probe.curScheme());
    EXPECT_EQ(1u, probe.lastSchedule());
}

TEST_F(PlateThread, SaysWhenAWindowSelectsAndNotWhenDayAndNightDo) {
    root.debugLevel(6);
    clockShows(20, 0);
    EXPECT_THAT(outputOf([&] { cycle(); }), testing::Not(HasSubstr("SCHEME:")));
    clockShows(12, 0);
    EXPECT_THAT(messages::anyLine(outputOf([&] { cycle(); })),
                HasSubstr(messages::debug({"ISensorController.cpp", "sensorThread"}, "SCHEME: auto switch_to(1)\n")));
}

// The thread itself, on the held clock.
class RunningThread : public SensorThread {};

TEST_F(RunningThread, RunsOneCycleASecondUntilItIsStopped) {
    probe.setSwitching(false, true);
    ASSERT_TRUE(probe.thread().start());
    platform::Clock::settle();
    EXPECT_THAT(camera.transcript(), IsEmpty());
    platform::Clock::advance(5000000);
    EXPECT_THAT(camera.linesLike("ia ch0 get 153"), SizeIs(5));
    night(true);
    platform::Clock::advance(1000000);
    EXPECT_EQ(1, probe.curScheme());
    EXPECT_TRUE(probe.thread().stop());
    camera.clear();
    platform::Clock::advance(5000000);
    EXPECT_THAT(camera.transcript(), IsEmpty());
}

TEST_F(RunningThread, TakesNoLock) {
    probe.setSwitching(false, true);
    night(true);
    ASSERT_TRUE(probe.thread().start());
    probe.mutex().lock("test", 1);
    platform::Clock::advance(1000000);
    EXPECT_EQ(1, probe.curScheme()) << "it switches while somebody holds the mutex";
    probe.mutex().unlock("test", 2);
    EXPECT_TRUE(probe.thread().stop());
}

TEST_F(RunningThread, DestructionOfTheControllerStopsIt) {
    auto pOther = std::make_unique<ISensorController>();
    SensorControllerProbe otherProbe(*pOther);
    ASSERT_TRUE(otherProbe.thread().start());
    pOther.reset();
    platform::Clock::advance(1000000);  // would wait for ever for a thread that is gone but still registered
}

}  // namespace
