#include "SimulatedCamera.h"

namespace {

constexpr int kDay = 0;
constexpr int kNight = 1;
constexpr double kDark = 0.1;       // lux: level 1
constexpr double kDusk = 30.0;      // lux: level 30, between the thresholds
constexpr double kBright = 1000.0;  // lux: level 60

class DayNight : public SimulatedCamera {
protected:
    int state() { return get(153); }

    void clockAt(int p_nHour, int p_nMinute, int p_nSecond = 0) {
        platform::CivilTime stTime = platform::Clock::civilTime();
        stTime.hour = p_nHour;
        stTime.minute = p_nMinute;
        stTime.second = p_nSecond;
        platform::Clock::hold(stTime);
    }

    // Bright at the start, dark for ten minutes now.
    void makeItNight() {
        camera.scene().setLight(kDark);
        passSeconds(600);
        ASSERT_EQ(kNight, state());
    }
};

}  // namespace

TEST_F(DayNight, IsDayAfterPowerUp) {
    EXPECT_EQ(kDay, state());
}

TEST_F(DayNight, TurnsToNightOnceItHasBeenDarkForTheDelay) {
    camera.scene().setLight(kDark);
    passSeconds(4.999999);
    EXPECT_EQ(kDay, state());
    passSeconds(0.000001);
    EXPECT_EQ(kNight, state());
}

TEST_F(DayNight, DelayRunsFromTheChangeOfTheLightNotFromTheNextQuestion) {
    camera.scene().setLight(kDark);
    passSeconds(3600);
    EXPECT_EQ(kNight, state());
}

TEST_F(DayNight, ADarkTimeThatNobodyAskedInCounts) {
    camera.scene().setLight(kDark);
    passSeconds(10);
    camera.scene().setLight(kBright);
    EXPECT_EQ(kNight, state());
    passSeconds(5);
    EXPECT_EQ(kDay, state());
    camera.scene().setLight(kDark);
    passSeconds(10);
    ASSERT_EQ(IA_OK, setThresholds(145, 0, 100));
    EXPECT_EQ(kNight, state()) << "under the thresholds of that time";
}

TEST_F(DayNight, DelayBeginsAnewWithTheAutomaticMode) {
    camera.scene().setLight(kDark);
    passSeconds(4);
    for (const int nMode : {1, 0}) {
        ASSERT_EQ(IA_OK, set(144, nMode));
    }
    passSeconds(4);
    EXPECT_EQ(kDay, state());
    ASSERT_EQ(IA_OK, set(153, 0));
    ASSERT_EQ(IA_OK, set(144, 0));
    passSeconds(4);
    EXPECT_EQ(kDay, state()) << "and after a forced state";
    passSeconds(1);
    EXPECT_EQ(kNight, state());
}

TEST_F(DayNight, ALightThatComesBackWithinTheDelayChangesNothing) {
    camera.scene().setLight(kDark);
    passSeconds(4);
    camera.scene().setLight(kBright);
    passSeconds(1);
    camera.scene().setLight(kDark);
    passSeconds(4);
    EXPECT_EQ(kDay, state());
    passSeconds(1);
    EXPECT_EQ(kNight, state());
}

TEST_F(DayNight, StaysAsItIsBetweenTheThresholds) {
    camera.scene().setLight(kDusk);
    passSeconds(600);
    EXPECT_EQ(kDay, state());
    makeItNight();
    camera.scene().setLight(kDusk);
    passSeconds(600);
    EXPECT_EQ(kNight, state());
    camera.scene().setLight(kBright);
    passSeconds(5);
    EXPECT_EQ(kDay, state());
}

TEST_F(DayNight, FollowsTheThresholdsThatWereSent) {
    camera.scene().setLight(kDusk);  // level 30
    ASSERT_EQ(IA_OK, setThresholds(145, 30, 50));
    passSeconds(10);
    EXPECT_EQ(kNight, state());
    ASSERT_EQ(IA_OK, setThresholds(146, 10, 29));
    passSeconds(10);
    EXPECT_EQ(kDay, state());
    EXPECT_EQ(10, get(145));
    EXPECT_EQ(29, get(146));
}

TEST_F(DayNight, ThresholdsThatCrossDoNotMakeItFlutter) {
    ASSERT_EQ(IA_OK, setThresholds(145, 60, 10));
    camera.scene().setLight(kDusk);
    passSeconds(10);
    EXPECT_EQ(kNight, state());
    passSeconds(5.5);
    EXPECT_EQ(kNight, state());
    passSeconds(100);
    EXPECT_EQ(kNight, state());
}

TEST_F(DayNight, RefusesThresholdsTimesAndSensitivityOutOfRange) {
    EXPECT_EQ(IA_ERR_INVALID_VALUE, setThresholds(145, 101, 40));
    EXPECT_EQ(IA_ERR_INVALID_VALUE, setThresholds(146, 20, 101));
    EXPECT_EQ(IA_ERR_INVALID_VALUE, setThresholds(145, 0xFFFFFFFFu, 40));
    EXPECT_EQ(IA_ERR_INVALID_VALUE, setSensitivity(0));
    EXPECT_EQ(IA_ERR_INVALID_VALUE, setSensitivity(8));
    EXPECT_EQ(IA_ERR_INVALID_VALUE, setTimes(24, 0, 6, 0));
    EXPECT_EQ(IA_ERR_INVALID_VALUE, setTimes(18, 60, 6, 0));
    EXPECT_EQ(IA_ERR_INVALID_VALUE, setTimes(18, 0, 24, 0));
    EXPECT_EQ(IA_ERR_INVALID_VALUE, setTimes(18, 0, 6, 60));
    EXPECT_EQ(20, get(145));
    EXPECT_EQ(40, get(146));
    EXPECT_EQ(4, get(154));
    EXPECT_EQ(18, get(149));
}

TEST_F(DayNight, ThresholdsAndSensitivityTravelApart) {
    ASSERT_EQ(IA_OK, setSensitivity(7));
    ASSERT_EQ(IA_OK, setThresholds(145, 15, 35));
    EXPECT_EQ(7, get(154));
    ASSERT_EQ(IA_OK, setSensitivity(2));
    EXPECT_EQ(15, get(145));
    EXPECT_EQ(35, get(146));
}

TEST_F(DayNight, SensitivityBringsTheThresholdsTogether) {
    camera.scene().setLight(13.0);  // level 22.9
    passSeconds(10);
    EXPECT_EQ(kDay, state());
    ASSERT_EQ(IA_OK, setSensitivity(7));  // night below 26, day above 34
    passSeconds(10);
    EXPECT_EQ(kNight, state());
    camera.scene().setLight(60.0);  // level 35.7
    passSeconds(10);
    EXPECT_EQ(kDay, state());
    ASSERT_EQ(IA_OK, setSensitivity(1));  // night below 14, day above 46
    camera.scene().setLight(6.0);         // level 16.9
    passSeconds(10);
    EXPECT_EQ(kDay, state());
}

TEST_F(DayNight, WithoutADelayItTurnsAtOnce) {
    ASSERT_EQ(IA_OK, set(147, 0));
    camera.scene().setLight(kDark);
    EXPECT_EQ(kNight, state());
}

TEST_F(DayNight, ModesDayAndNightHoldTheState) {
    ASSERT_EQ(IA_OK, set(144, 2));
    EXPECT_EQ(kNight, state());
    ASSERT_EQ(IA_OK, set(144, 1));
    camera.scene().setLight(kDark);
    passSeconds(600);
    EXPECT_EQ(kDay, state());
    ASSERT_EQ(IA_OK, set(144, 0));
    passSeconds(4);
    EXPECT_EQ(kDay, state()) << "the delay begins with the automatic mode";
    passSeconds(1);
    EXPECT_EQ(kNight, state());
}

TEST_F(DayNight, TimedModeIsNightFromTheFirstTimeToTheSecond) {
    ASSERT_EQ(IA_OK, setTimes(13, 30, 15, 45));
    ASSERT_EQ(IA_OK, set(144, 3));
    EXPECT_EQ(kDay, state());
    clockAt(13, 29, 59);
    EXPECT_EQ(kDay, state());
    passSeconds(1);
    EXPECT_EQ(kNight, state());
    clockAt(15, 44, 59);
    EXPECT_EQ(kNight, state());
    passSeconds(1);
    EXPECT_EQ(kDay, state());
}

TEST_F(DayNight, TimedModeGoesAcrossMidnight) {
    ASSERT_EQ(IA_OK, set(144, 3));  // 18:00 to 06:00
    clockAt(18, 0);
    EXPECT_EQ(kNight, state());
    clockAt(0, 0);
    EXPECT_EQ(kNight, state());
    clockAt(5, 59, 59);
    EXPECT_EQ(kNight, state());
    clockAt(6, 0);
    EXPECT_EQ(kDay, state());
}

TEST_F(DayNight, TimedModeWithEqualTimesIsDay) {
    ASSERT_EQ(IA_OK, setTimes(12, 0, 12, 0));
    ASSERT_EQ(IA_OK, set(144, 3));
    EXPECT_EQ(kDay, state());
}

TEST_F(DayNight, ASetForcesTheStateUntilTheModeIsSet) {
    ASSERT_EQ(IA_OK, set(153, 1));
    passSeconds(600);
    EXPECT_EQ(kNight, state()) << "in bright light";
    ASSERT_EQ(IA_OK, set(144, 0));
    EXPECT_EQ(kNight, state());
    passSeconds(5);
    EXPECT_EQ(kDay, state());
    ASSERT_EQ(IA_OK, set(144, 2));
    ASSERT_EQ(IA_OK, set(153, 0));
    EXPECT_EQ(kDay, state()) << "also against the mode";
    EXPECT_EQ(IA_ERR_INVALID_VALUE, set(153, 2));
}

TEST_F(DayNight, EachChannelSwitchesForItself) {
    set(144, 2, 1);
    EXPECT_EQ(kDay, get(153, 0));
    EXPECT_EQ(kNight, get(153, 1));
}

TEST_F(DayNight, FollowsTheDaylightOfAWholeDayInOneStep) {
    ASSERT_TRUE(camera.scene().followDay({}));
    EXPECT_EQ(kDay, state());
    passSeconds(9 * 3600);  // 21:00
    EXPECT_EQ(kNight, state());
    passSeconds(9 * 3600);  // 06:00 the next day: half of the twilight is over
    EXPECT_EQ(kDay, state());
}

TEST_F(DayNight, SwitchesInTheTwilightAndNotBefore) {
    ASSERT_TRUE(camera.scene().followDay({}));
    passSeconds(7.5 * 3600);  // 19:30, twilight begins
    EXPECT_EQ(kDay, state());
    // Level 20 lies at 77 % of the way from 86 down to about 0; 20:00 is half of it.
    passSeconds(30 * 60);
    EXPECT_EQ(kDay, state());
    passSeconds(15 * 60);
    EXPECT_EQ(kDay, state());
    passSeconds(3 * 60);
    EXPECT_EQ(kNight, state());
}

TEST_F(DayNight, OneLongStepAndManyShortOnesAgree) {
    ASSERT_TRUE(camera.scene().followDay({}));
    simcam::Camera objOther;  // reached by get from here on; both see the same clock
    ASSERT_TRUE(objOther.scene().followDay({}));
    for (int nMinute = 0; nMinute < 20 * 60; ++nMinute) {
        passSeconds(60);
        state();
    }
    int nSeen = -1;
    ASSERT_TRUE(camera.driver().value(0, 153, nSeen));
    EXPECT_EQ(state(), nSeen);
}

TEST_F(DayNight, FocusesAgainWhenTheFilterChanges) {
    holdTheLens();
    set(1552, 6000);
    passSeconds(10);
    set(1536, 2);
    makeItNight();
    passSeconds(10);
    EXPECT_EQ(6000, lens().focus) << "not unless it is told to";
    set(2560, 1);
    camera.scene().setLight(kBright);
    passSeconds(5);
    EXPECT_EQ(kDay, state());
    passSeconds(10);
    EXPECT_EQ(lens().sharpAt, lens().focus);
}
