// Exposure modes, shutter, gain, iris, metering, and the noise that comes with gain.
#include "tests/unit/picture/Measured.h"

namespace {

using simcam::PictureParameters;

constexpr int kShutterPriority = 1;
constexpr int kIrisPriority = 2;
constexpr int kManualExposure = 3;

PictureParameters manual() {
    PictureParameters st = quiet();
    st.exposureMode = kManualExposure;
    st.fixedShutter = 15;  // 1/200 s
    st.fixedGain = 0;
    return st;
}

TEST(PictureExposure, AutomaticExposureHoldsTheLevelFromNoonToDusk) {
    const double dNoon = Measured(quiet(60000000)).level();
    for (const int nMilliLux : {5000000, 1000000, 100000, 30000}) {
        EXPECT_NEAR(dNoon, Measured(quiet(nMilliLux)).level(), 25) << nMilliLux;
    }
}

TEST(PictureExposure, TheDarkIsDark) {
    const double dDusk = Measured(quiet(30000)).level(kUpperHouses);
    const double dMoon = Measured(quiet(200)).level(kUpperHouses);
    EXPECT_LT(dMoon, dDusk - 30);
    EXPECT_LT(Measured(quiet(0)).level(kSky), 25);
}

TEST(PictureExposure, ALongerFixedShutterIsBrighter) {
    PictureParameters st = manual();
    const double dLong = Measured(st).level(kRoad);
    st.fixedShutter = 18;  // 1/1000 s
    EXPECT_LT(Measured(st).level(kRoad), dLong - 40);
}

TEST(PictureExposure, MoreFixedGainIsBrighter) {
    PictureParameters st = manual();
    const double dNone = Measured(st).level(kRoad);
    st.fixedGain = 25;
    EXPECT_GT(Measured(st).level(kRoad), dNone + 40);
}

TEST(PictureExposure, ASmallerIrisIsDarker) {
    PictureParameters st = manual();
    const double dOpen = Measured(st).level(kRoad);
    st.irisPosition = 3200;
    EXPECT_LT(Measured(st).level(kRoad), dOpen - 30);
}

TEST(PictureExposure, ManualModeDoesNotFollowTheLight) {
    PictureParameters st = manual();
    const double dDay = Measured(st).level();
    st.milliLux /= 8;
    EXPECT_LT(Measured(st).level(), dDay - 40);
}

TEST(PictureExposure, TheModesFixWhatTheySay) {
    PictureParameters st = quiet();
    const double dAutomatic = Measured(st).level();
    // So short a shutter or so small an iris is made up for, as long as there is gain.
    st.exposureMode = kShutterPriority;
    st.fixedShutter = 19;  // 1/1500 s
    EXPECT_NEAR(dAutomatic, Measured(st).level(), 10);
    st.largestGain = 0;
    EXPECT_LT(Measured(st).level(), dAutomatic - 30);
    st.largestGain = 60;
    st.exposureMode = kIrisPriority;
    st.irisPosition = 256;
    EXPECT_NEAR(dAutomatic, Measured(st).level(), 10);
    st.largestGain = 0;
    EXPECT_LT(Measured(st).level(), dAutomatic - 30);
}

TEST(PictureExposure, TheLongestShutterLimitsTheLightOfTheDark) {
    PictureParameters st = quiet(3000);
    const double dLong = Measured(st).level(kUpperHouses);
    st.longestShutter = 16;  // 1/250 s
    EXPECT_LT(Measured(st).level(kUpperHouses), dLong - 25);
}

TEST(PictureExposure, TheLargestGainLimitsTheLightOfTheDark) {
    PictureParameters st = quiet(3000);
    const double dMuch = Measured(st).level(kUpperHouses);
    st.largestGain = 20;
    EXPECT_LT(Measured(st).level(kUpperHouses), dMuch - 25);
}

TEST(PictureExposure, TheLargestOpeningLimitsTheAutomaticIris) {
    PictureParameters st = quiet(3000);
    const double dHalf = Measured(st).level(kUpperHouses);
    st.largestIris = 5;
    EXPECT_LT(Measured(st).level(kUpperHouses), dHalf - 25);
    st.automaticIris = 0;  // it stands open, as command 82 says
    EXPECT_GT(Measured(st).level(kUpperHouses), dHalf + 10);
}

TEST(PictureExposure, GainBringsNoise) {
    PictureParameters st = raw(manual());
    const double dQuiet = noise(st, kWall);
    st.fixedGain = 60;
    st.milliLux /= 28;  // the same level
    EXPECT_NEAR(Measured(manual()).level(kWall), Measured(st).level(kWall), 12);
    EXPECT_GT(noise(st, kWall), 3 * dQuiet);
}

TEST(PictureExposure, TheMeteringAreaDecidesWhatIsWellExposed) {
    PictureParameters st = quiet();
    const double dWhole = Measured(st).level();
    st.meteringArea = 2;
    EXPECT_LT(Measured(st).level(), dWhole - 8);  // the sky is well exposed
    st.meteringArea = 3;
    EXPECT_GT(Measured(st).level(), dWhole + 8);  // the road is
    st.meteringArea = 1;
    const double dCentre = Measured(st).level();
    st.meteringArea = 4;
    EXPECT_GT(std::abs(Measured(st).level() - dCentre), 1.0);
}

TEST(PictureExposure, TheStrategySparesHighlightsOrShadows) {
    PictureParameters st = quiet();
    const double dBalanced = Measured(st).level();
    st.exposureStrategy = 1;
    EXPECT_LT(Measured(st).level(), dBalanced - 10);
    st.exposureStrategy = 2;
    EXPECT_GT(Measured(st).level(), dBalanced + 10);
}

TEST(PictureExposure, AMovingCarIsSmearedByALongShutter) {
    PictureParameters st = raw(manual());
    st.car = 1;
    st.milliseconds = 5000;
    st.fixedShutter = 18;
    st.whiteBalanceMode = 1;
    const Place stBehind = {154, 254, 159, 270};  // where the red car has been a moment ago
    EXPECT_LT(Measured(st, 320, 180).colourfulness(stBehind), 8);
    st.fixedShutter = 4;  // 1/12 s
    st.irisPosition = 256;
    EXPECT_GT(Measured(st, 320, 180).colourfulness(stBehind), 16);
}

}  // namespace
