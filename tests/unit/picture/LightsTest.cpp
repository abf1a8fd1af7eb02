// Infrared and white light at night, with their fall-off.
#include "tests/unit/picture/Measured.h"

namespace {

using simcam::PictureParameters;

constexpr int kManualLight = 2;
constexpr Place kNearRoad = {250, 300, 390, 358};
constexpr Place kCorner = {0, 300, 60, 358};

// A fixed exposure, so that light is seen as light.
PictureParameters dark() {
    PictureParameters st = night();
    st.exposureMode = 3;
    st.fixedShutter = 7;
    st.fixedGain = 40;
    st.infraredMode = kManualLight;
    st.infraredNear = 0;
    st.infraredMedium = 0;
    st.infraredFar = 0;
    return st;
}

double lit(const PictureParameters& p_st, const Place& p_stPlace) {
    return Measured(p_st).level(p_stPlace) - Measured(dark()).level(p_stPlace);
}

TEST(PictureLights, InfraredLightShowsTheStreetAtNight) {
    PictureParameters st = night();
    const double dOn = Measured(st).level(kRoad);
    st.infrared = 0;
    EXPECT_LT(Measured(st).level(kRoad), dOn - 30);
    st.infrared = 1;
    st.infraredMode = 0;
    EXPECT_LT(Measured(st).level(kRoad), dOn - 30);
}

TEST(PictureLights, InfraredLightShinesAtNightOnly) {
    PictureParameters st = dark();
    st.night = 0;
    const Measured objWithout(st);
    st.infraredNear = 100;
    EXPECT_TRUE(Measured(st) == objWithout);
}

TEST(PictureLights, TheNearLampFallsOffWithDistance) {
    PictureParameters st = dark();
    st.infraredNear = 100;
    EXPECT_GT(lit(st, kNearRoad), 15);
    EXPECT_LT(lit(st, kFarHouses), 0.1 * lit(st, kNearRoad));
}

TEST(PictureLights, TheFarLampReachesFartherThanTheNearOne) {
    PictureParameters stNear = dark();
    stNear.infraredNear = 100;
    PictureParameters stFar = dark();
    stFar.infraredFar = 100;
    EXPECT_GT(lit(stFar, kFarHouses), lit(stNear, kFarHouses) + 5);
}

TEST(PictureLights, ABeamIsBrightestInItsMiddle) {
    PictureParameters st = dark();
    st.infraredMedium = 100;
    EXPECT_GT(lit(st, kNearRoad), lit(st, kCorner) + 10);
}

TEST(PictureLights, EachLampGrowsWithItsStrength) {
    for (int PictureParameters::*const pLamp :
         {&PictureParameters::infraredNear, &PictureParameters::infraredMedium, &PictureParameters::infraredFar}) {
        PictureParameters st = dark();
        st.*pLamp = 30;
        const double dSome = lit(st, kRoad);
        st.*pLamp = 100;
        EXPECT_GT(dSome, 1.0);
        EXPECT_GT(lit(st, kRoad), dSome + 5);
    }
}

TEST(PictureLights, AutomaticLampsStayBelowTheirMostAndGoOutByDay) {
    PictureParameters st = dark();
    st.infraredMode = 1;
    const double dFull = lit(st, kRoad);
    st.infraredNearMost = 10;
    st.infraredMediumMost = 10;
    st.infraredFarMost = 10;
    EXPECT_LT(lit(st, kRoad), dFull - 25);
    st = quiet();
    st.night = 1;
    const Measured objAutomatic(st);
    st.infrared = 0;
    EXPECT_TRUE(Measured(st) == objAutomatic);
}

TEST(PictureLights, WhatIsNearIsNotBurntWithTheGuardAgainstOverexposure) {
    PictureParameters st = dark();
    st.subjectMillimetres = 1500;
    st.infraredNear = 100;
    st.infraredAntiOverexposure = 0;
    const double dBurnt = Measured(st).burnt(kPatches);
    EXPECT_GT(dBurnt, 0.3);
    st.infraredAntiOverexposure = 1;
    EXPECT_LT(Measured(st).burnt(kPatches), 0.5 * dBurnt);
}

TEST(PictureLights, WhiteLightShinesByItsModeAndStrengths) {
    PictureParameters st = dark();
    const Measured objWithout(st);
    st.whiteLight = 1;
    st.whiteLightMode = 0;
    EXPECT_TRUE(Measured(st) == objWithout);
    st.whiteLightMode = 1;
    EXPECT_GT(lit(st, kRoad), 30);
    st.whiteLightMode = kManualLight;
    st.whiteLightNear = 0;
    st.whiteLightMedium = 0;
    st.whiteLightFar = 0;
    EXPECT_TRUE(Measured(st) == objWithout);
    for (int PictureParameters::*const pLamp :
         {&PictureParameters::whiteLightNear, &PictureParameters::whiteLightMedium,
          &PictureParameters::whiteLightFar}) {
        st.*pLamp = 100;
        EXPECT_GT(lit(st, kRoad), 5);
        st.*pLamp = 0;
    }
}

TEST(PictureLights, ACameraWithWhiteLightAloneHasNoInfrared) {
    PictureParameters st = night();
    st.lightType = 1;
    const Measured objOn(st);
    st.infrared = 0;
    EXPECT_TRUE(Measured(st) == objOn);
}

TEST(PictureLights, TheStreetLampShinesOnWhatIsBelowIt) {
    PictureParameters st = dark();
    const Measured obj(st);
    EXPECT_GT(obj.level({540, 200, 590, 216}), obj.level({120, 200, 170, 216}) + 10);
    EXPECT_GT(obj.level(kLamp), 240);
}

}  // namespace
