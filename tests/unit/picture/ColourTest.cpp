// White balance, day and night.
#include "tests/unit/picture/Measured.h"

namespace {

using simcam::PictureParameters;

constexpr int kManualWhiteBalance = 6;
constexpr int kLocked = 5;

// Red against blue, on something grey.
double warmth(const PictureParameters& p_st) {
    const Measured obj(p_st);
    return obj.colour(0, kWall) - obj.colour(2, kWall);
}

PictureParameters balanced(int p_nMode) {
    PictureParameters st = quiet();
    st.whiteBalanceMode = p_nMode;
    return st;
}

TEST(PictureColour, TheChartHasItsColours) {
    const Measured obj(quiet(), 320, 180);
    EXPECT_GT(obj.colour(0, kRedPatch), obj.colour(1, kRedPatch) + 60);
    EXPECT_GT(obj.colour(0, kRedPatch), obj.colour(2, kRedPatch) + 60);
    EXPECT_GT(obj.colour(1, kGreenPatch), obj.colour(0, kGreenPatch) + 40);
    EXPECT_GT(obj.colour(1, kGreenPatch), obj.colour(2, kGreenPatch) + 40);
}

TEST(PictureColour, TheSkyIsBlueAndTheLeavesAreGreen) {
    PictureParameters st = balanced(1);
    st.exposureStrategy = 1;
    const Measured obj(st);
    EXPECT_GT(obj.colour(2, kSky), obj.colour(0, kSky) + 8);
    EXPECT_GT(obj.colour(1, kLeaves), obj.colour(0, kLeaves) + 5);
}

TEST(PictureColour, ManualGainsMoveRedAndBlue) {
    PictureParameters st = balanced(kManualWhiteBalance);
    const Measured objEven(st);
    st.redGain = 200;
    EXPECT_GT(Measured(st).colour(0, kWall), objEven.colour(0, kWall) + 15);
    st.redGain = 128;
    st.blueGain = 60;
    EXPECT_LT(Measured(st).colour(2, kWall), objEven.colour(2, kWall) - 15);
}

TEST(PictureColour, ModesForWarmLampsMakeDaylightBlue) {
    const double dOutdoors = warmth(balanced(1));
    const double dIndoors = warmth(balanced(2));
    const double dSodium = warmth(balanced(3));
    const double dFluorescent = warmth(balanced(4));
    EXPECT_NEAR(0.0, dOutdoors, 6.0);
    EXPECT_LT(dFluorescent, dOutdoors - 8);
    EXPECT_LT(dIndoors, dFluorescent - 8);
    EXPECT_LT(dSodium, dIndoors - 8);
}

TEST(PictureColour, AutomaticWhiteBalanceTakesTheRedOfTheEveningAway) {
    PictureParameters st = balanced(1);
    st.milliLux = 30000;
    const double dOutdoors = warmth(st);
    EXPECT_GT(dOutdoors, 20);
    st.whiteBalanceMode = 0;
    EXPECT_LT(std::abs(warmth(st)), 0.6 * dOutdoors);
}

TEST(PictureColour, LockedWhiteBalanceKeepsWhatTheAutomaticFound) {
    simcam::PictureRenderer objRenderer(Measured::kWidth, Measured::kHeight);
    simcam::Picture stPicture;
    PictureParameters st = balanced(0);
    st.milliLux = 30000;
    objRenderer.render(st, stPicture);
    const unsigned nFound = checksum(stPicture);
    st.whiteBalanceMode = kLocked;
    objRenderer.render(st, stPicture);
    EXPECT_EQ(nFound, checksum(stPicture));
    // A renderer that has found nothing yet has the gains of daylight.
    PictureParameters stDaylight = st;
    stDaylight.whiteBalanceMode = 1;
    EXPECT_TRUE(Measured(st) == Measured(stDaylight));
}

TEST(PictureColour, NightIsGrey) {
    EXPECT_GT(Measured(quiet()).colourfulness(), 20);
    EXPECT_EQ(0.0, Measured(night()).colourfulness());
    PictureParameters st = quiet();
    st.night = 1;
    EXPECT_EQ(0.0, Measured(st).colourfulness());
}

TEST(PictureColour, WithWhiteLightTheNightHasColour) {
    PictureParameters st = night();
    st.lightType = 1;
    st.whiteLight = 1;
    st.whiteLightMode = 2;
    st.whiteLightMedium = 100;
    EXPECT_GT(Measured(st).colourfulness(kPatches), 25);
}

TEST(PictureColour, WithoutTheFilterLeavesAreBright) {
    PictureParameters st = quiet();
    const Measured objDay(st);
    st.night = 1;
    const Measured objNight(st);
    EXPECT_LT(objDay.level(kLeaves), objDay.level(kWall) - 15);
    EXPECT_GT(objNight.level(kLeaves) - objNight.level(kWall), objDay.level(kLeaves) - objDay.level(kWall) + 20);
}

}  // namespace
