// Mirror, turn, zoom, shift, wind, focus: where things are in the picture and how sharp.
#include "tests/unit/picture/Measured.h"

#include "simcam/Commands.h"

namespace {

using simcam::PictureParameters;

constexpr int kTele4 = 28672;  // zoom position of 4x

unsigned char byteOf(const simcam::Picture& p_st, int p_nX, int p_nY, int p_nColour) {
    return p_st.rgb[static_cast<std::size_t>(3 * (p_nY * p_st.width + p_nX) + p_nColour)];
}

// Whether the two are the same with the sides exchanged.
bool areMirrored(const simcam::Picture& p_stOne, const simcam::Picture& p_stOther, bool p_bAcross, bool p_bDown) {
    for (int y = 0; y < p_stOne.height; ++y) {
        for (int x = 0; x < p_stOne.width; ++x) {
            for (int i = 0; i < 3; ++i) {
                if (byteOf(p_stOne, x, y, i) !=
                    byteOf(p_stOther, p_bAcross ? p_stOne.width - 1 - x : x, p_bDown ? p_stOne.height - 1 - y : y, i)) {
                    return false;
                }
            }
        }
    }
    return true;
}

Measured mirrored(int p_nMirror) {
    PictureParameters st = quiet();
    st.mirror = p_nMirror;
    return Measured(st);
}

TEST(PictureGeometry, MirrorExchangesTheSides) {
    const Measured objPlain = mirrored(0);
    EXPECT_TRUE(areMirrored(objPlain.picture(), mirrored(1).picture(), true, false));
    EXPECT_TRUE(areMirrored(objPlain.picture(), mirrored(2).picture(), false, true));
    EXPECT_TRUE(areMirrored(objPlain.picture(), mirrored(3).picture(), true, true));
    EXPECT_FALSE(areMirrored(objPlain.picture(), objPlain.picture(), true, false));
    EXPECT_FALSE(areMirrored(objPlain.picture(), objPlain.picture(), false, true));
}

TEST(PictureGeometry, BeawayTurnsThePictureByAQuarter) {
    PictureParameters st = quiet();
    const Measured objPlain(st);
    st.beaway = 1;
    const Measured objTurned(st);
    EXPECT_EQ(Measured::kWidth, objTurned.picture().width);
    EXPECT_EQ(0.0, objTurned.level({0, 0, 200, 360}));  // beside the tall picture
    EXPECT_EQ(0.0, objTurned.level({440, 0, 640, 360}));
    // The sky above is now at the right, the road below at the left.
    EXPECT_GT(objPlain.level({220, 0, 420, 60}), objPlain.level({220, 300, 420, 360}) + 60);
    EXPECT_GT(objTurned.level({390, 100, 410, 260}), objTurned.level({230, 100, 250, 260}) + 60);
}

// The library exchanges the two directions while beaway is on, so that mirror 1 exchanges left and right for the viewer.
TEST(PictureGeometry, WithBeawayMirrorTwoExchangesLeftAndRight) {
    PictureParameters st = quiet();
    st.beaway = 1;
    const Measured objTurned(st);
    st.mirror = 2;
    EXPECT_TRUE(areMirrored(objTurned.picture(), Measured(st).picture(), true, false));
}

TEST(PictureGeometry, OpticalZoomShowsMoreOfThePlate) {
    PictureParameters st = raw(quiet());
    const Place stPlate = {240, 130, 400, 230};
    st.zoomPosition = simcam::kZoomTele;
    st.focusPosition = simcam::sharpFocusPosition(16.0, 5.0);
    const Measured objOptical(st);
    st.zoomPosition = simcam::kZoomWide;
    st.focusPosition = 1080;
    st.digitalZoom = 4;
    const Measured objDigital(st);
    EXPECT_GT(objOptical.spread(stPlate), 40);                              // black on white
    EXPECT_GT(objOptical.detail(stPlate), 2 * objDigital.detail(stPlate));  // and not only larger
}

TEST(PictureGeometry, DigitalZoomEnlargesTheMiddle) {
    PictureParameters st = quiet();
    const Measured objPlain(st);
    for (int nStep = 1; nStep <= 4; ++nStep) {
        st.digitalZoom = nStep;
        const Measured objZoomed(st);
        const int nTimes = 1 << nStep;
        const Place stMiddle = {320 - 320 / nTimes, 180 - 180 / nTimes, 320 + 320 / nTimes, 180 + 180 / nTimes};
        EXPECT_NEAR(objPlain.level(stMiddle), objZoomed.level(), 12) << nTimes;
        EXPECT_LT(objZoomed.detail(), objPlain.detail(stMiddle)) << nTimes;
    }
}

TEST(PictureGeometry, DigitalZoomGoesSmoothlyFromPixelToPixel) {
    PictureParameters st = quiet();
    st.digitalZoom = 2;
    const Measured obj(st);
    int nEqualAcross = 0;
    int nEqualDown = 0;
    for (int y = 0; y < Measured::kHeight - 1; ++y) {
        for (int x = 0; x < Measured::kWidth - 1; ++x) {
            nEqualAcross += obj.levelAt(x, y) == obj.levelAt(x + 1, y) ? 1 : 0;
            nEqualDown += obj.levelAt(x, y) == obj.levelAt(x, y + 1) ? 1 : 0;
        }
    }
    const int nHalf = Measured::kWidth * Measured::kHeight / 2;
    EXPECT_LT(nEqualAcross, nHalf);
    EXPECT_LT(nEqualDown, nHalf);
}

TEST(PictureGeometry, TheDirectionsOfTheZoomAgree) {
    PictureParameters st = quiet();
    st.exposureMode = 3;
    st.fixedShutter = 16;
    st.fixedGain = 10;
    st.whiteBalanceMode = 1;
    st.digitalZoom = 2;
    const Measured objDigital(st);
    st.digitalZoom = 0;
    st.zoomPosition = kTele4;
    st.focusPosition = simcam::sharpFocusPosition(4.0, 5.0);
    const Measured objOptical(st);
    for (int i = 0; i < 16; ++i) {
        const Place stPart = {i % 4 * 160, i / 4 * 90, i % 4 * 160 + 160, i / 4 * 90 + 90};
        EXPECT_NEAR(objDigital.level(stPart), objOptical.level(stPart), 14) << i;
    }
}

TEST(PictureGeometry, PictureShiftMovesThePicture) {
    PictureParameters st = raw(quiet());
    const Measured objPlain(st);
    st.shift = 16;  // of 640: 4 pixels here
    EXPECT_EQ((Measured::Move{4, 0}), Measured(st).moveFrom(objPlain, 6));
    st.shift = -24;
    EXPECT_EQ((Measured::Move{-6, 0}), Measured(st).moveFrom(objPlain, 6));
    st.shiftLeast = -8;
    EXPECT_EQ((Measured::Move{-2, 0}), Measured(st).moveFrom(objPlain, 6));
    st.shift = 0;
    st.verticalShift = 12;
    EXPECT_EQ((Measured::Move{0, 3}), Measured(st).moveFrom(objPlain, 6));
    st.verticalShiftMost = 4;
    EXPECT_EQ((Measured::Move{0, 1}), Measured(st).moveFrom(objPlain, 6));
}

TEST(PictureGeometry, AStepShiftsInItsDirection) {
    const Measured::Move arrMoves[] = {{0, 0}, {0, -4}, {0, 4}, {-4, 0}, {4, 0}};  // none, up, down, left, right
    PictureParameters st = raw(quiet());
    const Measured objPlain(st);
    st.shiftStep = 16;
    for (st.shiftDirection = 0; st.shiftDirection <= 4; ++st.shiftDirection) {
        EXPECT_EQ(arrMoves[st.shiftDirection], Measured(st).moveFrom(objPlain, 5)) << st.shiftDirection;
    }
}

// How far the picture moves within two seconds, at tele.
int unrest(PictureParameters p_st) {
    p_st.zoomPosition = kTele4;
    p_st.focusPosition = simcam::sharpFocusPosition(4.0, 5.0);
    const Measured objFirst(p_st, 96, 54);
    int nMost = 0;
    for (int i = 0; i < 8; ++i) {
        p_st.milliseconds += 250;
        const Measured::Move stMove = Measured(p_st, 96, 54).moveFrom(objFirst, 4);
        nMost = std::max({nMost, std::abs(stMove.x), std::abs(stMove.y)});
    }
    return nMost;
}

TEST(PictureGeometry, WindShakesThePictureAndAntiShakeHoldsIt) {
    PictureParameters st = raw(quiet());
    EXPECT_EQ(0, unrest(st));
    st.windPercent = 100;
    const int nShaken = unrest(st);
    EXPECT_GE(nShaken, 2);
    st.antiShake = 1;
    st.antiShakeStrength = 100;
    EXPECT_EQ(0, unrest(st));
    st.antiShakeStrength = 0;
    EXPECT_EQ(nShaken, unrest(st));
}

PictureParameters focused(int p_nPosition) {
    PictureParameters st = raw(quiet());
    st.zoomPosition = kTele4;
    st.focusPosition = p_nPosition;
    return st;
}

TEST(PictureGeometry, TheStarIsSharpWhereTheLensSays) {
    const int nSharp = simcam::sharpFocusPosition(4.0, 5.0);
    const double dSharp = Measured(focused(nSharp)).detail();
    double dBefore = dSharp;
    for (const int nOff : {600, 1200, 2400}) {
        const double dNearer = Measured(focused(nSharp + nOff)).detail();
        EXPECT_LT(dNearer, 0.9 * dBefore) << nOff;
        dBefore = dNearer;
    }
    EXPECT_LT(Measured(focused(nSharp - 1200)).detail(), 0.7 * dSharp);
}

TEST(PictureGeometry, ASubjectThatMovesLeavesTheFocus) {
    PictureParameters st = focused(simcam::sharpFocusPosition(4.0, 5.0));
    const Place stBackOfTheCar = {180, 160, 460, 240};
    const double dSharp = Measured(st).detail(stBackOfTheCar);
    st.subjectMillimetres = 700;
    EXPECT_LT(Measured(st).detail(stBackOfTheCar), 0.7 * dSharp);
    st.focusPosition = simcam::sharpFocusPosition(4.0, 0.7);
    EXPECT_GT(Measured(st).detail(stBackOfTheCar), 0.85 * dSharp);
}

TEST(PictureGeometry, FocusOnTheSubjectLeavesTheDistanceUnsharp) {
    PictureParameters st = raw(quiet());
    st.subjectMillimetres = 150;
    const Measured objFar(st);
    st.focusPosition = simcam::sharpFocusPosition(1.0, 0.15);
    const Measured objNear(st);
    EXPECT_GT(objNear.detail(kStar), 1.3 * objFar.detail(kStar));
    EXPECT_LT(objNear.detail(kFarHouses), 0.6 * objFar.detail(kFarHouses));
}

TEST(PictureGeometry, ASmallIrisMakesMoreSharp) {
    PictureParameters st = focused(simcam::sharpFocusPosition(4.0, 5.0) + 1500);
    st.exposureMode = 2;
    const double dOpen = Measured(st).detail();
    st.irisPosition = 1131;
    EXPECT_GT(Measured(st).detail(), 1.3 * dOpen);
}

}  // namespace
