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

TEST(PictureThermal, ContrastAndBrightnessOfThePictureWorkOnItsColours) {
    PictureParameters st = thermal();
    st.palette = 2;
    const Measured objMiddle(st);
    st.brightness = 80;
    const Measured objBright(st);
    st.brightness = 20;
    const Measured objDark(st);
    for (int i = 0; i < 3; ++i) {
        EXPECT_GT(objBright.colour(i), objMiddle.colour(i) + 20) << i;
        EXPECT_LT(objDark.colour(i), objMiddle.colour(i)) << i;  // some have not much to lose
    }
    EXPECT_LT(objDark.level(), objMiddle.level() - 15);
    st.brightness = 50;
    st.contrast = 0;
    EXPECT_NEAR(Measured(st).spread(), objMiddle.spread() / 2, 1.0);
    st.palette = 0;
    st.contrast = 50;
    const double dGrey = Measured(st).spread(kUpperHouses);
    st.contrast = 100;
    EXPECT_GT(Measured(st).spread(kUpperHouses), 1.2 * dGrey);
}

TEST(PictureThermal, BrightnessMakesThePictureBrighterWhatsoeverIsHot) {
    PictureParameters st = thermal();
    for (st.palette = 0; st.palette <= 10; ++st.palette) {
        st.brightness = 50;
        const double dMiddle = Measured(st).level();
        st.brightness = 75;
        EXPECT_GT(Measured(st).level(), dMiddle + 20) << st.palette;
    }
}

TEST(PictureThermal, SharpnessRaisesDetailAndSoftensIt) {
    PictureParameters st = thermal();
    for (st.thermalDetail = 0; st.thermalDetail <= 2; ++st.thermalDetail) {
        st.sharpness = 50;
        const double dMiddle = Measured(st).detail();
        st.sharpness = 100;
        EXPECT_GT(Measured(st).detail(), 1.05 * dMiddle) << st.thermalDetail;
        st.sharpness = 0;
        EXPECT_LT(Measured(st).detail(), 0.95 * dMiddle) << st.thermalDetail;
    }
}

TEST(PictureThermal, NoiseReductionWorksByItsStrength) {
    PictureParameters st = thermal();
    const double dAutomatic = noise(st, kWall);
    EXPECT_GT(dAutomatic, 0.5);
    st.noise2dMode = 1;
    st.noise2dStrength = 100;
    EXPECT_LT(noise(st, kWall), 0.7 * dAutomatic);
    st.noise2dMode = 0;
    st.noise3dMode = 1;
    st.noise3dStrength = 100;
    EXPECT_LT(noise(st, kWall), 0.7 * dAutomatic);
    st.noise3d = 0;
    EXPECT_EQ(noise(st, kWall), dAutomatic);
}

TEST(PictureThermal, NoiseReductionOverTimeDrawsTheCarOut) {
    PictureParameters st = raw(thermal());
    st.car = 1;
    st.milliseconds = 5000;
    const Place stBehind = {150, 224, 162, 288};  // where the car has been
    const double dSharp = Measured(st).level(stBehind);
    st.noise3d = 1;
    st.noise3dMode = 1;
    st.noise3dStrength = 100;
    EXPECT_GT(std::abs(Measured(st).level(stBehind) - dSharp), 1.0);
}

// By the names that the style document gives them.
TEST(PictureThermal, PalettesLookLikeTheirNames) {
    PictureParameters st = thermal();
    const auto hottest = [&](int p_nPalette, int p_nColour) {
        st.palette = p_nPalette;
        st.temperatureStrip = 1;
        return Measured(st).colour(p_nColour, {610, 48, 622, 54});
    };
    const auto middle = [&](int p_nPalette, int p_nColour) {
        st.palette = p_nPalette;
        st.temperatureStrip = 1;
        return Measured(st).colour(p_nColour, {610, 174, 622, 186});
    };
    EXPECT_GT(hottest(10, 0), 2 * hottest(10, 1));  // alarm: what is hot is red
    EXPECT_NEAR(middle(10, 0), middle(10, 2), 8);   // and all else is grey
    EXPECT_GT(middle(5, 2), 3 * middle(5, 0));      // arctic: blue
    EXPECT_GT(middle(6, 0), 2 * middle(6, 1));      // lava: red
    EXPECT_GT(middle(8, 1), 2 * middle(8, 2));      // globe: green
    EXPECT_GT(middle(4, 1), 3 * middle(4, 0));      // high rainbow: from blue over green
    EXPECT_GT(middle(9, 0), 1.4 * middle(9, 2));    // sepia: brown
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
