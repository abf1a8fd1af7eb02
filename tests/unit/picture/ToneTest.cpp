// Brightness, contrast, saturation, sharpness, gamma, and the modes that fit a wide scene into a picture.
#include "tests/unit/picture/Measured.h"

namespace {

using simcam::PictureParameters;

PictureParameters with(int PictureParameters::*p_pField, int p_nValue, PictureParameters p_st = quiet()) {
    p_st.*p_pField = p_nValue;
    return p_st;
}

TEST(PictureTone, BrightnessLiftsAndLowersThePicture) {
    const double dMiddle = Measured(quiet()).level();
    EXPECT_GT(Measured(with(&PictureParameters::brightness, 80)).level(), dMiddle + 25);
    EXPECT_LT(Measured(with(&PictureParameters::brightness, 20)).level(), dMiddle - 25);
}

TEST(PictureTone, ContrastSpreadsTheLevels) {
    const double dMiddle = Measured(quiet()).spread();
    EXPECT_GT(Measured(with(&PictureParameters::contrast, 100)).spread(), 1.15 * dMiddle);
    EXPECT_LT(Measured(with(&PictureParameters::contrast, 0)).spread(), 0.7 * dMiddle);
}

TEST(PictureTone, SaturationDecidesHowColourfulTheChartIs) {
    const double dMiddle = Measured(quiet()).colourfulness(kPatches);
    EXPECT_GT(Measured(with(&PictureParameters::saturation, 90)).colourfulness(kPatches), 1.3 * dMiddle);
    EXPECT_LT(Measured(with(&PictureParameters::saturation, 0)).colourfulness(kPatches), 1.0);
}

TEST(PictureTone, SharpnessRaisesTheEdges) {
    const double dSoft = Measured(with(&PictureParameters::sharpness, 0)).detail();
    const double dMiddle = Measured(quiet()).detail();
    EXPECT_GT(dMiddle, 1.15 * dSoft);
    EXPECT_GT(Measured(with(&PictureParameters::sharpness, 100)).detail(), 1.15 * dMiddle);
}

TEST(PictureTone, GammaCurvesLiftAndLowerTheShadows) {
    const double dStandard = Measured(quiet()).level(kRoad);
    EXPECT_LT(Measured(with(&PictureParameters::gamma, 1)).level(kRoad), dStandard - 8);
    EXPECT_LT(Measured(with(&PictureParameters::gamma, 2)).level(kRoad), dStandard - 20);
    EXPECT_GT(Measured(with(&PictureParameters::gamma, 3)).level(kRoad), dStandard + 5);
    EXPECT_GT(Measured(with(&PictureParameters::gamma, 4)).level(kRoad), dStandard + 10);
}

TEST(PictureTone, WideDynamicRangeShowsTheGarageAndTheSky) {
    PictureParameters st = with(&PictureParameters::wideDynamicRange, 1);
    const Measured objOff(quiet());
    const Measured objHalf(st);
    st.wideDynamicRangeStrength = 100;
    const Measured objFull(st);
    EXPECT_GT(objHalf.level(kGarage), objOff.level(kGarage) + 20);
    EXPECT_GT(objFull.level(kGarage), objHalf.level(kGarage) + 10);
    EXPECT_GT(objOff.level(kSky), 225);
    EXPECT_LT(objHalf.level(kSky), objOff.level(kSky) - 15);
}

TEST(PictureTone, HighlightCompensationMasksTheLamp) {
    PictureParameters st = quiet();
    st.highlight = 1;
    st.highlightStrength = 100;
    const Measured objOff(quiet());
    const Measured objOn(st);
    EXPECT_GT(objOff.level(kLamp), 240);
    EXPECT_LT(objOn.level(kLamp), objOff.level(kLamp) - 40);
    st.highlightStrength = 30;
    EXPECT_GT(Measured(st).level(kLamp), objOn.level(kLamp) + 15);
    EXPECT_GT(objOn.level(kRoad), objOff.level(kRoad) + 5);  // lights no longer make the rest dark
}

TEST(PictureTone, BacklightCompensationBringsOutItsArea) {
    PictureParameters st = quiet();
    st.backlight = 1;
    st.backlightArea = 2;  // down: the dark road
    st.backlightStrength = 100;
    const double dOff = Measured(quiet()).level(kRoad);
    const double dDown = Measured(st).level(kRoad);
    EXPECT_GT(dDown, dOff + 20);
    st.backlightStrength = 0;
    EXPECT_EQ(dOff, Measured(st).level(kRoad));
    st.backlightStrength = 100;
    st.backlightArea = 1;  // up: the sky
    EXPECT_LT(Measured(st).level(kRoad), dOff - 10);
    EXPECT_LT(Measured(st).level(kRoad), dDown - 40);
}

TEST(PictureTone, EachBacklightAreaIsAnotherPartOfThePicture) {
    PictureParameters st = quiet();
    st.backlight = 1;
    st.backlightStrength = 100;
    std::vector<double> vecLevels;
    for (st.backlightArea = 0; st.backlightArea <= 4; ++st.backlightArea) {
        const double dLevel = Measured(st).level();
        for (const double dOther : vecLevels) {
            EXPECT_GT(std::abs(dLevel - dOther), 0.5) << "area " << st.backlightArea;
        }
        vecLevels.push_back(dLevel);
    }
}

TEST(PictureTone, FogTakesContrastAndDefogGivesItBack) {
    PictureParameters st = quiet();
    const Measured objClear(st);
    st.fogPercent = 70;
    const Measured objFog(st);
    EXPECT_LT(objFog.spread(), 0.5 * objClear.spread());
    EXPECT_LT(objFog.colourfulness(kUpperHouses), 0.4 * objClear.colourfulness(kUpperHouses));
    st.defog = 1;
    const Measured objHalf(st);
    EXPECT_GT(objHalf.spread(), 1.2 * objFog.spread());
    EXPECT_GT(objHalf.colourfulness(kUpperHouses), 1.2 * objFog.colourfulness(kUpperHouses));
    st.defogStrength = 100;
    EXPECT_GT(Measured(st).spread(), 1.2 * objHalf.spread());
}

TEST(PictureTone, FogHidesWhatIsFarFirst) {
    PictureParameters st = quiet();
    const Measured objClear(st);
    st.fogPercent = 40;
    const Measured objFog(st);
    EXPECT_LT(objFog.detail(kFarHouses), 0.4 * objClear.detail(kFarHouses));
    EXPECT_GT(objFog.detail(kStar), 0.6 * objClear.detail(kStar));
}

}  // namespace
