// Single stages of the drawing: arithmetic, canvas, exposure, blur, noise, tone, detail, haze.
#include "simcam/picture/Blur.h"
#include "simcam/picture/Canvas.h"
#include "simcam/picture/Colour.h"
#include "simcam/picture/Detail.h"
#include "simcam/picture/Exposure.h"
#include "simcam/picture/FixedPoint.h"
#include "simcam/picture/Haze.h"
#include "simcam/picture/Light.h"
#include "simcam/picture/Noise.h"
#include "simcam/picture/Thermal.h"
#include "simcam/picture/Tone.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

using namespace simcam::picture;
using simcam::PictureParameters;

namespace {

TEST(PictureStage, LogarithmAndPowerAreTrueToSixteenBits) {
    for (const std::uint64_t nValue : {1ULL, 2ULL, 3ULL, 1000ULL, 65535ULL, 200000000ULL, 1ULL << 40}) {
        EXPECT_NEAR(65536.0 * std::log2(static_cast<double>(nValue)), log2Of(nValue), 4.0) << nValue;
    }
    for (const int nExponent : {-11 * kLogOne, -1, 0, 1, 12345, kLogOne, 20 * kLogOne + 777}) {
        const double dTrue = 4096.0 * std::exp2(nExponent / 65536.0);
        EXPECT_NEAR(dTrue, static_cast<double>(exp2Of(nExponent)), 1.0 + dTrue / 1e6) << nExponent;
    }
    EXPECT_EQ(0, exp2Of(-13 * kLogOne));
    EXPECT_EQ(std::int64_t{1} << 50, exp2Of(60 * kLogOne));
    for (const int nValue : {1, 20, 700, 4096, 40000}) {
        EXPECT_NEAR(4096.0 * std::pow(nValue / 4096.0, 1862 / 4096.0), powerOf(nValue, 1862), 2.5) << nValue;
    }
    EXPECT_EQ(0, powerOf(0, 1862));
}

class PictureCanvas : public ::testing::Test {
protected:
    PictureCanvas() {
        View stView;
        stView.width = 64;
        stView.height = 36;
        objCanvas.resize(64, 36);
        objCanvas.setView(stView);
    }
    // Pixels of a picture of 640 x 360: ten of them are one here.
    static int plane(int p_nPixels) { return p_nPixels * kPlaneUnit; }
    int red(int p_nX, int p_nY) const { return objCanvas.row(p_nY)[p_nX].red; }

    Canvas objCanvas;
    const Material stWhite = {255, 255, 255, 255, 0};
};

TEST_F(PictureCanvas, ARectangleCoversEdgePixelsInPart) {
    objCanvas.rectangle(plane(100), plane(100), plane(205), plane(200), stWhite, 9);
    EXPECT_EQ(0, red(9, 15));
    EXPECT_EQ(255 * 16, red(10, 15));
    EXPECT_EQ(255 * 16, red(19, 15));
    EXPECT_NEAR(255 * 8, red(20, 15), 16);
    EXPECT_EQ(0, red(21, 15));
    EXPECT_EQ(9, objCanvas.row(15)[15].distance);
    EXPECT_EQ(kSkyDistance, objCanvas.row(15)[22].distance);
}

TEST_F(PictureCanvas, WhatLiesOutsideIsNotPainted) {
    objCanvas.rectangle(plane(-5000), plane(-5000), plane(-10), plane(5000), stWhite, 9);
    objCanvas.ellipse({plane(900), plane(100)}, plane(100), plane(100), stWhite, 9);
    objCanvas.polygon({{plane(0), plane(400)}, {plane(100), plane(400)}, {plane(50), plane(900)}}, stWhite, 9);
    for (int y = 0; y < 36; ++y) {
        for (int x = 0; x < 64; ++x) {
            ASSERT_EQ(0, red(x, y)) << x << " " << y;
        }
    }
}

TEST_F(PictureCanvas, AnEllipseHasItsArea) {
    objCanvas.ellipse({plane(320), plane(180)}, plane(200), plane(100), stWhite, 9);
    double dArea = 0;
    for (int y = 0; y < 36; ++y) {
        for (int x = 0; x < 64; ++x) {
            dArea += red(x, y) / (255.0 * 16);
        }
    }
    EXPECT_NEAR(3.14159 * 20 * 10, dArea, 12);
}

TEST_F(PictureCanvas, ATriangleHasItsArea) {
    objCanvas.polygon({{plane(100), plane(100)}, {plane(300), plane(100)}, {plane(100), plane(300)}}, stWhite, 9);
    double dArea = 0;
    for (int y = 0; y < 36; ++y) {
        for (int x = 0; x < 64; ++x) {
            dArea += red(x, y) / (255.0 * 16);
        }
    }
    EXPECT_NEAR(200, dArea, 6);
    EXPECT_GT(red(12, 12), 4000);
    EXPECT_EQ(0, red(28, 28));
}

TEST_F(PictureCanvas, TheStarHasAsManySpokesAsItSays) {
    View stView = objCanvas.view();
    stView.width = 640;
    stView.height = 360;
    objCanvas.resize(640, 360);
    objCanvas.setView(stView);
    objCanvas.star({plane(320), plane(180)}, plane(150), 9);
    int nChanges = 0;
    bool bBlack = false;
    for (int i = 0; i <= 3600; ++i) {
        const double dAngle = (i + 0.5) * 3.14159265 / 1800.0;
        const bool bNow =
            red(static_cast<int>(320 + 120 * std::cos(dAngle)), static_cast<int>(180 + 120 * std::sin(dAngle))) < 1900;
        nChanges += 0 != i && bNow != bBlack ? 1 : 0;
        bBlack = bNow;
    }
    EXPECT_NEAR(72, nChanges, 4);
}

TEST(PictureStage, DistancesGoFromNearToFarAndBack) {
    const std::array<int, kDistances> arrMillimetres = distances(1234);
    EXPECT_EQ(1234, arrMillimetres[kSubjectDistance]);
    EXPECT_TRUE(std::is_sorted(arrMillimetres.begin(), arrMillimetres.end() - 1));
    for (const int nMillimetres : {250, 1000, 12000, 150000}) {
        EXPECT_NEAR(nMillimetres, arrMillimetres[distanceIndex(nMillimetres)], nMillimetres / 20.0);
    }
    EXPECT_EQ(0, distanceIndex(-5));
    EXPECT_LT(distanceIndex(2000000000), kSkyDistance);
}

TEST(PictureStage, ExposureOrdersShutterIrisAndGain) {
    PictureParameters st;
    Metering stMetering;
    stMetering.mean = 1350;
    const auto exposed = [&](int p_nStops) {  // the light, in doublings against white at 1/50 s with an open iris
        stMetering.sensitivity = 12 * kLogOne - log2Of(400000) - p_nStops * kLogOne;
        return exposureFor(stMetering, st);
    };
    EXPECT_NEAR(1000, exposed(6).shutterMicroseconds, 20);  // bright: short, and the iris closes
    EXPECT_LT(exposed(6).iris, 12000);
    EXPECT_GT(exposed(6).iris, 256);
    EXPECT_LT(exposed(14).shutterMicroseconds, 200);  // glaring: the iris is closed
    EXPECT_NEAR(256, exposed(14).iris, 8);
    EXPECT_EQ(0, exposed(0).gain);
    EXPECT_NEAR(40000, exposed(-3).shutterMicroseconds, 400);  // dark: as long as a frame, and gain
    EXPECT_NEAR(12800, exposed(-3).iris, 100);
    EXPECT_NEAR(3 * kLogOne, exposed(-3).gain, kLogOne / 20);
    EXPECT_NEAR(8 * kLogOne * 0.6, exposed(-12).gain, kLogOne / 20);
}

TEST(PictureStage, BlurKeepsTheLightAndSpreadsIt) {
    constexpr int kWide = 41;
    constexpr int kHigh = 31;
    std::vector<int> vecPlane(kWide * kHigh, 0);
    vecPlane[15 * kWide + 20] = 100000;
    Blur objBlur;
    objBlur.apply(vecPlane, std::vector<std::uint8_t>(vecPlane.size(), 3 * kRadiusOne), kWide, kHigh);
    EXPECT_NEAR(100000, std::accumulate(vecPlane.begin(), vecPlane.end(), 0), 100);
    EXPECT_NEAR(100000 / 49, vecPlane[15 * kWide + 20], 2);
    EXPECT_NEAR(100000 / 49, vecPlane[18 * kWide + 23], 2);
    EXPECT_EQ(0, vecPlane[19 * kWide + 20]);
}

TEST(PictureStage, BlurLeavesAnEvenPlaneAloneUpToItsEdges) {
    std::vector<int> vecPlane(16 * 9, kBrightest);
    Blur objBlur;
    objBlur.apply(vecPlane, std::vector<std::uint8_t>(vecPlane.size(), 240), 16, 9);
    EXPECT_EQ(std::vector<int>(16 * 9, kBrightest), vecPlane);
}

TEST(PictureStage, BlurOfRadiusNothingChangesNothing) {
    std::vector<int> vecPlane(20 * 10);
    std::iota(vecPlane.begin(), vecPlane.end(), 5);
    const std::vector<int> vecBefore = vecPlane;
    Blur objBlur;
    objBlur.apply(vecPlane, std::vector<std::uint8_t>(vecPlane.size(), 0), 20, 10);
    EXPECT_EQ(vecBefore, vecPlane);
}

struct Spread {
    double mean;
    double deviation;
};
Spread spreadOf(const std::vector<int>& p_vec) {
    const double dMean = std::accumulate(p_vec.begin(), p_vec.end(), 0.0) / static_cast<double>(p_vec.size());
    double dSquares = 0;
    for (const int nValue : p_vec) {
        dSquares += (nValue - dMean) * (nValue - dMean);
    }
    return {dMean, std::sqrt(dSquares / static_cast<double>(p_vec.size()))};
}

TEST(PictureStage, NoiseHasItsDeviationAndNoBias) {
    for (const int nFrames : {1, 4, 8}) {
        const Noise objNoise(PictureParameters(), 4 * kLogOne, nFrames);
        std::vector<int> vecPlane(20000, 1000);
        objNoise.addTo(vecPlane.data(), 20000, 5, 0);
        const Spread st = spreadOf(vecPlane);
        EXPECT_NEAR(1000, st.mean, 3) << nFrames;
        EXPECT_NEAR(objNoise.deviation(1000) / std::sqrt(nFrames), st.deviation, 0.05 * objNoise.deviation(1000));
    }
}

TEST(PictureStage, NoiseGrowsWithGainAndLight) {
    const Noise objQuiet(PictureParameters(), 0, 1);
    const Noise objLoud(PictureParameters(), 4 * kLogOne, 1);
    EXPECT_GT(objLoud.deviation(1000), 3 * objQuiet.deviation(1000));
    EXPECT_GT(objQuiet.deviation(4000), objQuiet.deviation(200));
    EXPECT_EQ(objLoud.deviation(100000), objLoud.deviation(8191));
}

TEST(PictureStage, RowsAndColoursHaveNoiseOfTheirOwn) {
    const Noise objNoise(PictureParameters(), 4 * kLogOne, 1);
    std::vector<std::vector<int>> vecRows;
    for (int i = 0; i < 6; ++i) {
        std::vector<int> vecRow(200, 1000);
        objNoise.addTo(vecRow.data(), 200, i / 3, i % 3);
        EXPECT_THAT(vecRows, testing::Not(testing::Contains(vecRow)));
        vecRows.push_back(vecRow);
    }
}

TEST(PictureStage, EveryToneRisesExceptWhereHighlightsAreMasked) {
    for (int i = 0; i < 20; ++i) {
        PictureParameters st;
        st.gamma = i % 5;
        st.wideDynamicRange = i / 10;
        st.highlight = i / 5 % 2;
        Tone objTone;
        objTone.prepare(st);
        EXPECT_EQ(0, objTone.of(0));
        for (int nLight = 16; nLight <= kOne; nLight += 16) {
            ASSERT_GE(objTone.of(nLight), objTone.of(nLight - 16)) << i << " " << nLight;
        }
        for (int nLight = kOne; nLight <= kBrightest; nLight += 999) {
            ASSERT_LE(objTone.of(nLight), kWhite) << i << " " << nLight;
            ASSERT_GT(objTone.of(nLight), 0);
        }
    }
    Tone objPlain;
    objPlain.prepare(PictureParameters());
    EXPECT_EQ(kWhite, objPlain.of(kOne));
    EXPECT_EQ(kWhite, objPlain.of(kBrightest));
}

TEST(PictureStage, AToneIsMadeAnewWhenItsValuesChange) {
    Tone objTone;
    PictureParameters st;
    objTone.prepare(st);
    const int nStandard = objTone.of(700);
    st.gamma = 2;
    objTone.prepare(st);
    EXPECT_LT(objTone.of(700), nStandard - 100);
    st.gamma = 0;
    objTone.prepare(st);
    EXPECT_EQ(nStandard, objTone.of(700));
}

TEST(PictureStage, SmoothingKeepsAnEdgeAndTakesRipples) {
    constexpr int kWide = 20;
    constexpr int kHigh = 10;
    Plane vecPlane;
    for (int i = 0; i < kWide * kHigh; ++i) {
        vecPlane.push_back(static_cast<std::int16_t>((i % kWide < kWide / 2 ? 500 : 3000) + (i % 3 - 1) * 60));
    }
    Plane vecScratch;
    smooth(vecPlane, kWide, kHigh, 200, vecScratch);
    EXPECT_NEAR(500, vecPlane[5 * kWide + 9], 40);
    EXPECT_NEAR(3000, vecPlane[5 * kWide + 10], 40);
    EXPECT_NEAR(500, vecPlane[5 * kWide + 4], 25);
}

TEST(PictureStage, SharpeningOvershootsAtAnEdgeAlone) {
    Plane vecPlane;
    for (int i = 0; i < 20 * 9; ++i) {
        vecPlane.push_back(i % 20 < 10 ? 1000 : 2000);
    }
    Plane vecScratch;
    sharpen(vecPlane, 20, 9, 100, vecScratch);
    EXPECT_NEAR(1000 - 333, vecPlane[4 * 20 + 9], 2);
    EXPECT_NEAR(2000 + 333, vecPlane[4 * 20 + 10], 2);
    EXPECT_NEAR(1000, vecPlane[4 * 20 + 4], 1);
    EXPECT_EQ(1000, vecPlane[0]);  // there is nothing beyond the edge of the picture
}

TEST(PictureStage, HazeIsWhatEvenTheDarkestHas) {
    PictureParameters st;
    st.defog = 1;
    st.defogStrength = 100;
    Metering stMetering;
    for (auto& arrRow : stMetering.darkest) {
        arrRow.fill(1000);
    }
    for (auto& arrRow : stMetering.darkest) {
        arrRow[0] = 0;  // something near and dark at the left
    }
    const Haze objHaze(st, stMetering, Exposure());
    std::vector<int> vecRow(80, 1000);
    objHaze.takeFrom(vecRow.data(), 80, 10, 20);
    EXPECT_EQ(1000, vecRow[0]);
    EXPECT_NEAR(1000, vecRow[79], 1);  // fog itself stays as bright
    vecRow.assign(80, 900);
    objHaze.takeFrom(vecRow.data(), 80, 10, 20);
    EXPECT_EQ(900, vecRow[0]);
    EXPECT_NEAR(500, vecRow[79], 2);  // what differs from it differs five times as much
    st.defog = 0;
    EXPECT_TRUE(Haze(st, stMetering, Exposure()).isClear());
}

TEST(PictureStage, PalettesGoThroughTheirEnds) {
    for (int i = 0; i <= 10; ++i) {
        const Palette arrPalette = paletteOf(i);
        for (std::size_t j = 1; j < arrPalette.size(); ++j) {
            int nStep = 0;
            for (std::size_t k = 0; k < 3; ++k) {
                nStep = std::max(nStep, std::abs(arrPalette[j][k] - arrPalette[j - 1][k]));
            }
            ASSERT_LE(nStep, 8) << i << " " << j;  // no jumps
        }
    }
    EXPECT_EQ((std::array<unsigned char, 3>{0, 0, 0}), paletteOf(0)[0]);
    EXPECT_EQ((std::array<unsigned char, 3>{255, 255, 255}), paletteOf(0)[255]);
}

TEST(PictureStage, LightOfNoLampIsNoLight) {
    PictureParameters st;
    st.milliLux = 0;
    const Light stLight = lightOf(st);
    const ExposedLight objLight(stLight, 12 * kLogOne);
    Surface stSurface;
    stSurface.red = 4000;
    stSurface.green = 4000;
    stSurface.blue = 4000;
    EXPECT_EQ((Pixel{0, 0, 0}), objLight.expose(stSurface, 0, 0));
    stSurface.lamp = 255;
    EXPECT_GT(objLight.expose(stSurface, 0, 0)[0], 0);
}

TEST(PictureStage, ExposedLightIsLightTimesSensitivity) {
    PictureParameters st;
    st.milliLux = 2000000;  // white daylight
    const Light stLight = lightOf(st);
    const int nOneForWhite = 12 * kLogOne - log2Of(2000000);
    Surface stSurface;
    stSurface.red = 2048;
    stSurface.green = 1024;
    stSurface.distance = distanceIndex(5000);
    const Pixel arrOnce = ExposedLight(stLight, nOneForWhite).expose(stSurface, 0, 0);
    EXPECT_NEAR(2048, arrOnce[0], 4);
    EXPECT_NEAR(1024, arrOnce[1], 4);
    EXPECT_EQ(0, arrOnce[2]);
    const Pixel arrTwice = ExposedLight(stLight, nOneForWhite + kLogOne).expose(stSurface, 0, 0);
    EXPECT_NEAR(4096, arrTwice[0], 4);
    const Pixel arrMost = ExposedLight(stLight, nOneForWhite + 40 * kLogOne).expose(stSurface, 0, 0);
    EXPECT_LE(arrMost[0], kBrightest);
    EXPECT_GT(arrMost[0], kOne);
}

TEST(PictureStage, TheFarLampPassesOverWhatIsNear) {
    PictureParameters st;
    st.milliLux = 0;
    st.night = 1;
    st.infraredAntiOverexposure = 0;
    const Light stLight = lightOf(st);
    const std::size_t nNear = distanceIndex(5000);
    const std::size_t nFar = distanceIndex(40000);
    EXPECT_GT(stLight.infrared[0][nNear], 50 * stLight.infrared[0][nFar]);
    EXPECT_LT(stLight.infrared[2][nNear], 4 * stLight.infrared[2][nFar]);
}

TEST(PictureStage, DefogGivesBackColour) {
    PictureParameters st;
    unsigned char arrOff[3] = {};
    unsigned char arrOn[3] = {};
    Finish(st).write(2000, 0, 400, arrOff);
    st.defog = 1;
    st.defogStrength = 100;
    Finish(st).write(2000, 0, 400, arrOn);
    EXPECT_GT(arrOn[0] - arrOn[1], arrOff[0] - arrOff[1] + 10);
}

TEST(PictureStage, WhatIsBrighterThanWhiteIsMaskedDarkerThanWhite) {
    PictureParameters st;
    st.highlight = 1;
    st.highlightStrength = 100;
    Tone objTone;
    objTone.prepare(st);
    EXPECT_LT(objTone.of(8 * kOne), objTone.of(kOne) - 40 * kBright);
}

}  // namespace
