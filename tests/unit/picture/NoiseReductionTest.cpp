// 2D noise reduction smooths within a picture, 3D noise reduction over time.
#include "tests/unit/picture/Measured.h"

namespace {

using simcam::PictureParameters;

constexpr int kManualStrength = 1;
constexpr INT64 kNextFrame = 40;  // milliseconds

// Dark enough for much gain.
PictureParameters noisy() {
    PictureParameters st = raw(quiet(5000));
    st.noise2dMode = kManualStrength;
    st.noise3dMode = kManualStrength;
    return st;
}

TEST(PictureNoiseReduction, NoiseChangesFromFrameToFrame) {
    EXPECT_GT(noise(noisy(), kWall, kNextFrame), 2.5);
    EXPECT_EQ(0.0, noise(noisy(), kWall, 0));
}

TEST(PictureNoiseReduction, AnotherSeedIsOtherNoise) {
    PictureParameters st = noisy();
    const Measured objOne(st);
    st.seed = 2;
    EXPECT_GT(Measured(st).differenceFrom(objOne, kWall), 2.5);
}

TEST(PictureNoiseReduction, TwoDimensionalReductionSmoothsAndCostsDetail) {
    PictureParameters st = noisy();
    const double dNoise = noise(st, kWall);
    const double dDetail = Measured(st).detail(kLeaves);
    st.noise2d = 1;
    st.noise2dStrength = 30;
    const double dSome = noise(st, kWall);
    EXPECT_LT(dSome, 0.8 * dNoise);
    st.noise2dStrength = 100;
    EXPECT_LT(noise(st, kWall), 0.7 * dSome);
    EXPECT_LT(Measured(st).detail(kLeaves), 0.7 * dDetail);
}

TEST(PictureNoiseReduction, ThreeDimensionalReductionSmoothsOverTimeAndKeepsDetail) {
    PictureParameters st = noisy();
    const double dNoise = noise(st, kWall);
    st.noise3d = 1;
    st.noise3dStrength = 50;
    const double dSome = noise(st, kWall);
    EXPECT_LT(dSome, 0.65 * dNoise);
    st.noise3dStrength = 100;
    EXPECT_LT(noise(st, kWall), 0.85 * dSome);
}

TEST(PictureNoiseReduction, ThreeDimensionalReductionMakesNeighbouringFramesAlike) {
    PictureParameters st = noisy();
    st.noise3d = 1;
    st.noise3dStrength = 100;
    EXPECT_LT(noise(st, kWall, kNextFrame), 0.7 * noise(st, kWall));
}

TEST(PictureNoiseReduction, ThreeDimensionalReductionDrawsAMovingCarOut) {
    PictureParameters st = noisy();
    st.car = 1;
    st.milliseconds = 5000;
    const Place stBehind = {132, 252, 152, 272};  // where the car has just been
    PictureParameters stEmpty = st;
    stEmpty.car = 0;
    const double dEmpty = Measured(stEmpty).colourfulness(stBehind);
    EXPECT_NEAR(dEmpty, Measured(st).colourfulness(stBehind), 6.0);
    st.noise3d = 1;
    st.noise3dStrength = 100;
    stEmpty = st;
    stEmpty.car = 0;
    EXPECT_GT(Measured(st).differenceFrom(Measured(stEmpty), stBehind), 4.0);
}

TEST(PictureNoiseReduction, TwoDimensionalReductionSmoothsTheColoursToo) {
    PictureParameters st = noisy();
    const double dColoured = Measured(st).colourfulness(kWall);
    st.noise2d = 1;
    st.noise2dStrength = 100;
    EXPECT_LT(Measured(st).colourfulness(kWall), 0.7 * dColoured);
}

TEST(PictureNoiseReduction, TheAutomaticModeDoesMoreInTheDark) {
    PictureParameters st = noisy();
    st.noise2dMode = 0;
    st.noise3dMode = 0;
    st.noise2dMost = 100;
    st.noise3dMost = 100;
    const auto left = [](PictureParameters p_st) {
        const double dRaw = noise(p_st, kWall);
        p_st.noise2d = 1;
        p_st.noise3d = 1;
        return noise(p_st, kWall) / dRaw;
    };
    const double dDark = left(st);
    st.milliLux = 1000000;
    EXPECT_NEAR(1.0, left(st), 0.1);
    EXPECT_LT(dDark, 0.4);
}

TEST(PictureNoiseReduction, TheAutomaticModesStayBelowTheirMost) {
    PictureParameters st = noisy();
    st.noise2d = 1;
    st.noise2dMode = 0;
    st.noise2dMost = 100;
    const double dTwoMost = noise(st, kWall);
    st.noise2dMost = 10;
    EXPECT_GT(noise(st, kWall), 1.3 * dTwoMost);
    st.noise2d = 0;
    st.noise3d = 1;
    st.noise3dMode = 0;
    st.noise3dMost = 100;
    const double dThreeMost = noise(st, kWall);
    st.noise3dMost = 10;
    EXPECT_GT(noise(st, kWall), 1.3 * dThreeMost);
}

}  // namespace
