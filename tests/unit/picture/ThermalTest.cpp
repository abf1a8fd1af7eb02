// The channel that sees warmth.
#include "tests/unit/picture/Measured.h"

namespace {

using simcam::PictureParameters;

constexpr Place kPerson = {610, 162, 624, 184};
constexpr Place kHouseBesideThePerson = {628, 180, 638, 198};
constexpr Place kColdSky = {250, 4, 390, 60};

PictureParameters thermal() {
    PictureParameters st = quiet();
    st.thermal = 1;
    return st;
}

TEST(PictureThermal, WarmthIsBrightAndTheSkyCold) {
    const Measured obj(thermal());
    EXPECT_EQ(0.0, obj.colourfulness());
    EXPECT_GT(obj.level(kPerson), obj.level(kHouseBesideThePerson) + 40);
    EXPECT_LT(obj.level(kColdSky), obj.level(kHouseBesideThePerson) - 40);
}

TEST(PictureThermal, BlackHotIsWhiteHotReversed) {
    PictureParameters st = thermal();
    const Measured objWhiteHot(st);
    st.palette = 1;
    const Measured objBlackHot(st);
    EXPECT_NEAR(255.0, objWhiteHot.level(kPerson) + objBlackHot.level(kPerson), 1.0);
    EXPECT_NEAR(255.0, objWhiteHot.level(kColdSky) + objBlackHot.level(kColdSky), 1.0);
}

TEST(PictureThermal, EveryPaletteHasItsOwnColours) {
    PictureParameters st = thermal();
    std::vector<Measured> vecSeen;
    for (st.palette = 0; st.palette <= 10; ++st.palette) {
        const Measured obj(st);
        for (const Measured& objOther : vecSeen) {
            double dOff = 0;
            for (int i = 0; i < 3; ++i) {
                dOff += std::abs(obj.colour(i) - objOther.colour(i));
            }
            EXPECT_GT(dOff, 6.0) << st.palette;
        }
        vecSeen.push_back(obj);
    }
}

TEST(PictureThermal, LightIsNotSeen) {
    PictureParameters st = thermal();
    const Measured objDay(st);
    st.milliLux = 0;
    st.night = 1;
    EXPECT_TRUE(Measured(st) == objDay);
}

TEST(PictureThermal, ContrastAndBrightnessAreThoseOfTheThermalSensor) {
    PictureParameters st = thermal();
    const Measured objMiddle(st);
    st.thermalBrightness = 20;
    EXPECT_LT(Measured(st).level(), objMiddle.level() - 20);
    st.thermalBrightness = 50;
    st.thermalContrast = 0;
    EXPECT_LT(Measured(st).spread(), 0.8 * objMiddle.spread());
}

TEST(PictureThermal, DetailIsRaisedByModeAndType) {
    PictureParameters st = thermal();
    const double dOff = Measured(st).detail();
    st.thermalDetail = 1;
    EXPECT_GT(Measured(st).detail(), 1.1 * dOff);
    st.thermalDetail = 2;
    double dBefore = dOff;
    for (st.thermalDetailType = 0; st.thermalDetailType <= 2; ++st.thermalDetailType) {
        const double dDetail = Measured(st).detail();
        EXPECT_GT(dDetail, 1.05 * dBefore) << st.thermalDetailType;
        dBefore = dDetail;
    }
}

TEST(PictureThermal, TheStripGoesFromColdToHot) {
    PictureParameters st = thermal();
    st.temperatureStrip = 1;
    const Measured obj(st);
    EXPECT_GT(obj.level({610, 50, 622, 62}), 220);
    EXPECT_LT(obj.level({610, 300, 622, 312}), 35);
}

TEST(PictureThermal, AMovingCarIsWarm) {
    PictureParameters st = thermal();
    st.milliseconds = 5000;
    const Measured objEmpty(st);
    st.car = 1;
    const Measured objCar(st);
    EXPECT_GT(objCar.level({160, 224, 310, 288}), objEmpty.level({160, 224, 310, 288}) + 8);
}

TEST(PictureThermal, MirrorAndZoomWorkAsForLight) {
    PictureParameters st = thermal();
    const Measured objPlain(st);
    st.mirror = 1;
    const Measured objMirrored(st);
    EXPECT_EQ(objPlain.levelAt(10, 20), objMirrored.levelAt(Measured::kWidth - 1 - 10, 20));
    st.mirror = 0;
    st.zoomPosition = 28672;
    EXPECT_GT(Measured(st).differenceFrom(objPlain), 5.0);
}

}  // namespace
