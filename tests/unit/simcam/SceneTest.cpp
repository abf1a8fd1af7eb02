#include "SimulatedCamera.h"

#include <cmath>
#include <limits>

namespace {

class Scene : public SimulatedCamera {};

}  // namespace

TEST_F(Scene, LightLevelIsLogarithmic) {
    EXPECT_DOUBLE_EQ(0.0, simcam::lightLevel(0.0));
    EXPECT_DOUBLE_EQ(0.0, simcam::lightLevel(-5.0));
    EXPECT_DOUBLE_EQ(20.0, simcam::lightLevel(9.0));
    EXPECT_DOUBLE_EQ(40.0, simcam::lightLevel(99.0));
    EXPECT_DOUBLE_EQ(100.0, simcam::lightLevel(1e9));
    EXPECT_DOUBLE_EQ(0.0, simcam::lightLevel(std::numeric_limits<double>::quiet_NaN()));
}

TEST_F(Scene, HoldsAFixedLight) {
    EXPECT_TRUE(camera.scene().setLight(12.5));
    passSeconds(12 * 3600);
    EXPECT_DOUBLE_EQ(12.5, camera.scene().light());
}

TEST_F(Scene, FollowsTheDay) {
    ASSERT_TRUE(camera.scene().followDay({}));
    EXPECT_NEAR(20000.0, camera.scene().light(), 0.01);  // 12:00
    passSeconds(8 * 3600);                               // sunset, half of the logarithms
    EXPECT_NEAR(std::sqrt(20001.0 * 1.1) - 1.0, camera.scene().light(), 0.01);
    passSeconds(4 * 3600);
    EXPECT_NEAR(0.1, camera.scene().light(), 0.0001);
    EXPECT_TRUE(camera.scene().setLight(5.0));
    EXPECT_DOUBLE_EQ(5.0, camera.scene().light()) << "a fixed light ends the day";
}

TEST_F(Scene, HasAClockOfItsOwn) {
    ASSERT_TRUE(camera.scene().followDay({}));
    EXPECT_EQ(12 * 3600, camera.scene().secondOfDay());
    EXPECT_TRUE(camera.scene().setClockShift(-12 * 3600));
    EXPECT_EQ(0, camera.scene().secondOfDay());
    EXPECT_NEAR(0.1, camera.scene().light(), 0.0001);
    EXPECT_TRUE(camera.scene().setClockShift(13 * 3600));
    EXPECT_EQ(3600, camera.scene().secondOfDay()) << "past midnight";
}

TEST_F(Scene, RefusesWhatCannotBe) {
    const double dNan = std::numeric_limits<double>::quiet_NaN();
    const double dInfinity = std::numeric_limits<double>::infinity();
    for (const double dBad : {-0.1, 200001.0, dNan, dInfinity}) {
        EXPECT_FALSE(camera.scene().setLight(dBad)) << dBad;
    }
    for (const double dBad : {0.0, -1.0, 100001.0, dNan, dInfinity}) {
        EXPECT_FALSE(camera.scene().setSubjectDistance(dBad)) << dBad;
    }
    for (const double dBad : {-61.0, 86.0, dNan, dInfinity}) {
        EXPECT_FALSE(camera.scene().setAmbientTemperature(dBad)) << dBad;
    }
    EXPECT_FALSE(camera.scene().setClockShift(86401));
    EXPECT_FALSE(camera.scene().setClockShift(-86401));
    simcam::DayCurve stCurve;
    stCurve.sunsetMinute = stCurve.sunriseMinute;
    EXPECT_FALSE(camera.scene().followDay(stCurve));
    stCurve = {};
    stCurve.sunsetMinute = 1440;
    EXPECT_FALSE(camera.scene().followDay(stCurve));
    stCurve = {};
    stCurve.sunriseMinute = -1;
    EXPECT_FALSE(camera.scene().followDay(stCurve));
    stCurve = {};
    stCurve.twilightMinutes = 0;
    EXPECT_FALSE(camera.scene().followDay(stCurve));
    stCurve = {};
    stCurve.nightLux = stCurve.dayLux + 1.0;
    EXPECT_FALSE(camera.scene().followDay(stCurve));
    const simcam::SceneState stState = camera.scene().state();
    EXPECT_EQ(simcam::SceneState::Light::Fixed, stState.light);
    EXPECT_DOUBLE_EQ(1000.0, stState.lux);
    EXPECT_DOUBLE_EQ(5.0, stState.subjectMetres);
    EXPECT_DOUBLE_EQ(20.0, stState.ambientCelsius);
    EXPECT_EQ(0, stState.clockShiftSeconds);
}

TEST_F(Scene, IsNotChangedByAPowerCycle) {
    camera.scene().setLight(3.0);
    camera.powerCycle();
    EXPECT_DOUBLE_EQ(3.0, camera.scene().light());
}
